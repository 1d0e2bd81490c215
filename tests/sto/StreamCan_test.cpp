// CAN streams through the store: what the database and the built-in variables are as elements, and
// what the walk of a recording makes of them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sto/Sto_Store.h"
#include "sto/Sto_Stream.h"
#include "sto/Stream_recordings.h"
#include "support/Support_CanPacket.h"

namespace Trel::Sto::Test {
namespace {

using Support::CanFrame;
using Support::CanPacket;

constexpr long long kSecond = 1000000000;
constexpr long long kGps = 1400000000 * kSecond;

constexpr const char* kDatabase =
    "BO_ 16 Motion: 8 Unit\n"
    " SG_ Speed : 0|16@1+ (0.5,0) [0|100] \"m/s\" Driver\n"
    " SG_ Gear : 16|8@1- (1,0) [0|0] \"\" Driver\n"
    " SG_ Count : 24|8@1+ (1,0) [0|0] \"\" Driver\n"
    "BO_ 17 Other: 8 Unit\n"
    " SG_ Speed : 7|16@0+ (1,0) [0|0] \"\" Driver\n"
    "CM_ SG_ 16 Speed \"Over ground\";\n";

Bytes motion(long long nano, unsigned int speed, int gear) {
  return CanPacket(nano)
      .frame(CanFrame(16, 8).intel(0, 16, speed).intel(16, 8, static_cast<std::uint64_t>(gear)))
      .bytes();
}

// A store with one CAN recording in it.
struct Opened {
  explicit Opened(const std::vector<Bytes>& packets, const char* database = kDatabase)
      : file(recorded(packets, database)), store(Options(16, kSecond, 0, 0.1, 1048576, 10)) {
    unsigned int count = 0;
    store.add_resource(file.path(), ids, count);
  }

  static Bytes recorded(const std::vector<Bytes>& packets, const char* database) {
    Recording recording;
    auto& stream = recording.stream(kSerial).codec("Can");
    if (database != nullptr) stream.dbc(database);
    stream.headers();
    for (const Bytes& packet : packets) stream.packet(packet);
    return recording.bytes();
  }

  // The values of the elements at time t, in order.
  std::vector<Result> at(long long t, const std::vector<std::string>& names) {
    Aspect aspect;
    for (const std::string& name : names) {
      EXPECT_EQ(store.direct_add_element(0, name), Enum::RETURN_TYPE_NORMAL) << name;
      store.direct_use_element(aspect, 0, name);
    }
    std::vector<Result> values;
    store.direct_decode_begin(t);
    store.direct_decode_step(aspect, t, values);
    return values;
  }

  StreamLeaf describe() {
    StreamLeaf leaf;
    store.query_stream(leaf, 0);
    return leaf;
  }

  ScratchFile file;
  DataStore store;
  std::vector<unsigned int> ids;
};

// GPS times, one a second: enough to end the scan for the first time.
std::vector<Bytes> three_seconds() {
  return {motion(kGps, 20, -1), motion(kGps + kSecond, 30, 2), motion(kGps + 2 * kSecond, 40, 3)};
}

TEST(StreamCan, a_recording_with_its_database_is_storable_over_its_packet_times) {
  Opened opened(three_seconds());
  const StreamLeaf leaf = opened.describe();
  EXPECT_EQ(leaf.codec, Enum::CODEC_TYPE_CAN);
  EXPECT_TRUE(leaf.captured);
  EXPECT_TRUE(leaf.configured);
  EXPECT_TRUE(leaf.storable);
  EXPECT_EQ(leaf.start, kGps);
  EXPECT_EQ(leaf.end, kGps + 2 * kSecond);
}

TEST(StreamCan, without_its_database_it_stays_unconfigured) {
  Opened opened(three_seconds(), nullptr);
  EXPECT_EQ(opened.ids.size(), 1U);
  EXPECT_TRUE(opened.describe().captured);
  EXPECT_FALSE(opened.describe().configured);
  EXPECT_FALSE(opened.describe().storable);
  EXPECT_EQ(opened.store.direct_add_element(0, "Nano"), Enum::RETURN_TYPE_NOTHING);
}

TEST(StreamCan, a_recording_of_device_times_alone_keeps_them) {
  Opened opened({motion(1 * kSecond, 1, 1), motion(2 * kSecond, 2, 2), motion(3 * kSecond, 3, 3)});
  EXPECT_TRUE(opened.describe().storable);
  EXPECT_EQ(opened.describe().start, 1 * kSecond);
  EXPECT_EQ(opened.describe().end, 3 * kSecond);
}

TEST(StreamCan, packets_ahead_of_the_first_gps_time_get_times_on_its_scale) {
  // 5 s and 6 s after power-on, then GPS times a second apart: the step between them counts as one
  // gap of a second, so the two lie two seconds and one second ahead.
  Opened opened({motion(5 * kSecond, 1, 1), motion(6 * kSecond, 2, 2), motion(kGps, 3, 3),
                 motion(kGps + kSecond, 4, 4)});
  EXPECT_EQ(opened.describe().start, kGps - 2 * kSecond);
  const auto values = opened.at(kGps - 2 * kSecond, {"Nano", "Gear"});
  EXPECT_EQ(static_cast<long long>(values[0]), kGps - 2 * kSecond);
  EXPECT_EQ(static_cast<int>(values[1]), 1);
}

TEST(StreamCan, signals_are_scaled_and_stamped_with_the_time_of_their_packet) {
  Opened opened(three_seconds());
  const auto values = opened.at(kGps + kSecond, {"Speed", "Gear", "Nano", "TimeWeekSecond"});
  EXPECT_EQ(values[0].type(), Enum::BASIC_TYPE_double);
  EXPECT_EQ(static_cast<double>(values[0]), 15.0);  // 30 x 0.5
  EXPECT_EQ(values[0].get_nano(), kGps + kSecond);
  EXPECT_TRUE(values[0].good());
  EXPECT_EQ(values[1].type(), Enum::BASIC_TYPE_int64_t);
  EXPECT_EQ(static_cast<int>(values[1]), 2);
  EXPECT_EQ(static_cast<long long>(values[2]), kGps + kSecond);
  // 1400000001 s = 2314 weeks of 604800 s and 492801 s
  EXPECT_EQ(static_cast<double>(values[3]), 492801.0);
}

TEST(StreamCan, a_negative_signal_is_negative) {
  Opened opened(three_seconds());
  EXPECT_EQ(static_cast<int>(opened.at(kGps, {"Gear"})[0]), -1);
}

TEST(StreamCan, the_second_signal_of_a_name_is_reachable_by_its_tag) {
  Opened opened({CanPacket(kGps).frame(CanFrame(17, 8).motorola(7, 16, 0x1234)).bytes(),
                 motion(kGps + kSecond, 2, 2), motion(kGps + 2 * kSecond, 2, 2)});
  const auto values = opened.at(kGps, {"Speed.1"});
  EXPECT_EQ(values[0].type(), Enum::BASIC_TYPE_uint64_t);
  EXPECT_EQ(static_cast<int>(values[0]), 0x1234);
}

TEST(StreamCan, a_built_in_variable_hides_a_signal_of_its_name_and_kind) {
  // A signed integer signal, so of the kind of the built-in time.
  Opened opened(three_seconds(), "BO_ 16 M: 8 U\n SG_ Nano : 0|16@1- (1,0) [0|0] \"\" D\n");
  EXPECT_EQ(static_cast<long long>(opened.at(kGps, {"Nano"})[0]), kGps);
}

TEST(StreamCan, a_signal_of_an_earlier_kind_comes_before_the_built_in_variable) {
  // A real signal: that kind is asked before the integers.
  Opened opened(three_seconds(), "BO_ 16 M: 8 U\n SG_ Nano : 0|16@1+ (0.5,0) [0|0] \"\" D\n");
  const auto values = opened.at(kGps, {"Nano"});
  EXPECT_EQ(values[0].type(), Enum::BASIC_TYPE_double);
  EXPECT_EQ(static_cast<double>(values[0]), 10.0);  // 20 x 0.5
}

TEST(StreamCan, measurements_are_the_built_in_variables_and_then_the_signals) {
  Opened opened(three_seconds());
  std::vector<DynamicNode> elements;
  opened.store.get_stream_in(0)->query_measurements(elements);
  std::vector<std::string> names;
  for (const DynamicNode& element : elements) names.push_back(element.name);
  // Kind by kind and by name within a kind: double, signed, unsigned.
  EXPECT_EQ(names, (std::vector<std::string>{"TimeWeekSecond", "Nano", "NanoFromFirst",
                                             "NanoFromOrigin", "NanoFromStart", "TimeWeekCount",
                                             "Speed", "Gear", "Count", "Speed.1"}));
  EXPECT_EQ(elements[6].unit, "m/s");
  EXPECT_EQ(elements[6].description, "Over ground");
  EXPECT_EQ(elements[6].resolution, 0.5);
  EXPECT_EQ(elements[6].limits[1], 100.0);
}

TEST(StreamCan, signals_that_one_comment_names_share_its_text) {
  Opened opened(three_seconds(),
                "BO_ 16 Motion: 8 Unit\n"
                " SG_ Speed : 0|16@1+ (1,0) [0|0] \"\" Driver\n"
                " SG_ Speed : 16|16@1+ (1,0) [0|0] \"\" Driver\n"
                "CM_ SG_ 16 Speed \"Over ground\";\n");
  std::vector<DynamicNode> elements;
  opened.store.get_stream_in(0)->query_measurements(elements);
  std::vector<const std::string*> comments;
  for (const DynamicNode& element : elements) {
    if (element.description == "Over ground") comments.push_back(&element.description.str());
  }
  ASSERT_EQ(comments.size(), 2U);
  EXPECT_EQ(comments[0], comments[1]);
}

TEST(StreamCan, the_start_and_end_of_an_element_are_its_first_and_last_values) {
  Opened opened(three_seconds());
  const Stream* stream = opened.store.get_stream_in(0);
  EXPECT_EQ(static_cast<double>(stream->get_end("Speed")), 20.0);  // 40 x 0.5
  EXPECT_EQ(stream->get_end("Speed").get_nano(), kGps + 2 * kSecond);
  EXPECT_EQ(static_cast<long long>(stream->get_start("Nano")), kGps);
  EXPECT_FALSE(stream->get_start("NoSuchSignal").ok());
}

}  // namespace
}  // namespace Trel::Sto::Test
