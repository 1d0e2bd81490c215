#include <gtest/gtest.h>

#include <random>

#include "nav/Nav_Innovation.h"
#include "nav/Nav_StatusValues.h"

namespace Trel::Nav {
namespace {

struct Innovation {
  int channel;
  std::size_t at;
  const char* name;
};

constexpr Innovation kInnovations[] = {
    {1, 0, "InnPosX"},        {1, 1, "InnPosY"},      {1, 2, "InnPosZ"},
    {1, 3, "InnVelX"},        {1, 4, "InnVelY"},      {1, 5, "InnVelZ"},
    {1, 6, "InnPitch"},       {1, 7, "InnHeading"},   {32, 0, "InnZeroVelX"},
    {32, 1, "InnZeroVelY"},   {32, 2, "InnZeroVelZ"}, {32, 3, "InnNoSlipH"},
    {32, 4, "InnHeadingH"},   {32, 5, "InnWSpeed"},   {32, 6, "InnClockOffset"},
    {32, 7, "InnClockDrift"}, {88, 0, "InnNoVSlipP"},
};

void take_byte(StatusFeed& feed, const Innovation& innovation, unsigned char byte) {
  Eight bytes{};
  bytes[innovation.at] = byte;
  feed.take(innovation.channel, bytes);
}

TEST(Innovations, are_the_upper_seven_bits_in_tenths_when_they_are_fresh) {
  for (const Innovation& innovation : kInnovations) {
    StatusFeed feed;
    take_byte(feed, innovation, 0xFE);
    EXPECT_FALSE(feed.good(innovation.name)) << innovation.name;
    take_byte(feed, innovation, 15 << 1 | 1);
    EXPECT_DOUBLE_EQ(feed.number(innovation.name), 1.5) << innovation.name;
    take_byte(feed, innovation, 0xFF);
    EXPECT_DOUBLE_EQ(feed.number(innovation.name), 12.7) << innovation.name;
  }
}

TEST(Innovations, that_are_not_fresh_stay_with_their_time) {
  for (const Innovation& innovation : kInnovations) {
    StatusFeed feed;
    take_byte(feed, innovation, 15 << 1 | 1);
    const long long when = feed.now();
    take_byte(feed, innovation, 20 << 1);
    EXPECT_DOUBLE_EQ(feed.number(innovation.name), 1.5) << innovation.name;
    EXPECT_EQ(feed.value(innovation.name).stamp.get_nano(), when) << innovation.name;
  }
}

TEST(Innovations, that_nobody_wants_are_invalid) {
  for (const Innovation& innovation : kInnovations) {
    StatusFeed feed;
    take_byte(feed, innovation, 15 << 1 | 1);
    feed.want_nothing();
    take_byte(feed, innovation, 20 << 1);
    EXPECT_FALSE(feed.good(innovation.name)) << innovation.name;
  }
}

TEST(Innovations, more_than_ten_seconds_old_are_stale_and_keep_their_number) {
  for (const Innovation& innovation : kInnovations) {
    StatusFeed feed;
    take_byte(feed, innovation, 15 << 1 | 1);
    feed.pass(10'000 - 10);
    feed.take(86, {});
    EXPECT_TRUE(feed.good(innovation.name)) << innovation.name << " at ten seconds";
    feed.take(86, {});
    const Value value = feed.value(innovation.name);
    EXPECT_EQ(value.stamp.get_flags().byte(), Lib::Flags::Invalid | Lib::Flags::Stale)
        << innovation.name;
    EXPECT_DOUBLE_EQ(value.number, 1.5) << innovation.name;
    take_byte(feed, innovation, 3 << 1 | 1);
    EXPECT_DOUBLE_EQ(feed.number(innovation.name), 0.3) << innovation.name;
  }
}

// The packet after next is more than ten seconds behind the innovation.
TEST(Innovations, wanted_later_than_the_first_packet_grow_old_like_others) {
  for (const Innovation& innovation : kInnovations) {
    StatusFeed feed;
    feed.codec().Invalidate(false);
    feed.want_nothing();
    feed.take(0, Data().w(kMinute).b(255).b(255).b(255).b(255));
    feed.key().Reset(true);
    take_byte(feed, innovation, 15 << 1 | 1);
    EXPECT_TRUE(feed.good(innovation.name)) << innovation.name;
    feed.pass(10'000);
    feed.take(86, {});
    EXPECT_FALSE(feed.good(innovation.name)) << innovation.name;
  }
}

TEST(Innovations, do_not_age_without_a_time) {
  ComData data;
  data.SetInnPosX(1.0);
  UpdateInnAge(data);
  EXPECT_TRUE(data.IsInnPosXValid());
  data.SetNano(kStart);
  UpdateInnAge(data);
  EXPECT_TRUE(data.IsInnPosXValid()) << "it has no time of its own";
}

TEST(Innovations, of_a_time_far_from_now_do_not_overflow) {
  ComData data;
  data.SetNano(std::numeric_limits<long long>::min());
  data.SetInnPosX(1.0);
  data.SetNano(std::numeric_limits<long long>::max());
  UpdateInnAge(data);
  EXPECT_EQ(data.GetInnPosX(), 1.0);
}

// Any bytes on any channel, with the keys on and off, with odd statuses and odd positions between.
TEST(StatusChannels, take_any_bytes) {
  constexpr unsigned int kSeed = 20231;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937 random(kSeed);
  constexpr unsigned char kEdges[] = {0, 1, 127, 128, 149, 150, 254, 255};
  const auto byte = [&] {
    return static_cast<unsigned char>(random() % 2 == 0 ? random() : kEdges[random() % 8]);
  };
  TestCodec codec(false);
  unsigned int decoded = 0;
  constexpr unsigned int kPackets = 20'000;
  for (unsigned int k = 0; k < kPackets; ++k) {
    if (k % 1000 == 0) codec.Key().Reset(random() % 4 != 0);
    Eight bytes;
    for (unsigned char& each : bytes) each = byte();
    const auto status = static_cast<unsigned char>(random() % 8 == 0 ? random() % 24 : 4);
    Packet packet = packet_of(status, static_cast<unsigned short>(random() % 60000));
    if (random() % 2 == 0) packet.position(0.9, 0.1, 50.0F);
    packet.channel(static_cast<unsigned char>(random() % 97), bytes);
    decoded += static_cast<unsigned int>(codec.take(packet));
  }
  EXPECT_EQ(decoded, kPackets);
}

}  // namespace
}  // namespace Trel::Nav
