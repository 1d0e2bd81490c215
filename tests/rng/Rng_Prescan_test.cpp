#include "rng/Rng_Prescan.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <utility>

namespace Trel::Rng {
namespace {

constexpr long long kMax = std::numeric_limits<long long>::max();
constexpr long long kPeriod = 10'000'000;

using Pair = std::pair<unsigned int, unsigned int>;  // type and target
constexpr Pair kFirst{2, 0};
constexpr Pair kSecond{2, 1};
constexpr Pair kLane{1, 0};

Prescan counted(std::initializer_list<Pair> pairs) {
  Prescan prescan;
  prescan.Invalidate(false);
  for (const auto& [type, target] : pairs) prescan.incrCounter(type, target);
  return prescan;
}

TEST(RngPrescan, begins_undecided_or_prescanning) {
  Prescan prescan;
  prescan.Invalidate(false);
  EXPECT_EQ(prescan.state, Prescan::kUndecided);
  EXPECT_FALSE(prescan.active);
  prescan.Invalidate(true);
  EXPECT_EQ(prescan.state, Prescan::kPrescanning);
  EXPECT_TRUE(prescan.active);
}

TEST(RngPrescan, forgets_all_that_it_knew) {
  Prescan prescan = counted({kFirst});
  prescan.offsets.setOffset(5, 1);
  prescan.has_time = prescan.has_utc = true;
  prescan.ms = prescan.minute = 7;
  prescan.Invalidate(true);
  EXPECT_TRUE(prescan.offsets.unset());
  EXPECT_FALSE(prescan.has_time || prescan.has_utc);
  EXPECT_EQ(prescan.ms, -1);
  EXPECT_EQ(prescan.minute, -1);
  EXPECT_EQ(prescan.get_packets(), 0U);
  EXPECT_EQ(prescan.get_intervals(), 0U);
}

TEST(RngPrescan, the_very_first_packet_begins_a_period) {
  const Prescan prescan = counted({kFirst});
  EXPECT_EQ(prescan.get_packets(), 1U);
  EXPECT_EQ(prescan.get_intervals(), 1U);
}

TEST(RngPrescan, packets_of_different_kinds_share_a_period) {
  const Prescan prescan = counted({{0, 0}, kLane, kFirst, kSecond, {2, 2}, {2, 3}});
  EXPECT_EQ(prescan.get_packets(), 6U);
  EXPECT_EQ(prescan.get_intervals(), 1U);
}

TEST(RngPrescan, a_kind_that_comes_again_begins_a_period) {
  const Prescan prescan = counted({kFirst, kSecond, kFirst, kSecond, kFirst});
  EXPECT_EQ(prescan.get_packets(), 5U);
  EXPECT_EQ(prescan.get_intervals(), 3U);
}

TEST(RngPrescan, a_new_period_has_seen_only_the_kind_that_began_it) {
  // the lane packet comes again in the second period, but has not been seen in that
  EXPECT_EQ(counted({kLane, kFirst, kFirst, kLane}).get_intervals(), 2U);
  EXPECT_EQ(counted({kLane, kFirst, kFirst, kLane, kFirst}).get_intervals(), 3U);
}

TEST(RngPrescan, the_packet_that_turns_out_to_have_a_time_is_taken_back) {
  Prescan prescan = counted({kFirst, kSecond, kFirst});
  prescan.undoCounter();
  EXPECT_EQ(prescan.get_packets(), 2U);
  EXPECT_EQ(prescan.get_intervals(), 1U);
}

TEST(RngPrescan, the_prediction_is_the_period_times_the_intervals) {
  Prescan prescan = counted({kFirst, kSecond, kFirst, kSecond, kFirst});
  EXPECT_EQ(prescan.timePrediction(), 3 * kPeriod);
  prescan.undoCounter();
  EXPECT_EQ(prescan.timePrediction(), 2 * kPeriod);
}

TEST(RngPrescan, counting_down_takes_an_interval_at_each_period_and_reports_the_last_packet) {
  Prescan prescan = counted({kFirst, kSecond, kFirst, kSecond, kFirst});
  prescan.undoCounter();  // four packets, two intervals
  EXPECT_FALSE(prescan.decrCounter(2, 0));
  EXPECT_EQ(prescan.get_intervals(), 1U);
  EXPECT_FALSE(prescan.decrCounter(2, 1));
  EXPECT_EQ(prescan.get_intervals(), 1U);
  EXPECT_FALSE(prescan.decrCounter(2, 0));
  EXPECT_EQ(prescan.get_intervals(), 0U);
  EXPECT_TRUE(prescan.decrCounter(2, 1));
  EXPECT_EQ(prescan.get_intervals(), 0U);
  EXPECT_EQ(prescan.get_packets(), 0U);
}

TEST(RngPrescan, a_rewind_goes_back_to_the_counts_that_were_noted) {
  Prescan prescan = counted({kFirst, kSecond, kFirst});
  prescan.undoCounter();
  (void)prescan.decrCounter(2, 0);
  prescan.initCounter();
  EXPECT_EQ(prescan.get_packets(), 2U);
  EXPECT_EQ(prescan.get_intervals(), 1U);
  // and the first packet begins a period again
  (void)prescan.decrCounter(2, 0);
  EXPECT_EQ(prescan.get_intervals(), 0U);
}

TEST(RngPrescan, what_was_noted_stays_for_any_number_of_rewinds) {
  Prescan prescan = counted({kFirst, kFirst, kFirst});
  prescan.undoCounter();
  for (int pass = 0; pass < 3; ++pass) {
    prescan.initCounter();
    EXPECT_FALSE(prescan.decrCounter(2, 0)) << pass;
    EXPECT_TRUE(prescan.decrCounter(2, 0)) << pass;
  }
}

TEST(RngPrescan, a_fresh_count_begins_at_nothing) {
  Prescan prescan = counted({kFirst, kFirst});
  prescan.undoCounter();
  prescan.ivalCounter();
  EXPECT_EQ(prescan.get_packets(), 0U);
  EXPECT_EQ(prescan.get_intervals(), 0U);
  prescan.initCounter();
  EXPECT_EQ(prescan.get_packets(), 0U);  // what was noted is forgotten too
  prescan.ivalCounter();
  prescan.incrCounter(2, 0);
  EXPECT_EQ(prescan.get_intervals(), 1U);
}

TEST(RngPrescan, counting_down_below_nothing_wraps) {
  Prescan prescan = counted({kFirst});
  prescan.undoCounter();
  EXPECT_FALSE(prescan.decrCounter(2, 0));
  EXPECT_EQ(prescan.get_packets(), std::numeric_limits<unsigned long long>::max());
  EXPECT_EQ(prescan.timePrediction(), -kPeriod);
}

TEST(RngPrescanDeathTest, counting_goes_on_only_before_the_first_time) {
  const char* condition =
      "check == 0 \\|\\| check == 1 \\|\\| check == 2 \\|\\| check == 3[^|]*rng/Rng_RComRx";
  Prescan prescan = counted({kFirst});
  prescan.undoCounter();
  EXPECT_DEATH(prescan.incrCounter(2, 0), condition);
  (void)prescan.decrCounter(2, 0);
  EXPECT_DEATH(prescan.incrCounter(2, 0), condition);
  prescan.initCounter();
  prescan.incrCounter(2, 0);
  prescan.ivalCounter();
  prescan.incrCounter(2, 0);
  prescan.incrCounter(2, 0);
  Prescan().incrCounter(2, 0);
}

TEST(RngPrescanDeathTest, only_a_packet_just_counted_is_taken_back) {
  const char* condition = "Test : check == 3\n.*rng/Rng_RComRx";
  Prescan prescan = counted({});
  EXPECT_DEATH(prescan.undoCounter(), condition);
  prescan.incrCounter(2, 0);
  prescan.undoCounter();
  EXPECT_DEATH(prescan.undoCounter(), condition);
  prescan.initCounter();
  EXPECT_DEATH(prescan.undoCounter(), condition);
}

TEST(RngPrescanDeathTest, counting_down_needs_counts_that_were_noted) {
  const char* condition = "check == 2 \\|\\| check == 4 \\|\\| check == 5[^|]*rng/Rng_RComRx";
  Prescan prescan = counted({});
  EXPECT_DEATH((void)prescan.decrCounter(2, 0), condition);
  prescan.incrCounter(2, 0);
  EXPECT_DEATH((void)prescan.decrCounter(2, 0), condition);
  prescan.undoCounter();
  (void)prescan.decrCounter(2, 0);
  (void)prescan.decrCounter(2, 0);
  prescan.initCounter();
  (void)prescan.decrCounter(2, 0);
}

TEST(RngNanoOff, has_no_times_until_they_are_set) {
  NanoOff off;
  EXPECT_TRUE(off.unset());
  off.setOffset(7, 2);
  EXPECT_FALSE(off.unset());
  off.Invalidate();
  EXPECT_TRUE(off.unset());
}

TEST(RngNanoOff, the_origin_is_the_whole_second_of_the_start) {
  NanoOff off;
  off.setOffset(12'500'000'000, 700'000'000);
  EXPECT_EQ(off.get_first(), 12'500'000'000);
  EXPECT_EQ(off.get_start(), 11'800'000'000);
  EXPECT_EQ(off.get_origin(), 11'000'000'000);
}

TEST(RngNanoOff, the_second_of_a_negative_start_is_cut_towards_zero) {
  NanoOff off;
  off.setOffset(0, 1'500'000'000);
  EXPECT_EQ(off.get_start(), -1'500'000'000);
  EXPECT_EQ(off.get_origin(), -1'000'000'000);
}

TEST(RngNanoOff, a_start_beyond_the_range_of_times_wraps) {
  NanoOff off;
  off.setOffset(-2, kMax);  // -2 - (2^63 - 1) = -2^63 - 1, a turn of 2^64 on
  EXPECT_EQ(off.get_start(), kMax);
  EXPECT_EQ(off.get_first(), -2);
}

}  // namespace
}  // namespace Trel::Rng
