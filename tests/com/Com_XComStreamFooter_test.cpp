#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Com_Feed.h"

namespace Trel::Com::Test {
namespace {

using Support::join;
using testing::ElementsAre;
using testing::IsEmpty;

const Bytes kStart = initial_page(0, "0");
const Bytes kFooterPage = page(1, Support::kFooter, {"(early)", "(end)bye"});

TEST(StreamFooter, with_footers_off_a_last_page_is_counted_and_its_packets_are_lost) {
  Fed decoder(false);
  decoder.feed(join({kStart, kFooterPage}));
  EXPECT_EQ(decoder.get_pages().eos, 1U);
  EXPECT_EQ(decoder.get_pages().accepted, 2U);
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED);
  EXPECT_EQ(decoder.get_meta().footer.get_tag(), "");
  EXPECT_THAT(decoder.drain(), IsEmpty());
}

TEST(StreamFooter, the_last_packet_of_the_page_is_the_footer) {
  Fed decoder(true);
  decoder.feed(join({kStart, kFooterPage}));
  EXPECT_TRUE(decoder.is_footer_decoded());
  EXPECT_EQ(decoder.get_packets().footer_used, 2U);
  EXPECT_EQ(decoder.get_meta().footer.get_tag(), "(end)");
  EXPECT_EQ(decoder.get_meta().footer.get_data(), Support::bytes_of("bye"));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED);
}

TEST(StreamFooter, it_is_read_whatever_the_status) {
  for (const auto status : {Enum::STREAM_DECODE_STATUS_EMPTY, Enum::STREAM_DECODE_STATUS_DEAD,
                            Enum::STREAM_DECODE_STATUS_INITIALISING}) {
    Fed decoder(true);
    decoder.set_status(status);
    decoder.feed(kFooterPage);
    EXPECT_TRUE(decoder.is_footer_decoded());
    EXPECT_EQ(decoder.get_status(), status);
  }
}

TEST(StreamFooter, payload_that_was_not_drawn_goes_with_it) {
  Fed decoder(true);
  decoder.feed(join({kStart, page(1, 0, {"x"}), page(2, Support::kFooter, {"(end)"})}));
  EXPECT_EQ(decoder.get_packets().footer_used, 2U);
  EXPECT_THAT(decoder.drain(), IsEmpty());
}

TEST(StreamFooter, a_second_one_is_stepped_over) {
  Fed decoder(true);
  decoder.feed(join({kStart, kFooterPage, page(2, Support::kFooter, {"(other)", "(another)"})}));
  EXPECT_EQ(decoder.get_meta().footer.get_tag(), "(end)");
  EXPECT_EQ(decoder.get_packets().footer_used, 2U);
  EXPECT_EQ(decoder.get_packets().footer_skip, 2U);
}

TEST(StreamFooter, after_a_rewind_it_is_stepped_over_and_kept) {
  Fed decoder(true);
  decoder.feed(join({kStart, kFooterPage}));
  decoder.rewind();
  EXPECT_EQ(decoder.get_packets().footer_used, 2U);
  decoder.feed(join({kStart, kFooterPage}));
  EXPECT_EQ(decoder.get_packets().footer_used, 2U);
  EXPECT_EQ(decoder.get_packets().footer_skip, 2U);
  EXPECT_EQ(decoder.get_meta().footer.get_tag(), "(end)");
}

TEST(StreamFooter, a_hole_before_it_leaves_it_unread) {
  Fed decoder(true);
  decoder.feed(join({kStart, page(1, 0, {"x"})}));
  EXPECT_THAT(decoder.drain(), ElementsAre("x"));
  decoder.feed(page(3, Support::kFooter, {"(end)"}));
  EXPECT_EQ(decoder.get_holes().footer_used, 1U);
  EXPECT_EQ(decoder.get_packets().footer_used, 0U);
  EXPECT_FALSE(decoder.is_footer_decoded());
}

TEST(StreamFooter, a_hole_before_a_skipped_one_stops_the_drawing) {
  Fed decoder(true);
  decoder.feed(join({kStart, page(1, 0, {"x"}), page(2, Support::kFooter, {"(end)"})}));
  decoder.feed(page(4, Support::kFooter, {"(end)"}));
  EXPECT_EQ(decoder.get_holes().footer_skip, 1U);
  EXPECT_EQ(decoder.get_packets().footer_skip, 0U);
}

TEST(StreamFooter, a_page_without_a_whole_packet_is_no_footer) {
  Support::PageImage unfinished;
  unfinished.flags = Support::kFooter;
  unfinished.serial = kSerial;
  unfinished.number = 1;
  unfinished.segments = {255};
  unfinished.body = Bytes(255, 'x');
  Fed decoder(true);
  decoder.feed(join({kStart, unfinished.bytes()}));
  EXPECT_FALSE(decoder.is_footer_decoded());
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED);
}

TEST(StreamFooter, a_page_of_an_unknown_version_is_the_death_of_the_stream) {
  const Bytes refused = page(2, Support::kFooter, {"(end)"}, 1);
  Fed reading(true);
  reading.feed(join({kStart, refused}));
  EXPECT_EQ(reading.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
  Fed skipping(true);
  skipping.feed(join({kStart, kFooterPage, refused}));
  EXPECT_EQ(skipping.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
}

}  // namespace
}  // namespace Trel::Com::Test
