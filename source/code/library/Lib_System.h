// Small services of the platform: clock and sleeping, text, paths, the console.
//
// Nothing here fails: what the platform refuses shows in the value returned.
#pragma once

#include <cstdint>
#include <ctime>
#include <sstream>
#include <string>

namespace Trel::Lib {

// Processor time of the process, in nanoseconds.
[[nodiscard]] std::int64_t ticks();

// Sleep in steps of a microsecond; at once for less, at most 2^32 - 1 of them.
void nano_sleep(std::int64_t nanoseconds);
// Whole seconds; at once for a negative number.
void sleep(int seconds);

// A calendar time in UTC: month and day from 1. All 0: not known.
struct Date {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

// The current time, and any other.
[[nodiscard]] Date date();
[[nodiscard]] Date date(std::time_t time);

// Change every letter, in place.
void lower_case(std::string& text);
void upper_case(std::string& text);

// The text from the last "." of `path` to its end, dot included; empty without a dot. `lower` asks
// for lower case.
[[nodiscard]] std::string file_extension(const std::string& path, bool lower);

// An address in dotted decimals: the first number is the lowest byte of the value, or, in the form
// `_be`, the highest. 0x0100007F is "127.0.0.1", and in the form `_be` "1.0.0.127".
[[nodiscard]] std::string ipv4_to_string(std::uint32_t address);
[[nodiscard]] std::string ipv4_to_string_be(std::uint32_t address);

// Up to eight characters packed into a number, the first in its lowest byte; a byte 0 ends them.
[[nodiscard]] std::string uint64_to_string_le(std::uint64_t identifier);

// Something of that name exists.
[[nodiscard]] bool file_exist(const char* path);
[[nodiscard]] bool file_exist(const std::string& path);

// Print on the standard output, up to the first byte 0, and return 1.
int console_print(const char* text);
int console_print(const std::string& text);
int console_print(const std::stringstream& text);

// Prepare and restore a console. A console of this platform needs neither.
void console_begin();
void console_end();
void console_toggle_utf8();

}  // namespace Trel::Lib
