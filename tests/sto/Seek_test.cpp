#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <thread>

#include "Fakes.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr long long kMin = std::numeric_limits<long long>::min();

// Every seek step counts as long enough for a message; the ring holds some 6500 of them.
const Options kEveryStep(16, kSecond, 0, -1.0, 1048576, 16);
// None does.
const Options kNoStep(16, kSecond, 0, 1e9, 1048576, 16);

// A store with streams that walk a recording of packets at `times`.
class Seek {
 public:
  Seek(const Options& options, const std::vector<long long>& times, unsigned int streams = 1)
      : store(options) {
    std::vector<unsigned int> serials;
    for (unsigned int serial = 0; serial < streams; ++serial) serials.push_back(serial);
    const std::string path = folder_.write("a.xcom", fake_recording(serials, times));
    auto resource = std::make_unique<FakeResource>(path);
    for (const unsigned int serial : serials) {
      FakeStream& made = resource->stream(serial, Enum::TRANSPORT_TYPE_OGG);
      made.span(times.front(), times.back()).reads(path);
      list.push_back(&made);
    }
    store.take(std::move(resource));
  }

  Enum::RETURN_TYPE to(long long target, long long step = kSecond) {
    return store.simple_seek(list, target, step);
  }
  FakeStream& stream(std::size_t index = 0) { return static_cast<FakeStream&>(*list[index]); }
  // The progress reported since the last look, all of it by the store as a whole.
  std::vector<float> progress() {
    std::vector<float> percents;
    for (const Message& message : drain(store.get_messages())) {
      EXPECT_EQ(message.id, 0xFFFFFFFFU);
      EXPECT_EQ(message.kind, 8U);
      percents.push_back(message.percent);
    }
    return percents;
  }

 private:
  Folder folder_;

 public:
  FakeStore store;
  std::vector<Stream*> list;
};

// Packets at `from`, from + 1 s and so on.
std::vector<long long> seconds(long long from, long long to) {
  std::vector<long long> times;
  for (long long second = from; second <= to; ++second) times.push_back(second * kSecond);
  return times;
}

TEST(SimpleSeek, takes_every_stream_to_the_target) {
  Seek seek(kNoStep, seconds(10, 20), 3);
  EXPECT_EQ(seek.to(15 * kSecond), Enum::RETURN_TYPE_NORMAL);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(seek.stream(i).get_indexer(), 15 * kSecond);
}

TEST(SimpleSeek, ends_on_the_first_packet_at_or_past_the_target) {
  Seek seek(kNoStep, seconds(10, 20));
  seek.to(15 * kSecond + 1);
  EXPECT_EQ(seek.stream().get_indexer(), 16 * kSecond);
}

TEST(SimpleSeek, goes_on_from_where_it_stands_and_goes_back_by_a_rewind) {
  Seek seek(kNoStep, seconds(10, 20));
  int decoded = 0;
  seek.stream().live_codec().on_decode = [&](long long) { ++decoded; };
  seek.to(15 * kSecond);
  EXPECT_EQ(decoded, 6);  // 10 s to 15 s
  decoded = 0;
  seek.to(17 * kSecond);
  EXPECT_EQ(decoded, 2);
  decoded = 0;
  seek.to(12 * kSecond);
  EXPECT_EQ(decoded, 3);
  EXPECT_EQ(seek.stream().get_indexer(), 12 * kSecond);
}

TEST(SimpleSeek, reports_the_share_of_the_span_walked) {
  Seek seek(kEveryStep, seconds(10, 20));
  seek.to(15 * kSecond);
  // u - first = 0, 1, 2, 3, 4 s of a span of 5 s; the first repeats the start and is left out
  EXPECT_THAT(seek.progress(), ElementsAre(0, 20, 40, 60, 80, 100));
}

TEST(SimpleSeek, counts_from_where_the_stream_stands) {
  Seek seek(kEveryStep, seconds(10, 20));
  seek.to(15 * kSecond);
  seek.progress();
  seek.to(19 * kSecond);
  EXPECT_THAT(seek.progress(), ElementsAre(0, 25, 50, 75, 100));
}

TEST(SimpleSeek, gives_each_stream_an_equal_share) {
  Seek seek(kEveryStep, seconds(10, 20), 2);
  seek.to(14 * kSecond);
  EXPECT_THAT(seek.progress(), ElementsAre(0, 12.5, 25, 37.5, 50, 62.5, 75, 87.5, 100));
}

TEST(SimpleSeek, reports_only_the_shares_while_no_time_passes) {
  Seek seek(kNoStep, seconds(10, 20), 4);
  seek.to(20 * kSecond);
  EXPECT_THAT(seek.progress(), ElementsAre(0, 25, 50, 75, 100));
}

TEST(SimpleSeek, a_message_comes_after_the_period_and_begins_a_new_one) {
  Seek seek(Options(16, kSecond, 0, 0.4, 1048576, 16), seconds(10, 20));
  seek.stream().live_codec().on_decode = [](long long nano) {
    if (nano == 12 * kSecond) std::this_thread::sleep_for(std::chrono::milliseconds(500));
  };
  seek.to(20 * kSecond);
  EXPECT_THAT(seek.progress(), ElementsAre(0, 20, 100));
}

TEST(SimpleSeek, a_stream_that_cannot_be_walked_takes_its_share_and_is_passed_over) {
  FakeStore store(kNoStep);
  std::vector<Stream*> list;
  for (int n = 0; n < 4; ++n) list.push_back(&store.stream());  // no transport
  EXPECT_EQ(store.simple_seek(list, 5, 1), Enum::RETURN_TYPE_NORMAL);
  std::vector<float> percents;
  for (const Message& message : drain(store.get_messages())) percents.push_back(message.percent);
  EXPECT_THAT(percents, ElementsAre(0, 25, 50, 75, 100));
}

TEST(SimpleSeek, without_streams_is_done_at_once) {
  FakeStore store;
  EXPECT_EQ(store.simple_seek({}, 5, 1), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(drain(store.get_messages()).size(), 2U);  // 0 and 100
}

TEST(SimpleSeek, a_target_at_or_before_the_stream_s_time_takes_no_step) {
  Seek seek(kEveryStep, seconds(10, 20));
  EXPECT_EQ(seek.to(10 * kSecond), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(seek.to(3 * kSecond), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(seek.stream().get_indexer(), 10 * kSecond);
  EXPECT_THAT(seek.progress(), ElementsAre(0, 100, 0, 100));
}

TEST(SimpleSeek, steps_as_wide_as_asked_for) {
  Seek seek(kEveryStep, seconds(10, 20));
  seek.to(20 * kSecond, 4 * kSecond);
  // 10 s, 14 s and 18 s of a span of 10 s
  EXPECT_THAT(seek.progress(), ElementsAre(0, 40, 80, 100));
}

TEST(SimpleSeek, leaves_out_steps_to_times_that_the_clock_has_passed) {
  Seek seek(kEveryStep, {10 * kSecond, 17 * kSecond + 1, 20 * kSecond});
  seek.to(20 * kSecond);
  // the step to 11 s ends at 17 s and a bit; the next is that to 18 s
  EXPECT_THAT(seek.progress(), ElementsAre(0, 10, 80, 100));
}

TEST(SimpleSeek, a_stream_at_its_end_leaves_the_loop_with_the_same_result) {
  // nine thousand million seconds: no loop over them would end in time
  const long long target = 10 * kSecond + 9000000000 * kSecond;
  Seek seek(kEveryStep, seconds(10, 20));
  EXPECT_EQ(seek.to(target), Enum::RETURN_TYPE_NORMAL);

  Seek plain(kEveryStep, seconds(10, 20));
  plain.stream().do_init(target);
  plain.stream().do_seek(target);

  EXPECT_EQ(seek.stream().get_indexer(), plain.stream().get_indexer());
  EXPECT_EQ(seek.stream().get_indexer(), 20 * kSecond);
  EXPECT_EQ(seek.stream().get_good(), plain.stream().get_good());
  EXPECT_FALSE(seek.stream().get_good());
  EXPECT_FALSE(seek.stream().get_logical_xcom()->good());
  EXPECT_EQ(seek.progress().back(), 100.0F);
}

TEST(SimpleSeek, remembers_the_target_after_leaving_the_loop) {
  Seek seek(kNoStep, seconds(10, 20));
  seek.to(3000 * kSecond);
  int decoded = 0;
  seek.stream().live_codec().on_decode = [&](long long) { ++decoded; };
  seek.to(2999 * kSecond);  // an earlier target: a rewind, and the whole walk
  EXPECT_EQ(decoded, 11);
  decoded = 0;
  seek.to(2999 * kSecond);
  EXPECT_EQ(decoded, 0);
}

TEST(SimpleSeek, the_most_distant_times_do_not_overflow) {
  Seek seek(kEveryStep, {kMin, 0, kMax});
  EXPECT_EQ(seek.to(kMax - 1), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(seek.stream().get_indexer(), kMax);
  const auto up = seek.progress();
  EXPECT_EQ(up.front(), 0.0F);
  EXPECT_EQ(up.back(), 100.0F);
  EXPECT_TRUE(std::is_sorted(up.begin(), up.end()));

  EXPECT_EQ(seek.to(kMin), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(seek.stream().get_indexer(), kMin);
}

TEST(SimpleSeek, a_first_time_far_beyond_the_target_does_not_overflow) {
  Seek seek(kEveryStep, {kMax});
  EXPECT_EQ(seek.to(kMin), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(seek.stream().get_indexer(), kMax);
  EXPECT_THAT(seek.progress(), ElementsAre(0, 100));
}

TEST(SimpleSeek, a_step_that_would_pass_the_last_time_ends_at_the_target) {
  Seek seek(kEveryStep, {kMax - 10, kMax - 5, kMax});
  EXPECT_EQ(seek.to(kMax - 1, kMax), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(seek.stream().get_indexer(), kMax);
}

TEST(SimpleSeek, a_cancelled_store_reports_nothing_and_closes_every_stream) {
  Seek seek(kEveryStep, seconds(10, 400), 2);  // more than one read
  seek.to(12 * kSecond);
  seek.progress();
  ASSERT_TRUE(seek.stream(0).get_logical_xcom()->good());
  ASSERT_TRUE(seek.stream(1).get_logical_xcom()->good());

  DataStorePeer::set_cancelled(seek.store);
  EXPECT_EQ(seek.to(15 * kSecond), Enum::RETURN_TYPE_CANCEL);

  EXPECT_THAT(seek.progress(), IsEmpty());
  EXPECT_EQ(seek.stream(0).get_indexer(), 12 * kSecond);
  EXPECT_FALSE(seek.stream(0).get_logical_xcom()->good());
  EXPECT_FALSE(seek.stream(1).get_logical_xcom()->good());
}

TEST(SimpleSeek, a_cancel_on_the_way_stops_at_the_step_and_before_the_next_stream) {
  Seek seek(kEveryStep, seconds(10, 20), 2);
  seek.stream(0).live_codec().on_decode = [&](long long nano) {
    if (nano == 12 * kSecond) DataStorePeer::set_cancelled(seek.store);
  };
  int decoded = 0;
  seek.stream(1).live_codec().on_decode = [&](long long) { ++decoded; };

  EXPECT_EQ(seek.to(15 * kSecond), Enum::RETURN_TYPE_CANCEL);

  EXPECT_EQ(seek.stream(0).get_indexer(), 12 * kSecond);
  EXPECT_EQ(decoded, 0);
  EXPECT_FALSE(seek.stream(0).get_logical_xcom()->good());
  // half of 0, 1 and 2 s of a span of 5 s; no 100
  EXPECT_THAT(seek.progress(), ElementsAre(0, 10, 20));
}

TEST(DecodeBegin, seeks_all_streams_in_steps_of_a_second) {
  Seek seek(kEveryStep, seconds(10, 20), 2);
  EXPECT_EQ(seek.store.direct_decode_begin(12 * kSecond), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(seek.stream(0).get_indexer(), 12 * kSecond);
  EXPECT_EQ(seek.stream(1).get_indexer(), 12 * kSecond);
  EXPECT_THAT(seek.progress(), ElementsAre(0, 25, 50, 75, 100));
}

TEST(DecodeBegin, passes_on_a_cancel) {
  Seek seek(kNoStep, seconds(10, 20));
  DataStorePeer::set_cancelled(seek.store);
  EXPECT_EQ(seek.store.direct_decode_begin(12 * kSecond), Enum::RETURN_TYPE_CANCEL);
}

}  // namespace
}  // namespace Trel::Sto::Test
