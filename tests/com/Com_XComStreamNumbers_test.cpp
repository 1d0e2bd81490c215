#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Com_Feed.h"
#include "support/Support_Bytes.h"

namespace Trel::Com::Test {
namespace {

using testing::ElementsAre;

// A decoder whose headers were complete at page `number`.
struct Begun : Fed {
  explicit Begun(std::uint32_t number) { feed(initial_page(number, "0")); }
};

TEST(StreamNumbers, a_new_decoder_has_counted_nothing) {
  const XComStreamDec decoder(kSerial, false);
  EXPECT_EQ(decoder.get_serial(), kSerial);
  EXPECT_EQ(decoder.get_page_number_status(), Enum::XCOM_PAGE_NUM_STATUS_INVALID);
  EXPECT_EQ(decoder.get_page_number_current(), 0);
  EXPECT_EQ(decoder.get_page_number_lost_gap(), 0U);
  EXPECT_EQ(decoder.get_pages().total, 0U);
  EXPECT_THAT(decoder.get_pages().status_counts, ElementsAre(0, 0, 0, 0, 0, 0, 0));
}

TEST(StreamNumbers, the_first_page_may_have_any_number) {
  for (const std::uint32_t number : {0U, 1U, 1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    Fed decoder;
    EXPECT_THAT(decoder.feed(initial_page(number, "0")), ElementsAre(true)) << number;
    EXPECT_EQ(decoder.get_page_number_status(), Enum::XCOM_PAGE_NUM_STATUS_FIRST);
    EXPECT_EQ(decoder.get_pages().lost, 0U) << number;
  }
}

TEST(StreamNumbers, the_next_number_is_good) {
  Begun decoder(5);
  EXPECT_THAT(decoder.feed(page(6, 0, {"x"})), ElementsAre(true));
  EXPECT_EQ(decoder.get_page_number_status(), Enum::XCOM_PAGE_NUM_STATUS_GOOD);
  EXPECT_EQ(decoder.get_page_number_previous(), 5);
  EXPECT_EQ(decoder.get_page_number_last(), 6);
  EXPECT_EQ(decoder.get_page_number_lost_gap(), 0U);
}

TEST(StreamNumbers, pages_5_and_9_lose_three) {
  Begun decoder(5);
  EXPECT_THAT(decoder.feed(page(9, 0, {"x"})), ElementsAre(true));
  EXPECT_EQ(decoder.get_page_number_status(), Enum::XCOM_PAGE_NUM_STATUS_LOST);
  EXPECT_EQ(decoder.get_page_number_lost_gap(), 3U);
  EXPECT_EQ(decoder.get_pages().lost, 3U);
  EXPECT_EQ(decoder.get_pages().accepted, 2U);
}

TEST(StreamNumbers, losses_add_up) {
  Begun decoder(5);
  decoder.feed(page(9, 0, {"x"}));
  decoder.feed(page(11, 0, {"x"}));
  EXPECT_EQ(decoder.get_pages().lost, 3U + 1U);
}

TEST(StreamNumbers, a_repeated_page_is_dropped_unread) {
  Begun decoder(5);
  decoder.feed(page(6, 0, {"x"}));
  EXPECT_THAT(decoder.feed(page(6, 0, {"x"})), ElementsAre(false));
  EXPECT_EQ(decoder.get_page_number_status(), Enum::XCOM_PAGE_NUM_STATUS_STALL);
  EXPECT_EQ(decoder.get_pages().rejected, 1U);
  EXPECT_EQ(decoder.get_pages().accepted, 2U);
  EXPECT_THAT(decoder.drain(), ElementsAre("x"));
}

TEST(StreamNumbers, a_backward_page_is_dropped_and_the_count_goes_on_from_the_last_accepted_one) {
  Begun decoder(5);
  EXPECT_THAT(decoder.feed(page(4, 0, {"back"})), ElementsAre(false));
  EXPECT_EQ(decoder.get_page_number_status(), Enum::XCOM_PAGE_NUM_STATUS_BACK);
  EXPECT_EQ(decoder.get_page_number_current(), 4);
  EXPECT_EQ(decoder.get_page_number_last(), 5);
  EXPECT_THAT(decoder.feed(page(6, 0, {"x"})), ElementsAre(true));
  EXPECT_EQ(decoder.get_page_number_status(), Enum::XCOM_PAGE_NUM_STATUS_GOOD);
  EXPECT_EQ(decoder.get_page_number_previous(), 5);
  EXPECT_EQ(decoder.get_pages().lost, 0U);
  EXPECT_THAT(decoder.drain(), ElementsAre("x"));
}

TEST(StreamNumbers, a_dropped_page_is_counted_by_its_judgement_and_as_nothing_else) {
  Begun decoder(5);
  decoder.feed(page(4, Support::kInitial | Support::kAuxiliary, {"[Trel-UCom]"}));
  const auto& pages = decoder.get_pages();
  EXPECT_EQ(pages.total, 2U);
  EXPECT_EQ(pages.accepted, 1U);
  EXPECT_EQ(pages.bos, 1U);
  EXPECT_EQ(pages.ros, 0U);
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED);
}

TEST(StreamNumbers, every_judgement_has_its_own_count) {
  Begun decoder(10);                               // FIRST
  for (const std::uint32_t number : {11U, 12U,     // GOOD twice
                                     12U,          // STALL
                                     3U, 4U, 5U,   // BACK three times
                                     20U, 30U}) {  // LOST twice
    decoder.feed(page(number, 0, {"x"}));
  }
  EXPECT_THAT(decoder.get_pages().status_counts, ElementsAre(0, 1, 3, 1, 2, 2, 0));
  EXPECT_EQ(decoder.get_pages().total, 9U);
  EXPECT_EQ(decoder.get_pages().accepted, 5U);
  EXPECT_EQ(decoder.get_pages().rejected, 4U);
  EXPECT_EQ(decoder.get_pages().lost, 7U + 9U);  // 13 to 19 and 21 to 29
}

TEST(StreamNumbers, the_upper_half_of_the_numbers_is_negative) {
  Begun decoder(0x7FFFFFFF);
  EXPECT_THAT(decoder.feed(page(0x80000000, 0, {"x"})), ElementsAre(false));
  EXPECT_EQ(decoder.get_page_number_current(), -2147483648LL);
  EXPECT_EQ(decoder.get_page_number_status(), Enum::XCOM_PAGE_NUM_STATUS_BACK);
}

TEST(StreamNumbers, the_widest_gap_is_counted_whole) {
  Begun decoder(0x80000000);
  decoder.feed(page(0x7FFFFFFF, 0, {"x"}));
  // from -2147483648 to 2147483647, less one
  EXPECT_EQ(decoder.get_pages().lost, 4294967294U);
}

TEST(StreamNumbers, zero_follows_all_bits_set_and_still_is_a_hole_to_libogg) {
  Begun decoder(0xFFFFFFFE);
  decoder.feed(page(0xFFFFFFFF, 0, {"x"}));
  EXPECT_THAT(decoder.feed(page(0, 0, {"y"})), ElementsAre(true));
  EXPECT_EQ(decoder.get_page_number_status(), Enum::XCOM_PAGE_NUM_STATUS_GOOD);
  EXPECT_EQ(decoder.get_pages().lost, 0U);
  EXPECT_THAT(decoder.drain(), ElementsAre("x", kHole, "y"));
  EXPECT_EQ(decoder.get_holes().payload, 1U);
}

TEST(StreamNumbers, pages_are_counted_by_their_kind) {
  Fed decoder;
  decoder.feed(page(0, Support::kInitial, {"[Trel-UCom]headers=1"}));
  decoder.feed(page(1, Support::kAuxiliary, {"{A}"}));
  decoder.feed(page(2, 0, {"x"}));
  decoder.feed(page(3, Support::kAuxiliary, {"x"}));
  decoder.feed(page(4, Support::kFooter, {"(end)"}));
  const auto& pages = decoder.get_pages();
  EXPECT_EQ(pages.bos, 1U);
  EXPECT_EQ(pages.mos, 3U);
  EXPECT_EQ(pages.eos, 1U);
  EXPECT_EQ(pages.ros, 2U);
}

TEST(StreamNumbers, a_page_that_is_first_and_last_counts_as_first) {
  Fed decoder;
  decoder.feed(page(0, Support::kInitial | Support::kFooter, {"[Trel-UCom]"}));
  EXPECT_EQ(decoder.get_pages().bos, 1U);
  EXPECT_EQ(decoder.get_pages().eos, 0U);
  EXPECT_EQ(decoder.get_status(), Enum::STREAM_DECODE_STATUS_INITIALISED);
}

TEST(StreamNumbers, after_a_rewind_any_number_is_first_again) {
  Begun decoder(0);
  decoder.feed(page(1, 0, {"x"}));
  decoder.rewind();
  EXPECT_EQ(decoder.get_page_number_last(), 0);
  EXPECT_EQ(decoder.get_page_number_previous(), 0);
  EXPECT_EQ(decoder.get_page_number_current(), 0);
  EXPECT_EQ(decoder.get_pages().total, 0U);
  EXPECT_THAT(decoder.get_pages().status_counts, ElementsAre(0, 0, 0, 0, 0, 0, 0));

  EXPECT_THAT(decoder.feed(page(1000, 0, {"x"})), ElementsAre(true));
  EXPECT_EQ(decoder.get_page_number_status(), Enum::XCOM_PAGE_NUM_STATUS_FIRST);
  EXPECT_EQ(decoder.get_pages().lost, 0U);
  EXPECT_THAT(decoder.drain(), ElementsAre("x"));
}

TEST(StreamCounters, a_reset_of_packets_clears_all_and_a_rewind_leaves_what_was_used) {
  XComStreamDec::Metric metric{1, 2, 3, 4, 5, 6, 7};
  metric.rewind();
  EXPECT_EQ(metric.initial_used, 1U);
  EXPECT_EQ(metric.initial_skip, 0U);
  EXPECT_EQ(metric.auxiliary_used, 3U);
  EXPECT_EQ(metric.auxiliary_skip, 0U);
  EXPECT_EQ(metric.footer_used, 5U);
  EXPECT_EQ(metric.footer_skip, 0U);
  EXPECT_EQ(metric.payload, 0U);
  metric.reset();
  EXPECT_EQ(metric.initial_used + metric.auxiliary_used + metric.footer_used, 0U);
}

TEST(StreamCounters, a_reset_of_pages_clears_all_and_keeps_the_size) {
  for (const auto clear : {&XComStreamDec::PageCount::reset, &XComStreamDec::PageCount::rewind}) {
    XComStreamDec::PageCount pages{1, 2, 3, 4, 5, 6, 7, 8, {1, 2, 3, 4, 5, 6, 7}};
    (pages.*clear)();
    EXPECT_EQ(pages.total + pages.accepted + pages.rejected + pages.lost, 0U);
    EXPECT_EQ(pages.bos + pages.mos + pages.eos + pages.ros, 0U);
    EXPECT_THAT(pages.status_counts, ElementsAre(0, 0, 0, 0, 0, 0, 0));
  }
}

}  // namespace
}  // namespace Trel::Com::Test
