// Reading numbers and words out of a line of DBC text, with the conversions of the C library.
//
// Everything works on views of the caller's text and allocates nothing. White space is that of the
// "C" locale whatever locale the program runs in.
#pragma once

#include <cstddef>
#include <string_view>

namespace Trel::Can {

[[nodiscard]] bool is_space(char character);

// `text` without the spaces and tabs at its two ends.
[[nodiscard]] std::string_view trim(std::string_view text);

// The text before the first white space.
[[nodiscard]] std::string_view first_word(std::string_view text);

// A decimal integer at the start of a text: an optional sign, then digits.
struct Decimal {
  bool negative = false;
  bool overflow = false;  // the magnitude does not fit, and is the largest number
  unsigned long long magnitude = 0;
  std::size_t length = 0;  // characters read with the sign, 0 where no digit follows
};
[[nodiscard]] Decimal read_decimal(std::string_view text);

// Conversions one after the other, each going on where the last one stopped. A conversion that
// fails reads nothing more and returns false.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  // "%u": white space is skipped and either sign taken, a minus wrapping. What needs more than 32
  // bits loses the upper ones; what needs more than 64 reads as the largest number.
  [[nodiscard]] bool read_unsigned(unsigned int& value);
  // "%d": the same. What leaves the signed 64-bit range reads as -1 above and 0 below it.
  [[nodiscard]] bool read_signed(int& value);
  // "%s": white space is skipped, then at most `limit` other characters are taken, at least one.
  [[nodiscard]] bool read_word(std::string_view& word, std::size_t limit = std::string_view::npos);
  // "%c": the next character, white space too.
  [[nodiscard]] bool read_character(char& character);
  // The next character must be `character`; white space is not skipped.
  [[nodiscard]] bool accept(char character);

  // What has not been read.
  [[nodiscard]] std::string_view rest() const { return rest_; }

 private:
  void skip_space();
  [[nodiscard]] bool read_number(Decimal& number);

  std::string_view rest_;
};

}  // namespace Trel::Can
