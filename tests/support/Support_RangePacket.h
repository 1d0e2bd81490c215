// Packets of a range system, written field by field.
//
//   RangePacket(2).target(1, 2).time_ms(1234).i32(8, 5000).channel(7, {18, 0}).bytes()
//   range_packet(0x0A000001, 0, {NComPacket().time_ms(100).bytes()})
//
// A fresh packet has the usual size of its type and is all zeros behind its header. Offsets count
// from the packet's first byte, as a reader counts them. The sum is made when the bytes are taken,
// so the order of the calls does not matter; a field that does not fit throws std::out_of_range.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "support/Support_Bytes.h"

namespace Trel::Support {

// The bytes of a packet up to its sum: old range data, lane data, range data without sensors, a
// trigger. Of any other type a fresh packet is empty.
inline constexpr std::size_t kObsoleteRangeBytes = 46;
inline constexpr std::size_t kLaneBytes = 132;
inline constexpr std::size_t kRangeBytes = 114;
inline constexpr std::size_t kTriggerBytes = 11;

class RangePacket {
 public:
  explicit RangePacket(unsigned char type);

  // Milliseconds of the minute, 0 to 59999; 65535 for none.
  RangePacket& time_ms(std::uint16_t value) { return u16(4, value); }
  // Range data: which target, counted from 1, and how many there are.
  RangePacket& target(unsigned char number, unsigned char total) {
    return u8(6, number).u8(7, total);
  }
  // The slow channel and its eight bytes; what `data` leaves out is 0. Types 0, 1 and 2 have one.
  RangePacket& channel(unsigned char number, const Bytes& data);

  // A number at `offset`, the lowest byte first.
  RangePacket& u8(std::size_t offset, std::uint8_t value) { return number(offset, 1, value); }
  RangePacket& u16(std::size_t offset, std::uint16_t value) { return number(offset, 2, value); }
  RangePacket& u32(std::size_t offset, std::uint32_t value) { return number(offset, 4, value); }
  RangePacket& u64(std::size_t offset, std::uint64_t value) { return number(offset, 8, value); }
  RangePacket& i8(std::size_t offset, std::int8_t value) { return sign(offset, 1, value); }
  RangePacket& i16(std::size_t offset, std::int16_t value) { return sign(offset, 2, value); }
  RangePacket& i24(std::size_t offset, std::int32_t value) { return sign(offset, 3, value); }
  RangePacket& i32(std::size_t offset, std::int32_t value) { return sign(offset, 4, value); }
  // Any bytes from `offset` on.
  RangePacket& raw(std::size_t offset, const Bytes& bytes);

  // Makes the packet as long as `size` tells, without its sum: cuts it or fills it up with zeros.
  RangePacket& resize(std::size_t size);
  // Puts bytes behind the packet, ahead of its sum.
  RangePacket& append(const Bytes& bytes);
  // The packet's last byte is one off.
  RangePacket& bad_sum();

  // The packet as a raw file has it.
  [[nodiscard]] Bytes bytes() const;
  // The packet as a recording has it: behind eight bytes that mean nothing here.
  [[nodiscard]] Bytes xcom_bytes() const { return join({Bytes(8), bytes()}); }

 private:
  RangePacket& number(std::size_t offset, std::size_t size, std::uint64_t value);
  RangePacket& sign(std::size_t offset, std::size_t size, std::int64_t value) {
    return number(offset, size, static_cast<std::uint64_t>(value));
  }

  Bytes bytes_;  // without the sum
  bool bad_sum_ = false;
};

// A number as `size` bytes, the lowest first: what the data of a channel is made of.
[[nodiscard]] Bytes little(std::int64_t value, std::size_t size);

// A packet of any kind with a good sum: `body` stands behind the four bytes of header.
[[nodiscard]] Bytes range_file_packet(unsigned char kind, const Bytes& body);

// A wrapper for NCom packets; with one packet it has 82 bytes.
[[nodiscard]] Bytes range_packet(std::uint32_t address, unsigned char provenance,
                                 std::initializer_list<Bytes> packets);

}  // namespace Trel::Support
