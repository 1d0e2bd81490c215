#include "library/Lib_System.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <limits>

#include "library/Lib_Timer.h"

namespace {

using namespace Trel::Lib;
using Clock = std::chrono::steady_clock;

std::string fields(const Date& date) {
  std::ostringstream text;
  text << date.year << ' ' << date.month << ' ' << date.day << ' ' << date.hour << ' '
       << date.minute << ' ' << date.second;
  return text.str();
}

TEST(Ticks, are_the_processor_time_in_nanoseconds) {
  const std::int64_t before = std::int64_t{std::clock()} * 1000;
  const std::int64_t between = ticks();
  const std::int64_t after = std::int64_t{std::clock()} * 1000;
  EXPECT_LE(before, between);
  EXPECT_LE(between, after);
}

TEST(Sleep, lasts_at_least_as_long_as_asked) {
  const auto start = Clock::now();
  nano_sleep(3000000);
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(3));
  const auto second = Clock::now();
  Trel::Lib::sleep(1);
  EXPECT_GE(Clock::now() - second, std::chrono::seconds(1));
}

TEST(Sleep, nothing_and_less_than_nothing_return_at_once) {
  const auto start = Clock::now();
  nano_sleep(0);
  nano_sleep(-1);
  nano_sleep(std::numeric_limits<std::int64_t>::min());
  Trel::Lib::sleep(0);
  Trel::Lib::sleep(-1);
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(30));
}

TEST(Date, a_time_is_taken_apart_in_utc) {
  EXPECT_EQ(fields(date(0)), "1970 1 1 0 0 0");
  // 11016 days to 2000-02-29; a second before it.
  EXPECT_EQ(fields(date(11016LL * 86400 - 1)), "2000 2 28 23 59 59");
  EXPECT_EQ(fields(date(11016LL * 86400 + 3661)), "2000 2 29 1 1 1");
  EXPECT_EQ(fields(date(-1)), "1969 12 31 23 59 59");
}

TEST(Date, the_zone_of_the_machine_does_not_matter) {
  const char* zone = std::getenv("TZ");
  const std::string kept = zone != nullptr ? zone : "";
  setenv("TZ", "XYZ-5:30", 1);
  tzset();
  EXPECT_EQ(fields(date(0)), "1970 1 1 0 0 0");
  zone != nullptr ? setenv("TZ", kept.c_str(), 1) : unsetenv("TZ");
  tzset();
}

TEST(Date, one_that_the_platform_cannot_tell_is_all_0) {
  EXPECT_EQ(fields(date(std::numeric_limits<std::time_t>::max())), "0 0 0 0 0 0");
}

TEST(Date, without_an_argument_it_is_the_current_time) {
  std::string before, now, after;
  do {  // once more if a second begins in between
    before = fields(date(std::time(nullptr)));
    now = fields(date());
    after = fields(date(std::time(nullptr)));
  } while (before != after);
  EXPECT_EQ(now, before);
}

TEST(Text, letters_change_their_case_in_place_and_nothing_else_does) {
  std::string text = "AbZ-09.\xC3\x84[`{";
  lower_case(text);
  EXPECT_EQ(text, "abz-09.\xC3\x84[`{");
  upper_case(text);
  EXPECT_EQ(text, "ABZ-09.\xC3\x84[`{");
  std::string empty;
  lower_case(empty);
  upper_case(empty);
  EXPECT_EQ(empty, "");
}

TEST(FileExtension, runs_from_the_last_dot_to_the_end) {
  EXPECT_EQ(file_extension("drive.XCom", false), ".XCom");
  EXPECT_EQ(file_extension("drive.XCom", true), ".xcom");
  EXPECT_EQ(file_extension("a.b.c", true), ".c");
  EXPECT_EQ(file_extension("drive", true), "");
  EXPECT_EQ(file_extension("drive.", true), ".");
  EXPECT_EQ(file_extension(".hidden", true), ".hidden");
  EXPECT_EQ(file_extension("", true), "");
}

TEST(FileExtension, a_dot_of_a_folder_counts_when_it_is_the_last) {
  EXPECT_EQ(file_extension("run.1/drive.xcom", true), ".xcom");
  EXPECT_EQ(file_extension("run.1/drive", true), ".1/drive");
}

TEST(Address, the_lowest_byte_comes_first_or_last) {
  EXPECT_EQ(ipv4_to_string(0x0100007F), "127.0.0.1");
  EXPECT_EQ(ipv4_to_string_be(0x7F000001), "127.0.0.1");
  EXPECT_EQ(ipv4_to_string_be(0x0100007F), "1.0.0.127");
  EXPECT_EQ(ipv4_to_string(0xFFFFFFFF), "255.255.255.255");
  EXPECT_EQ(ipv4_to_string(0), "0.0.0.0");
}

TEST(Identifier, its_characters_run_from_the_lowest_byte_to_the_first_0) {
  EXPECT_EQ(uint64_to_string_le(0x4847464544434241), "ABCDEFGH");
  EXPECT_EQ(uint64_to_string_le(0x434241), "ABC");
  EXPECT_EQ(uint64_to_string_le(0x43004241), "AB");
  EXPECT_EQ(uint64_to_string_le(0), "");
}

TEST(FileExist, anything_of_that_name_will_do) {
  EXPECT_TRUE(file_exist("/"));
  EXPECT_TRUE(file_exist(std::string("/dev/null")));
  EXPECT_FALSE(file_exist("/no/such/file"));
  EXPECT_FALSE(file_exist(std::string()));
  EXPECT_FALSE(file_exist(nullptr));
}

TEST(Console, prints_text_of_every_form_as_it_is_and_returns_1) {
  std::stringstream stream;
  stream << 1 << "%d\n";
  testing::internal::CaptureStdout();
  const int returned =
      console_print("a%s") + console_print(std::string("b%n")) + console_print(stream);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "a%sb%n1%d\n");
  EXPECT_EQ(returned, 3);
}

TEST(Console, needs_no_preparation) {
  testing::internal::CaptureStdout();
  console_begin();
  console_toggle_utf8();
  console_end();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Timer, stands_at_0_before_its_start) {
  const Timer timer;
  EXPECT_EQ(timer.ticks(), 0);
  EXPECT_EQ(timer.seconds(), 0.0);
  Timer stopped;
  stopped.stop();
  EXPECT_EQ(stopped.ticks(), 0);
}

TEST(Timer, runs_from_its_start_in_nanoseconds) {
  const auto outer = Clock::now();
  Timer timer;
  timer.start();
  const auto inner = Clock::now();
  nano_sleep(2000000);
  const auto at_least = Clock::now() - inner;
  const std::int64_t passed = timer.ticks();
  const auto at_most = Clock::now() - outer;
  EXPECT_GE(passed, std::chrono::nanoseconds(at_least).count());
  EXPECT_LE(passed, std::chrono::nanoseconds(at_most).count());
  EXPECT_GE(timer.seconds(), 0.002);
  EXPECT_LT(timer.seconds() - static_cast<double>(passed) * 1e-9, 60.0);
}

TEST(Timer, a_stopped_one_holds_and_a_new_start_begins_anew) {
  Timer timer;
  timer.start();
  nano_sleep(2000000);
  timer.stop();
  const std::int64_t held = timer.ticks();
  EXPECT_GE(held, 2000000);
  nano_sleep(1000000);
  EXPECT_EQ(timer.ticks(), held);
  EXPECT_EQ(timer.seconds(), static_cast<double>(held) * 1e-9);
  timer.stop();
  EXPECT_EQ(timer.ticks(), held);

  const auto outer = Clock::now();
  timer.start();
  const std::int64_t anew = timer.ticks();
  EXPECT_LE(anew, std::chrono::nanoseconds(Clock::now() - outer).count());
  nano_sleep(1000);
  EXPECT_GT(timer.ticks(), anew);
}

}  // namespace
