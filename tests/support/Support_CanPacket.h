// Batches of CAN frames, written signal by signal.
//
//   CanPacket(nano)
//       .frame(CanFrame(0x0A0, 8).motorola(7, 16, 2500).intel(56, 8, counter))
//       .frame(CanFrame(0x80000123, 24).intel(0, 24, 0xFFFFFE))
//       .bytes()
//
// Start bits are numbered as a database file numbers them: bit 0 is the lowest of byte 0 and bit 8
// the lowest of byte 1. What does not fit into its frame throws std::out_of_range.
#pragma once

#include <cstdint>
#include <limits>

#include "support/Support_Bytes.h"

namespace Trel::Support {

class CanFrame {
 public:
  // `size` zeros: 0 to 8, 12, 16, 20, 24, 32, 48 or 64; others throw std::invalid_argument. The
  // identifier is what the database writes, bit 31 of an extended one included.
  CanFrame(std::uint32_t identifier, std::size_t size);

  // The low `bits` bits of `raw`, 1 to 64. Little-endian: upwards from its lowest bit at `start`.
  CanFrame& intel(std::size_t start, std::size_t bits, std::uint64_t raw);
  // Big-endian: downwards from its highest bit at `start`, on from bit 0 of a byte to bit 7 of the
  // next.
  CanFrame& motorola(std::size_t start, std::size_t bits, std::uint64_t raw);

  // The record's four flags, and its three bytes ahead of the identifier.
  CanFrame& flags(unsigned int nibble);
  CanFrame& value24(std::uint32_t value);

  // The record: eight bytes of header, then the data, filled up with zeros to eight bytes.
  [[nodiscard]] const Bytes& bytes() const { return bytes_; }

 private:
  void set_bit(std::size_t bit, std::uint64_t value);

  std::size_t size_;
  Bytes bytes_;
};

class CanPacket {
 public:
  static constexpr std::int64_t kNoTime = std::numeric_limits<std::int64_t>::min();

  // The time of the batch: nanoseconds since the device's start or on the GPS scale.
  explicit CanPacket(std::int64_t nano);

  CanPacket& frame(const CanFrame& frame) { return raw(frame.bytes()); }
  // Any bytes in the place of records.
  CanPacket& raw(const Bytes& bytes);

  [[nodiscard]] const Bytes& bytes() const { return bytes_; }

 private:
  Bytes bytes_;
};

}  // namespace Trel::Support
