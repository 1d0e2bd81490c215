#include "com/Com_Page.h"

#include <gtest/gtest.h>

#include "Com_Feed.h"
#include "support/Support_Damage.h"

namespace Trel::Com::Test {
namespace {

// The answers for a page whose header type byte is `flags`.
struct Answers {
  int ros;
  int initial;
  int auxiliary;
  int payload;
  int footer;

  friend bool operator==(const Answers&, const Answers&) = default;
};

Answers ask(unsigned char flags) {
  unsigned char header[27] = {};
  header[5] = flags;
  ogg_page page{header, sizeof header, nullptr, 0};
  return {ogg_page_ros(page), ogg_page_is_inital(page), ogg_page_is_auxiliary(page),
          ogg_page_is_payload(page), ogg_page_is_footer(page)};
}

TEST(Page, a_page_without_flags_is_payload) {
  EXPECT_EQ(ask(0x00), (Answers{0, 0, 0, 1, 0}));
}

TEST(Page, a_first_page_is_initial) {
  EXPECT_EQ(ask(0x02), (Answers{0, 1, 0, 0, 0}));
}

TEST(Page, a_last_page_is_a_footer) {
  EXPECT_EQ(ask(0x04), (Answers{0, 0, 0, 0, 1}));
}

TEST(Page, a_page_flagged_as_header_is_auxiliary_and_its_flag_comes_back_as_8) {
  EXPECT_EQ(ask(0x08), (Answers{8, 0, 1, 0, 0}));
}

TEST(Page, a_page_that_is_first_and_last_is_initial_and_footer) {
  EXPECT_EQ(ask(0x06), (Answers{0, 1, 0, 0, 1}));
}

TEST(Page, a_last_page_flagged_as_header_is_a_footer_only) {
  EXPECT_EQ(ask(0x0C), (Answers{8, 0, 0, 0, 1}));
}

TEST(Page, a_first_page_flagged_as_header_is_initial_only) {
  EXPECT_EQ(ask(0x0A), (Answers{8, 1, 0, 0, 0}));
}

TEST(Page, a_continued_packet_and_unknown_flags_change_no_answer) {
  for (int flags = 0; flags < 16; flags += 2) {
    const auto plain = static_cast<unsigned char>(flags);
    EXPECT_EQ(ask(plain | 0x01), ask(plain)) << flags;
    EXPECT_EQ(ask(plain | 0xF0), ask(plain)) << flags;
  }
}

TEST(Page, one_changed_bit_makes_the_page_vanish_and_counts_as_one_loss) {
  const Bytes first = page(0, 0, {"first"});
  const Bytes second = page(1, 0, {"second"});
  const Bytes third = page(2, 0, {"third"});
  const std::size_t in_body = first.size() + second.size() - 1;
  const Bytes damaged = Support::flip_bit(Support::join({first, second, third}), in_body, 3);

  Support::PageReader reader(damaged);
  ogg_page next;
  ASSERT_EQ(reader.next(next), 1);
  EXPECT_EQ(ogg_page_pageno(&next), 0);
  EXPECT_LT(reader.next(next), 0);
  ASSERT_EQ(reader.next(next), 1);
  EXPECT_EQ(ogg_page_pageno(&next), 2);
  EXPECT_EQ(reader.next(next), 0);
}

}  // namespace
}  // namespace Trel::Com::Test
