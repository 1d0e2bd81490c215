// Sums, products and norms of matrices.
//
// A name carries the shapes of its arguments, result first: R, A and B are real matrices, D and E
// diagonals, s a scalar, t marks the transpose of the letter before it. A product has eight forms,
// R = A B and seven more: each of A and B as it is or transposed, and a diagonal on either side of
// A or A'. A vector is a matrix of one row or one column.
//
// Failure, and results that share storage with arguments: as told in matrix_record.h. Sums of
// finite numbers may overflow to infinity, which the next function then refuses.
#pragma once

#include "library/matrix_record.h"

namespace Trel::Lib {

// Appends A' below the rows of R: each column of A becomes a further row. An empty R becomes A'.
int MatAppendt(RealMatrix* r, const RealMatrix* a);
// R = A'.
int MatTranspose(RealMatrix* r, const RealMatrix* a);

int MatMultRAB(RealMatrix* r, const RealMatrix* a, const RealMatrix* b);
int MatMultRABt(RealMatrix* r, const RealMatrix* a, const RealMatrix* b);
int MatMultRAtB(RealMatrix* r, const RealMatrix* a, const RealMatrix* b);
int MatMultRAtBt(RealMatrix* r, const RealMatrix* a, const RealMatrix* b);
int MatMultRDA(RealMatrix* r, const DiagonalMatrix* d, const RealMatrix* a);
int MatMultRDAt(RealMatrix* r, const DiagonalMatrix* d, const RealMatrix* a);
int MatMultRAD(RealMatrix* r, const RealMatrix* a, const DiagonalMatrix* d);
int MatMultRAtD(RealMatrix* r, const RealMatrix* a, const DiagonalMatrix* d);
// D = the diagonal of A B, which must be square.
int MatMultDAB(DiagonalMatrix* d, const RealMatrix* a, const RealMatrix* b);

// R = s A.
int MatScaleRsA(RealMatrix* r, double s, const RealMatrix* a);
// R = s D, with zeros off the diagonal.
int MatScaleRsD(RealMatrix* r, double s, const DiagonalMatrix* d);
// R = A with each element clipped to -s..s; s is not negative.
int MatLimitRsA(RealMatrix* r, double s, const RealMatrix* a);

int MatAddRAB(RealMatrix* r, const RealMatrix* a, const RealMatrix* b);
// R = D + E, with zeros off the diagonal.
int MatAddRDE(RealMatrix* r, const DiagonalMatrix* d, const DiagonalMatrix* e);
int MatSubRAB(RealMatrix* r, const RealMatrix* a, const RealMatrix* b);
// R = D - B.
int MatSubRDB(RealMatrix* r, const DiagonalMatrix* d, const RealMatrix* b);

// The largest absolute difference of two elements in the same place.
int MatMaxDiff(double* difference, const RealMatrix* a, const RealMatrix* b);
// The Euclidean length of a vector, without overflow or underflow on the way.
int MatVectorNorm(double* norm, const RealMatrix* a);
// Two vectors with the same number of elements, each a row or a column.
int MatDotProduct(double* product, const RealMatrix* a, const RealMatrix* b);
// R = A x B, a column; A and B are vectors of three.
int MatCrossProduct(RealMatrix* r, const RealMatrix* a, const RealMatrix* b);

}  // namespace Trel::Lib
