// The packets behind the names that do not stand in one field of one channel: short drives of a
// unit, each in an attitude and at speeds whose outputs are worked out by hand.
//
// P is the packet, Support::NComPacket or Support::MComPacket. Drives begin at the start of
// kMinute, with a packet that tells the minute; the next one is the first that has a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "Elements.h"
#include "support/Support_NavPacket.h"

namespace Trel::Sto::Test {

inline constexpr long long kMinute = 23'011'200;  // of 2023, from GPS time zero
inline constexpr long long kMinuteStart = kMinute * 60'000'000'000;

// The earth on the equator, at sea level.
inline constexpr double kGravity = 9.780318;       // m/s2
inline constexpr double kEarthRate = 7.292115e-5;  // rad/s
inline constexpr double kMeridianRadius = 6335439.327292843;
inline constexpr double kTransverseRadius = 6378137.0;

inline constexpr double kAtan43 = 0.9272952180016122;  // atan(4 / 3)
inline constexpr double kAtan125 = 1.176005207095135;  // atan(12 / 5)
inline constexpr double kRoot3 = 1.7320508075688772;   // sqrt(3)
// Of 3 m/s to the north and 4 to the east, known to 0.3 and 0.4: sqrt(0.3² 4² + 0.4² 3²) / 5², and
// beside a heading that is known to 0.01.
inline constexpr double kTrackAcc = 0.06788225099390856;
inline constexpr double kSlipAcc = 0.06861486719363377;  // sqrt(kTrackAcc² + 0.01²)

// Quarter and half turns, in the packets' steps of a microradian.
inline constexpr double kQuarter = 1.570796;
inline constexpr double kHalf = 3.141593;

// A channel's eight bytes: fields of up to eight bytes, lowest first, at their places.
class Eight {
 public:
  Eight& put(std::size_t at, std::size_t size, long long raw) {
    for (std::size_t k = 0; k < size; ++k) {
      bytes_.at(at + k) = static_cast<unsigned char>(raw >> (8 * k) & 0xFF);
    }
    return *this;
  }
  // Three fields of two bytes.
  Eight& three(long long x, long long y, long long z) {
    return put(0, 2, x).put(2, 2, y).put(4, 2, z);
  }
  operator std::array<unsigned char, 8>() const { return bytes_; }

 private:
  std::array<unsigned char, 8> bytes_{};
};

// A packet of a locked unit, without a channel that anyone reads.
template <class P>
P locked(int milliseconds) {
  P packet;
  packet.status(4).time_ms(static_cast<std::uint16_t>(milliseconds)).channel(86, {});
  // All is well with the receivers.
  if constexpr (std::is_same_v<P, Support::MComPacket>) packet.status_bits(2 | 4);
  return packet;
}
template <class P>
P with_minute(P packet) {
  return packet.channel(0, Eight().put(0, 4, kMinute));
}

// What an edge's channel holds: `fine` counts 4000 ns.
inline Eight edge(int milliseconds, int fine) {
  return Eight().put(0, 4, kMinute).put(4, 2, milliseconds).put(6, 1, fine).put(7, 1, 1);
}

template <class P>
struct Drives {
  using Packets = std::vector<P>;

  // `count` packets every `step` milliseconds, each as `move(packet, k)` makes it. The first tells
  // the minute.
  template <class Move>
  static Packets drive(int count, int start, int step, Move move) {
    Packets packets;
    for (int k = 0; k < count; ++k) {
      P packet = locked<P>(start + k * step);
      move(packet, k);
      packets.push_back(k == 0 ? with_minute(packet) : packet);
    }
    return packets;
  }
  // One channel, behind the packet that tells the minute.
  static Packets channel(int number, const Eight& data) {
    return drive(2, 0, 10, [&](P& packet, int k) {
      if (k == 1) packet.channel(static_cast<unsigned char>(number), data);
    });
  }

  static Packets standing() {
    return drive(3, 0, 10, [](P& packet, int) {
      if constexpr (std::is_same_v<P, Support::MComPacket>) {
        packet.counter(4321).raw_heave(-50, 0);  // -0.1 m, in steps of 2 mm
      }
    });
  }
  static Packets newer_firmware() {
    return drive(3, 0, 10, [](P& packet, int k) {
      if (k == 1) packet.channel(19, Eight().put(0, 8, 0x6261353033303931));  // "190305ab"
      if (k == 2) packet.channel(58, Eight().put(7, 1, ~(0x80 | 4)));
    });
  }
  static Packets lags() {
    return drive(3, 0, 10, [](P& packet, int k) {
      if (k > 0) packet.channel(23, Eight().put(0, 2, k == 1 ? 600 : 700));
    });
  }
  static Packets wheel() {
    return drive(4, 950, 50, [](P& packet, int k) {
      if (k == 1) packet.channel(44, Eight().put(0, 2, 500));
      if (k == 2) packet.channel(45, Eight().put(0, 4, 1000).put(4, 2, 1000));
      if (k == 3) packet.channel(45, Eight().put(0, 4, 1010).put(4, 2, 1050));
    });
  }

  // With a heading of 0.523599 rad, level, turning right by 0.25 rad/s.
  static Packets travelling() {
    return drive(12, 250, 100, [](P& packet, int k) {
      packet.position(0.9, -0.1, 123.5F).velocity(3, 4, -12);
      packet.attitude(0.523599, 0, 0).angular_rate(0, 0, 0.25);
      if (k == 1) packet.channel(4, Eight().three(300, 400, 1200));  // mm/s
      if (k == 2) packet.channel(5, Eight().three(1000, 1000, 1000));
    });
  }
  static Packets steady() {
    return drive(102, 0, 10, [](P&, int) {});
  }
  static Packets climbing() {
    return drive(3, 0, 10, [](P& packet, int k) {
      packet.velocity(3, 4, -12);
      if (k == 1) packet.channel(4, Eight().three(3, 4, 0));
    });
  }

  static Packets at_attitude(double heading, double pitch, double roll) {
    return drive(2, 0, 10, [&](P& packet, int) { packet.attitude(heading, pitch, roll); });
  }
  static Packets attitude() { return at_attitude(1.0, 0.1, -0.2); }
  static Packets attitude_level() { return at_attitude(1.0, 0, 0); }
  static Packets leaning_east() { return at_attitude(kQuarter, 0, 0.5); }
  static Packets rising_east() { return at_attitude(kQuarter, 0.5, 0); }

  // Heading south, the right side down.
  static Packets lying_moving() {
    return drive(2, 0, 10,
                 [](P& packet, int) { packet.attitude(kHalf, 0, kQuarter).velocity(-10, 3, -1); });
  }
  static Packets lying() {
    return drive(8, 0, 100, [](P& packet, int k) {
      packet.attitude(kHalf, 0, kQuarter);
      packet.acceleration(2, -12.7803, 1).angular_rate(0.2, -0.3, 0.1);
      if (k == 1) packet.channel(74, low_pass());
    });
  }
  static Packets lying_ramps() {
    return drive(20, 0, 100, [](P& packet, int k) {
      packet.attitude(kHalf, 0, kQuarter);
      packet.acceleration(k * 0.1, k * -0.2, k * 0.3);
      packet.angular_rate(k * 0.02, k * 0.03, k * -0.01);
      if (k == 1) packet.channel(63, low_pass());
      // A Butterworth filter (1) of fourth order at 2.5 Hz, and an average over 0.3 s.
      if (k == 2) packet.channel(87, Eight().put(0, 1, 0x41).put(1, 4, 0x40200000).put(5, 3, 300));
    });
  }

  // The angle `index` of heading, pitch, roll is 0.5 rad, from the vehicle 0.1, of the surface 0.2.
  static Packets turned(std::size_t index) {
    return drive(4, 0, 10, [&](P& packet, int k) {
      const auto angle = [&](std::size_t of) { return of == index ? 0.5 : 0.0; };
      packet.attitude(angle(0), angle(1), angle(2));
      if (k == 1) packet.channel(58, Eight().put(2 * index, 2, 1000));
      if (k == 2) packet.channel(60, Eight().put(2 * index, 2, 2000));
    });
  }
  static Packets turned_heading() { return turned(0); }
  static Packets turned_pitch() { return turned(1); }
  static Packets turned_roll() { return turned(2); }

  // The origin in steps of a ten-millionth of a degree and of millimetres.
  static Packets frame_at(long long latitude) {
    return drive(4, 0, 10, [&](P& packet, int k) {
      packet.position(1e-5, 1 / kDegrees + 2e-5, 0).velocity(3, 4, 0).attitude(1.0, 0, 0);
      if (k == 1) packet.channel(66, Eight().put(0, 4, latitude).put(4, 4, 10'000'000));
      if (k == 2) packet.channel(67, Eight().put(0, 4, 1500).put(4, 4, 300'000'000));
    });
  }
  static Packets local_frame() { return frame_at(0); }
  static Packets high_frame() { return frame_at(511'234'567); }

  // A point 2 m in front, told by `number`.
  static Packets point(int number) {
    constexpr int kArm = std::is_same_v<P, Support::MComPacket> ? 200 : 2000;
    return drive(5, 0, 10, [&](P& packet, int k) {
      packet.attitude(kQuarter, 0, 0).velocity(4, 4, -12).angular_rate(0, 0, 0.5);
      if (k == 1) packet.channel(16, {});  // the unit's axes are the vehicle's
      if (k == 2) packet.channel(static_cast<unsigned char>(number), Eight().put(0, 2, kArm));
      if (k == 3) packet.channel(4, Eight().three(3, 4, 0));
    });
  }

 private:
  // 2.5 Hz, damped by 0.75.
  static Eight low_pass() { return Eight().put(0, 4, 0x40200000).put(4, 4, 0x3F400000); }
};

}  // namespace Trel::Sto::Test
