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

// Makes the entries from `used` on invalid, of a run that has been computed up to there: the first
// of them tells of the others.
inline void end_run(Run& run, std::size_t used) {
  if (used >= run.size() || run.get_flags(used) == kInvalidEntry) return;
  for (std::size_t index = used; index < run.size(); ++index) Detail::invalidate(run, index);
}

// The number in use is now `used`: values behind it become invalid.
inline void shorten_run(Run& run, std::size_t used) {
  for (std::size_t index = used; index < run.size(); ++index) {
    if (run.ok(index)) Detail::invalidate(run, index);
  }
}

// A place, or a direction, in the plane of the local frame.
struct Place {
  double x = 0.0;
  double y = 0.0;
};

// The two runs that tell a row of places.
struct PlaceRuns {
  Run& x;
  Run& y;

  void reject() const {
    reject_run(x);
    reject_run(y);
  }
  void invalidate(std::size_t index) const {
    Detail::invalidate(x, index);
    Detail::invalidate(y, index);
  }
  void set(std::size_t index, const Place& place, const Lib::StampExt& now) const {
    x.set(index, now);
    y.set(index, now);
    x.set_data(index, place.x);
    y.set_data(index, place.y);
  }
  void end(std::size_t used) const {
    end_run(x, used);
    end_run(y, used);
  }
};

}  // namespace Trel::Rng
