#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "nav/Nav_Feed.h"

namespace Trel::Nav {
namespace {

using Support::Bytes;

TEST(NavCodec, a_null_pointer_decodes_nothing_and_counts_nothing) {
  TestCodec codec(false);
  EXPECT_EQ(codec.DecodeBasic(nullptr, false), 0);
  EXPECT_EQ(codec.DecodeSuper(nullptr, kPacketSize + 8, false), 0);
  EXPECT_EQ(codec.get_bytes(), 0U);
}

TEST(NavCodec, a_bare_packet_counts_its_bytes) {
  TestCodec codec(false);
  EXPECT_EQ(codec.DecodeBasic(locked(10).bytes().data(), true), 1);
  EXPECT_EQ(codec.get_bytes(), kPacketSize);
  EXPECT_EQ(codec.get_packets(), 1U);
}

TEST(NavCodec, a_failed_sum_changes_nothing_but_the_byte_count) {
  TestCodec codec(false);
  const Bytes bad = locked(10).bad_sum().bytes();
  EXPECT_EQ(codec.DecodeBasic(bad.data(), true), 0);
  EXPECT_EQ(codec.get_bytes(), kPacketSize);
  EXPECT_EQ(codec.get_packets(), 0U);
  EXPECT_FALSE(codec.CData().IsInsNavModeValid());
  EXPECT_FALSE(codec.CData().IsIndexValid());
}

TEST(NavCodec, a_sum_that_nobody_checks_may_be_wrong) {
  TestCodec codec(false);
  EXPECT_EQ(codec.DecodeBasic(locked(10).bad_sum().bytes().data(), false), 1);
}

TEST(NavCodec, a_recorded_packet_stands_behind_eight_bytes) {
  TestCodec codec(false);
  const Bytes bytes = locked(10).raw_velocity(1, 2, 3).xcom_bytes();
  EXPECT_EQ(codec.DecodeSuper(bytes.data(), kPacketSize + 8, true), 1);
  EXPECT_EQ(codec.get_bytes(), kPacketSize + 8);
  EXPECT_DOUBLE_EQ(codec.CData().GetVd(), 3e-4);
}

TEST(NavCodec, an_empty_or_short_recorded_packet_holds_nothing) {
  TestCodec codec(false);
  const Bytes bytes = locked(10).xcom_bytes();
  EXPECT_EQ(codec.DecodeSuper(bytes.data(), 0, true), 0);
  EXPECT_EQ(codec.get_bytes(), 0U);
  EXPECT_EQ(codec.DecodeSuper(bytes.data(), kPacketSize - 1, false), 0);
  EXPECT_EQ(codec.get_bytes(), kPacketSize - 1);
}

TEST(NavCodec, a_recorded_packet_that_lacks_up_to_eight_bytes_fails_its_check) {
  const Bytes bytes = locked(10).xcom_bytes();
  for (unsigned int size = kPacketSize; size < kPacketSize + 8; ++size) {
    TestCodec codec(false);
    EXPECT_EQ(codec.DecodeSuper(bytes.data(), size, true), 0) << size;
    EXPECT_EQ(codec.get_bytes(), size);
  }
}

TEST(NavCodec, without_a_check_the_bytes_that_a_recorded_packet_lacks_read_as_zeros) {
  // The prefix and all but the packet's last eight bytes: the roll at 58 is there, and of the
  // status channel, which begins ten bytes ahead of the end, its number and one byte.
  const Bytes whole = with_minutes(locked(10).raw_attitude(1, 2, 3)).xcom_bytes();
  const Bytes cut(whole.begin(), whole.begin() + kPacketSize);
  TestCodec codec(false);
  EXPECT_EQ(codec.DecodeSuper(cut.data(), kPacketSize, false), 1);
  EXPECT_DOUBLE_EQ(codec.CData().GetRoll(), 3e-6 * 57.29577951308232);
  codec.take(locked(20));
  EXPECT_EQ(codec.CData().GetNano(), (kMinute & 0xFF) * 60'000'000'000LL + 20 * kMilli);
}

TEST(NavCodec, numbers_timed_packets_by_their_time) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(10)), locked(500)});
  EXPECT_DOUBLE_EQ(codec.CData().GetIndex(), static_cast<double>(kStart) / 1e9 + 0.5);
}

TEST(NavCodec, numbers_untimed_packets_in_order_after_all_before) {
  TestCodec codec(false);
  codec.take(locked(10));
  // 1.0 and sixteen steps of 2^-52.
  EXPECT_EQ(codec.CData().GetIndex(), 1.0 + 16 * std::ldexp(1.0, -52));
  codec.take(with_minutes(locked(20)));
  EXPECT_EQ(codec.CData().GetIndex(), 1.0 + 32 * std::ldexp(1.0, -52));
  codec.take(locked(500));
  const double timed = codec.CData().GetIndex();
  codec.take(locked(Support::kNoTime));
  EXPECT_GT(codec.CData().GetIndex(), timed);
  EXPECT_LT(codec.CData().GetIndex(), timed + 0.001);
}

TEST(NavCodec, a_time_that_goes_back_is_its_own_index_but_not_the_highest) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(10)), locked(5000)});
  const double highest = codec.CData().GetIndex();
  codec.take(locked(4000));
  EXPECT_DOUBLE_EQ(codec.CData().GetIndex(), static_cast<double>(kStart) / 1e9 + 4.0);
  codec.take(locked(Support::kNoTime));
  EXPECT_GT(codec.CData().GetIndex(), highest);
}

TEST(NavCodec, numbers_begin_anew_with_a_rewind) {
  TestCodec codec(false);
  codec.take({locked(10), locked(20)});
  codec.PrescanRewind(true);
  codec.take(locked(10));
  EXPECT_EQ(codec.CData().GetIndex(), 1.0 + 16 * std::ldexp(1.0, -52));
}

TEST(NavCodec, tells_its_own_version_and_nothing_else_when_new) {
  const TestCodec codec(false);
  EXPECT_EQ(codec.CData().GetRxVersionId(), 22U);
  EXPECT_EQ(codec.CData().VarRxVersionId().get_flags(), Lib::Flags(Lib::Flags::Timeless));
  EXPECT_FALSE(codec.CData().IsNanoValid() || codec.CData().IsInsNavModeValid());
}

}  // namespace
}  // namespace Trel::Nav
