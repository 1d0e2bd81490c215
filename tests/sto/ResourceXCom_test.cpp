#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Stream_fake.h"
#include "Stream_recordings.h"
#include "support/Support_Damage.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kInit = Enum::DATA_STORE_MSG_INIT;
constexpr auto kPrescan = Enum::DATA_STORE_MSG_PRESCAN;
constexpr auto kPostscan = Enum::DATA_STORE_MSG_POSTSCAN;

// One page with the initial flag and this body, as one packet.
Bytes initial_page(unsigned int serial, const std::string& body, unsigned int number = 0,
                   unsigned char flags = Support::kInitial) {
  Recording recording;
  recording.stream(serial).page_number(number).raw_page({static_cast<unsigned char>(body.size())},
                                                        bytes_of(body), flags);
  return recording.bytes();
}

// The headers of a drive and nothing else.
Bytes headers(unsigned int serial, const Dbu& document = database()) {
  Recording recording;
  recording.stream(serial).ucom(document).headers();
  return recording.bytes();
}

// Payload pages of one sample each; two pages of headers come ahead of them.
Bytes payload(unsigned int serial, const std::vector<long long>& times, unsigned int number = 2) {
  Recording recording;
  auto& stream = recording.stream(serial).page_number(number);
  for (const long long time : times) stream.packet(sample(time)).page();
  return recording.bytes();
}

TEST(ResourceOgg, finds_a_stream_with_its_headers_and_its_span) {
  const Opened opened(drive(kSerial, {100, 200, 300}));
  EXPECT_THAT(opened.serials(), ElementsAre(kSerial));
  const Stream& stream = opened.stream();
  EXPECT_EQ(stream.getCodec(), Enum::CODEC_TYPE_UCOM);
  EXPECT_EQ(stream.getTrans(), Enum::TRANSPORT_TYPE_OGG);
  EXPECT_EQ(stream.getSerialId(), kSerial);
  EXPECT_TRUE(stream.is_captured() && stream.is_configured() && stream.is_storable());
  EXPECT_EQ(opened.start(), 100);
  EXPECT_EQ(opened.end(), 300);
}

TEST(ResourceOgg, a_file_that_cannot_be_opened_has_no_streams) {
  const Options defaults = options();
  Messages messages(10);
  const ResourceOgg resource(defaults, "/nonexistent/recording.xcom", &messages);
  EXPECT_THAT(resource.getStreams(), IsEmpty());
  EXPECT_EQ(drain(messages).size(), 6U);  // each pass begins and ends
}

TEST(ResourceOgg, an_empty_file_has_no_streams) {
  EXPECT_THAT(Opened(Bytes()).serials(), IsEmpty());
}

TEST(ResourceOgg, works_without_messages) {
  const ScratchFile file(drive(kSerial, {100}));
  const Options defaults = options();
  const ResourceOgg resource(defaults, file.path(), nullptr);
  EXPECT_TRUE(resource.getStreams().at(kSerial)->is_storable());
}

TEST(ResourceOgg, leaves_its_own_file_open_and_those_of_its_streams_closed) {
  const Opened opened(join({drive(1, {100}), drive(2, {100})}));
  EXPECT_EQ(opened.file().open_handles(), 1);
}

TEST(ResourceOgg, does_not_export) {
  Opened opened(drive(kSerial, {100}));
  const std::string target = opened.file().path() + ".copy";
  EXPECT_FALSE(opened.resource().do_export(target, 0, 1000));
  EXPECT_FALSE(std::filesystem::exists(target));
}

TEST(ResourceOgg, orders_its_streams_by_serial_number_and_not_by_place) {
  const Bytes bytes = join({drive(9, {1}), drive(0xFFFFFFFF, {1}), drive(2, {1}), drive(5, {1})});
  EXPECT_THAT(Opened(bytes).serials(), ElementsAre(2, 5, 9, 0xFFFFFFFF));
}

TEST(ResourceOgg, interleaved_streams_get_their_own_packets) {
  const Bytes bytes = join({headers(1), headers(2), payload(2, {20}), payload(1, {100}),
                            payload(2, {30}, 3), payload(1, {200}, 3), payload(2, {40}, 4)});
  Opened opened(bytes);
  EXPECT_EQ(opened.start(1), 100);
  EXPECT_EQ(opened.end(1), 200);
  EXPECT_EQ(opened.start(2), 20);
  EXPECT_EQ(opened.end(2), 40);
  EXPECT_EQ(opened.resource().get_start(), 20);
  EXPECT_EQ(opened.resource().get_end(), 200);
}

// A resource that takes further streams after its scans.
class OpenResource : public ResourceOgg {
 public:
  using Resource::streams;
  using ResourceOgg::ResourceOgg;
};

TEST(ResourceOgg, storing_maps_the_streams_of_a_range_measurement) {
  const ScratchFile file(drive(kSerial, {100}));
  const Options defaults = options();
  OpenResource resource(defaults, file.path(), nullptr);
  resource.streams.at(kSerial)->setStreamId(40);
  auto range = std::make_unique<FakeStream>(1, Enum::TRANSPORT_TYPE_OGG, Enum::CODEC_TYPE_RCOM);
  range->get_meta().append_aux_header(Com::Meta("{Trel-Range}\nHunter.XCom.Serial=7\n", true));
  Com::Meta& scan = range->get_meta().append_aux_header(Com::Meta("{Trel-StreamScan}", true));
  resource.streams[1] = std::move(range);
  resource.do_store();
  EXPECT_EQ(scan.get("Range.Hunter.Stream"), "40");
}

TEST(ResourceTag, of_an_unknown_kind_makes_no_stream_and_disturbs_no_other) {
  const Bytes unknown = join({initial_page(1, "[Trel-Xyz]\nheaders=0\n"), payload(1, {50}, 1)});
  const Opened opened(join({unknown, drive(kSerial, {100, 200})}));
  EXPECT_THAT(opened.serials(), ElementsAre(kSerial));
  EXPECT_EQ(opened.start(), 100);
}

TEST(ResourceTag, in_a_file_of_unknown_kinds_only_there_are_no_streams) {
  const Opened opened(join({initial_page(1, "[Trel-Xyz]\nheaders=0\n"), payload(1, {50}, 1)}));
  EXPECT_THAT(opened.serials(), IsEmpty());
}

TEST(ResourceTag, must_stand_whole_and_exact_at_the_start_of_an_initial_page) {
  for (const std::string body : {"", "[", "[Trel-UCom", "[Trel-UComX]", "[trel-UCom]",
                                 "{Trel-UCom}", " [Trel-UCom]", "[Trel-ucom]"}) {
    EXPECT_THAT(Opened(initial_page(1, body)).serials(), IsEmpty()) << body;
  }
  EXPECT_THAT(Opened(initial_page(1, "[Trel-UCom]")).serials(), ElementsAre(1));
}

TEST(ResourceTag, on_a_page_that_is_not_initial_makes_no_stream) {
  for (const unsigned int flags : {0x00U, 0x01U, 0x04U, 0x08U}) {
    const Bytes page = initial_page(1, "[Trel-UCom]", 0, static_cast<unsigned char>(flags));
    EXPECT_THAT(Opened(page).serials(), IsEmpty()) << flags;
  }
}

TEST(ResourceTag, counts_beside_any_other_flags_and_with_any_page_number) {
  const auto all =
      static_cast<unsigned char>(Support::kInitial | Support::kFooter | Support::kAuxiliary);
  EXPECT_THAT(Opened(initial_page(1, "[Trel-UCom]", 1000, all)).serials(), ElementsAre(1));
}

TEST(ResourceInit, a_second_initial_page_of_a_stream_goes_to_its_decoder) {
  const Bytes second = initial_page(kSerial, "[Trel-UCom]\nheaders=0\nname=second\n", 2);
  const Opened opened(join({headers(kSerial), second, payload(kSerial, {100, 200}, 3)}));
  EXPECT_THAT(opened.serials(), ElementsAre(kSerial));
  EXPECT_EQ(opened.decoder().get_pages().bos, 2U);
  EXPECT_EQ(opened.decoder().get_packets().initial_skip, 2U);
  EXPECT_EQ(opened.stream().get_meta().initial.get("name"), "");
  EXPECT_EQ(opened.start(), 100);
}

TEST(ResourceInit, a_stream_without_headers_and_payload_is_captured_only) {
  const Opened opened(initial_page(kSerial, "[Trel-UCom]\nheaders=0\n"));
  const Stream& stream = opened.stream();
  EXPECT_TRUE(stream.is_captured());
  EXPECT_FALSE(stream.is_configured());
  EXPECT_FALSE(stream.is_storable());
  EXPECT_NE(stream.get_meta().find_aux_header("{Trel-StreamScan}"), nullptr);
}

TEST(ResourceInit, a_stream_that_never_gets_its_headers_is_not_captured) {
  Recording recording;
  recording.stream(kSerial).ucom(database()).declare_headers("2").headers();
  const Opened opened(recording.bytes());
  const Stream& stream = opened.stream();
  EXPECT_FALSE(stream.is_captured());
  EXPECT_FALSE(stream.is_configured());
  EXPECT_EQ(stream.get_meta().initial.get_tag(), "");
  EXPECT_EQ(stream.get_meta().find_aux_header("/Trel-UCom-Dbu/"), nullptr);
  EXPECT_EQ(opened.decoder().get_packets().auxiliary_used, 1U);
}

TEST(ResourceInit, takes_over_all_headers) {
  Recording recording;
  auto& stream = recording.stream(kSerial).ucom(database()).item("device", "A7");
  stream.grouping("Car").packet(sample(100));
  const Opened opened(recording.bytes());
  EXPECT_EQ(opened.stream().get_meta().initial.get("device"), "A7");
  EXPECT_EQ(opened.stream().obtain_group_tag_from_meta(), "Car");
}

TEST(ResourceInit, an_initial_page_that_ends_with_the_first_64_kilobytes_is_seen) {
  const Bytes other = headers(9);
  const auto size = Support::find_pages(other).front().size;
  const Bytes first = padded(drive(kSerial, {100}), kInitRead - size);
  EXPECT_THAT(Opened(join({first, other})).serials(), ElementsAre(kSerial, 9));
}

TEST(ResourceInit, an_initial_page_that_ends_one_byte_later_is_never_seen) {
  const Bytes other = headers(9);
  const auto size = Support::find_pages(other).front().size;
  const Bytes first = padded(drive(kSerial, {100}), kInitRead - size + 1);
  EXPECT_THAT(Opened(join({first, other})).serials(), ElementsAre(kSerial));
}

TEST(ResourceInit, reads_on_while_a_stream_lacks_headers_and_so_finds_later_streams) {
  const Bytes waiting = headers(kSerial);
  const auto pages = Support::find_pages(waiting);
  ASSERT_EQ(pages.size(), 2U);
  const Bytes initial(waiting.begin(), waiting.begin() + static_cast<long>(pages[1].offset));
  const Bytes auxiliary(waiting.begin() + static_cast<long>(pages[1].offset), waiting.end());
  // The third read has the missing header; the fourth is not made.
  const Bytes bytes =
      join({padded(join({padded(join({padded(initial, kInitRead), drive(8, {100})}), 2 * kInitRead),
                         auxiliary, payload(kSerial, {100})}),
                   3 * kInitRead),
            drive(9, {100})});
  const Opened opened(bytes);
  EXPECT_THAT(opened.serials(), ElementsAre(kSerial, 8));
  EXPECT_TRUE(opened.storable(kSerial));
  EXPECT_TRUE(opened.storable(8));
}

TEST(ResourceInit, without_a_known_stream_in_the_first_read_there_is_none) {
  const Bytes junk(kInitRead);
  EXPECT_THAT(Opened(join({junk, drive(kSerial, {100})})).serials(), IsEmpty());
}

TEST(ResourceInit, a_dead_stream_counts_as_ready) {
  // The initial packet goes on, says the page, so that it never comes out.
  const Bytes dead = [] {
    Recording recording;
    const std::string tag = "[Trel-UCom]\nheaders=1\n";
    Bytes body = bytes_of(tag);
    body.resize(255, '\n');
    recording.stream(3).raw_page({255}, body, Support::kInitial);
    return recording.bytes();
  }();
  const Opened opened(join({padded(dead, kInitRead), drive(kSerial, {100})}));
  EXPECT_THAT(opened.serials(), ElementsAre(3));  // one read was enough
  EXPECT_TRUE(opened.stream(3).is_captured());
  EXPECT_FALSE(opened.stream(3).is_configured());
}

TEST(ResourceInit, a_dead_stream_is_configured_with_the_headers_it_has) {
  Recording recording;
  auto& stream = recording.stream(kSerial).ucom(database()).declare_headers("2").headers();
  stream.raw_page({11}, bytes_of("[Trel-UCom]"), Support::kInitial);
  stream.packet(sample(100)).page();
  const Opened opened(recording.bytes());
  EXPECT_TRUE(opened.stream().is_configured());
  EXPECT_FALSE(opened.storable());
  EXPECT_EQ(opened.decoder().get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
}

TEST(ResourceInitDeathTest, an_empty_initial_packet_stops_the_program) {
  Recording recording;
  recording.stream(kSerial).raw_page({0, 11}, bytes_of("[Trel-UCom]"), Support::kInitial);
  const Bytes bytes = recording.bytes();
  EXPECT_DEATH(Opened opened(bytes), "oggPacket.bytes > 0\n.*com/Com_XComStream");
}

TEST(ResourceInit, malformed_json_passes_out_and_releases_what_was_made) {
  Recording recording;
  recording.stream(1).ucom(database()).headers();
  recording.stream(2).codec("UCom").dbu("{\"S\":").headers();
  EXPECT_THROW(Opened(recording.bytes()), nlohmann::json::parse_error);
}

TEST(ResourceInit, a_parent_that_is_no_number_passes_out_and_releases_what_was_made) {
  Recording recording;
  recording.stream(1).ucom(database()).headers();
  Dbu document;
  document.message(1, {10}).signal(10).name("Nano").key("IP", "ten");
  recording.stream(2).ucom(document).headers();
  EXPECT_THROW(Opened(recording.bytes()), nlohmann::json::exception);
}

TEST(ResourcePrescan, has_the_packets_that_init_read) {
  const Bytes early = padded(drive(kSerial, {100, 200}), kInitRead);
  const Opened opened(join({early, payload(kSerial, {300}, 4)}));
  EXPECT_EQ(opened.start(), 100);
  EXPECT_EQ(opened.end(), 300);
}

TEST(ResourcePrescan, finds_a_first_time_far_behind_the_headers) {
  const Bytes early = padded(headers(kSerial), kInitRead + 3 * kScanRead + 7);
  EXPECT_EQ(Opened(join({early, payload(kSerial, {300, 400})})).start(), 300);
}

TEST(ResourcePrescan, takes_the_packet_behind_a_hole_at_once) {
  Recording recording;
  recording.stream(kSerial).ucom(database()).packet(slow(1)).hole().packet(sample(100)).page();
  const Opened opened(recording.bytes());  // a read in between would find the end of the file
  EXPECT_EQ(opened.start(), 100);
  EXPECT_TRUE(opened.storable());
}

TEST(ResourcePostscan, takes_the_packet_behind_a_hole_at_once) {
  Recording recording;
  recording.stream(kSerial).ucom(database()).packet(sample(100)).hole(3).packet(sample(200)).page();
  const Opened opened(recording.bytes());
  EXPECT_EQ(opened.end(), 200);
  EXPECT_EQ(opened.decoder().get_holes().payload, 1U);
  EXPECT_EQ(opened.decoder().get_pages().lost, 3U);
}

TEST(ResourcePostscan, steps_over_the_headers_and_starts_from_the_first_page) {
  const Opened opened(drive(kSerial, {100, 200, 300}));
  const Com::XComStreamDec& decoder = opened.decoder();
  EXPECT_EQ(decoder.get_pages().total, 5U);
  EXPECT_EQ(decoder.get_packets().initial_used, 1U);
  EXPECT_EQ(decoder.get_packets().auxiliary_used, 1U);
  EXPECT_EQ(decoder.get_packets().initial_skip, 1U);
  EXPECT_EQ(decoder.get_packets().auxiliary_skip, 1U);
  EXPECT_EQ(decoder.get_packets().payload, 3U);
  EXPECT_EQ(opened.stream().get_meta().auxiliary.size(), 2U);  // the database and the scan's own
}

TEST(ResourcePostscan, the_first_walk_of_a_stream_rewinds_to_the_start) {
  const Opened opened(drive(kSerial, {100, 200, 300}));
  EXPECT_TRUE(opened.stream().do_init(100));
  EXPECT_EQ(opened.stream().get_indexer(), 100);
  EXPECT_TRUE(opened.stream().do_seek(300));
  EXPECT_EQ(opened.stream().get_indexer(), 300);
}

TEST(ResourcePostscan, a_cut_page_at_the_end_is_not_there) {
  const Opened opened(Support::cut_end(drive(kSerial, {100, 200, 300}), 1));
  EXPECT_EQ(opened.end(), 200);
  EXPECT_EQ(opened.decoder().get_pages().lost, 0U);
}

// An unconfigured stream ends the round in which it is met. In a short file the next read comes to
// the end, and what is queued behind it stays there.
TEST(ResourceRound, an_unconfigured_stream_ahead_costs_a_short_file_its_first_time) {
  const Opened opened(join({without_database(1), drive(kSerial, {100, 200})}));
  EXPECT_THAT(opened.serials(), ElementsAre(1, kSerial));
  EXPECT_TRUE(opened.stream().is_configured());
  EXPECT_FALSE(opened.storable());
}

TEST(ResourceRound, an_unconfigured_stream_behind_costs_nothing) {
  const Opened opened(join({without_database(9), drive(kSerial, {100, 200})}));
  EXPECT_FALSE(opened.stream(9).is_configured());
  EXPECT_TRUE(opened.storable());
}

TEST(ResourceRound, one_read_more_makes_up_for_one_unconfigured_stream) {
  const Bytes bytes = join({without_database(1), drive(kSerial, {100, 200})});
  EXPECT_FALSE(Opened(padded(bytes, kInitRead)).storable());
  EXPECT_TRUE(Opened(padded(bytes, kInitRead + 1)).storable());
}

TEST(ResourceRound, each_unconfigured_stream_costs_a_round_of_its_own) {
  const Bytes bytes = join({without_database(1), without_database(2), drive(kSerial, {100, 200})});
  EXPECT_FALSE(Opened(padded(bytes, kInitRead + kScanRead)).storable());
  EXPECT_TRUE(Opened(padded(bytes, kInitRead + kScanRead + 1)).storable());
}

TEST(ResourceRound, a_stream_that_has_found_its_time_leaves_and_the_round_goes_on) {
  const Opened opened(join({drive(1, {100}), drive(2, {200}), drive(3, {300})}));
  EXPECT_TRUE(opened.storable(1) && opened.storable(2) && opened.storable(3));
}

TEST(ResourceMessages, each_pass_begins_at_0_and_ends_at_100) {
  Opened opened(drive(kSerial, {100, 200}));
  EXPECT_THAT(opened.progress(),
              ElementsAre(Progress{kInit, 0.0F}, Progress{kInit, 100.0F}, Progress{kPrescan, 0.0F},
                          Progress{kPrescan, 100.0F}, Progress{kPostscan, 0.0F},
                          Progress{kPostscan, 100.0F}));
}

constexpr std::size_t kLong = kInitRead + 2 * kScanRead;

TEST(ResourceMessages, the_first_scan_ends_when_every_stream_has_its_first_time) {
  Opened opened(padded(drive(kSerial, {100, 200}), kLong), kScanRead);
  std::vector<Progress> first_scan;
  for (const Progress& record : opened.progress()) {
    if (record.message == kPrescan) first_scan.push_back(record);
  }
  EXPECT_THAT(first_scan,
              ElementsAre(Progress{kPrescan, 0.0F}, Progress{kPrescan, share(kInitRead, kLong)},
                          Progress{kPrescan, 100.0F}));
}

TEST(ResourceMessages, a_stream_without_a_time_keeps_the_first_scan_going_to_the_end) {
  Recording recording;
  recording.stream(kSerial).ucom(timeless_database()).packet(sample(100)).page();
  const Bytes bytes = join({drive(1, {100}), recording.bytes()});
  Opened opened(padded(bytes, kLong), kScanRead);
  std::vector<Progress> first_scan;
  for (const Progress& record : opened.progress()) {
    if (record.message == kPrescan) first_scan.push_back(record);
  }
  EXPECT_THAT(first_scan,
              ElementsAre(Progress{kPrescan, 0.0F}, Progress{kPrescan, share(kInitRead, kLong)},
                          Progress{kPrescan, share(kInitRead + kScanRead, kLong)},
                          Progress{kPrescan, 100.0F}));
  EXPECT_FALSE(opened.storable());
  EXPECT_TRUE(opened.storable(1));
}

TEST(ResourceMessages, the_second_scan_reads_4096_bytes_at_a_time_from_the_start_to_the_end) {
  Opened opened(padded(drive(kSerial, {100}), kLong), kScanRead);
  std::vector<Progress> expected;
  for (std::size_t place = 0; place <= kLong; place += kScanRead) {
    expected.push_back({kPostscan, share(place, kLong)});
  }
  std::vector<Progress> second_scan;
  for (const Progress& record : opened.progress()) {
    if (record.message == kPostscan) second_scan.push_back(record);
  }
  EXPECT_EQ(second_scan, expected);
}

TEST(ResourceMessages, a_position_is_reported_when_it_is_far_enough_past_the_last_one) {
  Opened opened(padded(drive(kSerial, {100}), kLong), 5 * kScanRead);
  std::vector<Progress> second_scan;
  for (const Progress& record : opened.progress()) {
    if (record.message == kPostscan) second_scan.push_back(record);
  }
  // 18 reads: reported after 5, 10 and 15 of them.
  EXPECT_THAT(
      second_scan,
      ElementsAre(Progress{kPostscan, 0.0F}, Progress{kPostscan, share(5 * kScanRead, kLong)},
                  Progress{kPostscan, share(10 * kScanRead, kLong)},
                  Progress{kPostscan, share(15 * kScanRead, kLong)}, Progress{kPostscan, 100.0F}));
}

TEST(ResourceMessages, a_pass_with_nothing_configured_stops_at_once) {
  Opened opened(padded(without_database(kSerial), kLong), 1);
  EXPECT_THAT(opened.progress(),
              ElementsAre(Progress{kInit, 0.0F}, Progress{kInit, 100.0F}, Progress{kPrescan, 0.0F},
                          Progress{kPrescan, share(kInitRead, kLong)}, Progress{kPrescan, 100.0F},
                          Progress{kPostscan, 0.0F}, Progress{kPostscan, 100.0F}));
}

}  // namespace
}  // namespace Trel::Sto::Test
