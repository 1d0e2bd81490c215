#include "trakgen/Trakgen_UCom.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "support/Support_Dbu.h"
#include "support/Support_Packet.h"
#include "trakgen/Trakgen_Wave.h"

namespace Trel::Trakgen {

namespace {

using Support::Dbu;
using Support::UComPacket;

constexpr std::uint64_t kNano = 1;  // the time signal, first in every message
constexpr std::uint64_t kNanoBits = 64;
constexpr std::uint64_t kWheel = 900;  // what the wheel speeds have in common

struct Signal {
  std::uint64_t message;
  const char* name;
  const char* unit;
  const char* letter;
  std::uint64_t bits;
  const char* measured;
  double scale;
  double offset;
  double Sample::*value;
  std::uint64_t parent = 0;
};

// clang-format off
// message name                     unit     bit type measured scale   offset value
constexpr Signal kSignals[] = {
    {1, "GnssInt1_Latitude",         "deg",   "R", 64, "R64", 1,      0,   &Sample::latitude},
    {1, "GnssInt1_Longitude",        "deg",   "R", 64, "R64", 1,      0,   &Sample::longitude},
    {1, "GnssInt1_Altitude",         "m",     "R", 32, "R32", 1,      0,   &Sample::altitude},
    {1, "GnssInt1_NorthAccuracy",    "m",     "U", 16, "R32", 1e-3,   0,   &Sample::north_accuracy},
    {1, "GnssInt1_EastAccuracy",     "m",     "U", 16, "R32", 1e-3,   0,   &Sample::east_accuracy},
    {2, "VelocityNorth",             "m/s",   "R", 32, "R32", 1,      0,   &Sample::velocity_north},
    {2, "VelocityEast",              "m/s",   "R", 32, "R64", 1,      0,   &Sample::velocity_east},
    {2, "VelocityDown",              "m/s",   "S", 24, "R32", 1e-4,   0,   &Sample::velocity_down},
    {2, "Speed",                     "m/s",   "U", 16, "R32", 1e-2,   0,   &Sample::speed},
    {2, "Distance",                  "m",     "U", 32, "R64", 1e-3,   0,   &Sample::distance},
    {3, "Heading",                   "deg",   "U", 16, "R32", 1e-2,   0,   &Sample::heading},
    {3, "Pitch",                     "deg",   "S", 16, "R32", 1e-2,   0,   &Sample::pitch},
    {3, "Roll",                      "deg",   "S", 16, "R32", 1e-2,   0,   &Sample::roll},
    {3, "AngularRateX",              "deg/s", "S", 24, "R64", 1e-4,   0,   &Sample::rate_x},
    {3, "AngularRateY",              "deg/s", "S", 24, "R64", 1e-4,   0,   &Sample::rate_y},
    {3, "AngularRateZ",              "deg/s", "S", 24, "R64", 1e-4,   0,   &Sample::rate_z},
    {3, "AccelerationX",             "m/s2",  "S", 24, "R32", 1e-4,   0,   &Sample::acceleration_x},
    {3, "AccelerationY",             "m/s2",  "S", 24, "R32", 1e-4,   0,   &Sample::acceleration_y},
    {3, "AccelerationZ",             "m/s2",  "S", 24, "R32", 1e-4,   0,   &Sample::acceleration_z},
    {4, "WheelSpeedFrontLeft",       "km/h",  "U", 16, "R32", 1e-2,   0,   &Sample::wheel_front_left, kWheel},
    {4, "WheelSpeedFrontRight",      "km/h",  "U", 16, "R32", 1e-2,   0,   &Sample::wheel_front_right, kWheel},
    {4, "WheelSpeedRearLeft",        "km/h",  "U", 16, "R32", 1e-2,   0,   &Sample::wheel_rear_left, kWheel},
    {4, "WheelSpeedRearRight",       "km/h",  "U", 16, "R32", 1e-2,   0,   &Sample::wheel_rear_right, kWheel},
    {4, "SteeringAngle",             "deg",   "S", 12, "R32", 0.5,    0,   &Sample::steering},
    {4, "Throttle",                  "%",     "U", 7,  "U8",  1,      0,   &Sample::throttle},
    {4, "BrakePressed",              "",      "B", 1,  "B",   1,      0,   &Sample::brake_pressed},
    {4, "BrakePressure",             "bar",   "U", 10, "R32", 0.1,    0,   &Sample::brake_pressure},
    {4, "Gear",                      "",      "S", 4,  "S8",  1,      0,   &Sample::gear},
    {4, "EngineSpeed",               "rpm",   "U", 14, "U16", 1,      0,   &Sample::engine_speed},
    {4, "CoolantTemperature",        "degC",  "U", 8,  "S16", 1,      -40, &Sample::coolant_temperature},
    {4, "FuelLevel",                 "%",     "U", 8,  "R32", 0.5,    0,   &Sample::fuel_level},
    {4, "IndicatorLeft",             "",      "B", 1,  "B",   1,      0,   &Sample::indicator_left},
    {4, "IndicatorRight",            "",      "B", 1,  "B",   1,      0,   &Sample::indicator_right},
    {5, "GnssInt1_Satellites",       "",      "U", 5,  "U8",  1,      0,   &Sample::satellites},
    {5, "GnssInt1_Mode",             "",      "U", 4,  "U8",  1,      0,   &Sample::mode},
    {5, "GnssInt1_Valid",            "",      "B", 1,  "B",   1,      0,   &Sample::valid},
    {5, "GnssInt1_Dilution",         "",      "U", 8,  "R32", 0.1,    0,   &Sample::dilution},
    {5, "SupplyVoltage",             "V",     "U", 12, "R64", 1e-2,   0,   &Sample::supply_voltage},
    {5, "Uptime",                    "s",     "U", 32, "U64", 1,      0,   &Sample::uptime},
    {5, "Odometer",                  "m",     "U", 32, "U32", 1,      0,   &Sample::odometer},
    {5, "CabinTemperature",          "degC",  "S", 8,  "S32", 1,      0,   &Sample::cabin_temperature},
    {5, "Ignition",                  "",      "B", 1,  "B",   1,      0,   &Sample::ignition},
};
// clang-format on
constexpr std::size_t kColumns = 3;  // the first rows: the position

struct Message {
  std::uint64_t id;
  const char* name;
  Cycle cycle;
  bool needs_sky;
};

constexpr Message kMessages[] = {
    {1, "Position", {1}, true},  {2, "Velocity", {1}, false}, {3, "Attitude", {1}, false},
    {4, "Vehicle", {10}, false}, {5, "Status", {100}, false},
};

std::uint64_t id_of(std::size_t row) {
  return 10 + row;
}

void encode(UComPacket& packet, std::uint64_t at, const Signal& signal, const Sample& sample) {
  const double value = sample.*signal.value;
  if (std::string_view(signal.letter) != "R") {
    packet.integer(at, signal.bits, raw_of(value, signal.scale, signal.offset));
  } else if (signal.bits == 64) {
    packet.real64(at, value);
  } else {
    packet.real32(at, static_cast<float>(value));
  }
}

void describe_signal(Dbu& dbu, std::uint64_t id, std::uint64_t at, const Signal& signal) {
  dbu.signal(id).name(signal.name).at(at);
  if (signal.parent != 0) {
    dbu.inherits(signal.parent);
    return;
  }
  dbu.type(signal.letter, signal.bits).measured(signal.measured).unit(signal.unit);
  if (signal.scale != 1) dbu.scale(signal.scale);
  if (signal.offset != 0) dbu.offset(signal.offset);
}

void describe_nano(Dbu& dbu) {
  dbu.signal(kNano).name("Nano").type("S", kNanoBits).at(0).unit("ns").comment("GPS time");
}

class DriveShape : public StreamShape {
 public:
  void describe(Support::RecordingStream& stream) const override { stream.ucom(database()); }

  void packets(std::uint64_t index, std::uint64_t rate, const Sample& sample,
               const PacketSink& sink) const override {
    for (const Message& message : kMessages) {
      if (!message.cycle.is_due(index, rate)) continue;
      if (message.needs_sky && !sample.sky_visible) continue;
      UComPacket packet(static_cast<std::uint16_t>(message.id));
      packet.integer(0, kNanoBits, sample.nano);
      std::uint64_t at = kNanoBits;
      for (const Signal& signal : kSignals) {
        if (signal.message != message.id) continue;
        encode(packet, at, signal, sample);
        at += signal.bits;
      }
      sink(packet.bytes());
    }
  }

 private:
  [[nodiscard]] static Dbu database() {
    Dbu dbu;
    for (const Message& message : kMessages) {
      Dbu::Ids ids{kNano};
      for (std::size_t row = 0; row < std::size(kSignals); ++row) {
        if (kSignals[row].message == message.id) ids.push_back(id_of(row));
      }
      dbu.message(message.id, ids).name(message.name);
    }
    describe_nano(dbu);
    dbu.signal(kWheel).type("U", 16).measured("R32").scale(1e-2).unit("km/h");
    std::uint64_t at[std::size(kMessages) + 1];
    std::fill(std::begin(at), std::end(at), kNanoBits);
    for (std::size_t row = 0; row < std::size(kSignals); ++row) {
      const Signal& signal = kSignals[row];
      describe_signal(dbu, id_of(row), at[signal.message], signal);
      at[signal.message] += signal.bits;
    }
    return dbu;
  }
};

// One message at every step: time, position and any number of signals of one kind.
class UniformShape : public StreamShape {
 public:
  UniformShape(std::uint64_t signals, std::size_t least_size)
      : others_(signals - 1 - kColumns), least_size_(least_size) {}

  void describe(Support::RecordingStream& stream) const override { stream.ucom(database()); }

  void packets(std::uint64_t index, std::uint64_t, const Sample& sample,
               const PacketSink& sink) const override {
    UComPacket packet(1, least_size_);
    packet.integer(0, kNanoBits, sample.nano);
    std::uint64_t at = kNanoBits;
    for (std::size_t row = 0; row < kColumns; ++row) {
      encode(packet, at, kSignals[row], sample);
      at += kSignals[row].bits;
    }
    for (std::uint64_t i = 0; i < others_; ++i) {
      packet.bits(at, kOtherBits, scramble(i, index, 0) >> 48);
      at += kOtherBits;
    }
    sink(packet.bytes());
  }

 private:
  static constexpr std::uint64_t kOtherBits = 16;

  [[nodiscard]] Dbu database() const {
    Dbu dbu;
    Dbu::Ids ids{kNano};
    for (std::uint64_t i = 0; i < kColumns + others_; ++i) ids.push_back(id_of(i));
    dbu.message(1, ids);
    describe_nano(dbu);
    std::uint64_t at = kNanoBits;
    for (std::size_t row = 0; row < kColumns; ++row) {
      describe_signal(dbu, id_of(row), at, kSignals[row]);
      at += kSignals[row].bits;
    }
    for (std::uint64_t i = 0; i < others_; ++i) {
      dbu.signal(id_of(kColumns + i)).name("Channel" + std::to_string(i + 1)).at(at);
      dbu.type("S", kOtherBits).measured("R64").scale(0.01).unit("V");
      at += kOtherBits;
    }
    return dbu;
  }

  std::uint64_t others_;
  std::size_t least_size_;
};

}  // namespace

std::unique_ptr<StreamShape> make_ucom_shape(const Options& options) {
  const auto signals = [&options](std::uint64_t usual) {
    return options.signals_per_message == 0 ? usual : options.signals_per_message;
  };
  switch (options.shape) {
    case Shape::narrow:
      return std::make_unique<UniformShape>(signals(8), 98);  // with its number, 100 bytes
    case Shape::wide:
      return std::make_unique<UniformShape>(signals(204), 0);
    default:
      return std::make_unique<DriveShape>();
  }
}

}  // namespace Trel::Trakgen
