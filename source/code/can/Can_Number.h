// One numeric field of a DBC text, kept three ways: as a signed and an unsigned 64-bit integer and
// as a real number.
//
// The three are read independently of one another, each as far as its own grammar goes, so "2.5e1"
// is 2, 2 and 25. A reading that finds no number, or one too large for it, leaves 0.
#pragma once

#include <string>
#include <string_view>

namespace Trel::Can {

class Number {
 public:
  // White space within `text` does not count. False when none of the three readings succeeds; the
  // number is then 0.
  bool parse(std::string_view text);

  // The text holds a character that an integer would not have, one of ".eEdDnaif". It says nothing
  // about whether the real reading succeeded.
  [[nodiscard]] bool is_real() const { return is_real_; }
  // The text without its white space.
  [[nodiscard]] const std::string& get_text() const { return text_; }
  [[nodiscard]] long long get_signed() const { return signed_; }
  // A negative number is wrapped.
  [[nodiscard]] unsigned long long get_unsigned() const { return unsigned_; }
  [[nodiscard]] double get_real() const { return real_; }

 private:
  bool is_real_ = false;
  std::string text_;
  long long signed_ = 0;
  unsigned long long unsigned_ = 0;
  double real_ = 0.0;
};

}  // namespace Trel::Can
