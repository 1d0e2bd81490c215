#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>

#include "Stream_fake.h"
#include "Stream_recordings.h"
#include "sto/Sto_Resource.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Values = std::map<std::string, std::string>;

constexpr nano_t kLargest = std::numeric_limits<nano_t>::max();
const std::string kMissingFile = "/nonexistent/recording.xcom";

// A resource that scans nothing; its streams are put in by hand.
class BareResource : public Resource {
 public:
  explicit BareResource(const std::string& path, Messages* ring = nullptr)
      : Resource(kOptions, Enum::TRANSPORT_TYPE_OGG, path, ring) {}

  void do_store() override { range_hunter_target_store_mapping(); }
  bool do_export(const std::string&, nano_t, nano_t) override { return false; }

  FakeStream& add(unsigned int serial, Enum::CODEC_TYPE codec = Enum::CODEC_TYPE_UCOM) {
    auto own = std::make_unique<FakeStream>(serial, getTrans(), codec);
    FakeStream& stream = *own;
    streams[serial] = std::move(own);
    return stream;
  }
  FakeStream& add_storable(unsigned int serial, nano_t start, nano_t end) {
    FakeStream& stream = add(serial);
    stream.first = start;
    stream.last = end;
    stream.set_storable();
    return stream;
  }

  using Resource::position;
  using Resource::push_msg;
  using Resource::read_file;
  using Resource::reopen_file;

 private:
  static inline const Options kOptions = Test::options();
};

Bytes read(BareResource& resource, std::size_t count) {
  Bytes bytes(count);
  bytes.resize(resource.read_file(bytes.data(), count));
  return bytes;
}

TEST(Resource, starts_with_id_0_and_knows_its_name_and_its_extension_in_lower_case) {
  const ScratchFile file({1}, ".XCom");
  const BareResource resource(file.path());
  EXPECT_EQ(resource.getResourceId(), 0U);
  EXPECT_EQ(resource.getTrans(), Enum::TRANSPORT_TYPE_OGG);
  EXPECT_EQ(resource.getName(), file.path());
  EXPECT_EQ(resource.getExtension(), ".xcom");
}

TEST(Resource, gives_its_id_to_every_stream) {
  BareResource resource(kMissingFile);
  const FakeStream& first = resource.add(1);
  const FakeStream& second = resource.add(2);
  resource.setResourceId(5);
  EXPECT_EQ(resource.getResourceId(), 5U);
  EXPECT_EQ(first.getResourceId(), 5U);
  EXPECT_EQ(second.getResourceId(), 5U);
}

TEST(Resource, a_query_fills_the_resource_record) {
  BareResource resource(kMissingFile);
  resource.setResourceId(5);
  ResourceNode root;
  resource.query_resource(root);
  EXPECT_EQ(root.resource_id, 5U);
  EXPECT_EQ(root.transport, Enum::TRANSPORT_TYPE_OGG);
  EXPECT_EQ(root.name, kMissingFile);
  EXPECT_EQ(root.extension, ".xcom");
}

TEST(Resource, deletes_its_streams_at_its_end) {
  int gone = 0;
  {
    BareResource resource(kMissingFile);
    resource.add(1).gone = &gone;
    resource.add(2).gone = &gone;
    EXPECT_EQ(gone, 0);
  }
  EXPECT_EQ(gone, 2);
}

TEST(ResourceFile, is_read_from_its_start) {
  const ScratchFile file({10, 11, 12, 13, 14});
  BareResource resource(file.path());
  EXPECT_EQ(resource.position(), 0U);
  EXPECT_EQ(read(resource, 2), (Bytes{10, 11}));
  EXPECT_EQ(resource.position(), 2U);
}

TEST(ResourceFile, at_the_end_the_position_is_the_size) {
  const ScratchFile file({10, 11, 12, 13, 14});
  BareResource resource(file.path());
  EXPECT_EQ(read(resource, 9).size(), 5U);
  EXPECT_EQ(resource.position(), 5U);
  EXPECT_EQ(read(resource, 9).size(), 0U);
  EXPECT_EQ(resource.position(), 5U);
}

TEST(ResourceFile, opened_again_is_at_its_start_with_the_end_cleared) {
  const ScratchFile file({10, 11, 12, 13, 14});
  BareResource resource(file.path());
  read(resource, 9);
  resource.reopen_file();
  EXPECT_EQ(resource.position(), 0U);
  EXPECT_EQ(read(resource, 2), (Bytes{10, 11}));
  EXPECT_EQ(file.open_handles(), 1);
}

TEST(ResourceFile, a_missing_one_has_no_bytes_and_raises_nothing) {
  BareResource resource(kMissingFile);
  EXPECT_EQ(resource.position(), 0U);
  EXPECT_EQ(read(resource, 9), Bytes());
  resource.reopen_file();
  EXPECT_EQ(read(resource, 9), Bytes());
}

TEST(ResourceSpan, reaches_from_the_earliest_start_to_the_latest_end) {
  BareResource resource(kMissingFile);
  resource.add_storable(1, 200, 400);
  resource.add_storable(2, 100, 300);
  resource.add_storable(3, 300, 350);
  EXPECT_EQ(resource.get_start(), 100);
  EXPECT_EQ(resource.get_end(), 400);
}

TEST(ResourceSpan, the_first_stream_sets_the_end_even_below_0) {
  BareResource resource(kMissingFile);
  resource.add_storable(1, -200, -100);
  EXPECT_EQ(resource.get_end(), -100);
  resource.add_storable(2, -300, -250);
  EXPECT_EQ(resource.get_start(), -300);
  EXPECT_EQ(resource.get_end(), -100);
}

TEST(ResourceSpan, streams_that_are_not_storable_do_not_count) {
  BareResource resource(kMissingFile);
  FakeStream& other = resource.add(1);
  other.first = -1000;
  other.last = 1000;
  resource.add_storable(2, 100, 300);
  EXPECT_EQ(resource.get_start(), 100);
  EXPECT_EQ(resource.get_end(), 300);
}

TEST(ResourceSpan, without_a_storable_stream_is_the_largest_time_and_0) {
  BareResource resource(kMissingFile);
  EXPECT_EQ(resource.get_start(), kLargest);
  EXPECT_EQ(resource.get_end(), 0);
  resource.add(1);
  EXPECT_EQ(resource.get_start(), kLargest);
  EXPECT_EQ(resource.get_end(), 0);
}

TEST(ResourceMessage, carries_the_resource_id_and_the_percentage) {
  Messages messages(10);
  BareResource resource(kMissingFile, &messages);
  resource.push_msg(Enum::DATA_STORE_MSG_INIT, 25.0);
  resource.setResourceId(3);
  resource.push_msg(Enum::DATA_STORE_MSG_INIT, 50.0);
  EXPECT_THAT(drain(messages), ElementsAre(Progress{Enum::DATA_STORE_MSG_INIT, 25.0F, 0},
                                           Progress{Enum::DATA_STORE_MSG_INIT, 50.0F, 3}));
}

TEST(ResourceMessage, a_position_is_turned_into_the_share_of_a_job_of_equal_parts) {
  const ScratchFile file(Bytes(200));
  Messages messages(10);
  BareResource resource(file.path(), &messages);
  const auto msg = Enum::DATA_STORE_MSG_PRESCAN;
  resource.push_msg(msg, 50, 0, 1);   // 100 * (0 + 50 / 200) / 1
  resource.push_msg(msg, 100, 1, 4);  // 100 * (1 + 100 / 200) / 4
  resource.push_msg(msg, 200, 3, 4);  // 100 * (3 + 200 / 200) / 4
  EXPECT_THAT(drain(messages),
              ElementsAre(Progress{msg, 25.0F}, Progress{msg, 37.5F}, Progress{msg, 100.0F}));
}

TEST(ResourceMessage, of_a_position_in_a_file_without_bytes_is_not_sent) {
  const ScratchFile file({});
  Messages messages(10);
  BareResource empty(file.path(), &messages);
  empty.push_msg(Enum::DATA_STORE_MSG_PRESCAN, 0, 0, 1);
  BareResource missing(kMissingFile, &messages);
  missing.push_msg(Enum::DATA_STORE_MSG_PRESCAN, 0, 0, 1);
  EXPECT_THAT(drain(messages), IsEmpty());
}

TEST(ResourceMessage, without_a_ring_nothing_happens) {
  const ScratchFile file(Bytes(200));
  BareResource resource(file.path(), nullptr);
  resource.push_msg(Enum::DATA_STORE_MSG_INIT, 25.0);
  resource.push_msg(Enum::DATA_STORE_MSG_INIT, 50, 0, 1);
}

// Streams that name each other; the id of a stream is 100 above its serial number.
class Mapping {
 public:
  Mapping() : resource_(kMissingFile) {}

  Mapping& stream(unsigned int serial, Enum::CODEC_TYPE codec, const Values& range,
                  bool scanned = true) {
    FakeStream& stream = resource_.add(serial, codec);
    stream.setStreamId(serial + 100);
    Com::Meta header("{Trel-Range}", true);
    for (const auto& [key, value] : range) header.set(key, value);
    stream.get_meta().append_aux_header(header);
    if (scanned) stream.get_meta().append_aux_header(Com::Meta("{Trel-StreamScan}", true));
    return *this;
  }
  // A stream without any header.
  Mapping& bare(unsigned int serial) {
    resource_.add(serial).setStreamId(serial + 100);
    return *this;
  }
  // What the mapping wrote for the stream.
  Values scan(unsigned int serial) {
    if (!std::exchange(mapped_, true)) resource_.do_store();
    const Com::Meta* header =
        resource_.getStreams().at(serial)->get_meta().find_aux_header("{Trel-StreamScan}");
    return header == nullptr ? Values{{"no header", ""}} : header->get_values();
  }

 private:
  BareResource resource_;
  bool mapped_ = false;
};

constexpr auto kRCom = Enum::CODEC_TYPE_RCOM;
constexpr auto kNCom = Enum::CODEC_TYPE_NCOM;

TEST(RangeMapping, of_a_range_stream_names_its_sources_by_stream_id) {
  Mapping mapping;
  mapping.stream(1, kRCom,
                 {{"Codec.NCom.Index.0.XCom.Serial", "2"},
                  {"Codec.NCom.Index.7.XCom.Serial", "3"},
                  {"Codec.NCom.Indices", "0 7"},
                  {"Hunter.XCom.Serial", "2"},
                  {"Target.Index.0.XCom.Serial", "3"},
                  {"Target.Index.3.XCom.Serial", "2"},
                  {"Target.Indices", "0 3"}});
  mapping.bare(2).bare(3);
  EXPECT_EQ(mapping.scan(1), (Values{{"Range.Codec.NCom.Index.0.Stream", "102"},
                                     {"Range.Codec.NCom.Index.7.Stream", "103"},
                                     {"Range.Codec.NCom.Indices", "0 7"},
                                     {"Range.Hunter.Stream", "102"},
                                     {"Range.Target.Index.0.Stream", "103"},
                                     {"Range.Target.Index.3.Stream", "102"},
                                     {"Range.Target.Indices", "0 3"}}));
}

TEST(RangeMapping, looks_at_eight_sources_and_four_targets) {
  Values range;
  Values scan;
  for (int n = 0; n < 10; ++n) {
    const std::string index = std::to_string(n);
    range["Codec.NCom.Index." + index + ".XCom.Serial"] = "2";
    range["Target.Index." + index + ".XCom.Serial"] = "2";
    if (n < 8) scan["Range.Codec.NCom.Index." + index + ".Stream"] = "102";
    if (n < 4) scan["Range.Target.Index." + index + ".Stream"] = "102";
  }
  Mapping mapping;
  mapping.stream(1, kRCom, range).bare(2);
  EXPECT_EQ(mapping.scan(1), scan);
}

TEST(RangeMapping, of_a_navigation_stream_names_its_range_streams) {
  Mapping mapping;
  mapping.stream(1, kNCom, {{"Codec.RCom.XCom.Serial", "2"}, {"Range.XCom.Serial", "3"}});
  mapping.bare(2).bare(3);
  EXPECT_EQ(mapping.scan(1),
            (Values{{"Range.Codec.RCom.Stream", "102"}, {"Range.Range.Stream", "103"}}));
}

TEST(RangeMapping, each_codec_reads_its_own_keys_only) {
  const Values all = {{"Codec.NCom.Index.0.XCom.Serial", "9"},
                      {"Codec.NCom.Indices", "0"},
                      {"Hunter.XCom.Serial", "9"},
                      {"Codec.RCom.XCom.Serial", "9"},
                      {"Range.XCom.Serial", "9"}};
  Mapping mapping;
  mapping.stream(1, kRCom, all).stream(2, kNCom, all).bare(9);
  mapping.stream(3, Enum::CODEC_TYPE_UCOM, all).stream(4, Enum::CODEC_TYPE_MCOM, all);
  EXPECT_EQ(mapping.scan(1), (Values{{"Range.Codec.NCom.Index.0.Stream", "109"},
                                     {"Range.Codec.NCom.Indices", "0"},
                                     {"Range.Hunter.Stream", "109"}}));
  EXPECT_EQ(mapping.scan(2),
            (Values{{"Range.Codec.RCom.Stream", "109"}, {"Range.Range.Stream", "109"}}));
  EXPECT_EQ(mapping.scan(3), Values());
  EXPECT_EQ(mapping.scan(4), Values());
}

TEST(RangeMapping, a_stream_that_names_itself_gets_its_own_id) {
  Mapping mapping;
  mapping.stream(1, kRCom, {{"Hunter.XCom.Serial", "1"}});
  EXPECT_EQ(mapping.scan(1), (Values{{"Range.Hunter.Stream", "101"}}));
}

TEST(RangeMapping, a_stream_without_a_scan_header_gets_nothing) {
  Mapping mapping;
  mapping.stream(1, kRCom, {{"Hunter.XCom.Serial", "1"}}, false);
  EXPECT_EQ(mapping.scan(1), (Values{{"no header", ""}}));
}

TEST(RangeMapping, a_stream_without_a_range_header_does_not_end_the_mapping) {
  Mapping mapping;
  mapping.bare(1).stream(2, kRCom, {{"Hunter.XCom.Serial", "1"}});
  EXPECT_EQ(mapping.scan(2), (Values{{"Range.Hunter.Stream", "101"}}));
}

TEST(RangeMapping, a_serial_number_of_no_stream_is_passed_over) {
  Mapping mapping;
  mapping.stream(1, kRCom, {{"Hunter.XCom.Serial", "8"}, {"Target.Indices", ""}});
  EXPECT_EQ(mapping.scan(1), (Values{{"Range.Target.Indices", ""}}));
}

TEST(RangeMapping, a_serial_number_that_is_no_number_reads_as_missing) {
  Mapping mapping;
  mapping.stream(0, kRCom, {{"Hunter.XCom.Serial", "car"}, {"Target.Index.0.XCom.Serial", ""}});
  EXPECT_EQ(mapping.scan(0), Values());  // and not as stream 0
}

TEST(RangeMapping, serial_numbers_reach_to_the_largest_unsigned_one) {
  Mapping mapping;
  mapping.stream(1, kNCom, {{"Range.XCom.Serial", "4294967295"}}).bare(0xFFFFFFFF);
  EXPECT_EQ(mapping.scan(1), (Values{{"Range.Range.Stream", "99"}}));  // 2^32 - 1 + 100, wrapped
}

}  // namespace
}  // namespace Trel::Sto::Test
