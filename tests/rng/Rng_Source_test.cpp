// Where navigation packets come from: packets that wrap them, and the channel of addresses. And
// the trigger, whose reader no packet reaches.
#include "rng/Rng_Source.h"

#include <gtest/gtest.h>

#include <limits>

#include "Rng_Feed.h"
#include "rng/Rng_SlowChannel.h"
#include "rng/Rng_Trigger.h"

namespace Trel::Rng {
namespace {

constexpr unsigned char kRejected = Lib::Flags::Rejected;
constexpr unsigned char kInvalid = Lib::Flags::Invalid;

unsigned char missing(const Lib::Stamp& stamp) {
  return stamp.get_flags().byte() & Lib::Flags::kNull;
}

RangePacket wrapper(std::uint32_t address, unsigned char provenance) {
  return RangePacket(3).resize(81).u32(4, address).u8(8, provenance);
}

struct Scene {
  ComKey key;
  ComData data;

  void ncom(const RangePacket& packet) {
    const Bytes bytes = packet.bytes();
    ExtractNCom({bytes.data(), static_cast<unsigned int>(bytes.size())}, key, data);
  }
  void addresses(unsigned int hunter, unsigned int target_address, unsigned int target = 0) {
    const Bytes bytes = join({little(hunter, 4), little(target_address, 4)});
    ExtractRangeChannel(target, 9, bytes.data(), key, data);
  }
  void trigger(const RangePacket& packet) {
    const Bytes bytes = packet.bytes();
    ExtractTrigger({bytes.data(), static_cast<unsigned int>(bytes.size())}, key, data);
  }
  const DataWrap& wrap(unsigned int index) { return data.DWrap(index); }
};

unsigned int text(const char* four) {
  unsigned int number = 0;
  for (int at = 3; at >= 0; --at) number = number * 256 + static_cast<unsigned char>(four[at]);
  return number;
}

TEST(RngSource, a_source_takes_the_first_empty_place) {
  Scene scene;
  scene.ncom(wrapper(0x0A000001, 0));
  scene.ncom(wrapper(0x0A000002, 0));
  EXPECT_TRUE(scene.wrap(0).Is_Address_Valid() && scene.wrap(0).Is_Provenance_Valid());
  EXPECT_EQ(scene.wrap(0).Get_Address(), 0x0A000001U);
  EXPECT_EQ(scene.wrap(1).Get_Address(), 0x0A000002U);
  EXPECT_FALSE(scene.wrap(2).Is_Address_Valid());
}

TEST(RngSource, an_address_that_has_its_place_changes_nothing) {
  Scene scene;
  scene.ncom(wrapper(7, 1));
  scene.ncom(wrapper(8, 2));
  scene.ncom(wrapper(7, 3));
  EXPECT_EQ(scene.wrap(0).Var_Provenance().get(), 1);
  EXPECT_FALSE(scene.wrap(2).Is_Address_Valid());
}

TEST(RngSource, the_ninth_source_is_dropped) {
  Scene scene;
  for (unsigned int source = 1; source <= 9; ++source) scene.ncom(wrapper(source, 1));
  for (unsigned int index = 0; index < 8; ++index) {
    EXPECT_EQ(scene.wrap(index).Get_Address(), index + 1);
  }
}

TEST(RngSource, any_other_size_is_passed_over) {
  for (const std::size_t size : {9U, 80U, 82U, 153U}) {
    Scene scene;
    scene.ncom(RangePacket(3).resize(size).u32(4, 7).u8(8, 1));
    EXPECT_FALSE(scene.wrap(0).Is_Address_Valid()) << size;
  }
}

TEST(RngSource, a_source_that_names_nothing_is_dropped) {
  Scene scene;
  scene.ncom(wrapper(7, 255));
  scene.ncom(wrapper(0, 0));
  EXPECT_FALSE(scene.wrap(0).Is_Address_Valid());
  scene.ncom(wrapper(0, 3));  // a serial port has no address
  EXPECT_TRUE(scene.wrap(0).Is_Address_Valid());
  EXPECT_EQ(scene.wrap(0).Get_Address(), 0U);
}

TEST(RngSource, the_provenance_is_kept_as_it_came) {
  Scene scene;
  scene.ncom(wrapper(7, 254));
  EXPECT_EQ(scene.wrap(0).Var_Provenance().get(), 254);
}

TEST(RngSource, the_provenance_tells_what_the_address_is) {
  Scene scene;
  scene.ncom(wrapper(7, 0));
  scene.ncom(wrapper(8, 16));
  scene.ncom(wrapper(9, 1));
  EXPECT_EQ(scene.wrap(0).Get_AddressIPv4(), 7U);
  EXPECT_EQ(missing(scene.wrap(0).Var_AddressFile()), kInvalid);
  EXPECT_EQ(scene.wrap(1).Get_AddressFile(), 8U);
  EXPECT_EQ(missing(scene.wrap(1).Var_AddressIPv4()), kInvalid);
  EXPECT_EQ(missing(scene.wrap(2).Var_AddressIPv4()), kInvalid);
  EXPECT_EQ(missing(scene.wrap(2).Var_AddressFile()), kInvalid);
}

TEST(RngSource, a_place_that_nobody_wants_stays_empty) {
  Scene scene;
  scene.key.KWrap(0).Bar_General();
  scene.ncom(wrapper(7, 1));
  EXPECT_EQ(missing(scene.wrap(0).Var_Address()), kRejected);
  EXPECT_EQ(scene.wrap(1).Get_Address(), 7U);
}

TEST(RngSource, zero_is_no_source) {
  Scene scene;
  scene.addresses(0, 0);
  const DataMain& main = scene.data.DMain();
  EXPECT_EQ(main.Var_Hunter_Provenance().get(), 18);
  EXPECT_TRUE(main.Var_Hunter_Provenance().ok());
  EXPECT_EQ(missing(main.Var_Hunter_Address()), kInvalid);
  EXPECT_EQ(missing(main.Var_Hunter_AddressIPv4()), kInvalid);
  EXPECT_EQ(missing(main.Var_Hunter_AddressFile()), kInvalid);
  EXPECT_EQ(missing(main.Var_Hunter_IPv4Adr()), kInvalid);
  EXPECT_EQ(missing(main.Var_Hunter_NComIndex()), kInvalid);
  const DataTarget& target = scene.data.DTarget(0);
  EXPECT_EQ(target.Var_Provenance().get(), 18);
  EXPECT_EQ(missing(target.Var_Address()), kInvalid);
  EXPECT_EQ(missing(target.Var_AddressIPv4()), kInvalid);
  EXPECT_EQ(missing(target.Var_AddressFile()), kInvalid);
  EXPECT_EQ(missing(target.Var_IPv4Adr()), kInvalid);
  EXPECT_EQ(missing(target.Var_NComIndex()), kInvalid);
}

TEST(RngSource, a_number_is_a_network_address) {
  Scene scene;
  scene.addresses(0x0A000001, 0x0A000002, 2);
  const DataMain& main = scene.data.DMain();
  EXPECT_EQ(main.Var_Hunter_Provenance().get(), 0);
  EXPECT_EQ(main.Get_Hunter_Address(), 0x0A000001U);
  EXPECT_EQ(main.Get_Hunter_AddressIPv4(), 0x0A000001U);
  EXPECT_EQ(main.Get_Hunter_IPv4Adr(), 0x0A000001U);
  EXPECT_EQ(missing(main.Var_Hunter_AddressFile()), kInvalid);
  const DataTarget& target = scene.data.DTarget(2);
  EXPECT_EQ(target.Var_Provenance().get(), 0);
  EXPECT_EQ(target.Get_Address(), 0x0A000002U);
  EXPECT_EQ(target.Get_AddressIPv4(), 0x0A000002U);
  EXPECT_EQ(target.Get_IPv4Adr(), 0x0A000002U);
  EXPECT_EQ(missing(target.Var_AddressFile()), kInvalid);
}

TEST(RngSource, four_characters_are_the_key_of_a_file) {
  Scene scene;
  scene.addresses(text("hunt"), text("tgt3"), 1);
  const DataMain& main = scene.data.DMain();
  EXPECT_EQ(main.Var_Hunter_Provenance().get(), 16);
  EXPECT_EQ(main.Get_Hunter_Address(), text("hunt"));
  EXPECT_EQ(main.Get_Hunter_AddressFile(), text("hunt"));
  EXPECT_EQ(missing(main.Var_Hunter_AddressIPv4()), kInvalid);
  EXPECT_EQ(missing(main.Var_Hunter_IPv4Adr()), kInvalid);
  const DataTarget& target = scene.data.DTarget(1);
  EXPECT_EQ(target.Var_Provenance().get(), 16);
  EXPECT_EQ(target.Get_Address(), text("tgt3"));
  EXPECT_EQ(target.Get_AddressFile(), text("tgt3"));
  EXPECT_EQ(missing(target.Var_AddressIPv4()), kInvalid);
  EXPECT_EQ(missing(target.Var_IPv4Adr()), kInvalid);
}

TEST(RngSource, the_keys_of_targets_are_four_and_those_of_the_hunter_one) {
  for (const char* key : {"tgt1", "tgt2", "tgt3", "tgt4"}) {
    Scene scene;
    scene.addresses(text(key), text(key));
    EXPECT_EQ(scene.data.DTarget(0).Var_Provenance().get(), 16) << key;
    EXPECT_EQ(scene.data.DMain().Var_Hunter_Provenance().get(), 0) << key;
  }
  for (const char* key : {"tgt0", "tgt5", "hunt", "TGT1"}) {
    Scene scene;
    scene.addresses(1, text(key));
    EXPECT_EQ(scene.data.DTarget(0).Var_Provenance().get(), 0) << key;
  }
}

TEST(RngSource, an_address_leads_to_the_place_of_its_source) {
  Scene scene;
  scene.ncom(wrapper(0x0A000001, 0));
  scene.ncom(wrapper(0x0A000002, 0));
  scene.addresses(0x0A000002, 0x0A000001);
  EXPECT_EQ(scene.data.DMain().Get_Hunter_NComIndex(), 1U);
  EXPECT_TRUE(scene.data.DMain().Var_Hunter_NComIndex().ok());
  EXPECT_EQ(scene.data.DTarget(0).Get_NComIndex(), 0U);
  scene.addresses(0x0A000009, 0);
  EXPECT_EQ(missing(scene.data.DMain().Var_Hunter_NComIndex()), kInvalid);
  EXPECT_EQ(missing(scene.data.DTarget(0).Var_NComIndex()), kInvalid);
}

TEST(RngSource, the_key_of_a_file_leads_to_no_place) {
  Scene scene;
  scene.ncom(wrapper(text("hunt"), 0));
  scene.addresses(text("hunt"), 0);
  EXPECT_EQ(missing(scene.data.DMain().Var_Hunter_NComIndex()), kInvalid);
}

TEST(RngSource, what_nobody_wants_is_rejected) {
  Scene scene;
  scene.addresses(1, 2);
  scene.key.KMain().Bar_Hunter_General_Source();
  scene.addresses(1, 2);
  EXPECT_EQ(missing(scene.data.DMain().Var_Hunter_Provenance()), kRejected);
  EXPECT_EQ(missing(scene.data.DMain().Var_Hunter_AddressIPv4()), kRejected);
  EXPECT_EQ(missing(scene.data.DMain().Var_Hunter_IPv4Adr()), kRejected);
  EXPECT_EQ(missing(scene.data.DMain().Var_Hunter_NComIndex()), kRejected);
  EXPECT_EQ(scene.data.DTarget(0).Get_Address(), 2U);
  scene.key.KTarget(0).Bar_General_Source();
  scene.addresses(1, 2);
  EXPECT_EQ(missing(scene.data.DTarget(0).Var_Address()), kRejected);
  EXPECT_EQ(missing(scene.data.DTarget(0).Var_AddressFile()), kRejected);
  EXPECT_EQ(missing(scene.data.DTarget(0).Var_IPv4Adr()), kRejected);
}

TEST(RngTrigger, its_time_is_the_minute_and_the_smaller_units) {
  Scene scene;
  scene.trigger(RangePacket(4).u16(4, 1500).i8(6, -125).i32(7, 10));
  // 10 min + 1500 ms - 125 * 4 us
  EXPECT_DOUBLE_EQ(scene.data.DMain().Get_Trig_Time(), 600 + 1.5 - 0.0005);
  EXPECT_TRUE(scene.data.DMain().Var_Trig_Time().ok());
}

TEST(RngTrigger, without_one_of_its_numbers_there_is_no_time) {
  const RangePacket whole = RangePacket(4).u16(4, 1500).i8(6, 1).i32(7, 10);
  for (RangePacket packet : {RangePacket(whole).u16(4, 65535), RangePacket(whole).i8(6, -128),
                             RangePacket(whole).i32(7, std::numeric_limits<int>::min()),
                             RangePacket(whole).resize(10)}) {
    Scene scene;
    scene.trigger(whole);
    scene.trigger(packet);
    EXPECT_EQ(missing(scene.data.DMain().Var_Trig_Time()), kInvalid);
  }
}

TEST(RngTrigger, what_nobody_wants_is_rejected) {
  Scene scene;
  scene.key.KMain().Bar_Trig_General();
  scene.trigger(RangePacket(4).u16(4, 1500).i32(7, 10));
  EXPECT_EQ(missing(scene.data.DMain().Var_Trig_Time()), kRejected);
}

}  // namespace
}  // namespace Trel::Rng
