// Cases run in processes of their own, so that one that crashes, hangs or eats the memory is told
// from the others and ends none of them.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "damage/Damage_Trial.h"

namespace Trel::Damage {

// What one case may use. Builds with sanitizers, which are slow and large by themselves, get more
// time and any memory.
struct Limits {
  unsigned int cpu_seconds;
  long peak_kilobytes;              // of the process; 0: any
  unsigned int wall_seconds = 300;  // by the clock on the wall, whatever else the machine does
};

[[nodiscard]] Limits limits_of_this_build();

// A case that did not end as it may.
struct Finding {
  std::size_t number;
  std::string reason;
  std::string printed;  // what the process left on its standard error stream
};

struct Tally {
  std::array<std::uint64_t, kEndings> endings{};
  std::uint64_t cases = 0;
  long peak_kilobytes = 0;           // of the largest process
  std::uint64_t slowest_micros = 0;  // CPU time of the slowest case
  std::vector<Finding> findings;

  void add(const Tally& other);
};

// One case by its number, in a process that may not return from it; `folder` is its own.
using Work = std::function<Ending(const std::filesystem::path& folder, std::size_t number)>;

// Runs the cases in turn, up to `jobs` processes at a time, each case within the limits. The
// standard output of the processes is thrown away.
[[nodiscard]] Tally run_cases(const std::vector<std::size_t>& numbers, unsigned int jobs,
                              const Limits& limits, const Work& work);

}  // namespace Trel::Damage
