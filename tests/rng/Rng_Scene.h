// A record of range data under test: packets go in, values come out by name. Every key is on, and
// the time is 1000 s.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <string_view>

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "rng/Rng_Lane.h"
#include "rng/Rng_Polygon.h"
#include "rng/Rng_Range.h"
#include "rng/Rng_Sensor.h"
#include "support/Support_RangePacket.h"

namespace Trel::Rng::Test {

// Degrees of one count of an angle, which is 0.01 degrees told in radians.
inline constexpr double kAngle = 0.000174532925199433 * 57.29577951308232;
// The bit of a form that says that coordinates take three bytes, and not two.
inline constexpr unsigned char kThreeBytes = 0x80;

using Support::Bytes;
using Support::join;
using Support::little;
using Support::RangePacket;

inline constexpr long long kNow = 1000'000'000'000;
inline constexpr unsigned char kGood = 0;
inline constexpr unsigned char kUnder = Lib::Flags::Under;
inline constexpr unsigned char kOver = Lib::Flags::Over;
inline constexpr unsigned char kInvalid = Lib::Flags::Invalid | Lib::Flags::Timeless;
inline constexpr unsigned char kRejected = Lib::Flags::Rejected | Lib::Flags::Timeless;

inline double sine(double degrees) {
  return std::sin(degrees * 3.14159265358979323846 / 180);
}
inline double cosine(double degrees) {
  return std::cos(degrees * 3.14159265358979323846 / 180);
}

// A value, or an entry of a run, as a test looks at it.
struct Value {
  double number = 0.0;
  unsigned char flags = 0;
  long long nano = 0;
};

class Scene {
 public:
  Scene() { at(kNow); }

  Scene& at(long long nano) {
    data().DMain().Set_Nano(nano);
    data().ShareNano();
    return *this;
  }
  // Takes a packet, by its kind.
  Scene& take(const RangePacket& made) {
    const Bytes bytes = made.bytes();
    return take(bytes);
  }
  Scene& take(const Bytes& bytes) {
    const Packet packet{bytes.data(), static_cast<unsigned int>(bytes.size())};
    constexpr void (*kReaders[])(const Packet&, const ComKey&, ComData&) = {
        ExtractObsoleteRangeData, ExtractLaneData, ExtractExtendedRangeData, nullptr, nullptr,
        ExtractPolygon,           ExtractSensors};
    kReaders[bytes.at(1)](packet, key_, data());
    return *this;
  }

  [[nodiscard]] ComData& data() { return *data_; }
  [[nodiscard]] DataMain& main() { return data_->DMain(); }
  [[nodiscard]] DataTarget& target(unsigned int number) { return data_->DTarget(number - 1); }
  [[nodiscard]] ComKey& key() { return key_; }
  // Turns the node behind which a value stands off, or on again.
  Scene& bar(std::string_view name) { return turn(name, false); }
  Scene& let(std::string_view name) { return turn(name, true); }

  // The value with this name of the element tables, such as Target1_RangeLon, or entry of a run.
  [[nodiscard]] Value value(std::string_view name) const;
  [[nodiscard]] Value entry(std::string_view name, std::size_t index) const;
  [[nodiscard]] unsigned char flags(std::string_view name) const { return value(name).flags; }
  // A value that must be good, and of the newest packet.
  [[nodiscard]] double number(std::string_view name) const { return good(value(name), name); }
  [[nodiscard]] double number(std::string_view name, std::size_t index) const {
    return good(entry(name, index), name);
  }

 private:
  [[nodiscard]] double good(const Value& value, std::string_view name) const {
    EXPECT_EQ(value.flags, kGood) << name;
    EXPECT_EQ(value.nano, data_->DMain().Get_Nano()) << name;
    return value.number;
  }

  Scene& turn(std::string_view name, bool on);

  std::unique_ptr<ComData> data_ = std::make_unique<ComData>();
  ComKey key_;
};

template <class Variable>
Value value_from(const Variable& variable) {
  return {static_cast<double>(variable.get()), variable.get_flags().byte(), variable.get_nano()};
}

inline Value Scene::value(std::string_view name) const {
#define VALUE(value, ...) \
  if (name == prefix + #value) return value_from(part.Var_##value());
#define OWN(...)
  {
    const DataMain& part = data_->DMain();
    const std::string prefix;
#include "rng/Rng_ComDataMain.def"
  }
  for (unsigned int k = 0; k < ComData::kTargets; ++k) {
    const DataTarget& part = data_->DTarget(k);
    const std::string prefix = "Target" + std::to_string(k + 1) + "_";
#define VALUE(value, ...) \
  if (name == prefix + #value) return value_from(part.Var_##value());
#include "rng/Rng_ComDataTarget.def"
  }
  ADD_FAILURE() << "no value is called " << name;
  return {};
}

inline Value Scene::entry(std::string_view name, std::size_t index) const {
#define ARRAY(value, ...)                                                          \
  if (name == prefix + #value) {                                                   \
    const auto& run = part.Var_##value();                                          \
    return {static_cast<double>(run.get_data(index)), run.get_flags(index).byte(), \
            run.get_nano(index)};                                                  \
  }
  {
    const DataMain& part = data_->DMain();
    const std::string prefix;
#include "rng/Rng_ComDataMain.def"
  }
  for (unsigned int k = 0; k < ComData::kTargets; ++k) {
    const DataTarget& part = data_->DTarget(k);
    const std::string prefix = "Target" + std::to_string(k + 1) + "_";
#define ARRAY(value, ...)                                                          \
  if (name == prefix + #value) {                                                   \
    const auto& run = part.Var_##value();                                          \
    return {static_cast<double>(run.get_data(index)), run.get_flags(index).byte(), \
            run.get_nano(index)};                                                  \
  }
#include "rng/Rng_ComDataTarget.def"
  }
  ADD_FAILURE() << "no run is called " << name;
  return {};
}

inline Scene& Scene::turn(std::string_view name, bool on) {
#define TURN(value, node)                       \
  if (name == prefix + #value) {                \
    on ? part.Let_##node() : part.Bar_##node(); \
    return *this;                               \
  }
  {
    ComKey::KeyMain& part = key_.KMain();
    const std::string prefix;
#define VALUE(value, type, node, ...) TURN(value, node)
#define ARRAY(value, type, count, node, ...) TURN(value, node)
#include "rng/Rng_ComDataMain.def"
  }
  for (unsigned int k = 0; k < ComData::kTargets; ++k) {
    ComKey::KeyTarget& part = key_.KTarget(k);
    const std::string prefix = "Target" + std::to_string(k + 1) + "_";
#define VALUE(value, type, node, ...) TURN(value, node)
#define ARRAY(value, type, count, node, ...) TURN(value, node)
#include "rng/Rng_ComDataTarget.def"
  }
#undef TURN
  ADD_FAILURE() << "no value is called " << name;
  return *this;
}

// One field of a packet, told by the rule: where it stands, its width (negative: with a sign), the
// factor from its number to its value, and which marks it knows.
struct Field {
  const char* name;
  unsigned int at;
  int width;
  double factor;

  [[nodiscard]] unsigned int bytes() const { return static_cast<unsigned int>(std::abs(width)); }
  [[nodiscard]] bool has_sign() const { return width < 0; }
  [[nodiscard]] long long highest() const {
    return (1LL << (8 * bytes() - (has_sign() ? 1 : 0))) - 1;
  }
  [[nodiscard]] long long none() const { return has_sign() ? -highest() - 1 : highest(); }
  [[nodiscard]] long long over() const { return has_sign() ? highest() : highest() - 1; }
  [[nodiscard]] long long under() const { return -highest(); }
};

inline RangePacket& put(RangePacket& packet, const Field& field, long long number) {
  return packet.raw(field.at, Support::little(number, field.bytes()));
}

// The number of a field in a packet of that type, all else 0, and what it must become.
inline void expect_field(unsigned char type, const Field& field, long long number,
                         unsigned char flags) {
  SCOPED_TRACE(testing::Message() << field.name << " of " << number);
  Scene scene;
  RangePacket packet(type);
  if (type == 2) packet.target(1, 1);
  scene.take(put(packet, field, number));
  const Value value = scene.value(field.name);
  EXPECT_EQ(value.flags, flags);
  if (flags == kInvalid) {
    EXPECT_EQ(value.number, 0.0);
  } else {
    EXPECT_NEAR(value.number, static_cast<double>(number) * field.factor,
                1e-12 * std::abs(static_cast<double>(number) * field.factor));
    EXPECT_EQ(value.nano, kNow);
  }
}

// Ordinary numbers, and the marks of the field's form.
inline void expect_forms(unsigned char type, const Field& field) {
  expect_field(type, field, 100, kGood);
  expect_field(type, field, field.none(), kInvalid);
  if (field.bytes() > 1) expect_field(type, field, field.over(), kOver);
  if (field.has_sign()) {
    expect_field(type, field, -100, kGood);
    expect_field(type, field, field.under(), kUnder);
    expect_field(type, field, field.under() + 1, kGood);
    expect_field(type, field, field.over() - 1, kGood);
  } else {
    expect_field(type, field, 0, kGood);
    expect_field(type, field, field.over() - 1, kGood);
  }
}

}  // namespace Trel::Rng::Test
