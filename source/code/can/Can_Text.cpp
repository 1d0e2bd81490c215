#include "can/Can_Text.h"

#include <algorithm>
#include <limits>

namespace Trel::Can {

namespace {

constexpr unsigned long long kLargest = std::numeric_limits<unsigned long long>::max();
constexpr unsigned long long kLargestSigned = std::numeric_limits<long long>::max();

}  // namespace

bool is_space(char character) {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

std::string_view trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

std::string_view first_word(std::string_view text) {
  return {text.begin(), std::find_if(text.begin(), text.end(), is_space)};
}

Decimal read_decimal(std::string_view text) {
  Decimal number;
  std::size_t at = 0;
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
    number.negative = text[0] == '-';
    at = 1;
  }
  const std::size_t digits = at;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    const auto digit = static_cast<unsigned long long>(text[at] - '0');
    if (number.magnitude > (kLargest - digit) / 10) number.overflow = true;
    number.magnitude = number.overflow ? kLargest : number.magnitude * 10 + digit;
  }
  number.length = at > digits ? at : 0;
  return number;
}

void Scanner::skip_space() {
  const auto* const next = std::find_if_not(rest_.begin(), rest_.end(), is_space);
  rest_.remove_prefix(static_cast<std::size_t>(next - rest_.begin()));
}

bool Scanner::read_number(Decimal& number) {
  skip_space();
  number = read_decimal(rest_);
  rest_.remove_prefix(number.length);
  return number.length > 0;
}

bool Scanner::read_unsigned(unsigned int& value) {
  Decimal number;
  if (!read_number(number)) return false;
  const bool wraps = number.negative && !number.overflow;
  value = static_cast<unsigned int>(wraps ? 0 - number.magnitude : number.magnitude);
  return true;
}

bool Scanner::read_signed(int& value) {
  Decimal number;
  if (!read_number(number)) return false;
  const unsigned long long end = kLargestSigned + (number.negative ? 1 : 0);
  const unsigned long long magnitude = std::min(number.magnitude, end);
  value = static_cast<int>(number.negative ? 0 - magnitude : magnitude);
  return true;
}

bool Scanner::read_word(std::string_view& word, std::size_t limit) {
  skip_space();
  word = first_word(rest_).substr(0, limit);
  rest_.remove_prefix(word.size());
  return !word.empty();
}

bool Scanner::read_character(char& character) {
  if (rest_.empty()) return false;
  character = rest_.front();
  rest_.remove_prefix(1);
  return true;
}

bool Scanner::accept(char character) {
  char next = 0;
  if (rest_.empty() || rest_.front() != character) return false;
  return read_character(next);
}

}  // namespace Trel::Can
