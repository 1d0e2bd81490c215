#include "enum/Enum.h"

#include <cstddef>
#include <iterator>
#include <string_view>

namespace Trel::Enum {
namespace {

template <Enumeration E>
constexpr Row row(E member, const char* tag, int index, double value, const char* string,
                  const char* verbose, const char* comment) {
  return {tag, string, verbose, comment, value, member, static_cast<short>(index)};
}

template <Enumeration E>
constexpr Row row(E member, const char* tag, const char* string, const char* verbose,
                  const char* comment) {
  return row(member, tag, static_cast<typename Traits<E>::Signed>(member), member, string, verbose,
             comment);
}

// clang-format off
#define TREL_ENUM(X, count, N, shape, V, otherwise) constexpr Row kRows_##X[] = {
#define TREL_MEMBER(tag, number, string, verbose, comment) row(tag, #tag, string, verbose, comment),
#define TREL_MEMBER_VALUE(tag, number, index, value, string, verbose, comment) \
  row(tag, #tag, index, value, string, verbose, comment),
#define TREL_NEUTRAL(tag, number) \
  row(tag, #tag, "Value " #number, "Value " #number, "Value " #number),
#define TREL_END(X) };
#include "enum/Enum_Tables.def"
// clang-format on

template <std::size_t Count>
constexpr bool tags_start_with(const Row (&rows)[Count], std::string_view prefix) {
  for (const Row& candidate : rows) {
    if (!std::string_view(candidate.tag).starts_with(prefix)) return false;
  }
  return true;
}

template <std::size_t Count>
constexpr bool numbers_fit(const Row (&rows)[Count], Shape shape) {
  if (rows[0].number != 0) return false;
  for (std::size_t i = 1; i < Count; ++i) {
    const int step = rows[i].number - rows[i - 1].number;
    if (step < 1 || (shape == Shape::Dense && step != 1)) return false;
  }
  return true;
}

constexpr int kEnumerations = 0
#define TREL_ENUM(X, count, N, shape, V, otherwise) +1
#include "enum/Enum_Tables.def"
    ;
static_assert(kEnumerations == 91);

// That no tag stands twice, the enumerators themselves see to.
#define TREL_ENUM(X, count, N, shape, V, otherwise)                                                \
  static_assert(std::size(kRows_##X) == count, #X " has another number of members");               \
  static_assert(tags_start_with(kRows_##X, #X "_"), "a tag is the enumeration's name, _, suffix"); \
  static_assert(numbers_fit(kRows_##X, Shape::shape), #X " is not " #shape " from 0");             \
  static_assert(kRows_##X[count - 1].number == X##_UNKNOWN, "_UNKNOWN is the last member");
#include "enum/Enum_Tables.def"

}  // namespace

#define TREL_ENUM(X, count, N, shape, V, otherwise) \
  constinit const Table Traits<X>::kTable{kRows_##X, count, Shape::shape};
#include "enum/Enum_Tables.def"

}  // namespace Trel::Enum
