#include "sto/Sto_Retain.h"

#include <optional>

#include "library/Lib_Report.h"

namespace Trel::Sto {

namespace {

// A grid of more slots is longer than all of time, however narrow they are.
constexpr unsigned int kMaximumBits = 62;

// A span rounded outward to whole slots.
struct Grid {
  long long start;
  long long end;
  unsigned long long points;
};

// `start` and `end` are not negative, `resolution` is above 0. Nothing when the end overflows.
std::optional<Grid> round_outward(long long start, long long end, long long resolution) {
  Grid grid;
  grid.start = start / resolution * resolution;
  const long long slots = end / resolution + (end % resolution != 0 ? 1 : 0);
  if (__builtin_mul_overflow(slots, resolution, &grid.end)) return std::nullopt;
  grid.points = static_cast<unsigned long long>((grid.end - grid.start) / resolution) + 1;
  return grid;
}

}  // namespace

Store::Store(unsigned int id, unsigned int bits, long long resolution)
    : Cache(id), bits_(bits), resolution_(resolution) {
  forget();
}

void Store::forget() {
  data_.clear();
  covered_.clear();
  covered_.resize(kLevels);
}

void Store::soft_clear() {
  Lib::WriteLock lock(mutex_);
  forget();
}

long long Store::configure(long long start, long long end) {
  Lib::WriteLock lock(mutex_);
  forget();
  if (resolution_ <= 0 || start < 0 || end < 0 || start >= end) return 0;
  start_ = start;
  end_ = end;
  if (bits_ > kMaximumBits) return 0;
  const unsigned long long sto_points = 1ULL << bits_;
  long long new_resolution = resolution_;
  std::optional<Grid> grid = round_outward(start, end, new_resolution);
  for (int round = 0; round < 10 && grid && grid->points > sto_points; ++round) {
    const unsigned long long factor = (grid->points + sto_points - 1) / sto_points;
    if (__builtin_mul_overflow(new_resolution, factor, &new_resolution)) return 0;
    grid = round_outward(start, end, new_resolution);
  }
  if (!grid) return 0;
  const unsigned long long est_points = grid->points;
  TREL_ASSERT(est_points <= sto_points, "sto/Sto_Retain");

  long long full = 0;
  if (__builtin_mul_overflow(sto_points, new_resolution, &full)) return 0;
  long long new_start = grid->start;
  long long new_end = grid->end;
  const long long used = new_end - new_start;
  if (used < full) {
    const long long pad = (full - used) / new_resolution / 2 * new_resolution;
    if (pad < new_start) {
      new_start -= pad;
      if (__builtin_add_overflow(new_end, pad, &new_end)) return 0;
    }
  }
  TREL_ASSERT((new_start / new_resolution) * new_resolution == new_start, "sto/Sto_Retain");
  indexing_ = {new_start, new_resolution};
  return new_resolution;
}

void StoresImpl::add(long long start, long long end) {
  auto store =
      std::make_unique<Store>(static_cast<unsigned int>(stores_.size()), bits_, resolution_);
  if (store->configure(start, end) < 1) store.reset();
  stores_.push_back(std::move(store));
}

Stores::Stores(unsigned int bits, long long resolution) {
  Lib::WriteLock lock(mutex_);
  impl_ = std::make_unique<StoresImpl>(bits, resolution);
}

void Stores::add() {
  Lib::WriteLock lock(mutex_);
  impl_->add();
}

void Stores::add(long long start, long long end) {
  Lib::WriteLock lock(mutex_);
  impl_->add(start, end);
}

Store* Stores::at(unsigned int id) const {
  Lib::ReadLock lock(mutex_);
  return impl_->at(id);
}

}  // namespace Trel::Sto
