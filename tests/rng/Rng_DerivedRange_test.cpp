#include <gtest/gtest.h>

#include <string>

#include "Rng_Scene.h"

namespace Trel::Rng::Test {
namespace {

// Numbers as they stand in a packet: millimetres, hundredths of m/s and of m/s^2.
struct Motion {
  int lon = 0;
  int lat = 0;
  short rate_lon = 0;
  short rate_lat = 0;
  short acc_lon = 0;
  short acc_lat = 0;
  short forward = 0;
};

RangePacket range(const Motion& m) {
  return RangePacket(2)
      .target(1, 1)
      .i32(8, m.lat)
      .i32(12, m.lon)
      .i16(16, m.rate_lat)
      .i16(18, m.rate_lon)
      .i16(50, m.forward)
      .i16(54, m.acc_lat)
      .i16(56, m.acc_lon);
}

constexpr int kNone = INT32_MIN;
constexpr short kNoneShort = INT16_MIN;

TEST(DerivedRange, the_resultant_is_the_length_and_the_angle_turns_right) {
  Scene scene;
  scene.take(range({.lon = 4000, .lat = 3000}));
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeRes"), 5.0);
  EXPECT_NEAR(scene.number("Target1_RangeAngle"), 36.869897645844, 1e-9);  // atan(3/4)
  scene.take(range({.lon = 0, .lat = -2000}));
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeRes"), 2.0);
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeAngle"), -90.0);
  scene.take(range({.lon = -1000, .lat = 0}));
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeAngle"), 180.0);
}

TEST(DerivedRange, a_component_that_is_not_known_leaves_no_resultant) {
  for (const Motion& m : {Motion{.lon = kNone, .lat = 1}, Motion{.lon = 1, .lat = kNone},
                          Motion{.lon = kNone, .lat = INT32_MAX}}) {
    Scene scene;
    scene.take(range(m));
    EXPECT_EQ(scene.flags("Target1_RangeRes"), kInvalid);
    EXPECT_EQ(scene.flags("Target1_RangeAngle"), kInvalid);
    EXPECT_EQ(scene.flags("Target1_RangeRateRes"), kInvalid);
  }
}

TEST(DerivedRange, a_component_beyond_its_field_makes_the_resultant_the_largest) {
  for (const Motion& m :
       {Motion{.lon = INT32_MAX, .lat = 1}, Motion{.lon = -INT32_MAX, .lat = 1},
        Motion{.lon = 1, .lat = INT32_MAX}, Motion{.lon = 1, .lat = -INT32_MAX}}) {
    Scene scene;
    scene.take(range(m));
    EXPECT_EQ(scene.flags("Target1_RangeRes"), kOver);
    EXPECT_DOUBLE_EQ(scene.value("Target1_RangeRes").number, 2147483.647);
    EXPECT_EQ(scene.flags("Target1_RangeAngle"), kOver | kUnder);
    EXPECT_EQ(scene.value("Target1_RangeAngle").number, 0.0);
    EXPECT_EQ(scene.value("Target1_RangeAngle").nano, kNow);
    EXPECT_EQ(scene.flags("Target1_RangeRateRes"), kInvalid);
  }
}

TEST(DerivedRange, a_lateral_range_of_the_old_form_beyond_its_field_does_so_too) {
  Scene scene;
  scene.take(RangePacket(0).i16(6, 32767).i32(8, 1000));
  EXPECT_EQ(scene.flags("Target1_RangeLat"), kOver);
  EXPECT_EQ(scene.flags("Target1_RangeRes"), kOver);
  EXPECT_DOUBLE_EQ(scene.value("Target1_RangeRes").number, 2147483.647);
}

TEST(DerivedRange, the_rate_is_that_along_the_range) {
  Scene scene;
  // (4 * -1 + 3 * 2) / 5
  scene.take(range({.lon = 4000, .lat = 3000, .rate_lon = -100, .rate_lat = 200}));
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeRateRes"), 0.4);
  // without a range, the length of the rate
  scene.take(range({.rate_lon = -300, .rate_lat = 400}));
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeRateRes"), 5.0);
  scene.take(range({.lon = 4000, .lat = 3000, .rate_lon = kNoneShort, .rate_lat = 200}));
  EXPECT_EQ(scene.flags("Target1_RangeRateRes"), kInvalid);
  scene.take(range({.lon = 4000, .lat = 3000, .rate_lon = 1, .rate_lat = 32767}));
  EXPECT_EQ(scene.flags("Target1_RangeRateRes"), kInvalid);
}

TEST(DerivedRange, the_acceleration_is_the_change_of_that_rate) {
  Scene scene;
  // straight ahead: 10 m, closing at 2 m/s, drifting at 3 m/s: a = (4 + 9 + 10 * 1 - 4) / 10
  scene.take(range({.lon = 10000, .rate_lon = -200, .rate_lat = 300, .acc_lon = 100}));
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeAccRes"), 1.9);
  // 3-4-5: rate 0.4 as above; (1 + 4 + 4 * 0.5 - 3 * 0.25 - 0.16) / 5
  scene.take(range({.lon = 4000,
                    .lat = 3000,
                    .rate_lon = -100,
                    .rate_lat = 200,
                    .acc_lon = 50,
                    .acc_lat = -25}));
  EXPECT_NEAR(scene.number("Target1_RangeAccRes"), 6.09 / 5, 1e-12);
  scene.take(range({.rate_lon = 100, .acc_lon = 300, .acc_lat = -400}));
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeAccRes"), 5.0);
  scene.take(range({.lon = 4000, .lat = 3000, .acc_lon = 50, .acc_lat = kNoneShort}));
  EXPECT_EQ(scene.flags("Target1_RangeAccRes"), kInvalid);
  scene.take(range({.lon = 4000, .lat = 3000, .acc_lon = kNoneShort, .acc_lat = 50}));
  EXPECT_EQ(scene.flags("Target1_RangeAccRes"), kInvalid);
  scene.take(range({.lon = 4000, .lat = 3000, .rate_lat = kNoneShort, .acc_lon = 50}));
  EXPECT_EQ(scene.flags("Target1_RangeAccRes"), kInvalid);
}

TEST(DerivedRange, the_acceleration_agrees_with_a_difference_of_rates) {
  // Positions a hundredth of a second apart, of a target that moves with constant acceleration.
  const auto rate_at = [](double t) {
    const double lon = 30 - 4 * t + 0.5 * t * t;
    const double lat = 8 + 3 * t - 0.25 * t * t;
    const double rate_lon = -4 + t;
    const double rate_lat = 3 - 0.5 * t;
    return (lon * rate_lon + lat * rate_lat) / std::hypot(lon, lat);
  };
  Scene scene;
  scene.take(range({.lon = 30000,
                    .lat = 8000,
                    .rate_lon = -400,
                    .rate_lat = 300,
                    .acc_lon = 100,
                    .acc_lat = -50}));
  EXPECT_NEAR(scene.number("Target1_RangeAccRes"), (rate_at(1e-4) - rate_at(-1e-4)) / 2e-4, 1e-6);
}

TEST(DerivedRange, the_time_to_impact_is_range_over_closing_rate) {
  Scene scene;
  scene.take(range({.lon = 30000, .lat = 2000, .rate_lon = -600, .rate_lat = 50}));
  EXPECT_DOUBLE_EQ(scene.number("Target1_TimeToImpactLon"), 5.0);
  EXPECT_DOUBLE_EQ(scene.number("Target1_TimeToImpactLat"), -4.0);
}

TEST(DerivedRange, a_rate_below_the_least_speed_has_no_time_to_impact) {
  Scene scene;
  scene.take(range({.lon = 1000, .lat = 1000, .rate_lon = -10, .rate_lat = 5}));
  EXPECT_DOUBLE_EQ(scene.number("Target1_TimeToImpactLon"), 10.0);
  EXPECT_EQ(scene.flags("Target1_TimeToImpactLat"), kInvalid);
  scene.take(range({.lon = 1000, .lat = 1000, .rate_lon = 9, .rate_lat = -9}));
  EXPECT_EQ(scene.flags("Target1_TimeToImpactLon"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_TimeToImpactLat"), kInvalid);
}

TEST(DerivedRange, a_time_to_impact_needs_good_values) {
  Scene scene;
  scene.take(range({.lon = INT32_MAX, .lat = 1000, .rate_lon = -600, .rate_lat = -32767}));
  EXPECT_EQ(scene.flags("Target1_TimeToImpactLon"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_TimeToImpactLat"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_TimeToImpactwALon"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_TimeToImpactwALat"), kInvalid);
}

// Both axes, which have the same rule.
struct Impact {
  int range;
  short rate;
  short acc;
};
void expect_impact(const Impact& impact, double seconds) {
  SCOPED_TRACE(testing::Message() << impact.range << ", " << impact.rate << ", " << impact.acc);
  Scene scene;
  scene.take(range({.lon = impact.range, .rate_lon = impact.rate, .acc_lon = impact.acc}));
  EXPECT_NEAR(scene.number("Target1_TimeToImpactwALon"), seconds, 1e-9 * std::abs(seconds));
  scene.take(range({.lat = impact.range, .rate_lat = impact.rate, .acc_lat = impact.acc}));
  EXPECT_NEAR(scene.number("Target1_TimeToImpactwALat"), seconds, 1e-9 * std::abs(seconds));
}
void expect_no_impact(const Impact& impact) {
  SCOPED_TRACE(testing::Message() << impact.range << ", " << impact.rate << ", " << impact.acc);
  Scene scene;
  scene.take(range({.lon = impact.range, .rate_lon = impact.rate, .acc_lon = impact.acc}));
  EXPECT_EQ(scene.flags("Target1_TimeToImpactwALon"), kInvalid);
  scene.take(range({.lat = impact.range, .rate_lat = impact.rate, .acc_lat = impact.acc}));
  EXPECT_EQ(scene.flags("Target1_TimeToImpactwALat"), kInvalid);
}

TEST(DerivedRange, with_acceleration_it_is_the_first_time_at_which_the_range_is_0) {
  // 12 - 8 t + t^2 = (t - 2) (t - 6)
  expect_impact({12000, -800, 200}, 2.0);
  // 12 - 4 t - t^2 = (2 - t) (6 + t)
  expect_impact({12000, -400, -200}, 2.0);
  // 12 + 4 t - t^2 = (6 - t) (2 + t)
  expect_impact({12000, 400, -200}, 6.0);
  // the same from the other side
  expect_impact({-12000, 800, -200}, 2.0);
  expect_impact({-12000, -400, 200}, 6.0);
  // 8 - 4 t + t^2 / 2 touches 0 once, at 4
  expect_impact({8000, -400, 100}, 4.0);
  // from rest: 2 - t^2 = 0
  expect_impact({2000, 0, -200}, std::sqrt(2.0));
  // from the same place: -4 t + t^2 = 0 for the second time
  expect_impact({0, -400, 200}, 4.0);
}

TEST(DerivedRange, with_acceleration_there_may_be_no_impact) {
  expect_no_impact({8000, -300, 100});  // 9 - 2 * 8 < 0
  expect_no_impact({12000, 800, 200});  // (t + 2) (t + 6): both times are past
  expect_no_impact({2000, 0, 200});
  expect_no_impact({0, 0, 200});  // now, but not at any later time
  // As 2000 and -400, which meet, but for the flags.
  expect_impact({2000, -400, 200}, 2 - std::sqrt(2.0));
  expect_no_impact({kNone, -400, 200});
  expect_no_impact({-INT32_MAX, -400, 200});
  expect_no_impact({INT32_MAX, -400, -200});
  expect_no_impact({2000, kNoneShort, -200});
  expect_no_impact({2000, -32767, 200});
}

TEST(DerivedRange, below_the_least_acceleration_the_rate_alone_counts) {
  expect_impact({10000, -500, 4}, 2.0);
  expect_impact({10000, -500, -4}, 2.0);
  expect_impact({10000, 500, 0}, -2.0);
  expect_no_impact({10000, -9, 4});
  // at it, 10 - 5 t + 0.025 t^2 = 0: t = (5 - sqrt(25 - 1)) / 0.05
  expect_impact({10000, -500, 5}, (5 - std::sqrt(24.0)) / 0.05);
  expect_impact({10000, -500, -5}, (std::sqrt(26.0) - 5) / 0.05);
}

TEST(DerivedRange, an_acceleration_that_is_not_known_leaves_no_time_with_it) {
  Scene scene;
  scene.take(range({.lon = 1000,
                    .lat = 1000,
                    .rate_lon = -500,
                    .rate_lat = -500,
                    .acc_lon = kNoneShort,
                    .acc_lat = 32767}));
  EXPECT_EQ(scene.flags("Target1_TimeToImpactLon"), kGood);
  EXPECT_EQ(scene.flags("Target1_TimeToImpactwALon"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_TimeToImpactwALat"), kInvalid);
}

TEST(DerivedRange, the_gap_is_the_longitudinal_range_at_the_hunters_forward_speed) {
  Scene scene;
  scene.take(range({.lon = 30000, .forward = 1500}));
  EXPECT_DOUBLE_EQ(scene.number("Target1_TimeGapForward"), 2.0);
  scene.take(range({.lon = 1000, .forward = 10}));
  EXPECT_DOUBLE_EQ(scene.number("Target1_TimeGapForward"), 10.0);
  scene.take(range({.lon = 1000, .forward = 9}));
  EXPECT_EQ(scene.flags("Target1_TimeGapForward"), kInvalid);
  scene.take(range({.lon = 1000, .forward = -1500}));
  EXPECT_EQ(scene.flags("Target1_TimeGapForward"), kInvalid);
  scene.take(range({.lon = kNone, .forward = 1500}));
  EXPECT_EQ(scene.flags("Target1_TimeGapForward"), kInvalid);
  scene.take(range({.lon = 1000, .forward = 32767}));
  EXPECT_EQ(scene.flags("Target1_TimeGapForward"), kInvalid);
}

TEST(DerivedRange, the_old_form_has_resultants_and_times_to_impact) {
  Scene scene;
  scene.take(RangePacket(0).i16(6, 3000).i32(8, 4000).i16(12, 200).i16(14, -100));
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeRes"), 5.0);
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeRateRes"), 0.4);
  EXPECT_DOUBLE_EQ(scene.number("Target1_TimeToImpactLon"), 4.0);
  EXPECT_DOUBLE_EQ(scene.number("Target1_TimeToImpactLat"), -1.5);
  EXPECT_EQ(scene.flags("Target1_TimeToImpactwALon"), kInvalid);
}

}  // namespace
}  // namespace Trel::Rng::Test
