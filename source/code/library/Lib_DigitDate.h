// Dates that texts begin with, as six digits: year of the century, month, day.
#pragma once

#include <optional>

#include "library/Lib_Time.h"

namespace Trel::Lib {

// The number that two characters show; -1 if they are no digits.
[[nodiscard]] constexpr int two_digits(const char* text) {
  const int tens = text[0] - '0';
  const int ones = text[1] - '0';
  return tens >= 0 && tens <= 9 && ones >= 0 && ones <= 9 ? tens * 10 + ones : -1;
}

// The start of the day that the first six of the characters show, in the years from 2000 to 2099;
// none if they are not all digits. Months and days are not looked at further.
[[nodiscard]] inline std::optional<UtcNano> date_of_digits(const char* text) {
  const int year = two_digits(text);
  const int month = two_digits(text + 2);
  const int day = two_digits(text + 4);
  if (year < 0 || month < 0 || day < 0) return std::nullopt;
  return UtcNano(2000 + year, month, day, 0, 0, 0, 0, 0, 0);
}

}  // namespace Trel::Lib
