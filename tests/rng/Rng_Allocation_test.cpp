// Decoding packets allocates nothing.
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "Rng_Feed.h"
#include "support/Support_Allocations.h"

namespace Trel::Rng {
namespace {

// One packet of each type and slow channel, and outlines and sensors.
std::vector<Bytes> packets() {
  std::vector<Bytes> result;
  for (int channel = 0; channel < 24; ++channel) {
    const auto number = static_cast<unsigned char>(channel);
    const auto ms = static_cast<std::uint16_t>(100 + 10 * channel);
    for (const RangePacket& packet : {range(ms, 1), range(ms, 4), lane(ms), old_range(ms)}) {
      result.push_back(RangePacket(packet).channel(number, {18, 0, 94, 1, 5, 6, 7, 8}).bytes());
    }
  }
  for (unsigned char source = 1; source < 12; ++source) {
    result.push_back(RangePacket(3).resize(81).u32(4, source).u8(8, 1).bytes());
  }
  result.push_back(RangePacket(4).bytes());
  result.push_back(RangePacket(5).append({0, 0, 0, 64, 0, 63}).append(Bytes(64 * 4, 1)).bytes());
  result.push_back(RangePacket(5).append({0, 0, 1, 64, 0, 63}).append(Bytes(64 * 4, 1)).bytes());
  result.push_back(RangePacket(6).append({0, 0, 0, 16, 0, 15}).append(Bytes(16 * 22, 1)).bytes());
  result.push_back(range(500).append(Bytes(6 * 16, 1)).bytes());
  return result;
}

TEST(RngAllocation, no_packet_allocates_in_either_pass) {
  RComCodec codec(true);
  const std::vector<Bytes> recording = packets();

  const auto before = Support::allocations();
  int prescanned = 0;
  for (const Bytes& packet : recording) {
    ++prescanned;
    if (codec.DecodeLite(packet.data(), static_cast<unsigned int>(packet.size())) == 2) break;
  }
  codec.PrescanRewind(true);
  for (const Bytes& packet : recording) {
    codec.DecodeLite(packet.data(), static_cast<unsigned int>(packet.size()));
  }
  codec.Key().Reset(false);
  for (const Bytes& packet : recording) {
    codec.DecodeLite(packet.data(), static_cast<unsigned int>(packet.size()));
  }
  const auto after = Support::allocations();

  EXPECT_EQ(after, before);
  EXPECT_EQ(prescanned, 7 * 4 + 1);  // the first packet of channel 7 ends the prescan
  EXPECT_EQ(codec.DMain().Get_Nano(), 0x015E0012LL * 60'000'000'000 + 500'000'000);
}

}  // namespace
}  // namespace Trel::Rng
