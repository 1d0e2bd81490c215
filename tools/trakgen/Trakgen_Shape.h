// What a stream says: its headers, and the packets of each moment. One room for each kind of stream
// fills this in.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <span>

#include "support/Support_Recording.h"
#include "trakgen/Trakgen_Scene.h"

namespace Trel::Trakgen {

using PacketSink = std::function<void(std::span<const unsigned char>)>;

class StreamShape {
 public:
  virtual ~StreamShape() = default;

  // Tells `stream` its codec and what belongs to that.
  virtual void describe(Support::RecordingStream& stream) const = 0;
  // Hands the packets of step `index` of `rate` per second to `sink`. What they hold follows from
  // these three alone.
  virtual void packets(std::uint64_t index, std::uint64_t rate, const Sample& sample,
                       const PacketSink& sink) const = 0;
};

// How often a message has its turn.
struct Cycle {
  std::uint64_t slowness = 1;  // one turn in so many hundredths of a second; 1: at every step
  std::uint64_t phase = 0;     // hundredths of a second before the first turn

  // Steps from one turn to the next.
  [[nodiscard]] std::uint64_t steps(std::uint64_t rate) const {
    return slowness == 1 ? 1 : std::max<std::uint64_t>(1, slowness * rate / 100);
  }
  [[nodiscard]] bool is_due(std::uint64_t index, std::uint64_t rate) const {
    return index % steps(rate) == phase * rate / 100 % steps(rate);
  }
  // The number of the turn at `index`, from 0.
  [[nodiscard]] std::uint64_t turn(std::uint64_t index, std::uint64_t rate) const {
    return index / steps(rate);
  }
};

// The whole number that stands for `value` where offset + scale * number is meant.
[[nodiscard]] inline std::int64_t raw_of(double value, double scale, double offset) {
  return static_cast<std::int64_t>(std::floor((value - offset) / scale + 0.5));
}

}  // namespace Trel::Trakgen
