// What of the damage is done, and how the command line says it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Trel::Damage {

struct Options {
  bool help = false;
  std::uint64_t seed = 1;
  double factor = 1.0;                // of the random cases and of the borders
  std::size_t parts = 5;              // of a long list of elements one in so many is selected
  unsigned int jobs = 0;              // processes at a time; 0: as many as there are processors
  std::string subject;                // only this one; empty: all
  std::string kind;                   // only this one; empty: all
  std::optional<std::size_t> number;  // only this case of each
  std::string folder = "damage-findings";  // where the files behind findings are left
};

// Reads the arguments into `options`. The result is what is wrong with them, if anything.
[[nodiscard]] std::optional<std::string> parse(const std::vector<std::string>& arguments,
                                               Options& options);

// The text of --help.
[[nodiscard]] std::string help();

}  // namespace Trel::Damage
