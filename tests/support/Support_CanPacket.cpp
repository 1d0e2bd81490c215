#include "support/Support_CanPacket.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace Trel::Support {

namespace {

constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kLeastDataSize = 8;
constexpr std::array<std::size_t, 16> kSizes{0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};

unsigned int length_code(std::size_t size) {
  const auto found = std::find(kSizes.begin(), kSizes.end(), size);
  if (found == kSizes.end()) throw std::invalid_argument("no frame has that size");
  return static_cast<unsigned int>(found - kSizes.begin());
}

void put(Bytes& bytes, std::size_t at, std::size_t size, std::uint64_t value) {
  for (std::size_t i = 0; i < size; ++i) {
    bytes.at(at + i) = static_cast<unsigned char>(value >> 8 * i);
  }
}

void check_width(std::size_t bits) {
  if (bits == 0 || bits > 64) throw std::out_of_range("no field has that width");
}

}  // namespace

CanFrame::CanFrame(std::uint32_t identifier, std::size_t size)
    : size_(size), bytes_(kHeaderSize + std::max(size, kLeastDataSize)) {
  put(bytes_, 0, 1, length_code(size) << 4);
  put(bytes_, 4, 4, identifier);
}

CanFrame& CanFrame::intel(std::size_t start, std::size_t bits, std::uint64_t raw) {
  check_width(bits);
  for (std::size_t i = 0; i < bits; ++i) set_bit(start + i, raw >> i & 1);
  return *this;
}

CanFrame& CanFrame::motorola(std::size_t start, std::size_t bits, std::uint64_t raw) {
  check_width(bits);
  std::size_t at = start;
  for (std::size_t left = bits; left > 0; --left) {
    set_bit(at, raw >> (left - 1) & 1);
    at = at % 8 == 0 ? at + 15 : at - 1;
  }
  return *this;
}

CanFrame& CanFrame::flags(unsigned int nibble) {
  if (nibble > 0xF) throw std::out_of_range("more than four flags");
  bytes_[0] = static_cast<unsigned char>((bytes_[0] & 0xF0) | nibble);
  return *this;
}

CanFrame& CanFrame::value24(std::uint32_t value) {
  if (value > 0xFFFFFF) throw std::out_of_range("more than 24 bits");
  put(bytes_, 1, 3, value);
  return *this;
}

void CanFrame::set_bit(std::size_t bit, std::uint64_t value) {
  if (bit / 8 >= size_) throw std::out_of_range("beyond the end of the frame");
  unsigned char& byte = bytes_[kHeaderSize + bit / 8];
  const unsigned int mask = 1U << bit % 8;
  byte = static_cast<unsigned char>(value != 0 ? byte | mask : byte & ~mask);
}

CanPacket::CanPacket(std::int64_t nano) : bytes_(8) {
  put(bytes_, 0, 8, static_cast<std::uint64_t>(nano));
}

CanPacket& CanPacket::raw(const Bytes& bytes) {
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  return *this;
}

}  // namespace Trel::Support
