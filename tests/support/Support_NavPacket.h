// Packets of an inertial unit, written field by field.
//
//   NComPacket().time_ms(100).status(4).position(0.9, 0.1, 50).channel(0, {...}).bytes()
//
// A fresh packet is all zeros but for its first byte. Each field takes the number that the packet
// carries, in the packet's own unit; all sums are made when the bytes are taken, so the order of
// the calls does not matter.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "support/Support_Bytes.h"

namespace Trel::Support {

// What a field of 16, 24 or 32 bits reads when it has no value, and the ends of its range.
inline constexpr std::int32_t kInvalid24 = -8388608;
inline constexpr std::int32_t kUnder24 = -8388607;
inline constexpr std::int32_t kOver24 = 8388607;
inline constexpr std::uint16_t kNoTime = 65535;

// What NCom and MCom packets have in common; P is the packet, for the chain of calls.
template <class P>
class NavPacket {
 public:
  using ChannelData = std::array<unsigned char, 8>;

  // Milliseconds of the minute, 0 to 59999, or kNoTime.
  P& time_ms(std::uint16_t value) { return number(1, 2, value); }
  P& status(unsigned char value) { return number(21, 1, value); }

  // Physical values, rounded to the packet's steps: m/s2, rad/s, rad and m, m/s, rad. Attitude is
  // heading, pitch, roll; velocity is north, east, down.
  P& acceleration(double x, double y, double z) { return vector(3, x, y, z, 1e-4); }
  P& angular_rate(double x, double y, double z) { return vector(12, x, y, z, 1e-5); }
  P& position(double latitude, double longitude, float altitude);
  P& velocity(double north, double east, double down) {
    return vector(43, north, east, down, 1e-4);
  }
  P& attitude(double heading, double pitch, double roll) {
    return vector(52, heading, pitch, roll, 1e-6);
  }

  // The same fields as they stand in the packet, 24 bits each.
  P& raw_acceleration(std::int32_t x, std::int32_t y, std::int32_t z) { return raw24(3, x, y, z); }
  P& raw_angular_rate(std::int32_t x, std::int32_t y, std::int32_t z) { return raw24(12, x, y, z); }
  P& raw_velocity(std::int32_t n, std::int32_t e, std::int32_t d) { return raw24(43, n, e, d); }
  P& raw_attitude(std::int32_t heading, std::int32_t pitch, std::int32_t roll) {
    return raw24(52, heading, pitch, roll);
  }

  // The status channel and its eight bytes.
  P& channel(unsigned char channel, const ChannelData& data);

  // Any bytes from `offset` on. Sums are still made over them, and stand where sums stand.
  P& raw(std::size_t offset, const Bytes& bytes);
  // The byte that holds the first sum tells the kind of an extra packet: status 11 and that byte.
  P& extra(unsigned char kind);
  // The packet's last byte is one off.
  P& bad_sum();

  // The packet as a raw file has it.
  [[nodiscard]] Bytes bytes() const;
  // The packet as a recording has it: behind eight bytes that mean nothing here.
  [[nodiscard]] Bytes xcom_bytes() const { return join({Bytes(8), bytes()}); }

 protected:
  NavPacket(unsigned char sync, std::size_t size, std::size_t channel_at);

  // `size` bytes of `value` at `offset`, the lowest first.
  P& number(std::size_t offset, std::size_t size, std::uint64_t value);

 private:
  P& self() { return static_cast<P&>(*this); }
  P& raw24(std::size_t offset, std::int32_t x, std::int32_t y, std::int32_t z);
  P& vector(std::size_t offset, double x, double y, double z, double step);

  Bytes bytes_;
  std::size_t channel_at_;
  std::optional<unsigned char> extra_;
  bool bad_sum_ = false;
};

// 72 bytes: three batches, each of which ends in the sum of all before it but the first byte.
class NComPacket : public NavPacket<NComPacket> {
 public:
  NComPacket() : NavPacket(0xE7, 72, 62) {}
};

// 84 bytes; behind the second batch its own tail.
class MComPacket : public NavPacket<MComPacket> {
 public:
  MComPacket() : NavPacket(0xE8, 84, 74) {}

  // Metres, rounded to 2 mm.
  MComPacket& heave(double value);
  MComPacket& long_period_heave(double value);
  MComPacket& raw_heave(std::int16_t heave, std::int16_t long_period_heave);
  MComPacket& counter(std::uint16_t value) { return number(66, 2, value); }
  MComPacket& status_bits(unsigned char bits) { return number(68, 1, bits); }
};

extern template class NavPacket<NComPacket>;
extern template class NavPacket<MComPacket>;

}  // namespace Trel::Support
