#include "trakgen/Trakgen_Range.h"

#include <array>
#include <bit>
#include <string>

#include "support/Support_RangePacket.h"
#include "trakgen/Trakgen_RangeScene.h"
#include "trakgen/Trakgen_Wave.h"

namespace Trel::Trakgen {

namespace {

using Support::Bytes;
using Support::little;
using Support::RangePacket;

constexpr std::int64_t kMillisecond = 1'000'000;
constexpr std::int64_t kMinute = 60'000 * kMillisecond;

constexpr double kMillimetre = 1e-3;
constexpr double kFineStep = 1e-4;  // metres or degrees, of outlines and sensors
constexpr double kCentimetre = 1e-2;
constexpr double kAngle = 1e-2;      // degrees
constexpr double kFineAngle = 1e-7;  // degrees
constexpr double kShare = 4e-3;

constexpr std::int64_t kNone16 = -32768;
constexpr std::int64_t kNone32 = -2'147'483'648;
constexpr std::int64_t kNoneUnsigned16 = 65535;

constexpr std::int64_t kUtcOffset = 18;  // seconds
constexpr unsigned int kStanding = 4;    // the target that is a surveyed point

// All that a packet tells of one moment of the hunter and one target.
struct Moment {
  std::uint64_t index;  // the step
  std::uint64_t rate;   // steps per second
  std::int64_t nano;
  unsigned int target;  // its vehicle
  unsigned int targets;
  Motion hunter;
  Motion other;

  [[nodiscard]] const Vehicle& hunter_built() const { return RangeScene::vehicle(0); }
  [[nodiscard]] const Vehicle& built() const { return RangeScene::vehicle(target); }
  // A counter of so many per second.
  [[nodiscard]] std::int64_t count(std::uint64_t per_second) const {
    return static_cast<std::int64_t>(index * per_second / rate);
  }
};

// A difference of places in the local frame as the hunter sees it: forward, right.
Point seen(const Motion& hunter, Point difference) {
  return turned(difference, -hunter.angle);
}

std::int32_t steps(double value, double step) {
  return static_cast<std::int32_t>(raw_of(value, step, 0));
}

std::int16_t short_steps(double value, double step) {
  return static_cast<std::int16_t>(raw_of(value, step, 0));
}

// Degrees from 0 to 360.
std::uint16_t angle_steps(double heading) {
  return static_cast<std::uint16_t>(raw_of(heading - 360 * std::floor(heading / 360), kAngle, 0));
}

std::uint16_t milliseconds(std::int64_t nano) {
  return static_cast<std::uint16_t>(nano % kMinute / kMillisecond);
}

// The data of a channel: fields of any size, the lowest byte first.
class Fields {
 public:
  Fields& put(std::size_t size, std::int64_t value) {
    const Bytes bytes = little(value, size);
    data_.insert(data_.end(), bytes.begin(), bytes.end());
    return *this;
  }
  Fields& put(std::size_t size, double value, double step) {
    return put(size, raw_of(value, step, 0));
  }
  Fields& real(float value) { return put(4, std::bit_cast<std::int32_t>(value)); }
  // A place in a vehicle, level with its unit.
  Fields& arm(Point place) {
    return put(3, place.x, kMillimetre).put(3, place.y, kMillimetre).put(2, 0);
  }
  Fields& size(const Vehicle& built) {
    return put(2, built.length, kMillimetre)
        .put(2, built.width, kMillimetre)
        .put(2, built.height, kMillimetre)
        .put(2, built.outline_number);
  }

  operator const Bytes&() const { return data_; }

 private:
  Bytes data_;
};

// ---- Channels

Bytes minutes_modes_and_latency(const Moment& m) {
  constexpr std::int64_t kMode = 6;
  return Fields().put(4, m.nano / kMinute).put(1, kMode).put(1, kMode).put(2, 3e-3, kMillimetre);
}

Bytes lane_minutes(const Moment& m) {
  return Fields().put(4, m.nano / kMinute);
}

// Six digits of a date, then what tells one build of that day from the other.
Bytes device(const Moment&) {
  return Support::bytes_of("240311.2");
}

Bytes map_number(const Moment&) {
  return Fields().put(2, 17);
}

Bytes from_target(const Moment& m) {
  return Fields().put(2, m.count(7200)).put(2, m.count(100)).put(2, m.count(2));
}

Bytes from_hunter(const Moment& m) {
  return Fields().put(2, m.count(14'400)).put(2, m.count(200)).put(2, m.count(1));
}

Bytes hunter_latency_and_offsets(const Moment&) {
  return Fields().put(2, 2e-3, kMillimetre).put(2, 0).put(2, 0);
}

Bytes versions(const Moment&) {
  return Fields().put(1, 2).put(1, 1).put(1, 0).put(3, 24'031);
}

Bytes utc_and_load(const Moment&) {
  constexpr double kLoad = 34.4;
  return Fields().put(2, kUtcOffset).put(1, 0).put(1, 0).put(2, 0).put(1, 0).put(1, kLoad, 0.4);
}

// The surveyed point that the standing target is; the others are none.
Bytes point_position(const Moment& m) {
  if (m.target != kStanding) return Fields().put(4, kNone32).put(4, kNone32);
  const Sample s = RangeScene::sample(m.target, m.index, m.rate);
  return Fields().put(4, s.latitude, kFineAngle).put(4, s.longitude, kFineAngle);
}

Bytes point_altitude_and_heading(const Moment& m) {
  if (m.target != kStanding) return Fields().put(4, kNone32).put(2, kNoneUnsigned16);
  const Sample s = RangeScene::sample(m.target, m.index, m.rate);
  return Fields().put(4, s.altitude, kMillimetre).put(2, angle_steps(s.heading));
}

Bytes addresses(const Moment& m) {
  return Fields().put(4, unit_address(RangeScene::kHunter)).put(4, unit_address(m.target));
}

Bytes reference_position(const Moment&) {
  return Fields()
      .put(4, RangeScene::kLatitude, kFineAngle)
      .put(4, RangeScene::kLongitude, kFineAngle);
}

Bytes reference_altitude_and_heading(const Moment&) {
  return Fields()
      .put(4, RangeScene::kAltitude, kMillimetre)
      .put(4, RangeScene::kHeading, kFineAngle);
}

Bytes hunter_arm(const Moment& m) {
  return Fields().arm(m.hunter_built().measure);
}

Bytes target_arm(const Moment& m) {
  return Fields().arm(m.built().measure);
}

Bytes commands(const Moment& m) {
  return Fields().put(2, m.count(20)).put(2, m.count(1)).put(2, 0).put(2, 0);
}

Bytes accuracy(const Moment&) {
  return Fields()
      .put(2, 0.020, kMillimetre)
      .put(2, 0.015, kMillimetre)
      .put(2, 0.030, kMillimetre)
      .put(2, 0.025, kMillimetre);
}

Bytes target_size(const Moment& m) {
  return Fields().size(m.built());
}

Bytes hunter_size(const Moment& m) {
  return Fields().size(m.hunter_built());
}

Bytes acceleration_filter(const Moment&) {
  return Fields().real(10.0F).real(0.7F);
}

Bytes extrapolation_filter(const Moment&) {
  return Fields().real(4.0F).real(0.9F);
}

// The points A, B and C of the hunter: where it measures, and its front corners.
Point lane_point(unsigned int which) {
  const Vehicle& built = RangeScene::vehicle(RangeScene::kHunter);
  return which == 0 ? built.measure : built.outline_origin + built.outline[which - 1];
}

template <unsigned int which>
Bytes lane_arm(const Moment&) {
  return Fields().arm(lane_point(which));
}

struct Channel {
  unsigned char number;
  Bytes (*data)(const Moment&);
};

constexpr Channel kRangeChannels[] = {
    {5, hunter_latency_and_offsets},
    {6, versions},
    {8, point_position},
    {9, addresses},
    {10, point_altitude_and_heading},
    {11, reference_position},
    {12, reference_altitude_and_heading},
    {13, hunter_arm},
    {14, target_arm},
    {15, commands},
    {16, accuracy},
    {17, target_size},
    {18, acceleration_filter},
    {19, extrapolation_filter},
    {20, point_position},
    {21, point_altitude_and_heading},
    {22, hunter_size},
    {0, minutes_modes_and_latency},
    {7, utc_and_load},
    {1, device},
    {3, from_target},
    {4, from_hunter},
};

constexpr Channel kLaneChannels[] = {
    {1, device},       {2, map_number}, {6, versions},     {8, lane_arm<0>},  {9, lane_arm<1>},
    {10, lane_arm<2>}, {15, commands},  {0, lane_minutes}, {7, utc_and_load},
};

template <std::size_t count>
void add_channel(RangePacket& packet, const Channel (&cycle)[count], const Moment& m) {
  const Channel& channel = cycle[m.index % count];
  packet.channel(channel.number, channel.data(m));
}

// ---- Sensors

// What the hunter looks with; its place counts from the origin of the outline.
struct Sensor {
  Point place;
  double height;
  double heading;
  double horizontal;  // field of view
  double vertical;
  double nearest;
  double farthest;
  std::int64_t id;
};

constexpr Sensor kSensors[] = {
    {{3.1, 0}, -0.4, 0, 40, 10, 1, 150, 1001},
    {{-0.9, 0.8}, -0.9, 120, 80, 50, 0.5, 30, 1002},
};

struct Sight {
  double distance;
  double share;  // of the horizontal field of view; 0: out of sight
};

Sight sight(const Sensor& sensor, const Moment& m) {
  const Point eye = RangeScene::place(m.hunter, m.hunter_built().outline_origin + sensor.place);
  const double distance = RangeScene::nearest(m.target, m.other, eye).distance;
  const auto angle_of = [&](Point place) {
    const Point to = turned(place - eye, -m.hunter.angle - sensor.heading);
    return 360 * direction(to.x, to.y);
  };
  const double edge = sensor.horizontal / 2;
  const bool ahead = std::abs(angle_of(m.other.position)) < 90;
  if (!ahead || distance < sensor.nearest || distance > sensor.farthest) return {distance, 0};
  double left = edge;
  double right = -edge;
  for (std::size_t k = 0; k < m.built().outline.size(); ++k) {
    const double angle = angle_of(RangeScene::corner(m.target, m.other, k));
    left = std::min(left, std::max(angle, -edge));
    right = std::max(right, std::min(angle, edge));
  }
  return {distance, std::max(0.0, right - left) / sensor.horizontal};
}

RangePacket sensor_packet() {
  constexpr unsigned char kThreeBytes = 0x80;
  constexpr unsigned char kTenValues = 0x40;
  Fields fields;
  fields.put(1, 0)
      .put(1, std::int64_t{std::size(kSensors)})
      .put(1, 0)
      .put(1, kThreeBytes | kTenValues | (std::size(kSensors) - 1));
  for (const Sensor& one : kSensors) {
    for (const double value : {one.place.x, one.place.y, one.height, one.heading, 0.0, 0.0,
                               one.horizontal, one.vertical, one.nearest, one.farthest}) {
      fields.put(3, value, kFineStep);
    }
    fields.put(8, one.id);
  }
  return RangePacket(6).resize(6).append(fields);
}

// ---- Packets

// An outline: the hunter's in fine steps, that of a target in coarse ones.
RangePacket polygon_packet(unsigned int vehicle) {
  const bool fine = vehicle == RangeScene::kHunter;
  const auto outline = RangeScene::vehicle(vehicle).outline;
  Fields fields;
  fields.put(1, vehicle)
      .put(1, static_cast<std::int64_t>(outline.size()))
      .put(1, 0)
      .put(1, static_cast<std::int64_t>((fine ? 0x80U : 0U) | (outline.size() - 1)));
  for (const Point& corner : outline) {
    const double step = fine ? kFineStep : kMillimetre;
    fields.put(fine ? 3 : 2, corner.x, step).put(fine ? 3 : 2, corner.y, step);
  }
  return RangePacket(5).resize(6).append(fields);
}

RangePacket lane_packet(const Moment& m) {
  static constexpr double kLines[] = {-5.25, -1.75, 1.75, 5.25};
  constexpr std::size_t kLineNumbers[] = {6, 7, 44, 45, 46, 47};
  constexpr std::size_t kAllLines = 8;
  const Motion start = RangeScene::motion(RangeScene::kHunter, 0);
  const Point driven = seen(m.hunter, m.hunter.position - start.position);
  // From a line to one of the points, to the right: the hunter drives along the lines.
  const auto lateral = [](std::size_t line, unsigned int point) {
    return short_steps(lane_point(point).y - kLines[line], kMillimetre);
  };
  RangePacket packet(1);
  packet.time_ms(milliseconds(m.nano)).i32(8, steps(driven.x + lane_point(0).x, kMillimetre));
  for (std::size_t i = 0; i < std::size(kLineNumbers); ++i) {
    packet.u8(kLineNumbers[i], static_cast<unsigned char>(2 + i % 2));
  }
  packet.i16(12, lateral(1, 0))
      .i16(18, lateral(2, 0))
      .i16(40, lateral(1, 1))
      .i16(42, lateral(2, 2));
  for (std::size_t line = 0; line < kAllLines; ++line) {
    const bool drawn = line < std::size(kLines);
    const std::int16_t straight = drawn ? 0 : kNone16;
    packet.i16(24 + 2 * line, drawn ? lateral(line, 0) : std::int16_t{kNone16})
        .i16(58 + 2 * line, straight)
        .i16(74 + 2 * line, drawn ? lateral(line, 1) : std::int16_t{kNone16})
        .i16(90 + 2 * line, drawn ? lateral(line, 2) : std::int16_t{kNone16})
        .i16(106 + 2 * line, straight);
  }
  add_channel(packet, kLaneChannels, m);
  return packet;
}

void add_place(RangePacket& packet, std::size_t offset, Point place) {
  packet.i32(offset, steps(place.x, kMillimetre)).i32(offset + 4, steps(place.y, kMillimetre));
}

void add_nearest(RangePacket& packet, std::size_t offset, std::size_t share_at,
                 const Nearest& nearest) {
  packet.u8(offset, static_cast<unsigned char>(nearest.left))
      .u8(offset + 1, static_cast<unsigned char>(nearest.right))
      .u8(share_at, static_cast<unsigned char>(steps(nearest.share, kShare)));
}

void add_sensors(RangePacket& packet, const Moment& m) {
  constexpr double kPercent = 1e-2;
  Fields fields;
  bool visible = false;
  for (const Sensor& sensor : kSensors) {
    const Sight one = sight(sensor, m);
    visible = visible || one.share > 0;
    fields.put(4, one.distance, kMillimetre)
        .put(1, one.share > 0 ? 100 : 0)
        .put(1, one.share, kPercent);
  }
  packet.u8(60, visible ? 100 : 0).append(fields);
}

RangePacket target_packet(const Moment& m) {
  constexpr unsigned char kMode = 1;
  const unsigned int hunter = RangeScene::kHunter;
  const Point from = RangeScene::place(m.hunter, m.hunter_built().measure);
  const Point to = RangeScene::place(m.other, m.built().measure);
  const Point range = seen(m.hunter, to - from);
  const Point rate = seen(m.hunter, m.other.velocity - m.hunter.velocity);
  const Point acceleration = seen(m.hunter, m.other.acceleration - m.hunter.acceleration);

  RangePacket packet(2);
  packet.time_ms(milliseconds(m.nano))
      .target(static_cast<unsigned char>(m.target), static_cast<unsigned char>(m.targets))
      .i32(8, steps(range.y, kMillimetre))
      .i32(12, steps(range.x, kMillimetre))
      .i16(16, short_steps(rate.y, kCentimetre))
      .i16(18, short_steps(rate.x, kCentimetre))
      .u16(36, angle_steps(RangeScene::kHeading + m.hunter.angle))
      .u16(38, angle_steps(RangeScene::kHeading + m.other.angle))
      .u8(40, kMode)
      .i16(50, short_steps(m.hunter.speed, kCentimetre))
      .i16(54, short_steps(acceleration.y, kCentimetre))
      .i16(56, short_steps(acceleration.x, kCentimetre));
  add_place(packet, 20, from);
  add_place(packet, 28, to);
  add_nearest(packet, 58, 70, RangeScene::nearest(m.target, m.other, from));
  add_nearest(packet, 64, 71, RangeScene::nearest(hunter, m.hunter, to));
  add_nearest(packet, 66, 72, RangeScene::nearest(m.target, m.other, hunter, m.hunter));
  add_nearest(packet, 68, 73, RangeScene::nearest(hunter, m.hunter, m.target, m.other));
  add_place(packet, 74, RangeScene::place(m.hunter, m.hunter_built().outline_origin));
  add_place(packet, 82, RangeScene::place(m.other, m.built().outline_origin));
  add_place(packet, 90, m.hunter.position);
  add_place(packet, 98, m.other.position);
  add_sensors(packet, m);
  add_channel(packet, kRangeChannels, m);
  return packet;
}

class RangeShape : public StreamShape {
 public:
  RangeShape(unsigned int targets, std::uint32_t first_ncom)
      : targets_(targets), first_ncom_(first_ncom) {}

  void describe(Support::RecordingStream& stream) const override {
    const auto serial = [this](unsigned int vehicle) {
      return std::to_string(first_ncom_ + vehicle);
    };
    std::string sources = "0";
    std::string indices;
    Support::RecordingStream::Items items = {{"WhoAmI", "Range"},
                                             {"Hunter.XCom.Serial", serial(0)},
                                             {"Codec.NCom.Index.0.XCom.Serial", serial(0)}};
    for (unsigned int i = 0; i < targets_; ++i) {
      const std::string index = std::to_string(i);
      const std::string source = std::to_string(i + 1);
      items.emplace_back("Target.Index." + index + ".XCom.Serial", serial(i + 1));
      items.emplace_back("Codec.NCom.Index." + source + ".XCom.Serial", serial(i + 1));
      indices += (i == 0 ? "" : " ") + index;
      sources += ' ' + source;
    }
    items.emplace_back("Target.Indices", indices);
    items.emplace_back("Codec.NCom.Indices", sources);
    stream.codec("RCom").range(items);
  }

  void packets(std::uint64_t index, std::uint64_t rate, const Sample& sample,
               const PacketSink& sink) const override {
    const double seconds = static_cast<double>(index) / static_cast<double>(rate);
    Moment moment{index, rate, sample.nano, 1, targets_, RangeScene::motion(0, seconds), {}};
    sink(lane_packet(moment).xcom_bytes());
    for (; moment.target <= targets_; ++moment.target) {
      moment.other = RangeScene::motion(moment.target, seconds);
      sink(target_packet(moment).xcom_bytes());
    }
    // The slow ones, each once a second, at steps of their own.
    const std::uint64_t first = rate * 2 / 5;
    const std::uint64_t turn = index % rate;
    if (turn == first) sink(sensor_packet().xcom_bytes());
    if (turn > first && turn - first <= targets_ + 1) {
      sink(polygon_packet(static_cast<unsigned int>(turn - first - 1)).xcom_bytes());
    }
  }

 private:
  unsigned int targets_;
  std::uint32_t first_ncom_;
};

}  // namespace

std::unique_ptr<StreamShape> make_range_shape(unsigned int targets, std::uint32_t first_ncom) {
  return std::make_unique<RangeShape>(targets, first_ncom);
}

Support::RecordingStream::Items range_role(unsigned int vehicle, std::uint32_t rcom) {
  const std::string serial = std::to_string(rcom);
  const bool hunts = vehicle == RangeScene::kHunter;
  return {{"WhoAmI", hunts ? "Hunter" : "Target " + std::to_string(vehicle)},
          {"Codec.RCom.XCom.Serial", serial},
          {"Range.XCom.Serial", serial}};
}

std::uint32_t unit_address(unsigned int vehicle) {
  constexpr std::uint32_t kNetwork = 192 | 168U << 8 | 1U << 16;
  return kNetwork | (10 + vehicle) << 24;
}

Bytes wrapped_packet(unsigned int vehicle, std::span<const unsigned char> packet) {
  constexpr unsigned char kByNetwork = 0;
  return Support::range_packet(unit_address(vehicle), kByNetwork,
                               {Bytes(packet.begin(), packet.end())});
}

}  // namespace Trel::Trakgen
