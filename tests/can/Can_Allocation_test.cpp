// Counts allocations of the whole program: decoding makes none.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "can/Can_Builders.h"

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

namespace Trel::Can {
namespace {

constexpr long long kGps = 1'300'000'000'000'000'000;

TEST(CanAllocation, the_counter_counts) {
  const auto before = allocations.load();
  const auto number = std::make_unique<int>(1);
  EXPECT_EQ(allocations.load(), before + 1);
}

TEST(CanAllocation, no_packet_of_either_pass_allocates) {
  Codec codec;
  configure(codec,
            "BO_ 1 M: 8 N\nSG_ A : 0|8@1- (1,0)\nSG_ B : 7|8@0+ (0.5,0)\nSG_ C : 0|64@1+ (1,0)\n",
            true);
  const auto first = PacketBuilder(5).frame(1, {1, 2}).bytes();
  const auto second = PacketBuilder(kGps).frame(1, {1, 2}).frame(7, 15, {}, 64).bytes();
  const auto third = PacketBuilder(kGps + 10).frame(1, {3, 4}).frame(1, {5}).bytes();

  const auto before = allocations.load();
  codec.decode(first.data(), first.size());
  codec.decode(second.data(), second.size());
  codec.decode(third.data(), third.size());
  codec.rewind(true);
  for (int round = 0; round < 100; ++round) {
    codec.decode(first.data(), first.size());
    codec.decode(second.data(), second.size());
    codec.decode(third.data(), third.size());
  }
  const auto after = allocations.load();

  EXPECT_EQ(after, before);
  EXPECT_EQ(static_cast<long long>(value(codec, "A")), 5);
}

}  // namespace
}  // namespace Trel::Can
