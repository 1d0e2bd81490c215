#include "library/matrix_record.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "library/matrix_support.h"

namespace Trel::Lib {

int SetToEmptyMat(RealMatrix* m) {
  if (m == nullptr) return refuse(kNullPointer, TREL_HERE);
  *m = RealMatrix{};
  return kSuccess;
}

int MatAllocR(RealMatrix* m, int rows, int cols) {
  if (m == nullptr) return refuse(kNullPointer, TREL_HERE);
  *m = RealMatrix{};
  if (rows <= 0 || cols <= 0) return refuse(kOutOfRange, TREL_HERE);
  double* data = allocate_elements(static_cast<std::size_t>(rows), static_cast<std::size_t>(cols));
  if (data == nullptr) return refuse(kAllocationFailed, TREL_HERE, kNoMatrix);
  *m = {data, 0, 0, rows, cols};
  return kSuccess;
}

int MatAllocD(DiagonalMatrix* d, int size) {
  if (d == nullptr) return refuse(kNullPointer, TREL_HERE);
  *d = DiagonalMatrix{};
  if (size <= 0) return refuse(kOutOfRange, TREL_HERE);
  double* data = allocate_elements(static_cast<std::size_t>(size), 1);
  if (data == nullptr) return refuse(kAllocationFailed, TREL_HERE, kNoMatrix);
  *d = {data, 0, size};
  return kSuccess;
}

int MatAllocC(CroutMatrix* c, int size) {
  if (c == nullptr) return refuse(kNullPointer, TREL_HERE);
  *c = CroutMatrix{};
  if (size <= 0) return refuse(kOutOfRange, TREL_HERE);
  const auto count = static_cast<std::size_t>(size);
  double* data = allocate_elements(count, count);
  if (data == nullptr) return refuse(kAllocationFailed, TREL_HERE, kNoMatrix);
  auto* pivots = static_cast<int*>(std::calloc(count, sizeof(int)));
  if (pivots == nullptr) {
    std::free(data);
    return refuse(kAllocationFailed, TREL_HERE, kNoMatrix);
  }
  *c = {data, pivots, 0, size};
  return kSuccess;
}

int MatAssignR(RealMatrix* m, double* storage, int rows, int cols) {
  if (m == nullptr || storage == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (rows <= 0 || cols <= 0) return refuse(kOutOfRange, TREL_HERE);
  *m = {storage, 0, 0, rows, cols};
  return kSuccess;
}

int MatFree(RealMatrix* m) {
  if (m == nullptr) return refuse(kNullPointer, TREL_HERE);
  std::free(m->data);
  *m = RealMatrix{};
  return kSuccess;
}

int MatCFree(CroutMatrix* c) {
  if (c == nullptr) return refuse(kNullPointer, TREL_HERE);
  std::free(c->data);
  std::free(c->pivots);
  *c = CroutMatrix{};
  return kSuccess;
}

int MatDFree(DiagonalMatrix* d) {
  if (d == nullptr) return refuse(kNullPointer, TREL_HERE);
  std::free(d->data);
  *d = DiagonalMatrix{};
  return kSuccess;
}

int MatCheck(const RealMatrix* a) {
  const int code = argument_code(a);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int MatDCheck(const DiagonalMatrix* d) {
  const int code = argument_code(d);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

namespace {

// The code with which `values` are refused as the elements of a rows x cols matrix.
int list_code(int rows, int cols, std::initializer_list<double> values) {
  if (rows <= 0 || cols <= 0) return kOutOfRange;
  const bool fits = static_cast<long long>(rows) * cols == static_cast<long long>(values.size());
  const bool finite =
      std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
  return fits && finite ? kSuccess : kOutOfRange;
}

int fill_from(RealMatrix* r, int rows, int cols, std::initializer_list<double> values) {
  if (const int code = list_code(rows, cols, values)) return code;
  Result result(r, rows, cols);
  if (result.code() != kSuccess) return result.code();
  fill(result, rows, cols, [&](int i, int j) { return values.begin()[i * cols + j]; });
  return result.commit();
}

}  // namespace

int MatFillNewR(RealMatrix* m, int rows, int cols, std::initializer_list<double> values) {
  if (m == nullptr) return refuse(kNullPointer, TREL_HERE);
  *m = RealMatrix{};
  if (const int code = list_code(rows, cols, values)) return refuse(code, TREL_HERE);
  if (const int code = MatAllocR(m, rows, cols)) return code;
  return fill_from(m, rows, cols, values);
}

int MatFillR(RealMatrix* r, int rows, int cols, std::initializer_list<double> values) {
  if (r == nullptr) return refuse(kNullPointer, TREL_HERE);
  const int code = fill_from(r, rows, cols, values);
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

int MatFillRs(RealMatrix* r, int rows, int cols, double s) {
  Result result(r, rows, cols);
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE);
  if (!std::isfinite(s)) return refuse(kOutOfRange, TREL_HERE);
  fill(result, rows, cols, [s](int, int) { return s; });
  return result.commit();
}

int MatFillD(DiagonalMatrix* d, std::initializer_list<double> values) {
  if (d == nullptr) return refuse(kNullPointer, TREL_HERE);
  const int size = static_cast<int>(values.size());
  if (const int code = list_code(1, size, values)) return refuse(code, TREL_HERE);
  Result result(d, size);
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE);
  fill(result, 1, size, [&](int, int j) { return values.begin()[j]; });
  return result.commit();
}

int MatFillDs(DiagonalMatrix* d, int size, double s) {
  Result result(d, size);
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE);
  if (!std::isfinite(s)) return refuse(kOutOfRange, TREL_HERE);
  fill(result, 1, size, [s](int, int) { return s; });
  return result.commit();
}

int MatIdentityR(RealMatrix* r, int size) {
  Result result(r, size, size);
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE);
  fill(result, size, size, [](int i, int j) { return i == j ? 1.0 : 0.0; });
  return result.commit();
}

int MatCopyRA(RealMatrix* r, const RealMatrix* a) {
  if (const int code = argument_code(a)) return refuse(code, TREL_HERE);
  Result result(r, a->rows, a->cols, {Extent(*a)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, a->rows, a->cols, plain(*a));
  return result.commit();
}

int MatCopyDE(DiagonalMatrix* d, const DiagonalMatrix* e) {
  if (const int code = argument_code(e)) return refuse(code, TREL_HERE);
  const int size = e->size;
  Result result(d, size, {Extent(*e)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, 1, size, [&](int, int j) { return e->data[j]; });
  return result.commit();
}

int double2Mat(RealMatrix* r, const double* values, int rows, int cols) {
  if (values == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = result_code(r, rows, cols)) return refuse(code, TREL_HERE);
  const std::ptrdiff_t count = static_cast<std::ptrdiff_t>(rows) * cols;
  if (!std::all_of(values, values + count, [](double value) { return std::isfinite(value); })) {
    return refuse(kOutOfRange, TREL_HERE);
  }
  Result result(r, rows, cols, {Extent(values, static_cast<std::size_t>(count))});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, rows, cols, Operand{values, rows, cols, cols, 1});
  return result.commit();
}

int Mat2double(double* values, int count, const RealMatrix* a) {
  if (values == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = argument_code(a)) return refuse(code, TREL_HERE);
  if (static_cast<long long>(a->rows) * a->cols > count) {
    return refuse(kInsufficientSpace, TREL_HERE);
  }
  RealMatrix array;
  MatAssignR(&array, values, a->rows, a->cols);
  Result result(&array, a->rows, a->cols, {Extent(*a)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, a->rows, a->cols, plain(*a));
  return result.commit();
}

namespace {

bool within(int first, int end, int allocated) {
  return 0 <= first && first < end && end <= allocated;
}

}  // namespace

int MatSubAccessRA(RealMatrix* view, const RealMatrix* a, int r0, int c0, int r1, int c1) {
  if (view == nullptr || a == nullptr || a->data == nullptr) {
    return refuse(kNullPointer, TREL_HERE);
  }
  if (!within(r0, r1, a->rows_allocated) || !within(c0, c1, a->cols_allocated)) {
    return refuse(kOutOfRange, TREL_HERE);
  }
  const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(r0) * a->cols_allocated + c0;
  *view = {a->data + offset, r1 - r0, c1 - c0, a->rows_allocated - r0, a->cols_allocated};
  return kSuccess;
}

int MatSubAccessDE(DiagonalMatrix* view, const DiagonalMatrix* e, int i0, int i1) {
  if (view == nullptr || e == nullptr || e->data == nullptr) {
    return refuse(kNullPointer, TREL_HERE);
  }
  if (!within(i0, i1, e->size_allocated)) return refuse(kOutOfRange, TREL_HERE);
  *view = {e->data + i0, i1 - i0, e->size_allocated - i0};
  return kSuccess;
}

int MatDiagSubAccessVA(RealMatrix* view, const RealMatrix* a, int i0, int i1) {
  if (view == nullptr || a == nullptr || a->data == nullptr) {
    return refuse(kNullPointer, TREL_HERE);
  }
  const int length = std::min(a->rows_allocated, a->cols_allocated);
  const int step = a->cols_allocated;
  if (!within(i0, i1, length) || step == std::numeric_limits<int>::max()) {
    return refuse(kOutOfRange, TREL_HERE);
  }
  *view = {a->data + static_cast<std::ptrdiff_t>(i0) * (step + 1), i1 - i0, 1, length - i0,
           step + 1};
  return kSuccess;
}

}  // namespace Trel::Lib
