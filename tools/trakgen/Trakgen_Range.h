// RCom streams: what a range unit measures from the hunter to its targets, usually at 100 steps a
// second.
//
// Each step has a packet of lane data and one of range data for each target; outlines and sensors
// follow once a second. The slow channels go round in a cycle, of which neither the minutes nor the
// offset to UTC are the first, so the first packets have no absolute time of their own. All agrees
// with the scene of Trakgen_RangeScene.h.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "support/Support_Recording.h"
#include "trakgen/Trakgen_Shape.h"

namespace Trel::Trakgen {

// Steps per second. Range units count time in steps of ten milliseconds, and the packets that come
// once a second take up to six steps of it.
inline constexpr std::uint64_t kRangeRate = 100;
[[nodiscard]] constexpr bool is_range_rate(std::uint64_t rate) {
  return rate >= 10 && kRangeRate % rate == 0;
}

// A recording of 1 to RangeScene::kTargets targets. The NCom stream of the hunter has the serial
// number `first_ncom`, and those of the targets the next ones. The packets are as a recording has
// them.
[[nodiscard]] std::unique_ptr<StreamShape> make_range_shape(unsigned int targets,
                                                            std::uint32_t first_ncom);

// The role of a vehicle's NCom stream beside the range stream of that serial number, for its
// header.
[[nodiscard]] Support::RecordingStream::Items range_role(unsigned int vehicle, std::uint32_t rcom);

// The network address of a vehicle's inertial unit, its first part lowest.
[[nodiscard]] std::uint32_t unit_address(unsigned int vehicle);

// A bare NCom packet of a vehicle as a raw file of range data has it.
[[nodiscard]] Support::Bytes wrapped_packet(unsigned int vehicle,
                                            std::span<const unsigned char> packet);

}  // namespace Trel::Trakgen
