#include "sto/Sto_ResourceRng.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "RangeStream_fake.h"
#include "RawFile_opened.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using Calls = std::vector<std::string>;
using Serials = std::vector<unsigned int>;
using Values = std::map<std::string, std::string>;

constexpr nano_t kLowest = std::numeric_limits<nano_t>::min();
constexpr nano_t kHighest = std::numeric_limits<nano_t>::max();

// One whose last pass leaves no header about the range.
struct BareRange : RangeStream {
  using RangeStream::RangeStream;
  bool has_header() const override { return false; }
};

// One that is storable though it has no reader.
struct LostRange : RangeStream {
  using RangeStream::RangeStream;
  void postscan_tidy() override { set_storable(); }
};

const std::array kRangeKinds = {ResourceRng::StreamKind{".rcom", make_stream<RangeStream>},
                                ResourceRng::StreamKind{".bare", make_stream<BareRange>},
                                ResourceRng::StreamKind{".lost", make_stream<LostRange>}};

const ResourceRng::Kinds kKinds{kRangeKinds, make_stream<WrappedStream>, [](const Stream& stream) {
                                  return dynamic_cast<const RangeStream&>(stream).told;
                                }};

struct OpenedRange : OpenedFile<ResourceRng, RangeFake> {
  explicit OpenedRange(const Bytes& bytes, const std::string& extension = ".rcom",
                       unsigned long long progress_bytes = 1048576)
      : OpenedFile(kKinds, bytes, extension, progress_bytes) {}

  // The items of one of a stream's headers; none, when it does not have it.
  [[nodiscard]] Values header(const std::string& tag, unsigned int serial = 0) const {
    const Com::Meta* found = stream(serial).get_meta().find_aux_header(tag);
    return found == nullptr ? Values() : found->get_values();
  }
  [[nodiscard]] Values range(unsigned int serial = 0) const {
    return header("{Trel-Range}", serial);
  }
};

// The six pairs of messages that every range file sends.
std::vector<Progress> six_passes() {
  std::vector<Progress> expected;
  for (const auto msg : {Enum::DATA_STORE_MSG_INIT, Enum::DATA_STORE_MSG_PRESCAN,
                         Enum::DATA_STORE_MSG_POSTSCAN, Enum::DATA_STORE_MSG_INIT2,
                         Enum::DATA_STORE_MSG_PRESCAN2, Enum::DATA_STORE_MSG_POSTSCAN2}) {
    expected.push_back({msg, 0});
    expected.push_back({msg, 100});
  }
  return expected;
}

TEST(ResourceRng, without_sources_has_the_one_stream_of_serial_0) {
  OpenedRange opened(join({timed_range(100), wrapped(7, 0, 110), timed_range(200)}));
  EXPECT_THAT(opened.serials(), ElementsAre(0));
  EXPECT_EQ(opened.resource().getTrans(), Enum::TRANSPORT_TYPE_RNG);
  EXPECT_EQ(opened.stream().getTrans(), Enum::TRANSPORT_TYPE_RNG);
  EXPECT_EQ(opened.stream().getSerialId(), 0U);
  EXPECT_EQ(opened.progress(), six_passes());
}

TEST(ResourceRng, makes_up_the_headers_that_a_recording_would_have) {
  const OpenedRange opened(join({timed_range(100), tells_slot(0, 7, 0)}));
  EXPECT_EQ(opened.stream(0).get_meta().initial.get_tag(), "[Trel-RCom]");
  EXPECT_EQ(opened.stream(0).get_meta().footer.get_tag(), "[Trel-RCom]");
  EXPECT_EQ(opened.stream(7).get_meta().initial.get_tag(), "[Trel-NCom]");
  EXPECT_EQ(opened.stream(7).get_meta().footer.get_tag(), "[Trel-NCom]");
}

TEST(ResourceRng, every_stream_is_captured_and_then_configured) {
  const OpenedRange opened(join({timed_range(100), tells_slot(0, 7, 0)}));
  for (const unsigned int serial : {0U, 7U}) {
    EXPECT_TRUE(opened.stream(serial).is_captured());
    EXPECT_TRUE(opened.stream(serial).was_captured);
    EXPECT_EQ(opened.stream(serial).calls.front(), "configure");
  }
}

TEST(ResourceRng, an_extension_that_is_not_known_makes_no_stream) {
  OpenedRange opened(timed_range(100), ".range");
  EXPECT_THAT(opened.serials(), IsEmpty());
  EXPECT_EQ(opened.resource().get_start(), kHighest);
  EXPECT_EQ(opened.resource().get_end(), 0);
  EXPECT_EQ(opened.progress(), six_passes());
}

TEST(ResourceRng, a_file_that_cannot_be_opened_leaves_a_stream_without_packets) {
  const Options settings = options();
  ResourceRng resource(settings, "/nonexistent/drive.rcom", nullptr, kKinds);
  ASSERT_EQ(resource.getStreams().size(), 1U);
  EXPECT_FALSE(resource.getStreams().at(0)->is_storable());
}

TEST(ResourceRng, the_first_passes_see_range_data_and_wrappers) {
  const OpenedRange opened(join({timed_range(100), wrapped(7, 0, 110), timed_range(200)}));
  EXPECT_THAT(opened.stream().calls,
              ElementsAre("configure", "prescan 100", "prescan ?", "prescan 200", "prescan tidy",
                          "postscan 100", "postscan ?", "postscan 200", "postscan tidy"));
}

TEST(ResourceRng, a_pass_ends_with_the_packet_that_is_enough_for_it) {
  const OpenedRange opened(join({timed_range(100), timed_range(200, kEndsRangePrescan),
                                 timed_range(300, kEndsRangePostscan), timed_range(400)}));
  EXPECT_THAT(opened.stream().calls,
              ElementsAre("configure", "prescan 100", "prescan 200", "prescan tidy", "postscan 100",
                          "postscan 200", "postscan 300", "postscan tidy"));
}

TEST(ResourceRng, the_range_streams_reader_begins_at_the_first_range_data_not_at_a_wrapper) {
  const OpenedRange opened(join({junk(3000), wrapped(7, 0, 50), timed_range(100)}));
  ASSERT_NE(opened.stream().get_logical_rng(), nullptr);
  EXPECT_EQ(opened.stream().get_logical_rng()->start(), 3082U);
}

TEST(ResourceRng, the_range_streams_reader_ends_at_the_last_read_that_delivered_range_data) {
  Bytes file = timed_range(100);                                         // 8 bytes
  for (int n = 0; n < 60; ++n) file = join({file, wrapped(7, 0, 110)});  // to 4928, in three reads
  const OpenedRange opened(file);
  EXPECT_EQ(opened.stream().get_logical_rng()->finish(), 2048U);
}

TEST(ResourceRng,
     wrappers_alone_leave_the_range_stream_without_a_reader_and_are_seen_all_the_same) {
  const OpenedRange opened(join({wrapped(7, 0, 110), wrapped(7, 0, 120)}));
  EXPECT_EQ(opened.stream().get_logical_rng(), nullptr);
  EXPECT_THAT(opened.stream().calls,
              ElementsAre("configure", "prescan ?", "prescan ?", "prescan tidy", "postscan ?",
                          "postscan ?", "postscan tidy"));
  EXPECT_FALSE(opened.stream().do_init(0));
}

TEST(ResourceRng, a_file_without_a_packet_leaves_the_stream_without_a_reader) {
  OpenedRange opened(junk(5000));
  EXPECT_EQ(opened.stream().get_logical_rng(), nullptr);
  EXPECT_THAT(opened.stream().calls, ElementsAre("configure", "prescan tidy", "postscan tidy"));
  EXPECT_FALSE(opened.stream().is_storable());
  EXPECT_FALSE(opened.stream().do_init(0));
  EXPECT_EQ(opened.progress(), six_passes());
}

TEST(ResourceRngSources, a_source_is_numbered_by_its_address_or_else_by_its_provenance) {
  const OpenedRange opened(
      join({timed_range(100), tells_slot(0, 0x0A000001, 0), tells_slot(2, 0, 5)}));
  EXPECT_THAT(opened.serials(), ElementsAre(0, 5, 0x0A000001));
  EXPECT_EQ(opened.stream(5).getCodec(), Enum::CODEC_TYPE_NCOM);
  EXPECT_EQ(opened.stream(5).getTrans(), Enum::TRANSPORT_TYPE_RNG);
  EXPECT_THAT(opened.range(), ElementsAre(Pair("Codec.NCom.Index.0.XCom.Serial", "167772161"),
                                          Pair("Codec.NCom.Index.2.XCom.Serial", "5"),
                                          Pair("Codec.NCom.Indices", "0 2")));
}

TEST(ResourceRngSources, a_wrapped_stream_tells_what_it_belongs_to) {
  const OpenedRange opened(join({timed_range(100), tells_slot(0, 7, 0)}));
  EXPECT_THAT(opened.range(7),
              ElementsAre(Pair("Codec.RCom.XCom.Serial", "0"), Pair("Range.XCom.Serial", "0")));
}

TEST(ResourceRngSources, all_eight_slots_may_be_filled) {
  Bytes file = timed_range(100);
  for (unsigned char slot = 0; slot < 8; ++slot) {
    file = join({file, tells_slot(slot, 10U + slot, 0)});
  }
  const OpenedRange opened(file);
  EXPECT_THAT(opened.serials(), ElementsAre(0, 10, 11, 12, 13, 14, 15, 16, 17));
  EXPECT_EQ(opened.range().at("Codec.NCom.Indices"), "0 1 2 3 4 5 6 7");
}

TEST(ResourceRngSources, two_slots_of_one_number_share_a_stream_and_have_an_index_each) {
  const OpenedRange opened(join({timed_range(100), tells_slot(1, 0, 5), tells_slot(4, 5, 0),
                                 tells_hunter(5), wrapped(5, 0, 110)}));
  EXPECT_THAT(opened.serials(), ElementsAre(0, 5));
  EXPECT_EQ(opened.range().at("Codec.NCom.Index.1.XCom.Serial"), "5");
  EXPECT_EQ(opened.range().at("Codec.NCom.Index.4.XCom.Serial"), "5");
  EXPECT_EQ(opened.range().at("Codec.NCom.Indices"), "1 4");
  // the address is the second slot's, and the one header of the stream knows of it
  EXPECT_EQ(opened.range(5).at("WhoAmI"), "Hunter");
  EXPECT_EQ(opened.stream(5).get_meta().auxiliary.size(), 2U);  // and that of the scan
  EXPECT_THAT(opened.stream(5).calls, ElementsAre("configure", "prescan 110", "prescan tidy",
                                                  "postscan 110", "postscan tidy"));
}

TEST(ResourceRngSources, the_number_0_is_taken_by_the_range_data) {
  const OpenedRange opened(join({timed_range(100), tells_slot(3, 0, 0)}));
  EXPECT_THAT(opened.serials(), ElementsAre(0));
  EXPECT_EQ(opened.stream().getCodec(), Enum::CODEC_TYPE_RCOM);
  EXPECT_THAT(opened.range(), ElementsAre(Pair("Codec.NCom.Index.3.XCom.Serial", "0"),
                                          Pair("Codec.NCom.Indices", "3")));
}

TEST(ResourceRngSources, the_hunter_and_the_targets_are_known_by_address) {
  const OpenedRange opened(
      join({timed_range(100), tells_slot(0, 20, 0), tells_slot(1, 21, 0), tells_slot(2, 22, 0),
            tells_hunter(21), tells_target(1, 22), tells_target(4, 20)}));
  EXPECT_EQ(opened.range(21).at("WhoAmI"), "Hunter");
  EXPECT_EQ(opened.range(22).at("WhoAmI"), "Target 1");
  EXPECT_EQ(opened.range(20).at("WhoAmI"), "Target 4");
  EXPECT_THAT(
      opened.range(),
      ElementsAre(Pair("Codec.NCom.Index.0.XCom.Serial", "20"),
                  Pair("Codec.NCom.Index.1.XCom.Serial", "21"),
                  Pair("Codec.NCom.Index.2.XCom.Serial", "22"), Pair("Codec.NCom.Indices", "0 1 2"),
                  Pair("Hunter.XCom.Serial", "21"), Pair("Target.Index.0.XCom.Serial", "22"),
                  Pair("Target.Index.3.XCom.Serial", "20"),
                  Pair("Target.Indices", "3 0")));  // by slot
}

TEST(ResourceRngSources, one_source_may_be_hunter_and_several_targets) {
  const OpenedRange opened(join({timed_range(100), tells_slot(0, 20, 0), tells_hunter(20),
                                 tells_target(2, 20), tells_target(3, 20)}));
  EXPECT_EQ(opened.range().at("Hunter.XCom.Serial"), "20");
  EXPECT_EQ(opened.range().at("Target.Indices"), "1 2");
  EXPECT_EQ(opened.range(20).at("WhoAmI"), "Target 3");  // the last one stays
}

TEST(ResourceRngSources, a_source_without_an_address_is_neither_hunter_nor_target) {
  const OpenedRange opened(
      join({timed_range(100), tells_slot(0, 0, 5), tells_hunter(5), tells_target(1, 5)}));
  EXPECT_FALSE(opened.range(5).contains("WhoAmI"));
  EXPECT_FALSE(opened.range().contains("Hunter.XCom.Serial"));
  EXPECT_FALSE(opened.range().contains("Target.Indices"));
}

TEST(ResourceRngSources, an_address_without_a_source_is_not_noted) {
  const OpenedRange opened(join({timed_range(100), tells_hunter(20), tells_target(1, 21)}));
  EXPECT_THAT(opened.range(), IsEmpty());
}

TEST(ResourceRngSources, without_a_header_of_the_range_data_streams_are_made_all_the_same) {
  const OpenedRange opened(join({timed_range(100), tells_slot(0, 20, 0), tells_hunter(20)}),
                           ".bare");
  EXPECT_THAT(opened.serials(), ElementsAre(0, 20));
  EXPECT_THAT(opened.range(), IsEmpty());
  EXPECT_FALSE(opened.range(20).contains("WhoAmI"));
}

TEST(ResourceRngWrapped, each_stream_sees_its_own_packets) {
  const OpenedRange opened(join({timed_range(100), tells_slot(0, 7, 0), tells_slot(1, 0, 5),
                                 wrapped(7, 0, 110), wrapped(0, 5, 115), wrapped(7, 0, 120)}));
  EXPECT_THAT(opened.stream(7).calls,
              ElementsAre("configure", "prescan 110", "prescan 120", "prescan tidy", "postscan 110",
                          "postscan 120", "postscan tidy"));
  EXPECT_THAT(opened.stream(5).calls, ElementsAre("configure", "prescan 115", "prescan tidy",
                                                  "postscan 115", "postscan tidy"));
}

TEST(ResourceRngWrapped, packets_of_a_source_that_is_not_known_are_passed_over) {
  const OpenedRange opened(
      join({timed_range(100), tells_slot(0, 7, 0), wrapped(8, 0, 105), wrapped(0, 0, 106),
            wrapped(0, 255, 107), Support::range_file_packet(3, {}), wrapped(7, 0, 110)}));
  EXPECT_THAT(opened.serials(), ElementsAre(0, 7));
  EXPECT_THAT(opened.stream(7).calls, ElementsAre("configure", "prescan 110", "prescan tidy",
                                                  "postscan 110", "postscan tidy"));
}

TEST(ResourceRngWrapped, a_stream_that_has_enough_is_given_no_more_while_others_are) {
  const OpenedRange opened(
      join({timed_range(100), tells_slot(0, 7, 0), tells_slot(1, 8, 0),
            wrapped(7, 0, 110, kEndsRangePrescan), wrapped(8, 0, 115),
            wrapped(7, 0, 120, kEndsRangePostscan), wrapped(8, 0, 125), wrapped(7, 0, 130)}));
  EXPECT_THAT(opened.stream(7).calls, ElementsAre("configure", "prescan 110", "prescan tidy",
                                                  "postscan 110", "postscan 120", "postscan tidy"));
  EXPECT_THAT(opened.stream(8).calls,
              ElementsAre("configure", "prescan 115", "prescan 125", "prescan tidy", "postscan 115",
                          "postscan 125", "postscan tidy"));
}

TEST(ResourceRngWrapped, each_reader_begins_at_its_own_first_packet_and_ends_at_its_own_last_read) {
  Bytes file = join({timed_range(100), tells_slot(0, 7, 0), tells_slot(1, 8, 0)});  // 30 bytes
  file = join({file, wrapped(8, 0, 105), wrapped(7, 0, 110)});
  for (int n = 0; n < 60; ++n) file = join({file, wrapped(8, 0, 120)});
  const OpenedRange opened(file);
  EXPECT_EQ(opened.stream(8).get_logical_rng()->start(), 30U);
  EXPECT_EQ(opened.stream(7).get_logical_rng()->start(), 112U);
  EXPECT_EQ(opened.stream(7).get_logical_rng()->finish(), 2048U);
  EXPECT_EQ(opened.stream(8).get_logical_rng()->finish(), file.size());
  EXPECT_EQ(opened.file().open_handles(), 1);  // the resource's own alone
}

TEST(ResourceRngWrapped, a_source_without_packets_leaves_a_stream_without_a_reader) {
  const OpenedRange opened(join({timed_range(100), tells_slot(0, 7, 0)}));
  EXPECT_EQ(opened.stream(7).get_logical_rng(), nullptr);
  EXPECT_FALSE(opened.stream(7).is_storable());
  EXPECT_THAT(opened.stream(7).calls, ElementsAre("configure", "prescan tidy", "postscan tidy"));
}

TEST(ResourceRng, the_span_is_that_of_all_streams) {
  OpenedRange opened(join({timed_range(100), tells_slot(0, 7, 0), wrapped(7, 0, 90),
                           timed_range(200), wrapped(7, 0, 210)}));
  EXPECT_EQ(opened.resource().get_start(), 90);
  EXPECT_EQ(opened.resource().get_end(), 210);
}

TEST(ResourceRng, sends_the_position_in_each_scan_once_it_has_moved_on_far_enough) {
  Bytes file = join({timed_range(100), tells_slot(0, 7, 0)});            // 19 bytes
  for (int n = 0; n < 80; ++n) file = join({file, wrapped(7, 0, 110)});  // 6579: read at 2048, ...
  OpenedRange opened(file, ".rcom", 3000);
  std::vector<Progress> expected;
  for (const Progress& each : six_passes()) {
    const bool scan =
        each.message != Enum::DATA_STORE_MSG_INIT && each.message != Enum::DATA_STORE_MSG_INIT2;
    if (scan && each.percent == 100) expected.push_back({each.message, share(4096, file.size())});
    expected.push_back(each);
  }
  EXPECT_EQ(opened.progress(), expected);
}

TEST(ResourceRng, its_streams_walk_after_the_scans) {
  const OpenedRange opened(join({junk(10), timed_range(100), tells_slot(0, 7, 0),
                                 wrapped(7, 0, 110), timed_range(200), wrapped(7, 0, 210)}));
  for (const unsigned int serial : {0U, 7U}) {
    RangeFake& stream = opened.stream(serial);
    stream.calls.clear();
    EXPECT_TRUE(stream.do_init(0));
    EXPECT_TRUE(stream.do_seek(100));
    EXPECT_TRUE(stream.do_decode(150));
  }
  EXPECT_THAT(opened.stream(0).calls, ElementsAre("rewind", "seek 100", "decode ?", "decode 200"));
  EXPECT_THAT(opened.stream(7).calls, ElementsAre("rewind", "seek 110", "decode 210"));
}

TEST(ResourceRng, storing_translates_serial_numbers_into_stream_ids) {
  OpenedRange opened(join({timed_range(100), tells_slot(0, 20, 0), tells_slot(5, 21, 0),
                           tells_hunter(21), tells_target(3, 20)}));
  opened.stream(0).setStreamId(30);
  opened.stream(20).setStreamId(31);
  opened.stream(21).setStreamId(32);
  opened.resource().do_store();
  EXPECT_THAT(
      opened.header("{Trel-StreamScan}"),
      ElementsAre(Pair("Range.Codec.NCom.Index.0.Stream", "31"),
                  Pair("Range.Codec.NCom.Index.5.Stream", "32"),
                  Pair("Range.Codec.NCom.Indices", "0 5"), Pair("Range.Hunter.Stream", "32"),
                  Pair("Range.Target.Index.2.Stream", "31"), Pair("Range.Target.Indices", "2")));
  EXPECT_THAT(opened.header("{Trel-StreamScan}", 20),
              ElementsAre(Pair("Range.Codec.RCom.Stream", "30"), Pair("Range.Range.Stream", "30")));
}

// The range data tell of source 7 alone.
const Bytes kSlot = tells_slot(0, 7, 0);
const Bytes kDrive = join({junk(50), timed_range(100), kSlot, wrapped(7, 0, 110),
                           wrapped(8, 0, 111), timed_range(200), junk(7), wrapped(7, 0, 210),
                           timed_range(300), wrapped(7, 0, 310), wrapped(7, 0, 320), junk(30)});

TEST(ResourceRngExport, writes_each_streams_packets_of_the_span_in_the_order_of_the_file) {
  OpenedRange opened(kDrive);
  const ExportedFile exported(opened, 110, 300);
  EXPECT_TRUE(exported.done());
  EXPECT_EQ(exported.bytes(),
            join({wrapped(7, 0, 110), timed_range(200), wrapped(7, 0, 210), timed_range(300)}));
}

TEST(ResourceRngExport, takes_range_data_without_a_time_along) {
  OpenedRange opened(kDrive);
  EXPECT_EQ(ExportedFile(opened, 100, 105).bytes(), join({timed_range(100), kSlot}));
}

TEST(ResourceRngExport, limits_the_span_to_the_resources_own_and_leaves_unknown_sources_out) {
  OpenedRange opened(kDrive);
  EXPECT_EQ(ExportedFile(opened, kLowest, kHighest).bytes(),
            join({timed_range(100), kSlot, wrapped(7, 0, 110), timed_range(200), wrapped(7, 0, 210),
                  timed_range(300), wrapped(7, 0, 310), wrapped(7, 0, 320)}));
}

TEST(ResourceRngExport, a_stream_that_has_ended_gives_nothing) {
  OpenedRange opened(kDrive);
  EXPECT_EQ(ExportedFile(opened, 311, 320).bytes(), wrapped(7, 0, 320));
}

TEST(ResourceRngExport, may_come_in_any_order_and_after_any_walk) {
  OpenedRange opened(kDrive);
  opened.stream().do_init(0);
  opened.stream().do_seek(1000);
  EXPECT_EQ(ExportedFile(opened, 250, 300).bytes(), timed_range(300));
  EXPECT_EQ(ExportedFile(opened, 100, 104).bytes(), join({timed_range(100), kSlot}));
  EXPECT_EQ(ExportedFile(opened, 150, 205).bytes(), timed_range(200));
}

TEST(ResourceRngExport, what_is_exported_opens_again) {
  OpenedRange opened(kDrive);
  OpenedRange again(ExportedFile(opened, kLowest, kHighest).bytes());
  EXPECT_THAT(again.serials(), ElementsAre(0, 7));
  EXPECT_EQ(again.resource().get_start(), opened.resource().get_start());
  EXPECT_EQ(again.resource().get_end(), opened.resource().get_end());
}

TEST(ResourceRngExport, a_span_outside_the_resources_own_is_false_and_touches_no_file) {
  OpenedRange opened(kDrive);
  for (const auto& [from, to] : {std::pair{0, 99}, {321, 600}, {300, 200}}) {
    const ExportedFile exported(opened, from, to);
    EXPECT_FALSE(exported.done());
    EXPECT_EQ(exported.bytes(), bytes_of("old"));
  }
}

TEST(ResourceRngExport, of_a_resource_without_packets_is_false) {
  OpenedRange empty(junk(100));
  EXPECT_FALSE(ExportedFile(empty, kLowest, kHighest).done());
}

TEST(ResourceRngExport, onto_the_resources_own_file_is_false_and_leaves_it) {
  OpenedRange opened(kDrive);
  EXPECT_FALSE(opened.resource().do_export(opened.file().path(), 100, 500));
  EXPECT_EQ(Support::read_file(opened.file().path()), kDrive);
}

TEST(ResourceRngExport, leaves_the_streams_readers_closed) {
  OpenedRange opened(kDrive);
  ASSERT_TRUE(ExportedFile(opened, 100, 200).done());
  EXPECT_EQ(opened.file().open_handles(), 1);  // the resource's own
}

TEST(ResourceRngExportDeathTest, of_a_storable_stream_without_a_reader_stops_the_program) {
  OpenedRange opened(junk(100), ".lost");
  EXPECT_DEATH(ExportedFile(opened, 0, 0), "Test : stream->logical_rng\n.*sto/Sto_ResourceRng");
}

}  // namespace
}  // namespace Trel::Sto::Test
