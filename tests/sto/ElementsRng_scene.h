// The scene behind the range elements: a hunter that leans sees four targets that lean too, each in
// another pose, with other ranges and another outline.
//
// The numbers that its packets carry stand here, and all that is worked out of them, by plain
// geometry. t is the target, from 1 on, and `vehicle` the hunter (0) or a target; lengths are in
// metres and angles in degrees where nothing else is said.
#pragma once

#include <cmath>
#include <cstdint>

#include "Elements.h"

namespace Trel::Sto::Test {

inline constexpr int kTargets = 4;

// ---- Geometry: turns about the axes forward, right and down, in degrees.

struct Vector {
  double x = 0, y = 0, z = 0;
};
inline double sine(double degrees) {
  return std::sin(degrees / kDegrees);
}
inline double cosine(double degrees) {
  return std::cos(degrees / kDegrees);
}
inline Vector headed(const Vector& v, double heading) {
  return {v.x * cosine(heading) - v.y * sine(heading), v.x * sine(heading) + v.y * cosine(heading),
          v.z};
}
inline Vector pitched(const Vector& v, double pitch) {
  return {v.x * cosine(pitch) + v.z * sine(pitch), v.y, v.z * cosine(pitch) - v.x * sine(pitch)};
}
inline Vector rolled(const Vector& v, double roll) {
  return {v.x, v.y * cosine(roll) - v.z * sine(roll), v.y * sine(roll) + v.z * cosine(roll)};
}

inline double half_turn(double degrees) {
  return std::remainder(degrees, 360);
}
inline double full_turn(double degrees) {
  return degrees - 360 * std::floor(degrees / 360);
}

// ---- The scene: poses, in hundredths of a degree and millimetres.

struct Pose {
  int heading, pitch, roll, x, y;
};
inline Pose pose_of(int vehicle) {
  if (vehicle == 0) return {10025, 1250, -775, 12'345, -6'789};
  const int t = vehicle;
  return {2050 + 7500 * t, 300 * t - 1000, 500 - 400 * t, 40'000 * t, 7'500 - 3'210 * t};
}
inline constexpr double kReference = 110;  // the heading of axis X

inline double heading(int vehicle) {
  return pose_of(vehicle).heading * 0.01;
}
inline double pitch(int vehicle) {
  return pose_of(vehicle).pitch * 0.01;
}
inline double roll(int vehicle) {
  return pose_of(vehicle).roll * 0.01;
}
// The direction in the local frame.
inline double direction(int vehicle) {
  return heading(vehicle) - kReference;
}

// Where a point of the vehicle is in the local frame, told from the origin of its outline.
inline Vector placed(int vehicle, const Vector& point) {
  const Vector level = pitched(rolled(point, roll(vehicle)), pitch(vehicle));
  const Vector turned = headed(level, direction(vehicle));
  return {pose_of(vehicle).x * 1e-3 + turned.x, pose_of(vehicle).y * 1e-3 + turned.y, 0};
}

// An axis of the target in the hunter's axes: out of the target, and into the hunter.
inline Vector seen_axis(int t, const Vector& axis) {
  const Vector out = headed(pitched(rolled(axis, roll(t)), pitch(t)), heading(t) - heading(0));
  return rolled(pitched(out, -pitch(0)), -roll(0));
}
// The attitude of which axes forward, right and down are told so.
inline double relative_heading(int t) {
  const Vector forward = seen_axis(t, {1, 0, 0});
  return std::atan2(forward.y, forward.x) * kDegrees;
}
inline double relative_pitch(int t) {
  return -std::asin(seen_axis(t, {1, 0, 0}).z) * kDegrees;
}
inline double relative_roll(int t) {
  return std::atan2(seen_axis(t, {0, 1, 0}).z, seen_axis(t, {0, 0, 1}).z) * kDegrees;
}

// ---- Outlines: the hunter's in millimetres, the targets' in tenths of that.

inline int corners_of(int vehicle) {
  return 5 + vehicle;
}
struct Corner {
  int ahead, right;
};
inline Corner raw_corner(int vehicle, int i) {
  return {(vehicle == 0 ? 4'100 : 25'678 + 1'000 * vehicle) - 1'150 * i,
          (i % 2 == 0 ? -1'010 : 1'340) + 10 * vehicle + i};
}
inline Vector corner(int vehicle, int i) {
  const Corner raw = raw_corner(vehicle, i);
  const double step = vehicle == 0 ? 1e-3 : 1e-4;
  return {raw.ahead * step, raw.right * step, 0};
}
// The nearest points: between a left corner and the next one, `share` counts of 0.004 from it. By
// kind: of the target's outline to the hunter's point, of the hunter's to the target's point, of
// the target's to the hunter's outline, of the hunter's to the target's outline.
inline int left_of(int t, int kind) {
  return (t + kind) % 4;
}
inline int share_of(int t, int kind) {
  return 40 * t + 5 * kind;
}
inline Vector nearest(int t, int kind) {
  const int vehicle = kind % 2 == 0 ? t : 0;
  const double share = share_of(t, kind) * 0.004;
  const Vector from = placed(vehicle, corner(vehicle, left_of(t, kind)));
  const Vector to = placed(vehicle, corner(vehicle, left_of(t, kind) + 1));
  return {from.x + share * (to.x - from.x), from.y + share * (to.y - from.y), 0};
}

// Between the centres of the rectangles around the outlines.
inline Vector centre(int vehicle) {
  Vector least = corner(vehicle, 0);
  Vector most = least;
  for (int i = 1; i < corners_of(vehicle); ++i) {
    const Vector next = corner(vehicle, i);
    least = {std::fmin(least.x, next.x), std::fmin(least.y, next.y), 0};
    most = {std::fmax(most.x, next.x), std::fmax(most.y, next.y), 0};
  }
  return placed(vehicle, {(least.x + most.x) / 2, (least.y + most.y) / 2, 0});
}
inline double centre_distance(int t) {
  return std::hypot(centre(t).x - centre(0).x, centre(t).y - centre(0).y);
}

// ---- Ranges, as they go with the seconds s: the longitudinal one t (s - t) (s - t - 6) m, the
// lateral one -t (s - t - 1/2) (s + 2) m.

inline double lon(int t, double s = 0) {
  return t * (s - t) * (s - t - 6);
}
inline double lat(int t, double s = 0) {
  return -t * (s - t - 0.5) * (s + 2);
}
// The factors of s and of its square.
inline double lon_rate(int t) {
  return -t * (2.0 * t + 6);
}
inline double lat_rate(int t) {
  return t * (t - 1.5);
}
inline double lon_change(int t) {
  return 2.0 * t;
}
inline double lat_change(int t) {
  return -2.0 * t;
}
inline double distance(int t, double s = 0) {
  return std::hypot(lon(t, s), lat(t, s));
}
inline double bearing(int t) {
  return std::atan2(lat(t), lon(t)) * kDegrees;
}
// By differences, over a second's share that leaves six digits.
inline double distance_rate(int t) {
  return (distance(t, 1e-4) - distance(t, -1e-4)) / 2e-4;
}
inline double distance_change(int t) {
  return (distance(t, 1e-3) - 2 * distance(t) + distance(t, -1e-3)) / 1e-6;
}
inline double forward_speed(int t) {
  return 10.0 + t;
}

// ---- Measure points, and units: metres in the local frame.

inline Vector hunter_point(int t) {
  return {15.0 + t, -4.5 - t, 0};
}
inline Vector target_point(int t) {
  return {41.0 * t, 5.5 - 3 * t, 0};
}
inline Vector hunter_unit() {
  return {13.75, -8.25, 0};
}
inline Vector target_unit(int t) {
  return {40.5 * t, 6.25 - 3 * t, 0};
}
// The ends of the two components of the range, from the hunter's point.
inline Vector lon_end(int t) {
  const Vector arm = headed({lon(t), 0, 0}, direction(0));
  return {hunter_point(t).x + arm.x, hunter_point(t).y + arm.y, 0};
}
inline Vector lat_end(int t) {
  const Vector arm = headed({0, lat(t), 0}, direction(0));
  return {hunter_point(t).x + arm.x, hunter_point(t).y + arm.y, 0};
}
// The hunter's point, in axes along the target's direction and to its right.
inline double beside_target(int t) {
  const Vector apart = {hunter_point(t).x - target_point(t).x,
                        hunter_point(t).y - target_point(t).y, 0};
  return headed(apart, -direction(t)).y;
}

// ---- Sensors of the hunter: ten numbers each, in steps of 0.0001 m or degrees, and a name.

inline constexpr int kSensors = 3;
enum Sensing {
  kLon,
  kLat,
  kVert,
  kHeading,
  kPitch,
  kRoll,
  kFovHoriz,
  kFovVert,
  kRangeMin,
  kRangeMax
};
inline int raw_sensor(int what, int i) {
  constexpr int kFirst[] = {31'000, -2'000,  -4'000,  -350'000, 90'000,
                            12'000, 400'000, 100'000, 10'000,   1'500'000};
  constexpr int kStep[] = {-20'000, 7'000,  -1'500, 450'000, -70'000,
                           33'000,  11'000, 21'000, 3'000,   -250'000};
  return kFirst[what] + kStep[what] * i;
}
inline double sensing(int what, int i) {
  return raw_sensor(what, i) * 0.0001;
}
inline std::uint64_t sensor_name(int i) {
  return 0x8877665544332211U + static_cast<std::uint64_t>(i);
}
// Where a sensor is in the local frame, and the point `range` metres ahead of it.
inline Vector sensor_place(int i, double range = 0) {
  const Vector sight = headed(pitched({range, 0, 0}, sensing(kPitch, i)), sensing(kHeading, i));
  return placed(
      0, {sensing(kLon, i) + sight.x, sensing(kLat, i) + sight.y, sensing(kVert, i) + sight.z});
}
// What a sensor says of a target.
inline int seen_distance(int t, int i) {
  return 1'234'567 * t + 1'111 * i;  // mm
}
inline int seen_well(int t, int i) {
  return 20 * t + i;
}
inline int seen_share(int t, int i) {
  return 15 * t + 3 * i;
}

}  // namespace Trel::Sto::Test
