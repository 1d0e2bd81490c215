#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "Stream_recordings.h"
#include "sto/Sto_StreamUCom.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;

// A stream by itself, with what it keeps in view.
class BareUCom : public StreamUCom {
 public:
  BareUCom() : StreamUCom(Enum::TRANSPORT_TYPE_OGG, kSerial) {}
  explicit BareUCom(const Dbu& document) : BareUCom() {
    meta.append_aux_header(Com::Meta("/Trel-UCom-Dbu/" + document.text(), true));
    codec_configure();
  }

  using StreamCodec::access;
  using StreamCodec::codec;
  using StreamCodec::data_end;
  using StreamCodec::data_start;
};

bool prescan(BareUCom& stream, const Bytes& packet) {
  return stream.xcom_prescan_packet(packet.data(), static_cast<unsigned int>(packet.size()));
}

bool postscan(BareUCom& stream, const Bytes& packet) {
  return stream.xcom_postscan_packet(packet.data(), static_cast<unsigned int>(packet.size()));
}

bool decode(BareUCom& stream, const Bytes& packet) {
  return stream.xcom_decode_packet(packet.data(), static_cast<unsigned int>(packet.size()), 0);
}

// Both scans over the packets.
std::unique_ptr<BareUCom> scanned(const Dbu& document, const std::vector<Bytes>& packets) {
  auto stream = std::make_unique<BareUCom>(document);
  for (const Bytes& packet : packets) {
    if (prescan(*stream, packet)) break;
  }
  stream->prescan_tidy();
  for (const Bytes& packet : packets) postscan(*stream, packet);
  stream->postscan_tidy();
  return stream;
}

std::unique_ptr<BareUCom> scanned(const std::vector<Bytes>& packets) {
  return scanned(database(), packets);
}

TEST(UComConfigure, without_the_database_header_is_false) {
  BareUCom stream;
  EXPECT_FALSE(stream.codec_configure());
  EXPECT_FALSE(stream.is_configured());
}

TEST(UComConfigure, the_same_word_between_other_delimiters_is_another_header) {
  BareUCom stream;
  stream.get_meta().append_aux_header(Com::Meta("(Trel-UCom-Dbu)" + database().text(), true));
  EXPECT_FALSE(stream.codec_configure());
}

TEST(UComConfigure, with_the_database_header_is_true_and_begins_a_prescan) {
  BareUCom stream;
  stream.get_meta().append_aux_header(Com::Meta("/Trel-UCom-Dbu/" + database().text(), true));
  EXPECT_TRUE(stream.codec_configure());
  EXPECT_TRUE(stream.is_configured());
  EXPECT_EQ(stream.codec.get_signals_size(), 4U);
  EXPECT_EQ(stream.codec.get_prescan().state, 0);
}

TEST(UComConfigure, a_document_of_another_form_gives_a_stream_without_elements) {
  BareUCom stream;
  stream.get_meta().append_aux_header(Com::Meta("/Trel-UCom-Dbu/[1,2]", true));
  EXPECT_TRUE(stream.codec_configure());
  EXPECT_TRUE(stream.is_configured());
  EXPECT_EQ(stream.access.size(), 0U);
}

// One signal of each type that a value can have, eight bits each; a field goes only into a type
// that holds all its values.
Dbu eleven_types() {
  Dbu document;
  document.message(1, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
  unsigned int id = 1;
  for (const std::string type :
       {"R32", "R64", "B", "S8", "S16", "S32", "S64", "U8", "U16", "U32", "U64"}) {
    const std::string letter = type[0] == 'R' ? "U" : type.substr(0, 1);
    document.signal(id).name("As_" + type).type(letter, 8).at(8 * id).measured(type);
    ++id;
  }
  return document;
}

TEST(UComConfigure, a_signal_of_each_of_the_eleven_types_is_an_element_of_its_kind) {
  const BareUCom stream(eleven_types());
  EXPECT_EQ(stream.access.size(), 11U);
  EXPECT_NE(stream.access.find_Var_t_float("As_R32"), nullptr);
  EXPECT_NE(stream.access.find_Var_t_double("As_R64"), nullptr);
  EXPECT_NE(stream.access.find_Var_t_bool("As_B"), nullptr);
  EXPECT_NE(stream.access.find_Var_t_int8_t("As_S8"), nullptr);
  EXPECT_NE(stream.access.find_Var_t_int16_t("As_S16"), nullptr);
  EXPECT_NE(stream.access.find_Var_t_int32_t("As_S32"), nullptr);
  EXPECT_NE(stream.access.find_Var_t_int64_t("As_S64"), nullptr);
  EXPECT_NE(stream.access.find_Var_t_uint8_t("As_U8"), nullptr);
  EXPECT_NE(stream.access.find_Var_t_uint16_t("As_U16"), nullptr);
  EXPECT_NE(stream.access.find_Var_t_uint32_t("As_U32"), nullptr);
  EXPECT_NE(stream.access.find_Var_t_uint64_t("As_U64"), nullptr);
}

TEST(UComConfigure, a_row_reads_its_own_signal) {
  BareUCom stream(eleven_types());
  stream.rewind();
  decode(stream, UComPacket(1).bits(8 * 9, 8, 90).bits(8 * 10, 8, 100).bytes());
  const UCom::ComData& data = stream.codec.CData();
  EXPECT_EQ(stream.access.find_Var_t_uint16_t("As_U16")->fetch(data).get(), 90);
  EXPECT_EQ(stream.access.find_Var_t_uint32_t("As_U32")->fetch(data).get(), 100U);
}

TEST(UComConfigure, elements_that_inherit_a_text_share_one_copy) {
  Dbu document;
  document.message(1, {1, 2});
  document.signal(9).type("U", 8).unit("m/s").comment("Over ground");
  document.signal(1).name("Front").at(0).inherits(9);
  document.signal(2).name("Rear").at(8).inherits(9);
  const BareUCom stream(document);
  std::vector<DynamicNode> measurements;
  stream.query_measurements(measurements);
  ASSERT_EQ(measurements.size(), 2U);
  EXPECT_EQ(measurements[0].description, "Over ground");
  EXPECT_EQ(&measurements[0].description.str(), &measurements[1].description.str());
  EXPECT_EQ(&measurements[0].unit.str(), &measurements[1].unit.str());
}

TEST(UComConfigure, an_element_is_described_by_its_signal) {
  Dbu document;
  document.message(1, {1, 2});
  document.signal(1).name("Nano").type("S", 64).at(0).unit("ns");
  document.signal(2).name("Speed").type("S", 16).at(64).measured("R32").scale(0.5);
  document.unit("m/s").comment("Over ground").limits(-12.5, 100);
  const BareUCom stream(document);
  std::vector<DynamicNode> measurements;
  stream.query_measurements(measurements);
  ASSERT_EQ(measurements.size(), 2U);
  const DynamicNode& speed = measurements[0];  // a float comes ahead of the 64-bit time
  EXPECT_EQ(speed.name, "Speed");
  EXPECT_EQ(speed.size, 1U);
  EXPECT_EQ(speed.unit, "m/s");
  EXPECT_EQ(speed.description, "Over ground");
  EXPECT_EQ(speed.basic_type, Enum::BASIC_TYPE_float);
  EXPECT_FALSE(speed.is_array);
  EXPECT_EQ(speed.pointer_id, 1U);  // the second signal of the database
  EXPECT_THAT(std::vector<double>(speed.limits, speed.limits + 4), testing::Contains(-12.5));
  EXPECT_THAT(std::vector<double>(speed.limits, speed.limits + 4), testing::Contains(100.0));
  EXPECT_EQ(measurements[1].name, "Nano");
  EXPECT_EQ(measurements[1].unit, "ns");
  EXPECT_EQ(measurements[1].pointer_id, 0U);
}

TEST(UComConfigure, a_signal_that_no_message_lists_is_no_element) {
  Dbu document = database();
  document.signal(99).name("Spare").type("U", 8);
  const BareUCom stream(document);
  EXPECT_EQ(stream.access.size(), 4U);
  EXPECT_EQ(stream.access.find_Var_t_uint8_t("Spare"), nullptr);
}

TEST(UComPrescan, is_over_at_the_first_packet_with_a_good_time) {
  BareUCom stream(database());
  EXPECT_FALSE(prescan(stream, slow(1)));
  EXPECT_FALSE(prescan(stream, UComPacket(77).integer(0, 64, 50).bytes()));
  EXPECT_FALSE(prescan(stream, {}));
  EXPECT_TRUE(prescan(stream, sample(100)));
}

TEST(UComPrescan, without_a_time_signal_is_never_over) {
  BareUCom stream(timeless_database());
  for (int packet = 0; packet < 10; ++packet) EXPECT_FALSE(prescan(stream, sample(100)));
}

TEST(UComPrescan, takes_packets_of_a_page_and_of_a_raw_file_alike) {
  BareUCom stream(database());
  const Bytes early = slow(1);
  const Bytes packet = sample(100);
  const auto size = static_cast<unsigned int>(packet.size());
  EXPECT_FALSE(stream.prescan_packet(early.data(), static_cast<unsigned int>(early.size())));
  EXPECT_TRUE(stream.prescan_packet(packet.data(), size));
  EXPECT_FALSE(stream.postscan_packet(packet.data(), size));
  EXPECT_FALSE(stream.seek_packet(packet.data(), size, 0));
  EXPECT_EQ(stream.get_indexer(), 100);
  const Bytes next = sample(200);
  EXPECT_FALSE(stream.decode_packet(next.data(), size, 0));
  EXPECT_EQ(stream.get_indexer(), 200);
}

TEST(UComPrescanTidy, keeps_the_first_time_and_no_other_value) {
  BareUCom stream(database());
  prescan(stream, sample(100, 5));
  stream.prescan_tidy();
  const Result start = stream.get_start();
  EXPECT_EQ(static_cast<nano_t>(start), 100);
  EXPECT_EQ(start.type(), Enum::BASIC_TYPE_int64_t);
  EXPECT_EQ(start.get_nano(), 100);
  EXPECT_TRUE(start.good());
  EXPECT_FALSE(stream.get_start("Count").ok());
  EXPECT_EQ(stream.get_indexer(), 100);
}

TEST(UComPrescanTidy, without_a_good_time_leaves_the_start_invalid) {
  BareUCom stream(database());
  prescan(stream, slow(1));
  stream.prescan_tidy();
  EXPECT_FALSE(stream.get_start().good());
  EXPECT_EQ(stream.codec.get_prescan().state, 1);  // and the search is over
  EXPECT_EQ(stream.get_indexer(), 0);
}

TEST(UComPrescanTidy, of_an_unconfigured_stream_does_not_touch_the_start) {
  BareUCom stream;
  const auto before = stream.data_start.Nano().get_flags().byte();
  stream.prescan_tidy();
  EXPECT_EQ(stream.data_start.Nano().get_flags().byte(), before);
}

TEST(UComPostscan, never_asks_for_an_end_and_decodes_every_packet) {
  BareUCom stream(database());
  prescan(stream, sample(100));
  stream.prescan_tidy();
  EXPECT_FALSE(postscan(stream, sample(100, 1)));
  EXPECT_FALSE(postscan(stream, sample(200, 2)));
  EXPECT_EQ(stream.codec.Nano().get(), 200);
  EXPECT_EQ(stream.get_indexer(), 100);  // a scan does not move the clock
}

TEST(UComPostscanTidy, keeps_the_last_data_and_goes_back_to_the_first_time) {
  const auto stream = scanned({sample(100, 1), sample(200, 2), slow(9)});
  EXPECT_EQ(static_cast<nano_t>(stream->get_end()), 200);
  EXPECT_EQ(static_cast<unsigned int>(stream->get_end("Count")), 2U);
  EXPECT_EQ(static_cast<unsigned int>(stream->get_end("Slow")), 9U);
  EXPECT_EQ(static_cast<nano_t>(stream->get_start()), 100);
  EXPECT_EQ(stream->codec.Nano().get(), 100);
  EXPECT_EQ(stream->get_indexer(), 100);
  EXPECT_TRUE(stream->is_storable());
}

TEST(UComPostscanTidy, notes_the_codec_in_a_header_and_counts_it) {
  const auto stream = scanned({sample(100)});
  const Com::StreamMeta& meta = stream->get_meta();
  const Com::Meta* header = meta.find_aux_header("{Trel-StreamScan}");
  ASSERT_NE(header, nullptr);
  EXPECT_EQ(header->get_values(), (std::map<std::string, std::string>{{"StreamCodec", "UCom"}}));
  EXPECT_EQ(&meta.auxiliary.back(), header);
  EXPECT_EQ(meta.initial.get("headers"), "2");  // the database and this one
}

TEST(UComPostscanTidy, of_an_unconfigured_stream_still_notes_the_codec) {
  BareUCom stream;
  const auto before = stream.data_end.Nano().get_flags().byte();
  stream.prescan_tidy();
  stream.postscan_tidy();
  EXPECT_NE(stream.get_meta().find_aux_header("{Trel-StreamScan}"), nullptr);
  EXPECT_EQ(stream.data_end.Nano().get_flags().byte(), before);
  EXPECT_FALSE(stream.is_storable());
}

TEST(UComStorable, not_without_a_time_signal) {
  const auto stream = scanned(timeless_database(), {sample(100), sample(200)});
  EXPECT_FALSE(stream->get_start().good());
  EXPECT_FALSE(stream->is_storable());
}

TEST(UComStorable, not_with_a_time_of_another_type) {
  Dbu document;
  document.message(1, {10}).signal(10).name("Nano").type("U", 64).at(0);
  EXPECT_FALSE(scanned(document, {sample(100), sample(200)})->is_storable());
}

TEST(UComStorable, not_without_a_first_time) {
  BareUCom stream(database());
  stream.prescan_tidy();
  postscan(stream, sample(100));
  stream.postscan_tidy();
  EXPECT_TRUE(stream.get_end().good());
  EXPECT_FALSE(stream.is_storable());
}

TEST(UComStorable, with_the_first_time_even_when_the_second_scan_met_no_packet) {
  BareUCom stream(database());
  prescan(stream, sample(100));
  stream.prescan_tidy();
  stream.postscan_tidy();
  EXPECT_EQ(static_cast<nano_t>(stream.get_end()), 100);  // from where the scan set out
  EXPECT_TRUE(stream.is_storable());
}

TEST(UComRewind, goes_to_the_first_time_and_invalidates_the_rest) {
  const auto stream = scanned({sample(100, 1), sample(200, 2)});
  decode(*stream, sample(200, 2));
  EXPECT_EQ(stream->get_indexer(), 200);
  stream->rewind();
  EXPECT_EQ(stream->get_indexer(), 100);
  EXPECT_FALSE(stream->access.find_Var_t_uint32_t("Count")->fetch(stream->codec.CData()).ok());
}

TEST(UComRewind, a_second_one_in_a_row_changes_nothing) {
  const auto stream = scanned({sample(100, 1), sample(200, 2)});
  decode(*stream, sample(200, 2));
  stream->rewind();
  stream->rewind();
  EXPECT_EQ(stream->get_indexer(), 100);
  EXPECT_EQ(stream->codec.Nano().get(), 100);
  EXPECT_TRUE(stream->is_storable());
  decode(*stream, sample(200, 2));
  EXPECT_EQ(stream->get_indexer(), 200);
}

TEST(UComRewind, before_a_first_time_leaves_the_clock) {
  BareUCom stream(database());
  stream.rewind();
  stream.rewind();
  EXPECT_EQ(stream.get_indexer(), 0);
  EXPECT_FALSE(stream.codec.Nano().good());
}

TEST(UComWalk, seek_and_decode_both_move_the_clock_and_ask_for_more) {
  const auto stream = scanned({sample(100)});
  const Bytes packet = sample(300, 3);
  EXPECT_FALSE(
      stream->xcom_seek_packet(packet.data(), static_cast<unsigned int>(packet.size()), 7));
  EXPECT_EQ(stream->get_indexer(), 300);
  EXPECT_FALSE(decode(*stream, sample(400, 4)));
  EXPECT_EQ(stream->get_indexer(), 400);
  EXPECT_FALSE(decode(*stream, slow(1)));
  EXPECT_EQ(stream->get_indexer(), 400);
}

TEST(UComTimes, an_element_answers_with_its_value_and_its_stamp) {
  const auto stream = scanned({sample(100, 1), sample(200, 2)});
  const Result end = stream->get_end("Count");
  EXPECT_EQ(static_cast<unsigned int>(end), 2U);
  EXPECT_EQ(end.type(), Enum::BASIC_TYPE_uint32_t);
  EXPECT_EQ(end.get_nano(), 200);
  EXPECT_TRUE(end.good());
  EXPECT_EQ(static_cast<nano_t>(stream->get_start("Nano")), 100);
}

TEST(UComTimes, an_element_that_the_stream_does_not_have_is_not_ok) {
  const auto stream = scanned({sample(100, 1)});
  EXPECT_FALSE(stream->get_start("Altitude").ok());
  EXPECT_FALSE(stream->get_end("").ok());
}

TEST(UComTimes, a_name_of_several_kinds_is_taken_from_the_first_kind) {
  Dbu document;
  document.message(1, {10, 11, 12, 13});
  document.signal(10).name("Nano").type("S", 64).at(0);
  document.signal(11).name("Twin").type("U", 16).at(64);
  document.signal(12).name("Twin").type("S", 8).at(80);
  document.signal(13).name("Twin").type("S", 32).at(96);
  const auto stream = scanned(
      document,
      {UComPacket(1).integer(0, 64, 100).bits(64, 16, 1).bits(80, 8, 2).bits(96, 32, 3).bytes()});
  EXPECT_EQ(stream->get_end("Twin").type(), Enum::BASIC_TYPE_int8_t);
  EXPECT_EQ(static_cast<int>(stream->get_end("Twin")), 2);
}

// A storable stream with two stores in each mode.
std::unique_ptr<BareUCom> ready() {
  auto stream = scanned({sample(100, 1), sample(200, 2)});
  stream->setStreamId(6);
  for (unsigned int mode = 0; mode < 3; ++mode) stream->exp_system(mode, 2);
  return stream;
}

TEST(UComElement, of_a_stream_that_is_not_storable_is_not_added) {
  BareUCom stream(database());
  stream.exp_system(0, 1);
  EXPECT_FALSE(stream.add_element_Var_t_uint32_t(0, 0, 0, "Count"));
  EXPECT_FALSE(stream.hit_element_Var_t_uint32_t(0, "Count"));
}

TEST(UComElement, of_an_unknown_name_or_another_kind_is_not_added) {
  const auto stream = ready();
  EXPECT_FALSE(stream->add_element_Var_t_uint32_t(0, 0, 0, "Altitude"));
  EXPECT_FALSE(stream->add_element_Var_t_int32_t(0, 0, 0, "Count"));
  EXPECT_FALSE(stream->add_element_Arr_t_uint32_t(0, 0, 0, "Count"));
  EXPECT_FALSE(stream->hit_element_Var_t_uint32_t(0, "Altitude"));
  EXPECT_FALSE(stream->hit_element_Var_t_int32_t(0, "Count"));
}

TEST(UComElement, is_known_in_the_mode_to_which_it_was_added) {
  const auto stream = ready();
  EXPECT_TRUE(stream->add_element_Var_t_uint32_t(1, 0, 0, "Count"));
  EXPECT_FALSE(stream->hit_element_Var_t_uint32_t(0, "Count"));
  EXPECT_TRUE(stream->hit_element_Var_t_uint32_t(1, "Count"));
  EXPECT_FALSE(stream->hit_element_Var_t_uint32_t(2, "Count"));
}

TEST(UComElement, is_described_with_the_stream_and_its_place) {
  const auto stream = ready();
  stream->add_element_Var_t_uint32_t(2, 1, 4, "Count");
  const StoreLeaf last = stream->sum_element_Var_t_uint32_t(2);
  StoreLeaf leaf;
  ValueText<unsigned int> text = nullptr;
  EXPECT_TRUE(stream->use_element_Var_t_uint32_t(leaf, text, 2, "Count"));
  for (const StoreLeaf& node : {last, leaf}) {
    EXPECT_EQ(node.name, "Count");
    EXPECT_EQ(node.stream_id, 6U);
    EXPECT_EQ(node.mode_id, 2U);
    EXPECT_EQ(node.store_id, 1U);
    EXPECT_EQ(node.offset, 4U);
  }
  EXPECT_FALSE(stream->use_element_Var_t_uint32_t(leaf, text, 1, "Count"));
}

TEST(UComElement, is_copied_out_with_its_current_value) {
  const auto stream = ready();
  stream->add_element_Var_t_uint32_t(0, 1, 2, "Count");
  decode(*stream, sample(200, 2));
  Datum datum;
  datum.array<unsigned int>().resize(3);
  stream->pop_system(0, 0, datum);  // the other store
  EXPECT_EQ(datum.array<unsigned int>().value(2), 0U);
  stream->pop_system(0, 1, datum);
  EXPECT_EQ(datum.array<unsigned int>().value(2), 2U);
  EXPECT_EQ(datum.array<unsigned int>().nano(2), 200);
  EXPECT_TRUE(datum.array<unsigned int>().flags(2).good());
}

TEST(UComElement, is_forgotten_with_its_mode) {
  const auto stream = ready();
  stream->add_element_Var_t_uint32_t(0, 0, 0, "Count");
  stream->add_element_Var_t_uint32_t(1, 0, 0, "Count");
  stream->let_system(0);
  stream->clr_system(0);
  EXPECT_FALSE(stream->hit_element_Var_t_uint32_t(0, "Count"));
  EXPECT_TRUE(stream->hit_element_Var_t_uint32_t(1, "Count"));
}

}  // namespace
}  // namespace Trel::Sto::Test
