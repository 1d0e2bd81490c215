#include "support/Support_Packet.h"

#include <algorithm>
#include <bit>

namespace Trel::Support {

namespace {
constexpr std::size_t kNumberSize = 2;
}

UComPacket::UComPacket(std::uint16_t message, std::size_t data_size)
    : bytes_(kNumberSize + data_size) {
  bytes_[0] = static_cast<unsigned char>(message);
  bytes_[1] = static_cast<unsigned char>(message >> 8);
}

UComPacket& UComPacket::bits(std::size_t offset, std::size_t size, std::uint64_t raw) {
  const std::size_t end = kNumberSize + (offset + size + 7) / 8;
  if (bytes_.size() < end) bytes_.resize(end);
  std::size_t byte = kNumberSize + offset / 8;
  std::size_t shift = offset % 8;
  while (size > 0) {
    const std::size_t count = std::min(8 - shift, size);
    const unsigned int mask = ((1U << count) - 1) << shift;
    const unsigned int field = static_cast<unsigned int>(raw & 0xFF) << shift & mask;
    bytes_[byte] = static_cast<unsigned char>((bytes_[byte] & ~mask) | field);
    raw >>= count;
    size -= count;
    shift = 0;
    ++byte;
  }
  return *this;
}

UComPacket& UComPacket::integer(std::size_t offset, std::size_t size, std::int64_t value) {
  return bits(offset, size, static_cast<std::uint64_t>(value));
}

UComPacket& UComPacket::real32(std::size_t offset, float value) {
  return bits(offset, 32, std::bit_cast<std::uint32_t>(value));
}

UComPacket& UComPacket::real64(std::size_t offset, double value) {
  return bits(offset, 64, std::bit_cast<std::uint64_t>(value));
}

}  // namespace Trel::Support
