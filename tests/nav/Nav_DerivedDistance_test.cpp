#include "Nav_DerivedScene.h"

namespace {

using nav_test::Scene;

void speeds(Scene& scene, double in_2d, double hold_2d, double in_3d, double hold_3d) {
  scene.data.SetSpeed2d(in_2d);
  scene.data.SetSpeed2dHold(hold_2d);
  scene.data.SetSpeed3d(in_3d);
  scene.data.SetSpeed3dHold(hold_3d);
}

void speed(Scene& scene, double value) {
  speeds(scene, value, value, value, value);
}

TEST(Distance, the_first_speed_gives_zero_however_large_it_is) {
  Scene scene;
  speed(scene, 300);
  scene.derived.DistanceCompute(false);
  EXPECT_TRUE(scene.data.IsDist2dValid());
  EXPECT_EQ(scene.data.GetDist2d(), 0);
  EXPECT_EQ(scene.data.GetDist3dHold(), 0);
}

TEST(Distance, it_grows_by_the_mean_of_two_speeds_times_the_time_between) {
  Scene scene;
  speed(scene, 10);
  scene.derived.DistanceCompute(false);
  speed(scene.at(1002), 20);
  scene.derived.DistanceCompute(false);
  EXPECT_DOUBLE_EQ(scene.data.GetDist2d(), 30);  // 2 s at 15 m/s
  EXPECT_EQ(scene.data.VarDist2d().get_nano(), 1002000000000);
  speed(scene.at(1003), 0);
  scene.derived.DistanceCompute(false);
  EXPECT_DOUBLE_EQ(scene.data.GetDist2d(), 40);  // and 1 s at 10 m/s
}

TEST(Distance, the_four_speeds_are_summed_apart) {
  Scene scene;
  speeds(scene, 1, 2, 3, 4);
  scene.derived.DistanceCompute(false);
  scene.at(1001).derived.DistanceCompute(false);
  EXPECT_DOUBLE_EQ(scene.data.GetDist2d(), 1);
  EXPECT_DOUBLE_EQ(scene.data.GetDist2dHold(), 2);
  EXPECT_DOUBLE_EQ(scene.data.GetDist3d(), 3);
  EXPECT_DOUBLE_EQ(scene.data.GetDist3dHold(), 4);
}

TEST(Distance, a_speed_that_is_not_valid_leaves_its_distance_and_no_other) {
  Scene scene;
  speed(scene, 1);
  scene.data.InvSpeed3d();
  scene.derived.DistanceCompute(false);
  EXPECT_FALSE(scene.data.IsDist3dValid());
  EXPECT_TRUE(scene.data.IsDist3dHoldValid());

  // Over a gap the sum goes on from the last good speed.
  speed(scene.at(1001), 1);
  scene.data.InvSpeed2d();
  scene.derived.DistanceCompute(false);
  speed(scene.at(1002), 1);
  scene.derived.DistanceCompute(false);
  EXPECT_DOUBLE_EQ(scene.data.GetDist2d(), 2);
  EXPECT_DOUBLE_EQ(scene.data.GetDist3d(), 1);  // started a second later
}

TEST(Distance, a_moment_between_packets_reads_the_distance_and_leaves_the_sum) {
  Scene scene;
  speed(scene, 10);
  scene.derived.DistanceCompute(false);
  speed(scene.at(1001), 10);
  scene.derived.DistanceCompute(false);

  speed(scene.at(1001.5), 20);
  scene.derived.DistanceCompute(true);
  EXPECT_DOUBLE_EQ(scene.data.GetDist2d(), 17.5);  // 10 and half a second at 15 m/s

  speed(scene.at(1002), 10);
  scene.derived.DistanceCompute(false);
  EXPECT_DOUBLE_EQ(scene.data.GetDist2d(), 20);
}

TEST(Distance, a_moment_between_packets_does_not_start_it) {
  Scene scene;
  speed(scene, 10);
  scene.derived.DistanceCompute(true);
  EXPECT_FALSE(scene.data.IsDist2dValid());
  speed(scene.at(1001), 10);
  scene.derived.DistanceCompute(false);
  EXPECT_EQ(scene.data.GetDist2d(), 0);
}

TEST(Distance, it_needs_key_time_and_feature) {
  Scene off;
  speed(off, 1);
  off.key.KMain().Bar_Dist();
  off.derived.DistanceCompute(false);
  EXPECT_FALSE(off.data.IsDist2dValid());

  Scene untimed;
  speed(untimed, 1);
  untimed.data.InvTime();
  untimed.derived.DistanceCompute(false);
  EXPECT_FALSE(untimed.data.IsDist2dValid());

  Scene lacking;
  speed(lacking.without_feature(), 1);
  lacking.derived.DistanceCompute(false);
  EXPECT_FALSE(lacking.data.IsDist2dValid());
}

TEST(Distance, a_reset_starts_it_anew) {
  Scene scene;
  speed(scene, 10);
  scene.derived.DistanceCompute(false);
  scene.at(1001).derived.DistanceCompute(false);
  scene.derived.Reset();
  scene.at(1002).derived.DistanceCompute(false);
  EXPECT_EQ(scene.data.GetDist2d(), 0);
}

}  // namespace
