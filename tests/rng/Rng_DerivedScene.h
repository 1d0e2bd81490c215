// Hunter and target placed for the computed outputs: headings in degrees, places in metres, in the
// local frame whose axis X has the scene's reference heading.
#pragma once

#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "Rng_Scene.h"

namespace Trel::Rng::Test {

// Metres or degrees by which results may miss.
inline constexpr double kNear = 1e-9;

struct Pose {
  double heading = 0.0;
  double pitch = 0.0;
  double roll = 0.0;
  double x = 0.0;  // of the outline's origin
  double y = 0.0;
};

inline int millis(double metres) {
  return static_cast<int>(std::lround(metres * 1000));
}
inline short hundredths(double degrees) {
  return static_cast<short>(std::lround(degrees * 100));
}

inline RangePacket placed(const Pose& hunter, const Pose& target) {
  return RangePacket(2)
      .target(1, 1)
      .u16(36, static_cast<unsigned short>(hundredths(hunter.heading)))
      .u16(38, static_cast<unsigned short>(hundredths(target.heading)))
      .i32(74, millis(hunter.x))
      .i32(78, millis(hunter.y))
      .i32(82, millis(target.x))
      .i32(86, millis(target.y))
      .i16(106, hundredths(hunter.pitch))
      .i16(108, hundredths(hunter.roll))
      .i16(110, hundredths(target.pitch))
      .i16(112, hundredths(target.roll));
}

using Corners = std::vector<std::pair<double, double>>;

// The outline of the hunter (0) or a target: ahead and to the right of its origin, in metres.
inline RangePacket outline(unsigned char vehicle, const Corners& corners) {
  RangePacket packet(5);
  packet.resize(10).u8(6, vehicle).u8(7, static_cast<unsigned char>(corners.size()));
  packet.u8(9, static_cast<unsigned char>(corners.size() - 1));
  for (const auto& [ahead, right] : corners) {
    packet.append(Support::little(millis(ahead), 2)).append(Support::little(millis(right), 2));
  }
  return packet;
}

inline Scene& reference(Scene& scene, double heading) {
  scene.main().Set_Hunter_RefHeading(heading);
  return scene;
}

}  // namespace Trel::Rng::Test
