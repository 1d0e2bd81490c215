// Lane data: the packets that tell where the hunter is between the lines of a map.
//
// Rng_LaneField.def says what the packets hold. A group of values whose key is off is rejected; a
// value that its packet is too short to hold, or says nothing about, is invalid. What came with
// later forms of the packet is only read from packets long enough for the whole of it. Then come
// the slow channel and the ISO forms. The caller has checked framing and kind. Nothing fails and
// nothing allocates.
#pragma once

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "rng/Rng_Field.h"

namespace Trel::Rng {

void ExtractLaneData(const Packet& packet, const ComKey& key, ComData& data);

}  // namespace Trel::Rng
