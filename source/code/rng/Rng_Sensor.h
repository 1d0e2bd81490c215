// Sensors: the packets that tell where the hunter's sensors are, and what they see.
//
// A packet says how many sensors are in use, and brings some of them: from an index on, in numbers
// of two bytes or three, seven or ten of them for a sensor and its identification. Of the short
// form height, pitch and roll are invalid. Sensors that it does not bring stay; sensors beyond the
// run are dropped, and not in use. A number that is not known is invalid. With the key off all are
// rejected. A packet shorter than it claims changes nothing, and neither does one for another
// vehicle. The caller has checked framing and kind. Nothing fails and nothing allocates.
#pragma once

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "rng/Rng_Field.h"

namespace Trel::Rng {

void ExtractSensors(const Packet& packet, const ComKey& key, ComData& data);

}  // namespace Trel::Rng
