// Angles in degrees, in which values are held, and radians, in which the mathematics works.
#pragma once

namespace Trel::Lib {

inline constexpr double kDegreesPerRadian = 57.29577951308232;
inline constexpr double kRadiansPerDegree = 0.017453292519943295;

// Degrees, less or plus a turn where they lie above 180 or at or below -180.
[[nodiscard]] constexpr double wrapped(double degrees) {
  if (degrees > 180.0) return degrees - 360.0;
  if (degrees <= -180.0) return degrees + 360.0;
  return degrees;
}

}  // namespace Trel::Lib
