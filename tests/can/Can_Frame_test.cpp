#include "can/Can_Frame.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>
#include <random>

#include "can/Can_Builders.h"

namespace Trel::Can {
namespace {

using Bytes = std::vector<unsigned char>;

// The frame bit that holds bit `index` of a field, counted from the field's lowest: one after the
// other upward, or from the start bit down to bit 0 of its byte and on at bit 7 of the next byte.
int frame_bit(int start, int length, bool little_endian, int index) {
  if (little_endian) return start + index;
  int bit = start;
  for (int step = length - 1; step > index; --step) bit = bit % 8 == 0 ? bit + 15 : bit - 1;
  return bit;
}

void set_bit(Bytes& bytes, int bit, bool on) {
  auto& byte = bytes[static_cast<std::size_t>(bit / 8)];
  byte = static_cast<unsigned char>(on ? byte | 1 << bit % 8 : byte & ~(1 << bit % 8));
}

// Writes `number` bit by bit; returns what of it lies inside the bytes.
unsigned long long encode(Bytes& bytes, int start, int length, bool little_endian,
                          unsigned long long number) {
  unsigned long long kept = 0;
  for (int index = 0; index < length; ++index) {
    const int bit = frame_bit(start, length, little_endian, index);
    if (bit >= static_cast<int>(bytes.size()) * 8) continue;
    set_bit(bytes, bit, (number >> index & 1) != 0);
    kept |= number & 1ULL << index;
  }
  return kept;
}

Bytes noise(std::mt19937_64& random, std::size_t size) {
  Bytes bytes(size);
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
  return bytes;
}

Field field(int start, int length, bool little_endian, bool is_signed) {
  Signal result;
  EXPECT_TRUE(result.set_range(start, length, little_endian, is_signed));
  return result.get_field();
}

// A copy in a heap block of exactly its size.
Frame load(const Bytes& bytes) {
  const std::unique_ptr<unsigned char[]> exact(new unsigned char[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), exact.get());
  return Frame(exact.get(), bytes.size());
}

TEST(Frame, every_field_of_every_start_length_and_order_reads_what_was_written) {
  constexpr unsigned int kSeed = 20260803;
  std::mt19937_64 random(kSeed);
  for (int length = 1; length <= 64; ++length) {
    for (int start = 0; start < 512; ++start) {
      for (const bool little_endian : {true, false}) {
        const unsigned long long number = random() >> (64 - length);
        Bytes bytes = noise(random, 64);
        const auto expected = encode(bytes, start, length, little_endian, number);
        ASSERT_EQ(field(start, length, little_endian, false).convert_u(load(bytes)), expected)
            << "seed " << kSeed << " start " << start << " length " << length << " little "
            << little_endian;
      }
    }
  }
}

TEST(Frame, a_frame_cut_off_anywhere_reads_zeros_behind_the_cut) {
  constexpr unsigned int kSeed = 20260804;
  std::mt19937_64 random(kSeed);
  for (std::size_t size = 0; size < 64; ++size) {
    for (int round = 0; round < 300; ++round) {
      const int length = 1 + static_cast<int>(random() % 64);
      const int start = static_cast<int>(random() % 512);
      const bool little_endian = random() % 2 == 0;
      Bytes bytes = noise(random, size);
      const auto expected = encode(bytes, start, length, little_endian, random() >> (64 - length));
      ASSERT_EQ(field(start, length, little_endian, false).convert_u(load(bytes)), expected)
          << "seed " << kSeed << " size " << size << " start " << start << " length " << length
          << " little " << little_endian;
    }
  }
}

TEST(Frame, what_was_loaded_before_leaves_no_trace) {
  Frame frame = load(Bytes(64, 0xFF));
  const unsigned char byte = 0x12;
  frame.load(&byte, 1);
  EXPECT_EQ(field(0, 64, true, false).convert_u(frame), 0x12U);
  EXPECT_EQ(field(504, 8, true, false).convert_u(frame), 0U);
}

TEST(Frame, no_data_is_a_frame_of_zeros) {
  EXPECT_EQ(field(0, 64, true, false).convert_u(Frame(nullptr, 0)), 0U);
}

TEST(Frame, bytes_behind_the_64th_are_not_read) {
  const Frame frame = load(Bytes(80, 0xFF));
  EXPECT_EQ(field(511, 8, true, false).convert_u(frame), 1U);
  EXPECT_EQ(field(504, 8, false, false).convert_u(frame), 0x80U);  // bit 504 is the highest of 8
}

TEST(Frame, a_big_endian_field_below_the_frame_reads_zeros) {
  const Frame frame = load(Bytes(64, 0xFF));
  // One bit of the frame ahead of 63 zeros, and 511 of them.
  EXPECT_EQ(field(504, 64, false, false).convert_u(frame), 1ULL << 63);
  EXPECT_EQ(field(504, 512, false, false).convert_u(frame), 0U);
}

TEST(Frame, a_field_without_bits_is_zero) {
  const Frame frame = load(Bytes(64, 0xFF));
  for (const int start : {0, 7, 504, 511}) {
    for (const bool little_endian : {true, false}) {
      EXPECT_EQ(field(start, 0, little_endian, true).convert_u(frame), 0U);
    }
  }
}

TEST(Frame, of_a_field_wider_than_64_bits_the_low_64_are_read) {
  Bytes bytes(64, 0);
  bytes[1] = 0xFE;
  bytes[8] = 0xFF;
  bytes[9] = 0xFF;
  EXPECT_EQ(field(8, 100, true, false).convert_u(load(bytes)), 0xFF000000000000FEULL);
}

TEST(Field, a_twelve_bit_number_with_its_top_bit_set_is_negative) {
  // Bits 4 to 15 of 10 80 are 0x801; less 0x1000 that is -2047.
  Dynamic variable;
  const Signal twelve = signal("SG_ A : 4|12@1- (1,0)");
  twelve.convert(variable, load({0x10, 0x80}));
  EXPECT_EQ(static_cast<long long>(variable), -2047);
}

TEST(Field, a_signed_number_of_one_bit_is_not_extended) {
  Dynamic variable;
  signal("SG_ A : 0|1@1- (1,0)").convert(variable, load({0x01}));
  EXPECT_EQ(static_cast<long long>(variable), 1);
  signal("SG_ A : 0|2@1- (1,0)").convert(variable, load({0x03}));
  EXPECT_EQ(static_cast<long long>(variable), -1);
}

TEST(Field, an_unsigned_number_is_never_negative) {
  Dynamic variable;
  signal("SG_ A : 0|64@1+ (1,0)").convert(variable, load(Bytes(8, 0xFF)));
  EXPECT_EQ(variable.type(), Lib::kBasicType<unsigned long long>);
  EXPECT_EQ(static_cast<unsigned long long>(variable), ~0ULL);
  signal("SG_ A : 0|64@1+ (1.0,0)").convert(variable, load(Bytes(8, 0xFF)));
  EXPECT_EQ(static_cast<double>(variable), 18446744073709551615.0);
}

TEST(Field, integer_products_and_sums_wrap) {
  Dynamic variable;
  // -1 * 2^63 - 1 = 2^63 - 1 in 64 bits.
  signal("SG_ A : 0|8@1- (-9223372036854775808,-1)").convert(variable, load({0xFF}));
  EXPECT_EQ(variable.type(), Lib::kBasicType<long long>);
  EXPECT_EQ(static_cast<long long>(variable), std::numeric_limits<long long>::max());
  // 2 * (2^64 - 1) + 1 = -1 in 64 bits.
  signal("SG_ A : 0|8@1+ (18446744073709551615,1)").convert(variable, load({0x02}));
  EXPECT_EQ(static_cast<unsigned long long>(variable), ~0ULL);
}

TEST(Field, integer_types_use_the_integer_reading_of_their_sign) {
  Dynamic variable;
  // Too large for the signed reading, which is 0.
  signal("SG_ A : 0|8@1- (18446744073709551615,5)").convert(variable, load({0x02}));
  EXPECT_EQ(static_cast<long long>(variable), 5);
}

TEST(Field, a_real_value_is_rounded_after_the_product_and_after_the_sum) {
  // The real number 3 * 0.1 is rounded to 0.30000000000000004 before 0.3 is taken from it.
  Dynamic variable;
  signal("SG_ A : 0|8@1+ (0.1,-0.3)").convert(variable, load({0x03}));
  EXPECT_EQ(variable.type(), Lib::kBasicType<double>);
  const volatile double product = 3.0 * 0.1;
  EXPECT_EQ(static_cast<double>(variable), product - 0.3);
  EXPECT_EQ(static_cast<double>(variable), std::ldexp(1.0, -54));
}

TEST(Field, a_converted_value_is_good_and_its_stamp_starts_anew) {
  Dynamic variable(Lib::kBasicType<long long>);
  variable.set_nano(77);
  variable.set_extra(78);
  variable.setStale();
  signal("SG_ A : 0|8@1- (1,0)").convert(variable, load({0x05}));
  EXPECT_EQ(variable.get_flags().byte(), 0);
  EXPECT_EQ(variable.get_nano(), 0);
  EXPECT_EQ(variable.get_extra(), 0);
}

TEST(Field, random_values_are_scaled_as_wide_arithmetic_scales_them) {
  constexpr unsigned int kSeed = 20260805;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937_64 random(kSeed);
  __extension__ using Wide = __int128;
  __extension__ using UnsignedWide = unsigned __int128;
  for (int round = 0; round < 20000; ++round) {
    const int length = 1 + static_cast<int>(random() % 64);
    const int start = static_cast<int>(random() % 512);
    const bool little_endian = random() % 2 == 0;
    const bool is_signed = random() % 2 == 0;
    const auto factor = static_cast<long long>(random());
    const auto offset = static_cast<long long>(random());
    Bytes bytes = noise(random, 64);
    const auto raw = encode(bytes, start, length, little_endian, random() >> (64 - length));

    Wide number = raw;
    if (is_signed && length > 1 && (raw >> (length - 1)) != 0) number -= Wide{1} << length;
    const auto expected = static_cast<unsigned long long>(static_cast<UnsignedWide>(number) *
                                                              static_cast<UnsignedWide>(factor) +
                                                          static_cast<UnsignedWide>(offset));

    const std::string range = std::to_string(start) + "|" + std::to_string(length) +
                              (little_endian ? "@1" : "@0") + (is_signed ? "-" : "+");
    Dynamic variable;
    signal("SG_ A : " + range + " (" + std::to_string(factor) + "," + std::to_string(offset) +
           ") [0|0] \"\" B")
        .convert(variable, load(bytes));
    ASSERT_EQ(static_cast<unsigned long long>(variable), expected) << range;

    signal("SG_ A : " + range + " (0.25,-1000) [0|0] \"\" B").convert(variable, load(bytes));
    ASSERT_EQ(static_cast<double>(variable), static_cast<double>(number) * 0.25 - 1000.0) << range;
  }
}

}  // namespace
}  // namespace Trel::Can
