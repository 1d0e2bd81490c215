#include <gtest/gtest.h>

#include <vector>

#include "Rng_DerivedScene.h"

namespace Trel::Rng::Test {
namespace {

// A form of ISO: the value that it is, or with a minus the negative of it.
struct Form {
  std::string iso;
  int sign;
  std::string value;
};

std::vector<Form> forms() {
  std::vector<Form> all = {
      {"Target1_IsoPrX", 1, "Target1_RangeLon"},
      {"Target1_IsoPrY", -1, "Target1_RangeLat"},
      {"Target1_IsoPr2d", 1, "Target1_RangeRes"},
      {"Target1_IsoPrYaw", -1, "Target1_RangeAngle"},
      {"Target1_IsoVrX", 1, "Target1_RangeRateLon"},
      {"Target1_IsoVrY", -1, "Target1_RangeRateLat"},
      {"Target1_IsoVr2d", 1, "Target1_RangeRateRes"},
      {"Target1_IsoArX", 1, "Target1_RangeAccLon"},
      {"Target1_IsoArY", -1, "Target1_RangeAccLat"},
      {"Target1_IsoAr2d", 1, "Target1_RangeAccRes"},
      {"Target1_IsoPitch", -1, "Target1_Pitch"},
      {"Target1_IsoRoll", 1, "Target1_Roll"},
      {"Hunter_IsoPitch", -1, "Hunter_Pitch"},
      {"Hunter_IsoRoll", 1, "Hunter_Roll"},
  };
  const std::vector<std::pair<std::string, std::string>> places = {
      {"Target1_IsoNearestHunPolyPtToTarPtPc", "Target1_NearestHunPolyPtToTarPtPos"},
      {"Target1_IsoNearestHunPolyPtToTarPolyPc", "Target1_NearestHunPolyPtToTarPolyPos"},
      {"Target1_IsoNearestTarPolyPtToHunPtPc", "Target1_NearestTarPolyPtToHunPtPos"},
      {"Target1_IsoNearestTarPolyPtToHunPolyPc", "Target1_NearestTarPolyPtToHunPolyPos"},
      {"Target1_IsoMeasPc", "Target1_Pos"},
      {"Target1_IsoUnitPc", "Target1_UnitPos"},
      {"Target1_IsoPolygonOriginPc", "Target1_PolygonOriginPos"},
      {"Target1_IsoHunterMeasPc", "Target1_HunterPos"},
      {"Target1_IsoHunterMeasLonPc", "Target1_HunterLonPos"},
      {"Target1_IsoHunterMeasLatPc", "Target1_HunterLatPos"},
      {"Hunter_IsoUnitPc", "Hunter_UnitPos"},
      {"Hunter_IsoPolygonOriginPc", "Hunter_PolygonOriginPos"},
  };
  for (const auto& [iso, value] : places) {
    all.push_back({iso + "X", 1, value + "X"});
    all.push_back({iso + "Y", -1, value + "Y"});
  }
  return all;
}

// A packet in which no two numbers are the same.
RangePacket full() {
  RangePacket packet = placed({.heading = 20, .pitch = 3, .roll = 4, .x = 11, .y = 12},
                              {.heading = 200, .pitch = 5, .roll = 6, .x = 13, .y = 14});
  int number = 2000;
  for (const unsigned int at : {8, 12, 20, 24, 28, 32, 90, 94, 98, 102}) {
    packet.i32(at, number += 1111);
  }
  for (const unsigned int at : {16, 18, 50, 52, 54, 56}) {
    packet.i16(at, static_cast<short>(number += 111));
  }
  return packet.u8(65, 1).u8(67, 1).u8(69, 1).u8(59, 1).u8(70, 50).u8(71, 100).u8(72, 150).u8(73,
                                                                                              200);
}

Scene& outlined(Scene& scene) {
  scene.take(outline(0, {{4, -1}, {3, 1}})).take(outline(1, {{6, -1}, {5, 2}}));
  return reference(scene, 30);
}

TEST(DerivedIso, each_form_is_its_value_or_the_negative) {
  Scene scene;
  outlined(scene).take(full());
  for (const Form& form : forms()) {
    EXPECT_NE(scene.number(form.value), 0.0) << form.value;
    EXPECT_EQ(scene.number(form.iso), form.sign * scene.number(form.value)) << form.iso;
  }
}

TEST(DerivedIso, a_value_beyond_its_field_is_so_on_the_other_side) {
  Scene scene;
  scene.take(full().i32(8, INT32_MAX).i32(12, INT32_MAX).i16(110, INT16_MIN + 1));
  EXPECT_EQ(scene.flags("Target1_IsoPrX"), kOver);
  EXPECT_EQ(scene.flags("Target1_IsoPrY"), kUnder);
  EXPECT_DOUBLE_EQ(scene.value("Target1_IsoPrY").number, -2147483.647);
  EXPECT_EQ(scene.flags("Target1_IsoPr2d"), kOver);
  EXPECT_EQ(scene.flags("Target1_IsoPrYaw"), kOver | kUnder);
  EXPECT_EQ(scene.flags("Target1_IsoPitch"), kOver);
}

TEST(DerivedIso, what_has_no_value_has_no_form) {
  Scene scene;
  scene.take(full());
  scene.take(RangePacket(2).target(1, 1).resize(8));
  for (const Form& form : forms()) EXPECT_EQ(scene.flags(form.iso), kInvalid) << form.iso;
}

TEST(DerivedIso, a_form_whose_key_is_off_is_rejected_and_its_value_stays) {
  for (const Form& form : forms()) {
    Scene scene;
    outlined(scene).bar(form.iso).take(full());
    EXPECT_EQ(scene.flags(form.iso), kRejected) << form.iso;
    EXPECT_EQ(scene.flags(form.value), kGood) << form.value;
  }
}

TEST(DerivedIso, yaw_is_anticlockwise_from_east) {
  Scene scene;
  const auto yaw = [&](double heading) {
    reference(scene, heading).take(placed({.heading = heading}, {.heading = heading}));
    EXPECT_EQ(scene.number("Target1_IsoYaw"), scene.number("Hunter_IsoYaw"));
    EXPECT_NEAR(scene.value("Hunter_IsoRefYaw").number, scene.number("Hunter_IsoYaw"), kNear);
    return scene.number("Hunter_IsoYaw");
  };
  EXPECT_NEAR(yaw(0), 90.0, kNear);
  EXPECT_NEAR(yaw(90), 0.0, kNear);
  EXPECT_NEAR(yaw(120), -30.0, kNear);
  EXPECT_NEAR(yaw(269), -179.0, kNear);
  EXPECT_NEAR(yaw(271), 179.0, kNear);
  EXPECT_NEAR(yaw(327.67), 122.33, kNear);
  // from -180 to below 180
  reference(scene, 270).take(placed({}, {}));
  EXPECT_EQ(scene.value("Hunter_IsoRefYaw").number, -180.0);
}

TEST(DerivedIso, a_heading_out_of_range_gives_a_yaw_within_a_turn) {
  Scene scene;
  // 655.33 - 360 = 295.33; 90 - 295.33 + 360 = 154.67
  scene.take(RangePacket(2).target(1, 1).u16(36, 65533));
  EXPECT_NEAR(scene.number("Hunter_IsoYaw"), 154.67, 1e-8);
  // beyond the field, and so below it on the other side
  scene.take(RangePacket(2).target(1, 1).u16(36, 65534));
  EXPECT_EQ(scene.flags("Hunter_IsoYaw"), kUnder);
  EXPECT_NEAR(scene.value("Hunter_IsoYaw").number, 154.66, 1e-8);
  scene.take(RangePacket(2).target(1, 1).u16(36, 65535));
  EXPECT_EQ(scene.flags("Hunter_IsoYaw"), kInvalid);
}

TEST(DerivedIso, the_local_yaw_is_anticlockwise_from_axis_x) {
  Scene scene;
  reference(scene, 30).take(placed({.heading = 120}, {.heading = 10}));
  EXPECT_NEAR(scene.number("Hunter_IsoLocalYaw"), -90.0, kNear);
  EXPECT_NEAR(scene.number("Target1_IsoLocalYaw"), 20.0, kNear);
  scene.take(placed({.heading = 209}, {.heading = 31}));
  EXPECT_NEAR(scene.number("Hunter_IsoLocalYaw"), -179.0, kNear);
  EXPECT_NEAR(scene.number("Target1_IsoLocalYaw"), -1.0, kNear);
  scene.main().Inv_Hunter_RefHeading();
  scene.take(placed({}, {}));
  EXPECT_EQ(scene.flags("Hunter_IsoLocalYaw"), kInvalid);
  EXPECT_EQ(scene.flags("Hunter_IsoRefYaw"), kInvalid);
}

TEST(DerivedIso, corners_turn_y_to_the_left) {
  Scene scene;
  outlined(scene).take(full());
  for (const std::string vehicle : {"Hunter_", "Target1_"}) {
    for (const std::size_t index : {0, 1}) {
      EXPECT_EQ(scene.number(vehicle + "IsoPolygonPointsPcX", index),
                scene.number(vehicle + "PolygonPointsPosX", index));
      EXPECT_EQ(scene.number(vehicle + "IsoPolygonPointsPcY", index),
                -scene.number(vehicle + "PolygonPointsPosY", index));
    }
    EXPECT_EQ(scene.entry(vehicle + "IsoPolygonPointsPcX", 2).flags, kInvalid);
    scene.bar(vehicle + "IsoPolygonPointsPcX").take(full());
    EXPECT_EQ(scene.entry(vehicle + "IsoPolygonPointsPcX", 0).flags, kRejected);
    EXPECT_EQ(scene.entry(vehicle + "IsoPolygonPointsPcY", 255).flags, kRejected);
  }
}

TEST(DerivedIso, sensors_turn_y_to_the_left) {
  Scene scene;
  RangePacket packet(6);
  packet.resize(10).u8(7, 1).append(
      join({little(2000, 2), little(1000, 2), little(3000, 2), little(0, 4), little(500, 2),
            little(5000, 2), Bytes(8)}));
  reference(scene, 0).take(packet).take(full());
  const std::vector<std::pair<std::string, std::string>> runs = {
      {"Hunter_IsoSensorPointsPc", "Hunter_SensorPointsPos"},
      {"Hunter_IsoSensorRegionNearCentrePc", "Hunter_SensorRegionNearCentrePos"},
      {"Hunter_IsoSensorRegionFarCentrePc", "Hunter_SensorRegionFarCentrePos"}};
  for (const auto& [iso, value] : runs) {
    EXPECT_NE(scene.number(value + "Y", 0), 0.0);
    EXPECT_EQ(scene.number(iso + "X", 0), scene.number(value + "X", 0));
    EXPECT_EQ(scene.number(iso + "Y", 0), -scene.number(value + "Y", 0));
    EXPECT_EQ(scene.entry(iso + "X", 1).flags, kInvalid);
  }
}

}  // namespace
}  // namespace Trel::Rng::Test
