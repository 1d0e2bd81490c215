#include "can/Can_Message.h"

#include <gtest/gtest.h>

#include <string>

namespace Trel::Can {
namespace {

TEST(Message, a_line_gives_identifier_name_size_and_sender) {
  Message message;
  ASSERT_TRUE(message.parse("BO_ 2566834709 Wheels: 8 Chassis"));
  EXPECT_EQ(message.get_mid(), 2566834709U);
  EXPECT_EQ(message.get_name(), "Wheels");
  EXPECT_EQ(message.get_size(), 8U);
  EXPECT_EQ(message.get_sender(), "Chassis");
}

TEST(Message, space_around_the_parts_does_not_matter) {
  Message message;
  ASSERT_TRUE(message.parse("BO_   \t 7\t Wheels \t :\t8   Chassis \t"));
  EXPECT_EQ(message.get_mid(), 7U);
  EXPECT_EQ(message.get_name(), "Wheels");
  EXPECT_EQ(message.get_size(), 8U);
  EXPECT_EQ(message.get_sender(), "Chassis");
}

TEST(Message, a_name_may_follow_the_digits_at_once) {
  Message message;
  ASSERT_TRUE(message.parse("BO_12Wheels:8Chassis"));
  EXPECT_EQ(message.get_mid(), 12U);
  EXPECT_EQ(message.get_name(), "Wheels");
  EXPECT_EQ(message.get_sender(), "Chassis");
}

TEST(Message, a_line_without_keyword_colon_identifier_or_name_fails) {
  for (const char* line : {"", "BO_", "BO 1 A: 8 B", "SG_ 1 A: 8 B", "BO_ 1 A 8 B", "BO_ x A: 8 B",
                           "BO_ 1: 8 B", "BO_ 1 \t: 8 B", "BO_ : 8 B", ": BO_ 1 A"}) {
    EXPECT_FALSE(Message().parse(line)) << line;
  }
}

TEST(Message, size_and_sender_may_be_missing) {
  Message without_sender;
  EXPECT_TRUE(without_sender.parse("BO_ 1 A: 8"));
  EXPECT_EQ(without_sender.get_size(), 8U);
  EXPECT_EQ(without_sender.get_sender(), "");

  Message without_both;
  EXPECT_TRUE(without_both.parse("BO_ 1 A:"));
  EXPECT_EQ(without_both.get_size(), 0U);

  Message without_size;
  EXPECT_TRUE(without_size.parse("BO_ 1 A: B"));
  EXPECT_EQ(without_size.get_size(), 0U);
  EXPECT_EQ(without_size.get_sender(), "");
}

TEST(Message, name_and_sender_keep_255_characters) {
  Message message;
  ASSERT_TRUE(message.parse("BO_ 1 " + std::string(300, 'n') + ": 8 " + std::string(300, 's')));
  EXPECT_EQ(message.get_name(), std::string(255, 'n'));
  EXPECT_EQ(message.get_sender(), std::string(255, 's'));
}

TEST(Message, an_identifier_wraps_to_32_bits) {
  Message negative;
  ASSERT_TRUE(negative.parse("BO_ -1 A: 8 B"));
  EXPECT_EQ(negative.get_mid(), 0xFFFFFFFFU);
  Message wide;
  ASSERT_TRUE(wide.parse("BO_ 4294967301 A: 8 B"));  // 2^32 + 5
  EXPECT_EQ(wide.get_mid(), 5U);
}

TEST(Message, the_tag_counts_from_the_second_of_a_name) {
  Message message;
  ASSERT_TRUE(message.parse("BO_ 1 A: 8 B"));
  message.set_derived_identifiers(4, 0);
  EXPECT_EQ(message.get_tag(), "A");
  EXPECT_EQ(message.get_mix(), 4U);
  message.set_derived_identifiers(5, 2);
  EXPECT_EQ(message.get_tag(), "A.2");
}

}  // namespace
}  // namespace Trel::Can
