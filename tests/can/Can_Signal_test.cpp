#include "can/Can_Signal.h"

#include <gtest/gtest.h>

#include "can/Can_Builders.h"

namespace Trel::Can {
namespace {

constexpr auto kDouble = Lib::kBasicType<double>;
constexpr auto kSigned = Lib::kBasicType<long long>;
constexpr auto kUnsigned = Lib::kBasicType<unsigned long long>;

TEST(Signal, a_new_one_is_plain_little_endian_and_signed_for_any_receiver) {
  const Signal fresh;
  EXPECT_EQ(fresh.get_mux_kind(), Signal::kPlain);
  EXPECT_TRUE(fresh.get_little_endian());
  EXPECT_TRUE(fresh.get_is_signed());
  EXPECT_EQ(fresh.get_receiver(), "Vector__XXX");
  EXPECT_EQ(fresh.get_message(), nullptr);
  EXPECT_EQ(fresh.get_comment(), "");
}

TEST(Signal, a_line_gives_every_field) {
  const Signal result =
      signal("SG_ Speed m3 : 12|16@1- (0.01,-40) [-100|655.35] \"km/h\" Dash,Gear ");
  EXPECT_EQ(result.get_name(), "Speed");
  EXPECT_EQ(result.get_mux_kind(), Signal::kMultiplexed);
  EXPECT_EQ(result.get_mux_value(), 3);
  EXPECT_EQ(result.get_start_bit(), 12);
  EXPECT_EQ(result.get_bit_length(), 16);
  EXPECT_TRUE(result.get_little_endian());
  EXPECT_TRUE(result.get_is_signed());
  EXPECT_EQ(result.get_factor().get_real(), 0.01);
  EXPECT_EQ(result.get_offset().get_real(), -40.0);
  EXPECT_EQ(result.get_min().get_signed(), -100);
  EXPECT_EQ(result.get_max().get_real(), 655.35);
  EXPECT_EQ(result.get_unit(), "km/h");
  EXPECT_EQ(result.get_receiver(), "Dash,Gear");
  EXPECT_EQ(result.get_type(), kDouble);
}

TEST(Signal, space_between_the_parts_does_not_matter) {
  const Signal result =
      signal("SG_  \tSpeed\t m3 \t: \t12|16@0+\t( 2 , 3 )\t[ 4 | 5 ]\t\"m\" \t Dash");
  EXPECT_EQ(result.get_name(), "Speed");
  EXPECT_EQ(result.get_start_bit(), 12);
  EXPECT_FALSE(result.get_little_endian());
  EXPECT_FALSE(result.get_is_signed());
  EXPECT_EQ(result.get_factor().get_signed(), 2);
  EXPECT_EQ(result.get_offset().get_signed(), 3);
  EXPECT_EQ(result.get_min().get_signed(), 4);
  EXPECT_EQ(result.get_max().get_signed(), 5);
  EXPECT_EQ(result.get_receiver(), "Dash");
}

TEST(Signal, no_space_at_all_is_enough) {
  const Signal result = signal("SG_Speed:12|16@1+(2,3)[4|5]\"m\"Dash");
  EXPECT_EQ(result.get_name(), "Speed");
  EXPECT_EQ(result.get_max().get_signed(), 5);
  EXPECT_EQ(result.get_receiver(), "Dash");
}

TEST(Signal, integer_numbers_give_an_integer_type_by_the_sign) {
  EXPECT_EQ(signal("SG_ A : 0|8@1- (1,0) [0|1] \"\" B").get_type(), kSigned);
  EXPECT_EQ(signal("SG_ A : 0|8@1+ (1,0) [0|1] \"\" B").get_type(), kUnsigned);
}

TEST(Signal, any_one_real_number_makes_it_double) {
  EXPECT_EQ(signal("SG_ A : 0|8@1- (0.5,0) [0|1] \"\" B").get_type(), kDouble);
  EXPECT_EQ(signal("SG_ A : 0|8@1- (1,0.) [0|1] \"\" B").get_type(), kDouble);
  EXPECT_EQ(signal("SG_ A : 0|8@1- (1,0) [1e0|1] \"\" B").get_type(), kDouble);
  EXPECT_EQ(signal("SG_ A : 0|8@1+ (1,0) [0|nan] \"\" B").get_type(), kDouble);
}

TEST(Signal, a_line_without_keyword_name_or_colon_fails) {
  for (const char* line :
       {"", "SG_", "SG A : 0|8@1+ (1,0)", "BO_ A : 0|8@1+ (1,0)", "SG_ A 0|8@1+ (1,0)",
        "SG_ : 0|8@1+ (1,0)", "SG_ \t : 0|8@1+ (1,0)", ": 0|8@1+ (1,0) SG_ A"}) {
    EXPECT_FALSE(Signal().parse(line)) << line;
  }
}

TEST(Signal, start_length_order_and_sign_must_all_be_read) {
  for (const char* range : {"", "x", "0", "0|", "0|8", "0|8@", "0|8@1", "0|8@x+", "0 |8@1+",
                            "0|8 @1+", "0;8@1+", "|8@1+", "0|@1+"}) {
    EXPECT_FALSE(Signal().parse(std::string("SG_ A : ") + range + " (1,0) [0|1] \"\" B")) << range;
  }
}

TEST(Signal, numbers_of_the_range_may_have_space_ahead_and_signs) {
  const Signal result = signal("SG_ A : +5| 8@ +1- (1,0) [0|1] \"\" B");
  EXPECT_EQ(result.get_start_bit(), 5);
  EXPECT_EQ(result.get_bit_length(), 8);
  EXPECT_TRUE(result.get_little_endian());
  EXPECT_TRUE(result.get_is_signed());
}

TEST(Signal, any_order_but_zero_is_little_endian) {
  EXPECT_FALSE(signal("SG_ A : 7|8@0+ (1,0)").get_little_endian());
  EXPECT_FALSE(signal("SG_ A : 7|8@-0+ (1,0)").get_little_endian());
  EXPECT_TRUE(signal("SG_ A : 7|8@2+ (1,0)").get_little_endian());
  EXPECT_TRUE(signal("SG_ A : 7|8@-1+ (1,0)").get_little_endian());
}

TEST(Signal, only_a_minus_right_behind_the_order_is_signed) {
  EXPECT_TRUE(signal("SG_ A : 0|8@1- (1,0)").get_is_signed());
  EXPECT_FALSE(signal("SG_ A : 0|8@1 - (1,0)").get_is_signed());
  EXPECT_FALSE(signal("SG_ A : 0|8@1? (1,0)").get_is_signed());
}

TEST(Signal, what_follows_the_sign_is_ignored) {
  EXPECT_EQ(signal("SG_ A : 0|8@1+ x (2,0) y [0|1] z \"u\" B").get_factor().get_signed(), 2);
}

TEST(Signal, numbers_that_cannot_be_read_are_zero) {
  const Signal result = signal("SG_ A : 0|8@1+ (2,) [|] \"u\" B");
  EXPECT_EQ(result.get_factor().get_signed(), 2);
  EXPECT_EQ(result.get_offset().get_signed(), 0);
  EXPECT_EQ(result.get_min().get_signed(), 0);
  EXPECT_EQ(result.get_max().get_signed(), 0);
  EXPECT_EQ(result.get_unit(), "u");
}

TEST(Signal, incomplete_brackets_leave_their_numbers_zero) {
  for (const char* numbers : {"(1;2) [3|4]", "[3|4]", "(5,6 [3|4]"}) {
    const Signal result = signal(std::string("SG_ A : 0|8@1+ ") + numbers);
    EXPECT_EQ(result.get_factor().get_signed(), 0) << numbers;
    EXPECT_EQ(result.get_offset().get_signed(), 0) << numbers;
    EXPECT_EQ(result.get_min().get_signed(), 3) << numbers;
    EXPECT_EQ(result.get_max().get_signed(), 4) << numbers;
  }
  const Signal open = signal("SG_ A : 0|8@1+ (5,6) [3|4");
  EXPECT_EQ(open.get_offset().get_signed(), 6);
  EXPECT_EQ(open.get_min().get_signed(), 0);
}

TEST(Signal, brackets_in_the_name_are_not_those_of_the_numbers) {
  const Signal result = signal("SG_ A(1,2)[3|4] : 0|8@1+ (5,6) [7|8] \"\" B");
  EXPECT_EQ(result.get_name(), "A(1,2)[3|4]");
  EXPECT_EQ(result.get_factor().get_signed(), 5);
  EXPECT_EQ(result.get_min().get_signed(), 7);
}

TEST(Signal, the_unit_reaches_from_the_first_quote_to_the_last) {
  const Signal nested = signal("SG_ A : 0|8@1+ (1,0) [0|1] \"a\"b\" C");
  EXPECT_EQ(nested.get_unit(), "a\"b");
  EXPECT_EQ(nested.get_receiver(), "C");

  const Signal keyword = signal("SG_ A : 0|8@1+ (1,0) [0|1] \"SG_ : 1|2@1+\" C");
  EXPECT_EQ(keyword.get_unit(), "SG_ : 1|2@1+");
}

TEST(Signal, without_quotes_the_unit_is_empty_and_the_receiver_the_default) {
  const Signal result = signal("SG_ A : 0|8@1+ (1,0) [0|1] km/h C");
  EXPECT_EQ(result.get_unit(), "");
  EXPECT_EQ(result.get_receiver(), "Vector__XXX");
}

TEST(Signal, nothing_behind_the_quotes_is_an_empty_receiver) {
  EXPECT_EQ(signal("SG_ A : 0|8@1+ (1,0) [0|1] \"m\" ").get_receiver(), "");
}

TEST(Signal, a_single_quote_mark_bounds_no_unit) {
  const Signal result = signal("SG_ A : 0|8@1+ (1,0) [0|1] \"C");
  EXPECT_EQ(result.get_unit(), "");
  EXPECT_EQ(result.get_receiver(), "C");
}

TEST(Signal, the_multiplex_word_is_empty_a_capital_m_or_m_with_a_number) {
  Signal result;
  EXPECT_TRUE(result.set_mux("m12"));
  EXPECT_EQ(result.get_mux_kind(), Signal::kMultiplexed);
  EXPECT_EQ(result.get_mux_value(), 12);
  EXPECT_TRUE(result.set_mux("M"));
  EXPECT_EQ(result.get_mux_kind(), Signal::kMultiplexor);
  EXPECT_EQ(result.get_mux_value(), 0);
  EXPECT_TRUE(result.set_mux("m0"));
  EXPECT_EQ(result.get_mux_kind(), Signal::kMultiplexed);
  EXPECT_TRUE(result.set_mux(""));
  EXPECT_EQ(result.get_mux_kind(), Signal::kPlain);
  EXPECT_TRUE(result.set_mux("m3M"));
  EXPECT_EQ(result.get_mux_value(), 3);
  EXPECT_TRUE(result.set_mux("m+2"));
  EXPECT_EQ(result.get_mux_value(), 2);
}

TEST(Signal, any_other_multiplex_word_fails_and_changes_nothing) {
  Signal result;
  ASSERT_TRUE(result.set_mux("m5"));
  for (const char* word : {"m", "mm", "m-1", "MM", "M0", "x", "1", "m99999999999999999999"}) {
    EXPECT_FALSE(result.set_mux(word)) << word;
    EXPECT_EQ(result.get_mux_value(), 5);
  }
  EXPECT_FALSE(Signal().parse("SG_ A mm : 0|8@1+ (1,0) [0|1] \"\" B"));
}

TEST(Signal, a_third_word_ahead_of_the_colon_is_ignored) {
  EXPECT_EQ(signal("SG_ A m0 more words : 0|8@1+ (1,0)").get_name(), "A");
}

TEST(Signal, a_range_reaches_to_the_last_bit_of_64_bytes) {
  Signal result;
  EXPECT_TRUE(result.set_range(511, 512, true, false));
  EXPECT_TRUE(result.set_range(0, 0, true, false));
  EXPECT_FALSE(result.set_range(512, 8, true, false));
  EXPECT_FALSE(result.set_range(0, 513, true, false));
  EXPECT_FALSE(result.set_range(-1, 8, true, false));
  EXPECT_FALSE(result.set_range(0, -1, true, false));
  EXPECT_EQ(result.get_start_bit(), 0);
  EXPECT_FALSE(Signal().parse("SG_ A : -1|8@1+ (1,0)"));
  EXPECT_FALSE(Signal().parse("SG_ A : 0|-8@1+ (1,0)"));
}

TEST(Signal, a_little_endian_field_counts_up_from_its_start) {
  Signal result;
  ASSERT_TRUE(result.set_range(12, 16, true, false));
  EXPECT_EQ(result.get_bit_low(), 12);
  EXPECT_EQ(result.get_bit_high(), 27);
}

TEST(Signal, a_big_endian_field_counts_down_in_the_reversed_frame) {
  Signal result;
  // Byte 0 of the frame is byte 63 of the reversed one: its bit 7 is bit 511.
  ASSERT_TRUE(result.set_range(7, 16, false, false));
  EXPECT_EQ(result.get_bit_high(), 511);
  EXPECT_EQ(result.get_bit_low(), 496);
  // Bit 3 of byte 2: 504 - 16 + 3 = 491.
  ASSERT_TRUE(result.set_range(19, 12, false, false));
  EXPECT_EQ(result.get_bit_high(), 491);
  EXPECT_EQ(result.get_bit_low(), 480);
  // Bit 0 of the last byte is bit 0, and seven more bits lie below it.
  ASSERT_TRUE(result.set_range(504, 8, false, false));
  EXPECT_EQ(result.get_bit_high(), 0);
  EXPECT_EQ(result.get_bit_low(), -7);
}

TEST(Signal, the_tag_counts_from_the_second_of_a_name) {
  Signal result = signal("SG_ A : 0|8@1+ (1,0)");
  result.set_derived_identifiers(7, 5, 0);
  EXPECT_EQ(result.get_tag(), "A");
  EXPECT_EQ(result.get_sid(), 7U);
  EXPECT_EQ(result.get_six(), 5U);
  result.set_derived_identifiers(7, 5, 1);
  EXPECT_EQ(result.get_tag(), "A.1");
}

}  // namespace
}  // namespace Trel::Can
