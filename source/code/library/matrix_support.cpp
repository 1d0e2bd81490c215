#include "library/matrix_support.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace Trel::Lib {

int refuse(int code, const Place& place, const char* text) {
  report_notice(code, kError, place.file, place.line, place.function, text);
  return code;
}

double* allocate_elements(std::size_t rows, std::size_t cols) {
  constexpr std::size_t kMost = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(double);
  if (rows == 0 || cols == 0 || rows > kMost / cols) return nullptr;
  return static_cast<double*>(std::calloc(rows * cols, sizeof(double)));
}

namespace {

int size_code(const double* data, int size, int size_allocated) {
  if (size <= 0 || size_allocated < 0) return kOutOfRange;
  if (data == nullptr) return kNullPointer;
  return size > size_allocated ? kInsufficientSpace : kSuccess;
}

bool finite_row(const double* row, std::ptrdiff_t count) {
  return std::all_of(row, row + count, [](double value) { return std::isfinite(value); });
}

}  // namespace

int shape_code(const RealMatrix* a) {
  if (a == nullptr) return kNullPointer;
  const int rows = size_code(a->data, a->rows, a->rows_allocated);
  return rows != kSuccess ? rows : size_code(a->data, a->cols, a->cols_allocated);
}

int shape_code(const DiagonalMatrix* d) {
  return d == nullptr ? kNullPointer : size_code(d->data, d->size, d->size_allocated);
}

int shape_code(const CroutMatrix* c) {
  if (c == nullptr) return kNullPointer;
  const int code = size_code(c->data, c->size, c->size_allocated);
  return code == kSuccess && c->pivots == nullptr ? kNullPointer : code;
}

int argument_code(const RealMatrix* a) {
  if (const int code = shape_code(a)) return code;
  for (int i = 0; i < a->rows; ++i) {
    const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(i) * a->cols_allocated;
    if (!finite_row(a->data + offset, a->cols)) return kOutOfRange;
  }
  return kSuccess;
}

int argument_code(const DiagonalMatrix* d) {
  if (const int code = shape_code(d)) return code;
  return finite_row(d->data, d->size) ? kSuccess : kOutOfRange;
}

int argument_code(const CroutMatrix* c) {
  if (const int code = shape_code(c)) return code;
  for (int k = 0; k < c->size; ++k) {
    if (c->pivots[k] < k || c->pivots[k] >= c->size) return kOutOfRange;
  }
  const std::ptrdiff_t size = c->size;
  return finite_row(c->data, size * size) ? kSuccess : kOutOfRange;
}

int result_code(const RealMatrix* r, int rows, int cols) {
  if (r == nullptr) return kNullPointer;
  if (rows <= 0 || cols <= 0) return kOutOfRange;
  const bool room = r->data != nullptr && rows <= r->rows_allocated && cols <= r->cols_allocated;
  return room ? kSuccess : kInsufficientSpace;
}

int result_code(const DiagonalMatrix* d, int size) {
  if (d == nullptr) return kNullPointer;
  if (size <= 0) return kOutOfRange;
  return d->data != nullptr && size <= d->size_allocated ? kSuccess : kInsufficientSpace;
}

Extent::Extent(const RealMatrix& a)
    : Extent(a.data,
             static_cast<std::size_t>(a.rows - 1) * static_cast<std::size_t>(a.cols_allocated) +
                 static_cast<std::size_t>(a.cols)) {}

Extent::Extent(const CroutMatrix& c)
    : Extent(c.data, static_cast<std::size_t>(c.size) * static_cast<std::size_t>(c.size)) {}

bool Extent::overlaps(const Extent& other) const {
  const std::less<> before;
  return before(begin, other.end) && before(other.begin, end);
}

Result::Result(RealMatrix* r, int rows, int cols, std::initializer_list<Extent> arguments)
    : real_(r), rows_(rows), cols_(cols), code_(result_code(r, rows, cols)) {
  if (code_ == kSuccess) choose(r->data, r->cols_allocated, arguments);
}

Result::Result(DiagonalMatrix* d, int size, std::initializer_list<Extent> arguments)
    : diagonal_(d), rows_(1), cols_(size), code_(result_code(d, size)) {
  if (code_ == kSuccess) choose(d->data, size, arguments);
}

void Result::choose(double* own, std::ptrdiff_t own_step, std::initializer_list<Extent> arguments) {
  const Extent extent(own, static_cast<std::size_t>((rows_ - 1) * own_step + cols_));
  const bool shared = std::any_of(arguments.begin(), arguments.end(), [&](const Extent& argument) {
    return extent.overlaps(argument);
  });
  target_ = own;
  step_ = own_step;
  if (!shared) return;

  step_ = cols_;
  const std::size_t count = static_cast<std::size_t>(rows_) * static_cast<std::size_t>(cols_);
  target_ = small_.data();
  if (count <= small_.size()) return;
  allocated_ = allocate_elements(static_cast<std::size_t>(rows_), static_cast<std::size_t>(cols_));
  target_ = allocated_;
  if (allocated_ == nullptr) code_ = kAllocationFailed;
}

int Result::commit() {
  double* own = real_ != nullptr ? real_->data : diagonal_->data;
  const std::ptrdiff_t own_step = real_ != nullptr ? real_->cols_allocated : cols_;
  if (target_ != own) {
    for (int i = 0; i < rows_; ++i) std::copy_n(row(i), cols_, own + i * own_step);
  }
  if (real_ != nullptr) {
    real_->rows = rows_;
    real_->cols = cols_;
  } else {
    diagonal_->size = cols_;
  }
  return kSuccess;
}

int load(Vector3& vector, const RealMatrix* a) {
  if (const int code = argument_code(a)) return code;
  const Operand elements = column(*a);
  if (!is_vector(*a) || elements.rows != 3) return kOutOfRange;
  for (int i = 0; i < 3; ++i) vector[i] = elements(i, 0);
  return kSuccess;
}

int load(Matrix3& matrix, const RealMatrix* a) {
  if (const int code = argument_code(a)) return code;
  if (a->rows != 3 || a->cols != 3) return kOutOfRange;
  const Operand elements = plain(*a);
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) matrix[i][j] = elements(i, j);
  }
  return kSuccess;
}

int store(RealMatrix* r, const Vector3& vector) {
  Result result(r, 3, 1);
  if (result.code() != kSuccess) return result.code();
  fill(result, 3, 1, [&](int i, int) { return vector[i]; });
  return result.commit();
}

int store(RealMatrix* r, const Matrix3& matrix) {
  Result result(r, 3, 3);
  if (result.code() != kSuccess) return result.code();
  fill(result, 3, 3, [&](int i, int j) { return matrix[i][j]; });
  return result.commit();
}

double length(const Vector3& v) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  // A hypotenuse of three need not show that one of them is not a number.
  if (!all_finite(v[0], v[1], v[2])) return kInfinity;
  const double value = std::hypot(v[0], v[1], v[2]);
  return std::isfinite(value) ? value : kInfinity;
}

Vector3 cross(const Vector3& a, const Vector3& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vector3 multiply(const Matrix3& a, const Vector3& b) {
  Vector3 product;
  for (int i = 0; i < 3; ++i) product[i] = a[i][0] * b[0] + a[i][1] * b[1] + a[i][2] * b[2];
  return product;
}

}  // namespace Trel::Lib
