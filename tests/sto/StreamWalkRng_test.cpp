// The walks of a stream over a raw range file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "RangeStream_fake.h"
#include "RawFile_opened.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Calls = std::vector<std::string>;

constexpr unsigned int kAddress = 7;

// Range data at 100, 200 and 300, the stream's packets at 110, 210 and 310, others among them.
const Bytes kMixed =
    join({wrapped(kAddress + 1, 0, 50), timed_range(100), wrapped(kAddress, 0, 110),
          wrapped(0, 9, 120), timed_range(200), wrapped(kAddress, 0, 210), timed_range(300),
          wrapped(kAddress + 1, 0, 305), wrapped(kAddress, 0, 310)});

struct Walk : WalkedFile<WrappedStream> {
  explicit Walk(const Bytes& bytes = kMixed)
      : WalkedFile(bytes, ".rcom", std::make_unique<LogicalRngNCom>(kAddress),
                   Enum::TRANSPORT_TYPE_RNG, kAddress) {}
  [[nodiscard]] LogicalRng& reader() { return *stream.get_logical_rng(); }
};

TEST(StreamRngInit, the_first_one_rewinds_and_takes_the_first_packet_that_matches) {
  for (const nano_t t : {std::numeric_limits<nano_t>::min(), nano_t{0}, nano_t{1000000}}) {
    Walk walk;
    EXPECT_TRUE(walk.stream.do_init(t));
    EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 110")) << t;
    EXPECT_FALSE(walk.stream.good_at_rewind);
    EXPECT_TRUE(walk.stream.get_good());
    EXPECT_EQ(walk.file.open_handles(), 1);
  }
}

TEST(StreamRngInit, range_data_are_the_packets_of_serial_0) {
  WalkedFile<RangeStream> walk(kMixed, ".rcom", std::make_unique<LogicalRngRCom>(0),
                               Enum::TRANSPORT_TYPE_RNG);
  EXPECT_TRUE(walk.stream.do_init(0));
  EXPECT_TRUE(walk.stream.do_seek(300));
  EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 100", "seek 200", "seek 300"));
}

TEST(StreamRngInit, of_a_stream_that_is_not_storable_is_false_with_and_without_a_reader) {
  RangeStream stream;
  EXPECT_FALSE(stream.do_init(0));
  stream.set_logical_rng(std::make_unique<LogicalRngRCom>(0));
  EXPECT_FALSE(stream.do_init(0));
  EXPECT_THAT(stream.calls, IsEmpty());
}

TEST(StreamRngInitDeathTest, of_a_storable_stream_without_a_reader_stops_the_program) {
  RangeStream stream;
  stream.set_storable();
  EXPECT_DEATH(stream.do_init(0), "Test : logical_rng\n.*sto/Sto_Stream");
}

TEST(StreamRngInit, leaves_the_target_where_it_was) {
  Walk walk;
  walk.stream.do_init(1000);
  walk.calls();
  walk.stream.do_init(1000);  // no time has been asked for yet
  EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 110"));
  walk.stream.do_seek(200);
  walk.stream.do_init(100);
  EXPECT_THAT(walk.calls(), ElementsAre("seek 210", "rewind", "seek 110"));
  walk.stream.do_init(199);  // the target is still 200, though the clock stands at 110
  EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 110"));
  walk.stream.do_init(200);
  EXPECT_THAT(walk.calls(), IsEmpty());
}

TEST(StreamRngInit, at_the_target_or_above_goes_on_and_opens_the_reader_again) {
  Walk walk;
  walk.stream.do_init(0);
  walk.stream.do_seek(150);
  walk.stream.do_tidy();
  EXPECT_EQ(walk.file.open_handles(), 0);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_init(150));
  EXPECT_THAT(walk.calls(), IsEmpty());
  EXPECT_EQ(walk.file.open_handles(), 1);
  EXPECT_TRUE(walk.stream.do_seek(310));
  EXPECT_THAT(walk.calls(), ElementsAre("seek 310"));
}

TEST(StreamRngInit, in_a_file_without_a_matching_packet_is_true_with_nothing_decoded) {
  Walk walk(join({timed_range(100), wrapped(kAddress + 1, 0, 110)}));
  EXPECT_TRUE(walk.stream.do_init(50));
  EXPECT_FALSE(walk.stream.get_good());
  EXPECT_THAT(walk.calls(), ElementsAre("rewind"));
}

TEST(StreamRngInit, after_the_end_a_rewind_makes_good_true_again_at_the_first_packet) {
  Walk walk;
  walk.stream.do_init(0);
  EXPECT_FALSE(walk.stream.do_seek(311));
  EXPECT_FALSE(walk.stream.get_good());
  walk.calls();
  EXPECT_TRUE(walk.stream.do_init(0));
  EXPECT_TRUE(walk.stream.get_good());
  EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 110"));
}

TEST(StreamRngSeek, passes_over_packets_that_do_not_match_and_stops_at_the_time) {
  Walk walk;
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_seek(111));
  EXPECT_THAT(walk.calls(), ElementsAre("seek 210"));
  EXPECT_TRUE(walk.stream.do_seek(210));
  EXPECT_THAT(walk.calls(), IsEmpty());
  // 82 + 8 + 82 + 82 + 8 bytes stand ahead of it
  EXPECT_EQ(walk.reader().absolute_packet_location(), 262U);
}

TEST(StreamRngSeek, past_the_end_is_false_and_closes_the_reader) {
  Walk walk;
  walk.stream.do_init(0);
  EXPECT_FALSE(walk.stream.do_seek(311));
  EXPECT_FALSE(walk.stream.get_good());
  EXPECT_EQ(walk.file.open_handles(), 0);
  EXPECT_EQ(walk.stream.get_indexer(), 310);
}

TEST(StreamRngSeek, not_good_is_false_at_once_and_yet_sets_the_target) {
  Walk walk;
  walk.stream.do_init(0);
  walk.stream.set_good(false);
  walk.calls();
  EXPECT_FALSE(walk.stream.do_seek(50));
  EXPECT_EQ(walk.file.open_handles(), 1);
  walk.stream.do_init(50);
  EXPECT_THAT(walk.calls(), IsEmpty());
}

TEST(StreamRngDecode, passes_over_packets_that_do_not_match_and_those_without_a_time) {
  Walk walk(
      join({wrapped(kAddress, 0, 100), timed_range(400), wrapped(kAddress, 0, Support::kNoTime),
            wrapped(kAddress + 1, 0, 150), wrapped(kAddress, 0, 200), wrapped(kAddress, 0, 300)}));
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_decode(101));
  EXPECT_THAT(walk.calls(), ElementsAre("decode ?", "decode 200"));
  EXPECT_TRUE(walk.stream.do_decode(150));
  EXPECT_THAT(walk.calls(), IsEmpty());
}

TEST(StreamRngDecode, at_the_end_is_false_leaves_good_and_the_reader_and_sets_the_target) {
  Walk walk;
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_FALSE(walk.stream.do_decode(400));
  EXPECT_THAT(walk.calls(), ElementsAre("decode 210", "decode 310"));
  EXPECT_TRUE(walk.stream.get_good());
  EXPECT_EQ(walk.file.open_handles(), 1);
  walk.stream.do_init(400);
  EXPECT_THAT(walk.calls(), IsEmpty());
  EXPECT_FALSE(walk.stream.do_decode(500));
}

TEST(StreamRngDecode, of_a_stream_that_is_not_storable_is_false) {
  RangeStream stream;
  EXPECT_FALSE(stream.do_decode(0));
}

TEST(StreamRngTidy, closes_the_reader_of_its_own_transport_and_leaves_others) {
  const ScratchFile file(kMixed, ".rcom");
  for (const auto transport : {Enum::TRANSPORT_TYPE_RNG, Enum::TRANSPORT_TYPE_NAV}) {
    RangeStream stream(transport);
    stream.do_tidy();
    auto own = std::make_unique<LogicalRngRCom>(0);
    own->set_file(file.path());
    own->enable();
    stream.set_logical_rng(std::move(own));
    stream.do_tidy();
    EXPECT_EQ(file.open_handles(), transport == Enum::TRANSPORT_TYPE_RNG ? 0 : 1);
  }
}

}  // namespace
}  // namespace Trel::Sto::Test
