// The time of range packets: the clock, both passes, and the times that follow from Nano.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Rng_Feed.h"

namespace Trel::Rng {
namespace {

using ::testing::ElementsAre;

constexpr int kNoMinute = std::numeric_limits<int>::min();
constexpr std::uint16_t kNoTime = 65535;

std::vector<long long> times(const std::vector<RangePacket>& packets) {
  TestCodec codec(false);
  return times_of(codec, packets);
}

TEST(RngClock, packets_are_untimed_until_the_minute_has_come) {
  EXPECT_THAT(times({range(80), with_minutes(range(90)), range(100)}),
              ElementsAre(0, 0, at_ms(100)));  // the minute is read behind the packet's own time
}

TEST(RngClock, each_timed_type_brings_the_minute) {
  EXPECT_THAT(times({with_minutes(range(90)), range(100)}), ElementsAre(0, at_ms(100)));
  EXPECT_THAT(times({with_minutes(lane(90)), lane(100)}), ElementsAre(0, at_ms(100)));
  EXPECT_THAT(times({with_minutes(old_range(90)), old_range(100)}), ElementsAre(0, at_ms(100)));
}

TEST(RngClock, a_channel_that_its_packet_is_too_short_to_hold_brings_nothing) {
  // up to the last byte but one of the channel: the sum stands where the last would
  EXPECT_THAT(times({with_minutes(range(90)).resize(49), range(100)}), ElementsAre(0, 0));
  EXPECT_THAT(times({with_minutes(range(90)).resize(50), range(100)}), ElementsAre(0, at_ms(100)));
  EXPECT_THAT(times({with_minutes(lane(90)).resize(57), range(100)}), ElementsAre(0, 0));
  EXPECT_THAT(times({with_minutes(lane(90)).resize(58), range(100)}), ElementsAre(0, at_ms(100)));
  EXPECT_THAT(times({with_minutes(old_range(90)).resize(45), range(100)}), ElementsAre(0, 0));
  EXPECT_THAT(times({with_minutes(old_range(90)).resize(46), range(100)}),
              ElementsAre(0, at_ms(100)));
}

TEST(RngClock, a_fall_from_above_2000_to_below_turns_the_minute) {
  EXPECT_THAT(times({with_minutes(range(90)), range(2001), range(1999)}),
              ElementsAre(0, at_ms(2001), at_ms(61'999)));
  EXPECT_THAT(times({with_minutes(range(90)), range(59'990), range(0)}),
              ElementsAre(0, at_ms(59'990), at_ms(60'000)));
}

TEST(RngClock, any_other_fall_does_not) {
  EXPECT_THAT(times({with_minutes(range(90)), range(2000), range(1999)}),
              ElementsAre(0, at_ms(2000), at_ms(1999)));
  EXPECT_THAT(times({with_minutes(range(90)), range(59'000), range(2000)}),
              ElementsAre(0, at_ms(59'000), at_ms(2000)));
  EXPECT_THAT(times({with_minutes(range(90)), range(1500), range(500)}),
              ElementsAre(0, at_ms(1500), at_ms(500)));
}

TEST(RngClock, without_a_minute_nothing_turns) {
  EXPECT_THAT(times({range(59'990), with_minutes(range(0)), range(10)}),
              ElementsAre(0, 0, at_ms(10)));
}

TEST(RngClock, the_minute_turns_by_itself_from_then_on) {
  EXPECT_THAT(times({with_minutes(range(90)), range(59'000), range(100), range(59'500), range(7)}),
              ElementsAre(0, at_ms(59'000), at_ms(60'100), at_ms(119'500), at_ms(120'007)));
}

TEST(RngClock, unknown_milliseconds_make_one_packet_untimed) {
  TestCodec codec(false);
  codec.take({with_minutes(range(90)), range(59'990), range(kNoTime)});
  EXPECT_FALSE(codec.DMain().Is_Nano_Valid());
  EXPECT_FALSE(codec.DMain().Is_Time_Valid());
  EXPECT_TRUE(codec.DMain().Var_Nano().null());
  // what was known stays known: the next packet is in the next minute
  EXPECT_THAT(times_of(codec, {range(10)}), ElementsAre(at_ms(60'010)));
}

TEST(RngClock, the_channel_of_an_untimed_packet_is_read) {
  TestCodec codec(false);
  codec.take(with_utc(range(kNoTime)));
  EXPECT_EQ(codec.DMain().Get_TimeUtcOffset(), 18);
}

TEST(RngClock, milliseconds_beyond_a_minute_are_taken_as_they_are) {
  EXPECT_THAT(times({with_minutes(range(90)), range(65'534)}), ElementsAre(0, at_ms(65'534)));
}

TEST(RngClock, a_packet_too_short_for_its_milliseconds_has_none) {
  TestCodec codec(false);
  codec.take({with_minutes(lane(90)), lane(100), lane(110).resize(5)});
  EXPECT_FALSE(codec.DMain().Is_Nano_Valid());
  EXPECT_EQ(codec.get_last_ms(), 100);
  codec.take(lane(120).resize(6));
  EXPECT_EQ(codec.DMain().Get_Nano(), at_ms(120));
}

TEST(RngClock, the_lowest_minute_says_that_it_is_not_known) {
  TestCodec codec(false);
  codec.take({with_minutes(range(90)), with_minutes(range(100), kNoMinute)});
  EXPECT_EQ(codec.get_gps_minute(), -1);
  EXPECT_THAT(times_of(codec, {range(110)}), ElementsAre(0));
}

TEST(RngClock, a_negative_minute_gives_no_time) {
  EXPECT_THAT(times({with_minutes(range(90), -5), range(100)}), ElementsAre(0, 0));
}

TEST(RngClock, a_newer_minute_counts_from_the_next_packet_on) {
  EXPECT_THAT(times({with_minutes(range(90)), with_minutes(range(100), kMinute + 5), range(110)}),
              ElementsAre(0, at_ms(100), at_ms(5 * 60'000 + 110)));
}

TEST(RngClock, a_time_beyond_the_range_wraps) {
  const auto expected = static_cast<long long>(2147483647ULL * 60'000'000'000ULL + 100'000'000ULL);
  TestCodec codec(false);
  codec.take({with_minutes(range(90), std::numeric_limits<int>::max()), range(100)});
  EXPECT_EQ(codec.DMain().Get_Nano(), expected);
}

TEST(RngClock, the_minute_behind_the_last_is_negative_and_gives_no_time) {
  TestCodec codec(false);
  codec.take({with_minutes(range(90), std::numeric_limits<int>::max()), range(59'000)});
  EXPECT_THAT(times_of(codec, {range(100)}), ElementsAre(0));
  EXPECT_EQ(codec.get_gps_minute(), kNoMinute);
}

TEST(RngClock, time_is_nano_in_seconds) {
  TestCodec codec(false);
  codec.take({with_minutes(range(90)), range(1500)});
  EXPECT_EQ(codec.DMain().Get_Time(), kMinute * 60.0 + 1.5);
}

TEST(RngSinglePass, the_first_time_sets_the_offsets_for_what_went_before) {
  TestCodec codec(false);
  EXPECT_EQ(codec.get_prescan().state, Prescan::kUndecided);
  // two targets, so that each begins no period of its own: two periods ahead of the first time
  codec.take({range(80, 1), range(80, 2), with_minutes(range(90, 1)), range(90, 2)});
  EXPECT_EQ(codec.get_prescan().state, Prescan::kTimed);
  EXPECT_EQ(codec.DMain().Get_Nano(), at_ms(90));
  // 1, 2 and 1 again are two intervals; the packet with the time is taken back
  EXPECT_EQ(codec.DMain().Get_NanoFromStart(), 20 * kMilli);
  EXPECT_EQ(codec.DMain().Get_NanoFromFirst(), 0);
  EXPECT_EQ(codec.DMain().Get_NanoFromOrigin(), 90 * kMilli);  // the start is at 70 ms
}

TEST(RngSinglePass, the_offsets_are_set_once) {
  TestCodec codec(false);
  codec.take({with_minutes(range(90)), range(100), range(110), range(1200)});
  EXPECT_EQ(codec.get_nano_off().get_first(), at_ms(100));
  EXPECT_EQ(codec.DMain().Get_NanoFromFirst(), 1100 * kMilli);
}

// A prescan that finds the time at 120 ms, and the offset to UTC behind it.
const std::vector<RangePacket>& recording() {
  static const std::vector<RangePacket> packets = {
      range(100, 1),           range(100, 2),                // first period
      range(110, 1),           with_minutes(range(110, 2)),  // second period
      range(120, 1),           range(120, 2),
      with_utc(range(130, 1)), range(130, 2)};
  return packets;
}

TEST(RngPrescanPass, ends_with_the_packet_that_completes_it) {
  TestCodec codec(true);
  std::vector<int> results;
  for (const RangePacket& packet : recording()) results.push_back(codec.take(packet));
  EXPECT_EQ(std::vector(results.begin(), results.begin() + 7),
            (std::vector<int>{1, 1, 1, 1, 1, 1, 2}));
  EXPECT_FALSE(codec.get_prescan().active);
}

TEST(RngPrescanPass, does_not_end_before_the_offset_to_utc_has_come) {
  TestCodec codec(true);
  codec.take({with_minutes(range(100)), range(110), range(120)});
  EXPECT_TRUE(codec.get_prescan().has_time);
  EXPECT_TRUE(codec.get_prescan().active);
  EXPECT_EQ(codec.get_prescan().state, Prescan::kPrescanning);
  EXPECT_EQ(codec.take(with_utc(range(130))), 2);
}

TEST(RngPrescanPass, does_not_end_before_the_time_has_come) {
  TestCodec codec(true);
  codec.take({with_utc(range(100)), range(110), with_minutes(range(120))});
  EXPECT_TRUE(codec.get_prescan().has_utc);
  EXPECT_TRUE(codec.get_prescan().active);
  EXPECT_EQ(codec.take(range(130)), 2);
}

TEST(RngPrescanPass, notes_the_first_time_and_the_clock_at_it) {
  TestCodec codec(true);
  codec.take({with_minutes(range(59'960)), range(59'970), range(59'980)});
  const Prescan& found = codec.get_prescan();
  EXPECT_EQ(found.offsets.get_first(), at_ms(59'970));
  EXPECT_EQ(found.ms, 59'970);
  EXPECT_EQ(found.minute, kMinute);
  EXPECT_EQ(found.time, at_ms(59'960));    // one period before it
  EXPECT_EQ(codec.get_last_ms(), 59'970);  // the clock of a first pass stops there
}

TEST(RngPrescanPass, the_first_time_can_lie_behind_a_turn_of_the_minute) {
  TestCodec codec(true);
  codec.take({with_minutes(range(59'990)), range(0)});
  EXPECT_EQ(codec.get_prescan().offsets.get_first(), at_ms(60'000));
  EXPECT_EQ(codec.get_prescan().minute, kMinute + 1);
}

TEST(RngPrescanPass, unknown_milliseconds_are_counted_and_give_no_time) {
  TestCodec codec(true);
  codec.take({with_minutes(range(100)), range(kNoTime)});
  EXPECT_FALSE(codec.get_prescan().has_time);
  EXPECT_EQ(codec.get_prescan().get_packets(), 2U);
}

TEST(RngPrescanPass, each_timed_type_brings_the_minute_and_the_offset) {
  for (const auto& packet : {range(100), lane(100), old_range(100)}) {
    TestCodec codec(true);
    codec.take({with_minutes(packet), packet, with_utc(packet, -7)});
    EXPECT_EQ(codec.get_prescan().offsets.get_first(), at_ms(100));
    EXPECT_TRUE(codec.get_prescan().has_utc);
    EXPECT_EQ(codec.get_prescan().utc_offset, -7);
  }
}

TEST(RngPrescanPass, the_first_offset_to_utc_stays) {
  TestCodec codec(true);
  codec.take({with_utc(range(100), 17), with_utc(range(110), 18)});
  EXPECT_EQ(codec.get_prescan().utc_offset, 17);
}

TEST(RngPrescanPass, the_lowest_offset_to_utc_is_none) {
  TestCodec codec(true);
  codec.take(with_utc(range(100), -32768));
  EXPECT_FALSE(codec.get_prescan().has_utc);
  codec.take(with_utc(range(110), -32767));
  EXPECT_TRUE(codec.get_prescan().has_utc);
}

TEST(RngPrescanPass, the_lowest_minute_is_none) {
  TestCodec codec(true);
  codec.take(
      {with_minutes(range(90)), with_minutes(range(95).u16(4, kNoTime), kNoMinute), range(100)});
  EXPECT_FALSE(codec.get_prescan().has_time);
}

TEST(RngPrescanPass, decodes_nothing) {
  TestCodec codec(true);
  codec.take({with_minutes(range(100)), range(110).i32(8, 5)});
  EXPECT_FALSE(codec.DMain().Is_Nano_Valid());
  EXPECT_FALSE(codec.DMain().Is_ProductFamily_Valid());
  EXPECT_FALSE(codec.DTarget(0).Is_RangeLat_Valid());
}

TEST(RngRewind, packets_ahead_of_the_first_time_are_coasted_back_from_it) {
  TestCodec codec(true);
  prescan(codec, recording());
  EXPECT_EQ(codec.get_prescan().state, Prescan::kCoasting);
  // Two intervals go before the first time. A packet gets its time before it is counted off, and
  // the first of a period counts off an interval: 20, 10, 10 and no ms before 120 ms.
  EXPECT_THAT(times_of(codec, recording()),
              ElementsAre(at_ms(100), at_ms(110), at_ms(110), at_ms(120), at_ms(120), at_ms(120),
                          at_ms(130), at_ms(130)));
  EXPECT_EQ(codec.get_prescan().state, Prescan::kCoasted);
}

TEST(RngRewind, a_packet_alone_in_its_periods_coasts_evenly) {
  TestCodec codec(true);
  const std::vector<RangePacket> packets = {range(70), range(80), with_minutes(range(90)),
                                            range(100), with_utc(range(110))};
  prescan(codec, packets);
  EXPECT_THAT(times_of(codec, packets),
              ElementsAre(at_ms(70), at_ms(80), at_ms(90), at_ms(100), at_ms(110)));
}

TEST(RngRewind, coasting_looks_at_no_packets_own_time) {
  TestCodec codec(true);
  std::vector<RangePacket> packets = {range(70), range(kNoTime), with_minutes(range(90)),
                                      range(100), with_utc(range(110))};
  prescan(codec, packets);
  EXPECT_THAT(times_of(codec, packets),
              ElementsAre(at_ms(70), at_ms(80), at_ms(90), at_ms(100), at_ms(110)));
}

TEST(RngRewind, real_times_take_over_with_the_clock_of_the_first_time) {
  TestCodec codec(true);
  const std::vector<RangePacket> packets = {with_minutes(range(59'980)), range(kNoTime), range(0),
                                            with_utc(range(10)),         range(59'000),  range(20)};
  prescan(codec, packets);
  EXPECT_THAT(times_of(codec, packets), ElementsAre(at_ms(59'980), at_ms(59'990), at_ms(60'000),
                                                    at_ms(60'010), at_ms(119'000), at_ms(120'020)));
}

TEST(RngRewind, the_minute_of_the_last_coasting_packet_counts_more_than_that_of_the_first_time) {
  TestCodec codec(true);
  const std::vector<RangePacket> packets = {range(70), with_minutes(range(80)), range(90),
                                            with_utc(range(100))};
  prescan(codec, packets);
  codec.take({packets[0], with_minutes(range(80), kMinute + 1)});
  EXPECT_EQ(codec.get_prescan().state, Prescan::kCoasted);
  EXPECT_THAT(times_of(codec, {range(90)}), ElementsAre(at_ms(60'090)));
}

TEST(RngRewind, only_timed_packets_are_counted_off) {
  TestCodec codec(true);
  const std::vector<RangePacket> packets = {range(80),      RangePacket(5), with_minutes(range(90)),
                                            RangePacket(3), range(100),     with_utc(range(110))};
  prescan(codec, packets);
  EXPECT_THAT(times_of(codec, packets),
              ElementsAre(at_ms(80), at_ms(80), at_ms(90), at_ms(90), at_ms(100), at_ms(110)));
}

TEST(RngRewind, a_second_one_begins_again) {
  TestCodec codec(true);
  prescan(codec, recording());
  const auto first = times_of(codec, recording());
  codec.PrescanRewind(true);
  EXPECT_EQ(codec.get_prescan().state, Prescan::kCoasting);
  EXPECT_EQ(times_of(codec, recording()), first);
}

TEST(RngRewind, in_the_middle_of_coasting_begins_again) {
  TestCodec codec(true);
  prescan(codec, recording());
  codec.take({recording()[0], recording()[1]});
  codec.PrescanRewind(false);
  EXPECT_EQ(times_of(codec, recording()).front(), at_ms(100));
}

TEST(RngRewind, ends_a_prescan_that_knows_the_time_without_the_offset_to_utc) {
  TestCodec codec(true);
  const std::vector<RangePacket> packets = {range(80), with_minutes(range(90)), range(100)};
  prescan(codec, packets, true);
  EXPECT_FALSE(codec.get_prescan().active);
  EXPECT_EQ(codec.get_prescan().state, Prescan::kCoasting);
  EXPECT_FALSE(codec.DMain().Is_TimeUtcOffset_Valid());
  EXPECT_THAT(times_of(codec, packets), ElementsAre(at_ms(80), at_ms(90), at_ms(100)));
}

TEST(RngRewind, without_a_first_time_the_second_pass_learns_as_it_goes) {
  TestCodec codec(true);
  prescan(codec, {with_utc(range(80)), with_minutes(range(90))}, true);
  EXPECT_EQ(codec.get_prescan().state, Prescan::kUndecided);
  EXPECT_FALSE(codec.get_prescan().active);
  EXPECT_TRUE(codec.get_nano_off().unset());
  EXPECT_FALSE(codec.DMain().Is_Nano_Valid());
  EXPECT_EQ(codec.DMain().Get_TimeUtcOffset(), 18);
  EXPECT_THAT(times_of(codec, {range(80), with_minutes(range(90)), range(100)}),
              ElementsAre(0, 0, at_ms(100)));
  EXPECT_EQ(codec.get_prescan().get_packets(), 2U);
}

TEST(RngRewind, of_a_single_pass_forgets_what_it_had_learned) {
  TestCodec codec(false);
  codec.take({with_minutes(range(90)), range(100)});
  codec.PrescanRewind(true);
  EXPECT_EQ(codec.get_prescan().state, Prescan::kUndecided);
  EXPECT_TRUE(codec.get_nano_off().unset());
  EXPECT_EQ(codec.get_gps_minute(), -1);
  EXPECT_EQ(codec.get_last_ms(), -1);
  EXPECT_FALSE(codec.DMain().Is_ProductFamily_Valid());
  EXPECT_THAT(times_of(codec, {range(100)}), ElementsAre(0));
}

TEST(RngRewind, applied_the_values_stand_as_at_the_first_packet) {
  TestCodec codec(true);
  codec.Key().Reset(false);  // the values stand whoever wants them
  prescan(codec, recording(), true);
  const DataMain& main = codec.DMain();
  EXPECT_EQ(main.Get_Nano(), at_ms(100));
  EXPECT_EQ(main.Get_Time(), kMinute * 60 + 0.1);
  EXPECT_TRUE(main.Is_NanoFromStart_Valid() && main.Is_NanoFromFirst_Valid());
  EXPECT_EQ(main.Get_NanoFromStart(), 0);
  EXPECT_EQ(main.Get_NanoFromFirst(), -20 * kMilli);
  EXPECT_TRUE(main.Is_TimeWeekCount_Valid());
  EXPECT_EQ(main.Get_TimeUtcOffset(), 18);
  EXPECT_TRUE(main.Is_TimeUtcOffset_Valid());
  EXPECT_EQ(main.Var_TimeUtcOffset().get_nano(), at_ms(100));
}

TEST(RngRewind, not_applied_no_value_stands) {
  TestCodec codec(true);
  prescan(codec, recording(), false);
  EXPECT_TRUE(codec.DMain().Var_Nano().null());
  EXPECT_TRUE(codec.DMain().Var_NanoFromStart().null());
  EXPECT_TRUE(codec.DMain().Var_TimeUtcOffset().null());
  EXPECT_EQ(codec.get_nano_off().get_first(), at_ms(120));
}

TEST(RngTimings, relative_times_count_from_the_live_offsets) {
  TestCodec codec(true);
  prescan(codec, recording());
  codec.take(recording()[0]);
  const DataMain& main = codec.DMain();
  EXPECT_EQ(main.Get_NanoFromOrigin(), 100 * kMilli);
  EXPECT_EQ(main.Get_NanoFromStart(), 0);
  EXPECT_EQ(main.Get_NanoFromFirst(), -20 * kMilli);
  EXPECT_EQ(main.Get_TimeFromOrigin(), 0.1);
  EXPECT_EQ(main.Get_TimeFromStart(), 0.0);
  EXPECT_EQ(main.Get_TimeFromFirst(), -0.02);
}

TEST(RngTimings, an_untimed_packet_has_no_relative_times) {
  TestCodec codec(false);
  codec.take({with_minutes(range(90)), range(100), range(kNoTime)});
  for (const Lib::StampExt& stamp :
       {static_cast<const Lib::StampExt&>(codec.DMain().Var_NanoFromOrigin()),
        static_cast<const Lib::StampExt&>(codec.DMain().Var_NanoFromStart()),
        static_cast<const Lib::StampExt&>(codec.DMain().Var_NanoFromFirst()),
        static_cast<const Lib::StampExt&>(codec.DMain().Var_TimeFromOrigin()),
        static_cast<const Lib::StampExt&>(codec.DMain().Var_TimeFromStart()),
        static_cast<const Lib::StampExt&>(codec.DMain().Var_TimeFromFirst()),
        static_cast<const Lib::StampExt&>(codec.DMain().Var_TimeWeekCount()),
        static_cast<const Lib::StampExt&>(codec.DMain().Var_TimeWeekSecond())}) {
    EXPECT_EQ(stamp.get_flags().byte() & Lib::Flags::kNull, Lib::Flags::Invalid);
  }
}

TEST(RngTimings, what_nobody_wants_is_rejected) {
  TestCodec codec(false);
  codec.Key().KMain().Bar_Time_Relative();
  codec.take({with_minutes(range(90)), range(100)});
  EXPECT_EQ(codec.DMain().Var_NanoFromOrigin().get_flags().byte() & Lib::Flags::kNull,
            Lib::Flags::Rejected);
  EXPECT_EQ(codec.DMain().Var_NanoFromStart().get_flags().byte() & Lib::Flags::kNull,
            Lib::Flags::Rejected);
  EXPECT_EQ(codec.DMain().Var_TimeFromFirst().get_flags().byte() & Lib::Flags::kNull,
            Lib::Flags::Rejected);
  EXPECT_TRUE(codec.DMain().Is_TimeWeekCount_Valid());
  codec.Key().KMain().Let_Time_Relative();
  codec.Key().KMain().Bar_Time_Week();
  codec.take(range(110));
  EXPECT_TRUE(codec.DMain().Is_NanoFromStart_Valid());
  EXPECT_EQ(codec.DMain().Var_TimeWeekCount().get_flags().byte() & Lib::Flags::kNull,
            Lib::Flags::Rejected);
  EXPECT_EQ(codec.DMain().Var_TimeWeekSecond().get_flags().byte() & Lib::Flags::kNull,
            Lib::Flags::Rejected);
}

TEST(RngTimings, the_week_and_its_second_follow_from_nano) {
  TestCodec codec(false);
  // 10080 minutes a week: 2271 * 10080 = 22891680, and 8320 minutes more
  codec.take({with_minutes(range(90), 22'891'680 + 8320), range(1500)});
  EXPECT_EQ(codec.DMain().Get_TimeWeekCount(), 2271U);
  EXPECT_EQ(codec.DMain().Get_TimeWeekSecond(), 8320 * 60 + 1.5);
}

TEST(RngTimings, a_time_before_time_zero_is_in_no_week) {
  TestCodec codec(false);
  // 2e8 minutes are 1.2e19 ns, which wraps to -6.4e18
  codec.take({with_minutes(range(90), 200'000'000), range(100)});
  ASSERT_TRUE(codec.DMain().Is_Nano_Valid());
  ASSERT_LT(codec.DMain().Get_Nano(), 0);
  EXPECT_FALSE(codec.DMain().Is_TimeWeekCount_Valid());
  EXPECT_FALSE(codec.DMain().Is_TimeWeekSecond_Valid());
}

}  // namespace
}  // namespace Trel::Rng
