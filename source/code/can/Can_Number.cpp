#include "can/Can_Number.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <locale>
#include <sstream>
#include <system_error>

#include "can/Can_Text.h"

namespace Trel::Can {

namespace {

bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

bool read_signed(const Decimal& number, long long& value) {
  constexpr unsigned long long kLargest = std::numeric_limits<long long>::max();
  if (number.length == 0 || number.magnitude > kLargest + (number.negative ? 1 : 0)) return false;
  value = static_cast<long long>(number.negative ? 0 - number.magnitude : number.magnitude);
  return true;
}

bool read_unsigned(const Decimal& number, unsigned long long& value) {
  if (number.length == 0 || number.overflow) return false;
  value = number.negative ? 0 - number.magnitude : number.magnitude;
  return true;
}

// What a stream gathers for a real number: a sign, digits with at most one point, and an exponent,
// which makes the reading fail when it has no digits.
std::string_view gather_real(std::string_view text) {
  std::size_t at = 0;
  bool point = false;
  bool exponent = false;
  const auto skip_sign = [&] {
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  };
  skip_sign();
  while (at < text.size()) {
    const char next = text[at];
    const bool starts_exponent = (next == 'e' || next == 'E') && !exponent;
    const bool is_point = next == '.' && !point && !exponent;
    if (!is_digit(next) && !is_point && !starts_exponent) break;
    point = point || is_point;
    exponent = exponent || starts_exponent;
    ++at;
    if (starts_exponent) skip_sign();
  }
  return text.substr(0, at);
}

// Beyond the range of double: too small is a number, too large is none.
bool read_out_of_range(std::string_view text, double& value) {
  std::istringstream stream{std::string(text)};
  stream.imbue(std::locale::classic());
  double number = 0.0;
  if (!(stream >> number)) return false;
  value = number;
  return true;
}

bool read_real(std::string_view text, double& value) {
  std::string_view number = gather_real(text);
  if (!number.empty() && number.front() == '+') number.remove_prefix(1);
  double result = 0.0;
  const char* const end = number.data() + number.size();
  const auto [stopped, error] = std::from_chars(number.data(), end, result);
  if (error == std::errc::result_out_of_range) return read_out_of_range(number, value);
  if (error != std::errc{} || stopped != end) return false;
  value = result;
  return true;
}

}  // namespace

bool Number::parse(std::string_view text) {
  *this = Number();
  is_real_ = text.find_first_of(".eEdDnaif") != std::string_view::npos;
  std::remove_copy_if(text.begin(), text.end(), std::back_inserter(text_), is_space);
  const Decimal integer = read_decimal(text_);
  const bool as_signed = read_signed(integer, signed_);
  const bool as_unsigned = read_unsigned(integer, unsigned_);
  const bool as_real = read_real(text_, real_);
  return as_signed || as_unsigned || as_real;
}

}  // namespace Trel::Can
