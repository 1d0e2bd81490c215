#include "trakgen/Trakgen_Can.h"

#include <charconv>
#include <string>
#include <string_view>

#include "support/Support_CanPacket.h"

namespace Trel::Trakgen {

namespace {

using Support::CanFrame;
using Support::CanPacket;

constexpr std::uint32_t kExtended = 0x80000000;  // the database's mark of a 29-bit identifier
constexpr std::uint64_t kClockSetAfter = 5;      // seconds
constexpr std::uint64_t kPages = 3;              // of the multiplexed message

struct Message {
  int number;
  std::uint32_t id;
  const char* name;
  std::size_t size;
  const char* sender;
  Cycle cycle;
  bool needs_sky;
  const char* comment;
};

// Frames of 12 and 64 bytes give their packets an odd length; they come where neither the first
// packet nor the step to GPS time falls.
// clang-format off
constexpr Message kMessages[] = {
    {1,  0x0A0,                 "WheelSpeeds", 8,  "Brakes",     {1},       false, "Speeds at the tyre's contact"},
    {2,  0x0B4,                 "Steering",    8,  "Chassis",    {4},       false, ""},
    {3,  0x0C9,                 "Engine",      8,  "Powertrain", {4, 1},    false, "Engine and gearbox"},
    {4,  0x0D1,                 "Brake",       3,  "Brakes",     {4, 3},    false, ""},
    {5,  kExtended | 0xCFE0B01, "Inertial",    24, "Navigation", {4, 2},    false, "Flexible data rate"},
    {6,  kExtended | 0xCFEF301, "Position",    8,  "Navigation", {10, 0},   true,  "Missing while the sky is hidden"},
    {7,  kExtended | 0xCFEF302, "Altitude",    7,  "Navigation", {10, 2},   true,  ""},
    {8,  kExtended | 0xCFEF303, "Velocity",    8,  "Navigation", {10, 4},   false, ""},
    {9,  0x120,                 "Motion",      4,  "Chassis",    {10, 6},   false, ""},
    {10, kExtended | 0xCFEF3FF, "Summary",     64, "Navigation", {100, 50}, false, "Flexible data rate"},
    {11, 0x140,                 "Receiver",    8,  "Navigation", {100, 20}, false, ""},
    {12, 0x150,                 "Body",        1,  "Dash",       {20, 8},   false, ""},
    {13, 0x151,                 "Climate",     1,  "Dash",       {100, 30}, false, ""},
    {14, 0x152,                 "Fuel",        1,  "Powertrain", {100, 36}, false, ""},
    {15, 0x153,                 "Cooling",     1,  "Powertrain", {100, 40}, false, ""},
    {16, 0x154,                 "Power",       2,  "Dash",       {20, 10},  false, ""},
    {17, 0x160,                 "Odometer",    8,  "Dash",       {100, 46}, false, ""},
    {18, 0x170,                 "Diagnosis",   4,  "Powertrain", {50, 22},  false, "One page a frame, in turn"},
    {19, 0x180,                 "Driver",      12, "Chassis",    {100, 70}, false, "Flexible data rate"},
    {20, 0x7FF,                 "Heartbeat",   0,  "Dash",       {100, 90}, false, "Says that the bus is awake"},
};
// clang-format on
constexpr Message kUnlisted = {0, 0x7DF, "", 8, "", {100, 60}, false, ""};

// How a field stands in its frame: little- or big-endian, unsigned or signed.
enum class Form { lu, ls, bu, bs };

// Which frames of a multiplexed message carry a signal: all, all as their page number, or those
// whose page is its number.
constexpr int kAlways = -2;
constexpr int kSelector = -1;

// What a field counts in place of a reading: the turns of its message.
constexpr double Sample::*kCounter = nullptr;

struct Signal {
  int message;
  const char* name;
  std::size_t start;
  std::size_t bits;
  Form form;
  double scale;
  double offset;
  const char* range;
  const char* unit;
  double Sample::*value;
  int page = kAlways;
  const char* comment = "";
};

// clang-format off
// message name              start bits form      scale offset range            unit     value
constexpr Signal kSignals[] = {
    {1,  "WheelSpeedFrontLeft",  7,   16, Form::bu, 1e-2, 0,   "0|655.35",      "km/h",  &Sample::wheel_front_left, kAlways, "Outer speed in a right bend"},
    {1,  "WheelSpeedFrontRight", 23,  16, Form::bu, 1e-2, 0,   "0|655.35",      "km/h",  &Sample::wheel_front_right},
    {1,  "WheelSpeedRearLeft",   39,  16, Form::bu, 1e-2, 0,   "0|655.35",      "km/h",  &Sample::wheel_rear_left},
    {1,  "WheelSpeedRearRight",  55,  16, Form::bu, 1e-2, 0,   "0|655.35",      "km/h",  &Sample::wheel_rear_right},
    {2,  "SteeringAngle",        7,   16, Form::bs, 0.1,  0,   "-780|780",      "deg",   &Sample::steering},
    {2,  "YawRate",              23,  24, Form::bs, 1e-4, 0,   "|",             "deg/s", &Sample::rate_z},
    {2,  "Counter",              60,  4,  Form::lu, 1,    0,   "0|15",          "",      kCounter},
    {3,  "EngineSpeed",          0,   14, Form::lu, 1,    0,   "0.0|16383.0",   "rpm",   &Sample::engine_speed, kAlways, "A real number: its range has decimals"},
    {3,  "Throttle",             14,  7,  Form::lu, 1,    0,   "0|100",         "%",     &Sample::throttle},
    {3,  "Gear",                 24,  4,  Form::ls, 1,    0,   "-1|6",          "",      &Sample::gear},
    {3,  "Counter",              60,  4,  Form::lu, 1,    0,   "0|15",          "",      kCounter},
    {4,  "BrakePressed",         0,   1,  Form::lu, 1,    0,   "0|1",           "",      &Sample::brake_pressed},
    {4,  "BrakePressure",        1,   10, Form::lu, 0.1,  0,   "0|102.3",       "bar",   &Sample::brake_pressure},
    {4,  "Counter",              16,  4,  Form::lu, 1,    0,   "0|15",          "",      kCounter},
    {5,  "AccelerationX",        0,   24, Form::ls, 1e-4, 0,   "-100|100",      "m/s2",  &Sample::acceleration_x},
    {5,  "AccelerationY",        24,  24, Form::ls, 1e-4, 0,   "-100|100",      "m/s2",  &Sample::acceleration_y},
    {5,  "AccelerationZ",        48,  24, Form::ls, 1e-4, 0,   "-100|100",      "m/s2",  &Sample::acceleration_z},
    {5,  "AngularRateX",         79,  24, Form::bs, 1e-4, 0,   "-400|400",      "deg/s", &Sample::rate_x},
    {5,  "AngularRateY",         103, 24, Form::bs, 1e-4, 0,   "-400|400",      "deg/s", &Sample::rate_y},
    {5,  "AngularRateZ",         127, 24, Form::bs, 1e-4, 0,   "-400|400",      "deg/s", &Sample::rate_z},
    {5,  "Pitch",                144, 16, Form::ls, 1e-2, 0,   "-90|90",        "deg",   &Sample::pitch},
    {5,  "Roll",                 160, 16, Form::ls, 1e-2, 0,   "-180|180",      "deg",   &Sample::roll},
    {5,  "Heading",              176, 16, Form::lu, 1e-2, 0,   "0|360",         "deg",   &Sample::heading},
    {6,  "Latitude",             0,   32, Form::ls, 1e-7, 0,   "-90|90",        "deg",   &Sample::latitude},
    {6,  "Longitude",            39,  32, Form::bs, 1e-7, 0,   "-180|180",      "deg",   &Sample::longitude},
    {7,  "Altitude",             7,   24, Form::bs, 1e-2, 0,   "-1000|80000",   "m",     &Sample::altitude},
    {7,  "Distance",             24,  32, Form::lu, 1e-3, 0,   "0|4294967.295", "m",     &Sample::distance},
    {8,  "VelocityNorth",        0,   20, Form::ls, 1e-3, 0,   "-524|524",      "m/s",   &Sample::velocity_north},
    {8,  "VelocityEast",         20,  20, Form::ls, 1e-3, 0,   "-524|524",      "m/s",   &Sample::velocity_east},
    {8,  "VelocityDown",         40,  20, Form::ls, 1e-3, 0,   "-524|524",      "m/s",   &Sample::velocity_down},
    {8,  "Counter",              60,  4,  Form::lu, 1,    0,   "0|15",          "",      kCounter},
    {9,  "Speed",                7,   16, Form::bu, 1e-2, 0,   "0|655.35",      "m/s",   &Sample::speed},
    {9,  "Heading",              16,  16, Form::lu, 1e-2, 0,   "0|360",         "deg",   &Sample::heading},
    {10, "TotalUptime",          0,   64, Form::lu, 1,    0,   "0|0",           "s",     &Sample::uptime},
    {10, "TotalDistance",        71,  64, Form::bu, 1e-3, 0,   "0|0",           "m",     &Sample::distance, kAlways, "Since the recording began"},
    {10, "SteeringAngle",        250, 13, Form::ls, 0.5,  0,   "-780|780",      "deg",   &Sample::steering},
    {10, "Speed",                488, 16, Form::lu, 1e-2, 0,   "0|655.35",      "m/s",   &Sample::speed},
    {10, "Counter",              504, 8,  Form::lu, 1,    0,   "0|255",         "",      kCounter},
    {11, "Satellites",           0,   5,  Form::lu, 1,    0,   "0|31",          "",      &Sample::satellites},
    {11, "Mode",                 5,   4,  Form::lu, 1,    0,   "0|15",          "",      &Sample::mode},
    {11, "Valid",                9,   1,  Form::lu, 1,    0,   "0|1",           "",      &Sample::valid},
    {11, "Dilution",             16,  8,  Form::lu, 0.1,  0,   "0|25.5",        "",      &Sample::dilution},
    {11, "NorthAccuracy",        31,  16, Form::bu, 1e-3, 0,   "0|65.535",      "m",     &Sample::north_accuracy},
    {11, "EastAccuracy",         47,  16, Form::bu, 1e-3, 0,   "0|65.535",      "m",     &Sample::east_accuracy},
    {12, "IndicatorLeft",        0,   1,  Form::lu, 1,    0,   "0|1",           "",      &Sample::indicator_left},
    {12, "IndicatorRight",       1,   1,  Form::ls, 1,    0,   "0|1",           "",      &Sample::indicator_right},
    {12, "Ignition",             7,   1,  Form::bu, 1,    0,   "0|1",           "",      &Sample::ignition},
    {13, "CabinTemperature",     0,   8,  Form::ls, 1,    0,   "-40|85",        "degC",  &Sample::cabin_temperature},
    {14, "FuelLevel",            0,   8,  Form::lu, 0.5,  0,   "0|100",         "%",     &Sample::fuel_level},
    {15, "CoolantTemperature",   7,   8,  Form::bu, 1,    -40, "-40|215",       "degC",  &Sample::coolant_temperature},
    {16, "SupplyVoltage",        0,   12, Form::lu, 1e-2, 0,   "0|40.95",       "V",     &Sample::supply_voltage},
    {16, "Counter",              12,  4,  Form::lu, 1,    0,   "0|15",          "",      kCounter},
    {17, "Odometer",             7,   32, Form::bu, 1,    0,   "0|4294967295",  "m",     &Sample::odometer},
    {17, "Uptime",               39,  32, Form::bs, 1,    0,   "0|2147483647",  "s",     &Sample::uptime},
    {18, "Page",                 0,   8,  Form::lu, 1,    0,   "|",             "",      kCounter, kSelector},
    {18, "SupplyVoltage",        8,   12, Form::lu, 1e-2, 0,   "0|40.95",       "V",     &Sample::supply_voltage, 0},
    {18, "CoolantTemperature",   8,   8,  Form::ls, 1,    0,   "-40|127",       "degC",  &Sample::coolant_temperature, 1},
    {18, "EngineSpeed",          23,  16, Form::bu, 0.25, 0,   "0|16383.75",    "rpm",   &Sample::engine_speed, 1},
    {18, "FuelLevel",            8,   16, Form::lu, 1e-2, 0,   "0|100",         "%",     &Sample::fuel_level, 2},
    {19, "Throttle",             7,   12, Form::bu, 0.1,  0,   "0|100",         "%",     &Sample::throttle},
    {19, "BrakePressure",        17,  14, Form::lu, 1e-2, 0,   "0|163.83",      "bar",   &Sample::brake_pressure},
    {19, "SteeringAngle",        70,  20, Form::bs, 1e-3, 0,   "-524|524",      "deg",   &Sample::steering},
};
// clang-format on

std::string text_of(double number) {
  char text[32];
  const auto end = std::to_chars(std::begin(text), std::end(text), number).ptr;
  return {text, end};
}

std::string multiplexing_of(const Signal& signal) {
  if (signal.page == kAlways) return "";
  return signal.page == kSelector ? " M" : " m" + std::to_string(signal.page);
}

std::string line_of(const Message& message) {
  return "BO_ " + std::to_string(message.id) + " " + message.name + ": " +
         std::to_string(message.size) + " " + message.sender;
}

std::string line_of(const Signal& signal) {
  constexpr const char* kForms[] = {"@1+", "@1-", "@0+", "@0-"};
  return std::string(" SG_ ") + signal.name + multiplexing_of(signal) + " : " +
         std::to_string(signal.start) + "|" + std::to_string(signal.bits) +
         kForms[static_cast<int>(signal.form)] + " (" + text_of(signal.scale) + "," +
         text_of(signal.offset) + ") [" + signal.range + "] \"" + signal.unit + "\" Logger";
}

std::string database() {
  std::string text =
      "VERSION \"1.0\"\r\n\r\nNS_ :\r\n\tCM_\r\n\tVAL_\r\n\tBA_DEF_\r\n\tBA_\r\n\r\nBS_:\r\n\r\n"
      "BU_: Brakes Chassis Powertrain Navigation Dash Logger\r\n";
  std::string comments;
  for (const Message& message : kMessages) {
    const std::string id = std::to_string(message.id);
    const auto comment = [&comments](const std::string& subject, std::string_view words) {
      if (words.empty()) return;
      comments.append("CM_ ").append(subject).append(" \"").append(words).append("\";\r\n");
    };
    text += "\r\n" + line_of(message) + "\r\n";
    comment("BO_ " + id, message.comment);
    for (const Signal& signal : kSignals) {
      if (signal.message != message.number) continue;
      text += line_of(signal) + "\r\n";
      comment("SG_ " + id + " " + signal.name, signal.comment);
    }
  }
  return text + "\r\n" + comments +
         "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 65535;\r\n"
         "VAL_ 320 Valid 1 \"Valid\" 0 \"NotValid\" ;\r\n";
}

void encode(CanFrame& frame, const Signal& signal, std::int64_t number) {
  const auto raw = static_cast<std::uint64_t>(number);
  if (signal.form == Form::lu || signal.form == Form::ls) {
    frame.intel(signal.start, signal.bits, raw);
  } else {
    frame.motorola(signal.start, signal.bits, raw);
  }
}

CanFrame frame_of(const Message& message, std::uint64_t turn, const Sample& sample) {
  CanFrame frame(message.id, message.size);
  const std::uint64_t page = turn % kPages;
  for (const Signal& signal : kSignals) {
    if (signal.message != message.number) continue;
    if (signal.page == kSelector) {
      encode(frame, signal, static_cast<std::int64_t>(page));
    } else if (signal.page >= 0 && static_cast<std::uint64_t>(signal.page) != page) {
      continue;
    } else if (signal.value == kCounter) {
      encode(frame, signal, static_cast<std::int64_t>(turn));
    } else {
      encode(frame, signal, raw_of(sample.*signal.value, signal.scale, signal.offset));
    }
  }
  return frame;
}

class CanShape : public StreamShape {
 public:
  void describe(Support::RecordingStream& stream) const override {
    stream.codec("Can").dbc(database());
  }

  void packets(std::uint64_t index, std::uint64_t rate, const Sample& sample,
               const PacketSink& sink) const override {
    const bool clock_is_set = index >= kClockSetAfter * rate;
    CanPacket packet(clock_is_set ? sample.nano : sample.since_power_on);
    for (const Message& message : kMessages) {
      if (!message.cycle.is_due(index, rate)) continue;
      if (message.needs_sky && !sample.sky_visible) continue;
      packet.frame(frame_of(message, message.cycle.turn(index, rate), sample));
    }
    if (kUnlisted.cycle.is_due(index, rate)) {
      packet.frame(CanFrame(kUnlisted.id, kUnlisted.size).intel(0, 64, index));
    }
    sink(packet.bytes());
  }
};

}  // namespace

std::unique_ptr<StreamShape> make_can_shape() {
  return std::make_unique<CanShape>();
}

}  // namespace Trel::Trakgen
