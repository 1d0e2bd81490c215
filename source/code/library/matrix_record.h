// The matrix records: set-up, filling and views.
//
// A record is a plain struct, passed by pointer. A real matrix is row-major; the columns allocated
// are its stride, so that a record can also describe a part of another one. A matrix is empty until
// something fills it: allocation leaves nothing in use.
//
// Memory: MatAllocR, MatAllocD, MatAllocC, MatFillNewR, MatReadR and MatReadD allocate, and what
// they allocated goes back through MatFree, MatDFree and MatCFree. They take the record as it comes
// and do not release what it held. MatAssignR and the views point at memory of others: such a
// record is dropped with SetToEmptyMat, never freed, and lives no longer than that memory.
//
// Failure: a function returns an ErrorCode and reports it: kNullPointer; kOutOfRange for an
// argument that is empty, holds a number that is not finite, or whose shape does not fit;
// kInsufficientSpace when the result's storage is smaller than the result. A result is untouched
// unless the function says otherwise. Any result may share storage with any argument, wholly or in
// part.
#pragma once

#include <initializer_list>

#include "library/matrix_notice.h"

namespace Trel::Lib {

struct RealMatrix {
  double* data = nullptr;
  int rows = 0;  // in use
  int cols = 0;  // in use
  int rows_allocated = 0;
  int cols_allocated = 0;  // also the distance from one row to the next, in elements
};

struct DiagonalMatrix {
  double* data = nullptr;
  int size = 0;  // in use
  int size_allocated = 0;
};

// A matrix in Crout's factors: the lower factor on and below the diagonal, the unit upper factor
// above it, row-major with `size` elements a row. At step k, row k was exchanged with row
// pivots[k].
struct CroutMatrix {
  double* data = nullptr;
  int* pivots = nullptr;
  int size = 0;  // in use
  int size_allocated = 0;
};

// ---- Set-up

// Zeroes all five fields; frees nothing.
int SetToEmptyMat(RealMatrix* m);

// Storage for rows x cols, size, or size x size elements, each dimension at least 1. On failure the
// record is empty.
int MatAllocR(RealMatrix* m, int rows, int cols);
int MatAllocD(DiagonalMatrix* d, int size);
int MatAllocC(CroutMatrix* c, int size);

// Gives `m` the caller's array of rows x cols elements as its storage. Like a fresh allocation it
// is empty until it is filled.
int MatAssignR(RealMatrix* m, double* storage, int rows, int cols);

// Releases the storage and leaves an empty record; an empty record is fine.
int MatFree(RealMatrix* m);
int MatCFree(CroutMatrix* c);
int MatDFree(DiagonalMatrix* d);

// Whether the record can be an argument: kNullPointer (record or storage), kInsufficientSpace (more
// in use than allocated), kOutOfRange (empty, a negative dimension, a number that is not finite).
int MatCheck(const RealMatrix* a);
int MatDCheck(const DiagonalMatrix* d);

// ---- Filling

// Fills with `values`, row by row; their count must be rows x cols. MatFillNewR allocates first,
// and leaves an empty record on failure.
int MatFillNewR(RealMatrix* m, int rows, int cols, std::initializer_list<double> values);
int MatFillR(RealMatrix* r, int rows, int cols, std::initializer_list<double> values);
// Every element becomes `s`.
int MatFillRs(RealMatrix* r, int rows, int cols, double s);

int MatFillD(DiagonalMatrix* d, std::initializer_list<double> values);
int MatFillDs(DiagonalMatrix* d, int size, double s);

// R = the unit matrix of `size` rows.
int MatIdentityR(RealMatrix* r, int size);
// R = A.
int MatCopyRA(RealMatrix* r, const RealMatrix* a);
// D = E.
int MatCopyDE(DiagonalMatrix* d, const DiagonalMatrix* e);

// Between a matrix and an array without gaps, row by row. `values` holds rows x cols numbers.
int double2Mat(RealMatrix* r, const double* values, int rows, int cols);
// `count` is the room in `values`; less than A needs is kInsufficientSpace.
int Mat2double(double* values, int count, const RealMatrix* a);

// Views: nothing is copied; what is written through a view shows in its parent.

// Rows r0 to r1 - 1 and columns c0 to c1 - 1 of A, in use, within what A has allocated. The view
// has A's stride and A's allocated rows less r0. As its columns allocated are the stride, a result
// written into it must not be wider than the view.
int MatSubAccessRA(RealMatrix* view, const RealMatrix* a, int r0, int c0, int r1, int c1);
// Elements i0 to i1 - 1 of E.
int MatSubAccessDE(DiagonalMatrix* view, const DiagonalMatrix* e, int i0, int i1);
// Diagonal elements i0 to i1 - 1 of A, as a column. A result written into it must be a column.
int MatDiagSubAccessVA(RealMatrix* view, const RealMatrix* a, int i0, int i1);

}  // namespace Trel::Lib
