#include "rng/Rng_Range.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Rng_Scene.h"

namespace Trel::Rng::Test {
namespace {

const std::vector<Field> kFields = {
    {"Target1_RangeLat", 8, -4, 0.001},
    {"Target1_RangeLon", 12, -4, 0.001},
    {"Target1_RangeRateLat", 16, -2, 0.01},
    {"Target1_RangeRateLon", 18, -2, 0.01},
    {"Target1_HunterPosX", 20, -4, 0.001},
    {"Target1_HunterPosY", 24, -4, 0.001},
    {"Target1_PosX", 28, -4, 0.001},
    {"Target1_PosY", 32, -4, 0.001},
    {"Hunter_Heading", 36, 2, kAngle},
    {"Target1_Heading", 38, 2, kAngle},
    {"Target1_HunterVelF", 50, -2, 0.01},
    {"Target1_HunterVelL", 52, -2, 0.01},
    {"Target1_RangeAccLat", 54, -2, 0.01},
    {"Target1_RangeAccLon", 56, -2, 0.01},
    {"Target1_NearestTarPolyPtToHunPtLeft", 58, 1, 1},
    {"Target1_NearestTarPolyPtToHunPtRight", 59, 1, 1},
    {"Target1_Visible", 60, 1, 1},
    {"Target1_NearestHunPolyPtToTarPtLeft", 64, 1, 1},
    {"Target1_NearestHunPolyPtToTarPtRight", 65, 1, 1},
    {"Target1_NearestTarPolyPtToHunPolyLeft", 66, 1, 1},
    {"Target1_NearestTarPolyPtToHunPolyRight", 67, 1, 1},
    {"Target1_NearestHunPolyPtToTarPolyLeft", 68, 1, 1},
    {"Target1_NearestHunPolyPtToTarPolyRight", 69, 1, 1},
    {"Target1_NearestTarPolyPtToHunPtScale", 70, 1, 0.004},
    {"Target1_NearestHunPolyPtToTarPtScale", 71, 1, 0.004},
    {"Target1_NearestTarPolyPtToHunPolyScale", 72, 1, 0.004},
    {"Target1_NearestHunPolyPtToTarPolyScale", 73, 1, 0.004},
    {"Hunter_PolygonOriginPosX", 74, -4, 0.001},
    {"Hunter_PolygonOriginPosY", 78, -4, 0.001},
    {"Target1_PolygonOriginPosX", 82, -4, 0.001},
    {"Target1_PolygonOriginPosY", 86, -4, 0.001},
    {"Hunter_UnitPosX", 90, -4, 0.001},
    {"Hunter_UnitPosY", 94, -4, 0.001},
    {"Target1_UnitPosX", 98, -4, 0.001},
    {"Target1_UnitPosY", 102, -4, 0.001},
    {"Hunter_Pitch", 106, -2, kAngle},
    {"Hunter_Roll", 108, -2, kAngle},
    {"Target1_Pitch", 110, -2, kAngle},
    {"Target1_Roll", 112, -2, kAngle},
};

const std::vector<Field> kOldFields = {
    {"Target1_RangeLat", 6, -2, 0.001},     {"Target1_RangeLon", 8, -4, 0.001},
    {"Target1_RangeRateLat", 12, -2, 0.01}, {"Target1_RangeRateLon", 14, -2, 0.01},
    {"Target1_HunterPosX", 16, -4, 0.001},  {"Target1_HunterPosY", 20, -4, 0.001},
    {"Target1_PosX", 24, -4, 0.001},        {"Target1_PosY", 28, -4, 0.001},
    {"Hunter_Heading", 32, 2, kAngle},      {"Target1_Heading", 34, 2, kAngle},
};

RangePacket range() {
  return RangePacket(2).target(1, 1);
}

TEST(RangeData, each_field_knows_ordinary_numbers_and_its_marks) {
  for (const Field& field : kFields) expect_forms(2, field);
}

TEST(RangeData, each_field_of_the_old_form_knows_ordinary_numbers_and_its_marks) {
  for (const Field& field : kOldFields) expect_forms(0, field);
}

// A packet of `size` bytes in all, cut from a whole one, holds a field whose last byte is not the
// sum.
void expect_cut(unsigned char type, std::size_t size, const std::vector<Field>& fields) {
  RangePacket packet(type);
  if (type == 2) packet.target(1, 1);
  Scene scene;
  scene.take(packet.resize(size - 1));
  for (const Field& field : fields) {
    const unsigned char flags = field.at + field.bytes() < size ? kGood : kInvalid;
    EXPECT_EQ(scene.flags(field.name), flags) << field.name << " in a packet of " << size;
  }
}

TEST(RangeData, a_field_that_its_packet_is_too_short_for_is_invalid) {
  for (std::size_t size = 8; size <= 115; ++size) expect_cut(2, size, kFields);
  for (std::size_t size = 5; size <= 47; ++size) expect_cut(0, size, kOldFields);
}

TEST(RangeData, a_field_that_a_later_packet_does_not_hold_loses_its_value) {
  Scene scene;
  scene.take(range().i16(112, 500));
  EXPECT_EQ(scene.flags("Target1_Roll"), kGood);
  scene.take(range().resize(112));
  EXPECT_EQ(scene.flags("Target1_Roll"), kInvalid);
}

TEST(RangeData, a_packet_without_a_target_changes_nothing) {
  for (std::size_t size = 4; size <= 6; ++size) {
    Scene scene;
    scene.take(RangePacket(2).resize(size));
    EXPECT_EQ(scene.flags("Hunter_TargetTotal"), kInvalid);
    EXPECT_EQ(scene.flags("Target1_RangeLat"), kInvalid);
  }
  for (const unsigned char number : {0, 5, 255}) {
    Scene scene;
    scene.take(RangePacket(2).target(number, 4).i32(8, 1000));
    EXPECT_EQ(scene.flags("Hunter_TargetTotal"), kInvalid);
    for (int k = 1; k <= 4; ++k) {
      EXPECT_EQ(scene.flags("Target" + std::to_string(k) + "_RangeLat"), kInvalid);
    }
  }
}

TEST(RangeData, a_packet_is_about_its_target_alone) {
  Scene scene;
  scene.take(RangePacket(2).target(3, 4).i32(8, 7000));
  EXPECT_EQ(scene.number("Target3_RangeLat"), 7.0);
  EXPECT_EQ(scene.number("Hunter_TargetTotal"), 4.0);
  EXPECT_EQ(scene.flags("Target1_RangeLat"), kInvalid);
  EXPECT_EQ(scene.flags("Target2_RangeLat"), kInvalid);
  EXPECT_EQ(scene.flags("Target4_RangeLat"), kInvalid);
}

TEST(RangeData, the_old_form_is_about_the_first_target) {
  Scene scene;
  scene.take(RangePacket(0).i16(6, 7000));
  EXPECT_EQ(scene.number("Target1_RangeLat"), 7.0);
  EXPECT_EQ(scene.flags("Target2_RangeLat"), kInvalid);
}

TEST(RangeData, the_mode_is_a_whole_byte) {
  Scene scene;
  scene.take(range().u8(40, 3));
  EXPECT_EQ(scene.target(1).Get_ModeStatus(), Enum::Cast<Enum::RNG_RANGE_MODE>(3));
  scene.take(range().u8(40, 0xC0));
  EXPECT_EQ(scene.target(1).Get_ModeStatus(), Enum::RNG_RANGE_MODE_UNKNOWN);
  EXPECT_EQ(scene.flags("Target1_ModeStatus"), kGood);
  scene.take(range().u8(40, 255));
  EXPECT_EQ(scene.flags("Target1_ModeStatus"), kInvalid);
  scene.take(range().resize(40));
  EXPECT_EQ(scene.flags("Target1_ModeStatus"), kInvalid);
}

TEST(RangeData, the_mode_of_the_old_form_is_the_top_two_bits) {
  Scene scene;
  for (const auto& [byte, mode] :
       {std::pair{0x00, 0}, {0x3F, 0}, {0x7F, 1}, {0x80, 2}, {0xFF, 3}}) {
    scene.take(RangePacket(0).u8(36, static_cast<unsigned char>(byte)));
    EXPECT_EQ(scene.number("Target1_ModeStatus"), mode);
  }
  scene.take(RangePacket(0).resize(36));
  EXPECT_EQ(scene.flags("Target1_ModeStatus"), kInvalid);
}

TEST(RangeData, a_second_longitudinal_range_of_the_old_form_says_that_there_is_none) {
  Scene scene;
  scene.take(RangePacket(0).i32(8, 0x8000000));
  EXPECT_EQ(scene.flags("Target1_RangeLon"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_RangeRes"), kInvalid);
  scene.take(RangePacket(0).i32(8, 0x8000001));
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeLon"), 134217.729);
  scene.take(range().i32(12, 0x8000000));
  EXPECT_DOUBLE_EQ(scene.number("Target1_RangeLon"), 134217.728);
}

TEST(RangeData, the_second_mark_of_the_old_form_respects_the_key) {
  Scene scene;
  scene.bar("Target1_RangeLon").take(RangePacket(0).i32(8, 0x8000000));
  EXPECT_EQ(scene.flags("Target1_RangeLon"), kRejected);
}

TEST(RangeData, a_feature_point_that_is_not_known_is_invalid_and_one_that_is_off_is_0) {
  Scene scene;
  scene.take(range().u8(61, 17).u16(62, 1234));
  EXPECT_EQ(scene.number("Target1_FeatPointType"), 17);
  EXPECT_EQ(scene.number("Target1_FeatPointId"), 1234);
  scene.take(range());
  EXPECT_EQ(scene.number("Target1_FeatPointType"), 0);
  EXPECT_EQ(scene.number("Target1_FeatPointId"), 0);
  scene.take(range().u8(61, 254).u16(62, 65534));
  EXPECT_EQ(scene.flags("Target1_FeatPointType"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_FeatPointId"), kInvalid);
  scene.take(range().u8(61, 253).u16(62, 65533));
  EXPECT_EQ(scene.number("Target1_FeatPointType"), 253);
  EXPECT_EQ(scene.number("Target1_FeatPointId"), 65533);
  scene.take(range().u8(61, 255).u16(62, 65535));
  EXPECT_EQ(scene.flags("Target1_FeatPointType"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_FeatPointId"), kInvalid);
  scene.take(range().resize(61));
  EXPECT_EQ(scene.flags("Target1_FeatPointType"), kInvalid);
  EXPECT_EQ(scene.flags("Target1_FeatPointId"), kInvalid);
}

TEST(RangeData, a_value_before_any_time_is_good_and_timeless) {
  Scene scene;
  scene.main().Inv_Nano();
  scene.take(range().i32(8, 5000));
  EXPECT_EQ(scene.flags("Target1_RangeLat"), Lib::Flags::Timeless);
}

// Every value that a packet of range data leaves good in an otherwise full scene.
Scene& fill(Scene& scene) {
  // a square of 2 m, and one sensor of the long form
  const Bytes corners =
      join({little(1000, 2), little(-1000, 2), little(1000, 2), little(1000, 2), little(-1000, 2),
            little(1000, 2), little(-1000, 2), little(-1000, 2)});
  for (const unsigned char vehicle : {0, 1}) {
    scene.take(RangePacket(5).resize(10).u8(6, vehicle).u8(7, 4).u8(9, 3).append(corners));
  }
  Bytes sensor(20, 1);
  scene.take(RangePacket(6).resize(10).u8(7, 1).u8(9, 0x40).append(join({sensor, Bytes(8)})));
  // axis X of the local frame is north
  scene.main().Set_Hunter_RefHeading(0.0);
  return scene;
}

RangePacket full_packet() {
  return range()
      .i32(8, 3000)
      .i32(12, 4000)
      .i16(16, 200)
      .i16(18, -300)
      .i16(50, 1000)
      .i16(54, 10)
      .i16(56, 10)
      .append(join({little(1, 4), {1, 1}}));
}

// The values that the packet brings, or that are computed from it.
std::vector<std::string> values_of_packet() {
  Scene after;
  fill(after).at(kNow + 1).take(full_packet());
  std::vector<std::string> names;
  const auto note = [&](const std::string& name) {
    if (after.value(name).nano == kNow + 1) names.push_back(name);
  };
  {
    const std::string prefix;
#define VALUE(value, ...) note(prefix + #value);
#define OWN(...)
#include "rng/Rng_ComDataMain.def"
  }
  {
    const std::string prefix = "Target1_";
#define VALUE(value, ...) note(prefix + #value);
#include "rng/Rng_ComDataTarget.def"
  }
  return names;
}

TEST(RangeData, a_value_whose_key_is_off_is_rejected) {
  const std::vector<std::string> names = values_of_packet();
  // 39 fields, mode, total and feature; the rest is computed
  EXPECT_GT(names.size(), 42U);
  for (const std::string& name : names) {
    Scene scene;
    fill(scene).bar(name).take(full_packet());
    EXPECT_EQ(scene.flags(name), kRejected) << name;
    EXPECT_EQ(scene.value(name).number, 0.0) << name;
  }
}

TEST(RangeData, with_every_key_off_all_is_rejected) {
  Scene scene;
  const std::vector<std::string> names = values_of_packet();
  scene.key().Reset(false);
  fill(scene).take(full_packet());
  for (const std::string& name : names) EXPECT_EQ(scene.flags(name), kRejected) << name;
  for (const char* name :
       {"Target1_PolygonPointsPosX", "Target1_IsoPolygonPointsPcY",
        "Target1_Range_SensorPointsDist2d", "Target1_Range_SensorPointsTargetVisible",
        "Hunter_PolygonPointsPosX", "Hunter_SensorPointsPosX", "Hunter_SensorRegionNearCentrePosY",
        "Hunter_IsoSensorRegionFarCentrePcX"}) {
    for (const std::size_t index : {0, 1, 63}) {
      EXPECT_EQ(scene.entry(name, index).flags, kRejected) << name;
    }
  }
}

TEST(RangeData, a_key_that_comes_on_later_finds_its_values) {
  Scene scene;
  scene.key().Reset(false);
  fill(scene).take(full_packet());
  scene.key().Reset(true);
  fill(scene).take(full_packet());
  EXPECT_EQ(scene.number("Target1_RangeRes"), 5.0);
  EXPECT_EQ(scene.entry("Target1_PolygonPointsPosX", 3).flags, kGood);
  EXPECT_EQ(scene.entry("Target1_PolygonPointsPosX", 4).flags, kInvalid);
  EXPECT_EQ(scene.entry("Target1_PolygonPointsPosX", 255).flags, kInvalid);
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsDist2d", 0).flags, kGood);
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsDist2d", 63).flags, kInvalid);
}

TEST(RangeData, the_slow_channel_is_that_of_the_packets_target) {
  Scene scene;
  // channel 14: the target's lever arm, 1.5 m along x
  scene.take(RangePacket(2).target(2, 2).channel(14, little(1500, 3)));
  EXPECT_DOUBLE_EQ(scene.number("Target2_DisplacementArmX"), 1.5);
  EXPECT_EQ(scene.flags("Target1_DisplacementArmX"), kInvalid);
  scene.take(RangePacket(0).channel(14, little(2500, 3)));
  EXPECT_DOUBLE_EQ(scene.number("Target1_DisplacementArmX"), 2.5);
}

TEST(RangeData, a_packet_too_short_for_its_channel_has_none) {
  Scene scene;
  scene.take(range().channel(14, little(1500, 3)).resize(49));
  EXPECT_EQ(scene.flags("Target1_DisplacementArmX"), kInvalid);
  scene.take(RangePacket(0).channel(14, little(1500, 3)).resize(45));
  EXPECT_EQ(scene.flags("Target1_DisplacementArmX"), kInvalid);
  scene.take(range().channel(14, little(1500, 3)).resize(50));
  EXPECT_DOUBLE_EQ(scene.number("Target1_DisplacementArmX"), 1.5);
}

TEST(RangeData, a_frame_that_comes_with_the_packet_is_used_for_it) {
  Scene scene;
  // channel 12: axis X has heading 30 degrees
  scene.take(range().u16(38, 9000).channel(12, join({little(0, 4), little(300000000, 4)})));
  EXPECT_NEAR(scene.number("Target1_LocalAngle"), 60.0, 1e-9);
}

Bytes seen(int dist, unsigned char visible, unsigned char share) {
  return join({little(dist, 4), {visible, share}});
}

TEST(RangeData, sensors_are_read_as_far_as_the_packet_goes) {
  Scene scene;
  scene.take(range().append(join({seen(1500, 1, 40), seen(-7, 0, 50)})));
  EXPECT_DOUBLE_EQ(scene.number("Target1_Range_SensorPointsDist2d", 0), 1.5);
  EXPECT_EQ(scene.number("Target1_Range_SensorPointsTargetVisible", 0), 1);
  EXPECT_EQ(scene.number("Target1_Range_SensorPointsTargetOccupyFov", 0), 40);
  EXPECT_DOUBLE_EQ(scene.number("Target1_Range_SensorPointsDist2d", 1), -0.007);
  EXPECT_EQ(scene.number("Target1_Range_SensorPointsTargetVisible", 1), 0);
  EXPECT_EQ(scene.number("Target1_Range_SensorPointsTargetOccupyFov", 1), 50);
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsDist2d", 2).flags, kInvalid);
  // one byte less: the second sensor is not whole
  scene.take(range().append(join({seen(1500, 1, 40), seen(-7, 0, 50)})).resize(125));
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsDist2d", 0).flags, kGood);
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsDist2d", 1).flags, kInvalid);
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsTargetVisible", 1).flags, kInvalid);
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsTargetOccupyFov", 1).flags, kInvalid);
}

TEST(RangeData, what_a_sensor_says_knows_the_marks) {
  Scene scene;
  scene.take(range().append(
      join({seen(INT32_MIN, 255, 255), seen(INT32_MIN + 1, 254, 0), seen(INT32_MAX, 0, 254)})));
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsDist2d", 0).flags, kInvalid);
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsTargetVisible", 0).flags, kInvalid);
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsTargetOccupyFov", 0).flags, kInvalid);
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsDist2d", 1).flags, kUnder);
  EXPECT_DOUBLE_EQ(scene.entry("Target1_Range_SensorPointsDist2d", 1).number, -2147483.647);
  EXPECT_EQ(scene.number("Target1_Range_SensorPointsTargetVisible", 1), 254);
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsDist2d", 2).flags, kOver);
  EXPECT_DOUBLE_EQ(scene.entry("Target1_Range_SensorPointsDist2d", 2).number, 2147483.647);
}

TEST(RangeData, sensors_beyond_the_run_are_dropped) {
  Bytes many;
  for (int k = 0; k < 70; ++k) many = join({many, seen(k, 0, 0)});
  Scene scene;
  scene.take(range().append(many));
  EXPECT_DOUBLE_EQ(scene.number("Target1_Range_SensorPointsDist2d", 63), 0.063);
  // and a shorter packet takes the later ones back, one that was not known in between too
  Bytes hole = many;
  for (std::size_t k = 0; k < 6; ++k) hole[5 * 6 + k] = seen(INT32_MIN, 255, 255)[k];
  scene.take(range().append(hole));
  scene.take(range().append(Bytes(many.begin(), many.begin() + 5 * 6)));
  EXPECT_EQ(scene.entry("Target1_Range_SensorPointsDist2d", 4).flags, kGood);
  for (std::size_t index = 5; index < 64; ++index) {
    EXPECT_EQ(scene.entry("Target1_Range_SensorPointsDist2d", index).flags, kInvalid);
    EXPECT_EQ(scene.entry("Target1_Range_SensorPointsTargetOccupyFov", index).flags, kInvalid);
  }
}

}  // namespace
}  // namespace Trel::Rng::Test
