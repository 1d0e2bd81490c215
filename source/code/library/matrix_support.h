// What the sources of the mathematics share; no client includes this header.
//
// Checks of arguments and results, the report of a refusal, and the storage of a result that may
// overlap an argument.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <initializer_list>

#include "library/matrix_record.h"

namespace Trel::Lib {

// Where a refusal is met.
struct Place {
  const char* file;
  int line;
  const char* function;
};
#define TREL_HERE (::Trel::Lib::Place{__FILE__, __LINE__, __func__})

// Reports `code` at level 1, with its own text when `text` is null, and returns it.
int refuse(int code, const Place& place, const char* text = nullptr);

inline constexpr const char* kNoWorkspace = "Could not allocate workspace";
inline constexpr const char* kNoMatrix = "Could not allocate matrix";

// rows x cols elements of zeros; null when there is no such memory, or no such size.
double* allocate_elements(std::size_t rows, std::size_t cols);

// A read-only matrix seen through two steps: a transpose swaps them.
struct Operand {
  const double* data;
  int rows;
  int cols;
  std::ptrdiff_t row_step;
  std::ptrdiff_t col_step;

  double operator()(int row, int col) const { return data[row * row_step + col * col_step]; }
};
inline Operand plain(const RealMatrix& a) {
  return {a.data, a.rows, a.cols, a.cols_allocated, 1};
}
inline Operand transposed(const RealMatrix& a) {
  return {a.data, a.cols, a.rows, 1, a.cols_allocated};
}
// The elements of a matrix of one row or one column, as a column.
inline Operand column(const RealMatrix& a) {
  return a.cols == 1 ? plain(a) : transposed(a);
}

inline bool is_vector(const RealMatrix& a) {
  return a.rows == 1 || a.cols == 1;
}

// The code with which an argument is refused; kSuccess when it is fit for use. The shape alone, and
// the shape and every element.
int shape_code(const RealMatrix* a);
int shape_code(const DiagonalMatrix* d);
int shape_code(const CroutMatrix* c);
int argument_code(const RealMatrix* a);
int argument_code(const DiagonalMatrix* d);
int argument_code(const CroutMatrix* c);
// That of the first argument that is not fit.
template <class... Arguments>
int arguments_code(const Arguments*... arguments) {
  int code = kSuccess;
  static_cast<void>(((code = argument_code(arguments), code == kSuccess) && ...));
  return code;
}

// The code with which a result of the given shape is refused.
int result_code(const RealMatrix* r, int rows, int cols);
int result_code(const DiagonalMatrix* d, int size);

template <class... Numbers>
bool all_finite(Numbers... numbers) {
  return (std::isfinite(numbers) && ...);
}

// A stretch of elements, to see whether two records share any.
struct Extent {
  const double* begin = nullptr;
  const double* end = nullptr;

  Extent() = default;
  Extent(const double* data, std::size_t count) : begin(data), end(data + count) {}
  explicit Extent(const RealMatrix& a);
  explicit Extent(const DiagonalMatrix& d) : Extent(d.data, static_cast<std::size_t>(d.size)) {}
  explicit Extent(const CroutMatrix& c);

  [[nodiscard]] bool overlaps(const Extent& other) const;
};

// The place to compute a result in: its own storage or, when that overlaps an argument, a workspace
// that commit() copies into it. Usable when code() is kSuccess.
class Result {
 public:
  Result(RealMatrix* r, int rows, int cols, std::initializer_list<Extent> arguments = {});
  Result(DiagonalMatrix* d, int size, std::initializer_list<Extent> arguments = {});
  ~Result() { std::free(allocated_); }
  Result(const Result&) = delete;
  Result& operator=(const Result&) = delete;

  [[nodiscard]] int code() const { return code_; }
  [[nodiscard]] const char* text() const {
    return code_ == kAllocationFailed ? kNoWorkspace : nullptr;
  }
  double* row(int index) { return target_ + index * step_; }
  // A diagonal's element.
  double& operator[](int index) { return target_[index]; }

  // Makes the result visible: its elements and its shape. Returns kSuccess.
  int commit();

 private:
  void choose(double* own, std::ptrdiff_t own_step, std::initializer_list<Extent> arguments);

  RealMatrix* real_ = nullptr;
  DiagonalMatrix* diagonal_ = nullptr;
  int rows_;
  int cols_;
  int code_;
  double* target_ = nullptr;
  std::ptrdiff_t step_ = 0;
  double* allocated_ = nullptr;
  std::array<double, 16> small_;
};

// Fills the rows of `result` with element(row, col).
template <class Element>
void fill(Result& result, int rows, int cols, Element element) {
  for (int i = 0; i < rows; ++i) {
    double* row = result.row(i);
    for (int j = 0; j < cols; ++j) row[j] = element(i, j);
  }
}

// The sum of a(row, k) b(k, col) over k.
inline double inner_product(const Operand& a, const Operand& b, int row, int col) {
  const double* left = a.data + row * a.row_step;
  const double* right = b.data + col * b.col_step;
  double sum = 0;
  for (int k = 0; k < a.cols; ++k) {
    sum += *left * *right;
    left += a.col_step;
    right += b.row_step;
  }
  return sum;
}

using Vector3 = std::array<double, 3>;
using Matrix3 = std::array<Vector3, 3>;

// The three elements of a vector, or the nine of a 3 x 3 matrix; the code with which it is refused.
int load(Vector3& vector, const RealMatrix* a);
int load(Matrix3& matrix, const RealMatrix* a);
// Writes a column or a 3 x 3 matrix; the code with which the result is refused.
int store(RealMatrix* r, const Vector3& vector);
int store(RealMatrix* r, const Matrix3& matrix);

// The length of a vector; infinite when that, or an element, is not finite.
double length(const Vector3& v);
Vector3 cross(const Vector3& a, const Vector3& b);
Vector3 multiply(const Matrix3& a, const Vector3& b);

// Heading, pitch and roll of a rotation matrix, as DirCos2Euler gives them.
Vector3 euler_angles(const Matrix3& m);

}  // namespace Trel::Lib
