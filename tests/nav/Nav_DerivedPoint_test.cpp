#include "Nav_DerivedScene.h"

using namespace Trel;

namespace {

using nav_test::kDegree;
using nav_test::Scene;

constexpr double kRadian = 1 / kDegree;  // in degrees

// A vehicle whose mounting is known.
class DisplacedOutputs : public testing::Test, protected Scene {
 protected:
  DisplacedOutputs() {
    data.SetImu2VehHeading(0);
    data.SetImu2VehPitch(0);
    data.SetImu2VehRoll(0);
  }
  Nav::ComDataMeasurePt& point(unsigned int index, double x, double y, double z) {
    Nav::ComDataMeasurePt& result = data.DMeasurePt(index);
    result.SetPointXv(x);
    result.SetPointYv(y);
    result.SetPointZv(z);
    return result;
  }
};

TEST_F(DisplacedOutputs, a_point_at_the_unit_moves_as_the_unit) {
  const auto& unit = point(0, 0, 0, 0);
  attitude(30, 10, 20).rate(5, 6, 7).velocity(3, 4, 0).data.SetWd(10);
  derived.DisplacedOutputsCompute();
  EXPECT_NEAR(unit.GetTrack(), std::atan2(4, 3) * kRadian, 1e-12);
  EXPECT_NEAR(unit.GetSlip(), std::atan2(4, 3) * kRadian - 30, 1e-12);
  EXPECT_NEAR(unit.GetCurvature(), 10 * kDegree / 5, 1e-15);
  EXPECT_EQ(unit.VarTrack().get_nano(), 1000000000000);
}

TEST_F(DisplacedOutputs, a_point_ahead_is_swung_to_the_right_by_a_right_turn) {
  const auto& ahead = point(0, 1, 0, 0);
  // 1 rad/s about down at 1 m: 1 m/s to the right.
  attitude(0, 0, 0).rate(0, 0, kRadian).velocity(1, 0, 0).derived.DisplacedOutputsCompute();
  EXPECT_NEAR(ahead.GetTrack(), 45, 1e-9);
  EXPECT_NEAR(ahead.GetSlip(), 45, 1e-9);
  attitude(90, 0, 0).velocity(0, 1, 0).derived.DisplacedOutputsCompute();
  EXPECT_NEAR(ahead.GetTrack(), 135, 1e-9);
  EXPECT_NEAR(ahead.GetSlip(), 45, 1e-9);
}

TEST_F(DisplacedOutputs, a_point_to_the_right_falls_back_in_a_right_turn) {
  const auto& right = point(0, 0, 0.5, 0);
  data.SetWd(kRadian);
  attitude(0, 0, 0).rate(0, 0, kRadian).velocity(1, 0, 0).derived.DisplacedOutputsCompute();
  EXPECT_NEAR(right.GetTrack(), 0, 1e-9);
  EXPECT_NEAR(right.GetCurvature(), 2, 1e-9);  // 1 rad/s at 0.5 m/s
}

TEST_F(DisplacedOutputs, pitch_turns_what_moves_along_the_down_axis_forward) {
  const auto& ahead = point(0, 1, 0, 0);
  // Nose-up rate 1 rad/s at 1 m ahead: 1 m/s against the body's down axis, which points 30 degrees
  // forward of down: 0.5 m/s back.
  data.SetWd(kRadian);
  attitude(0, 30, 0).rate(0, kRadian, 0).velocity(1, 0, 0).derived.DisplacedOutputsCompute();
  EXPECT_NEAR(ahead.GetTrack(), 0, 1e-9);
  EXPECT_NEAR(ahead.GetCurvature(), 2, 1e-9);
}

TEST_F(DisplacedOutputs, roll_turns_what_moves_along_the_down_axis_left) {
  const auto& ahead = point(0, 1, 0, 0);
  // With the right side straight down the body's down axis points left; against it is right.
  attitude(0, 0, 90).rate(0, kRadian, 0).velocity(1, 0, 0).derived.DisplacedOutputsCompute();
  EXPECT_NEAR(ahead.GetTrack(), 45, 1e-9);
}

TEST_F(DisplacedOutputs, each_point_is_computed_for_itself) {
  const auto& first = point(0, 1, 0, 0);
  const auto& last = point(7, -1, 0, 0);
  attitude(0, 0, 0).rate(0, 0, kRadian).velocity(1, 0, 0).derived.DisplacedOutputsCompute();
  EXPECT_NEAR(first.GetTrack(), 45, 1e-9);
  EXPECT_NEAR(last.GetTrack(), -45, 1e-9);
  EXPECT_FALSE(data.DMeasurePt(3).IsTrackValid());
}

TEST_F(DisplacedOutputs, at_0_14_metres_per_second_over_ground_a_point_keeps_its_values) {
  auto& unit = point(0, 0, 0, 0);
  unit.SetTrack(12);
  attitude(0, 0, 0).rate(0, 0, 0).velocity(0, 0.1399, 5).derived.DisplacedOutputsCompute();
  EXPECT_EQ(unit.GetTrack(), 12);
  EXPECT_FALSE(unit.IsSlipValid());
  velocity(0, 0.1401, 5).derived.DisplacedOutputsCompute();
  EXPECT_NEAR(unit.GetTrack(), 90, 1e-12);
}

TEST_F(DisplacedOutputs, the_speed_that_counts_is_that_of_the_point) {
  const auto& ahead = point(0, 1, 0, 0);
  attitude(0, 0, 0).rate(0, 0, kRadian).velocity(0, -1, 0).derived.DisplacedOutputsCompute();
  EXPECT_FALSE(ahead.IsTrackValid());
  velocity(0, 0, 0).derived.DisplacedOutputsCompute();
  EXPECT_NEAR(ahead.GetTrack(), 90, 1e-9);
}

TEST_F(DisplacedOutputs, slip_wraps_as_the_vehicles_does) {
  const auto& unit = point(0, 0, 0, 0);
  attitude(180, 0, 0).rate(0, 0, 0).velocity(1, 0, 0).derived.DisplacedOutputsCompute();
  EXPECT_EQ(unit.GetSlip(), 180);
}

TEST_F(DisplacedOutputs, a_mounting_that_is_only_approximate_computes_nothing) {
  const auto& unit = point(0, 0, 0, 0);
  data.HitImu2VehRoll().setApprox();
  attitude(0, 0, 0).rate(0, 0, 0).velocity(1, 0, 0).derived.DisplacedOutputsCompute();
  EXPECT_FALSE(unit.IsTrackValid());
}

TEST_F(DisplacedOutputs, without_one_of_the_inputs_nothing_is_computed) {
  const auto& unit = point(0, 0, 0, 0);
  attitude(0, 0, 0).rate(0, 0, 0).velocity(1, 0, 0);
  data.InvWy();
  derived.DisplacedOutputsCompute();
  EXPECT_FALSE(unit.IsTrackValid());
  rate(0, 0, 0).data.InvVd();
  derived.DisplacedOutputsCompute();
  EXPECT_FALSE(unit.IsTrackValid());
  velocity(1, 0, 0).data.InvPitch();
  derived.DisplacedOutputsCompute();
  EXPECT_FALSE(unit.IsTrackValid());
}

TEST_F(DisplacedOutputs, a_point_without_one_of_its_places_is_passed_over) {
  auto& first = point(0, 1, 1, 1);
  first.InvPointZv();
  const auto& second = point(1, 0, 0, 0);
  attitude(0, 0, 0).rate(0, 0, 0).velocity(1, 0, 0).derived.DisplacedOutputsCompute();
  EXPECT_FALSE(first.IsTrackValid());
  EXPECT_TRUE(second.IsTrackValid());
}

TEST_F(DisplacedOutputs, each_value_of_a_point_has_a_key) {
  const auto& unit = point(2, 0, 0, 0);
  attitude(0, 0, 0).rate(0, 0, 0).velocity(3, 0, 0).velocity_accuracy(0, 0, 0).data.SetWd(1);
  auto& keys = key.KMeasurePt(2);
  keys.Bar_Track();
  keys.Bar_Slip();
  keys.Bar_Curvature();
  keys.Bar_AngleGradient();
  derived.DisplacedOutputsCompute();
  EXPECT_FALSE(unit.IsTrackValid());
  EXPECT_FALSE(unit.IsSlipValid());
  EXPECT_FALSE(unit.IsCurvatureValid());
  EXPECT_FALSE(unit.IsAngleGradientValid());

  keys.Let_Slip();
  keys.Bar_Point();
  derived.DisplacedOutputsCompute();
  EXPECT_FALSE(unit.IsSlipValid());
}

TEST_F(DisplacedOutputs, curvature_stays_without_a_turn_rate) {
  const auto& unit = point(0, 0, 0, 0);
  attitude(0, 0, 0).rate(0, 0, 0).velocity(3, 0, 0).derived.DisplacedOutputsCompute();
  EXPECT_TRUE(unit.IsTrackValid());
  EXPECT_FALSE(unit.IsCurvatureValid());
}

TEST_F(DisplacedOutputs, the_gradient_of_a_point_follows_the_rule_of_the_vehicles) {
  const auto& unit = point(0, 0, 0, 0);
  attitude(0, 0, 0).rate(0, 0, 0).velocity(10, 0, -1).velocity_accuracy(0.1, 0, 0);
  derived.DisplacedOutputsCompute();
  EXPECT_NEAR(unit.GetAngleGradient(), std::atan(0.1) * kRadian, 1e-9);
  velocity(1.9, 0, -1).derived.DisplacedOutputsCompute();
  EXPECT_FALSE(unit.IsAngleGradientValid());
}

}  // namespace
