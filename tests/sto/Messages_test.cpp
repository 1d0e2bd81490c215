#include "sto/Sto_Messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Fakes.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;
using testing::SizeIs;

constexpr unsigned int kSeek = 8;
constexpr unsigned int kInit = 1;

// What a ring of 64 bytes gives back for one value.
float encoded(double value) {
  Messages messages(6);
  messages.push(1, Enum::DATA_STORE_MSG_SEEK, value);
  return drain(messages).at(0).percent;
}

TEST(Messages, a_record_is_ten_bytes_little_endian_without_padding) {
  const Messages messages(6);
  unsigned char record[12] = {};
  record[10] = 0xAA;
  messages.encode(record, 0x01020304, Enum::DATA_STORE_MSG_SEEK, 50.0);
  // 50 = 1.5625 * 2^5: exponent 127 + 5 = 0x84, fraction 0.5625 * 2^23 = 0x480000, so 0x42480000
  EXPECT_THAT(record, ElementsAre(0x04, 0x03, 0x02, 0x01, 8, 0, 0x00, 0x00, 0x48, 0x42, 0xAA, 0));
}

TEST(Messages, a_pushed_record_comes_back_out_of_the_ring) {
  Messages messages(6);
  messages.push(7, Enum::DATA_STORE_MSG_INIT, 12.5);
  EXPECT_EQ(messages.size(), 10U);
  EXPECT_THAT(drain(messages), ElementsAre(Message{7, kInit, 12.5F}));
}

TEST(Messages, a_message_without_an_id_concerns_the_whole_store) {
  Messages messages(6);
  messages.push(Enum::DATA_STORE_MSG_SEEK, 1.0);
  EXPECT_THAT(drain(messages), ElementsAre(Message{0xFFFFFFFF, kSeek, 1.0F}));
}

TEST(Messages, a_value_above_100_is_100_and_one_below_0_is_0) {
  EXPECT_EQ(encoded(150.0), 100.0F);
  EXPECT_EQ(encoded(-3.0), 0.0F);
  EXPECT_EQ(encoded(100.0), 100.0F);
  EXPECT_EQ(encoded(0.0), 0.0F);
  EXPECT_EQ(encoded(99.5), 99.5F);
}

TEST(Messages, a_value_beyond_single_precision_is_limited_all_the_same) {
  EXPECT_EQ(encoded(std::numeric_limits<double>::infinity()), 100.0F);
  EXPECT_EQ(encoded(-std::numeric_limits<double>::infinity()), 0.0F);
}

TEST(Messages, the_same_triple_twice_gives_one_record) {
  Messages messages(6);
  messages.push(1, Enum::DATA_STORE_MSG_SEEK, 5.0);
  messages.push(1, Enum::DATA_STORE_MSG_SEEK, 5.0);
  EXPECT_THAT(drain(messages), SizeIs(1));
}

TEST(Messages, a_triple_that_differs_in_one_part_is_no_repeat) {
  Messages messages(6);
  messages.push(1, Enum::DATA_STORE_MSG_SEEK, 5.0);
  messages.push(2, Enum::DATA_STORE_MSG_SEEK, 5.0);
  messages.push(2, Enum::DATA_STORE_MSG_INIT, 5.0);
  messages.push(2, Enum::DATA_STORE_MSG_INIT, std::nextafter(5.0, 6.0));
  messages.push(1, Enum::DATA_STORE_MSG_SEEK, 5.0);
  EXPECT_THAT(drain(messages),
              ElementsAre(Message{1, kSeek, 5.0F}, Message{2, kSeek, 5.0F}, Message{2, kInit, 5.0F},
                          Message{2, kInit, 5.0F}, Message{1, kSeek, 5.0F}));
}

TEST(Messages, values_are_compared_before_they_are_limited) {
  Messages messages(6);
  messages.push(1, Enum::DATA_STORE_MSG_SEEK, 101.0);
  messages.push(1, Enum::DATA_STORE_MSG_SEEK, 102.0);
  EXPECT_THAT(drain(messages), ElementsAre(Message{1, kSeek, 100.0F}, Message{1, kSeek, 100.0F}));
}

TEST(Messages, the_first_message_of_all_may_have_the_value_0) {
  Messages messages(6);
  messages.push(0, Enum::DATA_STORE_MSG_INIT, 0.0);
  EXPECT_THAT(drain(messages), SizeIs(1));
}

TEST(Messages, a_ring_of_1024_bytes_takes_102_records_and_drops_the_103rd) {
  Messages messages(10);
  for (unsigned int id = 0; id < 102; ++id) messages.push(id, Enum::DATA_STORE_MSG_SEEK, 1.0);
  EXPECT_EQ(messages.space(), 4U);  // 1024 - 102 * 10

  messages.push(102, Enum::DATA_STORE_MSG_SEEK, 1.0);
  EXPECT_EQ(messages.space(), 4U);

  const auto drained = drain(messages);
  ASSERT_THAT(drained, SizeIs(102));
  EXPECT_EQ(drained.front().id, 0U);  // nothing was overwritten
  EXPECT_EQ(drained.back().id, 101U);
}

TEST(Messages, a_record_fits_as_soon_as_ten_bytes_are_free) {
  Messages messages(10);
  for (unsigned int id = 0; id < 102; ++id) messages.push(id, Enum::DATA_STORE_MSG_SEEK, 1.0);
  unsigned char bytes[5];
  messages.pull(bytes, 5);  // 4 + 5: one byte short
  messages.push(200, Enum::DATA_STORE_MSG_SEEK, 1.0);
  EXPECT_EQ(messages.space(), 9U);
  messages.pull(bytes, 1);
  messages.push(201, Enum::DATA_STORE_MSG_SEEK, 1.0);
  EXPECT_EQ(messages.space(), 0U);
}

TEST(Messages, a_dropped_record_counts_as_seen) {
  Messages messages(10);
  for (unsigned int id = 0; id < 102; ++id) messages.push(id, Enum::DATA_STORE_MSG_SEEK, 1.0);
  messages.push(500, Enum::DATA_STORE_MSG_INIT, 2.0);  // no room
  drain(messages);
  messages.push(500, Enum::DATA_STORE_MSG_INIT, 2.0);
  EXPECT_THAT(drain(messages), SizeIs(0));
  messages.push(101, Enum::DATA_STORE_MSG_SEEK, 1.0);  // the last that is in the ring
  EXPECT_THAT(drain(messages), SizeIs(1));
}

TEST(Messages, records_go_around_the_end_of_the_ring) {
  Messages messages(4);  // 16 bytes: the second record lies on 10 to 15 and 0 to 3
  messages.push(1, Enum::DATA_STORE_MSG_SEEK, 1.0);
  drain(messages);
  messages.push(0x0A0B0C0D, Enum::DATA_STORE_MSG_SEEK, 2.0);
  EXPECT_THAT(drain(messages), ElementsAre(Message{0x0A0B0C0D, kSeek, 2.0F}));
}

TEST(Messages, a_power_of_31_means_30) {
  const Messages messages(31);
  EXPECT_EQ(messages.space(), 1U << 30);
}

}  // namespace
}  // namespace Trel::Sto::Test
