#include "Nav_DerivedScene.h"

namespace {

using nav_test::kDegree;
using nav_test::Scene;

TEST(SpeedSlip, speeds_are_the_length_of_the_velocity_over_ground_and_in_space) {
  Scene scene;
  scene.velocity(3, 4, 12).derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed2d(), 5);
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed3d(), 13);
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed2dHold(), 5);
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed3dHold(), 13);
  EXPECT_EQ(scene.data.VarSpeed2d().get_nano(), 1000000000000);
}

TEST(SpeedSlip, accuracies_of_the_axes_add_as_squares) {
  Scene scene;
  scene.velocity(3, 4, 12).velocity_accuracy(0.3, 0.4, 1.2).derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed2dAcc(), 0.5);
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed3dAcc(), 1.3);
}

TEST(SpeedSlip, a_speed_within_twice_its_accuracy_is_held_at_zero) {
  Scene scene;
  // 2d: twice 1.5 = 3 < 5. 3d: twice sqrt(1.5^2 + 6.5^2) = 13.34 > 13.
  scene.velocity(3, 4, 12).velocity_accuracy(1.5, 0, 6.5).derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed2dHold(), 5);
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed3dHold(), 0);
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed3d(), 13);
}

TEST(SpeedSlip, a_speed_of_exactly_twice_its_accuracy_is_held_at_zero) {
  Scene scene;
  scene.velocity(3, 4, 0).velocity_accuracy(2.5, 0, 0).derived.SpeedSlipCompute();
  EXPECT_EQ(scene.data.GetSpeed2dHold(), 0);
  EXPECT_EQ(scene.data.GetSpeed3dHold(), 0);
  EXPECT_FALSE(scene.data.IsTrackValid());
}

TEST(SpeedSlip, without_accuracies_the_limit_is_0_14_and_the_track_keeps_its_value) {
  Scene scene;
  scene.data.SetTrack(77);
  scene.velocity(0.1, 0, 0).derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed2d(), 0.1);
  EXPECT_EQ(scene.data.GetSpeed2dHold(), 0);
  EXPECT_FALSE(scene.data.IsSpeed2dAccValid());
  EXPECT_EQ(scene.data.GetTrack(), 77);

  scene.velocity(0.15, 0, 0).derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed2dHold(), 0.15);
  EXPECT_EQ(scene.data.GetTrack(), 0);
}

TEST(SpeedSlip, without_the_accuracy_down_0_07_stands_for_it_and_no_accuracy_in_space_is_set) {
  // Twice sqrt(0.0049 + 0.0049) = 0.19799.
  Scene scene;
  scene.velocity(0.16, 0, 0.1).derived.SpeedSlipCompute();  // 0.18868 in space
  EXPECT_EQ(scene.data.GetSpeed3dHold(), 0);
  scene.velocity(0.16, 0, 0.12).derived.SpeedSlipCompute();  // 0.2
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed3dHold(), 0.2);
  EXPECT_FALSE(scene.data.IsSpeed3dAccValid());
}

TEST(SpeedSlip, without_a_velocity_down_the_speed_in_space_stays) {
  Scene scene;
  scene.velocity(3, 4, 12).derived.SpeedSlipCompute();
  scene.data.InvVd();
  scene.data.SetVn(0);
  scene.derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed2d(), 4);
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed3d(), 13);
}

TEST(SpeedSlip, an_approximate_velocity_is_no_input) {
  Scene scene;
  scene.velocity(3, 4, 12);
  scene.data.HitVn().setApprox();
  scene.derived.SpeedSlipCompute();
  EXPECT_FALSE(scene.data.IsSpeed2dValid());
  EXPECT_FALSE(scene.data.IsTrackValid());
}

TEST(SpeedSlip, without_a_new_speed_nothing_behind_it_is_computed) {
  Scene scene;
  scene.attitude(0, 0, 0).velocity(3, 4, 0).derived.SpeedSlipCompute();
  const double track = scene.data.GetTrack();
  scene.velocity(0, 9, 0).key.KMain().Bar_Speed();
  scene.derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetSpeed2d(), 5);
  EXPECT_EQ(scene.data.GetTrack(), track);
  EXPECT_EQ(scene.data.GetSlip(), track);
}

TEST(SpeedSlip, track_is_clockwise_from_north_and_west_of_it_is_negative) {
  Scene scene;
  scene.velocity(1, 1, 0).derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetTrack(), 45);
  scene.velocity(-1, 1, 0).derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetTrack(), 135);
  scene.velocity(0, -1, 0).derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetTrack(), -90);
}

TEST(SpeedSlip, the_accuracy_of_the_track_weighs_each_axis_by_the_other) {
  Scene scene;
  scene.velocity(3, 4, 0).velocity_accuracy(0.1, 0.2, 0).derived.SpeedSlipCompute();
  // sqrt((0.1 x 4)^2 + (0.2 x 3)^2) / 25 = sqrt(0.52) / 25 radians
  EXPECT_NEAR(scene.data.GetTrackAcc(), std::sqrt(0.52) / 25 / kDegree, 1e-12);
}

TEST(SpeedSlip, slip_is_above_minus_180_and_up_to_180) {
  Scene scene;
  scene.data.SetHeading(0);
  scene.velocity(-1, 0, 0).derived.SpeedSlipCompute();  // track 180
  EXPECT_EQ(scene.data.GetSlip(), 180);
  scene.data.SetHeading(180);
  scene.velocity(1, 0, 0).derived.SpeedSlipCompute();  // track 0
  EXPECT_EQ(scene.data.GetSlip(), 180);
  scene.data.SetHeading(350);
  scene.velocity(0, 1, 0).derived.SpeedSlipCompute();  // track 90
  EXPECT_DOUBLE_EQ(scene.data.GetSlip(), 100);
  scene.data.SetHeading(1);
  scene.velocity(-1, 0, 0).derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetSlip(), 179);
}

TEST(SpeedSlip, slip_takes_the_track_of_the_same_packet) {
  Scene scene;
  scene.data.SetHeading(10);
  scene.data.SetTrack(0);
  scene.velocity(0, 1, 0).derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetSlip(), 80);
}

TEST(SpeedSlip, the_accuracy_of_slip_joins_those_of_track_and_heading) {
  Scene scene;
  scene.data.SetHeading(0);
  scene.data.SetHeadingAcc(4);
  scene.velocity(1, 0, 0);
  scene.data.SetTrackAcc(3);
  scene.derived.SpeedSlipCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetSlipAcc(), 5);
}

TEST(SpeedSlip, without_a_heading_slip_stays) {
  Scene scene;
  scene.data.SetSlip(12);
  scene.velocity(1, 0, 0).derived.SpeedSlipCompute();
  EXPECT_TRUE(scene.data.IsTrackValid());
  EXPECT_EQ(scene.data.GetSlip(), 12);
}

TEST(SpeedSlip, curvature_is_the_turn_rate_in_radians_over_the_speed_over_ground) {
  Scene scene;
  scene.data.SetWd(10);
  scene.velocity(3, 4, 12).derived.SpeedSlipCompute();
  EXPECT_NEAR(scene.data.GetCurvature(), 10 * kDegree / 5, 1e-15);
}

TEST(SpeedSlip, curvature_keeps_its_value_while_standing_still) {
  Scene scene;
  scene.data.SetWd(10);
  scene.data.SetCurvature(0.5);
  scene.velocity(0, 0, 0).velocity_accuracy(0, 0, 0).derived.SpeedSlipCompute();
  EXPECT_EQ(scene.data.GetCurvature(), 0.5);
  EXPECT_EQ(scene.data.GetSpeed2d(), 0);
}

TEST(SpeedSlip, track_slip_and_curvature_each_have_a_key) {
  Scene scene;
  scene.attitude(0, 0, 0).velocity(1, 0, 0).data.SetWd(1);
  scene.key.KMain().Bar_Track();
  scene.key.KMain().Bar_Slip();
  scene.key.KMain().Bar_Curvature();
  scene.derived.SpeedSlipCompute();
  EXPECT_FALSE(scene.data.IsTrackValid());
  EXPECT_FALSE(scene.data.IsSlipValid());
  EXPECT_FALSE(scene.data.IsCurvatureValid());

  scene.key.KMain().Let_Slip();
  scene.data.SetTrack(30);
  scene.derived.SpeedSlipCompute();
  EXPECT_EQ(scene.data.GetSlip(), 30);
}

TEST(SpeedSlip, without_the_licensed_feature_there_are_speeds_alone) {
  Scene scene;
  scene.without_feature().attitude(0, 0, 0).velocity(1, 0, 0).derived.SpeedSlipCompute();
  EXPECT_TRUE(scene.data.IsSpeed2dValid());
  EXPECT_FALSE(scene.data.IsTrackValid());
  EXPECT_FALSE(scene.data.IsSlipValid());
}

TEST(SpeedSlip, packets_without_licensed_features_need_none) {
  Scene scene;
  scene.form.licensed = false;
  scene.without_feature().velocity(1, 0, 0).derived.SpeedSlipCompute();
  EXPECT_TRUE(scene.data.IsTrackValid());
}

Scene& climbing(Scene& scene, double forward, double accuracy) {
  return scene.velocity(forward, 0, -forward / 10).velocity_accuracy(accuracy, 0, 0);
}

TEST(AngleGradient, going_up_is_positive) {
  Scene scene;
  climbing(scene, 10, 0.1).derived.AngleGradientCompute();
  EXPECT_NEAR(scene.data.GetAngleGradient(), std::atan(0.1) / kDegree, 1e-12);
}

TEST(AngleGradient, at_2_metres_per_second_it_is_told_and_at_1_9_it_is_invalid) {
  Scene scene;
  climbing(scene, 2, 0).derived.AngleGradientCompute();
  EXPECT_TRUE(scene.data.IsAngleGradientValid());
  climbing(scene, 1.9, 0).derived.AngleGradientCompute();
  EXPECT_FALSE(scene.data.IsAngleGradientValid());
  climbing(scene, 0, 0).derived.AngleGradientCompute();
  EXPECT_FALSE(scene.data.IsAngleGradientValid());
}

TEST(AngleGradient, more_than_a_degree_of_error_makes_it_invalid) {
  // 10 m/s x tan 1 degree = 0.17455 m/s
  Scene scene;
  climbing(scene, 10, 0.1745).derived.AngleGradientCompute();
  EXPECT_TRUE(scene.data.IsAngleGradientValid());
  climbing(scene, 10, 0.1746).derived.AngleGradientCompute();
  EXPECT_FALSE(scene.data.IsAngleGradientValid());
  scene.velocity(10, 0, 0).velocity_accuracy(0.11, 0.11, 0.11);  // 0.1905 together
  scene.data.SetAngleGradient(1);
  scene.derived.AngleGradientCompute();
  EXPECT_FALSE(scene.data.IsAngleGradientValid());
}

TEST(AngleGradient, with_an_input_not_valid_it_stays) {
  Scene scene;
  scene.data.SetAngleGradient(3);
  scene.velocity(0, 0, 0).derived.AngleGradientCompute();
  EXPECT_EQ(scene.data.GetAngleGradient(), 3);
  scene.velocity_accuracy(0, 0, 0).data.InvVd();
  scene.derived.AngleGradientCompute();
  EXPECT_EQ(scene.data.GetAngleGradient(), 3);
}

TEST(AngleGradient, without_key_or_feature_it_stays) {
  Scene off;
  off.key.KMain().Bar_AngleGradient();
  climbing(off, 10, 0).derived.AngleGradientCompute();
  EXPECT_FALSE(off.data.IsAngleGradientValid());
  Scene lacking;
  climbing(lacking.without_feature(), 10, 0).derived.AngleGradientCompute();
  EXPECT_FALSE(lacking.data.IsAngleGradientValid());
}

}  // namespace
