#include "nav/Nav_Prescan.h"

#include <gtest/gtest.h>

#include <limits>

namespace Trel::Nav {
namespace {

constexpr long long kPeriod = 10'000'000;

Prescan fresh(bool prescanning = false) {
  Prescan prescan;
  prescan.Invalidate(prescanning);
  return prescan;
}

// As after so many packets without a time and one with.
Prescan counted(int untimed) {
  Prescan prescan = fresh();
  for (int packet = 0; packet <= untimed; ++packet) {
    prescan.incrCounter();
    prescan.incrInitCounter();
  }
  return prescan;
}

TEST(Prescan, begins_undecided_or_prescanning) {
  EXPECT_EQ(fresh(false).state, Prescan::kUndecided);
  EXPECT_FALSE(fresh(false).active);
  EXPECT_EQ(fresh(true).state, Prescan::kPrescanning);
  EXPECT_TRUE(fresh(true).active);
}

TEST(Prescan, the_packet_that_turns_out_to_have_a_time_is_not_predicted) {
  Prescan prescan = counted(3);
  prescan.undoCounter();
  EXPECT_EQ(prescan.get_counter(), 3U);
}

TEST(Prescan, counting_down_reports_the_last_packet) {
  Prescan prescan = counted(2);
  prescan.undoCounter();
  EXPECT_FALSE(prescan.decrCounter());
  EXPECT_TRUE(prescan.decrCounter());
}

TEST(Prescan, a_rewind_restores_the_count_that_was_noted) {
  Prescan prescan = counted(2);
  prescan.undoCounter();
  (void)prescan.decrCounter();
  prescan.initCounter();
  EXPECT_EQ(prescan.get_counter(), 2U);
}

TEST(Prescan, the_prediction_is_the_period_times_the_count) {
  Prescan prescan = counted(3);
  prescan.undoCounter();
  prescan.period = kPeriod;
  EXPECT_EQ(prescan.timePrediction(), 3 * kPeriod);
  EXPECT_EQ(prescan.timePredictionInit(), 4 * kPeriod);  // it counts the packet at hand
}

TEST(Prescan, a_prediction_beyond_the_range_of_times_wraps) {
  Prescan prescan = counted(2);
  prescan.period = std::numeric_limits<long long>::max();
  EXPECT_EQ(prescan.timePredictionInit(), std::numeric_limits<long long>::max() - 2);
}

TEST(Prescan, a_first_time_without_a_period_gives_that_time_alone) {
  Prescan prescan = counted(3);
  NanoOff offsets;
  EXPECT_TRUE(prescan.learn_offsets(offsets, 5'000'000'000, Enum::NAVIGATION_STATUS_LOCKED));
  EXPECT_EQ(offsets.get_first2gps(), 5'000'000'000);
  EXPECT_TRUE(offsets.inv_start2gps() && offsets.inv_origin2gps() && offsets.inv_init2gps());
}

TEST(Prescan, the_start_follows_from_the_first_time_once_the_period_is_known) {
  Prescan prescan = counted(3);
  NanoOff offsets;
  (void)prescan.learn_offsets(offsets, 5'000'000'000, Enum::NAVIGATION_STATUS_INIT);
  prescan.period = kPeriod;
  EXPECT_FALSE(prescan.learn_offsets(offsets, 5'010'000'000, Enum::NAVIGATION_STATUS_INIT));
  EXPECT_EQ(offsets.get_first2gps(), 5'000'000'000);
  EXPECT_EQ(offsets.get_start2gps(), 4'970'000'000);
  EXPECT_EQ(offsets.get_origin2gps(), 4'000'000'000);
  EXPECT_TRUE(offsets.inv_init2gps());  // not in status 2
}

TEST(Prescan, the_init_offset_counts_the_packet_at_hand) {
  Prescan prescan = counted(3);
  prescan.period = kPeriod;
  NanoOff offsets;
  (void)prescan.learn_offsets(offsets, 5'000'000'000, Enum::NAVIGATION_STATUS_LOCKING);
  EXPECT_EQ(offsets.get_init2gps(), 5'000'000'000 - 4 * kPeriod);
}

TEST(Prescan, the_whole_second_of_the_start_is_biased_by_a_negative_period) {
  Prescan prescan = counted(3);
  prescan.period = -kPeriod;
  NanoOff offsets;
  (void)prescan.learn_offsets(offsets, 4'970'000'001, Enum::NAVIGATION_STATUS_INIT);
  EXPECT_EQ(offsets.get_start2gps(), 5'000'000'001);
  EXPECT_EQ(offsets.get_origin2gps(), 6'000'000'000);  // 5.000000001 s + 0.999999999 s
}

TEST(Prescan, is_complete_only_with_everything_known) {
  Prescan complete = fresh(true);
  complete.offsets.set_init2gps(1);
  complete.start_known = complete.utc_known = complete.features_known = true;
  for (Prescan::Sample* sample :
       {&complete.position, &complete.velocity, &complete.attitude, &complete.mounting}) {
    EXPECT_FALSE(complete.complete());
    sample->known = true;
  }
  EXPECT_TRUE(complete.complete());

  for (bool Prescan::*known :
       {&Prescan::start_known, &Prescan::utc_known, &Prescan::features_known}) {
    Prescan lacking = complete;
    lacking.*known = false;
    EXPECT_FALSE(lacking.complete());
  }
  complete.offsets.Invalidate();
  EXPECT_FALSE(complete.complete());
}

TEST(Prescan, waits_for_the_features_1_and_27) {
  Prescan prescan = fresh(true);
  EXPECT_EQ(prescan.feature_list, (std::vector<unsigned short>{1, 27}));
  prescan.setFeatureCode(1, {.known = true});
  EXPECT_FALSE(prescan.features_known);
  prescan.setFeatureCode(27, {.known = true});
  EXPECT_TRUE(prescan.features_known);
}

TEST(Prescan, a_sample_keeps_the_first_that_was_found) {
  Prescan::Sample sample;
  sample.keep(false, {1, 2, 3});
  EXPECT_FALSE(sample.known);
  sample.keep(true, {4, 5, 6});
  sample.keep(true, {7, 8, 9});
  EXPECT_EQ(sample.value, (std::array<double, 3>{4, 5, 6}));
}

TEST(Prescan, forgets_what_it_has_learned_on_invalidation) {
  Prescan prescan = counted(3);
  prescan.period = kPeriod;
  prescan.utc_known = prescan.start_known = true;
  prescan.setFeatureCode(1, {.known = true});
  prescan.setFeatureCode(27, {.known = true});
  prescan.position.keep(true, {1, 2, 3});
  prescan.Invalidate(true);
  EXPECT_EQ(prescan.get_counter(), 0U);
  EXPECT_EQ(prescan.period, kNoPeriod);
  EXPECT_FALSE(prescan.utc_known || prescan.start_known || prescan.features_known ||
               prescan.position.known || prescan.features[1].known);
}

TEST(PrescanDeathTest, the_counters_must_be_called_in_their_order) {
  EXPECT_DEATH(fresh().undoCounter(), "Test : check == 3\nFile : nav/Nav_NComRx");
  EXPECT_DEATH((void)fresh().decrCounter(),
               "Test : check == 2 \\|\\| check == 4 \\|\\| check == 5\nFile : nav/Nav_NComRx");
  EXPECT_DEATH(
      {
        Prescan prescan = counted(1);
        prescan.undoCounter();
        prescan.incrCounter();
      },
      "Test : check == 0 \\|\\| check == 1 \\|\\| check == 2 \\|\\| check == 3\n"
      "File : nav/Nav_NComRx");
}

TEST(NavStatus, maps_to_regular_extra_or_empty_in_a_first_pass) {
  for (int status = 0; status <= 23; ++status) {
    const auto type =
        nav_status_to_output_packet_type(static_cast<Enum::NAVIGATION_STATUS>(status));
    const auto expected = status >= 1 && status <= 4 ? Enum::NAV_OUTPUT_PACKET_TYPE_REGULAR
                          : status == 11             ? Enum::NAV_OUTPUT_PACKET_TYPE_EXTRA
                                                     : Enum::NAV_OUTPUT_PACKET_TYPE_EMPTY;
    EXPECT_EQ(type, expected) << status;
  }
}

}  // namespace
}  // namespace Trel::Nav
