#include <gtest/gtest.h>

#include "nav/Nav_StatusValues.h"

namespace Trel::Nav {
namespace {

Eight text(const char* characters) {
  Eight bytes{};
  for (std::size_t k = 0; k < bytes.size() && characters[k] != '\0'; ++k) {
    bytes[k] = static_cast<unsigned char>(characters[k]);
  }
  return bytes;
}

constexpr long long kDay = 86'400'000'000'000;

TEST(DevId, is_a_text_and_the_number_of_its_characters) {
  StatusFeed feed;
  feed.take(19, text("210415.1"));
  EXPECT_STREQ(feed.data().GetDevId(), "210415.1");
  EXPECT_EQ(feed.data().GetDevID(), 0x312E353134303132ULL);
  feed.take(19, text("99"));
  EXPECT_STREQ(feed.data().GetDevId(), "99");
  EXPECT_EQ(feed.data().GetDevID(), 0x3939ULL);
}

TEST(DevId, begins_with_the_date_of_the_firmware) {
  StatusFeed feed;
  feed.take(19, text("190228"));
  EXPECT_EQ(feed.number("DateFirmware"), 20190228.0);
  // 1980-01-06 to 2019-01-06 is 39 years with the leap days of 1980, 1984, ... 2016, which are ten;
  // to 28 February it is 53 days more.
  EXPECT_EQ(feed.data().GetNanoFirmware(), (39 * 365 + 10 + 53) * kDay);
}

TEST(DevId, without_six_digits_has_no_date) {
  for (const char* id : {"99", "19022", "1902x8.1", ".1902281", ""}) {
    StatusFeed feed;
    feed.take(19, text("190228"));
    feed.take(19, text(id));
    EXPECT_FALSE(feed.good("DateFirmware")) << id;
    EXPECT_FALSE(feed.good("NanoFirmware")) << id;
    EXPECT_TRUE(feed.data().IsDevIdValid()) << id;
  }
}

TEST(DevId, follows_its_two_keys) {
  StatusFeed feed;
  feed.take(19, text("190228"));
  feed.key().KMain().Bar_System_Dates();
  feed.take(19, text("190228"));
  EXPECT_TRUE(feed.data().IsDevIdValid());
  EXPECT_FALSE(feed.good("DateFirmware"));
  feed.key().KMain().Bar_System_Id();
  feed.take(19, text("190228"));
  EXPECT_FALSE(feed.data().IsDevIdValid());
  EXPECT_FALSE(feed.good("DevID"));
}

TEST(UpTime, is_sent_in_steps_of_seconds_minutes_and_hours) {
  const struct {
    int sent;
    double seconds;
  } kSteps[] = {{0, 0},          {10800, 10800},  {10801, 10860},
                {20700, 604800}, {20701, 608400}, {65534, 65534.0 * 3600 - 73915200}};
  for (const auto& step : kSteps) {
    StatusFeed feed;
    feed.take(23, Data().s(0).s(step.sent));
    EXPECT_EQ(feed.number("UpTime"), step.seconds) << step.sent;
  }
}

TEST(NavigationLag, is_smoothed_by_a_hundredth) {
  StatusFeed feed;
  feed.take(23, Data().s(100));
  EXPECT_EQ(feed.number("BnsLagFilt"), 100.0);
  feed.take(23, Data().s(200));
  EXPECT_EQ(feed.number("BnsLag"), 200.0);
  EXPECT_DOUBLE_EQ(feed.number("BnsLagFilt"), 100 * 0.99 + 200 * 0.01);
  feed.take(23, Data().s(65535));
  feed.take(23, Data().s(300));
  EXPECT_EQ(feed.number("BnsLagFilt"), 300.0);
}

TEST(OsScript, is_shown_in_six_digits_with_the_last_one_highest) {
  StatusFeed feed;
  feed.take(30, Data().b(1).b(2).b(3).t(42).s(0));
  EXPECT_STREQ(feed.data().GetOsScriptId(), "000042");
  EXPECT_EQ(feed.data().GetOsScriptID(), 0x323430303030ULL);
  feed.take(30, Data().b(1).b(2).b(3).t(-1).s(0));
  EXPECT_STREQ(feed.data().GetOsScriptId(), "-00001");
  EXPECT_EQ(feed.data().GetOsScriptID(), 0x31303030302DULL);
  feed.take(30, Data().b(1).b(2).b(3).t(-8388608).s(0));
  EXPECT_STREQ(feed.data().GetOsScriptId(), "-8388608");
  EXPECT_EQ(feed.data().GetOsScriptID(), 0x36383833382DULL);
}

TEST(OsScript, and_versions_that_nobody_wants_are_invalid) {
  StatusFeed feed;
  feed.take(30, Data().b(1).b(2).b(3).t(42).s(0));
  EXPECT_EQ(feed.number("OsVersion1"), 1.0);
  EXPECT_EQ(feed.number("OsVersion2"), 2.0);
  EXPECT_EQ(feed.number("OsVersion3"), 3.0);
  feed.key().KMain().Bar_System_Os();
  feed.take(30, Data().b(1).b(2).b(3).t(42).s(0));
  EXPECT_FALSE(feed.data().IsOsScriptIdValid());
  EXPECT_FALSE(feed.good("OsScriptID"));
  EXPECT_FALSE(feed.good("OsVersion1"));
}

TEST(SerialNumber, comes_whole_and_by_its_low_half) {
  StatusFeed feed;
  feed.take(30, Data().w(0).s(0).s(77));
  EXPECT_EQ(feed.number("SerialNumber"), 77.0);
  feed.take(40, Data().w(0).t(0x123456));
  EXPECT_EQ(feed.number("SerialNumber"), 0x123456);
  feed.take(30, Data().w(0).s(0).s(0x7777));
  EXPECT_EQ(feed.number("SerialNumber"), 0x127777);
  feed.take(30, Data().w(0).s(0).s(0x00FF));
  EXPECT_EQ(feed.number("SerialNumber"), 0x1200FF);
  feed.take(30, Data().w(0).s(0).s(0xFFFF));
  EXPECT_FALSE(feed.good("SerialNumber"));
}

TEST(SerialNumber, is_used_when_any_of_its_bytes_is_below_255) {
  StatusFeed feed;
  feed.take(40, {0, 0, 0, 0, 255, 255, 0, 0});
  EXPECT_EQ(feed.number("SerialNumber"), 0x00FFFF);
  feed.take(40, {0, 0, 255, 0, 255, 255, 255, 0});
  EXPECT_FALSE(feed.good("SerialNumber"));
  EXPECT_DOUBLE_EQ(feed.number("OutputLatency"), 2.55);
}

constexpr unsigned char kNone = 255;
Eight hardware(unsigned char imu, unsigned char configuration = kNone) {
  return {imu, kNone, kNone, kNone, kNone, kNone, configuration, kNone};
}

TEST(HardwareConfiguration, is_6_where_it_is_not_sent_and_the_firmware_is_marked_with_x) {
  StatusFeed feed;
  feed.take(31, hardware(1));
  EXPECT_FALSE(feed.good("HwConfig"));
  feed.take(19, text("160102x1"));
  feed.take(31, hardware(1));
  EXPECT_EQ(feed.number("HwConfig"), 6.0);
  feed.take(31, hardware(1, 2));
  EXPECT_EQ(feed.number("HwConfig"), 2.0);
  feed.take(19, text("160102.x"));
  feed.take(31, hardware(1));
  EXPECT_FALSE(feed.good("HwConfig"));
}

TEST(ImuRate, follows_from_the_types_that_the_hardware_channel_knows) {
  const double kRates[] = {0, 0, 100, 100, 250, 250, 0, 0, 0, 0, 0, 0, 0, 0};
  for (unsigned char type = 0; type < 14; ++type) {
    StatusFeed feed;
    feed.take(31, hardware(type));
    EXPECT_EQ(feed.good("ImuRate"), kRates[type] > 0) << int(type);
    EXPECT_EQ(feed.value("ImuRate").number, kRates[type]) << int(type);
  }
  StatusFeed feed;
  feed.take(31, hardware(2));
  feed.key().KMain().Bar_System_Stats();
  feed.take(31, hardware(2));
  EXPECT_FALSE(feed.good("ImuRate"));
}

Eight without_sensors(unsigned char accelerometers = kNone, unsigned char gyroscopes = kNone) {
  return {0, 0, kNone, kNone, kNone, accelerometers, gyroscopes, kNone};
}

TEST(ImuRate, follows_from_the_type_where_it_is_not_sent) {
  const double kRates[] = {0, 0, 100, 100, 250, 250, 100, 100, 100, 100, 250, 250, 200, 200};
  for (unsigned char type = 0; type < 14; ++type) {
    StatusFeed feed;
    feed.take(31, hardware(type));
    feed.take(75, without_sensors());
    EXPECT_EQ(feed.good("ImuRate"), kRates[type] > 0) << int(type);
    EXPECT_EQ(feed.value("ImuRate").number, kRates[type]) << int(type);
    feed.take(75, Data().t(0).s(3000));
    EXPECT_DOUBLE_EQ(feed.number("ImuRate"), 60.0) << int(type);
  }
}

TEST(ImuSensors, follow_from_the_type_where_they_are_not_sent) {
  // Bits 3, 5, 9, 11, 13 make 10792, bits 2, 4, 8, 10, 12 make 5396.
  for (unsigned char type = 0; type < 20; ++type) {
    const double sensors = type < 14 ? (10792 >> type & 1) * 2.0 + (5396 >> type & 1) : 0.0;
    StatusFeed feed;
    feed.take(31, hardware(type));
    feed.take(75, without_sensors());
    EXPECT_EQ(feed.value("ImuAccelType").number, sensors) << int(type);
    EXPECT_EQ(feed.value("ImuGyroType").number, sensors) << int(type);
    EXPECT_EQ(feed.good("ImuAccelType"), sensors > 0) << int(type);
    EXPECT_EQ(feed.good("ImuGyroType"), sensors > 0) << int(type);
  }
}

TEST(ImuSensors, are_as_sent_each_for_itself) {
  StatusFeed feed;
  feed.take(31, hardware(3));
  feed.take(75, without_sensors(7));
  EXPECT_EQ(feed.number("ImuAccelType"), 7.0);
  EXPECT_EQ(feed.number("ImuGyroType"), 2.0);
  feed.take(75, without_sensors(kNone, 8));
  EXPECT_EQ(feed.number("ImuAccelType"), 2.0);
  EXPECT_EQ(feed.number("ImuGyroType"), 8.0);
}

TEST(ProductType, is_0_where_it_is_not_sent) {
  StatusFeed feed;
  feed.take(64, {0, 0, 0, 0, 0, 0, 0, 2});
  EXPECT_EQ(feed.number("ProductType"), 2.0);
  feed.take(64, {0, 0, 0, 0, 0, 0, 0, 255});
  EXPECT_EQ(feed.number("ProductType"), 0.0);
}

TEST(ProductName, follows_from_the_type) {
  StatusFeed feed;
  feed.take(86, {});
  EXPECT_FALSE(feed.data().IsProductNameValid());
  feed.take(64, {0, 0, 0, 0, 0, 0, 0, 1});
  feed.take(86, {});
  EXPECT_STREQ(feed.data().GetProductName(), "Product type 1");
  feed.take(64, {0, 0, 0, 0, 0, 0, 0, 9});
  feed.take(86, {});
  EXPECT_FALSE(feed.data().IsProductNameValid());
}

// The services byte is sent inverted; its top bit, turned back, says that it is known.
Eight services(int turned_back) {
  return Data().w(0).t(0).b(~turned_back);
}
TEST(Services, of_terrastar_are_a_known_bit) {
  StatusFeed feed;
  feed.take(58, services(0x01));
  EXPECT_FALSE(feed.good("TerraStarDEnabled"));
  feed.take(58, services(0x81));
  EXPECT_EQ(feed.number("TerraStarDEnabled"), 1.0);
  feed.take(58, services(0x80));
  EXPECT_EQ(feed.number("TerraStarDEnabled"), 0.0);
}

TEST(Services, of_terrastar_are_off_for_old_receivers_that_do_not_tell) {
  for (unsigned char type = 0; type < 20; ++type) {
    const bool old = type == 0 || type == 1 || type == 3 || type == 4 || type == 10;
    StatusFeed feed;
    feed.take(31, primary_type(type));
    feed.take(58, services(0x01));
    EXPECT_EQ(feed.good("TerraStarDEnabled"), old) << int(type);
    EXPECT_EQ(feed.value("TerraStarDEnabled").number, 0.0) << int(type);
  }
}

TEST(Services, tell_the_systems_from_a_firmware_after_2018_on) {
  StatusFeed feed;
  feed.take(58, services(0x86));
  EXPECT_FALSE(feed.good("GnssGpsEnabled"));
  feed.take(19, text("180001"));
  feed.take(58, services(0x84));
  EXPECT_EQ(feed.number("GnssGpsEnabled"), 0.0);
  EXPECT_EQ(feed.number("GnssBeiDouEnabled"), 1.0);
  feed.take(58, services(0x02));
  EXPECT_EQ(feed.number("GnssGpsEnabled"), 0.0);
  feed.take(58, services(0x82));
  EXPECT_EQ(feed.number("GnssGpsEnabled"), 1.0);
  EXPECT_EQ(feed.number("GnssBeiDouEnabled"), 0.0);
}

TEST(Services, are_gps_alone_for_an_older_firmware) {
  for (const char* id : {"180000", "171231.9"}) {
    StatusFeed feed;
    feed.take(19, text(id));
    feed.take(58, services(0x84));
    EXPECT_EQ(feed.number("GnssGpsEnabled"), 1.0) << id;
    EXPECT_EQ(feed.number("GnssBeiDouEnabled"), 0.0) << id;
  }
}

TEST(Services, that_nobody_wants_are_invalid) {
  StatusFeed feed;
  feed.take(19, text("200101"));
  feed.take(58, services(0x87));
  feed.key().KMain().Bar_GnssInfo_Feature();
  feed.key().KMain().Bar_GnssInfo_System();
  feed.take(58, services(0x87));
  for (const char* name : {"TerraStarDEnabled", "GnssGpsEnabled", "GnssBeiDouEnabled"}) {
    EXPECT_FALSE(feed.good(name)) << name;
  }
}

TEST(AddOnIdentification, is_a_number_of_eight_bytes) {
  StatusFeed feed;
  feed.take(85, {1, 2, 3, 4, 5, 6, 7, 0x88});
  EXPECT_EQ(feed.data().GetAdkDevID(), 0x8807060504030201ULL);
  feed.want_nothing();
  feed.take(85, {1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_FALSE(feed.good("AdkDevID"));
}

TEST(UtcOffset, is_there_when_the_lowest_bit_of_its_byte_is_set) {
  StatusFeed feed;
  feed.take(16, {0, 0, 0, 0, 0, 0, 9, 36});
  EXPECT_FALSE(feed.good("TimeUtcOffset"));
  feed.take(16, {0, 0, 0, 0, 0, 0, 9, 37});
  EXPECT_EQ(feed.number("TimeUtcOffset"), 18.0);
  feed.take(16, {0, 0, 0, 0, 0, 0, 9, 36});
  EXPECT_EQ(feed.number("TimeUtcOffset"), 18.0);
}

}  // namespace
}  // namespace Trel::Nav
