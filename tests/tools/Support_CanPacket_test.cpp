#include "support/Support_CanPacket.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace Trel::Support {
namespace {

// The data of a frame, without the header of its record.
Bytes data_of(const CanFrame& frame) {
  return Bytes(frame.bytes().begin() + 8, frame.bytes().end());
}

TEST(CanFrame, a_record_is_a_header_and_at_least_eight_bytes) {
  const CanFrame frame =
      CanFrame(0x80000123, 3).flags(5).value24(0xABCDEF).intel(0, 8, 0x11).intel(16, 8, 0x33);
  const Bytes expected{0x35, 0xEF, 0xCD, 0xAB, 0x23, 0x01, 0x00, 0x80,
                       0x11, 0,    0x33, 0,    0,    0,    0,    0};
  EXPECT_EQ(frame.bytes(), expected);
}

TEST(CanFrame, long_frames_have_length_codes_of_their_own) {
  constexpr std::size_t kSizes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};
  for (std::size_t code = 0; code < std::size(kSizes); ++code) {
    const Bytes record = CanFrame(1, kSizes[code]).bytes();
    EXPECT_EQ(record[0] >> 4, code);
    EXPECT_EQ(record.size(), 8 + std::max<std::size_t>(8, kSizes[code]));
  }
}

TEST(CanFrame, sizes_between_do_not_exist) {
  for (const std::size_t size : {9U, 13U, 63U, 65U}) {
    EXPECT_THROW(CanFrame(1, size), std::invalid_argument) << size;
  }
}

TEST(CanFrame, a_little_endian_field_goes_up_from_its_lowest_bit) {
  EXPECT_EQ(data_of(CanFrame(1, 8).intel(4, 12, 0xABC)), (Bytes{0xC0, 0xAB, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(data_of(CanFrame(1, 8).intel(0, 64, 0x0807060504030201)),
            (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(CanFrame, a_big_endian_field_goes_down_from_its_highest_bit) {
  EXPECT_EQ(data_of(CanFrame(1, 8).motorola(7, 16, 0x1234)), (Bytes{0x12, 0x34, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(data_of(CanFrame(1, 8).motorola(3, 12, 0xABC)), (Bytes{0x0A, 0xBC, 0, 0, 0, 0, 0, 0}));
  // 1011 on bits 2, 1 and 0 of byte 0 and bit 7 of byte 1
  EXPECT_EQ(data_of(CanFrame(1, 8).motorola(2, 4, 0xB)), (Bytes{0x05, 0x80, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(data_of(CanFrame(1, 8).motorola(7, 64, 0x0102030405060708)),
            (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(CanFrame, the_last_bits_of_a_long_frame_can_be_set) {
  EXPECT_EQ(data_of(CanFrame(1, 64).intel(504, 8, 0x5A)).back(), 0x5A);
  EXPECT_EQ(data_of(CanFrame(1, 64).motorola(511, 8, 0x5A)).back(), 0x5A);
}

TEST(CanFrame, a_field_leaves_its_neighbours_alone) {
  CanFrame ones(1, 8);
  ones.intel(0, 64, ~std::uint64_t{0});
  EXPECT_EQ(data_of(CanFrame(ones).intel(6, 4, 0)),
            (Bytes{0x3F, 0xFC, 255, 255, 255, 255, 255, 255}));
  EXPECT_EQ(data_of(CanFrame(ones).motorola(1, 4, 0)),
            (Bytes{0xFC, 0x3F, 255, 255, 255, 255, 255, 255}));
}

TEST(CanFrame, a_negative_number_takes_its_low_bits) {
  const auto minus_two = static_cast<std::uint64_t>(std::int64_t{-2});
  EXPECT_EQ(data_of(CanFrame(1, 8).intel(0, 12, minus_two)), (Bytes{0xFE, 0x0F, 0, 0, 0, 0, 0, 0}));
}

TEST(CanFrame, what_does_not_fit_is_refused) {
  EXPECT_THROW(CanFrame(1, 3).intel(20, 5, 0), std::out_of_range);
  EXPECT_THROW(CanFrame(1, 3).motorola(16, 2, 0), std::out_of_range);
  EXPECT_THROW(CanFrame(1, 64).intel(0, 65, 0), std::out_of_range);
  EXPECT_THROW(CanFrame(1, 64).motorola(7, 0, 0), std::out_of_range);
  EXPECT_THROW(CanFrame(1, 3).flags(16), std::out_of_range);
  EXPECT_THROW(CanFrame(1, 3).value24(1 << 24), std::out_of_range);
}

TEST(CanPacket, records_follow_the_time) {
  const CanFrame first = CanFrame(1, 8).intel(0, 8, 0x11);
  const CanFrame second = CanFrame(2, 12).intel(88, 8, 0x22);
  const Bytes time{0xFE, 255, 255, 255, 255, 255, 255, 255};  // -2
  EXPECT_EQ(CanPacket(-2).frame(first).frame(second).bytes(),
            join({time, first.bytes(), second.bytes()}));
  EXPECT_EQ(CanPacket(-2).raw({1, 2}).bytes(), join({time, {1, 2}}));
}

TEST(CanPacket, no_time_is_the_lowest_number) {
  EXPECT_EQ(CanPacket(CanPacket::kNoTime).bytes(), (Bytes{0, 0, 0, 0, 0, 0, 0, 0x80}));
}

}  // namespace
}  // namespace Trel::Support
