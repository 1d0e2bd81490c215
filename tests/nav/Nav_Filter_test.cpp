#include "nav/Nav_Filter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <initializer_list>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

namespace Trel::Nav {

struct MovingAveragerPeer {
  static std::size_t kept(const MovingAverager& filter) { return filter.inputs_.size(); }
};

}  // namespace Trel::Nav

namespace Trel::Nav::Test {
namespace {

constexpr double kTolerance = 1e-12;

// A sixth of the sample rate and a damping of 1/sqrt(3) make plain coefficients:
// K = tan(pi/6), K^2 = 1/3, Q = 0.5 sqrt(3), K/Q = 2/3, D = 1/3 + 2/3 + 1 = 2, so
// b = 1/6, 1/3, 1/6 and a1 = 2 (1/3 - 1) / 2 = -2/3, a2 = (1/3 - 2/3 + 1) / 2 = 1/3.
const double kSixthDamping = 1.0 / std::sqrt(3.0);

FilterLPF2ndOrder sixth() {
  FilterLPF2ndOrder filter;
  filter.SetCharacteristics(1.0 / 6.0, kSixthDamping);
  return filter;
}

template <class Filter>
void feed(Filter& filter, std::initializer_list<std::pair<double, double>> samples) {
  for (const auto& [time, value] : samples) filter.NewInput(time, value);
}

TEST(FilterLPF2ndOrder, starts_with_the_third_even_sample_as_if_at_rest_before) {
  FilterLPF2ndOrder filter = sixth();
  feed(filter, {{0.0, 6.0}, {1.0, 12.0}});
  EXPECT_FALSE(filter.OutputValid());
  filter.NewInput(2.0, 18.0);
  ASSERT_TRUE(filter.OutputValid());
  // y2 = 6. y1 = 12/6 + 6/3 + 6/6 + 2/3 6 - 1/3 6 = 7.
  // y0 = 18/6 + 12/3 + 6/6 + 2/3 7 - 1/3 6 = 32/3.
  EXPECT_NEAR(filter.OutputValue(), 32.0 / 3.0, kTolerance);
}

TEST(FilterLPF2ndOrder, goes_on_from_its_own_outputs) {
  FilterLPF2ndOrder filter = sixth();
  feed(filter, {{0.0, 6.0}, {1.0, 12.0}, {2.0, 18.0}, {3.0, 0.0}});
  // 0/6 + 18/3 + 12/6 + 2/3 32/3 - 1/3 7 = 115/9
  EXPECT_NEAR(filter.OutputValue(), 115.0 / 9.0, kTolerance);
  filter.NewInput(4.0, 6.0);
  // 6/6 + 0/3 + 18/6 + 2/3 115/9 - 1/3 32/3 = 4 + 230/27 - 96/27 = 242/27
  EXPECT_NEAR(filter.OutputValue(), 242.0 / 27.0, kTolerance);
}

TEST(FilterLPF2ndOrder, passes_a_constant_unchanged) {
  FilterLPF2ndOrder filter = sixth();
  for (int i = 0; i < 20; ++i) filter.NewInput(i, -7.0);
  EXPECT_NEAR(filter.OutputValue(), -7.0, kTolerance);
}

TEST(FilterLPF2ndOrder, a_quarter_of_the_rate_with_damping_a_half_has_no_first_feedback) {
  // K = 1, Q = 1, D = 3: b = 1/3, 2/3, 1/3, a1 = 0, a2 = 1/3
  FilterLPF2ndOrder filter;
  filter.SetCharacteristics(1.0, 0.5);
  feed(filter, {{0.0, 0.0}, {0.25, 3.0}, {0.5, 6.0}});
  EXPECT_NEAR(filter.OutputValue(), 4.0, kTolerance);  // 6/3 + 2/3 3
  filter.NewInput(0.75, 9.0);
  EXPECT_NEAR(filter.OutputValue(), 23.0 / 3.0, kTolerance);  // 3 + 4 + 1 - 1/3 1
}

TEST(FilterLPF2ndOrder, the_rate_is_the_mean_of_the_two_steps) {
  // Steps of 1.004 and 0.996 make the same rate of 2 / 2 = 1 as two steps of 1.
  FilterLPF2ndOrder even = sixth();
  FilterLPF2ndOrder uneven = sixth();
  feed(even, {{0.0, 6.0}, {1.0, 12.0}, {2.0, 18.0}});
  feed(uneven, {{0.0, 6.0}, {0.996, 12.0}, {2.0, 18.0}});
  ASSERT_TRUE(uneven.OutputValid());
  EXPECT_NEAR(uneven.OutputValue(), even.OutputValue(), kTolerance);
}

TEST(FilterLPF2ndOrder, one_percent_of_jitter_keeps_it_from_starting) {
  FilterLPF2ndOrder late = sixth();
  feed(late, {{0.0, 1.0}, {1.0, 1.0}, {2.011, 1.0}});
  EXPECT_FALSE(late.OutputValid());
  FilterLPF2ndOrder early = sixth();
  feed(early, {{0.0, 1.0}, {1.0, 1.0}, {1.99, 1.0}});
  EXPECT_FALSE(early.OutputValid());
  FilterLPF2ndOrder close = sixth();
  feed(close, {{0.0, 1.0}, {1.0, 1.0}, {2.009, 1.0}});
  EXPECT_TRUE(close.OutputValid());
}

TEST(FilterLPF2ndOrder, starts_later_when_the_samples_become_even) {
  FilterLPF2ndOrder filter = sixth();
  feed(filter, {{0.0, 1.0}, {1.0, 1.0}, {3.0, 1.0}, {4.0, 1.0}});
  EXPECT_FALSE(filter.OutputValid());
  filter.NewInput(5.0, 1.0);
  EXPECT_TRUE(filter.OutputValid());
}

TEST(FilterLPF2ndOrder, needs_times_that_rise_and_are_not_negative) {
  for (const auto& [t0, t1, t2] : std::vector<std::array<double, 3>>{
           {1.0, 1.0, 2.0}, {0.0, 1.0, 1.0}, {2.0, 1.0, 0.0}, {-1.0, 0.0, 1.0}, {0.0, NAN, 2.0}}) {
    FilterLPF2ndOrder filter = sixth();
    feed(filter, {{t0, 1.0}, {t1, 1.0}, {t2, 1.0}});
    EXPECT_FALSE(filter.OutputValid()) << t0 << ' ' << t1 << ' ' << t2;
  }
}

TEST(FilterLPF2ndOrder, a_cutoff_at_half_the_rate_is_too_high) {
  FilterLPF2ndOrder at_half;
  at_half.SetCharacteristics(2.0, 0.7);
  feed(at_half, {{0.0, 1.0}, {0.25, 1.0}, {0.5, 1.0}});  // 4 Hz
  EXPECT_FALSE(at_half.OutputValid());
  FilterLPF2ndOrder below;
  below.SetCharacteristics(1.99, 0.7);
  feed(below, {{0.0, 1.0}, {0.25, 1.0}, {0.5, 1.0}});
  EXPECT_TRUE(below.OutputValid());
}

TEST(FilterLPF2ndOrder, once_valid_it_does_not_look_at_the_times) {
  FilterLPF2ndOrder filter = sixth();
  feed(filter, {{0.0, 6.0}, {1.0, 12.0}, {2.0, 18.0}, {-50.0, 0.0}});
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_NEAR(filter.OutputValue(), 115.0 / 9.0, kTolerance);
}

TEST(FilterLPF2ndOrder, is_not_valid_without_characteristics) {
  FilterLPF2ndOrder filter;
  feed(filter, {{0.0, 1.0}, {1.0, 1.0}, {2.0, 1.0}});
  EXPECT_FALSE(filter.OutputValid());
  for (const auto& [frequency, damping] : std::vector<std::pair<double, double>>{
           {0.0, 0.7}, {-1.0, 0.7}, {0.1, 0.0}, {0.1, -0.7}, {NAN, 0.7}, {0.1, NAN}}) {
    filter.SetCharacteristics(frequency, damping);
    EXPECT_FALSE(filter.OutputValid()) << frequency << ' ' << damping;
  }
  filter.SetCharacteristics(0.1, 0.7);
  EXPECT_TRUE(filter.OutputValid()) << "it starts at once from the samples it holds";
}

TEST(FilterLPF2ndOrder, the_same_characteristics_do_not_start_it_anew) {
  FilterLPF2ndOrder filter = sixth();
  feed(filter, {{0.0, 6.0}, {1.0, 12.0}, {2.0, 18.0}, {3.0, 0.0}});
  filter.SetCharacteristics(1.0 / 6.0, kSixthDamping);
  EXPECT_NEAR(filter.OutputValue(), 115.0 / 9.0, kTolerance);
}

TEST(FilterLPF2ndOrder, new_characteristics_start_it_anew_from_the_samples_held) {
  FilterLPF2ndOrder filter;
  filter.SetCharacteristics(0.1, 0.7);
  feed(filter, {{0.0, 100.0}, {1.0, 6.0}, {2.0, 12.0}, {3.0, 18.0}});
  filter.SetCharacteristics(1.0 / 6.0, kSixthDamping);
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_NEAR(filter.OutputValue(), 32.0 / 3.0, kTolerance) << "the sample before is forgotten";
}

TEST(FilterLPF2ndOrder, new_characteristics_that_do_not_suit_the_rate_end_it) {
  FilterLPF2ndOrder filter = sixth();
  feed(filter, {{0.0, 6.0}, {1.0, 12.0}, {2.0, 18.0}});
  filter.SetCharacteristics(0.5, kSixthDamping);
  EXPECT_FALSE(filter.OutputValid());
}

TEST(FilterLPF2ndOrder, new_characteristics_after_a_negative_time_leave_it_running) {
  FilterLPF2ndOrder filter = sixth();
  feed(filter, {{0.0, 6.0}, {1.0, 12.0}, {2.0, 18.0}, {-1.0, 0.0}});
  filter.SetCharacteristics(0.1, 0.7);
  ASSERT_TRUE(filter.OutputValid());
  filter.NewInput(5.0, 6.0);
  EXPECT_NEAR(filter.OutputValue(), 242.0 / 27.0, kTolerance) << "with the coefficients it had";
}

TEST(FilterLPF2ndOrder, a_reset_forgets_samples_and_characteristics) {
  FilterLPF2ndOrder filter = sixth();
  feed(filter, {{0.0, 6.0}, {1.0, 12.0}, {2.0, 18.0}});
  filter.Reset();
  EXPECT_FALSE(filter.OutputValid());
  EXPECT_EQ(filter.OutputValue(), 0.0);
  filter.SetCharacteristics(1.0 / 6.0, kSixthDamping);
  EXPECT_FALSE(filter.OutputValid()) << "no samples are held";
  filter.Reset();
  feed(filter, {{0.0, 6.0}, {1.0, 12.0}, {2.0, 18.0}});
  EXPECT_FALSE(filter.OutputValid()) << "no characteristics are held";
}

TEST(Differentiator, gives_the_slope_between_two_samples) {
  Differentiator filter;
  filter.NewInput(1.0, 10.0);
  EXPECT_FALSE(filter.OutputValid());
  filter.NewInput(1.5, 13.0);
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_EQ(filter.OutputValue(), 6.0);  // 3 / 0.5
  filter.NewInput(3.5, 12.0);
  EXPECT_EQ(filter.OutputValue(), -0.5);  // -1 / 2
}

TEST(Differentiator, needs_half_a_millisecond) {
  Differentiator filter;
  filter.NewInput(0.0005, 1.0);
  filter.NewInput(0.001, 2.0);  // twice the number, so the step is exact
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_NEAR(filter.OutputValue(), 2000.0, 1e-9);

  filter.NewInput(0.0014, 3.0);
  EXPECT_FALSE(filter.OutputValid());
}

TEST(Differentiator, two_samples_at_one_time_or_running_back_have_no_slope) {
  Differentiator filter;
  feed(filter, {{1.0, 1.0}, {1.0, 2.0}});
  EXPECT_FALSE(filter.OutputValid());
  filter.NewInput(0.5, 3.0);
  EXPECT_FALSE(filter.OutputValid());
  filter.NewInput(1.0, 4.0);
  EXPECT_TRUE(filter.OutputValid());
  filter.NewInput(NAN, 4.0);
  EXPECT_FALSE(filter.OutputValid());
}

TEST(Differentiator, both_times_must_be_above_zero) {
  Differentiator filter;
  feed(filter, {{0.0, 1.0}, {1.0, 2.0}});
  EXPECT_FALSE(filter.OutputValid());
  filter.NewInput(2.0, 3.0);
  EXPECT_TRUE(filter.OutputValid());
}

TEST(Differentiator, a_reset_forgets_the_sample_before) {
  Differentiator filter;
  feed(filter, {{1.0, 1.0}, {2.0, 2.0}});
  filter.Reset();
  EXPECT_FALSE(filter.OutputValid());
  EXPECT_EQ(filter.OutputValue(), 0.0);
  filter.NewInput(3.0, 3.0);
  EXPECT_FALSE(filter.OutputValid());
}

constexpr double kCutoff = 0.05;

FilterLPFNthOrder butterworth(unsigned char order) {
  FilterLPFNthOrder filter;
  filter.SetCharacteristics(Enum::FILTER_TYPE_BUTTERWORTH, order, kCutoff);
  return filter;
}

// Feeds samples of a ramp with a kink, once a second, and gives the last output.
template <class Filter>
double run(Filter& filter, int samples) {
  for (int i = 0; i < samples; ++i) filter.NewInput(i, i < 5 ? i : 10.0 - i);
  return filter.OutputValue();
}

// A filter of second order with the damping of entry k, told by the angle of its pole.
FilterLPF2ndOrder stage(int order, int k) {
  FilterLPF2ndOrder filter;
  filter.SetCharacteristics(kCutoff,
                            -std::cos((order + 2 * k - 1) * std::numbers::pi / (2.0 * order)));
  return filter;
}

TEST(FilterLPFNthOrder, order_4_is_its_second_stage_alone) {
  // Entry 0 is -cos(3 pi / 8) = -0.38, which is refused; entry 1 is -cos(5 pi / 8) = 0.38.
  FilterLPFNthOrder filter = butterworth(4);
  FilterLPF2ndOrder second;
  second.SetCharacteristics(kCutoff, 0.38268343236508977);
  const double expected = run(second, 12);
  EXPECT_NEAR(run(filter, 12), expected, 1e-9);
  EXPECT_TRUE(filter.OutputValid());
}

TEST(FilterLPFNthOrder, order_6_is_its_second_and_third_stage_in_a_row) {
  FilterLPFNthOrder filter = butterworth(6);
  FilterLPF2ndOrder second = stage(6, 1);  // -cos(7 pi / 12) = 0.26
  FilterLPF2ndOrder third = stage(6, 2);   // -cos(9 pi / 12) = 0.71
  for (int i = 0; i < 12; ++i) {
    const double value = i < 5 ? i : 10.0 - i;
    filter.NewInput(i, value);
    second.NewInput(i, value);
    third.NewInput(i, second.OutputValid() ? second.OutputValue() : value);
  }
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_NEAR(filter.OutputValue(), third.OutputValue(), kTolerance);
}

TEST(FilterLPFNthOrder, order_2_is_never_valid) {
  FilterLPFNthOrder filter = butterworth(2);
  for (int i = 0; i < 100; ++i) {
    filter.NewInput(i, i);
    EXPECT_FALSE(filter.OutputValid());
  }
}

TEST(FilterLPFNthOrder, is_valid_from_the_third_sample_on) {
  FilterLPFNthOrder filter = butterworth(4);
  feed(filter, {{0.0, 1.0}, {1.0, 1.0}});
  EXPECT_FALSE(filter.OutputValid());
  filter.NewInput(2.0, 1.0);
  EXPECT_TRUE(filter.OutputValid());
  EXPECT_NEAR(filter.OutputValue(), 1.0, kTolerance);
}

TEST(FilterLPFNthOrder, without_stages_it_is_not_valid) {
  FilterLPFNthOrder filter;
  run(filter, 5);
  EXPECT_FALSE(filter.OutputValid());
  EXPECT_EQ(filter.OutputValue(), -1.0);
}

TEST(FilterLPFNthOrder, characteristics_that_make_no_filter_change_nothing) {
  FilterLPFNthOrder filter = butterworth(4);
  const double before = run(filter, 12);
  filter.SetCharacteristics(Enum::FILTER_TYPE_BUTTERWORTH, 3, kCutoff);
  filter.SetCharacteristics(Enum::FILTER_TYPE_BUTTERWORTH, 0, kCutoff);
  filter.SetCharacteristics(Enum::FILTER_TYPE_BUTTERWORTH, 6, 0.0);
  filter.SetCharacteristics(Enum::FILTER_TYPE_BUTTERWORTH, 6, -1.0);
  filter.SetCharacteristics(Enum::FILTER_TYPE_BUTTERWORTH, 6, NAN);
  filter.SetCharacteristics(Enum::FILTER_TYPE_NONE, 6, kCutoff);
  filter.SetCharacteristics(Enum::FILTER_TYPE_UNKNOWN, 6, kCutoff);
  EXPECT_TRUE(filter.OutputValid());
  EXPECT_EQ(filter.OutputValue(), before);
}

TEST(FilterLPFNthOrder, the_same_characteristics_do_not_start_it_anew) {
  FilterLPFNthOrder filter = butterworth(4);
  run(filter, 12);
  filter.SetCharacteristics(Enum::FILTER_TYPE_BUTTERWORTH, 4, kCutoff);
  EXPECT_TRUE(filter.OutputValid());
}

TEST(FilterLPFNthOrder, each_new_characteristic_starts_it_anew) {
  FilterLPFNthOrder filter = butterworth(4);
  run(filter, 12);
  filter.SetCharacteristics(Enum::FILTER_TYPE_BUTTERWORTH, 6, kCutoff);
  EXPECT_FALSE(filter.OutputValid());
  run(filter, 12);
  EXPECT_TRUE(filter.OutputValid());
  filter.SetCharacteristics(Enum::FILTER_TYPE_BUTTERWORTH, 6, 2 * kCutoff);
  EXPECT_FALSE(filter.OutputValid());
}

TEST(FilterLPFNthOrder, a_type_without_dampings_leaves_it_empty) {
  FilterLPFNthOrder filter = butterworth(4);
  run(filter, 12);
  filter.SetCharacteristics(Enum::Cast_FILTER_TYPE(5), 4, kCutoff);
  run(filter, 12);
  EXPECT_FALSE(filter.OutputValid());
}

TEST(FilterLPFNthOrder, the_highest_order_works) {
  FilterLPFNthOrder filter = butterworth(254);
  for (int i = 0; i < 400; ++i) filter.NewInput(i, 2.0);
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_NEAR(filter.OutputValue(), 2.0, 1e-6);
}

TEST(FilterLPFNthOrder, a_reset_forgets_everything) {
  FilterLPFNthOrder filter = butterworth(4);
  run(filter, 12);
  filter.Reset();
  run(filter, 12);
  EXPECT_FALSE(filter.OutputValid());
  EXPECT_EQ(filter.OutputValue(), -1.0);
}

MovingAverager averager(double interval) {
  MovingAverager filter;
  filter.SetTimeInterval(interval);
  return filter;
}

TEST(MovingAverager, the_first_sample_gives_no_output) {
  MovingAverager filter = averager(1.0);
  filter.NewInput(0.0, 5.0);
  EXPECT_FALSE(filter.OutputValid());
}

TEST(MovingAverager, averages_what_it_has_before_the_window_is_full) {
  MovingAverager filter = averager(1.0);
  feed(filter, {{0.0, 1.0}, {0.25, 4.0}});
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_EQ(filter.OutputValue(), 2.5);  // (1 + 4) / 2
}

TEST(MovingAverager, drops_what_lies_more_than_half_a_step_before_the_window) {
  MovingAverager filter = averager(1.0);
  feed(filter, {{0.0, 100.0}, {0.25, 1.0}, {0.5, 2.0}, {0.75, 3.0}, {1.0, 4.0}});
  EXPECT_EQ(filter.OutputValue(), 22.0);  // the window starts at 0: 110 / 5
  filter.NewInput(1.25, 5.0);
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_EQ(filter.OutputValue(), 3.0);  // it starts at 0.25: 15 / 5
}

TEST(MovingAverager, keeps_what_lies_half_a_step_before_the_window) {
  MovingAverager filter = averager(0.875);
  feed(filter, {{0.0, 100.0}, {0.25, 1.0}, {0.5, 2.0}, {0.75, 3.0}, {1.0, 4.0}});
  EXPECT_EQ(filter.OutputValue(), 22.0);  // it starts at 0.125, half of 0.25 after the oldest
}

TEST(MovingAverager, the_step_is_that_of_the_first_two_samples) {
  MovingAverager filter = averager(1.0);
  feed(filter, {{0.0, 1.0}, {1.0, 3.0}, {1.25, 5.0}});
  // The window starts at 0.25 and the oldest lies 0.25 before, within half of the step of 1.
  EXPECT_EQ(filter.OutputValue(), 3.0);
}

TEST(MovingAverager, an_interval_of_nothing_passes_samples_through) {
  for (const double interval : {0.0, -0.5}) {
    MovingAverager filter = averager(interval);
    feed(filter, {{0.0, 1.0}, {1.0, 7.0}});
    ASSERT_TRUE(filter.OutputValid()) << interval;
    EXPECT_EQ(filter.OutputValue(), 7.0);
  }
}

TEST(MovingAverager, gives_nothing_until_an_interval_is_set_and_then_knows_what_came_before) {
  MovingAverager filter;
  feed(filter, {{0.0, 1.0}, {1.0, 2.0}, {2.0, 3.0}});
  EXPECT_FALSE(filter.OutputValid());
  filter.SetTimeInterval(2.0);
  EXPECT_FALSE(filter.OutputValid());
  filter.NewInput(3.0, 4.0);
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_EQ(filter.OutputValue(), 3.0);  // (2 + 3 + 4) / 3
  filter.SetTimeInterval(-1.0);
  filter.NewInput(4.0, 5.0);
  EXPECT_FALSE(filter.OutputValid());
}

TEST(MovingAverager, a_step_of_one_second_back_counts_as_no_step) {
  MovingAverager filter = averager(10.0);
  feed(filter, {{5.0, 1.0}, {4.0, 2.0}});
  EXPECT_FALSE(filter.OutputValid());
  filter.NewInput(6.0, 3.0);  // the step is found now: 6 - 5
  EXPECT_TRUE(filter.OutputValid());
}

TEST(MovingAverager, a_step_back_in_time_can_empty_the_window) {
  MovingAverager filter = averager(0.5);
  feed(filter, {{10.0, 1.0}, {8.0, 2.0}});
  // Half a step is -1. The window starts at 7.5, 2.5 before the oldest: both are kept.
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_EQ(filter.OutputValue(), 1.5);
  // It starts at 9.1. 9.1 - 10, 9.1 - 8 and 9.1 - 9.6 are all above -1.
  filter.NewInput(9.6, 3.0);
  EXPECT_FALSE(filter.OutputValid());
}

TEST(MovingAverager, a_gap_leaves_the_newest_sample_alone) {
  MovingAverager filter = averager(1.0);
  feed(filter, {{0.0, 1.0}, {0.25, 2.0}, {100.0, 9.0}});
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_EQ(filter.OutputValue(), 9.0);
}

TEST(MovingAverager, a_reset_forgets_samples_step_and_interval) {
  MovingAverager filter = averager(1.0);
  feed(filter, {{0.0, 1.0}, {0.25, 2.0}});
  filter.Reset();
  EXPECT_FALSE(filter.OutputValid());
  feed(filter, {{1.0, 1.0}, {1.25, 2.0}});
  EXPECT_FALSE(filter.OutputValid());
  filter.SetTimeInterval(1.0);
  filter.NewInput(1.5, 6.0);
  EXPECT_EQ(filter.OutputValue(), 3.0);  // (1 + 2 + 6) / 3
}

TEST(MovingAverager, what_is_not_finite_spoils_only_the_windows_it_is_in) {
  for (const double spoiled : {static_cast<double>(NAN), static_cast<double>(INFINITY)}) {
    MovingAverager filter = averager(1.0);
    feed(filter, {{0.0, 1.0}, {1.0, spoiled}});
    EXPECT_FALSE(std::isfinite(filter.OutputValue()));
    feed(filter, {{2.0, 3.0}, {3.0, 5.0}});
    EXPECT_EQ(filter.OutputValue(), 4.0);  // the window holds 2 and 3 s
  }
}

TEST(MovingAverager, samples_that_came_late_leave_the_window_with_those_ahead_of_them) {
  MovingAverager filter = averager(1.0);
  feed(filter, {{0.0, 1.0}, {0.25, 2.0}, {0.25, 6.0}, {0.125, 7.0}, {1.25, 4.0}});
  EXPECT_EQ(filter.OutputValue(), 4.75);  // the window starts at 0.25: (2 + 6 + 7 + 4) / 4
  filter.NewInput(1.5, 5.0);
  EXPECT_EQ(filter.OutputValue(), 4.5);  // it starts at 0.5, 0.25 after three of them
}

TEST(MovingAverager, a_clock_that_stands_still_or_goes_to_and_fro_keeps_a_handful) {
  for (const double back : {0.0, 0.25, 100.0}) {
    MovingAverager filter = averager(16777.0);
    for (int i = 0; i < 10000; ++i) filter.NewInput(500.0 - (i % 2) * back, i);
    EXPECT_LE(MovingAveragerPeer::kept(filter), 2U) << back;
    ASSERT_TRUE(filter.OutputValid());
    EXPECT_EQ(filter.OutputValue(), 4999.5);  // the mean of 0 to 9999
  }
}

TEST(MovingAverager, agrees_with_one_that_keeps_every_sample_whatever_the_clock_does) {
  constexpr unsigned int kSeed = 20240613;
  SCOPED_TRACE(kSeed);
  constexpr double kInterval = 4.0;
  std::mt19937 random(kSeed);
  MovingAverager filter = averager(kInterval);
  std::deque<std::pair<double, double>> plain;
  double time = 1000.0;
  double step = 0.0;
  for (int i = 0; i < 20000; ++i) {
    // Steps of an eighth: mostly ahead, often none, sometimes far back.
    time += i == 1 ? 0.125 : (static_cast<int>(random() % 5) - 1) * (random() % 50 ? 0.125 : -1.0);
    const double value = static_cast<int>(random() % 1001) - 500;
    filter.NewInput(time, value);
    if (i == 1) step = time - plain.front().first;
    plain.emplace_back(time, value);
    if (i < 1) continue;
    while (!plain.empty() && time - kInterval - plain.front().first > step / 2) plain.pop_front();
    ASSERT_EQ(filter.OutputValid(), !plain.empty()) << i;
    double sum = 0.0;  // of whole numbers, so exact
    for (const auto& sample : plain) sum += sample.second;
    ASSERT_EQ(filter.OutputValue(), sum / static_cast<double>(plain.size())) << i;
  }
}

TEST(MovingAverager, agrees_with_a_plain_mean_however_long_it_runs) {
  constexpr unsigned int kSeed = 20240611;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  MovingAverager filter = averager(0.5);
  std::vector<double> values;
  for (int i = 0; i < 20000; ++i) {
    // Now and then a sample that dwarfs the others.
    values.push_back(uniform(random) * (i % 1000 == 0 ? 1e12 : 1.0));
    filter.NewInput(i / 64.0, values.back());
    if (i < 1) continue;
    double sum = 0.0;
    const int first = std::max(0, i - 32);  // 0.5 s are 32 steps
    for (int k = first; k <= i; ++k) sum += values[static_cast<std::size_t>(k)];
    const double mean = sum / (i - first + 1);
    const bool dwarfed = i % 1000 <= 32;
    ASSERT_NEAR(filter.OutputValue(), mean, dwarfed ? 1e-3 : 1e-12) << i;
  }
}

}  // namespace
}  // namespace Trel::Nav::Test
