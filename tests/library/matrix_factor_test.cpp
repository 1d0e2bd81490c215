#include "library/matrix_factor.h"

#include <gtest/gtest.h>

#include "library/mathematics.h"

namespace {

using namespace mathematics;
using Values = std::vector<double>;

constexpr const char* kFactorFile = "matrix_factor.cpp";
constexpr const char* kDecomposition = "Encountered ill-conditioned matrix in Crout decomposition";

class Crout : public CroutMatrix {
 public:
  explicit Crout(int count) { MatAllocC(this, count); }
  ~Crout() { MatCFree(this); }
  Crout(const Crout&) = delete;
  Crout& operator=(const Crout&) = delete;
};

OwnedMatrix symmetric(Random& random, int size) {
  const OwnedMatrix root = random.matrix(size, size, 1);
  OwnedMatrix m(size, size);
  MatMultRABt(&m, &root, &root);
  for (int i = 0; i < size; ++i) m(i, i) += 0.5;
  return m;
}

TEST(UDUt, by_hand) {
  // From the last row up: d1 = 4, u01 = 2 / 4, d0 = 3 - 0.5 * 4 * 0.5.
  const OwnedMatrix a(2, 2, {3, 2, 2, 4});
  OwnedMatrix u(2, 2);
  Diagonal d(2);
  ASSERT_EQ(MatUDUtDecompUDA(&u, &d, &a), 0);
  EXPECT_EQ(elements(u), (Values{1, 0.5, 0, 1}));
  EXPECT_EQ(d.storage(), (Values{2, 4}));
  EXPECT_EQ(d.size, 2);
}

TEST(UDUt, reads_the_upper_triangle_alone) {
  const OwnedMatrix a(2, 2, {3, 2, 99, 4});
  OwnedMatrix u(2, 2);
  Diagonal d(2);
  ASSERT_EQ(MatUDUtDecompUDA(&u, &d, &a), 0);
  EXPECT_EQ(elements(u), (Values{1, 0.5, 0, 1}));
}

TEST(UDUt, its_factors_multiply_back) {
  constexpr unsigned kSeed = 31;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  for (int size = 1; size <= 12; ++size) {
    const OwnedMatrix a = symmetric(random, size);
    OwnedMatrix u(size, size);
    Diagonal d(size);
    ASSERT_EQ(MatUDUtDecompUDA(&u, &d, &a), 0);
    OwnedMatrix ud(size, size);
    OwnedMatrix back(size, size);
    MatMultRAD(&ud, &u, &d);
    MatMultRABt(&back, &ud, &u);
    expect_near(back, a, 1e-12 * size);
    for (int i = 0; i < size; ++i) {
      EXPECT_EQ(u(i, i), 1);
      for (int j = 0; j < i; ++j) EXPECT_EQ(u(i, j), 0);
    }
  }
}

TEST(UDUt, a_diagonal_below_the_limit_is_refused_and_nothing_is_written) {
  const char* text = "Encountered ill-conditioned matrix in UDUt decomposition";
  OwnedMatrix u(2, 2, {7, 7, 7, 7});
  Diagonal d{8, 8};
  const auto refused = [&](const OwnedMatrix& a) {
    expect_refused([&] { return MatUDUtDecompUDA(&u, &d, &a); }, 5, "MatUDUtDecompUDA", kFactorFile,
                   text);
  };
  refused({2, 2, {1, 0, 0, 0.99e-20}});
  refused({2, 2, {1, 0, 0, -1}});
  refused({2, 2, {1, 2, 2, 4}});  // d1 = 4, d0 = 1 - 0.5 * 4 * 0.5 = 0
  EXPECT_EQ(elements(u), (Values{7, 7, 7, 7}));
  EXPECT_EQ(d.storage(), (Values{8, 8}));

  const OwnedMatrix just(2, 2, {1, 0, 0, 1e-20});
  EXPECT_EQ(MatUDUtDecompUDA(&u, &d, &just), 0);
  EXPECT_EQ(d.storage(), (Values{1, 1e-20}));
}

TEST(UDUt, the_upper_factor_may_replace_its_argument) {
  OwnedMatrix a(2, 2, {3, 2, 2, 4});
  Diagonal d(2);
  ASSERT_EQ(MatUDUtDecompUDA(&a, &d, &a), 0);
  EXPECT_EQ(elements(a), (Values{1, 0.5, 0, 1}));
}

TEST(UDUt, bad_arguments_are_refused) {
  const OwnedMatrix a(2, 2, {3, 2, 2, 4});
  const OwnedMatrix wide(1, 2, {3, 2});
  OwnedMatrix u(2, 2);
  OwnedMatrix small(1, 2);
  Diagonal d(2);
  Diagonal one(1);
  const char* name = "MatUDUtDecompUDA";
  expect_refused([&] { return MatUDUtDecompUDA(&u, &d, &wide); }, 3, name, kFactorFile);
  expect_refused([&] { return MatUDUtDecompUDA(&u, &d, nullptr); }, 2, name, kFactorFile);
  expect_refused([&] { return MatUDUtDecompUDA(nullptr, &d, &a); }, 2, name, kFactorFile);
  expect_refused([&] { return MatUDUtDecompUDA(&u, nullptr, &a); }, 2, name, kFactorFile);
  expect_refused([&] { return MatUDUtDecompUDA(&small, &d, &a); }, 4, name, kFactorFile);
  expect_refused([&] { return MatUDUtDecompUDA(&u, &one, &a); }, 4, name, kFactorFile);
}

TEST(Ubksb, solves_from_the_last_row_up) {
  // x2 = 8 / 4 = 2, x1 = (7 - 3 * 2) / 1 = 1, x0 = (13 - 1 - 3 * 2) / 2 = 3
  const OwnedMatrix u(3, 3, {2, 1, 3, 99, 1, 3, 99, 99, 4});
  OwnedMatrix b = column({13, 7, 8});
  OwnedMatrix r(3, 1);
  ASSERT_EQ(MatUbksbRUB(&r, &u, &b), 0);
  EXPECT_EQ(elements(r), (Values{3, 1, 2}));
  ASSERT_EQ(MatUbksbRUB(&b, &u, &b), 0);
  EXPECT_EQ(elements(b), (Values{3, 1, 2}));
}

TEST(Ubksb, a_zero_on_the_diagonal_is_refused) {
  const OwnedMatrix u(2, 2, {1, 5, 0, 0.9e-20});
  const OwnedMatrix b = column({1, 2});
  OwnedMatrix r = column({8, 9});
  expect_refused([&] { return MatUbksbRUB(&r, &u, &b); }, 5, "MatUbksbRUB", kFactorFile);
  const OwnedMatrix three = column({1, 2, 3});
  expect_refused([&] { return MatUbksbRUB(&r, &u, &three); }, 3, "MatUbksbRUB", kFactorFile);
  expect_refused([&] { return MatUbksbRUB(&r, nullptr, &b); }, 2, "MatUbksbRUB", kFactorFile);
  const OwnedMatrix unit(2, 2, {1, 5, 0, 1});
  OwnedMatrix small(1, 1, {4});
  expect_refused([&] { return MatUbksbRUB(&small, &unit, &b); }, 4, "MatUbksbRUB", kFactorFile);
  EXPECT_EQ(elements(r), (Values{8, 9}));
}

TEST(CroutFactors, by_hand_with_an_exchange) {
  // Shares of the first column: 1/2 in row 0, 4/4 in row 1. Rows change places: pivot 4, then
  // u01 = 2/4, l10 = 1, l11 = 2 - 1 * 0.5.
  const OwnedMatrix a(2, 2, {1, 2, 4, 2});
  Crout c(2);
  ASSERT_EQ(MatCroutDecompCA(&c, &a), 0);
  EXPECT_EQ(c.size, 2);
  EXPECT_EQ((Values{c.data, c.data + 4}), (Values{4, 0.5, 1, 1.5}));
  EXPECT_EQ(c.pivots[0], 1);
  EXPECT_EQ(c.pivots[1], 1);
  double s = 0;
  ASSERT_EQ(MatCroutDetSC(&s, &c), 0);
  EXPECT_EQ(s, -6);  // 1 * 2 - 2 * 4
}

TEST(CroutFactors, a_zero_in_the_first_place_is_no_obstacle) {
  const OwnedMatrix a(3, 3, {0, 1, 0, 0, 0, 1, 1, 0, 0});
  Crout c(3);
  ASSERT_EQ(MatCroutDecompCA(&c, &a), 0);
  double s = 0;
  ASSERT_EQ(MatCroutDetSC(&s, &c), 0);
  EXPECT_EQ(s, 1);  // an even permutation
  const OwnedMatrix b = column({1, 2, 3});
  OwnedMatrix r(3, 1);
  ASSERT_EQ(MatCroutSolveRCB(&r, &c, &b), 0);
  EXPECT_EQ(elements(r), (Values{3, 1, 2}));
}

TEST(CroutFactors, the_determinant_of_three_rows_by_hand) {
  // 2 (1 * 5 - 4 * -2) + 1 (3 * 5 - 4 * 1) + 0 = 26 + 11
  const OwnedMatrix a(3, 3, {2, -1, 0, 3, 1, 4, 1, -2, 5});
  Crout c(3);
  ASSERT_EQ(MatCroutDecompCA(&c, &a), 0);
  double s = 0;
  ASSERT_EQ(MatCroutDetSC(&s, &c), 0);
  EXPECT_NEAR(s, 37, 1e-13);
}

TEST(CroutFactors, solutions_and_inverses_hold_over_random_matrices) {
  constexpr unsigned kSeed = 1976;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  for (int round = 0; round < 200; ++round) {
    const int size = random.integer(1, 20);
    OwnedMatrix a = random.matrix(size, size, 1);
    for (int i = 0; i < size; ++i) a(i, (i + 1) % size) += 4;  // well away from singular
    const OwnedMatrix b = random.matrix(size, 3);
    Crout c(size);
    ASSERT_EQ(MatCroutDecompCA(&c, &a), 0);
    OwnedMatrix x(size, 3);
    ASSERT_EQ(MatCroutSolveRCB(&x, &c, &b), 0);
    OwnedMatrix back(size, 3);
    MatMultRAB(&back, &a, &x);
    expect_near(back, b, 1e-10);
    OwnedMatrix inverse(size, size);
    ASSERT_EQ(MatCroutInvertRC(&inverse, &c), 0);
    OwnedMatrix unit(size, size);
    MatMultRAB(&unit, &a, &inverse);
    expect_near(unit, identity(size), 1e-10);
    OwnedMatrix direct(size, size);
    ASSERT_EQ(MatInvRA(&direct, &a), 0);
    EXPECT_EQ(elements(direct), elements(inverse));
  }
}

TEST(CroutFactors, the_determinant_of_a_product_is_the_product_of_determinants) {
  constexpr unsigned kSeed = 5;
  Random random(kSeed);
  const auto determinant = [](const OwnedMatrix& a) {
    Crout c(a.rows);
    double s = 0;
    EXPECT_EQ(MatCroutDecompCA(&c, &a), 0);
    EXPECT_EQ(MatCroutDetSC(&s, &c), 0);
    return s;
  };
  for (int round = 0; round < 50; ++round) {
    const OwnedMatrix a = random.matrix(4, 4, 1);
    const OwnedMatrix b = random.matrix(4, 4, 1);
    OwnedMatrix ab(4, 4);
    MatMultRAB(&ab, &a, &b);
    EXPECT_NEAR(determinant(ab), determinant(a) * determinant(b), 1e-12);
  }
}

TEST(CroutFactors, rows_of_very_different_size_are_not_ill_conditioned) {
  const OwnedMatrix a(2, 2, {1e200, 2e200, 3e-200, 4e-200});
  Crout c(2);
  ASSERT_EQ(MatCroutDecompCA(&c, &a), 0);
  double s = 0;
  ASSERT_EQ(MatCroutDetSC(&s, &c), 0);
  EXPECT_NEAR(s, -2, 1e-14);
}

TEST(CroutFactors, a_known_inverse) {
  // The inverse of the Hilbert matrix of three rows has whole numbers.
  const OwnedMatrix a(
      3, 3, {1.0, 1.0 / 2, 1.0 / 3, 1.0 / 2, 1.0 / 3, 1.0 / 4, 1.0 / 3, 1.0 / 4, 1.0 / 5});
  const OwnedMatrix expected(3, 3, {9, -36, 30, -36, 192, -180, 30, -180, 180});
  OwnedMatrix r(3, 3);
  ASSERT_EQ(MatInvRA(&r, &a), 0);
  expect_near(r, expected, 1e-10);
}

TEST(CroutFactors, singular_matrices_are_refused_and_the_record_is_empty) {
  Crout c(3);
  const auto refused = [&](const OwnedMatrix& a) {
    c.size = 3;
    expect_refused([&] { return MatCroutDecompCA(&c, &a); }, 5, "MatCroutDecompCA", kFactorFile,
                   kDecomposition);
    EXPECT_EQ(c.size, 0);
    OwnedMatrix r(3, 3, {1, 1, 1, 1, 1, 1, 1, 1, 1});
    expect_refused([&] { return MatInvRA(&r, &a); }, 5, "MatCroutDecompCA", kFactorFile,
                   kDecomposition);
    EXPECT_EQ(r(0, 0), 1);
  };
  refused({3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9}});
  refused({3, 3, {1, 2, 3, 0, 0, 0, 7, 8, 9}});
  refused({3, 3, {0, 0, 0, 0, 0, 0, 0, 0, 0}});
  refused({2, 2, {0.1, 0.3, 0.2, 0.6}});
  refused({1, 1, {0}});
}

TEST(CroutFactors, a_zero_pivot_in_the_record_is_refused) {
  std::array<double, 4> data{1, 2, 3, 0};
  std::array<int, 2> pivots{0, 1};
  const CroutMatrix c{data.data(), pivots.data(), 2, 2};
  const OwnedMatrix b = column({1, 2});
  OwnedMatrix r(2, 2, {5, 6, 7, 8});
  expect_refused([&] { return MatCroutSolveRCB(&r, &c, &b); }, 5, "MatCroutSolveRCB", kFactorFile,
                 "Encountered ill-conditioned matrix in Crout solver");
  expect_refused([&] { return MatCroutInvertRC(&r, &c); }, 5, "MatCroutInvertRC", kFactorFile,
                 "Encountered ill-conditioned matrix in Crout inverse");
  EXPECT_EQ(elements(r), (Values{5, 6, 7, 8}));
  double s = -1;
  ASSERT_EQ(MatCroutDetSC(&s, &c), 0);
  EXPECT_EQ(s, 0);
}

TEST(CroutFactors, bad_arguments_are_refused) {
  const OwnedMatrix a(2, 2, {1, 2, 3, 4});
  const OwnedMatrix wide(1, 2, {1, 2});
  OwnedMatrix r(2, 2);
  OwnedMatrix small(1, 1);
  Crout c(2);
  Crout one(1);
  double s = 0;
  expect_refused([&] { return MatCroutDecompCA(&c, &wide); }, 3, "MatCroutDecompCA", kFactorFile);
  expect_refused([&] { return MatCroutDecompCA(&c, nullptr); }, 2, "MatCroutDecompCA", kFactorFile);
  expect_refused([&] { return MatCroutDecompCA(nullptr, &a); }, 2, "MatCroutDecompCA", kFactorFile);
  expect_refused([&] { return MatCroutDecompCA(&one, &a); }, 4, "MatCroutDecompCA", kFactorFile);
  expect_refused([&] { return MatCroutInvertRC(&r, &c); }, 3, "MatCroutInvertRC", kFactorFile);
  expect_refused([&] { return MatCroutDetSC(&s, nullptr); }, 2, "MatCroutDetSC", kFactorFile);
  ASSERT_EQ(MatCroutDecompCA(&c, &a), 0);
  expect_refused([&] { return MatCroutDetSC(nullptr, &c); }, 2, "MatCroutDetSC", kFactorFile);
  expect_refused([&] { return MatCroutSolveRCB(&r, &c, &wide); }, 3, "MatCroutSolveRCB",
                 kFactorFile);
  expect_refused([&] { return MatCroutSolveRCB(&r, nullptr, &a); }, 2, "MatCroutSolveRCB",
                 kFactorFile);
  expect_refused([&] { return MatCroutSolveRCB(&small, &c, &a); }, 4, "MatCroutSolveRCB",
                 kFactorFile);
  expect_refused([&] { return MatCroutInvertRC(nullptr, &c); }, 2, "MatCroutInvertRC", kFactorFile);
  c.pivots[0] = 7;
  expect_refused([&] { return MatCroutSolveRCB(&r, &c, &a); }, 3, "MatCroutSolveRCB", kFactorFile);
  expect_refused([&] { return MatInvRA(&r, &wide); }, 3, "MatInvRA", kFactorFile);
  expect_refused([&] { return MatInvRA(&r, nullptr); }, 2, "MatInvRA", kFactorFile);
  expect_refused([&] { return MatInvRA(nullptr, &a); }, 2, "MatInvRA", kFactorFile);
  expect_refused([&] { return MatInvRA(&small, &a); }, 4, "MatInvRA", kFactorFile);
}

TEST(CroutFactors, results_may_replace_their_arguments) {
  OwnedMatrix a(2, 2, {2, 0, 0, 4});
  OwnedMatrix b = column({6, 8});
  Crout c(2);
  ASSERT_EQ(MatCroutDecompCA(&c, &a), 0);
  ASSERT_EQ(MatCroutSolveRCB(&b, &c, &b), 0);
  EXPECT_EQ(elements(b), (Values{3, 2}));
  ASSERT_EQ(MatInvRA(&a, &a), 0);
  EXPECT_EQ(elements(a), (Values{0.5, 0, 0, 0.25}));
}

}  // namespace
