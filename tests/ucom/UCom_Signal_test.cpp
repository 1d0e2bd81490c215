#include "ucom/UCom_Signal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "ucom/UCom_SignalX.h"
#include "ucom/UCom_TestDocument.h"

namespace Trel::UCom {
namespace {

using namespace Enum;

SignalRange range(BASIC_TYPE type, std::uint32_t size, std::uint32_t offset) {
  SignalRange result;
  result.set_range({1, type, type, size, offset});
  return result;
}

bool exists(const std::string& keys) {
  Dbu dbu;
  dbu.configure(one_signal(keys));
  return dbu.find_signal(10) != nullptr;
}

std::string printed(const std::string& keys, const Bytes& data) {
  Dbu dbu;
  dbu.configure(one_signal(keys));
  std::ostringstream out;
  dbu.find_signal(10)->convert_print(out, data.data());
  out << '/' << 10 << '/' << 0.5;
  return out.str();
}

TEST(UComSignal, the_range_of_an_integer_field) {
  const SignalRange field = range(BASIC_TYPE_int16_t, 12, 13);
  EXPECT_EQ(field.byte_first, 1u);  // 13 / 8
  EXPECT_EQ(field.byte_end, 4u);    // (12 + 13 + 7) / 8
  EXPECT_EQ(field.byte_count, 3u);  // 4 - 1
  EXPECT_EQ(field.type_bytes, 2u);
  EXPECT_EQ(field.bit_shift, 5u);  // 13 - 8 * 1
  EXPECT_EQ(field.bit_top, 17u);   // 5 + 12
  EXPECT_EQ(field.type_bits, 16u);
  EXPECT_EQ(field.shift_left, 15u);   // 2 * 16 - 17
  EXPECT_EQ(field.shift_right, 20u);  // 2 * 16 - 12
}

TEST(UComSignal, the_range_of_a_bool_is_in_one_byte) {
  const SignalRange field = range(BASIC_TYPE_bool, 1, 11);
  EXPECT_EQ(field.byte_first, 1u);
  EXPECT_EQ(field.byte_end, 2u);
  EXPECT_EQ(field.bit_shift, 3u);
  EXPECT_EQ(field.shift_left, 4u);   // 8 - 4
  EXPECT_EQ(field.shift_right, 7u);  // 8 - 1
}

TEST(UComSignal, a_field_longer_than_its_type_is_not_shifted) {
  EXPECT_NE(range(BASIC_TYPE_int32_t, 32, 3).shift_left, 0u);
  const SignalRange field = range(BASIC_TYPE_int32_t, 33, 3);
  EXPECT_EQ(field.shift_left, 0u);
  EXPECT_EQ(field.shift_right, 0u);
  EXPECT_EQ(field.bit_top, 36u);
}

TEST(UComSignal, a_type_without_bits_has_no_shifts) {
  const SignalRange field = range(BASIC_TYPE_UNKNOWN, 0, 9);
  EXPECT_EQ(field.type_bytes, 0u);
  EXPECT_EQ(field.shift_left, 0u);
  EXPECT_EQ(field.shift_right, 0u);
}

TEST(UComSignal, types_have_their_bytes) {
  const std::map<BASIC_TYPE, std::uint32_t> bytes{
      {BASIC_TYPE_void, 0},     {BASIC_TYPE_bool, 1},     {BASIC_TYPE_char, 0},
      {BASIC_TYPE_float, 4},    {BASIC_TYPE_double, 8},   {BASIC_TYPE_uint8_t, 1},
      {BASIC_TYPE_uint16_t, 2}, {BASIC_TYPE_uint32_t, 4}, {BASIC_TYPE_uint64_t, 8},
      {BASIC_TYPE_int8_t, 1},   {BASIC_TYPE_int16_t, 2},  {BASIC_TYPE_int32_t, 4},
      {BASIC_TYPE_int64_t, 8},  {BASIC_TYPE_UNKNOWN, 0}};
  for (const auto& [type, count] : bytes) {
    EXPECT_EQ(range(type, 1, 0).type_bytes, count) << static_cast<int>(type);
  }
}

TEST(UComSignal, exactly_the_pairs_that_lose_nothing_exist) {
  // Bit types by letter and the smallest size that selects them.
  const std::map<std::string, std::set<std::string>> matrix{
      {R"("BT":"B")", {"B"}},
      {R"("BT":"R","BS":17)", {"R32", "R64"}},
      {R"("BT":"R","BS":33)", {"R64"}},
      {R"("BT":"S","BS":1)", {"S8", "S16", "S32", "S64", "R32", "R64"}},
      {R"("BT":"S","BS":9)", {"S16", "S32", "S64", "R32", "R64"}},
      {R"("BT":"S","BS":17)", {"S32", "S64", "R32", "R64"}},
      {R"("BT":"S","BS":33)", {"S64", "R64"}},
      {R"("BT":"U","BS":1)", {"U8", "U16", "U32", "U64", "S16", "S32", "S64", "R32", "R64"}},
      {R"("BT":"U","BS":9)", {"U16", "U32", "U64", "S32", "S64", "R32", "R64"}},
      {R"("BT":"U","BS":17)", {"U32", "U64", "S64", "R32", "R64"}},
      {R"("BT":"U","BS":33)", {"U64", "R64"}}};
  int pairs = 0;
  for (const auto& [bits, measurements] : matrix) {
    for (const char* name :
         {"B", "R32", "R64", "S8", "S16", "S32", "S64", "U8", "U16", "U32", "U64"}) {
      const std::string keys = bits + R"(,"MT":")" + name + "\"";
      EXPECT_EQ(exists(keys), measurements.contains(name)) << keys;
      pairs += exists(keys) ? 1 : 0;
    }
  }
  EXPECT_EQ(pairs, 44);
}

TEST(UComSignal, a_float_measurement_holds_fields_of_24_bits) {
  for (const char* letter : {"S", "U"}) {
    const std::string bits = std::string(R"("BT":")") + letter + R"(","MT":"R32","BS":)";
    EXPECT_TRUE(exists(bits + "24"));
    EXPECT_FALSE(exists(bits + "25"));
  }
  EXPECT_TRUE(exists(R"("BT":"S","BS":25,"MT":"R64")"));
  EXPECT_TRUE(exists(R"("BT":"R","BS":32,"MT":"R32")"));  // the same type has no limit
}

TEST(UComSignal, a_double_measurement_holds_fields_of_53_bits) {
  for (const char* letter : {"S", "U"}) {
    const std::string bits = std::string(R"("BT":")") + letter + R"(","MT":"R64","BS":)";
    EXPECT_TRUE(exists(bits + "53"));
    EXPECT_FALSE(exists(bits + "54"));
  }
  EXPECT_TRUE(exists(R"("BT":"R","BS":64,"MT":"R64")"));
  EXPECT_TRUE(exists(R"("BT":"R","BS":32,"MT":"R64")"));
}

TEST(UComSignal, the_limits_hold_for_the_size_that_was_given_also_beyond_the_type) {
  EXPECT_TRUE(exists(R"("BS":53,"MT":"R64")"));
  EXPECT_FALSE(exists(R"("BS":54,"MT":"R64")"));
  EXPECT_TRUE(exists(R"("BS":54,"MT":"S64")"));
}

TEST(UComSignal, a_twelve_bit_field_with_its_top_bit_set_is_negative) {
  // Bits 4 to 15 of the word 0x8010 are 0x801, that is 0x801 - 0x1000 = -2047.
  EXPECT_EQ(decode_one<short>(R"("BT":"S","BS":12,"BO":4)", {0x10, 0x80}), -2047);
  EXPECT_EQ(decode_one<unsigned short>(R"("BT":"U","BS":12,"BO":4)", {0x10, 0x80}), 0x801);
}

TEST(UComSignal, neighbouring_bits_do_not_leak_in) {
  // Five bits from bit 6 on are bits 6, 7 of the first and 0 to 2 of the second byte.
  EXPECT_EQ(decode_one<unsigned char>(R"("BT":"U","BS":5,"BO":6)", {0x3F, 0xF8}), 0);
  EXPECT_EQ(decode_one<unsigned char>(R"("BT":"U","BS":5,"BO":6)", {0xC0, 0x07}), 31);
  EXPECT_EQ(decode_one<signed char>(R"("BT":"S","BS":5,"BO":6)", {0xC0, 0x07}), -1);
}

TEST(UComSignal, a_bool_is_its_one_bit) {
  for (unsigned int bit = 0; bit < 16; ++bit) {
    Bytes data(2);
    data[bit / 8] = static_cast<unsigned char>(1U << bit % 8);
    const std::string keys = R"("BT":"B","BO":)" + std::to_string(bit);
    EXPECT_TRUE(decode_one<bool>(keys, data)) << bit;
    for (unsigned char& byte : data) byte = static_cast<unsigned char>(~byte);
    EXPECT_FALSE(decode_one<bool>(keys, data)) << bit;
  }
}

TEST(UComSignal, a_bool_has_no_scaling) {
  EXPECT_FALSE(decode_one<bool>(R"("BT":"B","MO":1,"MS":1)", {0x00}));
  EXPECT_TRUE(decode_one<bool>(R"("BT":"B","MO":0,"MS":0)", {0x01}));
}

TEST(UComSignal, fields_of_64_bits_take_their_ninth_byte) {
  // Bit 7 is the lowest; bit 70, the highest, is bit 6 of the ninth byte.
  const Bytes data{0x80, 0, 0, 0, 0, 0, 0, 0, 0x40};
  EXPECT_EQ(decode_one<unsigned long long>(R"("BT":"U","BS":64,"BO":7)", data), 0x8000000000000001);
  EXPECT_EQ(decode_one<long long>(R"("BT":"S","BS":64,"BO":7)", data),
            std::numeric_limits<long long>::min() + 1);
}

TEST(UComSignal, reals_are_their_bit_patterns) {
  // 1.5F is 0x3FC00000, 1.5 is 0x3FF8000000000000; both stand four bits up.
  EXPECT_EQ(decode_one<float>(R"("BT":"R","BO":4)", {0x00, 0x00, 0x00, 0xFC, 0x03}), 1.5F);
  EXPECT_EQ(decode_one<double>(R"("BT":"R","BS":64,"BO":4)",
                               {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x80, 0xFF, 0x03}),
            1.5);
}

TEST(UComSignal, a_short_real_has_zeros_above_its_bits) {
  // 17 bits from bit 0: the pattern 0x00010001, whatever stands above.
  EXPECT_EQ(decode_one<float>(R"("BT":"R","BS":17)", {0x01, 0x00, 0xFF, 0xFF}),
            std::bit_cast<float>(0x00010001U));
}

TEST(UComSignal, a_negative_zero_comes_out_as_zero) {
  const float value = decode_one<float>(R"("BT":"R")", {0x00, 0x00, 0x00, 0x80});
  EXPECT_EQ(value, 0.0F);
  EXPECT_FALSE(std::signbit(value));
}

TEST(UComSignal, a_field_longer_than_its_type_is_the_raw_read_without_a_shift) {
  // Offset 3, yet the value begins at bit 0 of the byte.
  const Bytes data{0x78, 0x56, 0x34, 0x12, 0xFF, 0xFF};
  EXPECT_EQ(decode_one<int>(R"("BS":40,"BO":3)", data), 0x12345678);
  EXPECT_EQ(decode_one<double>(R"("BS":40,"BO":3,"MT":"R64")", data), 305419896.0);
  // The cut comes first: 0xFFFFFFFF is -1 as int32 and stays so as int64.
  EXPECT_EQ(decode_one<long long>(R"("BS":64,"MT":"S64")", {0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}),
            -1);
}

TEST(UComSignal, values_are_raw_times_scale_plus_offset) {
  EXPECT_EQ(decode_one<double>(R"("BT":"S","BS":16,"MT":"R64","MS":0.25,"MO":-3)", {0x0A, 0x00}),
            -0.5);
  EXPECT_EQ(decode_one<int>(R"("BT":"S","BS":8,"MT":"S32","MS":-7,"MO":2)", {0xFD}), 23);
}

TEST(UComSignal, scaling_takes_two_roundings) {
  // 4097 * 4097 = 16785409 needs 25 bits and rounds to 16785408 before the offset is added.
  EXPECT_EQ(
      decode_one<float>(R"("BT":"S","BS":16,"MT":"R32","MS":4097,"MO":-16785408)", {0x01, 0x10}),
      0.0F);
}

TEST(UComSignal, scaling_is_done_in_the_arithmetic_of_the_measurement_type) {
  // 0.1 as a float, times 3 in float: 0.30000001192..., which a double would show.
  EXPECT_EQ(decode_one<float>(R"("BT":"U","BS":8,"MT":"R32","MS":0.1)", {0x03}), 0.1F * 3.0F);
}

TEST(UComSignal, integer_scaling_wraps_in_its_own_width) {
  EXPECT_EQ(decode_one<unsigned char>(R"("BT":"U","BS":8,"MS":2)", {200}), 400 - 256);
  EXPECT_EQ(decode_one<short>(R"("BT":"S","BS":16,"MS":2)", {0xFF, 0x7F}), 65534 - 65536);
  // 65535 * 65535 = 4294836225 = 2^32 - 131071
  EXPECT_EQ(decode_one<int>(R"("BT":"U","BS":16,"MT":"S32","MS":65535)", {0xFF, 0xFF}), -131071);
  // -2^63 * -1 = 2^63, which wraps to -2^63
  EXPECT_EQ(decode_one<long long>(R"("BT":"S","BS":64,"MS":-1)",
                                  int64_bytes(std::numeric_limits<long long>::min())),
            std::numeric_limits<long long>::min());
}

TEST(UComSignal, scale_and_offset_of_the_wrong_kind_are_absent) {
  EXPECT_EQ(decode_one<short>(R"("BT":"S","BS":16,"MS":0.5,"MO":"7")", {0x06, 0x00}), 6);
  EXPECT_EQ(decode_one<unsigned short>(R"("BT":"U","BS":16,"MS":-2,"MO":-1)", {0x06, 0x00}), 6);
  EXPECT_EQ(decode_one<float>(R"("BT":"R","MS":true,"MO":null)", {0x00, 0x00, 0x80, 0x3F}), 1.0F);
}

TEST(UComSignal, scale_and_offset_are_cut_to_the_measurement_type) {
  // 258 is 2 in eight bits.
  EXPECT_EQ(decode_one<unsigned char>(R"("BT":"U","BS":8,"MS":258)", {5}), 10);
  EXPECT_EQ(decode_one<unsigned char>(R"("BT":"U","BS":8,"MO":258)", {5}), 7);
}

TEST(UComSignal, the_limits_play_no_part_in_decoding) {
  EXPECT_EQ(decode_one<int>(R"("BT":"S","BS":8,"MT":"S32","ML":10,"MH":20)", {100}), 100);
}

// Notes which overload was called.
class Recorder final : public AbstractDispatcher {
 public:
  BASIC_TYPE type = BASIC_TYPE_void;
  const unsigned char* data = nullptr;

#define TREL_RECORD(suffix, M)                                                                    \
  void dispatch(const SignalM<M>& signal, const unsigned char* bytes) override {                  \
    type = signal.get_mea_type() == Lib::kBasicType<M> ? Lib::kBasicType<M> : BASIC_TYPE_UNKNOWN; \
    data = bytes;                                                                                 \
  }
  TREL_ELEMENT_TYPES(TREL_RECORD)
#undef TREL_RECORD
};

TEST(UComSignal, accept_calls_the_overload_of_its_measurement_type) {
  const std::map<std::string, BASIC_TYPE> types{
      {R"("BT":"B")", BASIC_TYPE_bool},
      {R"("BT":"R")", BASIC_TYPE_float},
      {R"("BT":"R","BS":64)", BASIC_TYPE_double},
      {R"("BT":"S","BS":8)", BASIC_TYPE_int8_t},
      {R"("BT":"S","BS":16)", BASIC_TYPE_int16_t},
      {R"("BT":"S","BS":32)", BASIC_TYPE_int32_t},
      {R"("BT":"S","BS":64)", BASIC_TYPE_int64_t},
      {R"("BT":"U","BS":8)", BASIC_TYPE_uint8_t},
      {R"("BT":"U","BS":16)", BASIC_TYPE_uint16_t},
      {R"("BT":"U","BS":32)", BASIC_TYPE_uint32_t},
      {R"("BT":"U","BS":64)", BASIC_TYPE_uint64_t},
      {R"("BT":"U","BS":8,"MT":"R64")", BASIC_TYPE_double}};
  const unsigned char data[16]{};
  for (const auto& [keys, type] : types) {
    Dbu dbu;
    dbu.configure(one_signal(keys));
    Recorder recorder;
    dbu.find_signal(10)->accept(recorder, data);
    EXPECT_EQ(recorder.type, type) << keys;
    EXPECT_EQ(recorder.data, data);
  }
}

TEST(UComSignal, converting_into_a_variable_sets_value_and_stamp) {
  Dbu dbu;
  dbu.configure(one_signal(R"("BT":"U","BS":8)"));
  const auto* signal = dynamic_cast<const SignalM<unsigned char>*>(dbu.find_signal(10));
  ASSERT_NE(signal, nullptr);
  Lib::StampExt stamp;
  stamp.set_nano(77);
  stamp.setInvalid();
  Lib::VariableExt<unsigned char> variable;
  const unsigned char data[]{5, 0};
  signal->convert(variable, stamp, data);
  EXPECT_EQ(variable.get(), 5);
  EXPECT_EQ(variable.get_nano(), 77);
  EXPECT_TRUE(variable.good());
}

TEST(UComSignal, write_txt_is_a_line_with_identifiers_name_layout_and_scaling) {
  Codec codec(false);
  codec.configure(document(R"({"ID":1,"BS":[9,10]})",
                           R"({"ID":9,"BT":"B"},{"ID":10,"DN":"Speed","DU":"m/s","BT":"S","BS":12,
                               "BO":16,"MT":"R64","MS":0.5,"MO":-1,"ML":-9,"MH":9})"),
                  false);
  std::ostringstream out;
  codec.get_signal_by_six(1)->write_txt(out);
  EXPECT_EQ(out.str(),
            "Sig:   10   1.   0 Speed                    (12,  16) | (int16_t, double) [m/s]"
            " | (    0.5,      -1) [     -9,       9]\n");
}

TEST(UComSignal, write_txt_marks_a_signal_that_no_message_lists) {
  Dbu dbu;
  dbu.configure(document("", R"({"ID":12345,"BT":"B","DN":"a name of more than twenty-four"})"));
  std::ostringstream out;
  dbu.find_signal(12345)->write_txt(out);
  EXPECT_EQ(out.str(),
            "Sig: 12345   -.   - a name of more than twenty-four ( 1,   0) | (bool, bool) []"
            " | ( true, false) [ true, false]\n");
}

TEST(UComSignal, write_txt_shows_small_integers_as_numbers_whatever_the_stream_is_set_to) {
  Dbu dbu;
  dbu.configure(one_signal(R"("BT":"U","BS":8,"MS":65,"MO":66)"));
  std::ostringstream out;
  out << std::hex;
  dbu.find_signal(10)->write_txt(out);
  EXPECT_NE(out.str().find("(     65,      66)"), std::string::npos) << out.str();
}

TEST(UComSignal, convert_print_shows_the_value_and_leaves_the_stream_in_decimal) {
  EXPECT_EQ(printed(R"("BT":"B")", {0x01}), "true/10/0.5");
  EXPECT_EQ(printed(R"("BT":"B")", {0x00}), "false/10/0.5");
  EXPECT_EQ(printed(R"("BT":"U","BS":8)", {0xFF, 0}), "ff/10/0.5");
  EXPECT_EQ(printed(R"("BT":"S","BS":8)", {0xFF, 0}), "ff/10/0.5");
  EXPECT_EQ(printed(R"("BT":"S","BS":16)", {0xFE, 0xFF, 0}), "fffe/10/0.5");
  EXPECT_EQ(printed(R"("BT":"S","BS":64)", {0x1A, 0, 0, 0, 0, 0, 0, 0, 0}), "1a/10/0.5");
  EXPECT_EQ(printed(R"("BT":"U","BS":8,"MT":"R64","MS":0.5)", {3, 0}), "0x1.8p+0/10/0.5");
}

}  // namespace
}  // namespace Trel::UCom
