#include "can/Can_Codec.h"

#include <gtest/gtest.h>

#include <random>

#include "can/Can_Builders.h"

namespace Trel::Can {
namespace {

constexpr long long kTime = 1'300'000'000'000'000'000;

constexpr const char* kText =
    "BO_ 100 Wheels: 8 N\n"
    "SG_ First : 0|8@1+ (1,0)\n"
    "SG_ Ninth : 64|8@1+ (1,0)\n"
    "SG_ Last : 504|8@1+ (1,0)\n"
    "BO_ 200 Empty: 8 N\n"
    "BO_ 2147483748 Long: 64 N\n"  // 100 with bit 31 set
    "SG_ Far : 311|8@0+ (1,0)\n"
    "SG_ First : 0|8@1+ (0.5,1)\n";

class CanCodec : public testing::Test {
 protected:
  CanCodec() { configure(codec_, kText, false); }

  unsigned long long number(const std::string& tag) const {
    return static_cast<unsigned long long>(value(codec_, tag));
  }

  Codec codec_;
};

TEST(DlcTest, codes_above_eight_are_those_of_can_fd) {
  constexpr unsigned int kBytes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};
  for (unsigned int dlc = 0; dlc < 16; ++dlc) EXPECT_EQ(dlc_to_byte_count(dlc), kBytes[dlc]);
}

TEST(RawCanMessage, the_header_is_flags_code_value_and_identifier) {
  const unsigned char bytes[] = {0x95, 0x01, 0x02, 0x03, 0x78, 0x56, 0x34, 0x82};
  const RawCanMessage record(bytes, sizeof bytes);
  EXPECT_EQ(record.get_flags(), 5U);
  EXPECT_EQ(record.get_dlc(), 9U);
  EXPECT_EQ(record.get_value(), 0x030201U);
  EXPECT_EQ(record.get_mid(), 0x82345678U);
  EXPECT_EQ(record.get_record_size(), 20U);
}

TEST(RawCanMessage, a_record_holds_at_least_eight_data_bytes) {
  for (const auto& [dlc, size] : {std::pair{0, 16}, {3, 16}, {8, 16}, {9, 20}, {15, 72}}) {
    const unsigned char bytes[8] = {static_cast<unsigned char>(dlc << 4)};
    EXPECT_EQ(RawCanMessage(bytes, 8).get_record_size(), static_cast<std::size_t>(size));
  }
}

TEST_F(CanCodec, signals_are_listed_by_their_place) {
  EXPECT_EQ(codec_.get_signals_size(), 5U);
  EXPECT_EQ(codec_.get_signal_by_six(4)->get_tag(), "First.1");
  EXPECT_EQ(codec_.get_signal_by_six(5), nullptr);
}

TEST_F(CanCodec, a_frame_sets_the_signals_of_its_message_at_the_packet_time) {
  EXPECT_TRUE(decode(codec_, PacketBuilder(kTime).frame(100, {7})));
  EXPECT_EQ(number("First"), 7U);
  EXPECT_EQ(value(codec_, "First").get_nano(), kTime);
  EXPECT_EQ(value(codec_, "First").get_flags().byte(), 0);
  EXPECT_TRUE(value(codec_, "First.1").null());
  EXPECT_EQ(codec_.DMain().Var_Nano().get(), kTime);
}

TEST_F(CanCodec, every_frame_of_a_packet_is_decoded_and_the_last_of_a_message_stands) {
  decode(codec_, PacketBuilder(kTime).frame(100, {1}).frame(2147483748U, {9}).frame(100, {2}));
  EXPECT_EQ(number("First"), 2U);
  EXPECT_EQ(static_cast<double>(value(codec_, "First.1")), 5.5);
}

TEST_F(CanCodec, an_unknown_identifier_is_skipped_by_its_length) {
  decode(codec_, PacketBuilder(kTime)
                     .frame(555, 15, {1}, 64)
                     .frame(555, 9, {1}, 12)
                     .frame(555, 3, {1}, 8)
                     .frame(100, {4}));
  EXPECT_EQ(number("First"), 4U);
}

TEST_F(CanCodec, a_message_without_signals_is_walked_over) {
  decode(codec_, PacketBuilder(kTime).frame(200, {1}).frame(100, {4}));
  EXPECT_EQ(number("First"), 4U);
}

TEST_F(CanCodec, bit_31_of_the_identifier_counts) {
  decode(codec_, PacketBuilder(kTime).frame(2147483748U, {4}));
  EXPECT_TRUE(value(codec_, "First").null());
  EXPECT_TRUE(value(codec_, "First.1").good());
}

TEST_F(CanCodec, a_long_frame_is_read_to_its_64th_byte) {
  std::vector<unsigned char> data(64);
  data[38] = 0xA5;  // bits 304 to 311
  decode(codec_, PacketBuilder(kTime).frame(2147483748U, 15, data, 64).frame(100, {3}));
  EXPECT_EQ(number("Far"), 0xA5U);
  EXPECT_EQ(number("First"), 3U);
}

TEST_F(CanCodec, a_field_behind_the_record_reads_the_record_that_follows) {
  // The ninth byte from the data on is the next record's first: its DLC code and flags.
  decode(codec_, PacketBuilder(kTime).frame(100, {1}).frame(555, {1, 2, 3}));
  EXPECT_EQ(number("Ninth"), 0x30U);
  EXPECT_EQ(number("Last"), 0U);
}

TEST_F(CanCodec, a_field_behind_the_packet_reads_zeros) {
  decode(codec_, PacketBuilder(kTime).frame(100, {1}));
  EXPECT_TRUE(value(codec_, "Ninth").good());
  EXPECT_EQ(number("Ninth"), 0U);
  EXPECT_EQ(number("Last"), 0U);
}

TEST_F(CanCodec, a_record_cut_off_in_its_data_reads_zeros_there) {
  decode(codec_, PacketBuilder(kTime).frame(100, 15, {9}, 64).cut(8 + 8 + 1));
  EXPECT_EQ(number("First"), 9U);
  decode(codec_, PacketBuilder(kTime + 1).frame(100, 15, {9}, 64).cut(8 + 8));
  EXPECT_EQ(number("First"), 0U);
  EXPECT_EQ(value(codec_, "First").get_nano(), kTime + 1);
}

TEST_F(CanCodec, a_record_cut_off_in_its_header_is_not_decoded) {
  decode(codec_, PacketBuilder(kTime).frame(100, {9}).cut(8 + 7));
  EXPECT_TRUE(value(codec_, "First").null());
  EXPECT_EQ(codec_.DMain().Var_Nano().get(), kTime);
}

TEST_F(CanCodec, a_packet_of_fewer_than_eight_bytes_is_ignored) {
  EXPECT_TRUE(decode(codec_, PacketBuilder(kTime).cut(7)));
  EXPECT_TRUE(decode(codec_, PacketBuilder(kTime).cut(0)));
  EXPECT_TRUE(codec_.decode(nullptr, 0));
  EXPECT_TRUE(codec_.decode(nullptr, 24));
  EXPECT_TRUE(codec_.DMain().Var_Nano().null());
}

TEST_F(CanCodec, a_packet_that_the_prescan_would_skip_is_decoded) {
  decode(codec_, PacketBuilder(kTime).frame(555, 9, {}, 12).frame(100, {6}));  // 44 bytes
  EXPECT_EQ(number("First"), 6U);
}

TEST_F(CanCodec, values_of_messages_not_in_a_packet_keep_their_time) {
  decode(codec_, PacketBuilder(kTime).frame(100, {1}));
  decode(codec_, PacketBuilder(kTime + 5).frame(2147483748U, {1}));
  EXPECT_EQ(value(codec_, "First").get_nano(), kTime);
  EXPECT_EQ(value(codec_, "First.1").get_nano(), kTime + 5);
}

TEST_F(CanCodec, a_multiplexed_signal_is_decoded_whatever_the_multiplexor_says) {
  configure(codec_, "BO_ 1 M: 8 N\nSG_ Mode M : 0|8@1+ (1,0)\nSG_ A m3 : 8|8@1+ (1,0)\n", false);
  decode(codec_, PacketBuilder(kTime).frame(1, {5, 7}));
  EXPECT_EQ(number("Mode"), 5U);
  EXPECT_EQ(number("A"), 7U);
}

TEST_F(CanCodec, configuring_anew_forgets_signals_and_values) {
  decode(codec_, PacketBuilder(kTime).frame(100, {1}));
  configure(codec_, "BO_ 100 M: 8 N\nSG_ Only : 0|8@1+ (1,0)\n", true);
  EXPECT_EQ(codec_.get_signals_size(), 1U);
  EXPECT_EQ(codec_.CData().DCan().size(), 1U);
  EXPECT_TRUE(value(codec_, "Only").null());
  EXPECT_TRUE(codec_.DMain().Var_Nano().null());
  EXPECT_TRUE(codec_.get_prescan().active);
}

TEST(CanCodecDamage, a_packet_cut_anywhere_decodes_what_is_left) {
  const auto whole = PacketBuilder(kTime)
                         .frame(100, {1, 2, 3, 4, 5, 6, 7, 8})
                         .frame(2147483748U, 15, std::vector<unsigned char>(64, 0xFF), 64)
                         .frame(100, {9})
                         .bytes();
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    Codec codec;
    configure(codec, kText, false);
    decode(codec,
           std::vector<unsigned char>(whole.begin(), whole.begin() + static_cast<long>(size)));
    EXPECT_EQ(codec.DMain().Var_Nano().good(), size >= 8) << size;
    EXPECT_EQ(value(codec, "First").good(), size >= 16) << size;
    EXPECT_EQ(value(codec, "Far").good(), size >= 32) << size;
    // The third record has its header from byte 8 + 16 + 72 on, and its data 8 bytes later.
    const unsigned long long first = size <= 16 ? 0 : size < 104 ? 1 : size == 104 ? 0 : 9;
    EXPECT_EQ(static_cast<unsigned long long>(value(codec, "First")), first) << size;
  }
}

TEST(CanCodecDamage, any_bytes_are_a_packet) {
  constexpr unsigned int kSeed = 20260807;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  Codec codec;
  for (int round = 0; round < 20000; ++round) {
    if (round % 500 == 0) configure(codec, kText, round % 1000 == 0);
    std::vector<unsigned char> bytes(random() % 200);
    for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random());
    for (std::size_t at = 12; at + 4 <= bytes.size(); at += 16) {
      bytes[at] = 100;
      bytes[at + 1] = bytes[at + 2] = bytes[at + 3] = 0;
    }
    decode(codec, bytes);
    if (round % 700 == 0) codec.rewind(round % 1400 == 0);
    ASSERT_EQ(codec.CData().DCan().size(), 5U);
  }
}

}  // namespace
}  // namespace Trel::Can
