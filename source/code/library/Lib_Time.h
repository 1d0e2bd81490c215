// Calendar time of the GPS scale and back, with leap seconds.
//
// A time is a signed count of nanoseconds with zero at 0h on 1980-01-06, GPS day 0. The records
// here hold its calendar fields; they store any number unchanged, have no state of validity, and
// allocate nothing. Fields that name no date give the number that the arithmetic gives, reduced to
// the width of its type. Division truncates, so a time of day before the epoch comes out in
// negative fields.
//
// `apply_offset` asks for UTC: without it a conversion is plain calendar arithmetic. `show_leap`
// asks for second 60 in a leap second, which otherwise reads like the second before. The table of
// leap seconds reaches from 1972 to the offset of 18 seconds that began in 2017.
#pragma once

#include <string>

namespace Trel::Lib {

// Nanoseconds of GPS time.
using nano_t = long long;

struct UtcDate {
  int year = 0;
  int month = 0;  // from 1
  int day = 0;    // from 1

  constexpr UtcDate() = default;
  constexpr UtcDate(int year_, int month_, int day_) : year(year_), month(month_), day(day_) {}

  void from_gps_days(int days);
  [[nodiscard]] int to_gps_days() const;
  // The decimal number YYYYMMDD; 0 if a field does not fit its digits.
  [[nodiscard]] unsigned int to_deci_date() const;

  // "2024-02-29", with a "Z" behind it if `zone` is set.
  [[nodiscard]] std::string format(bool zone) const;
};

struct UtcTime : UtcDate {
  int hour = 0;
  int minute = 0;
  int second = 0;  // 60 in a leap second that is shown

  constexpr UtcTime() = default;
  constexpr UtcTime(int year_, int month_, int day_, int hour_, int minute_, int second_)
      : UtcDate(year_, month_, day_), hour(hour_), minute(minute_), second(second_) {}

  void from_gps_seconds(long long seconds, bool show_leap, bool apply_offset);
  [[nodiscard]] long long to_gps_seconds(bool apply_offset) const;

  // GPS time minus UTC, in seconds, at a second of GPS time; `is_leap` in the leap second itself.
  static void gps_utc_offset_from_gps_second(long long gps_second, bool& is_leap, int& offset);
  // The same at a second of UTC, counted from the epoch without leap seconds.
  static void gps_utc_offset_from_utc_second(long long utc_second, int& offset);
};

struct UtcNano : UtcTime {
  int milli = 0;
  int micro = 0;
  int nano = 0;

  constexpr UtcNano() = default;
  constexpr UtcNano(int year_, int month_, int day_, int hour_, int minute_, int second_,
                    int milli_, int micro_, int nano_)
      : UtcTime(year_, month_, day_, hour_, minute_, second_),
        milli(milli_),
        micro(micro_),
        nano(nano_) {}

  void from_gps_nanos(nano_t nanos, bool show_leap, bool apply_offset);
  // The start of a GPS day.
  void from_gps_days(int days, bool show_leap, bool apply_offset);
  [[nodiscard]] nano_t to_gps_nanos(bool apply_offset) const;

  // "2024-02-29".
  [[nodiscard]] std::string format_date() const;
  // "2024-02-29 12:34:56.789", the rest of the second cut off.
  [[nodiscard]] std::string format_Y_ms() const;
};

// A signed length of time.
struct DiffNano {
  char sign = ' ';  // '+', '-', or blank for nothing
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int milli = 0;
  int micro = 0;
  int nano = 0;

  constexpr DiffNano() = default;
  constexpr DiffNano(int day_, int hour_, int minute_, int second_, int milli_, int micro_,
                     int nano_)
      : day(day_),
        hour(hour_),
        minute(minute_),
        second(second_),
        milli(milli_),
        micro(micro_),
        nano(nano_) {}

  // The fields are those of the absolute value; the least number of all has none, and its fields
  // stay negative.
  void from_nanos(nano_t nanos);

  // "+001 02:03:04.005": sign, days, time of day, the rest of the second cut off.
  [[nodiscard]] std::string format_D_ms() const;
};

// The text forms in one step; those of a time are in UTC and show leap seconds.
[[nodiscard]] std::string format_date_to_utc(int days);
[[nodiscard]] std::string format_nano_to_utc_date(nano_t nanos);
[[nodiscard]] std::string format_nano_to_utc_Y_ms(nano_t nanos);
[[nodiscard]] std::string format_nano_to_diff_D_ms(nano_t nanos);

}  // namespace Trel::Lib
