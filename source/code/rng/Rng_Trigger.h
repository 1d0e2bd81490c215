// Packets of a trigger.
#pragma once

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "rng/Rng_Field.h"

namespace Trel::Rng {

// Takes the trigger's time: milliseconds of the minute, a signed count of 4 microseconds, and the
// minute, counted from GPS time zero. Without one of the three there is no time.
void ExtractTrigger(const Packet& packet, const ComKey& key, ComData& data);

}  // namespace Trel::Rng
