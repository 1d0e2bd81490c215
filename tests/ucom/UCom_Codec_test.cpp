#include "ucom/UCom_Codec.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "ucom/UCom_TestDocument.h"

namespace Trel::UCom {
namespace {

using nlohmann::json;

constexpr long long kMin = std::numeric_limits<long long>::min();

// Message 1: a byte (sid 5), Nano (sid 10), another byte (sid 15). Message 2: a byte (sid 20).
// Message 3: no signals.
json timed() {
  return document(R"({"ID":1,"BS":[5,10,15]},{"ID":2,"BS":[20]},{"ID":3})",
                  R"({"ID":5,"BT":"U","BS":8,"BO":64},{"ID":10,"DN":"Nano","BT":"S","BS":64},
         {"ID":15,"BT":"U","BS":8,"BO":72},{"ID":20,"BT":"U","BS":8})");
}

Codec timed_codec(bool prescan) {
  Codec codec(prescan);
  codec.configure(timed(), prescan);
  return codec;
}

// Message 1 of timed().
Bytes timed_data(long long nano, unsigned char before = 1, unsigned char after = 2) {
  Bytes data = int64_bytes(nano);
  data.push_back(before);
  data.push_back(after);
  return data;
}

TEST(UComCodec, begins_in_the_state_that_its_flag_says) {
  EXPECT_EQ(Codec(true).get_prescan().state, 0);
  EXPECT_EQ(Codec(true).get_prescan().start, kMin);
  EXPECT_EQ(Codec(false).get_prescan().state, 1);
  EXPECT_EQ(Codec(false).get_prescan().start, 0);
  EXPECT_EQ(Codec(true).get_nano_sid(), sid_t_inv);
  EXPECT_EQ(Codec(true).get_nano_six(), six_t_inv);
}

TEST(UComCodec, configuring_sets_the_state_and_invalidates_everything) {
  Codec codec(false);
  codec.configure(timed(), true);
  EXPECT_EQ(codec.get_prescan().state, 0);
  EXPECT_EQ(codec.Nano().get_flags(), Lib::Flags(Lib::Flags::Invalid | Lib::Flags::Timeless));
  EXPECT_EQ(variable<unsigned char>(codec, 5).get_flags(),
            Lib::Flags(Lib::Flags::Invalid | Lib::Flags::Timeless));
  codec.configure(timed(), false);
  EXPECT_EQ(codec.get_prescan().state, 1);
}

TEST(UComCodec, configuring_again_forgets_the_time_signal) {
  Codec codec = timed_codec(true);
  codec.configure(one_signal(""), true);
  EXPECT_EQ(codec.get_nano_sid(), sid_t_inv);
  EXPECT_EQ(codec.get_nano_six(), six_t_inv);
}

TEST(UComCodec, decodes_before_configuring_do_nothing) {
  Codec codec(false);
  EXPECT_TRUE(decode(codec, 0, {1, 2, 3}));
  EXPECT_EQ(codec.get_signals_size(), 0u);
  EXPECT_EQ(codec.get_signal_by_six(0), nullptr);
}

TEST(UComCodec, the_time_signal_is_an_int64_named_Nano) {
  const Codec codec = timed_codec(true);
  EXPECT_EQ(codec.get_nano_sid(), 10u);
  EXPECT_EQ(codec.get_nano_six(), 1u);
  EXPECT_EQ(codec.get_signal_by_six(1)->get_slot(), 0u);
}

TEST(UComCodec, a_measurement_of_int64_may_stand_on_narrower_bits) {
  Codec codec(false);
  codec.configure(one_signal(R"("DN":"Nano","BT":"U","BS":8,"MT":"S64","MS":1000)"), false);
  decode(codec, 1, {3});
  EXPECT_EQ(codec.Nano().get(), 3000);
  EXPECT_EQ(codec.Nano().get_nano(), 3000);
}

TEST(UComCodec, a_Nano_of_another_type_or_spelling_is_ordinary) {
  for (const char* keys : {R"("DN":"Nano","BT":"U","BS":64)", R"("DN":"Nano","BT":"R","BS":64)",
                           R"("DN":"Nano","BT":"S","BS":32)", R"("DN":"nano","BT":"S","BS":64)",
                           R"("DN":"Nano ","BT":"S","BS":64)"}) {
    Codec codec(false);
    codec.configure(one_signal(keys), false);
    EXPECT_EQ(codec.get_nano_sid(), sid_t_inv) << keys;
    decode(codec, 1, int64_bytes(5));
    EXPECT_FALSE(codec.Nano().ok()) << keys;
  }
}

TEST(UComCodec, the_second_Nano_is_an_ordinary_signal) {
  Codec codec(false);
  codec.configure(document(R"({"ID":1,"BS":[10,11,12]})",
                           R"({"ID":10,"DN":"x","BT":"S","BS":64},
                              {"ID":11,"DN":"Nano","BT":"S","BS":64,"BO":64},
                              {"ID":12,"DN":"Nano","BT":"S","BS":64,"BO":128})"),
                  false);
  EXPECT_EQ(codec.get_nano_sid(), 11u);
  EXPECT_EQ(codec.get_signal_by_six(0)->get_slot(), 1u);
  EXPECT_EQ(codec.get_signal_by_six(1)->get_slot(), 0u);
  EXPECT_EQ(codec.get_signal_by_six(2)->get_slot(), 2u);
  Bytes data = int64_bytes(1);
  for (const long long value : {2, 3}) {
    for (const unsigned char byte : int64_bytes(value)) data.push_back(byte);
  }
  decode(codec, 1, data);
  EXPECT_EQ(codec.Nano().get(), 2);
  EXPECT_EQ(variable<long long>(codec, 10).get(), 1);
  EXPECT_TRUE(variable<long long>(codec, 10).isTimeless());
  EXPECT_EQ(variable<long long>(codec, 12).get(), 3);
  EXPECT_EQ(variable<long long>(codec, 12).get_nano(), 2);
}

TEST(UComCodec, a_Nano_that_no_message_lists_is_no_time_signal) {
  Codec codec(false);
  codec.configure(
      document(R"({"ID":1,"BS":[11]})", R"({"ID":10,"DN":"Nano","BT":"S","BS":64},{"ID":11})"),
      false);
  EXPECT_EQ(codec.get_nano_sid(), sid_t_inv);
}

TEST(UComCodec, signals_ahead_of_the_time_take_the_previous_one) {
  Codec codec = timed_codec(false);
  decode(codec, 1, timed_data(1000));
  EXPECT_EQ(variable<unsigned char>(codec, 5).get(), 1);
  EXPECT_TRUE(variable<unsigned char>(codec, 5).good());
  EXPECT_TRUE(variable<unsigned char>(codec, 5).isTimeless());
  EXPECT_EQ(codec.Nano().get_nano(), 1000);
  EXPECT_FALSE(codec.Nano().isTimeless());
  EXPECT_EQ(variable<unsigned char>(codec, 15).get_nano(), 1000);
  EXPECT_FALSE(variable<unsigned char>(codec, 15).isTimeless());

  decode(codec, 1, timed_data(2000, 3, 4));
  EXPECT_EQ(variable<unsigned char>(codec, 5).get(), 3);
  EXPECT_EQ(variable<unsigned char>(codec, 5).get_nano(), 1000);
  EXPECT_FALSE(variable<unsigned char>(codec, 5).isTimeless());
  EXPECT_EQ(variable<unsigned char>(codec, 15).get(), 4);
  EXPECT_EQ(variable<unsigned char>(codec, 15).get_nano(), 2000);
}

TEST(UComCodec, the_place_behind_the_time_counts_whatever_the_types_of_signals) {
  // Signals 1 to 6 stand ahead of the time, 8 to 13 behind it: an 8-bit integer, one measured as a
  // double and one within its byte, twice each.
  std::string list = "7";
  std::string signals = R"({"ID":7,"DN":"Nano","BT":"S","BS":64})";
  const std::string kinds[] = {R"("BT":"U","BS":8)", R"("BT":"U","BS":8,"MT":"R64")",
                               R"("BT":"U","BS":7)"};
  for (int sid = 1; sid <= 13; ++sid) {
    if (sid == 7) continue;
    const int byte = sid < 7 ? sid + 7 : sid + 6;
    list += "," + std::to_string(sid);
    signals += R"(,{"ID":)" + std::to_string(sid) + R"(,"BO":)" + std::to_string(8 * byte) + "," +
               kinds[sid % 3] + "}";
  }
  Codec codec(false);
  codec.configure(document(R"({"ID":1,"BS":[)" + list + "]}", signals), false);
  for (const int round : {1, 2}) {
    Bytes data = int64_bytes(1000 * round);
    for (int sid = 1; sid <= 13; ++sid) {
      if (sid != 7) data.push_back(static_cast<unsigned char>(10 * round + sid));
    }
    decode(codec, 1, data);
  }
  for (int sid = 1; sid <= 13; ++sid) {
    if (sid == 7) continue;
    const auto expect = [&](const auto& variable) {
      EXPECT_EQ(variable.get(), 20 + sid) << sid;
      EXPECT_EQ(variable.get_nano(), sid < 7 ? 1000 : 2000) << sid;
      EXPECT_FALSE(variable.isTimeless()) << sid;
    };
    if (sid % 3 == 1) {
      expect(variable<double>(codec, static_cast<sid_t>(sid)));
    } else {
      expect(variable<unsigned char>(codec, static_cast<sid_t>(sid)));
    }
  }
}

TEST(UComCodec, a_message_without_time_takes_the_last_one) {
  Codec codec = timed_codec(false);
  decode(codec, 2, {9});
  EXPECT_TRUE(variable<unsigned char>(codec, 20).good());
  EXPECT_TRUE(variable<unsigned char>(codec, 20).isTimeless());
  decode(codec, 1, timed_data(1000));
  EXPECT_TRUE(variable<unsigned char>(codec, 20).isTimeless());
  decode(codec, 2, {8});
  EXPECT_EQ(variable<unsigned char>(codec, 20).get(), 8);
  EXPECT_EQ(variable<unsigned char>(codec, 20).get_nano(), 1000);
  EXPECT_FALSE(variable<unsigned char>(codec, 20).isTimeless());
}

TEST(UComCodec, any_number_is_a_time) {
  Codec codec = timed_codec(false);
  for (const long long nano : {-1LL, 0LL, kMin, std::numeric_limits<long long>::max()}) {
    decode(codec, 1, timed_data(nano));
    EXPECT_EQ(codec.Nano().get(), nano);
    EXPECT_EQ(codec.Nano().get_nano(), nano);
    EXPECT_TRUE(codec.Nano().good());
  }
}

TEST(UComCodec, packets_of_fewer_than_three_bytes_are_ignored) {
  Codec codec = timed_codec(true);
  const Bytes bytes = packet(1, timed_data(1000));
  for (const std::size_t size : {0, 1, 2}) {
    const Bytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_TRUE(codec.decode(cut.data(), cut.size()));
    EXPECT_FALSE(codec.Nano().ok());
  }
  EXPECT_TRUE(codec.decode(nullptr, 100));
  codec.rewind(false);
  EXPECT_TRUE(codec.decode(bytes.data(), 2));
  EXPECT_TRUE(codec.decode(nullptr, 100));
  EXPECT_FALSE(codec.Nano().ok());
  // The third byte makes a packet: the rest of the field reads as zeros.
  EXPECT_TRUE(codec.decode(bytes.data(), 3));
  EXPECT_EQ(codec.Nano().get(), 1000 & 0xFF);
}

TEST(UComCodec, packets_of_unknown_or_empty_messages_are_ignored) {
  Codec codec = timed_codec(false);
  for (const unsigned int number : {0U, 3U, 4U, 257U, 65535U}) {
    EXPECT_TRUE(decode(codec, number, timed_data(1000))) << number;
    EXPECT_FALSE(codec.Nano().ok()) << number;
    EXPECT_FALSE(variable<unsigned char>(codec, 20).ok()) << number;
  }
}

TEST(UComCodec, a_message_number_has_sixteen_bits_the_lowest_first) {
  Codec codec(false);
  codec.configure(document(R"({"ID":772,"BS":[10]},{"ID":66308,"BS":[11]})",
                           R"({"ID":10,"BT":"U","BS":8},{"ID":11,"BT":"U","BS":8})"),
                  false);
  const Bytes bytes{0x04, 0x03, 7};  // 0x0304 = 772; 66308 is 65536 + 772
  codec.decode(bytes.data(), bytes.size());
  EXPECT_EQ(variable<unsigned char>(codec, 10).get(), 7);
  EXPECT_FALSE(variable<unsigned char>(codec, 11).ok());
}

TEST(UComCodec, the_prescan_ends_at_the_first_packet_with_a_time) {
  Codec codec = timed_codec(true);
  EXPECT_TRUE(decode(codec, 2, {9}));
  EXPECT_TRUE(decode(codec, 77, {9}));
  EXPECT_EQ(codec.get_prescan().state, 0);
  EXPECT_FALSE(decode(codec, 1, timed_data(1000)));
  EXPECT_EQ(codec.get_prescan().state, 2);
  EXPECT_EQ(codec.get_prescan().start, 1000);
  EXPECT_EQ(codec.Nano().get_nano(), 1000);
  EXPECT_TRUE(codec.Nano().good());
  EXPECT_FALSE(codec.Nano().isTimeless());
}

TEST(UComCodec, the_prescan_decodes_the_time_alone) {
  Codec codec = timed_codec(true);
  decode(codec, 2, {9});
  decode(codec, 1, timed_data(1000));
  for (const sid_t sid : {5, 15, 20}) {
    EXPECT_FALSE(variable<unsigned char>(codec, sid).ok()) << sid;
  }
}

TEST(UComCodec, packets_behind_the_end_of_the_prescan_are_decoded_in_full) {
  Codec codec = timed_codec(true);
  decode(codec, 1, timed_data(1000));
  EXPECT_TRUE(decode(codec, 1, timed_data(2000)));
  EXPECT_EQ(codec.get_prescan().state, 2);
  EXPECT_EQ(codec.get_prescan().start, 1000);
  EXPECT_EQ(codec.Nano().get(), 2000);
  EXPECT_TRUE(variable<unsigned char>(codec, 5).ok());
}

TEST(UComCodec, a_rewind_ends_a_prescan_that_found_nothing) {
  Codec codec = timed_codec(true);
  decode(codec, 2, {9});
  codec.rewind(true);
  EXPECT_EQ(codec.get_prescan().state, 1);
  EXPECT_EQ(codec.get_prescan().start, kMin);
  EXPECT_FALSE(codec.Nano().ok());
  EXPECT_TRUE(decode(codec, 1, timed_data(1000)));
  EXPECT_EQ(codec.get_prescan().state, 1);
  EXPECT_TRUE(variable<unsigned char>(codec, 15).ok());
}

TEST(UComCodec, a_rewind_with_the_flag_begins_with_the_start_time) {
  Codec codec = timed_codec(true);
  decode(codec, 1, timed_data(1000));
  decode(codec, 1, timed_data(2000));
  codec.rewind(true);
  EXPECT_EQ(codec.get_prescan().state, 2);
  EXPECT_EQ(codec.Nano().get(), 1000);
  EXPECT_EQ(codec.Nano().get_nano(), 1000);
  EXPECT_EQ(codec.Nano().get_flags(), Lib::Flags(0));
  EXPECT_FALSE(variable<unsigned char>(codec, 5).ok());
  decode(codec, 1, timed_data(3000));
  EXPECT_EQ(variable<unsigned char>(codec, 5).get_nano(), 1000);
  EXPECT_FALSE(variable<unsigned char>(codec, 5).isTimeless());
}

TEST(UComCodec, a_rewind_without_the_flag_begins_without_a_time) {
  Codec codec = timed_codec(true);
  decode(codec, 1, timed_data(1000));
  codec.rewind(false);
  EXPECT_EQ(codec.get_prescan().state, 2);
  EXPECT_EQ(codec.get_prescan().start, 1000);
  EXPECT_FALSE(codec.Nano().ok());
  codec.rewind(true);
  codec.rewind(true);
  EXPECT_EQ(codec.Nano().get(), 1000);
}

TEST(UComCodec, a_rewind_without_a_prescan_has_no_start_time) {
  Codec codec = timed_codec(false);
  decode(codec, 1, timed_data(1000));
  codec.rewind(true);
  EXPECT_EQ(codec.get_prescan().state, 1);
  EXPECT_FALSE(codec.Nano().ok());
}

TEST(UComCodec, invalidating_begins_anew) {
  Codec codec = timed_codec(true);
  decode(codec, 1, timed_data(1000));
  codec.invalidate(true);
  EXPECT_EQ(codec.get_prescan().state, 0);
  EXPECT_EQ(codec.get_prescan().start, kMin);
  EXPECT_FALSE(codec.Nano().ok());
  EXPECT_FALSE(decode(codec, 1, timed_data(3000)));
  codec.invalidate(false);
  EXPECT_EQ(codec.get_prescan().state, 1);
  EXPECT_EQ(codec.get_prescan().start, 0);
}

TEST(UComCodec, without_a_time_signal_the_prescan_never_ends_and_all_is_timeless) {
  Codec codec(true);
  codec.configure(one_signal(R"("BT":"U","BS":8)"), true);
  EXPECT_EQ(codec.get_nano_sid(), sid_t_inv);
  for (int repeat = 0; repeat < 3; ++repeat) EXPECT_TRUE(decode(codec, 1, {7}));
  EXPECT_EQ(codec.get_prescan().state, 0);
  EXPECT_FALSE(variable<unsigned char>(codec, 10).ok());
  codec.rewind(true);
  decode(codec, 1, {7});
  EXPECT_EQ(variable<unsigned char>(codec, 10).get(), 7);
  EXPECT_TRUE(variable<unsigned char>(codec, 10).good());
  EXPECT_TRUE(variable<unsigned char>(codec, 10).isTimeless());
}

TEST(UComCodec, a_value_keeps_until_its_next_packet) {
  Codec codec = timed_codec(false);
  decode(codec, 2, {9});
  decode(codec, 1, timed_data(1000));
  EXPECT_EQ(variable<unsigned char>(codec, 20).get(), 9);
}

TEST(UComCodec, the_document_may_go_once_the_codec_is_configured) {
  Codec codec(false);
  {
    const json source = timed();
    codec.configure(source, false);
  }
  decode(codec, 1, timed_data(1000));
  EXPECT_EQ(codec.Nano().get(), 1000);
}

TEST(UComCodec, a_document_that_throws_leaves_nothing_behind) {
  Codec codec(true);
  EXPECT_THROW(codec.configure(one_signal(R"("IP":"x")"), true), json::type_error);
}

}  // namespace
}  // namespace Trel::UCom
