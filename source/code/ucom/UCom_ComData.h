// What has been decoded from a UCom stream: for each signal the newest value, stamped.
//
// The variables stand in one vector for each element type, and a signal knows its type and its slot
// there. Each value takes the time of the last Nano, and its Timeless state. A plain value: copying
// it copies the variables and nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "library/Lib_Variable.h"
#include "ucom/UCom_Signal.h"

namespace Trel::UCom {

class ComData final : public AbstractDispatcher {
 public:
  ComData() { reset(); }

  // Removes all variables but Nano, whose slot is 0, and makes that a fresh one.
  void reset();
  // Adds a variable of `type` and gives its slot; false, with `slot` untouched, for a type that is
  // none of the eleven.
  bool configure_slot(Enum::BASIC_TYPE type, std::uint32_t& slot);
  // Invalidates every variable; the slots stay.
  void invalidate();
  // Dates Nano with its own value when it is ok, and makes it Timeless otherwise.
  void Stamp() {
    Lib::VariableExt<long long>& nano = all<long long>()[nano_slot];
    if (nano.ok()) nano.set_nano(nano.get());
    nano.setTimeless(!nano.ok());
  }

  [[nodiscard]] const Lib::VariableExt<long long>& Nano() const {
    return all<long long>()[nano_slot];
  }
  void set_Nano(long long value, const Lib::StampExt& stamp) {
    all<long long>()[nano_slot].set(value, stamp);
  }
  [[nodiscard]] std::uint32_t get_nano_slot() const { return nano_slot; }

  // The variable at `slot`, which configure_slot() must have given for this type.
  template <Lib::ElementType T>
  [[nodiscard]] const Lib::VariableExt<T>& var(std::size_t slot) const {
    return all<T>()[slot];
  }
  template <Lib::ElementType T>
  [[nodiscard]] const Lib::VariableExt<T>& var(std::type_identity<T>, std::size_t slot) const {
    return var<T>(slot);
  }

  // Each converts the signal's value into its variable, stamped as Nano is.
#define TREL_DISPATCH(suffix, type)                                                 \
  void dispatch(const SignalM<type>& signal, const unsigned char* bytes) override { \
    signal.convert(all<type>()[signal.get_slot()], Nano(), bytes);                  \
  }
  TREL_ELEMENT_TYPES(TREL_DISPATCH)
#undef TREL_DISPATCH

  // The variables, for signals that set their own.
  [[nodiscard]] Values& values() {
    return values_;
  }

 private:
  template <Lib::ElementType T>
  [[nodiscard]] Values::Row<T>& all() {
    return values_.all<T>();
  }
  template <Lib::ElementType T>
  [[nodiscard]] const Values::Row<T>& all() const {
    return values_.all<T>();
  }

  Values values_;
  std::uint32_t nano_slot = 0;
};

}  // namespace Trel::UCom
