#include "library/matrix_arithmetic.h"

#include <gtest/gtest.h>

#include "library/mathematics.h"

namespace {

using namespace mathematics;
using Values = std::vector<double>;

constexpr const char* kArithmeticFile = "matrix_arithmetic.cpp";

// a = (1 2 3; 4 5 6), b = (7 8; 9 10; 11 12), c = (1 -1 2; 0 3 1)
OwnedMatrix a() {
  return {2, 3, {1, 2, 3, 4, 5, 6}};
}
OwnedMatrix b() {
  return {3, 2, {7, 8, 9, 10, 11, 12}};
}
OwnedMatrix c() {
  return {2, 3, {1, -1, 2, 0, 3, 1}};
}

TEST(Product, of_two_matrices) {
  OwnedMatrix r(2, 2);
  const OwnedMatrix left = a();
  const OwnedMatrix right = b();
  ASSERT_EQ(MatMultRAB(&r, &left, &right), 0);
  // 7 + 18 + 33, 8 + 20 + 36; 28 + 45 + 66, 32 + 50 + 72
  EXPECT_EQ(elements(r), (Values{58, 64, 139, 154}));
}

TEST(Product, with_the_second_transposed) {
  OwnedMatrix r(2, 2);
  const OwnedMatrix left = a();
  const OwnedMatrix right = c();
  ASSERT_EQ(MatMultRABt(&r, &left, &right), 0);
  // 1 - 2 + 6, 0 + 6 + 3; 4 - 5 + 12, 0 + 15 + 6
  EXPECT_EQ(elements(r), (Values{5, 9, 11, 21}));
}

TEST(Product, with_the_first_transposed) {
  OwnedMatrix r(3, 3);
  const OwnedMatrix left = a();
  const OwnedMatrix right = c();
  ASSERT_EQ(MatMultRAtB(&r, &left, &right), 0);
  // rows (1 4), (2 5), (3 6) by columns (1 0), (-1 3), (2 1)
  EXPECT_EQ(elements(r), (Values{1, 11, 6, 2, 13, 9, 3, 15, 12}));
}

TEST(Product, with_both_transposed) {
  OwnedMatrix r(3, 3);
  const OwnedMatrix left = a();
  const OwnedMatrix right = b();
  ASSERT_EQ(MatMultRAtBt(&r, &left, &right), 0);
  // rows (1 4), (2 5), (3 6) by the rows of b (7 8), (9 10), (11 12)
  EXPECT_EQ(elements(r), (Values{39, 49, 59, 54, 68, 82, 69, 87, 105}));
}

TEST(Product, with_a_diagonal_on_the_left_scales_rows) {
  Diagonal d{10, 100};
  OwnedMatrix r(2, 3);
  const OwnedMatrix right = a();
  ASSERT_EQ(MatMultRDA(&r, &d, &right), 0);
  EXPECT_EQ(elements(r), (Values{10, 20, 30, 400, 500, 600}));
  OwnedMatrix s(2, 3);
  const OwnedMatrix tall = b();
  ASSERT_EQ(MatMultRDAt(&s, &d, &tall), 0);
  EXPECT_EQ(elements(s), (Values{70, 90, 110, 800, 1000, 1200}));
}

TEST(Product, with_a_diagonal_on_the_right_scales_columns) {
  Diagonal d{10, 100};
  OwnedMatrix r(3, 2);
  const OwnedMatrix left = b();
  ASSERT_EQ(MatMultRAD(&r, &left, &d), 0);
  EXPECT_EQ(elements(r), (Values{70, 800, 90, 1000, 110, 1200}));
  OwnedMatrix s(3, 2);
  const OwnedMatrix wide = a();
  ASSERT_EQ(MatMultRAtD(&s, &wide, &d), 0);
  EXPECT_EQ(elements(s), (Values{10, 400, 20, 500, 30, 600}));
}

TEST(Product, the_diagonal_of_one_alone) {
  Diagonal d(2);
  const OwnedMatrix left = a();
  const OwnedMatrix right = b();
  ASSERT_EQ(MatMultDAB(&d, &left, &right), 0);
  EXPECT_EQ(d.size, 2);
  EXPECT_EQ(d.storage(), (Values{58, 154}));
}

using TwoMatrices = int (*)(RealMatrix*, const RealMatrix*, const RealMatrix*);

OwnedMatrix transposed_copy(const OwnedMatrix& m) {
  OwnedMatrix r(m.cols, m.rows);
  r.rows = m.cols;
  r.cols = m.rows;
  for (int i = 0; i < m.rows; ++i) {
    for (int j = 0; j < m.cols; ++j) r(j, i) = m(i, j);
  }
  return r;
}

TEST(Product, agrees_with_its_definition_over_random_shapes) {
  constexpr unsigned kSeed = 20240611;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  for (int round = 0; round < 200; ++round) {
    const int rows = random.integer(1, 7);
    const int inner = random.integer(1, 7);
    const int cols = random.integer(1, 7);
    const OwnedMatrix left = random.matrix(rows, inner);
    const OwnedMatrix right = random.matrix(inner, cols);
    const OwnedMatrix left_t = transposed_copy(left);
    const OwnedMatrix right_t = transposed_copy(right);
    OwnedMatrix expected(rows, cols);
    expected.rows = rows;
    expected.cols = cols;
    for (int i = 0; i < rows; ++i) {
      for (int j = 0; j < cols; ++j) {
        for (int k = 0; k < inner; ++k) expected(i, j) += left(i, k) * right(k, j);
      }
    }
    OwnedMatrix r(rows, cols);
    ASSERT_EQ(MatMultRAB(&r, &left, &right), 0);
    expect_near(r, expected, 1e-11);
    ASSERT_EQ(MatMultRABt(&r, &left, &right_t), 0);
    expect_near(r, expected, 1e-11);
    ASSERT_EQ(MatMultRAtB(&r, &left_t, &right), 0);
    expect_near(r, expected, 1e-11);
    ASSERT_EQ(MatMultRAtBt(&r, &left_t, &right_t), 0);
    expect_near(r, expected, 1e-11);
  }
}

TEST(Product, works_on_parts_of_larger_matrices) {
  OwnedMatrix parent(3, 5, {0, 1, 2, 0, 0, 0, 3, 4, 0, 0, 0, 0, 0, 0, 0});
  RealMatrix view;
  MatSubAccessRA(&view, &parent, 0, 1, 2, 3);
  RealMatrix corner;
  MatSubAccessRA(&corner, &parent, 1, 3, 3, 5);
  ASSERT_EQ(MatMultRAB(&corner, &view, &view), 0);
  // (1 2; 3 4) squared is (7 10; 15 22)
  EXPECT_EQ(parent.storage(), (Values{0, 1, 2, 0, 0, 0, 3, 4, 7, 10, 0, 0, 0, 15, 22}));
}

TEST(Aliasing, a_result_may_be_either_factor_of_a_product) {
  constexpr unsigned kSeed = 7;
  Random random(kSeed);
  for (const int size : {1, 2, 3, 4, 5, 9}) {
    for (const TwoMatrices call :
         {MatMultRAB, MatMultRABt, MatMultRAtB, MatMultRAtBt, MatAddRAB, MatSubRAB}) {
      const OwnedMatrix left = random.matrix(size, size);
      const OwnedMatrix right = random.matrix(size, size);
      OwnedMatrix apart(size, size);
      ASSERT_EQ(call(&apart, &left, &right), 0);
      OwnedMatrix first = left;
      ASSERT_EQ(call(&first, &first, &right), 0);
      EXPECT_EQ(elements(first), elements(apart)) << "size " << size;
      OwnedMatrix second = right;
      ASSERT_EQ(call(&second, &left, &second), 0);
      EXPECT_EQ(elements(second), elements(apart)) << "size " << size;
      OwnedMatrix square = left;
      ASSERT_EQ(call(&apart, &left, &left), 0);
      ASSERT_EQ(call(&square, &square, &square), 0);
      EXPECT_EQ(elements(square), elements(apart)) << "size " << size;
    }
  }
}

TEST(Aliasing, a_result_may_overlap_its_factor_in_part) {
  constexpr unsigned kSeed = 8;
  Random random(kSeed);
  for (const TwoMatrices call :
       {MatMultRAB, MatMultRABt, MatMultRAtB, MatMultRAtBt, MatAddRAB, MatSubRAB}) {
    OwnedMatrix parent = random.matrix(7, 7);
    RealMatrix view;
    RealMatrix shifted;
    MatSubAccessRA(&view, &parent, 0, 0, 6, 6);
    MatSubAccessRA(&shifted, &parent, 1, 1, 7, 7);
    OwnedMatrix apart(6, 6);
    ASSERT_EQ(call(&apart, &view, &view), 0);
    ASSERT_EQ(call(&shifted, &view, &view), 0);
    EXPECT_EQ(elements(shifted), elements(apart));
  }
}

TEST(Aliasing, one_argument_forms_may_work_in_place) {
  OwnedMatrix m = a();
  OwnedMatrix wide(3, 3);
  ASSERT_EQ(MatCopyRA(&wide, &m), 0);
  ASSERT_EQ(MatTranspose(&wide, &wide), 0);
  EXPECT_EQ(elements(wide), (Values{1, 4, 2, 5, 3, 6}));
  ASSERT_EQ(MatScaleRsA(&m, 2, &m), 0);
  EXPECT_EQ(elements(m), (Values{2, 4, 6, 8, 10, 12}));
  ASSERT_EQ(MatLimitRsA(&m, 7, &m), 0);
  EXPECT_EQ(elements(m), (Values{2, 4, 6, 7, 7, 7}));
  Diagonal d{2, 3};
  OwnedMatrix square(2, 2, {1, 2, 3, 4});
  ASSERT_EQ(MatMultRDAt(&square, &d, &square), 0);
  EXPECT_EQ(elements(square), (Values{2, 6, 6, 12}));
  ASSERT_EQ(MatMultRAtD(&square, &square, &d), 0);
  EXPECT_EQ(elements(square), (Values{4, 18, 12, 36}));
  ASSERT_EQ(MatSubRDB(&square, &d, &square), 0);
  EXPECT_EQ(elements(square), (Values{-2, -18, -12, -33}));
}

TEST(Aliasing, a_vector_product_may_replace_its_factor) {
  OwnedMatrix x = column({1, 2, 3});
  const OwnedMatrix y = column({4, 5, 6});
  ASSERT_EQ(MatCrossProduct(&x, &x, &y), 0);
  EXPECT_EQ(elements(x), (Values{-3, 6, -3}));
}

TEST(Transpose, exchanges_rows_and_columns) {
  const OwnedMatrix m = a();
  OwnedMatrix r(3, 2);
  ASSERT_EQ(MatTranspose(&r, &m), 0);
  EXPECT_EQ(r.rows, 3);
  EXPECT_EQ(r.cols, 2);
  EXPECT_EQ(elements(r), (Values{1, 4, 2, 5, 3, 6}));
}

TEST(Appendt, columns_become_further_rows) {
  OwnedMatrix r(4, 2);
  const OwnedMatrix m = a();  // its transpose is (1 4; 2 5; 3 6)
  ASSERT_EQ(MatAppendt(&r, &m), 0);
  EXPECT_EQ(r.rows, 3);
  EXPECT_EQ(r.cols, 2);
  const OwnedMatrix one = column({7, 8});
  ASSERT_EQ(MatAppendt(&r, &one), 0);
  EXPECT_EQ(r.rows, 4);
  EXPECT_EQ(elements(r), (Values{1, 4, 2, 5, 3, 6, 7, 8}));

  expect_refused([&] { return MatAppendt(&r, &one); }, 4, "MatAppendt", kArithmeticFile);
  const OwnedMatrix other = column({7, 8, 9});
  expect_refused([&] { return MatAppendt(&r, &other); }, 3, "MatAppendt", kArithmeticFile);
  expect_refused([&] { return MatAppendt(&r, nullptr); }, 2, "MatAppendt", kArithmeticFile);
  expect_refused([&] { return MatAppendt(nullptr, &one); }, 2, "MatAppendt", kArithmeticFile);
  RealMatrix none;
  expect_refused([&] { return MatAppendt(&none, &one); }, 4, "MatAppendt", kArithmeticFile);
  EXPECT_EQ(r.rows, 4);
}

TEST(Appendt, a_matrix_can_be_appended_to_itself) {
  OwnedMatrix r(4, 2);
  MatFillR(&r, 2, 2, {1, 2, 3, 4});
  ASSERT_EQ(MatAppendt(&r, &r), 0);
  EXPECT_EQ(elements(r), (Values{1, 2, 3, 4, 1, 3, 2, 4}));
}

TEST(Scale, multiplies_each_element) {
  const OwnedMatrix m = c();
  OwnedMatrix r(2, 3);
  ASSERT_EQ(MatScaleRsA(&r, -2, &m), 0);
  EXPECT_EQ(elements(r), (Values{-2, 2, -4, 0, -6, -2}));
  Diagonal d{1, 2};
  OwnedMatrix s(2, 2);
  ASSERT_EQ(MatScaleRsD(&s, 3, &d), 0);
  EXPECT_EQ(elements(s), (Values{3, 0, 0, 6}));
  expect_refused([&] { return MatScaleRsA(&r, kNan, &m); }, 3, "MatScaleRsA", kArithmeticFile);
  expect_refused([&] { return MatScaleRsD(&s, kInfinity, &d); }, 3, "MatScaleRsD", kArithmeticFile);
}

TEST(Limit, clips_to_both_ends) {
  const OwnedMatrix m(1, 5, {-9, -2, 0, 2, 9});
  OwnedMatrix r(1, 5);
  ASSERT_EQ(MatLimitRsA(&r, 2, &m), 0);
  EXPECT_EQ(elements(r), (Values{-2, -2, 0, 2, 2}));
  ASSERT_EQ(MatLimitRsA(&r, 0, &m), 0);
  EXPECT_EQ(elements(r), (Values{0, 0, 0, 0, 0}));
  expect_refused([&] { return MatLimitRsA(&r, -1, &m); }, 3, "MatLimitRsA", kArithmeticFile);
  expect_refused([&] { return MatLimitRsA(&r, kNan, &m); }, 3, "MatLimitRsA", kArithmeticFile);
}

TEST(Sum, of_matrices_and_of_diagonals) {
  const OwnedMatrix left = a();
  const OwnedMatrix right = c();
  OwnedMatrix r(2, 3);
  ASSERT_EQ(MatAddRAB(&r, &left, &right), 0);
  EXPECT_EQ(elements(r), (Values{2, 1, 5, 4, 8, 7}));
  ASSERT_EQ(MatSubRAB(&r, &left, &right), 0);
  EXPECT_EQ(elements(r), (Values{0, 3, 1, 4, 2, 5}));

  Diagonal d{10, 20};
  Diagonal e{1, -2};
  OwnedMatrix s(2, 2);
  ASSERT_EQ(MatAddRDE(&s, &d, &e), 0);
  EXPECT_EQ(elements(s), (Values{11, 0, 0, 18}));
  const OwnedMatrix square(2, 2, {1, 2, 3, 4});
  ASSERT_EQ(MatSubRDB(&s, &d, &square), 0);
  EXPECT_EQ(elements(s), (Values{9, -2, -3, 16}));
}

TEST(MaxDiff, is_the_largest_absolute_difference) {
  const OwnedMatrix left = a();
  const OwnedMatrix right = c();
  double difference = -1;
  ASSERT_EQ(MatMaxDiff(&difference, &left, &right), 0);
  EXPECT_EQ(difference, 5);  // 6 - 1
  ASSERT_EQ(MatMaxDiff(&difference, &right, &left), 0);
  EXPECT_EQ(difference, 5);
  ASSERT_EQ(MatMaxDiff(&difference, &left, &left), 0);
  EXPECT_EQ(difference, 0);
  expect_refused([&] { return MatMaxDiff(nullptr, &left, &left); }, 2, "MatMaxDiff",
                 kArithmeticFile);
}

TEST(Norm, of_rows_and_columns) {
  double norm = 0;
  const OwnedMatrix x = column({2, 3, 6});
  ASSERT_EQ(MatVectorNorm(&norm, &x), 0);
  EXPECT_EQ(norm, 7);
  const OwnedMatrix row(1, 2, {-3, 4});
  ASSERT_EQ(MatVectorNorm(&norm, &row), 0);
  EXPECT_EQ(norm, 5);
  const OwnedMatrix zero = column({0, 0});
  ASSERT_EQ(MatVectorNorm(&norm, &zero), 0);
  EXPECT_EQ(norm, 0);
  const OwnedMatrix large = column({3e300, 4e300});
  ASSERT_EQ(MatVectorNorm(&norm, &large), 0);
  EXPECT_DOUBLE_EQ(norm, 5e300);
  const OwnedMatrix small = column({3e-300, 4e-300});
  ASSERT_EQ(MatVectorNorm(&norm, &small), 0);
  EXPECT_DOUBLE_EQ(norm, 5e-300);
  const OwnedMatrix m = a();
  expect_refused([&] { return MatVectorNorm(&norm, &m); }, 3, "MatVectorNorm", kArithmeticFile);
  expect_refused([&] { return MatVectorNorm(nullptr, &x); }, 2, "MatVectorNorm", kArithmeticFile);
}

TEST(DotProduct, takes_rows_and_columns_alike) {
  double product = 0;
  const OwnedMatrix x = column({1, 2, 3});
  const OwnedMatrix y(1, 3, {4, -5, 6});
  ASSERT_EQ(MatDotProduct(&product, &x, &y), 0);
  EXPECT_EQ(product, 12);  // 4 - 10 + 18
  const OwnedMatrix two = column({1, 2});
  expect_refused([&] { return MatDotProduct(&product, &x, &two); }, 3, "MatDotProduct",
                 kArithmeticFile);
  const OwnedMatrix m = a();
  expect_refused([&] { return MatDotProduct(&product, &m, &x); }, 3, "MatDotProduct",
                 kArithmeticFile);
  expect_refused([&] { return MatDotProduct(nullptr, &x, &y); }, 2, "MatDotProduct",
                 kArithmeticFile);
}

TEST(CrossProduct, follows_the_right_hand) {
  const OwnedMatrix x = column({1, 0, 0});
  const OwnedMatrix y(1, 3, {0, 1, 0});
  OwnedMatrix r(3, 1);
  ASSERT_EQ(MatCrossProduct(&r, &x, &y), 0);
  EXPECT_EQ(elements(r), (Values{0, 0, 1}));
  ASSERT_EQ(MatCrossProduct(&r, &y, &x), 0);
  EXPECT_EQ(elements(r), (Values{0, 0, -1}));
  const OwnedMatrix two = column({1, 2});
  expect_refused([&] { return MatCrossProduct(&r, &x, &two); }, 3, "MatCrossProduct",
                 kArithmeticFile);
  expect_refused([&] { return MatCrossProduct(nullptr, &x, &y); }, 2, "MatCrossProduct",
                 kArithmeticFile);
}

struct Named {
  TwoMatrices call;
  const char* name;
};

TEST(Refusal, every_form_of_two_matrices_refuses_bad_arguments_and_writes_nothing) {
  const OwnedMatrix good(2, 2, {1, 2, 3, 4});
  OwnedMatrix bad = good;
  bad(1, 0) = kNan;
  const OwnedMatrix other(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  OwnedMatrix r(2, 2, {5, 6, 7, 8});
  OwnedMatrix small(1, 2, {5, 6});
  RealMatrix none;
  for (const auto& form : {Named{MatMultRAB, "MatMultRAB"},
                           {MatMultRABt, "MatMultRABt"},
                           {MatMultRAtB, "MatMultRAtB"},
                           {MatMultRAtBt, "MatMultRAtBt"},
                           {MatAddRAB, "MatAddRAB"},
                           {MatSubRAB, "MatSubRAB"}}) {
    expect_refused([&] { return form.call(&r, nullptr, &good); }, 2, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(&r, &good, nullptr); }, 2, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(nullptr, &good, &good); }, 2, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(&r, &bad, &good); }, 3, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(&r, &good, &bad); }, 3, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(&r, &good, &other); }, 3, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(&r, &none, &good); }, 3, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(&small, &good, &good); }, 4, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(&none, &good, &good); }, 4, form.name, kArithmeticFile);
    EXPECT_EQ(elements(r), (Values{5, 6, 7, 8}));
    EXPECT_EQ(elements(small), (Values{5, 6}));
  }
}

TEST(Refusal, every_form_with_a_diagonal_refuses_bad_arguments_and_writes_nothing) {
  const OwnedMatrix good(2, 2, {1, 2, 3, 4});
  Diagonal d{1, 2};
  Diagonal three{1, 2, 3};
  Diagonal bad{1, kNan};
  OwnedMatrix r(2, 2, {5, 6, 7, 8});
  OwnedMatrix small(2, 1, {5, 6});
  using Call = int (*)(RealMatrix*, const DiagonalMatrix*, const RealMatrix*);
  struct Form {
    Call call;
    const char* name;
  };
  const Call right = [](RealMatrix* result, const DiagonalMatrix* e, const RealMatrix* m) {
    return MatMultRAD(result, m, e);
  };
  const Call right_t = [](RealMatrix* result, const DiagonalMatrix* e, const RealMatrix* m) {
    return MatMultRAtD(result, m, e);
  };
  for (const auto& form : {Form{MatMultRDA, "MatMultRDA"},
                           {MatMultRDAt, "MatMultRDAt"},
                           {right, "MatMultRAD"},
                           {right_t, "MatMultRAtD"},
                           {MatSubRDB, "MatSubRDB"}}) {
    expect_refused([&] { return form.call(&r, nullptr, &good); }, 2, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(&r, &d, nullptr); }, 2, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(nullptr, &d, &good); }, 2, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(&r, &bad, &good); }, 3, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(&r, &three, &good); }, 3, form.name, kArithmeticFile);
    expect_refused([&] { return form.call(&small, &d, &good); }, 4, form.name, kArithmeticFile);
    EXPECT_EQ(elements(r), (Values{5, 6, 7, 8}));
    EXPECT_EQ(elements(small), (Values{5, 6}));
  }
  expect_refused([&] { return MatAddRDE(&r, &d, &three); }, 3, "MatAddRDE", kArithmeticFile);
  expect_refused([&] { return MatAddRDE(&r, &d, nullptr); }, 2, "MatAddRDE", kArithmeticFile);
  expect_refused([&] { return MatAddRDE(&small, &d, &d); }, 4, "MatAddRDE", kArithmeticFile);
  expect_refused([&] { return MatScaleRsD(&r, 1, &three); }, 4, "MatScaleRsD", kArithmeticFile);
  expect_refused([&] { return MatScaleRsD(&r, 1, nullptr); }, 2, "MatScaleRsD", kArithmeticFile);
  EXPECT_EQ(elements(r), (Values{5, 6, 7, 8}));

  const OwnedMatrix wide(1, 2, {1, 2});
  Diagonal result{8, 9};
  expect_refused([&] { return MatMultDAB(&result, &wide, &good); }, 3, "MatMultDAB",
                 kArithmeticFile);
  expect_refused([&] { return MatMultDAB(nullptr, &good, &good); }, 2, "MatMultDAB",
                 kArithmeticFile);
  Diagonal one{8};
  expect_refused([&] { return MatMultDAB(&one, &good, &good); }, 4, "MatMultDAB", kArithmeticFile);
  EXPECT_EQ(result.storage(), (Values{8, 9}));
}

TEST(Refusal, forms_of_one_matrix_refuse_bad_arguments) {
  const OwnedMatrix good(2, 2, {1, 2, 3, 4});
  OwnedMatrix bad = good;
  bad(0, 1) = kInfinity;
  OwnedMatrix r(2, 2, {5, 6, 7, 8});
  OwnedMatrix small(1, 1, {5});
  expect_refused([&] { return MatTranspose(&r, nullptr); }, 2, "MatTranspose", kArithmeticFile);
  expect_refused([&] { return MatTranspose(&r, &bad); }, 3, "MatTranspose", kArithmeticFile);
  expect_refused([&] { return MatTranspose(&small, &good); }, 4, "MatTranspose", kArithmeticFile);
  expect_refused([&] { return MatScaleRsA(&r, 1, nullptr); }, 2, "MatScaleRsA", kArithmeticFile);
  expect_refused([&] { return MatScaleRsA(&r, 1, &bad); }, 3, "MatScaleRsA", kArithmeticFile);
  expect_refused([&] { return MatScaleRsA(&small, 1, &good); }, 4, "MatScaleRsA", kArithmeticFile);
  expect_refused([&] { return MatLimitRsA(&r, 1, nullptr); }, 2, "MatLimitRsA", kArithmeticFile);
  expect_refused([&] { return MatLimitRsA(&small, 1, &good); }, 4, "MatLimitRsA", kArithmeticFile);
  double value = 3;
  expect_refused([&] { return MatMaxDiff(&value, &good, &bad); }, 3, "MatMaxDiff", kArithmeticFile);
  expect_refused([&] { return MatMaxDiff(&value, &good, &small); }, 3, "MatMaxDiff",
                 kArithmeticFile);
  EXPECT_EQ(value, 3);
  EXPECT_EQ(elements(r), (Values{5, 6, 7, 8}));
}

}  // namespace
