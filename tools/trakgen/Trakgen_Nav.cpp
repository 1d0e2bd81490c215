#include "trakgen/Trakgen_Nav.h"

#include <array>

#include "support/Support_NavPacket.h"
#include "trakgen/Trakgen_Wave.h"

namespace Trel::Trakgen {

namespace {

using Support::MComPacket;
using Support::NComPacket;
using ChannelData = std::array<unsigned char, 8>;

constexpr std::size_t kPrefix = 8;  // what a recording puts ahead of each packet
constexpr std::int64_t kMillisecond = 1'000'000;
constexpr std::int64_t kMinute = 60'000 * kMillisecond;

constexpr unsigned char kNotAvailable = 0xFF;
constexpr unsigned char kUtcOffset = 18;  // seconds
constexpr double kPulsesPerMetre = 100;

enum Status : unsigned char { kInitialising = 2, kLocking = 3, kLocked = 4 };

Status status_at(double seconds) {
  if (seconds < 3) return kInitialising;
  return seconds < 7 ? kLocking : kLocked;
}

double radians(double degrees) {
  return degrees * kPi / 180;
}

std::uint16_t milliseconds(const Sample& sample) {
  return static_cast<std::uint16_t>(sample.nano % kMinute / kMillisecond);
}

// The eight bytes of a channel, from fields of any size, the lowest byte first.
class Fields {
 public:
  Fields& put(std::size_t size, std::int64_t value) {
    for (std::size_t i = 0; i < size; ++i) {
      data_.at(at_++) = static_cast<unsigned char>(static_cast<std::uint64_t>(value) >> 8 * i);
    }
    return *this;
  }
  Fields& put16(double value, double step) { return put(2, raw_of(value, step, 0)); }
  Fields& put8(double value) { return put(1, static_cast<std::int64_t>(value)); }
  // Three fields of two bytes.
  Fields& triple(double x, double y, double z, double step) {
    return put16(x, step).put16(y, step).put16(z, step);
  }
  // The age of an accuracy or a setting.
  Fields& fresh() { return put(1, 0); }
  Fields& not_available() { return put(1, kNotAvailable); }

  operator ChannelData() const { return data_; }

 private:
  ChannelData data_{};
  std::size_t at_ = 0;
};

ChannelData time_base(const Sample& s) {
  const double attitude_mode = 0;
  return Fields()
      .put(4, s.nano / kMinute)
      .put8(s.satellites)
      .put8(s.mode)
      .put8(s.mode)
      .put8(attitude_mode);
}

ChannelData position_accuracy(const Sample& s) {
  return Fields().triple(s.north_accuracy, s.east_accuracy, 0.5, 1e-3).fresh().not_available();
}

ChannelData velocity_accuracy(const Sample&) {
  return Fields().triple(0.02, 0.02, 0.03, 1e-3).fresh().not_available();
}

ChannelData attitude_accuracy(const Sample&) {
  return Fields().triple(radians(0.1), radians(0.03), radians(0.03), 1e-5).fresh().not_available();
}

ChannelData antenna_position(const Sample&) {
  return Fields().triple(0.45, -0.02, -1.32, 1e-3).fresh();
}

ChannelData mounting_and_utc(const Sample&) {
  return Fields()
      .triple(radians(1.5), radians(0.5), radians(-0.2), 1e-4)
      .fresh()
      .put8(kUtcOffset * 2 + 1);
}

// Six digits of a date, then what tells one build of that day from the other.
ChannelData device(const Sample&) {
  return {'2', '4', '0', '3', '1', '1', '.', '2'};
}

ChannelData differential(const Sample&) {
  return Fields().put16(1.0, 1e-2).put8('0').put8('0').put8('0').put8('7');
}

// Seconds up to three hours, behind that minutes up to a week.
std::int64_t compressed(std::int64_t seconds) {
  return seconds <= 10'800 ? seconds : (seconds + 637'200) / 60;
}

ChannelData statistics(const Sample& s) {
  constexpr std::int64_t kLag = 4;
  return Fields().put(2, kLag).put(2, compressed(s.since_power_on / (1000 * kMillisecond)));
}

ChannelData system_and_serial(const Sample&) {
  return Fields().put8(2).put8(1).put8(0).put(3, 24'031).put(2, 4711);
}

ChannelData wheel_speed(const Sample& s) {
  return Fields()
      .put(4, raw_of(s.distance, 1 / kPulsesPerMetre, 0))
      .put(2, milliseconds(s))
      .not_available();
}

struct Channel {
  unsigned char number;
  ChannelData (*data)(const Sample&);
};

constexpr Channel kChannels[] = {
    {3, position_accuracy},  {4, velocity_accuracy}, {5, attitude_accuracy}, {12, antenna_position},
    {16, mounting_and_utc},  {19, device},           {20, differential},     {23, statistics},
    {30, system_and_serial}, {0, time_base},         {45, wheel_speed},
};

// The swell that a vessel rides: metres, at so many seconds.
double heave_at(double seconds) {
  return 0.9 * sine(seconds / 8) + 0.3 * sine(seconds / 5.3);
}

// What a family's packets have behind the fields that all share.
void add_tail(NComPacket&, std::uint64_t, const Sample&) {}

void add_tail(MComPacket& packet, std::uint64_t index, const Sample& s) {
  constexpr double kDelay = 4;  // seconds, of the delayed heave
  constexpr unsigned char kAllHolds = 0x0E;
  constexpr unsigned char kNoModes = 0x01;
  const double seconds = static_cast<double>(s.since_power_on / kMillisecond) / 1000;
  packet.heave(heave_at(seconds))
      .long_period_heave(heave_at(seconds - kDelay))
      .counter(static_cast<std::uint16_t>(index))
      .status_bits(s.sky_visible ? kAllHolds : kNoModes);
}

template <class Packet>
class NavShape : public StreamShape {
 public:
  explicit NavShape(const char* codec) : codec_(codec) {}

  void describe(Support::RecordingStream& stream) const override { stream.codec(codec_); }

  void packets(std::uint64_t index, std::uint64_t rate, const Sample& sample,
               const PacketSink& sink) const override {
    const Sample& s = sample;
    const double heading = s.heading > 180 ? s.heading - 360 : s.heading;
    const Channel& channel = kChannels[index % std::size(kChannels)];
    Packet packet;
    packet.time_ms(milliseconds(s))
        .status(status_at(static_cast<double>(index) / static_cast<double>(rate)))
        .acceleration(s.acceleration_x, s.acceleration_y, s.acceleration_z)
        .angular_rate(radians(s.rate_x), radians(s.rate_y), radians(s.rate_z))
        .position(radians(s.latitude), radians(s.longitude), static_cast<float>(s.altitude))
        .velocity(s.velocity_north, s.velocity_east, s.velocity_down)
        .attitude(radians(heading), radians(s.pitch), radians(s.roll))
        .channel(channel.number, channel.data(s));
    add_tail(packet, index, s);
    sink(packet.xcom_bytes());
  }

 private:
  const char* codec_;
};

}  // namespace

std::unique_ptr<StreamShape> make_ncom_shape() {
  return std::make_unique<NavShape<NComPacket>>("NCom");
}

std::unique_ptr<StreamShape> make_mcom_shape() {
  return std::make_unique<NavShape<MComPacket>>("MCom");
}

std::span<const unsigned char> bare_packet(std::span<const unsigned char> packet) {
  return packet.subspan(kPrefix);
}

}  // namespace Trel::Trakgen
