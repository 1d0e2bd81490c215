// Runs of values that are computed as far as they are in use.
//
// Such a run is rejected as a whole or not at all, and behind the entries in use all are invalid.
// So that packets need not go through entries that nobody uses, whoever lowers the number in use
// shortens the runs that follow from it.
#pragma once

#include "rng/Rng_ComData.h"

namespace Trel::Rng {

using Run = Lib::VarArrayExt<double>;

inline constexpr Lib::Flags kRejectedEntry(Lib::Flags::Rejected | Lib::Flags::Timeless);
inline constexpr Lib::Flags kInvalidEntry(Lib::Flags::Invalid | Lib::Flags::Timeless);

template <Lib::ElementType T>
void reject_run(Lib::VarArrayExt<T>& run) {
  if (run.get_flags(0) != kRejectedEntry) Detail::empty(run, Lib::Flags::Rejected);
}

// Makes the entries from `used` on invalid, whatever they are. Mostly they are so already.
template <Lib::ElementType T>
void clear_from(Lib::VarArrayExt<T>& run, std::size_t used) {
  unsigned int differences = 0;
  for (std::size_t index = used; index < run.size(); ++index) {
    differences |= static_cast<unsigned int>(run.get_flags(index).byte() ^ kInvalidEntry.byte());
  }
  if (differences == 0) return;
  for (std::size_t index = used; index < run.size(); ++index) Detail::invalidate(run, index);
}

// The same of a run that has been computed up to `used`: the first entry tells of the others.
inline void end_run(Run& run, std::size_t used) {
  if (used < run.size() && run.get_flags(used) != kInvalidEntry) clear_from(run, used);
}

// The number in use is now `used`: values behind it become invalid.
inline void shorten_run(Run& run, std::size_t used) {
  for (std::size_t index = used; index < run.size(); ++index) {
    if (run.ok(index)) Detail::invalidate(run, index);
  }
}

inline void set_entry(Run& run, std::size_t index, double value, const Lib::StampExt& now) {
  run.set(index, now);
  run.set_data(index, value);
}

}  // namespace Trel::Rng
