// Recordings of which one stream never gets its headers, so that the first pass reads them to the
// end: the others open as if they had been read in the usual order.
#include <gtest/gtest.h>

#include "Stream_recordings.h"

namespace Trel::Sto::Test {
namespace {

constexpr unsigned int kLaggard = 9;
constexpr std::size_t kPacketSize = 4000;
constexpr unsigned int kPackets = 700;  // 2.8 MB, of which the first is queued before any is taken
constexpr unsigned int kLate = 500;     // a packet among those that are taken early

constexpr long long time_of(unsigned int packet) {
  return 1000 + 10LL * packet;
}

Bytes large_sample(unsigned int packet) {
  return padded(sample(time_of(packet), packet), kPacketSize);
}

Bytes large_slow() {
  return padded(slow(1), kPacketSize);
}

// Two streams: one that declares a header more than it has, and one whose packets `packet` writes.
template <class Packet>
Bytes lagging(Packet packet, unsigned int laggard = kLaggard) {
  Recording recording;
  recording.stream(laggard).codec("UCom").dbu(database().text()).declare_headers("2").headers();
  auto& stream = recording.stream(kSerial).ucom(database()).headers();
  for (unsigned int n = 0; n < kPackets; ++n) packet(stream, n);
  return recording.bytes();
}

void expect_laggard_idle(const Opened& opened) {
  EXPECT_FALSE(opened.stream(kLaggard).is_captured());
  EXPECT_FALSE(opened.storable(kLaggard));
}

TEST(InitQueue, the_first_time_is_found_in_the_first_packets) {
  const Opened opened(
      lagging([](auto& stream, unsigned int n) { stream.packet(large_sample(n)).page(); }));
  expect_laggard_idle(opened);
  EXPECT_TRUE(opened.storable());
  EXPECT_EQ(opened.start(), time_of(0));
  EXPECT_EQ(opened.end(), time_of(kPackets - 1));
}

TEST(InitQueue, the_first_time_may_come_late) {
  const Opened opened(lagging([](auto& stream, unsigned int n) {
    stream.packet(n < kLate ? large_slow() : large_sample(n)).page();
  }));
  EXPECT_EQ(opened.start(), time_of(kLate));
  EXPECT_EQ(opened.end(), time_of(kPackets - 1));
}

TEST(InitQueue, the_first_time_may_come_in_what_the_next_pass_draws_first) {
  const Opened opened(lagging([](auto& stream, unsigned int n) {
    stream.packet(n + 1 < kPackets ? large_slow() : large_sample(n)).page();
  }));
  EXPECT_EQ(opened.start(), time_of(kPackets - 1));
}

TEST(InitQueue, a_further_initial_page_takes_what_came_before_out_of_the_prescan) {
  for (const unsigned int again : {10U, kLate, kPackets - 1}) {
    const Opened opened(lagging([again](auto& stream, unsigned int n) {
      if (n == again) stream.raw_page({11}, bytes_of("[Trel-UCom]"), Support::kInitial);
      stream.packet(large_sample(n)).page();
    }));
    expect_laggard_idle(opened);
    EXPECT_EQ(opened.start(), time_of(again));
    EXPECT_EQ(opened.end(), time_of(kPackets - 1));
    EXPECT_TRUE(opened.stream().is_captured());
    EXPECT_NE(opened.stream().get_meta().find_aux_header("/Trel-UCom-Dbu/"), nullptr);
  }
}

TEST(InitQueue, a_further_initial_page_may_be_followed_by_nothing) {
  const Opened opened(lagging([](auto& stream, unsigned int n) {
    stream.packet(large_sample(n)).page();
    if (n + 1 == kPackets) stream.raw_page({11}, bytes_of("[Trel-UCom]"), Support::kInitial);
  }));
  EXPECT_FALSE(opened.storable());  // no time has been found
}

// At the end of the file the walk over the streams is not taken up again after one without its
// headers has been met.
TEST(InitQueue, streams_behind_the_laggard_get_nothing) {
  const Opened opened(
      lagging([](auto& stream, unsigned int n) { stream.packet(large_sample(n)).page(); }, 3));
  EXPECT_TRUE(opened.stream().is_configured());
  EXPECT_FALSE(opened.storable());
}

TEST(InitQueue, a_stream_without_its_database_stays_idle_beside_it) {
  Recording recording;
  recording.stream(kLaggard).codec("UCom").dbu(database().text()).declare_headers("2").headers();
  auto& stream = recording.stream(kSerial).codec("UCom").headers();
  for (unsigned int n = 0; n < kPackets; ++n) stream.packet(large_sample(n)).page();
  const Opened opened(recording.bytes());
  EXPECT_TRUE(opened.stream().is_captured());
  EXPECT_FALSE(opened.stream().is_configured());
  EXPECT_FALSE(opened.storable());
}

}  // namespace
}  // namespace Trel::Sto::Test
