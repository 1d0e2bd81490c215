#include "library/matrix_notice.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <string>

namespace {

using namespace Trel::Lib;

std::string notice(int code, int level, const char* file, int line, const char* function,
                   const char* text) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(report_notice(code, level, file, line, function, text), 0);
  return testing::internal::GetCapturedStderr();
}

TEST(Notice, all_that_is_known_stands_in_two_lines) {
  EXPECT_EQ(notice(5, 0, "matrix_factor.cpp", 12, "MatInvRA", "too flat"),
            "*** Warning in function MatInvRA() at line 12 of file matrix_factor.cpp ***\n"
            "--> too flat\n");
}

TEST(Notice, what_is_not_known_is_said_to_be_unknown) {
  EXPECT_EQ(notice(5, 1, nullptr, -1, nullptr, "too flat"),
            "*** Error in unknown function at unknown line of unknown file ***\n--> too flat\n");
  EXPECT_EQ(notice(5, 1, "", -2147483647 - 1, "", "too flat"),
            "*** Error in unknown function at unknown line of unknown file ***\n--> too flat\n");
}

TEST(Notice, line_zero_is_a_line) {
  EXPECT_EQ(notice(0, 4, "a.c", 0, "f", "x"),
            "*** Info in function f() at line 0 of file a.c ***\n--> x\n");
}

TEST(Notice, each_level_has_its_word_and_all_others_read_as_error) {
  const auto word = [](int level) {
    const std::string text = notice(0, level, "f", 1, "g", "t");
    return text.substr(4, text.find(" in function") - 4);
  };
  EXPECT_EQ(word(0), "Warning");
  EXPECT_EQ(word(1), "Error");
  EXPECT_EQ(word(2), "Fatal error");
  EXPECT_EQ(word(4), "Info");
  EXPECT_EQ(word(5), "Error");
  EXPECT_EQ(word(7), "Error");
  EXPECT_EQ(word(-1), "Error");
}

TEST(Notice, the_file_is_cut_to_what_follows_its_last_separator) {
  const auto file = [](const char* path) {
    const std::string text = notice(0, 1, path, 1, "g", "t");
    const std::size_t first = text.find("of file ") + 8;
    return text.substr(first, text.find(" ***\n") - first);
  };
  EXPECT_EQ(file("/a/b/c.cpp"), "c.cpp");
  EXPECT_EQ(file("a\\b\\c.cpp"), "c.cpp");
  EXPECT_EQ(file("a/b\\c.cpp"), "c.cpp");
  EXPECT_EQ(file("a\\b/c.cpp"), "c.cpp");
  EXPECT_EQ(file("c.cpp"), "c.cpp");
}

TEST(Notice, without_a_text_the_code_speaks) {
  const std::array<const char*, 13> texts = {"successful operation",
                                             "unable to allocate required memory space",
                                             "NULL pointer encountered",
                                             "numerical argument out of range",
                                             "insufficient memory space allocated",
                                             "ill-conditioned operation",
                                             "unable to open file",
                                             "incorrect file format",
                                             "internal inconsistency",
                                             "protocol error",
                                             "file system error",
                                             "code not written yet",
                                             "hardware error"};
  for (int code = 0; code < 13; ++code) {
    const std::string expected =
        std::string("*** Error in function g() at line 1 of file f ***\n--> ") + texts[code] + "\n";
    EXPECT_EQ(notice(code, 1, "f", 1, "g", nullptr), expected);
    EXPECT_EQ(notice(code, 1, "f", 1, "g", ""), expected);
  }
}

TEST(Notice, a_code_without_a_text_reads_as_an_inconsistency) {
  const std::string expected =
      "*** Error in function g() at line 1 of file f ***\n--> internal inconsistency\n";
  EXPECT_EQ(notice(13, 1, "f", 1, "g", nullptr), expected);
  EXPECT_EQ(notice(-1, 1, "f", 1, "g", nullptr), expected);
}

TEST(Notice, a_text_is_never_a_format) {
  EXPECT_EQ(notice(1, 1, "%s%n", 1, "%d", "%s 100%"),
            "*** Error in function %d() at line 1 of file %s%n ***\n--> %s 100%\n");
}

TEST(Notice, the_standard_output_is_flushed_too) {
  // Both streams lead into a pipe by hand: a capture would flush them itself.
  std::fflush(stdout);
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  ASSERT_NE(fcntl(ends[0], F_SETFL, O_NONBLOCK), -1);
  const int saved_output = dup(STDOUT_FILENO);
  const int saved_error = dup(STDERR_FILENO);
  dup2(ends[1], STDOUT_FILENO);
  dup2(ends[1], STDERR_FILENO);

  std::fputs("held back", stdout);
  report_notice(0, 4, "f", 1, "g", "t");
  std::array<char, 256> letters{};
  const ssize_t count = read(ends[0], letters.data(), letters.size());

  std::fflush(stdout);
  dup2(saved_output, STDOUT_FILENO);
  dup2(saved_error, STDERR_FILENO);
  for (const int end : {saved_output, saved_error, ends[0], ends[1]}) close(end);
  ASSERT_GT(count, 0);
  const std::string text(letters.data(), static_cast<std::size_t>(count));
  EXPECT_NE(text.find("held back"), std::string::npos) << text;
}

TEST(NoticeDeathTest, the_level_killed_alone_ends_the_process) {
  EXPECT_EXIT(report_notice(8, 3, "a/f.c", 7, "g", nullptr), testing::ExitedWithCode(1),
              "^\\*{3} Killed in function g\\(\\) at line 7 of file f\\.c \\*{3}\n"
              "--> internal inconsistency\n$");
  EXPECT_EQ(notice(8, 2, "a/f.c", 7, "g", nullptr),
            "*** Fatal error in function g() at line 7 of file f.c ***\n"
            "--> internal inconsistency\n");
}

}  // namespace
