#include "library/Lib_System.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <limits>

#include "library/Lib_Cast.h"

namespace Trel::Lib {

namespace {

std::string dotted(const unsigned char (&octets)[4]) {
  std::string text = std::to_string(octets[0]);
  for (int index = 1; index < 4; ++index) text += '.' + std::to_string(octets[index]);
  return text;
}

}  // namespace

std::int64_t ticks() {
  return static_cast<std::int64_t>(std::clock()) * 1000;
}

void nano_sleep(std::int64_t nanoseconds) {
  constexpr std::int64_t kLongest = std::numeric_limits<useconds_t>::max();
  ::usleep(static_cast<useconds_t>(std::clamp<std::int64_t>(nanoseconds / 1000, 0, kLongest)));
}

void sleep(int seconds) {
  ::sleep(static_cast<unsigned int>(std::max(seconds, 0)));
}

Date date() {
  return date(std::time(nullptr));
}

Date date(std::time_t time) {
  std::tm fields{};
  if (::gmtime_r(&time, &fields) == nullptr) return {};
  return {static_cast<int>(fields.tm_year + 1900LL),
          fields.tm_mon + 1,
          fields.tm_mday,
          fields.tm_hour,
          fields.tm_min,
          fields.tm_sec};
}

void lower_case(std::string& text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

void upper_case(std::string& text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

std::string file_extension(const std::string& path, bool lower) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string::npos) return {};
  std::string extension = path.substr(dot);
  if (lower) lower_case(extension);
  return extension;
}

std::string ipv4_to_string(std::uint32_t address) {
  unsigned char octets[4];
  cast_uint32_to_4_byte_LE(octets, address);
  return dotted(octets);
}

std::string ipv4_to_string_be(std::uint32_t address) {
  unsigned char octets[4];
  cast_uint32_to_4_byte_BE(octets, address);
  return dotted(octets);
}

std::string uint64_to_string_le(std::uint64_t identifier) {
  unsigned char bytes[8];
  cast_uint64_to_8_byte_LE(bytes, identifier);
  return std::string(bytes, std::find(std::begin(bytes), std::end(bytes), 0));
}

bool file_exist(const char* path) {
  return path != nullptr && ::access(path, F_OK) == 0;
}
bool file_exist(const std::string& path) {
  return file_exist(path.c_str());
}

int console_print(const char* text) {
  std::printf("%s", text);
  return 1;
}
int console_print(const std::string& text) {
  return console_print(text.c_str());
}
int console_print(const std::stringstream& text) {
  return console_print(text.str());
}

void console_begin() {}
void console_end() {}
void console_toggle_utf8() {}

}  // namespace Trel::Lib
