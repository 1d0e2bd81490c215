// Accessors of stamped values, for records that expand theirs from tables of named values.
//
// A record gives each form the names that its accessors bear, and the variable. Its reference() is
// the stamp that values get when they are set: a StampedPart has a copy of its record's time.
#pragma once

#include "enum/Enum.h"
#include "library/Lib_Variable.h"

namespace Trel::Lib {

// A part of a record that is stamped with a copy of the record's time, given to it.
class StampedPart {
 public:
  void SetReference(const StampExt& nano) { reference_ = nano; }

 protected:
  [[nodiscard]] const StampExt& reference() const { return reference_; }
  void InvalidateReference() { reference_.invalidate(); }

 private:
  StampExt reference_;
};

// Sets the time of a record, whose own stamp is its value, with flags 0.
inline void set_record_time(VariableExt<long long>& time, long long nano) {
  time.wipe();
  time.set_nano(nano);
  time.put(nano);
}

}  // namespace Trel::Lib

// Whether the stamp is good; the variable; the same, to change its flags.
#define TREL_ACCESSOR_READ(Is, Var, Hit, variable, type)            \
  [[nodiscard]] bool Is() const {                                   \
    return variable.good();                                         \
  }                                                                 \
  [[nodiscard]] const ::Trel::Lib::VariableExt<type>& Var() const { \
    return variable;                                                \
  }                                                                 \
  [[nodiscard]] ::Trel::Lib::VariableExt<type>& Hit() {             \
    return variable;                                                \
  }

// The number as stored, and storing one.
#define TREL_ACCESSOR_GET(Get, variable, type) \
  [[nodiscard]] type Get() const {             \
    return variable.get();                     \
  }
#define TREL_ACCESSOR_SET(Set, variable, type) \
  void Set(type value) {                       \
    variable.set(value, reference());          \
  }

// The same of an enumerated value: the member, and storing one, or any whole number, of which one
// out of range becomes _UNKNOWN.
#define TREL_ACCESSOR_GET_CODE(Get, variable, enumeration)         \
  [[nodiscard]] ::Trel::Enum::enumeration Get() const {            \
    return static_cast<::Trel::Enum::enumeration>(variable.get()); \
  }
#define TREL_ACCESSOR_SET_CODE(Set, variable, enumeration)      \
  void Set(::Trel::Enum::enumeration member) {                  \
    variable.set(member, reference());                          \
  }                                                             \
  template <::Trel::Enum::Integer I>                            \
  void Set(I number) {                                          \
    Set(::Trel::Enum::Cast<::Trel::Enum::enumeration>(number)); \
  }

// Making the value invalid, or rejected.
#define TREL_ACCESSOR_INV(Inv, variable) \
  void Inv() {                           \
    variable.invalidate();               \
  }
#define TREL_ACCESSOR_REJ(Rej, variable) \
  void Rej() {                           \
    variable.reject();                   \
  }
