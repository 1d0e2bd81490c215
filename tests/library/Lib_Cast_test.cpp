#include "library/Lib_Cast.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

using Trel::Lib::ByteOrder;
using Bytes = std::array<unsigned char, 8>;
__extension__ using Wide = __int128;

constexpr unsigned kCastSeed = 20240229;
constexpr unsigned char kGuard = 0xA5;

Wide power_of_two(int exponent) {
  return Wide{1} << exponent;
}

// The number that the first `n` bytes spell, by plain arithmetic.
Wide spelled(const Bytes& bytes, int n, ByteOrder order, bool is_signed) {
  Wide value = 0;
  for (int place = n - 1; place >= 0; --place) {
    value = value * 256 + bytes[order == ByteOrder::LE ? place : n - 1 - place];
  }
  if (is_signed && value >= power_of_two(8 * n - 1)) value -= power_of_two(8 * n);
  return value;
}

template <class T>
struct Pair {
  const char* name;
  int n;
  ByteOrder order;
  T (*read)(const unsigned char*);
  void (*write)(unsigned char*, T);
};

template <class T>
void expect_read_and_write_agree_with_arithmetic(const Pair<T>& pair, const Bytes& bytes) {
  const Wide expected = spelled(bytes, pair.n, pair.order, std::is_signed_v<T>);
  const T value = pair.read(bytes.data());
  ASSERT_TRUE(Wide{value} == expected) << pair.name << " reads " << +value;

  Bytes written;
  written.fill(kGuard);
  pair.write(written.data(), value);
  for (int i = 0; i < 8; ++i) {
    ASSERT_EQ(written[i], i < pair.n ? bytes[i] : kGuard) << pair.name << " writes byte " << i;
  }
}

template <class T>
void check(const Pair<T>& pair) {
  const int exhaustive = pair.n == 1 ? 256 : pair.n == 2 ? 65536 : 0;
  for (int pattern = 0; pattern < exhaustive; ++pattern) {
    const Bytes bytes{static_cast<unsigned char>(pattern % 256),
                      static_cast<unsigned char>(pattern / 256)};
    expect_read_and_write_agree_with_arithmetic(pair, bytes);
  }
  for (const unsigned char edge : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
    for (int place = 0; place < pair.n; ++place) {
      for (const unsigned char others : {0x00, 0xFF}) {
        Bytes bytes;
        bytes.fill(others);
        bytes[place] = edge;
        expect_read_and_write_agree_with_arithmetic(pair, bytes);
      }
    }
  }
  std::mt19937 random(kCastSeed);
  for (int round = 0; round < 2000; ++round) {
    Bytes bytes;
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
    expect_read_and_write_agree_with_arithmetic(pair, bytes);
  }
}

#define CHECK_PAIR(n, order, type)                                                                \
  check<Trel::Lib::CastType::type>({"cast_" #n "_byte_" #order "_to_" #type, n, ByteOrder::order, \
                                    cast_##n##_byte_##order##_to_##type,                          \
                                    cast_##type##_to_##n##_byte_##order})

TEST(Cast, little_endian_bytes_of_every_count_up_to_the_width_make_an_unsigned_number) {
  SCOPED_TRACE(kCastSeed);
  CHECK_PAIR(1, LE, uint8);
  CHECK_PAIR(1, LE, uint16);
  CHECK_PAIR(2, LE, uint16);
  CHECK_PAIR(1, LE, uint32);
  CHECK_PAIR(2, LE, uint32);
  CHECK_PAIR(3, LE, uint32);
  CHECK_PAIR(4, LE, uint32);
  CHECK_PAIR(1, LE, uint64);
  CHECK_PAIR(2, LE, uint64);
  CHECK_PAIR(3, LE, uint64);
  CHECK_PAIR(4, LE, uint64);
  CHECK_PAIR(5, LE, uint64);
  CHECK_PAIR(6, LE, uint64);
  CHECK_PAIR(7, LE, uint64);
  CHECK_PAIR(8, LE, uint64);
}

TEST(Cast, little_endian_bytes_of_every_count_up_to_the_width_make_a_number_with_its_sign) {
  SCOPED_TRACE(kCastSeed);
  CHECK_PAIR(1, LE, int8);
  CHECK_PAIR(1, LE, int16);
  CHECK_PAIR(2, LE, int16);
  CHECK_PAIR(1, LE, int32);
  CHECK_PAIR(2, LE, int32);
  CHECK_PAIR(3, LE, int32);
  CHECK_PAIR(4, LE, int32);
  CHECK_PAIR(1, LE, int64);
  CHECK_PAIR(2, LE, int64);
  CHECK_PAIR(3, LE, int64);
  CHECK_PAIR(4, LE, int64);
  CHECK_PAIR(5, LE, int64);
  CHECK_PAIR(6, LE, int64);
  CHECK_PAIR(7, LE, int64);
  CHECK_PAIR(8, LE, int64);
}

TEST(Cast, big_endian_bytes_make_a_number_of_their_width_and_int32_from_two_and_three) {
  SCOPED_TRACE(kCastSeed);
  CHECK_PAIR(1, BE, uint8);
  CHECK_PAIR(2, BE, uint16);
  CHECK_PAIR(4, BE, uint32);
  CHECK_PAIR(8, BE, uint64);
  CHECK_PAIR(1, BE, int8);
  CHECK_PAIR(2, BE, int16);
  CHECK_PAIR(2, BE, int32);
  CHECK_PAIR(3, BE, int32);
  CHECK_PAIR(4, BE, int32);
  CHECK_PAIR(8, BE, int64);
}

TEST(Cast, a_narrow_field_of_all_ones_is_minus_one_when_signed) {
  const unsigned char ones[] = {0xFF, 0xFF, 0xFF};
  EXPECT_EQ(cast_3_byte_LE_to_int64(ones), -1);
  EXPECT_EQ(cast_3_byte_LE_to_uint64(ones), 0xFFFFFFu);
}

TEST(Cast, a_narrow_write_keeps_the_lowest_bytes_of_a_value_that_does_not_fit) {
  unsigned char p[3];
  cast_int32_to_3_byte_LE(p, 0x12345678);
  EXPECT_EQ((std::vector<int>{p[0], p[1], p[2]}), (std::vector<int>{0x78, 0x56, 0x34}));
  cast_int32_to_3_byte_BE(p, -2);
  EXPECT_EQ((std::vector<int>{p[0], p[1], p[2]}), (std::vector<int>{0xFF, 0xFF, 0xFE}));
}

TEST(Cast, reads_and_writes_work_at_any_address_and_at_compile_time) {
  const unsigned char bytes[] = {0, 0x78, 0x56, 0x34, 0x12};
  EXPECT_EQ(cast_4_byte_LE_to_uint32(bytes + 1), 0x12345678u);

  constexpr unsigned char kBytes[] = {0x12, 0x34};
  static_assert(cast_2_byte_BE_to_uint16(kBytes) == 0x1234);
  static_assert(cast_2_byte_LE_to_int16(kBytes) == 0x3412);
}

TEST(Cast, a_real_number_moves_as_its_pattern_in_either_order) {
  // 1.5 = 2^0 x 1.1b: 3FC00000, and 3FF80000 00000000 in the wide form.
  const unsigned char single[] = {0x00, 0x00, 0xC0, 0x3F};
  const unsigned char single_be[] = {0x3F, 0xC0, 0x00, 0x00};
  const unsigned char wide[] = {0, 0, 0, 0, 0, 0, 0xF8, 0x3F};
  const unsigned char wide_be[] = {0x3F, 0xF8, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(cast_4_byte_LE_to_real32(single), 1.5f);
  EXPECT_EQ(cast_4_byte_BE_to_real32(single_be), 1.5f);
  EXPECT_EQ(cast_8_byte_LE_to_real64(wide), 1.5);
  EXPECT_EQ(cast_8_byte_BE_to_real64(wide_be), 1.5);

  unsigned char p[8];
  cast_real32_to_4_byte_LE(p, 1.5f);
  EXPECT_TRUE(std::equal(p, p + 4, single));
  cast_real32_to_4_byte_BE(p, 1.5f);
  EXPECT_TRUE(std::equal(p, p + 4, single_be));
  cast_real64_to_8_byte_LE(p, 1.5);
  EXPECT_TRUE(std::equal(p, p + 8, wide));
  cast_real64_to_8_byte_BE(p, 1.5);
  EXPECT_TRUE(std::equal(p, p + 8, wide_be));
}

TEST(Cast, every_pattern_of_a_real_number_survives_the_round_trip) {
  // Quiet NaN with a payload, infinity, minus zero, the least subnormal.
  for (const unsigned pattern : {0x7FC12345u, 0xFF800000u, 0x80000000u, 0x00000001u}) {
    unsigned char in[4], out[4];
    cast_uint32_to_4_byte_LE(in, pattern);
    cast_real32_to_4_byte_BE(out, cast_4_byte_LE_to_real32(in));
    EXPECT_EQ(cast_4_byte_BE_to_uint32(out), pattern);
  }
  for (const unsigned long long pattern :
       {0x7FF8123456789ABCull, 0x7FF0000000000000ull, 0x8000000000000000ull, 1ull}) {
    unsigned char in[8], out[8];
    cast_uint64_to_8_byte_BE(in, pattern);
    cast_real64_to_8_byte_LE(out, cast_8_byte_BE_to_real64(in));
    EXPECT_EQ(cast_8_byte_LE_to_uint64(out), pattern);
  }
}

TEST(Cast, a_float_copies_in_the_order_of_the_host) {
  const float value = -123.25f;
  unsigned char p[4];
  cast_float_to_4_byte(p, value);
  EXPECT_EQ(std::memcmp(p, &value, 4), 0);
  EXPECT_EQ(cast_4_byte_to_float(p), value);
}

TEST(Cast, the_fixed_forms_have_the_narrowest_type_that_holds_them) {
  static_assert(std::is_same_v<decltype(cast_int64_to_fix8(0)), signed char>);
  static_assert(std::is_same_v<decltype(cast_int64_to_fix16(0)), short>);
  static_assert(std::is_same_v<decltype(cast_int64_to_fix24(0)), int>);
  static_assert(std::is_same_v<decltype(cast_int64_to_fix32(0)), int>);
  static_assert(std::is_same_v<decltype(cast_int64_to_fix40(0)), long long>);
  static_assert(std::is_same_v<decltype(cast_int64_to_fix64(0)), long long>);
  static_assert(std::is_same_v<decltype(cast_real64_to_ufix8(0)), unsigned char>);
  static_assert(std::is_same_v<decltype(cast_real64_to_ufix16(0)), unsigned short>);
  static_assert(std::is_same_v<decltype(cast_real64_to_ufix32(0)), unsigned int>);
  static_assert(std::is_same_v<decltype(cast_real64_to_ufix48(0)), unsigned long long>);
}

// Values of T worth trying: all of a narrow type; of a wide one its ends, random ones, and whatever
// lies around the ends of any fixed form.
template <class T>
std::vector<T> interesting_values() {
  std::vector<T> values;
  const Wide least = std::numeric_limits<T>::min();
  const Wide greatest = std::numeric_limits<T>::max();
  if (sizeof(T) <= 2) {
    for (Wide value = least; value <= greatest; ++value) values.push_back(static_cast<T>(value));
    return values;
  }
  for (int bits = 0; bits <= 64; ++bits) {
    for (int near = -4; near <= 4; ++near) {
      for (const Wide value : {power_of_two(bits) + near, -power_of_two(bits) + near}) {
        if (value >= least && value <= greatest) values.push_back(static_cast<T>(value));
      }
    }
  }
  std::mt19937_64 random(kCastSeed);
  for (int round = 0; round < 2000; ++round) {
    values.push_back(static_cast<T>(random() >> (round % 64)));
    values.push_back(static_cast<T>(0 - (random() >> (round % 64))));
  }
  return values;
}

Wide saturated(Wide value, int bits) {
  const Wide m = power_of_two(bits - 1) - 1;
  return value < -(m - 1) ? -m : value > m - 1 ? m : value;
}

Wide saturated_unsigned(Wide value, int bits) {
  const Wide u = power_of_two(bits) - 1;
  return value < 0 ? u : value > u - 2 ? u - 1 : value;
}

#define CHECK_FIX(type, bits)                                                                \
  for (const auto value : interesting_values<Trel::Lib::CastType::type>()) {                 \
    ASSERT_TRUE(Wide{cast_##type##_to_fix##bits(value)} == saturated(value, bits))           \
        << #type " " << +value << " to fix" #bits;                                           \
    ASSERT_TRUE(Wide{cast_##type##_to_ufix##bits(value)} == saturated_unsigned(value, bits)) \
        << #type " " << +value << " to ufix" #bits;                                          \
  }
#define TEST_FIX(type)                             \
  TEST(CastFix, type##_saturates_in_every_width) { \
    SCOPED_TRACE(kCastSeed);                       \
    CHECK_FIX(type, 8)                             \
    CHECK_FIX(type, 16)                            \
    CHECK_FIX(type, 24)                            \
    CHECK_FIX(type, 32)                            \
    CHECK_FIX(type, 40)                            \
    CHECK_FIX(type, 48)                            \
    CHECK_FIX(type, 56)                            \
    CHECK_FIX(type, 64)                            \
  }
TEST_FIX(int8)
TEST_FIX(int16)
TEST_FIX(int32)
TEST_FIX(int64)
TEST_FIX(uint8)
TEST_FIX(uint16)
TEST_FIX(uint32)
TEST_FIX(uint64)

TEST(CastFix, an_integer_never_becomes_the_invalid_mark) {
  EXPECT_EQ(cast_int16_to_fix16(-32768), -32767);
  EXPECT_EQ(cast_int64_to_fix64(std::numeric_limits<long long>::min()),
            std::numeric_limits<long long>::min() + 1);
  EXPECT_EQ(cast_int8_to_fix8(-128), -127);
  EXPECT_EQ(cast_uint64_to_ufix64(~0ull), ~0ull - 1);
}

TEST(CastFix, a_negative_integer_is_invalid_in_an_unsigned_form) {
  EXPECT_EQ(cast_int8_to_ufix8(-1), 0xFF);
  EXPECT_EQ(cast_int32_to_ufix24(-1), 0xFFFFFFu);
  EXPECT_EQ(cast_int64_to_ufix64(-1), ~0ull);
}

template <class T>
struct RealFix {
  int bits;
  double threshold;
  T (*cast)(double);
};

template <class T>
void check_signed_thresholds(const RealFix<T>& form) {
  SCOPED_TRACE(form.bits);
  const auto m = static_cast<long long>(power_of_two(form.bits - 1) - 1);
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(form.cast(std::nan("")), -m - 1);
  EXPECT_EQ(form.cast(-std::nan("")), -m - 1);
  EXPECT_EQ(form.cast(form.threshold), m);
  EXPECT_EQ(form.cast(std::nextafter(form.threshold, 0.0)), m - 1);
  EXPECT_EQ(form.cast(infinity), m);
  EXPECT_EQ(form.cast(1e300), m);
  // The under test is strict: floor(-(m - 0.5) + 0.5) = -(m - 1).
  EXPECT_EQ(form.cast(-form.threshold), -(m - 1));
  EXPECT_EQ(form.cast(std::nextafter(-form.threshold, -infinity)), -m);
  EXPECT_EQ(form.cast(-infinity), -m);
  EXPECT_EQ(form.cast(-1e300), -m);
}

TEST(CastRealFix, a_signed_form_saturates_at_its_thresholds) {
  check_signed_thresholds<signed char>({8, 126.5, cast_real64_to_fix8});
  check_signed_thresholds<short>({16, 32766.5, cast_real64_to_fix16});
  check_signed_thresholds<int>({24, 8388606.5, cast_real64_to_fix24});
  check_signed_thresholds<int>({32, 2147483646.5, cast_real64_to_fix32});
  check_signed_thresholds<long long>({40, 549755813886.5, cast_real64_to_fix40});
  check_signed_thresholds<long long>({48, 140737488355326.5, cast_real64_to_fix48});
}

template <class T>
void check_unsigned_thresholds(const RealFix<T>& form) {
  SCOPED_TRACE(form.bits);
  const auto u = static_cast<unsigned long long>(power_of_two(form.bits) - 1);
  EXPECT_EQ(form.cast(std::nan("")), u);
  EXPECT_EQ(form.cast(-0.1), u);
  EXPECT_EQ(form.cast(-std::numeric_limits<double>::denorm_min()), u);
  EXPECT_EQ(form.cast(-std::numeric_limits<double>::infinity()), u);
  EXPECT_EQ(form.cast(-0.0), 0u);
  EXPECT_EQ(form.cast(form.threshold), u - 1);
  EXPECT_EQ(form.cast(std::nextafter(form.threshold, 0.0)), u - 2);
  EXPECT_EQ(form.cast(std::numeric_limits<double>::infinity()), u - 1);
}

TEST(CastRealFix, an_unsigned_form_has_no_under_and_saturates_at_its_threshold) {
  check_unsigned_thresholds<unsigned char>({8, 253.5, cast_real64_to_ufix8});
  check_unsigned_thresholds<unsigned short>({16, 65533.5, cast_real64_to_ufix16});
  check_unsigned_thresholds<unsigned int>({24, 16777213.5, cast_real64_to_ufix24});
  check_unsigned_thresholds<unsigned int>({32, 4294967293.5, cast_real64_to_ufix32});
  check_unsigned_thresholds<unsigned long long>({40, 1099511627773.5, cast_real64_to_ufix40});
  check_unsigned_thresholds<unsigned long long>({48, 281474976710653.5, cast_real64_to_ufix48});
}

TEST(CastRealFix, the_ends_of_fix8_are_where_a_person_expects_them) {
  EXPECT_EQ(cast_real64_to_fix8(126.49), 126);
  EXPECT_EQ(cast_real64_to_fix8(126.5), 127);
  EXPECT_EQ(cast_real64_to_fix8(-126.5), -126);
  EXPECT_EQ(cast_real64_to_fix8(-126.51), -127);
}

TEST(CastRealFix, halves_round_upwards_on_both_sides_of_zero) {
  EXPECT_EQ(cast_real64_to_fix16(2.5), 3);
  EXPECT_EQ(cast_real64_to_fix16(2.49), 2);
  EXPECT_EQ(cast_real64_to_fix16(-2.5), -2);
  EXPECT_EQ(cast_real64_to_fix16(-2.51), -3);
  EXPECT_EQ(cast_real64_to_fix16(-0.5), 0);
  EXPECT_EQ(cast_real64_to_fix16(-0.51), -1);
  EXPECT_EQ(cast_real64_to_ufix16(0.5), 1);
  EXPECT_EQ(cast_real64_to_ufix16(0.49), 0);
}

TEST(CastRealFix, ordinary_values_are_the_floor_of_the_value_and_a_half) {
  SCOPED_TRACE(kCastSeed);
  std::mt19937_64 random(kCastSeed);
  std::uniform_real_distribution<double> narrow(-126.5, 126.5);
  std::uniform_real_distribution<double> wide(-1.4e14, 1.4e14);
  for (int round = 0; round < 20000; ++round) {
    const double small = narrow(random);
    ASSERT_EQ(cast_real64_to_fix8(small), std::floor(small + 0.5)) << small;
    ASSERT_EQ(cast_real64_to_fix48(small), std::floor(small + 0.5)) << small;
    const double large = wide(random);
    ASSERT_EQ(cast_real64_to_fix48(large), std::floor(large + 0.5)) << large;
    ASSERT_EQ(cast_real64_to_ufix48(std::fabs(large)), std::floor(std::fabs(large) + 0.5)) << large;
  }
}

#define EXPECT_FIXED_BYTES(form, fix, bits, n, order, x)                                \
  do {                                                                                  \
    Bytes bytes;                                                                        \
    bytes.fill(kGuard);                                                                 \
    cast_real64_to_##form##_to_##n##_byte_##order(bytes.data(), x);                     \
    const bool is_signed = std::is_signed_v<decltype(cast_real64_to_##fix##bits(x))>;   \
    EXPECT_TRUE(spelled(bytes, n, ByteOrder::order, is_signed) ==                       \
                Wide{cast_real64_to_##fix##bits(x)})                                    \
        << #form " " #n " " #order " of " << x;                                         \
    for (int i = n; i < 8; ++i) EXPECT_EQ(bytes[i], kGuard) << #form " " #n " " #order; \
  } while (false)

TEST(CastRealFix, the_byte_forms_write_the_fixed_form_in_either_order) {
  for (const double x : {0.0, 1.0, 100.4, -100.6, 1e5, -1e5, 1e8, -1e8, 1e13, -1e13, 1e20, -1e20,
                         std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FIXED_BYTES(fixed, fix, 8, 1, LE, x);
    EXPECT_FIXED_BYTES(fixed, fix, 16, 2, LE, x);
    EXPECT_FIXED_BYTES(fixed, fix, 24, 3, LE, x);
    EXPECT_FIXED_BYTES(fixed, fix, 32, 4, LE, x);
    EXPECT_FIXED_BYTES(fixed, fix, 40, 5, LE, x);
    EXPECT_FIXED_BYTES(fixed, fix, 48, 6, LE, x);
    EXPECT_FIXED_BYTES(fixed, fix, 8, 1, BE, x);
    EXPECT_FIXED_BYTES(fixed, fix, 16, 2, BE, x);
    EXPECT_FIXED_BYTES(fixed, fix, 32, 4, BE, x);
    EXPECT_FIXED_BYTES(ufixed, ufix, 8, 1, LE, x);
    EXPECT_FIXED_BYTES(ufixed, ufix, 16, 2, LE, x);
    EXPECT_FIXED_BYTES(ufixed, ufix, 24, 3, LE, x);
    EXPECT_FIXED_BYTES(ufixed, ufix, 32, 4, LE, x);
    EXPECT_FIXED_BYTES(ufixed, ufix, 40, 5, LE, x);
    EXPECT_FIXED_BYTES(ufixed, ufix, 48, 6, LE, x);
    EXPECT_FIXED_BYTES(ufixed, ufix, 8, 1, BE, x);
    EXPECT_FIXED_BYTES(ufixed, ufix, 16, 2, BE, x);
    EXPECT_FIXED_BYTES(ufixed, ufix, 32, 4, BE, x);
  }
}

TEST(CastRealFix, an_invalid_value_is_written_as_the_mark_of_its_form) {
  unsigned char p[3];
  cast_real64_to_fixed_to_3_byte_LE(p, std::nan(""));
  EXPECT_EQ(cast_3_byte_LE_to_uint32(p), 0x800000u);
  cast_real64_to_ufixed_to_3_byte_LE(p, std::nan(""));
  EXPECT_EQ(cast_3_byte_LE_to_uint32(p), 0xFFFFFFu);
}

TEST(CastCounter, a_backward_step_of_the_low_part_is_one_wrap) {
  const unsigned char zero[] = {0x00};
  const unsigned char ones[] = {0xFF};
  const unsigned char five[] = {0x05};
  EXPECT_EQ(incr_1_byte_LE_to_uint32(zero, 0x1FF), 0x200u);
  EXPECT_EQ(incr_1_byte_LE_to_uint32(ones, 0x100), 0x1FFu);
  EXPECT_EQ(incr_1_byte_LE_to_uint32(five, 0x105), 0x105u);
  EXPECT_EQ(incr_1_byte_LE_to_uint32(five, 0x106), 0x205u);

  const unsigned char low[] = {0x34, 0x12};
  EXPECT_EQ(incr_2_byte_LE_to_uint32(low, 0x51234), 0x51234u);
  EXPECT_EQ(incr_2_byte_LE_to_uint32(low, 0x51235), 0x61234u);
  EXPECT_EQ(incr_2_byte_LE_to_uint64(low, 0xA00051233ull), 0xA00051234ull);
  EXPECT_EQ(incr_2_byte_LE_to_uint64(low, 0xAFFFF1235ull), 0xB00001234ull);
}

TEST(CastCounter, the_full_counter_wraps_in_its_own_width) {
  const unsigned char zero[] = {0x00, 0x00};
  EXPECT_EQ(incr_1_byte_LE_to_uint32(zero, 0xFFFFFFFFu), 0u);
  EXPECT_EQ(incr_2_byte_LE_to_uint32(zero, 0xFFFFFFFFu), 0u);
  EXPECT_EQ(incr_2_byte_LE_to_uint64(zero, 0xFFFFFFFFull), 0x100000000ull);
  EXPECT_EQ(incr_2_byte_LE_to_uint64(zero, ~0ull), 0ull);
}

TEST(CastCounter, the_result_is_the_first_match_at_or_after_the_previous_value) {
  SCOPED_TRACE(kCastSeed);
  std::mt19937_64 random(kCastSeed);
  for (int round = 0; round < 20000; ++round) {
    const unsigned long long previous = random() >> 8;
    const auto low = static_cast<unsigned short>(random());
    unsigned char p[2];
    cast_uint16_to_2_byte_LE(p, low);
    const unsigned long long next = incr_2_byte_LE_to_uint64(p, previous);
    ASSERT_EQ(next % 65536, low);
    ASSERT_GE(next, previous);
    ASSERT_LT(next - previous, 65536u);
  }
}

TEST(CastSwap, bytes_are_reversed) {
  EXPECT_EQ(swap_uint16_byte_order(0x1234), 0x3412);
  EXPECT_EQ(swap_uint32_byte_order(0x12345678u), 0x78563412u);
  EXPECT_EQ(swap_uint64_byte_order(0x123456789ABCDEF0ull), 0xF0DEBC9A78563412ull);
}

TEST(CastSwap, network_order_has_the_highest_byte_first_in_memory) {
  unsigned char p[8];
  const auto narrow = cast_uint16_to_network_byte_order(0x1234);
  std::memcpy(p, &narrow, sizeof narrow);
  EXPECT_EQ(cast_2_byte_BE_to_uint16(p), 0x1234);
  const auto middle = cast_uint32_to_network_byte_order(0x12345678u);
  std::memcpy(p, &middle, sizeof middle);
  EXPECT_EQ(cast_4_byte_BE_to_uint32(p), 0x12345678u);
  const auto wide = cast_uint64_to_network_byte_order(0x123456789ABCDEF0ull);
  std::memcpy(p, &wide, sizeof wide);
  EXPECT_EQ(cast_8_byte_BE_to_uint64(p), 0x123456789ABCDEF0ull);
}

}  // namespace
