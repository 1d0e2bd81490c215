#include "nav/Nav_DerivedRefFrame.h"

#include "Nav_DerivedScene.h"

using namespace Trel;

namespace {

using nav_test::cosine;
using nav_test::kDegree;
using nav_test::Scene;
using nav_test::sine;

// A frame whose radii are round numbers, at latitude 50 and longitude 10.
void define(Scene& scene, double heading) {
  scene.data.SetRefLat(50);
  scene.data.SetRefLon(10);
  scene.data.SetRefAlt(0);
  scene.data.SetRefHeading(heading);
  scene.data.SetRefHeadingCos(cosine(heading));
  scene.data.SetRefHeadingSin(sine(heading));
  scene.data.SetRefLatRadius(100000);
  scene.data.SetRefLonRadius(50000);
}

TEST(RefFrame, its_heading_lies_above_minus_180_and_up_to_180) {
  Scene scene;
  const auto heading = [&scene](double value) {
    Nav::ComputeRefFrame(scene.data, 0, 0, 0, value);
    return scene.data.GetRefHeading();
  };
  EXPECT_EQ(heading(180), 180);
  EXPECT_EQ(heading(-180), 180);
  EXPECT_EQ(heading(190), -170);
  EXPECT_EQ(heading(-190), 170);
  EXPECT_EQ(heading(0), 0);
}

TEST(RefFrame, its_sine_and_cosine_are_those_of_its_heading) {
  Scene scene;
  Nav::ComputeRefFrame(scene.data, 0, 0, 0, 30);
  EXPECT_NEAR(scene.data.GetRefHeadingSin(), 0.5, 1e-15);
  EXPECT_NEAR(scene.data.GetRefHeadingCos(), std::sqrt(0.75), 1e-15);
}

TEST(RefFrame, its_radii_are_metres_for_a_degree) {
  Scene scene;
  // On the equator the transverse radius is 6378137 m and the meridian radius 6335439.327292843 m.
  Nav::ComputeRefFrame(scene.data, 0, 20, 1000, 0);
  EXPECT_EQ(scene.data.GetRefLat(), 0);
  EXPECT_EQ(scene.data.GetRefLon(), 20);
  EXPECT_EQ(scene.data.GetRefAlt(), 1000);
  EXPECT_NEAR(scene.data.GetRefLatRadius(), 6336439.327292843 * kDegree, 1e-6);
  EXPECT_NEAR(scene.data.GetRefLonRadius(), 6379137 * kDegree, 1e-6);

  // At 60 degrees w = sqrt(1 - 0.75 e^2), and a degree of longitude is half as wide.
  Nav::ComputeRefFrame(scene.data, 60, 20, 0, 0);
  const double w = std::sqrt(1 - 0.75 * 0.0818191908426 * 0.0818191908426);
  EXPECT_NEAR(scene.data.GetRefLatRadius(), 6335439.327292843 / (w * w * w) * kDegree, 1e-6);
  EXPECT_NEAR(scene.data.GetRefLonRadius(), 6378137 / w * 0.5 * kDegree, 1e-6);
}

TEST(RefFrame, an_origin_beyond_the_pole_or_not_finite_is_met_in_silence) {
  testing::internal::CaptureStderr();
  Scene scene;
  Nav::ComputeRefFrame(scene.data, 1e307, 0, 1e30, 0);
  Nav::ComputeRefFrame(scene.data, 100, 0, 0, 0);
  EXPECT_LT(scene.data.GetRefLonRadius(), 0);  // east and west change places behind the pole
  Nav::ComputeRefFrame(scene.data, HUGE_VAL, 0, 0, 0);
  EXPECT_EQ(scene.data.GetRefLat(), 100);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(RefFrame, position_is_told_north_and_east_and_along_x_and_y) {
  Scene scene;
  define(scene, 30);
  scene.position(50.001, 10.004, 0).derived.RefFrameOutputsCompute();
  EXPECT_NEAR(scene.data.GetRefFrameNorthing(), 100, 1e-6);
  EXPECT_NEAR(scene.data.GetRefFrameEasting(), 200, 1e-6);
  EXPECT_NEAR(scene.data.GetRefFrameX(), 100 * cosine(30) + 200 * sine(30), 1e-6);
  EXPECT_NEAR(scene.data.GetRefFrameY(), 100 * sine(30) - 200 * cosine(30), 1e-6);
}

TEST(RefFrame, heading_east_x_is_east_and_y_is_north) {
  Scene scene;
  define(scene, 90);
  scene.position(50.001, 10.004, 0).velocity(1, 2, 0).derived.RefFrameOutputsCompute();
  EXPECT_NEAR(scene.data.GetRefFrameX(), 200, 1e-6);
  EXPECT_NEAR(scene.data.GetRefFrameY(), 100, 1e-6);
  EXPECT_NEAR(scene.data.GetRefFrameVelX(), 2, 1e-12);
  EXPECT_NEAR(scene.data.GetRefFrameVelY(), 1, 1e-12);
}

TEST(RefFrame, without_a_heading_there_is_northing_and_easting_alone) {
  Scene scene;
  define(scene, 0);
  scene.data.InvRefHeadingSin();
  scene.position(50.001, 10, 0).velocity(1, 2, 0).derived.RefFrameOutputsCompute();
  EXPECT_TRUE(scene.data.IsRefFrameNorthingValid());
  EXPECT_TRUE(scene.data.IsRefFrameEastingValid());
  EXPECT_FALSE(scene.data.IsRefFrameXValid());
  EXPECT_FALSE(scene.data.IsRefFrameYValid());
  EXPECT_FALSE(scene.data.IsRefFrameVelXValid());
}

TEST(RefFrame, velocity_keeps_its_length) {
  Scene scene;
  define(scene, -123);
  scene.velocity(3, 4, 5).derived.RefFrameOutputsCompute();
  EXPECT_NEAR(std::hypot(scene.data.GetRefFrameVelX(), scene.data.GetRefFrameVelY()), 5, 1e-12);
}

TEST(RefFrame, yaw_is_the_heading_from_that_of_the_frame_and_wraps) {
  Scene scene;
  define(scene, 30);
  scene.data.SetHeading(50);
  scene.derived.RefFrameOutputsCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetRefFrameYaw(), 20);
  scene.data.SetHeading(210);
  scene.derived.RefFrameOutputsCompute();
  EXPECT_EQ(scene.data.GetRefFrameYaw(), 180);
  scene.data.SetHeading(220);
  scene.derived.RefFrameOutputsCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetRefFrameYaw(), -170);

  define(scene, 180);
  scene.data.SetHeading(0);
  scene.derived.RefFrameOutputsCompute();
  EXPECT_EQ(scene.data.GetRefFrameYaw(), 180);
}

TEST(RefFrame, the_sign_of_the_track_is_the_reverse_of_that_of_yaw) {
  Scene scene;
  define(scene, 30);
  scene.data.SetHeading(50);
  scene.velocity(5 * cosine(50), 5 * sine(50), 0).derived.RefFrameOutputsCompute();
  EXPECT_NEAR(scene.data.GetRefFrameYaw(), 20, 1e-12);
  EXPECT_NEAR(scene.data.GetRefFrameTrack(), -20, 1e-12);
}

TEST(RefFrame, the_track_wraps) {
  Scene scene;
  define(scene, 0);
  scene.velocity(-5, 0, 0).derived.RefFrameOutputsCompute();  // -180 becomes 180
  EXPECT_EQ(scene.data.GetRefFrameTrack(), 180);
  define(scene, -100);
  scene.velocity(0, 5, 0).derived.RefFrameOutputsCompute();  // -(90 + 100) = -190
  EXPECT_DOUBLE_EQ(scene.data.GetRefFrameTrack(), 170);
}

TEST(RefFrame, up_to_2_metres_per_second_the_track_keeps_its_value) {
  Scene scene;
  define(scene, 0);
  scene.data.SetRefFrameTrack(9);
  scene.velocity(0, 2, 0).derived.RefFrameOutputsCompute();
  EXPECT_EQ(scene.data.GetRefFrameTrack(), 9);
  scene.velocity(0, 2.001, 0).derived.RefFrameOutputsCompute();
  EXPECT_DOUBLE_EQ(scene.data.GetRefFrameTrack(), -90);
}

TEST(RefFrame, each_of_the_four_has_a_key_and_inputs_of_its_own) {
  Scene scene;
  define(scene, 0);
  scene.position(50, 10, 0).attitude(1, 0, 0).velocity(5, 0, 0);
  auto& key = scene.key.KMain();
  key.Bar_RefFrame_Pos();
  key.Bar_RefFrame_Vel();
  key.Bar_RefFrame_Yaw();
  key.Bar_RefFrame_Track();
  scene.derived.RefFrameOutputsCompute();
  EXPECT_FALSE(scene.data.IsRefFrameNorthingValid());
  EXPECT_FALSE(scene.data.IsRefFrameVelXValid());
  EXPECT_FALSE(scene.data.IsRefFrameYawValid());
  EXPECT_FALSE(scene.data.IsRefFrameTrackValid());

  key.Let_RefFrame_Yaw();
  scene.data.InvLat();
  scene.data.InvVn();
  scene.derived.RefFrameOutputsCompute();
  EXPECT_TRUE(scene.data.IsRefFrameYawValid());
  EXPECT_FALSE(scene.data.IsRefFrameXValid());
}

TEST(RefFrame, without_a_frame_nothing_is_computed) {
  Scene scene;
  scene.position(50, 10, 0).attitude(1, 0, 0).velocity(5, 0, 0).derived.RefFrameOutputsCompute();
  EXPECT_FALSE(scene.data.IsRefFrameNorthingValid());
  EXPECT_FALSE(scene.data.IsRefFrameVelXValid());
  EXPECT_FALSE(scene.data.IsRefFrameYawValid());
  EXPECT_FALSE(scene.data.IsRefFrameTrackValid());
}

}  // namespace
