// Stamped values of a fixed type, alone and in arrays: what a decoder holds for each quantity.
//
// A fresh variable is 0 and Rejected. Setting a value makes it good; it takes the time, and the
// Timeless state, of the stamp given with it. Nothing here fails or reports.
#pragma once

#include <cstddef>
#include <type_traits>
#include <vector>

#include "library/Lib_Dynamic.h"
#include "library/Lib_Stamp.h"
#include "library/Lib_Types.h"

namespace Trel::Lib {

// -value, wrapping for integers; a bool stays as it is.
template <ElementType T>
[[nodiscard]] constexpr T negated(T value) {
  if constexpr (std::is_same_v<T, bool>) {
    return value;
  } else if constexpr (std::is_integral_v<T>) {
    return static_cast<T>(0ULL - static_cast<unsigned long long>(value));
  } else {
    return -value;
  }
}

// One value of type T on a stamp of type S.
template <ElementType T, class S>
class VariableS : public S {
 public:
  using value_type = T;

  constexpr VariableS() = default;
  // Takes the stamp as it is, and the value by numeric conversion.
  explicit VariableS(const DynamicS<S>& dynamic) : S(dynamic), value_(static_cast<T>(dynamic)) {}

  [[nodiscard]] constexpr T get() const { return value_; }

  // Stores the value alone: flags and time stay as they are.
  constexpr void put(T value) { value_ = value; }
  // Stores the value with the time and the Timeless state of `stamp`; all other flags become clear.
  constexpr void set(T value, const S& stamp) {
    S::set(stamp);
    value_ = value;
  }

  // Value 0, and the stamp's operation of the same name.
  constexpr void reset() {
    S::reset();
    value_ = T{};
  }
  constexpr void invalidate() {
    S::invalidate();
    value_ = T{};
  }
  constexpr void reject() { reset(); }

  // Negates the value and swaps Over with Under.
  constexpr void negate() {
    value_ = negated(value_);
    this->flags.negate();
  }

 private:
  T value_{};
};

// A run of values of type T on an array of stamps A; S is the stamp of one element.
template <ElementType T, class A, class S>
class VariableSA : public A {
 public:
  using value_type = T;
  using stamp_type = S;

  VariableSA() = default;
  explicit VariableSA(std::size_t count) : A(count), values_(count) {}

  // Keeps what stays; new elements are 0 and Rejected.
  void resize(std::size_t count) {
    A::resize(count);
    values_.resize(count);
  }
  // Each element 0, Rejected and at time 0.
  void reject() {
    A::reject();
    values_.assign(values_.size(), Slot{});
  }

  // `index` must be below size().
  [[nodiscard]] T get_data(std::size_t index) const { return values_[index].value; }
  void set_data(std::size_t index, T value) { values_[index].value = value; }

  // Negates each value and swaps Over with Under in each element's flags.
  void negate() {
    for (std::size_t index = 0; index < values_.size(); ++index) {
      values_[index].value = negated(values_[index].value);
      this->flags[index].negate();
    }
  }

 private:
  // Keeps std::vector<bool> and its proxies out of the array of switches.
  struct Slot {
    T value{};
  };

  std::vector<Slot> values_;
};

// The two forms that every decoder uses.
template <ElementType T>
using VariableExt = VariableS<T, StampExt>;
template <ElementType T>
using VarArrayExt = VariableSA<T, StampExtArray, StampExt>;

}  // namespace Trel::Lib
