#include <gtest/gtest.h>

#include "library/ecef.h"
#include "library/mathematics.h"

namespace {

using namespace mathematics;
using Values = std::vector<double>;

constexpr const char* kLocalFile = "ecef_local.cpp";
constexpr double kEarthRate = 7.292115e-5;  // radians per second, published with WGS84

double gravity(double lat, double alt) {
  double g = 0;
  EXPECT_EQ(Lib__compute_local_gravity_magnitude(&g, radians(lat), alt), 0);
  return g;
}

TEST(Gravity, by_hand_at_equator_pole_and_middle) {
  EXPECT_EQ(gravity(0, 0), 9.780318);
  EXPECT_DOUBLE_EQ(gravity(90, 0), 9.780318 * 1.0053024);
  EXPECT_EQ(gravity(-90, 0), gravity(90, 0));
  // sin squared 45 = 1/2, sin squared 90 = 1
  EXPECT_DOUBLE_EQ(gravity(45, 0), 9.780318 * (1 + 0.0026512 - 0.0000059));
}

TEST(Gravity, falls_off_with_the_square_of_the_distance) {
  EXPECT_DOUBLE_EQ(gravity(0, 6367435.68), 9.780318 / 4);
  // 9.780318 (6367435.68 / 6377435.68)^2: twice 10 km over 6377.4 km less, 0.3134 %
  EXPECT_NEAR(gravity(0, 10000), 9.7497, 1e-4);
  EXPECT_GT(gravity(0, -1000), gravity(0, 0));
}

TEST(Gravity, points_down) {
  OwnedMatrix g(3, 1);
  ASSERT_EQ(Lib__compute_local_gravity(&g, radians(52), 120), 0);
  EXPECT_EQ(elements(g), (Values{0, 0, gravity(52, 120)}));
}

TEST(Curvature, by_hand_at_the_equator_and_published_at_the_poles) {
  double meridian = 0;
  double transverse = 0;
  ASSERT_EQ(Lib__compute_earth_curvature(&meridian, &transverse, 0), 0);
  EXPECT_EQ(meridian, 6335439.327292843);
  EXPECT_EQ(transverse, 6378137.0);
  // The polar radius of curvature of WGS84 is 6399593.6258 m.
  for (const double lat : {kRight, -kRight}) {
    ASSERT_EQ(Lib__compute_earth_curvature(&meridian, &transverse, lat), 0);
    EXPECT_NEAR(meridian, 6399593.6258, 1e-4);
    EXPECT_NEAR(transverse, 6399593.6258, 1e-4);
  }
}

TEST(Curvature, is_the_rate_at_which_positions_move) {
  for (double lat = -80; lat <= 80; lat += 10) {
    double meridian = 0;
    double transverse = 0;
    ASSERT_EQ(Lib__compute_earth_curvature(&meridian, &transverse, radians(lat)), 0);
    const auto at = [&](double north, double east) {
      const GeodeticPosition llh{radians(lat) + north, east, 0};
      EcefPosition xyz;
      EXPECT_EQ(Wgs842Ecef(&xyz, &llh), 0);
      return xyz;
    };
    constexpr double kStep = 1e-4;
    const auto distance = [](const EcefPosition& a, const EcefPosition& b) {
      return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z);
    };
    EXPECT_NEAR(distance(at(-kStep, 0), at(kStep, 0)) / (2 * kStep), meridian, 0.1);
    EXPECT_NEAR(distance(at(0, -kStep), at(0, kStep)) / (2 * kStep),
                transverse * std::cos(radians(lat)), 0.1);
  }
}

TEST(EarthRate, in_local_axes_by_hand) {
  OwnedMatrix rate(3, 1);
  ASSERT_EQ(Lib__compute_earth_local_projection(&rate, 0), 0);
  expect_near(rate, column({kEarthRate, 0, 0}), 0);
  ASSERT_EQ(Lib__compute_earth_local_projection(&rate, kRight), 0);
  expect_near(rate, column({0, 0, -kEarthRate}), 1e-19);
  ASSERT_EQ(Lib__compute_earth_local_projection(&rate, radians(-30)), 0);
  expect_near(rate, column({kEarthRate * std::sqrt(3.0) / 2, 0, kEarthRate / 2}), 1e-19);
}

TEST(EarthRate, is_the_earths_axis_turned_into_local_axes) {
  const GeodeticPosition llh{0.7, -2, 0};
  const OwnedMatrix axis = column({0, 0, kEarthRate});
  OwnedMatrix c(3, 3);
  OwnedMatrix expected(3, 1);
  OwnedMatrix rate(3, 1);
  ASSERT_EQ(Ecef2NedRotation(&c, &llh), 0);
  ASSERT_EQ(MatMultRAB(&expected, &c, &axis), 0);
  ASSERT_EQ(Lib__compute_earth_local_projection(&rate, 0.7), 0);
  expect_near(rate, expected, 1e-19);
}

OwnedMatrix transport(const GeodeticPosition& position, const OwnedMatrix& velocity) {
  OwnedMatrix rate(3, 1);
  EXPECT_EQ(Lib__compute_transport_rate(&rate, &position, &velocity), 0);
  return rate;
}

TEST(TransportRate, by_hand) {
  // North along the equator's meridian turns about west; east along the equator about north.
  expect_near(transport({0, 0, 0}, column({10, 0, 0})), column({0, -10 / 6335439.327292843, 0}),
              1e-20);
  expect_near(transport({0, 0, 1863}, column({0, 10, 0})), column({10 / 6380000.0, 0, 0}), 1e-20);
  expect_near(transport({0.5, 0, 0}, column({0, 0, 10})), column({0, 0, 0}), 0);
}

TEST(TransportRate, is_the_rate_at_which_the_local_axes_turn) {
  // One second later the axes have turned by the rate: C2 C1' = 1 - [rate x].
  const GeodeticPosition before{radians(50), radians(10), 2000};
  const OwnedMatrix velocity = column({30, -40, 5});
  double meridian = 0;
  double transverse = 0;
  ASSERT_EQ(Lib__compute_earth_curvature(&meridian, &transverse, before.lat), 0);
  const GeodeticPosition after{before.lat + 30 / (meridian + before.alt),
                               before.lon - 40 / ((transverse + before.alt) * std::cos(before.lat)),
                               before.alt - 5};
  OwnedMatrix c1(3, 3);
  OwnedMatrix c2(3, 3);
  OwnedMatrix turn(3, 3);
  ASSERT_EQ(Ecef2NedRotation(&c1, &before), 0);
  ASSERT_EQ(Ecef2NedRotation(&c2, &after), 0);
  ASSERT_EQ(MatMultRABt(&turn, &c2, &c1), 0);
  const OwnedMatrix rate = transport(before, velocity);
  OwnedMatrix skew(3, 3);
  ASSERT_EQ(Vec2SkewSym(&skew, &rate), 0);
  OwnedMatrix expected(3, 3);
  const OwnedMatrix unit = identity(3);
  ASSERT_EQ(MatSubRAB(&expected, &unit, &skew), 0);
  expect_near(turn, expected, 1e-10);
}

TEST(TransportRate, has_no_meaning_at_the_poles) {
  const OwnedMatrix velocity = column({1, 2, 3});
  OwnedMatrix rate = column({7, 7, 7});
  for (const double lat : {kRight, -kRight, kRight - 1e-9}) {
    const GeodeticPosition pole{lat, 0, 0};
    expect_refused([&] { return Lib__compute_transport_rate(&rate, &pole, &velocity); }, 5,
                   "Lib__compute_transport_rate", kLocalFile);
  }
  EXPECT_EQ(elements(rate), (Values{7, 7, 7}));
}

TEST(InertialCorrections, at_rest_are_gravity_and_the_earths_rate) {
  const GeodeticPosition position{radians(30), 1, 100};
  const OwnedMatrix still = column({0, 0, 0});
  OwnedMatrix acceleration(3, 1);
  OwnedMatrix rate(3, 1);
  ASSERT_EQ(Lib__compute_imu_b2n_corrections(&acceleration, &rate, &position, &still), 0);
  expect_near(acceleration, column({0, 0, gravity(30, 100)}), 0);
  expect_near(rate, column({-kEarthRate * std::sqrt(3.0) / 2, 0, kEarthRate / 2}), 1e-19);
}

TEST(InertialCorrections, in_motion_by_the_textbook_formula) {
  const GeodeticPosition position{radians(-40), 1, 3000};
  const OwnedMatrix velocity = column({100, -200, 10});
  OwnedMatrix earth(3, 1);
  ASSERT_EQ(Lib__compute_earth_local_projection(&earth, position.lat), 0);
  const OwnedMatrix moving = transport(position, velocity);
  OwnedMatrix turning(3, 1);
  OwnedMatrix coriolis(3, 1);
  MatScaleRsA(&turning, 2, &earth);
  MatAddRAB(&turning, &turning, &moving);
  MatCrossProduct(&coriolis, &turning, &velocity);

  OwnedMatrix acceleration(3, 1);
  OwnedMatrix rate(3, 1);
  ASSERT_EQ(Lib__compute_imu_b2n_corrections(&acceleration, &rate, &position, &velocity), 0);
  expect_near(acceleration,
              column({-coriolis(0, 0), -coriolis(1, 0), gravity(-40, 3000) - coriolis(2, 0)}),
              1e-15);
  MatAddRAB(&earth, &earth, &moving);
  MatScaleRsA(&earth, -1, &earth);
  expect_near(rate, earth, 1e-19);
}

TEST(InertialCorrections, eastward_speed_at_the_equator_lightens) {
  // 2 w v + v^2 / a = 2 * 7.292115e-5 * 100 + 10000 / 6378137 = 0.014584230 + 0.001567856
  const GeodeticPosition position{0, 0, 0};
  const OwnedMatrix east = column({0, 100, 0});
  OwnedMatrix acceleration(3, 1);
  OwnedMatrix rate(3, 1);
  ASSERT_EQ(Lib__compute_imu_b2n_corrections(&acceleration, &rate, &position, &east), 0);
  EXPECT_NEAR(acceleration(2, 0), 9.780318 - 0.016152086, 1e-9);
  EXPECT_EQ(acceleration(0, 0), 0);
}

TEST(InertialCorrections, a_unit_at_rest_shows_no_motion_once_corrected) {
  const GeodeticPosition position{radians(52), 0, 100};
  const OwnedMatrix still = column({0, 0, 0});
  const OwnedMatrix attitude = column({1, 0.2, -0.3});
  OwnedMatrix c(3, 3);
  ASSERT_EQ(Euler2DirCos(&c, &attitude), 0);
  OwnedMatrix up(3, 1);
  ASSERT_EQ(Lib__compute_local_gravity(&up, position.lat, position.alt), 0);
  MatScaleRsA(&up, -1, &up);
  OwnedMatrix earth(3, 1);
  ASSERT_EQ(Lib__compute_earth_local_projection(&earth, position.lat), 0);
  OwnedMatrix sensed_a(3, 1);
  OwnedMatrix sensed_w(3, 1);
  MatMultRAtB(&sensed_a, &c, &up);
  MatMultRAtB(&sensed_w, &c, &earth);

  OwnedMatrix a(3, 1);
  OwnedMatrix w(3, 1);
  ASSERT_EQ(Lib__compute_and_apply_imu_b2n_corrections(&a, &w, &c, &sensed_a, &sensed_w, &position,
                                                       &still),
            0);
  expect_near(a, still, 1e-14);
  expect_near(w, still, 1e-19);
}

TEST(InertialCorrections, both_steps_at_once_are_the_two_steps) {
  const GeodeticPosition position{radians(20), 0, 100};
  const OwnedMatrix velocity = column({10, 20, 30});
  const OwnedMatrix attitude = column({1, 0.2, -0.3});
  const OwnedMatrix sensed_a = column({1, 2, 3});
  const OwnedMatrix sensed_w = column({0.1, 0.2, 0.3});
  OwnedMatrix c(3, 3);
  ASSERT_EQ(Euler2DirCos(&c, &attitude), 0);
  OwnedMatrix of_a(3, 1);
  OwnedMatrix of_w(3, 1);
  ASSERT_EQ(Lib__compute_imu_b2n_corrections(&of_a, &of_w, &position, &velocity), 0);
  OwnedMatrix a(3, 1);
  OwnedMatrix w(3, 1);
  ASSERT_EQ(Lib__apply_imu_b2n_corrections_a(&a, &c, &sensed_a, &of_a), 0);
  ASSERT_EQ(Lib__apply_imu_b2n_corrections_w(&w, &c, &sensed_w, &of_w), 0);
  OwnedMatrix turned(3, 1);
  MatMultRAB(&turned, &c, &sensed_a);
  MatAddRAB(&turned, &turned, &of_a);
  expect_near(a, turned, 1e-15);
  MatMultRAB(&turned, &c, &sensed_w);
  MatAddRAB(&turned, &turned, &of_w);
  expect_near(w, turned, 1e-15);

  // In place of what was sensed.
  OwnedMatrix both_a = sensed_a;
  OwnedMatrix both_w = sensed_w;
  ASSERT_EQ(Lib__compute_and_apply_imu_b2n_corrections(&both_a, &both_w, &c, &both_a, &both_w,
                                                       &position, &velocity),
            0);
  EXPECT_EQ(elements(both_a), elements(a));
  EXPECT_EQ(elements(both_w), elements(w));
}

TEST(LocalRefusal, latitudes_and_altitudes_out_of_range_are_refused) {
  double g = 7;
  double m = 7;
  OwnedMatrix r = column({7, 7, 7});
  const char* magnitude = "Lib__compute_local_gravity_magnitude";
  for (const auto& [lat, alt] : {std::pair{kNan, 0.0},
                                 {1.6, 0.0},
                                 {-1.6, 0.0},
                                 {0.0, kNan},
                                 {0.0, -6.0e6},
                                 {0.0, kInfinity}}) {
    const double the_lat = lat;
    const double the_alt = alt;
    expect_refused([&] { return Lib__compute_local_gravity_magnitude(&g, the_lat, the_alt); }, 3,
                   magnitude, kLocalFile);
    expect_refused([&] { return Lib__compute_local_gravity(&r, the_lat, the_alt); }, 3,
                   "Lib__compute_local_gravity", kLocalFile);
    const GeodeticPosition position{the_lat, 0, the_alt};
    const OwnedMatrix velocity = column({1, 2, 3});
    expect_refused([&] { return Lib__compute_transport_rate(&r, &position, &velocity); }, 3,
                   "Lib__compute_transport_rate", kLocalFile);
  }
  expect_refused([&] { return Lib__compute_earth_curvature(&g, &m, kNan); }, 3,
                 "Lib__compute_earth_curvature", kLocalFile);
  expect_refused([&] { return Lib__compute_earth_local_projection(&r, 1.6); }, 3,
                 "Lib__compute_earth_local_projection", kLocalFile);
  EXPECT_EQ(g, 7);
  EXPECT_EQ(m, 7);
  EXPECT_EQ(elements(r), (Values{7, 7, 7}));
}

TEST(LocalRefusal, null_arguments_and_small_results_are_refused) {
  double g = 7;
  OwnedMatrix r = column({7, 7, 7});
  OwnedMatrix small = column({7, 7});
  const GeodeticPosition position{0.5, 0, 0};
  const OwnedMatrix v = column({1, 2, 3});
  expect_refused([&] { return Lib__compute_local_gravity_magnitude(nullptr, 0, 0); }, 2,
                 "Lib__compute_local_gravity_magnitude", kLocalFile);
  expect_refused([&] { return Lib__compute_local_gravity(nullptr, 0, 0); }, 2,
                 "Lib__compute_local_gravity", kLocalFile);
  expect_refused([&] { return Lib__compute_local_gravity(&small, 0, 0); }, 4,
                 "Lib__compute_local_gravity", kLocalFile);
  expect_refused([&] { return Lib__compute_earth_curvature(nullptr, &g, 0); }, 2,
                 "Lib__compute_earth_curvature", kLocalFile);
  expect_refused([&] { return Lib__compute_earth_curvature(&g, nullptr, 0); }, 2,
                 "Lib__compute_earth_curvature", kLocalFile);
  expect_refused([&] { return Lib__compute_earth_local_projection(&small, 0); }, 4,
                 "Lib__compute_earth_local_projection", kLocalFile);
  expect_refused([&] { return Lib__compute_transport_rate(&r, nullptr, &v); }, 2,
                 "Lib__compute_transport_rate", kLocalFile);
  expect_refused([&] { return Lib__compute_transport_rate(&r, &position, &small); }, 3,
                 "Lib__compute_transport_rate", kLocalFile);
  EXPECT_EQ(g, 7);
  EXPECT_EQ(elements(r), (Values{7, 7, 7}));
}

TEST(LocalRefusal, inertial_corrections_write_both_results_or_none) {
  OwnedMatrix first = column({7, 7, 7});
  OwnedMatrix second = column({7, 7, 7});
  OwnedMatrix small = column({7, 7});
  const GeodeticPosition position{0.5, 0, 0};
  const GeodeticPosition pole{kRight, 0, 0};
  const OwnedMatrix v = column({1, 2, 3});
  const OwnedMatrix bad = column({1, kNan, 3});
  const OwnedMatrix c = identity(3);
  const char* compute = "Lib__compute_imu_b2n_corrections";
  const auto computed = [&](RealMatrix* a, RealMatrix* w, const GeodeticPosition* p,
                            const RealMatrix* velocity, int code) {
    expect_refused([&] { return Lib__compute_imu_b2n_corrections(a, w, p, velocity); }, code,
                   compute, kLocalFile);
  };
  computed(&first, &small, &position, &v, 4);
  computed(&small, &first, &position, &v, 4);
  computed(nullptr, &second, &position, &v, 2);
  computed(&first, nullptr, &position, &v, 2);
  computed(&first, &second, nullptr, &v, 2);
  computed(&first, &second, &position, nullptr, 2);
  computed(&first, &second, &position, &bad, 3);
  computed(&first, &second, &pole, &v, 5);

  const char* apply_a = "Lib__apply_imu_b2n_corrections_a";
  expect_refused([&] { return Lib__apply_imu_b2n_corrections_a(&first, &v, &v, &v); }, 3, apply_a,
                 kLocalFile);
  expect_refused([&] { return Lib__apply_imu_b2n_corrections_a(&first, &c, nullptr, &v); }, 2,
                 apply_a, kLocalFile);
  expect_refused([&] { return Lib__apply_imu_b2n_corrections_a(&small, &c, &v, &v); }, 4, apply_a,
                 kLocalFile);
  expect_refused([&] { return Lib__apply_imu_b2n_corrections_w(&first, &c, &v, &bad); }, 3,
                 "Lib__apply_imu_b2n_corrections_w", kLocalFile);

  const char* both = "Lib__compute_and_apply_imu_b2n_corrections";
  const auto applied = [&](RealMatrix* a, RealMatrix* w, const RealMatrix* sensed, int code) {
    expect_refused(
        [&] {
          return Lib__compute_and_apply_imu_b2n_corrections(a, w, &c, sensed, &v, &position, &v);
        },
        code, both, kLocalFile);
  };
  applied(&first, &small, &v, 4);
  applied(&small, &first, &v, 4);
  applied(&first, &second, nullptr, 2);
  applied(&first, &second, &bad, 3);
  EXPECT_EQ(elements(first), (Values{7, 7, 7}));
  EXPECT_EQ(elements(second), (Values{7, 7, 7}));
}

}  // namespace
