#include <cmath>

#include "library/ecef.h"
#include "library/ecef_support.h"

namespace Trel::Lib {

namespace {

constexpr double kSemiMajorAxis = 6378137.0;
constexpr double kEccentricity = 0.0818191908426;
constexpr double kPolarNumerator = 6335439.327292843;  // a (1 - e squared)
constexpr double kEarthRate = 7.292115e-5;             // of WGS84, in radians per second
constexpr double kLowestAltitude = -6.0e6;

struct Radii {
  double meridian;
  double transverse;
};

Radii curvature(double lat) {
  const double share = kEccentricity * std::sin(lat);
  const double w = std::sqrt(1 - share * share);
  return {kPolarNumerator / (w * w * w), kSemiMajorAxis / w};
}

int altitude_code(double alt) {
  return std::isfinite(alt) && alt > kLowestAltitude ? kSuccess : kOutOfRange;
}

int place_code(double lat, double alt) {
  const int code = latitude_code(lat);
  return code == kSuccess ? altitude_code(alt) : code;
}

double gravity_magnitude(double lat, double alt) {
  constexpr double kAtEquator = 9.780318;
  constexpr double kOfSquare = 0.0053024;
  constexpr double kOfDoubleSquare = -5.9e-06;
  constexpr double kMeanRadius = 6367435.68;
  const double sine = std::sin(lat);
  const double double_sine = std::sin(2 * lat);
  const double fall = kMeanRadius / (kMeanRadius + alt);
  return kAtEquator * (1 + kOfSquare * sine * sine + kOfDoubleSquare * double_sine * double_sine) *
         fall * fall;
}

Vector3 earth_rate(double lat) {
  return {kEarthRate * std::cos(lat), 0, -kEarthRate * std::sin(lat)};
}

// The rate at which local axes turn; the code with which its arguments are refused.
int transport_rate(Vector3& rate, const GeodeticPosition* position, const Vector3& velocity) {
  constexpr double kNearestPole = 1e-8;
  if (const int code = position_code(position)) return code;
  if (const int code = altitude_code(position->alt)) return code;
  const double cos_lat = std::cos(position->lat);
  if (cos_lat < kNearestPole) return kIllConditioned;
  const Radii radii = curvature(position->lat);
  const double east = velocity[1] / (radii.transverse + position->alt);
  const double north = velocity[0] / (radii.meridian + position->alt);
  rate = {east, -north, -east * std::sin(position->lat) / cos_lat};
  return kSuccess;
}

struct Corrections {
  Vector3 acceleration;
  Vector3 rate;
};

int corrections_code(Corrections& corrections, const GeodeticPosition* position,
                     const RealMatrix* velocity) {
  Vector3 v;
  Vector3 transport;
  if (const int code = load(v, velocity)) return code;
  if (const int code = transport_rate(transport, position, v)) return code;
  const Vector3 earth = earth_rate(position->lat);
  Vector3 turning;
  for (int i = 0; i < 3; ++i) {
    turning[i] = 2 * earth[i] + transport[i];
    corrections.rate[i] = -(earth[i] + transport[i]);
  }
  const Vector3 coriolis = cross(turning, v);
  const double gravity = gravity_magnitude(position->lat, position->alt);
  corrections.acceleration = {-coriolis[0], -coriolis[1], gravity - coriolis[2]};
  return kSuccess;
}

// Writes both columns or none.
int store_pair(RealMatrix* first, const Vector3& first_value, RealMatrix* second,
               const Vector3& second_value) {
  if (const int code = result_code(first, 3, 1)) return code;
  if (const int code = result_code(second, 3, 1)) return code;
  store(first, first_value);
  return store(second, second_value);
}

Vector3 corrected(const Matrix3& c, const Vector3& sensed, const Vector3& correction) {
  const Vector3 turned = multiply(c, sensed);
  return {turned[0] + correction[0], turned[1] + correction[1], turned[2] + correction[2]};
}

int apply(RealMatrix* r, const RealMatrix* c, const RealMatrix* sensed,
          const RealMatrix* correction, const Place& place) {
  Matrix3 rotation;
  Vector3 body;
  Vector3 added;
  int code = load(rotation, c);
  if (code == kSuccess) code = load(body, sensed);
  if (code == kSuccess) code = load(added, correction);
  if (code == kSuccess) code = store(r, corrected(rotation, body, added));
  return code == kSuccess ? kSuccess : refuse(code, place);
}

}  // namespace

int Lib__compute_local_gravity_magnitude(double* gravity, double lat, double alt) {
  if (gravity == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = place_code(lat, alt)) return refuse(code, TREL_HERE);
  *gravity = gravity_magnitude(lat, alt);
  return kSuccess;
}

int Lib__compute_local_gravity(RealMatrix* gravity, double lat, double alt) {
  int code = place_code(lat, alt);
  if (code == kSuccess) code = store(gravity, Vector3{0, 0, gravity_magnitude(lat, alt)});
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int Lib__compute_earth_curvature(double* meridian, double* transverse, double lat) {
  if (meridian == nullptr || transverse == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = latitude_code(lat)) return refuse(code, TREL_HERE);
  const Radii radii = curvature(lat);
  *meridian = radii.meridian;
  *transverse = radii.transverse;
  return kSuccess;
}

int Lib__compute_earth_local_projection(RealMatrix* rate, double lat) {
  int code = latitude_code(lat);
  if (code == kSuccess) code = store(rate, earth_rate(lat));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int Lib__compute_transport_rate(RealMatrix* rate, const GeodeticPosition* position,
                                const RealMatrix* velocity) {
  Vector3 v;
  Vector3 transport;
  int code = load(v, velocity);
  if (code == kSuccess) code = transport_rate(transport, position, v);
  if (code == kSuccess) code = store(rate, transport);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int Lib__compute_imu_b2n_corrections(RealMatrix* acceleration, RealMatrix* rate,
                                     const GeodeticPosition* position, const RealMatrix* velocity) {
  Corrections corrections;
  int code = corrections_code(corrections, position, velocity);
  if (code == kSuccess) {
    code = store_pair(acceleration, corrections.acceleration, rate, corrections.rate);
  }
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int Lib__apply_imu_b2n_corrections_a(RealMatrix* r, const RealMatrix* c, const RealMatrix* a,
                                     const RealMatrix* correction) {
  return apply(r, c, a, correction, TREL_HERE);
}

int Lib__apply_imu_b2n_corrections_w(RealMatrix* r, const RealMatrix* c, const RealMatrix* w,
                                     const RealMatrix* correction) {
  return apply(r, c, w, correction, TREL_HERE);
}

int Lib__compute_and_apply_imu_b2n_corrections(RealMatrix* acceleration, RealMatrix* rate,
                                               const RealMatrix* c, const RealMatrix* a,
                                               const RealMatrix* w,
                                               const GeodeticPosition* position,
                                               const RealMatrix* velocity) {
  Corrections corrections;
  Matrix3 rotation;
  Vector3 sensed_acceleration;
  Vector3 sensed_rate;
  int code = corrections_code(corrections, position, velocity);
  if (code == kSuccess) code = load(rotation, c);
  if (code == kSuccess) code = load(sensed_acceleration, a);
  if (code == kSuccess) code = load(sensed_rate, w);
  if (code == kSuccess) {
    code =
        store_pair(acceleration, corrected(rotation, sensed_acceleration, corrections.acceleration),
                   rate, corrected(rotation, sensed_rate, corrections.rate));
  }
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

}  // namespace Trel::Lib
