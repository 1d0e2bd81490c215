// The packets behind the range elements.
//
// The drives begin at the start of kRangeMinute, with a packet that tells the minute. What a packet
// holds besides the field that a row tells is filled with kFilling.
#pragma once

#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

#include "ElementsRng_scene.h"
#include "RangeDrive.h"

namespace Trel::Sto::Test {

using Support::Bytes;
using Support::little;
using Support::RangePacket;

inline constexpr double kAngle = 0.000174532925199433 * kDegrees;  // a count of an angle
inline constexpr double kFine = 1e-7;                              // a count of a direction
inline constexpr unsigned char kFilling = 0x5A;

using Packets = std::vector<RangePacket>;

// A packet of lane data (1), range data (2, for a target) or range data of old (0).
inline RangePacket filled(unsigned char type, int t = 1) {
  RangePacket packet(type);
  const std::size_t end = packet.bytes().size() - 1;
  for (std::size_t at = 6; at < end; ++at) packet.u8(at, kFilling);
  packet.channel(255, Bytes(8, kFilling)).time_ms(static_cast<std::uint16_t>(10 * t));
  if (type == 2) packet.target(static_cast<unsigned char>(t), kTargets);
  return packet;
}
inline RangePacket minutes() {
  return filled(1).time_ms(0).channel(0, little(kRangeMinute, 4));
}

// ---- The scene.

inline RangePacket outline(int vehicle) {
  const int count = corners_of(vehicle);
  const std::size_t width = vehicle == 0 ? 2 : 3;
  RangePacket packet(5);
  packet.resize(10).u8(6, static_cast<unsigned char>(vehicle));
  packet.u8(7, static_cast<unsigned char>(count));
  packet.u8(9, static_cast<unsigned char>((vehicle == 0 ? 0 : 0x80) | (count - 1)));
  for (int i = 0; i < count; ++i) {
    const Corner raw = raw_corner(vehicle, i);
    packet.append(little(raw.ahead, width)).append(little(raw.right, width));
  }
  return packet;
}

inline RangePacket sensors() {
  RangePacket packet(6);
  packet.resize(10).u8(6, 0).u8(7, kSensors);
  packet.u8(9, 0xC0 | (kSensors - 1));  // three bytes, ten numbers
  for (int i = 0; i < kSensors; ++i) {
    for (int what = kLon; what <= kRangeMax; ++what) packet.append(little(raw_sensor(what, i), 3));
    packet.append(little(static_cast<std::int64_t>(sensor_name(i)), 8));
  }
  return packet;
}

inline RangePacket& put_millimetres(RangePacket& packet, std::size_t at, const Vector& place) {
  packet.i32(at, static_cast<int>(std::lround(place.x * 1000)));
  return packet.i32(at + 4, static_cast<int>(std::lround(place.y * 1000)));
}
inline std::int16_t hundredths(double number) {
  return static_cast<std::int16_t>(std::lround(number * 100));
}

// Where the left corners of the nearest points stand, by kind.
inline constexpr std::size_t kLeftAt[] = {58, 64, 66, 68};

inline RangePacket measured(int t) {
  const Pose hunter = pose_of(0);
  const Pose target = pose_of(t);
  RangePacket packet = filled(2, t);
  put_millimetres(packet, 8, {lat(t), lon(t)});
  packet.i16(16, hundredths(lat_rate(t))).i16(18, hundredths(lon_rate(t)));
  put_millimetres(packet, 20, hunter_point(t));
  put_millimetres(packet, 28, target_point(t));
  packet.u16(36, static_cast<std::uint16_t>(hunter.heading));
  packet.u16(38, static_cast<std::uint16_t>(target.heading));
  packet.i16(50, hundredths(forward_speed(t)));
  packet.i16(54, hundredths(lat_change(t))).i16(56, hundredths(lon_change(t)));
  for (int kind = 0; kind < 4; ++kind) {
    packet.u8(kLeftAt[kind], static_cast<unsigned char>(left_of(t, kind)));
    packet.u8(kLeftAt[kind] + 1, static_cast<unsigned char>(left_of(t, kind) + 1));
    packet.u8(70U + static_cast<unsigned int>(kind), static_cast<unsigned char>(share_of(t, kind)));
  }
  packet.i32(74, hunter.x).i32(78, hunter.y).i32(82, target.x).i32(86, target.y);
  put_millimetres(packet, 90, hunter_unit());
  put_millimetres(packet, 98, target_unit(t));
  const int angles[] = {hunter.pitch, hunter.roll, target.pitch, target.roll};
  for (std::size_t k = 0; k < 4; ++k) {
    packet.i16(106 + 2 * k, static_cast<std::int16_t>(angles[k]));
  }
  for (int i = 0; i < kSensors; ++i) {
    packet.append(little(seen_distance(t, i), 4));
    packet.append({static_cast<unsigned char>(seen_well(t, i)),
                   static_cast<unsigned char>(seen_share(t, i))});
  }
  return packet;
}

inline Packets scene() {
  Packets packets = {minutes()};
  packets.push_back(filled(2).channel(
      12, Support::join({little(0, 4), little(static_cast<int>(kReference * 1e7), 4)})));
  for (int vehicle = 0; vehicle <= kTargets; ++vehicle) packets.push_back(outline(vehicle));
  packets.push_back(sensors());
  for (int t = 1; t <= kTargets; ++t) packets.push_back(measured(t));
  return packets;
}

// The numbers of members, which do not reach far.
inline Packets members() {
  Packets packets = {minutes()};
  for (int t = 1; t <= kTargets; ++t) {
    const auto plane = static_cast<unsigned char>(t % 2);
    packets.push_back(
        filled(2, t).u8(40, static_cast<unsigned char>(t - 1)).channel(7, {0, 0, plane}));
  }
  return packets;
}
inline Packets firmware() {
  return {minutes(), filled(2).channel(1, Support::bytes_of("190305ab"))};
}
// Of old the mode is in the top two bits.
inline Packets old_mode() {
  return {minutes(), filled(0).u8(36, 2 << 6 | 21)};
}

// ---- Where navigation packets come from.

// Four characters in one number, the first lowest.
inline constexpr unsigned int characters(std::string_view text) {
  unsigned int number = 0;
  for (std::size_t k = 4; k-- > 0;) number = number << 8 | static_cast<unsigned char>(text[k]);
  return number;
}
// The addresses of the hunter (0) and the targets, 10.1.7.20 and on.
inline unsigned int address_of(int vehicle) {
  return 0x1407010AU + (static_cast<unsigned int>(vehicle) << 24);
}
inline unsigned int key_of(int vehicle) {
  constexpr const char* kKeys[] = {"hunt", "tgt1", "tgt2", "tgt3", "tgt4"};
  return characters(kKeys[vehicle]);
}
inline Packets told_by(unsigned int (*hunter)(int), unsigned int (*target)(int)) {
  Packets packets = {minutes()};
  for (int t = 1; t <= kTargets; ++t) {
    packets.push_back(filled(2, t).channel(9, addresses(hunter(0), target(t))));
  }
  return packets;
}
inline Packets by_address() {
  return told_by(address_of, address_of);
}
inline Packets by_key() {
  return told_by(key_of, key_of);
}
// Targets 1 to 4 by an address, a key, nothing and an address; the hunter by a key.
inline Packets by_each_way() {
  return told_by(key_of, [](int t) { return t == 2 ? key_of(t) : t == 3 ? 0 : address_of(t); });
}
// Wrapped packets of the hunter and of targets 4, 3, 2 and 1, which take places 0 to 4 in turn.
inline Packets wrapped_by_address() {
  Packets packets = {minutes()};
  for (const int vehicle : {0, 4, 3, 2, 1}) {
    packets.push_back(RangePacket(3).append(little(address_of(vehicle), 4)).append(Bytes(73)));
  }
  Packets told = by_address();
  packets.insert(packets.end(), told.begin(), told.end());
  return packets;
}

// ---- Time: lane and range data at 5.250 s of the minute, then lane data at 5.260 s and each
// second thereafter. The range data tells the minute, so that the packet behind it is the first to
// have a time.
inline Packets timed() {
  Packets packets = {filled(1).time_ms(5250),
                     filled(2).time_ms(5250).channel(0, little(kRangeMinute, 4))};
  for (const int ms : {5260, 6260, 7260, 8260}) {
    packets.push_back(filled(1).time_ms(static_cast<std::uint16_t>(ms)));
  }
  return packets;
}

}  // namespace Trel::Sto::Test
