// What a recording shall be like, and how the command line says it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Trel::Trakgen {

enum class Shape {
  drive,   // a UCom stream of some forty signals, a CAN and an NCom stream; MCom when told
  narrow,  // a UCom stream of one message of 100 bytes and few signals
  wide,    // a UCom stream of one message of many scaled 16-bit signals
  range,   // an RCom stream of a hunter and its targets, and the NCom stream of each of them
};

// What is done to the finished pages. Pages are counted from 0 over all streams, bytes from the
// start of what the page damage left. In a raw file each packet counts as a page.
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
  std::uint64_t rate = 100;       // UCom packets of the fast messages per second
  std::uint64_t can_rate = 100;   // batches of CAN frames per second of a drive; 0: no CAN stream
  std::uint64_t ncom_rate = 100;  // NCom packets per second of a drive; 0: no NCom stream
  std::optional<std::uint64_t> mcom_rate;  // the same of MCom; unless told, none but in a raw file
  std::uint64_t streams = 1;               // vehicles; not of a range measurement
  std::uint64_t targets = 2;               // of a range measurement
  std::uint64_t range_rate = 100;          // steps of a range measurement per second
  Shape shape = Shape::drive;
  std::uint64_t signals_per_message = 0;  // narrow and wide; 0: as many as usual
  std::uint64_t packets_per_page = 0;     // 0: no limit
  std::uint64_t page_bytes = 4096;        // 0: no limit
  std::uint64_t seed = 1;
  Damage damage;
};

// Whether options.out names a file of bare packets of any family, or of MCom or RCom, as its
// extension says.
[[nodiscard]] bool is_raw_file(const Options& options);
[[nodiscard]] bool is_mcom_file(const Options& options);
[[nodiscard]] bool is_rcom_file(const Options& options);

// Reads the arguments into `options`. The result is what is wrong with them, if anything.
[[nodiscard]] std::optional<std::string> parse(const std::vector<std::string>& arguments,
                                               Options& options);

// The text of --help.
[[nodiscard]] std::string help();

}  // namespace Trel::Trakgen
