// The codec under test, and the packets that most tests feed it.
#pragma once

#include <initializer_list>
#include <vector>

#include "rng/Rng_RComRx.h"
#include "support/Support_RangePacket.h"

namespace Trel::Rng {

using Support::Bytes;
using Support::join;
using Support::little;
using Support::RangePacket;

// A minute of 2023, counted from GPS time zero, and its start in nanoseconds.
inline constexpr int kMinute = 22'900'000;
inline constexpr long long kStart = kMinute * 60'000'000'000LL;
inline constexpr long long kMilli = 1'000'000;

[[nodiscard]] constexpr long long at_ms(long long milliseconds) {
  return kStart + milliseconds * kMilli;
}

class TestCodec : public RComCodec {
 public:
  using RComCodec::RComCodec;

  int take(const RangePacket& packet) {
    const Bytes bytes = packet.bytes();
    return DecodeLite(bytes.data(), static_cast<unsigned int>(bytes.size()));
  }
  void take(std::initializer_list<RangePacket> packets) {
    for (const RangePacket& packet : packets) take(packet);
  }
};

// Packets timed in milliseconds of their minute, with a channel that nothing has, so that the zeros
// of a fresh packet are no minutes. Targets count from 1.
[[nodiscard]] inline RangePacket range(std::uint16_t ms, unsigned char target = 1) {
  return RangePacket(2).time_ms(ms).target(target, 4).channel(200, {});
}
[[nodiscard]] inline RangePacket lane(std::uint16_t ms) {
  return RangePacket(1).time_ms(ms).channel(200, {});
}
[[nodiscard]] inline RangePacket old_range(std::uint16_t ms) {
  return RangePacket(0).time_ms(ms).channel(200, {});
}

[[nodiscard]] inline RangePacket with_minutes(RangePacket packet, int minutes = kMinute) {
  return packet.channel(0, little(minutes, 4));
}
[[nodiscard]] inline RangePacket with_utc(RangePacket packet, int seconds = 18) {
  return packet.channel(7, little(seconds, 2));
}

// The Nano after each packet; 0 for an untimed one.
[[nodiscard]] inline std::vector<long long> times_of(TestCodec& codec,
                                                     const std::vector<RangePacket>& packets) {
  std::vector<long long> times;
  for (const RangePacket& packet : packets) {
    codec.take(packet);
    times.push_back(codec.DMain().Is_Nano_Valid() ? codec.DMain().Get_Nano() : 0);
  }
  return times;
}

// Runs a prescan over the packets, as far as it goes, and goes back.
inline void prescan(TestCodec& codec, const std::vector<RangePacket>& packets, bool apply = false) {
  codec.Invalidate(true);
  for (const RangePacket& packet : packets) {
    if (codec.take(packet) == 2) break;
  }
  codec.PrescanRewind(apply);
}

}  // namespace Trel::Rng
