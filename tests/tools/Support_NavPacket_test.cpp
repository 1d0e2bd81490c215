#include "support/Support_NavPacket.h"

#include <gtest/gtest.h>

#include <numbers>

#include "tools/PacketParts.h"

namespace Trel::Support::Test {
namespace {

TEST(NavPacketBuilder, both_families_have_their_first_byte_and_size) {
  EXPECT_EQ(NComPacket().bytes().size(), 72U);
  EXPECT_EQ(NComPacket().bytes().front(), 0xE7);
  EXPECT_EQ(MComPacket().bytes().size(), 84U);
  EXPECT_EQ(MComPacket().bytes().front(), 0xE8);
}

TEST(NavPacketBuilder, numbers_stand_lowest_byte_first_at_their_places) {
  const Bytes bytes = NComPacket()
                          .time_ms(0x1234)
                          .status(4)
                          .raw_acceleration(1, -1, kInvalid24)
                          .raw_angular_rate(0x010203, kOver24, kUnder24)
                          .raw_velocity(2, 3, 4)
                          .raw_attitude(5, 6, 7)
                          .bytes();
  EXPECT_EQ(part(bytes, 1, 2), (Bytes{0x34, 0x12}));
  EXPECT_EQ(part(bytes, 3, 9), (Bytes{1, 0, 0, 0xFF, 0xFF, 0xFF, 0, 0, 0x80}));
  EXPECT_EQ(part(bytes, 12, 9), (Bytes{3, 2, 1, 0xFF, 0xFF, 0x7F, 1, 0, 0x80}));
  EXPECT_EQ(bytes[21], 4);
  EXPECT_EQ(part(bytes, 43, 9), (Bytes{2, 0, 0, 3, 0, 0, 4, 0, 0}));
  EXPECT_EQ(part(bytes, 52, 9), (Bytes{5, 0, 0, 6, 0, 0, 7, 0, 0}));
}

TEST(NavPacketBuilder, physical_values_are_rounded_to_the_packets_steps) {
  // 9.81 m/s2 / 0.0001, 1 rad/s / 0.00001, 12.5 m/s / 0.0001, pi / 2 rad / 0.000001
  const Bytes bytes = NComPacket()
                          .acceleration(0, 0, -9.81)
                          .angular_rate(1, 0, 0)
                          .velocity(12.5, 0, 0)
                          .attitude(std::numbers::pi / 2, 0, 0)
                          .bytes();
  const Bytes expected = NComPacket()
                             .raw_acceleration(0, 0, -98100)
                             .raw_angular_rate(100000, 0, 0)
                             .raw_velocity(125000, 0, 0)
                             .raw_attitude(1570796, 0, 0)
                             .bytes();
  EXPECT_EQ(bytes, expected);
}

TEST(NavPacketBuilder, positions_are_real_numbers) {
  const Bytes bytes = NComPacket().position(1.0, -2.0, 0.5F).bytes();
  EXPECT_EQ(part(bytes, 23, 8), (Bytes{0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
  EXPECT_EQ(part(bytes, 31, 8), (Bytes{0, 0, 0, 0, 0, 0, 0, 0xC0}));
  EXPECT_EQ(part(bytes, 39, 4), (Bytes{0, 0, 0, 0x3F}));
}

TEST(NavPacketBuilder, a_value_beyond_24_bits_is_refused) {
  EXPECT_THROW(NComPacket().raw_velocity(8388608, 0, 0), std::out_of_range);
  EXPECT_THROW(NComPacket().velocity(900, 0, 0), std::out_of_range);
}

TEST(NavPacketBuilder, the_channel_stands_ahead_of_the_last_sum) {
  const Bytes ncom = NComPacket().channel(9, {1, 2, 3, 4, 5, 6, 7, 8}).bytes();
  EXPECT_EQ(part(ncom, 62, 9), (Bytes{9, 1, 2, 3, 4, 5, 6, 7, 8}));
  const Bytes mcom = MComPacket().channel(9, {1, 2, 3, 4, 5, 6, 7, 8}).bytes();
  EXPECT_EQ(part(mcom, 74, 9), (Bytes{9, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(NavPacketBuilder, all_three_sums_are_good_whatever_the_order_of_calls) {
  for (const Bytes& bytes :
       {NComPacket().channel(1, {200}).time_ms(999).attitude(1, 1, 1).raw(5, {77}).bytes(),
        MComPacket().heave(1).time_ms(999).counter(500).status_bits(9).bytes()}) {
    EXPECT_EQ(bytes[22], sum(bytes, 1, 22));
    EXPECT_EQ(bytes[61], sum(bytes, 1, 61));
    EXPECT_EQ(bytes.back(), sum(bytes, 1, bytes.size() - 1));
  }
}

TEST(NavPacketBuilder, an_extra_packet_has_its_kind_in_place_of_the_first_sum) {
  const Bytes bytes = NComPacket().time_ms(999).extra(3).bytes();
  EXPECT_EQ(bytes[21], 11);
  EXPECT_EQ(bytes[22], 3);
  EXPECT_EQ(bytes[61], sum(bytes, 1, 61));
  EXPECT_EQ(bytes[71], sum(bytes, 1, 71));
}

TEST(NavPacketBuilder, a_bad_sum_is_one_off_and_all_else_stays) {
  Bytes bytes = NComPacket().time_ms(999).bad_sum().bytes();
  const Bytes good = NComPacket().time_ms(999).bytes();
  EXPECT_EQ(bytes.back(), good.back() + 1);
  bytes.back() = good.back();
  EXPECT_EQ(bytes, good);
}

TEST(NavPacketBuilder, the_marine_tail_stands_behind_the_second_batch) {
  const Bytes bytes =
      MComPacket().heave(-0.002).long_period_heave(1.0).counter(0x1234).status_bits(0x0A).bytes();
  EXPECT_EQ(part(bytes, 62, 7), (Bytes{0xFF, 0xFF, 0xF4, 0x01, 0x34, 0x12, 0x0A}));
  EXPECT_EQ(part(MComPacket().raw_heave(-32768, 2).bytes(), 62, 4), (Bytes{0, 0x80, 2, 0}));
}

TEST(NavPacketBuilder, a_recording_has_eight_bytes_ahead) {
  const Bytes bytes = NComPacket().time_ms(5).xcom_bytes();
  EXPECT_EQ(part(bytes, 0, 8), Bytes(8));
  EXPECT_EQ(part(bytes, 8, 72), NComPacket().time_ms(5).bytes());
}

}  // namespace
}  // namespace Trel::Support::Test
