#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

#include "Rng_DerivedScene.h"

namespace Trel::Rng::Test {
namespace {

void expect_rotation(const Scene& scene, const std::string& name, double heading, double pitch,
                     double roll) {
  EXPECT_NEAR(scene.number(name + "Heading"), heading, kNear) << name;
  EXPECT_NEAR(scene.number(name + "Pitch"), pitch, kNear) << name;
  EXPECT_NEAR(scene.number(name + "Roll"), roll, kNear) << name;
}

void expect_flags(const Scene& scene, const std::string& name, unsigned char flags) {
  EXPECT_EQ(scene.flags(name + "Heading"), flags) << name;
  EXPECT_EQ(scene.flags(name + "Pitch"), flags) << name;
  EXPECT_EQ(scene.flags(name + "Roll"), flags) << name;
}

const char* const kNed2Range = "Range_Ned2Range";
const char* const kRange2Hunter = "Hunter_Range2Hunter";
const char* const kRange2Target = "Target1_Range2Target";
const char* const kHunter2Target = "Target1_Hunter2TargetRel";

TEST(DerivedFrame, the_range_frame_is_level_along_the_reference_heading) {
  Scene scene;
  reference(scene, 30).take(placed({.heading = 120}, {}));
  expect_rotation(scene, kNed2Range, 30, 0, 0);
}

TEST(DerivedFrame, a_vehicle_keeps_its_pitch_and_roll_in_the_range_frame) {
  Scene scene;
  reference(scene, 30).take(
      placed({.heading = 120, .pitch = 5, .roll = -3}, {.heading = 10, .pitch = -4, .roll = 7}));
  expect_rotation(scene, kRange2Hunter, 90, 5, -3);
  expect_rotation(scene, kRange2Target, -20, -4, 7);
  reference(scene, 350).take(placed({.heading = 10}, {.heading = 169}));
  expect_rotation(scene, kRange2Hunter, 20, 0, 0);
  expect_rotation(scene, kRange2Target, 179, 0, 0);
  // above -180 to 180
  reference(scene, 180).take(placed({}, {}));
  EXPECT_EQ(scene.number("Hunter_Range2HunterHeading"), 180.0);
}

TEST(DerivedFrame, turns_about_the_same_axis_subtract) {
  Scene scene;
  scene.take(placed({.heading = 30}, {.heading = 90}));
  expect_rotation(scene, kHunter2Target, 60, 0, 0);
  scene.take(placed({.heading = 350}, {.heading = 10}));
  expect_rotation(scene, kHunter2Target, 20, 0, 0);
  scene.take(placed({.heading = 90, .pitch = 10}, {.heading = 90, .pitch = 25}));
  expect_rotation(scene, kHunter2Target, 0, 15, 0);
  scene.take(placed({.heading = 90, .roll = 20}, {.heading = 90, .roll = -5}));
  expect_rotation(scene, kHunter2Target, 0, 0, -25);
}

TEST(DerivedFrame, a_hunter_on_its_right_side_sees_heading_as_pitch) {
  Scene scene;
  // Its right axis points down and its down axis to the left, so what is to the right is above.
  // The target's right axis then points up in its axes: rolled to the left by a quarter turn.
  scene.take(placed({.heading = 0, .roll = 90}, {.heading = 10}));
  expect_rotation(scene, kHunter2Target, 0, 10, -90);
}

TEST(DerivedFrame, a_hunter_nose_up_sees_the_level_ahead_below) {
  Scene scene;
  scene.take(placed({.heading = 40, .pitch = 30}, {.heading = 40}));
  expect_rotation(scene, kHunter2Target, 0, -30, 0);
}

using Rows = std::array<std::array<double, 3>, 3>;

Rows product(const Rows& a, const Rows& b) {
  Rows c{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      for (int k = 0; k < 3; ++k) c[i][j] += a[i][k] * b[k][j];
    }
  }
  return c;
}

// Three turns in order: about down, right and forward.
Rows axes(double heading, double pitch, double roll) {
  const Rows h = {
      {{cosine(heading), -sine(heading), 0}, {sine(heading), cosine(heading), 0}, {0, 0, 1}}};
  const Rows p = {{{cosine(pitch), 0, sine(pitch)}, {0, 1, 0}, {-sine(pitch), 0, cosine(pitch)}}};
  const Rows r = {{{1, 0, 0}, {0, cosine(roll), -sine(roll)}, {0, sine(roll), cosine(roll)}}};
  return product(product(h, p), r);
}

TEST(DerivedFrame, the_hunters_axes_turned_by_the_rotation_are_the_targets) {
  std::mt19937 random(62);
  std::uniform_int_distribution<int> heading(0, 359);
  std::uniform_int_distribution<int> tilt(-80, 80);
  for (int round = 0; round < 200; ++round) {
    const Pose hunter{
        .heading = 1.0 * heading(random), .pitch = 1.0 * tilt(random), .roll = 1.0 * tilt(random)};
    const Pose target{
        .heading = 1.0 * heading(random), .pitch = 1.0 * tilt(random), .roll = 1.0 * tilt(random)};
    Scene scene;
    if (round % 2 == 0) reference(scene, heading(random));
    scene.take(placed(hunter, target));
    const Rows turned = product(axes(hunter.heading, hunter.pitch, hunter.roll),
                                axes(scene.number("Target1_Hunter2TargetRelHeading"),
                                     scene.number("Target1_Hunter2TargetRelPitch"),
                                     scene.number("Target1_Hunter2TargetRelRoll")));
    const Rows expected = axes(target.heading, target.pitch, target.roll);
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) ASSERT_NEAR(turned[i][j], expected[i][j], 1e-9) << round;
    }
  }
}

TEST(DerivedFrame, without_the_reference_only_the_vehicles_know_each_other) {
  Scene scene;
  scene.take(placed({.heading = 30}, {.heading = 90}));
  expect_flags(scene, kNed2Range, kInvalid);
  expect_flags(scene, kRange2Hunter, kInvalid);
  expect_flags(scene, kRange2Target, kInvalid);
  expect_flags(scene, kHunter2Target, kGood);
}

TEST(DerivedFrame, a_rotation_needs_the_whole_attitude) {
  // the hunter's and the target's heading, pitch and roll
  for (const unsigned int at : {36, 106, 108}) {
    Scene scene;
    const short none = at == 36 ? -1 : INT16_MIN;
    reference(scene, 0).take(placed({}, {}).i16(at, none));
    expect_flags(scene, kRange2Hunter, kInvalid);
    expect_flags(scene, kRange2Target, kGood);
    expect_flags(scene, kHunter2Target, kInvalid);
  }
  for (const unsigned int at : {38, 110, 112}) {
    Scene scene;
    const short none = at == 38 ? -1 : INT16_MIN;
    reference(scene, 0).take(placed({}, {}).i16(at, none));
    expect_flags(scene, kRange2Hunter, kGood);
    expect_flags(scene, kRange2Target, kInvalid);
    expect_flags(scene, kHunter2Target, kInvalid);
  }
}

// A hunter with a sensor, and a target, both outlined and placed.
Scene& full(Scene& scene) {
  RangePacket sensor(6);
  sensor.resize(10).u8(7, 1).append(Bytes(7 * 2 + 8, 1));
  scene.take(outline(0, {{4, -1}, {4, 1}})).take(outline(1, {{6, -1}, {6, 1}})).take(sensor);
  return reference(scene, 0).take(placed({}, {}).u8(65, 1).u8(67, 1));
}

TEST(DerivedFrame, each_group_that_needs_a_vehicles_axes_has_them_by_itself) {
  const std::vector<std::string> values = {
      "Hunter_Range2HunterHeading",          "Target1_Range2TargetHeading",
      "Target1_Hunter2TargetRelHeading",     "Target1_NearestHunPolyPtToTarPtPosX",
      "Target1_NearestTarPolyPtToHunPtPosX", "Target1_RelDistanceHunterCentreToTargetCentre"};
  const std::vector<std::string> runs = {"Hunter_PolygonPointsPosX", "Target1_PolygonPointsPosX",
                                         "Hunter_SensorPointsPosX",
                                         "Hunter_SensorRegionFarCentrePosX"};
  for (const auto& [names, is_run] : {std::pair{values, false}, std::pair{runs, true}}) {
    for (const std::string& name : names) {
      Scene scene;
      for (const std::string& other : values) scene.bar(other);
      for (const std::string& other : runs) scene.bar(other);
      for (const char* iso : {"Hunter_IsoPolygonPointsPcX", "Target1_IsoPolygonPointsPcX",
                              "Hunter_IsoSensorPointsPcX", "Hunter_IsoSensorRegionFarCentrePcX"}) {
        scene.bar(iso);
      }
      full(scene.let(name));
      const auto flags = is_run ? scene.entry(name, 0).flags : scene.flags(name);
      EXPECT_EQ(flags, kGood) << name;
    }
  }
}

TEST(DerivedFrame, each_rotation_has_a_key_and_the_others_stay) {
  for (const char* off : {kNed2Range, kRange2Hunter, kRange2Target, kHunter2Target}) {
    Scene scene;
    reference(scene, 0).bar(std::string(off) + "Heading").take(placed({}, {}));
    for (const char* name : {kNed2Range, kRange2Hunter, kRange2Target, kHunter2Target}) {
      expect_flags(scene, name, name == off ? kRejected : kGood);
    }
  }
}

}  // namespace
}  // namespace Trel::Rng::Test
