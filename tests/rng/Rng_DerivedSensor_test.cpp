#include <gtest/gtest.h>

#include "Rng_DerivedScene.h"

namespace Trel::Rng::Test {
namespace {

// A sensor in the hunter's axes; metres and degrees.
struct Sensor {
  double lon = 0;
  double lat = 0;
  double down = 0;
  double heading = 0;
  double pitch = 0;
  double least = 0;
  double most = 0;
};

// The long form.
RangePacket sensors(const std::vector<Sensor>& all) {
  RangePacket packet(6);
  packet.resize(10).u8(7, static_cast<unsigned char>(all.size()));
  packet.u8(9, static_cast<unsigned char>(0x40 | (all.size() - 1)));
  for (const Sensor& s : all) {
    packet.append(join({little(millis(s.lon), 2), little(millis(s.lat), 2),
                        little(millis(s.down), 2), little(hundredths(s.heading), 2),
                        little(hundredths(s.pitch), 2), little(0, 2), little(0, 2), little(0, 2),
                        little(millis(s.least), 2), little(millis(s.most), 2), Bytes(8)}));
  }
  return packet;
}

void expect_place(const Scene& scene, const std::string& name, std::size_t index, double x,
                  double y) {
  EXPECT_NEAR(scene.number("Hunter_" + name + "X", index), x, kNear) << name;
  EXPECT_NEAR(scene.number("Hunter_" + name + "Y", index), y, kNear) << name;
}

void expect_no_place(const Scene& scene, const std::string& name, std::size_t index) {
  EXPECT_EQ(scene.entry("Hunter_" + name + "X", index).flags, kInvalid) << name;
  EXPECT_EQ(scene.entry("Hunter_" + name + "Y", index).flags, kInvalid) << name;
}

TEST(DerivedSensor, a_sensor_is_placed_from_the_origin_of_the_outline) {
  Scene scene;
  scene.take(sensors({{.lon = 2, .lat = 1}, {.lon = -3}}));
  reference(scene, 0).take(placed({.heading = 90, .x = 100, .y = 200}, {}));
  expect_place(scene, "SensorPointsPos", 0, 99, 202);
  expect_place(scene, "SensorPointsPos", 1, 100, 197);
  expect_no_place(scene, "SensorPointsPos", 2);
}

TEST(DerivedSensor, its_height_counts_when_the_hunter_leans) {
  Scene scene;
  scene.take(sensors({{.lon = 2, .down = -1}}));
  // nose up by 30: what is above goes back
  reference(scene, 0).take(placed({.pitch = 30}, {}));
  expect_place(scene, "SensorPointsPos", 0, 2 * cosine(30) - sine(30), 0);
  // right side down by 30: what is above goes to the right
  scene.take(placed({.roll = 30}, {}));
  expect_place(scene, "SensorPointsPos", 0, 2, sine(30));
}

TEST(DerivedSensor, its_region_reaches_from_the_least_distance_to_the_greatest) {
  Scene scene;
  scene.take(sensors({{.lon = 2, .lat = 1, .heading = 90, .least = 3, .most = 10}}));
  // along X it looks to the right, along Y
  reference(scene, 0).take(placed({.x = 100, .y = 200}, {}));
  expect_place(scene, "SensorRegionNearCentrePos", 0, 102, 204);
  expect_place(scene, "SensorRegionFarCentrePos", 0, 102, 211);
  // turned by 30
  scene.take(placed({.heading = 30}, {}));
  const double x = 2 * cosine(30) - sine(30);
  const double y = 2 * sine(30) + cosine(30);
  expect_place(scene, "SensorRegionNearCentrePos", 0, x - 3 * sine(30), y + 3 * cosine(30));
  expect_place(scene, "SensorRegionFarCentrePos", 0, x - 10 * sine(30), y + 10 * cosine(30));
}

TEST(DerivedSensor, a_sensor_that_looks_down_sees_less_far) {
  Scene scene;
  scene.take(sensors({{.heading = 30, .pitch = -60, .least = 2, .most = 20}}));
  reference(scene, 0).take(placed({}, {}));
  expect_place(scene, "SensorRegionNearCentrePos", 0, cosine(30), sine(30));
  expect_place(scene, "SensorRegionFarCentrePos", 0, 10 * cosine(30), 10 * sine(30));
  // a hunter with its nose up by 60 brings it level
  scene.take(sensors({{.pitch = -60, .most = 20}})).take(placed({.pitch = 60}, {}));
  expect_place(scene, "SensorRegionFarCentrePos", 0, 20, 0);
}

TEST(DerivedSensor, a_region_leans_and_turns_with_the_hunter) {
  Scene scene;
  // 1 m above the outline, looking to the right and down by 30.
  scene.take(sensors({{.lon = 2, .down = -1, .heading = 90, .pitch = -30, .least = 2, .most = 6}}));
  // Right side down by 60 and turned by 90 from axis X. Across, level: what is to the right by
  // cos(60), and what is above by sin(60). What is ahead is along Y, what is to the right against
  // X.
  reference(scene, 50).take(placed({.heading = 140, .roll = 60, .x = 10, .y = 20}, {}));
  const auto across = [](double right, double up) { return right * cosine(60) + up * sine(60); };
  expect_place(scene, "SensorPointsPos", 0, 10 - across(0, 1), 22);
  expect_place(scene, "SensorRegionNearCentrePos", 0, 10 - across(2 * cosine(30), 1 - 2 * sine(30)),
               22);
  expect_place(scene, "SensorRegionFarCentrePos", 0, 10 - across(6 * cosine(30), 1 - 6 * sine(30)),
               22);
}

TEST(DerivedSensor, the_short_form_is_level_with_the_outline) {
  Scene scene;
  RangePacket packet(6);
  packet.resize(10).u8(7, 1);
  packet.append(join({little(2000, 2), little(1000, 2), little(3000, 2), little(0, 2), little(0, 2),
                      little(0, 2), little(5000, 2), Bytes(8)}));
  scene.take(packet);
  reference(scene, 0).take(placed({}, {}));
  expect_place(scene, "SensorPointsPos", 0, 2, 1);
  expect_place(scene, "SensorRegionFarCentrePos", 0, 2 + 5 * cosine(30), 1 + 5 * sine(30));
}

// One sensor, of whose packet the number at `at` is invalid, or another that is told.
Scene& without(Scene& scene, std::size_t at, std::int16_t number = INT16_MIN) {
  RangePacket packet = sensors({{.lon = 1, .least = 2, .most = 3}});
  scene.take(packet.i16(at, number));
  return reference(scene, 0).take(placed({}, {}));
}

TEST(DerivedSensor, without_its_position_a_sensor_has_no_place) {
  for (const std::size_t at : {10, 12}) {
    Scene scene;
    without(scene, at);
    expect_no_place(scene, "SensorPointsPos", 0);
    expect_no_place(scene, "SensorRegionNearCentrePos", 0);
    expect_no_place(scene, "SensorRegionFarCentrePos", 0);
  }
}

TEST(DerivedSensor, without_its_heading_a_sensor_has_no_region) {
  Scene scene;
  without(scene, 16);
  expect_place(scene, "SensorPointsPos", 0, 1, 0);
  expect_no_place(scene, "SensorRegionNearCentrePos", 0);
  expect_no_place(scene, "SensorRegionFarCentrePos", 0);
}

TEST(DerivedSensor, a_height_that_is_not_told_is_0_but_one_beyond_its_field_is_no_place) {
  Scene untold;
  without(untold, 14);
  expect_place(untold, "SensorPointsPos", 0, 1, 0);
  expect_place(untold, "SensorRegionFarCentrePos", 0, 4, 0);
  Scene beyond;
  without(beyond, 14, INT16_MAX);
  expect_no_place(beyond, "SensorPointsPos", 0);
  expect_no_place(beyond, "SensorRegionNearCentrePos", 0);
  expect_no_place(beyond, "SensorRegionFarCentrePos", 0);
}

TEST(DerivedSensor, a_pitch_that_is_not_told_is_0_but_one_beyond_its_field_is_no_region) {
  Scene untold;
  without(untold, 18);
  expect_place(untold, "SensorRegionFarCentrePos", 0, 4, 0);
  Scene beyond;
  without(beyond, 18, INT16_MAX);
  expect_place(beyond, "SensorPointsPos", 0, 1, 0);
  expect_no_place(beyond, "SensorRegionNearCentrePos", 0);
  expect_no_place(beyond, "SensorRegionFarCentrePos", 0);
}

TEST(DerivedSensor, each_limit_needs_its_distance_alone) {
  Scene scene;
  without(scene, 26);
  expect_no_place(scene, "SensorRegionNearCentrePos", 0);
  expect_place(scene, "SensorRegionFarCentrePos", 0, 4, 0);
  Scene other;
  without(other, 28);
  expect_place(other, "SensorRegionNearCentrePos", 0, 3, 0);
  expect_no_place(other, "SensorRegionFarCentrePos", 0);
}

TEST(DerivedSensor, places_need_the_hunters) {
  Scene scene;
  scene.take(sensors({{.lon = 1}})).take(placed({}, {}));
  expect_no_place(scene, "SensorPointsPos", 0);
  expect_no_place(scene, "SensorRegionFarCentrePos", 0);
}

TEST(DerivedSensor, fewer_sensors_in_use_take_the_later_places_back) {
  Scene scene;
  scene.take(sensors({{.lon = 1}, {.lon = 2}, {.lon = 3}}).i16(38, INT16_MIN));
  reference(scene, 0).take(placed({}, {}));
  expect_no_place(scene, "SensorPointsPos", 1);
  expect_place(scene, "SensorPointsPos", 2, 3, 0);
  scene.take(sensors({{.lon = 1}})).take(placed({}, {}));
  for (const char* name :
       {"SensorPointsPos", "SensorRegionNearCentrePos", "SensorRegionFarCentrePos",
        "IsoSensorPointsPc", "IsoSensorRegionNearCentrePc", "IsoSensorRegionFarCentrePc"}) {
    for (const std::size_t index : {1, 2, 63}) expect_no_place(scene, name, index);
    EXPECT_EQ(scene.entry(std::string("Hunter_") + name + "X", 0).flags, kGood) << name;
  }
}

TEST(DerivedSensor, places_that_are_wanted_again_end_where_the_sensors_end) {
  Scene scene;
  scene.take(sensors({{.lon = 1}, {.lon = 2}}));
  for (const std::string name :
       {"SensorPointsPos", "SensorRegionNearCentrePos", "SensorRegionFarCentrePos",
        "IsoSensorPointsPc", "IsoSensorRegionNearCentrePc", "IsoSensorRegionFarCentrePc"}) {
    reference(scene, 0).bar("Hunter_" + name + "X").take(placed({}, {}));
    EXPECT_EQ(scene.entry("Hunter_" + name + "X", 2).flags, kRejected) << name;
    EXPECT_EQ(scene.entry("Hunter_" + name + "Y", 2).flags, kRejected) << name;
    scene.let("Hunter_" + name + "X").take(placed({}, {}));
    EXPECT_EQ(scene.entry("Hunter_" + name + "X", 1).flags, kGood) << name;
    expect_no_place(scene, name, 2);
    expect_no_place(scene, name, 63);
  }
}

TEST(DerivedSensor, places_and_regions_have_a_key_each) {
  Scene scene;
  scene.take(sensors({{.lon = 1}}));
  reference(scene, 0).bar("Hunter_SensorPointsPosX").take(placed({}, {}));
  EXPECT_EQ(scene.entry("Hunter_SensorPointsPosY", 0).flags, kRejected);
  expect_place(scene, "SensorRegionNearCentrePos", 0, 1, 0);
  scene.bar("Hunter_SensorRegionNearCentrePosX").take(placed({}, {}));
  EXPECT_EQ(scene.entry("Hunter_SensorRegionNearCentrePosX", 0).flags, kRejected);
  EXPECT_EQ(scene.entry("Hunter_SensorRegionFarCentrePosY", 63).flags, kRejected);
}

}  // namespace
}  // namespace Trel::Rng::Test
