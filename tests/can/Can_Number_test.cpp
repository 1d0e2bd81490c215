#include "can/Can_Number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <regex>
#include <sstream>
#include <string>

namespace Trel::Can {
namespace {

Number number(std::string_view text) {
  Number result;
  EXPECT_TRUE(result.parse(text)) << text;
  return result;
}

TEST(Number, an_integer_is_read_three_ways) {
  const Number result = number("42");
  EXPECT_FALSE(result.is_real());
  EXPECT_EQ(result.get_signed(), 42);
  EXPECT_EQ(result.get_unsigned(), 42U);
  EXPECT_EQ(result.get_real(), 42.0);
}

TEST(Number, a_negative_integer_wraps_in_the_unsigned_reading) {
  const Number result = number("-1");
  EXPECT_EQ(result.get_signed(), -1);
  EXPECT_EQ(result.get_unsigned(), 18446744073709551615ULL);
  EXPECT_EQ(result.get_real(), -1.0);
}

TEST(Number, the_integer_readings_stop_where_the_real_one_goes_on) {
  const Number result = number("-2.5e1");
  EXPECT_TRUE(result.is_real());
  EXPECT_EQ(result.get_signed(), -2);
  EXPECT_EQ(result.get_unsigned(), 18446744073709551614ULL);
  EXPECT_EQ(result.get_real(), -25.0);
}

TEST(Number, each_character_of_the_list_makes_a_number_real_and_no_other_does) {
  for (const char character : std::string(".eEdDnaif")) {
    EXPECT_TRUE(number(std::string("1") + character).is_real()) << character;
  }
  for (const char character : std::string("xXgFNAIpu,")) {
    EXPECT_FALSE(number(std::string("1") + character).is_real()) << character;
  }
}

TEST(Number, white_space_within_is_taken_out) {
  const Number result = number(" - 1\t2 \v.\f5\r\n");
  EXPECT_EQ(result.get_text(), "-12.5");
  EXPECT_EQ(result.get_signed(), -12);
  EXPECT_EQ(result.get_real(), -12.5);
}

TEST(Number, the_word_nan_is_real_and_its_value_zero) {
  Number result;
  EXPECT_FALSE(result.parse("nan"));
  EXPECT_TRUE(result.is_real());
  EXPECT_EQ(result.get_real(), 0.0);
}

TEST(Number, words_and_signs_are_no_numbers) {
  for (const char* text : {"", " ", "-", "+", "inf", "-inf", "x", ".", "-.", "e5", ".e5", "+-1"}) {
    Number result;
    EXPECT_FALSE(result.parse(text)) << text;
    EXPECT_EQ(result.get_signed(), 0) << text;
    EXPECT_EQ(result.get_unsigned(), 0U) << text;
    EXPECT_EQ(result.get_real(), 0.0) << text;
  }
}

TEST(Number, an_exponent_without_digits_fails_the_real_reading_alone) {
  for (const char* text : {"7e", "7e+", "7E-x"}) {
    const Number result = number(text);
    EXPECT_EQ(result.get_signed(), 7) << text;
    EXPECT_EQ(result.get_real(), 0.0) << text;
  }
}

TEST(Number, a_fraction_without_digits_on_one_side_is_real) {
  EXPECT_EQ(number("5.").get_real(), 5.0);
  EXPECT_EQ(number(".5").get_real(), 0.5);
  EXPECT_EQ(number("-.5").get_real(), -0.5);
  EXPECT_EQ(number("+.5").get_real(), 0.5);
  EXPECT_EQ(number(".5").get_signed(), 0);
}

TEST(Number, hexadecimal_is_not_read) {
  const Number result = number("0x10");
  EXPECT_EQ(result.get_signed(), 0);
  EXPECT_EQ(result.get_unsigned(), 0U);
  EXPECT_EQ(result.get_real(), 0.0);
}

TEST(Number, a_leading_zero_is_no_octal_mark) {
  EXPECT_EQ(number("010").get_signed(), 10);
}

TEST(Number, a_reading_that_is_too_large_leaves_zero_in_that_reading_only) {
  EXPECT_EQ(number("9223372036854775807").get_signed(), std::numeric_limits<long long>::max());
  EXPECT_EQ(number("-9223372036854775808").get_signed(), std::numeric_limits<long long>::min());

  const Number above = number("9223372036854775808");
  EXPECT_EQ(above.get_signed(), 0);
  EXPECT_EQ(above.get_unsigned(), 9223372036854775808ULL);
  EXPECT_EQ(number("-9223372036854775809").get_signed(), 0);

  const Number wide = number("18446744073709551616");
  EXPECT_EQ(wide.get_signed(), 0);
  EXPECT_EQ(wide.get_unsigned(), 0U);
  EXPECT_EQ(wide.get_real(), 18446744073709551616.0);
  EXPECT_EQ(number("-18446744073709551616").get_unsigned(), 0U);
}

TEST(Number, a_real_number_too_large_leaves_zero) {
  for (const char* text : {"1e999", "-1e999", "1e99999999999999999999"}) {
    const Number result = number(text);
    EXPECT_EQ(std::abs(result.get_signed()), 1) << text;
    EXPECT_EQ(result.get_real(), 0.0) << text;
  }
  EXPECT_EQ(number("1.7976931348623157e308").get_real(), std::numeric_limits<double>::max());
  EXPECT_EQ(number("1e309").get_real(), 0.0);
}

TEST(Number, a_real_number_too_small_is_the_nearest_one) {
  EXPECT_EQ(number("4.9406564584124654e-324").get_real(),
            std::numeric_limits<double>::denorm_min());
  Number result;
  EXPECT_TRUE(result.parse(".1e-999"));
  EXPECT_EQ(result.get_real(), 0.0);
}

TEST(Number, a_negative_zero_keeps_its_sign) {
  EXPECT_TRUE(std::signbit(number("-0.0").get_real()));
}

TEST(Number, parsing_again_forgets_the_number_before) {
  Number result = number("2.5");
  EXPECT_FALSE(result.parse("x"));
  EXPECT_FALSE(result.is_real());
  EXPECT_EQ(result.get_text(), "x");
  EXPECT_EQ(result.get_signed(), 0);
  EXPECT_EQ(result.get_unsigned(), 0U);
  EXPECT_EQ(result.get_real(), 0.0);
}

TEST(Number, a_million_digits_are_no_burden) {
  const Number result = number("0." + std::string(1'000'000, '3'));
  EXPECT_EQ(result.get_real(), 1.0 / 3.0);
  EXPECT_EQ(number(std::string(1'000'000, ' ') + "5").get_signed(), 5);
}

template <class T>
T read_by_stream(const std::string& text, bool& good) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  T value{};
  const bool read = static_cast<bool>(stream >> value);
  good = good || read;
  return read ? value : T{};
}

// Streams and regular expressions of the standard library are the judge.
TEST(Number, random_texts_read_as_streams_read_them) {
  constexpr unsigned int kSeed = 20260802;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  const std::regex space("\\s+");
  const std::string alphabet = "0123456789000999123..eE+--+ \txdninf,";
  for (int round = 0; round < 60000; ++round) {
    std::string text;
    for (std::size_t size = random() % 26; size > 0; --size) {
      // Mostly digits, so that long numbers come up too.
      text += random() % 3 == 0 ? alphabet[random() % alphabet.size()]
                                : static_cast<char>('0' + random() % 10);
    }
    const std::string clean = std::regex_replace(text, space, "");
    bool good = false;
    const auto as_signed = read_by_stream<long long>(clean, good);
    const auto as_unsigned = read_by_stream<unsigned long long>(clean, good);
    const auto as_real = read_by_stream<double>(clean, good);

    Number result;
    ASSERT_EQ(result.parse(text), good) << text;
    ASSERT_EQ(result.get_text(), clean);
    ASSERT_EQ(result.is_real(), text.find_first_of(".eEdDnaif") != std::string::npos) << text;
    ASSERT_EQ(result.get_signed(), as_signed) << text;
    ASSERT_EQ(result.get_unsigned(), as_unsigned) << text;
    ASSERT_EQ(result.get_real(), as_real) << text;
    ASSERT_EQ(std::signbit(result.get_real()), std::signbit(as_real)) << text;
  }
}

}  // namespace
}  // namespace Trel::Can
