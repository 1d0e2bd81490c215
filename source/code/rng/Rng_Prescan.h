// What a first pass over a stream learns ahead of the pass that decodes: the first time, how many
// packets and how much time go before it, and the offset to UTC, which the stream tells late.
//
// Each kind of packet, for range data that of each target, comes once in every period. The counters
// count packets, and periods by the kinds that come again; so packets ahead of the first time get
// theirs. They must be called in their order; that is a matter of this code alone, no packet can
// disturb it. Times are nanoseconds of GPS time, and sums of them wrap. Nothing allocates.
#pragma once

#include <array>
#include <cstddef>

#include "library/Lib_Nano.h"
#include "rng/Rng_Scale.h"

namespace Trel::Rng {

// Three times of a stream, from which its relative times count: the whole second of its start, its
// first packet, and its first packet with a time of its own. All are 0 while they are not known.
class NanoOff {
 public:
  void Invalidate() { *this = NanoOff(); }
  // From the first time of its own, and what passed before it.
  void setOffset(long long time, long long elapsed);

  [[nodiscard]] bool unset() const { return !known_; }
  [[nodiscard]] long long get_origin() const { return origin_; }
  [[nodiscard]] long long get_start() const { return start_; }
  [[nodiscard]] long long get_first() const { return first_; }

 private:
  // No number is left over to say that there is none: a file can bring any.
  bool known_ = false;
  long long origin_ = 0;
  long long start_ = 0;
  long long first_ = 0;
};

class Prescan {
 public:
  enum State : unsigned int {
    kUndecided = 0,    // learns as packets come
    kTimed = 1,        // the regular pass has found the first time
    kPrescanning = 2,  // the first pass is on
    kCoasting = 3,     // packets ahead of the first time get computed ones
    kCoasted = 4,      // they are over
  };

  // Between two packets of a kind.
  static constexpr long long period = 10 * RComScales::NANOSECONDS_IN_MILLISECOND;
  // The packets that count are those of types below kTypes, with targets below kTargets.
  static constexpr unsigned int kTypes = 4;
  static constexpr unsigned int kTargets = 4;

  // Forgets all, and begins a first pass or not.
  void Invalidate(bool prescan);

  // Nothing counted.
  void ivalCounter();
  // Back to the counts that undoCounter() noted.
  void initCounter();
  // Counts a packet without a time, of that type and target.
  void incrCounter(unsigned int type, unsigned int target);
  // Takes back the newest packet, which turned out to have a time, and notes the counts.
  void undoCounter();
  // One packet less; true when none is left.
  bool decrCounter(unsigned int type, unsigned int target);

  // How long before the first time the packet at hand was, in nanoseconds.
  [[nodiscard]] long long timePrediction() const {
    return Lib::wrap_multiply(period, static_cast<long long>(intervals_.current));
  }

  [[nodiscard]] unsigned long long get_intervals() const { return intervals_.current; }
  [[nodiscard]] unsigned long long get_packets() const { return packets_.current; }

  bool active = false;
  State state = kUndecided;
  NanoOff offsets;

  bool has_time = false;
  long long time = 0;  // of the first packet
  // The clock at the first time.
  int ms = -1;
  int minute = -1;

  bool has_utc = false;
  int utc_offset = 0;  // seconds

 private:
  struct Counter {
    unsigned long long previous = 0;
    unsigned long long current = 0;
    unsigned long long initial = 0;
  };

  void see_all();
  // Whether the pair comes again; it is then the only one seen.
  bool comes_again(unsigned int type, unsigned int target);

  Counter intervals_;
  Counter packets_;
  std::array<std::array<bool, kTargets>, kTypes> seen_{};
  unsigned int check = 0;  // which of the counter's calls was the last
};

}  // namespace Trel::Rng
