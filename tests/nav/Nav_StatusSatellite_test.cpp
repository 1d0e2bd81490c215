#include <gtest/gtest.h>

#include "nav/Nav_StatusValues.h"

namespace Trel::Nav {
namespace {

constexpr unsigned char kPassed = Lib::Flags::Pass;
constexpr unsigned char kGone = Lib::Flags::Invalid | Lib::Flags::Timeless;

unsigned char flags_of(const StatusFeed& feed, std::string_view name) {
  return feed.value(name).stamp.get_flags().byte();
}

TEST(BaseLine, of_length_0_is_minus_1_and_passed) {
  StatusFeed feed;
  feed.take(13, Data().s(100).s(-50).s(0));
  EXPECT_EQ(feed.value("BaseLineLength").number, -1.0);
  EXPECT_EQ(flags_of(feed, "BaseLineLength"), kPassed);
  EXPECT_TRUE(feed.good("AtH"));
}

TEST(BaseLine, that_is_not_known_is_minus_1_and_passed) {
  StatusFeed feed;
  feed.take(13, Data().s(100).s(-50).s(65535));
  EXPECT_EQ(feed.value("BaseLineLength").number, -1.0);
  EXPECT_EQ(flags_of(feed, "BaseLineLength"), kPassed);
}

TEST(BaseLine, is_in_millimetres_and_counts_below_an_age_of_150) {
  StatusFeed feed;
  feed.take(13, Data().s(0).s(0).s(1234).b(149));
  EXPECT_DOUBLE_EQ(feed.number("BaseLineLength"), 1.234);
  feed.take(13, Data().s(0).s(0).s(1234).b(150));
  EXPECT_EQ(flags_of(feed, "BaseLineLength"), kGone);
  feed.take(13, Data().s(0).s(0).s(0).b(150));
  EXPECT_EQ(flags_of(feed, "BaseLineLength"), kGone);
}

TEST(BaseLine, that_nobody_wants_is_invalid) {
  StatusFeed feed;
  feed.key().KMain().Bar_Antenna_BaseLine();
  feed.take(13, Data().s(0).s(0).s(1234));
  EXPECT_EQ(flags_of(feed, "BaseLineLength"), kGone);
}

TEST(Corrections, have_an_age_of_minus_1_when_it_is_negative) {
  StatusFeed feed;
  feed.take(20, Data().s(300));
  EXPECT_DOUBLE_EQ(feed.number("GpsDiffAge"), 3.0);
  feed.take(20, Data().s(-1));
  EXPECT_EQ(feed.number("GpsDiffAge"), -1.0);
  feed.take(20, Data().s(-32768));
  EXPECT_EQ(feed.number("GpsDiffAge"), -1.0);
}

TEST(Corrections, name_their_station_in_four_characters_and_as_a_number_of_them) {
  StatusFeed feed;
  feed.take(20, {0, 0, 'A', 'B', 'C', 'D', 9, 9});
  EXPECT_STREQ(feed.data().GetBaseStationId(), "ABCD");
  EXPECT_EQ(feed.number("BaseStationID"), 0x44434241);
  feed.take(20, {0, 0, 'X', 0, 'Y', 0, 0, 0});
  EXPECT_STREQ(feed.data().GetBaseStationId(), "X");
  EXPECT_EQ(feed.number("BaseStationID"), 0x00590058);
}

TEST(Corrections, have_no_station_when_its_name_begins_with_nothing) {
  StatusFeed feed;
  feed.take(20, {0, 0, 'A', 'B', 'C', 'D', 0, 0});
  feed.take(20, {0, 0, 0, 'B', 'C', 'D', 0, 0});
  EXPECT_FALSE(feed.data().IsBaseStationIdValid());
  EXPECT_FALSE(feed.good("BaseStationID"));
  EXPECT_TRUE(feed.good("GpsDiffAge"));
}

TEST(Corrections, that_nobody_wants_are_invalid) {
  StatusFeed feed;
  feed.take(20, {0, 0, 'A', 'B', 'C', 'D', 0, 0});
  feed.key().KMain().Bar_GnssInfo_Diff();
  feed.take(20, {0, 0, 'A', 'B', 'C', 'D', 0, 0});
  EXPECT_FALSE(feed.data().IsBaseStationIdValid());
  EXPECT_FALSE(feed.good("BaseStationID"));
  EXPECT_FALSE(feed.good("GpsDiffAge"));
}

TEST(BaseStationSlots, are_ten_bits_each_from_the_low_end) {
  StatusFeed feed;
  feed.take(77, Data().b(0).b(0).b(0).w(0x00300801).b(1));  // 1 + (2 << 10) + (3 << 20) + (4 << 30)
  EXPECT_EQ(feed.number("BaseStationSlot0"), 1.0);
  EXPECT_EQ(feed.number("BaseStationSlot1"), 2.0);
  EXPECT_EQ(feed.number("BaseStationSlot2"), 3.0);
  EXPECT_EQ(feed.number("BaseStationSlot3"), 4.0);
}

TEST(BaseStationSlots, stay_when_all_forty_bits_are_set) {
  StatusFeed feed;
  feed.take(77, Data().b(1).b(2).b(3).w(5).b(0));
  feed.take(77, Data().b(1).b(2).b(3).w(-1).b(-1));
  EXPECT_EQ(feed.number("BaseStationSlot0"), 5.0);
  EXPECT_EQ(feed.number("BaseStationSlot3"), 0.0);
}

TEST(BaseStationSlots, of_1023_are_not_there) {
  StatusFeed feed;
  feed.take(77, Data().b(1).b(2).b(3).w(5).b(0));
  // The tenth to the nineteenth bit, and the top ten of forty.
  feed.take(77, Data().b(1).b(2).b(3).w(0x3FF << 10 | 7).b(0));
  EXPECT_EQ(feed.number("BaseStationSlot0"), 7.0);
  EXPECT_FALSE(feed.good("BaseStationSlot1"));
  EXPECT_EQ(feed.number("BaseStationSlot2"), 0.0);
  feed.take(77, Data().b(1).b(2).b(3).w(0xC0000000).b(0xFF));
  EXPECT_EQ(feed.number("BaseStationSlot1"), 0.0);
  EXPECT_FALSE(feed.good("BaseStationSlot3"));
}

TEST(BaseStationSlots, that_nobody_wants_are_invalid_whatever_is_sent) {
  StatusFeed feed;
  feed.take(77, Data().b(1).b(2).b(3).w(5).b(0));
  feed.key().KMain().Bar_GnssInfo_Diff();
  feed.take(77, Data().b(1).b(2).b(3).w(-1).b(-1));
  EXPECT_FALSE(feed.good("BaseStationSlot0"));
}

TEST(Undulation, stays_when_a_missing_number_is_sent) {
  StatusFeed feed;
  feed.take(48, Data().s(9000));
  EXPECT_DOUBLE_EQ(feed.number("Undulation"), 45.0);
  feed.take(48, {0, 128, 0, 0, 0, 0, 0, 0});
  EXPECT_DOUBLE_EQ(feed.number("Undulation"), 45.0);
  feed.take(48, {1, 128, 0, 0, 0, 0, 0, 0});
  EXPECT_DOUBLE_EQ(feed.number("Undulation"), 45.0);
  feed.take(48, {2, 128, 0, 0, 0, 0, 0, 0});
  EXPECT_DOUBLE_EQ(feed.number("Undulation"), -32766 * 0.005);
  feed.key().KMain().Bar_GnssInfo_Misc();
  feed.take(48, Data().s(9000));
  EXPECT_FALSE(feed.good("Undulation"));
}

TEST(VerticalDilution, follows_from_the_other_two_when_the_whole_is_the_greater) {
  StatusFeed feed;
  feed.take(48, {0, 0, 30, 50, 0, 0, 0, 0});
  EXPECT_DOUBLE_EQ(feed.number("VDOP"), 4.0);  // 3, 4, 5
  feed.take(48, {0, 0, 50, 50, 0, 0, 0, 0});
  EXPECT_FALSE(feed.good("VDOP"));
  feed.take(48, {0, 0, 50, 30, 0, 0, 0, 0});
  EXPECT_FALSE(feed.good("VDOP"));
  feed.take(48, {0, 0, 255, 50, 0, 0, 0, 0});
  EXPECT_FALSE(feed.good("VDOP"));
}

TEST(OmniStarSerial, is_written_with_a_prefix_for_receivers_of_type_3_and_14) {
  constexpr unsigned char kPrefixed[] = {3, 14};
  for (const unsigned char type : kPrefixed) {
    StatusFeed feed;
    feed.take(31, primary_type(type));
    feed.take(49, Data().s(0).b(0).b(0).b(0).t(4711));
    EXPECT_STREQ(feed.data().GetOmniStarSerial(), "007-0004711");
    feed.take(49, Data().s(0).b(0).b(0).b(0).t(699999));
    EXPECT_STREQ(feed.data().GetOmniStarSerial(), "007-0699999");
    feed.take(49, Data().s(0).b(0).b(0).b(0).t(700000));
    EXPECT_STREQ(feed.data().GetOmniStarSerial(), "700000");
  }
}

TEST(OmniStarSerial, is_a_plain_number_for_other_receivers) {
  StatusFeed feed;
  feed.take(49, Data().s(0).b(0).b(0).b(0).t(4711));
  EXPECT_STREQ(feed.data().GetOmniStarSerial(), "4711");
  feed.take(31, primary_type(4));
  feed.take(49, Data().s(0).b(0).b(0).b(0).t(4711));
  EXPECT_STREQ(feed.data().GetOmniStarSerial(), "4711");
  feed.take(49, Data().s(0).b(0).b(0).b(0).t(0xFFFFFF));
  EXPECT_FALSE(feed.data().IsOmniStarSerialValid());
}

TEST(OmniStar, frequency_is_there_when_either_byte_is_below_255) {
  StatusFeed feed;
  feed.take(49, {255, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(feed.number("OmniStarFreq"), 1520255000.0);
  feed.take(49, {0, 255, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(feed.number("OmniStarFreq"), 1520000000.0 + 65280e3);
  feed.take(49, {255, 255, 0, 0, 0, 0, 0, 0});
  EXPECT_FALSE(feed.good("OmniStarFreq"));
}

TEST(LongLeverArm, of_factor_255_is_in_millimetres) {
  StatusFeed feed;
  feed.take(57, Data().s(1000).s(-2000).s(30).b(149).b(255));
  EXPECT_DOUBLE_EQ(feed.number("GAPx"), 1.0);
  EXPECT_DOUBLE_EQ(feed.number("GAPy"), -2.0);
  EXPECT_DOUBLE_EQ(feed.number("GAPz"), 0.03);
  feed.take(57, Data().s(1000).s(-2000).s(30).b(149).b(254));
  EXPECT_DOUBLE_EQ(feed.number("GAPx"), 254.0);
}

TEST(WirelessAddress, stays_when_all_its_bits_are_set) {
  StatusFeed feed;
  feed.take(41, Data().w(0).w(0x0100007F));
  EXPECT_EQ(feed.number("WiFiIPAddress"), 0x0100007F);
  feed.take(41, Data().w(0).w(-1));
  EXPECT_EQ(feed.number("WiFiIPAddress"), 0x0100007F);
  feed.key().KMain().Bar_WiFi_Option();
  feed.take(41, Data().w(0).w(5));
  EXPECT_FALSE(feed.good("WiFiIPAddress"));
}

TEST(ReceiverState, of_the_antenna_is_not_known_at_3) {
  StatusFeed feed;
  feed.take(56, {0b1011, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_FALSE(feed.good("GpsInt2_AntStatus"));
  EXPECT_EQ(feed.number("GpsInt2_AntPower"), 2.0);
  feed.take(56, {0b11111101, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(feed.number("GpsInt2_AntStatus"), 1.0);
  EXPECT_FALSE(feed.good("GpsInt2_AntPower"));
}

TEST(ReceiverState, is_kept_for_each_receiver_alone) {
  StatusFeed feed;
  feed.take(55, {0, 1, 2, 3, 4, 5, 6, 7});
  EXPECT_TRUE(feed.good("GpsInt1_NumSats"));
  EXPECT_FALSE(feed.good("GpsInt2_NumSats"));
  EXPECT_FALSE(feed.good("GpsExt1_NumSats"));
  feed.take(62, {0, 1, 2, 3, 40, 5, 6, 7});
  EXPECT_EQ(feed.number("GpsExt1_NumSats"), 40.0);
  EXPECT_EQ(feed.number("GpsInt1_NumSats"), 4.0);
}

TEST(ReceiverState, follows_the_keys_of_its_receiver) {
  StatusFeed feed;
  feed.key().KGps(0).Bar_Status_Hardware();
  feed.take(55, {0, 1, 2, 3, 4, 5, 6, 7});
  EXPECT_FALSE(feed.good("GpsInt1_CpuUsed"));
  EXPECT_FALSE(feed.good("GpsInt1_SupplyVolt"));
  EXPECT_TRUE(feed.good("GpsInt1_SerBaud"));
  EXPECT_TRUE(feed.good("GpsInt1_PosMode"));
}

TEST(StatusChannel, without_a_meaning_changes_nothing) {
  for (const int channel : {86, 95, 96, 255}) {
    StatusFeed feed;
    feed.take(3, Data().s(500).s(600).s(700));
    const ComData before = feed.data();
    feed.take(channel, {1, 1, 1, 1, 1, 1, 1, 1});
    for (const char* name : {"NorthAcc", "WxBias", "GpsNumObs", "ImuPkts", "GpsInt1_Chars"}) {
      EXPECT_EQ(feed.value(name).stamp.get_flags(), value_of(before, name)->stamp.get_flags())
          << name;
      EXPECT_EQ(feed.value(name).number, value_of(before, name)->number) << name;
    }
  }
}

}  // namespace
}  // namespace Trel::Nav
