// Outlines: the packets that tell the corners of the hunter's or a target's polygon.
//
// A packet says how many corners are in use, and brings some of them: from an index on, in numbers
// of two bytes or three, with or without a third number that is not kept. Corners that it does not
// bring stay; corners beyond the run are dropped. A corner that is not known is invalid. With the
// key off all are rejected. A packet shorter than it claims changes nothing, and neither does one
// for a vehicle that there is not. The caller has checked framing and kind. Nothing fails and
// nothing allocates.
#pragma once

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "rng/Rng_Field.h"

namespace Trel::Rng {

void ExtractPolygon(const Packet& packet, const ComKey& key, ComData& data);

}  // namespace Trel::Rng
