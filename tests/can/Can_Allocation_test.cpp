// Decoding allocates nothing.
#include <gtest/gtest.h>

#include "can/Can_Builders.h"
#include "support/Support_Allocations.h"

namespace Trel::Can {
namespace {

constexpr long long kGps = 1'300'000'000'000'000'000;

TEST(CanAllocation, no_packet_of_either_pass_allocates) {
  Codec codec;
  configure(codec,
            "BO_ 1 M: 8 N\nSG_ A : 0|8@1- (1,0)\nSG_ B : 7|8@0+ (0.5,0)\nSG_ C : 0|64@1+ (1,0)\n",
            true);
  const auto first = PacketBuilder(5).frame(1, {1, 2}).bytes();
  const auto second = PacketBuilder(kGps).frame(1, {1, 2}).frame(7, 15, {}, 64).bytes();
  const auto third = PacketBuilder(kGps + 10).frame(1, {3, 4}).frame(1, {5}).bytes();

  const auto before = Support::allocations();
  codec.decode(first.data(), first.size());
  codec.decode(second.data(), second.size());
  codec.decode(third.data(), third.size());
  codec.rewind(true);
  for (int round = 0; round < 100; ++round) {
    codec.decode(first.data(), first.size());
    codec.decode(second.data(), second.size());
    codec.decode(third.data(), third.size());
  }
  const auto after = Support::allocations();

  EXPECT_EQ(after, before);
  EXPECT_EQ(static_cast<long long>(value(codec, "A")), 5);
}

}  // namespace
}  // namespace Trel::Can
