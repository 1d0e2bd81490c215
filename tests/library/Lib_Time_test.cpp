#include "library/Lib_Time.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace Trel::Lib;
using namespace std::chrono_literals;

constexpr unsigned kTimeSeed = 19800106;
constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();
constexpr long long kMax = std::numeric_limits<long long>::max();
constexpr long long kMin = std::numeric_limits<long long>::min();
constexpr long long kDay = 86400;
constexpr long long kSecond = 1000000000;

constexpr std::chrono::sys_days kEpoch{1980y / 1 / 6};

int days_since_epoch(std::chrono::year_month_day date) {
  return static_cast<int>((std::chrono::sys_days{date} - kEpoch).count());
}

std::chrono::year_month_day calendar(int gps_days) {
  return std::chrono::sys_days{kEpoch + std::chrono::days{gps_days}};
}

std::string text_of(std::chrono::year_month_day date) {
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

std::string fields(const UtcTime& time) {
  std::ostringstream text;
  text << time.year << ' ' << time.month << ' ' << time.day << ' ' << time.hour << ' '
       << time.minute << ' ' << time.second;
  return text.str();
}

UtcTime utc(long long gps_seconds, bool show_leap = true) {
  UtcTime time;
  time.from_gps_seconds(gps_seconds, show_leap, true);
  return time;
}

int offset_at_gps(long long gps_second) {
  bool is_leap = false;
  int offset = 99;
  UtcTime::gps_utc_offset_from_gps_second(gps_second, is_leap, offset);
  return offset;
}

bool is_leap_at_gps(long long gps_second) {
  bool is_leap = false;
  int offset = 99;
  UtcTime::gps_utc_offset_from_gps_second(gps_second, is_leap, offset);
  return is_leap;
}

int offset_at_utc(long long utc_second) {
  int offset = 99;
  UtcTime::gps_utc_offset_from_utc_second(utc_second, offset);
  return offset;
}

struct Leap {
  std::chrono::year_month_day last_day;  // the day that is a second longer
  int offset;                            // GPS minus UTC once the second has begun
  long long gps_second;
};

// Every leap second as published, by the day it lengthens. GPS and UTC agreed in 1980; the second
// that ends 1979 was the last before it, so that the first listed one brings the offset to -8.
std::vector<Leap> leap_seconds() {
  const std::chrono::year_month_day last_days[] = {
      1972y / 6 / 30,  1972y / 12 / 31, 1973y / 12 / 31, 1974y / 12 / 31, 1975y / 12 / 31,
      1976y / 12 / 31, 1977y / 12 / 31, 1978y / 12 / 31, 1979y / 12 / 31, 1981y / 6 / 30,
      1982y / 6 / 30,  1983y / 6 / 30,  1985y / 6 / 30,  1987y / 12 / 31, 1989y / 12 / 31,
      1990y / 12 / 31, 1992y / 6 / 30,  1993y / 6 / 30,  1994y / 6 / 30,  1995y / 12 / 31,
      1997y / 6 / 30,  1998y / 12 / 31, 2005y / 12 / 31, 2008y / 12 / 31, 2012y / 6 / 30,
      2015y / 6 / 30,  2016y / 12 / 31};
  std::vector<Leap> leaps;
  int offset = -9;
  for (const auto& last_day : last_days) {
    ++offset;
    // The next day begins `offset` seconds later in GPS time, one second behind the leap second.
    const long long next_day = kDay * (days_since_epoch(last_day) + 1) + offset;
    leaps.push_back({last_day, offset, next_day - 1});
  }
  return leaps;
}

TEST(UtcDate, constructors_store_every_field_unchanged) {
  const UtcDate date(-5, 77, kIntMin);
  EXPECT_EQ(date.year, -5);
  EXPECT_EQ(date.month, 77);
  EXPECT_EQ(date.day, kIntMin);
  const UtcNano time(1, 2, 3, 4, 5, 6, 7, 8, 9);
  EXPECT_EQ(fields(time), "1 2 3 4 5 6");
  EXPECT_EQ(time.milli, 7);
  EXPECT_EQ(time.micro, 8);
  EXPECT_EQ(time.nano, 9);
  EXPECT_EQ(fields(UtcTime()), "0 0 0 0 0 0");
}

TEST(UtcDate, day_0_is_the_sixth_of_january_1980) {
  UtcDate date;
  date.from_gps_days(0);
  EXPECT_EQ(date.format(false), "1980-01-06");
  EXPECT_EQ(UtcDate(1980, 1, 6).to_gps_days(), 0);
}

TEST(UtcDate, every_day_of_three_centuries_is_the_one_of_the_calendar_and_comes_back) {
  const int first = days_since_epoch(1850y / 1 / 1);
  const int last = days_since_epoch(2150y / 12 / 31);
  for (int day = first; day <= last; ++day) {
    UtcDate date;
    date.from_gps_days(day);
    ASSERT_EQ(date.format(false), text_of(calendar(day))) << day;
    ASSERT_EQ(date.to_gps_days(), day);
  }
}

TEST(UtcDate, the_calendar_holds_from_the_year_minus_4799_to_32767) {
  for (int day = days_since_epoch(std::chrono::year{-4799} / 1 / 1);
       day <= days_since_epoch(32767y / 12 / 31); day += 97) {
    UtcDate date;
    date.from_gps_days(day);
    const auto expected = calendar(day);
    ASSERT_EQ(date.year, static_cast<int>(expected.year())) << day;
    ASSERT_EQ(date.month, static_cast<int>(static_cast<unsigned>(expected.month()))) << day;
    ASSERT_EQ(date.day, static_cast<int>(static_cast<unsigned>(expected.day()))) << day;
    ASSERT_EQ(date.to_gps_days(), day);
  }
}

TEST(UtcDate, the_greatest_day_lies_whole_cycles_of_400_years_behind_a_known_one) {
  // A cycle has 146097 days.
  const int cycles = kIntMax / 146097;
  const auto known = calendar(kIntMax % 146097);
  UtcDate date;
  date.from_gps_days(kIntMax);
  EXPECT_EQ(date.year, static_cast<int>(known.year()) + 400 * cycles);
  EXPECT_EQ(date.month, static_cast<int>(static_cast<unsigned>(known.month())));
  EXPECT_EQ(date.day, static_cast<int>(static_cast<unsigned>(known.day())));
  EXPECT_EQ(date.to_gps_days(), kIntMax);
}

TEST(UtcDate, before_the_first_day_of_its_cycles_the_division_truncates) {
  UtcDate date;
  date.from_gps_days(-2476289);
  EXPECT_EQ(date.format(false), "-4800-03-01");
  // n = -1: every quotient is 0, k = 303 / 153 = 1, day = -1 - 459 / 5 + 123 = 31.
  date.from_gps_days(-2476290);
  EXPECT_EQ(date.format(false), "-4800-02-31");
  // n = -2147483648 + 2476289 = -14682 * 146097 - 11205: g = -14682, r = -11205,
  // c = (0 + 1) * 3 / 4 = 0, b = -11205 / 1461 = -7, r = -11205 + 7 * 1461 = -978,
  // a = (-978 / 365 + 1) * 3 / 4 = (-2 + 1) * 3 / 4 = 0, k = (-4890 + 308) / 153 = -29,
  // year = -5872800 - 28 - 4800 - 29 / 12 (= 2), month = -29 % 12 + 1 = -4,
  // day = -978 - 153 * (-27) / 5 + 123 = -978 + 826 + 123.
  date.from_gps_days(kIntMin);
  EXPECT_EQ(date.year, -5872800 - 28 - 4800 - 2);
  EXPECT_EQ(date.month, -4);
  EXPECT_EQ(date.day, -29);
}

TEST(UtcDate, fields_out_of_range_give_the_day_that_the_arithmetic_gives) {
  EXPECT_EQ(UtcDate(2023, 13, 1).to_gps_days(), UtcDate(2024, 1, 1).to_gps_days());
  EXPECT_EQ(UtcDate(2023, 1, 32).to_gps_days(), UtcDate(2023, 2, 1).to_gps_days());
  EXPECT_EQ(UtcDate(2023, 3, 0).to_gps_days(), UtcDate(2023, 2, 28).to_gps_days());
  EXPECT_EQ(UtcDate(1980, 1, kIntMax).to_gps_days(), kIntMax - 6);
  EXPECT_EQ(UtcDate(1980, 1, kIntMin + 6).to_gps_days(), kIntMin);
}

TEST(UtcDate, a_day_number_beyond_32_bits_wraps) {
  // The first of February is day 26, so day INT_MAX of that month is INT_MAX + 25.
  EXPECT_EQ(UtcDate(1980, 2, kIntMax).to_gps_days(), kIntMin + 24);
  // Every field at its end is still one day away from the day beside it.
  EXPECT_EQ(UtcDate(kIntMax, kIntMax, kIntMax - 1).to_gps_days() + 1,
            UtcDate(kIntMax, kIntMax, kIntMax).to_gps_days());
  EXPECT_EQ(UtcDate(kIntMin, kIntMin, kIntMin + 1).to_gps_days() - 1,
            UtcDate(kIntMin, kIntMin, kIntMin).to_gps_days());
}

TEST(UtcDate, the_decimal_date_is_0_when_a_field_does_not_fit_its_digits) {
  EXPECT_EQ(UtcDate(2024, 2, 29).to_deci_date(), 20240229u);
  EXPECT_EQ(UtcDate(0, 0, 0).to_deci_date(), 0u);
  EXPECT_EQ(UtcDate(0, 0, 1).to_deci_date(), 1u);
  EXPECT_EQ(UtcDate(9999, 99, 99).to_deci_date(), 99999999u);
  EXPECT_EQ(UtcDate(10000, 1, 1).to_deci_date(), 0u);
  EXPECT_EQ(UtcDate(-1, 1, 1).to_deci_date(), 0u);
  EXPECT_EQ(UtcDate(2024, 100, 1).to_deci_date(), 0u);
  EXPECT_EQ(UtcDate(2024, -1, 1).to_deci_date(), 0u);
  EXPECT_EQ(UtcDate(2024, 1, 100).to_deci_date(), 0u);
  EXPECT_EQ(UtcDate(2024, 1, -1).to_deci_date(), 0u);
}

TEST(UtcDate, the_text_has_a_zone_only_when_asked_for) {
  EXPECT_EQ(UtcDate(987, 6, 5).format(true), "0987-06-05Z");
  EXPECT_EQ(UtcDate(987, 6, 5).format(false), "0987-06-05");
  EXPECT_EQ(format_date_to_utc(366), "1981-01-06");
}

TEST(UtcOffset, each_leap_second_changes_the_offset_at_its_second_and_is_marked_there_alone) {
  for (const Leap& leap : leap_seconds()) {
    SCOPED_TRACE(leap.offset);
    EXPECT_EQ(offset_at_gps(leap.gps_second - 2), leap.offset - 1);
    EXPECT_EQ(offset_at_gps(leap.gps_second - 1), leap.offset - 1);
    EXPECT_EQ(offset_at_gps(leap.gps_second), leap.offset);
    EXPECT_EQ(offset_at_gps(leap.gps_second + 1), leap.offset);
    EXPECT_FALSE(is_leap_at_gps(leap.gps_second - 1));
    EXPECT_TRUE(is_leap_at_gps(leap.gps_second));
    EXPECT_FALSE(is_leap_at_gps(leap.gps_second + 1));

    // In UTC the new offset holds from the first second of the next day.
    const long long next_day = kDay * (days_since_epoch(leap.last_day) + 1);
    EXPECT_EQ(offset_at_utc(next_day - 2), leap.offset - 1);
    EXPECT_EQ(offset_at_utc(next_day - 1), leap.offset - 1);
    EXPECT_EQ(offset_at_utc(next_day), leap.offset);
    EXPECT_EQ(offset_at_utc(next_day + 1), leap.offset);
  }
}

TEST(UtcOffset, beyond_the_table_the_outermost_offsets_hold) {
  EXPECT_EQ(offset_at_gps(kMax), 18);
  EXPECT_EQ(offset_at_utc(kMax), 18);
  EXPECT_EQ(offset_at_gps(kMin), -9);
  EXPECT_EQ(offset_at_utc(kMin), -9);
  EXPECT_FALSE(is_leap_at_gps(kMax));
  EXPECT_FALSE(is_leap_at_gps(kMin));
}

TEST(UtcOffset, at_the_epoch_both_scales_agree) {
  EXPECT_EQ(offset_at_gps(0), 0);
  EXPECT_EQ(offset_at_utc(0), 0);
}

// The list names, in seconds since 1900, when each difference of TAI and UTC begins; TAI is 19 s
// ahead of GPS, and the GPS epoch is second 2524953600 + 5 days of that count.
TEST(UtcOffset, the_table_is_the_list_that_the_system_carries) {
  std::ifstream list("/usr/share/zoneinfo/leap-seconds.list");
  if (!list) GTEST_SKIP() << "this machine has no list of leap seconds";
  constexpr long long kEpochSince1900 = 2524521600 + 5 * kDay;
  static_assert(kEpochSince1900 == (kEpoch - std::chrono::sys_days{1900y / 1 / 1}).count() * kDay);

  std::vector<std::pair<long long, int>> listed;
  for (std::string line; std::getline(list, line);) {
    std::istringstream words(line);
    long long begin = 0;
    int tai_minus_utc = 0;
    if (line.rfind('#', 0) != 0 && words >> begin >> tai_minus_utc && tai_minus_utc - 19 <= 18) {
      listed.emplace_back(begin - kEpochSince1900, tai_minus_utc - 19);
    }
  }
  ASSERT_EQ(listed.size(), 28u);  // 27 leap seconds and the start of the scale
  EXPECT_EQ(listed.front().second, offset_at_utc(listed.front().first));
  for (std::size_t row = 1; row < listed.size(); ++row) {
    const auto [utc_second, offset] = listed[row];
    EXPECT_EQ(offset_at_utc(utc_second), offset);
    EXPECT_EQ(offset_at_utc(utc_second - 1), offset - 1);
    EXPECT_TRUE(is_leap_at_gps(utc_second + offset - 1));
  }
}

TEST(UtcTime, the_seconds_around_each_leap_second_since_the_epoch_read_as_a_clock_shows_them) {
  for (const Leap& leap : leap_seconds()) {
    if (leap.offset < 1) continue;
    const std::string last = text_of(leap.last_day);
    const std::string next = text_of(calendar(days_since_epoch(leap.last_day) + 1));
    const long long nanos = leap.gps_second * kSecond;
    EXPECT_EQ(format_nano_to_utc_Y_ms(nanos - 2 * kSecond), last + " 23:59:58.000");
    EXPECT_EQ(format_nano_to_utc_Y_ms(nanos - 1 * kSecond), last + " 23:59:59.000");
    EXPECT_EQ(format_nano_to_utc_Y_ms(nanos), last + " 23:59:60.000");
    EXPECT_EQ(format_nano_to_utc_Y_ms(nanos + kSecond - 1), last + " 23:59:60.999");
    EXPECT_EQ(format_nano_to_utc_Y_ms(nanos + 1 * kSecond), next + " 00:00:00.000");
    EXPECT_EQ(format_nano_to_utc_Y_ms(nanos + 2 * kSecond), next + " 00:00:01.000");
  }
}

TEST(UtcTime, the_seconds_around_each_leap_second_since_the_epoch_come_back) {
  for (const Leap& leap : leap_seconds()) {
    if (leap.offset < 1) continue;
    for (long long second = leap.gps_second - 2; second <= leap.gps_second + 2; ++second) {
      EXPECT_EQ(utc(second).to_gps_seconds(true), second);
    }
  }
}

TEST(UtcTime, the_first_leap_second_of_gps_is_second_60_of_june_1981) {
  EXPECT_EQ(fields(utc(46828800)), "1981 6 30 23 59 60");
  EXPECT_EQ(UtcTime(1981, 6, 30, 23, 59, 60).to_gps_seconds(true), 46828800);
}

TEST(UtcTime, a_leap_second_that_is_not_shown_reads_like_the_second_before) {
  EXPECT_EQ(fields(utc(46828800, false)), "1981 6 30 23 59 59");
  EXPECT_EQ(fields(utc(46828799, false)), "1981 6 30 23 59 59");
  EXPECT_EQ(utc(46828800, false).to_gps_seconds(true), 46828799);
}

TEST(UtcTime, without_the_offset_a_time_is_plain_calendar_arithmetic) {
  UtcTime time;
  time.from_gps_seconds(46828800, true, false);  // 542 days
  EXPECT_EQ(fields(time), "1981 7 1 0 0 0");
  EXPECT_EQ(time.to_gps_seconds(false), 46828800);
  EXPECT_EQ(UtcTime(1981, 6, 30, 23, 59, 60).to_gps_seconds(false), 46828800);
  EXPECT_EQ(UtcTime(1981, 6, 30, 23, 59, 75).to_gps_seconds(false), 46828815);
}

TEST(UtcTime, seconds_from_60_upwards_count_on_from_second_59) {
  // 23:59:59 is second 46828799; sixteen more follow it.
  EXPECT_EQ(UtcTime(1981, 6, 30, 23, 59, 75).to_gps_seconds(true), 46828799 + 16);
  // Away from a leap second that is where the next minute begins.
  EXPECT_EQ(UtcTime(2020, 5, 5, 12, 0, 60).to_gps_seconds(true),
            UtcTime(2020, 5, 5, 12, 1, 0).to_gps_seconds(true));
}

TEST(UtcTime, before_the_epoch_the_time_of_day_has_negative_fields) {
  // -3661 s: day 0, and 1 h 1 min 1 s of it below zero.
  EXPECT_EQ(fields(utc(-3661)), "1980 1 6 -1 -1 -1");
  EXPECT_EQ(fields(utc(-kDay)), "1980 1 5 0 0 0");
  EXPECT_EQ(fields(utc(-kDay - 1)), "1980 1 5 0 0 -1");
  EXPECT_EQ(format_nano_to_utc_Y_ms(-3661 * kSecond - 5000000), "1980-01-06 -1:-1:-1.-05");
}

TEST(UtcTime, a_leap_second_before_the_epoch_is_raised_from_a_negative_second) {
  for (const Leap& leap : leap_seconds()) {
    if (leap.offset > 0) continue;
    // One second short of the next day is second -1 of it, and the leap second is one more.
    const std::string next = text_of(calendar(days_since_epoch(leap.last_day) + 1));
    const long long nanos = leap.gps_second * kSecond;
    EXPECT_EQ(format_nano_to_utc_Y_ms(nanos - 2 * kSecond), next + " 00:00:-2.000");
    EXPECT_EQ(format_nano_to_utc_Y_ms(nanos - 1 * kSecond), next + " 00:00:-1.000");
    EXPECT_EQ(format_nano_to_utc_Y_ms(nanos), next + " 00:00:00.000");
    EXPECT_EQ(fields(utc(leap.gps_second, false)), fields(utc(leap.gps_second - 1)));
    EXPECT_EQ(format_nano_to_utc_Y_ms(nanos + 1 * kSecond), next + " 00:00:00.000");
    // The table then takes it for the second behind it.
    EXPECT_EQ(utc(leap.gps_second).to_gps_seconds(true), leap.gps_second + 1);
  }
}

TEST(UtcTime, every_other_second_comes_back) {
  SCOPED_TRACE(kTimeSeed);
  std::mt19937_64 random(kTimeSeed);
  std::uniform_int_distribution<long long> seconds(-300000000, 2000000000);
  for (int round = 0; round < 100000; ++round) {
    const long long second = seconds(random);
    if (second < 0 && is_leap_at_gps(second)) continue;
    ASSERT_EQ(utc(second).to_gps_seconds(true), second);
    UtcTime plain;
    plain.from_gps_seconds(second, true, false);
    ASSERT_EQ(plain.to_gps_seconds(false), second);
  }
}

TEST(UtcTime, seconds_whose_day_needs_more_than_32_bits_wrap_in_the_day) {
  // 2^32 days on is the same day number in 32 bits.
  UtcTime time;
  time.from_gps_seconds((1LL << 32) * kDay + 3661, true, false);
  EXPECT_EQ(fields(time), "1980 1 6 1 1 1");
  // -2^63 = -106751991167300 * 86400 - 55808: fifteen hours, thirty minutes and eight seconds.
  time.from_gps_seconds(kMin, false, false);
  EXPECT_EQ(time.hour, -15);
  EXPECT_EQ(time.minute, -30);
  EXPECT_EQ(time.second, -8);
  time.from_gps_seconds(kMax, true, true);  // 55807 - 18 s into its day
  EXPECT_EQ(time.hour, 15);
  EXPECT_EQ(time.minute, 29);
  EXPECT_EQ(time.second, 49);
}

TEST(UtcTime, extreme_fields_add_up_in_64_bits) {
  EXPECT_EQ(UtcTime(1980, 1, 6, kIntMax, kIntMax, kIntMax).to_gps_seconds(false), 3661LL * kIntMax);
  EXPECT_EQ(UtcTime(1980, 1, 6, kIntMin, kIntMin, kIntMin).to_gps_seconds(false), 3661LL * kIntMin);
  // Second INT_MAX is 59 and INT_MAX - 59 more; 00:00:59 of the epoch has no offset.
  EXPECT_EQ(UtcTime(1980, 1, 6, 0, 0, kIntMax).to_gps_seconds(true), kIntMax);
}

TEST(UtcNano, the_rest_of_a_second_is_taken_apart_and_put_together) {
  UtcNano time;
  time.from_gps_nanos(1234567890123456789, true, true);
  EXPECT_EQ(time.milli, 123);
  EXPECT_EQ(time.micro, 456);
  EXPECT_EQ(time.nano, 789);
  // 1234567890 - 18 = 14288 * 86400 + 84672 - 0: 23:31:12 on day 14288.
  EXPECT_EQ(time.format_Y_ms(), text_of(calendar(14288)) + " 23:31:12.123");
  EXPECT_EQ(time.to_gps_nanos(true), 1234567890123456789);
}

TEST(UtcNano, nanoseconds_over_a_wide_range_come_back) {
  SCOPED_TRACE(kTimeSeed);
  std::mt19937_64 random(kTimeSeed);
  for (int round = 0; round < 100000; ++round) {
    const auto nanos = static_cast<long long>(random());
    if (nanos < 0 && is_leap_at_gps(nanos / kSecond)) continue;
    UtcNano time;
    time.from_gps_nanos(nanos, true, true);
    ASSERT_EQ(time.to_gps_nanos(true), nanos);
    time.from_gps_nanos(nanos, false, false);
    ASSERT_EQ(time.to_gps_nanos(false), nanos);
  }
}

TEST(UtcNano, the_ends_of_the_range_convert_and_come_back) {
  UtcNano time;
  // 9223372036 s - 18 s = 106751 days and 85618 s: 23:46:58.
  time.from_gps_nanos(kMax, true, true);
  EXPECT_EQ(time.format_Y_ms(), text_of(calendar(106751)) + " 23:46:58.854");
  EXPECT_EQ(time.to_gps_nanos(true), kMax);
  // -9223372036 s + 9 s = -106751 days and -85627 s: 23:47:07 below zero.
  time.from_gps_nanos(kMin, true, true);
  EXPECT_EQ(time.format_Y_ms(), text_of(calendar(-106751)) + " -23:-47:-7.-854");
  EXPECT_EQ(time.to_gps_nanos(true), kMin);
}

TEST(UtcNano, a_time_beyond_64_bits_of_nanoseconds_wraps) {
  EXPECT_EQ(UtcNano(1980, 1, 6 + 106752, 0, 0, 0, 0, 0, 0).to_gps_nanos(false),
            static_cast<long long>(106752ull * 86400 * 1000000000));
  EXPECT_EQ(UtcNano(1980, 1, 6, 0, 0, 0, kIntMax, kIntMax, kIntMax).to_gps_nanos(false),
            1001001LL * kIntMax);
}

TEST(UtcNano, a_day_number_gives_its_first_moment) {
  UtcNano time(1, 1, 1, 1, 1, 1, 1, 1, 1);
  time.from_gps_days(542, true, false);
  EXPECT_EQ(fields(time), "1981 7 1 0 0 0");
  EXPECT_EQ(time.milli, 0);
  EXPECT_EQ(time.micro, 0);
  EXPECT_EQ(time.nano, 0);
  // Second 542 * 86400 of GPS time is the leap second itself.
  time.from_gps_days(542, true, true);
  EXPECT_EQ(fields(time), "1981 6 30 23 59 60");
  time.from_gps_days(542, false, true);
  EXPECT_EQ(fields(time), "1981 6 30 23 59 59");
  time.from_gps_days(kIntMax, true, false);
  EXPECT_EQ(time.to_gps_days(), kIntMax);
}

TEST(UtcNano, the_texts_cut_the_rest_of_the_second_off) {
  const UtcNano time(2024, 2, 9, 3, 4, 5, 6, 999, 999);
  EXPECT_EQ(time.format_date(), "2024-02-09");
  EXPECT_EQ(time.format_Y_ms(), "2024-02-09 03:04:05.006");
  EXPECT_EQ(format_nano_to_utc_date(0), "1980-01-06");
  EXPECT_EQ(format_nano_to_utc_date(46828800 * kSecond), "1981-06-30");
}

TEST(UtcNano, the_longest_texts_are_whole) {
  const UtcNano time(kIntMin, kIntMin, kIntMin, kIntMin, kIntMin, kIntMin, kIntMin, 0, 0);
  const std::string n = "-2147483648";
  EXPECT_EQ(time.format_date(), n + "-" + n + "-" + n);
  EXPECT_EQ(time.format(true), n + "-" + n + "-" + n + "Z");
  EXPECT_EQ(time.format_Y_ms(), n + "-" + n + "-" + n + " " + n + ":" + n + ":" + n + "." + n);
}

TEST(DiffNano, the_sign_is_blank_until_it_is_read_from_a_number) {
  const DiffNano difference(1, 2, 3, 4, 5, 6, 7);
  EXPECT_EQ(difference.sign, ' ');
  EXPECT_EQ(difference.format_D_ms(), " 001 02:03:04.005");
  EXPECT_EQ(difference.micro, 6);
  EXPECT_EQ(difference.nano, 7);
  EXPECT_EQ(DiffNano().format_D_ms(), " 000 00:00:00.000");
}

TEST(DiffNano, a_length_of_time_is_its_sign_and_the_fields_of_its_absolute_value) {
  const long long nanos = ((12 * kDay + 3 * 3600 + 4 * 60 + 5) * 1000 + 678) * 1000000 + 901234;
  EXPECT_EQ(format_nano_to_diff_D_ms(nanos), "+012 03:04:05.678");
  EXPECT_EQ(format_nano_to_diff_D_ms(-nanos), "-012 03:04:05.678");
  DiffNano difference;
  difference.from_nanos(-nanos);
  EXPECT_EQ(difference.micro, 901);
  EXPECT_EQ(difference.nano, 234);
}

TEST(DiffNano, nothing_has_a_blank_and_the_least_something_a_sign) {
  EXPECT_EQ(format_nano_to_diff_D_ms(0), " 000 00:00:00.000");
  EXPECT_EQ(format_nano_to_diff_D_ms(1), "+000 00:00:00.000");
  EXPECT_EQ(format_nano_to_diff_D_ms(-1), "-000 00:00:00.000");
}

TEST(DiffNano, every_field_carries_into_the_next) {
  EXPECT_EQ(format_nano_to_diff_D_ms(999999), "+000 00:00:00.000");
  EXPECT_EQ(format_nano_to_diff_D_ms(1000000), "+000 00:00:00.001");
  EXPECT_EQ(format_nano_to_diff_D_ms(60 * kSecond), "+000 00:01:00.000");
  EXPECT_EQ(format_nano_to_diff_D_ms(3600 * kSecond), "+000 01:00:00.000");
  EXPECT_EQ(format_nano_to_diff_D_ms(kDay * kSecond - 1), "+000 23:59:59.999");
  EXPECT_EQ(format_nano_to_diff_D_ms(kDay * kSecond), "+001 00:00:00.000");
  // 9223372036 s = 106751 days and 85636 s: 23:47:16.
  EXPECT_EQ(format_nano_to_diff_D_ms(kMax), "+106751 23:47:16.854");
}

TEST(DiffNano, the_least_number_of_all_stays_negative_in_every_field) {
  EXPECT_EQ(format_nano_to_diff_D_ms(kMin), "--106751 -23:-47:-16.-854");
  EXPECT_EQ(format_nano_to_diff_D_ms(kMin + 1), "-106751 23:47:16.854");
}

}  // namespace
