// The walks of a stream over a raw navigation file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "RawFile_opened.h"
#include "RawStream_fake.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Calls = std::vector<std::string>;

Bytes track(const std::vector<Bytes>& packets) {
  Bytes bytes;
  for (const Bytes& packet : packets) bytes = join({bytes, packet});
  return bytes;
}

const Bytes kThree = track({at(100), at(200), at(300)});

// 100 packets of 72 bytes: four reads.
Bytes many() {
  std::vector<Bytes> packets;
  for (std::uint16_t time = 1; time <= 100; ++time) packets.push_back(at(time));
  return track(packets);
}

struct Walk : WalkedFile<RawStream> {
  explicit Walk(const Bytes& bytes)
      : WalkedFile(bytes, ".ncom", std::make_unique<LogicalNavAny>(), Enum::TRANSPORT_TYPE_NAV) {}
  [[nodiscard]] LogicalNav& reader() { return *stream.get_logical_nav(); }
};

TEST(StreamNavInit, the_first_one_rewinds_whatever_the_time) {
  for (const nano_t t : {std::numeric_limits<nano_t>::min(), nano_t{0}, nano_t{1000000}}) {
    Walk walk(kThree);
    EXPECT_TRUE(walk.stream.do_init(t));
    EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 100")) << t;
    EXPECT_FALSE(walk.stream.good_at_rewind);
    EXPECT_TRUE(walk.stream.get_good());
    EXPECT_EQ(walk.file.open_handles(), 1);
  }
}

TEST(StreamNavInit, begins_at_the_start_of_the_readers_stretch) {
  Walk walk(kThree);
  walk.reader().set_start(72);
  walk.stream.do_init(0);
  EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 200"));
}

TEST(StreamNavInit, of_a_stream_that_is_not_storable_is_false) {
  const ScratchFile file(kThree, ".ncom");
  RawStream stream;
  auto own = std::make_unique<LogicalNavAny>();
  own->set_file(file.path());
  stream.set_logical_nav(std::move(own));
  EXPECT_FALSE(stream.do_init(0));
  EXPECT_THAT(stream.calls, IsEmpty());
  EXPECT_EQ(file.open_handles(), 0);
}

TEST(StreamNavInit, without_a_reader_is_false) {
  RawStream stream;
  EXPECT_FALSE(stream.do_init(0));
  stream.set_storable();
  EXPECT_FALSE(stream.do_init(0));
}

TEST(StreamNavInit, makes_the_clock_the_target) {
  Walk walk(kThree);
  walk.stream.do_init(1000);
  walk.calls();
  walk.stream.do_init(100);
  EXPECT_THAT(walk.calls(), IsEmpty());
  walk.stream.do_init(99);
  EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 100"));
}

TEST(StreamNavInit, at_the_target_or_above_goes_on_and_opens_the_reader_again) {
  Walk walk(many());
  walk.stream.do_init(0);
  walk.stream.do_seek(50);
  walk.stream.do_tidy();
  walk.calls();
  EXPECT_TRUE(walk.stream.do_init(50));
  EXPECT_THAT(walk.calls(), IsEmpty());
  EXPECT_EQ(walk.file.open_handles(), 1);
  EXPECT_TRUE(walk.stream.do_seek(100));
  const Calls calls = walk.calls();
  ASSERT_EQ(calls.size(), 50U);
  EXPECT_EQ(calls.front(), "seek 51");
  EXPECT_EQ(calls.back(), "seek 100");
}

TEST(StreamNavInit, in_a_file_without_packets_is_true_with_nothing_decoded) {
  Walk walk(Bytes(5000, 0x11));
  EXPECT_TRUE(walk.stream.do_init(50));
  EXPECT_FALSE(walk.stream.get_good());
  EXPECT_THAT(walk.calls(), ElementsAre("rewind"));
}

TEST(StreamNavInit, after_the_end_a_rewind_makes_good_true_again_at_the_first_packet) {
  Walk walk(kThree);
  walk.stream.do_init(0);
  EXPECT_FALSE(walk.stream.do_seek(301));
  EXPECT_FALSE(walk.stream.get_good());
  walk.calls();
  EXPECT_TRUE(walk.stream.do_init(0));
  EXPECT_TRUE(walk.stream.get_good());
  EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 100"));
}

TEST(StreamNavSeek, stops_at_the_first_packet_that_reaches_the_time) {
  Walk walk(kThree);
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_seek(101));
  EXPECT_THAT(walk.calls(), ElementsAre("seek 200"));
  EXPECT_EQ(walk.reader().absolute_packet_location(), 72U);
}

TEST(StreamNavSeek, with_the_clock_there_already_reads_nothing) {
  Walk walk(kThree);
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_seek(100));
  EXPECT_THAT(walk.calls(), IsEmpty());
}

TEST(StreamNavSeek, past_the_end_is_false_and_closes_the_reader) {
  Walk walk(kThree);
  walk.stream.do_init(0);
  EXPECT_FALSE(walk.stream.do_seek(301));
  EXPECT_FALSE(walk.stream.get_good());
  EXPECT_EQ(walk.file.open_handles(), 0);
  EXPECT_EQ(walk.stream.get_indexer(), 300);
}

TEST(StreamNavSeek, not_good_is_false_at_once_and_yet_sets_the_target) {
  Walk walk(kThree);
  walk.stream.do_init(0);
  walk.stream.set_good(false);
  walk.calls();
  EXPECT_FALSE(walk.stream.do_seek(50));
  EXPECT_EQ(walk.file.open_handles(), 1);
  walk.stream.do_init(50);
  EXPECT_THAT(walk.calls(), IsEmpty());
}

TEST(StreamNavDecode, goes_on_past_packets_without_a_time) {
  Walk walk(track({at(100), untimed_packet(), untimed_packet(), at(200), at(300)}));
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_decode(101));
  EXPECT_THAT(walk.calls(), ElementsAre("decode ?", "decode ?", "decode 200"));
  EXPECT_TRUE(walk.stream.do_decode(150));
  EXPECT_THAT(walk.calls(), IsEmpty());
}

TEST(StreamNavDecode, at_the_end_is_false_and_leaves_good_and_the_reader) {
  Walk walk(kThree);
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_FALSE(walk.stream.do_decode(400));
  EXPECT_THAT(walk.calls(), ElementsAre("decode 200", "decode 300"));
  EXPECT_TRUE(walk.stream.get_good());
  EXPECT_EQ(walk.file.open_handles(), 1);
  walk.stream.do_init(400);
  EXPECT_THAT(walk.calls(), IsEmpty());
}

TEST(StreamNavDecode, of_a_stream_that_is_not_storable_is_false) {
  RawStream stream;
  stream.set_logical_nav(std::make_unique<LogicalNavAny>());
  EXPECT_FALSE(stream.do_decode(0));
}

TEST(StreamNavTidy, closes_the_reader_of_its_own_transport_and_leaves_others) {
  const ScratchFile file(kThree, ".ncom");
  for (const auto transport : {Enum::TRANSPORT_TYPE_NAV, Enum::TRANSPORT_TYPE_RNG}) {
    RawStream stream(transport);
    stream.do_tidy();
    auto own = std::make_unique<LogicalNavAny>();
    own->set_file(file.path());
    own->enable();
    stream.set_logical_nav(std::move(own));
    stream.do_tidy();
    EXPECT_EQ(file.open_handles(), transport == Enum::TRANSPORT_TYPE_NAV ? 0 : 1);
  }
}

}  // namespace
}  // namespace Trel::Sto::Test
