#include "library/quatern.h"

#include <cmath>

#include "library/matrix_support.h"

namespace Trel::Lib {

namespace {

constexpr double kSmallestSquaredNorm = 0.001;

Quaternion product(const Quaternion& a, const Quaternion& b) {
  return {
      a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z, a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
      a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x, a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w};
}

Quaternion conjugate(const Quaternion& a) {
  return {a.w, -a.x, -a.y, -a.z};
}

int argument_code(const Quaternion* q) {
  if (q == nullptr) return kNullPointer;
  return all_finite(q->w, q->x, q->y, q->z) ? kSuccess : kOutOfRange;
}

// Loads Q with its length divided out; the code with which it is refused as a rotation.
int load(Quaternion& unit, const Quaternion* q) {
  if (const int code = argument_code(q)) return code;
  const double squared = q->w * q->w + q->x * q->x + q->y * q->y + q->z * q->z;
  if (!std::isfinite(squared)) return kOutOfRange;
  if (squared <= kSmallestSquaredNorm) return kIllConditioned;
  const double norm = std::sqrt(squared);
  unit = {q->w / norm, q->x / norm, q->y / norm, q->z / norm};
  return kSuccess;
}

int store(Quaternion* r, const Quaternion& value) {
  if (r == nullptr) return kNullPointer;
  *r = value;
  return kSuccess;
}

Matrix3 rotation(const Quaternion& q) {
  return {
      {{1 - 2 * (q.y * q.y + q.z * q.z), 2 * (q.x * q.y - q.w * q.z), 2 * (q.x * q.z + q.w * q.y)},
       {2 * (q.x * q.y + q.w * q.z), 1 - 2 * (q.x * q.x + q.z * q.z), 2 * (q.y * q.z - q.w * q.x)},
       {2 * (q.x * q.z - q.w * q.y), 2 * (q.y * q.z + q.w * q.x),
        1 - 2 * (q.x * q.x + q.y * q.y)}}};
}

// Of the two quaternions of the rotation, the one with the smaller angle counts.
Vector3 rotation_vector(const Quaternion& q) {
  const double sine = length({q.x, q.y, q.z});
  if (sine == 0) return {0, 0, 0};
  const double angle = 2 * std::atan2(sine, std::fabs(q.w));
  const double scale = std::copysign(angle / sine, q.w);
  return {scale * q.x, scale * q.y, scale * q.z};
}

Quaternion from_rotation_vector(const Vector3& v) {
  const double angle = length(v);
  const double scale = angle > 0 ? std::sin(angle / 2) / angle : 0.5;
  return {std::cos(angle / 2), scale * v[0], scale * v[1], scale * v[2]};
}

// The rotation that `rate` makes within `time`; the code with which they are refused.
int from_rate(Quaternion& q, const Vector3& rate, double time) {
  const Vector3 whole = {rate[0] * time, rate[1] * time, rate[2] * time};
  if (!std::isfinite(time) || !std::isfinite(length(whole))) {
    return kOutOfRange;
  }
  q = from_rotation_vector(whole);
  return kSuccess;
}

int rotate(RealMatrix* r, const RealMatrix* a, const Quaternion& q, const Place& place) {
  if (const int code = argument_code(a)) return refuse(code, place);
  if (a->rows != 3) return refuse(kOutOfRange, place);
  const Matrix3 m = rotation(q);
  const Operand source = plain(*a);
  Result result(r, 3, source.cols, {Extent(*a)});
  if (result.code() != kSuccess) return refuse(result.code(), place, result.text());
  fill(result, 3, source.cols, [&](int i, int j) {
    return m[i][0] * source(0, j) + m[i][1] * source(1, j) + m[i][2] * source(2, j);
  });
  return result.commit();
}

}  // namespace

int QuatMultRAB(Quaternion* r, const Quaternion* a, const Quaternion* b) {
  int code = argument_code(a);
  if (code == kSuccess) code = argument_code(b);
  if (code == kSuccess) code = store(r, product(*a, *b));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int QuatCopy(Quaternion* r, const Quaternion* a) {
  int code = argument_code(a);
  if (code == kSuccess) code = store(r, *a);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int QuatConjugate(Quaternion* r, const Quaternion* a) {
  int code = argument_code(a);
  if (code == kSuccess) code = store(r, conjugate(*a));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int QuatIdentity(Quaternion* r) {
  const int code = store(r, Quaternion{});
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int QuatNormalise(Quaternion* q) {
  Quaternion unit;
  if (const int code = load(unit, q)) return refuse(code, TREL_HERE);
  *q = unit;
  return kSuccess;
}

int QuatRotatesMatrixRAQ(RealMatrix* r, const RealMatrix* a, const Quaternion* q) {
  Quaternion unit;
  if (const int code = load(unit, q)) return refuse(code, TREL_HERE);
  return rotate(r, a, unit, TREL_HERE);
}

int QuatRotatesMatrixRAQc(RealMatrix* r, const RealMatrix* a, const Quaternion* q) {
  Quaternion unit;
  if (const int code = load(unit, q)) return refuse(code, TREL_HERE);
  return rotate(r, a, conjugate(unit), TREL_HERE);
}

int QuatInterpolateRABf(Quaternion* r, const Quaternion* a, const Quaternion* b, double fraction) {
  Quaternion from;
  Quaternion to;
  if (const int code = load(from, a)) return refuse(code, TREL_HERE);
  if (const int code = load(to, b)) return refuse(code, TREL_HERE);
  Quaternion part;
  int code = from_rate(part, rotation_vector(product(conjugate(from), to)), fraction);
  if (code == kSuccess) code = store(r, product(from, part));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int QuatAppend(Quaternion* q, const Quaternion* a) {
  int code = argument_code(q);
  if (code == kSuccess) code = argument_code(a);
  if (code == kSuccess) code = store(q, product(*q, *a));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int Quat2DirCos(RealMatrix* c, const Quaternion* q) {
  Quaternion unit;
  int code = load(unit, q);
  if (code == kSuccess) code = store(c, rotation(unit));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int Quat2AngRateRQ(RealMatrix* r, const Quaternion* q, double time) {
  Quaternion unit;
  if (const int code = load(unit, q)) return refuse(code, TREL_HERE);
  if (!std::isfinite(time) || time == 0) return refuse(kOutOfRange, TREL_HERE);
  const Vector3 whole = rotation_vector(unit);
  const Vector3 rate = {whole[0] / time, whole[1] / time, whole[2] / time};
  const bool fits = all_finite(rate[0], rate[1], rate[2]);
  const int code = fits ? store(r, rate) : kOutOfRange;
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int QuatFromAngRateRA(Quaternion* r, const RealMatrix* a, double time) {
  Vector3 rate;
  Quaternion q;
  int code = load(rate, a);
  if (code == kSuccess) code = from_rate(q, rate, time);
  if (code == kSuccess) code = store(r, q);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int Quat2RotVecRQ(RealMatrix* r, const Quaternion* q) {
  Quaternion unit;
  int code = load(unit, q);
  if (code == kSuccess) code = store(r, rotation_vector(unit));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int QuatFromRotVecRA(Quaternion* r, const RealMatrix* a) {
  Vector3 vector;
  Quaternion q;
  int code = load(vector, a);
  if (code == kSuccess) code = from_rate(q, vector, 1);
  if (code == kSuccess) code = store(r, q);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int Quat2EulerRQ(RealMatrix* r, const Quaternion* q) {
  Quaternion unit;
  int code = load(unit, q);
  if (code == kSuccess) code = store(r, euler_angles(rotation(unit)));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int QuatFromEulerRE(Quaternion* r, const RealMatrix* euler) {
  Vector3 angles;
  int code = load(angles, euler);
  if (code == kSuccess) {
    const Quaternion heading{std::cos(angles[0] / 2), 0, 0, std::sin(angles[0] / 2)};
    const Quaternion pitch{std::cos(angles[1] / 2), 0, std::sin(angles[1] / 2), 0};
    const Quaternion roll{std::cos(angles[2] / 2), std::sin(angles[2] / 2), 0, 0};
    code = store(r, product(product(heading, pitch), roll));
  }
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

}  // namespace Trel::Lib
