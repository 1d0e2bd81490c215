#include "library/Lib_Time.h"

#include <cstdio>
#include <iterator>

namespace Trel::Lib {

namespace {

struct LeapSecond {
  int offset;            // GPS minus UTC, from this second on
  long long gps_second;  // the leap second itself

  // The last second of UTC before the leap second, which has no count of its own.
  [[nodiscard]] constexpr long long utc_second_before() const { return gps_second - offset; }
};

// Latest first.
constexpr LeapSecond kLeapSeconds[] = {
    {18, 1167264017}, {17, 1119744016}, {16, 1025136015}, {15, 914803214},  {14, 820108813},
    {13, 599184012},  {12, 551750411},  {11, 504489610},  {10, 457056009},  {9, 425520008},
    {8, 393984007},   {7, 346723206},   {6, 315187205},   {5, 252028804},   {4, 173059203},
    {3, 109900802},   {2, 78364801},    {1, 46828800},    {0, -432001},     {-1, -31968002},
    {-2, -63504003},  {-3, -95040004},  {-4, -126662405}, {-5, -158198406}, {-6, -189734407},
    {-7, -221270408}, {-8, -237168009},
};
constexpr int kOffsetBeforeAll = -9;

constexpr bool is_ordered() {
  for (std::size_t row = 1; row < std::size(kLeapSeconds); ++row) {
    const LeapSecond& later = kLeapSeconds[row - 1];
    const LeapSecond& earlier = kLeapSeconds[row];
    if (earlier.offset != later.offset - 1 || earlier.gps_second >= later.gps_second) return false;
  }
  return true;
}
static_assert(is_ordered());
static_assert(std::size(kLeapSeconds) == 27);
static_assert(std::end(kLeapSeconds)[-1].offset == kOffsetBeforeAll + 1);

constexpr long long kSecondsPerDay = 86400;
constexpr long long kNanosPerSecond = 1000000000;

constexpr long long wrapping_multiply_add(long long a, long long b, long long c) {
  return static_cast<long long>(static_cast<unsigned long long>(a) *
                                    static_cast<unsigned long long>(b) +
                                static_cast<unsigned long long>(c));
}

template <class... Fields>
std::string formatted(const char* format, Fields... fields) {
  char text[128];  // up to seven numbers of eleven characters and their separators
  std::snprintf(text, sizeof text, format, fields...);
  return text;
}

}  // namespace

void UtcDate::from_gps_days(int days) {
  const long long n = days + 2476289LL;
  const long long g = n / 146097;
  long long r = n % 146097;
  const long long c = (r / 36524 + 1) * 3 / 4;
  r -= 36524 * c;
  const long long b = r / 1461;
  r %= 1461;
  const long long a = (r / 365 + 1) * 3 / 4;
  r -= 365 * a;
  const long long k = (5 * r + 308) / 153;
  year = static_cast<int>(400 * g + 100 * c + 4 * b + a - 4800 + k / 12);
  month = static_cast<int>(k % 12 + 1);
  day = static_cast<int>(r - 153 * (k + 2) / 5 + 123);
}

int UtcDate::to_gps_days() const {
  const long long a = (14LL - month) / 12;
  const long long y = year + 4800LL - a;
  const long long m = month + 12 * a - 3;
  return static_cast<int>(day + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 - 2476290);
}

unsigned int UtcDate::to_deci_date() const {
  if (year < 0 || year > 9999 || month < 0 || month > 99 || day < 0 || day > 99) return 0;
  return static_cast<unsigned int>(10000 * year + 100 * month + day);
}

std::string UtcDate::format(bool zone) const {
  return formatted(zone ? "%04d-%02d-%02dZ" : "%04d-%02d-%02d", year, month, day);
}

void UtcTime::gps_utc_offset_from_gps_second(long long gps_second, bool& is_leap, int& offset) {
  for (const LeapSecond& row : kLeapSeconds) {
    if (gps_second >= row.gps_second) {
      is_leap = gps_second == row.gps_second;
      offset = row.offset;
      return;
    }
  }
  is_leap = false;
  offset = kOffsetBeforeAll;
}

void UtcTime::gps_utc_offset_from_utc_second(long long utc_second, int& offset) {
  for (const LeapSecond& row : kLeapSeconds) {
    if (utc_second > row.utc_second_before()) {
      offset = row.offset;
      return;
    }
  }
  offset = kOffsetBeforeAll;
}

void UtcTime::from_gps_seconds(long long seconds, bool show_leap, bool apply_offset) {
  int offset = 0;
  bool is_leap = false;
  if (apply_offset) gps_utc_offset_from_gps_second(seconds, is_leap, offset);

  const long long utc_second = seconds - offset;
  UtcDate::from_gps_days(static_cast<int>(utc_second / kSecondsPerDay));
  const int rest = static_cast<int>(utc_second % kSecondsPerDay);
  second = rest % 60;
  minute = rest / 60 % 60;
  hour = rest / 3600;
  if (show_leap && is_leap) ++second;
}

long long UtcTime::to_gps_seconds(bool apply_offset) const {
  long long whole = second;
  long long extra = 0;
  if (apply_offset && whole >= 60) {
    extra = whole - 59;
    whole = 59;
  }
  const long long utc_second =
      kSecondsPerDay * to_gps_days() + 3600LL * hour + 60LL * minute + whole;
  int offset = 0;
  if (apply_offset) gps_utc_offset_from_utc_second(utc_second, offset);
  return utc_second + offset + extra;
}

void UtcNano::from_gps_nanos(nano_t nanos, bool show_leap, bool apply_offset) {
  from_gps_seconds(nanos / kNanosPerSecond, show_leap, apply_offset);
  const int rest = static_cast<int>(nanos % kNanosPerSecond);
  milli = rest / 1000000;
  micro = rest / 1000 % 1000;
  nano = rest % 1000;
}

void UtcNano::from_gps_days(int days, bool show_leap, bool apply_offset) {
  from_gps_seconds(kSecondsPerDay * days, show_leap, apply_offset);
  milli = 0;
  micro = 0;
  nano = 0;
}

nano_t UtcNano::to_gps_nanos(bool apply_offset) const {
  const long long rest = 1000000LL * milli + 1000LL * micro + nano;
  return wrapping_multiply_add(to_gps_seconds(apply_offset), kNanosPerSecond, rest);
}

std::string UtcNano::format_date() const {
  return formatted("%04d-%02d-%02d", year, month, day);
}

std::string UtcNano::format_Y_ms() const {
  return formatted("%04d-%02d-%02d %02d:%02d:%02d.%03d", year, month, day, hour, minute, second,
                   milli);
}

void DiffNano::from_nanos(nano_t nanos) {
  sign = nanos < 0 ? '-' : nanos > 0 ? '+' : ' ';
  const long long v = nanos < 0 ? wrapping_multiply_add(nanos, -1, 0) : nanos;
  nano = static_cast<int>(v % 1000);
  micro = static_cast<int>(v / 1000 % 1000);
  milli = static_cast<int>(v / 1000000 % 1000);
  const long long t = v / kNanosPerSecond;
  second = static_cast<int>(t % 60);
  minute = static_cast<int>(t / 60 % 60);
  hour = static_cast<int>(t / 3600 % 24);
  day = static_cast<int>(t / kSecondsPerDay);
}

std::string DiffNano::format_D_ms() const {
  return formatted("%c%03d %02d:%02d:%02d.%03d", sign, day, hour, minute, second, milli);
}

std::string format_date_to_utc(int days) {
  UtcDate date;
  date.from_gps_days(days);
  return date.format(false);
}

std::string format_nano_to_utc_date(nano_t nanos) {
  UtcNano time;
  time.from_gps_nanos(nanos, true, true);
  return time.format_date();
}

std::string format_nano_to_utc_Y_ms(nano_t nanos) {
  UtcNano time;
  time.from_gps_nanos(nanos, true, true);
  return time.format_Y_ms();
}

std::string format_nano_to_diff_D_ms(nano_t nanos) {
  DiffNano difference;
  difference.from_nanos(nanos);
  return difference.format_D_ms();
}

}  // namespace Trel::Lib
