// What the tests of elements by name have in common: the list of names, what a row expects of an
// element, and what the element holds.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <fstream>
#include <set>
#include <string>
#include <type_traits>

namespace Trel::Sto::Test {

inline constexpr double kDegrees = 57.29577951308232;  // in a radian

// A whole number, which must be met, or a real one, which must be met within a tolerance.
struct Number {
  template <class T>
  constexpr Number(T number)
      : whole(std::is_integral_v<T>),
        integer(whole ? static_cast<long long>(number) : 0),
        real(static_cast<double>(number)) {}

  bool whole;
  long long integer;
  double real;
};

// What an element holds.
struct Seen {
  bool found = false;
  bool good = false;
  bool whole = false;
  long long integer = 0;
  double real = 0.0;

  template <class T>
  static Seen of(bool good, T number) {
    Seen seen{true, good, std::is_integral_v<T>, 0, static_cast<double>(number)};
    if constexpr (std::is_integral_v<T>) seen.integer = static_cast<long long>(number);
    return seen;
  }
};

// `share` is the tolerance of a real number, of its size or of 1.
inline void expect_number(const Seen& seen, const Number& expected, double share) {
  EXPECT_TRUE(seen.found && seen.good);
  if (seen.whole) {
    EXPECT_TRUE(expected.whole);
    EXPECT_EQ(seen.integer, expected.integer);
  } else {
    EXPECT_NEAR(seen.real, expected.real, share * std::max(1.0, std::abs(expected.real)));
  }
}

// The names that a family has, one a line of a file.
inline std::multiset<std::string> names_in(const std::string& path) {
  std::ifstream lines(path);
  std::multiset<std::string> names;
  for (std::string line; std::getline(lines, line);) names.insert(line);
  return names;
}

}  // namespace Trel::Sto::Test
