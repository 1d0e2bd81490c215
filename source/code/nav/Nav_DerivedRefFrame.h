// The user's own frame on the ground: X along a heading, Y to its left, about an origin.
#pragma once

#include "nav/Nav_ComData.h"

namespace Trel::Nav {

// Sets the frame: its origin (degrees, degrees, metres), its heading (degrees, of at most one turn
// outside -180 to 180), and what RefFrameOutputsCompute needs of them. An origin that is not
// finite changes nothing.
void ComputeRefFrame(ComData& data, double lat, double lon, double alt, double heading);

}  // namespace Trel::Nav
