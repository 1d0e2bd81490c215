#include "library/matrix_arithmetic.h"

#include <algorithm>
#include <limits>

#include "library/matrix_support.h"

namespace Trel::Lib {

int MatAppendt(RealMatrix* r, const RealMatrix* a) {
  if (r == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = argument_code(a)) return refuse(code, TREL_HERE);
  const bool fresh = r->rows == 0;
  if (!fresh) {
    if (const int code = argument_code(r)) return refuse(code, TREL_HERE);
    if (a->rows != r->cols) return refuse(kOutOfRange, TREL_HERE);
  }
  if (r->data == nullptr || a->cols > r->rows_allocated - r->rows || a->rows > r->cols_allocated) {
    return refuse(kInsufficientSpace, TREL_HERE);
  }
  const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(r->rows) * r->cols_allocated;
  RealMatrix rest{r->data + offset, 0, 0, r->rows_allocated - r->rows, r->cols_allocated};
  const Operand source = transposed(*a);
  Result result(&rest, source.rows, source.cols, {Extent(*a)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, source.rows, source.cols, source);
  result.commit();
  r->rows += source.rows;
  r->cols = source.cols;
  return kSuccess;
}

int MatTranspose(RealMatrix* r, const RealMatrix* a) {
  if (const int code = argument_code(a)) return refuse(code, TREL_HERE);
  const Operand source = transposed(*a);
  Result result(r, source.rows, source.cols, {Extent(*a)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, source.rows, source.cols, source);
  return result.commit();
}

namespace {

using View = Operand (*)(const RealMatrix&);

int product(RealMatrix* r, const RealMatrix* a, View a_form, const RealMatrix* b, View b_form,
            const Place& place) {
  if (const int code = arguments_code(a, b)) return refuse(code, place);
  const Operand left = a_form(*a);
  const Operand right = b_form(*b);
  if (left.cols != right.rows) return refuse(kOutOfRange, place);
  Result result(r, left.rows, right.cols, {Extent(*a), Extent(*b)});
  if (result.code() != kSuccess) return refuse(result.code(), place, result.text());
  fill(result, left.rows, right.cols,
       [&](int i, int j) { return inner_product(left, right, i, j); });
  return result.commit();
}

int rows_scaled(RealMatrix* r, const DiagonalMatrix* d, const RealMatrix* a, View a_form,
                const Place& place) {
  if (const int code = arguments_code(d, a)) return refuse(code, place);
  const Operand right = a_form(*a);
  if (d->size != right.rows) return refuse(kOutOfRange, place);
  Result result(r, right.rows, right.cols, {Extent(*d), Extent(*a)});
  if (result.code() != kSuccess) return refuse(result.code(), place, result.text());
  fill(result, right.rows, right.cols, [&](int i, int j) { return d->data[i] * right(i, j); });
  return result.commit();
}

int columns_scaled(RealMatrix* r, const RealMatrix* a, View a_form, const DiagonalMatrix* d,
                   const Place& place) {
  if (const int code = arguments_code(a, d)) return refuse(code, place);
  const Operand left = a_form(*a);
  if (d->size != left.cols) return refuse(kOutOfRange, place);
  Result result(r, left.rows, left.cols, {Extent(*a), Extent(*d)});
  if (result.code() != kSuccess) return refuse(result.code(), place, result.text());
  fill(result, left.rows, left.cols, [&](int i, int j) { return left(i, j) * d->data[j]; });
  return result.commit();
}

}  // namespace

int MatMultRAB(RealMatrix* r, const RealMatrix* a, const RealMatrix* b) {
  return product(r, a, plain, b, plain, TREL_HERE);
}

int MatMultRABt(RealMatrix* r, const RealMatrix* a, const RealMatrix* b) {
  return product(r, a, plain, b, transposed, TREL_HERE);
}

int MatMultRAtB(RealMatrix* r, const RealMatrix* a, const RealMatrix* b) {
  return product(r, a, transposed, b, plain, TREL_HERE);
}

int MatMultRAtBt(RealMatrix* r, const RealMatrix* a, const RealMatrix* b) {
  return product(r, a, transposed, b, transposed, TREL_HERE);
}

int MatMultRDA(RealMatrix* r, const DiagonalMatrix* d, const RealMatrix* a) {
  return rows_scaled(r, d, a, plain, TREL_HERE);
}

int MatMultRDAt(RealMatrix* r, const DiagonalMatrix* d, const RealMatrix* a) {
  return rows_scaled(r, d, a, transposed, TREL_HERE);
}

int MatMultRAD(RealMatrix* r, const RealMatrix* a, const DiagonalMatrix* d) {
  return columns_scaled(r, a, plain, d, TREL_HERE);
}

int MatMultRAtD(RealMatrix* r, const RealMatrix* a, const DiagonalMatrix* d) {
  return columns_scaled(r, a, transposed, d, TREL_HERE);
}

int MatMultDAB(DiagonalMatrix* d, const RealMatrix* a, const RealMatrix* b) {
  if (const int code = arguments_code(a, b)) return refuse(code, TREL_HERE);
  if (a->cols != b->rows || a->rows != b->cols) return refuse(kOutOfRange, TREL_HERE);
  Result result(d, a->rows, {Extent(*a), Extent(*b)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  for (int i = 0; i < a->rows; ++i) result[i] = inner_product(plain(*a), plain(*b), i, i);
  return result.commit();
}

namespace {

// R = element(value of A).
template <class Element>
int each(RealMatrix* r, const RealMatrix* a, const Place& place, Element element) {
  if (const int code = argument_code(a)) return refuse(code, place);
  const Operand source = plain(*a);
  Result result(r, source.rows, source.cols, {Extent(*a)});
  if (result.code() != kSuccess) return refuse(result.code(), place, result.text());
  fill(result, source.rows, source.cols, [&](int i, int j) { return element(source(i, j)); });
  return result.commit();
}

// R = element(value of A, value of B).
template <class Element>
int each_pair(RealMatrix* r, const RealMatrix* a, const RealMatrix* b, const Place& place,
              Element element) {
  if (const int code = arguments_code(a, b)) return refuse(code, place);
  if (a->rows != b->rows || a->cols != b->cols) return refuse(kOutOfRange, place);
  const Operand left = plain(*a);
  const Operand right = plain(*b);
  Result result(r, left.rows, left.cols, {Extent(*a), Extent(*b)});
  if (result.code() != kSuccess) return refuse(result.code(), place, result.text());
  fill(result, left.rows, left.cols,
       [&](int i, int j) { return element(left(i, j), right(i, j)); });
  return result.commit();
}

}  // namespace

int MatScaleRsA(RealMatrix* r, double s, const RealMatrix* a) {
  if (!std::isfinite(s)) return refuse(kOutOfRange, TREL_HERE);
  return each(r, a, TREL_HERE, [s](double value) { return s * value; });
}

int MatScaleRsD(RealMatrix* r, double s, const DiagonalMatrix* d) {
  if (const int code = argument_code(d)) return refuse(code, TREL_HERE);
  if (!std::isfinite(s)) return refuse(kOutOfRange, TREL_HERE);
  const int size = d->size;
  Result result(r, size, size, {Extent(*d)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, size, size, [&](int i, int j) { return i == j ? s * d->data[i] : 0.0; });
  return result.commit();
}

int MatLimitRsA(RealMatrix* r, double s, const RealMatrix* a) {
  if (!std::isfinite(s) || s < 0) return refuse(kOutOfRange, TREL_HERE);
  return each(r, a, TREL_HERE, [s](double value) { return std::clamp(value, -s, s); });
}

int MatAddRAB(RealMatrix* r, const RealMatrix* a, const RealMatrix* b) {
  return each_pair(r, a, b, TREL_HERE, [](double left, double right) { return left + right; });
}

int MatAddRDE(RealMatrix* r, const DiagonalMatrix* d, const DiagonalMatrix* e) {
  if (const int code = arguments_code(d, e)) return refuse(code, TREL_HERE);
  if (d->size != e->size) return refuse(kOutOfRange, TREL_HERE);
  const int size = d->size;
  Result result(r, size, size, {Extent(*d), Extent(*e)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, size, size, [&](int i, int j) { return i == j ? d->data[i] + e->data[i] : 0.0; });
  return result.commit();
}

int MatSubRAB(RealMatrix* r, const RealMatrix* a, const RealMatrix* b) {
  return each_pair(r, a, b, TREL_HERE, [](double left, double right) { return left - right; });
}

int MatSubRDB(RealMatrix* r, const DiagonalMatrix* d, const RealMatrix* b) {
  if (const int code = arguments_code(d, b)) return refuse(code, TREL_HERE);
  if (b->rows != d->size || b->cols != d->size) return refuse(kOutOfRange, TREL_HERE);
  const Operand right = plain(*b);
  Result result(r, d->size, d->size, {Extent(*d), Extent(*b)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, d->size, d->size,
       [&](int i, int j) { return (i == j ? d->data[i] : 0.0) - right(i, j); });
  return result.commit();
}

int MatMaxDiff(double* difference, const RealMatrix* a, const RealMatrix* b) {
  if (difference == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = arguments_code(a, b)) return refuse(code, TREL_HERE);
  if (a->rows != b->rows || a->cols != b->cols) return refuse(kOutOfRange, TREL_HERE);
  const Operand left = plain(*a);
  const Operand right = plain(*b);
  double most = 0;
  for (int i = 0; i < left.rows; ++i) {
    for (int j = 0; j < left.cols; ++j) {
      most = std::max(most, std::fabs(left(i, j) - right(i, j)));
    }
  }
  *difference = most;
  return kSuccess;
}

int MatVectorNorm(double* norm, const RealMatrix* a) {
  if (norm == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = argument_code(a)) return refuse(code, TREL_HERE);
  if (!is_vector(*a)) return refuse(kOutOfRange, TREL_HERE);
  const Operand elements = column(*a);
  double most = 0;
  for (int i = 0; i < elements.rows; ++i) most = std::max(most, std::fabs(elements(i, 0)));
  // A power of two, so that scaling rounds nothing away.
  const int exponent = most > 0 ? std::ilogb(most) : 0;
  double sum = 0;
  for (int i = 0; i < elements.rows; ++i) {
    const double scaled = std::scalbn(elements(i, 0), -exponent);
    sum += scaled * scaled;
  }
  *norm = std::scalbn(std::sqrt(sum), exponent);
  return kSuccess;
}

int MatDotProduct(double* product, const RealMatrix* a, const RealMatrix* b) {
  if (product == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = arguments_code(a, b)) return refuse(code, TREL_HERE);
  if (!is_vector(*a) || !is_vector(*b)) return refuse(kOutOfRange, TREL_HERE);
  const Operand left = column(*a);
  const Operand right = column(*b);
  if (left.rows != right.rows) return refuse(kOutOfRange, TREL_HERE);
  double sum = 0;
  for (int i = 0; i < left.rows; ++i) sum += left(i, 0) * right(i, 0);
  *product = sum;
  return kSuccess;
}

int MatCrossProduct(RealMatrix* r, const RealMatrix* a, const RealMatrix* b) {
  Vector3 left;
  Vector3 right;
  if (const int code = load(left, a)) return refuse(code, TREL_HERE);
  if (const int code = load(right, b)) return refuse(code, TREL_HERE);
  const int code = store(r, cross(left, right));
  return code == kSuccess ? kSuccess : refuse(code, TREL_HERE);
}

}  // namespace Trel::Lib
