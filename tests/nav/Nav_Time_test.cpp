// Times of whole packet sequences, worked out by hand.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "nav/Nav_Feed.h"

namespace Trel::Nav {
namespace {

using Support::kNoTime;
using testing::ElementsAre;
using Packets = std::vector<Packet>;

// ---- One pass

TEST(NavTime, packets_ahead_of_the_minutes_stay_untimed_and_so_does_the_one_that_brings_them) {
  TestCodec codec(false);
  EXPECT_THAT(
      times_of(codec, Packets{locked(100), with_minutes(locked(110)), locked(120), locked(130)}),
      ElementsAre(0, 0, at_ms(120), at_ms(130)));
}

TEST(NavTime, seconds_and_stamps_follow_the_nanoseconds) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(100)), locked(110)});
  const ComData& data = codec.CData();
  EXPECT_DOUBLE_EQ(data.GetTime(), static_cast<double>(at_ms(110)) / 1e9);
  EXPECT_EQ(data.VarNano().get_nano(), at_ms(110));
  EXPECT_EQ(data.VarNano().get_flags(), Lib::Flags(0));
  EXPECT_EQ(data.VarAx().get_nano(), at_ms(110));
}

TEST(NavTime, kind_and_status_of_a_packet_take_the_time_just_found) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(100)), locked(110)});
  EXPECT_EQ(codec.CData().VarOutputPacketType().get_nano(), at_ms(110));
  EXPECT_EQ(codec.CData().VarInsNavMode().get_nano(), at_ms(110));
  codec.take(locked(kNoTime));
  EXPECT_EQ(codec.CData().VarOutputPacketType().get_flags(), Lib::Flags(Lib::Flags::Timeless));
  EXPECT_EQ(codec.CData().VarInsNavMode().get_flags(), Lib::Flags(Lib::Flags::Timeless));
}

TEST(NavTime, the_minute_turns_from_the_packets_alone) {
  TestCodec codec(false);
  EXPECT_THAT(times_of(codec, Packets{with_minutes(locked(59980)), locked(59999), locked(0),
                                      locked(59999), locked(1999)}),
              ElementsAre(0, at_ms(59999), at_ms(60000), at_ms(119999), at_ms(121999)));
}

TEST(NavTime, a_step_from_59999_to_2000_stays_in_its_minute_and_is_the_period) {
  TestCodec codec(false);
  EXPECT_THAT(times_of(codec, Packets{with_minutes(locked(59999)), locked(2000)}),
              ElementsAre(0, at_ms(2000)));
  EXPECT_EQ(codec.get_prescan().period, (2000 - 59999) * kMilli);
}

TEST(NavTime, a_packet_without_a_time_leaves_the_clock_alone) {
  TestCodec codec(false);
  EXPECT_THAT(times_of(codec, Packets{with_minutes(locked(59980)), locked(59990), locked(kNoTime),
                                      locked(10)}),
              ElementsAre(0, at_ms(59990), 0, at_ms(60010)));
}

TEST(NavTime, any_time_below_65535_is_one) {
  TestCodec codec(false);
  EXPECT_THAT(times_of(codec, Packets{with_minutes(locked(10)), locked(65534)}),
              ElementsAre(0, at_ms(65534)));
}

TEST(NavTime, status_1_has_no_time_of_its_own_and_brings_no_minutes) {
  TestCodec codec(false);
  EXPECT_THAT(times_of(codec, Packets{with_minutes(packet_of(1, 10)), locked(20),
                                      with_minutes(locked(30)), packet_of(1, 40), locked(50)}),
              ElementsAre(0, 0, 0, 0, at_ms(50)));
}

TEST(NavTime, a_status_only_packet_brings_minutes) {
  TestCodec codec(false);
  EXPECT_THAT(times_of(codec, Packets{with_minutes(packet_of(10, 10)), locked(20)}),
              ElementsAre(0, at_ms(20)));
}

TEST(NavTime, later_minutes_replace_the_ones_kept) {
  TestCodec codec(false);
  EXPECT_THAT(times_of(codec, Packets{with_minutes(locked(10)),
                                      with_minutes(locked(20), kMinute + 5), locked(30)}),
              ElementsAre(0, at_ms(20), at_ms(5 * 60000 + 30)));
}

TEST(NavTime, minutes_below_zero_are_none) {
  TestCodec codec(false);
  EXPECT_THAT(times_of(codec, Packets{with_minutes(locked(10), -5), locked(20),
                                      with_minutes(locked(30)), locked(40)}),
              ElementsAre(0, 0, 0, at_ms(40)));
}

TEST(NavTime, minutes_at_the_limit_of_32_bits_wrap) {
  constexpr int kMost = std::numeric_limits<int>::max();
  TestCodec codec(false);
  const auto last = static_cast<long long>(kMost * 60'000'000'000ULL + 59'990'000'000ULL);
  EXPECT_THAT(times_of(codec, Packets{with_minutes(locked(59980), kMost), locked(59990), locked(0),
                                      locked(10)}),
              ElementsAre(0, last, 0, 0));
}

// ---- Offsets

TEST(NavTime, offsets_follow_from_the_packets_counted_and_the_period) {
  TestCodec codec(false);
  // The first time is the fourth packet's; three packets of 10 ms go before it. The one of the
  // init counts itself too.
  codec.take({locked(970), locked(980), with_minutes(locked(990)), locked(1000)});
  const NanoOff& offsets = codec.get_nano_off();
  EXPECT_EQ(offsets.get_first2gps(), at_ms(1000));
  EXPECT_EQ(offsets.get_start2gps(), at_ms(970));
  EXPECT_EQ(offsets.get_origin2gps(), kStart);
  EXPECT_EQ(offsets.get_init2gps(), at_ms(960));
  EXPECT_EQ(codec.get_prescan().state, Prescan::kTimed);
}

TEST(NavTime, packets_of_status_1_and_untimed_ones_count_as_packets_ahead) {
  TestCodec codec(false);
  codec.take({packet_of(1, 960), locked(kNoTime), with_minutes(locked(980)), packet_of(1, 990),
              locked(1000), locked(1010)});
  // The period is the step from 980 to 1000, the two packets that moved the clock.
  EXPECT_EQ(codec.get_prescan().period, 20 * kMilli);
  EXPECT_EQ(codec.get_nano_off().get_first2gps(), at_ms(1000));
  EXPECT_EQ(codec.get_nano_off().get_start2gps(), at_ms(1000 - 4 * 20));
}

TEST(NavTime, triggered_and_empty_packets_do_not_count_as_packets_ahead) {
  TestCodec codec(false);
  codec.take({locked(970), packet_of(22, 975).channel(24, {0, 0, 0, 0, 0, 0, 0, 1}),
              packet_of(5, 977), with_minutes(packet_of(10, 978)), packet_of(0, 979), locked(980),
              locked(990)});
  EXPECT_EQ(codec.get_nano_off().get_first2gps(), at_ms(980));
  EXPECT_EQ(codec.get_nano_off().get_start2gps(), at_ms(970));
}

TEST(NavTime, while_the_period_is_unset_start_and_init_stay_unset) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(59990)), locked(0)});
  EXPECT_FALSE(codec.get_nano_off().inv_first2gps());
  EXPECT_TRUE(codec.get_nano_off().inv_start2gps());
  EXPECT_TRUE(codec.get_nano_off().inv_init2gps());
  EXPECT_EQ(codec.get_prescan().state, Prescan::kUndecided);
  codec.take(locked(10));
  EXPECT_EQ(codec.get_nano_off().get_start2gps(), at_ms(60000 - 10));
  EXPECT_EQ(codec.get_nano_off().get_init2gps(), at_ms(60010 - 3 * 10));
}

TEST(NavTime, the_init_offset_waits_for_status_3) {
  TestCodec codec(false);
  codec.take({with_minutes(packet_of(2, 10)), packet_of(2, 20), packet_of(2, 30)});
  EXPECT_FALSE(codec.get_nano_off().inv_start2gps());
  EXPECT_TRUE(codec.get_nano_off().inv_init2gps());
  EXPECT_EQ(codec.get_prescan().state, Prescan::kUndecided);
  codec.take(packet_of(3, 40));
  EXPECT_EQ(codec.get_nano_off().get_init2gps(), at_ms(40 - 4 * 10));
  EXPECT_EQ(codec.get_prescan().state, Prescan::kTimed);
}

TEST(NavTime, relative_times_count_from_the_offsets) {
  TestCodec codec(false);
  codec.take({locked(970), with_minutes(locked(980)), locked(990)});
  const ComData& data = codec.CData();
  EXPECT_EQ(data.GetNanoFromOrigin(), 990 * kMilli);
  EXPECT_EQ(data.GetNanoFromStart(), 20 * kMilli);
  EXPECT_EQ(data.GetNanoFromFirst(), 0);
  EXPECT_EQ(data.GetNanoFromInit(), 30 * kMilli);
  EXPECT_DOUBLE_EQ(data.GetTimeFromOrigin(), 0.99);
  EXPECT_DOUBLE_EQ(data.GetTimeFromStart(), 0.02);
  EXPECT_DOUBLE_EQ(data.GetTimeFromFirst(), 0.0);
  EXPECT_DOUBLE_EQ(data.GetTimeFromInit(), 0.03);
}

TEST(NavTime, a_relative_time_needs_its_offset_a_time_and_its_key) {
  TestCodec codec(false);
  codec.take({with_minutes(packet_of(2, 980)), packet_of(2, 990)});
  EXPECT_TRUE(codec.CData().IsNanoFromStartValid() && codec.CData().IsTimeFromFirstValid());
  EXPECT_FALSE(codec.CData().IsNanoFromInitValid() || codec.CData().IsTimeFromInitValid());
  codec.take(locked(kNoTime));
  EXPECT_FALSE(codec.CData().IsNanoFromStartValid() || codec.CData().IsTimeFromFirstValid());
  codec.take(locked(1000));
  EXPECT_TRUE(codec.CData().IsNanoFromInitValid());
  codec.Key().KMain().Bar_Time_Rel();
  codec.take(locked(1010));
  EXPECT_FALSE(codec.CData().IsNanoFromOriginValid() || codec.CData().IsTimeFromInitValid());
}

TEST(NavTime, weeks_and_their_seconds_follow_from_the_time) {
  TestCodec codec(false);
  // Minute 10080 * 3 + 1 is one minute into week 3.
  codec.take({with_minutes(locked(490), 10080 * 3 + 1), locked(500)});
  EXPECT_EQ(codec.CData().GetTimeWeekCount(), 3U);
  EXPECT_DOUBLE_EQ(codec.CData().GetTimeWeekSecond(), 60.5);
  codec.Key().KMain().Bar_Time_Extra();
  codec.take(locked(510));
  EXPECT_FALSE(codec.CData().IsTimeWeekCountValid() || codec.CData().IsTimeWeekSecondValid());
}

TEST(NavTime, a_time_before_time_zero_has_no_week) {
  TestCodec codec(false);
  // 160000000 minutes are 9.6e18 ns, which wraps to 9.6e18 - 2^64, below zero.
  codec.take({with_minutes(locked(490), 160'000'000), locked(500)});
  ASSERT_LT(codec.CData().GetNano(), 0);
  EXPECT_TRUE(codec.CData().IsNanoFromStartValid());
  EXPECT_FALSE(codec.CData().IsTimeWeekCountValid() || codec.CData().IsTimeWeekSecondValid());
}

// ---- Two passes

TEST(NavTwoPasses, predicted_times_meet_the_first_measured_one) {
  EXPECT_THAT(times_of_second_pass(Packets{locked(100), locked(110), with_minutes(locked(120)),
                                           locked(130), locked(140)}),
              ElementsAre(at_ms(100), at_ms(110), at_ms(120), at_ms(130), at_ms(140)));
}

TEST(NavTwoPasses, a_late_time_base_is_predicted_back_to_the_first_packet) {
  Packets packets;
  std::vector<long long> expected;
  for (int packet = 0; packet < 300; ++packet) {
    const auto time = static_cast<unsigned short>((59000 + packet * 10) % 60000);
    packets.push_back(packet == 250 ? with_minutes(locked(time)) : locked(time));
    // Packet 100 turns the minute that packet 250 tells.
    expected.push_back(at_ms((packet - 100) * 10));
  }
  EXPECT_EQ(times_of_second_pass(packets), expected);
}

TEST(NavTwoPasses, prediction_goes_over_a_turn_of_the_minute_between_minutes_and_first_time) {
  EXPECT_THAT(times_of_second_pass(Packets{locked(59970), with_minutes(locked(59980)),
                                           locked(kNoTime), locked(0), locked(10)}),
              ElementsAre(at_ms(59970), at_ms(59980), at_ms(59990), at_ms(60000), at_ms(60010)));
}

TEST(NavTwoPasses, the_last_predicted_packet_still_takes_the_minutes_that_it_brings) {
  // The packet at 59990 is the last predicted one and brings the minute that ends with it. It is
  // decoded last, so the next packet, at 0, no longer sees a turn of the minute.
  EXPECT_THAT(times_of_second_pass(
                  Packets{locked(59980), with_minutes(locked(59990)), locked(0), locked(10)}),
              ElementsAre(at_ms(59980), at_ms(59990), at_ms(0), at_ms(10)));
}

TEST(NavTwoPasses, packets_of_status_1_are_predicted_too) {
  EXPECT_THAT(times_of_second_pass(Packets{packet_of(1, 100), packet_of(1, 110),
                                           with_minutes(packet_of(2, 120)), packet_of(2, 130),
                                           packet_of(1, 140), locked(150)}),
              ElementsAre(at_ms(100), at_ms(110), at_ms(120), at_ms(130), 0, at_ms(150)));
}

TEST(NavTwoPasses, untimed_packets_are_predicted_too) {
  EXPECT_THAT(times_of_second_pass(Packets{locked(kNoTime), with_minutes(locked(110)), locked(120),
                                           locked(kNoTime), locked(140)}),
              ElementsAre(at_ms(100), at_ms(110), at_ms(120), 0, at_ms(140)));
}

TEST(NavTwoPasses, a_period_of_nothing_is_a_period) {
  // The clock's first step is from 120 to 120.
  EXPECT_THAT(times_of_second_pass(
                  Packets{locked(100), with_minutes(locked(120)), locked(120), locked(130)}),
              ElementsAre(at_ms(120), at_ms(120), at_ms(120), at_ms(130)));
}

TEST(NavTwoPasses, packets_of_other_kinds_are_neither_counted_nor_predicted) {
  EXPECT_THAT(
      times_of_second_pass(Packets{locked(100), packet_of(10, 0), packet_of(5, 0), packet_of(11, 0),
                                   packet_of(22, 0), with_minutes(locked(110)), locked(120)}),
      ElementsAre(at_ms(100), 0, 0, 0, 0, at_ms(110), at_ms(120)));
}

TEST(NavTwoPasses, a_negative_period_is_predicted_as_it_is) {
  // The only step is from 59999 to 2000, 57.999 s back.
  EXPECT_THAT(
      times_of_second_pass(Packets{locked(59990), with_minutes(locked(59999)), locked(2000)}),
      ElementsAre(at_ms(2000 + 2 * 57999), at_ms(2000 + 57999), at_ms(2000)));
}

TEST(NavTwoPasses, without_a_period_a_predicted_packet_gets_no_time) {
  const Packets packets{with_minutes(locked(59990)), locked(0)};
  TestCodec codec(true);
  codec.take({packets[0], packets[1]});
  codec.PrescanRewind(true);
  EXPECT_EQ(codec.get_prescan().state, Prescan::kPredicting);
  EXPECT_FALSE(codec.CData().IsNanoValid());
  codec.take(packets[0]);
  EXPECT_FALSE(codec.CData().IsNanoValid());
  EXPECT_EQ(codec.get_prescan().state, Prescan::kPredicted);
}

TEST(NavTwoPasses, a_stream_without_a_time_learns_anew) {
  TestCodec codec(true);
  codec.take({locked(100), locked(110)});
  codec.PrescanRewind(true);
  EXPECT_EQ(codec.get_prescan().state, Prescan::kUndecided);
  EXPECT_THAT(times_of(codec, Packets{locked(100), with_minutes(locked(110)), locked(120)}),
              ElementsAre(0, 0, at_ms(120)));
  EXPECT_EQ(codec.get_nano_off().get_start2gps(), at_ms(100));
}

TEST(NavTwoPasses, every_rewind_predicts_the_same_times) {
  const Packets packets{locked(100), with_minutes(locked(110)), locked(120), locked(130)};
  TestCodec codec(true);
  for (const Packet& packet : packets) codec.take(packet);
  for (int pass = 0; pass < 3; ++pass) {
    codec.PrescanRewind(pass % 2 == 0);
    EXPECT_THAT(times_of(codec, packets),
                ElementsAre(at_ms(100), at_ms(110), at_ms(120), at_ms(130)));
  }
}

TEST(NavTwoPasses, a_rewind_in_the_midst_of_prediction_begins_it_anew) {
  const Packets packets{locked(100), locked(110), with_minutes(locked(120)), locked(130)};
  TestCodec codec(true);
  for (const Packet& packet : packets) codec.take(packet);
  codec.PrescanRewind(true);
  codec.take(packets[0]);
  codec.PrescanRewind(true);
  EXPECT_THAT(times_of(codec, packets),
              ElementsAre(at_ms(100), at_ms(110), at_ms(120), at_ms(130)));
}

TEST(NavTwoPasses, the_offsets_of_the_first_pass_hold_in_the_second) {
  TestCodec codec(true);
  codec.take({locked(970), with_minutes(locked(980)), locked(990)});
  codec.PrescanRewind(true);
  codec.take(locked(970));
  const ComData& data = codec.CData();
  EXPECT_EQ(data.GetNanoFromOrigin(), 970 * kMilli);
  EXPECT_EQ(data.GetNanoFromStart(), 0);
  EXPECT_EQ(data.GetNanoFromFirst(), -20 * kMilli);
  EXPECT_EQ(data.GetNanoFromInit(), 10 * kMilli);
}

}  // namespace
}  // namespace Trel::Nav
