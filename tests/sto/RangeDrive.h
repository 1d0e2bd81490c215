// A drive of a range system, packet by packet: range data of one target, and wrapped NCom packets,
// a hundredth of a second apart from the start of a minute on.
#pragma once

#include "support/Support_NavPacket.h"
#include "support/Support_RangePacket.h"

namespace Trel::Sto::Test {

inline constexpr int kRangeMinute = 23'011'200;  // 0x015F1F80, of 2023
inline constexpr long long kRangeStart = kRangeMinute * 60'000'000'000LL;

constexpr long long range_ms(long long milliseconds) {
  return kRangeStart + milliseconds * 1'000'000;
}

inline constexpr unsigned int kDrivePackets = 20;

// Packet `n`. Packet 2 tells the minute and packet 3 the UTC offset, so that the first scan ends at
// packet 3; no other has a slow channel of interest.
inline Support::RangePacket range_data(unsigned int n) {
  Support::RangePacket packet(2);
  packet.target(1, 1).time_ms(static_cast<std::uint16_t>(10 * n)).channel(255, {});
  if (n == 2) packet.channel(0, Support::little(kRangeMinute, 4));
  if (n == 3) packet.channel(7, Support::little(18, 2));
  return packet;
}

// The addresses of the hunter and of target 1, or a key of four characters, or 0.
inline Support::Bytes addresses(std::uint32_t hunter, std::uint32_t target) {
  return Support::join({Support::little(hunter, 4), Support::little(target, 4)});
}

// Packet `n` of a unit; packet 2 tells the minute.
inline Support::NComPacket unit_data(unsigned int n) {
  Support::NComPacket packet;
  packet.time_ms(static_cast<std::uint16_t>(10 * n))
      .status(4)
      .position(0.5 + n * 1e-7, 0.25, 100)
      .channel(86, {});
  if (n == 2) packet.channel(0, {0x80, 0x1F, 0x5F, 0x01, 255, 255, 255, 255});
  return packet;
}

struct DriveSource {
  std::uint32_t address;
  unsigned char provenance;
};

// The drive as a raw file: with each packet of range data one of every source. Packet 10 has
// `channel_9` on its slow channel 9.
inline Support::Bytes range_file(const std::vector<DriveSource>& sources,
                                 const Support::Bytes& channel_9 = {}) {
  Support::Bytes file;
  for (unsigned int n = 0; n < kDrivePackets; ++n) {
    Support::RangePacket packet = range_data(n);
    if (n == 10 && !channel_9.empty()) packet.channel(9, channel_9);
    file = Support::join({file, packet.bytes()});
    for (const DriveSource& source : sources) {
      file = Support::join(
          {file, Support::range_packet(source.address, source.provenance, {unit_data(n).bytes()})});
    }
  }
  return file;
}

}  // namespace Trel::Sto::Test
