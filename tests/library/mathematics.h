// What the tests of the mathematics share: matrices with storage of exactly their size, random
// ones, and refusals checked to the word.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "library/matrix.h"

namespace mathematics {

using namespace Trel::Lib;

inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kPi = std::numbers::pi;
inline constexpr double kRight = std::numbers::pi / 2;

constexpr double radians(double degrees) {
  return degrees * (kPi / 180);
}
constexpr double degrees(double angle) {
  return angle * (180 / kPi);
}

// A record over storage of its own, without an element to spare.
class OwnedMatrix : public RealMatrix {
 public:
  // Allocated and empty.
  OwnedMatrix(int row_count, int col_count)
      : RealMatrix{nullptr, 0, 0, row_count, col_count},
        storage_(static_cast<std::size_t>(row_count) * col_count) {
    data = storage_.data();
  }
  OwnedMatrix(int row_count, int col_count, std::initializer_list<double> values)
      : OwnedMatrix(row_count, col_count) {
    rows = row_count;
    cols = col_count;
    std::copy(values.begin(), values.end(), storage_.begin());
  }
  OwnedMatrix(const OwnedMatrix& other) : RealMatrix(other), storage_(other.storage_) {
    data = storage_.data();
  }
  OwnedMatrix& operator=(const OwnedMatrix&) = delete;

  double& operator()(int row, int col) { return storage_[row * cols_allocated + col]; }
  double operator()(int row, int col) const { return storage_[row * cols_allocated + col]; }
  [[nodiscard]] const std::vector<double>& storage() const { return storage_; }

 private:
  std::vector<double> storage_;
};

class Diagonal : public DiagonalMatrix {
 public:
  // Allocated and empty.
  explicit Diagonal(int count) : DiagonalMatrix{nullptr, 0, count}, storage_(count) {
    data = storage_.data();
  }
  Diagonal(std::initializer_list<double> values) : Diagonal(static_cast<int>(values.size())) {
    size = size_allocated;
    std::copy(values.begin(), values.end(), storage_.begin());
  }
  Diagonal(const Diagonal&) = delete;
  Diagonal& operator=(const Diagonal&) = delete;

  double& operator[](int index) { return storage_[index]; }
  [[nodiscard]] const std::vector<double>& storage() const { return storage_; }

 private:
  std::vector<double> storage_;
};

inline OwnedMatrix column(std::initializer_list<double> values) {
  return {static_cast<int>(values.size()), 1, values};
}

// The elements in use, row by row.
inline std::vector<double> elements(const RealMatrix& a) {
  std::vector<double> values;
  for (int i = 0; i < a.rows; ++i) {
    for (int j = 0; j < a.cols; ++j) values.push_back(a.data[i * a.cols_allocated + j]);
  }
  return values;
}

// A source of numbers that is the same in every run.
class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}

  double number(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(engine_);
  }
  int integer(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }
  OwnedMatrix matrix(int rows, int cols, double size = 10) {
    OwnedMatrix m(rows, cols);
    m.rows = rows;
    m.cols = cols;
    for (int i = 0; i < rows; ++i) {
      for (int j = 0; j < cols; ++j) m(i, j) = number(-size, size);
    }
    return m;
  }

 private:
  std::mt19937_64 engine_;
};

inline void expect_near(const OwnedMatrix& a, const OwnedMatrix& b, double tolerance) {
  ASSERT_EQ(a.rows, b.rows);
  ASSERT_EQ(a.cols, b.cols);
  for (int i = 0; i < a.rows; ++i) {
    for (int j = 0; j < a.cols; ++j) {
      EXPECT_NEAR(a(i, j), b(i, j), tolerance) << "row " << i << ", column " << j;
    }
  }
}

inline OwnedMatrix identity(int size) {
  OwnedMatrix m(size, size);
  MatIdentityR(&m, size);
  return m;
}

// That `call` returns `code` and reports it once, as `function` of `file`, with `text`; an empty
// `text` stands for the code's own.
template <class Call>
void expect_refused(Call call, int code, const std::string& function, const std::string& file,
                    std::string text = "") {
  if (text.empty()) text = error_messages[code];
  testing::internal::CaptureStderr();
  const int returned = call();
  const std::string notice = testing::internal::GetCapturedStderr();
  EXPECT_EQ(returned, code);
  const std::string head = "*** Error in function " + function + "() at line ";
  const std::string tail = " of file " + file + " ***\n--> " + text + "\n";
  ASSERT_GT(notice.size(), head.size() + tail.size()) << notice;
  EXPECT_EQ(notice.substr(0, head.size()), head);
  EXPECT_EQ(notice.substr(notice.size() - tail.size()), tail);
  const std::string line = notice.substr(head.size(), notice.size() - head.size() - tail.size());
  EXPECT_EQ(line.find_first_not_of("0123456789"), std::string::npos) << notice;
}

}  // namespace mathematics
