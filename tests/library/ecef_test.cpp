#include "library/ecef.h"

#include <gtest/gtest.h>

#include "library/mathematics.h"

namespace {

using namespace mathematics;

constexpr const char* kEcefFile = "ecef.cpp";
constexpr double kEquatorRadius = 6378137.0;
constexpr double kPolarRadius = 6356752.3142;  // of WGS84, to the 0.1 mm that is published

struct Reference {
  double lat, lon, alt;
  double x, y, z;
};

// Degrees and metres, each line of them given to `CartConvert -p 9` of GeographicLib 2.1 on WGS84.
constexpr Reference kReferences[] = {
    {0, 0, 0, 6378137.000000000, 0.000000000, 0.000000000},
    {0, 0, -100000, 6278137.000000000, 0.000000000, 0.000000000},
    {0, 0, 50000000, 56378137.000000000, 0.000000000, 0.000000000},
    {0, 180, 1000, -6379137.000000000, 0.000000000, 0.000000000},
    {0, -90, 123.456, 0.000000000, -6378260.456000000, 0.000000000},
    {90, 0, 0, 0.000000000, 0.000000000, 6356752.314245179},
    {90, 0, -100000, 0.000000000, 0.000000000, 6256752.314245179},
    {-90, 0, 50000000, 0.000000000, 0.000000000, -56356752.314245179},
    {89.9999999, 45, 100, 0.007898080, 0.007898080, 6356852.314245179},
    {-89.99999, -179.9999999, -99999, -1.099486678, -0.000000002, -6256753.314245083},
    {45, -180, 10, -4517597.949916744, -0.000000000, 4487355.479933731},
    {45, 179.999999999, 10, -4517597.949916744, 0.000078846, 4487355.479933731},
    {51.5, -0.125, 65.25, 3978679.681170294, -8680.146311310, 4968413.522473263},
    {-33.8688, 151.2093, 58, -4646093.477288304, 2553229.535817070, -3534404.710910369},
    {0.0000001, 12.5, -1000, 6225973.389956790, 1380265.070310391, 0.011055682},
    {-45.0000001, 100, 49999999, -6923861.487137881, 39267169.773556307, -39842686.830651425},
    {27.98806, 86.92528, 8848.86, 302742.503182048, 5636029.785161401, 2979489.571144646},
    {31.5, 35.5, -430.5, 4431120.870450530, 3160687.799906108, 3313062.081928418},
    {1, -77, 20200000, 5977870.806040644, -25893003.175952628, 463107.384857694},
    {-60.25, -179.5, 35786000, -20929759.181841321, -182651.241272349, -36583714.039966106},
};

// Compares at the accuracy promised; longitude by the way round the axis that it stands for.
void expect_position(const GeodeticPosition& llh, double lat, double lon, double alt) {
  EXPECT_NEAR(degrees(llh.lat), lat, 1e-9);
  const double turn = std::remainder(degrees(llh.lon) - lon, 360.0);
  EXPECT_NEAR(turn * std::cos(radians(lat)), 0, 1e-9);
  EXPECT_NEAR(llh.alt, alt, 1e-4);
}

TEST(Ecef, positions_on_the_earth_agree_with_references) {
  for (const Reference& reference : kReferences) {
    SCOPED_TRACE(testing::Message()
                 << reference.lat << ' ' << reference.lon << ' ' << reference.alt);
    const GeodeticPosition llh{radians(reference.lat), radians(reference.lon), reference.alt};
    EcefPosition xyz;
    ASSERT_EQ(Wgs842Ecef(&xyz, &llh), 0);
    EXPECT_NEAR(xyz.x, reference.x, 1e-6);
    EXPECT_NEAR(xyz.y, reference.y, 1e-6);
    EXPECT_NEAR(xyz.z, reference.z, 1e-6);
  }
}

TEST(Ecef, latitude_longitude_and_altitude_agree_with_references) {
  for (const Reference& reference : kReferences) {
    SCOPED_TRACE(testing::Message()
                 << reference.lat << ' ' << reference.lon << ' ' << reference.alt);
    const EcefPosition xyz{reference.x, reference.y, reference.z};
    GeodeticPosition llh;
    ASSERT_EQ(Ecef2Wgs84(&llh, &xyz), 0);
    expect_position(llh, reference.lat, reference.lon, reference.alt);
    for (int ellipsoid = 0; ellipsoid < 2; ++ellipsoid) {
      ASSERT_EQ(Xyz2Llh(&llh, &xyz, ellipsoid), 0);
      // The rows differ by 1.5e-10 in eccentricity, which is 0.1 mm at the poles.
      EXPECT_NEAR(degrees(llh.lat), reference.lat, 2e-9);
      EXPECT_NEAR(llh.alt, reference.alt, 3e-4);
    }
  }
}

TEST(Ecef, points_away_from_round_numbers_agree_with_references) {
  // `CartConvert -r -p 9` of GeographicLib 2.1.
  const Reference references[] = {
      {38.84669661302948, 36.86989764584402, 33357.952439941, 4000000, 3000000, 4000000},
      {37.35706067692756, -122.12499844038751, 1703.856018566, -2700000, -4300000, 3850000},
      {89.99910470326820, 0, 47.686536114, 100, 0, 6356800},
      {0.00000000904369, -179.99999999101684, 0, -6378137, -0.001, 0.001},
      {15.51821871294153, -33.69006752597979, 31039963.585166998, 30000000, -20000000, 10000000},
      {-89.99999998722521, 45, -56752.314245180, 0.001, 0.001, -6300000},
  };
  for (const Reference& reference : references) {
    const EcefPosition xyz{reference.x, reference.y, reference.z};
    GeodeticPosition llh;
    ASSERT_EQ(Ecef2Wgs84(&llh, &xyz), 0);
    expect_position(llh, reference.lat, reference.lon, reference.alt);
  }
}

TEST(Ecef, positions_come_back_over_a_dense_grid) {
  for (const double alt :
       {-100000.0, -50000.0, -1000.0, 0.0, 300.0, 10000.0, 400000.0, 2e6, 2.02e7, 3.6e7, 5e7}) {
    for (double lat = -90; lat <= 90; lat += 1.25) {
      for (double lon = -180; lon <= 180; lon += 22.5) {
        const GeodeticPosition llh{radians(lat), radians(lon), alt};
        EcefPosition xyz;
        GeodeticPosition back;
        ASSERT_EQ(Wgs842Ecef(&xyz, &llh), 0);
        ASSERT_EQ(Ecef2Wgs84(&back, &xyz), 0);
        ASSERT_NEAR(degrees(back.lat), lat, 1e-12) << lat << ' ' << lon << ' ' << alt;
        ASSERT_NEAR(back.alt, alt, 5e-8) << lat << ' ' << lon << ' ' << alt;
        if (std::fabs(lat) < 90) {
          ASSERT_NEAR(std::remainder(degrees(back.lon) - lon, 360.0), 0, 1e-12);
        }
      }
    }
  }
}

TEST(Ecef, positions_come_back_from_random_places) {
  constexpr unsigned kSeed = 84;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  for (int round = 0; round < 20000; ++round) {
    // Half of them within a millionth of a degree of a pole or of the equator.
    double lat = random.number(-90, 90);
    if (round % 4 == 0) lat = std::copysign(90 - random.number(0, 1e-6), lat);
    if (round % 4 == 1) lat = random.number(-1e-6, 1e-6);
    const GeodeticPosition llh{radians(lat), random.number(-kPi, kPi),
                               round % 2 == 0 ? random.number(-1e5, 1e5) : random.number(0, 5e7)};
    EcefPosition xyz;
    GeodeticPosition back;
    ASSERT_EQ(Wgs842Ecef(&xyz, &llh), 0);
    ASSERT_EQ(Ecef2Wgs84(&back, &xyz), 0);
    ASSERT_NEAR(degrees(back.lat), lat, 1e-12);
    ASSERT_NEAR(back.alt, llh.alt, 5e-8);
  }
}

TEST(Ecef, on_the_axis_longitude_is_zero) {
  for (const EcefPosition& xyz : {EcefPosition{0, 0, 6400000},
                                  {-0.0, 0, 6400000},
                                  {-0.0, -0.0, 6400000},
                                  {0, -0.0, 6400000}}) {
    GeodeticPosition llh{1, 1, 1};
    ASSERT_EQ(Ecef2Wgs84(&llh, &xyz), 0);
    EXPECT_EQ(llh.lon, 0);
    EXPECT_EQ(llh.lat, kRight);
    EXPECT_NEAR(llh.alt, 6400000 - kPolarRadius, 1e-4);
  }
}

TEST(Ecef, the_earths_centre_is_refused) {
  const EcefPosition centre;
  GeodeticPosition llh{1, 2, 3};
  testing::internal::CaptureStderr();
  EXPECT_EQ(Xyz2Llh(&llh, &centre, 0), -1);
  EXPECT_EQ(Xyz2Llh(&llh, &centre, 1), -1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(llh.lat, 1);
  EXPECT_EQ(llh.alt, 3);
  expect_refused([&] { return Ecef2Wgs84(&llh, &centre); }, 3, "Ecef2Wgs84", kEcefFile);
  EXPECT_EQ(llh.lat, 1);
}

TEST(Ecef, inside_the_core_the_answer_is_finite_and_in_range) {
  constexpr unsigned kSeed = 6;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  for (int round = 0; round < 2000; ++round) {
    const double size = std::pow(10.0, random.number(-300, 6));
    EcefPosition xyz{random.number(-size, size), random.number(-size, size),
                     random.number(-size, size)};
    if (round % 5 == 0) xyz.z = 0;
    if (round % 5 == 1) xyz.x = xyz.y = 0;
    GeodeticPosition llh;
    ASSERT_EQ(Ecef2Wgs84(&llh, &xyz), 0);
    ASSERT_LE(std::fabs(llh.lat), kRight);
    ASSERT_LE(std::fabs(llh.lon), kPi);
    ASSERT_TRUE(std::isfinite(llh.alt));
  }
}

TEST(Ecef, bad_arguments_are_refused) {
  GeodeticPosition llh{1, 2, 3};
  EcefPosition xyz{4, 5, 6};
  const EcefPosition bad{kNan, 0, 1};
  const EcefPosition endless{1, kInfinity, 1};
  expect_refused([&] { return Ecef2Wgs84(&llh, nullptr); }, 2, "Ecef2Wgs84", kEcefFile);
  expect_refused([&] { return Ecef2Wgs84(nullptr, &xyz); }, 2, "Ecef2Wgs84", kEcefFile);
  expect_refused([&] { return Ecef2Wgs84(&llh, &bad); }, 3, "Ecef2Wgs84", kEcefFile);
  expect_refused([&] { return Ecef2Wgs84(&llh, &endless); }, 3, "Ecef2Wgs84", kEcefFile);
  expect_refused([&] { return Xyz2Llh(&llh, nullptr, 0); }, 2, "Xyz2Llh", kEcefFile);
  expect_refused([&] { return Xyz2Llh(nullptr, &xyz, 0); }, 2, "Xyz2Llh", kEcefFile);
  expect_refused([&] { return Xyz2Llh(&llh, &bad, 0); }, 3, "Xyz2Llh", kEcefFile);
  expect_refused([&] { return Xyz2Llh(&llh, &xyz, 2); }, 3, "Xyz2Llh", kEcefFile);
  expect_refused([&] { return Xyz2Llh(&llh, &xyz, -1); }, 3, "Xyz2Llh", kEcefFile);
  EXPECT_EQ(llh.lat, 1);
  expect_refused([&] { return Wgs842Ecef(&xyz, nullptr); }, 2, "Wgs842Ecef", kEcefFile);
  expect_refused([&] { return Wgs842Ecef(nullptr, &llh); }, 2, "Wgs842Ecef", kEcefFile);
  for (const GeodeticPosition& position : {GeodeticPosition{kNan, 0, 0},
                                           {0, kNan, 0},
                                           {0, 0, kNan},
                                           {0, kInfinity, 0},
                                           {1.5708, 0, 0},
                                           {-1.5708, 0, 0}}) {  // a right angle is 1.570796
    expect_refused([&] { return Wgs842Ecef(&xyz, &position); }, 3, "Wgs842Ecef", kEcefFile);
  }
  EXPECT_EQ(xyz.x, 4);
}

TEST(Ellipsoids, their_columns_agree_with_each_other) {
  for (const auto& [a, e, a_e_squared, one_less_e_squared] : ellipsoids) {
    EXPECT_EQ(a, 6378137.0);
    EXPECT_NEAR(a * e * e, a_e_squared, 2e-8);
    EXPECT_NEAR(1 - e * e, one_less_e_squared, 3e-15);
  }
  EXPECT_EQ(ellipsoids[0][1], 0.0818191908426);
  EXPECT_EQ(ellipsoids[1][1], 0.081819191042832);
}

TEST(Ellipsoids, the_row_is_chosen_by_the_argument) {
  // The polar radius is a sqrt(1 - e squared): 6356752.314245 and 6356752.314140.
  const EcefPosition pole{0, 0, 6356752.3141925};
  GeodeticPosition llh;
  ASSERT_EQ(Xyz2Llh(&llh, &pole, 0), 0);
  EXPECT_NEAR(llh.alt, -5.25e-5, 1e-6);
  ASSERT_EQ(Xyz2Llh(&llh, &pole, 1), 0);
  EXPECT_NEAR(llh.alt, 5.25e-5, 1e-6);
}

TEST(PZ90, differs_by_its_translation) {
  const EcefPosition wgs84{1000, 2000, 3000};
  EcefPosition pz90;
  ASSERT_EQ(Wgs842PZ90(&pz90, &wgs84), 0);
  EXPECT_DOUBLE_EQ(pz90.x, 1000.36);
  EXPECT_DOUBLE_EQ(pz90.y, 1999.92);
  EXPECT_DOUBLE_EQ(pz90.z, 2999.82);
  EcefPosition back = pz90;
  ASSERT_EQ(PZ902Wgs84(&back, &back), 0);
  EXPECT_NEAR(back.x, 1000, 1e-12);
  EXPECT_NEAR(back.y, 2000, 1e-12);
  EXPECT_NEAR(back.z, 3000, 1e-12);
  expect_refused([&] { return Wgs842PZ90(nullptr, &wgs84); }, 2, "Wgs842PZ90", kEcefFile);
  expect_refused([&] { return Wgs842PZ90(&back, nullptr); }, 2, "Wgs842PZ90", kEcefFile);
  const EcefPosition bad{0, kNan, 0};
  expect_refused([&] { return PZ902Wgs84(&back, &bad); }, 3, "PZ902Wgs84", kEcefFile);
  expect_refused([&] { return PZ902Wgs84(nullptr, &pz90); }, 2, "PZ902Wgs84", kEcefFile);
}

TEST(RefFrame, equal_frames_leave_the_position_to_the_bit) {
  for (int frame = 0; frame < 3; ++frame) {
    EcefPosition xyz{1234567.891, -0.0, 5e-324};
    ASSERT_EQ(ConvertRefFrame(&xyz, frame, frame, 2020), 0);
    EXPECT_EQ(xyz.x, 1234567.891);
    EXPECT_TRUE(std::signbit(xyz.y));
    EXPECT_EQ(xyz.z, 5e-324);
  }
}

TEST(RefFrame, the_reference_row_has_no_parameters) {
  for (const double value : frames[0]) EXPECT_EQ(value, 0);
}

TEST(RefFrame, by_hand_at_the_epoch) {
  // 1.6 mm - 0.02e-9 * 6378137 m = 1.47243726 mm
  EcefPosition xyz{6378137, 0, 0};
  ASSERT_EQ(ConvertRefFrame(&xyz, 0, 1, 2010), 0);
  EXPECT_NEAR(xyz.x, 6378137 + 0.00147243726, 2e-9);
  EXPECT_NEAR(xyz.y, 0.0019, 1e-15);
  EXPECT_NEAR(xyz.z, 0.0024, 1e-15);
}

TEST(RefFrame, by_hand_ten_years_on_with_a_rotation) {
  // T = (7.4 + 1.0, -0.5 - 5.0, -62.8 - 33.0) mm, D = 3.80 + 1.2 ppb, R3 = 0.26 + 0.2 mas, which is
  // 0.46e-3 * 4.84813681109536e-6 = 2.2301429331e-9 rad.
  EcefPosition xyz{6378137, 0, 0};
  ASSERT_EQ(ConvertRefFrame(&xyz, 0, 2, 2020), 0);
  EXPECT_NEAR(xyz.x, 6378137 + 0.0084 + 5.0e-9 * 6378137, 2e-9);
  EXPECT_NEAR(xyz.y, -0.0055 + 2.2301429331e-9 * 6378137, 1e-11);
  EXPECT_NEAR(xyz.z, -0.0958, 1e-15);
  EcefPosition east{0, 6378137, 0};
  ASSERT_EQ(ConvertRefFrame(&east, 0, 2, 2020), 0);
  EXPECT_NEAR(east.x, 0.0084 - 2.2301429331e-9 * 6378137, 1e-11);
}

TEST(RefFrame, between_two_past_frames_the_published_direct_parameters_hold) {
  // ITRF2008 to ITRF97, IERS Technical Note 36, table 4.1, epoch 2000.0: T = (4.8, 2.6, -33.2) mm,
  // D = 2.92 ppb, R3 = 0.06 mas; rates (0.1, -0.5, -3.2) mm, 0.09 ppb, 0.02 mas a year.
  for (const double time : {1990.0, 2000.0, 2010.0, 2023.5}) {
    const double years = time - 2000.0;
    const double d = (2.92 + 0.09 * years) * 1e-9;
    const double r3 = radians((0.06 + 0.02 * years) / 3.6e6);
    const EcefPosition p{3978679.68, -2680000.5, 4968413.52};
    EcefPosition xyz = p;
    ASSERT_EQ(ConvertRefFrame(&xyz, 1, 2, time), 0);
    EXPECT_NEAR(xyz.x, p.x + (4.8 + 0.1 * years) * 1e-3 + d * p.x - r3 * p.y, 1e-8);
    EXPECT_NEAR(xyz.y, p.y + (2.6 - 0.5 * years) * 1e-3 + d * p.y + r3 * p.x, 1e-8);
    EXPECT_NEAR(xyz.z, p.z + (-33.2 - 3.2 * years) * 1e-3 + d * p.z, 1e-8);
  }
}

TEST(RefFrame, there_and_back_agree_to_rounding) {
  constexpr unsigned kSeed = 2014;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  for (int round = 0; round < 1000; ++round) {
    const EcefPosition p{random.number(-5e7, 5e7), random.number(-5e7, 5e7),
                         random.number(-5e7, 5e7)};
    const int source = random.integer(0, 2);
    const int target = random.integer(0, 2);
    const double time = random.number(1980, 2040);
    EcefPosition xyz = p;
    ASSERT_EQ(ConvertRefFrame(&xyz, source, target, time), 0);
    ASSERT_EQ(ConvertRefFrame(&xyz, target, source, time), 0);
    ASSERT_NEAR(xyz.x, p.x, 2e-8);
    ASSERT_NEAR(xyz.y, p.y, 2e-8);
    ASSERT_NEAR(xyz.z, p.z, 2e-8);
  }
}

TEST(RefFrame, bad_arguments_are_refused) {
  EcefPosition xyz{1, 2, 3};
  const char* name = "ConvertRefFrame";
  expect_refused([&] { return ConvertRefFrame(nullptr, 0, 1, 2010); }, 2, name, kEcefFile);
  expect_refused([&] { return ConvertRefFrame(&xyz, -1, 1, 2010); }, 3, name, kEcefFile);
  expect_refused([&] { return ConvertRefFrame(&xyz, 0, 3, 2010); }, 3, name, kEcefFile);
  expect_refused([&] { return ConvertRefFrame(&xyz, 3, 3, 2010); }, 3, name, kEcefFile);
  expect_refused([&] { return ConvertRefFrame(&xyz, 0, 1, kNan); }, 3, name, kEcefFile);
  expect_refused([&] { return ConvertRefFrame(&xyz, 0, 1, 1e300); }, 3, name, kEcefFile);
  EXPECT_EQ(xyz.x, 1);
  EcefPosition bad{1, kNan, 3};
  expect_refused([&] { return ConvertRefFrame(&bad, 0, 1, 2010); }, 3, name, kEcefFile);
}

TEST(Satellites, stand_where_they_should_over_the_gulf_of_guinea) {
  const EcefPosition receiver{kEquatorRadius, 0, 0};
  const auto seen = [&](double up, double east, double north) {
    const EcefPosition satellite{kEquatorRadius + up, east, north};
    SatelliteDirection direction;
    EXPECT_EQ(Ecef2SatAngles(&direction, &receiver, &satellite), 0);
    return direction;
  };
  const auto expect = [&](const SatelliteDirection& direction, double azimuth, double elevation) {
    EXPECT_NEAR(degrees(direction.azimuth), azimuth, 1e-12);
    EXPECT_NEAR(degrees(direction.elevation), elevation, 1e-12);
  };
  expect(seen(2e7, 0, 0), 0, 90);
  expect(seen(0, 0, 1e6), 0, 0);
  expect(seen(0, 1e6, 0), 90, 0);
  expect(seen(0, 0, -1e6), 180, 0);
  expect(seen(0, -1e6, 0), 270, 0);
  expect(seen(1e6, 1e6, 0), 90, 45);
  expect(seen(-1e6, -1e6, 0), 270, -45);
  expect(seen(std::sqrt(2.0) * 1e6, 1e6, -1e6), 135, 45);
}

TEST(Satellites, the_three_forms_agree) {
  constexpr unsigned kSeed = 24;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  for (int round = 0; round < 500; ++round) {
    const GeodeticPosition llh{random.number(-1.5, 1.5), random.number(-3, 3),
                               random.number(-1000, 10000)};
    EcefPosition xyz;
    ASSERT_EQ(Wgs842Ecef(&xyz, &llh), 0);
    const EcefPosition satellite{random.number(-3e7, 3e7), random.number(-3e7, 3e7),
                                 random.number(1e7, 3e7)};
    SatelliteDirection by_ecef;
    SatelliteDirection by_wgs84;
    SatelliteDirection by_both;
    ASSERT_EQ(Ecef2SatAngles(&by_ecef, &xyz, &satellite), 0);
    ASSERT_EQ(Wgs842SatAngles(&by_wgs84, &llh, &satellite), 0);
    ASSERT_EQ(SatAngles(&by_both, &llh, &xyz, &satellite), 0);
    EXPECT_NEAR(by_ecef.azimuth, by_wgs84.azimuth, 1e-11);
    EXPECT_NEAR(by_ecef.elevation, by_wgs84.elevation, 1e-12);
    EXPECT_EQ(by_both.azimuth, by_wgs84.azimuth);
    EXPECT_EQ(by_both.elevation, by_wgs84.elevation);
    EXPECT_GE(by_ecef.azimuth, 0);
    EXPECT_LT(by_ecef.azimuth, 2 * kPi);
  }
}

TEST(Satellites, a_hair_west_of_north_is_still_below_a_full_turn) {
  const EcefPosition receiver{kEquatorRadius, 0, 0};
  const EcefPosition satellite{kEquatorRadius, -1e-20, 1e6};
  SatelliteDirection direction;
  ASSERT_EQ(Ecef2SatAngles(&direction, &receiver, &satellite), 0);
  EXPECT_EQ(direction.azimuth, 0);
}

TEST(Satellites, bad_arguments_are_refused) {
  const EcefPosition receiver{kEquatorRadius, 0, 0};
  const GeodeticPosition llh{0, 0, 0};
  const EcefPosition satellite{2e7, 0, 0};
  const EcefPosition bad{kNan, 0, 0};
  const EcefPosition centre;
  SatelliteDirection d{7, 8};
  const char* ecef = "Ecef2SatAngles";
  expect_refused([&] { return Ecef2SatAngles(nullptr, &receiver, &satellite); }, 2, ecef,
                 kEcefFile);
  expect_refused([&] { return Ecef2SatAngles(&d, nullptr, &satellite); }, 2, ecef, kEcefFile);
  expect_refused([&] { return Ecef2SatAngles(&d, &receiver, nullptr); }, 2, ecef, kEcefFile);
  expect_refused([&] { return Ecef2SatAngles(&d, &bad, &satellite); }, 3, ecef, kEcefFile);
  expect_refused([&] { return Ecef2SatAngles(&d, &receiver, &receiver); }, 3, ecef, kEcefFile);
  expect_refused([&] { return Ecef2SatAngles(&d, &centre, &satellite); }, 3, ecef, kEcefFile);
  const char* wgs84 = "Wgs842SatAngles";
  expect_refused([&] { return Wgs842SatAngles(nullptr, &llh, &satellite); }, 2, wgs84, kEcefFile);
  expect_refused([&] { return Wgs842SatAngles(&d, nullptr, &satellite); }, 2, wgs84, kEcefFile);
  expect_refused([&] { return Wgs842SatAngles(&d, &llh, &bad); }, 3, wgs84, kEcefFile);
  const char* both = "SatAngles";
  expect_refused([&] { return SatAngles(nullptr, &llh, &receiver, &satellite); }, 2, both,
                 kEcefFile);
  expect_refused([&] { return SatAngles(&d, nullptr, &receiver, &satellite); }, 2, both, kEcefFile);
  expect_refused([&] { return SatAngles(&d, &llh, nullptr, &satellite); }, 2, both, kEcefFile);
  expect_refused([&] { return SatAngles(&d, &llh, &receiver, nullptr); }, 2, both, kEcefFile);
  EXPECT_EQ(d.azimuth, 7);
  EXPECT_EQ(d.elevation, 8);
}

TEST(LocalAxes, by_hand) {
  const auto rotation = [](double lat, double lon) {
    const GeodeticPosition llh{radians(lat), radians(lon), 500};
    OwnedMatrix c(3, 3);
    EXPECT_EQ(Ecef2NedRotation(&c, &llh), 0);
    return c;
  };
  // Rows are north, east and down in earth-fixed axes.
  expect_near(rotation(0, 0), OwnedMatrix(3, 3, {0, 0, 1, 0, 1, 0, -1, 0, 0}), 1e-15);
  expect_near(rotation(0, 90), OwnedMatrix(3, 3, {0, 0, 1, -1, 0, 0, 0, -1, 0}), 1e-15);
  expect_near(rotation(90, 0), OwnedMatrix(3, 3, {-1, 0, 0, 0, 1, 0, 0, 0, -1}), 1e-15);
  expect_near(rotation(-90, 180), OwnedMatrix(3, 3, {-1, 0, 0, 0, -1, 0, 0, 0, 1}), 1e-15);
}

TEST(LocalAxes, are_where_small_changes_of_position_point) {
  constexpr unsigned kSeed = 3;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  for (int round = 0; round < 200; ++round) {
    const GeodeticPosition llh{random.number(-1.5, 1.5), random.number(-3, 3), 0};
    OwnedMatrix c(3, 3);
    ASSERT_EQ(Ecef2NedRotation(&c, &llh), 0);
    const auto moved = [&](double lat, double lon, double alt) {
      const GeodeticPosition other{llh.lat + lat, llh.lon + lon, llh.alt + alt};
      EcefPosition from;
      EcefPosition to;
      EXPECT_EQ(Wgs842Ecef(&from, &llh), 0);
      EXPECT_EQ(Wgs842Ecef(&to, &other), 0);
      const OwnedMatrix line = column({to.x - from.x, to.y - from.y, to.z - from.z});
      OwnedMatrix local(3, 1);
      EXPECT_EQ(MatMultRAB(&local, &c, &line), 0);
      double length = 0;
      EXPECT_EQ(MatVectorNorm(&length, &local), 0);
      EXPECT_EQ(MatScaleRsA(&local, 1 / length, &local), 0);
      return local;
    };
    expect_near(moved(1e-5, 0, 0), column({1, 0, 0}), 1e-4);
    expect_near(moved(0, 1e-5, 0), column({0, 1, 0}), 1e-4);
    expect_near(moved(0, 0, -10), column({0, 0, 1}), 1e-7);
  }
}

TEST(LocalAxes, bad_arguments_are_refused) {
  const GeodeticPosition llh{0, 0, 0};
  const GeodeticPosition bad{2, 0, 0};
  OwnedMatrix c(3, 3);
  OwnedMatrix small(2, 3);
  expect_refused([&] { return Ecef2NedRotation(&c, nullptr); }, 2, "Ecef2NedRotation", kEcefFile);
  expect_refused([&] { return Ecef2NedRotation(nullptr, &llh); }, 2, "Ecef2NedRotation", kEcefFile);
  expect_refused([&] { return Ecef2NedRotation(&c, &bad); }, 3, "Ecef2NedRotation", kEcefFile);
  expect_refused([&] { return Ecef2NedRotation(&small, &llh); }, 4, "Ecef2NedRotation", kEcefFile);
}

}  // namespace
