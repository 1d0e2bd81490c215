// What holds for the whole family of functions of every enumeration.
#include "Enum_Walk.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "support/Support_Allocations.h"

namespace Trel::Enum::Test {
namespace {

// The number seen as a signed one of so many bits.
int as_signed(unsigned int number, int bits) {
  const int wrap = 1 << bits;
  const int plain = static_cast<int>(number);
  return plain < wrap / 2 ? plain : plain - wrap;
}

// Each number of the enumeration's width, and those around which a wider one loses bits.
std::vector<unsigned long long> numbers_to_try(const Enumerated& x) {
  std::vector<unsigned long long> numbers;
  for (unsigned int number = 0; number <= x.highest(); ++number) numbers.push_back(number);
  for (int bit = x.bits; bit < 64; ++bit) {
    for (unsigned int step = 0; step <= 3; ++step) numbers.push_back((1ULL << bit) - 1 + step);
  }
  numbers.push_back(~0ULL);
  return numbers;
}

TEST(EnumFamily, numbers_are_dense_from_0_unless_the_table_is_marked_sparse) {
  std::set<std::string> sparse;
  for (const Enumerated& x : enumerations()) {
    bool dense = true;
    for (unsigned int i = 0; i < x.lines.size(); ++i) dense = dense && x.lines[i].number == i;
    EXPECT_EQ(dense, x.dense) << x.name;
    if (!x.dense) sparse.insert(x.name);
  }
  EXPECT_EQ(sparse, (std::set<std::string>{"FILTER_TYPE", "MEASUREMENT_TYPE", "XBNS_LED"}));
}

TEST(EnumFamily, a_tag_is_the_name_an_underline_and_a_suffix) {
  for (const Enumerated& x : enumerations()) {
    std::set<std::string> tags;
    for (const Line& line : x.lines) {
      EXPECT_EQ(x.GetTag(line.number), line.tag);
      EXPECT_TRUE(line.tag.starts_with(x.name + "_")) << line.tag;
      EXPECT_GT(line.tag.size(), x.name.size() + 1) << line.tag;
      tags.insert(line.tag);
    }
    EXPECT_EQ(tags.size(), x.lines.size()) << x.name;
  }
}

TEST(EnumFamily, the_last_and_highest_member_is_unknown_in_every_text) {
  for (const Enumerated& x : enumerations()) {
    EXPECT_EQ(x.lines.back().tag, x.name + "_UNKNOWN");
    EXPECT_STREQ(x.GetString(x.bound()), "Unknown") << x.name;
    EXPECT_STREQ(x.GetVerbose(x.bound()), "Unknown") << x.name;
    EXPECT_STREQ(x.GetComment(x.bound()), "Unknown") << x.name;
    for (const Line& line : x.lines) EXPECT_LE(line.number, x.bound()) << line.tag;
  }
}

TEST(EnumFamily, the_name_does_not_depend_on_the_argument) {
  for (const Enumerated& x : enumerations()) {
    EXPECT_EQ(x.GetName(0), x.name);
    EXPECT_EQ(x.GetName(x.bound() + 1), x.name);
  }
}

TEST(EnumFamily, every_member_has_all_texts_and_any_other_number_none) {
  for (const Enumerated& x : enumerations()) {
    for (unsigned int number = 0; number <= x.highest(); ++number) {
      const bool is_member = x.has(number);
      ASSERT_EQ(x.GetTag(number) != nullptr, is_member) << x.name << " " << number;
      ASSERT_EQ(x.GetString(number) != nullptr, is_member) << x.name << " " << number;
      ASSERT_EQ(x.GetVerbose(number) != nullptr, is_member) << x.name << " " << number;
      ASSERT_EQ(x.GetComment(number) != nullptr, is_member) << x.name << " " << number;
    }
  }
}

TEST(EnumFamily, the_index_is_the_number_as_a_signed_one_of_the_same_width) {
  for (const Enumerated& x : enumerations()) {
    for (unsigned int number = 0; number <= x.highest(); ++number) {
      const int expected = x.has(number) ? as_signed(number, x.bits) : 0;
      ASSERT_EQ(x.GetIndex(number), expected) << x.name << " " << number;
    }
  }
}

TEST(EnumFamily, the_value_is_the_number_but_for_the_stop_bits) {
  for (const Enumerated& x : enumerations()) {
    if (x.name == "SERIAL_STOP_BITS") continue;
    for (const Line& line : x.lines) EXPECT_EQ(x.GetValue(line.number), line.number) << line.tag;
  }
}

TEST(EnumFamily, the_value_of_no_member_is_the_argument_but_0_where_values_are_other_quantities) {
  for (const Enumerated& x : enumerations()) {
    const bool quantity = x.name == "SERIAL_STOP_BITS" || x.name == "SERIAL_BAUD";
    for (unsigned int number = 0; number <= x.highest(); ++number) {
      if (x.has(number)) continue;
      ASSERT_EQ(x.GetValue(number), quantity ? 0 : number) << x.name << " " << number;
    }
  }
}

TEST(EnumFamily, a_neutral_member_is_called_by_its_number_alone) {
  int neutral = 0;
  for (const Enumerated& x : enumerations()) {
    const std::string prefix = x.name + "_VALUE_";
    for (const Line& line : x.lines) {
      if (!line.tag.starts_with(prefix)) continue;
      ++neutral;
      const std::string digits = line.tag.substr(prefix.size());
      const std::string text = "Value " + std::to_string(line.number);
      EXPECT_EQ(std::stoul(digits), line.number) << line.tag;
      EXPECT_EQ(digits.size(), x.lines.size() > 100 ? 3U : 2U) << line.tag;
      EXPECT_EQ(x.GetString(line.number), text) << line.tag;
      EXPECT_EQ(x.GetVerbose(line.number), text) << line.tag;
      EXPECT_EQ(x.GetComment(line.number), text) << line.tag;
    }
  }
  EXPECT_GT(neutral, 601);  // those of PRODUCT_MODEL_TYPE alone
}

TEST(EnumFamily, casts_and_set_let_0_to_unknown_pass_and_turn_all_else_into_unknown) {
  for (const Enumerated& x : enumerations()) {
    const std::vector<unsigned long long> numbers = numbers_to_try(x);
    for (const Conversions& conversions : x.conversions) {
      for (const unsigned long long number : numbers) {
        if (number > conversions.highest()) continue;
        const bool passes = number <= x.bound();
        const int expected = static_cast<int>(passes ? number : x.bound());
        const Outcome outcome = conversions.from(number);
        ASSERT_EQ(outcome.cast, expected) << x.name << " " << number << " " << conversions.type;
        ASSERT_EQ(outcome.target, expected) << x.name << " " << number << " " << conversions.type;
        ASSERT_EQ(outcome.set, passes) << x.name << " " << number << " " << conversions.type;
      }
    }
  }
}

TEST(EnumFamily, casts_and_set_turn_each_negative_number_into_unknown) {
  for (const Enumerated& x : enumerations()) {
    for (const Conversions& conversions : x.conversions) {
      if (!conversions.is_signed) continue;
      const unsigned long long lowest = 1ULL << (conversions.bits - 1);
      for (const unsigned long long pattern : {lowest, lowest + 1, ~1ULL, ~0ULL}) {
        const Outcome outcome = conversions.from(pattern);
        EXPECT_EQ(outcome.cast, static_cast<int>(x.bound())) << x.name << " " << conversions.type;
        EXPECT_EQ(outcome.target, static_cast<int>(x.bound())) << x.name << " " << conversions.type;
        EXPECT_FALSE(outcome.set) << x.name << " " << conversions.type;
      }
    }
  }
}

TEST(EnumFamily, the_casts_to_a_number_and_to_texts_follow_the_cast) {
  for (const Enumerated& x : enumerations()) {
    for (const Conversions& conversions : x.conversions) {
      for (unsigned long long pattern :
           {0ULL, 1ULL, 5ULL, x.bound() + 0ULL, x.bound() + 1ULL, ~0ULL}) {
        const Outcome outcome = conversions.from(pattern);
        const auto member = static_cast<unsigned int>(outcome.cast);
        EXPECT_EQ(outcome.cast_t, as_signed(member, x.bits)) << x.name << " " << conversions.type;
        EXPECT_EQ(outcome.cast_string, x.GetString(member)) << x.name << " " << conversions.type;
        EXPECT_EQ(outcome.cast_verbose, x.GetVerbose(member)) << x.name << " " << conversions.type;
      }
    }
  }
}

TEST(EnumFamily, parse_of_each_string_gives_the_first_member_that_has_it) {
  for (const Enumerated& x : enumerations()) {
    for (const Line& line : x.lines) {
      const std::string string = x.GetString(line.number);
      unsigned int first = 0;
      while (!x.GetString(first) || x.GetString(first) != string) ++first;
      unsigned int target = line.number == 0 ? 1 : 0;
      EXPECT_TRUE(x.Parse(target, string.c_str())) << line.tag;
      EXPECT_EQ(target, first) << line.tag;
    }
  }
}

void expect_parse_fails(const Enumerated& x, const char* text) {
  unsigned int target = 0;
  EXPECT_FALSE(x.Parse(target, text)) << x.name << ": " << (text ? text : "null");
  EXPECT_EQ(target, x.bound()) << x.name << ": " << (text ? text : "null");
}

TEST(EnumFamily, parse_fails_on_any_text_but_the_whole_string_in_its_own_case) {
  for (const Enumerated& x : enumerations()) {
    expect_parse_fails(x, nullptr);
    expect_parse_fails(x, "");
    for (const Line& line : x.lines) {
      std::string string = x.GetString(line.number);
      expect_parse_fails(x, line.tag.c_str());
      expect_parse_fails(x, (string + " ").c_str());
      expect_parse_fails(x, (" " + string).c_str());
      string[0] = static_cast<char>(string[0] ^ 0x20);  // the other case of an ASCII letter
      expect_parse_fails(x, string.c_str());
    }
  }
}

TEST(EnumFamily, no_function_allocates) {
  for (const Enumerated& x : enumerations()) {
    unsigned int target = 0;
    const auto before = Support::allocations();
    for (const Line& line : x.lines) {
      x.GetName(line.number);
      x.GetTag(line.number);
      x.Parse(target, x.GetString(line.number));
      x.Parse(target, x.GetVerbose(line.number));
      x.Parse(target, x.GetComment(line.number));
      x.GetIndex(line.number);
      x.GetValue(line.number);
    }
    for (const Conversions& conversions : x.conversions) conversions.from(x.bound() + 1);
    EXPECT_EQ(Support::allocations(), before) << x.name;
  }
}

}  // namespace
}  // namespace Trel::Enum::Test
