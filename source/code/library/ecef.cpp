#include "library/ecef.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "library/ecef_support.h"

namespace Trel::Lib {

int position_code(const EcefPosition* xyz) {
  if (xyz == nullptr) return kNullPointer;
  return std::isfinite(length({xyz->x, xyz->y, xyz->z})) ? kSuccess : kOutOfRange;
}

int latitude_code(double lat) {
  // What comes of 90 degrees may lie a rounding beyond the right angle.
  constexpr double kMost = std::numbers::pi / 2 + 1e-12;
  return std::fabs(lat) <= kMost ? kSuccess : kOutOfRange;
}

int position_code(const GeodeticPosition* llh) {
  if (llh == nullptr) return kNullPointer;
  return all_finite(llh->lon, llh->alt) ? latitude_code(llh->lat) : kOutOfRange;
}

Matrix3 ned_rotation(double lat, double lon) {
  const double sin_lat = std::sin(lat);
  const double cos_lat = std::cos(lat);
  const double sin_lon = std::sin(lon);
  const double cos_lon = std::cos(lon);
  return {{{-sin_lat * cos_lon, -sin_lat * sin_lon, cos_lat},
           {-sin_lon, cos_lon, 0},
           {-cos_lat * cos_lon, -cos_lat * sin_lon, -sin_lat}}};
}

namespace {

constexpr int kWgs84 = 0;

bool is_centre(const EcefPosition& xyz) {
  return xyz.x == 0 && xyz.y == 0 && xyz.z == 0;
}

// Bowring's iteration on the reduced latitude. Outside the core each step gains several digits, so
// the limit on steps is met only inside it, where no latitude need exist.
GeodeticPosition geodetic(const EcefPosition& xyz, const std::array<double, 4>& ellipsoid) {
  constexpr double kLatitudeChange = 1e-15;
  constexpr double kAltitudeChange = 0.01;
  constexpr int kMostSteps = 20;
  const auto [a, e, a_e_squared, one_less_e_squared] = ellipsoid;
  const double axis_ratio = std::sqrt(one_less_e_squared);
  const double axis_distance = std::hypot(xyz.x, xyz.y);

  GeodeticPosition llh;
  llh.lon = axis_distance > 0 ? std::atan2(xyz.y, xyz.x) : 0;
  llh.lat = std::atan2(xyz.z, one_less_e_squared * axis_distance);
  for (int step = 0; step < kMostSteps; ++step) {
    const double reduced = std::atan2(axis_ratio * std::sin(llh.lat), std::cos(llh.lat));
    const double sine = std::sin(reduced);
    const double cosine = std::cos(reduced);
    const double inward = axis_distance - a_e_squared * cosine * cosine * cosine;
    const double lat =
        std::atan2(xyz.z + a_e_squared / axis_ratio * sine * sine * sine, std::max(inward, 0.0));
    const double sin_lat = std::sin(lat);
    const double alt = axis_distance * std::cos(lat) + xyz.z * sin_lat -
                       a * std::sqrt(1 - e * e * sin_lat * sin_lat);
    const bool settled =
        std::fabs(lat - llh.lat) <= kLatitudeChange && std::fabs(alt - llh.alt) <= kAltitudeChange;
    llh.lat = lat;
    llh.alt = alt;
    if (settled) break;
  }
  return llh;
}

EcefPosition cartesian(const GeodeticPosition& llh) {
  const auto [a, e, a_e_squared, one_less_e_squared] = ellipsoids[kWgs84];
  const double sin_lat = std::sin(llh.lat);
  const double cos_lat = std::cos(llh.lat);
  const double normal = a / std::sqrt(1 - e * e * sin_lat * sin_lat);
  return {(normal + llh.alt) * cos_lat * std::cos(llh.lon),
          (normal + llh.alt) * cos_lat * std::sin(llh.lon),
          (normal * one_less_e_squared + llh.alt) * sin_lat};
}

}  // namespace

int Ecef2Wgs84(GeodeticPosition* llh, const EcefPosition* xyz) {
  if (llh == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = position_code(xyz)) return refuse(code, TREL_HERE);
  if (is_centre(*xyz)) return refuse(kOutOfRange, TREL_HERE);
  *llh = geodetic(*xyz, ellipsoids[kWgs84]);
  return kSuccess;
}

int Wgs842Ecef(EcefPosition* xyz, const GeodeticPosition* llh) {
  if (xyz == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = position_code(llh)) return refuse(code, TREL_HERE);
  *xyz = cartesian(*llh);
  return kSuccess;
}

int Xyz2Llh(GeodeticPosition* llh, const EcefPosition* xyz, int ellipsoid) {
  if (llh == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = position_code(xyz)) return refuse(code, TREL_HERE);
  if (ellipsoid < 0 || ellipsoid >= static_cast<int>(ellipsoids.size())) {
    return refuse(kOutOfRange, TREL_HERE);
  }
  if (is_centre(*xyz)) return -1;
  *llh = geodetic(*xyz, ellipsoids[ellipsoid]);
  return kSuccess;
}

namespace {

constexpr EcefPosition kPz90Offset = {0.36, -0.08, -0.18};

}  // namespace

int Wgs842PZ90(EcefPosition* pz90, const EcefPosition* wgs84) {
  if (pz90 == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = position_code(wgs84)) return refuse(code, TREL_HERE);
  *pz90 = {wgs84->x + kPz90Offset.x, wgs84->y + kPz90Offset.y, wgs84->z + kPz90Offset.z};
  return kSuccess;
}

int PZ902Wgs84(EcefPosition* wgs84, const EcefPosition* pz90) {
  if (wgs84 == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = position_code(pz90)) return refuse(code, TREL_HERE);
  *wgs84 = {pz90->x - kPz90Offset.x, pz90->y - kPz90Offset.y, pz90->z - kPz90Offset.z};
  return kSuccess;
}

namespace {

// The seven parameters of a row of `frames` at one time, in metres and plain ratios.
struct Transformation {
  std::array<double, 3> translation;
  double scale;
  std::array<double, 3> rotation;
};

Transformation transformation(const std::array<double, 15>& row, double time) {
  constexpr double kMillimetre = 1e-3;
  constexpr double kPartPerBillion = 1e-9;
  constexpr double kMilliarcsecond = 1e-3 / 3600 * std::numbers::pi / 180;
  const auto value = [&](int parameter) {
    return row[1 + parameter] + row[8 + parameter] * (time - row[0]);
  };
  return {{value(0) * kMillimetre, value(1) * kMillimetre, value(2) * kMillimetre},
          value(3) * kPartPerBillion,
          {value(4) * kMilliarcsecond, value(5) * kMilliarcsecond, value(6) * kMilliarcsecond}};
}

// What the transformation adds to `p`.
EcefPosition shift(const Transformation& t, const EcefPosition& p) {
  const auto& [r1, r2, r3] = t.rotation;
  return {t.translation[0] + t.scale * p.x - r3 * p.y + r2 * p.z,
          t.translation[1] + r3 * p.x + t.scale * p.y - r1 * p.z,
          t.translation[2] - r2 * p.x + r1 * p.y + t.scale * p.z};
}

EcefPosition forward(const Transformation& t, const EcefPosition& p) {
  const EcefPosition added = shift(t, p);
  return {p.x + added.x, p.y + added.y, p.z + added.z};
}

// The position that forward() takes to `p`. What it adds depends on that position by a few parts in
// a hundred million, so that each step gains seven digits.
EcefPosition backward(const Transformation& t, const EcefPosition& p) {
  constexpr int kSteps = 4;
  EcefPosition origin = p;
  for (int step = 0; step < kSteps; ++step) {
    const EcefPosition added = shift(t, origin);
    origin = {p.x - added.x, p.y - added.y, p.z - added.z};
  }
  return origin;
}

bool is_frame(int frame) {
  return frame >= 0 && frame < kFrameCount;
}

}  // namespace

int ConvertRefFrame(EcefPosition* xyz, int source, int target, double time) {
  constexpr double kMostYears = 1e4;
  if (const int code = position_code(xyz)) return refuse(code, TREL_HERE);
  if (!is_frame(source) || !is_frame(target) || !(std::fabs(time) <= kMostYears)) {
    return refuse(kOutOfRange, TREL_HERE);
  }
  if (source == target) return kSuccess;
  EcefPosition moved = *xyz;
  if (source != 0) moved = backward(transformation(frames[source], time), moved);
  if (target != 0) moved = forward(transformation(frames[target], time), moved);
  *xyz = moved;
  return kSuccess;
}

namespace {

// Writes the direction of the line from receiver to satellite; the code with which it is refused.
int direction_code(SatelliteDirection* direction, const GeodeticPosition& llh,
                   const EcefPosition& receiver, const EcefPosition& satellite) {
  const Vector3 line = {satellite.x - receiver.x, satellite.y - receiver.y,
                        satellite.z - receiver.z};
  const double distance = length(line);
  if (!std::isfinite(distance) || distance == 0) return kOutOfRange;
  const Vector3 ned = multiply(ned_rotation(llh.lat, llh.lon), line);
  const double level = std::hypot(ned[0], ned[1]);
  double azimuth = level > 0 ? std::atan2(ned[1], ned[0]) : 0;
  if (azimuth < 0) azimuth += 2 * std::numbers::pi;
  if (azimuth >= 2 * std::numbers::pi) azimuth = 0;
  *direction = {azimuth, std::atan2(-ned[2], level)};
  return kSuccess;
}

}  // namespace

int Ecef2SatAngles(SatelliteDirection* direction, const EcefPosition* receiver,
                   const EcefPosition* satellite) {
  if (direction == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = position_code(receiver)) return refuse(code, TREL_HERE);
  if (const int code = position_code(satellite)) return refuse(code, TREL_HERE);
  if (is_centre(*receiver)) return refuse(kOutOfRange, TREL_HERE);
  const GeodeticPosition llh = geodetic(*receiver, ellipsoids[kWgs84]);
  const int code = direction_code(direction, llh, *receiver, *satellite);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int Wgs842SatAngles(SatelliteDirection* direction, const GeodeticPosition* receiver,
                    const EcefPosition* satellite) {
  if (direction == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = position_code(receiver)) return refuse(code, TREL_HERE);
  if (const int code = position_code(satellite)) return refuse(code, TREL_HERE);
  const int code = direction_code(direction, *receiver, cartesian(*receiver), *satellite);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int SatAngles(SatelliteDirection* direction, const GeodeticPosition* receiver_llh,
              const EcefPosition* receiver_xyz, const EcefPosition* satellite) {
  if (direction == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = position_code(receiver_llh)) return refuse(code, TREL_HERE);
  if (const int code = position_code(receiver_xyz)) return refuse(code, TREL_HERE);
  if (const int code = position_code(satellite)) return refuse(code, TREL_HERE);
  const int code = direction_code(direction, *receiver_llh, *receiver_xyz, *satellite);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int Ecef2NedRotation(RealMatrix* c, const GeodeticPosition* llh) {
  int code = position_code(llh);
  if (code == kSuccess) code = store(c, ned_rotation(llh->lat, llh->lon));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

}  // namespace Trel::Lib
