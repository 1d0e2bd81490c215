#include "library/quatern.h"

#include <gtest/gtest.h>

#include "library/mathematics.h"

namespace {

using namespace mathematics;
using Values = std::vector<double>;

constexpr const char* kQuaternFile = "quatern.cpp";

void expect_near(const Quaternion& a, const Quaternion& b, double tolerance) {
  EXPECT_NEAR(a.w, b.w, tolerance);
  EXPECT_NEAR(a.x, b.x, tolerance);
  EXPECT_NEAR(a.y, b.y, tolerance);
  EXPECT_NEAR(a.z, b.z, tolerance);
}
using mathematics::expect_near;

// The same rotation: equal up to the sign of all four.
void expect_same_rotation(const Quaternion& a, const Quaternion& b, double tolerance) {
  const double dot = a.w * b.w + a.x * b.x + a.y * b.y + a.z * b.z;
  const double sign = dot < 0 ? -1 : 1;
  expect_near(Quaternion{sign * a.w, sign * a.x, sign * a.y, sign * a.z}, b, tolerance);
}

Quaternion product(const Quaternion& a, const Quaternion& b) {
  Quaternion r;
  EXPECT_EQ(QuatMultRAB(&r, &a, &b), 0);
  return r;
}

Quaternion of_euler(const OwnedMatrix& e) {
  Quaternion q;
  EXPECT_EQ(QuatFromEulerRE(&q, &e), 0);
  return q;
}

Quaternion of_rotation(const OwnedMatrix& vector) {
  Quaternion q;
  EXPECT_EQ(QuatFromRotVecRA(&q, &vector), 0);
  return q;
}

OwnedMatrix matrix_of(const Quaternion& q) {
  OwnedMatrix c(3, 3);
  EXPECT_EQ(Quat2DirCos(&c, &q), 0);
  return c;
}

OwnedMatrix rotation_vector(const Quaternion& q) {
  OwnedMatrix r(3, 1);
  EXPECT_EQ(Quat2RotVecRQ(&r, &q), 0);
  return r;
}

const Quaternion kI{0, 1, 0, 0};
const Quaternion kJ{0, 0, 1, 0};
const Quaternion kK{0, 0, 0, 1};

TEST(Quaternion, four_doubles_scalar_first) {
  static_assert(sizeof(Quaternion) == 4 * sizeof(double));
  const Quaternion none;
  EXPECT_EQ(none.w, 1);
  EXPECT_EQ(none.x, 0);
  EXPECT_EQ(none.y, 0);
  EXPECT_EQ(none.z, 0);
}

TEST(Quaternion, multiplies_by_hamiltons_rule) {
  expect_near(product(kI, kJ), kK, 0);
  expect_near(product(kJ, kK), kI, 0);
  expect_near(product(kK, kI), kJ, 0);
  expect_near(product(kJ, kI), Quaternion{0, 0, 0, -1}, 0);
  expect_near(product(kI, kI), Quaternion{-1, 0, 0, 0}, 0);
  // (1 + 2i + 3j + 4k)(5 + 6i + 7j + 8k): 5-12-21-32, 6+10+24-28, 7-16+15+24, 8+14-18+20
  expect_near(product({1, 2, 3, 4}, {5, 6, 7, 8}), Quaternion{-60, 12, 30, 24}, 0);
}

TEST(Quaternion, copy_conjugate_and_identity) {
  const Quaternion a{1, 2, 3, 4};
  Quaternion r;
  ASSERT_EQ(QuatCopy(&r, &a), 0);
  expect_near(r, a, 0);
  ASSERT_EQ(QuatConjugate(&r, &a), 0);
  expect_near(r, Quaternion{1, -2, -3, -4}, 0);
  ASSERT_EQ(QuatConjugate(&r, &r), 0);
  expect_near(r, a, 0);
  ASSERT_EQ(QuatIdentity(&r), 0);
  expect_near(r, Quaternion{1, 0, 0, 0}, 0);
}

TEST(Quaternion, appending_multiplies_from_the_right) {
  Quaternion q = kI;
  ASSERT_EQ(QuatAppend(&q, &kJ), 0);
  expect_near(q, kK, 0);
  ASSERT_EQ(QuatAppend(&q, &q), 0);
  expect_near(q, Quaternion{-1, 0, 0, 0}, 0);
}

TEST(Quaternion, a_product_may_replace_either_factor) {
  const Quaternion a{1, 2, 3, 4};
  const Quaternion b{5, 6, 7, 8};
  Quaternion r = a;
  ASSERT_EQ(QuatMultRAB(&r, &r, &b), 0);
  expect_near(r, Quaternion{-60, 12, 30, 24}, 0);
  r = b;
  ASSERT_EQ(QuatMultRAB(&r, &a, &r), 0);
  expect_near(r, Quaternion{-60, 12, 30, 24}, 0);
}

TEST(Normalise, divides_by_the_norm) {
  Quaternion q{2, -4, 5, 6};  // 4 + 16 + 25 + 36 = 81
  ASSERT_EQ(QuatNormalise(&q), 0);
  expect_near(q, Quaternion{2.0 / 9, -4.0 / 9, 5.0 / 9, 6.0 / 9}, 1e-16);
}

TEST(Normalise, a_squared_norm_at_the_limit_is_refused_and_one_above_it_is_not) {
  Quaternion zero{0, 0, 0, 0};
  expect_refused([&] { return QuatNormalise(&zero); }, 5, "QuatNormalise", kQuaternFile);
  EXPECT_EQ(zero.w, 0);
  Quaternion below{0.0316, 0, 0, 0};  // squared 0.00099856
  expect_refused([&] { return QuatNormalise(&below); }, 5, "QuatNormalise", kQuaternFile);
  EXPECT_EQ(below.w, 0.0316);
  Quaternion above{0, 0.0317, 0, 0};  // squared 0.00100489
  ASSERT_EQ(QuatNormalise(&above), 0);
  EXPECT_DOUBLE_EQ(above.x, 1);
  Quaternion bad{1, kNan, 0, 0};
  expect_refused([&] { return QuatNormalise(&bad); }, 3, "QuatNormalise", kQuaternFile);
  Quaternion huge{1e200, 0, 0, 0};  // its square is beyond double
  expect_refused([&] { return QuatNormalise(&huge); }, 3, "QuatNormalise", kQuaternFile);
  expect_refused([] { return QuatNormalise(nullptr); }, 2, "QuatNormalise", kQuaternFile);
}

TEST(Rotation, a_quarter_turn_about_down_takes_forward_to_right) {
  const double s = std::sqrt(0.5);
  const Quaternion q{s, 0, 0, s};
  const OwnedMatrix a(3, 2, {1, 0, 0, 1, 0, 0});  // columns forward and right
  OwnedMatrix r(3, 2);
  ASSERT_EQ(QuatRotatesMatrixRAQ(&r, &a, &q), 0);
  expect_near(r, OwnedMatrix(3, 2, {0, -1, 1, 0, 0, 0}), 1e-15);
  ASSERT_EQ(QuatRotatesMatrixRAQc(&r, &a, &q), 0);
  expect_near(r, OwnedMatrix(3, 2, {0, 1, -1, 0, 0, 0}), 1e-15);
}

TEST(Rotation, agrees_with_the_product_on_both_sides) {
  constexpr unsigned kSeed = 4;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  for (int round = 0; round < 200; ++round) {
    const Quaternion q = of_rotation(random.matrix(3, 1, 3));
    OwnedMatrix v = random.matrix(3, 1);
    Quaternion conjugate;
    QuatConjugate(&conjugate, &q);
    const Quaternion turned = product(product(q, {0, v(0, 0), v(1, 0), v(2, 0)}), conjugate);
    OwnedMatrix r(3, 1);
    ASSERT_EQ(QuatRotatesMatrixRAQ(&r, &v, &q), 0);
    expect_near(r, column({turned.x, turned.y, turned.z}), 1e-13);
    ASSERT_EQ(QuatRotatesMatrixRAQc(&r, &r, &q), 0);
    expect_near(r, v, 1e-13);
    OwnedMatrix by_matrix(3, 1);
    const OwnedMatrix c = matrix_of(q);
    MatMultRAB(&by_matrix, &c, &v);
    ASSERT_EQ(QuatRotatesMatrixRAQ(&v, &v, &q), 0);
    expect_near(v, by_matrix, 1e-13);
  }
}

TEST(Rotation, the_length_of_the_quaternion_does_not_matter) {
  const Quaternion unit = of_rotation(column({0.3, -0.2, 1}));
  const Quaternion longer{-3 * unit.w, -3 * unit.x, -3 * unit.y, -3 * unit.z};
  expect_near(matrix_of(longer), matrix_of(unit), 1e-15);
  expect_near(rotation_vector(longer), column({0.3, -0.2, 1}), 1e-15);
}

TEST(RotationVector, by_hand) {
  expect_near(of_rotation(column({0, 0, kRight})), Quaternion{std::sqrt(0.5), 0, 0, std::sqrt(0.5)},
              1e-15);
  // 120 degrees about (1, 1, 1): cos 60 = 1/2, sin 60 / sqrt 3 = 1/2
  const double part = 2 * kPi / 3 / std::sqrt(3.0);
  expect_near(of_rotation(column({part, part, part})), Quaternion{0.5, 0.5, 0.5, 0.5}, 1e-15);
  expect_near(of_rotation(column({0, 0, 0})), Quaternion{1, 0, 0, 0}, 0);
  expect_near(rotation_vector({1, 0, 0, 0}), column({0, 0, 0}), 0);
  expect_near(rotation_vector({-1, 0, 0, 0}), column({0, 0, 0}), 0);
}

TEST(RotationVector, comes_back_up_to_half_a_turn) {
  constexpr unsigned kSeed = 14;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  for (int round = 0; round < 500; ++round) {
    const OwnedMatrix v = random.matrix(3, 1, 1.8);  // no longer than 1.8 sqrt 3 < pi
    expect_near(rotation_vector(of_rotation(v)), v, 1e-14);
  }
  for (const double size : {1e-5, 1e-9, 1e-150, 1e-300, 1e-307}) {
    const OwnedMatrix v = column({size, 0, 0});
    EXPECT_NEAR(rotation_vector(of_rotation(v))(0, 0) / size, 1, 1e-15) << size;
  }
}

TEST(RotationVector, takes_the_shorter_way_round) {
  // 270 degrees one way is 90 the other.
  const OwnedMatrix r = rotation_vector(of_rotation(column({0, 1.5 * kPi, 0})));
  expect_near(r, column({0, -kRight, 0}), 1e-15);
  const OwnedMatrix half = rotation_vector({0, 0, 0, 1});
  expect_near(half, column({0, 0, kPi}), 1e-15);
}

TEST(AngularRate, is_the_rotation_over_time) {
  const OwnedMatrix rate = column({0.1, -0.2, 0.3});
  Quaternion q;
  ASSERT_EQ(QuatFromAngRateRA(&q, &rate, 2), 0);
  expect_near(q, of_rotation(column({0.2, -0.4, 0.6})), 1e-16);
  OwnedMatrix r(3, 1);
  ASSERT_EQ(Quat2AngRateRQ(&r, &q, 2), 0);
  expect_near(r, rate, 1e-15);
  ASSERT_EQ(Quat2AngRateRQ(&r, &q, -2), 0);
  expect_near(r, column({-0.1, 0.2, -0.3}), 1e-15);
  ASSERT_EQ(QuatFromAngRateRA(&q, &rate, 0), 0);
  expect_near(q, Quaternion{1, 0, 0, 0}, 0);
}

TEST(AngularRate, times_without_a_rate_are_refused) {
  const Quaternion q = of_rotation(column({1, 0, 0}));
  OwnedMatrix r = column({7, 7, 7});
  expect_refused([&] { return Quat2AngRateRQ(&r, &q, 0); }, 3, "Quat2AngRateRQ", kQuaternFile);
  expect_refused([&] { return Quat2AngRateRQ(&r, &q, kNan); }, 3, "Quat2AngRateRQ", kQuaternFile);
  expect_refused([&] { return Quat2AngRateRQ(&r, &q, 5e-324); }, 3, "Quat2AngRateRQ", kQuaternFile);
  EXPECT_EQ(elements(r), (Values{7, 7, 7}));
  Quaternion s{1, 2, 3, 4};
  expect_refused([&] { return QuatFromAngRateRA(&s, &r, kInfinity); }, 3, "QuatFromAngRateRA",
                 kQuaternFile);
  expect_refused([&] { return QuatFromAngRateRA(&s, &r, 1e308); }, 3, "QuatFromAngRateRA",
                 kQuaternFile);
  EXPECT_EQ(s.w, 1);
}

TEST(Attitude, agrees_with_the_matrices_over_a_dense_grid) {
  for (int heading = -175; heading <= 180; heading += 15) {
    for (int pitch = -90; pitch <= 90; pitch += 6) {
      for (int roll = -170; roll < 180; roll += 14) {
        const OwnedMatrix e = column({radians(heading), radians(pitch), radians(roll)});
        const Quaternion q = of_euler(e);
        OwnedMatrix c(3, 3);
        ASSERT_EQ(Euler2DirCos(&c, &e), 0);
        expect_near(matrix_of(q), c, 1e-15);
        OwnedMatrix back(3, 1);
        ASSERT_EQ(Quat2EulerRQ(&back, &q), 0);
        if (std::abs(pitch) < 90) {
          expect_near(back, e, 1e-13);
        } else {
          EXPECT_EQ(back(2, 0), 0);
          expect_same_rotation(of_euler(back), q, 1e-15);
        }
      }
    }
  }
}

TEST(Attitude, a_product_turns_first_by_its_second_factor) {
  const Quaternion heading = of_euler(column({0.5, 0, 0}));
  const Quaternion pitch = of_euler(column({0, 0.4, 0}));
  const Quaternion roll = of_euler(column({0, 0, 0.3}));
  expect_near(product(product(heading, pitch), roll), of_euler(column({0.5, 0.4, 0.3})), 1e-15);
}

TEST(Interpolation, meets_its_ends_and_goes_on_at_a_steady_rate) {
  const Quaternion a = of_euler(column({0.2, 0.1, -0.4}));
  const OwnedMatrix step = column({0.3, -0.5, 0.7});
  const Quaternion b = product(a, of_rotation(step));
  const auto at = [&](double fraction) {
    Quaternion r;
    EXPECT_EQ(QuatInterpolateRABf(&r, &a, &b, fraction), 0);
    return r;
  };
  expect_near(at(0), a, 1e-15);
  expect_near(at(1), b, 1e-15);
  for (const double fraction : {0.25, 0.5, 0.9, -0.5, 2.0}) {
    const Quaternion part = of_rotation(column({0.3 * fraction, -0.5 * fraction, 0.7 * fraction}));
    expect_near(at(fraction), product(a, part), 1e-15);
  }
}

TEST(Interpolation, takes_the_shorter_arc_whatever_the_signs) {
  const Quaternion a{1, 0, 0, 0};
  const Quaternion b = of_rotation(column({0, 0, 1}));
  const Quaternion negated{-b.w, -b.x, -b.y, -b.z};
  Quaternion r;
  ASSERT_EQ(QuatInterpolateRABf(&r, &a, &negated, 0.5), 0);
  expect_same_rotation(r, of_rotation(column({0, 0, 0.5})), 1e-15);
}

TEST(Interpolation, normalises_its_ends_and_may_replace_one) {
  const Quaternion half = of_rotation(column({0, 0, 0.5}));
  Quaternion a{2, 0, 0, 0};
  const Quaternion unit = of_rotation(column({0, 0, 1}));
  Quaternion b{3 * unit.w, 0, 0, 3 * unit.z};
  Quaternion kept = b;
  ASSERT_EQ(QuatInterpolateRABf(&b, &a, &b, 0.5), 0);
  expect_near(b, half, 1e-15);
  ASSERT_EQ(QuatInterpolateRABf(&a, &a, &kept, 0.5), 0);
  expect_near(a, half, 1e-15);
}

TEST(Interpolation, bad_arguments_are_refused) {
  const Quaternion a;
  const Quaternion bad{1, 0, kInfinity, 0};
  const Quaternion zero{0, 0, 0, 0};
  Quaternion r{1, 2, 3, 4};
  const char* name = "QuatInterpolateRABf";
  expect_refused([&] { return QuatInterpolateRABf(&r, &bad, &a, 0.5); }, 3, name, kQuaternFile);
  expect_refused([&] { return QuatInterpolateRABf(&r, &a, &bad, 0.5); }, 3, name, kQuaternFile);
  expect_refused([&] { return QuatInterpolateRABf(&r, &zero, &a, 0.5); }, 5, name, kQuaternFile);
  expect_refused([&] { return QuatInterpolateRABf(&r, &a, &zero, 0.5); }, 5, name, kQuaternFile);
  expect_refused([&] { return QuatInterpolateRABf(&r, &a, &kI, kNan); }, 3, name, kQuaternFile);
  expect_refused([&] { return QuatInterpolateRABf(&r, nullptr, &a, 0.5); }, 2, name, kQuaternFile);
  expect_refused([&] { return QuatInterpolateRABf(nullptr, &a, &a, 0.5); }, 2, name, kQuaternFile);
  EXPECT_EQ(r.w, 1);
}

TEST(QuaternionRefusal, forms_of_quaternions_refuse_bad_arguments) {
  const Quaternion a;
  const Quaternion bad{kNan, 0, 0, 0};
  Quaternion r{1, 2, 3, 4};
  expect_refused([&] { return QuatMultRAB(&r, nullptr, &a); }, 2, "QuatMultRAB", kQuaternFile);
  expect_refused([&] { return QuatMultRAB(&r, &a, nullptr); }, 2, "QuatMultRAB", kQuaternFile);
  expect_refused([&] { return QuatMultRAB(nullptr, &a, &a); }, 2, "QuatMultRAB", kQuaternFile);
  expect_refused([&] { return QuatMultRAB(&r, &a, &bad); }, 3, "QuatMultRAB", kQuaternFile);
  expect_refused([&] { return QuatMultRAB(&r, &bad, &a); }, 3, "QuatMultRAB", kQuaternFile);
  expect_refused([&] { return QuatCopy(&r, nullptr); }, 2, "QuatCopy", kQuaternFile);
  expect_refused([&] { return QuatCopy(&r, &bad); }, 3, "QuatCopy", kQuaternFile);
  expect_refused([&] { return QuatCopy(nullptr, &a); }, 2, "QuatCopy", kQuaternFile);
  expect_refused([&] { return QuatConjugate(&r, &bad); }, 3, "QuatConjugate", kQuaternFile);
  expect_refused([&] { return QuatConjugate(&r, nullptr); }, 2, "QuatConjugate", kQuaternFile);
  expect_refused([&] { return QuatIdentity(nullptr); }, 2, "QuatIdentity", kQuaternFile);
  expect_refused([&] { return QuatAppend(&r, &bad); }, 3, "QuatAppend", kQuaternFile);
  expect_refused([&] { return QuatAppend(nullptr, &a); }, 2, "QuatAppend", kQuaternFile);
  expect_refused([&] { return QuatAppend(&r, nullptr); }, 2, "QuatAppend", kQuaternFile);
  expect_near(r, Quaternion{1, 2, 3, 4}, 0);
}

TEST(QuaternionRefusal, forms_with_matrices_refuse_bad_arguments_and_write_nothing) {
  const Quaternion good;
  const Quaternion bad{kNan, 0, 0, 0};
  const Quaternion zero{0, 0, 0, 0};
  const OwnedMatrix vector = column({1, 2, 3});
  const OwnedMatrix two = column({1, 2});
  const OwnedMatrix not_a_number = column({1, 2, kNan});
  OwnedMatrix r(3, 3, {9, 9, 9, 9, 9, 9, 9, 9, 9});
  OwnedMatrix small(2, 1, {9, 9});

  using Turn = int (*)(RealMatrix*, const RealMatrix*, const Quaternion*);
  struct TurnForm {
    Turn call;
    const char* name;
  };
  for (const auto& form : {TurnForm{QuatRotatesMatrixRAQ, "QuatRotatesMatrixRAQ"},
                           {QuatRotatesMatrixRAQc, "QuatRotatesMatrixRAQc"}}) {
    expect_refused([&] { return form.call(&r, &two, &good); }, 3, form.name, kQuaternFile);
    expect_refused([&] { return form.call(&r, &not_a_number, &good); }, 3, form.name, kQuaternFile);
    expect_refused([&] { return form.call(&r, &vector, &bad); }, 3, form.name, kQuaternFile);
    expect_refused([&] { return form.call(&r, &vector, &zero); }, 5, form.name, kQuaternFile);
    expect_refused([&] { return form.call(&r, nullptr, &good); }, 2, form.name, kQuaternFile);
    expect_refused([&] { return form.call(&r, &vector, nullptr); }, 2, form.name, kQuaternFile);
    expect_refused([&] { return form.call(nullptr, &vector, &good); }, 2, form.name, kQuaternFile);
    expect_refused([&] { return form.call(&small, &vector, &good); }, 4, form.name, kQuaternFile);
  }

  using Out = int (*)(RealMatrix*, const Quaternion*);
  struct OutForm {
    Out call;
    const char* name;
  };
  const Out rate = [](RealMatrix* result, const Quaternion* q) {
    return Quat2AngRateRQ(result, q, 1);
  };
  for (const auto& form : {OutForm{Quat2DirCos, "Quat2DirCos"},
                           {Quat2RotVecRQ, "Quat2RotVecRQ"},
                           {Quat2EulerRQ, "Quat2EulerRQ"},
                           {rate, "Quat2AngRateRQ"}}) {
    expect_refused([&] { return form.call(&r, nullptr); }, 2, form.name, kQuaternFile);
    expect_refused([&] { return form.call(nullptr, &good); }, 2, form.name, kQuaternFile);
    expect_refused([&] { return form.call(&r, &bad); }, 3, form.name, kQuaternFile);
    expect_refused([&] { return form.call(&r, &zero); }, 5, form.name, kQuaternFile);
    expect_refused([&] { return form.call(&small, &good); }, 4, form.name, kQuaternFile);
  }
  EXPECT_EQ(r.storage(), Values(9, 9));
  EXPECT_EQ(small.storage(), Values(2, 9));

  using In = int (*)(Quaternion*, const RealMatrix*);
  struct InForm {
    In call;
    const char* name;
  };
  const In from_rate = [](Quaternion* result, const RealMatrix* a) {
    return QuatFromAngRateRA(result, a, 1);
  };
  Quaternion q{1, 2, 3, 4};
  for (const auto& form : {InForm{QuatFromRotVecRA, "QuatFromRotVecRA"},
                           {QuatFromEulerRE, "QuatFromEulerRE"},
                           {from_rate, "QuatFromAngRateRA"}}) {
    expect_refused([&] { return form.call(&q, nullptr); }, 2, form.name, kQuaternFile);
    expect_refused([&] { return form.call(nullptr, &vector); }, 2, form.name, kQuaternFile);
    expect_refused([&] { return form.call(&q, &two); }, 3, form.name, kQuaternFile);
    expect_refused([&] { return form.call(&q, &not_a_number); }, 3, form.name, kQuaternFile);
  }
  expect_near(q, Quaternion{1, 2, 3, 4}, 0);
}

}  // namespace
