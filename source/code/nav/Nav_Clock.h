// Time from packets that carry only the milliseconds within a minute.
//
// The minutes come once in a while from a status channel; from then on the clock keeps them current
// from the packets alone. A gap of more than a minute is not noticed. Times are nanoseconds of GPS
// time. All arithmetic is on numbers from files and wraps.
#pragma once

#include <limits>

#include "library/Lib_Nano.h"

namespace Trel::Nav {

// A period that is not known.
inline constexpr long long kNoPeriod = std::numeric_limits<long long>::min();

inline constexpr long long kNanosPerSecond = 1'000'000'000;
inline constexpr long long kNanosPerMinute = 60'000'000'000;
inline constexpr long long kNanosPerMilli = 1'000'000;

using Lib::to_seconds;
using Lib::wrap_add;
using Lib::wrap_multiply;
using Lib::wrap_subtract;

// Four times of a stream, from which its relative times count: the whole second of its start, its
// first packet, its first packet with a time of its own, and its first packet with an initialised
// solution. inv_ is true while a time is not known, and get_ is 0 then.
class NanoOff {
 public:
#define TREL_NAV_OFFSET(name)                  \
  void set_##name(long long nano) {            \
    name##_ = {nano, true};                    \
  }                                            \
  [[nodiscard]] long long get_##name() const { \
    return name##_.nano;                       \
  }                                            \
  [[nodiscard]] bool inv_##name() const {      \
    return !name##_.known;                     \
  }
  TREL_NAV_OFFSET(origin2gps)
  TREL_NAV_OFFSET(start2gps)
  TREL_NAV_OFFSET(first2gps)
  TREL_NAV_OFFSET(init2gps)
#undef TREL_NAV_OFFSET

  void Invalidate() {
    *this = NanoOff();
  }

 private:
  // No number is left over to say that there is none: a file can bring any.
  struct Offset {
    long long nano = 0;
    bool known = false;
  };

  Offset origin2gps_;
  Offset start2gps_;
  Offset first2gps_;
  Offset init2gps_;
};

// The minute and the milliseconds within it of the newest packet; each is -1 while not known.
class PacketClock {
 public:
  void Invalidate() { set(-1, -1); }
  void set(int minutes, int milliseconds) {
    minutes_ = minutes;
    milliseconds_ = milliseconds;
  }
  void set_minutes(int minutes) { minutes_ = minutes; }
  [[nodiscard]] int get_minutes() const { return minutes_; }
  [[nodiscard]] int get_milliseconds() const { return milliseconds_; }

  // Takes a packet's time, below 65535. The first step that is no turn of the minute becomes the
  // period between packets, in nanoseconds, if that is still kNoPeriod.
  void advance(int milliseconds, long long& period) {
    if (minutes_ >= 0 && milliseconds_ >= 0) {
      if (milliseconds <= kTurnedUpTo && milliseconds_ > kTurnsAbove) {
        minutes_ = static_cast<int>(static_cast<unsigned int>(minutes_) + 1U);
      } else if (period == kNoPeriod) {
        period = (milliseconds - milliseconds_) * kNanosPerMilli;
      }
    }
    milliseconds_ = milliseconds;
  }

  // Whether the clock can tell the time, and the time.
  [[nodiscard]] bool known() const { return minutes_ >= 0; }
  [[nodiscard]] long long nano() const {
    return wrap_add(wrap_multiply(minutes_, kNanosPerMinute),
                    wrap_multiply(milliseconds_, kNanosPerMilli));
  }

 private:
  // Milliseconds: a packet up to the first of these behind one above the second is in the next
  // minute.
  static constexpr int kTurnedUpTo = 1999;
  static constexpr int kTurnsAbove = 2000;

  int minutes_ = -1;
  int milliseconds_ = -1;
};

// The rate of packets, over windows of 101: a packet that starts the window and a hundred behind
// it.
class RegularRate {
 public:
  void Invalidate() {
    start_ = -1;
    count_ = -1;
  }

  enum class Outcome { None, Rate, Lost };
  // Counts a packet, whose time counts if `timed`. Rate: a window is full, and `rate` in hertz.
  // Lost: its packets do not go forward in time, and a new window must begin.
  Outcome count(bool timed, long long nano, double& rate);

 private:
  static constexpr long long kPackets = 99;  // a window is full above this count

  long long start_ = -1;
  long long count_ = -1;
};

inline RegularRate::Outcome RegularRate::count(bool timed, long long nano, double& rate) {
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
