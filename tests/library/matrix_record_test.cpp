#include "library/matrix_record.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <type_traits>

#include "library/mathematics.h"

namespace {

using namespace mathematics;
using Values = std::vector<double>;

constexpr const char* kRecordFile = "matrix_record.cpp";

TEST(RealMatrix, its_record_has_the_five_fields_in_their_order) {
  static_assert(std::is_standard_layout_v<RealMatrix>);
  EXPECT_EQ(offsetof(RealMatrix, data), 0u);
  EXPECT_LT(offsetof(RealMatrix, data), offsetof(RealMatrix, rows));
  EXPECT_LT(offsetof(RealMatrix, rows), offsetof(RealMatrix, cols));
  EXPECT_LT(offsetof(RealMatrix, cols), offsetof(RealMatrix, rows_allocated));
  EXPECT_LT(offsetof(RealMatrix, rows_allocated), offsetof(RealMatrix, cols_allocated));
}

TEST(RealMatrix, an_empty_record_has_zeros_in_all_fields) {
  double value = 0;
  RealMatrix m{&value, 1, 2, 3, 4};
  EXPECT_EQ(SetToEmptyMat(&m), 0);
  EXPECT_EQ(m.data, nullptr);
  EXPECT_EQ(m.rows, 0);
  EXPECT_EQ(m.cols, 0);
  EXPECT_EQ(m.rows_allocated, 0);
  EXPECT_EQ(m.cols_allocated, 0);
  expect_refused([] { return SetToEmptyMat(nullptr); }, 2, "SetToEmptyMat", kRecordFile);
}

TEST(RealMatrix, allocation_leaves_nothing_in_use) {
  RealMatrix m;
  ASSERT_EQ(MatAllocR(&m, 2, 3), 0);
  EXPECT_NE(m.data, nullptr);
  EXPECT_EQ(m.rows, 0);
  EXPECT_EQ(m.cols, 0);
  EXPECT_EQ(m.rows_allocated, 2);
  EXPECT_EQ(m.cols_allocated, 3);
  EXPECT_EQ(MatFree(&m), 0);
  EXPECT_EQ(m.data, nullptr);
  EXPECT_EQ(m.rows_allocated, 0);
  EXPECT_EQ(m.cols_allocated, 0);
}

TEST(RealMatrix, freeing_an_empty_record_is_fine) {
  RealMatrix m;
  DiagonalMatrix d;
  CroutMatrix c;
  EXPECT_EQ(MatFree(&m), 0);
  EXPECT_EQ(MatDFree(&d), 0);
  EXPECT_EQ(MatCFree(&c), 0);
}

TEST(RealMatrix, a_size_beyond_all_memory_is_an_allocation_failure) {
  const char* text = "Could not allocate matrix";
  RealMatrix m{nullptr, 7, 7, 7, 7};
  // 2^31 - 1 squared elements of 8 bytes is more than 64 bits count.
  expect_refused([&] { return MatAllocR(&m, INT_MAX, INT_MAX); }, 1, "MatAllocR", kRecordFile,
                 text);
  EXPECT_EQ(m.rows, 0);
  EXPECT_EQ(m.rows_allocated, 0);
  CroutMatrix c;
  expect_refused([&] { return MatAllocC(&c, INT_MAX); }, 1, "MatAllocC", kRecordFile, text);
  EXPECT_EQ(c.size_allocated, 0);
}

TEST(RealMatrix, dimensions_below_one_are_refused) {
  RealMatrix m;
  expect_refused([&] { return MatAllocR(&m, 0, 3); }, 3, "MatAllocR", kRecordFile);
  expect_refused([&] { return MatAllocR(&m, 3, -1); }, 3, "MatAllocR", kRecordFile);
  expect_refused([&] { return MatAllocR(nullptr, 3, 3); }, 2, "MatAllocR", kRecordFile);
  DiagonalMatrix d;
  expect_refused([&] { return MatAllocD(&d, 0); }, 3, "MatAllocD", kRecordFile);
  expect_refused([&] { return MatAllocD(nullptr, 1); }, 2, "MatAllocD", kRecordFile);
  CroutMatrix c;
  expect_refused([&] { return MatAllocC(&c, -5); }, 3, "MatAllocC", kRecordFile);
  expect_refused([&] { return MatAllocC(nullptr, 1); }, 2, "MatAllocC", kRecordFile);
  expect_refused([] { return MatFree(nullptr); }, 2, "MatFree", kRecordFile);
  expect_refused([] { return MatDFree(nullptr); }, 2, "MatDFree", kRecordFile);
  expect_refused([] { return MatCFree(nullptr); }, 2, "MatCFree", kRecordFile);
}

TEST(RealMatrix, an_assigned_array_is_storage_to_be_filled) {
  std::array<double, 6> storage{1, 2, 3, 4, 5, 6};
  RealMatrix m;
  ASSERT_EQ(MatAssignR(&m, storage.data(), 2, 3), 0);
  EXPECT_EQ(m.data, storage.data());
  EXPECT_EQ(m.rows, 0);
  EXPECT_EQ(m.cols, 0);
  EXPECT_EQ(m.rows_allocated, 2);
  EXPECT_EQ(m.cols_allocated, 3);
  ASSERT_EQ(MatFillRs(&m, 2, 2, 9), 0);
  EXPECT_EQ(storage, (std::array<double, 6>{9, 9, 3, 9, 9, 6}));

  expect_refused([&] { return MatAssignR(&m, nullptr, 2, 3); }, 2, "MatAssignR", kRecordFile);
  expect_refused([&] { return MatAssignR(nullptr, storage.data(), 2, 3); }, 2, "MatAssignR",
                 kRecordFile);
  expect_refused([&] { return MatAssignR(&m, storage.data(), 2, 0); }, 3, "MatAssignR",
                 kRecordFile);
  EXPECT_EQ(m.data, storage.data());
}

TEST(DiagonalMatrix, allocation_leaves_nothing_in_use) {
  DiagonalMatrix d;
  ASSERT_EQ(MatAllocD(&d, 4), 0);
  EXPECT_EQ(d.size, 0);
  EXPECT_EQ(d.size_allocated, 4);
  EXPECT_EQ(MatDFree(&d), 0);
  EXPECT_EQ(d.data, nullptr);
  EXPECT_EQ(d.size_allocated, 0);
}

TEST(CroutMatrix, allocation_gives_a_square_and_its_pivots) {
  CroutMatrix c;
  ASSERT_EQ(MatAllocC(&c, 3), 0);
  EXPECT_EQ(c.size, 0);
  EXPECT_EQ(c.size_allocated, 3);
  for (int k = 0; k < 9; ++k) c.data[k] = k;
  for (int k = 0; k < 3; ++k) c.pivots[k] = k;
  EXPECT_EQ(MatCFree(&c), 0);
  EXPECT_EQ(c.data, nullptr);
  EXPECT_EQ(c.pivots, nullptr);
}

TEST(MatCheck, says_what_is_wrong_with_a_record) {
  OwnedMatrix good(2, 2, {1, 2, 3, 4});
  EXPECT_EQ(MatCheck(&good), 0);
  expect_refused([] { return MatCheck(nullptr); }, 2, "MatCheck", kRecordFile);

  const auto refused = [](const RealMatrix& m, int code) {
    expect_refused([&] { return MatCheck(&m); }, code, "MatCheck", kRecordFile);
  };
  double* data = good.data;
  refused({nullptr, 2, 2, 2, 2}, 2);
  refused({data, 0, 0, 2, 2}, 3);
  refused({data, -1, 2, 2, 2}, 3);
  refused({data, 2, 2, -2, 2}, 3);
  refused({data, 3, 2, 2, 2}, 4);
  refused({data, 2, 3, 2, 2}, 4);
  good(1, 1) = kNan;
  refused(good, 3);
  good(1, 1) = -kInfinity;
  refused(good, 3);
}

TEST(MatCheck, looks_only_at_what_is_in_use) {
  OwnedMatrix m(2, 2, {1, kNan, 3, kNan});
  m.cols = 1;
  EXPECT_EQ(MatCheck(&m), 0);
}

TEST(MatDCheck, says_what_is_wrong_with_a_record) {
  Diagonal good{1, 2};
  EXPECT_EQ(MatDCheck(&good), 0);
  expect_refused([] { return MatDCheck(nullptr); }, 2, "MatDCheck", kRecordFile);
  const auto refused = [](const DiagonalMatrix& d, int code) {
    expect_refused([&] { return MatDCheck(&d); }, code, "MatDCheck", kRecordFile);
  };
  refused({nullptr, 2, 2}, 2);
  refused({good.data, 0, 2}, 3);
  refused({good.data, 3, 2}, 4);
  good[0] = kNan;
  refused(good, 3);
}

TEST(Filling, values_go_in_row_by_row) {
  OwnedMatrix m(3, 3);
  ASSERT_EQ(MatFillR(&m, 2, 3, {1, 2, 3, 4, 5, 6}), 0);
  EXPECT_EQ(m.rows, 2);
  EXPECT_EQ(m.cols, 3);
  EXPECT_EQ(m(0, 2), 3);
  EXPECT_EQ(m(1, 0), 4);
}

TEST(Filling, a_new_matrix_is_allocated_to_its_shape) {
  RealMatrix m;
  ASSERT_EQ(MatFillNewR(&m, 2, 1, {7, 8}), 0);
  EXPECT_EQ(m.rows, 2);
  EXPECT_EQ(m.cols, 1);
  EXPECT_EQ(m.rows_allocated, 2);
  EXPECT_EQ(m.cols_allocated, 1);
  EXPECT_EQ(m.data[0], 7);
  EXPECT_EQ(m.data[1], 8);
  MatFree(&m);

  expect_refused([&] { return MatFillNewR(&m, 2, 2, {1, 2, 3}); }, 3, "MatFillNewR", kRecordFile);
  EXPECT_EQ(m.data, nullptr);
  expect_refused([&] { return MatFillNewR(&m, 1, 1, {kNan}); }, 3, "MatFillNewR", kRecordFile);
  expect_refused([&] { return MatFillNewR(nullptr, 1, 1, {1}); }, 2, "MatFillNewR", kRecordFile);
}

TEST(Filling, a_count_that_is_not_that_of_the_shape_is_refused) {
  OwnedMatrix m(2, 2, {1, 2, 3, 4});
  expect_refused([&] { return MatFillR(&m, 2, 2, {1, 2, 3}); }, 3, "MatFillR", kRecordFile);
  expect_refused([&] { return MatFillR(&m, 2, 2, {1, 2, 3, 4, 5}); }, 3, "MatFillR", kRecordFile);
  expect_refused([&] { return MatFillR(&m, -1, -4, {1, 2, 3, 4}); }, 3, "MatFillR", kRecordFile);
  expect_refused([&] { return MatFillR(&m, 1, 1, {kInfinity}); }, 3, "MatFillR", kRecordFile);
  expect_refused([&] { return MatFillR(nullptr, 1, 1, {1}); }, 2, "MatFillR", kRecordFile);
  EXPECT_EQ(elements(m), (Values{1, 2, 3, 4}));
}

TEST(Filling, a_result_too_small_is_refused_and_untouched) {
  OwnedMatrix m(2, 2, {1, 2, 3, 4});
  OwnedMatrix wide(1, 3, {5, 6, 7});
  const double values[] = {5, 6, 7};
  expect_refused([&] { return MatFillR(&m, 3, 1, {1, 2, 3}); }, 4, "MatFillR", kRecordFile);
  expect_refused([&] { return MatFillRs(&m, 1, 3, 0); }, 4, "MatFillRs", kRecordFile);
  expect_refused([&] { return MatIdentityR(&m, 3); }, 4, "MatIdentityR", kRecordFile);
  expect_refused([&] { return MatCopyRA(&m, &wide); }, 4, "MatCopyRA", kRecordFile);
  expect_refused([&] { return double2Mat(&m, values, 1, 3); }, 4, "double2Mat", kRecordFile);
  EXPECT_EQ(elements(m), (Values{1, 2, 3, 4}));
  RealMatrix none;
  expect_refused([&] { return MatIdentityR(&none, 1); }, 4, "MatIdentityR", kRecordFile);
}

TEST(Filling, one_number_fills_a_shape) {
  OwnedMatrix m(2, 3);
  ASSERT_EQ(MatFillRs(&m, 2, 2, -1.5), 0);
  EXPECT_EQ(elements(m), (Values{-1.5, -1.5, -1.5, -1.5}));
  EXPECT_EQ(m(0, 2), 0);
  expect_refused([&] { return MatFillRs(&m, 2, 2, kNan); }, 3, "MatFillRs", kRecordFile);
  expect_refused([&] { return MatFillRs(&m, 0, 2, 1); }, 3, "MatFillRs", kRecordFile);
  expect_refused([&] { return MatFillRs(nullptr, 1, 1, 1); }, 2, "MatFillRs", kRecordFile);
}

TEST(Filling, diagonals_take_values_or_one_number) {
  Diagonal d(3);
  ASSERT_EQ(MatFillD(&d, {4, 5}), 0);
  EXPECT_EQ(d.size, 2);
  EXPECT_EQ(d.storage(), (Values{4, 5, 0}));
  ASSERT_EQ(MatFillDs(&d, 3, 2), 0);
  EXPECT_EQ(d.size, 3);
  EXPECT_EQ(d.storage(), (Values{2, 2, 2}));
  expect_refused([&] { return MatFillD(&d, {}); }, 3, "MatFillD", kRecordFile);
  expect_refused([&] { return MatFillD(&d, {1, kNan}); }, 3, "MatFillD", kRecordFile);
  expect_refused([&] { return MatFillD(&d, {1, 2, 3, 4}); }, 4, "MatFillD", kRecordFile);
  expect_refused([&] { return MatFillD(nullptr, {1}); }, 2, "MatFillD", kRecordFile);
  expect_refused([&] { return MatFillDs(&d, 4, 1); }, 4, "MatFillDs", kRecordFile);
  expect_refused([&] { return MatFillDs(&d, 0, 1); }, 3, "MatFillDs", kRecordFile);
  expect_refused([&] { return MatFillDs(&d, 1, kInfinity); }, 3, "MatFillDs", kRecordFile);
  EXPECT_EQ(d.storage(), (Values{2, 2, 2}));
}

TEST(Filling, the_unit_matrix_has_ones_on_its_diagonal) {
  OwnedMatrix m(2, 3);
  ASSERT_EQ(MatIdentityR(&m, 2), 0);
  EXPECT_EQ(elements(m), (Values{1, 0, 0, 1}));
  expect_refused([&] { return MatIdentityR(&m, 0); }, 3, "MatIdentityR", kRecordFile);
  expect_refused([] { return MatIdentityR(nullptr, 1); }, 2, "MatIdentityR", kRecordFile);
}

TEST(Filling, copies_take_values_and_shape_but_not_stride) {
  OwnedMatrix a(2, 2, {1, 2, 3, 4});
  OwnedMatrix r(3, 4);
  ASSERT_EQ(MatCopyRA(&r, &a), 0);
  EXPECT_EQ(elements(r), (Values{1, 2, 3, 4}));
  EXPECT_EQ(r.cols_allocated, 4);
  ASSERT_EQ(MatCopyRA(&a, &a), 0);
  EXPECT_EQ(elements(a), (Values{1, 2, 3, 4}));
  expect_refused([&] { return MatCopyRA(&r, nullptr); }, 2, "MatCopyRA", kRecordFile);
  expect_refused([&] { return MatCopyRA(nullptr, &a); }, 2, "MatCopyRA", kRecordFile);

  Diagonal e{5, 6};
  Diagonal d(2);
  ASSERT_EQ(MatCopyDE(&d, &e), 0);
  EXPECT_EQ(d.storage(), (Values{5, 6}));
  EXPECT_EQ(d.size, 2);
  expect_refused([&] { return MatCopyDE(&d, nullptr); }, 2, "MatCopyDE", kRecordFile);
  expect_refused([&] { return MatCopyDE(nullptr, &e); }, 2, "MatCopyDE", kRecordFile);
  e[1] = kNan;
  expect_refused([&] { return MatCopyDE(&d, &e); }, 3, "MatCopyDE", kRecordFile);
  EXPECT_EQ(d.storage(), (Values{5, 6}));
}

TEST(Filling, a_copy_onto_a_shifted_view_of_itself_is_whole) {
  OwnedMatrix parent(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  RealMatrix upper;
  RealMatrix lower;
  MatSubAccessRA(&upper, &parent, 0, 0, 2, 3);
  MatSubAccessRA(&lower, &parent, 1, 0, 3, 3);
  ASSERT_EQ(MatCopyRA(&lower, &upper), 0);
  EXPECT_EQ(parent.storage(), (Values{1, 2, 3, 1, 2, 3, 4, 5, 6}));
}

TEST(Filling, arrays_go_in_and_out_without_gaps) {
  const std::array<double, 6> in{1, 2, 3, 4, 5, 6};
  OwnedMatrix m(3, 4);
  ASSERT_EQ(double2Mat(&m, in.data(), 2, 3), 0);
  EXPECT_EQ(m(1, 0), 4);
  std::array<double, 7> out{0, 0, 0, 0, 0, 0, -1};
  ASSERT_EQ(Mat2double(out.data(), 6, &m), 0);
  EXPECT_EQ(out, (std::array<double, 7>{1, 2, 3, 4, 5, 6, -1}));

  expect_refused([&] { return Mat2double(out.data(), 5, &m); }, 4, "Mat2double", kRecordFile);
  expect_refused([&] { return Mat2double(nullptr, 6, &m); }, 2, "Mat2double", kRecordFile);
  expect_refused([&] { return Mat2double(out.data(), 6, nullptr); }, 2, "Mat2double", kRecordFile);
  expect_refused([&] { return double2Mat(&m, nullptr, 2, 3); }, 2, "double2Mat", kRecordFile);
  expect_refused([&] { return double2Mat(nullptr, in.data(), 2, 3); }, 2, "double2Mat",
                 kRecordFile);
  expect_refused([&] { return double2Mat(&m, in.data(), 0, 3); }, 3, "double2Mat", kRecordFile);
  const double bad[] = {1, kNan};
  expect_refused([&] { return double2Mat(&m, bad, 1, 2); }, 3, "double2Mat", kRecordFile);
}

TEST(Views, a_sub_matrix_shares_storage_with_its_parent) {
  OwnedMatrix a(3, 4, {0, 1, 2, 3, 10, 11, 12, 13, 20, 21, 22, 23});
  RealMatrix view;
  ASSERT_EQ(MatSubAccessRA(&view, &a, 1, 2, 3, 4), 0);
  EXPECT_EQ(view.data, a.data + 6);
  EXPECT_EQ(view.rows, 2);
  EXPECT_EQ(view.cols, 2);
  EXPECT_EQ(view.rows_allocated, 2);
  EXPECT_EQ(view.cols_allocated, 4);
  EXPECT_EQ(elements(view), (Values{12, 13, 22, 23}));

  ASSERT_EQ(MatFillRs(&view, 2, 2, -1), 0);
  EXPECT_EQ(a.storage(), (Values{0, 1, 2, 3, 10, 11, -1, -1, 20, 21, -1, -1}));
}

TEST(Views, a_part_of_an_empty_matrix_can_be_filled_through_its_view) {
  OwnedMatrix a(2, 2);
  RealMatrix view;
  ASSERT_EQ(MatSubAccessRA(&view, &a, 1, 1, 2, 2), 0);
  ASSERT_EQ(MatFillRs(&view, 1, 1, 5), 0);
  EXPECT_EQ(a.storage(), (Values{0, 0, 0, 5}));
}

TEST(Views, a_part_beyond_the_parent_is_refused) {
  OwnedMatrix a(2, 3, {1, 2, 3, 4, 5, 6});
  RealMatrix view{nullptr, 9, 9, 9, 9};
  const auto refused = [&](int r0, int c0, int r1, int c1) {
    expect_refused([&] { return MatSubAccessRA(&view, &a, r0, c0, r1, c1); }, 3, "MatSubAccessRA",
                   kRecordFile);
  };
  refused(0, 0, 3, 3);
  refused(0, 0, 2, 4);
  refused(-1, 0, 2, 3);
  refused(0, -1, 2, 3);
  refused(1, 0, 1, 3);
  refused(0, 2, 2, 1);
  EXPECT_EQ(view.rows, 9);
  RealMatrix none;
  expect_refused([&] { return MatSubAccessRA(&view, &none, 0, 0, 1, 1); }, 2, "MatSubAccessRA",
                 kRecordFile);
  expect_refused([&] { return MatSubAccessRA(nullptr, &a, 0, 0, 1, 1); }, 2, "MatSubAccessRA",
                 kRecordFile);
}

TEST(Views, a_part_of_a_diagonal_shares_its_storage) {
  Diagonal e{1, 2, 3, 4};
  DiagonalMatrix view;
  ASSERT_EQ(MatSubAccessDE(&view, &e, 1, 3), 0);
  EXPECT_EQ(view.size, 2);
  EXPECT_EQ(view.size_allocated, 3);
  ASSERT_EQ(MatFillDs(&view, 2, 9), 0);
  EXPECT_EQ(e.storage(), (Values{1, 9, 9, 4}));
  expect_refused([&] { return MatSubAccessDE(&view, &e, 2, 5); }, 3, "MatSubAccessDE", kRecordFile);
  expect_refused([&] { return MatSubAccessDE(&view, &e, 2, 2); }, 3, "MatSubAccessDE", kRecordFile);
  expect_refused([&] { return MatSubAccessDE(&view, nullptr, 0, 1); }, 2, "MatSubAccessDE",
                 kRecordFile);
}

TEST(Views, the_diagonal_of_a_matrix_is_a_column) {
  OwnedMatrix a(3, 4, {1, 0, 0, 0, 0, 2, 0, 0, 0, 0, 3, 0});
  RealMatrix view;
  ASSERT_EQ(MatDiagSubAccessVA(&view, &a, 0, 3), 0);
  EXPECT_EQ(view.cols, 1);
  EXPECT_EQ(elements(view), (Values{1, 2, 3}));
  ASSERT_EQ(MatDiagSubAccessVA(&view, &a, 1, 3), 0);
  EXPECT_EQ(elements(view), (Values{2, 3}));
  ASSERT_EQ(MatFillRs(&view, 2, 1, 7), 0);
  EXPECT_EQ(a.storage(), (Values{1, 0, 0, 0, 0, 7, 0, 0, 0, 0, 7, 0}));
  expect_refused([&] { return MatDiagSubAccessVA(&view, &a, 1, 4); }, 3, "MatDiagSubAccessVA",
                 kRecordFile);
  expect_refused([&] { return MatDiagSubAccessVA(&view, nullptr, 0, 1); }, 2, "MatDiagSubAccessVA",
                 kRecordFile);
}

}  // namespace
