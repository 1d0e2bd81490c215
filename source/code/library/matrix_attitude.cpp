#include "library/matrix_attitude.h"

#include <algorithm>
#include <numbers>

#include "library/matrix_support.h"
#include "library/matrix_work.h"

namespace Trel::Lib {

namespace {

// Below this cosine two of three angles turn about one axis and only their sum is known.
constexpr double kSingularCosine = 1e-12;

// About down, right and forward in that order; each turns the later axes into the earlier.
Matrix3 heading_rotation(double heading) {
  const double sine = std::sin(heading);
  const double cosine = std::cos(heading);
  return {{{cosine, -sine, 0}, {sine, cosine, 0}, {0, 0, 1}}};
}

Matrix3 level_rotation(double pitch, double roll) {
  const double sp = std::sin(pitch);
  const double cp = std::cos(pitch);
  const double sr = std::sin(roll);
  const double cr = std::cos(roll);
  return {{{cp, sp * sr, sp * cr}, {0, cr, -sr}, {-sp, cp * sr, cp * cr}}};
}

Matrix3 body_rotation(const Vector3& euler) {
  const Matrix3 heading = heading_rotation(euler[0]);
  const Matrix3 level = level_rotation(euler[1], euler[2]);
  Matrix3 product;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      product[i][j] =
          heading[i][0] * level[0][j] + heading[i][1] * level[1][j] + heading[i][2] * level[2][j];
    }
  }
  return product;
}

// R = rotation(euler).
template <class Rotation>
int rotation_of(RealMatrix* c, const RealMatrix* euler, const Place& place, Rotation rotation) {
  Vector3 angles;
  int code = load(angles, euler);
  if (code == kSuccess) code = store(c, rotation(angles));
  return code == kSuccess ? kSuccess : refuse(code, place);
}

// R = value(A), both vectors of three.
template <class Value>
int vector_of(RealMatrix* r, const RealMatrix* a, const Place& place, Value value) {
  Vector3 elements;
  int code = load(elements, a);
  if (code == kSuccess) code = store(r, value(elements));
  return code == kSuccess ? kSuccess : refuse(code, place);
}

}  // namespace

int Euler2DirCos(RealMatrix* c, const RealMatrix* euler) {
  return rotation_of(c, euler, TREL_HERE, body_rotation);
}

int Euler2DirCos2(RealMatrix* c, const RealMatrix* euler) {
  return rotation_of(c, euler, TREL_HERE,
                     [](const Vector3& angles) { return level_rotation(angles[1], angles[2]); });
}

int Euler2DirCosH(RealMatrix* c, const RealMatrix* euler) {
  return rotation_of(c, euler, TREL_HERE,
                     [](const Vector3& angles) { return heading_rotation(angles[0]); });
}

Vector3 euler_angles(const Matrix3& m) {
  const double cos_pitch = std::hypot(m[0][0], m[1][0]);
  const double pitch = std::atan2(-m[2][0], cos_pitch);
  if (cos_pitch <= kSingularCosine) return {std::atan2(-m[0][1], m[1][1]), pitch, 0};
  const double heading = std::atan2(m[1][0], m[0][0]);
  // Roll from what is left with heading taken off stays exact however steep the pitch is.
  const double sine = std::sin(heading);
  const double cosine = std::cos(heading);
  const double roll =
      std::atan2(sine * m[0][2] - cosine * m[1][2], cosine * m[1][1] - sine * m[0][1]);
  return {heading, pitch, roll};
}

int DirCos2Euler(RealMatrix* euler, const RealMatrix* c) {
  Matrix3 m;
  int code = load(m, c);
  if (code == kSuccess) code = store(euler, euler_angles(m));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

void set_rotation(Matrix& m, const Triple& angles) {
  const Matrix3 rotation = body_rotation({angles.x, angles.y, angles.z});
  m.rows = m.cols = 3;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) m(i, j) = rotation[i][j];
  }
}

Triple angles_of(const Matrix& m) {
  const Vector3 angles = euler_angles(
      {{{m(0, 0), m(0, 1), m(0, 2)}, {m(1, 0), m(1, 1), m(1, 2)}, {m(2, 0), m(2, 1), m(2, 2)}}});
  return {angles[0], angles[1], angles[2]};
}

int Incline2Euler(RealMatrix* euler, const RealMatrix* incline) {
  constexpr double kRightAngle = std::numbers::pi / 2;
  constexpr double kTolerance = 1e-9;
  Vector3 given;
  if (const int code = load(given, incline)) return refuse(code, TREL_HERE);
  const double pitch = given[1];
  const double fall = given[2];
  if (std::fabs(pitch) + std::fabs(fall) > kRightAngle + kTolerance) {
    return refuse(kOutOfRange, TREL_HERE);
  }
  const double cos_pitch = std::cos(pitch);
  double roll = 0;
  if (cos_pitch > kSingularCosine) {
    roll = std::asin(std::clamp(std::sin(fall) / cos_pitch, -1.0, 1.0));
  }
  const int code = store(euler, Vector3{given[0], pitch, roll});
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int Euler2LPS(RealMatrix* lps, const RealMatrix* euler) {
  return vector_of(lps, euler, TREL_HERE, [](const Vector3& angles) {
    // Mapping axes (east, north, up) from image axes (forward, left, up).
    const Matrix3 c = body_rotation(angles);
    const Matrix3 m = {{{c[1][0], -c[1][1], -c[1][2]},
                        {c[0][0], -c[0][1], -c[0][2]},
                        {-c[2][0], c[2][1], c[2][2]}}};
    const double cos_phi = std::hypot(m[1][2], m[2][2]);
    const double phi = std::atan2(m[0][2], cos_phi);
    if (cos_phi <= kSingularCosine) return Vector3{0, phi, std::atan2(m[1][0], m[1][1])};
    const double omega = std::atan2(-m[1][2], m[2][2]);
    const double sine = std::sin(omega);
    const double cosine = std::cos(omega);
    const double kappa =
        std::atan2(cosine * m[1][0] + sine * m[2][0], cosine * m[1][1] + sine * m[2][1]);
    return Vector3{omega, phi, kappa};
  });
}

int Vec2SkewSym(RealMatrix* r, const RealMatrix* a) {
  return rotation_of(r, a, TREL_HERE, [](const Vector3& v) {
    return Matrix3{{{0, -v[2], v[1]}, {v[2], 0, -v[0]}, {-v[1], v[0], 0}}};
  });
}

int Vec2Diag(RealMatrix* r, const RealMatrix* a) {
  if (const int code = argument_code(a)) return refuse(code, TREL_HERE);
  if (!is_vector(*a)) return refuse(kOutOfRange, TREL_HERE);
  const Operand elements = column(*a);
  Result result(r, elements.rows, elements.rows, {Extent(*a)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, elements.rows, elements.rows,
       [&](int i, int j) { return i == j ? elements(i, 0) : 0.0; });
  return result.commit();
}

int attitude_from_sensed_accel(RealMatrix* euler, const RealMatrix* accel) {
  Vector3 a;
  if (const int code = load(a, accel)) return refuse(code, TREL_HERE);
  if (a[0] == 0 && a[1] == 0 && a[2] == 0) return refuse(kOutOfRange, TREL_HERE);
  // At rest the unit senses the support against gravity, which points up: (0, 0, -1) level.
  const double across = std::hypot(a[1], a[2]);
  const double roll = across > 0 ? std::atan2(-a[1], -a[2]) : 0;
  const int code = store(euler, Vector3{0, std::atan2(a[0], across), roll});
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int cartesian2sphericalRV(RealMatrix* r, const RealMatrix* v) {
  return vector_of(r, v, TREL_HERE, [](const Vector3& p) {
    const double level = std::hypot(p[0], p[1]);
    const double azimuth = level > 0 ? std::atan2(p[1], p[0]) : 0;
    const double elevation = std::atan2(p[2], level);
    return Vector3{length(p), azimuth, elevation};
  });
}

}  // namespace Trel::Lib
