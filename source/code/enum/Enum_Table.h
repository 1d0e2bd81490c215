// The machinery below the vocabulary: what a table of members is, and how a member is found in it.
//
// A table is constant data of the program: it exists before any dynamic initialisation, its texts
// live for ever, and nothing here allocates or fails. A number or a text that no row has gives
// null.
#pragma once

#include <type_traits>

namespace Trel::Enum {

// Dense: the numbers are 0, 1, 2 and so on, without a hole. Sparse: they ascend.
enum class Shape : unsigned char { Dense, Sparse };

// What GetValue gives for a number that is no member: 0, or the number itself.
enum class Otherwise : unsigned char { Zero, Argument };

// One member. `index` is the number seen as a signed one of the enumeration's width, unless the
// table gives another. `value` is exact for each type that a table gives its values.
struct Row {
  const char* tag;
  const char* string;
  const char* verbose;
  const char* comment;
  double value;
  unsigned short number;
  short index;
};

// All members of one enumeration, by ascending number. The last is the enumeration's _UNKNOWN.
struct Table {
  const Row* rows;
  unsigned short count;
  Shape shape;
};

// The row of the member with this number.
[[nodiscard]] const Row* find(const Table& table, unsigned int number) noexcept;

// The first row with this string, case and all.
[[nodiscard]] const Row* find(const Table& table, const char* string) noexcept;

// What the family of functions knows about the enumeration E at compile time.
template <class E>
struct Traits;

// One of the enumerations of the vocabulary.
template <class E>
concept Enumeration = requires {
  Traits<E>::kUnknown;
};

// A number as it comes from a file or a packet.
template <class I>
concept Integer = std::is_integral_v<I>;

}  // namespace Trel::Enum
