#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Stream_fake.h"
#include "Stream_recordings.h"
#include "support/Support_Damage.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Calls = std::vector<std::string>;

constexpr nano_t kLowest = std::numeric_limits<nano_t>::min();

TEST(Stream, a_fresh_stream_has_no_ids_and_only_good_is_set) {
  const FakeStream stream(9, Enum::TRANSPORT_TYPE_OGG, Enum::CODEC_TYPE_CAN);
  EXPECT_EQ(stream.getTrans(), Enum::TRANSPORT_TYPE_OGG);
  EXPECT_EQ(stream.getCodec(), Enum::CODEC_TYPE_CAN);
  EXPECT_EQ(stream.getSerialId(), 9U);
  EXPECT_EQ(stream.getResourceId(), 0xFFFFFFFFU);
  EXPECT_EQ(stream.getStreamId(), 0xFFFFFFFFU);
  EXPECT_EQ(stream.getGroupId(), 0xFFFFFFFFU);
  EXPECT_EQ(stream.getGroupTag(), "*");
  EXPECT_FALSE(stream.is_captured());
  EXPECT_FALSE(stream.is_configured());
  EXPECT_FALSE(stream.is_storable());
  EXPECT_TRUE(stream.get_good());
  EXPECT_EQ(stream.get_indexer(), 0);
}

TEST(Stream, each_state_and_each_id_is_its_own) {
  FakeStream stream(9);
  stream.set_captured();
  EXPECT_TRUE(stream.is_captured() && !stream.is_configured() && !stream.is_storable());
  stream.set_configured();
  EXPECT_TRUE(stream.is_configured() && !stream.is_storable());
  stream.set_storable();
  EXPECT_TRUE(stream.is_storable());
  stream.setResourceId(1);
  stream.setStreamId(2);
  stream.setGroupId(3);
  EXPECT_EQ(stream.getResourceId(), 1U);
  EXPECT_EQ(stream.getStreamId(), 2U);
  EXPECT_EQ(stream.getGroupId(), 3U);
  EXPECT_EQ(stream.getSerialId(), 9U);
}

TEST(Stream, the_identifier_is_the_tag_of_the_initial_header) {
  const auto transport = Enum::TRANSPORT_TYPE_OGG;
  EXPECT_EQ(FakeStream(1, transport, Enum::CODEC_TYPE_UCOM).codec_identifier(), "[Trel-UCom]");
  EXPECT_EQ(FakeStream(1, transport, Enum::CODEC_TYPE_CAN).codec_identifier(), "[Trel-Can]");
}

TEST(StreamGroup, without_a_name_the_tag_is_the_resource_id) {
  FakeStream stream(1);
  stream.setResourceId(3);
  EXPECT_EQ(stream.obtain_group_tag_from_meta(), "");
  stream.set_group_tag();
  EXPECT_EQ(stream.getGroupTag(), "3");
}

TEST(StreamGroup, a_name_stands_ahead_of_the_resource_id) {
  FakeStream stream(1);
  stream.get_meta().append_aux_header(Com::Meta("{Trel-Grouping}\nGrouping=My car\n", true));
  stream.setResourceId(12);
  EXPECT_EQ(stream.obtain_group_tag_from_meta(), "My car");
  stream.set_group_tag();
  EXPECT_EQ(stream.getGroupTag(), "My car 12");
}

TEST(StreamGroup, a_header_without_the_key_or_with_an_empty_name_is_like_none) {
  for (const std::string blob : {"{Trel-Grouping}\nGroup=Car\n", "{Trel-Grouping}\nGrouping=\n"}) {
    FakeStream stream(1);
    stream.get_meta().append_aux_header(Com::Meta(blob, true));
    stream.setResourceId(0);
    stream.set_group_tag();
    EXPECT_EQ(stream.getGroupTag(), "0") << blob;
  }
}

TEST(StreamGroup, the_name_counts_only_in_the_header_of_that_tag) {
  FakeStream stream(1);
  stream.get_meta().append_aux_header(Com::Meta("{Trel-Range}\nGrouping=Car\n", true));
  EXPECT_EQ(stream.obtain_group_tag_from_meta(), "");
}

TEST(StreamQuery, fills_the_group_and_the_stream_records) {
  FakeStream stream(9, Enum::TRANSPORT_TYPE_OGG, Enum::CODEC_TYPE_NCOM);
  stream.setResourceId(4);
  stream.setStreamId(5);
  stream.setGroupId(6);
  stream.set_group_tag();
  stream.set_captured();
  stream.set_configured();
  stream.set_storable();
  stream.first = -100;
  stream.last = 200;
  StreamLeaf leaf;
  stream.query_stream(leaf);
  EXPECT_EQ(leaf.stream_id, 5U);
  EXPECT_EQ(leaf.serial_id, 9U);
  EXPECT_EQ(leaf.group_id, 6U);
  EXPECT_EQ(leaf.group_tag, "4");
  EXPECT_EQ(leaf.codec, Enum::CODEC_TYPE_NCOM);
  EXPECT_TRUE(leaf.captured && leaf.configured && leaf.storable);
  EXPECT_EQ(leaf.identifier, "");
  EXPECT_EQ(leaf.start, -100);
  EXPECT_EQ(leaf.end, 200);
  EXPECT_EQ(leaf.resource_id, 0xFFFFFFFFU);  // the resource's own to fill
}

TEST(StreamQuery, a_stream_that_is_not_storable_has_no_times) {
  FakeStream stream(9);
  stream.first = 100;
  stream.last = 200;
  StreamLeaf leaf;
  leaf.start = leaf.end = 1;
  stream.query_stream(leaf);
  EXPECT_FALSE(leaf.captured || leaf.configured || leaf.storable);
  EXPECT_EQ(leaf.start, 0);
  EXPECT_EQ(leaf.end, 0);
}

TEST(StreamClock, is_reached_at_its_time_and_before_it) {
  FakeStream stream(1);
  stream.set_storable();
  stream.cache_indexer(time_of(100), 0);
  EXPECT_TRUE(stream.test_indexer(99));
  EXPECT_TRUE(stream.test_indexer(100));
  EXPECT_FALSE(stream.test_indexer(101));
}

TEST(StreamClockDeathTest, of_a_stream_that_is_not_storable_stops_the_program) {
  FakeStream stream(1);
  EXPECT_DEATH(static_cast<void>(stream.test_indexer(0)),
               "Test : is_storable\\(\\)\n.*sto/Sto_Stream");
}

TEST(StreamClock, takes_a_good_time_be_it_later_or_earlier) {
  FakeStream stream(1);
  stream.cache_indexer(time_of(100), 0);
  EXPECT_EQ(stream.get_indexer(), 100);
  stream.cache_indexer(time_of(-50), 0);
  EXPECT_EQ(stream.get_indexer(), -50);
}

TEST(StreamClock, takes_a_time_that_is_timeless_otherwise) {
  FakeStream stream(1);
  stream.cache_indexer(time_of(100, Lib::Flags::Timeless), 0);
  EXPECT_EQ(stream.get_indexer(), 100);
}

TEST(StreamClock, does_not_move_for_a_time_that_is_not_good) {
  FakeStream stream(1);
  stream.cache_indexer(time_of(100), 0);
  using F = Lib::Flags;
  for (const auto flag :
       {F::Rejected, F::Invalid, F::Pass, F::Over, F::Under, F::Approx, F::Stale}) {
    stream.cache_indexer(time_of(200, flag), 0);
    EXPECT_EQ(stream.get_indexer(), 100) << static_cast<int>(flag);
  }
}

// Headers of one page, which is packet 0 of a walk, and each packet on a page of its own.
Bytes track(const std::vector<Bytes>& packets) {
  Recording recording;
  auto& stream = recording.stream(kSerial).codec("UCom").headers();
  for (const Bytes& packet : packets) stream.packet(packet).page();
  return recording.bytes();
}

// A storable stream with its reader on a file.
struct Walk {
  explicit Walk(const Bytes& bytes) : file(bytes), stream(kSerial) {
    auto own = std::make_unique<LogicalXCom>(kSerial);
    own->set_file(file.path());
    own->decoder().capture();
    own->rewind();
    stream.set_logical_xcom(std::move(own));
    stream.set_storable();
  }
  [[nodiscard]] LogicalXCom& reader() { return *stream.get_logical_xcom(); }
  // What was called since the last time.
  Calls calls() { return std::exchange(stream.calls, {}); }

  ScratchFile file;
  FakeStream stream;
};

const std::vector<Bytes> kThree = {timed(100), timed(200), timed(300)};

// 300 pages of 27 + 1 + 8 = 36 bytes: about 10 kB, so that the third read ends the file.
std::vector<Bytes> many() {
  std::vector<Bytes> packets;
  for (nano_t time = 1; time <= 300; ++time) packets.push_back(timed(time));
  return packets;
}

TEST(StreamInit, the_first_one_rewinds_whatever_the_time) {
  for (const nano_t t : {kLowest, nano_t{0}, nano_t{100}, nano_t{1000000}}) {
    Walk walk(track(kThree));
    EXPECT_TRUE(walk.stream.do_init(t));
    EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 100 at 1")) << t;
  }
}

TEST(StreamInit, decodes_the_first_packet_as_a_seek_and_is_good) {
  Walk walk(track(kThree));
  walk.stream.do_init(300);
  EXPECT_FALSE(walk.stream.good_at_rewind);
  EXPECT_TRUE(walk.stream.get_good());
  EXPECT_EQ(walk.stream.get_indexer(), 100);
  EXPECT_EQ(walk.file.open_handles(), 1);
}

TEST(StreamInit, reads_4096_bytes_at_a_time) {
  Walk walk(track(many()));
  walk.stream.do_init(1);
  EXPECT_EQ(walk.reader().position(), 4096U);
}

TEST(StreamInit, of_a_stream_that_is_not_storable_is_false_and_reads_nothing) {
  ScratchFile file(track(kThree));
  FakeStream stream(kSerial);
  auto reader = std::make_unique<LogicalXCom>(kSerial);
  reader->set_file(file.path());
  stream.set_logical_xcom(std::move(reader));
  EXPECT_FALSE(stream.do_init(0));
  EXPECT_THAT(stream.calls, IsEmpty());
  EXPECT_EQ(file.open_handles(), 0);
}

TEST(StreamInitDeathTest, without_a_reader_stops_the_program_storable_or_not) {
  FakeStream stream(1);
  EXPECT_DEATH(stream.do_init(0), "Test : logical_xcom\n.*sto/Sto_Stream");
}

TEST(StreamInit, at_the_target_or_above_goes_on_without_a_rewind) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.stream.do_seek(200);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_init(200));
  EXPECT_TRUE(walk.stream.do_init(201));
  EXPECT_THAT(walk.calls(), IsEmpty());
  EXPECT_EQ(walk.stream.get_indexer(), 200);
}

TEST(StreamInit, below_the_target_rewinds) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.stream.do_seek(200);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_init(199));
  EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 100 at 1"));
  EXPECT_EQ(walk.stream.get_indexer(), 100);
}

TEST(StreamInit, makes_the_clock_and_not_the_time_asked_for_the_target) {
  Walk walk(track(kThree));
  walk.stream.do_init(1000);
  walk.calls();
  walk.stream.do_init(100);
  EXPECT_THAT(walk.calls(), IsEmpty());
  walk.stream.do_init(99);
  EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 100 at 1"));
}

TEST(StreamInit, after_a_tidy_goes_on_with_the_next_packet) {
  Walk walk(track(many()));
  walk.stream.do_init(0);
  walk.stream.do_seek(200);  // within the second read
  walk.calls();
  walk.stream.do_tidy();
  EXPECT_EQ(walk.file.open_handles(), 0);
  walk.stream.do_init(200);
  EXPECT_EQ(walk.file.open_handles(), 1);
  walk.stream.do_seek(300);
  const Calls calls = walk.calls();
  ASSERT_EQ(calls.size(), 100U);
  EXPECT_EQ(calls.front(), "seek 201 at 201");
  EXPECT_EQ(calls.back(), "seek 300 at 300");
}

TEST(StreamInit, in_a_file_without_packets_is_true_and_not_good) {
  Walk walk(track({}));
  EXPECT_TRUE(walk.stream.do_init(50));
  EXPECT_FALSE(walk.stream.get_good());
  EXPECT_THAT(walk.calls(), ElementsAre("rewind"));
  walk.stream.do_init(0);  // the clock stands at 0, and so does the target
  EXPECT_THAT(walk.calls(), IsEmpty());
}

TEST(StreamInit, after_the_end_a_rewind_makes_good_true_again_at_the_first_packet) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  EXPECT_FALSE(walk.stream.do_seek(301));
  EXPECT_FALSE(walk.stream.get_good());
  EXPECT_TRUE(walk.stream.do_init(0));
  EXPECT_TRUE(walk.stream.get_good());
  EXPECT_EQ(walk.stream.get_indexer(), 100);
}

TEST(StreamInit, without_a_rewind_leaves_good_as_it_is) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.stream.do_seek(301);
  EXPECT_TRUE(walk.stream.do_init(301));
  EXPECT_FALSE(walk.stream.get_good());
}

TEST(StreamInit, a_hole_ahead_of_the_first_packet_reads_on_and_so_ends_in_a_short_file) {
  Walk walk(Support::drop_page(track(kThree), 1));
  EXPECT_TRUE(walk.stream.do_init(0));
  EXPECT_FALSE(walk.stream.get_good());
  EXPECT_THAT(walk.calls(), ElementsAre("rewind"));
}

TEST(StreamInit, a_hole_ahead_of_the_first_packet_is_passed_over_in_a_longer_file) {
  Walk walk(Support::drop_page(track(many()), 1));
  EXPECT_TRUE(walk.stream.do_init(0));
  EXPECT_TRUE(walk.stream.get_good());
  EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 2 at 2"));  // the hole was packet 1
  EXPECT_EQ(walk.reader().position(), 2 * 4096U);
}

TEST(StreamSeek, stops_at_the_first_packet_that_reaches_the_time) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_seek(101));
  EXPECT_THAT(walk.calls(), ElementsAre("seek 200 at 2"));
  EXPECT_EQ(walk.stream.get_indexer(), 200);  // beyond what was asked for
}

TEST(StreamSeek, with_the_clock_there_already_reads_nothing) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_seek(100));
  EXPECT_TRUE(walk.stream.do_seek(-1));
  EXPECT_THAT(walk.calls(), IsEmpty());
}

TEST(StreamSeek, makes_the_time_asked_for_the_target) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.stream.do_seek(150);
  walk.calls();
  walk.stream.do_init(150);
  EXPECT_THAT(walk.calls(), IsEmpty());
  walk.stream.do_init(149);
  EXPECT_EQ(walk.calls().front(), "rewind");
}

TEST(StreamSeek, past_the_end_is_false_and_closes_the_reader) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  EXPECT_FALSE(walk.stream.do_seek(301));
  EXPECT_FALSE(walk.stream.get_good());
  EXPECT_EQ(walk.file.open_handles(), 0);
  EXPECT_EQ(walk.stream.get_indexer(), 300);
}

TEST(StreamSeek, not_good_is_false_at_once_and_leaves_the_reader_and_yet_sets_the_target) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.calls();
  walk.stream.set_good(false);
  EXPECT_FALSE(walk.stream.do_seek(50));  // the clock is past that
  EXPECT_THAT(walk.calls(), IsEmpty());
  EXPECT_EQ(walk.file.open_handles(), 1);
  walk.stream.do_init(50);
  EXPECT_THAT(walk.calls(), IsEmpty());
  walk.stream.do_init(49);
  EXPECT_EQ(walk.calls().front(), "rewind");
}

TEST(StreamSeek, a_hole_in_the_last_read_ends_the_walk_with_packets_left) {
  Walk walk(Support::drop_page(track(kThree), 2));
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_FALSE(walk.stream.do_seek(300));
  EXPECT_THAT(walk.calls(), IsEmpty());
  EXPECT_FALSE(walk.stream.get_good());
  EXPECT_TRUE(walk.stream.do_decode(300));
  EXPECT_THAT(walk.calls(), ElementsAre("decode 300 at 3"));  // the hole was packet 2
}

TEST(StreamSeek, a_hole_with_file_left_is_passed_over) {
  Walk walk(Support::drop_page(track(many()), 50));
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_seek(300));
  const Calls calls = walk.calls();
  ASSERT_EQ(calls.size(), 298U);  // 300, without the one lost and the one of do_init
  EXPECT_EQ(calls[47], "seek 49 at 49");
  EXPECT_EQ(calls[48], "seek 51 at 51");
  EXPECT_EQ(walk.reader().decoder().get_holes().payload, 1U);
}

TEST(StreamSeek, a_stream_that_is_dead_ends_like_one_without_packets) {
  Recording recording;
  auto& stream = recording.stream(kSerial).codec("UCom").declare_headers("1").headers();
  stream.raw_page({11}, bytes_of("[Trel-UCom]"), Support::kInitial);  // where a header should be
  for (const Bytes& packet : many()) stream.packet(packet).page();
  Walk walk(recording.bytes());
  EXPECT_TRUE(walk.stream.do_init(0));
  EXPECT_EQ(walk.reader().decoder().get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
  EXPECT_FALSE(walk.stream.get_good());
  EXPECT_THAT(walk.calls(), ElementsAre("rewind"));
  EXPECT_EQ(walk.reader().position(), walk.reader().size());
}

TEST(StreamSeekDeathTest, of_a_good_stream_that_is_not_storable_stops_the_program) {
  FakeStream stream(kSerial);
  stream.set_logical_xcom(std::make_unique<LogicalXCom>(kSerial));
  EXPECT_DEATH(stream.do_seek(0), "Test : is_storable\\(\\)\n.*sto/Sto_Stream");
}

TEST(StreamDecode, goes_on_from_the_seek_and_stops_at_the_first_packet_that_reaches_the_time) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.stream.do_seek(100);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_decode(150));
  EXPECT_THAT(walk.calls(), ElementsAre("decode 200 at 2"));
}

TEST(StreamDecode, with_the_clock_there_already_reads_nothing) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_decode(100));
  EXPECT_THAT(walk.calls(), IsEmpty());
}

TEST(StreamDecode, packets_without_a_good_time_never_move_the_clock) {
  Walk walk(track({timed(100), untimed(), untimed(), untimed(), timed(200)}));
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_TRUE(walk.stream.do_decode(101));
  EXPECT_THAT(walk.calls(),
              ElementsAre("decode ? at 2", "decode ? at 3", "decode ? at 4", "decode 200 at 5"));
}

TEST(StreamDecode, sets_the_target_when_it_arrives) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.stream.do_decode(150);
  walk.calls();
  walk.stream.do_init(150);
  EXPECT_THAT(walk.calls(), IsEmpty());
  walk.stream.do_init(149);
  EXPECT_EQ(walk.calls().front(), "rewind");
}

TEST(StreamDecode, at_the_end_is_false_and_leaves_good_and_the_reader) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_FALSE(walk.stream.do_decode(400));
  EXPECT_THAT(walk.calls(), ElementsAre("decode 200 at 2", "decode 300 at 3"));
  EXPECT_TRUE(walk.stream.get_good());
  EXPECT_EQ(walk.file.open_handles(), 1);
  walk.stream.do_init(400);
  EXPECT_THAT(walk.calls(), IsEmpty());
  walk.stream.do_init(399);
  EXPECT_EQ(walk.calls().front(), "rewind");
}

TEST(StreamDecode, does_not_look_at_good) {
  Walk walk(track(kThree));
  walk.stream.do_init(0);
  walk.stream.set_good(false);
  EXPECT_TRUE(walk.stream.do_decode(300));
  EXPECT_EQ(walk.stream.get_indexer(), 300);
}

TEST(StreamDecode, a_hole_in_the_last_read_ends_one_step_and_the_next_goes_on) {
  Walk walk(Support::drop_page(track(kThree), 2));
  walk.stream.do_init(0);
  walk.calls();
  EXPECT_FALSE(walk.stream.do_decode(200));
  EXPECT_THAT(walk.calls(), IsEmpty());
  EXPECT_TRUE(walk.stream.do_decode(200));
  EXPECT_THAT(walk.calls(), ElementsAre("decode 300 at 3"));
}

TEST(StreamDecode, of_a_stream_that_is_not_storable_is_false) {
  FakeStream stream(kSerial);
  stream.set_logical_xcom(std::make_unique<LogicalXCom>(kSerial));
  EXPECT_FALSE(stream.do_decode(0));
}

TEST(StreamWalk, takes_several_packets_of_a_page_and_packets_over_several_pages) {
  Recording recording;
  auto& stream = recording.stream(kSerial).codec("UCom").headers();
  stream.packet(timed(100)).packet(timed(200)).page();
  stream.segments_per_page(1).packet(Bytes(600, 'x')).page().packet(timed(300)).page();
  Walk walk(recording.bytes());
  walk.stream.do_init(0);
  EXPECT_TRUE(walk.stream.do_decode(300));
  EXPECT_THAT(walk.calls(), ElementsAre("rewind", "seek 100 at 1", "decode 200 at 2",
                                        "decode ? at 3", "decode 300 at 4"));
}

TEST(StreamWalk, on_a_transport_without_a_reader_is_false) {
  for (const auto transport : {Enum::TRANSPORT_TYPE_NONE, Enum::TRANSPORT_TYPE_PRE,
                               Enum::TRANSPORT_TYPE_UMAC, Enum::TRANSPORT_TYPE_UNKNOWN}) {
    FakeStream stream(kSerial, transport);
    stream.set_storable();
    EXPECT_FALSE(stream.do_init(0));
    EXPECT_FALSE(stream.do_seek(0));
    EXPECT_FALSE(stream.do_decode(0));
    EXPECT_THAT(stream.calls, IsEmpty());
  }
}

TEST(StreamTidy, closes_the_reader_of_its_own_transport_and_leaves_others) {
  const ScratchFile file(track(kThree));
  for (const auto transport : {Enum::TRANSPORT_TYPE_OGG, Enum::TRANSPORT_TYPE_NONE}) {
    FakeStream stream(kSerial, transport);
    auto reader = std::make_unique<LogicalXCom>(kSerial);
    reader->set_file(file.path());
    reader->enable();
    stream.set_logical_xcom(std::move(reader));
    stream.do_tidy();
    EXPECT_EQ(file.open_handles(), transport == Enum::TRANSPORT_TYPE_OGG ? 0 : 1);
  }
}

}  // namespace
}  // namespace Trel::Sto::Test
