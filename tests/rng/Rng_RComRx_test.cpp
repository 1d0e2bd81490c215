// What the codec takes for a packet, and what it does with each type.
#include "rng/Rng_RComRx.h"

#include <gtest/gtest.h>

#include <memory>

#include "Rng_Feed.h"

namespace Trel::Rng {
namespace {

int super(RComCodec& codec, const Bytes& bytes) {
  return codec.DecodeSuper(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

TEST(RComCodec, a_packet_behind_a_prefix_is_decoded) {
  TestCodec codec(false);
  codec.take(with_minutes(range(100)));
  EXPECT_EQ(super(codec, range(110).xcom_bytes()), 1);
  EXPECT_EQ(codec.DMain().Get_Nano(), at_ms(110));
}

TEST(RComCodec, what_stands_behind_the_packet_is_left_alone) {
  TestCodec codec(false);
  codec.take(with_minutes(range(100)));
  EXPECT_EQ(super(codec, join({range(110).xcom_bytes(), Bytes(40, 0x57)})), 1);
  EXPECT_EQ(codec.DMain().Get_Nano(), at_ms(110));
}

TEST(RComCodec, the_packet_behind_a_prefix_tells_its_own_size) {
  TestCodec codec(false);
  const RangePacket wrapper = RangePacket(3).resize(81).u32(4, 77).u8(8, 1);  // 82 bytes alone
  super(codec, join({wrapper.xcom_bytes(), Bytes(3)}));
  EXPECT_EQ(codec.DWrap(0).Get_Address(), 77U);
}

TEST(RComCodec, without_a_whole_good_packet_nothing_is_decoded) {
  TestCodec codec(false);
  codec.take({with_minutes(range(100)), range(110)});
  Bytes cut = range(120).xcom_bytes();
  cut.pop_back();
  Bytes unframed = range(120).xcom_bytes();
  unframed[8] = 0x58;
  EXPECT_EQ(super(codec, range(120).bad_sum().xcom_bytes()), 0);
  EXPECT_EQ(super(codec, cut), 0);
  EXPECT_EQ(super(codec, unframed), 0);
  EXPECT_EQ(super(codec, Bytes(8)), 0);
  EXPECT_EQ(super(codec, Bytes(7)), 0);
  EXPECT_EQ(codec.DecodeSuper(nullptr, 100), 0);
  EXPECT_EQ(codec.DMain().Get_Nano(), at_ms(110));
}

TEST(RComCodec, no_bytes_are_no_packet) {
  TestCodec codec(false);
  const unsigned char byte = 0x57;
  EXPECT_EQ(codec.DecodeLite(nullptr, 100), 0);
  EXPECT_EQ(codec.DecodeLite(&byte, 0), 0);
  EXPECT_EQ(codec.DecodeLite(&byte, 1), 1);  // too short to tell its type
}

TEST(RComCodec, a_raw_packet_needs_no_sum) {
  TestCodec codec(false);
  codec.take(with_minutes(range(100)).bad_sum());
  codec.take(range(110).bad_sum());
  EXPECT_EQ(codec.DMain().Get_Nano(), at_ms(110));
}

// Whether a packet reaches the part that every packet reaches.
bool is_taken(const RangePacket& packet) {
  TestCodec codec(false);
  EXPECT_EQ(codec.take(packet), 1);
  return codec.DMain().Var_ProductFamily().ok();
}

TEST(RComCodec, triggers_and_unknown_types_are_passed_over) {
  for (int type = 0; type < 256; ++type) {
    RangePacket packet(static_cast<unsigned char>(type));
    if (type == 2) packet.target(1, 1);
    EXPECT_EQ(is_taken(packet), type != 4 && type <= 6) << type;
  }
}

TEST(RComCodec, a_trigger_leaves_its_time_alone) {
  TestCodec codec(false);
  codec.take({with_minutes(range(100)), range(110), RangePacket(4).u16(4, 500).i32(7, kMinute)});
  EXPECT_FALSE(codec.DMain().Is_Trig_Time_Valid());
  EXPECT_EQ(codec.DMain().Get_Nano(), at_ms(110));
}

TEST(RComCodec, range_data_of_no_target_or_a_fifth_one_is_passed_over) {
  EXPECT_TRUE(is_taken(RangePacket(2).target(1, 0)));
  EXPECT_TRUE(is_taken(RangePacket(2).target(4, 4)));
  EXPECT_FALSE(is_taken(RangePacket(2).target(0, 4)));
  EXPECT_FALSE(is_taken(RangePacket(2).target(5, 4)));
  EXPECT_FALSE(is_taken(RangePacket(2).target(1, 5)));
  EXPECT_FALSE(is_taken(RangePacket(2).target(1, 255)));
}

TEST(RComCodec, range_data_too_short_to_tell_its_target_is_passed_over) {
  EXPECT_TRUE(is_taken(RangePacket(2).target(1, 1).resize(8)));
  // the sum, where the number of targets would stand, is not one
  EXPECT_FALSE(is_taken(RangePacket(2).target(1, 1).resize(7)));
}

TEST(RComCodec, other_types_have_no_target_to_look_at) {
  EXPECT_TRUE(is_taken(RangePacket(0).u8(6, 9).u8(7, 9)));
  EXPECT_TRUE(is_taken(RangePacket(1).u8(6, 9).u8(7, 9)));
}

TEST(RComCodec, a_packet_passed_over_counts_nothing_in_the_prescan) {
  TestCodec codec(true);
  codec.take({range(10), RangePacket(4), RangePacket(7), RangePacket(2).target(5, 1)});
  EXPECT_EQ(codec.get_prescan().get_packets(), 1U);
}

TEST(RComCodec, packets_without_a_time_count_nothing_in_the_prescan) {
  TestCodec codec(true);
  codec.take({range(10), RangePacket(3), RangePacket(5), RangePacket(6)});
  EXPECT_EQ(codec.get_prescan().get_packets(), 1U);
}

TEST(RComCodec, the_product_is_known_from_the_family_of_packets) {
  TestCodec codec(false);
  codec.take({with_minutes(range(100)), range(110)});
  const DataMain& main = codec.DMain();
  EXPECT_EQ(main.Var_ProductFamily().get(), 7);
  EXPECT_EQ(main.Var_ProductGroup().get(), 31);
  EXPECT_EQ(main.Var_ProductModel().get(), 354);
  EXPECT_EQ(main.Var_ProductType().get(), 0);
  EXPECT_TRUE(main.Is_ProductFamily_Valid() && main.Is_ProductGroup_Valid() &&
              main.Is_ProductModel_Valid() && main.Is_ProductType_Valid());
  EXPECT_EQ(main.Var_ProductModel().get_nano(), at_ms(110));
}

TEST(RComCodec, each_type_has_its_reader) {
  TestCodec codec(false);
  codec.take(with_minutes(range(100)));
  codec.take(old_range(110).i16(6, 1000));
  EXPECT_EQ(codec.DTarget(0).Get_RangeLat(), 1.0);
  codec.take(lane(120).u8(6, 5));
  EXPECT_EQ(codec.DMain().Get_Lane_LineNumberAL(), 5U);
  codec.take(range(130, 3).i32(8, 2000));
  EXPECT_EQ(codec.DTarget(2).Get_RangeLat(), 2.0);
  EXPECT_EQ(codec.DTarget(0).Get_RangeLat(), 1.0);
  codec.take(RangePacket(3).resize(81).u32(4, 77).u8(8, 1));
  EXPECT_EQ(codec.DWrap(0).Get_Address(), 77U);
  // one corner of the hunter's outline: 4 bytes of two values of two bytes, from the first on
  codec.take(RangePacket(5).append({0, 0, 0, 1, 0, 0x00}).append(Bytes(4)));
  EXPECT_EQ(codec.DMain().Get_Hunter_PolygonPointsUsed(), 1U);
  // one sensor of seven values of two bytes and eight bytes
  codec.take(RangePacket(6).append({0, 0, 0, 1, 0, 0x00}).append(Bytes(14 + 8)));
  EXPECT_EQ(codec.DMain().Get_Hunter_SensorPointsUsed(), 1U);
}

TEST(RComCodec, types_without_a_time_keep_the_newest) {
  TestCodec codec(false);
  codec.take({with_minutes(range(100)), range(110), RangePacket(5), RangePacket(6),
              RangePacket(3).resize(81).u32(4, 77).u8(8, 1)});
  EXPECT_TRUE(codec.DMain().Is_Nano_Valid());
  EXPECT_EQ(codec.DMain().Get_Nano(), at_ms(110));
  EXPECT_EQ(codec.DWrap(0).Var_Address().get_nano(), at_ms(110));
}

TEST(RComCodec, targets_and_sources_are_stamped_with_the_packets_time) {
  TestCodec codec(false);
  codec.take({with_minutes(range(100)), range(110, 4).channel(5, {1, 0, 2, 0, 3, 0})});
  EXPECT_EQ(codec.DTarget(3).Var_RangeOffsetLon().get_nano(), at_ms(110));
  EXPECT_FALSE(codec.DTarget(3).Var_RangeOffsetLon().isTimeless());
  codec.take(range(65535, 4).channel(5, {1, 0, 2, 0, 3, 0}));
  EXPECT_TRUE(codec.DTarget(3).Var_RangeOffsetLon().isTimeless());
  EXPECT_TRUE(codec.DTarget(3).Is_RangeOffsetLon_Valid());
}

TEST(RComCodec, each_packets_time_is_handed_to_all_parts_of_the_record) {
  TestCodec codec(false);
  codec.take({with_minutes(range(100)), range(110), RangePacket(5)});
  const auto data = std::make_unique<ComData>(codec.CData());
  for (unsigned int target = 0; target < ComData::kTargets; ++target) {
    data->DTarget(target).Set_Latency(1);
    EXPECT_EQ(data->DTarget(target).Var_Latency().get_nano(), at_ms(110)) << target;
  }
  for (unsigned int wrap = 0; wrap < ComData::kWraps; ++wrap) {
    data->DWrap(wrap).Set_Address(1);
    EXPECT_EQ(data->DWrap(wrap).Var_Address().get_nano(), at_ms(110)) << wrap;
  }
}

TEST(RComCodec, forgets_everything_but_its_keys) {
  TestCodec codec(true);
  codec.take({with_minutes(range(100)), range(110), with_utc(range(120))});
  codec.Key().Reset(false);
  codec.Invalidate(true);
  EXPECT_TRUE(codec.get_prescan().active);
  EXPECT_FALSE(codec.get_prescan().has_time || codec.get_prescan().has_utc);
  EXPECT_EQ(codec.get_last_ms(), -1);
  EXPECT_EQ(codec.get_gps_minute(), -1);
  EXPECT_TRUE(codec.get_nano_off().unset());
  EXPECT_FALSE(codec.Key().KMain().Get_Time_Utc());
}

}  // namespace
}  // namespace Trel::Rng
