#include "support/Support_RangePacket.h"

#include <gtest/gtest.h>

#include "support/Support_NavPacket.h"
#include "tools/PacketParts.h"

namespace Trel::Support::Test {
namespace {

TEST(RangePacketBuilder, a_fresh_packet_tells_its_type_and_the_bytes_behind_its_header) {
  // 114 bytes and the sum are 115, of which 111 = 0x6F stand behind the header
  const Bytes bytes = RangePacket(2).bytes();
  ASSERT_EQ(bytes.size(), 115U);
  EXPECT_EQ(part(bytes, 0, 4), (Bytes{0x57, 2, 0x6F, 0}));
  EXPECT_EQ(RangePacket(0).bytes().size(), 47U);
  EXPECT_EQ(RangePacket(1).bytes().size(), 133U);
  EXPECT_EQ(RangePacket(5).bytes(), (Bytes{0x57, 5, 1, 0, 6}));
}

TEST(RangePacketBuilder, numbers_stand_lowest_byte_first_at_their_places) {
  const Bytes bytes = RangePacket(2)
                          .time_ms(0x1234)
                          .target(3, 4)
                          .i32(8, -2)
                          .i24(12, -8388608)
                          .i8(15, -1)
                          .u64(16, 0x0102030405060708)
                          .bytes();
  EXPECT_EQ(part(bytes, 4, 12),
            (Bytes{0x34, 0x12, 3, 4, 0xFE, 0xFF, 0xFF, 0xFF, 0, 0, 0x80, 0xFF}));
  EXPECT_EQ(part(bytes, 16, 8), (Bytes{8, 7, 6, 5, 4, 3, 2, 1}));
  EXPECT_EQ(bytes.back(), sum(bytes, 1, 114));
}

TEST(RangePacketBuilder, the_channel_stands_where_its_type_has_it) {
  const Bytes expected = {9, 1, 2, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(part(RangePacket(0).channel(9, {1, 2}).bytes(), 37, 9), expected);
  EXPECT_EQ(part(RangePacket(1).channel(9, {1, 2}).bytes(), 49, 9), expected);
  EXPECT_EQ(part(RangePacket(2).channel(9, {1, 2}).bytes(), 41, 9), expected);
  EXPECT_THROW(RangePacket(5).channel(9, {1, 2}), std::out_of_range);
  EXPECT_THROW(RangePacket(2).channel(9, Bytes(9)), std::out_of_range);
}

TEST(RangePacketBuilder, a_field_beyond_the_packet_is_refused) {
  EXPECT_THROW(RangePacket(2).u16(113, 1), std::out_of_range);
  EXPECT_NO_THROW(RangePacket(2).resize(115).u16(113, 1));
}

TEST(RangePacketBuilder, a_bad_sum_is_one_off) {
  const Bytes good = RangePacket(2).time_ms(7).bytes();
  EXPECT_EQ(RangePacket(2).time_ms(7).bad_sum().bytes().back(), good.back() + 1);
}

TEST(RangePacketBuilder, a_recording_has_eight_bytes_ahead) {
  const Bytes bytes = RangePacket(0).time_ms(5).xcom_bytes();
  EXPECT_EQ(part(bytes, 0, 8), Bytes(8));
  EXPECT_EQ(part(bytes, 8, 47), RangePacket(0).time_ms(5).bytes());
}

TEST(RangePacketBuilder, a_wrapper_has_address_and_provenance_ahead_of_its_packets) {
  const Bytes inner = NComPacket().time_ms(5).bytes();
  const Bytes bytes = range_packet(0x01020304, 16, {inner, inner});
  // 4 + 4 + 1 + 2 * 72 + 1 = 154 bytes, of which 150 = 0x96 stand behind the header
  ASSERT_EQ(bytes.size(), 154U);
  EXPECT_EQ(part(bytes, 0, 9), (Bytes{0x57, 3, 0x96, 0, 4, 3, 2, 1, 16}));
  EXPECT_EQ(part(bytes, 9, 72), inner);
  EXPECT_EQ(part(bytes, 81, 72), inner);
  EXPECT_EQ(bytes.back(), sum(bytes, 1, 153));
}

}  // namespace
}  // namespace Trel::Support::Test
