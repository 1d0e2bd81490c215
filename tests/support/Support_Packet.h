// A UCom packet, written field by field.
//
//   UComPacket(7).integer(0, 64, nano).bits(64, 12, 0x801).real64(80, latitude).bytes()
#pragma once

#include <cstdint>

#include "support/Support_Bytes.h"

namespace Trel::Support {

// The message number, then the message data. Offsets and sizes are bits of the data, counted from
// the lowest bit of its first byte; the data grows to hold what is set, and unset bits are 0.
class UComPacket {
 public:
  explicit UComPacket(std::uint16_t message, std::size_t data_size = 0);

  // The low `size` bits of `raw`, 1 to 64.
  UComPacket& bits(std::size_t offset, std::size_t size, std::uint64_t raw);
  UComPacket& integer(std::size_t offset, std::size_t size, std::int64_t value);
  UComPacket& real32(std::size_t offset, float value);
  UComPacket& real64(std::size_t offset, double value);

  [[nodiscard]] const Bytes& bytes() const { return bytes_; }

 private:
  Bytes bytes_;
};

}  // namespace Trel::Support
