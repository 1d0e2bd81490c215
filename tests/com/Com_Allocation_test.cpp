// Counts allocations of the whole program: payload makes none outside libogg, which has its own.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "Com_Feed.h"

namespace {
std::atomic<unsigned long> allocations{0};
}

void* operator new(std::size_t size) {
  ++allocations;
  if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
  throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}

namespace Trel::Com::Test {
namespace {

TEST(StreamAllocation, the_counter_counts) {
  const auto before = allocations.load();
  const auto number = std::make_unique<int>(1);
  EXPECT_EQ(allocations.load(), before + 1);
}

TEST(StreamAllocation, neither_a_page_of_payload_nor_its_packets_allocate) {
  Fed decoder;
  decoder.feed(initial_page(0, "0"));
  Bytes bytes;
  for (std::uint32_t number = 1; number <= 100; ++number) {
    // every tenth page is lost, every seventh comes twice
    if (number % 10 == 0) continue;
    const Bytes one = page(number, 0, {"a", "b", "c"});
    for (int copies = number % 7 == 0 ? 2 : 1; copies > 0; --copies) {
      bytes.insert(bytes.end(), one.begin(), one.end());
    }
  }
  Support::PageReader reader(bytes);
  ogg_page next;
  ogg_packet packet;

  const auto before = allocations.load();
  while (reader.next(next) != 0) {
    decoder.decode_page(next);
    while (decoder.packet_out(packet) != 0) {
    }
  }
  const auto after = allocations.load();

  EXPECT_EQ(after, before);
  EXPECT_EQ(decoder.get_packets().payload, 3U * 90U);
  EXPECT_EQ(decoder.get_holes().payload, 9U);  // 10 to 90; nothing follows 100
}

}  // namespace
}  // namespace Trel::Com::Test
