// NCom and MCom streams: what the inertial unit in the vehicle or the vessel says, a packet a step.
//
// The unit initialises, locks and stays locked; it sends its slow data in a cycle of status
// channels. The minutes are not the first of them, so the packets ahead of those have no absolute
// time of their own. A vessel takes the drive over water: its unit tells the heave on top.
#pragma once

#include <memory>
#include <span>

#include "trakgen/Trakgen_Shape.h"

namespace Trel::Trakgen {

// A rate at which all packets fall on whole milliseconds, which is all that they can tell.
[[nodiscard]] constexpr bool is_nav_rate(std::uint64_t rate) {
  return rate != 0 && 1000 % rate == 0;
}

// The packets are as a recording has them.
[[nodiscard]] std::unique_ptr<StreamShape> make_ncom_shape();
[[nodiscard]] std::unique_ptr<StreamShape> make_mcom_shape();

// What of such a packet a raw file has.
[[nodiscard]] std::span<const unsigned char> bare_packet(std::span<const unsigned char> packet);

}  // namespace Trel::Trakgen
