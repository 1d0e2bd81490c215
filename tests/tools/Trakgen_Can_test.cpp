#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "Made.h"
#include "Packets.h"

namespace Trel::Trakgen {
namespace {

using Support::Bytes;
using Support::Test::packets_of;
using Test::kCanSerial;
using Test::kUComSerial;
using Test::made;
using Test::nano_at;
using Test::number_at;
using Texts = Support::Test::Texts;

constexpr std::int64_t kSecond = 1'000'000'000;

// Without the headers.
Texts batches_of(const Bytes& bytes) {
  Texts packets = packets_of(bytes, kCanSerial);
  packets.erase(packets.begin(), packets.begin() + 3);
  return packets;
}

struct Frame {
  std::uint64_t id;
  std::size_t size;
  std::string data;
};

// The records of a batch. One that is cut throws std::out_of_range.
std::vector<Frame> frames_of(const std::string& batch) {
  constexpr std::size_t kSizes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 16, 20, 24, 32, 48, 64};
  std::vector<Frame> frames;
  for (std::size_t at = 8; at < batch.size();) {
    const std::size_t size = kSizes[number_at(batch, at, 1) >> 4];
    const std::size_t area = std::max<std::size_t>(8, size);
    if (at + 8 + area > batch.size()) throw std::out_of_range("cut record");
    frames.push_back({number_at(batch, at + 4, 4), size, batch.substr(at + 8, area)});
    at += 8 + area;
  }
  return frames;
}

// What the database says, as far as these tests want to know.
struct Field {
  std::string name;
  std::string page;  // "M", "m0", ... or empty
  int start;
  int bits;
  bool little_endian;
  bool is_signed;
  bool is_whole;
};

struct Listed {
  std::string name;
  std::size_t size;
  std::vector<Field> fields;
};

std::map<std::uint64_t, Listed> database_of(const Bytes& bytes) {
  const std::regex message(R"(BO_ (\d+) (\w+): (\d+) \w+\r)");
  const std::regex signal(
      R"( SG_ (\w+) ?(\w*) : (\d+)\|(\d+)@([01])([+-]) \(([^,]+),[^)]+\) .*\r)");
  std::map<std::uint64_t, Listed> messages;
  Listed* open = nullptr;
  std::istringstream text(packets_of(bytes, kCanSerial).at(1));
  std::smatch part;
  for (std::string line; std::getline(text, line);) {
    if (std::regex_match(line, part, message)) {
      open = &messages[std::stoull(part[1])];
      *open = {part[2], std::stoull(part[3]), {}};
    } else if (std::regex_match(line, part, signal)) {
      open->fields.push_back({part[1], part[2], std::stoi(part[3]), std::stoi(part[4]),
                              part[5] == "1", part[6] == "-", part[7] == "1"});
    }
  }
  return messages;
}

// The bits of a field, numbered as its start is.
std::vector<int> bits_of(const Field& field) {
  std::vector<int> bits;
  int at = field.start;
  for (int i = 0; i < field.bits; ++i) {
    bits.push_back(at);
    if (field.little_endian) {
      ++at;
    } else {
      at = at % 8 == 0 ? at + 15 : at - 1;
    }
  }
  return bits;
}

TEST(TrakgenCan, the_database_has_some_sixty_signals_of_all_kinds_in_twenty_messages) {
  const auto messages = database_of(made({"--seconds", "1"}));
  EXPECT_EQ(messages.size(), 20U);
  std::size_t extended = 0;
  std::size_t flexible = 0;
  std::size_t multiplexed = 0;
  std::map<std::vector<bool>, std::size_t> kinds;  // by order, sign and scale
  std::size_t count = 0;
  for (const auto& [id, message] : messages) {
    extended += id >> 31;
    flexible += message.size > 8;
    for (const Field& field : message.fields) {
      ++count;
      multiplexed += !field.page.empty();
      ++kinds[{field.little_endian, field.is_signed, field.is_whole}];
    }
  }
  EXPECT_GE(count, 55U);
  EXPECT_LE(count, 65U);
  EXPECT_EQ(kinds.size(), 8U);  // each combination of the three
  EXPECT_GE(extended, 3U);
  EXPECT_EQ(flexible, 3U);
  EXPECT_EQ(multiplexed, 5U);
}

TEST(TrakgenCan, the_database_has_comments_and_statements_of_other_kinds) {
  const std::string text = packets_of(made({"--seconds", "1"}), kCanSerial).at(1);
  for (const char* part : {"(Trel-Can-Dbc)VERSION ", "\r\nBU_: ", "\r\nCM_ BO_ 160 \"",
                           "\r\nCM_ SG_ 160 WheelSpeedFrontLeft \"", "\r\nVAL_ ", "\r\nBA_DEF_ "}) {
    EXPECT_THAT(text, testing::HasSubstr(part));
  }
}

TEST(TrakgenCan, fields_stay_in_their_frames_and_apart_from_those_of_the_same_page) {
  for (const auto& [id, message] : database_of(made({"--seconds", "1"}))) {
    std::map<int, std::set<std::string>> taken;
    for (const Field& field : message.fields) {
      const bool paged = field.page.starts_with("m");
      for (const int bit : bits_of(field)) {
        EXPECT_LT(static_cast<std::size_t>(bit), 8 * message.size) << field.name;
        auto& pages = taken[bit];
        EXPECT_TRUE(pages.empty() || (paged && pages.count("") == 0)) << field.name;
        EXPECT_TRUE(pages.insert(paged ? field.page : "").second) << field.name;
      }
    }
  }
}

TEST(TrakgenCan, frames_have_the_size_that_the_database_tells_and_one_a_second_is_unlisted) {
  const Bytes bytes = made({"--seconds", "10"});
  const auto messages = database_of(bytes);
  std::map<std::uint64_t, int> unlisted;
  for (const std::string& batch : batches_of(bytes)) {
    for (const Frame& frame : frames_of(batch)) {
      const auto found = messages.find(frame.id);
      if (found == messages.end()) {
        ++unlisted[frame.id];
      } else {
        EXPECT_EQ(frame.size, found->second.size) << found->second.name;
      }
    }
  }
  EXPECT_EQ(unlisted, (std::map<std::uint64_t, int>{{0x7DF, 10}}));
}

TEST(TrakgenCan, a_batch_comes_at_every_step_and_messages_in_their_own_rhythm) {
  for (const std::string rate : {"100", "50"}) {
    const Bytes bytes = made({"--seconds", "10", "--can-rate", rate});
    const auto messages = database_of(bytes);
    const Texts batches = batches_of(bytes);
    std::map<std::string, int> counts;
    for (const std::string& batch : batches) {
      for (const Frame& frame : frames_of(batch)) {
        const auto found = messages.find(frame.id);
        if (found != messages.end()) ++counts[found->second.name];
      }
    }
    EXPECT_EQ(batches.size(), 10 * std::stoull(rate));
    EXPECT_EQ(counts["WheelSpeeds"], 10 * std::stoi(rate));
    EXPECT_EQ(counts["Engine"], 250);
    EXPECT_EQ(counts["Position"], 100);
    EXPECT_EQ(counts["Diagnosis"], 20);
    EXPECT_EQ(counts["Summary"], 10);
    EXPECT_EQ(counts.size(), 20U);
  }
}

TEST(TrakgenCan, the_device_learns_the_time_after_five_seconds) {
  const std::uint64_t rate = 50;
  const Texts batches = batches_of(made({"--seconds", "8", "--can-rate", std::to_string(rate)}));
  ASSERT_EQ(batches.size(), 8 * rate);
  for (std::uint64_t i = 0; i < batches.size(); ++i) {
    const auto since_start = static_cast<std::int64_t>(i) * kSecond / 50;
    const std::int64_t zero = i < 5 * rate ? 42 * kSecond : 1'400'000'000 * kSecond;
    EXPECT_EQ(nano_at(batches[i], 0), zero + since_start) << i;
  }
}

TEST(TrakgenCan, odd_lengths_are_rare_and_far_from_the_step_of_the_time) {
  for (const std::size_t rate : {10U, 33U, 50U, 100U, 250U}) {
    const Texts batches =
        batches_of(made({"--seconds", "7", "--can-rate", std::to_string(rate), "--rate", "1"}));
    std::size_t odd = 0;
    for (const std::string& batch : batches) odd += batch.size() % 16 != 8;
    EXPECT_EQ(odd, 14U) << rate;  // the two frames of 12 and 64 bytes, each once a second
    for (const std::size_t i :
         {std::size_t{0}, std::size_t{1}, 5 * rate - 2, 5 * rate - 1, 5 * rate, 5 * rate + 1}) {
      EXPECT_EQ(batches.at(i).size() % 16, 8U) << rate << ", " << i;
    }
  }
}

TEST(TrakgenCan, wheel_speeds_are_those_of_the_ucom_stream_at_the_same_times) {
  // batches every 20 ms, the vehicle's own message every 100 ms
  const Bytes bytes = made({"--seconds", "30", "--rate", "40", "--can-rate", "50"});
  std::map<std::int64_t, std::vector<std::uint64_t>> vehicle;
  for (const std::string& packet : packets_of(bytes, kUComSerial)) {
    if (number_at(packet, 0, 2) != 4) continue;
    auto& speeds = vehicle[nano_at(packet, 2)];
    for (std::size_t wheel = 0; wheel < 4; ++wheel) {
      speeds.push_back(number_at(packet, 10 + 2 * wheel, 2));
    }
  }
  std::size_t compared = 0;
  std::set<std::uint64_t> different;
  for (const std::string& batch : batches_of(bytes)) {
    const auto found = vehicle.find(nano_at(batch, 0));
    if (found == vehicle.end()) continue;
    const Frame wheels = frames_of(batch).at(0);
    ASSERT_EQ(wheels.id, 0xA0U);
    std::vector<std::uint64_t> speeds;
    for (std::size_t wheel = 0; wheel < 4; ++wheel) {  // big-endian, the same hundredths of km/h
      speeds.push_back(number_at(wheels.data, 2 * wheel, 1) << 8 |
                       number_at(wheels.data, 2 * wheel + 1, 1));
    }
    EXPECT_EQ(speeds, found->second);
    ++compared;
    different.insert(speeds[0]);
  }
  EXPECT_EQ(compared, 250U);  // ten a second from second 5 on
  EXPECT_GT(different.size(), 50U);
}

TEST(TrakgenCan, positions_are_missing_while_the_sky_is_hidden) {
  int positions = 0;
  int motions = 0;
  for (const std::string& batch : batches_of(made({"--seconds", "80", "--can-rate", "10"}))) {
    for (const Frame& frame : frames_of(batch)) {
      positions += frame.id == 0x8CFEF301;
      motions += frame.id == 0x120;
    }
  }
  EXPECT_EQ(motions, 800);
  EXPECT_EQ(positions, 800 - 90);
}

TEST(TrakgenCan, the_pages_of_the_multiplexed_message_take_turns) {
  std::vector<std::uint64_t> pages;
  for (const std::string& batch : batches_of(made({"--seconds", "3"}))) {
    for (const Frame& frame : frames_of(batch)) {
      if (frame.id == 0x170) pages.push_back(number_at(frame.data, 0, 1));
    }
  }
  EXPECT_THAT(pages, testing::ElementsAre(0, 1, 2, 0, 1, 2));
}

}  // namespace
}  // namespace Trel::Trakgen
