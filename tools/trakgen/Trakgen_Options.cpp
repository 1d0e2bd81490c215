#include "trakgen/Trakgen_Options.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "trakgen/Trakgen_Nav.h"
#include "trakgen/Trakgen_Range.h"

namespace Trel::Trakgen {

namespace {

bool read_number(std::string_view text, std::uint64_t& number) {
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc{} && stop == end;
}

using Setter = bool (*)(Options&, const std::string&);

template <std::uint64_t Options::*member, std::uint64_t least, std::uint64_t most>
bool set_number(Options& options, const std::string& text) {
  return read_number(text, options.*member) && options.*member >= least && options.*member <= most;
}

bool set_can_rate(Options& options, const std::string& text) {
  constexpr std::uint64_t kLeast = 10;
  return set_number<&Options::can_rate, 0, 1000>(options, text) &&
         (options.can_rate == 0 || options.can_rate >= kLeast);
}

bool read_nav_rate(const std::string& text, std::uint64_t& rate) {
  return read_number(text, rate) && (rate == 0 || is_nav_rate(rate));
}

bool set_ncom_rate(Options& options, const std::string& text) {
  return read_nav_rate(text, options.ncom_rate);
}

bool set_mcom_rate(Options& options, const std::string& text) {
  return read_nav_rate(text, options.mcom_rate.emplace());
}

bool set_range_rate(Options& options, const std::string& text) {
  return read_number(text, options.range_rate) && is_range_rate(options.range_rate);
}

template <std::vector<std::uint64_t> Damage::*member>
bool add_number(Options& options, const std::string& text) {
  return read_number(text, (options.damage.*member).emplace_back());
}

bool set_shape(Options& options, const std::string& text) {
  constexpr std::array<std::pair<const char*, Shape>, 4> kShapes{{{"drive", Shape::drive},
                                                                  {"narrow", Shape::narrow},
                                                                  {"wide", Shape::wide},
                                                                  {"range", Shape::range}}};
  const auto* found = std::find_if(kShapes.begin(), kShapes.end(),
                                   [&text](const auto& row) { return row.first == text; });
  if (found == kShapes.end()) return false;
  options.shape = found->second;
  return true;
}

bool set_out(Options& options, const std::string& text) {
  options.out = text;
  return !text.empty();
}

bool add_garbage(Options& options, const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) return false;
  auto& [offset, size] = options.damage.garbage.emplace_back();
  return read_number(std::string_view(text).substr(0, colon), offset) &&
         read_number(std::string_view(text).substr(colon + 1), size) && size <= 1U << 24;
}

bool set_cut(Options& options, const std::string& text) {
  return read_number(text, options.damage.cut_bytes);
}

struct Row {
  const char* name;
  const char* argument;
  Setter set;
  const char* description;
};

constexpr Row kRows[] = {
    {"--out", "FILE", set_out,
     "what to write; NAME.ncom, NAME.mcom and NAME.rcom make a raw file (drive.xcom)"},
    {"--seconds", "N", set_number<&Options::seconds, 0, 10'000'000>, "its length (180)"},
    {"--rate", "N", set_number<&Options::rate, 1, 100'000>,
     "UCom packets per second of the fast messages (100)"},
    {"--can-rate", "N", set_can_rate, "CAN batches per second of a drive, 10 or more, or 0 (100)"},
    {"--ncom-rate", "N", set_ncom_rate,
     "NCom packets per second of a vehicle, dividing 1000, or 0 (100)"},
    {"--mcom-rate", "N", set_mcom_rate, "MCom packets likewise (0; in a raw file 100)"},
    {"--streams", "N", set_number<&Options::streams, 1, 1000>,
     "vehicles, one stream of each kind for each (1)"},
    {"--shape", "NAME", set_shape, "drive, narrow, wide or range (drive)"},
    {"--targets", "N", set_number<&Options::targets, 1, 4>, "of a range measurement (2)"},
    {"--range-rate", "N", set_range_rate,
     "steps of a range measurement per second, 10 or more, dividing 100 (100)"},
    {"--signals-per-message", "N", set_number<&Options::signals_per_message, 4, 3000>,
     "time, position and others, in narrow (8) and wide (204)"},
    {"--packets-per-page", "N", set_number<&Options::packets_per_page, 1, 1'000'000>,
     "end a page after N packets (no limit)"},
    {"--page-bytes", "N", set_number<&Options::page_bytes, 0, 1'000'000>,
     "end a page at N bytes, 0 for no limit (4096)"},
    {"--seed", "N", set_number<&Options::seed, 0, UINT64_MAX>,
     "another noise for another number (1)"},
    {"--drop-page", "N", add_number<&Damage::drop_pages>, "leave out page N"},
    {"--repeat-page", "N", add_number<&Damage::repeat_pages>, "write page N twice"},
    {"--swap-pages", "N", add_number<&Damage::swap_pages>, "write page N behind the next one"},
    {"--flip-bit", "OFFSET", add_number<&Damage::flip_bits>, "turn the lowest bit of that byte"},
    {"--garbage", "OFFSET:LENGTH", add_garbage, "put noise ahead of that byte"},
    {"--cut", "BYTES", set_cut, "leave out the last bytes"},
};

}  // namespace

bool is_raw_file(const Options& options) {
  return options.out.ends_with(".ncom") || is_mcom_file(options) || is_rcom_file(options);
}

bool is_mcom_file(const Options& options) {
  return options.out.ends_with(".mcom");
}

bool is_rcom_file(const Options& options) {
  return options.out.ends_with(".rcom");
}

std::optional<std::string> parse(const std::vector<std::string>& arguments, Options& options) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    if (name == "--help" || name == "-h") {
      options.help = true;
      continue;
    }
    const Row* row = std::find_if(std::begin(kRows), std::end(kRows),
                                  [&name](const Row& one) { return one.name == name; });
    if (row == std::end(kRows)) return "unknown option '" + name + "'";
    if (++i == arguments.size()) return name + " needs " + row->argument;
    if (!row->set(options, arguments[i])) return name + ": bad value '" + arguments[i] + "'";
  }
  return std::nullopt;
}

std::string help() {
  std::string text =
      "Usage: trakgen [option...]\n"
      "Writes an XCom recording of a drive or of a range measurement that never took place, or a\n"
      "raw file of its NCom, MCom or RCom packets. The same options give the same bytes.\n\n";
  const auto line = [&text](std::string left, const char* right) {
    left.resize(std::max<std::size_t>(left.size() + 2, 28), ' ');
    text += "  " + left + right + "\n";
  };
  for (const Row& row : kRows) line(std::string(row.name) + " " + row.argument, row.description);
  line("--help", "this text");
  return text +
         "\nDamage may be asked for several times. Pages count from 0 over all streams, bytes "
         "from\n"
         "the start of what is left after pages were dropped, repeated and swapped. A raw file "
         "holds\n"
         "the packets of the first vehicle's inertial unit, or all packets of the range "
         "measurement; "
         "each\n"
         "of them counts as a page.\n";
}

}  // namespace Trel::Trakgen
