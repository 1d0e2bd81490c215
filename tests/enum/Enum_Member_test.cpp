// Single members and numbers of single enumerations.
#include "enum/Enum.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace Trel::Enum {
namespace {

TEST(EnumMember, a_number_past_the_end_below_0_or_too_wide_casts_to_unknown) {
  EXPECT_EQ(Cast_TRI_STATE_TYPE(3), TRI_STATE_TYPE_UNKNOWN);
  EXPECT_EQ(Cast_TRI_STATE_TYPE(-1), TRI_STATE_TYPE_UNKNOWN);
  EXPECT_EQ(Cast_TRI_STATE_TYPE(0x100000000ULL), TRI_STATE_TYPE_UNKNOWN);
  EXPECT_EQ(Cast_TRI_STATE_TYPE(0x100000001LL), TRI_STATE_TYPE_UNKNOWN);
  EXPECT_EQ(Cast_TRI_STATE_TYPE(257), TRI_STATE_TYPE_UNKNOWN);
}

TEST(EnumMember, a_number_in_range_casts_to_its_member_from_each_type) {
  EXPECT_EQ(Cast_TRI_STATE_TYPE(static_cast<unsigned char>(1)), TRI_STATE_TYPE_ENABLED);
  EXPECT_EQ(Cast_TRI_STATE_TYPE(1), TRI_STATE_TYPE_ENABLED);
  EXPECT_EQ(Cast_TRI_STATE_TYPE(1U), TRI_STATE_TYPE_ENABLED);
  EXPECT_EQ(Cast_TRI_STATE_TYPE(1LL), TRI_STATE_TYPE_ENABLED);
  EXPECT_EQ(Cast_TRI_STATE_TYPE(1ULL), TRI_STATE_TYPE_ENABLED);
}

TEST(EnumMember, casts_can_be_constants) {
  static_assert(Cast_RETURN_TYPE(7) == RETURN_TYPE_CANCEL);
  static_assert(Cast_RETURN_TYPE_t(7) == 7);
  static_assert(Cast_RETURN_TYPE(-7) == RETURN_TYPE_UNKNOWN);
}

TEST(EnumMember, set_out_of_range_changes_its_target_to_unknown_and_is_false) {
  TRI_STATE_TYPE state = TRI_STATE_TYPE_ENABLED;
  EXPECT_FALSE(Set(state, 3LL));
  EXPECT_EQ(state, TRI_STATE_TYPE_UNKNOWN);

  state = TRI_STATE_TYPE_ENABLED;
  EXPECT_FALSE(Set(state, -1LL));
  EXPECT_EQ(state, TRI_STATE_TYPE_UNKNOWN);

  state = TRI_STATE_TYPE_ENABLED;
  EXPECT_FALSE(Set(state, 0x100000000ULL));
  EXPECT_EQ(state, TRI_STATE_TYPE_UNKNOWN);
}

TEST(EnumMember, set_to_the_number_of_unknown_is_in_range) {
  TRI_STATE_TYPE state = TRI_STATE_TYPE_ENABLED;
  EXPECT_TRUE(Set(state, static_cast<unsigned char>(2)));
  EXPECT_EQ(state, TRI_STATE_TYPE_UNKNOWN);
}

TEST(EnumMember, parse_minds_case) {
  TRI_STATE_TYPE state = TRI_STATE_TYPE_DISABLED;
  EXPECT_FALSE(Parse(state, "enabled"));
  EXPECT_EQ(state, TRI_STATE_TYPE_UNKNOWN);
  EXPECT_TRUE(Parse(state, "Enabled"));
  EXPECT_EQ(state, TRI_STATE_TYPE_ENABLED);
}

TEST(EnumMember, parse_of_unknown_is_a_success) {
  TRI_STATE_TYPE state = TRI_STATE_TYPE_DISABLED;
  EXPECT_TRUE(Parse(state, "Unknown"));
  EXPECT_EQ(state, TRI_STATE_TYPE_UNKNOWN);
}

TEST(EnumMember, parse_takes_the_string_and_no_other_text) {
  MEASUREMENT_TYPE type = MEASUREMENT_TYPE_NONE;
  EXPECT_TRUE(Parse(type, "Every-D"));
  EXPECT_EQ(type, MEASUREMENT_TYPE_EVERY_DYNAMIC);
  EXPECT_FALSE(Parse(type, "Every Dynamic"));  // the verbose text
  EXPECT_EQ(type, MEASUREMENT_TYPE_UNKNOWN);
  NAV_OUTPUT_PACKET_TYPE packet = NAV_OUTPUT_PACKET_TYPE_EXTRA;
  EXPECT_FALSE(Parse(packet, "An empty output packet."));  // the comment
  EXPECT_EQ(packet, NAV_OUTPUT_PACKET_TYPE_UNKNOWN);
}

TEST(EnumMember, parse_of_a_string_that_several_members_share_gives_the_first) {
  NAVIGATION_STATUS status = NAVIGATION_STATUS_RESERVED_19;
  EXPECT_TRUE(Parse(status, "Reserved"));
  EXPECT_EQ(status, NAVIGATION_STATUS_RESERVED_08);
}

TEST(EnumMember, a_number_that_is_no_member_has_no_text) {
  const auto beyond = static_cast<TRI_STATE_TYPE>(3);
  EXPECT_EQ(GetTag(beyond), nullptr);
  EXPECT_EQ(GetString(beyond), nullptr);
  EXPECT_EQ(GetVerbose(beyond), nullptr);
  EXPECT_EQ(GetComment(beyond), nullptr);
}

TEST(EnumMember, lacking_keeps_the_spelling_of_its_comment) {
  EXPECT_STREQ(GetComment(RETURN_TYPE_LACKING), "Less than notmal operation");
}

TEST(EnumMember, a_bit_combination_passes_but_is_no_member) {
  const MEASUREMENT_TYPE both = Cast_MEASUREMENT_TYPE(5);  // codec static and comms static
  EXPECT_EQ(both, MEASUREMENT_TYPE_CODEC_STATIC | MEASUREMENT_TYPE_COMMS_STATIC);
  EXPECT_EQ(Cast_MEASUREMENT_TYPE_t(5), 5);
  EXPECT_EQ(Cast_MEASUREMENT_TYPE_string(5), nullptr);
  EXPECT_EQ(Cast_MEASUREMENT_TYPE_verbose(5), nullptr);
  EXPECT_EQ(GetTag(both), nullptr);
  EXPECT_EQ(GetIndex(both), 0);
  EXPECT_EQ(GetValue(both), 5);

  MEASUREMENT_TYPE target = MEASUREMENT_TYPE_NONE;
  EXPECT_TRUE(Set(target, 5));
  EXPECT_EQ(target, both);
}

TEST(EnumMember, a_bit_combination_up_to_unknown_passes_and_one_above_does_not) {
  EXPECT_EQ(Cast_MEASUREMENT_TYPE(32767), 32767);
  EXPECT_EQ(Cast_MEASUREMENT_TYPE(32768), MEASUREMENT_TYPE_UNKNOWN);
  EXPECT_EQ(Cast_MEASUREMENT_TYPE(32769), MEASUREMENT_TYPE_UNKNOWN);
}

TEST(EnumMember, the_measurement_masks_are_the_even_the_odd_and_all_of_fourteen_bits) {
  EXPECT_EQ(MEASUREMENT_TYPE_EVERY_STATIC, 0x1555);
  EXPECT_EQ(MEASUREMENT_TYPE_EVERY_DYNAMIC, 0x2AAA);
  EXPECT_EQ(MEASUREMENT_TYPE_EVERY, 0x3FFF);
}

TEST(EnumMember, a_member_above_the_sign_bit_has_a_negative_index) {
  EXPECT_EQ(GetIndex(MEASUREMENT_TYPE_UNKNOWN), -32768);  // 0x8000 in 16 bits
  EXPECT_EQ(Cast_MEASUREMENT_TYPE_t(32768), -32768);
  EXPECT_EQ(Cast_MEASUREMENT_TYPE_t(-1), -32768);
  EXPECT_EQ(GetIndex(XBNS_LED_UNKNOWN), -1);  // 0xFF in 8 bits
  EXPECT_EQ(Cast_XBNS_LED_t(255), -1);
  EXPECT_EQ(Cast_XBNS_LED_t(1000), -1);
}

TEST(EnumMember, the_value_of_such_a_member_stays_positive) {
  EXPECT_EQ(GetValue(MEASUREMENT_TYPE_UNKNOWN), 32768);
  EXPECT_EQ(GetValue(XBNS_LED_UNKNOWN), 255);
}

TEST(EnumMember, led_numbers_between_the_last_and_unknown_pass_without_a_text) {
  EXPECT_EQ(Cast_XBNS_LED(16), 16);
  EXPECT_EQ(Cast_XBNS_LED_string(16), nullptr);
  EXPECT_EQ(Cast_XBNS_LED_t(200), 200 - 256);
  EXPECT_EQ(Cast_XBNS_LED(256), XBNS_LED_UNKNOWN);
}

TEST(EnumMember, stop_bits_are_one_two_and_one_and_a_half) {
  static_assert(std::is_same_v<decltype(GetValue(SERIAL_STOP_BITS_UNKNOWN)), double>);
  EXPECT_EQ(GetValue(Cast_SERIAL_STOP_BITS(0)), 1.0);
  EXPECT_EQ(GetValue(Cast_SERIAL_STOP_BITS(1)), 2.0);
  EXPECT_EQ(GetValue(Cast_SERIAL_STOP_BITS(2)), 1.5);
  EXPECT_EQ(GetValue(SERIAL_STOP_BITS_UNKNOWN), 0.0);
}

TEST(EnumMember, the_value_of_no_member_is_0_or_the_argument) {
  EXPECT_EQ(GetValue(static_cast<SERIAL_STOP_BITS>(9)), 0.0);
  EXPECT_EQ(GetValue(static_cast<SERIAL_BAUD>(99)), 0);
  EXPECT_EQ(GetValue(static_cast<TRI_STATE_TYPE>(9)), 9);
}

TEST(EnumMember, filter_types_are_0_1_and_13) {
  EXPECT_EQ(FILTER_TYPE_NONE, 0);
  EXPECT_EQ(FILTER_TYPE_BUTTERWORTH, 1);
  EXPECT_EQ(FILTER_TYPE_UNKNOWN, 13);
  EXPECT_EQ(Cast_FILTER_TYPE(12), 12);
  EXPECT_EQ(Cast_FILTER_TYPE_string(12), nullptr);
  EXPECT_EQ(Cast_FILTER_TYPE(14), FILTER_TYPE_UNKNOWN);
}

TEST(EnumMember, an_enumeration_of_more_than_256_members_is_two_bytes_wide) {
  EXPECT_EQ(PRODUCT_MODEL_TYPE_UNKNOWN, 601);
  EXPECT_EQ(Cast_PRODUCT_MODEL_TYPE(354), 354);
  EXPECT_EQ(Cast_PRODUCT_MODEL_TYPE(602), PRODUCT_MODEL_TYPE_UNKNOWN);
  EXPECT_STREQ(Cast_PRODUCT_MODEL_TYPE_string(354), "Value 354");
}

}  // namespace
}  // namespace Trel::Enum
