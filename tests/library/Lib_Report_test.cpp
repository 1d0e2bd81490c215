#include "library/Lib_Report.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::string kRule = std::string(60, '*') + "\n";

std::string reported(const char* info) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(Trel::Lib::report("a == b", info, "folder/File", "int f()", 42), 0);
  return testing::internal::GetCapturedStderr();
}

TEST(Report, the_block_stands_between_two_rules) {
  EXPECT_EQ(reported("why"), kRule +
                                 "Info : why\n"
                                 "Test : a == b\n"
                                 "File : folder/File\n"
                                 "Func : int f()\n"
                                 "Line : 42\n" +
                                 kRule);
}

TEST(Report, an_empty_info_has_no_line) {
  const std::string expected = kRule +
                               "Test : a == b\n"
                               "File : folder/File\n"
                               "Func : int f()\n"
                               "Line : 42\n" +
                               kRule;
  EXPECT_EQ(reported(""), expected);
  EXPECT_EQ(reported(nullptr), expected);
}

void assert_positive(int value) {
  TREL_ASSERT(value > 0, "folder/File");
}

TEST(Assert, a_condition_that_holds_is_evaluated_once_and_says_nothing) {
  int evaluations = 0;
  testing::internal::CaptureStderr();
  TREL_ASSERT(++evaluations == 1, "folder/File");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(evaluations, 1);
}

TEST(AssertDeathTest, a_broken_condition_is_reported_and_stops_the_program) {
  assert_positive(1);
  EXPECT_EXIT(assert_positive(0), testing::KilledBySignal(SIGABRT),
              "^\\*{60}\nTest : value > 0\nFile : folder/File\n"
              "Func : .*assert_positive\\(int\\)\nLine : [0-9]+\n\\*{60}\n");
}

}  // namespace
