#include "library/matrix_text.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "library/mathematics.h"

namespace {

using namespace mathematics;
using Values = std::vector<double>;

constexpr const char* kTextFile = "matrix_text.cpp";

class MatrixText : public testing::Test {
 protected:
  void SetUp() override {
    path_ = testing::TempDir() + "matrix_text_" +
            testing::UnitTest::GetInstance()->current_test_info()->name();
  }
  void TearDown() override { std::filesystem::remove_all(path_); }

  const char* file_with(const std::string& text) {
    std::ofstream(path_, std::ios::binary) << text;
    return path_.c_str();
  }
  [[nodiscard]] std::string content() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::string path_;
};

// What `print` writes to its stream.
template <class Print>
std::string printed(Print print) {
  std::FILE* file = std::tmpfile();
  EXPECT_EQ(print(file), 0);
  std::string text(static_cast<std::size_t>(std::ftell(file)), '\0');
  std::rewind(file);
  EXPECT_EQ(std::fread(text.data(), 1, text.size(), file), text.size());
  std::fclose(file);
  return text;
}

TEST_F(MatrixText, a_file_has_a_row_a_line) {
  RealMatrix m;
  ASSERT_EQ(MatReadR(&m, file_with("1 2.5 -3\n4e2 5 +6\n")), 0);
  EXPECT_EQ(m.rows, 2);
  EXPECT_EQ(m.cols, 3);
  EXPECT_EQ(elements(m), (Values{1, 2.5, -3, 400, 5, 6}));
  MatFree(&m);
}

TEST_F(MatrixText, gaps_blank_lines_and_a_missing_last_end_do_not_matter) {
  RealMatrix m;
  ASSERT_EQ(MatReadR(&m, file_with("\n \t 1,2\r\n\r\n\t3 , 4\n   \n5\t6")), 0);
  EXPECT_EQ(m.rows, 3);
  EXPECT_EQ(m.cols, 2);
  EXPECT_EQ(elements(m), (Values{1, 2, 3, 4, 5, 6}));
  MatFree(&m);
}

TEST_F(MatrixText, a_file_longer_than_one_reading_is_whole) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += std::to_string(i) + " " + std::to_string(-i) + "\n";
  RealMatrix m;
  ASSERT_EQ(MatReadR(&m, file_with(text)), 0);
  EXPECT_EQ(m.rows, 5000);
  EXPECT_EQ(m.data[9998], 4999);
  EXPECT_EQ(m.data[9999], -4999);
  MatFree(&m);
}

TEST_F(MatrixText, damaged_files_are_refused_with_their_reason) {
  const auto refused = [&](const std::string& text, const char* reason) {
    RealMatrix m{nullptr, 5, 5, 5, 5};
    const char* path = file_with(text);
    expect_refused([&] { return MatReadR(&m, path); }, 7, "MatReadR", kTextFile, reason);
    EXPECT_EQ(m.data, nullptr) << text;
    EXPECT_EQ(m.rows, 0) << text;
    DiagonalMatrix d;
    expect_refused([&] { return MatReadD(&d, path); }, 7, "MatReadD", kTextFile, reason);
    EXPECT_EQ(d.data, nullptr) << text;
  };
  const char* empty = "Incorrect format: empty file encountered";
  refused("", empty);
  refused(" \n\r\n\t,", empty);
  const char* start = "Incorrect format: matrix file should start with a number";
  refused("one 2\n", start);
  refused("\n\n# 1 2\n", start);
  refused("nan 1\n", start);
  refused("inf\n", start);
  refused("1e999\n", start);
  refused("1x\n", start);
  refused("+-1\n", start);
  refused("+\n", start);
  refused("-\n", start);
  refused(std::string("\0 1\n", 4), start);
  const char* number = "Incorrect format: number expected";
  refused("1 two\n", number);
  refused("1 2\n3 nan\n", number);
  refused("1 2;3 4\n", number);
  refused(std::string("1 2\0\n", 5), number);
  const char* length = "Incorrect format: rows of different length encountered";
  refused("1 2\n3\n", length);
  refused("1\n2 3\n", length);
  refused("1 2\n3 4 5", length);
}

TEST_F(MatrixText, a_path_that_cannot_be_read_is_refused) {
  RealMatrix m;
  DiagonalMatrix d;
  expect_refused([&] { return MatReadR(&m, path_.c_str()); }, 6, "MatReadR", kTextFile);
  expect_refused([&] { return MatReadD(&d, path_.c_str()); }, 6, "MatReadD", kTextFile);
  expect_refused([&] { return MatReadR(&m, nullptr); }, 2, "MatReadR", kTextFile);
  expect_refused([&] { return MatReadR(nullptr, path_.c_str()); }, 2, "MatReadR", kTextFile);
  expect_refused([&] { return MatReadD(&d, nullptr); }, 2, "MatReadD", kTextFile);
  expect_refused([&] { return MatReadD(nullptr, path_.c_str()); }, 2, "MatReadD", kTextFile);
  std::filesystem::create_directory(path_);
  expect_refused([&] { return MatReadR(&m, path_.c_str()); }, 10, "MatReadR", kTextFile);
}

TEST_F(MatrixText, a_diagonal_is_one_row_or_one_column) {
  DiagonalMatrix d;
  ASSERT_EQ(MatReadD(&d, file_with("1 2 3\n")), 0);
  EXPECT_EQ(d.size, 3);
  EXPECT_EQ((Values{d.data, d.data + 3}), (Values{1, 2, 3}));
  MatDFree(&d);
  ASSERT_EQ(MatReadD(&d, file_with("4\n5\n")), 0);
  EXPECT_EQ(d.size, 2);
  EXPECT_EQ((Values{d.data, d.data + 2}), (Values{4, 5}));
  MatDFree(&d);
  const char* path = file_with("1 2\n3 4\n");
  expect_refused([&] { return MatReadD(&d, path); }, 7, "MatReadD", kTextFile,
                 "Incorrect format: diagonal should be one row or column");
}

TEST_F(MatrixText, a_file_written_has_the_shortest_exact_numbers) {
  const OwnedMatrix a(2, 2, {1, -0.1, 1e300, 2.5});
  ASSERT_EQ(MatWrite(&a, path_.c_str()), 0);
  EXPECT_EQ(content(), "1 -0.1\n1e+300 2.5\n");
  Diagonal d{0.5, 3};
  ASSERT_EQ(MatDWrite(&d, path_.c_str()), 0);
  EXPECT_EQ(content(), "0.5\n3\n");
}

TEST_F(MatrixText, what_was_written_reads_back_to_the_bit) {
  constexpr unsigned kSeed = 99;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  Random random(kSeed);
  OwnedMatrix a = random.matrix(20, 7);
  a(0, 0) = 5e-324;
  a(0, 1) = 1.7976931348623157e308;
  a(0, 2) = -0.0;
  for (int j = 0; j < 7; ++j) a(1, j) *= std::pow(10.0, random.integer(-300, 300));
  ASSERT_EQ(MatWrite(&a, path_.c_str()), 0);
  RealMatrix m;
  ASSERT_EQ(MatReadR(&m, path_.c_str()), 0);
  EXPECT_EQ(elements(m), elements(a));
  EXPECT_TRUE(std::signbit(m.data[2]));
  MatFree(&m);
  Diagonal e{0.1, 1.0 / 3, -7e-30};
  ASSERT_EQ(MatDWrite(&e, path_.c_str()), 0);
  DiagonalMatrix d;
  ASSERT_EQ(MatReadD(&d, path_.c_str()), 0);
  EXPECT_EQ((Values{d.data, d.data + 3}), e.storage());
  MatDFree(&d);
}

TEST_F(MatrixText, what_cannot_be_written_is_refused) {
  const OwnedMatrix a(1, 2, {1, 2});
  const OwnedMatrix bad(1, 2, {1, kNan});
  Diagonal d{1};
  const std::string nowhere = path_ + "/none/file";
  expect_refused([&] { return MatWrite(&a, nowhere.c_str()); }, 6, "MatWrite", kTextFile);
  expect_refused([&] { return MatDWrite(&d, nowhere.c_str()); }, 6, "MatDWrite", kTextFile);
  expect_refused([&] { return MatWrite(&a, "/dev/full"); }, 10, "MatWrite", kTextFile);
  expect_refused([&] { return MatWrite(&bad, path_.c_str()); }, 3, "MatWrite", kTextFile);
  expect_refused([&] { return MatWrite(nullptr, path_.c_str()); }, 2, "MatWrite", kTextFile);
  expect_refused([&] { return MatWrite(&a, nullptr); }, 2, "MatWrite", kTextFile);
  expect_refused([&] { return MatDWrite(nullptr, path_.c_str()); }, 2, "MatDWrite", kTextFile);
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(MatrixText, a_matrix_is_shown_in_columns) {
  const OwnedMatrix a(2, 2, {1, -0.5, 1234567.25, kNan});
  EXPECT_EQ(printed([&](std::FILE* out) { return MatPrint(&a, out); }),
            "               1            -0.5\n"
            "       1234567.2             nan\n");
  Diagonal d{1, 2};
  EXPECT_EQ(printed([&](std::FILE* out) { return MatDPrint(&d, out); }),
            "               1               2\n");
  std::array<double, 4> data{4, 0.5, 1, 1.5};
  std::array<int, 2> pivots{1, 1};
  const CroutMatrix c{data.data(), pivots.data(), 2, 2};
  EXPECT_EQ(printed([&](std::FILE* out) { return MatCPrint(&c, out); }),
            "               4             0.5\n"
            "               1             1.5\n"
            "               1               1\n");
}

TEST_F(MatrixText, empty_records_are_shown_as_nothing) {
  const RealMatrix m;
  const DiagonalMatrix d;
  const CroutMatrix c;
  EXPECT_EQ(printed([&](std::FILE* out) { return MatPrint(&m, out); }), "");
  EXPECT_EQ(printed([&](std::FILE* out) { return MatDPrint(&d, out); }), "");
  EXPECT_EQ(printed([&](std::FILE* out) { return MatCPrint(&c, out); }), "");
}

TEST_F(MatrixText, what_cannot_be_shown_is_refused) {
  const OwnedMatrix a(1, 1, {1});
  Diagonal d{1};
  expect_refused([&] { return MatPrint(&a, nullptr); }, 2, "MatPrint", kTextFile);
  expect_refused([&] { return MatPrint(nullptr, stdout); }, 2, "MatPrint", kTextFile);
  expect_refused([&] { return MatDPrint(nullptr, stdout); }, 2, "MatDPrint", kTextFile);
  expect_refused([&] { return MatCPrint(nullptr, stdout); }, 2, "MatCPrint", kTextFile);
  const RealMatrix torn{a.data, 2, 2, 1, 1};
  expect_refused([&] { return MatPrint(&torn, stdout); }, 4, "MatPrint", kTextFile);
  std::FILE* full = std::fopen("/dev/full", "w");
  ASSERT_NE(full, nullptr);
  expect_refused([&] { return MatPrint(&a, full); }, 10, "MatPrint", kTextFile);
  expect_refused([&] { return MatDPrint(&d, full); }, 10, "MatDPrint", kTextFile);
  std::fclose(full);
}

}  // namespace
