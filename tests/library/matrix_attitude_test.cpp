#include "library/matrix_attitude.h"

#include <gtest/gtest.h>

#include "library/mathematics.h"
#include "library/matrix_work.h"

namespace {

using namespace mathematics;
using Values = std::vector<double>;

constexpr const char* kAttitudeFile = "matrix_attitude.cpp";

OwnedMatrix euler(double heading, double pitch, double roll) {
  return column({radians(heading), radians(pitch), radians(roll)});
}

using OneMatrix = int (*)(RealMatrix*, const RealMatrix*);

OwnedMatrix matrix_of(OneMatrix call, const OwnedMatrix& a) {
  OwnedMatrix r(3, 3);
  EXPECT_EQ(call(&r, &a), 0);
  return r;
}

OwnedMatrix vector_of(OneMatrix call, const OwnedMatrix& a) {
  OwnedMatrix r(3, 1);
  EXPECT_EQ(call(&r, &a), 0);
  return r;
}

OwnedMatrix product(const OwnedMatrix& a, const OwnedMatrix& b) {
  OwnedMatrix r(a.rows, b.cols);
  EXPECT_EQ(MatMultRAB(&r, &a, &b), 0);
  return r;
}

OwnedMatrix transpose(const OwnedMatrix& a) {
  OwnedMatrix r(a.cols, a.rows);
  EXPECT_EQ(MatTranspose(&r, &a), 0);
  return r;
}

TEST(DirectionCosines, heading_turns_forward_from_north_to_east) {
  const OwnedMatrix c = matrix_of(Euler2DirCos, euler(90, 0, 0));
  expect_near(product(c, column({1, 0, 0})), column({0, 1, 0}), 1e-15);   // forward is east
  expect_near(product(c, column({0, 1, 0})), column({-1, 0, 0}), 1e-15);  // right is south
  expect_near(product(c, column({0, 0, 1})), column({0, 0, 1}), 1e-15);
}

TEST(DirectionCosines, the_unchecked_forms_give_the_same_numbers) {
  const OwnedMatrix angles = euler(250, -35, 12);
  const OwnedMatrix c = matrix_of(Euler2DirCos, angles);
  Trel::Lib::Matrix work;
  Trel::Lib::set_rotation(work, {angles.data[0], angles.data[1], angles.data[2]});
  EXPECT_EQ(work.rows, 3);
  EXPECT_EQ(work.cols, 3);
  for (int row = 0; row < 3; ++row) {
    for (int col = 0; col < 3; ++col) EXPECT_EQ(work(row, col), c.data[3 * row + col]);
  }
  const OwnedMatrix back = vector_of(DirCos2Euler, c);
  const Trel::Lib::Triple triple = Trel::Lib::angles_of(work);
  EXPECT_EQ(triple.x, back.data[0]);
  EXPECT_EQ(triple.y, back.data[1]);
  EXPECT_EQ(triple.z, back.data[2]);
}

TEST(DirectionCosines, pitch_raises_forward) {
  const OwnedMatrix c = matrix_of(Euler2DirCos, euler(0, 30, 0));
  const double s = std::sqrt(3.0) / 2;
  expect_near(product(c, column({1, 0, 0})), column({s, 0, -0.5}), 1e-15);
  expect_near(product(c, column({0, 1, 0})), column({0, 1, 0}), 1e-15);
  expect_near(product(c, column({0, 0, 1})), column({0.5, 0, s}), 1e-15);
}

TEST(DirectionCosines, roll_lowers_right) {
  const OwnedMatrix c = matrix_of(Euler2DirCos, euler(0, 0, 30));
  const double s = std::sqrt(3.0) / 2;
  expect_near(product(c, column({1, 0, 0})), column({1, 0, 0}), 1e-15);
  expect_near(product(c, column({0, 1, 0})), column({0, s, 0.5}), 1e-15);
  expect_near(product(c, column({0, 0, 1})), column({0, -0.5, s}), 1e-15);
}

TEST(DirectionCosines, roll_comes_first_on_the_way_out_and_heading_last) {
  // Roll 90 turns right to down; pitch 90 turns down to north (and leaves east); heading 90 turns
  // north to east.
  const OwnedMatrix c = matrix_of(Euler2DirCos, euler(90, 90, 90));
  expect_near(product(c, column({0, 1, 0})), column({0, 1, 0}), 1e-15);
  // Forward: roll leaves it, pitch turns it up, heading leaves it.
  expect_near(product(c, column({1, 0, 0})), column({0, 0, -1}), 1e-15);
  // Down: roll turns it to left, pitch leaves it, heading turns left (west) to north.
  expect_near(product(c, column({0, 0, 1})), column({1, 0, 0}), 1e-15);
}

TEST(DirectionCosines, the_whole_is_heading_after_level) {
  constexpr unsigned kSeed = 54;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  for (int round = 0; round < 500; ++round) {
    const OwnedMatrix e = random.matrix(3, 1, 7);
    const OwnedMatrix c = matrix_of(Euler2DirCos, e);
    const OwnedMatrix level = matrix_of(Euler2DirCos2, e);
    const OwnedMatrix heading = matrix_of(Euler2DirCosH, e);
    expect_near(product(heading, level), c, 1e-15);
    expect_near(product(c, transpose(c)), identity(3), 1e-15);
    expect_near(product(level, transpose(level)), identity(3), 1e-15);
    expect_near(matrix_of(Euler2DirCos2, column({0, e(1, 0), e(2, 0)})), level, 0);
    expect_near(matrix_of(Euler2DirCosH, column({e(0, 0), 0, 0})), heading, 0);
    expect_near(matrix_of(Euler2DirCos, column({0, e(1, 0), e(2, 0)})), level, 1e-15);
    expect_near(matrix_of(Euler2DirCos, column({e(0, 0), 0, 0})), heading, 1e-15);
  }
}

TEST(DirectionCosines, the_angles_come_back_over_a_dense_grid) {
  for (int heading = -179; heading <= 180; heading += 7) {
    for (int pitch = -89; pitch <= 89; pitch += 2) {
      for (int roll = -176; roll <= 180; roll += 11) {
        const OwnedMatrix e = euler(heading, pitch, roll);
        OwnedMatrix back = vector_of(DirCos2Euler, matrix_of(Euler2DirCos, e));
        ASSERT_NEAR(back(0, 0), e(0, 0), 1e-13) << heading << ' ' << pitch << ' ' << roll;
        ASSERT_NEAR(back(1, 0), e(1, 0), 1e-13) << heading << ' ' << pitch << ' ' << roll;
        ASSERT_NEAR(back(2, 0), e(2, 0), 1e-13) << heading << ' ' << pitch << ' ' << roll;
      }
    }
  }
}

TEST(DirectionCosines, a_vertical_attitude_gives_its_matrix_back_with_no_roll) {
  for (const double pitch : {90.0, -90.0}) {
    for (int heading = -150; heading <= 180; heading += 30) {
      for (int roll = -150; roll <= 180; roll += 30) {
        const OwnedMatrix c = matrix_of(Euler2DirCos, euler(heading, pitch, roll));
        const OwnedMatrix back = vector_of(DirCos2Euler, c);
        EXPECT_NEAR(back(1, 0), radians(pitch), 1e-15);
        EXPECT_EQ(back(2, 0), 0);
        // Nose up, heading and roll turn about one axis against each other; nose down, together.
        const double turn = radians(pitch > 0 ? heading - roll : heading + roll);
        EXPECT_NEAR(std::remainder(back(0, 0) - turn, 2 * kPi), 0, 1e-15);
        expect_near(matrix_of(Euler2DirCos, back), c, 1e-15);
      }
    }
  }
}

TEST(DirectionCosines, a_nearly_vertical_attitude_gives_its_matrix_back) {
  for (const double short_of : {1e-3, 1e-6, 1e-9, 1e-11, 1e-13}) {
    const OwnedMatrix e = column({1.25, kRight - short_of, -2.5});
    const OwnedMatrix c = matrix_of(Euler2DirCos, e);
    expect_near(matrix_of(Euler2DirCos, vector_of(DirCos2Euler, c)), c, 2e-12);
    if (short_of >= 1e-11) {
      expect_near(matrix_of(Euler2DirCos, vector_of(DirCos2Euler, c)), c, 1e-15);
    }
  }
}

TEST(DirectionCosines, rows_are_vectors_too) {
  const OwnedMatrix row(1, 3, {0.1, 0.2, 0.3});
  expect_near(matrix_of(Euler2DirCos, row), matrix_of(Euler2DirCos, column({0.1, 0.2, 0.3})), 0);
}

TEST(DirectionCosines, a_result_may_replace_its_argument) {
  OwnedMatrix storage(3, 3);
  MatFillR(&storage, 3, 1, {0.1, 0.2, 0.3});
  ASSERT_EQ(Euler2DirCos(&storage, &storage), 0);
  expect_near(storage, matrix_of(Euler2DirCos, column({0.1, 0.2, 0.3})), 0);
  ASSERT_EQ(DirCos2Euler(&storage, &storage), 0);
  EXPECT_EQ(storage.cols, 1);
  EXPECT_NEAR(storage(1, 0), 0.2, 1e-15);
}

TEST(Incline, on_one_axis_the_inclination_is_the_angle) {
  expect_near(vector_of(Incline2Euler, euler(40, 20, 0)), euler(40, 20, 0), 1e-15);
  expect_near(vector_of(Incline2Euler, euler(40, 0, -35)), euler(40, 0, -35), 1e-15);
}

TEST(Incline, steep_pitch_makes_roll_larger_than_the_inclination) {
  // sin 30 / cos 45 = sin 45
  expect_near(vector_of(Incline2Euler, euler(0, 45, 30)), euler(0, 45, 45), 1e-15);
}

TEST(Incline, agrees_with_where_the_axes_point) {
  for (int pitch = -80; pitch <= 80; pitch += 8) {
    for (int roll = -85; roll <= 85; roll += 5) {
      const OwnedMatrix e = euler(123, pitch, roll);
      const OwnedMatrix c = matrix_of(Euler2DirCos, e);
      const double rise = std::asin(-c(2, 0));
      const double fall = std::asin(c(2, 1));
      expect_near(vector_of(Incline2Euler, column({e(0, 0), rise, fall})), e, 1e-12);
    }
  }
}

TEST(Incline, a_vertical_axis_leaves_no_roll) {
  expect_near(vector_of(Incline2Euler, euler(10, 90, 0)), euler(10, 90, 0), 0);
  expect_near(vector_of(Incline2Euler, euler(10, -90, 0)), euler(10, -90, 0), 0);
}

TEST(Incline, two_axes_cannot_both_be_steep) {
  OwnedMatrix r = column({7, 7, 7});
  const OwnedMatrix steep = euler(0, 60, 31);
  expect_refused([&] { return Incline2Euler(&r, &steep); }, 3, "Incline2Euler", kAttitudeFile);
  EXPECT_EQ(elements(r), (Values{7, 7, 7}));
  const OwnedMatrix just = euler(0, 60, -30);  // sin 30 / cos 60 = 1
  // The arc sine turns a rounding of 1e-16 at 1 into its square root.
  expect_near(vector_of(Incline2Euler, just), euler(0, 60, -90), 5e-8);
}

TEST(Photogrammetry, level_and_east_is_zero) {
  expect_near(vector_of(Euler2LPS, euler(90, 0, 0)), column({0, 0, 0}), 1e-15);
}

TEST(Photogrammetry, each_angle_by_hand) {
  expect_near(vector_of(Euler2LPS, euler(0, 0, 0)), euler(0, 0, 90), 1e-15);
  expect_near(vector_of(Euler2LPS, euler(100, 0, 0)), euler(0, 0, -10), 1e-15);
  expect_near(vector_of(Euler2LPS, euler(90, 0, 25)), euler(25, 0, 0), 1e-15);
  expect_near(vector_of(Euler2LPS, euler(90, 20, 0)), euler(0, -20, 0), 1e-15);
}

TEST(Photogrammetry, its_rotation_is_the_attitude_in_mapping_and_image_axes) {
  constexpr unsigned kSeed = 45;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  const OwnedMatrix mapping(3, 3,
                            {0, 1, 0, 1, 0, 0, 0, 0, -1});  // east, north, up of north, east, down
  const OwnedMatrix image(3, 3,
                          {1, 0, 0, 0, -1, 0, 0, 0, -1});  // forward, right, down of image axes
  for (int round = 0; round < 500; ++round) {
    OwnedMatrix e = random.matrix(3, 1, 3);
    // Forward to the east with the nose straight up makes phi a right angle.
    if (round < 6) {
      MatFillR(&e, 3, 1, {kRight, round % 2 == 0 ? kRight : -kRight, 0.3 * round});
    }
    const OwnedMatrix lps = vector_of(Euler2LPS, e);
    const double so = std::sin(lps(0, 0));
    const double co = std::cos(lps(0, 0));
    const double sp = std::sin(lps(1, 0));
    const double cp = std::cos(lps(1, 0));
    const double sk = std::sin(lps(2, 0));
    const double ck = std::cos(lps(2, 0));
    const OwnedMatrix omega(3, 3, {1, 0, 0, 0, co, -so, 0, so, co});
    const OwnedMatrix phi(3, 3, {cp, 0, sp, 0, 1, 0, -sp, 0, cp});
    const OwnedMatrix kappa(3, 3, {ck, -sk, 0, sk, ck, 0, 0, 0, 1});
    expect_near(product(product(omega, phi), kappa),
                product(product(mapping, matrix_of(Euler2DirCos, e)), image), 1e-14);
  }
}

TEST(Vectors, the_skew_matrix_multiplies_as_the_cross_product) {
  const OwnedMatrix s = matrix_of(Vec2SkewSym, column({1, 2, 3}));
  EXPECT_EQ(elements(s), (Values{0, -3, 2, 3, 0, -1, -2, 1, 0}));
  const OwnedMatrix x = column({1, 2, 3});
  const OwnedMatrix y = column({-4, 5, 0.5});
  OwnedMatrix r(3, 1);
  MatCrossProduct(&r, &x, &y);
  expect_near(product(s, y), r, 0);
}

TEST(Vectors, a_vector_becomes_a_diagonal) {
  const OwnedMatrix row(1, 2, {3, 4});
  OwnedMatrix r(2, 2);
  ASSERT_EQ(Vec2Diag(&r, &row), 0);
  EXPECT_EQ(elements(r), (Values{3, 0, 0, 4}));
  ASSERT_EQ(MatFillR(&r, 2, 1, {5, 6}), 0);
  ASSERT_EQ(Vec2Diag(&r, &r), 0);
  EXPECT_EQ(elements(r), (Values{5, 0, 0, 6}));
}

TEST(SensedAcceleration, at_rest_tells_pitch_and_roll) {
  expect_near(vector_of(attitude_from_sensed_accel, column({0, 0, -9.8})), euler(0, 0, 0), 0);
  for (int pitch = -85; pitch <= 85; pitch += 10) {
    for (int roll = -175; roll <= 180; roll += 5) {
      const OwnedMatrix c = matrix_of(Euler2DirCos, euler(77, pitch, roll));
      const OwnedMatrix sensed = product(transpose(c), column({0, 0, -9.8}));
      expect_near(vector_of(attitude_from_sensed_accel, sensed), euler(0, pitch, roll), 1e-13);
    }
  }
}

TEST(SensedAcceleration, on_the_tail_or_the_nose_there_is_no_roll) {
  expect_near(vector_of(attitude_from_sensed_accel, column({9.8, 0, 0})), euler(0, 90, 0), 0);
  expect_near(vector_of(attitude_from_sensed_accel, column({-9.8, -0.0, 0})), euler(0, -90, 0), 0);
}

TEST(SensedAcceleration, of_nothing_is_refused) {
  const OwnedMatrix zero = column({0, 0, 0});
  OwnedMatrix r = column({7, 7, 7});
  expect_refused([&] { return attitude_from_sensed_accel(&r, &zero); }, 3,
                 "attitude_from_sensed_accel", kAttitudeFile);
  EXPECT_EQ(r(0, 0), 7);
}

TEST(Spherical, by_hand) {
  const double root = std::sqrt(2.0);
  expect_near(vector_of(cartesian2sphericalRV, column({1, 1, root})), column({2, kPi / 4, kPi / 4}),
              1e-15);
  expect_near(vector_of(cartesian2sphericalRV, column({0, -3, 0})), column({3, -kRight, 0}), 1e-15);
  expect_near(vector_of(cartesian2sphericalRV, column({-2, 0, 0})), column({2, kPi, 0}), 1e-15);
}

TEST(Spherical, angles_without_a_meaning_are_zero) {
  expect_near(vector_of(cartesian2sphericalRV, column({-0.0, -0.0, -5})), column({5, 0, -kRight}),
              0);
  expect_near(vector_of(cartesian2sphericalRV, column({0, 0, 0})), column({0, 0, 0}), 0);
}

TEST(Refusal, every_attitude_function_refuses_bad_arguments_and_writes_nothing) {
  struct Form {
    OneMatrix call;
    const char* name;
    int argument_cols;
  };
  const OwnedMatrix vector = column({0.1, 0.2, 0.3});
  const OwnedMatrix bad = column({0.1, kNan, 0.3});
  const OwnedMatrix endless = column({0.1, kInfinity, 0.3});
  const OwnedMatrix square = identity(3);
  OwnedMatrix bad_square = square;
  bad_square(2, 2) = kNan;
  const OwnedMatrix two(2, 2, {1, 2, 3, 4});
  for (const auto& form : {Form{Euler2DirCos, "Euler2DirCos", 1},
                           {Euler2DirCos2, "Euler2DirCos2", 1},
                           {Euler2DirCosH, "Euler2DirCosH", 1},
                           {DirCos2Euler, "DirCos2Euler", 3},
                           {Incline2Euler, "Incline2Euler", 1},
                           {Euler2LPS, "Euler2LPS", 1},
                           {Vec2SkewSym, "Vec2SkewSym", 1},
                           {Vec2Diag, "Vec2Diag", 1},
                           {attitude_from_sensed_accel, "attitude_from_sensed_accel", 1},
                           {cartesian2sphericalRV, "cartesian2sphericalRV", 1}}) {
    const OwnedMatrix& good = form.argument_cols == 1 ? vector : square;
    OwnedMatrix r(3, 3, {9, 9, 9, 9, 9, 9, 9, 9, 9});
    OwnedMatrix small(2, 1, {9, 9});
    expect_refused([&] { return form.call(&r, nullptr); }, 2, form.name, kAttitudeFile);
    expect_refused([&] { return form.call(nullptr, &good); }, 2, form.name, kAttitudeFile);
    expect_refused([&] { return form.call(&r, form.argument_cols == 1 ? &bad : &bad_square); }, 3,
                   form.name, kAttitudeFile);
    expect_refused([&] { return form.call(&r, form.argument_cols == 1 ? &endless : &bad_square); },
                   3, form.name, kAttitudeFile);
    expect_refused([&] { return form.call(&r, &two); }, 3, form.name, kAttitudeFile);
    expect_refused([&] { return form.call(&small, &good); }, 4, form.name, kAttitudeFile);
    EXPECT_EQ(r.storage(), Values(9, 9)) << form.name;
    EXPECT_EQ(small.storage(), Values(2, 9)) << form.name;
  }
}

}  // namespace
