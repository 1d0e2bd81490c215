// CAN streams: what the control units of the vehicle tell each other, a batch of frames a step.
//
// The database has both byte orders, real and whole numbers, fields across bytes, extended
// identifiers, a multiplexed message, frames of up to 64 bytes and an empty one; one frame a second
// is not in it. Times are counted from power-on until the device learns the GPS time, five
// seconds into the recording.
#pragma once

#include <memory>

#include "trakgen/Trakgen_Shape.h"

namespace Trel::Trakgen {

[[nodiscard]] std::unique_ptr<StreamShape> make_can_shape();

}  // namespace Trel::Trakgen
