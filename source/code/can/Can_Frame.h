// The data of one CAN frame, and where and how one number stands in it.
//
// A frame is 64 bytes, however many were sent; what was not received reads as zeros, and so does
// whatever a field addresses outside the 64. A Field is plain numbers, worked out when the database
// is read, so decoding one costs a load, a shift and a mask. Nothing fails.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "library/Lib_Cast.h"
#include "library/Lib_Dynamic.h"

namespace Trel::Can {

using Dynamic = Lib::DynamicS<Lib::StampExt>;

class Frame {
 public:
  static constexpr int kBytes = 64;

  Frame() = default;
  Frame(const unsigned char* data, std::size_t size) { load(data, size); }

  // Copies at most 64 of the `size` bytes at `data`; zeros stand behind what is missing.
  void load(const unsigned char* data, std::size_t size) {
    unsigned char* const frame = bytes_.data() + kBelow;
    if (size >= kBytes) {
      std::memcpy(frame, data, kBytes);
      return;
    }
    std::memset(frame, 0, kBytes);
    if (size > 0) std::memcpy(frame, data, size);
  }

  // 64 bits, the lowest of them bit `shift` (0 to 7) of byte `byte` (0 to 64).
  [[nodiscard]] unsigned long long bits(int byte, int shift) const {
    const unsigned char* const low = bytes_.data() + kBelow + byte;
    return join(cast_8_byte_LE_to_uint64(low), low[8], shift);
  }

  // The same in the frame with its 64 bytes reversed; `byte` is -64 to 64.
  [[nodiscard]] unsigned long long reversed_bits(int byte, int shift) const {
    const unsigned char* const low = bytes_.data() + kBelow + kBytes - 8 - byte;
    return join(cast_8_byte_BE_to_uint64(low), low[-1], shift);
  }

 private:
  // Zeros around the frame: a field may begin at its last byte, or a whole frame length ahead of
  // the reversed one.
  static constexpr int kBelow = 16;
  static constexpr int kAbove = 64;

  static unsigned long long join(unsigned long long low, unsigned char next, int shift) {
    return (low >> shift) | (static_cast<unsigned long long>(next) << 1 << (63 - shift));
  }

  std::array<unsigned char, kBelow + kBytes + kAbove> bytes_{};
};

class Field {
 public:
  // The field's lowest bit and width. A big-endian field is placed in the frame with its 64 bytes
  // reversed, and may then begin below bit 0. `bit_low` is -511 to 512, `bit_length` 0 to 512; of a
  // field wider than 64 bits the low 64 are read.
  void place(int bit_low, int bit_length, bool little_endian, bool is_signed) {
    byte_ = static_cast<short>(bit_low >> 3);
    shift_ = static_cast<unsigned char>(bit_low & 7);
    little_endian_ = little_endian;
    is_signed_ = is_signed;
    mask_ = bit_length < 64 ? (1ULL << bit_length) - 1 : ~0ULL;
    const bool extends = is_signed && bit_length > 1 && bit_length < 64;
    sign_bit_ = extends ? 1ULL << (bit_length - 1) : 0;
  }

  // The type of the value is double, and it is number * factor + offset.
  void scale(double factor, double offset) {
    type_ = Lib::kBasicType<double>;
    real_factor_ = factor;
    real_offset_ = offset;
  }
  // The type is long long or unsigned long long; sums and products wrap.
  void scale(Enum::BASIC_TYPE type, unsigned long long factor, unsigned long long offset) {
    type_ = type;
    factor_ = factor;
    offset_ = offset;
  }

  [[nodiscard]] Enum::BASIC_TYPE get_type() const { return type_; }

  // The field's bits, neither extended nor scaled.
  [[nodiscard]] unsigned long long convert_u(const Frame& frame) const {
    return mask_ &
           (little_endian_ ? frame.bits(byte_, shift_) : frame.reversed_bits(byte_, shift_));
  }

  // Stores the value, good and at time 0.
  void convert(Dynamic& variable, const Frame& frame) const {
    variable.invalidate();
    variable.wipe();
    const unsigned long long number = (convert_u(frame) ^ sign_bit_) - sign_bit_;
    if (type_ == Lib::kBasicType<double>) {
      const double value = is_signed_ ? static_cast<double>(static_cast<long long>(number))
                                      : static_cast<double>(number);
      const double product = value * real_factor_;
      variable = product + real_offset_;
      return;
    }
    const unsigned long long value = number * factor_ + offset_;
    if (type_ == Lib::kBasicType<long long>) {
      variable = static_cast<long long>(value);
    } else {
      variable = value;
    }
  }

 private:
  unsigned long long mask_ = 0;
  unsigned long long sign_bit_ = 0;
  unsigned long long factor_ = 0;
  unsigned long long offset_ = 0;
  double real_factor_ = 0.0;
  double real_offset_ = 0.0;
  Enum::BASIC_TYPE type_ = Lib::kBasicType<unsigned long long>;
  short byte_ = 0;
  unsigned char shift_ = 0;
  bool little_endian_ = true;
  bool is_signed_ = true;
};

}  // namespace Trel::Can
