// Matrices: everything in the rooms of the matrix family.
//
// A client includes this header. The rules that all rooms share (memory, failure, results that
// share storage with arguments) stand in matrix_record.h.
#pragma once

#include "library/matrix_arithmetic.h"
#include "library/matrix_attitude.h"
#include "library/matrix_factor.h"
#include "library/matrix_notice.h"
#include "library/matrix_record.h"
#include "library/matrix_text.h"
#include "library/matrix_work.h"
