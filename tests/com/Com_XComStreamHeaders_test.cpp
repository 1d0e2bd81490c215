#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "Com_Feed.h"
#include "support/Support_Recording.h"

namespace Trel::Com::Test {
namespace {

using Support::bytes_of;
using Support::join;
using Support::Recording;
using testing::ElementsAre;
using testing::IsEmpty;

// Two headers, then two pages of payload.
Bytes plain_recording() {
  Recording recording;
  recording.stream(kSerial)
      .codec("UCom")
      .grouping("Car")
      .auxiliary(bytes_of("(Note)text"))
      .packet(bytes_of("one"))
      .packet(bytes_of("two"))
      .page()
      .packet(bytes_of("three"));
  return recording.bytes();
}

TEST(StreamHeaders, a_recording_is_read_from_its_headers_to_its_last_packet) {
  Fed decoder;
  decoder.feed(plain_recording());

  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DECODING);
  const StreamMeta& meta = decoder.get_meta();
  EXPECT_EQ(meta.initial.get_tag(), "[Trel-UCom]");
  EXPECT_EQ(meta.initial.get("headers"), "2");
  ASSERT_EQ(meta.auxiliary.size(), 2U);
  EXPECT_EQ(meta.auxiliary[0].get("Grouping"), "Car");
  EXPECT_EQ(meta.auxiliary[1].get_data(), bytes_of("text"));
  EXPECT_EQ(decoder.get_header_used_total(), 2U);
  EXPECT_EQ(decoder.get_header_used_count(), 2U);
  EXPECT_THAT(decoder.drain(), ElementsAre("one", "two", "three"));
  EXPECT_EQ(decoder.get_packets().initial_used, 1U);
  EXPECT_EQ(decoder.get_packets().auxiliary_used, 2U);
  EXPECT_EQ(decoder.get_packets().payload, 3U);
  EXPECT_EQ(decoder.get_holes().payload, 0U);
}

TEST(StreamHeaders, without_headers_due_payload_follows_the_initial_page) {
  for (const std::string initial :
       {"[Trel-UCom]\nheaders=0", "[Trel-UCom]", "[Trel-UCom]\nheaders=some", "nonsense"}) {
    Fed decoder;
    decoder.feed(page(0, Support::kInitial, {initial}));
    EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED) << initial;
    EXPECT_EQ(decoder.get_header_used_total(), 0U) << initial;
    decoder.feed(page(1, 0, {"x"}));
    EXPECT_THAT(decoder.drain(), ElementsAre("x")) << initial;
  }
}

TEST(StreamHeaders, the_status_tells_that_headers_are_due) {
  Fed decoder;
  decoder.feed(initial_page(0, "2"));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISING);
  decoder.feed(page(1, Support::kAuxiliary, {"{A}"}));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISING);
  EXPECT_EQ(decoder.get_header_used_count(), 1U);
  decoder.feed(page(2, Support::kAuxiliary, {"{B}"}));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED);
  EXPECT_EQ(decoder.get_header_used_count(), 2U);
}

TEST(StreamHeaders, only_the_first_packet_of_an_initial_page_is_read) {
  Fed decoder;
  decoder.feed(page(0, Support::kInitial, {"[Trel-UCom]headers=1", "{Dropped}"}));
  decoder.feed(page(1, 0, {"{A}"}));
  ASSERT_EQ(decoder.get_meta().auxiliary.size(), 1U);
  EXPECT_EQ(decoder.get_meta().auxiliary[0].get_tag(), "{A}");
}

TEST(StreamHeaders, the_flag_of_header_pages_does_not_matter) {
  Fed decoder;
  decoder.feed(
      join({initial_page(0, "1"), page(1, 0, {"{A}"}), page(2, Support::kAuxiliary, {"payload"})}));
  EXPECT_EQ(decoder.get_meta().auxiliary.size(), 1U);
  EXPECT_THAT(decoder.drain(), ElementsAre("payload"));
}

TEST(StreamHeaders, headers_may_share_a_page_and_what_follows_them_there_is_dropped) {
  Fed decoder;
  decoder.feed(join({initial_page(0, "2"), page(1, Support::kAuxiliary, {"{A}", "{B}", "{C}", "x"}),
                     page(2, 0, {"y"})}));
  EXPECT_EQ(decoder.get_packets().auxiliary_used, 4U);
  EXPECT_EQ(decoder.get_header_used_count(), 2U);
  ASSERT_EQ(decoder.get_meta().auxiliary.size(), 2U);
  EXPECT_EQ(decoder.get_meta().auxiliary[1].get_tag(), "{B}");
  EXPECT_THAT(decoder.drain(), ElementsAre("y"));
}

TEST(StreamHeaders, a_header_may_span_pages) {
  const std::string text(100000, 't');  // more than the 65025 bytes that a page holds
  Recording recording;
  recording.stream(kSerial)
      .codec("UCom")
      .auxiliary(bytes_of("(Long)" + text))
      .packet(bytes_of("x"));
  Fed decoder;
  decoder.feed(recording.bytes());
  ASSERT_EQ(decoder.get_meta().auxiliary.size(), 1U);
  EXPECT_EQ(decoder.get_meta().auxiliary[0].get_data(), bytes_of(text));
  EXPECT_THAT(decoder.drain(), ElementsAre("x"));
}

TEST(StreamHeaders, the_page_after_the_initial_one_may_have_any_number_without_a_hole) {
  Fed decoder;
  decoder.feed(join({initial_page(0, "1"), page(50, Support::kAuxiliary, {"{A}"})}));
  EXPECT_EQ(decoder.get_pages().lost, 49U);
  EXPECT_EQ(decoder.get_holes().auxiliary_used, 0U);
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED);
}

TEST(StreamHeaders, a_hole_leaves_the_count_short_until_payload_makes_it_up) {
  Fed decoder;
  decoder.feed(join(
      {initial_page(0, "2"), page(1, Support::kAuxiliary, {"{A}"}), page(3, 0, {"{Payload}"})}));
  EXPECT_EQ(decoder.get_holes().auxiliary_used, 1U);
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISING);
  EXPECT_EQ(decoder.get_header_used_count(), 1U);

  decoder.feed(page(4, 0, {"dropped"}));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED);
  ASSERT_EQ(decoder.get_meta().auxiliary.size(), 2U);
  EXPECT_EQ(decoder.get_meta().auxiliary[1].get_tag(), "{Payload}");
  EXPECT_EQ(decoder.get_packets().auxiliary_used, 3U);
  EXPECT_THAT(decoder.drain(), IsEmpty());
}

TEST(StreamHeaders, a_hole_behind_the_last_header_leaves_the_status_to_the_next_page) {
  Fed decoder;
  // The hole ahead of page 3 keeps {B} waiting; it is drawn with page 5, which has a hole as well.
  decoder.feed(join(
      {initial_page(0, "2"), page(1, 0, {"{A}"}), page(3, 0, {"{B}"}), page(5, 0, {"dropped"})}));
  EXPECT_EQ(decoder.get_header_used_count(), 2U);
  EXPECT_EQ(decoder.get_holes().auxiliary_used, 2U);
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISING);
  decoder.feed(join({page(6, 0, {"dropped"}), page(7, 0, {"x"})}));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DECODING);
  EXPECT_THAT(decoder.drain(), ElementsAre("x"));
}

TEST(StreamHeaders, appended_headers_write_their_number_into_the_initial_header) {
  Fed decoder;
  decoder.feed(join({initial_page(0, "2"), page(1, 0, {"{A}"})}));
  EXPECT_EQ(decoder.get_meta().initial.get("headers"), "1");
  EXPECT_EQ(decoder.get_header_used_total(), 2U);
}

TEST(StreamHeaders, malformed_json_passes_through_and_leaves_the_decoder_destructible) {
  Fed decoder;
  decoder.feed(initial_page(0, "1"));
  EXPECT_THROW(decoder.feed(page(1, 0, {"/Trel-UCom-Dbu/{\"V\":"})), nlohmann::json::parse_error);
  EXPECT_EQ(decoder.get_packets().auxiliary_used, 1U);
  EXPECT_EQ(decoder.get_header_used_count(), 0U);
  EXPECT_THAT(decoder.get_meta().auxiliary, IsEmpty());
}

TEST(StreamHeaders, a_page_fed_in_leaves_the_queued_packets_alone) {
  Fed decoder;
  decoder.feed(join({initial_page(0, "0"), page(1, 0, {"a", "b"})}));
  ogg_packet packet;
  ASSERT_EQ(decoder.packet_out(packet), 1);
  decoder.feed(page(2, 0, {"c"}));
  EXPECT_THAT(decoder.drain(), ElementsAre("b", "c"));
}

TEST(StreamHeaders, a_packet_may_span_pages) {
  Recording recording;
  const std::string text(1000, 'x');  // four lacing values: 255 + 255 + 255 + 235
  recording.stream(kSerial)
      .codec("UCom")
      .segments_per_page(1)
      .packet(bytes_of(text))
      .packet(bytes_of("y"));
  Fed decoder;
  decoder.feed(recording.bytes());
  EXPECT_EQ(decoder.get_pages().mos, 5U);
  EXPECT_THAT(decoder.drain(), ElementsAre(text, "y"));
}

// The second pass over a recording that was read once.
struct SecondPass : Fed {
  explicit SecondPass(const Bytes& bytes) {
    feed(bytes);
    rewind();
  }
};

TEST(StreamSkip, the_second_pass_gives_the_same_packets_and_leaves_the_headers_alone) {
  SecondPass decoder(plain_recording());
  decoder.feed(plain_recording());
  EXPECT_THAT(decoder.drain(), ElementsAre("one", "two", "three"));
  EXPECT_EQ(decoder.get_meta().auxiliary.size(), 2U);
  EXPECT_EQ(decoder.get_header_skip_total(), 2U);
  EXPECT_EQ(decoder.get_header_skip_count(), 2U);
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DECODING);
}

TEST(StreamSkip, a_rewind_keeps_the_used_counters_and_clears_the_others) {
  SecondPass decoder(plain_recording());
  decoder.feed(plain_recording());
  decoder.drain();
  EXPECT_EQ(decoder.get_packets().initial_skip, 1U);
  EXPECT_EQ(decoder.get_packets().auxiliary_skip, 2U);
  decoder.rewind();
  EXPECT_EQ(decoder.get_packets().initial_used, 1U);
  EXPECT_EQ(decoder.get_packets().auxiliary_used, 2U);
  EXPECT_EQ(decoder.get_packets().initial_skip, 0U);
  EXPECT_EQ(decoder.get_packets().auxiliary_skip, 0U);
  EXPECT_EQ(decoder.get_packets().payload, 0U);
}

TEST(StreamSkip, the_status_follows_the_headers_that_are_stepped_over) {
  SecondPass decoder(plain_recording());
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED);
  decoder.feed(initial_page(0, "1"));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_SKIPPING);
  decoder.feed(page(1, 0, {"{A}"}));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_SKIPPED);
  decoder.feed(page(2, 0, {"x"}));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DECODING);
}

TEST(StreamSkip, without_headers_due_the_stream_is_skipped_at_once) {
  SecondPass decoder(plain_recording());
  decoder.feed(initial_page(0, "0"));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_SKIPPED);
  EXPECT_EQ(decoder.get_meta().initial.get("headers"), "2");
}

TEST(StreamSkip, the_page_that_ends_the_headers_goes_with_them) {
  SecondPass decoder(plain_recording());
  decoder.feed(join({initial_page(0, "1"), page(1, 0, {"{A}", "x"}), page(2, 0, {"y"})}));
  EXPECT_EQ(decoder.get_packets().auxiliary_skip, 2U);
  EXPECT_EQ(decoder.get_header_skip_count(), 1U);
  EXPECT_THAT(decoder.drain(), ElementsAre("y"));
}

TEST(StreamSkip, headers_are_not_parsed_again) {
  SecondPass decoder(plain_recording());
  decoder.feed(join({initial_page(0, "1"), page(1, 0, {"/x/{malformed"})}));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_SKIPPED);
}

TEST(StreamSkip, malformed_json_as_initial_packet_passes_through_on_each_pass) {
  const Bytes bytes = page(0, Support::kInitial, {"/x/{malformed"});
  Fed first;
  EXPECT_THROW(first.feed(bytes), nlohmann::json::parse_error);
  SecondPass second(plain_recording());
  EXPECT_THROW(second.feed(bytes), nlohmann::json::parse_error);
}

TEST(StreamSkip, a_hole_between_initial_page_and_headers_counts_on_this_pass) {
  SecondPass decoder(plain_recording());
  decoder.feed(join({initial_page(0, "1"), page(50, 0, {"{A}"})}));
  EXPECT_EQ(decoder.get_holes().auxiliary_skip, 1U);
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_SKIPPING);
}

TEST(StreamSkip, a_hole_behind_the_last_header_leaves_the_status_to_the_next_page) {
  SecondPass decoder(plain_recording());
  decoder.feed(join(
      {initial_page(0, "2"), page(1, 0, {"{A}"}), page(3, 0, {"{B}"}), page(5, 0, {"dropped"})}));
  EXPECT_EQ(decoder.get_header_skip_count(), 2U);
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_SKIPPING);
  decoder.feed(join({page(6, 0, {"dropped"}), page(7, 0, {"x"})}));
  EXPECT_THAT(decoder.drain(), ElementsAre("x"));
}

TEST(StreamSkip, every_pass_counts_its_headers_anew) {
  SecondPass decoder(plain_recording());
  decoder.feed(plain_recording());
  decoder.rewind();
  decoder.feed(join({initial_page(0, "2"), page(1, 0, {"{A}"})}));
  EXPECT_EQ(decoder.get_header_skip_count(), 1U);
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_SKIPPING);
}

TEST(StreamSkip, a_rewind_keeps_the_holes_of_the_first_pass_and_clears_the_others) {
  Fed decoder;
  decoder.feed(join({initial_page(0, "2"), page(1, 0, {"{A}"}), page(3, 0, {"{B}"}),
                     page(4, 0, {"dropped"}), page(6, 0, {"x"})}));
  EXPECT_THAT(decoder.drain(), ElementsAre(kHole, "x"));
  EXPECT_EQ(decoder.get_holes().payload, 1U);
  decoder.rewind();
  EXPECT_EQ(decoder.get_holes().auxiliary_used, 1U);
  EXPECT_EQ(decoder.get_holes().payload, 0U);
}

TEST(StreamSkip, packets_are_numbered_from_the_initial_page_on_this_pass_only) {
  const Bytes bytes = join({initial_page(0, "1"), page(1, 0, {"{A}"}), page(2, 0, {"x"})});
  ogg_packet packet;
  Fed decoder;
  decoder.feed(bytes);
  ASSERT_EQ(decoder.packet_out(packet), 1);
  EXPECT_EQ(packet.packetno, 1);  // the header was 0
  decoder.rewind();
  decoder.feed(bytes);
  ASSERT_EQ(decoder.packet_out(packet), 1);
  EXPECT_EQ(packet.packetno, 2);  // initial header 0, header 1
}

TEST(StreamSkip, an_initial_page_in_the_middle_discards_what_was_not_drawn) {
  Fed decoder;
  decoder.feed(
      join({initial_page(0, "0"), page(1, 0, {"lost"}), initial_page(2, "0"), page(3, 0, {"x"})}));
  EXPECT_EQ(decoder.get_packets().initial_skip, 1U);
  EXPECT_THAT(decoder.drain(), ElementsAre("x"));
}

}  // namespace
}  // namespace Trel::Com::Test
