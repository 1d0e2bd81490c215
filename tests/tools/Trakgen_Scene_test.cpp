#include "trakgen/Trakgen_Scene.h"

#include <gtest/gtest.h>

#include <cmath>

#include "trakgen/Trakgen_Wave.h"

namespace Trel::Trakgen {
namespace {

TEST(Wave, sine_and_cosine_agree_with_the_mathematics_library) {
  for (int i = -1000; i <= 1000; ++i) {
    const double turns = i * 0.0037;
    EXPECT_NEAR(sine(turns), std::sin(2 * kPi * turns), 1e-12) << turns;
    EXPECT_NEAR(cosine(turns), std::cos(2 * kPi * turns), 1e-12) << turns;
  }
}

TEST(Wave, directions_agree_with_the_mathematics_library) {
  for (int i = 0; i < 1000; ++i) {
    const double angle = -3.14 + i * 0.00628;
    const double x = 3 * std::cos(angle);
    const double y = 3 * std::sin(angle);
    EXPECT_NEAR(direction(x, y) * 2 * kPi, angle, 1e-10) << i;
  }
}

TEST(Wave, noise_has_mean_0_and_deviation_1) {
  double sum = 0;
  double squares = 0;
  const int count = 100000;
  for (int i = 0; i < count; ++i) {
    const double value = noise(1, static_cast<std::uint64_t>(i), 2);
    sum += value;
    squares += value * value;
  }
  // four deviations of a mean of so many: 4 / sqrt(100000) = 0.0126
  EXPECT_NEAR(sum / count, 0, 0.013);
  EXPECT_NEAR(squares / count, 1, 0.02);
}

TEST(Scene, time_advances_by_the_rate_without_rounding_drift) {
  const Scene scene(1, 0);
  const std::int64_t start = scene.at(0, 3).nano;
  EXPECT_EQ(scene.at(1, 3).nano - start, 333'333'333);
  EXPECT_EQ(scene.at(2, 3).nano - start, 666'666'666);
  EXPECT_EQ(scene.at(300'000, 3).nano - start, 100'000'000'000'000);
}

TEST(Scene, a_moment_reads_the_same_at_every_rate) {
  const Scene scene(1, 0);
  // 7.25 seconds
  const Sample coarse = scene.at(29, 4);
  const Sample fine = scene.at(725, 100);
  EXPECT_EQ(coarse.nano, Scene::nano_at(725, 100));
  EXPECT_EQ(coarse.nano, fine.nano);
  EXPECT_EQ(coarse.latitude, fine.latitude);
  EXPECT_EQ(coarse.rate_z, fine.rate_z);
  EXPECT_EQ(coarse.wheel_front_left, fine.wheel_front_left);
}

TEST(Scene, the_vehicle_was_switched_on_a_while_ago) {
  const Scene scene(1, 0);
  EXPECT_EQ(scene.at(0, 4).since_power_on, 42'000'000'000);
  EXPECT_EQ(scene.at(29, 4).since_power_on, 49'250'000'000);
  EXPECT_EQ(scene.at(29, 4).uptime, 49);
}

TEST(Scene, the_vehicle_stands_drives_and_stands_again) {
  const Scene scene(1, 0);
  EXPECT_EQ(scene.at(3, 1).speed, 0);
  EXPECT_GT(scene.at(30, 1).speed, 4);
  EXPECT_EQ(scene.at(62, 1).speed, 0);
}

TEST(Scene, speed_is_the_length_of_the_way_that_the_position_goes) {
  const Scene scene(1, 0);
  const std::uint64_t rate = 10;
  for (std::uint64_t i = 70; i < 500; i += 10) {
    const Sample before = scene.at(i - 10, rate);
    const Sample middle = scene.at(i, rate);
    const Sample after = scene.at(i + 10, rate);
    const double north = (after.latitude - before.latitude) * 111'200;
    const double east = (after.longitude - before.longitude) * 111'300 * std::cos(47.2 * kPi / 180);
    EXPECT_NEAR(std::hypot(north, east) / 2, middle.speed, 0.35) << "at second " << i / 10;
  }
}

TEST(Scene, the_heading_is_the_direction_of_the_velocity) {
  const Scene scene(1, 0);
  for (std::uint64_t i = 20; i < 50; ++i) {
    const Sample sample = scene.at(i, 1);
    const double radians = sample.heading * kPi / 180;
    EXPECT_NEAR(sample.velocity_north, sample.speed * std::cos(radians), 0.05);
    EXPECT_NEAR(sample.velocity_east, sample.speed * std::sin(radians), 0.05);
  }
}

TEST(Scene, the_sky_is_hidden_for_a_while_and_the_receiver_says_so) {
  const Scene scene(1, 0);
  EXPECT_TRUE(scene.at(46, 1).sky_visible);
  EXPECT_FALSE(scene.at(50, 1).sky_visible);
  EXPECT_EQ(scene.at(50, 1).satellites, 0);
  EXPECT_TRUE(scene.at(56, 1).sky_visible);
}

TEST(Scene, vehicles_and_seeds_differ_and_the_same_ones_do_not) {
  const Sample first = Scene(1, 0).at(1000, 100);
  EXPECT_EQ(Scene(1, 0).at(1000, 100).latitude, first.latitude);
  EXPECT_NE(Scene(2, 0).at(1000, 100).latitude, first.latitude);
  EXPECT_GT(std::abs(Scene(1, 1).at(1000, 100).latitude - first.latitude), 1e-4);
}

}  // namespace
}  // namespace Trel::Trakgen
