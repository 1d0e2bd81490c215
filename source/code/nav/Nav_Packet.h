// Where the fields of a navigation packet stand, up to the status channel, and how they are read.
//
// Both families have these fields. A field whose raw number says that there is none gives false.
#pragma once

#include <array>
#include <cmath>

#include "library/Lib_Cast.h"
#include "nav/Nav_Scale.h"

namespace Trel::Nav {

inline constexpr unsigned int kTimeAt = 1;      // unsigned 16, milliseconds in the minute
inline constexpr unsigned int kAccAt = 3;       // three signed 24
inline constexpr unsigned int kAngVelAt = 12;   // three signed 24
inline constexpr unsigned int kStatusAt = 21;   // NAVIGATION_STATUS
inline constexpr unsigned int kExtraAt = 22;    // the kind of an extra packet
inline constexpr unsigned int kPosAt = 23;      // two real 64, one real 32
inline constexpr unsigned int kVelAt = 43;      // three signed 24
inline constexpr unsigned int kAngPosAt = 52;   // three signed 24
inline constexpr unsigned int kFixedSize = 61;  // what both families have ends here

inline constexpr int kNoTime = 65535;
inline constexpr int kNoFix24 = -8388608;

// What is held of a raw number of rate and angle: degrees.
inline constexpr double kRateFactor = ComScales::RATE2RPS * kDegreesPerRadian;
inline constexpr double kAngleFactor = ComScales::ANG2RAD * kDegreesPerRadian;
static_assert(kRateFactor == 0.0005729577951308233 && kAngleFactor == 5.729577951308232e-5);

[[nodiscard]] constexpr int packet_time(const unsigned char* packet) {
  return cast_2_byte_LE_to_uint16(packet + kTimeAt);
}

// The raw number of one of three axes; false for kNoFix24.
[[nodiscard]] constexpr bool read_axis(const unsigned char* axes, unsigned int axis, int& raw) {
  raw = cast_3_byte_LE_to_int32(axes + 3 * axis);
  return raw != kNoFix24;
}
// The same as a quantity.
[[nodiscard]] constexpr bool read_axis(const unsigned char* axes, unsigned int axis, double factor,
                                       double& value) {
  int raw = 0;
  if (!read_axis(axes, axis, raw)) return false;
  value = raw * factor;
  return true;
}

// Latitude and longitude in degrees and the altitude in metres, by index; false if not finite.
[[nodiscard]] inline bool read_position(const unsigned char* packet, unsigned int index,
                                        double& value) {
  const unsigned char* p = packet + kPosAt + 8 * index;
  value = index < 2 ? cast_8_byte_LE_to_real64(p) * kDegreesPerRadian : cast_4_byte_LE_to_real32(p);
  return std::isfinite(value);
}

// A heading between 0 and 360 degrees, from one between -180 and 180.
[[nodiscard]] constexpr double wrap_heading(double heading) {
  return heading < 0.0 ? heading + 360.0 : heading;
}

}  // namespace Trel::Nav
