#include "rng/Rng_Polygon.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "Rng_Scene.h"

namespace Trel::Rng::Test {
namespace {

constexpr unsigned char kThreeValues = 0x40;

// A packet of corners (longitudinal, lateral, as numbers), of `form` without its count.
RangePacket polygon(unsigned char vehicle, unsigned char used, unsigned char first,
                    const std::vector<std::pair<int, int>>& corners, unsigned char form = 0) {
  const std::size_t width = (form & kThreeBytes) != 0 ? 3 : 2;
  RangePacket packet(5);
  packet.resize(10).u8(6, vehicle).u8(7, used).u8(8, first);
  packet.u8(9, static_cast<unsigned char>(form | (corners.size() - 1)));
  for (const auto& [lon, lat] : corners) {
    packet.append(little(lon, width)).append(little(lat, width));
    if ((form & kThreeValues) != 0) packet.append(little(-1, width));
  }
  return packet;
}

TEST(Polygon, byte_6_is_the_hunter_or_a_target) {
  for (const unsigned char vehicle : {0, 1, 2, 3, 4}) {
    Scene scene;
    scene.take(polygon(vehicle, 5, 0, {{1500, -700}}));
    for (const unsigned char other : {0, 1, 2, 3, 4}) {
      const std::string prefix = other == 0 ? "Hunter_" : "Target" + std::to_string(other) + "_";
      if (other == vehicle) {
        EXPECT_EQ(scene.number(prefix + "PolygonPointsUsed"), 5);
        EXPECT_DOUBLE_EQ(scene.number(prefix + "PolygonPointsLon", 0), 1.5);
        EXPECT_DOUBLE_EQ(scene.number(prefix + "PolygonPointsLat", 0), -0.7);
      } else {
        EXPECT_EQ(scene.flags(prefix + "PolygonPointsUsed"), kInvalid);
        EXPECT_EQ(scene.entry(prefix + "PolygonPointsLon", 0).flags, kInvalid);
      }
    }
  }
}

TEST(Polygon, a_vehicle_that_there_is_not_is_dropped) {
  for (const unsigned char vehicle : {5, 6, 255}) {
    Scene scene;
    scene.take(polygon(vehicle, 5, 0, {{1500, -700}}));
    for (const char* name :
         {"Hunter_PolygonPointsUsed", "Target1_PolygonPointsUsed", "Target4_PolygonPointsUsed"}) {
      EXPECT_EQ(scene.flags(name), kInvalid);
    }
  }
}

TEST(Polygon, numbers_of_three_bytes_are_finer) {
  Scene scene;
  scene.take(polygon(0, 1, 0, {{123456, -654321}}, kThreeBytes));
  EXPECT_DOUBLE_EQ(scene.number("Hunter_PolygonPointsLon", 0), 12.3456);
  EXPECT_DOUBLE_EQ(scene.number("Hunter_PolygonPointsLat", 0), -65.4321);
}

TEST(Polygon, a_third_number_is_stepped_over) {
  for (const unsigned char bytes : {0, 0x80}) {
    Scene scene;
    scene.take(polygon(0, 2, 0, {{1000, 2000}, {3000, 4000}},
                       static_cast<unsigned char>(bytes | kThreeValues)));
    const double factor = bytes == 0 ? 0.001 : 0.0001;
    EXPECT_DOUBLE_EQ(scene.number("Hunter_PolygonPointsLon", 0), 1000 * factor);
    EXPECT_DOUBLE_EQ(scene.number("Hunter_PolygonPointsLat", 0), 2000 * factor);
    EXPECT_DOUBLE_EQ(scene.number("Hunter_PolygonPointsLon", 1), 3000 * factor);
    EXPECT_DOUBLE_EQ(scene.number("Hunter_PolygonPointsLat", 1), 4000 * factor);
  }
}

TEST(Polygon, corners_go_in_from_the_first_index_on_and_others_stay) {
  Scene scene;
  scene.take(polygon(1, 4, 0, {{10, 11}, {20, 21}, {30, 31}}));
  scene.at(kNow + 5).take(polygon(1, 4, 2, {{300, 310}, {400, 410}}));
  EXPECT_DOUBLE_EQ(scene.entry("Target1_PolygonPointsLon", 1).number, 0.02);
  EXPECT_EQ(scene.entry("Target1_PolygonPointsLon", 1).nano, kNow);
  EXPECT_DOUBLE_EQ(scene.number("Target1_PolygonPointsLon", 2), 0.3);
  EXPECT_DOUBLE_EQ(scene.number("Target1_PolygonPointsLat", 3), 0.41);
  EXPECT_EQ(scene.entry("Target1_PolygonPointsLon", 4).flags, kInvalid);
}

TEST(Polygon, corners_beyond_the_run_are_cut) {
  Scene scene;
  scene.take(polygon(0, 255, 254, {{1, 2}, {3, 4}, {5, 6}, {7, 8}}));
  EXPECT_DOUBLE_EQ(scene.number("Hunter_PolygonPointsLon", 254), 0.001);
  EXPECT_DOUBLE_EQ(scene.number("Hunter_PolygonPointsLat", 255), 0.004);
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLon", 0).flags, kInvalid);
  EXPECT_EQ(scene.number("Hunter_PolygonPointsUsed"), 255);
}

TEST(Polygon, numbers_know_their_marks) {
  Scene scene;
  scene.take(polygon(0, 4, 0, {{-32768, 0}, {-32767, 32767}, {0, -32768}, {32766, -32766}}));
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLon", 0).flags, kInvalid);
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLat", 0).flags, kGood);
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLon", 1).flags, kUnder);
  EXPECT_DOUBLE_EQ(scene.entry("Hunter_PolygonPointsLon", 1).number, -32.767);
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLat", 1).flags, kOver);
  EXPECT_DOUBLE_EQ(scene.entry("Hunter_PolygonPointsLat", 1).number, 32.767);
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLat", 2).flags, kInvalid);
  EXPECT_DOUBLE_EQ(scene.number("Hunter_PolygonPointsLon", 3), 32.766);
  scene.take(polygon(0, 2, 0, {{-8388608, 8388607}, {-8388607, 8388606}}, kThreeBytes));
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLon", 0).flags, kInvalid);
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLat", 0).flags, kOver);
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLon", 1).flags, kUnder);
  EXPECT_DOUBLE_EQ(scene.number("Hunter_PolygonPointsLat", 1), 838.8606);
}

TEST(Polygon, a_corner_that_is_no_longer_known_loses_its_value) {
  Scene scene;
  scene.take(polygon(0, 1, 0, {{1000, 1000}}));
  scene.take(polygon(0, 1, 0, {{-32768, 1000}}));
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLon", 0).flags, kInvalid);
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLon", 0).number, 0.0);
}

// The size, with its sum, that a packet must have: values * bytes * count + 11.
TEST(Polygon, a_packet_shorter_than_it_claims_changes_nothing) {
  for (const unsigned char form : {0x00, 0x40, 0x80, 0xC0}) {
    const std::size_t values = (form & kThreeValues) != 0 ? 3 : 2;
    const std::size_t bytes = (form & kThreeBytes) != 0 ? 3 : 2;
    const std::size_t least = values * bytes * 3 + 11;
    RangePacket whole = polygon(2, 3, 0, {{1, 2}, {3, 4}, {5, 6}}, form);
    ASSERT_EQ(whole.bytes().size(), least);
    for (std::size_t size = 5; size < least; ++size) {
      Scene scene;
      scene.take(RangePacket(whole).resize(size - 1));
      EXPECT_EQ(scene.flags("Target2_PolygonPointsUsed"), kInvalid) << size;
      EXPECT_EQ(scene.entry("Target2_PolygonPointsLon", 0).flags, kInvalid) << size;
    }
    Scene scene;
    scene.take(whole);
    EXPECT_EQ(scene.number("Target2_PolygonPointsUsed"), 3);
    scene.at(kNow + 1).take(whole.append({0}));
    EXPECT_EQ(scene.value("Target2_PolygonPointsUsed").nano, kNow + 1);
  }
}

TEST(Polygon, the_greatest_count_is_64) {
  std::vector<std::pair<int, int>> corners;
  for (int k = 0; k < 64; ++k) corners.emplace_back(k, -k);
  Scene scene;
  scene.take(polygon(4, 64, 0, corners));
  EXPECT_DOUBLE_EQ(scene.number("Target4_PolygonPointsLat", 63), -0.063);
}

TEST(Polygon, with_the_key_off_all_is_rejected) {
  Scene scene;
  scene.take(polygon(1, 4, 0, {{10, 11}}));
  scene.take(polygon(0, 4, 0, {{10, 11}}));
  scene.bar("Target1_PolygonPointsUsed").take(polygon(1, 4, 0, {{10, 11}}));
  EXPECT_EQ(scene.flags("Target1_PolygonPointsUsed"), kRejected);
  EXPECT_EQ(scene.entry("Target1_PolygonPointsLon", 0).flags, kRejected);
  EXPECT_EQ(scene.entry("Target1_PolygonPointsLat", 255).flags, kRejected);
  EXPECT_EQ(scene.flags("Hunter_PolygonPointsUsed"), kGood);
  scene.bar("Hunter_PolygonPointsUsed").take(polygon(0, 4, 0, {{10, 11}}));
  EXPECT_EQ(scene.flags("Hunter_PolygonPointsUsed"), kRejected);
  EXPECT_EQ(scene.entry("Hunter_PolygonPointsLon", 0).flags, kRejected);
}

}  // namespace
}  // namespace Trel::Rng::Test
