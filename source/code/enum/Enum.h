// The vocabulary: every enumeration of the system, with one family of functions for each.
//
// An enumeration X is a plain enumerated type over a narrow unsigned type. Its last member is
// X_UNKNOWN. A raw number or a text becomes an X through Cast_X, Set or Parse, and what cannot
// becomes X_UNKNOWN. Every member has a tag (its own name), a string (short, the one that Parse
// takes), a verbose and a comment (for people), an index (for wire and file) and a value (what the
// member stands for). Texts live for ever; nothing allocates, nothing throws.
//
// The members stand in the .def tables, which Enum_Tables.def lists. A member whose meaning is not
// known carries its number for a name: X_VALUE_03, with "Value 3" for each of its texts.
#pragma once

#include "enum/Enum_Table.h"

namespace Trel::Enum {

// clang-format off
#define TREL_ENUM(X, count, N, shape, V, otherwise) enum X : N {
#define TREL_MEMBER(tag, number, string, verbose, comment) tag = number,
#define TREL_MEMBER_VALUE(tag, number, index, value, string, verbose, comment) tag = number,
#define TREL_NEUTRAL(tag, number) tag = number,
#define TREL_END(X) };
#include "enum/Enum_Tables.def"
// clang-format on

#define TREL_ENUM(X, count, N, shape, V, otherwise)               \
  template <>                                                     \
  struct Traits<X> {                                              \
    using Number = N;                                             \
    using Signed = std::make_signed_t<N>;                         \
    using Value = V;                                              \
    static constexpr const char* kName = #X;                      \
    static constexpr X kUnknown = X##_UNKNOWN;                    \
    static constexpr Otherwise kOtherwise = Otherwise::otherwise; \
    static const Table kTable;                                    \
  };
#include "enum/Enum_Tables.def"

// The enumeration's name. The argument is not used.
template <Enumeration E>
[[nodiscard]] constexpr const char* GetName(E) noexcept {
  return Traits<E>::kName;
}

// The four texts; null for a number that is no member.
template <Enumeration E>
[[nodiscard]] const char* GetTag(E member) noexcept {
  const Row* row = find(Traits<E>::kTable, member);
  return row ? row->tag : nullptr;
}

template <Enumeration E>
[[nodiscard]] const char* GetString(E member) noexcept {
  const Row* row = find(Traits<E>::kTable, member);
  return row ? row->string : nullptr;
}

template <Enumeration E>
[[nodiscard]] const char* GetVerbose(E member) noexcept {
  const Row* row = find(Traits<E>::kTable, member);
  return row ? row->verbose : nullptr;
}

template <Enumeration E>
[[nodiscard]] const char* GetComment(E member) noexcept {
  const Row* row = find(Traits<E>::kTable, member);
  return row ? row->comment : nullptr;
}

// The number for wire and file use, signed and of the enumeration's width: a member above the sign
// bit comes back negative. 0 for a number that is no member.
template <Enumeration E>
[[nodiscard]] typename Traits<E>::Signed GetIndex(E member) noexcept {
  const Row* row = find(Traits<E>::kTable, member);
  return static_cast<typename Traits<E>::Signed>(row ? row->index : 0);
}

// The quantity that the member stands for; for a number that is no member 0 or that number, as the
// table says.
template <Enumeration E>
[[nodiscard]] typename Traits<E>::Value GetValue(E member) noexcept {
  using Value = typename Traits<E>::Value;
  if (const Row* row = find(Traits<E>::kTable, member)) return static_cast<Value>(row->value);
  return Traits<E>::kOtherwise == Otherwise::Argument ? static_cast<Value>(member) : Value{};
}

// Whether Cast and Set let the number pass: it is 0 to the number of _UNKNOWN. In a sparse
// enumeration such a number need not be a member; in a bit set it is a combination.
template <Enumeration E, Integer I>
[[nodiscard]] constexpr bool InRange(I number) noexcept {
  // A negative number turns into one above every bound.
  return static_cast<unsigned long long>(number) <= Traits<E>::kUnknown;
}

// The number as an E; E's _UNKNOWN when out of range.
template <Enumeration E, Integer I>
[[nodiscard]] constexpr E Cast(I number) noexcept {
  return InRange<E>(number) ? static_cast<E>(number) : Traits<E>::kUnknown;
}

// Assigns Cast<E>(number); false when that is _UNKNOWN for being out of range.
template <Enumeration E, Integer I>
constexpr bool Set(E& target, I number) noexcept {
  target = Cast<E>(number);
  return InRange<E>(number);
}

// Assigns the first member with this string and returns true; otherwise, and for null, assigns
// _UNKNOWN and returns false. Case counts. "Unknown" is a member's string like any other.
template <Enumeration E>
bool Parse(E& target, const char* text) noexcept {
  const Row* row = find(Traits<E>::kTable, text);
  target = row ? static_cast<E>(row->number) : Traits<E>::kUnknown;
  return row != nullptr;
}

// By name for each enumeration: Cast_X is Cast<X>, Cast_X_t its signed number, Cast_X_string and
// Cast_X_verbose its texts. Each takes a number of any integer type.
#define TREL_ENUM(X, count, N, shape, V, otherwise)                           \
  template <Integer I>                                                        \
  [[nodiscard]] constexpr X Cast_##X(I number) noexcept {                     \
    return Cast<X>(number);                                                   \
  }                                                                           \
  template <Integer I>                                                        \
  [[nodiscard]] constexpr Traits<X>::Signed Cast_##X##_t(I number) noexcept { \
    return static_cast<Traits<X>::Signed>(Cast<X>(number));                   \
  }                                                                           \
  template <Integer I>                                                        \
  [[nodiscard]] const char* Cast_##X##_string(I number) noexcept {            \
    return GetString(Cast<X>(number));                                        \
  }                                                                           \
  template <Integer I>                                                        \
  [[nodiscard]] const char* Cast_##X##_verbose(I number) noexcept {           \
    return GetVerbose(Cast<X>(number));                                       \
  }
#include "enum/Enum_Tables.def"

}  // namespace Trel::Enum
