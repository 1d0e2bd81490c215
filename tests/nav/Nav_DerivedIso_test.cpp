#include <random>

#include "Nav_DerivedScene.h"
#include "library/ecef.h"

namespace {

using nav_test::cosine;
using nav_test::dot;
using nav_test::expect_near;
using nav_test::kDegree;
using nav_test::norm;
using nav_test::Scene;
using nav_test::sine;
using nav_test::Three;

// On the equator, at sea level.
constexpr double kGravity = 9.780318;
constexpr double kEarthRate = 7.292115e-5;  // rad/s
constexpr double kMeridianRadius = 6335439.327292843;
constexpr double kTransverseRadius = 6378137.0;

TEST(Iso8855, yaw_is_anticlockwise_from_east) {
  Scene scene;
  const auto yaw = [&scene](double heading) {
    scene.data.SetHeading(heading);
    scene.derived.Iso8855OutputsCompute(false);
    return scene.data.GetIsoYaw();
  };
  EXPECT_EQ(yaw(300), 150);
  EXPECT_EQ(yaw(30), 60);
  EXPECT_EQ(yaw(90), 0);
  EXPECT_EQ(yaw(0), 90);
  EXPECT_EQ(yaw(270), -180);
  EXPECT_EQ(yaw(271), 179);
}

TEST(Iso8855, pitch_changes_its_sign_and_roll_does_not) {
  Scene scene;
  scene.attitude(0, 10, 20).derived.Iso8855OutputsCompute(false);
  EXPECT_EQ(scene.data.GetIsoPitch(), -10);
  EXPECT_EQ(scene.data.GetIsoRoll(), 20);
}

TEST(Iso8855, angles_carry_the_stamp_of_their_source) {
  Scene scene;
  scene.data.InvNano();
  scene.attitude(0, 10, 20);  // Timeless
  scene.at(2000).derived.Iso8855OutputsCompute(false);
  EXPECT_TRUE(scene.data.VarIsoYaw().isTimeless());
  EXPECT_TRUE(scene.data.VarIsoPitch().isTimeless());
  EXPECT_TRUE(scene.data.VarIsoRoll().isTimeless());
  scene.attitude(0, 10, 20).derived.Iso8855OutputsCompute(false);
  EXPECT_EQ(scene.data.VarIsoYaw().get_nano(), 2000000000000);
  EXPECT_EQ(scene.data.VarIsoRoll().get_nano(), 2000000000000);
}

TEST(Iso8855, each_angle_needs_its_own_source_alone) {
  Scene scene;
  scene.data.SetPitch(10);
  scene.derived.Iso8855OutputsCompute(false);
  EXPECT_FALSE(scene.data.IsIsoYawValid());
  EXPECT_TRUE(scene.data.IsIsoPitchValid());
  EXPECT_FALSE(scene.data.IsIsoRollValid());
}

TEST(Iso8855, an_approximate_heading_gives_no_yaw) {
  Scene scene;
  scene.attitude(30, 0, 0).velocity(1, 2, 3).data.HitHeading().setApprox();
  scene.derived.Iso8855OutputsCompute(false);
  EXPECT_FALSE(scene.data.IsIsoYawValid());
  EXPECT_TRUE(scene.data.IsIsoPitchValid());
  EXPECT_FALSE(scene.data.IsIsoVnXValid());
}

TEST(Iso8855, the_earth_fixed_axes_are_east_north_up) {
  Scene scene;
  scene.attitude(30, 10, 20).velocity(1, 2, 3).derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoVn), {2, 1, -3});
}

TEST(Iso8855, heading_east_the_intermediate_axes_are_east_north_up) {
  Scene scene;
  scene.attitude(90, 10, 20).velocity(1, 2, 3).derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoVh), {2, 1, -3});
}

TEST(Iso8855, heading_north_forward_is_north_and_left_is_west) {
  Scene scene;
  scene.attitude(0, 0, 0).velocity(1, 2, 3).derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoVh), {1, -2, -3});
  expect_near(ISO_AXES_OF(scene.data, IsoVo), {1, -2, -3});
}

TEST(Iso8855, with_the_nose_up_level_travel_sinks_in_vehicle_axes) {
  Scene scene;
  scene.attitude(90, 10, 0).velocity(0, 1, 0).derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoVh), {1, 0, 0});
  expect_near(ISO_AXES_OF(scene.data, IsoVo), {cosine(10), 0, -sine(10)});
}

TEST(Iso8855, with_the_right_side_down_travel_to_the_right_rises_in_vehicle_axes) {
  Scene scene;
  scene.attitude(0, 0, 20).velocity(0, 1, 0).derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoVh), {0, -1, 0});
  expect_near(ISO_AXES_OF(scene.data, IsoVo), {0, -cosine(20), sine(20)});
}

// What a unit at rest on the equator senses is gravity alone, upwards: with its nose 10 degrees up
// and its right side 20 degrees down.
Scene& at_rest(Scene& scene, double heading) {
  scene.attitude(heading, 10, 20).position(0, 0, 0).velocity(0, 0, 0);
  return scene.acceleration(kGravity * sine(10), -kGravity * cosine(10) * sine(20),
                            -kGravity * cosine(10) * cosine(20));
}

TEST(Iso8855, a_unit_at_rest_has_no_acceleration) {
  for (const double heading : {0.0, 90.0, 200.0}) {
    Scene scene;
    at_rest(scene, heading).derived.Iso8855OutputsCompute(false);
    expect_near(ISO_AXES_OF(scene.data, IsoAn), {0, 0, 0}, 1e-9);
    expect_near(ISO_AXES_OF(scene.data, IsoAh), {0, 0, 0}, 1e-9);
    expect_near(ISO_AXES_OF(scene.data, IsoAo), {0, 0, 0}, 1e-9);
  }
}

TEST(Iso8855, acceleration_goes_from_body_to_earth_and_back_to_the_vehicle) {
  Scene scene;
  at_rest(scene, 90);
  // And 3 m/s^2 along the body axis x, which points 10 degrees up and east.
  scene.data.SetAx(scene.data.GetAx() + 3);
  scene.derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoAn), {3 * cosine(10), 0, 3 * sine(10)}, 1e-9);
  expect_near(ISO_AXES_OF(scene.data, IsoAh), {3 * cosine(10), 0, 3 * sine(10)}, 1e-9);
  expect_near(ISO_AXES_OF(scene.data, IsoAo), {3, 0, 0}, 1e-9);
}

TEST(Iso8855, the_right_of_the_body_is_against_the_y_axis_of_the_vehicle) {
  Scene scene;
  at_rest(scene, 0);
  scene.data.SetAy(scene.data.GetAy() + 3);
  scene.data.SetAz(scene.data.GetAz() + 2);
  scene.derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoAo), {0, -3, -2}, 1e-9);
}

TEST(Iso8855, travel_east_on_the_equator_lifts_by_the_turning_of_the_earth) {
  Scene scene;
  const double speed = 100;
  scene.attitude(0, 0, 0).position(0, 0, 0).velocity(0, speed, 0).acceleration(0, 0, -kGravity);
  scene.derived.Iso8855OutputsCompute(false);
  const double lift = (2 * kEarthRate + speed / kTransverseRadius) * speed;
  expect_near(ISO_AXES_OF(scene.data, IsoAn), {0, 0, lift}, 1e-9);
}

TEST(Iso8855, filtered_acceleration_has_a_chain_of_its_own) {
  Scene scene;
  at_rest(scene, 90).data.SetFiltAx(kGravity * sine(10) + 3);
  scene.data.SetFiltAy(scene.data.GetAy());
  scene.data.SetFiltAz(scene.data.GetAz());
  scene.derived.Iso8855OutputsCompute(true);
  expect_near(ISO_AXES_OF(scene.data, FiltIsoAn), {3 * cosine(10), 0, 3 * sine(10)}, 1e-9);
  expect_near(ISO_AXES_OF(scene.data, FiltIsoAh), {3 * cosine(10), 0, 3 * sine(10)}, 1e-9);
  expect_near(ISO_AXES_OF(scene.data, FiltIsoAo), {3, 0, 0}, 1e-9);
  expect_near(ISO_AXES_OF(scene.data, IsoAn), {0, 0, 0}, 1e-9);
}

TEST(Iso8855, a_unit_that_turns_with_the_earth_has_no_angular_rate) {
  Scene scene;
  // Level and heading north on the equator the earth's axis lies forward.
  scene.attitude(0, 0, 0).position(0, 0, 0).velocity(0, 0, 0).rate(kEarthRate / kDegree, 0, 0);
  scene.derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoWo), {0, 0, 0});
}

TEST(Iso8855, travel_over_the_round_earth_is_no_angular_rate) {
  Scene scene;
  // North along the equator's meridian the local axes pitch nose down.
  const double turning = 300 / kMeridianRadius;
  scene.attitude(0, 0, 0).position(0, 0, 0).velocity(300, 0, 0);
  scene.rate(kEarthRate / kDegree, -turning / kDegree, 0).derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoWo), {0, 0, 0});
}

TEST(Iso8855, angular_rate_goes_from_the_vehicle_to_the_earth) {
  Scene scene;
  // Heading east on the equator the earth's axis lies to the left; with the right side 20 degrees
  // down its part along the body's right is -cos 20, along the body's down sin 20.
  const double earth = kEarthRate / kDegree;
  scene.attitude(90, 0, 20).position(0, 0, 0).velocity(0, 0, 0);
  scene.rate(0, 50 - earth * cosine(20), earth * sine(20)).derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoWo), {0, -50, 0}, 1e-9);
  expect_near(ISO_AXES_OF(scene.data, IsoWh), {0, -50 * cosine(20), -50 * sine(20)}, 1e-9);
  expect_near(ISO_AXES_OF(scene.data, IsoWn), {0, -50 * cosine(20), -50 * sine(20)}, 1e-9);
}

TEST(Iso8855, angular_acceleration_goes_from_the_vehicle_to_the_earth) {
  Scene scene;
  scene.attitude(0, 10, 0).angular_acceleration(0, 0, 10);
  scene.data.SetFiltYx(10), scene.data.SetFiltYy(0), scene.data.SetFiltYz(0);
  scene.derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoYo), {0, 0, -10});
  expect_near(ISO_AXES_OF(scene.data, IsoYh), {10 * sine(10), 0, -10 * cosine(10)});
  expect_near(ISO_AXES_OF(scene.data, IsoYn), {0, 10 * sine(10), -10 * cosine(10)});
  expect_near(ISO_AXES_OF(scene.data, FiltIsoYo), {10, 0, 0});
  expect_near(ISO_AXES_OF(scene.data, FiltIsoYh), {10 * cosine(10), 0, 10 * sine(10)});
  expect_near(ISO_AXES_OF(scene.data, FiltIsoYn), {0, 10 * cosine(10), 10 * sine(10)});
}

TEST(Iso8855, without_a_position_there_is_neither_acceleration_nor_rate) {
  Scene scene;
  at_rest(scene, 0).rate(1, 2, 3).angular_acceleration(1, 2, 3).data.InvAlt();
  scene.derived.Iso8855OutputsCompute(false);
  EXPECT_FALSE(scene.data.IsIsoAnXValid());
  EXPECT_FALSE(scene.data.IsIsoWoXValid());
  EXPECT_TRUE(scene.data.IsIsoVnXValid());
  EXPECT_TRUE(scene.data.IsIsoYoXValid());
}

TEST(Iso8855, what_is_no_place_on_earth_is_passed_over_in_silence) {
  testing::internal::CaptureStderr();
  Scene scene;
  at_rest(scene, 0).rate(1, 2, 3);
  const auto computes = [&scene](double lat, double lon, double alt) {
    scene.position(lat, lon, alt).derived.Iso8855OutputsInvalidate();
    scene.derived.Iso8855OutputsCompute(false);
    return scene.data.IsIsoAnXValid() || scene.data.IsIsoWnXValid();
  };
  EXPECT_FALSE(computes(90, 0, 0));
  EXPECT_FALSE(computes(-90, 0, 0));
  EXPECT_FALSE(computes(90.1, 0, 0));
  EXPECT_FALSE(computes(1e300, 0, 0));
  EXPECT_FALSE(computes(HUGE_VAL, 0, 0));
  EXPECT_FALSE(computes(0, HUGE_VAL, 0));
  EXPECT_FALSE(computes(0, 0, -6.3e6));
  EXPECT_TRUE(computes(0, 1e300, 3e38));
  EXPECT_TRUE(computes(89.99999, 0, 0));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// One packet in which the acceleration east is `value`.
void accelerate_east(Scene& scene, double seconds, double value) {
  at_rest(scene.at(seconds), 90);
  scene.attitude(90, 0, 0).acceleration(value, 0, -kGravity);
}

TEST(Iso8855, jerk_is_the_change_of_the_acceleration_in_earth_axes) {
  Scene scene;
  accelerate_east(scene, 1000, 1);
  scene.derived.Iso8855OutputsCompute(false);
  EXPECT_FALSE(scene.data.IsIsoJnXValid());
  accelerate_east(scene, 1000.5, 2);
  scene.attitude(0, 0, 0).acceleration(0, 2, -kGravity);  // still east, now to the right
  scene.derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoJn), {2, 0, 0}, 1e-9);
  expect_near(ISO_AXES_OF(scene.data, IsoJh), {0, -2, 0}, 1e-9);
  expect_near(ISO_AXES_OF(scene.data, IsoJo), {0, -2, 0}, 1e-9);
}

TEST(Iso8855, a_moment_between_packets_has_no_jerk_and_does_not_disturb_it) {
  Scene scene;
  accelerate_east(scene, 1000, 1);
  scene.derived.Iso8855OutputsCompute(false);
  accelerate_east(scene, 1000.25, 50);
  scene.derived.Iso8855OutputsCompute(true);
  EXPECT_FALSE(scene.data.IsIsoJnXValid());
  EXPECT_TRUE(scene.data.IsIsoAnXValid());
  accelerate_east(scene, 1000.5, 2);
  scene.derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, IsoJn), {2, 0, 0}, 1e-9);
}

TEST(Iso8855, filtered_jerk_comes_from_jerk_in_earth_axes) {
  Scene scene;
  scene.data.SetLinJerkMovAvgLen(0);
  for (auto& average : scene.filters.iso_jerk_average) average.SetTimeInterval(0);
  accelerate_east(scene, 1000, 1);
  scene.derived.Iso8855OutputsCompute(false);
  accelerate_east(scene, 1000.5, 2);
  scene.derived.Iso8855OutputsCompute(false);
  expect_near(ISO_AXES_OF(scene.data, FiltIsoJn), {2, 0, 0}, 1e-9);
  expect_near(ISO_AXES_OF(scene.data, FiltIsoJh), {2, 0, 0}, 1e-9);
  expect_near(ISO_AXES_OF(scene.data, FiltIsoJo), {2, 0, 0}, 1e-9);
}

TEST(Iso8855, packets_whose_jerk_is_not_computed_have_none) {
  Scene scene;
  scene.form.jerk = false;
  accelerate_east(scene, 1000, 1);
  scene.derived.Iso8855OutputsCompute(false);
  accelerate_east(scene, 1000.5, 2);
  scene.derived.Iso8855OutputsCompute(false);
  EXPECT_FALSE(scene.data.IsIsoJnXValid());
}

TEST(Iso8855, each_group_has_a_key) {
  Scene scene;
  at_rest(scene, 0).rate(1, 2, 3).angular_acceleration(1, 2, 3);
  auto& key = scene.key.KMain();
  key.Reset(false);
  scene.derived.Iso8855OutputsCompute(false);
  EXPECT_FALSE(scene.data.IsIsoYawValid());
  EXPECT_FALSE(scene.data.IsIsoVnXValid());
  EXPECT_FALSE(scene.data.IsIsoAnXValid());
  EXPECT_FALSE(scene.data.IsIsoWoXValid());
  EXPECT_FALSE(scene.data.IsIsoYoXValid());

  key.Let_IsoVelInter();
  scene.key.PropagateKeyOr();
  scene.derived.Iso8855OutputsCompute(false);
  EXPECT_TRUE(scene.data.IsIsoVnXValid());
  EXPECT_TRUE(scene.data.IsIsoVhXValid());
  EXPECT_FALSE(scene.data.IsIsoVoXValid());
  EXPECT_FALSE(scene.data.IsIsoAnXValid());

  key.Let_IsoAngVelEarth();
  scene.key.PropagateKeyOr();
  scene.derived.Iso8855OutputsCompute(false);
  EXPECT_TRUE(scene.data.IsIsoWoXValid());
  EXPECT_TRUE(scene.data.IsIsoWnXValid());
  EXPECT_FALSE(scene.data.IsIsoAnXValid());
}

TEST(Iso8855, invalidating_takes_every_output) {
  Scene scene;
  scene.data.SetLinJerkMovAvgLen(0);
  for (auto& average : scene.filters.iso_jerk_average) average.SetTimeInterval(0);
  scene.data.SetFiltAx(1), scene.data.SetFiltAy(1), scene.data.SetFiltAz(1);
  scene.data.SetFiltYx(1), scene.data.SetFiltYy(1), scene.data.SetFiltYz(1);
  at_rest(scene, 0).rate(1, 2, 3).angular_acceleration(1, 2, 3);
  scene.derived.Iso8855OutputsCompute(false);
  at_rest(scene.at(1001), 0).derived.Iso8855OutputsCompute(false);

  const auto count = [&scene] {
    int valid = 0;
#define REAL(name, ...) valid += scene.data.Is##name##Valid() ? 1 : 0;
#include "nav/Nav_Iso.def"
#undef REAL
    return valid;
  };
  EXPECT_EQ(count(), 75);  // three angles and eight vectors in three systems
  scene.derived.Iso8855OutputsInvalidate();
  EXPECT_EQ(count(), 0);
  EXPECT_TRUE(scene.data.IsHeadingValid());
}

TEST(Iso8855, lengths_and_angles_between_vectors_survive_each_system) {
  constexpr unsigned int kSeed = 20260118;
  SCOPED_TRACE(kSeed);
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> axis(-20, 20);
  std::uniform_real_distribution<double> angle(-180, 180);
  Scene scene;
  for (int i = 0; i < 200; ++i) {
    const Three v = {axis(random), axis(random), axis(random)};
    const Three y = {axis(random), axis(random), axis(random)};
    const Three z = {axis(random), axis(random), axis(random)};
    scene.attitude(angle(random) + 180, angle(random) / 2, angle(random)).velocity(v.x, v.y, v.z);
    scene.angular_acceleration(y.x, y.y, y.z);
    scene.data.SetFiltYx(z.x), scene.data.SetFiltYy(z.y), scene.data.SetFiltYz(z.z);
    scene.derived.Iso8855OutputsCompute(false);
    EXPECT_NEAR(norm(ISO_AXES_OF(scene.data, IsoVn)), norm(v), 1e-12);
    EXPECT_NEAR(norm(ISO_AXES_OF(scene.data, IsoVh)), norm(v), 1e-12);
    EXPECT_NEAR(norm(ISO_AXES_OF(scene.data, IsoVo)), norm(v), 1e-12);
    const Three inter = ISO_AXES_OF(scene.data, IsoYh);
    const Three earth = ISO_AXES_OF(scene.data, IsoYn);
    EXPECT_NEAR(norm(inter), norm(y), 1e-12);
    EXPECT_NEAR(norm(earth), norm(y), 1e-12);
    EXPECT_NEAR(dot(inter, ISO_AXES_OF(scene.data, FiltIsoYh)), dot(y, z), 1e-10);
    EXPECT_NEAR(dot(earth, ISO_AXES_OF(scene.data, FiltIsoYn)), dot(y, z), 1e-10);
    // Velocity and angular acceleration meet in the same systems, so the angle between them is the
    // same in all three.
    const double between = dot(ISO_AXES_OF(scene.data, IsoVo), ISO_AXES_OF(scene.data, IsoYo));
    EXPECT_NEAR(dot(ISO_AXES_OF(scene.data, IsoVh), inter), between, 1e-10);
    EXPECT_NEAR(dot(ISO_AXES_OF(scene.data, IsoVn), earth), between, 1e-10);
  }
}

}  // namespace
