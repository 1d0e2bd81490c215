// Raw NCom files through the store: length, junk and damage, and what still comes out.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sto/Sto_Store.h"
#include "sto/Stream_recordings.h"
#include "support/Support_Damage.h"
#include "support/Support_NavPacket.h"

namespace Trel::Sto::Test {
namespace {

constexpr long long kMillisecond = 1000000;
constexpr long long kMinute = 60000 * kMillisecond;
constexpr int kMinutes = 23010029;
constexpr long long kStart = kMinutes * kMinute;
constexpr double kDegreesPerRadian = 57.29577951308232;

double latitude_of(unsigned int n) {
  return 0.5 + n * 1e-7;
}

// Packet `n` of a drive, ten milliseconds behind the one before it. The first tells the minute.
Bytes packet(unsigned int n) {
  auto built = Support::NComPacket();
  built.time_ms(static_cast<std::uint16_t>(n * 10 % 60000))
      .status(4)
      .position(latitude_of(n), 0.25, 100)
      .channel(86, {});
  if (n == 0) {
    built.channel(0, {kMinutes & 0xFF, kMinutes >> 8 & 0xFF, kMinutes >> 16 & 0xFF, 1, 0, 0, 0, 0});
  }
  return built.bytes();
}

Bytes drive(unsigned int packets) {
  Bytes file;
  for (unsigned int n = 0; n < packets; ++n) {
    const Bytes bytes = packet(n);
    file.insert(file.end(), bytes.begin(), bytes.end());
  }
  return file;
}

struct Opened {
  explicit Opened(const Bytes& bytes)
      : file(bytes, ".ncom"), store(Options(16, 1000000000, 0, 0.1, 1048576, 10)) {
    std::vector<unsigned int> ids;
    unsigned int count = 0;
    store.add_resource(file.path(), ids, count);
    store.get_start(start);
    store.get_end(end);
    for (const char* name : {"Nano", "Lat"}) {
      store.direct_add_element(0, name);
      store.direct_use_element(aspect, 0, name);
    }
  }

  // Time and latitude of the packet that a step to the time of packet `n` ends on.
  void expect_packet(unsigned int n, unsigned int found) {
    const long long t = kStart + n * 10LL * kMillisecond;
    store.direct_decode_begin(t);
    store.direct_decode_step(aspect, t, values);
    EXPECT_EQ(static_cast<long long>(values[0]), kStart + found * 10LL * kMillisecond) << n;
    EXPECT_NEAR(static_cast<double>(values[1]), latitude_of(found) * kDegreesPerRadian, 1e-12) << n;
  }

  ScratchFile file;
  DataStore store;
  long long start = 0;
  long long end = 0;
  Aspect aspect;
  std::vector<Result> values;
};

TEST(NComFile, ten_packets_have_their_times_from_the_first_on) {
  Opened opened(drive(10));
  EXPECT_EQ(opened.start, kStart);
  EXPECT_EQ(opened.end, kStart + 90 * kMillisecond);
  for (unsigned int n = 0; n < 10; ++n) opened.expect_packet(n, n);
}

TEST(NComFile, a_hundred_thousand_packets_count_the_minutes_on) {
  // 1000 s: sixteen times over a full minute, of which only the first packet told the first.
  Opened opened(drive(100000));
  EXPECT_EQ(opened.start, kStart);
  EXPECT_EQ(opened.end, kStart + 999990 * kMillisecond);
  for (const unsigned int n : {0U, 5999U, 6000U, 54321U, 99999U}) opened.expect_packet(n, n);
}

TEST(NComFile, junk_ahead_between_and_behind_costs_no_packet) {
  Bytes file = drive(10);
  file = Support::insert_bytes(file, 5 * 72, Support::noise(300, 2));
  Opened opened(join({Support::noise(500, 3), file, Support::noise(700, 4)}));
  EXPECT_EQ(opened.start, kStart);
  EXPECT_EQ(opened.end, kStart + 90 * kMillisecond);
  for (unsigned int n = 0; n < 10; ++n) opened.expect_packet(n, n);
}

TEST(NComFile, a_packet_with_a_bad_sum_is_lost_alone) {
  Opened opened(Support::flip_bit(drive(10), 4 * 72 + 30));
  EXPECT_EQ(opened.end, kStart + 90 * kMillisecond);
  opened.expect_packet(3, 3);
  opened.expect_packet(4, 5);
  opened.expect_packet(5, 5);
}

TEST(NComFile, a_cut_end_loses_the_last_packet) {
  Opened opened(Support::cut_end(drive(10), 1));
  EXPECT_EQ(opened.end, kStart + 80 * kMillisecond);
  opened.expect_packet(8, 8);
}

}  // namespace
}  // namespace Trel::Sto::Test
