#include "sto/Sto_ResourceNav.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "RawFile_opened.h"
#include "RawStream_fake.h"

namespace Trel::Sto::Test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr nano_t kLowest = std::numeric_limits<nano_t>::min();
constexpr nano_t kHighest = std::numeric_limits<nano_t>::max();

template <class S>
std::unique_ptr<Stream> make(Enum::TRANSPORT_TYPE transport, unsigned int serial) {
  return std::make_unique<S>(transport, serial);
}

// A stream that is storable though it has no reader.
struct LostStream : RawStream {
  using RawStream::RawStream;
  void postscan_tidy() override { set_storable(); }
};

constexpr std::array<ResourceNav::StreamKind, 2> kKinds = {{
    {".ncom", make<RawStream>},
    {".lost", make<LostStream>},
}};

struct OpenedRaw : OpenedFile<ResourceNav, RawStream> {
  explicit OpenedRaw(const Bytes& bytes, const std::string& extension = ".ncom",
                     unsigned long long progress_bytes = 1048576)
      : OpenedFile(kKinds, bytes, extension, progress_bytes) {}
};

TEST(ResourceNav, makes_one_stream_of_serial_0_on_its_own_transport) {
  OpenedRaw opened(at(100));
  ASSERT_EQ(opened.serials().size(), 1U);
  EXPECT_EQ(opened.resource().getTrans(), Enum::TRANSPORT_TYPE_NAV);
  EXPECT_EQ(opened.stream().getTrans(), Enum::TRANSPORT_TYPE_NAV);
  EXPECT_EQ(opened.stream().getSerialId(), 0U);
}

TEST(ResourceNav, makes_up_the_headers_that_a_recording_would_have) {
  const OpenedRaw opened(at(100));
  EXPECT_EQ(opened.stream().get_meta().initial.get_tag(), "[Trel-NCom]");
  EXPECT_EQ(opened.stream().get_meta().footer.get_tag(), "[Trel-NCom]");
  EXPECT_THAT(opened.stream().get_meta().auxiliary, IsEmpty());
}

TEST(ResourceNav, the_stream_is_captured_and_then_configured) {
  const OpenedRaw opened(at(100));
  EXPECT_TRUE(opened.stream().is_captured());
  EXPECT_TRUE(opened.stream().was_captured);
  EXPECT_EQ(opened.stream().calls.front(), "configure");
}

TEST(ResourceNav, an_extension_is_taken_in_any_case) {
  EXPECT_EQ(OpenedRaw(at(100), ".NCom").serials().size(), 1U);
}

TEST(ResourceNav, an_extension_that_is_not_known_makes_no_stream) {
  OpenedRaw opened(at(100), ".nav");
  EXPECT_EQ(opened.serials().size(), 0U);
  EXPECT_EQ(opened.resource().get_start(), kHighest);
  EXPECT_EQ(opened.resource().get_end(), 0);
  EXPECT_THAT(opened.progress(), ElementsAre(Progress{Enum::DATA_STORE_MSG_INIT, 0},
                                             Progress{Enum::DATA_STORE_MSG_INIT, 100},
                                             Progress{Enum::DATA_STORE_MSG_PRESCAN, 0},
                                             Progress{Enum::DATA_STORE_MSG_PRESCAN, 100},
                                             Progress{Enum::DATA_STORE_MSG_POSTSCAN, 0},
                                             Progress{Enum::DATA_STORE_MSG_POSTSCAN, 100}));
}

TEST(ResourceNav, a_file_that_cannot_be_opened_leaves_a_stream_without_packets) {
  const Options settings = options();
  ResourceNav resource(settings, "/nonexistent/drive.ncom", nullptr, kKinds);
  ASSERT_EQ(resource.getStreams().size(), 1U);
  EXPECT_FALSE(resource.getStreams().at(0)->is_storable());
}

TEST(ResourceNav, each_pass_sees_every_packet_and_is_tidied_up) {
  const OpenedRaw opened(join({at(100), at(200), untimed_packet()}));
  EXPECT_THAT(opened.stream().calls,
              ElementsAre("configure", "prescan 100", "prescan 200", "prescan ?", "prescan tidy",
                          "postscan 100", "postscan 200", "postscan ?", "postscan tidy"));
}

TEST(ResourceNav, a_pass_ends_with_the_packet_that_is_enough_for_it) {
  const OpenedRaw opened(join({at(100), at(200, kEndsPrescan), at(300, kEndsPostscan), at(400)}));
  EXPECT_THAT(opened.stream().calls,
              ElementsAre("configure", "prescan 100", "prescan 200", "prescan tidy", "postscan 100",
                          "postscan 200", "postscan 300", "postscan tidy"));
}

TEST(ResourceNav, packets_of_the_other_family_are_handed_on_too) {
  const OpenedRaw opened(join({at(100), Support::MComPacket().time_ms(5).bytes()}));
  EXPECT_EQ(opened.stream().calls[2], "prescan 5 of 84");
}

TEST(ResourceNav, junk_and_bad_packets_are_seen_by_no_pass) {
  const Bytes bad = Support::NComPacket().time_ms(150).bad_sum().bytes();
  const OpenedRaw opened(join({junk(10), at(100), bad, junk(5), at(200), junk(9)}));
  EXPECT_THAT(opened.stream().calls,
              ElementsAre("configure", "prescan 100", "prescan 200", "prescan tidy", "postscan 100",
                          "postscan 200", "postscan tidy"));
}

TEST(ResourceNav, the_streams_reader_begins_at_the_first_packet) {
  const OpenedRaw opened(join({junk(3000), at(100), at(200)}));
  const LogicalNav& reader = *opened.stream().get_logical_nav();
  EXPECT_EQ(reader.start(), 3000U);
  EXPECT_EQ(reader.size(), 3144U);
  EXPECT_EQ(opened.file().open_handles(), 1);  // the resource's own alone
}

TEST(ResourceNav, the_streams_reader_ends_at_the_last_read_that_delivered_a_packet) {
  Bytes packets;
  for (std::uint16_t time = 1; time <= 40; ++time) packets = join({packets, at(time)});
  const OpenedRaw opened(join({packets, junk(5000)}));
  // 28 packets out of the first 2048 bytes, the other 12 out of 4096; what follows is junk
  std::vector<unsigned long long> expected(28, 2048);
  expected.resize(40, 4096);
  EXPECT_EQ(opened.stream().finishes, expected);
  EXPECT_EQ(opened.stream().get_logical_nav()->finish(), 4096U);
}

TEST(ResourceNav, a_file_without_a_packet_leaves_the_stream_without_a_reader) {
  const OpenedRaw opened(junk(5000));
  EXPECT_EQ(opened.stream().get_logical_nav(), nullptr);
  EXPECT_THAT(opened.stream().calls, ElementsAre("configure", "prescan tidy", "postscan tidy"));
  EXPECT_FALSE(opened.stream().is_storable());
  EXPECT_FALSE(opened.stream().do_init(0));
}

TEST(ResourceNav, the_span_is_the_streams) {
  OpenedRaw opened(join({at(100), at(200), at(300)}));
  EXPECT_EQ(opened.resource().get_start(), 100);
  EXPECT_EQ(opened.resource().get_end(), 300);
}

TEST(ResourceNav, sends_the_position_once_it_has_moved_on_far_enough) {
  Bytes packets;
  for (std::uint16_t time = 1; time <= 100; ++time) packets = join({packets, at(time)});
  OpenedRaw opened(packets, ".ncom", 3000);  // 7200 bytes, read at 2048, 4096, 6144, 7200
  const auto records = opened.progress();
  EXPECT_THAT(records, ElementsAre(Progress{Enum::DATA_STORE_MSG_INIT, 0},
                                   Progress{Enum::DATA_STORE_MSG_INIT, 100},
                                   Progress{Enum::DATA_STORE_MSG_PRESCAN, 0},
                                   Progress{Enum::DATA_STORE_MSG_PRESCAN, share(4096, 7200)},
                                   Progress{Enum::DATA_STORE_MSG_PRESCAN, 100},  // at 7200
                                   Progress{Enum::DATA_STORE_MSG_POSTSCAN, 0},
                                   Progress{Enum::DATA_STORE_MSG_POSTSCAN, share(4096, 7200)},
                                   Progress{Enum::DATA_STORE_MSG_POSTSCAN, 100}));
}

TEST(ResourceNav, walks_like_any_other_resource_after_its_scans) {
  const OpenedRaw opened(join({junk(10), at(100), at(200), at(300)}));
  opened.stream().calls.clear();
  EXPECT_TRUE(opened.stream().do_init(0));
  EXPECT_TRUE(opened.stream().do_seek(100));
  EXPECT_TRUE(opened.stream().do_decode(250));
  EXPECT_THAT(opened.stream().calls, ElementsAre("rewind", "seek 100", "decode 200", "decode 300"));
}

TEST(ResourceNav, has_nothing_left_to_store) {
  OpenedRaw opened(at(100));
  const auto calls = opened.stream().calls;
  opened.resource().do_store();
  EXPECT_EQ(opened.stream().calls, calls);
  EXPECT_THAT(opened.stream().get_meta().auxiliary, IsEmpty());
}

const Bytes kDrive = join({junk(50), at(100), at(200), untimed_packet(), junk(7), at(300),
                           Support::NComPacket().time_ms(350).bad_sum().bytes(), at(400),
                           untimed_packet(), at(500), junk(30)});

TEST(ResourceNavExport, writes_exactly_the_packets_of_the_span) {
  OpenedRaw opened(kDrive);
  const ExportedFile exported(opened, 200, 400);
  EXPECT_TRUE(exported.done());
  EXPECT_EQ(exported.bytes(),
            join({at(200), untimed_packet(), at(300), at(400), untimed_packet()}));
}

TEST(ResourceNavExport, begins_at_the_first_time_in_the_span_and_ends_ahead_of_the_first_beyond) {
  OpenedRaw opened(kDrive);
  EXPECT_EQ(ExportedFile(opened, 201, 399).bytes(), at(300));
  EXPECT_EQ(ExportedFile(opened, 300, 300).bytes(), at(300));
  EXPECT_EQ(ExportedFile(opened, 101, 200).bytes(), join({at(200), untimed_packet()}));
}

TEST(ResourceNavExport, limits_the_span_to_the_resources_own) {
  OpenedRaw opened(kDrive);
  const Bytes all =
      join({at(100), at(200), untimed_packet(), at(300), at(400), untimed_packet(), at(500)});
  EXPECT_EQ(ExportedFile(opened, kLowest, kHighest).bytes(), all);
  EXPECT_EQ(ExportedFile(opened, 100, 500).bytes(), all);
}

TEST(ResourceNavExport, may_come_in_any_order_and_after_any_walk) {
  OpenedRaw opened(kDrive);
  opened.stream().do_init(0);
  opened.stream().do_seek(1000);
  EXPECT_EQ(ExportedFile(opened, 400, 500).bytes(), join({at(400), untimed_packet(), at(500)}));
  EXPECT_EQ(ExportedFile(opened, 100, 150).bytes(), at(100));
  EXPECT_EQ(ExportedFile(opened, 150, 250).bytes(), join({at(200), untimed_packet()}));
}

TEST(ResourceNavExport, a_span_between_two_packets_gives_an_empty_file) {
  OpenedRaw opened(kDrive);
  const ExportedFile exported(opened, 310, 390);
  EXPECT_TRUE(exported.done());
  EXPECT_EQ(exported.bytes(), Bytes());
}

TEST(ResourceNavExport, a_span_outside_the_resources_own_is_false_and_touches_no_file) {
  OpenedRaw opened(kDrive);
  for (const auto& [from, to] : {std::pair{0, 99}, {501, 600}, {300, 200}}) {
    const ExportedFile exported(opened, from, to);
    EXPECT_FALSE(exported.done());
    EXPECT_EQ(exported.bytes(), bytes_of("old"));
  }
}

TEST(ResourceNavExport, of_a_resource_without_packets_is_false) {
  OpenedRaw empty(junk(100));
  EXPECT_FALSE(ExportedFile(empty, kLowest, kHighest).done());
  OpenedRaw unknown(kDrive, ".nav");
  EXPECT_FALSE(ExportedFile(unknown, kLowest, kHighest).done());
}

TEST(ResourceNavExport, to_a_path_that_cannot_be_written_is_false) {
  OpenedRaw opened(kDrive);
  EXPECT_FALSE(opened.resource().do_export("/nonexistent/out.ncom", 100, 500));
}

TEST(ResourceNavExport, onto_the_resources_own_file_is_false_and_leaves_it) {
  OpenedRaw opened(kDrive);
  EXPECT_FALSE(opened.resource().do_export(opened.file().path(), 100, 500));
  EXPECT_EQ(Support::read_file(opened.file().path()), kDrive);
}

TEST(ResourceNavExport, leaves_the_streams_reader_closed) {
  OpenedRaw opened(kDrive);
  ASSERT_TRUE(ExportedFile(opened, 100, 200).done());
  EXPECT_EQ(opened.file().open_handles(), 1);  // the resource's own
}

TEST(ResourceNavExport, of_a_long_file_copies_every_packet_of_the_span) {
  Bytes packets;
  Bytes expected;
  for (std::uint16_t time = 1; time <= 2000; ++time) {
    const Bytes packet = at(time);
    packets.insert(packets.end(), packet.begin(), packet.end());
    packets.push_back('.');
    if (time >= 700 && time <= 1500) expected.insert(expected.end(), packet.begin(), packet.end());
  }
  OpenedRaw opened(packets);
  EXPECT_EQ(ExportedFile(opened, 700, 1500).bytes(), expected);
}

TEST(ResourceNavExportDeathTest, of_a_storable_stream_without_a_reader_stops_the_program) {
  OpenedRaw opened(junk(100), ".lost");
  EXPECT_DEATH(ExportedFile(opened, 0, 0), "Test : stream->logical_nav\n.*sto/Sto_ResourceNav");
}

}  // namespace
}  // namespace Trel::Sto::Test
