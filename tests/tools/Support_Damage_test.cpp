#include "support/Support_Damage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Packets.h"
#include "support/Support_Recording.h"

namespace Trel::Support::Test {
namespace {

using testing::ElementsAre;

// Pages 0 to 3 with the packets "0" to "3".
Bytes four_pages() {
  Recording recording;
  for (const char* text : {"0", "1", "2", "3"}) recording.stream(7).packet(bytes_of(text)).page();
  return recording.bytes();
}

std::vector<std::uint32_t> numbers(const Bytes& bytes) {
  return each(bytes, &PageImage::number);
}

TEST(Damage, pages_are_found_with_their_extent) {
  const Bytes bytes = join({noise(10), four_pages()});
  const auto pages = find_pages(bytes);
  ASSERT_EQ(pages.size(), 4U);
  // 27 bytes, one lacing value, one byte
  EXPECT_EQ(pages[0].offset, 10U);
  EXPECT_EQ(pages[0].size, 29U);
  EXPECT_EQ(pages[3].end(), bytes.size());
  EXPECT_EQ(pages[2].number, 2U);
  EXPECT_EQ(pages[2].serial, 7U);
}

TEST(Damage, a_page_that_is_not_whole_is_not_found) {
  const Bytes whole = four_pages();
  for (std::size_t count = 1; count <= 29; ++count) {
    EXPECT_EQ(find_pages(cut_end(whole, count)).size(), 3U);
  }
}

TEST(Damage, pages_are_dropped_repeated_swapped_and_reordered) {
  EXPECT_THAT(numbers(drop_page(four_pages(), 1)), ElementsAre(0, 2, 3));
  EXPECT_THAT(numbers(repeat_page(four_pages(), 1)), ElementsAre(0, 1, 1, 2, 3));
  EXPECT_THAT(numbers(swap_pages(four_pages(), 1, 2)), ElementsAre(0, 2, 1, 3));
  EXPECT_THAT(numbers(swap_pages(four_pages(), 3, 0)), ElementsAre(3, 1, 2, 0));
  EXPECT_THAT(numbers(swap_pages(four_pages(), 2, 2)), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(numbers(reorder_pages(four_pages(), {3, 3, 0})), ElementsAre(3, 3, 0));
  EXPECT_THROW(static_cast<void>(drop_page(four_pages(), 4)), std::out_of_range);
}

TEST(Damage, a_flipped_bit_breaks_its_page_until_it_is_mended) {
  Bytes damaged = flip_bit(four_pages(), 2 * 29 - 1);  // the last byte of page 1
  EXPECT_THAT(numbers(damaged), ElementsAre(0, 2, 3));
  mend_pages(damaged);
  EXPECT_THAT(packets_of(damaged, 7), ElementsAre("0", "0", "2", "3"));  // '1' is 0x31
}

TEST(Damage, bytes_are_put_in_and_taken_out) {
  const Bytes whole = four_pages();
  const Bytes longer = insert_bytes(whole, 29, noise(50));
  EXPECT_EQ(longer.size(), whole.size() + 50);
  EXPECT_THAT(numbers(longer), ElementsAre(0, 1, 2, 3));
  EXPECT_EQ(remove_bytes(longer, 29, 50), whole);
  EXPECT_EQ(cut_end(whole, 1000), Bytes());
}

TEST(Damage, mending_leaves_a_good_recording_as_it_is_and_takes_any_bytes) {
  Bytes whole = four_pages();
  mend_pages(whole);
  EXPECT_EQ(whole, four_pages());
  for (unsigned int seed = 1; seed <= 200; ++seed) {
    Bytes anything = join({bytes_of("OggS"), noise(seed, seed), bytes_of("OggSOggS")});
    const std::size_t size = anything.size();
    mend_pages(anything);
    EXPECT_EQ(anything.size(), size) << "seed " << seed;
  }
}

TEST(Damage, noise_is_the_same_for_the_same_seed_only) {
  EXPECT_EQ(noise(100, 5), noise(100, 5));
  EXPECT_NE(noise(100, 5), noise(100, 6));
}

}  // namespace
}  // namespace Trel::Support::Test
