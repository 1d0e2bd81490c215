#include "rng/Rng_Prescan.h"

#include "library/Lib_Report.h"

namespace Trel::Rng {

void NanoOff::setOffset(long long time, long long elapsed) {
  constexpr long long kSecond = RComScales::NANOSECONDS_IN_SECOND;
  known_ = true;
  first_ = time;
  start_ = Lib::wrap_subtract(time, elapsed);
  origin_ = start_ / kSecond * kSecond;
}

void Prescan::Invalidate(bool prescan) {
  active = prescan;
  state = prescan ? kPrescanning : kUndecided;
  ivalCounter();
  offsets.Invalidate();
  has_time = false;
  time = 0;
  ms = -1;
  minute = -1;
  has_utc = false;
  utc_offset = 0;
}

void Prescan::ivalCounter() {
  check = 1;
  intervals_ = Counter();
  packets_ = Counter();
  see_all();
}

void Prescan::initCounter() {
  check = 2;
  intervals_.current = intervals_.initial;
  packets_.current = packets_.initial;
  see_all();
}

void Prescan::incrCounter(unsigned int type, unsigned int target) {
  TREL_ASSERT(check == 0 || check == 1 || check == 2 || check == 3, "rng/Rng_RComRx");
  check = 3;
  intervals_.previous = intervals_.current;
  packets_.previous = packets_.current;
  ++packets_.current;
  if (comes_again(type, target)) ++intervals_.current;
}

void Prescan::undoCounter() {
  TREL_ASSERT(check == 3, "rng/Rng_RComRx");
  check = 4;
  for (Counter* counter : {&intervals_, &packets_}) {
    counter->current = counter->previous;
    counter->initial = counter->previous;
  }
  see_all();
}

bool Prescan::decrCounter(unsigned int type, unsigned int target) {
  TREL_ASSERT(check == 2 || check == 4 || check == 5, "rng/Rng_RComRx");
  check = 5;
  --packets_.current;
  if (comes_again(type, target)) --intervals_.current;
  return packets_.current == 0;
}

void Prescan::see_all() {
  for (auto& targets : seen_) targets.fill(true);
}

bool Prescan::comes_again(unsigned int type, unsigned int target) {
  bool& seen = seen_[type][target];
  const bool again = seen;
  if (again) seen_ = {};
  seen = true;
  return again;
}

}  // namespace Trel::Rng
