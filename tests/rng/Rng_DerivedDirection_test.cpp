#include <gtest/gtest.h>

#include "Rng_DerivedScene.h"

namespace Trel::Rng::Test {
namespace {

TEST(DerivedDirection, a_direction_is_the_heading_from_axis_x_within_a_turn) {
  Scene scene;
  reference(scene, 30).take(placed({.heading = 120}, {.heading = 10}));
  EXPECT_NEAR(scene.number("Hunter_LocalAngle"), 90.0, kNear);
  EXPECT_NEAR(scene.number("Target1_LocalAngle"), 340.0, kNear);
  reference(scene, 0).take(placed({.heading = 359.99}, {.heading = 0}));
  EXPECT_NEAR(scene.number("Hunter_LocalAngle"), 359.99, kNear);
  EXPECT_NEAR(scene.number("Target1_LocalAngle"), 0.0, kNear);
}

TEST(DerivedDirection, a_heading_that_is_out_of_range_is_reduced_too) {
  Scene scene;
  reference(scene, 0).take(RangePacket(2).target(1, 1).u16(36, 65533).u16(38, 36000));
  EXPECT_NEAR(scene.number("Hunter_LocalAngle"), 655.33 - 360.0, 1e-8);
  EXPECT_LT(scene.number("Target1_LocalAngle"), 360.0);
  EXPECT_GE(scene.number("Target1_LocalAngle"), 0.0);
  reference(scene, 429.0).take(placed({.heading = 1}, {.heading = 1}));
  EXPECT_NEAR(scene.number("Hunter_LocalAngle"), 1.0 - 429.0 + 720.0, kNear);
}

TEST(DerivedDirection, an_angle_just_below_0_does_not_round_to_a_whole_turn) {
  Scene scene;
  reference(scene, 1e-15).take(placed({}, {}));
  EXPECT_LT(scene.number("Hunter_LocalAngle"), 360.0);
  EXPECT_GE(scene.number("Hunter_LocalAngle"), 0.0);
}

TEST(DerivedDirection, without_the_reference_or_the_heading_there_is_none) {
  Scene scene;
  scene.take(placed({.heading = 120}, {.heading = 10}));
  EXPECT_EQ(scene.flags("Hunter_LocalAngle"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_LocalAngle"), kInvalid);
  reference(scene, 30).take(RangePacket(2).target(1, 1).u16(36, 65535).u16(38, 65534));
  EXPECT_EQ(scene.flags("Hunter_LocalAngle"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_LocalAngle"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_RelHeadingDiff"), kInvalid);
}

TEST(DerivedDirection, the_difference_of_headings_is_the_targets_less_the_hunters) {
  Scene scene;
  const auto difference = [&](double hunter, double target) {
    scene.take(placed({.heading = hunter}, {.heading = target}));
    return scene.number("Target1_RelHeadingDiff");
  };
  EXPECT_NEAR(difference(30, 90), 60.0, kNear);
  EXPECT_NEAR(difference(350, 10), 20.0, kNear);
  EXPECT_NEAR(difference(10, 350), -20.0, kNear);
  EXPECT_NEAR(difference(0, 179), 179.0, kNear);
  EXPECT_NEAR(difference(0, 181), -179.0, kNear);
  EXPECT_NEAR(difference(181, 0), 179.0, kNear);
}

// The hunter at (10, 20) looks along `heading`; the range is 5 m ahead and 2 m to the right.
RangePacket measured(double heading) {
  return placed({.heading = heading}, {}).i32(8, 2000).i32(12, 5000).i32(20, 10000).i32(24, 20000);
}

TEST(DerivedDirection, the_ends_of_the_ranges_lie_ahead_and_to_the_right_of_the_hunter) {
  Scene scene;
  // looking along Y: ahead is +Y, right is -X
  reference(scene, 0).take(measured(90));
  EXPECT_NEAR(scene.number("Target1_HunterLonPosX"), 10.0, kNear);
  EXPECT_NEAR(scene.number("Target1_HunterLonPosY"), 25.0, kNear);
  EXPECT_NEAR(scene.number("Target1_HunterLatPosX"), 8.0, kNear);
  EXPECT_NEAR(scene.number("Target1_HunterLatPosY"), 20.0, kNear);
  // 30 degrees to the right of X
  reference(scene, 40).take(measured(70));
  EXPECT_NEAR(scene.number("Target1_HunterLonPosX"), 10 + 5 * cosine(30), kNear);
  EXPECT_NEAR(scene.number("Target1_HunterLonPosY"), 20 + 5 * sine(30), kNear);
  EXPECT_NEAR(scene.number("Target1_HunterLatPosX"), 10 - 2 * sine(30), kNear);
  EXPECT_NEAR(scene.number("Target1_HunterLatPosY"), 20 + 2 * cosine(30), kNear);
}

TEST(DerivedDirection, ranges_are_level_however_the_vehicles_lean) {
  Scene scene;
  const Pose hunter{.heading = 70, .pitch = 25, .roll = -40};
  const Pose target{.heading = 160, .pitch = -15, .roll = 35};
  RangePacket packet = placed(hunter, target).i32(8, 2000).i32(12, 5000);
  reference(scene, 40).take(packet.i32(20, 10000).i32(24, 20000).i32(28, 7000).i32(32, 16000));
  EXPECT_NEAR(scene.number("Target1_HunterLonPosX"), 10 + 5 * cosine(30), kNear);
  EXPECT_NEAR(scene.number("Target1_HunterLonPosY"), 20 + 5 * sine(30), kNear);
  EXPECT_NEAR(scene.number("Target1_HunterLatPosX"), 10 - 2 * sine(30), kNear);
  EXPECT_NEAR(scene.number("Target1_HunterLatPosY"), 20 + 2 * cosine(30), kNear);
  // The target looks 120 degrees to the right of X; the hunter is 3 m from it along X, 4 along Y.
  EXPECT_NEAR(scene.number("Target1_HunterRelLatDist"), 4 * cosine(120) - 3 * sine(120), kNear);
  EXPECT_NEAR(scene.number("Target1_RelHeadingDiff"), 90.0, kNear);
  EXPECT_NEAR(scene.number("Hunter_LocalAngle"), 30.0, kNear);
}

TEST(DerivedDirection, an_end_needs_its_range_and_the_hunters_place) {
  Scene scene;
  reference(scene, 0).take(measured(90).i32(12, INT32_MIN));
  EXPECT_EQ(scene.flags("Target1_HunterLonPosX"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_HunterLonPosY"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_HunterLatPosX"), kGood);
  scene.take(measured(90).i32(8, INT32_MAX));
  EXPECT_EQ(scene.flags("Target1_HunterLonPosX"), kGood);
  EXPECT_EQ(scene.flags("Target1_HunterLatPosX"), kInvalid);
  scene.take(measured(90).i32(24, INT32_MIN));
  EXPECT_EQ(scene.flags("Target1_HunterLonPosX"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_HunterLatPosY"), kInvalid);
  scene.main().Inv_Hunter_RefHeading();
  scene.take(measured(90));
  EXPECT_EQ(scene.flags("Target1_HunterLonPosX"), kInvalid);
}

// The hunter at (10, 20), the target at (7, 16), looking along `heading`.
RangePacket followed(double heading) {
  return placed({}, {.heading = heading})
      .i32(20, 10000)
      .i32(24, 20000)
      .i32(28, 7000)
      .i32(32, 16000);
}

TEST(DerivedDirection, the_lateral_distance_is_the_hunters_to_the_right_of_the_targets_line) {
  Scene scene;
  // along X: Y is to the right
  reference(scene, 0).take(followed(0));
  EXPECT_NEAR(scene.number("Target1_HunterRelLatDist"), 4.0, kNear);
  // along Y: X is to the left
  scene.take(followed(90));
  EXPECT_NEAR(scene.number("Target1_HunterRelLatDist"), -3.0, kNear);
  scene.take(followed(30));
  EXPECT_NEAR(scene.number("Target1_HunterRelLatDist"), 4 * cosine(30) - 3 * sine(30), kNear);
}

TEST(DerivedDirection, the_lateral_distance_needs_both_places_and_the_targets_direction) {
  for (const unsigned int at : {20, 24, 28, 32}) {
    Scene scene;
    reference(scene, 0).take(followed(0).i32(at, INT32_MIN));
    EXPECT_EQ(scene.flags("Target1_HunterRelLatDist"), kInvalid) << at;
  }
  Scene scene;
  reference(scene, 0).take(followed(0).u16(38, 65535));
  EXPECT_EQ(scene.flags("Target1_HunterRelLatDist"), kInvalid);
}

TEST(DerivedDirection, the_old_form_has_directions) {
  Scene scene;
  reference(scene, 30).take(RangePacket(0).u16(32, 12000).u16(34, 1000).i32(8, 5000));
  EXPECT_NEAR(scene.number("Hunter_LocalAngle"), 90.0, kNear);
  EXPECT_NEAR(scene.number("Target1_LocalAngle"), 340.0, kNear);
  EXPECT_NEAR(scene.number("Target1_RelHeadingDiff"), -110.0, kNear);
  EXPECT_NEAR(scene.number("Target1_HunterLonPosY"), 5.0, kNear);
}

}  // namespace
}  // namespace Trel::Rng::Test
