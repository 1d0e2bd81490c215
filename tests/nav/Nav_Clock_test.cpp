#include "nav/Nav_Clock.h"

#include <gtest/gtest.h>

#include <limits>

namespace Trel::Nav {
namespace {

constexpr int kMost = std::numeric_limits<int>::max();

PacketClock clock_at(int minutes, int milliseconds) {
  PacketClock clock;
  clock.set(minutes, milliseconds);
  return clock;
}

TEST(PacketClock, tells_minutes_and_milliseconds_in_nanoseconds) {
  EXPECT_EQ(clock_at(2, 34).nano(), 2 * 60'000'000'000 + 34'000'000);
  EXPECT_EQ(clock_at(0, 0).nano(), 0);
}

TEST(PacketClock, does_not_know_the_time_without_minutes) {
  EXPECT_FALSE(PacketClock().known());
  EXPECT_FALSE(clock_at(-1, 10).known());
  EXPECT_TRUE(clock_at(0, -1).known());
}

TEST(PacketClock, a_fall_below_two_seconds_from_above_them_is_the_next_minute) {
  long long period = kNoPeriod;
  for (const auto& [from, to, minutes] :
       {std::array{59999, 0, 8}, std::array{2001, 1999, 8}, std::array{2000, 1999, 7},
        std::array{59999, 2000, 7}, std::array{1999, 0, 7}, std::array{0, 59999, 7}}) {
    PacketClock clock = clock_at(7, from);
    clock.advance(to, period);
    EXPECT_EQ(clock.get_minutes(), minutes) << from << " to " << to;
    EXPECT_EQ(clock.get_milliseconds(), to);
  }
}

TEST(PacketClock, the_first_step_within_a_minute_is_the_period_for_good) {
  long long period = kNoPeriod;
  PacketClock clock = clock_at(7, 59990);
  clock.advance(0, period);
  EXPECT_EQ(period, kNoPeriod);
  clock.advance(10, period);
  EXPECT_EQ(period, 10'000'000);
  clock.advance(30, period);
  EXPECT_EQ(period, 10'000'000);
}

TEST(PacketClock, a_step_backward_that_is_no_turn_gives_a_negative_period) {
  long long period = kNoPeriod;
  PacketClock clock = clock_at(7, 59999);
  clock.advance(2000, period);
  EXPECT_EQ(period, (2000LL - 59999) * 1'000'000);
}

TEST(PacketClock, a_step_is_no_period_while_minutes_or_milliseconds_are_not_known) {
  long long period = kNoPeriod;
  PacketClock no_minutes = clock_at(-1, 100);
  no_minutes.advance(110, period);
  EXPECT_EQ(period, kNoPeriod);
  EXPECT_EQ(no_minutes.get_milliseconds(), 110);

  PacketClock no_milliseconds = clock_at(7, -1);
  no_milliseconds.advance(110, period);
  EXPECT_EQ(period, kNoPeriod);
}

TEST(PacketClock, the_last_minute_of_all_turns_into_none) {
  long long period = kNoPeriod;
  PacketClock clock = clock_at(kMost, 59999);
  clock.advance(0, period);
  EXPECT_EQ(clock.get_minutes(), std::numeric_limits<int>::min());
  EXPECT_FALSE(clock.known());
}

TEST(PacketClock, minutes_near_their_limit_wrap_in_nanoseconds) {
  // 2147483647 * 6e10 + 59999e6 = 128849018879999000000, less 7 * 2^64
  const auto expected =
      static_cast<long long>(2147483647ULL * 60'000'000'000ULL + 59999ULL * 1'000'000ULL);
  EXPECT_EQ(clock_at(kMost, 59999).nano(), expected);
}

TEST(RegularRate, a_window_is_a_hundred_and_one_packets) {
  RegularRate rate;
  double hertz = 0.0;
  for (int packet = 0; packet < 100; ++packet) {
    EXPECT_EQ(rate.count(true, packet * 10'000'000LL, hertz), RegularRate::Outcome::None);
  }
  EXPECT_EQ(rate.count(true, 1'000'000'000, hertz), RegularRate::Outcome::Rate);
  EXPECT_DOUBLE_EQ(hertz, 100.0);
}

TEST(RegularRate, the_packet_that_ends_a_window_begins_the_next) {
  RegularRate rate;
  double hertz = 0.0;
  for (int packet = 0; packet <= 100; ++packet) (void)rate.count(true, packet * 10LL, hertz);
  for (int packet = 1; packet < 100; ++packet) {
    EXPECT_EQ(rate.count(true, 1000 + packet * 20LL, hertz), RegularRate::Outcome::None);
  }
  EXPECT_EQ(rate.count(true, 1000 + 100 * 20LL, hertz), RegularRate::Outcome::Rate);
  EXPECT_DOUBLE_EQ(hertz, 100 * 1e9 / 2000);
}

TEST(RegularRate, an_untimed_packet_counts_and_the_next_timed_one_ends_the_window) {
  RegularRate rate;
  double hertz = 0.0;
  (void)rate.count(true, 0, hertz);
  for (int packet = 1; packet <= 100; ++packet) {
    EXPECT_EQ(rate.count(false, 0, hertz), RegularRate::Outcome::None);
  }
  EXPECT_EQ(rate.count(true, 1'010'000'000, hertz), RegularRate::Outcome::Rate);
  EXPECT_DOUBLE_EQ(hertz, 101 * 1e9 / 1'010'000'000);
}

TEST(RegularRate, no_window_begins_without_a_time) {
  RegularRate rate;
  double hertz = 0.0;
  for (int packet = 0; packet < 200; ++packet) (void)rate.count(false, 0, hertz);
  EXPECT_EQ(rate.count(true, 5, hertz), RegularRate::Outcome::None);
}

TEST(RegularRate, a_window_that_does_not_go_forward_is_lost_and_begins_anew) {
  RegularRate rate;
  double hertz = 0.0;
  for (int packet = 0; packet < 100; ++packet) (void)rate.count(true, 1'000'000, hertz);
  EXPECT_EQ(rate.count(true, 1'000'000, hertz), RegularRate::Outcome::Lost);
  for (int packet = 0; packet < 100; ++packet) {
    EXPECT_EQ(rate.count(true, packet * 10LL, hertz), RegularRate::Outcome::None);
  }
  EXPECT_EQ(rate.count(true, 1000, hertz), RegularRate::Outcome::Rate);
}

TEST(RegularRate, a_span_beyond_the_range_of_times_wraps) {
  RegularRate rate;
  double hertz = 0.0;
  for (int packet = 0; packet < 100; ++packet) (void)rate.count(true, 1, hertz);
  EXPECT_EQ(rate.count(true, std::numeric_limits<long long>::min(), hertz),
            RegularRate::Outcome::Rate);  // min - 1 wraps to the greatest number
}

TEST(NanoOff, holds_no_time_until_one_is_set) {
  NanoOff offsets;
  EXPECT_TRUE(offsets.inv_origin2gps() && offsets.inv_start2gps());
  EXPECT_TRUE(offsets.inv_first2gps() && offsets.inv_init2gps());
  offsets.set_first2gps(5);
  EXPECT_FALSE(offsets.inv_first2gps());
  EXPECT_EQ(offsets.get_first2gps(), 5);
  EXPECT_TRUE(offsets.inv_start2gps());
  offsets.Invalidate();
  EXPECT_TRUE(offsets.inv_first2gps());
}

TEST(NanoOff, any_number_can_be_a_time) {
  NanoOff offsets;
  offsets.set_start2gps(std::numeric_limits<long long>::min());
  EXPECT_FALSE(offsets.inv_start2gps());
}

}  // namespace
}  // namespace Trel::Nav
