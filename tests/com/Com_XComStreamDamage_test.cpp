#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Com_Feed.h"
#include "support/Support_Damage.h"
#include "support/Support_Recording.h"

namespace Trel::Com::Test {
namespace {

using Support::bytes_of;
using testing::ElementsAre;
using testing::IsEmpty;

// Page 0 is the initial one; pages 1 to 5 carry two packets each: "1a", "1b" and so on.
Bytes five_pages() {
  Support::Recording recording;
  auto& stream = recording.stream(kSerial).codec("UCom");
  for (const std::string number : {"1", "2", "3", "4", "5"}) {
    stream.packet(bytes_of(number + "a")).packet(bytes_of(number + "b")).page();
  }
  return recording.bytes();
}

// Page 0 is the initial one; a packet of 600 bytes lies on pages 1 to 3, then "after" on page 4.
Bytes spanning_packet() {
  Support::Recording recording;
  recording.stream(kSerial)
      .codec("UCom")
      .headers()
      .segments_per_page(1)
      .packet(Bytes(600, 's'))
      .packet(bytes_of("after"));
  return recording.bytes();
}

Texts survivors(const Bytes& bytes) {
  Fed decoder;
  decoder.feed(bytes);
  return decoder.drain();
}

TEST(StreamDamage, without_damage_everything_comes_out) {
  Fed decoder;
  decoder.feed(five_pages());
  EXPECT_THAT(decoder.drain(),
              ElementsAre("1a", "1b", "2a", "2b", "3a", "3b", "4a", "4b", "5a", "5b"));
  EXPECT_EQ(decoder.get_holes().payload, 0U);
  EXPECT_EQ(decoder.sync_losses, 0);
}

TEST(StreamDamage, a_dropped_page_costs_its_own_packets_and_counts_as_one_hole) {
  Fed decoder;
  decoder.feed(Support::drop_page(five_pages(), 3));
  EXPECT_THAT(decoder.drain(), ElementsAre("1a", "1b", "2a", "2b", kHole, "4a", "4b", "5a", "5b"));
  EXPECT_EQ(decoder.get_pages().lost, 1U);
  EXPECT_EQ(decoder.get_holes().payload, 1U);
  EXPECT_EQ(decoder.get_packets().payload, 8U);
}

TEST(StreamDamage, two_dropped_neighbours_are_one_hole) {
  Fed decoder;
  decoder.feed(Support::drop_page(Support::drop_page(five_pages(), 3), 3));
  EXPECT_THAT(decoder.drain(), ElementsAre("1a", "1b", "2a", "2b", kHole, "5a", "5b"));
  EXPECT_EQ(decoder.get_pages().lost, 2U);
  EXPECT_EQ(decoder.get_holes().payload, 1U);
}

TEST(StreamDamage, a_repeated_page_costs_nothing) {
  Fed decoder;
  decoder.feed(Support::repeat_page(five_pages(), 3));
  EXPECT_EQ(decoder.drain(), survivors(five_pages()));
  EXPECT_EQ(decoder.get_pages().rejected, 1U);
  EXPECT_EQ(decoder.get_pages().lost, 0U);
  EXPECT_EQ(decoder.get_holes().payload, 0U);
}

TEST(StreamDamage, of_two_swapped_neighbours_the_one_that_comes_late_is_lost) {
  Fed decoder;
  decoder.feed(Support::swap_pages(five_pages(), 3, 4));
  EXPECT_THAT(decoder.drain(), ElementsAre("1a", "1b", "2a", "2b", kHole, "4a", "4b", "5a", "5b"));
  EXPECT_EQ(decoder.get_pages().lost, 1U);
  EXPECT_EQ(decoder.get_pages().rejected, 1U);
}

TEST(StreamDamage, pages_in_reverse_order_leave_the_first_of_them) {
  Fed decoder;
  decoder.feed(Support::reorder_pages(five_pages(), {0, 5, 4, 3, 2, 1}));
  EXPECT_THAT(decoder.drain(), ElementsAre("5a", "5b"));
  EXPECT_EQ(decoder.get_pages().lost, 4U);
  EXPECT_EQ(decoder.get_pages().rejected, 4U);
}

// Enough bytes behind a recording for a page of any size, so that a wrong length is found out.
Bytes followed(const Bytes& bytes) {
  return Support::join({bytes, Bytes(66000)});
}

TEST(StreamDamage, one_flipped_bit_anywhere_costs_its_page_and_no_other) {
  const Bytes whole = followed(five_pages());
  const auto pages = Support::find_pages(whole);
  ASSERT_EQ(pages.size(), 6U);
  for (std::size_t damaged = 1; damaged < pages.size(); ++damaged) {
    const Texts expected = survivors(Support::drop_page(whole, damaged));
    for (std::size_t offset = pages[damaged].offset; offset < pages[damaged].end(); ++offset) {
      for (unsigned int bit = 0; bit < 8; ++bit) {
        Fed decoder;
        decoder.feed(Support::flip_bit(whole, offset, bit));
        ASSERT_EQ(decoder.drain(), expected) << "bit " << bit << " of byte " << offset;
        ASSERT_EQ(decoder.get_pages().total, 5U);
      }
    }
  }
}

TEST(StreamDamage, a_page_that_claims_to_reach_beyond_the_end_hides_those_behind_it) {
  const Bytes whole = five_pages();
  const std::size_t segment_count = Support::find_pages(whole).at(3).offset + 26;
  Fed decoder;
  decoder.feed(Support::flip_bit(whole, segment_count, 7));
  EXPECT_THAT(decoder.drain(), ElementsAre("1a", "1b", "2a", "2b"));
  EXPECT_EQ(decoder.sync_losses, 0);
}

TEST(StreamDamage, a_cut_end_costs_the_page_that_it_meets) {
  const Bytes whole = five_pages();
  const std::size_t last = Support::find_pages(whole).back().size;
  for (std::size_t count = 1; count <= last; ++count) {
    Fed decoder;
    decoder.feed(Support::cut_end(whole, count));
    EXPECT_THAT(decoder.drain(), ElementsAre("1a", "1b", "2a", "2b", "3a", "3b", "4a", "4b"));
    EXPECT_EQ(decoder.get_pages().lost, 0U);
    EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DECODING);
  }
}

TEST(StreamDamage, garbage_between_pages_costs_nothing_and_is_one_loss_of_synchronisation) {
  const Bytes whole = five_pages();
  for (const auto& extent : Support::find_pages(whole)) {
    Fed decoder;
    decoder.feed(Support::insert_bytes(whole, extent.offset, Support::noise(1000)));
    EXPECT_EQ(decoder.drain(), survivors(whole));
    EXPECT_EQ(decoder.sync_losses, 1);
    EXPECT_EQ(decoder.get_pages().lost, 0U);
  }
}

TEST(StreamDamage, garbage_inside_a_page_costs_that_page) {
  const Bytes whole = followed(five_pages());
  const auto third = Support::find_pages(whole).at(3);
  for (std::size_t place = third.offset + 1; place < third.end(); ++place) {
    EXPECT_EQ(survivors(Support::insert_bytes(whole, place, Support::noise(9))),
              survivors(Support::drop_page(whole, 3)));
  }
}

TEST(StreamDamage, a_lost_middle_never_joins_the_ends_of_a_packet) {
  for (const std::size_t lost : {1U, 2U, 3U}) {
    const Texts left = survivors(Support::drop_page(spanning_packet(), lost));
    ASSERT_FALSE(left.empty());
    EXPECT_EQ(left.back(), "after") << lost;
    for (const std::string& packet : left) {
      EXPECT_TRUE(packet == kHole || packet == "after") << "page " << lost << " lost";
    }
  }
  EXPECT_THAT(survivors(spanning_packet()), ElementsAre(std::string(600, 's'), "after"));
}

TEST(StreamDamage, a_lost_initial_page_is_the_loss_of_the_stream) {
  Fed decoder;
  decoder.feed(Support::drop_page(five_pages(), 0));
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_DEAD);
  EXPECT_THAT(decoder.drain(), IsEmpty());
  EXPECT_EQ(decoder.get_pages().accepted, 5U);
}

TEST(StreamDamage, a_recording_joined_to_itself_gives_its_packets_once) {
  Fed decoder;
  decoder.feed(Support::join({five_pages(), five_pages()}));
  EXPECT_EQ(decoder.drain(), survivors(five_pages()));
  // pages 0 to 4 go back behind page 5, and page 5 repeats it
  EXPECT_EQ(decoder.get_pages().rejected, 6U);
}

TEST(StreamDamage, a_recording_joined_with_numbers_that_count_on_is_stepped_into) {
  Support::Recording later;
  later.stream(kSerial).codec("UCom").page_number(6).packet(bytes_of("7a")).page();
  Fed decoder;
  decoder.feed(five_pages());
  decoder.drain();
  decoder.feed(later.bytes());
  EXPECT_THAT(decoder.drain(), ElementsAre("7a"));
  EXPECT_EQ(decoder.get_packets().initial_skip, 1U);
  EXPECT_EQ(decoder.get_pages().lost, 0U);
}

TEST(StreamDamage, any_bytes_with_mended_checksums_are_decoded_without_harm) {
  Bytes whole = Support::join({five_pages(), spanning_packet()});
  whole.erase(whole.begin(),
              whole.begin() + static_cast<long>(Support::find_pages(whole).front().size));
  for (unsigned int seed = 1; seed <= 500; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Bytes damaged = whole;
    const Bytes dice = Support::noise(24, seed);
    for (std::size_t i = 0; i < dice.size(); i += 3) {
      damaged[(dice[i] * 256U + dice[i + 1]) % damaged.size()] ^= dice[i + 2];
    }
    Support::mend_pages(damaged);

    Fed decoder;
    decoder.feed(initial_page(0, "1"));
    Support::PageReader reader(damaged);
    ogg_page next;
    int result = 0;
    while ((result = reader.next(next)) != 0) {
      // An empty packet on an initial page is a stop of its own.
      if (result > 0 && ogg_page_bos(&next) == 0) decoder.decode_page(next);
    }
    decoder.drain();
    const auto& pages = decoder.get_pages();
    EXPECT_EQ(pages.total, pages.accepted + pages.rejected);
    EXPECT_EQ(pages.accepted, pages.bos + pages.mos + pages.eos);
  }
}

}  // namespace
}  // namespace Trel::Com::Test
