// Bit fields out of message data, little-endian, for each type that bits can hold.
//
// A field is read in a word of twice its type's width, shifted left until nothing stands above it,
// then right until it stands lowest; the signed integers get their sign by that. A read takes
// kReadBytes<B> bytes, wherever the field ends in them.
#pragma once

#include <bit>
#include <cstdint>
#include <type_traits>

#include "library/Lib_Cast.h"
#include "library/Lib_Types.h"

namespace Trel::UCom {

template <Lib::ElementType B>
inline constexpr std::uint32_t kReadBytes = std::is_same_v<B, bool> ? 1 : sizeof(B) + 1;

template <Lib::ElementType B>
using Bits = std::conditional_t<
    sizeof(B) == 1, std::uint8_t,
    std::conditional_t<sizeof(B) == 2, std::uint16_t,
                       std::conditional_t<sizeof(B) == 4, std::uint32_t, std::uint64_t>>>;

// `word` moved down by `count` bits, as B's sign asks.
template <Lib::ElementType B, class Word>
[[nodiscard]] constexpr Word shift_down(Word word, std::uint32_t count) {
  if constexpr (std::is_integral_v<B> && std::is_signed_v<B>) {
    return static_cast<Word>(static_cast<std::make_signed_t<Word>>(word) >> count);
  } else {
    return static_cast<Word>(word >> count);
  }
}

// The lowest bits of the field at `p` that a B has. The shifts are those of SignalRange.
template <Lib::ElementType B>
[[nodiscard]] constexpr Bits<B> extract_bits(const unsigned char* p, std::uint32_t left,
                                             std::uint32_t right) {
  constexpr int kBytes = sizeof(B);
  const auto low = Lib::load_bytes<Bits<B>, kBytes, Lib::ByteOrder::LE>(p);
  if constexpr (kBytes == 8) {
    const std::uint64_t high = p[8];
    const std::uint64_t top =
        left < 64 ? (high << left) | (low >> (64 - left)) : low << (left - 64);
    return shift_down<B>(top, right - 64);
  } else {
    using Word = std::conditional_t<kBytes == 1, std::uint16_t,
                                    std::conditional_t<kBytes == 2, std::uint32_t, std::uint64_t>>;
    const auto wide = (std::uint64_t{p[kBytes]} << (8 * kBytes)) | low;
    return static_cast<Bits<B>>(shift_down<B>(static_cast<Word>(wide << left), right));
  }
}

// The field as a B.
template <Lib::ElementType B>
[[nodiscard]] constexpr B extract(const unsigned char* p, std::uint32_t left, std::uint32_t right) {
  if constexpr (std::is_same_v<B, bool>) {
    return ((p[0] << left) & 0xFF) >> right != 0;
  } else if constexpr (std::is_floating_point_v<B>) {
    return std::bit_cast<B>(extract_bits<B>(p, left, right));
  } else {
    return static_cast<B>(extract_bits<B>(p, left, right));
  }
}

// The same for a field that fills a B from the border of a byte on: no shift is needed, and nothing
// behind the field is read.
template <Lib::ElementType B>
[[nodiscard]] constexpr B extract_whole(const unsigned char* p) {
  return std::bit_cast<B>(Lib::load_bytes<Bits<B>, sizeof(B), Lib::ByteOrder::LE>(p));
}

}  // namespace Trel::UCom
