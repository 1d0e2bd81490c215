// Payload allocates nothing outside libogg, which is not counted.
#include <gtest/gtest.h>

#include "Com_Feed.h"
#include "support/Support_Allocations.h"

namespace Trel::Com::Test {
namespace {

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

  const auto before = Support::allocations();
  while (reader.next(next) != 0) {
    decoder.decode_page(next);
    while (decoder.packet_out(packet) != 0) {
    }
  }
  const auto after = Support::allocations();

  EXPECT_EQ(after, before);
  EXPECT_EQ(decoder.get_packets().payload, 3U * 90U);
  EXPECT_EQ(decoder.get_holes().payload, 9U);  // 10 to 90; nothing follows 100
}

}  // namespace
}  // namespace Trel::Com::Test
