// Numbers out of packet bytes and into them, whatever the byte order of the host.
//
// Free functions whose names are built by rule: <n> is a count of bytes, LE or BE their order, and
// the types are int8 to int64, uint8 to uint64, real32 (float) and real64 (double). The templates
// of Trel::Lib hold the work, the macros below only spell the names. The byte pointer always comes
// first and must have n bytes; nothing is aligned, nothing else is touched, and no value is an
// error.
//
// The fixed forms keep the ends of their range for themselves. Of N bits, with M = 2^(N-1) - 1, the
// signed ones read -(M+1) as invalid, -M as under and M as over; with U = 2^N - 1, the unsigned
// ones read U as invalid and U - 1 as over. Casts to a fixed form saturate into these marks.
#pragma once

#include <bit>
#include <concepts>
#include <cstring>
#include <type_traits>
#include <utility>

namespace Trel::Lib {

// Which byte comes first: the lowest or the highest.
enum class ByteOrder { LE, BE };

// The types by the suffix that a name carries.
namespace CastType {
using int8 = signed char;
using int16 = short;
using int32 = int;
using int64 = long long;
using uint8 = unsigned char;
using uint16 = unsigned short;
using uint32 = unsigned int;
using uint64 = unsigned long long;
}  // namespace CastType

// The word in which a value of a T is put together: no narrower than int, so that nothing promotes.
template <class T>
using CastWord = std::conditional_t<sizeof(T) <= 4, unsigned int, unsigned long long>;

// The narrowest type that holds a fixed form of `Bits` bits.
template <int Bits>
using FixType = std::conditional_t<
    Bits <= 8, signed char,
    std::conditional_t<Bits <= 16, short, std::conditional_t<Bits <= 32, int, long long>>>;
template <int Bits>
using UfixType = std::make_unsigned_t<FixType<Bits>>;

// The N bytes at `p` as a T. A signed T
// wider than N bytes gets the sign extended.
template <class T, int N, ByteOrder Order>
[[nodiscard]] constexpr T load_bytes(const unsigned char* p) {
  static_assert(N >= 1 && N <= static_cast<int>(sizeof(T)));
  using Word = CastWord<T>;
  const Word word = [p]<int... I>(std::integer_sequence<int, I...>) {
    return ((static_cast<Word>(p[Order == ByteOrder::LE ? I : N - 1 - I]) << (8 * I)) | ...);
  }
  (std::make_integer_sequence<int, N>());
  if constexpr (std::is_signed_v<T>) {
    constexpr int kAbove = 8 * (static_cast<int>(sizeof(Word)) - N);
    return static_cast<T>(static_cast<std::make_signed_t<Word>>(word << kAbove) >> kAbove);
  } else {
    return static_cast<T>(word);
  }
}

// Writes the lowest N bytes of `value` at `p`.
template <int N, ByteOrder Order, class T>
constexpr void store_bytes(unsigned char* p, T value) {
  static_assert(N >= 1 && N <= static_cast<int>(sizeof(T)));
  const auto word = static_cast<CastWord<T>>(value);
  [ p, word ]<int... I>(std::integer_sequence<int, I...>) {
    ((p[Order == ByteOrder::LE ? I : N - 1 - I] = static_cast<unsigned char>(word >> (8 * I))),
     ...);
  }
  (std::make_integer_sequence<int, N>());
}

// The signed fixed form of an integer; never the invalid mark.
template <int Bits, std::integral T>
[[nodiscard]] constexpr FixType<Bits> to_fix(T value) {
  constexpr auto kMax = static_cast<long long>(~0ULL >> (65 - Bits));
  if (std::cmp_greater(value, kMax - 1)) return static_cast<FixType<Bits>>(kMax);
  if (std::cmp_less(value, -(kMax - 1))) return static_cast<FixType<Bits>>(-kMax);
  return static_cast<FixType<Bits>>(value);
}

// The unsigned fixed form of an integer; the invalid mark for a negative one.
template <int Bits, std::integral T>
[[nodiscard]] constexpr UfixType<Bits> to_ufix(T value) {
  constexpr auto kMax = ~0ULL >> (64 - Bits);
  if (std::cmp_less(value, 0)) return static_cast<UfixType<Bits>>(kMax);
  if (std::cmp_greater(value, kMax - 2)) return static_cast<UfixType<Bits>>(kMax - 1);
  return static_cast<UfixType<Bits>>(value);
}

// floor(value + 0.5) of a value far inside the range of long long, without a call.
[[nodiscard]] constexpr long long round_half_up(double value) {
  const double shifted = value + 0.5;
  const auto truncated = static_cast<long long>(shifted);
  return truncated - (static_cast<double>(truncated) > shifted ? 1 : 0);
}

// The nearest value of the signed fixed form, halves upwards; the invalid mark for NaN.
template <int Bits>
[[nodiscard]] constexpr FixType<Bits> real_to_fix(double value) {
  static_assert(Bits <= 48, "the thresholds are exact in a double");
  constexpr auto kMax = static_cast<long long>(~0ULL >> (65 - Bits));
  constexpr double kOver = static_cast<double>(kMax) - 0.5;
  if (value != value) return static_cast<FixType<Bits>>(-kMax - 1);
  if (value >= kOver) return static_cast<FixType<Bits>>(kMax);
  if (value < -kOver) return static_cast<FixType<Bits>>(-kMax);
  return static_cast<FixType<Bits>>(round_half_up(value));
}

// The nearest value of the unsigned fixed form, halves upwards; the invalid mark for NaN and for
// anything below 0.
template <int Bits>
[[nodiscard]] constexpr UfixType<Bits> real_to_ufix(double value) {
  static_assert(Bits <= 48, "the thresholds are exact in a double");
  constexpr auto kMax = static_cast<long long>(~0ULL >> (64 - Bits));
  constexpr double kOver = static_cast<double>(kMax) - 1.5;
  if (value != value || value < 0.0) return static_cast<UfixType<Bits>>(kMax);
  if (value >= kOver) return static_cast<UfixType<Bits>>(kMax - 1);
  return static_cast<UfixType<Bits>>(round_half_up(value));
}

// The counter of type T whose low N bytes are at `p`: the first such at or after `previous`.
template <class T, int N>
[[nodiscard]] constexpr T unwrap_counter(const unsigned char* p, T previous) {
  constexpr T kStep = T{1} << (8 * N);
  const T low = load_bytes<T, N, ByteOrder::LE>(p);
  const T wrap = (previous & (kStep - 1)) > low ? kStep : T{0};
  return low + (previous & ~(kStep - 1)) + wrap;
}

template <class T>
[[nodiscard]] constexpr T swap_bytes(T value) {
  unsigned char bytes[sizeof(T)]{};
  store_bytes<sizeof(T), ByteOrder::LE>(bytes, value);
  return load_bytes<T, sizeof(T), ByteOrder::BE>(bytes);
}

template <class T>
[[nodiscard]] constexpr T to_network_order(T value) {
  return std::endian::native == std::endian::big ? value : swap_bytes(value);
}

}  // namespace Trel::Lib

// cast_<n>_byte_<LE/BE>_to_<type>(p) and cast_<type>_to_<n>_byte_<LE/BE>(p, value). A write of
// fewer bytes than the type has stores the lowest ones.
#define TREL_CAST_BYTES(n, order, type)                                                         \
  [[nodiscard]] constexpr Trel::Lib::CastType::type cast_##n##_byte_##order##_to_##type(        \
      const unsigned char* p) {                                                                 \
    return Trel::Lib::load_bytes<Trel::Lib::CastType::type, n, Trel::Lib::ByteOrder::order>(p); \
  }                                                                                             \
  constexpr void cast_##type##_to_##n##_byte_##order(unsigned char* p,                          \
                                                     Trel::Lib::CastType::type value) {         \
    Trel::Lib::store_bytes<n, Trel::Lib::ByteOrder::order>(p, value);                           \
  }
#define TREL_CAST_LE_1(type) TREL_CAST_BYTES(1, LE, type)
#define TREL_CAST_LE_2(type) TREL_CAST_LE_1(type) TREL_CAST_BYTES(2, LE, type)
#define TREL_CAST_LE_3(type) TREL_CAST_LE_2(type) TREL_CAST_BYTES(3, LE, type)
#define TREL_CAST_LE_4(type) TREL_CAST_LE_3(type) TREL_CAST_BYTES(4, LE, type)
#define TREL_CAST_LE_5(type) TREL_CAST_LE_4(type) TREL_CAST_BYTES(5, LE, type)
#define TREL_CAST_LE_6(type) TREL_CAST_LE_5(type) TREL_CAST_BYTES(6, LE, type)
#define TREL_CAST_LE_7(type) TREL_CAST_LE_6(type) TREL_CAST_BYTES(7, LE, type)
#define TREL_CAST_LE_8(type) TREL_CAST_LE_7(type) TREL_CAST_BYTES(8, LE, type)
#define TREL_CAST_INTEGER(n, type) TREL_CAST_LE_##n(type) TREL_CAST_BYTES(n, BE, type)
TREL_CAST_INTEGER(1, int8)
TREL_CAST_INTEGER(2, int16)
TREL_CAST_INTEGER(4, int32)
TREL_CAST_INTEGER(8, int64)
TREL_CAST_INTEGER(1, uint8)
TREL_CAST_INTEGER(2, uint16)
TREL_CAST_INTEGER(4, uint32)
TREL_CAST_INTEGER(8, uint64)
TREL_CAST_BYTES(2, BE, int32)
TREL_CAST_BYTES(3, BE, int32)

// The IEEE 754 patterns, named likewise: cast_4_byte_LE_to_real32(p).
#define TREL_CAST_REAL(n, order, bits, type)                                                     \
  [[nodiscard]] constexpr type cast_##n##_byte_##order##_to_real##bits(const unsigned char* p) { \
    return std::bit_cast<type>(cast_##n##_byte_##order##_to_uint##bits(p));                      \
  }                                                                                              \
  constexpr void cast_real##bits##_to_##n##_byte_##order(unsigned char* p, type value) {         \
    cast_uint##bits##_to_##n##_byte_##order(                                                     \
        p, std::bit_cast<Trel::Lib::CastType::uint##bits>(value));                               \
  }
TREL_CAST_REAL(4, LE, 32, float)
TREL_CAST_REAL(4, BE, 32, float)
TREL_CAST_REAL(8, LE, 64, double)
TREL_CAST_REAL(8, BE, 64, double)

// Copies in the byte order of the host.
[[nodiscard]] inline float cast_4_byte_to_float(const unsigned char* p) {
  float value;
  std::memcpy(&value, p, sizeof value);
  return value;
}
inline void cast_float_to_4_byte(unsigned char* p, float value) {
  std::memcpy(p, &value, sizeof value);
}

// cast_<int type>_to_fix<bits>(value) and cast_<int type>_to_ufix<bits>(value).
#define TREL_CAST_FIX(type, bits)                                                \
  [[nodiscard]] constexpr Trel::Lib::FixType<bits> cast_##type##_to_fix##bits(   \
      Trel::Lib::CastType::type value) {                                         \
    return Trel::Lib::to_fix<bits>(value);                                       \
  }                                                                              \
  [[nodiscard]] constexpr Trel::Lib::UfixType<bits> cast_##type##_to_ufix##bits( \
      Trel::Lib::CastType::type value) {                                         \
    return Trel::Lib::to_ufix<bits>(value);                                      \
  }
#define TREL_CAST_FIX_PAIR(type, a, b) TREL_CAST_FIX(type, a) TREL_CAST_FIX(type, b)
#define TREL_CAST_FIX_WIDTHS(type) \
  TREL_CAST_FIX_PAIR(type, 8, 16)  \
  TREL_CAST_FIX_PAIR(type, 24, 32) TREL_CAST_FIX_PAIR(type, 40, 48) TREL_CAST_FIX_PAIR(type, 56, 64)
TREL_CAST_FIX_WIDTHS(int8)
TREL_CAST_FIX_WIDTHS(int16)
TREL_CAST_FIX_WIDTHS(int32)
TREL_CAST_FIX_WIDTHS(int64)
TREL_CAST_FIX_WIDTHS(uint8)
TREL_CAST_FIX_WIDTHS(uint16)
TREL_CAST_FIX_WIDTHS(uint32)
TREL_CAST_FIX_WIDTHS(uint64)

// cast_real64_to_fix<bits>(value), cast_real64_to_fixed_to_<n>_byte_<LE/BE>(p, value), and the same
// with ufix and ufixed.
#define TREL_CAST_REAL_FIX(n, bits)                                                           \
  [[nodiscard]] constexpr Trel::Lib::FixType<bits> cast_real64_to_fix##bits(double value) {   \
    return Trel::Lib::real_to_fix<bits>(value);                                               \
  }                                                                                           \
  [[nodiscard]] constexpr Trel::Lib::UfixType<bits> cast_real64_to_ufix##bits(double value) { \
    return Trel::Lib::real_to_ufix<bits>(value);                                              \
  }                                                                                           \
  TREL_CAST_REAL_FIX_BYTES(n, bits, LE)
#define TREL_CAST_REAL_FIX_BYTES(n, bits, order)                                                 \
  constexpr void cast_real64_to_fixed_to_##n##_byte_##order(unsigned char* p, double value) {    \
    Trel::Lib::store_bytes<n, Trel::Lib::ByteOrder::order>(p, cast_real64_to_fix##bits(value));  \
  }                                                                                              \
  constexpr void cast_real64_to_ufixed_to_##n##_byte_##order(unsigned char* p, double value) {   \
    Trel::Lib::store_bytes<n, Trel::Lib::ByteOrder::order>(p, cast_real64_to_ufix##bits(value)); \
  }
TREL_CAST_REAL_FIX(1, 8)
TREL_CAST_REAL_FIX(2, 16)
TREL_CAST_REAL_FIX(3, 24)
TREL_CAST_REAL_FIX(4, 32)
TREL_CAST_REAL_FIX(5, 40)
TREL_CAST_REAL_FIX(6, 48)
TREL_CAST_REAL_FIX_BYTES(1, 8, BE)
TREL_CAST_REAL_FIX_BYTES(2, 16, BE)
TREL_CAST_REAL_FIX_BYTES(4, 32, BE)

#undef TREL_CAST_BYTES
#undef TREL_CAST_LE_1
#undef TREL_CAST_LE_2
#undef TREL_CAST_LE_3
#undef TREL_CAST_LE_4
#undef TREL_CAST_LE_5
#undef TREL_CAST_LE_6
#undef TREL_CAST_LE_7
#undef TREL_CAST_LE_8
#undef TREL_CAST_INTEGER
#undef TREL_CAST_REAL
#undef TREL_CAST_FIX
#undef TREL_CAST_FIX_PAIR
#undef TREL_CAST_FIX_WIDTHS
#undef TREL_CAST_REAL_FIX
#undef TREL_CAST_REAL_FIX_BYTES

// A short counter extended with the last full value. A low part below that of `previous` is one
// wrap, an equal one is none.
[[nodiscard]] constexpr unsigned int incr_1_byte_LE_to_uint32(const unsigned char* p,
                                                              unsigned int previous) {
  return Trel::Lib::unwrap_counter<unsigned int, 1>(p, previous);
}
[[nodiscard]] constexpr unsigned int incr_2_byte_LE_to_uint32(const unsigned char* p,
                                                              unsigned int previous) {
  return Trel::Lib::unwrap_counter<unsigned int, 2>(p, previous);
}
[[nodiscard]] constexpr unsigned long long incr_2_byte_LE_to_uint64(const unsigned char* p,
                                                                    unsigned long long previous) {
  return Trel::Lib::unwrap_counter<unsigned long long, 2>(p, previous);
}

// The value with its bytes in the opposite order.
[[nodiscard]] constexpr unsigned short swap_uint16_byte_order(unsigned short value) {
  return Trel::Lib::swap_bytes(value);
}
[[nodiscard]] constexpr unsigned int swap_uint32_byte_order(unsigned int value) {
  return Trel::Lib::swap_bytes(value);
}
[[nodiscard]] constexpr unsigned long long swap_uint64_byte_order(unsigned long long value) {
  return Trel::Lib::swap_bytes(value);
}

// The value as it must lie in the memory of the host to be big-endian there.
[[nodiscard]] constexpr unsigned short cast_uint16_to_network_byte_order(unsigned short value) {
  return Trel::Lib::to_network_order(value);
}
[[nodiscard]] constexpr unsigned int cast_uint32_to_network_byte_order(unsigned int value) {
  return Trel::Lib::to_network_order(value);
}
[[nodiscard]] constexpr unsigned long long cast_uint64_to_network_byte_order(
    unsigned long long value) {
  return Trel::Lib::to_network_order(value);
}
