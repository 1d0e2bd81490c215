// The codec under test, and the packets that most tests feed it.
//
// What both families must do is tested by programs built twice, with and without TREL_TEST_MCOM.
#pragma once

#include <initializer_list>
#include <vector>

#include "nav/Nav_MComRx.h"
#include "nav/Nav_NComRx.h"
#include "support/Support_NavPacket.h"

namespace Trel::Nav {

#ifdef TREL_TEST_MCOM
using CodecUnderTest = MComCodec;
using Packet = Support::MComPacket;
inline constexpr Family kFamily = Family::MCom;
inline constexpr unsigned int kPacketSize = 84;
inline constexpr double kLeverStep = 0.01;  // metres, of lever arms to outputs
#else
using CodecUnderTest = NComCodec;
using Packet = Support::NComPacket;
inline constexpr Family kFamily = Family::NCom;
inline constexpr unsigned int kPacketSize = 72;
inline constexpr double kLeverStep = 0.001;
#endif
inline constexpr bool kComputesJerk = kFamily == Family::NCom;

// A minute of 2023, counted from GPS time zero, and its start in nanoseconds.
inline constexpr int kMinute = 23'011'200;
inline constexpr long long kStart = kMinute * 60'000'000'000LL;
inline constexpr long long kMilli = 1'000'000;

inline constexpr double kDegrees = 57.29577951308232;  // of a radian

[[nodiscard]] constexpr long long at_ms(long long milliseconds) {
  return kStart + milliseconds * kMilli;
}

// With a way to what a stream has no business with.
class TestCodec : public CodecUnderTest {
 public:
  using CodecUnderTest::CodecUnderTest;
  using ComBase::data_;
  using ComBase::prescan_;

  int take(const Packet& packet) { return DecodeBasic(packet.bytes().data(), true); }
  void take(std::initializer_list<Packet> packets) {
    for (const Packet& packet : packets) take(packet);
  }
  // One key on, with what it needs, and no other.
  template <class Let>
  void want_only(Let let) {
    Key().Reset(false);
    let(Key().KMain());
    Key().PropagateKeyOr();
  }
};

// A packet of a status, timed in milliseconds of its minute.
[[nodiscard]] inline Packet packet_of(unsigned char status, unsigned short time) {
  // A channel that nothing has, so that the zeros of a fresh packet are no minutes.
  return Packet().status(status).time_ms(time).channel(86, {});
}
[[nodiscard]] inline Packet locked(unsigned short time) {
  return packet_of(4, time);
}

// One byte of a number that stands lowest byte first.
[[nodiscard]] constexpr unsigned char byte_of(int number, int index) {
  return static_cast<unsigned char>(static_cast<unsigned int>(number) >> (8 * index));
}

// Channel 0: the minutes, and nothing else known.
[[nodiscard]] inline Packet with_minutes(Packet packet, int minutes = kMinute) {
  return packet.channel(0, {byte_of(minutes, 0), byte_of(minutes, 1), byte_of(minutes, 2),
                            byte_of(minutes, 3), 255, 255, 255, 255});
}

// The Nano after each packet; 0 for an untimed one.
template <class Packets>
[[nodiscard]] std::vector<long long> times_of(TestCodec& codec, const Packets& packets) {
  std::vector<long long> times;
  for (const Packet& packet : packets) {
    codec.take(packet);
    times.push_back(codec.CData().IsNanoValid() ? codec.CData().GetNano() : 0);
  }
  return times;
}

// The same in a second pass, behind a prescan over all of them.
template <class Packets>
[[nodiscard]] std::vector<long long> times_of_second_pass(const Packets& packets) {
  TestCodec codec(true);
  for (const Packet& packet : packets) {
    if (codec.take(packet) == 2) break;
  }
  codec.PrescanRewind(true);
  return times_of(codec, packets);
}

}  // namespace Trel::Nav
