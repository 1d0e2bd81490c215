#include "can/Can_Text.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

namespace Trel::Can {
namespace {

unsigned int read_unsigned(std::string_view text) {
  unsigned int value = 0;
  EXPECT_TRUE(Scanner(text).read_unsigned(value)) << text;
  return value;
}

int read_signed(std::string_view text) {
  int value = 0;
  EXPECT_TRUE(Scanner(text).read_signed(value)) << text;
  return value;
}

TEST(Scanner, an_unsigned_number_keeps_the_lower_32_bits) {
  EXPECT_EQ(read_unsigned("4294967295"), 0xFFFFFFFFU);
  EXPECT_EQ(read_unsigned("4294967297"), 1U);  // 2^32 + 1
  EXPECT_EQ(read_unsigned("-1"), 0xFFFFFFFFU);
  EXPECT_EQ(read_unsigned("+7"), 7U);
}

TEST(Scanner, an_unsigned_number_beyond_64_bits_is_the_largest_whatever_its_sign) {
  EXPECT_EQ(read_unsigned("18446744073709551615"), 0xFFFFFFFFU);
  EXPECT_EQ(read_unsigned("-18446744073709551615"), 1U);  // -(2^64 - 1) wraps to 1
  EXPECT_EQ(read_unsigned("18446744073709551616"), 0xFFFFFFFFU);
  EXPECT_EQ(read_unsigned("-18446744073709551616"), 0xFFFFFFFFU);
  EXPECT_EQ(read_unsigned("99999999999999999999999"), 0xFFFFFFFFU);
}

TEST(Scanner, a_signed_number_keeps_the_lower_32_bits) {
  EXPECT_EQ(read_signed("2147483647"), 2147483647);
  EXPECT_EQ(read_signed("2147483648"), -2147483647 - 1);
  EXPECT_EQ(read_signed("4294967303"), 7);  // 2^32 + 7
  EXPECT_EQ(read_signed("-4294967303"), -7);
}

TEST(Scanner, a_signed_number_beyond_64_bits_is_minus_one_above_and_zero_below) {
  EXPECT_EQ(read_signed("9223372036854775807"), -1);
  EXPECT_EQ(read_signed("9223372036854775808"), -1);
  EXPECT_EQ(read_signed("-9223372036854775808"), 0);
  EXPECT_EQ(read_signed("-9223372036854775809"), 0);
  EXPECT_EQ(read_signed("-99999999999999999999"), 0);
}

TEST(Scanner, a_number_needs_a_digit_behind_its_sign) {
  for (const char* text : {"", " ", "-", "+", "- 1", "+-1", "x1", ".5"}) {
    unsigned int number = 42;
    int integer = 42;
    EXPECT_FALSE(Scanner(text).read_unsigned(number)) << text;
    EXPECT_FALSE(Scanner(text).read_signed(integer)) << text;
    EXPECT_EQ(number, 42U);
    EXPECT_EQ(integer, 42);
  }
}

TEST(Scanner, a_word_ends_at_white_space_or_at_its_limit) {
  Scanner scanner(" \t ab\vcdef");
  std::string_view word;
  ASSERT_TRUE(scanner.read_word(word));
  EXPECT_EQ(word, "ab");
  ASSERT_TRUE(scanner.read_word(word, 3));
  EXPECT_EQ(word, "cde");
  EXPECT_EQ(scanner.rest(), "f");
  ASSERT_TRUE(scanner.read_word(word));
  EXPECT_EQ(word, "f");
  EXPECT_FALSE(scanner.read_word(word));
}

TEST(Scanner, a_literal_and_a_character_skip_no_white_space) {
  Scanner scanner(" |");
  char character = 0;
  EXPECT_FALSE(scanner.accept('|'));
  ASSERT_TRUE(scanner.read_character(character));
  EXPECT_EQ(character, ' ');
  EXPECT_TRUE(scanner.accept('|'));
  EXPECT_FALSE(scanner.accept('|'));
  EXPECT_FALSE(scanner.read_character(character));
}

TEST(Text, trimming_takes_spaces_and_tabs_from_both_ends_only) {
  EXPECT_EQ(trim(" \t a \t b\t "), "a \t b");
  EXPECT_EQ(trim("\va "), "\va");
  EXPECT_EQ(trim(" \t"), "");
  EXPECT_EQ(trim(""), "");
}

// The C library's own scanner is the judge, on numbers that it is defined for.
TEST(Scanner, random_texts_read_as_the_c_library_reads_them) {
  constexpr unsigned int kSeed = 20260801;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  const std::string alphabet = "0123456789012345678901234567890123456789+-|@ \tx.";
  for (int round = 0; round < 50000; ++round) {
    std::string text;
    for (std::size_t size = random() % 9; size > 0; --size) {
      text += alphabet[random() % alphabet.size()];
    }
    text += '|' + text + "@1 ";
    unsigned int number = 1;
    int integer = 1;
    char sign = 1;
    unsigned int expected_number = 1;
    int expected_integer = 1;
    char expected_sign = 1;
    const int expected =
        std::sscanf(text.c_str(), "%u|%d@%c", &expected_number, &expected_integer, &expected_sign);

    Scanner scanner(text);
    int count = scanner.read_unsigned(number) ? 1 : 0;
    if (count == 1 && scanner.accept('|') && scanner.read_signed(integer)) ++count;
    if (count == 2 && scanner.accept('@') && scanner.read_character(sign)) ++count;

    ASSERT_EQ(count, std::max(expected, 0)) << text;
    ASSERT_EQ(number, expected_number) << text;
    ASSERT_EQ(integer, expected_integer) << text;
    ASSERT_EQ(sign, expected_sign) << text;
  }
}

}  // namespace
}  // namespace Trel::Can
