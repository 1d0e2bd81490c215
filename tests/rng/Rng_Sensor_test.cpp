#include "rng/Rng_Sensor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Rng_Scene.h"

namespace Trel::Rng::Test {
namespace {

constexpr unsigned char kTenValues = 0x40;

struct Sensor {
  std::vector<int> numbers;
  std::uint64_t id;
};

RangePacket sensors(unsigned char used, unsigned char first, const std::vector<Sensor>& all,
                    unsigned char form = 0) {
  RangePacket packet(6);
  packet.resize(10).u8(7, used).u8(8, first);
  packet.u8(9, static_cast<unsigned char>(form | (all.size() - 1)));
  for (const Sensor& sensor : all) {
    for (const int number : sensor.numbers) {
      packet.append(little(number, (form & kThreeBytes) != 0 ? 3 : 2));
    }
    packet.append(little(static_cast<std::int64_t>(sensor.id), 8));
  }
  return packet;
}

const std::vector<std::string> kTen = {"Lon",  "Lat",      "Vert",    "Heading",  "Pitch",
                                       "Roll", "FovHoriz", "FovVert", "RangeMin", "RangeMax"};
const std::vector<std::string> kSeven = {"Lon",     "Lat",      "Heading", "FovHoriz",
                                         "FovVert", "RangeMin", "RangeMax"};

bool is_angle(const std::string& name) {
  return name == "Heading" || name == "Pitch" || name == "Roll" || name.starts_with("Fov");
}

double factor_of(const std::string& name, unsigned char form) {
  if ((form & kThreeBytes) != 0) return 0.0001;
  return is_angle(name) ? 0.01 : 0.001;
}

TEST(Sensors, each_form_has_its_numbers_and_factors_in_order) {
  for (const unsigned char form : {0x00, 0x40, 0x80, 0xC0}) {
    const auto& names = (form & kTenValues) != 0 ? kTen : kSeven;
    Sensor one{{}, 0x8000000000000001};
    Sensor two{{}, 7};
    for (std::size_t k = 0; k < names.size(); ++k) {
      one.numbers.push_back(static_cast<int>(100 + k));
      two.numbers.push_back(static_cast<int>(-200 - k));
    }
    Scene scene;
    scene.take(sensors(2, 0, {one, two}, form));
    EXPECT_EQ(scene.number("Hunter_SensorPointsUsed"), 2);
    for (std::size_t k = 0; k < names.size(); ++k) {
      const std::string name = "Hunter_SensorPoints" + names[k];
      const double factor = factor_of(names[k], form);
      EXPECT_DOUBLE_EQ(scene.number(name, 0), one.numbers[k] * factor) << name;
      EXPECT_DOUBLE_EQ(scene.number(name, 1), two.numbers[k] * factor) << name;
    }
    EXPECT_EQ(scene.main().Get_Hunter_SensorPointsID(0), 0x8000000000000001);
    EXPECT_EQ(scene.main().Get_Hunter_SensorPointsID(1), 7U);
  }
}

TEST(Sensors, the_short_form_takes_height_pitch_and_roll_back) {
  Scene scene;
  scene.take(sensors(1, 0, {{std::vector<int>(10, 5), 1}}, kTenValues));
  EXPECT_EQ(scene.entry("Hunter_SensorPointsVert", 0).flags, kGood);
  scene.take(sensors(1, 0, {{std::vector<int>(7, 5), 1}}));
  EXPECT_EQ(scene.entry("Hunter_SensorPointsVert", 0).flags, kInvalid);
  EXPECT_EQ(scene.entry("Hunter_SensorPointsPitch", 0).flags, kInvalid);
  EXPECT_EQ(scene.entry("Hunter_SensorPointsRoll", 0).flags, kInvalid);
  EXPECT_EQ(scene.entry("Hunter_SensorPointsRangeMax", 0).flags, kGood);
}

TEST(Sensors, numbers_know_their_marks) {
  for (std::size_t k = 0; k < kTen.size(); ++k) {
    const std::string name = "Hunter_SensorPoints" + kTen[k];
    std::vector<Sensor> all(3, {std::vector<int>(10, 0), 0});
    all[0].numbers[k] = -32768;
    all[1].numbers[k] = -32767;
    all[2].numbers[k] = 32767;
    Scene scene;
    scene.take(sensors(3, 0, all, kTenValues));
    const double factor = factor_of(kTen[k], 0);
    EXPECT_EQ(scene.entry(name, 0).flags, kInvalid) << name;
    EXPECT_EQ(scene.entry(name, 1).flags, kUnder) << name;
    EXPECT_DOUBLE_EQ(scene.entry(name, 1).number, -32767 * factor) << name;
    EXPECT_EQ(scene.entry(name, 2).flags, kOver) << name;
    for (auto& sensor : all) sensor.numbers[k] *= 256;  // -2^23, -2^23 + 256
    all[2].numbers[k] = 8388607;
    scene.take(sensors(3, 0, all, kTenValues | kThreeBytes));
    EXPECT_EQ(scene.entry(name, 0).flags, kInvalid) << name;
    EXPECT_EQ(scene.entry(name, 1).flags, kGood) << name;
    EXPECT_EQ(scene.entry(name, 2).flags, kOver) << name;
  }
}

TEST(Sensors, sensors_go_in_from_the_first_index_on_and_others_stay) {
  Scene scene;
  scene.take(sensors(3, 0, {{std::vector<int>(7, 10), 1}, {std::vector<int>(7, 20), 2}}));
  scene.at(kNow + 5).take(sensors(3, 1, {{std::vector<int>(7, 30), 3}}));
  EXPECT_EQ(scene.entry("Hunter_SensorPointsLon", 0).nano, kNow);
  EXPECT_DOUBLE_EQ(scene.entry("Hunter_SensorPointsLon", 0).number, 0.01);
  EXPECT_DOUBLE_EQ(scene.number("Hunter_SensorPointsLon", 1), 0.03);
  EXPECT_EQ(scene.entry("Hunter_SensorPointsLon", 2).flags, kInvalid);
  EXPECT_EQ(scene.entry("Hunter_SensorPointsID", 2).flags, kInvalid);
}

TEST(Sensors, sensors_beyond_the_run_are_cut) {
  Scene scene;
  scene.take(sensors(200, 63, {{std::vector<int>(7, 10), 1}, {std::vector<int>(7, 20), 2}}));
  EXPECT_DOUBLE_EQ(scene.number("Hunter_SensorPointsLon", 63), 0.01);
  EXPECT_EQ(scene.number("Hunter_SensorPointsUsed"), 64);
  scene.take(sensors(64, 255, {{std::vector<int>(7, 30), 1}}));
  EXPECT_DOUBLE_EQ(scene.number("Hunter_SensorPointsLon", 63), 0.01);
}

TEST(Sensors, those_of_another_vehicle_are_dropped) {
  Scene scene;
  scene.take(sensors(1, 0, {{std::vector<int>(7, 10), 1}}).u8(6, 1));
  EXPECT_EQ(scene.flags("Hunter_SensorPointsUsed"), kInvalid);
}

// The size, with its sum, that a packet must have: (values * bytes + 8) * count + 11.
TEST(Sensors, a_packet_shorter_than_it_claims_changes_nothing) {
  for (const unsigned char form : {0x00, 0x40, 0x80, 0xC0}) {
    const std::size_t values = (form & kTenValues) != 0 ? 10 : 7;
    const std::size_t bytes = (form & kThreeBytes) != 0 ? 3 : 2;
    const std::size_t least = (values * bytes + 8) * 2 + 11;
    const Sensor sensor{std::vector<int>(values, 5), 9};
    const RangePacket whole = sensors(2, 0, {sensor, sensor}, form);
    ASSERT_EQ(whole.bytes().size(), least);
    for (std::size_t size = 5; size < least; ++size) {
      Scene scene;
      scene.take(RangePacket(whole).resize(size - 1));
      EXPECT_EQ(scene.flags("Hunter_SensorPointsUsed"), kInvalid) << size;
      EXPECT_EQ(scene.entry("Hunter_SensorPointsLon", 0).flags, kInvalid) << size;
    }
    Scene scene;
    scene.take(whole);
    EXPECT_EQ(scene.main().Get_Hunter_SensorPointsID(1), 9U);
  }
}

TEST(Sensors, bits_4_and_5_are_not_of_the_count) {
  Scene scene;
  RangePacket packet = sensors(1, 0, {{std::vector<int>(7, 5), 9}});
  scene.take(packet.u8(9, 0x30));
  EXPECT_EQ(scene.number("Hunter_SensorPointsUsed"), 1);
}

TEST(Sensors, with_the_key_off_all_is_rejected) {
  Scene scene;
  const RangePacket packet = sensors(1, 0, {{std::vector<int>(10, 5), 9}}, kTenValues);
  scene.take(packet).bar("Hunter_SensorPointsUsed").take(packet);
  EXPECT_EQ(scene.flags("Hunter_SensorPointsUsed"), kRejected);
  for (const std::string& name : kTen) {
    EXPECT_EQ(scene.entry("Hunter_SensorPoints" + name, 0).flags, kRejected) << name;
  }
  EXPECT_EQ(scene.entry("Hunter_SensorPointsID", 0).flags, kRejected);
}

}  // namespace
}  // namespace Trel::Rng::Test
