// Factorisations, and the inverse that rests on them.
//
// Failure, and results that share storage with arguments: as told in matrix_record.h. In addition
// kIllConditioned, for a matrix that is singular to working precision; the result is then
// untouched.
#pragma once

#include "library/matrix_record.h"

namespace Trel::Lib {

// A = U D U' with U unit upper triangular, worked from the last row up. A is symmetric; only its
// upper triangle is read. kIllConditioned when an element of D falls below 1e-20, as it does for
// every A that is not positive definite. U and D must not share storage.
int MatUDUtDecompUDA(RealMatrix* u, DiagonalMatrix* d, const RealMatrix* a);

// Solves U R = B for R; U is upper triangular (what is below its diagonal is not read).
// kIllConditioned for a diagonal element of U within 1e-20 of 0.
int MatUbksbRUB(RealMatrix* r, const RealMatrix* u, const RealMatrix* b);

// C = the Crout factors of the square matrix A, with row exchanges. A pivot within rounding of 0
// compared with its row of A is kIllConditioned, and C is then empty. A must not lie in C's
// storage.
int MatCroutDecompCA(CroutMatrix* c, const RealMatrix* a);
// Solves A R = B for R, with C the factors of A.
int MatCroutSolveRCB(RealMatrix* r, const CroutMatrix* c, const RealMatrix* b);
// R = the inverse of A, with C the factors of A.
int MatCroutInvertRC(RealMatrix* r, const CroutMatrix* c);
// The determinant of A, with C the factors of A.
int MatCroutDetSC(double* s, const CroutMatrix* c);

// R = the inverse of the square matrix A. A failure inside is reported by the function that met it.
int MatInvRA(RealMatrix* r, const RealMatrix* a);

}  // namespace Trel::Lib
