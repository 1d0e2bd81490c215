#include <random>

#include "Nav_DerivedScene.h"

namespace {

using nav_test::cosine;
using nav_test::dot;
using nav_test::expect_near;
using nav_test::norm;
using nav_test::Scene;
using nav_test::sine;
using nav_test::Three;

TEST(RotateOutputs, level_axes_do_not_know_the_heading) {
  Scene scene;
  scene.attitude(90, 0, 0).acceleration(1, 2, 3).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Af, Al, Ad), {1, 2, 3});
}

TEST(RotateOutputs, with_the_nose_up_forward_goes_up_and_down_goes_forward) {
  Scene scene;
  scene.attitude(90, 10, 0).acceleration(1, 0, 0).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Af, Al, Ad), {cosine(10), 0, -sine(10)});
  scene.acceleration(0, 0, 1).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Af, Al, Ad), {sine(10), 0, cosine(10)});
  scene.acceleration(0, 1, 0).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Af, Al, Ad), {0, 1, 0});
}

TEST(RotateOutputs, with_the_right_side_down_right_goes_down_and_down_goes_left) {
  Scene scene;
  scene.attitude(90, 0, 20).acceleration(0, 1, 0).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Af, Al, Ad), {0, cosine(20), sine(20)});
  scene.acceleration(0, 0, 1).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Af, Al, Ad), {0, -sine(20), cosine(20)});
  scene.acceleration(1, 0, 0).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Af, Al, Ad), {1, 0, 0});
}

TEST(RotateOutputs, roll_turns_before_pitch) {
  Scene scene;
  // The body's down axis: roll takes it to the left by sin 20, what stays down pitch takes forward.
  scene.attitude(0, 10, 20).acceleration(0, 0, 1).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Af, Al, Ad),
              {sine(10) * cosine(20), -sine(20), cosine(10) * cosine(20)});
}

TEST(RotateOutputs, each_vector_in_body_axes_has_its_own_level_one) {
  Scene scene;
  scene.attitude(45, 90, 0);  // the nose up: level f = body z, level d = -body x
  scene.acceleration(1, 2, 3).rate(4, 5, 6).angular_acceleration(7, 8, 9);
  scene.data.SetJx(10), scene.data.SetJy(11), scene.data.SetJz(12);
  scene.data.SetFiltAx(13), scene.data.SetFiltAy(14), scene.data.SetFiltAz(15);
  scene.data.SetFiltJx(16), scene.data.SetFiltJy(17), scene.data.SetFiltJz(18);
  scene.data.SetFiltYx(19), scene.data.SetFiltYy(20), scene.data.SetFiltYz(21);
  scene.derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Af, Al, Ad), {3, 2, -1});
  expect_near(AXES_OF(scene.data, Wf, Wl, Wd), {6, 5, -4});
  expect_near(AXES_OF(scene.data, Yf, Yl, Yd), {9, 8, -7});
  expect_near(AXES_OF(scene.data, Jf, Jl, Jd), {12, 11, -10});
  expect_near(AXES_OF(scene.data, FiltAf, FiltAl, FiltAd), {15, 14, -13});
  expect_near(AXES_OF(scene.data, FiltJf, FiltJl, FiltJd), {18, 17, -16});
  expect_near(AXES_OF(scene.data, FiltYf, FiltYl, FiltYd), {21, 20, -19});
}

TEST(RotateOutputs, a_vector_with_an_axis_missing_stays_and_the_others_go_on) {
  Scene scene;
  scene.attitude(0, 0, 0).acceleration(1, 2, 3).rate(4, 5, 6);
  scene.data.InvAy();
  scene.derived.RotateOutputsCompute();
  EXPECT_FALSE(scene.data.IsAfValid());
  EXPECT_FALSE(scene.data.IsAdValid());
  expect_near(AXES_OF(scene.data, Wf, Wl, Wd), {4, 5, 6});
}

TEST(RotateOutputs, each_vector_has_a_key) {
  Scene scene;
  scene.attitude(0, 0, 0).acceleration(1, 2, 3).rate(4, 5, 6).velocity(1, 2, 3);
  scene.key.KMain().Bar_Acc_Fld();
  scene.key.KMain().Bar_Vel_Fld();
  scene.key.KMain().Bar_Leica();
  scene.derived.RotateOutputsCompute();
  EXPECT_FALSE(scene.data.IsAfValid());
  EXPECT_FALSE(scene.data.IsVfValid());
  EXPECT_FALSE(scene.data.IsLpsKappaValid());
  EXPECT_TRUE(scene.data.IsWfValid());
}

TEST(RotateOutputs, forward_velocity_is_along_the_heading_and_lateral_to_its_right) {
  Scene scene;
  scene.attitude(90, 10, 20).velocity(1, 2, 3).derived.RotateOutputsCompute();
  EXPECT_NEAR(scene.data.GetVf(), 2, 1e-12);
  EXPECT_NEAR(scene.data.GetVl(), -1, 1e-12);
  scene.attitude(30, 0, 0).velocity(1, 0, 0).derived.RotateOutputsCompute();
  EXPECT_NEAR(scene.data.GetVf(), cosine(30), 1e-12);
  EXPECT_NEAR(scene.data.GetVl(), -sine(30), 1e-12);
}

TEST(RotateOutputs, without_the_licensed_feature_velocity_alone_is_turned) {
  Scene scene;
  scene.without_feature().attitude(0, 0, 0).acceleration(1, 2, 3).rate(4, 5, 6).velocity(1, 0, 0);
  scene.derived.RotateOutputsCompute();
  EXPECT_FALSE(scene.data.IsAfValid());
  EXPECT_FALSE(scene.data.IsWdValid());
  EXPECT_TRUE(scene.data.IsVfValid());
}

TEST(RotateOutputs, an_approximate_attitude_turns_nothing) {
  Scene scene;
  scene.attitude(0, 0, 0).acceleration(1, 2, 3).velocity(1, 0, 0);
  scene.data.HitPitch().setApprox();
  scene.derived.RotateOutputsCompute();
  EXPECT_FALSE(scene.data.IsAfValid());
  EXPECT_FALSE(scene.data.IsVfValid());
  EXPECT_FALSE(scene.data.IsLpsOmegaValid());
}

TEST(RotateOutputs, level_and_east_is_the_origin_of_the_photogrammetric_angles) {
  Scene scene;
  scene.attitude(90, 0, 0).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, LpsOmega, LpsPhi, LpsKappa), {0, 0, 0});
  scene.attitude(90, 10, 0).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, LpsOmega, LpsPhi, LpsKappa), {0, -10, 0});
  scene.attitude(90, 0, 20).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, LpsOmega, LpsPhi, LpsKappa), {20, 0, 0});
  scene.attitude(60, 0, 0).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, LpsOmega, LpsPhi, LpsKappa), {0, 0, 30});
}

TEST(RotateOutputs, output_axes_that_are_the_vehicles_give_it_the_attitude) {
  Scene scene;
  scene.attitude(300, 10, 20);
  scene.data.SetVeh2OutHeading(0);
  scene.data.SetVeh2OutPitch(0);
  scene.data.SetVeh2OutRoll(0);
  scene.derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Ned2VehHeading, Ned2VehPitch, Ned2VehRoll), {300, 10, 20}, 1e-9);
}

TEST(RotateOutputs, output_axes_turned_in_the_vehicle_are_turned_back) {
  Scene scene;
  // The output axes look to the vehicle's right: the vehicle heads 90 degrees less, and a pitch of
  // the output axes is a fall of the vehicle's left side, a roll to the left.
  scene.attitude(30, 10, 0);
  scene.data.SetVeh2OutHeading(90);
  scene.data.SetVeh2OutPitch(0);
  scene.data.SetVeh2OutRoll(0);
  scene.derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Ned2VehHeading, Ned2VehPitch, Ned2VehRoll), {300, 0, -10}, 1e-9);
}

TEST(RotateOutputs, on_a_slope_the_attitude_is_told_from_the_surface) {
  Scene scene;
  scene.data.SetNed2SurfHeading(90);
  scene.data.SetNed2SurfPitch(10);
  scene.data.SetNed2SurfRoll(0);
  scene.attitude(90, 15, 0).derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Surf2OutHeading, Surf2OutPitch, Surf2OutRoll), {0, 5, 0}, 1e-9);
  scene.attitude(80, 0, 0).data.SetNed2SurfPitch(0);
  scene.derived.RotateOutputsCompute();
  expect_near(AXES_OF(scene.data, Surf2OutHeading, Surf2OutPitch, Surf2OutRoll), {-10, 0, 0}, 1e-9);
}

TEST(RotateOutputs, alignments_stay_without_key_or_input) {
  Scene scene;
  scene.attitude(0, 0, 0).derived.RotateOutputsCompute();
  EXPECT_FALSE(scene.data.IsNed2VehHeadingValid());
  EXPECT_FALSE(scene.data.IsSurf2OutHeadingValid());
  scene.data.SetVeh2OutHeading(0);
  scene.data.SetVeh2OutPitch(0);
  scene.data.SetVeh2OutRoll(0);
  scene.key.KMain().Bar_Ned2Veh();
  scene.derived.RotateOutputsCompute();
  EXPECT_FALSE(scene.data.IsNed2VehHeadingValid());
}

TEST(RotateOutputs, invalidating_takes_what_was_turned_and_nothing_else) {
  Scene scene;
  scene.attitude(10, 0, 0).acceleration(1, 2, 3).rate(4, 5, 6).velocity(3, 4, 0);
  scene.data.SetVeh2OutHeading(0);
  scene.data.SetVeh2OutPitch(0);
  scene.data.SetVeh2OutRoll(0);
  scene.data.SetNed2SurfHeading(0);
  scene.data.SetNed2SurfPitch(0);
  scene.data.SetNed2SurfRoll(0);
  scene.derived.RotateOutputsCompute();
  scene.derived.SpeedSlipCompute();
  EXPECT_TRUE(scene.data.IsSurf2OutRollValid());

  scene.derived.RotateOutputsInvalidate();
  EXPECT_FALSE(scene.data.IsAfValid());
  EXPECT_FALSE(scene.data.IsWdValid());
  EXPECT_FALSE(scene.data.IsVfValid());
  EXPECT_FALSE(scene.data.IsVlValid());
  EXPECT_FALSE(scene.data.IsLpsOmegaValid());
  EXPECT_FALSE(scene.data.IsNed2VehHeadingValid());
  EXPECT_FALSE(scene.data.IsSurf2OutRollValid());
  EXPECT_TRUE(scene.data.IsAxValid());
  EXPECT_TRUE(scene.data.IsVeh2OutHeadingValid());
  EXPECT_TRUE(scene.data.IsTrackValid());
  EXPECT_TRUE(scene.data.IsSlipValid());
  EXPECT_TRUE(scene.data.IsCurvatureValid());
}

TEST(RotateOutputs, lengths_and_angles_between_vectors_survive) {
  constexpr unsigned int kSeed = 20260117;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> axis(-20, 20);
  std::uniform_real_distribution<double> angle(-180, 180);
  Scene scene;
  for (int i = 0; i < 200; ++i) {
    const Three a = {axis(random), axis(random), axis(random)};
    const Three b = {axis(random), axis(random), axis(random)};
    scene.attitude(angle(random) + 180, angle(random) / 2, angle(random));
    scene.acceleration(a.x, a.y, a.z).rate(b.x, b.y, b.z).velocity(a.x, a.y, a.z);
    scene.derived.RotateOutputsCompute();
    const Three level_a = AXES_OF(scene.data, Af, Al, Ad);
    const Three level_b = AXES_OF(scene.data, Wf, Wl, Wd);
    EXPECT_NEAR(norm(level_a), norm(a), 1e-12);
    EXPECT_NEAR(norm(level_b), norm(b), 1e-12);
    EXPECT_NEAR(dot(level_a, level_b), dot(a, b), 1e-10);
    EXPECT_NEAR(std::hypot(scene.data.GetVf(), scene.data.GetVl()), std::hypot(a.x, a.y), 1e-12);
  }
}

}  // namespace
