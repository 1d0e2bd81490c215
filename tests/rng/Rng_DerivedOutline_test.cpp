#include <gtest/gtest.h>

#include <tuple>

#include "Rng_DerivedScene.h"

namespace Trel::Rng::Test {
namespace {

void expect_corner(const Scene& scene, const std::string& vehicle, std::size_t index, double x,
                   double y) {
  EXPECT_NEAR(scene.number(vehicle + "PolygonPointsPosX", index), x, kNear) << index;
  EXPECT_NEAR(scene.number(vehicle + "PolygonPointsPosY", index), y, kNear) << index;
}

void expect_no_corner(const Scene& scene, const std::string& vehicle, std::size_t index) {
  EXPECT_EQ(scene.entry(vehicle + "PolygonPointsPosX", index).flags, kInvalid) << index;
  EXPECT_EQ(scene.entry(vehicle + "PolygonPointsPosY", index).flags, kInvalid) << index;
  EXPECT_EQ(scene.entry(vehicle + "IsoPolygonPointsPcX", index).flags, kInvalid) << index;
  EXPECT_EQ(scene.entry(vehicle + "IsoPolygonPointsPcY", index).flags, kInvalid) << index;
}

TEST(DerivedOutline, corners_lie_ahead_and_to_the_right_of_the_origin) {
  Scene scene;
  scene.take(outline(0, {{2, 1}, {-3, 0}})).take(outline(1, {{0, 4}}));
  // the hunter looks along Y, the target against X
  reference(scene, 0).take(
      placed({.heading = 90, .x = 100, .y = 200}, {.heading = 180, .x = -50, .y = 60}));
  expect_corner(scene, "Hunter_", 0, 99, 202);
  expect_corner(scene, "Hunter_", 1, 100, 197);
  expect_corner(scene, "Target1_", 0, -50, 56);
}

TEST(DerivedOutline, corners_turn_by_the_heading_from_axis_x) {
  Scene scene;
  scene.take(outline(0, {{2, 0}, {0, 3}}));
  reference(scene, 40).take(placed({.heading = 70}, {}));
  expect_corner(scene, "Hunter_", 0, 2 * cosine(30), 2 * sine(30));
  expect_corner(scene, "Hunter_", 1, -3 * sine(30), 3 * cosine(30));
}

TEST(DerivedOutline, a_vehicle_that_leans_looks_shorter_from_above) {
  Scene scene;
  scene.take(outline(0, {{2, 0}, {0, 2}}));
  reference(scene, 0).take(placed({.pitch = 60}, {}));
  expect_corner(scene, "Hunter_", 0, 1, 0);
  expect_corner(scene, "Hunter_", 1, 0, 2);
  scene.take(placed({.roll = 60}, {}));
  expect_corner(scene, "Hunter_", 0, 2, 0);
  expect_corner(scene, "Hunter_", 1, 0, 1);
  // Rolled by 60 and then pitched up by 30: of the right axis, what points down goes ahead.
  scene.take(placed({.pitch = 30, .roll = 60}, {}));
  expect_corner(scene, "Hunter_", 1, 2 * sine(60) * sine(30), 2 * cosine(60));
}

TEST(DerivedOutline, only_corners_in_use_have_a_place) {
  Scene scene;
  scene.take(outline(0, {{1, 0}, {2, 0}, {3, 0}}).u8(7, 2));
  reference(scene, 0).take(placed({}, {}));
  expect_corner(scene, "Hunter_", 1, 2, 0);
  expect_no_corner(scene, "Hunter_", 2);
  expect_no_corner(scene, "Hunter_", 255);
}

TEST(DerivedOutline, a_corner_that_is_not_known_has_no_place) {
  Scene scene;
  RangePacket packet = outline(0, {{1, 0}, {2, 0}, {3, 0}, {4, 0}});
  // the second's longitudinal number is invalid, the third's lateral one beyond its field
  scene.take(packet.i16(14, INT16_MIN).i16(20, INT16_MAX));
  reference(scene, 0).take(placed({}, {}));
  expect_corner(scene, "Hunter_", 0, 1, 0);
  expect_no_corner(scene, "Hunter_", 1);
  expect_no_corner(scene, "Hunter_", 2);
  expect_corner(scene, "Hunter_", 3, 4, 0);
}

TEST(DerivedOutline, a_smaller_outline_takes_the_later_corners_back) {
  for (const unsigned char vehicle : {0, 1}) {
    const std::string prefix = vehicle == 0 ? "Hunter_" : "Target1_";
    Scene scene;
    RangePacket holed = outline(vehicle, {{1, 0}, {2, 0}, {3, 0}, {4, 0}});
    // with a hole where the smaller one ends
    scene.take(holed.i16(14, INT16_MIN));
    reference(scene, 0).take(placed({}, {}));
    expect_corner(scene, prefix, 3, 4, 0);
    scene.take(outline(vehicle, {{1, 0}}));
    for (const std::size_t index : {1, 2, 3}) expect_no_corner(scene, prefix, index);
    scene.take(placed({}, {}));
    expect_corner(scene, prefix, 0, 1, 0);
    for (const std::size_t index : {1, 2, 3}) expect_no_corner(scene, prefix, index);
  }
}

TEST(DerivedOutline, an_outline_that_nobody_wants_any_more_takes_its_places_along) {
  Scene scene;
  scene.take(outline(0, {{1, 0}, {2, 0}}));
  reference(scene, 0).take(placed({}, {}));
  scene.key().KMain().Bar_Hunter_Config_Polygon();
  scene.take(outline(0, {{1, 0}, {2, 0}}));
  expect_no_corner(scene, "Hunter_", 0);
  expect_no_corner(scene, "Hunter_", 1);
}

TEST(DerivedOutline, places_need_attitude_origin_and_reference) {
  for (const unsigned int at : {36, 74, 78, 106, 108}) {
    Scene scene;
    scene.take(outline(0, {{1, 0}}));
    RangePacket packet = placed({}, {});
    if (at == 36) {
      packet.u16(at, 65535);
    } else if (at < 100) {
      packet.i32(at, INT32_MIN);
    } else {
      packet.i16(at, INT16_MIN);
    }
    reference(scene, 0).take(packet);
    expect_no_corner(scene, "Hunter_", 0);
  }
  Scene scene;
  scene.take(outline(0, {{1, 0}})).take(placed({}, {}));
  expect_no_corner(scene, "Hunter_", 0);
}

TEST(DerivedOutline, places_that_are_wanted_again_end_where_the_corners_end) {
  Scene scene;
  scene.take(outline(0, {{1, 0}, {2, 0}})).take(outline(1, {{1, 0}, {2, 0}}));
  for (const std::string vehicle : {"Hunter_", "Target1_"}) {
    for (const std::string run : {"PolygonPointsPos", "IsoPolygonPointsPc"}) {
      reference(scene, 0).bar(vehicle + run + "X").take(placed({}, {}));
      for (const char* axis : {"X", "Y"}) {
        EXPECT_EQ(scene.entry(vehicle + run + axis, 1).flags, kRejected) << vehicle << run;
        EXPECT_EQ(scene.entry(vehicle + run + axis, 2).flags, kRejected) << vehicle << run;
      }
      scene.let(vehicle + run + "X").take(placed({}, {}));
      for (const char* axis : {"X", "Y"}) {
        EXPECT_EQ(scene.entry(vehicle + run + axis, 1).flags, kGood) << vehicle << run;
        EXPECT_EQ(scene.entry(vehicle + run + axis, 2).flags, kInvalid) << vehicle << run;
        EXPECT_EQ(scene.entry(vehicle + run + axis, 255).flags, kInvalid) << vehicle << run;
      }
    }
  }
}

TEST(DerivedOutline, places_have_keys) {
  Scene scene;
  scene.take(outline(0, {{1, 0}})).take(outline(1, {{1, 0}}));
  reference(scene, 0).bar("Hunter_PolygonPointsPosX").take(placed({}, {}));
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsPosX", 0).flags, kRejected);
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsPosY", 255).flags, kRejected);
  expect_corner(scene, "Target1_", 0, 1, 0);
  scene.bar("Target1_PolygonPointsPosX").take(placed({}, {}));
  EXPECT_EQ(scene.entry("Target1_PolygonPointsPosX", 0).flags, kRejected);
}

// The hunter's outline is 4 m ahead by 2 m, the target's 6 m by 2 m; both have their first corner
// in the front on the left, and go on clockwise.
Scene& two_vehicles(Scene& scene) {
  scene.take(outline(0, {{4, -1}, {4, 1}, {0, 1}, {0, -1}}));
  scene.take(outline(1, {{6, -1}, {6, 1}, {0, 1}, {0, -1}}));
  return reference(scene, 0);
}

TEST(DerivedOutline, a_nearest_point_lies_between_its_corners) {
  Scene scene;
  // The hunter looks along X from (10, 20), the target along Y from (30, 40).
  const Pose hunter{.heading = 0, .x = 10, .y = 20};
  const Pose target{.heading = 90, .x = 30, .y = 40};
  RangePacket packet = placed(hunter, target);
  // corners, and shares of 250: a half, none, a whole and a quarter
  packet.u8(64, 0).u8(65, 1).u8(71, 125);  // hunter's outline to the target's point
  packet.u8(68, 1).u8(69, 2).u8(73, 0);    // hunter's outline to the target's outline
  packet.u8(58, 2).u8(59, 3).u8(70, 250);  // target's outline to the hunter's point
  packet.u8(66, 3).u8(67, 0).u8(72, 50);   // target's outline to the hunter's outline
  two_vehicles(scene).take(packet);
  EXPECT_NEAR(scene.number("Target1_NearestHunPolyPtToTarPtPosX"), 14, kNear);
  EXPECT_NEAR(scene.number("Target1_NearestHunPolyPtToTarPtPosY"), 20, kNear);
  EXPECT_NEAR(scene.number("Target1_NearestHunPolyPtToTarPolyPosX"), 14, kNear);
  EXPECT_NEAR(scene.number("Target1_NearestHunPolyPtToTarPolyPosY"), 21, kNear);
  // the target's ahead is Y, its right is against X: corner 3 is (0, -1) -> (31, 40)
  EXPECT_NEAR(scene.number("Target1_NearestTarPolyPtToHunPtPosX"), 31, kNear);
  EXPECT_NEAR(scene.number("Target1_NearestTarPolyPtToHunPtPosY"), 40, kNear);
  // a fifth of the way from corner 3 to corner 0, 6 m ahead of it
  EXPECT_NEAR(scene.number("Target1_NearestTarPolyPtToHunPolyPosX"), 31, kNear);
  EXPECT_NEAR(scene.number("Target1_NearestTarPolyPtToHunPolyPosY"), 41.2, kNear);
}

TEST(DerivedOutline, a_nearest_point_needs_both_corners_in_use_and_its_share) {
  const auto flags = [](unsigned char left, unsigned char right, unsigned char share) {
    Scene scene;
    two_vehicles(scene).take(placed({}, {}).u8(64, left).u8(65, right).u8(71, share));
    EXPECT_EQ(scene.flags("Target1_NearestHunPolyPtToTarPtPosX"),
              scene.flags("Target1_NearestHunPolyPtToTarPtPosY"));
    return scene.flags("Target1_NearestHunPolyPtToTarPtPosX");
  };
  EXPECT_EQ(flags(0, 3, 10), kGood);
  EXPECT_EQ(flags(4, 0, 10), kInvalid);
  EXPECT_EQ(flags(0, 4, 10), kInvalid);
  EXPECT_EQ(flags(255, 0, 10), kInvalid);
  EXPECT_EQ(flags(0, 255, 10), kInvalid);
  EXPECT_EQ(flags(0, 1, 255), kInvalid);
}

TEST(DerivedOutline, a_nearest_point_on_a_corner_that_is_not_known_is_invalid) {
  Scene scene;
  RangePacket packet = outline(0, {{4, -1}, {4, 1}, {0, 1}});
  scene.take(packet.i16(14, INT16_MIN));
  reference(scene, 0).take(placed({}, {}).u8(64, 0).u8(65, 1));
  EXPECT_EQ(scene.flags("Target1_NearestHunPolyPtToTarPtPosX"), kInvalid);
  scene.take(placed({}, {}).u8(64, 1).u8(65, 2));
  EXPECT_EQ(scene.flags("Target1_NearestHunPolyPtToTarPtPosX"), kInvalid);
  scene.take(placed({}, {}).u8(64, 0).u8(65, 2));
  EXPECT_EQ(scene.flags("Target1_NearestHunPolyPtToTarPtPosX"), kGood);
}

TEST(DerivedOutline, a_nearest_point_on_a_corner_that_is_not_in_use_is_invalid) {
  Scene scene;
  // The third corner is known, but the outline has two.
  scene.take(outline(0, {{4, -1}, {4, 1}, {0, 1}}).u8(7, 2));
  reference(scene, 0).take(placed({}, {}).u8(64, 1).u8(65, 2));
  EXPECT_EQ(scene.flags("Target1_NearestHunPolyPtToTarPtPosX"), kInvalid);
  scene.take(placed({}, {}).u8(64, 2).u8(65, 1));
  EXPECT_EQ(scene.flags("Target1_NearestHunPolyPtToTarPtPosX"), kInvalid);
}

TEST(DerivedOutline, a_nearest_point_needs_its_vehicle_placed_and_no_other) {
  // Each vehicle without its origin: the other's points stay.
  for (const auto& [at, hunters, targets] :
       {std::tuple{74, kInvalid, kGood}, std::tuple{82, kGood, kInvalid}}) {
    Scene scene;
    two_vehicles(scene).take(placed({}, {}).i32(static_cast<std::size_t>(at), INT32_MIN));
    EXPECT_EQ(scene.flags("Target1_NearestHunPolyPtToTarPtPosX"), hunters) << at;
    EXPECT_EQ(scene.flags("Target1_NearestHunPolyPtToTarPolyPosY"), hunters) << at;
    EXPECT_EQ(scene.flags("Target1_NearestTarPolyPtToHunPtPosX"), targets) << at;
    EXPECT_EQ(scene.flags("Target1_NearestTarPolyPtToHunPolyPosY"), targets) << at;
    EXPECT_EQ(scene.flags("Target1_RelDistanceHunterCentreToTargetCentre"), kInvalid) << at;
  }
}

TEST(DerivedOutline, nearest_points_and_centres_have_keys) {
  for (const char* off :
       {"Target1_NearestTarPolyPtToHunPolyPosX", "Target1_RelDistanceHunterCentreToTargetCentre"}) {
    Scene scene;
    two_vehicles(scene).bar(off).take(placed({}, {}));
    for (const std::string name :
         {"Target1_NearestHunPolyPtToTarPtPosX", "Target1_NearestHunPolyPtToTarPtPosY",
          "Target1_NearestTarPolyPtToHunPolyPosX", "Target1_NearestTarPolyPtToHunPolyPosY"}) {
      const bool is_off = std::string(off).find("Nearest") != std::string::npos;
      EXPECT_EQ(scene.flags(name), is_off ? kRejected : kGood) << name;
    }
    const bool is_off = std::string(off).find("Centre") != std::string::npos;
    EXPECT_EQ(scene.flags("Target1_RelDistanceHunterCentreToTargetCentre"),
              is_off ? kRejected : kGood);
  }
}

TEST(DerivedOutline, a_vehicle_that_leans_and_turns_takes_its_points_along) {
  Scene scene;
  // Rolled by 60, pitched up by 30, and then turned by 90 from axis X: what was ahead is along Y,
  // and what was to the right is against X. Of the right axis, what points down goes ahead.
  const Pose hunter{.heading = 130, .pitch = 30, .roll = 60, .x = 10, .y = 20};
  const double ahead_of_right = sine(60) * sine(30);
  const double right_of_right = cosine(60);
  const auto place = [&](double ahead, double right) {
    return std::pair{10 - right * right_of_right, 20 + ahead * cosine(30) + right * ahead_of_right};
  };
  // Half way from (4, 1) to (0, 1), and the corner (4, -1).
  two_vehicles(scene);
  reference(scene, 40).take(placed(hunter, {}).u8(64, 1).u8(65, 2).u8(71, 125).u8(68, 0).u8(69, 1));
  EXPECT_NEAR(scene.number("Target1_NearestHunPolyPtToTarPtPosX"), place(2, 1).first, kNear);
  EXPECT_NEAR(scene.number("Target1_NearestHunPolyPtToTarPtPosY"), place(2, 1).second, kNear);
  EXPECT_NEAR(scene.number("Target1_NearestHunPolyPtToTarPolyPosX"), place(4, -1).first, kNear);
  EXPECT_NEAR(scene.number("Target1_NearestHunPolyPtToTarPolyPosY"), place(4, -1).second, kNear);
  // The target looks along -Y from its origin, 40 degrees to the left of X: its centre is 3 m
  // ahead.
  const double x = 3 * cosine(40) - place(2, 0).first;
  const double y = -3 * sine(40) - place(2, 0).second;
  EXPECT_NEAR(scene.number("Target1_RelDistanceHunterCentreToTargetCentre"), std::hypot(x, y),
              kNear);
}

TEST(DerivedOutline, a_nearest_point_does_not_need_the_places_of_the_corners) {
  Scene scene;
  scene.bar("Hunter_PolygonPointsPosX").bar("Target1_PolygonPointsPosX");
  two_vehicles(scene).take(placed({}, {}).u8(64, 0).u8(65, 1));
  EXPECT_NEAR(scene.number("Target1_NearestHunPolyPtToTarPtPosX"), 4, kNear);
  EXPECT_NEAR(scene.number("Target1_NearestHunPolyPtToTarPtPosY"), -1, kNear);
}

TEST(DerivedOutline, the_centres_are_those_of_the_rectangles_around_the_outlines) {
  Scene scene;
  // The hunter's centre is 2 m ahead of (10, 20) along X, the target's 3 m ahead of (30, 40) along
  // Y.
  two_vehicles(scene).take(
      placed({.heading = 0, .x = 10, .y = 20}, {.heading = 90, .x = 30, .y = 40}));
  EXPECT_NEAR(scene.number("Target1_RelDistanceHunterCentreToTargetCentre"),
              std::sqrt(18.0 * 18.0 + 23.0 * 23.0), kNear);
  // A bumper with many corners does not draw the centre: still 2 m ahead, and 1 m to the right.
  scene.take(outline(0, {{4, 0}, {4, 1}, {4, 1.5}, {4, 2}, {0, 0}}));
  scene.take(outline(1, {{0, 0}}));
  scene.take(placed({}, {}));
  EXPECT_NEAR(scene.number("Target1_RelDistanceHunterCentreToTargetCentre"), std::sqrt(5.0), kNear);
}

TEST(DerivedOutline, the_centre_follows_an_outline_that_comes_in_parts) {
  const char* const name = "Target1_RelDistanceHunterCentreToTargetCentre";
  Scene scene;
  reference(scene, 0).take(outline(1, {{0, 0}}));
  // The second corner is not known, and comes by itself: from 2 m to 8 m ahead the centre is at 5
  // m.
  scene.take(outline(0, {{2, 0}, {6, 0}}).i16(14, INT16_MIN)).take(placed({}, {}));
  EXPECT_EQ(scene.flags(name), kInvalid);
  scene.take(outline(0, {{8, 0}}).u8(7, 2).u8(8, 1)).take(placed({}, {}));
  EXPECT_NEAR(scene.number(name), 5, kNear);
  // Of two corners only the first stays in use.
  scene.take(outline(0, {{2, 0}}).u8(7, 1)).take(placed({}, {}));
  EXPECT_NEAR(scene.number(name), 2, kNear);
  scene.take(outline(0, {{2, 0}}).u8(7, 0)).take(placed({}, {}));
  EXPECT_EQ(scene.flags(name), kInvalid);
}

TEST(DerivedOutline, without_one_outline_there_is_no_distance_of_centres) {
  const char* const name = "Target1_RelDistanceHunterCentreToTargetCentre";
  Scene scene;
  scene.take(outline(0, {{4, 0}}));
  reference(scene, 0).take(placed({}, {}));
  EXPECT_EQ(scene.flags(name), kInvalid);
  scene.take(outline(1, {{4, 0}})).take(placed({}, {}));
  EXPECT_EQ(scene.flags(name), kGood);
  scene.take(outline(1, {{4, 0}, {5, 0}}).i16(14, INT16_MIN)).take(placed({}, {}));
  EXPECT_EQ(scene.flags(name), kInvalid);
}

}  // namespace
}  // namespace Trel::Rng::Test
