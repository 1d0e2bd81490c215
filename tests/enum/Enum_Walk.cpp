#include "Enum_Walk.h"

#include "enum/Enum.h"

#include <type_traits>
#include <utility>

namespace Trel::Enum::Test {
namespace {

template <class E>
struct Named;

#define TREL_ENUM(X, count, N, shape, V, otherwise)                                      \
  template <>                                                                            \
  struct Named<X> {                                                                      \
    template <class I>                                                                   \
    static Outcome convert(I raw) {                                                      \
      static_assert(noexcept(Cast_##X(raw)));                                            \
      static_assert(noexcept(Cast_##X##_t(raw)));                                        \
      static_assert(noexcept(Cast_##X##_string(raw)));                                   \
      static_assert(noexcept(Cast_##X##_verbose(raw)));                                  \
      static_assert(std::is_same_v<decltype(Cast_##X##_t(raw)), std::make_signed_t<N>>); \
      Outcome outcome{};                                                                 \
      outcome.cast = Cast_##X(raw);                                                      \
      outcome.cast_t = Cast_##X##_t(raw);                                                \
      outcome.cast_string = Cast_##X##_string(raw);                                      \
      outcome.cast_verbose = Cast_##X##_verbose(raw);                                    \
      X target = static_cast<X>(raw == 0 ? 1 : 0);                                       \
      outcome.set = Set(target, raw);                                                    \
      outcome.target = target;                                                           \
      return outcome;                                                                    \
    }                                                                                    \
  };
#include "enum/Enum_Tables.def"

template <class E, class I>
Conversions conversions(const char* type) {
  return {type, static_cast<int>(8 * sizeof(I)), std::is_signed_v<I>,
          [](unsigned long long pattern) { return Named<E>::convert(static_cast<I>(pattern)); }};
}

template <class E>
Enumerated enumerated(const char* name, Shape shape, std::vector<Line> lines) {
  using N = std::underlying_type_t<E>;
  static_assert(std::is_same_v<decltype(GetIndex(E{})), std::make_signed_t<N>>);
  static_assert(noexcept(GetName(E{})));
  static_assert(noexcept(GetTag(E{})));
  static_assert(noexcept(GetString(E{})));
  static_assert(noexcept(GetVerbose(E{})));
  static_assert(noexcept(GetComment(E{})));
  static_assert(noexcept(GetIndex(E{})));
  static_assert(noexcept(GetValue(E{})));
  const auto parse = [](unsigned int& target, const char* text) {
    E member = static_cast<E>(target);
    static_assert(noexcept(Parse(member, text)));
    static_assert(noexcept(Set(member, 0)));
    const bool parsed = Parse(member, text);
    target = member;
    return parsed;
  };
  return {
      name,
      shape == Shape::Dense,
      static_cast<int>(8 * sizeof(N)),
      std::move(lines),
      {conversions<E, N>("narrow"), conversions<E, signed char>("signed char"),
       conversions<E, int>("int"), conversions<E, unsigned int>("unsigned int"),
       conversions<E, long>("long"), conversions<E, long long>("long long"),
       conversions<E, unsigned long long>("unsigned long long")},
      [](unsigned int number) { return GetName(static_cast<E>(number)); },
      [](unsigned int number) { return GetTag(static_cast<E>(number)); },
      [](unsigned int number) { return GetString(static_cast<E>(number)); },
      [](unsigned int number) { return GetVerbose(static_cast<E>(number)); },
      [](unsigned int number) { return GetComment(static_cast<E>(number)); },
      [](unsigned int number) { return static_cast<int>(GetIndex(static_cast<E>(number))); },
      [](unsigned int number) { return static_cast<double>(GetValue(static_cast<E>(number))); },
      parse,
  };
}

std::vector<Enumerated> walk() {
  std::vector<Enumerated> all;
#define TREL_ENUM(X, count, N, shape, V, otherwise) \
  all.push_back(enumerated<X>(#X, Shape::shape, std::vector<Line>{
#define TREL_MEMBER(tag, number, string, verbose, comment) {#tag, number},
#define TREL_MEMBER_VALUE(tag, number, index, value, string, verbose, comment) {#tag, number},
#define TREL_NEUTRAL(tag, number) {#tag, number},
#define TREL_END(X) \
  }));
#include "enum/Enum_Tables.def"
  return all;
}

}  // namespace

bool Enumerated::has(unsigned long long number) const {
  for (const Line& line : lines) {
    if (line.number == number) return true;
  }
  return false;
}

const std::vector<Enumerated>& enumerations() {
  static const std::vector<Enumerated> all = walk();
  return all;
}

}  // namespace Trel::Enum::Test
