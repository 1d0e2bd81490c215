// Quaternions of rotation.
//
// A quaternion is scalar first and multiplies by Hamilton's rule. As an attitude it turns body axes
// into navigation axes, v_navigation = q v_body conj(q), as the matrix of Euler2DirCos does; a
// product a b turns first by b, then by a. q and -q are the same rotation. Angles are in radians,
// rates in radians per second; a vector of three is a matrix of one column or one row, a result is
// a column. A rotation vector points along the axis of rotation and is as long as the angle.
//
// A function that reads a rotation out of a quaternion divides its length out first.
//
// Failure: a function returns an ErrorCode and reports it: kNullPointer, kOutOfRange (a number that
// is not finite, a shape that does not fit), kInsufficientSpace, and kIllConditioned for a squared
// norm at or below 0.001 where a rotation is needed. The result is then untouched. Any result may
// share storage with any argument.
#pragma once

#include "library/matrix_record.h"

namespace Trel::Lib {

struct Quaternion {
  double w = 1;
  double x = 0;
  double y = 0;
  double z = 0;
};

// R = A B.
int QuatMultRAB(Quaternion* r, const Quaternion* a, const Quaternion* b);
// R = A.
int QuatCopy(Quaternion* r, const Quaternion* a);
// R = conj(A).
int QuatConjugate(Quaternion* r, const Quaternion* a);
// R = 1, no rotation.
int QuatIdentity(Quaternion* r);
// Divides Q by its norm.
int QuatNormalise(Quaternion* q);

// R = each column of A (three rows, any number of columns) turned by Q, or by conj(Q).
int QuatRotatesMatrixRAQ(RealMatrix* r, const RealMatrix* a, const Quaternion* q);
int QuatRotatesMatrixRAQc(RealMatrix* r, const RealMatrix* a, const Quaternion* q);

// R = the rotation on the shortest arc from A (fraction 0) to B (fraction 1), at a steady rate;
// other fractions go on beyond the ends. A and B are normalised; R is so then.
int QuatInterpolateRABf(Quaternion* r, const Quaternion* a, const Quaternion* b, double fraction);
// Q = Q A: an attitude Q is turned on by A, told in its body axes.
int QuatAppend(Quaternion* q, const Quaternion* a);

// C = the matrix with C v = q v conj(q).
int Quat2DirCos(RealMatrix* c, const Quaternion* q);

// R = the steady rate that makes the rotation Q within `time` seconds; `time` is not 0.
int Quat2AngRateRQ(RealMatrix* r, const Quaternion* q, double time);
// R = the rotation that the rate A makes within `time` seconds.
int QuatFromAngRateRA(Quaternion* r, const RealMatrix* a, double time);
// R = the rotation vector of Q, no longer than pi.
int Quat2RotVecRQ(RealMatrix* r, const Quaternion* q);
// R = the rotation of the rotation vector A, of any length.
int QuatFromRotVecRA(Quaternion* r, const RealMatrix* a);

// Heading, pitch, roll as told in matrix_attitude.h, with its rule for a pitch of +-pi/2.
int Quat2EulerRQ(RealMatrix* r, const Quaternion* q);
int QuatFromEulerRE(Quaternion* r, const RealMatrix* euler);

}  // namespace Trel::Lib
