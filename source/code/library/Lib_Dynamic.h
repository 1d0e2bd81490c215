// A stamped value whose type is chosen at run time: what the store hands to a client.
//
// The type tag follows the last assignment. The value can be read as any element type, by ordinary
// numeric conversion, or as the raw bytes of its value area.
#pragma once

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

#include "library/Lib_Stamp.h"
#include "library/Lib_Types.h"

namespace Trel::Lib {

// `value` as a To. Integers wrap to the width of To. A real number loses its fraction; one that To
// cannot hold becomes the nearest end of its range, and NaN becomes 0 (true for bool).
template <ElementType To, ElementType From>
[[nodiscard]] inline To number_cast(From value) {
  if constexpr (std::is_same_v<To, bool>) {
    return value != From{};
  } else if constexpr (std::is_integral_v<To> && std::is_floating_point_v<From>) {
    // The upper end is compared as the power of two above it, which every real type holds exactly.
    const From end = std::ldexp(From{1}, std::numeric_limits<To>::digits);
    if (value >= end) return std::numeric_limits<To>::max();
    if (value <= static_cast<From>(std::numeric_limits<To>::min())) {
      return std::numeric_limits<To>::min();
    }
    return value == value ? static_cast<To>(value) : To{};
  } else {
    return static_cast<To>(value);
  }
}

// S is the stamp's type, Stamp or StampExt.
template <class S>
class DynamicS : public S {
 public:
  // The text form of a value, as an element's table row gives it; typed by the value's tag.
  template <ElementType T>
  using Converter = std::string (*)(T);

  explicit DynamicS(Enum::BASIC_TYPE type = Enum::BASIC_TYPE_void) : type_(type) {}

  // The tag of the last assignment; void for a value that was never assigned.
  [[nodiscard]] Enum::BASIC_TYPE type() const { return type_; }

  // Stores `value` and sets the tag. A change of tag clears the whole area and the converter first.
  template <ElementType T>
  DynamicS& operator=(T value) {
    if (type_ != kBasicType<T>) {
      area_.fill(0);
      converter_ = nullptr;
      type_ = kBasicType<T>;
    }
    std::memcpy(area_.data(), &value, sizeof value);
    return *this;
  }

  // Clears stamp and value; the tag stays.
  void invalidate() {
    S::invalidate();
    area_.fill(0);
  }

  // The value as a T; 0 when the tag names no element type.
  template <ElementType T>
  [[nodiscard]] operator T() const {
    T result{};
    visit_element_type(type_, [&](auto held) {
      using Held = typename decltype(held)::type;
      result = number_cast<T>(raw<Held>());
    });
    return result;
  }

  // The first bytes of the value area read as a T, whatever the tag says. What a narrower value
  // left untouched is 0.
  template <ElementType T>
  [[nodiscard]] T raw() const {
    if constexpr (std::is_same_v<T, bool>) {
      return area_[0] != 0;
    } else {
      T value;
      std::memcpy(&value, area_.data(), sizeof value);
      return value;
    }
  }

  // `converter` must take the type of the tag, and may be null.
  template <ElementType T>
  void set_converter(Converter<T> converter) {
    converter_ = reinterpret_cast<AnyConverter>(converter);
  }

  // The converter's text for the value; empty without a converter.
  [[nodiscard]] std::string text() const {
    std::string result;
    if (converter_ != nullptr) {
      visit_element_type(type_, [&](auto held) {
        using Held = typename decltype(held)::type;
        result = reinterpret_cast<Converter<Held>>(converter_)(raw<Held>());
      });
    }
    return result;
  }

 private:
  using AnyConverter = void (*)();

  std::array<unsigned char, 8> area_{};
  AnyConverter converter_ = nullptr;
  Enum::BASIC_TYPE type_;
};

}  // namespace Trel::Lib
