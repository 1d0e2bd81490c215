// What range packets have said so far: one stamped variable for each named value.
//
// The values stand in the tables Rng_ComDataWrap.def, Rng_ComDataTarget.def and
// Rng_ComDataMain.def. For each value X of type T:
//   Is_X_Valid()  its stamp is good: it has arrived, without a reservation
//   Get_X()       the number as stored; for an enumerated value the member. Ask Is_X_Valid() first.
//   Set_X(v)      stores v, good, at the time of the part's reference; Timeless without one. An
//                 enumerated value takes any whole number, and one out of range becomes _UNKNOWN.
//   Inv_X()       makes it invalid: the unit has no value
//   Rej_X()       makes it rejected: nobody wants it
//   Var_X()       the stamped variable
//   Hit_X()       the same, to change its flags
// Inv and Rej leave 0 and a Timeless stamp. A run of values has the same accessors; Is, Get and
// Set, and Inv for one entry, take its index, which must be below the size. Runs get their size at
// construction and keep it, so that nothing allocates but making and copying a record. What has not
// arrived is invalid; that is no error. A record is some hundreds of kilobytes large.
#pragma once

#include <array>
#include <cstddef>

#include "library/Lib_Accessor.h"

namespace Trel::Rng {

// The sizes of the runs: corners of a polygon, and sensors of the hunter.
inline constexpr std::size_t kPolygonPoints = 256;
inline constexpr std::size_t kSensorPoints = 64;

// The accessors, from the rows of a table. reference() is what values are stamped with.
#define TREL_RNG_READ(name, type) \
  TREL_ACCESSOR_READ(Is_##name##_Valid, Var_##name, Hit_##name, name##_, type)
#define TREL_RNG_EMPTY(name)             \
  TREL_ACCESSOR_INV(Inv_##name, name##_) \
  TREL_ACCESSOR_REJ(Rej_##name, name##_)
#define TREL_RNG_OWN(name, type, ...) \
  TREL_RNG_READ(name, type)           \
  TREL_ACCESSOR_GET(Get_##name, name##_, type)
#define TREL_RNG_VALUE(name, type, ...) \
  TREL_RNG_OWN(name, type, )            \
  TREL_RNG_EMPTY(name)                  \
  TREL_ACCESSOR_SET(Set_##name, name##_, type)
#define TREL_RNG_CODE(name, enumeration, ...)                  \
  TREL_RNG_READ(name, Enum::Traits<Enum::enumeration>::Number) \
  TREL_RNG_EMPTY(name)                                         \
  TREL_ACCESSOR_GET_CODE(Get_##name, name##_, enumeration)     \
  TREL_ACCESSOR_SET_CODE(Set_##name, name##_, enumeration)
#define TREL_RNG_ARRAY(name, type, ...)                            \
  [[nodiscard]] bool Is_##name##_Valid(std::size_t index) const {  \
    return name##_.good(index);                                    \
  }                                                                \
  [[nodiscard]] type Get_##name(std::size_t index) const {         \
    return name##_.get_data(index);                                \
  }                                                                \
  void Set_##name(std::size_t index, type value) {                 \
    name##_.set(index, reference());                               \
    name##_.set_data(index, value);                                \
  }                                                                \
  void Inv_##name(std::size_t index) {                             \
    Detail::invalidate(name##_, index);                            \
  }                                                                \
  void Inv_##name() {                                              \
    Detail::empty(name##_, Lib::Flags::Invalid);                   \
  }                                                                \
  void Rej_##name() {                                              \
    Detail::empty(name##_, Lib::Flags::Rejected);                  \
  }                                                                \
  [[nodiscard]] const Lib::VarArrayExt<type>& Var_##name() const { \
    return name##_;                                                \
  }                                                                \
  [[nodiscard]] Lib::VarArrayExt<type>& Hit_##name() {             \
    return name##_;                                                \
  }
#define TREL_RNG_MEMBER(name, type, ...) Lib::VariableExt<type> name##_;
#define TREL_RNG_RUN(name, type, count, ...) Lib::VarArrayExt<type> name##_{count};

namespace Detail {

// One entry: 0, without a time, with that flag.
template <Lib::ElementType T>
void empty(Lib::VarArrayExt<T>& run, std::size_t index, Lib::Flags flags) {
  run.set(index, Lib::StampExt());
  run.set_flags(index, flags);
  run.set_data(index, T{});
}

template <Lib::ElementType T>
void invalidate(Lib::VarArrayExt<T>& run, std::size_t index) {
  empty(run, index, Lib::Flags(Lib::Flags::Invalid | Lib::Flags::Timeless));
}

// All entries. A group that nobody wants is rejected packet after packet, and a run that is so
// already is left alone.
template <Lib::ElementType T>
void empty(Lib::VarArrayExt<T>& run, Lib::Flags::Bit bit) {
  const Lib::Flags flags(static_cast<unsigned char>(bit | Lib::Flags::Timeless));
  bool all = true;
  for (std::size_t index = 0; index < run.size(); ++index) {
    all &= run.get_flags(index) == flags;
  }
  if (all) return;
  for (std::size_t index = 0; index < run.size(); ++index) empty(run, index, flags);
}

}  // namespace Detail

// What is known of one source of navigation packets.
class DataWrap : public Lib::StampedPart {
 public:
  DataWrap();
  // Makes every value, and the reference, invalid.
  void Invalidate();

#define VALUE TREL_RNG_VALUE
#define CODE TREL_RNG_CODE
#include "rng/Rng_ComDataWrap.def"

 private:
#define VALUE TREL_RNG_MEMBER
#include "rng/Rng_ComDataWrap.def"
};

// What one target reports, and what is computed from it.
class DataTarget : public Lib::StampedPart {
 public:
  DataTarget();
  // Makes every value, and the reference, invalid.
  void Invalidate();

#define VALUE TREL_RNG_VALUE
#define HELD TREL_RNG_VALUE
#define CODE TREL_RNG_CODE
#define ARRAY TREL_RNG_ARRAY
#include "rng/Rng_ComDataTarget.def"

 private:
#define VALUE TREL_RNG_MEMBER
#define HELD TREL_RNG_MEMBER
#define ARRAY TREL_RNG_RUN
#include "rng/Rng_ComDataTarget.def"
};

// Time, the hunter, the lanes and the system. Its values are stamped with its own Nano.
class DataMain {
 public:
  DataMain();
  // Makes every value invalid.
  void Invalidate();

#define VALUE TREL_RNG_VALUE
#define OWN TREL_RNG_OWN
#define HELD TREL_RNG_VALUE
#define CODE TREL_RNG_CODE
#define ARRAY TREL_RNG_ARRAY
#include "rng/Rng_ComDataMain.def"

  // Nano's own stamp is its value, with flags 0.
  void Set_Nano(long long value);
  void Inv_Nano() {
    Nano_.invalidate();
  }

 private:
  [[nodiscard]] const Lib::StampExt& reference() const {
    return Nano_;
  }

#define VALUE TREL_RNG_MEMBER
#define HELD TREL_RNG_MEMBER
#define ARRAY TREL_RNG_RUN
#include "rng/Rng_ComDataMain.def"
};

class ComData {
 public:
  using DataWrap = Rng::DataWrap;
  using DataTarget = Rng::DataTarget;
  using DataMain = Rng::DataMain;

  static constexpr unsigned int kWraps = 8;
  static constexpr unsigned int kTargets = 4;

  // Makes every value of all parts invalid.
  void Invalidate();
  // Gives the main Nano stamp to the targets and the wraps.
  void ShareNano();

  // `index` must be below kWraps.
  [[nodiscard]] DataWrap& DWrap(unsigned int index) { return wraps_[index]; }
  [[nodiscard]] const DataWrap& DWrap(unsigned int index) const { return wraps_[index]; }
  // `index` must be below kTargets.
  [[nodiscard]] DataTarget& DTarget(unsigned int index) { return targets_[index]; }
  [[nodiscard]] const DataTarget& DTarget(unsigned int index) const { return targets_[index]; }
  [[nodiscard]] DataMain& DMain() { return main_; }
  [[nodiscard]] const DataMain& DMain() const { return main_; }

 private:
  std::array<DataWrap, kWraps> wraps_;
  std::array<DataTarget, kTargets> targets_;
  DataMain main_;
};

#undef TREL_RNG_READ
#undef TREL_RNG_EMPTY
#undef TREL_RNG_OWN
#undef TREL_RNG_VALUE
#undef TREL_RNG_CODE
#undef TREL_RNG_ARRAY
#undef TREL_RNG_MEMBER
#undef TREL_RNG_RUN

}  // namespace Trel::Rng
