// Range streams, and the NCom streams among their packets, through the store: in raw files and in
// recordings, alone and among streams of all other kinds.
#include "sto/Sto_StreamRCom.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "RangeDrive.h"
#include "Stream_recordings.h"
#include "sto/Sto_Store.h"
#include "sto/Sto_StreamNCom.h"
#include "support/Support_CanPacket.h"

namespace Trel::Sto::Test {
namespace {

using Support::little;
using Support::MComPacket;
using Support::NComPacket;
using Support::range_packet;
using Support::RangePacket;
using testing::Contains;
using testing::ElementsAre;
using testing::Key;
using testing::Not;
using testing::Pair;
using Values = std::map<std::string, std::string>;

constexpr std::uint32_t kHunter = 0x0100000A;  // 10.0.0.1, as it stands in a packet
constexpr std::uint32_t kTarget = 0x0200000A;  // 10.0.0.2
constexpr long long kLast = range_ms(10 * (kDrivePackets - 1));

// A store with one file in it.
struct OpenedStore {
  explicit OpenedStore(const Bytes& bytes, const std::string& extension = ".rcom")
      : file(bytes, extension), store(options()) {
    unsigned int count = 0;
    store.add_resource(file.path(), ids, count);
  }

  [[nodiscard]] StreamLeaf leaf(unsigned int stream = 0) const {
    StreamLeaf described;
    store.query_stream(described, stream);
    return described;
  }
  [[nodiscard]] const Com::StreamMeta& meta(unsigned int stream) {
    return store.get_stream_in(stream)->get_meta();
  }
  // The items of one of a stream's headers; none, when it does not have it.
  [[nodiscard]] Values header(const std::string& tag, unsigned int stream = 0) {
    const Com::Meta* found = meta(stream).find_aux_header(tag);
    return found == nullptr ? Values() : found->get_values();
  }
  [[nodiscard]] Values range(unsigned int stream = 0) { return header("{Trel-Range}", stream); }
  [[nodiscard]] Values scan(unsigned int stream = 0) { return header("{Trel-StreamScan}", stream); }
  // The values of a stream's elements at time t, in order.
  std::vector<Result> values(long long t, const std::vector<std::string>& names,
                             unsigned int stream = 0) {
    Aspect aspect;
    for (const std::string& name : names) {
      EXPECT_EQ(store.direct_add_element(stream, name), Enum::RETURN_TYPE_NORMAL) << name;
      store.direct_use_element(aspect, stream, name);
    }
    std::vector<Result> found;
    store.direct_decode_begin(t);
    store.direct_decode_step(aspect, t, found);
    return found;
  }

  ScratchFile file;
  DataStore store;
  std::vector<unsigned int> ids;
};

void expect_span(const StreamLeaf& leaf, long long start, long long end) {
  EXPECT_TRUE(leaf.storable);
  EXPECT_EQ(leaf.start, start);
  EXPECT_EQ(leaf.end, end);
}

TEST(StreamRCom, of_a_raw_file_spans_its_packets_with_times_from_the_first_on) {
  const OpenedStore opened(range_file({}));
  ASSERT_EQ(opened.ids.size(), 1U);
  EXPECT_EQ(opened.leaf().codec, Enum::CODEC_TYPE_RCOM);
  EXPECT_EQ(opened.leaf().transport, Enum::TRANSPORT_TYPE_RNG);
  EXPECT_EQ(opened.leaf().extension, ".rcom");
  EXPECT_TRUE(opened.leaf().captured && opened.leaf().configured);
  expect_span(opened.leaf(), range_ms(0), kLast);
}

TEST(StreamRCom, an_extension_counts_in_any_case) {
  expect_span(OpenedStore(range_file({}), ".RCom").leaf(), range_ms(0), kLast);
}

TEST(StreamRCom, decodes_what_is_asked_for) {
  Bytes file;
  for (unsigned int n = 0; n < kDrivePackets; ++n) {
    file = join({file, range_data(n).i32(8, -250).i32(12, 1500 + static_cast<int>(n)).bytes()});
  }
  OpenedStore opened(file);
  const auto values =
      opened.values(range_ms(150), {"Target1_RangeLat", "Target1_RangeLon", "Nano"});
  ASSERT_EQ(values.size(), 3U);
  EXPECT_DOUBLE_EQ(static_cast<double>(values[0]), -0.25);
  EXPECT_DOUBLE_EQ(static_cast<double>(values[1]), 1.515);
  EXPECT_EQ(static_cast<long long>(values[2]), range_ms(150));
  EXPECT_EQ(values[1].get_nano(), range_ms(150));
}

TEST(StreamRCom, a_walk_goes_back_to_the_first_packet) {
  OpenedStore opened(range_file({}));
  for (const long long t : {range_ms(150), range_ms(0), kLast, range_ms(20)}) {
    EXPECT_EQ(static_cast<long long>(opened.values(t, {"Nano"}).at(0)), t);
  }
}

TEST(StreamRCom, of_a_raw_file_notes_its_role_and_what_the_scans_have_found) {
  OpenedStore opened(
      join({range_file({}), range_data(kDrivePackets).channel(1, bytes_of("250317.1")).bytes()}));
  EXPECT_EQ(opened.meta(0).initial.get_tag(), "[Trel-RCom]");
  EXPECT_THAT(opened.range(), ElementsAre(Pair("Address.IPv4", ""), Pair("WhoAmI", "Range")));
  EXPECT_THAT(opened.scan(),
              ElementsAre(Pair("Range.DevId", "250317.1"), Pair("StreamCodec", "RCom")));
}

TEST(StreamRCom, what_never_became_known_is_noted_as_an_empty_text) {
  OpenedStore opened(range_file({}));
  EXPECT_EQ(opened.scan().at("Range.DevId"), "");
}

TEST(StreamRCom, without_a_minute_is_not_storable_and_decodes_nothing) {
  Bytes file;
  for (unsigned int n = 4; n < kDrivePackets; ++n) file = join({file, range_data(n).bytes()});
  OpenedStore opened(file);
  EXPECT_FALSE(opened.leaf().storable);
  EXPECT_NE(opened.store.direct_add_element(0, "Nano"), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(opened.store.direct_decode_begin(0), Enum::RETURN_TYPE_NORMAL);
}

TEST(StreamRCom, a_file_that_ends_without_a_time_is_not_storable) {
  const OpenedStore opened(
      join({range_file({}), range_data(kDrivePackets).time_ms(65535).bytes()}));
  EXPECT_FALSE(opened.leaf().storable);
}

TEST(StreamRCom, a_file_without_packets_opens_and_its_stream_never_delivers) {
  for (const Bytes& bytes : {Bytes(), Bytes(500, 0x11)}) {
    OpenedStore opened(bytes);
    ASSERT_EQ(opened.ids.size(), 1U);
    EXPECT_FALSE(opened.leaf().storable);
    EXPECT_THAT(opened.range(), Contains(Pair("WhoAmI", "Range")));
    EXPECT_EQ(opened.store.direct_decode_begin(0), Enum::RETURN_TYPE_NORMAL);
    opened.store.direct_decode_end();
  }
}

TEST(RangeFile, each_source_is_a_stream_behind_that_of_the_range_data) {
  OpenedStore opened(range_file({{kHunter, 0}, {0, 3}, {kTarget, 16}}));
  ASSERT_EQ(opened.ids.size(), 4U);
  EXPECT_EQ(opened.leaf(1).serial_id, 3U);
  EXPECT_EQ(opened.leaf(2).serial_id, kHunter);
  EXPECT_EQ(opened.leaf(3).serial_id, kTarget);
  for (unsigned int stream = 1; stream < 4; ++stream) {
    EXPECT_EQ(opened.leaf(stream).codec, Enum::CODEC_TYPE_NCOM);
    expect_span(opened.leaf(stream), range_ms(0), kLast);
  }
  EXPECT_EQ(opened.range().at("Codec.NCom.Index.0.XCom.Serial"), std::to_string(kHunter));
  EXPECT_EQ(opened.range().at("Codec.NCom.Index.1.XCom.Serial"), "3");
  EXPECT_EQ(opened.range().at("Codec.NCom.Indices"), "0 1 2");
}

TEST(RangeFile, wrapped_packets_are_decoded_as_their_units_sent_them) {
  for (const unsigned int stream : {1U, 2U}) {
    OpenedStore opened(range_file({{kHunter, 0}, {kTarget, 0}}));
    const auto values = opened.values(range_ms(70), {"Lat", "Nano"}, stream);
    EXPECT_NEAR(static_cast<double>(values[0]), (0.5 + 7e-7) * 57.29577951308232, 1e-12);
    EXPECT_EQ(static_cast<long long>(values[1]), range_ms(70));
  }
}

TEST(RangeFile, streams_note_where_their_packets_came_from) {
  OpenedStore opened(range_file({{kHunter, 0}, {77, 16}, {0, 3}, {88, 17}}));
  const auto source = [&](unsigned int stream) {
    Values kept;
    for (const auto& [key, text] : opened.range(stream)) {
      if (key == "Provenance" || key.starts_with("Address.")) kept.emplace(key, text);
    }
    return kept;
  };
  const auto way = [](Enum::PROVENANCE_TYPE member) { return std::string(GetString(member)); };
  ASSERT_EQ(opened.ids.size(), 5U);  // 3, 77, 88 and the hunter
  EXPECT_EQ(source(1), Values({{"Provenance", way(Enum::PROVENANCE_TYPE_VALUE_03)},
                               {"Address.IPv4", ""},
                               {"Address.File", ""},
                               {"Address.Serial", "3"}}));
  EXPECT_EQ(source(2), Values({{"Provenance", way(Enum::PROVENANCE_TYPE_VALUE_16)},
                               {"Address.IPv4", ""},
                               {"Address.File", "77"},
                               {"Address.Serial", ""}}));
  EXPECT_EQ(source(3), Values({{"Provenance", way(Enum::PROVENANCE_TYPE_VALUE_17)},
                               {"Address.IPv4", ""},
                               {"Address.File", ""},
                               {"Address.Serial", ""}}));
  EXPECT_EQ(source(4), Values({{"Provenance", way(Enum::PROVENANCE_TYPE_VALUE_00)},
                               {"Address.IPv4", "10.0.0.1"},
                               {"Address.File", ""},
                               {"Address.Serial", ""}}));
}

TEST(RangeFile, hunter_and_target_are_known_by_the_addresses_of_channel_9) {
  OpenedStore opened(range_file({{kTarget, 0}, {kHunter, 0}}, addresses(kHunter, kTarget)));
  ASSERT_EQ(opened.ids.size(), 3U);  // the hunter's number is the lower one
  EXPECT_EQ(opened.range(1).at("WhoAmI"), "Hunter");
  EXPECT_EQ(opened.range(2).at("WhoAmI"), "Target 1");
  EXPECT_EQ(opened.range().at("Hunter.XCom.Serial"), std::to_string(kHunter));
  EXPECT_EQ(opened.range().at("Target.Index.0.XCom.Serial"), std::to_string(kTarget));
  EXPECT_EQ(opened.range().at("Target.Indices"), "0");
  const Values scan = opened.scan();
  EXPECT_EQ(scan.at("Range.Hunter.Stream"), "1");
  EXPECT_EQ(scan.at("Range.Target.Index.0.Stream"), "2");
  EXPECT_EQ(scan.at("Range.Target.Indices"), "0");
  EXPECT_EQ(scan.at("Range.Codec.NCom.Index.0.Stream"), "2");
  EXPECT_EQ(scan.at("Range.Codec.NCom.Index.1.Stream"), "1");
  EXPECT_EQ(scan.at("Range.Codec.NCom.Indices"), "0 1");
  EXPECT_EQ(opened.scan(1).at("Range.Codec.RCom.Stream"), "0");
  EXPECT_EQ(opened.scan(2).at("Range.Range.Stream"), "0");
}

TEST(RangeFile, a_zero_or_a_key_in_place_of_an_address_names_nobody) {
  constexpr std::uint32_t kHunt = 0x746E7568;  // "hunt"
  constexpr std::uint32_t kTgt1 = 0x31746774;  // "tgt1"
  for (const Bytes& told : {addresses(0, 0), addresses(kHunt, kTgt1)}) {
    OpenedStore opened(range_file({{kHunt, 16}, {kTgt1, 16}, {0, 3}}, told));
    ASSERT_EQ(opened.ids.size(), 4U);
    EXPECT_THAT(opened.range(), Not(Contains(Key("Hunter.XCom.Serial"))));
    EXPECT_THAT(opened.range(), Not(Contains(Key("Target.Indices"))));
    for (unsigned int stream = 1; stream < 4; ++stream) {
      EXPECT_THAT(opened.range(stream), Not(Contains(Key("WhoAmI")))) << stream;
    }
  }
}

TEST(RangeFile, of_nine_sources_the_last_is_passed_over) {
  std::vector<DriveSource> sources;
  for (std::uint32_t address = 101; address <= 109; ++address) sources.push_back({address, 0});
  OpenedStore opened(range_file(sources));
  ASSERT_EQ(opened.ids.size(), 9U);
  for (unsigned int stream = 1; stream < 9; ++stream) {
    EXPECT_EQ(opened.leaf(stream).serial_id, 100 + stream);
    expect_span(opened.leaf(stream), range_ms(0), kLast);
  }
}

TEST(RangeFile, wrappers_without_a_source_are_passed_over) {
  OpenedStore opened(range_file({{0, 0}, {5, 255}, {0, 255}}));
  EXPECT_EQ(opened.ids.size(), 1U);
  expect_span(opened.leaf(), range_ms(0), kLast);
}

TEST(RangeFile, wrappers_alone_give_their_streams_beside_one_of_no_range_data) {
  Bytes file;
  for (unsigned int n = 0; n < kDrivePackets; ++n) {
    file = join({file, range_packet(kHunter, 0, {unit_data(n).bytes()})});
  }
  const OpenedStore opened(file);
  ASSERT_EQ(opened.ids.size(), 2U);
  EXPECT_FALSE(opened.leaf(0).storable);
  expect_span(opened.leaf(1), range_ms(0), kLast);
}

TEST(RangeFile, two_sources_of_one_number_share_a_stream) {
  OpenedStore opened(range_file({{0, 5}, {5, 0}}));
  ASSERT_EQ(opened.ids.size(), 2U);
  EXPECT_EQ(opened.range().at("Codec.NCom.Index.0.XCom.Serial"), "5");
  EXPECT_EQ(opened.range().at("Codec.NCom.Index.1.XCom.Serial"), "5");
  EXPECT_EQ(opened.scan().at("Range.Codec.NCom.Index.1.Stream"), "1");
}

TEST(RangeFile, sources_are_learned_from_wrappers_of_a_single_packet_alone) {
  const Bytes two = range_packet(9, 0, {unit_data(0).bytes(), unit_data(1).bytes()});
  const OpenedStore opened(join({two, range_file({})}));
  EXPECT_EQ(opened.ids.size(), 1U);
}

TEST(RangeFile, wrappers_of_several_packets_give_them_all) {
  Bytes file = range_file({});
  for (unsigned int n = 0; n < kDrivePackets; n += 2) {
    file = join({file, range_packet(9, 0, {unit_data(n).bytes(), unit_data(n + 1).bytes()})});
  }
  file = join({file, range_packet(9, 0, {unit_data(kDrivePackets).bytes()})});
  const OpenedStore opened(file);
  ASSERT_EQ(opened.ids.size(), 2U);
  // The prescan ends in the wrapper of packets 2 and 3; a step of the walk takes a whole wrapper.
  EXPECT_TRUE(opened.leaf(1).storable);
  EXPECT_EQ(opened.leaf(1).end, range_ms(10 * kDrivePackets));
}

TEST(RangeFile, a_wrapped_packet_with_a_bad_sum_is_lost_alone) {
  Bytes file = range_file({{kHunter, 0}});
  const Bytes last = range_packet(kHunter, 0, {unit_data(kDrivePackets).bad_sum().bytes()});
  const OpenedStore opened(join({file, last}));
  expect_span(opened.leaf(1), range_ms(0), kLast);
}

// A stream of its own, driven as the passes over a file do.
template <class S>
std::unique_ptr<S> scanned(const std::vector<Bytes>& packets) {
  auto stream = std::make_unique<S>(Enum::TRANSPORT_TYPE_RNG, 9);
  stream->codec_configure();
  const auto size = [](const Bytes& packet) { return static_cast<unsigned int>(packet.size()); };
  for (const Bytes& packet : packets) {
    if (stream->prescan_packet(packet.data(), size(packet))) break;
  }
  stream->prescan_tidy();
  for (const Bytes& packet : packets) stream->postscan_packet(packet.data(), size(packet));
  stream->postscan_tidy();
  return stream;
}

const Bytes kSourceHead = {1, 0, 0, 10, 0};

// The drive of a unit, each packet as `form` makes it.
template <class Form>
std::vector<Bytes> unit_drive(Form form) {
  std::vector<Bytes> packets;
  for (unsigned int n = 0; n < kDrivePackets; ++n) packets.push_back(form(unit_data(n).bytes()));
  return packets;
}

TEST(StreamNComForms, a_bare_packet_is_taken_as_it_is) {
  const auto stream = scanned<StreamNCom>(unit_drive([](Bytes packet) { return packet; }));
  EXPECT_TRUE(stream->is_storable());
  EXPECT_EQ(static_cast<nano_t>(stream->get_end()), kLast);
}

TEST(StreamNComForms, a_bare_packet_needs_no_sum_and_a_wrapped_one_does) {
  const auto spoil = [](Bytes packet) {
    ++packet.back();
    return packet;
  };
  EXPECT_TRUE(scanned<StreamNCom>(unit_drive(spoil))->is_storable());
  const auto wrap = [&](Bytes packet) { return join({kSourceHead, spoil(std::move(packet))}); };
  EXPECT_FALSE(scanned<StreamNCom>(unit_drive(wrap))->is_storable());
}

TEST(StreamNComForms, from_77_bytes_on_packets_stand_behind_their_source) {
  const auto wrap = [](Bytes packet) { return join({kSourceHead, packet}); };
  EXPECT_TRUE(scanned<StreamNCom>(unit_drive(wrap))->is_storable());
  const auto longer = [](Bytes packet) { return join({kSourceHead, packet, Bytes(71, 0xE7)}); };
  EXPECT_TRUE(scanned<StreamNCom>(unit_drive(longer))->is_storable());
}

TEST(StreamNComForms, any_other_size_is_no_packet) {
  for (const std::size_t size : {0, 1, 71, 73, 75, 76}) {
    const auto cut = [&](Bytes packet) {
      packet.resize(size);
      return packet;
    };
    EXPECT_FALSE(scanned<StreamNCom>(unit_drive(cut))->is_storable()) << size;
  }
}

TEST(StreamNComForms, without_a_range_header_there_is_nothing_to_note_the_source_in) {
  const auto wrap = [](Bytes packet) { return join({kSourceHead, packet}); };
  const auto stream = scanned<StreamNCom>(unit_drive(wrap));
  EXPECT_EQ(stream->get_meta().find_aux_header("{Trel-Range}"), nullptr);
}

TEST(StreamRComSources, before_the_last_scan_nothing_is_known) {
  const StreamRCom stream(Enum::TRANSPORT_TYPE_RNG, 0);
  const RangeSources sources = stream.sources();
  for (const auto& wrap : sources.wraps) EXPECT_FALSE(wrap);
  EXPECT_FALSE(sources.hunter);
  for (const auto& target : sources.targets) EXPECT_FALSE(target);
}

TEST(StreamRComSources, are_known_though_no_element_is_wanted) {
  std::vector<Bytes> packets;
  for (unsigned int n = 0; n < 10; ++n) packets.push_back(range_data(n).bytes());
  packets.push_back(range_packet(kHunter, 0, {unit_data(0).bytes()}));
  packets.push_back(range_data(10).channel(9, addresses(kHunter, kTarget)).bytes());
  packets.push_back(range_data(11).target(3, 4).channel(9, addresses(kHunter, 77)).bytes());
  const RangeSources sources = scanned<StreamRCom>(packets)->sources();
  ASSERT_TRUE(sources.wraps[0]);
  EXPECT_EQ(sources.wraps[0]->address, kHunter);
  EXPECT_EQ(sources.wraps[0]->provenance, 0U);
  EXPECT_FALSE(sources.wraps[1]);
  EXPECT_EQ(sources.hunter, kHunter);
  EXPECT_EQ(sources.targets[0], kTarget);
  EXPECT_FALSE(sources.targets[1]);
  EXPECT_EQ(sources.targets[2], 77U);
}

// One drive as a recording: a stream of range data and two of units, tied together by headers.
Bytes recorded_drive() {
  Recording recording;
  auto& range = recording.stream(50).codec("RCom").range({{"WhoAmI", "Range"},
                                                          {"Codec.NCom.Index.0.XCom.Serial", "60"},
                                                          {"Codec.NCom.Index.1.XCom.Serial", "40"},
                                                          {"Codec.NCom.Indices", "0 1"},
                                                          {"Hunter.XCom.Serial", "60"},
                                                          {"Target.Index.0.XCom.Serial", "40"},
                                                          {"Target.Indices", "0"}});
  auto& hunter = recording.stream(60).codec("NCom").range(
      {{"Codec.RCom.XCom.Serial", "50"}, {"Range.XCom.Serial", "50"}});
  auto& target = recording.stream(40).codec("NCom").range({{"Range.XCom.Serial", "50"}});
  for (auto* stream : {&range, &hunter, &target}) stream->headers();
  for (unsigned int n = 0; n < kDrivePackets; ++n) {
    range.packet(range_data(n).xcom_bytes()).page();
    hunter.packet(unit_data(n).xcom_bytes()).page();
    target.packet(unit_data(n).xcom_bytes()).page();
  }
  return recording.bytes();
}

TEST(StreamRCom, of_a_recording_stands_behind_its_tag) {
  OpenedStore opened(recorded_drive(), ".xcom");
  ASSERT_EQ(opened.ids.size(), 3U);
  EXPECT_EQ(opened.leaf(1).codec, Enum::CODEC_TYPE_RCOM);
  EXPECT_EQ(opened.leaf(1).serial_id, 50U);
  expect_span(opened.leaf(1), range_ms(0), kLast);
  EXPECT_EQ(static_cast<long long>(opened.values(range_ms(120), {"Nano"}, 1).at(0)), range_ms(120));
}

TEST(StreamRCom, of_a_recording_keeps_the_recorders_headers_and_adds_that_of_the_scan) {
  OpenedStore opened(recorded_drive(), ".xcom");
  EXPECT_EQ(opened.meta(1).auxiliary.size(), 2U);
  EXPECT_THAT(opened.range(1), Not(Contains(Key("Address.IPv4"))));
  EXPECT_EQ(opened.scan(1).at("StreamCodec"), "RCom");
  for (const unsigned int unit : {0U, 2U}) {
    EXPECT_THAT(opened.range(unit), Not(Contains(Key("Provenance"))));
  }
}

TEST(StreamRCom, of_a_recording_finds_the_streams_that_its_recorder_named) {
  OpenedStore opened(recorded_drive(), ".xcom");
  const Values scan = opened.scan(1);
  EXPECT_EQ(scan.at("Range.Codec.NCom.Index.0.Stream"), "2");
  EXPECT_EQ(scan.at("Range.Codec.NCom.Index.1.Stream"), "0");
  EXPECT_EQ(scan.at("Range.Codec.NCom.Indices"), "0 1");
  EXPECT_EQ(scan.at("Range.Hunter.Stream"), "2");
  EXPECT_EQ(scan.at("Range.Target.Index.0.Stream"), "0");
  EXPECT_EQ(scan.at("Range.Target.Indices"), "0");
  EXPECT_EQ(opened.scan(2).at("Range.Codec.RCom.Stream"), "1");
  EXPECT_EQ(opened.scan(0).at("Range.Range.Stream"), "1");
  EXPECT_THAT(opened.scan(0), Not(Contains(Key("Range.Codec.RCom.Stream"))));
}

TEST(StreamRCom, passes_over_recorded_packets_that_are_short_or_damaged) {
  Recording recording;
  auto& stream = recording.stream(50).codec("RCom").headers();
  for (unsigned int n = 0; n < kDrivePackets; ++n) stream.packet(range_data(n).xcom_bytes());
  stream.packet(range_data(30).bad_sum().xcom_bytes());
  Bytes cut = range_data(31).xcom_bytes();
  cut.pop_back();
  stream.packet(cut).packet(Bytes(7)).packet(Bytes(8));
  expect_span(OpenedStore(recording.bytes(), ".xcom").leaf(), range_ms(0), kLast);
}

constexpr long long kSecond = 1'000'000'000;

// A CAN packet of one frame; three, a second apart, tell their times.
Bytes frames(long long nano) {
  return Support::CanPacket(nano).frame(Support::CanFrame(16, 8).intel(0, 16, 7)).bytes();
}

// All kinds in one recording. The MCom stream begins first, a minute ahead of the range data, and
// the CAN stream ends last.
Bytes all_kinds() {
  Recording recording;
  auto& range = recording.stream(10).codec("RCom").headers();
  auto& unit = recording.stream(11).codec("NCom").headers();
  auto& vessel = recording.stream(12).codec("MCom").headers();
  auto& car = recording.stream(13).ucom(database()).headers();
  auto& bus = recording.stream(14)
                  .codec("Can")
                  .dbc("BO_ 16 Motion: 8 Unit\n SG_ Speed : 0|16@1+ (1,0) [0|0] \"\" Driver\n")
                  .headers();
  for (unsigned int n = 0; n < kDrivePackets; ++n) {
    range.packet(range_data(n).xcom_bytes()).page();
    unit.packet(unit_data(n).xcom_bytes()).page();
    MComPacket mcom;
    mcom.time_ms(static_cast<std::uint16_t>(10 * n)).status(4).channel(86, {});
    if (n == 2) mcom.channel(0, {0x7F, 0x1F, 0x5F, 0x01, 255, 255, 255, 255});
    vessel.packet(mcom.xcom_bytes()).page();
    car.packet(sample(range_ms(10 * n), n)).page();
  }
  for (const long long second : {1, 2, 3})
    bus.packet(frames(kRangeStart + second * kSecond)).page();
  return recording.bytes();
}

TEST(AllKinds, open_together_and_the_span_is_from_the_earliest_to_the_latest) {
  OpenedStore opened(all_kinds(), ".xcom");
  ASSERT_EQ(opened.ids.size(), 5U);
  std::vector<Enum::CODEC_TYPE> kinds;
  for (const unsigned int id : opened.ids) kinds.push_back(opened.leaf(id).codec);
  EXPECT_THAT(kinds,
              ElementsAre(Enum::CODEC_TYPE_RCOM, Enum::CODEC_TYPE_NCOM, Enum::CODEC_TYPE_MCOM,
                          Enum::CODEC_TYPE_UCOM, Enum::CODEC_TYPE_CAN));
  expect_span(opened.leaf(0), range_ms(0), kLast);
  expect_span(opened.leaf(1), range_ms(0), kLast);
  expect_span(opened.leaf(2), range_ms(0) - 60 * kSecond, kLast - 60 * kSecond);
  expect_span(opened.leaf(3), range_ms(0), kLast);
  expect_span(opened.leaf(4), kRangeStart + kSecond, kRangeStart + 3 * kSecond);
  long long start = 0;
  long long end = 0;
  opened.store.get_start(start);
  opened.store.get_end(end);
  EXPECT_EQ(start, range_ms(0) - 60 * kSecond);
  EXPECT_EQ(end, kRangeStart + 3 * kSecond);
}

TEST(AllKinds, deliver_side_by_side) {
  OpenedStore opened(all_kinds(), ".xcom");
  Aspect aspect;
  for (const unsigned int id : opened.ids) {
    EXPECT_EQ(opened.store.direct_add_element(id, "Nano"), Enum::RETURN_TYPE_NORMAL) << id;
    opened.store.direct_use_element(aspect, id, "Nano");
  }
  std::vector<Result> values;
  opened.store.direct_decode_begin(range_ms(100));
  opened.store.direct_decode_step(aspect, range_ms(100), values);
  ASSERT_EQ(values.size(), 5U);
  EXPECT_EQ(static_cast<long long>(values[0]), range_ms(100));
  EXPECT_EQ(static_cast<long long>(values[1]), range_ms(100));
  EXPECT_EQ(static_cast<long long>(values[2]), kLast - 60 * kSecond);  // it has ended
  EXPECT_EQ(static_cast<long long>(values[3]), range_ms(100));
}

}  // namespace
}  // namespace Trel::Sto::Test
