// Status channels under test: eight bytes written field by field, and any value by its name.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "nav/Nav_Feed.h"

namespace Trel::Nav {

using Eight = std::array<unsigned char, 8>;

// Fields one behind the other, lowest byte first; what is not written is 0.
class Data {
 public:
  Data& b(long long number) { return put(number, 1); }
  Data& s(long long number) { return put(number, 2); }
  Data& t(long long number) { return put(number, 3); }
  Data& w(long long number) { return put(number, 4); }

  operator Eight() const { return bytes_; }

 private:
  Data& put(long long number, int width) {
    for (int k = 0; k < width; ++k) {
      bytes_.at(at_++) = static_cast<unsigned char>(number >> (8 * k) & 0xFF);
    }
    return *this;
  }

  Eight bytes_{};
  std::size_t at_ = 0;
};

// Channel 31 tells the primary receiver's type.
inline Eight primary_type(unsigned char type) {
  return {255, type, 255, 255, 255, 255, 255, 255};
}

struct Value {
  double number = 0.0;
  Lib::StampExt stamp;
  Family families = Family::None;  // whose element it is
};

template <class T>
Value told(const Lib::VariableExt<T>& variable, Family families) {
  return {static_cast<double>(variable.get()), variable, families};
}

#define TREL_TEST_VALUE(name, type, key, unit, resolution, text, families, description) \
  if (wanted == #name) return told(part.Var##name(), families);

inline std::optional<Value> value_of_part(const ComData& part, std::string_view wanted) {
#define VALUE TREL_TEST_VALUE
#include "nav/Nav_ComData.def"
  return std::nullopt;
}

inline std::optional<Value> value_of_part(const ComDataGps& part, std::string_view wanted) {
#define VALUE TREL_TEST_VALUE
#include "nav/Nav_ComDataGps.def"
  return std::nullopt;
}

inline std::optional<Value> value_of_part(const ComDataMeasurePt& part, std::string_view wanted) {
#define VALUE TREL_TEST_VALUE
#include "nav/Nav_ComDataMeasurePt.def"
  return std::nullopt;
}
#undef TREL_TEST_VALUE

// The value of this name, as the element tables call it.
[[nodiscard]] inline std::optional<Value> value_of(const ComData& data, std::string_view wanted) {
  constexpr std::string_view kReceivers[] = {"GpsInt1_", "GpsExt1_", "GpsInt2_"};
  for (unsigned int k = 0; k < ComData::kReceivers; ++k) {
    const std::string_view prefix = kReceivers[k];
    if (wanted.starts_with(prefix)) {
      return value_of_part(data.DGps(k), wanted.substr(prefix.size()));
    }
  }
  for (unsigned int k = 0; k < ComData::kMeasurePoints; ++k) {
    const std::string prefix = "MeasPt" + std::to_string(k + 1) + "_";
    if (wanted.starts_with(prefix)) {
      return value_of_part(data.DMeasurePt(k), wanted.substr(prefix.size()));
    }
  }
  return value_of_part(data, wanted);
}

// A codec that is fed one channel at a time, ten milliseconds apart, from kStart on.
class StatusFeed {
 public:
  StatusFeed() { codec_->take(with_minutes(locked(0))); }

  [[nodiscard]] const ComData& data() const { return codec_->CData(); }
  [[nodiscard]] ComData& hit() { return codec_->data_; }
  [[nodiscard]] ComKey& key() { return codec_->Key(); }
  [[nodiscard]] TestCodec& codec() { return *codec_; }

  void take(int channel, const Eight& bytes) {
    time_ += 10;
    codec_->take(locked(static_cast<unsigned short>(time_))
                     .channel(static_cast<unsigned char>(channel), bytes));
  }
  // Lets time go by, within the minute.
  void pass(int milliseconds) { time_ += milliseconds; }
  [[nodiscard]] long long now() const { return at_ms(time_); }

  // Every key off, those too that a reset leaves on.
  void want_nothing() {
    key().Reset(false);
    key().KMain().Bar_Status();
    key().KMain().Bar_System_Id();
    key().KMain().Bar_Time();
  }

  [[nodiscard]] Value value(std::string_view name) const {
    const std::optional<Value> found = value_of(data(), name);
    EXPECT_TRUE(found.has_value()) << "no value is called " << name;
    return found.value_or(Value{});
  }
  [[nodiscard]] bool good(std::string_view name) const { return value(name).stamp.good(); }
  [[nodiscard]] double number(std::string_view name) const {
    EXPECT_TRUE(good(name)) << name << " is not good";
    return value(name).number;
  }

 private:
  std::unique_ptr<TestCodec> codec_ = std::make_unique<TestCodec>(false);
  int time_ = 0;
};

}  // namespace Trel::Nav
