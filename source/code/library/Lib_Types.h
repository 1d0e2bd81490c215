// The eleven element types that a decoded value can have, listed once.
//
// TREL_ELEMENT_TYPES(X) expands X(suffix, type) for each, in the order of every per-type list:
// `suffix` is the name that families of functions carry, `type` the C++ type. The fixed-width names
// of the standard library are not used for 64 bits: there the element types are the long longs.
#pragma once

#include "enum/Enum.h"

#include <tuple>
#include <type_traits>

#define TREL_ELEMENT_TYPES(X) \
  X(float, float)             \
  X(double, double)           \
  X(bool, bool)               \
  X(int8_t, signed char)      \
  X(int16_t, short)           \
  X(int32_t, int)             \
  X(int64_t, long long)       \
  X(uint8_t, unsigned char)   \
  X(uint16_t, unsigned short) \
  X(uint32_t, unsigned int)   \
  X(uint64_t, unsigned long long)

namespace Trel::Lib {

using ElementTypes = std::tuple<float, double, bool, signed char, short, int, long long,
                                unsigned char, unsigned short, unsigned int, unsigned long long>;

// The BASIC_TYPE of an element type; UNKNOWN for any other type.
template <class T>
inline constexpr Enum::BASIC_TYPE kBasicType = Enum::BASIC_TYPE_UNKNOWN;
#define TREL_BASIC_TYPE(suffix, type) \
  template <>                         \
  inline constexpr Enum::BASIC_TYPE kBasicType<type> = Enum::BASIC_TYPE_##suffix;
TREL_ELEMENT_TYPES(TREL_BASIC_TYPE)
#undef TREL_BASIC_TYPE

template <class T>
concept ElementType = kBasicType<T>
!= Enum::BASIC_TYPE_UNKNOWN;

// Calls `visit` with std::type_identity<T> of the element type that `type` names and returns true;
// false, without a call, for a tag that names none of the eleven.
template <class Visitor>
constexpr bool visit_element_type(Enum::BASIC_TYPE type, Visitor&& visit) {
  switch (type) {
#define TREL_VISIT(suffix, T)       \
  case Enum::BASIC_TYPE_##suffix:   \
    visit(std::type_identity<T>{}); \
    return true;
    TREL_ELEMENT_TYPES(TREL_VISIT)
#undef TREL_VISIT
    default:
      return false;
  }
}

}  // namespace Trel::Lib
