#include "rng/Rng_Lane.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Rng_Scene.h"

namespace Trel::Rng::Test {
namespace {

const std::vector<Field> kFirstForm = {
    {"Lane_LineNumberAL", 6, 1, 1},         {"Lane_LineNumberAR", 7, 1, 1},
    {"Lane_DisAlongLine1", 8, -4, 0.001},   {"Lane_LatDisALtoA", 12, -2, 0.001},
    {"Lane_LatVelALtoA", 14, -2, 0.01},     {"Lane_LatAccALtoA", 16, -2, 0.01},
    {"Lane_LatDisARtoA", 18, -2, 0.001},    {"Lane_LatVelARtoA", 20, -2, 0.01},
    {"Lane_LatAccARtoA", 22, -2, 0.01},     {"Lane_LatDisLine1toA", 24, -2, 0.001},
    {"Lane_LatDisLine2toA", 26, -2, 0.001}, {"Lane_LatDisLine3toA", 28, -2, 0.001},
    {"Lane_LatDisLine4toA", 30, -2, 0.001}, {"Lane_LatDisLine5toA", 32, -2, 0.001},
    {"Lane_LatDisLine6toA", 34, -2, 0.001}, {"Lane_LatDisLine7toA", 36, -2, 0.001},
    {"Lane_LatDisLine8toA", 38, -2, 0.001}, {"Lane_LatDisALtoB", 40, -2, 0.001},
    {"Lane_LatDisARtoC", 42, -2, 0.001},    {"Lane_LineNumberBL", 44, 1, 1},
    {"Lane_LineNumberBR", 45, 1, 1},        {"Lane_LineNumberCL", 46, 1, 1},
    {"Lane_LineNumberCR", 47, 1, 1},
};
const std::vector<Field> kFirstExtension = {
    {"Lane_LatVelLine1toA", 58, -2, 0.01}, {"Lane_LatVelLine2toA", 60, -2, 0.01},
    {"Lane_LatVelLine3toA", 62, -2, 0.01}, {"Lane_LatVelLine4toA", 64, -2, 0.01},
    {"Lane_LatVelLine5toA", 66, -2, 0.01}, {"Lane_LatVelLine6toA", 68, -2, 0.01},
    {"Lane_LatVelLine7toA", 70, -2, 0.01}, {"Lane_LatVelLine8toA", 72, -2, 0.01},
};
const std::vector<Field> kSecondExtension = {
    {"Lane_LatDisLine1toB", 74, -2, 0.001},  {"Lane_LatDisLine2toB", 76, -2, 0.001},
    {"Lane_LatDisLine3toB", 78, -2, 0.001},  {"Lane_LatDisLine4toB", 80, -2, 0.001},
    {"Lane_LatDisLine5toB", 82, -2, 0.001},  {"Lane_LatDisLine6toB", 84, -2, 0.001},
    {"Lane_LatDisLine7toB", 86, -2, 0.001},  {"Lane_LatDisLine8toB", 88, -2, 0.001},
    {"Lane_LatDisLine1toC", 90, -2, 0.001},  {"Lane_LatDisLine2toC", 92, -2, 0.001},
    {"Lane_LatDisLine3toC", 94, -2, 0.001},  {"Lane_LatDisLine4toC", 96, -2, 0.001},
    {"Lane_LatDisLine5toC", 98, -2, 0.001},  {"Lane_LatDisLine6toC", 100, -2, 0.001},
    {"Lane_LatDisLine7toC", 102, -2, 0.001}, {"Lane_LatDisLine8toC", 104, -2, 0.001},
    {"Lane_CurvLine1atA", 106, -2, 0.0001},  {"Lane_CurvLine2atA", 108, -2, 0.0001},
    {"Lane_CurvLine3atA", 110, -2, 0.0001},  {"Lane_CurvLine4atA", 112, -2, 0.0001},
    {"Lane_CurvLine5atA", 114, -2, 0.0001},  {"Lane_CurvLine6atA", 116, -2, 0.0001},
    {"Lane_CurvLine7atA", 118, -2, 0.0001},  {"Lane_CurvLine8atA", 120, -2, 0.0001},
    {"Lane_CurvA", 122, -2, 0.0001},         {"Lane_CurvB", 124, -2, 0.0001},
    {"Lane_CurvC", 126, -2, 0.0001},         {"Lane_HeadAL", 128, -2, kAngle},
    {"Lane_HeadAR", 130, -2, kAngle},
};

TEST(LaneData, each_field_knows_ordinary_numbers_and_its_marks) {
  for (const auto* fields : {&kFirstForm, &kFirstExtension, &kSecondExtension}) {
    for (const Field& field : *fields) expect_forms(1, field);
  }
}

void expect_all(const Scene& scene, const std::vector<Field>& fields, unsigned char flags,
                std::size_t size) {
  for (const Field& field : fields) {
    EXPECT_EQ(scene.flags(field.name), flags) << field.name << " in a packet of " << size;
  }
}

TEST(LaneData, an_extension_is_read_from_packets_that_hold_the_whole_of_it) {
  for (std::size_t size = 58; size <= 140; ++size) {
    Scene scene;
    scene.take(RangePacket(1).resize(size - 1));
    expect_all(scene, kFirstForm, kGood, size);
    expect_all(scene, kFirstExtension, size > 74 ? kGood : kInvalid, size);
    expect_all(scene, kSecondExtension, size > 132 ? kGood : kInvalid, size);
  }
}

TEST(LaneData, a_field_that_its_packet_is_too_short_for_is_invalid) {
  for (std::size_t size = 5; size <= 58; ++size) {
    Scene scene;
    scene.take(RangePacket(1).resize(size - 1));
    for (const Field& field : kFirstForm) {
      const unsigned char flags = field.at + field.bytes() < size ? kGood : kInvalid;
      EXPECT_EQ(scene.flags(field.name), flags) << field.name << " in a packet of " << size;
    }
  }
}

TEST(LaneData, a_value_whose_key_is_off_is_rejected) {
  for (const auto* fields : {&kFirstForm, &kFirstExtension, &kSecondExtension}) {
    for (const Field& field : *fields) {
      Scene scene;
      scene.bar(field.name).take(RangePacket(1));
      EXPECT_EQ(scene.flags(field.name), kRejected) << field.name;
      EXPECT_EQ(scene.flags("Lane_LineNumberAL"),
                std::string(field.name).starts_with("Lane_LineNumber") ? kRejected : kGood);
    }
  }
}

TEST(LaneData, a_packet_brings_its_slow_channel) {
  Scene scene;
  // channel 8: the lever arm of point A
  scene.take(RangePacket(1).channel(8, join({little(1500, 3), little(-2500, 3), little(700, 2)})));
  EXPECT_DOUBLE_EQ(scene.number("Lane_PointAArmX"), 1.5);
  EXPECT_DOUBLE_EQ(scene.number("Lane_PointAArmY"), -2.5);
  EXPECT_DOUBLE_EQ(scene.number("Lane_PointAArmZ"), 0.7);
}

TEST(LaneData, a_packet_too_short_for_its_channel_has_none) {
  Scene scene;
  scene.take(RangePacket(1).channel(8, little(1500, 3)).resize(57));
  EXPECT_EQ(scene.flags("Lane_PointAArmX"), kInvalid);
  scene.take(RangePacket(1).channel(8, little(1500, 3)).resize(58));
  EXPECT_DOUBLE_EQ(scene.number("Lane_PointAArmX"), 1.5);
}

TEST(LaneData, iso_turns_every_lateral_value_and_curvature) {
  for (const auto* fields : {&kFirstForm, &kFirstExtension, &kSecondExtension}) {
    for (const Field& field : *fields) {
      const std::string name = field.name;
      if (name.starts_with("Lane_Lat") || name.starts_with("Lane_Curv")) {
        const std::string iso = "Lane_Iso" + name.substr(5);
        RangePacket packet(1);
        Scene scene;
        scene.take(put(packet, field, 123));
        EXPECT_DOUBLE_EQ(scene.number(iso), -123 * field.factor) << iso;
        scene.take(put(packet, field, 32767));
        EXPECT_EQ(scene.flags(iso), kUnder) << iso;
        EXPECT_DOUBLE_EQ(scene.value(iso).number, -32767 * field.factor) << iso;
        scene.take(put(packet, field, -32767));
        EXPECT_EQ(scene.flags(iso), kOver) << iso;
        scene.take(put(packet, field, -32768));
        EXPECT_EQ(scene.flags(iso), kInvalid) << iso;
        scene.bar(iso).take(put(packet, field, 1));
        EXPECT_EQ(scene.flags(iso), kRejected) << iso;
        EXPECT_EQ(scene.flags(name), kGood) << name;
      }
    }
  }
}

}  // namespace
}  // namespace Trel::Rng::Test
