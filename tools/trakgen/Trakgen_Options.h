// What a recording shall be like, and how the command line says it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Trel::Trakgen {

enum class Shape {
  drive,   // a vehicle with some forty signals in five messages of different rates
  narrow,  // one message of 100 bytes and few signals
  wide,    // one message of many scaled 16-bit signals
};

// What is done to the finished pages. Pages are counted from 0 over all streams, bytes from the
// start of what the page damage left.
struct Damage {
  std::vector<std::uint64_t> drop_pages;
  std::vector<std::uint64_t> repeat_pages;
  std::vector<std::uint64_t> swap_pages;                         // each with the page behind it
  std::vector<std::uint64_t> flip_bits;                          // the lowest bit of these bytes
  std::vector<std::pair<std::uint64_t, std::uint64_t>> garbage;  // ahead of which byte, how much
  std::uint64_t cut_bytes = 0;                                   // from the end
};

struct Options {
  bool help = false;
  std::string out = "drive.xcom";
  std::uint64_t seconds = 180;
  std::uint64_t rate = 100;  // packets of the fast messages per second
  std::uint64_t streams = 1;
  Shape shape = Shape::drive;
  std::uint64_t signals_per_message = 0;  // narrow and wide; 0: as many as usual
  std::uint64_t packets_per_page = 0;     // 0: no limit
  std::uint64_t page_bytes = 4096;        // 0: no limit
  std::uint64_t seed = 1;
  Damage damage;
};

// Reads the arguments into `options`. The result is what is wrong with them, if anything.
[[nodiscard]] std::optional<std::string> parse(const std::vector<std::string>& arguments,
                                               Options& options);

// The text of --help.
[[nodiscard]] std::string help();

}  // namespace Trel::Trakgen
