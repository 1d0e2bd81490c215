// Attitude in Euler angles and direction cosines.
//
// Angles are in radians. The navigation frame is north, east, down; body axes are forward, right,
// down. An Euler vector is heading, pitch, roll: from navigation axes, first heading about down,
// then pitch about right, then roll about forward. The level frame has the body's heading and lies
// in the horizontal plane. A vector of three is a matrix of one column or one row; a result is a
// column. Results in heading, roll, omega and kappa lie within -pi..pi, in pitch and phi within
// -pi/2..pi/2.
//
// Failure, and results that share storage with arguments: as told in matrix_record.h.
#pragma once

#include "library/matrix_record.h"

namespace Trel::Lib {

// C turns body axes into navigation axes: v_navigation = C v_body. It is the product of the two
// below, C = Euler2DirCosH Euler2DirCos2.
int Euler2DirCos(RealMatrix* c, const RealMatrix* euler);
// C turns body axes into the level frame: pitch and roll alone.
int Euler2DirCos2(RealMatrix* c, const RealMatrix* euler);
// C turns the level frame into navigation axes: heading alone.
int Euler2DirCosH(RealMatrix* c, const RealMatrix* euler);

// The inverse of Euler2DirCos, for a rotation matrix C. With pitch at +-pi/2 (to 1e-12) heading and
// roll cannot be told apart: roll is 0 and heading has the whole turn, which gives C back.
int DirCos2Euler(RealMatrix* euler, const RealMatrix* c);

// The vector `incline` is heading, the rise of the forward axis above the horizontal, and the fall
// of the right axis below it, as two inclinometers tell them. Roll comes out within -pi/2..pi/2; it
// is 0 where the forward axis is vertical. Angles that no attitude has together (their sum beyond
// pi/2) are kOutOfRange.
int Incline2Euler(RealMatrix* euler, const RealMatrix* incline);

// The photogrammetric angles omega, phi, kappa: with mapping axes east, north, up and image axes
// forward, left, up, the matrix from image to mapping axes is Rx(omega) Ry(phi) Rz(kappa). Level
// and heading east is 0, 0, 0; there omega is roll and phi is pitch with its sign changed. With phi
// at
// +-pi/2, omega is 0.
int Euler2LPS(RealMatrix* lps, const RealMatrix* euler);

// R = the matrix with R b = a x b for every vector b of three.
int Vec2SkewSym(RealMatrix* r, const RealMatrix* a);
// R = the square matrix with the vector A, of any length, on its diagonal and zeros elsewhere.
int Vec2Diag(RealMatrix* r, const RealMatrix* a);

// Pitch and roll of a unit at rest, from the acceleration (specific force) that it senses in body
// axes, in any unit; heading comes out as 0. The zero vector is kOutOfRange.
int attitude_from_sensed_accel(RealMatrix* euler, const RealMatrix* accel);

// R = radius, azimuth from x towards y, elevation from the x-y plane towards z, of the vector V.
// Angles without a meaning are 0.
int cartesian2sphericalRV(RealMatrix* r, const RealMatrix* v);

}  // namespace Trel::Lib
