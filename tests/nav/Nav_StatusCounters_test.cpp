#include <gtest/gtest.h>

#include "nav/Nav_StatusValues.h"

namespace Trel::Nav {
namespace {

struct Counter {
  int channel;
  int at;
  int width;
  const char* name;
};

constexpr Counter kCounters[] = {
    {2, 0, 2, "GpsInt1_Chars"},
    {2, 2, 2, "GpsInt1_Pkts"},
    {2, 4, 2, "GpsInt1_CharsSkipped"},
    {2, 6, 2, "GpsInt1_OldPkts"},
    {17, 0, 2, "GpsInt2_Chars"},
    {17, 6, 2, "GpsInt2_OldPkts"},
    {18, 4, 2, "ImuPkts"},
    {18, 6, 2, "ImuCharsSkipped"},
    {50, 0, 2, "CmdChars"},
    {50, 2, 2, "CmdPkts"},
    {50, 4, 2, "CmdCharsSkipped"},
    {50, 6, 2, "CmdErrors"},
    {59, 0, 1, "ImuMissedPkts"},
    {59, 1, 1, "ImuResetCount"},
    {59, 2, 1, "ImuErrorCount"},
    {61, 0, 2, "GpsExt1_Chars"},
    {61, 2, 2, "GpsExt1_Pkts"},
    {76, 0, 2, "GpsDiffChars"},
    {76, 2, 2, "GpsDiffPkts"},
    {76, 4, 2, "GpsDiffCharsSkipped"},
    {78, 6, 1, "CanErrorCount"},
    {83, 0, 2, "ImuAccelSatCount"},
    {83, 2, 2, "ImuGyroSatCount"},
    {83, 4, 2, "SdnSkipCount"},
    {84, 0, 2, "ImuGyroErrorCountX"},
    {84, 2, 2, "ImuGyroErrorCountY"},
    {84, 4, 2, "ImuGyroErrorCountZ"},
};

void take_count(StatusFeed& feed, const Counter& counter, unsigned int low) {
  Eight bytes{};
  bytes[static_cast<std::size_t>(counter.at)] = static_cast<unsigned char>(low & 0xFF);
  if (counter.width == 2) {
    bytes[static_cast<std::size_t>(counter.at + 1)] = static_cast<unsigned char>(low >> 8);
  }
  feed.take(counter.channel, bytes);
}

TEST(StatusCounters, keep_rising_when_their_short_field_wraps) {
  for (const Counter& counter : kCounters) {
    const unsigned int wrap = counter.width == 2 ? 65536 : 256;
    StatusFeed feed;
    take_count(feed, counter, wrap - 3);
    EXPECT_EQ(feed.number(counter.name), wrap - 3) << counter.name;
    take_count(feed, counter, wrap - 3);
    EXPECT_EQ(feed.number(counter.name), wrap - 3) << counter.name << ", without a step";
    take_count(feed, counter, 2);
    EXPECT_EQ(feed.number(counter.name), wrap + 2) << counter.name;
    take_count(feed, counter, 1);
    EXPECT_EQ(feed.number(counter.name), 2 * wrap + 1) << counter.name << ", a step backward";
  }
}

TEST(StatusCounters, are_0_while_nobody_wants_them) {
  for (const Counter& counter : kCounters) {
    StatusFeed feed;
    take_count(feed, counter, 200);
    feed.want_nothing();
    take_count(feed, counter, 201);
    EXPECT_EQ(feed.number(counter.name), 0.0) << counter.name;
  }
}

TEST(StatusCounters, of_characters_from_the_inertial_sensors_are_sent_whole) {
  StatusFeed feed;
  feed.take(18, Data().w(0xFFFFFFFE).s(1).s(2));
  EXPECT_EQ(feed.number("ImuChars"), 4294967294.0);
  feed.take(18, Data().w(5));
  EXPECT_EQ(feed.number("ImuChars"), 5.0);
}

struct Feature {
  int channel;
  std::size_t at;
  unsigned char mask;
  const char* name;
};

constexpr Feature kFeatures[] = {
    {31, 7, 1, "PsrDiffEnabled"},     {31, 7, 2, "SBASEnabled"},
    {31, 7, 8, "OmniVBSEnabled"},     {31, 7, 16, "OmniHPEnabled"},
    {31, 7, 32, "L1DiffEnabled"},     {31, 7, 64, "L1L2DiffEnabled"},
    {64, 6, 1, "GnssGlonassEnabled"}, {64, 6, 2, "GnssGalileoEnabled"},
    {64, 6, 4, "RawRngEnabled"},      {64, 6, 8, "RawDopEnabled"},
    {64, 6, 16, "RawL1Enabled"},      {64, 6, 32, "RawL2Enabled"},
    {64, 6, 64, "RawL5Enabled"},      {83, 7, 1, "MemoryTempAlert"},
};

void take_features(StatusFeed& feed, const Feature& feature, unsigned char turned_back) {
  Eight bytes{};
  bytes[feature.at] = static_cast<unsigned char>(~turned_back);
  feed.take(feature.channel, bytes);
}

TEST(StatusFeatures, are_the_bits_of_an_inverted_byte_whose_top_bit_says_that_they_are_known) {
  for (const Feature& feature : kFeatures) {
    StatusFeed feed;
    take_features(feed, feature, feature.mask);
    EXPECT_FALSE(feed.good(feature.name)) << feature.name;
    take_features(feed, feature, 0x80 | feature.mask);
    EXPECT_EQ(feed.number(feature.name), 1.0) << feature.name;
    take_features(feed, feature, static_cast<unsigned char>(~feature.mask));
    EXPECT_EQ(feed.number(feature.name), 0.0) << feature.name;
    take_features(feed, feature, feature.mask);
    EXPECT_EQ(feed.number(feature.name), 0.0) << feature.name << " stays while not known";
    feed.want_nothing();
    take_features(feed, feature, 0xFF);
    EXPECT_FALSE(feed.good(feature.name)) << feature.name << " is not wanted";
  }
}

}  // namespace
}  // namespace Trel::Nav
