// Matrices as text.
//
// A matrix file has a row a line, numbers apart by spaces, tabs or commas; blank lines do not
// count. A diagonal is a file of one row or one column. Numbers have a decimal point in every
// locale, and what was written reads back to the same bits. The print forms are for people.
//
// Failure: kNullPointer; kFileNotOpened; kFileSystem when reading or writing breaks off;
// kFileFormat for a file that is empty, does not start with a number, holds anything that is not a
// finite number, or has rows of different length; kAllocationFailed; for what is written, as told
// in matrix_record.h.
#pragma once

#include <cstdio>

#include "library/matrix_record.h"

namespace Trel::Lib {

// Allocate, and fill from the file at `path`. On failure the record is empty.
int MatReadR(RealMatrix* m, const char* path);
int MatReadD(DiagonalMatrix* d, const char* path);

// Replace the file at `path`; a diagonal is written as a column.
int MatWrite(const RealMatrix* a, const char* path);
int MatDWrite(const DiagonalMatrix* d, const char* path);

// A row a line, in columns of 16 characters with 8 significant digits. Empty matrices and numbers
// that are not finite are shown too.
int MatPrint(const RealMatrix* a, std::FILE* out);
// The two factors in one square, then a line with the pivots.
int MatCPrint(const CroutMatrix* c, std::FILE* out);
// One line.
int MatDPrint(const DiagonalMatrix* d, std::FILE* out);

}  // namespace Trel::Lib
