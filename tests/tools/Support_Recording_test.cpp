#include "support/Support_Recording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Packets.h"

namespace Trel::Support::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Recording, libogg_reads_back_the_packets_that_were_written) {
  Recording recording;
  recording.stream(7)
      .codec("UCom")
      .grouping("Car")
      .packet(bytes_of("one"))
      .packet(bytes_of("two"))
      .page()
      .packet({})
      .packet(bytes_of("three"));
  EXPECT_THAT(packets_of(recording.bytes(), 7),
              ElementsAre("[Trel-UCom]\nheaders=1\n", "{Trel-Grouping}\nGrouping=Car\n", "one",
                          "two", "", "three"));
  EXPECT_EQ(pages_of(recording.bytes()).losses, 0);
}

TEST(Recording, pages_are_flagged_by_what_they_carry_and_numbered_in_order) {
  Recording recording;
  recording.stream(7)
      .codec("UCom")
      .grouping("Car")
      .dbu("{}")
      .packet(bytes_of("x"))
      .page()
      .footer(bytes_of("(end)"));
  EXPECT_THAT(each(recording.bytes(), &PageImage::flags), ElementsAre(2, 8, 8, 0, 4));
  EXPECT_THAT(each(recording.bytes(), &PageImage::number), ElementsAre(0, 1, 2, 3, 4));
  EXPECT_THAT(each(recording.bytes(), &PageImage::serial), ElementsAre(7, 7, 7, 7, 7));
}

TEST(Recording, auxiliary_headers_may_share_a_page) {
  Recording recording;
  recording.stream(7).codec("UCom").grouping("Car").dbu("{}").headers_together();
  recording.stream(7).headers();
  EXPECT_THAT(each(recording.bytes(), &PageImage::flags), ElementsAre(2, 8));
}

TEST(Recording, each_kind_of_header_has_its_tag) {
  Recording recording;
  recording.stream(7)
      .codec("Can")
      .dbc("BO_ 1")
      .dbu("[]")
      .range({{"WhoAmI", "Hunter"}})
      .auxiliary(bytes_of("<raw>\x01"))
      .headers();
  EXPECT_THAT(packets_of(recording.bytes(), 7),
              ElementsAre("[Trel-Can]\nheaders=4\n", "(Trel-Can-Dbc)BO_ 1", "/Trel-UCom-Dbu/[]",
                          "{Trel-Range}\nWhoAmI=Hunter\n", "<raw>\x01"));
}

TEST(Recording, the_declared_count_and_further_items_are_as_told) {
  Recording recording;
  recording.stream(1).codec("UCom").declare_headers("5").item("a", "b").headers();
  recording.stream(2).codec("UCom").declare_headers("").headers();
  recording.stream(3).initial(bytes_of("anything")).headers();
  EXPECT_THAT(packets_of(recording.bytes(), 1), ElementsAre("[Trel-UCom]\nheaders=5\na=b\n"));
  EXPECT_THAT(packets_of(recording.bytes(), 2), ElementsAre("[Trel-UCom]\n"));
  EXPECT_THAT(packets_of(recording.bytes(), 3), ElementsAre("anything"));
}

TEST(Recording, a_stream_without_codec_has_no_headers) {
  Recording recording;
  recording.stream(7).packet(bytes_of("a")).packet(bytes_of("b"));
  EXPECT_THAT(packets_of(recording.bytes(), 7), ElementsAre("a", "b"));
  EXPECT_THAT(each(recording.bytes(), &PageImage::flags), ElementsAre(0));
}

TEST(Recording, streams_interleave_in_call_order) {
  Recording recording;
  auto& one = recording.stream(1);
  auto& two = recording.stream(2);
  one.packet(bytes_of("a")).page();
  two.packet(bytes_of("b")).page();
  one.packet(bytes_of("c")).page();
  EXPECT_THAT(each(recording.bytes(), &PageImage::serial), ElementsAre(1, 2, 1));
  EXPECT_THAT(each(recording.bytes(), &PageImage::number), ElementsAre(0, 0, 1));
  EXPECT_EQ(&recording.stream(1), &one);
  EXPECT_NE(&recording.another_stream(1), &one);
}

TEST(Recording, a_large_packet_spans_pages) {
  // A page holds 255 lacing values of 255 bytes: 65025. 200000 bytes take four pages.
  const std::string text(200000, 'x');
  Recording recording;
  recording.stream(7).packet(bytes_of(text));
  EXPECT_THAT(packets_of(recording.bytes(), 7), ElementsAre(text));
  EXPECT_THAT(each(recording.bytes(), &PageImage::flags), ElementsAre(0, 1, 1, 1));
}

TEST(Recording, a_small_packet_spans_pages_when_they_hold_few_segments) {
  // 510 bytes are 255 + 255 + 0: three lacing values
  const std::string text(510, 'x');
  Recording recording;
  recording.stream(7).segments_per_page(1).packet(bytes_of(text)).packet(bytes_of("y"));
  EXPECT_THAT(packets_of(recording.bytes(), 7), ElementsAre(text, "y"));
  EXPECT_THAT(each(recording.bytes(), &PageImage::flags), ElementsAre(0, 1, 1, 0));
  EXPECT_THAT(each(recording.bytes(), &PageImage::number), ElementsAre(0, 1, 2, 3));
}

TEST(Recording, a_split_page_keeps_its_first_flag_in_front_and_its_last_flag_behind) {
  PageImage image;
  image.flags = kInitial | kFooter | kAuxiliary;
  image.number = 5;
  image.segments = {3, 255, 1};
  image.body = Bytes(259);
  const auto pages = split_page(image, 2);
  ASSERT_EQ(pages.size(), 2U);
  EXPECT_EQ(pages[0].flags, kInitial | kAuxiliary);
  EXPECT_EQ(pages[1].flags, kContinued | kFooter | kAuxiliary);
  EXPECT_EQ(pages[0].body.size(), 258U);
  EXPECT_EQ(pages[1].body.size(), 1U);
  EXPECT_EQ(pages[1].number, 6U);
}

TEST(Recording, pages_end_by_themselves_after_packets_or_bytes) {
  Recording by_packets;
  by_packets.stream(7).packets_per_page(2);
  Recording by_bytes;
  by_bytes.stream(7).bytes_per_page(5);
  for (const char* text : {"aaa", "bbb", "ccc"}) {
    by_packets.stream(7).packet(bytes_of(text));
    by_bytes.stream(7).packet(bytes_of(text));
  }
  using Segments = std::vector<unsigned char>;
  const std::vector<Segments> expected{{3, 3}, {3}};
  EXPECT_EQ(each(by_packets.bytes(), &PageImage::segments), expected);
  EXPECT_EQ(each(by_bytes.bytes(), &PageImage::segments), expected);
}

TEST(Recording, fields_of_a_page_are_set_as_asked_for_and_its_checksum_is_good) {
  Recording recording;
  recording.stream(7)
      .page_number(9)
      .flags(0xFE)
      .version(3)
      .granule(-5)
      .packet(bytes_of("x"))
      .page()
      .packet(bytes_of("y"))
      .hole(2)
      .packet(bytes_of("z"));
  EXPECT_THAT(each(recording.bytes(), &PageImage::number), ElementsAre(9, 10, 13));
  EXPECT_THAT(each(recording.bytes(), &PageImage::flags), ElementsAre(0xFE, 0, 0));
  EXPECT_THAT(each(recording.bytes(), &PageImage::version), ElementsAre(3, 0, 0));
  EXPECT_EQ(each(recording.bytes(), &PageImage::granule).front(), -5);
}

TEST(Recording, fields_set_before_anything_belong_to_the_initial_page) {
  Recording recording;
  recording.stream(7).codec("UCom").page_number(1000).packet(bytes_of("x"));
  EXPECT_THAT(each(recording.bytes(), &PageImage::number), ElementsAre(1000, 1001));
}

TEST(Recording, a_page_of_its_own_making_follows_what_is_queued) {
  Recording recording;
  recording.stream(7).packet(bytes_of("a")).raw_page({}, {}).raw_page({255}, Bytes(255, 'x'));
  const Bytes& bytes = recording.bytes();
  EXPECT_THAT(each(bytes, &PageImage::number), ElementsAre(0, 1, 2));
  EXPECT_THAT(pages_of(bytes).images.at(1).segments, IsEmpty());
  EXPECT_EQ(pages_of(bytes).images.at(2).body.size(), 255U);
}

TEST(Recording, garbage_stands_between_pages) {
  Recording recording;
  recording.stream(7).packet(bytes_of("a")).page();
  recording.garbage(noise(100));
  recording.stream(7).packet(bytes_of("b"));
  EXPECT_THAT(packets_of(recording.bytes(), 7), ElementsAre("a", "b"));
  EXPECT_EQ(pages_of(recording.bytes()).losses, 1);
}

TEST(Recording, a_sink_is_given_one_page_a_call) {
  std::vector<Bytes> pages;
  Recording recording([&pages](std::span<const unsigned char> page) {
    pages.emplace_back(page.begin(), page.end());
  });
  recording.stream(7).codec("UCom").packet(bytes_of("a")).page().packet(bytes_of("b"));
  recording.finish();
  ASSERT_EQ(pages.size(), 3U);
  for (const Bytes& page : pages) EXPECT_EQ(pages_of(page).images.size(), 1U);
}

}  // namespace
}  // namespace Trel::Support::Test
