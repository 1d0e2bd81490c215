#include "library/matrix_factor.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "library/matrix_support.h"

namespace Trel::Lib {

namespace {

constexpr double kSmallestDivisor = 1e-20;

}  // namespace

int MatUDUtDecompUDA(RealMatrix* u, DiagonalMatrix* d, const RealMatrix* a) {
  if (const int code = argument_code(a)) return refuse(code, TREL_HERE);
  if (a->rows != a->cols) return refuse(kOutOfRange, TREL_HERE);
  const int size = a->rows;
  const Operand source = plain(*a);
  if (const int code = result_code(d, size)) return refuse(code, TREL_HERE);
  if (const int code = result_code(u, size, size)) return refuse(code, TREL_HERE);
  // Named as arguments of their own, both are worked out apart from their storage: a failure half
  // way leaves them as they were.
  Result upper(u, size, size, {Extent(u->data, 1)});
  Result diagonal(d, size, {Extent(d->data, 1)});
  if (upper.code() != kSuccess) return refuse(upper.code(), TREL_HERE, upper.text());
  if (diagonal.code() != kSuccess) return refuse(diagonal.code(), TREL_HERE, diagonal.text());

  fill(upper, size, size, [](int i, int j) { return i == j ? 1.0 : 0.0; });
  for (int j = size - 1; j >= 0; --j) {
    for (int i = j; i >= 0; --i) {
      double rest = source(i, j);
      for (int k = j + 1; k < size; ++k) rest -= upper.row(i)[k] * diagonal[k] * upper.row(j)[k];
      if (i != j) {
        upper.row(i)[j] = rest / diagonal[j];
      } else if (rest >= kSmallestDivisor) {
        diagonal[j] = rest;
      } else {
        return refuse(kIllConditioned, TREL_HERE,
                      "Encountered ill-conditioned matrix in UDUt decomposition");
      }
    }
  }
  upper.commit();
  return diagonal.commit();
}

int MatUbksbRUB(RealMatrix* r, const RealMatrix* u, const RealMatrix* b) {
  if (const int code = arguments_code(u, b)) return refuse(code, TREL_HERE);
  if (u->rows != u->cols || b->rows != u->rows) return refuse(kOutOfRange, TREL_HERE);
  const Operand upper = plain(*u);
  const Operand right = plain(*b);
  for (int i = 0; i < upper.rows; ++i) {
    if (std::fabs(upper(i, i)) < kSmallestDivisor) return refuse(kIllConditioned, TREL_HERE);
  }
  Result result(r, right.rows, right.cols, {Extent(*u), Extent(*b)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  for (int i = upper.rows - 1; i >= 0; --i) {
    for (int j = 0; j < right.cols; ++j) {
      double rest = right(i, j);
      for (int k = i + 1; k < upper.rows; ++k) rest -= upper(i, k) * result.row(k)[j];
      result.row(i)[j] = rest / upper(i, i);
    }
  }
  return result.commit();
}

namespace {

// The factors while they are worked out, in the record's own storage.
struct Factors {
  double* data;
  int* pivots;
  int size;

  [[nodiscard]] double* row(int index) const {
    return data + static_cast<std::ptrdiff_t>(index) * size;
  }

  // Element (row, col) less the products of what is already factored ahead of step `step`.
  [[nodiscard]] double reduced(int index, int col, int step) const {
    double rest = row(index)[col];
    for (int k = 0; k < step; ++k) rest -= row(index)[k] * row(k)[col];
    return rest;
  }
};

double largest_in_row(const Operand& a, int row) {
  double most = 0;
  for (int j = 0; j < a.cols; ++j) most = std::max(most, std::fabs(a(row, j)));
  return most;
}

// Works out column `step` of the lower factor, brings its best pivot up and divides the upper
// factor's row by it. `scales` has the size of each row of A. False when no pivot stands out from
// rounding.
bool crout_step(const Factors& factors, double* scales, int step) {
  int best = step;
  double best_share = -1;
  for (int i = step; i < factors.size; ++i) {
    double& element = factors.row(i)[step];
    element = factors.reduced(i, step, step);
    const double share = std::fabs(element) / scales[i];
    if (share > best_share) {
      best_share = share;
      best = i;
    }
  }
  const double rounding = factors.size * std::numeric_limits<double>::epsilon();
  if (!(best_share > rounding && std::isfinite(best_share))) return false;

  factors.pivots[step] = best;
  if (best != step) {
    std::swap_ranges(factors.row(step), factors.row(step) + factors.size, factors.row(best));
    std::swap(scales[step], scales[best]);
  }
  double* row = factors.row(step);
  for (int j = step + 1; j < factors.size; ++j) {
    row[j] = factors.reduced(step, j, step) / row[step];
  }
  return true;
}

bool has_zero_pivot(const CroutMatrix& c) {
  for (std::ptrdiff_t k = 0; k < c.size; ++k) {
    if (c.data[k * c.size + k] == 0) return true;
  }
  return false;
}

// Solves with the factors, in place of the right-hand side that `result` holds.
void substitute(Result& result, int cols, const CroutMatrix& c) {
  const int size = c.size;
  const Operand factors{c.data, size, size, size, 1};
  for (int j = 0; j < cols; ++j) {
    for (int i = 0; i < size; ++i) {
      std::swap(result.row(i)[j], result.row(c.pivots[i])[j]);
    }
    for (int i = 0; i < size; ++i) {
      double rest = result.row(i)[j];
      for (int k = 0; k < i; ++k) rest -= factors(i, k) * result.row(k)[j];
      result.row(i)[j] = rest / factors(i, i);
    }
    for (int i = size - 1; i >= 0; --i) {
      double rest = result.row(i)[j];
      for (int k = i + 1; k < size; ++k) rest -= factors(i, k) * result.row(k)[j];
      result.row(i)[j] = rest;
    }
  }
}

}  // namespace

int MatCroutDecompCA(CroutMatrix* c, const RealMatrix* a) {
  constexpr const char* kText = "Encountered ill-conditioned matrix in Crout decomposition";
  if (c == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = argument_code(a)) return refuse(code, TREL_HERE);
  if (a->rows != a->cols) return refuse(kOutOfRange, TREL_HERE);
  const int size = a->rows;
  if (c->data == nullptr || c->pivots == nullptr || size > c->size_allocated) {
    return refuse(kInsufficientSpace, TREL_HERE);
  }
  std::array<double, 16> small;
  double* allocated = nullptr;
  double* scales = small.data();
  if (static_cast<std::size_t>(size) > small.size()) {
    scales = allocated = allocate_elements(static_cast<std::size_t>(size), 1);
    if (allocated == nullptr) return refuse(kAllocationFailed, TREL_HERE, kNoWorkspace);
  }

  c->size = 0;
  const Factors factors{c->data, c->pivots, size};
  const Operand source = plain(*a);
  bool sound = true;
  for (int i = 0; i < size; ++i) {
    scales[i] = largest_in_row(source, i);
    sound = sound && scales[i] > 0;
    for (int j = 0; j < size; ++j) factors.row(i)[j] = source(i, j);
  }
  for (int step = 0; sound && step < size; ++step) sound = crout_step(factors, scales, step);
  std::free(allocated);
  if (!sound) return refuse(kIllConditioned, TREL_HERE, kText);
  c->size = size;
  return kSuccess;
}

int MatCroutSolveRCB(RealMatrix* r, const CroutMatrix* c, const RealMatrix* b) {
  if (const int code = arguments_code(c, b)) return refuse(code, TREL_HERE);
  if (b->rows != c->size) return refuse(kOutOfRange, TREL_HERE);
  if (has_zero_pivot(*c)) {
    return refuse(kIllConditioned, TREL_HERE, "Encountered ill-conditioned matrix in Crout solver");
  }
  const int cols = b->cols;
  Result result(r, c->size, cols, {Extent(*c), Extent(*b)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, c->size, cols, plain(*b));
  substitute(result, cols, *c);
  return result.commit();
}

int MatCroutInvertRC(RealMatrix* r, const CroutMatrix* c) {
  if (const int code = argument_code(c)) return refuse(code, TREL_HERE);
  if (has_zero_pivot(*c)) {
    return refuse(kIllConditioned, TREL_HERE,
                  "Encountered ill-conditioned matrix in Crout inverse");
  }
  Result result(r, c->size, c->size, {Extent(*c)});
  if (result.code() != kSuccess) return refuse(result.code(), TREL_HERE, result.text());
  fill(result, c->size, c->size, [](int i, int j) { return i == j ? 1.0 : 0.0; });
  substitute(result, c->size, *c);
  return result.commit();
}

int MatCroutDetSC(double* s, const CroutMatrix* c) {
  if (s == nullptr) return refuse(kNullPointer, TREL_HERE);
  if (const int code = argument_code(c)) return refuse(code, TREL_HERE);
  double determinant = 1;
  for (std::ptrdiff_t k = 0; k < c->size; ++k) {
    determinant *= c->data[k * c->size + k];
    if (c->pivots[k] != k) determinant = -determinant;
  }
  *s = determinant;
  return kSuccess;
}

int MatInvRA(RealMatrix* r, const RealMatrix* a) {
  if (const int code = argument_code(a)) return refuse(code, TREL_HERE);
  if (a->rows != a->cols) return refuse(kOutOfRange, TREL_HERE);
  if (const int code = result_code(r, a->rows, a->rows)) return refuse(code, TREL_HERE);
  CroutMatrix factors;
  if (const int code = MatAllocC(&factors, a->rows)) return code;
  int code = MatCroutDecompCA(&factors, a);
  if (code == kSuccess) code = MatCroutInvertRC(r, &factors);
  MatCFree(&factors);
  return code;
}

}  // namespace Trel::Lib
