#include "nav/Nav_Clock.h"

namespace Trel::Nav {

namespace {

// Milliseconds: a packet up to the first of these behind one above the second is in the next
// minute.
constexpr int kTurnedUpTo = 1999;
constexpr int kTurnsAbove = 2000;

}  // namespace

void PacketClock::advance(int milliseconds, long long& period) {
  if (minutes_ >= 0 && milliseconds_ >= 0) {
    if (milliseconds <= kTurnedUpTo && milliseconds_ > kTurnsAbove) {
      minutes_ = static_cast<int>(static_cast<unsigned int>(minutes_) + 1U);
    } else if (period == kNoPeriod) {
      period = (milliseconds - milliseconds_) * kNanosPerMilli;
    }
  }
  milliseconds_ = milliseconds;
}

RegularRate::Outcome RegularRate::count(bool timed, long long nano, double& rate) {
  if (start_ >= 0) {
    ++count_;
  } else if (timed) {
    start_ = nano;
    count_ = 0;
  }
  if (count_ <= kPackets || !timed) return Outcome::None;

  const long long span = wrap_subtract(nano, start_);
  if (span <= 0) {
    Invalidate();
    return Outcome::Lost;
  }
  rate = static_cast<double>(count_) * 1e9 / static_cast<double>(span);
  start_ = nano;
  count_ = 0;
  return Outcome::Rate;
}

}  // namespace Trel::Nav
