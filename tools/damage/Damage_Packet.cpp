#include "damage/Damage_Packet.h"

namespace Trel::Damage {

namespace {

using Support::Bytes;

constexpr unsigned char kNCom = 0xE7;
constexpr unsigned char kMCom = 0xE8;
constexpr unsigned char kRCom = 0x57;
constexpr std::size_t kNComSize = 72;
constexpr std::size_t kMComSize = 84;

constexpr std::size_t kRangeHeader = 4;  // sync, type and the size of what follows
constexpr std::size_t kLeastRange = kRangeHeader + 1;
constexpr unsigned char kWrapper = 3;
constexpr std::size_t kWrapperHead = 9;

std::size_t claimed_size(const Bytes& bytes, std::size_t offset, std::size_t end) {
  if (bytes[offset] == kNCom) return kNComSize;
  if (bytes[offset] == kMCom) return kMComSize;
  if (bytes[offset] != kRCom || end - offset < kLeastRange) return 0;
  const std::size_t size = kRangeHeader + bytes[offset + 2] + std::size_t{256} * bytes[offset + 3];
  return size < kLeastRange ? 0 : size;
}

void set_sum(Bytes& bytes, std::size_t at, std::size_t size) {
  unsigned char sum = 0;
  for (std::size_t n = at + 1; n + 1 < at + size; ++n) {
    sum = static_cast<unsigned char>(sum + bytes[n]);
  }
  bytes[at + size - 1] = sum;
}

}  // namespace

std::size_t packet_size(const Bytes& bytes, std::size_t offset, std::size_t end) {
  if (offset >= end) return 0;
  const std::size_t size = claimed_size(bytes, offset, end);
  return size <= end - offset ? size : 0;
}

void mend_packets(Bytes& bytes, std::size_t begin, std::size_t end) {
  for (std::size_t at = begin; at < end;) {
    const std::size_t size = packet_size(bytes, at, end);
    if (size == 0) {
      ++at;
      continue;
    }
    if (bytes[at] == kRCom && bytes[at + 1] == kWrapper) {
      for (std::size_t n = at + kWrapperHead; n + kNComSize < at + size; n += kNComSize) {
        set_sum(bytes, n, kNComSize);
      }
    }
    set_sum(bytes, at, size);
    at += size;
  }
}

}  // namespace Trel::Damage
