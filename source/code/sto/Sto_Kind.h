// The 22 element kinds: a scalar and an array form of each of the eleven element types.
//
// They are the unit of every repetitive interface of the store, and they are always tried in this
// order. TREL_ELEMENT_KINDS(X) expands X(kind, K) for each: `kind` is the suffix that the families
// of functions carry (add_element_Var_t_float), K the tag type that templates on a kind take.
#pragma once

#include <cstddef>
#include <tuple>
#include <type_traits>

#include "library/Lib_Variable.h"

#define TREL_ELEMENT_KINDS(X)                  \
  X(Var_t_float, Var_t<float>)                 \
  X(Var_t_double, Var_t<double>)               \
  X(Var_t_bool, Var_t<bool>)                   \
  X(Var_t_int8_t, Var_t<signed char>)          \
  X(Var_t_int16_t, Var_t<short>)               \
  X(Var_t_int32_t, Var_t<int>)                 \
  X(Var_t_int64_t, Var_t<long long>)           \
  X(Var_t_uint8_t, Var_t<unsigned char>)       \
  X(Var_t_uint16_t, Var_t<unsigned short>)     \
  X(Var_t_uint32_t, Var_t<unsigned int>)       \
  X(Var_t_uint64_t, Var_t<unsigned long long>) \
  X(Arr_t_float, Arr_t<float>)                 \
  X(Arr_t_double, Arr_t<double>)               \
  X(Arr_t_bool, Arr_t<bool>)                   \
  X(Arr_t_int8_t, Arr_t<signed char>)          \
  X(Arr_t_int16_t, Arr_t<short>)               \
  X(Arr_t_int32_t, Arr_t<int>)                 \
  X(Arr_t_int64_t, Arr_t<long long>)           \
  X(Arr_t_uint8_t, Arr_t<unsigned char>)       \
  X(Arr_t_uint16_t, Arr_t<unsigned short>)     \
  X(Arr_t_uint32_t, Arr_t<unsigned int>)       \
  X(Arr_t_uint64_t, Arr_t<unsigned long long>)

namespace Trel::Sto {

// A scalar kind.
template <Lib::ElementType T>
struct Var_t {
  using value_type = T;
  using variable_type = Lib::VariableExt<T>;
  static constexpr bool kIsArray = false;
};

// An array kind.
template <Lib::ElementType T>
struct Arr_t {
  using value_type = T;
  using variable_type = Lib::VarArrayExt<T>;
  static constexpr bool kIsArray = true;
};

namespace Detail {
template <class... T>
std::tuple<Var_t<T>..., Arr_t<T>...> kinds_of(std::type_identity<std::tuple<T...>>);
}

// The tag types of the table above, in its order.
using ElementKinds = decltype(Detail::kinds_of(std::type_identity<Lib::ElementTypes>{}));
inline constexpr std::size_t kKinds = std::tuple_size_v<ElementKinds>;
static_assert(kKinds == 22);

namespace Detail {
template <class K, class... Other>
constexpr std::size_t index_of(std::type_identity<std::tuple<Other...>>) {
  std::size_t index = 0;
  (void)((std::is_same_v<K, Other> || (++index, false)) || ...);
  return index;
}
}  // namespace Detail

// The place of a kind in that order.
template <class K>
inline constexpr std::size_t kKindIndex = Detail::index_of<K>(std::type_identity<ElementKinds>{});

// The kind whose variables are of type V.
template <class V>
struct KindOf;
template <Lib::ElementType T>
struct KindOf<Lib::VariableExt<T>> {
  using type = Var_t<T>;
};
template <Lib::ElementType T>
struct KindOf<Lib::VarArrayExt<T>> {
  using type = Arr_t<T>;
};

// Calls visit(std::type_identity<K>{}) for each kind in order.
template <class Visitor>
void for_each_kind(Visitor&& visit) {
#define TREL_VISIT(kind, K) visit(std::type_identity<K>{});
  TREL_ELEMENT_KINDS(TREL_VISIT)
#undef TREL_VISIT
}

// Calls visit(std::type_identity<K>{}) for the kinds in order until one returns true; whether one
// did.
template <class Visitor>
bool first_kind(Visitor&& visit) {
  return false
#define TREL_VISIT(kind, K) || visit(std::type_identity<K>{})
      TREL_ELEMENT_KINDS(TREL_VISIT)
#undef TREL_VISIT
          ;
}

// A tuple of Item<T> for each element type, in order.
template <template <class> class Item>
struct PerType {
  template <class... T>
  static std::tuple<Item<T>...> make(std::type_identity<std::tuple<T...>>);
  using type = decltype(make(std::type_identity<Lib::ElementTypes>{}));
};

}  // namespace Trel::Sto
