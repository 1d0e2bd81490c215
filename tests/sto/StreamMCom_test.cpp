// MCom streams through the store, in raw files and in recordings, alone and among NCom packets.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sto/Sto_Store.h"
#include "sto/Sto_Stream.h"
#include "sto/Stream_recordings.h"
#include "support/Support_NavPacket.h"

namespace Trel::Sto::Test {
namespace {

using Support::MComPacket;
using Support::NComPacket;
using testing::Contains;
using testing::Key;

// A minute of 2023, counted from GPS time zero: 23,011,200 is 0x015F1F80.
constexpr NComPacket::ChannelData kMinutes = {0x80, 0x1F, 0x5F, 0x01, 255, 255, 255, 255};
constexpr NComPacket::ChannelData kNothing = {};
constexpr long long kStart = 23'011'200 * 60'000'000'000LL;

constexpr long long at_ms(long long milliseconds) {
  return kStart + milliseconds * 1'000'000;
}

// A packet of either family, moving north by its own time in millimetres a second. Channel 86 is
// none.
template <class P>
P packet(std::uint16_t time, bool with_minutes = false) {
  P made;
  made.time_ms(time).status(4).raw_velocity(10 * time, 0, 0);
  return with_minutes ? made.channel(0, kMinutes) : made.channel(86, kNothing);
}

// Ten packets a hundredth of a second apart, `first` in the minute the first; the third tells the
// minute.
template <class P>
std::vector<P> drive(std::uint16_t first) {
  std::vector<P> packets;
  for (std::uint16_t n = 0; n < 10; ++n) {
    packets.push_back(packet<P>(static_cast<std::uint16_t>(first + 10 * n), n == 2));
  }
  return packets;
}

template <class P>
Bytes raw(const std::vector<P>& packets) {
  Bytes bytes;
  for (const P& each : packets) bytes = join({bytes, each.bytes()});
  return bytes;
}

// A store with one file in it.
struct OpenedStore {
  explicit OpenedStore(const Bytes& bytes, const std::string& extension = ".mcom")
      : file(bytes, extension), store(options()) {
    unsigned int count = 0;
    store.add_resource(file.path(), ids, count);
  }

  [[nodiscard]] StreamLeaf leaf(unsigned int stream = 0) const {
    StreamLeaf described;
    store.query_stream(described, stream);
    return described;
  }
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

TEST(StreamMCom, of_a_raw_file_spans_its_packets_with_times_from_the_first_on) {
  const OpenedStore opened(raw(drive<MComPacket>(100)));
  ASSERT_EQ(opened.ids.size(), 1U);
  EXPECT_EQ(opened.leaf().codec, Enum::CODEC_TYPE_MCOM);
  EXPECT_TRUE(opened.leaf().captured && opened.leaf().configured);
  expect_span(opened.leaf(), at_ms(100), at_ms(190));
}

TEST(StreamMCom, offers_its_626_elements_and_no_other) {
  OpenedStore opened(raw(drive<MComPacket>(100)));
  std::vector<DynamicNode> elements;
  opened.store.get_stream_in(0)->query_measurements(elements);
  EXPECT_EQ(elements.size(), 626U);
  for (const DynamicNode& element : elements) {
    EXPECT_EQ(opened.store.direct_add_element(0, element.name), Enum::RETURN_TYPE_NORMAL)
        << element.name;
  }
  for (const char* name : {"OutputDatum", "ProductVersion", "LinJerkFiltFreq", "IsoJnX"}) {
    EXPECT_NE(opened.store.direct_add_element(0, name), Enum::RETURN_TYPE_NORMAL) << name;
  }
}

TEST(StreamMCom, decodes_what_is_asked_for) {
  std::vector<MComPacket> packets = drive<MComPacket>(100);
  packets[5].raw_heave(-1, 3).counter(777);
  OpenedStore opened(raw(packets));
  const auto values =
      opened.values(at_ms(150), {"Heave", "LPHeave", "TxPacketCounter", "Nano", "Speed2d"});
  ASSERT_EQ(values.size(), 5U);
  EXPECT_EQ(static_cast<double>(values[0]), -0.002);
  EXPECT_EQ(values[0].get_nano(), at_ms(150));
  EXPECT_FALSE(values[1].ok()) << "nobody has told its settings";
  EXPECT_EQ(static_cast<unsigned int>(values[2]), 777U);
  EXPECT_EQ(static_cast<long long>(values[3]), at_ms(150));
  EXPECT_DOUBLE_EQ(static_cast<double>(values[4]), 0.15);
}

TEST(StreamMCom, computes_track_and_distance_without_a_feature_record) {
  std::vector<MComPacket> packets = drive<MComPacket>(100);
  for (MComPacket& each : packets) each.raw_velocity(100'000, 100'000, 0);
  OpenedStore opened(raw(packets));
  const auto values = opened.values(at_ms(150), {"Speed2d", "Track", "Dist2d"});
  EXPECT_TRUE(values[0].ok() && values[1].ok() && values[2].ok());
  EXPECT_NEAR(static_cast<double>(values[1]), 45.0, 1e-9);
}

TEST(StreamMCom, takes_nothing_from_ncom_packets_in_its_file) {
  const Bytes ours = raw(drive<MComPacket>(100));
  const Bytes mixed = join({raw(drive<NComPacket>(20'000)), ours, raw(drive<NComPacket>(30'000))});
  OpenedStore opened(mixed);
  expect_span(opened.leaf(), at_ms(100), at_ms(190));
  const auto values = opened.values(at_ms(150), {"Speed2d"});
  EXPECT_DOUBLE_EQ(static_cast<double>(values[0]), 0.15);
}

TEST(StreamMCom, a_file_of_ncom_packets_alone_has_no_time) {
  const OpenedStore opened(raw(drive<NComPacket>(100)));
  ASSERT_EQ(opened.ids.size(), 1U);
  EXPECT_FALSE(opened.leaf().storable);
}

TEST(MixedFile, read_as_either_family_gives_that_familys_packets) {
  Bytes mixed;
  const auto ncom = drive<NComPacket>(100);
  const auto mcom = drive<MComPacket>(20'000);
  for (std::size_t n = 0; n < ncom.size(); ++n) {
    mixed = join({mixed, ncom[n].bytes(), Bytes(n, 0xE8), mcom[n].bytes()});
  }
  const OpenedStore as_ncom(mixed, ".ncom");
  EXPECT_EQ(as_ncom.leaf().codec, Enum::CODEC_TYPE_NCOM);
  expect_span(as_ncom.leaf(), at_ms(100), at_ms(190));
  const OpenedStore as_mcom(mixed, ".mcom");
  EXPECT_EQ(as_mcom.leaf().codec, Enum::CODEC_TYPE_MCOM);
  expect_span(as_mcom.leaf(), at_ms(20'000), at_ms(20'090));
}

Bytes recorded(const std::vector<Bytes>& packets) {
  Recording recording;
  auto& stream = recording.stream(kSerial).codec("MCom").headers();
  for (const Bytes& each : packets) stream.packet(each);
  return recording.bytes();
}

std::vector<Bytes> recorded_drive() {
  std::vector<Bytes> packets;
  for (const MComPacket& each : drive<MComPacket>(100)) packets.push_back(each.xcom_bytes());
  return packets;
}

TEST(StreamMCom, of_a_recording_stands_behind_its_tag) {
  OpenedStore opened(recorded(recorded_drive()), ".xcom");
  ASSERT_EQ(opened.ids.size(), 1U);
  EXPECT_EQ(opened.leaf().codec, Enum::CODEC_TYPE_MCOM);
  expect_span(opened.leaf(), at_ms(100), at_ms(190));
  const auto values = opened.values(at_ms(120), {"Speed2d", "Nano"});
  EXPECT_DOUBLE_EQ(static_cast<double>(values[0]), 0.12);
  EXPECT_EQ(static_cast<long long>(values[1]), at_ms(120));
}

TEST(StreamMCom, passes_over_recorded_packets_that_are_short_or_damaged) {
  std::vector<Bytes> packets = recorded_drive();
  packets.push_back(packet<MComPacket>(200).bad_sum().xcom_bytes());
  Bytes cut = packet<MComPacket>(210).xcom_bytes();
  cut.resize(84);
  packets.push_back(cut);
  packets.push_back(packet<NComPacket>(220).xcom_bytes());
  expect_span(OpenedStore(recorded(packets), ".xcom").leaf(), at_ms(100), at_ms(190));
}

TEST(StreamMCom, notes_what_the_scans_have_found) {
  std::vector<MComPacket> packets = drive<MComPacket>(100);
  packets[4].channel(19, {'2', '4', '0', '3', '1', '1', '.', '2'});
  OpenedStore opened(raw(packets));
  const Com::StreamMeta& meta = opened.store.get_stream_in(0)->get_meta();
  EXPECT_EQ(meta.initial.get_tag(), "[Trel-MCom]");
  const Com::Meta* header = meta.find_aux_header("{Trel-StreamScan}");
  ASSERT_NE(header, nullptr);
  EXPECT_EQ(header->get("StreamCodec"), "MCom");
  EXPECT_EQ(header->get("DevId"), "240311.2");
  EXPECT_EQ(header->get("DateFirmware"), "20240311");
  EXPECT_THAT(header->get_values(), Contains(Key("ProductName")));
  EXPECT_EQ(meta.find_aux_header("{Trel-Range}"), nullptr);
}

}  // namespace
}  // namespace Trel::Sto::Test
