#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Support_Dbu.h"
#include "support/Support_Packet.h"

namespace Trel::Support {
namespace {

TEST(UComPacket, begins_with_its_message_number) {
  EXPECT_EQ(UComPacket(0x1234).bytes(), (Bytes{0x34, 0x12}));
  EXPECT_EQ(UComPacket(1, 3).bytes(), (Bytes{1, 0, 0, 0, 0}));
}

TEST(UComPacket, whole_bytes_are_little_endian) {
  EXPECT_EQ(UComPacket(0).bits(8, 32, 0x11223344).bytes(),
            (Bytes{0, 0, 0, 0x44, 0x33, 0x22, 0x11}));
}

TEST(UComPacket, a_field_across_bytes_leaves_its_neighbours_alone) {
  // 0x801 at bit 4 of bytes FF FF FF: low nibble 1 into the first byte, 80 into the second
  EXPECT_EQ(UComPacket(0).bits(0, 24, 0xFFFFFF).bits(4, 12, 0x801).bytes(),
            (Bytes{0, 0, 0x1F, 0x80, 0xFF}));
}

TEST(UComPacket, bits_above_the_field_are_cut_off) {
  EXPECT_EQ(UComPacket(0).bits(1, 2, 0xFF).bytes(), (Bytes{0, 0, 0x06}));
}

TEST(UComPacket, a_single_bit_at_every_place) {
  for (unsigned int place = 0; place < 16; ++place) {
    Bytes expected(2 + place / 8 + 1);
    expected[2 + place / 8] = static_cast<unsigned char>(1U << place % 8);
    EXPECT_EQ(UComPacket(0).bits(place, 1, 1).bytes(), expected) << place;
  }
}

TEST(UComPacket, negative_and_real_numbers_have_their_usual_form) {
  EXPECT_EQ(UComPacket(0).integer(0, 16, -2).bytes(), (Bytes{0, 0, 0xFE, 0xFF}));
  EXPECT_EQ(UComPacket(0).real32(0, 1.0F).bytes(), (Bytes{0, 0, 0, 0, 0x80, 0x3F}));
  EXPECT_EQ(UComPacket(0).real64(0, -2.0).bytes(), (Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0xC0}));
  // 64 bits at an odd place take a ninth byte
  EXPECT_EQ(UComPacket(0).bits(4, 64, ~0ULL).bytes(),
            (Bytes{0, 0, 0xF0, 255, 255, 255, 255, 255, 255, 255, 0x0F}));
}

TEST(Dbu, says_what_was_said_and_nothing_else) {
  const Dbu dbu = Dbu()
                      .message(1, {10, 11})
                      .name("Fast")
                      .signal(10)
                      .name("Nano")
                      .type("S", 64)
                      .at(0)
                      .signal(11)
                      .inherits(10)
                      .measured("R64")
                      .scale(0.5)
                      .offset(-1)
                      .limits(0, 9)
                      .unit("m")
                      .comment("text")
                      .key("XX", nullptr);
  EXPECT_EQ(dbu.json(), nlohmann::json::parse(R"({
    "V": 1,
    "M": [{"ID": 1, "BS": [10, 11], "DN": "Fast"}],
    "S": [{"ID": 10, "DN": "Nano", "BT": "S", "BS": 64, "BO": 0},
          {"ID": 11, "IP": 10, "MT": "R64", "MS": 0.5, "MO": -1, "ML": 0, "MH": 9,
           "DU": "m", "DC": "text", "XX": null}]})"));
  EXPECT_EQ(nlohmann::json::parse(dbu.text()), dbu.json());
}

TEST(Dbu, the_document_itself_can_be_wrong) {
  EXPECT_EQ(Dbu().top("V", 2).json().at("V"), 2);
}

}  // namespace
}  // namespace Trel::Support
