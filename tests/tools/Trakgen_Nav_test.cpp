#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numeric>
#include <set>

#include "Made.h"
#include "Packets.h"
#include "support/Support_Damage.h"

namespace Trel::Trakgen {
namespace {

using Support::Bytes;
using Support::Test::packets_of;
using Test::kMComSerial;
using Test::kNComSerial;
using Test::kUComSerial;
using Test::made;
using Test::nano_at;
using Test::number_at;
using Test::real_at;
using Texts = Support::Test::Texts;

constexpr std::int64_t kMillisecond = 1'000'000;
constexpr std::int64_t kMinute = 60'000 * kMillisecond;
constexpr double kDegrees = 180 / 3.14159265358979323846;

// Without the headers, and without the eight bytes ahead of each.
Texts packets_of_unit(const Bytes& bytes, std::uint32_t serial = kNComSerial) {
  Texts packets = packets_of(bytes, serial);
  packets.erase(packets.begin(), packets.begin() + 2);
  for (std::string& packet : packets) packet.erase(0, 8);
  return packets;
}

std::uint64_t sum_before(const std::string& packet, std::size_t end) {
  std::uint64_t sum = 0;
  for (std::size_t at = 1; at < end; ++at) sum += number_at(packet, at, 1);
  return sum & 0xFF;
}

std::int64_t signed24_at(const std::string& packet, std::size_t offset) {
  const auto number = static_cast<std::int64_t>(number_at(packet, offset, 3));
  return number < 1 << 23 ? number : number - (1 << 24);
}

int status_of(const std::string& packet) {
  return packet[21];
}
int channel_of(const std::string& packet) {
  return packet[62];
}
std::int64_t milliseconds_of(const std::string& packet) {
  return static_cast<std::int64_t>(number_at(packet, 1, 2));
}

TEST(TrakgenNCom, packets_are_whole_with_good_sums) {
  const Texts packets = packets_of_unit(made({"--seconds", "10", "--ncom-rate", "50"}));
  EXPECT_EQ(packets.size(), 500U);
  for (const std::string& packet : packets) {
    ASSERT_EQ(packet.size(), 72U);
    EXPECT_EQ(number_at(packet, 0, 1), 0xE7U);
    EXPECT_EQ(number_at(packet, 22, 1), sum_before(packet, 22));
    EXPECT_EQ(number_at(packet, 61, 1), sum_before(packet, 61));
    EXPECT_EQ(number_at(packet, 71, 1), sum_before(packet, 71));
  }
}

TEST(TrakgenNCom, the_minutes_come_after_some_packets_and_then_in_every_cycle) {
  const Texts packets = packets_of_unit(made({"--seconds", "100", "--ncom-rate", "10"}));
  std::vector<std::size_t> with_minutes;
  for (std::size_t i = 0; i < packets.size(); ++i) {
    if (channel_of(packets[i]) != 0) continue;
    with_minutes.push_back(i);
    // a step of 100 ms from 1,400,000,000 seconds on
    const auto nano =
        1'400'000'000'000 * kMillisecond + static_cast<std::int64_t>(i) * 100 * kMillisecond;
    EXPECT_EQ(number_at(packets[i], 63, 4), static_cast<std::uint64_t>(nano / kMinute));
  }
  ASSERT_GE(with_minutes.size(), 2U);
  EXPECT_GE(with_minutes.front(), 5U);
  EXPECT_LE(with_minutes[1] - with_minutes[0], 20U);
}

TEST(TrakgenNCom, times_and_values_are_those_of_the_ucom_stream) {
  const Bytes bytes = made({"--seconds", "70", "--rate", "40", "--ncom-rate", "20"});
  std::map<std::int64_t, std::string> positions;
  std::map<std::int64_t, std::string> velocities;
  for (const std::string& packet : packets_of(bytes, kUComSerial)) {
    if (number_at(packet, 0, 2) == 1) positions[nano_at(packet, 2)] = packet;
    if (number_at(packet, 0, 2) == 2) velocities[nano_at(packet, 2)] = packet;
  }
  std::int64_t minutes = 1'400'000'000 / 60;
  std::int64_t before = 0;
  std::size_t compared = 0;
  for (const std::string& packet : packets_of_unit(bytes)) {
    minutes += milliseconds_of(packet) < before ? 1 : 0;
    before = milliseconds_of(packet);
    const std::int64_t nano = minutes * kMinute + before * kMillisecond;
    const std::string& velocity = velocities.at(nano);
    const auto north = std::bit_cast<float>(static_cast<std::uint32_t>(number_at(velocity, 10, 4)));
    EXPECT_NEAR(static_cast<double>(signed24_at(packet, 43)) * 1e-4, north, 0.51e-4);
    const auto position = positions.find(nano);
    if (position == positions.end()) continue;
    ++compared;
    EXPECT_NEAR(real_at(packet, 23) * kDegrees, real_at(position->second, 10), 1e-12);
    EXPECT_NEAR(real_at(packet, 31) * kDegrees, real_at(position->second, 18), 1e-12);
    EXPECT_EQ(number_at(packet, 39, 4), number_at(position->second, 26, 4));
  }
  EXPECT_EQ(compared, 20U * (70 - 9));  // but for the seconds without sky
}

TEST(TrakgenNCom, the_unit_initialises_locks_and_stays_locked) {
  const Texts packets = packets_of_unit(made({"--seconds", "60", "--ncom-rate", "10"}));
  std::vector<int> statuses;
  for (const std::string& packet : packets) {
    if (statuses.empty() || statuses.back() != status_of(packet)) {
      statuses.push_back(status_of(packet));
    }
  }
  EXPECT_THAT(statuses, testing::ElementsAre(2, 3, 4));
}

TEST(TrakgenNCom, the_channels_tell_accuracies_mounting_and_who_the_unit_is) {
  std::map<int, std::string> channels;
  for (const std::string& packet : packets_of_unit(made({"--seconds", "1"}))) {
    channels[channel_of(packet)] = packet.substr(63, 8);
  }
  for (const int channel : {0, 3, 4, 5, 12, 16, 19, 30}) EXPECT_EQ(channels.count(channel), 1U);
  EXPECT_LT(number_at(channels[3], 6, 1), 150U);
  // 18 seconds with the mark of a known offset; 1.5, 0.5 and -0.2 degrees in steps of 0.1 mrad
  EXPECT_EQ(number_at(channels[16], 7, 1), 18U * 2 + 1);
  EXPECT_EQ(number_at(channels[16], 6, 1), 0U);
  EXPECT_EQ(number_at(channels[16], 0, 2), 262U);
  EXPECT_EQ(number_at(channels[16], 2, 2), 87U);
  EXPECT_EQ(number_at(channels[16], 4, 2), 65536U - 35);
  EXPECT_EQ(channels[19], "240311.2");
  EXPECT_EQ(number_at(channels[30], 6, 2), 4711U);
}

TEST(TrakgenNCom, a_raw_file_holds_the_bare_packets_of_the_recording) {
  const std::vector<std::string> arguments{"--seconds", "5", "--ncom-rate", "40", "--streams", "2"};
  const Texts packets = packets_of_unit(made(arguments));
  const std::string expected = std::accumulate(packets.begin(), packets.end(), std::string());
  EXPECT_EQ(made(arguments, ".ncom"), Support::bytes_of(expected));
  EXPECT_EQ(expected.size(), 5U * 40 * 72);
}

TEST(TrakgenNCom, damage_to_a_raw_file_takes_packets_for_pages) {
  const Bytes whole = made({"--seconds", "1"}, ".ncom");
  EXPECT_EQ(made({"--seconds", "1", "--drop-page", "5"}, ".ncom"),
            Support::remove_bytes(whole, 5 * 72, 72));
  EXPECT_EQ(made({"--seconds", "1", "--flip-bit", "100", "--cut", "30"}, ".ncom"),
            Support::cut_end(Support::flip_bit(whole, 100), 30));
}

// ---- MCom

Texts packets_of_vessel(std::vector<std::string> arguments) {
  return packets_of_unit(made(std::move(arguments)), kMComSerial);
}

TEST(TrakgenMCom, packets_are_whole_with_good_sums) {
  const Texts packets = packets_of_vessel({"--seconds", "10", "--mcom-rate", "50"});
  EXPECT_EQ(packets.size(), 500U);
  for (const std::string& packet : packets) {
    ASSERT_EQ(packet.size(), 84U);
    EXPECT_EQ(number_at(packet, 0, 1), 0xE8U);
    EXPECT_EQ(number_at(packet, 83, 1), sum_before(packet, 83));
  }
}

TEST(TrakgenMCom, is_the_ncom_packet_of_its_moment_up_to_the_tail) {
  const Bytes bytes = made({"--seconds", "20", "--ncom-rate", "50", "--mcom-rate", "50"});
  const Texts ncom = packets_of_unit(bytes);
  const Texts mcom = packets_of_unit(bytes, kMComSerial);
  ASSERT_EQ(ncom.size(), mcom.size());
  for (std::size_t i = 0; i < ncom.size(); ++i) {
    EXPECT_EQ(mcom[i].substr(1, 61), ncom[i].substr(1, 61));
    EXPECT_EQ(mcom[i].substr(74, 9), ncom[i].substr(62, 9)) << "the status channel";
  }
}

TEST(TrakgenMCom, the_heave_swings_and_comes_again_with_its_delay) {
  constexpr std::size_t kRate = 50;
  constexpr std::size_t kDelay = 4 * kRate;
  const Texts packets = packets_of_vessel({"--seconds", "60", "--mcom-rate", "50"});
  const auto heave_of = [](const std::string& packet, std::size_t at) {
    return static_cast<std::int16_t>(number_at(packet, at, 2)) * 0.002;
  };
  double lowest = 0;
  double highest = 0;
  for (std::size_t i = 0; i < packets.size(); ++i) {
    lowest = std::min(lowest, heave_of(packets[i], 62));
    highest = std::max(highest, heave_of(packets[i], 62));
    if (i >= kDelay) {
      EXPECT_EQ(number_at(packets[i], 64, 2), number_at(packets[i - kDelay], 62, 2)) << i;
    }
  }
  EXPECT_LT(lowest, -0.8);
  EXPECT_GT(highest, 0.8);
  EXPECT_LT(std::max(-lowest, highest), 1.3);
}

TEST(TrakgenMCom, packets_are_counted_over_the_end_of_sixteen_bits) {
  const Bytes file = made({"--seconds", "70", "--mcom-rate", "1000"}, ".mcom");
  ASSERT_EQ(file.size(), 70'000U * 84);
  for (std::size_t i = 0; i < 70'000; ++i) {
    EXPECT_EQ(file[i * 84 + 66] + 256U * file[i * 84 + 67], i % 65'536);
  }
}

TEST(TrakgenMCom, modes_hold_while_the_sky_is_visible) {
  std::set<std::uint64_t> bits;
  for (const std::string& packet : packets_of_vessel({"--seconds", "60", "--mcom-rate", "10"})) {
    bits.insert(number_at(packet, 68, 1));
  }
  EXPECT_THAT(bits, testing::ElementsAre(0x01, 0x0E));
}

TEST(TrakgenMCom, a_raw_file_holds_the_bare_packets_of_the_recording) {
  const std::vector<std::string> arguments{"--seconds", "5", "--mcom-rate", "40"};
  const Texts packets = packets_of_vessel(arguments);
  const std::string expected = std::accumulate(packets.begin(), packets.end(), std::string());
  EXPECT_EQ(made(arguments, ".mcom"), Support::bytes_of(expected));
  EXPECT_EQ(expected.size(), 5U * 40 * 84);
}

TEST(TrakgenMCom, unless_told_is_in_no_recording_but_in_its_own_raw_file) {
  EXPECT_THAT(packets_of(made({"--seconds", "1"}), kMComSerial), testing::IsEmpty());
  EXPECT_EQ(made({"--seconds", "2"}, ".mcom").size(), 2U * 100 * 84);
}

}  // namespace
}  // namespace Trel::Trakgen
