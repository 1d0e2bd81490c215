// What each command line answers: words, streams and exit value.
#include <gtest/gtest.h>

#include "app/Program.h"

namespace Trel::Test {
namespace {

const std::string kWrongCount = "Invalid number of arguments provided.\n";

Outcome run(const std::vector<std::string>& arguments) {
  return Folder().run(arguments);
}

// The answer to a request for the conversion of an empty, existing file.
Outcome run_with_seconds(const std::string& seconds) {
  const Folder folder;
  folder.write("empty.xcom", "");
  return folder.run({"empty.xcom", "out.txt", seconds});
}

const std::string kNothingAdded = kBanner + "Added 0 streams from XCOM file.\n";

TEST(CommandLine, every_line_of_the_banner_is_seventy_wide) {
  const std::string out = run({"-v"}).out;
  for (int line = 0; line < 4; ++line) EXPECT_EQ(out.at(71 * line + 70), '\n');
}

TEST(CommandLine, the_version_follows_the_banner) {
  for (const char* option : {"-v", "--version"}) {
    const Outcome outcome = run({option});
    EXPECT_EQ(outcome.exit, "0");
    EXPECT_EQ(outcome.out, kBanner + "Version = 1.0.0, Development ID 231014.14zg\n");
    EXPECT_EQ(outcome.err, "");
  }
}

TEST(CommandLine, the_help_follows_the_banner) {
  for (const char* option : {"-h", "--help"}) {
    const Outcome outcome = run({option});
    EXPECT_EQ(outcome.exit, "0");
    EXPECT_EQ(outcome.out, kBanner + kUsage);
    EXPECT_EQ(outcome.err, "");
  }
}

class WrongCount : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(WrongCount, is_refused_with_the_usage) {
  const Outcome outcome = run(GetParam());
  EXPECT_EQ(outcome.exit, "254");  // -2
  EXPECT_EQ(outcome.out, kBanner + kUsage);
  EXPECT_EQ(outcome.err, kWrongCount);
}

using Words = std::vector<std::string>;
INSTANTIATE_TEST_SUITE_P(CommandLine, WrongCount,
                         testing::Values(Words{}, Words{"-x"}, Words{""}, Words{"-V"},
                                         Words{"-h", "extra"}, Words{"a", "b"},
                                         Words{"a", "b", "1", "c"}, Words{"-v", "-v", "-v", "-v"}));

TEST(CommandLine, a_missing_input_is_told_without_usage) {
  const Outcome outcome = run({"missing.xcom", "out.txt", "1"});
  EXPECT_EQ(outcome.exit, "253");  // -3
  EXPECT_EQ(outcome.out, kBanner);
  EXPECT_EQ(outcome.err, "Input file \"missing.xcom\" does not exist.\n");
}

TEST(CommandLine, a_missing_input_is_told_before_the_seconds_are_looked_at) {
  EXPECT_EQ(run({"missing.xcom", "out.txt", "0"}).exit, "253");
}

TEST(CommandLine, a_name_with_a_quote_is_told_as_it_stands) {
  EXPECT_EQ(run({"m\"q.xcom", "out.txt", "1"}).err, "Input file \"m\"q.xcom\" does not exist.\n");
}

TEST(CommandLine, seconds_that_are_not_positive_are_refused_with_the_value_and_the_usage) {
  const std::pair<const char*, const char*> cases[] = {
      {"0", "0"}, {"-5", "-5"}, {"abc", "0"}, {"", "0"}, {"-99999999999", "-2147483648"}};
  for (const auto& [seconds, shown] : cases) {
    const Outcome outcome = run_with_seconds(seconds);
    EXPECT_EQ(outcome.exit, "255") << seconds;  // -1
    EXPECT_EQ(outcome.out, kBanner + kUsage) << seconds;
    EXPECT_EQ(outcome.err,
              std::string("Invalid seconds-per-sample value provided: ") + shown + "\n");
  }
}

TEST(CommandLine, seconds_are_read_up_to_the_first_character_that_is_no_digit) {
  for (const char* seconds : {"5abc", "2.5", " 7", "99999999999"}) {
    const Outcome outcome = run_with_seconds(seconds);
    EXPECT_EQ(outcome.exit, "252") << seconds;  // accepted: the empty file fails behind it
    EXPECT_EQ(outcome.out, kNothingAdded) << seconds;
  }
}

TEST(CommandLine, an_input_without_streams_is_an_error_and_writes_no_file) {
  const Folder folder;
  folder.write("empty.xcom", "");
  const Outcome outcome = folder.run({"empty.xcom", "out.txt", "1"});
  EXPECT_EQ(outcome.exit, "252");  // -4
  EXPECT_EQ(outcome.out, kNothingAdded);
  EXPECT_EQ(outcome.err, "Error: Resource failed to be added.\n");
  EXPECT_FALSE(folder.read("out.txt").has_value());
}

}  // namespace
}  // namespace Trel::Test
