// The bytes beneath the packets: writing, removing, overflow.
#include <gtest/gtest.h>

#include <numeric>
#include <random>

#include "nav/Nav_Sync.h"
#include "support/Support_NavPacket.h"
#include "support/Support_ReferenceSync.h"

namespace Trel::Nav::Test {
namespace {

using Support::Bytes;
using Support::counters_of;
using Support::drain_packets;
using Support::join;
using Support::MComPacket;
using Support::NComPacket;

constexpr unsigned int kCapacity = 2560;

Bytes junk(std::size_t size, unsigned char byte = 0x11) {
  return Bytes(size, byte);
}

void write(SyncState& sync, const Bytes& bytes) {
  sync.write(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

const Bytes kPacket = NComPacket().time_ms(100).bytes();

TEST(NavSyncWrite, takes_the_bytes_and_counts_them) {
  SyncState sync;
  write(sync, junk(100));
  write(sync, junk(60));
  EXPECT_EQ(sync.size(), 160U);
  EXPECT_EQ(sync.space(), kCapacity - 160);
  EXPECT_EQ(sync.bytes_written(), 160U);
  EXPECT_EQ(sync.location(), 0U);
}

TEST(NavSyncWrite, of_nothing_changes_nothing_but_lets_a_packet_go) {
  SyncState sync;
  PacketState state;
  sync.write(nullptr, 0);
  EXPECT_EQ(sync.size(), 0U);
  write(sync, kPacket);
  sync.packet_out(state);
  sync.write(nullptr, 0);
  EXPECT_EQ(sync.size(), 0U);
  EXPECT_EQ(sync.location(), 72U);
  EXPECT_FALSE(sync.packet_pending());
}

TEST(NavSyncWrite, lets_a_packet_handed_out_go_before_it_looks_for_room) {
  SyncState sync;
  PacketState state;
  write(sync, kPacket);
  sync.packet_out(state);
  write(sync, junk(kCapacity));
  EXPECT_EQ(sync.size(), kCapacity);
  EXPECT_EQ(sync.location(), 72U);
  EXPECT_EQ(sync.bytes_skipped(), 0U);
}

TEST(NavSyncWrite, up_to_the_capacity_drops_nothing) {
  SyncState sync;
  write(sync, junk(kCapacity - 1));
  write(sync, junk(1));
  EXPECT_EQ(sync.space(), 0U);
  EXPECT_EQ(sync.bytes_skipped(), 0U);
}

TEST(NavSyncWrite, beyond_the_capacity_drops_the_oldest_bytes) {
  SyncState sync;
  PacketState state;
  write(sync, join({junk(10), kPacket, junk(kCapacity - 82)}));
  write(sync, junk(10));
  EXPECT_EQ(sync.size(), kCapacity);
  EXPECT_EQ(sync.bytes_skipped(), 10U);
  EXPECT_EQ(sync.skip_events(), 0U);
  EXPECT_EQ(sync.location(), 10U);
  EXPECT_EQ(sync.bytes_written(), kCapacity + 10U);
  EXPECT_EQ(sync.packet_out(state), 1);  // it stands at the front now
  EXPECT_EQ(state.location(), 10U);
}

TEST(NavSyncWrite, of_one_byte_less_than_the_capacity_keeps_one_old_byte) {
  SyncState sync;
  PacketState state;
  write(sync, join({junk(99), Bytes{kPacket.front()}}));
  write(sync, join({Bytes(kPacket.begin() + 1, kPacket.end()), junk(kCapacity - 72)}));
  EXPECT_EQ(sync.bytes_skipped(), 99U);  // 100 + 2559 - 2560
  EXPECT_EQ(sync.packet_out(state), 1);
  EXPECT_EQ(state.location(), 99U);
}

TEST(NavSyncWrite, of_the_whole_capacity_drops_all_old_bytes) {
  SyncState sync;
  PacketState state;
  write(sync, junk(100));
  write(sync, join({kPacket, junk(kCapacity - 72)}));
  EXPECT_EQ(sync.size(), kCapacity);
  EXPECT_EQ(sync.bytes_skipped(), 100U);
  EXPECT_EQ(sync.packet_out(state), 1);
  EXPECT_EQ(state.location(), 100U);
}

TEST(NavSyncWrite, of_more_than_the_capacity_keeps_its_first_bytes) {
  SyncState sync;
  PacketState state;
  const Bytes last = MComPacket().bytes();
  write(sync, junk(100));
  write(sync, join({kPacket, junk(kCapacity - 72), last}));
  EXPECT_EQ(sync.size(), kCapacity);
  EXPECT_EQ(sync.bytes_written(), 100U + kCapacity);
  EXPECT_EQ(sync.bytes_skipped(), 100U + 84U);  // 100 + (2560 + 84) - 2560
  EXPECT_EQ(sync.location(), 184U);
  EXPECT_EQ(sync.packet_out(state), 1);
  EXPECT_EQ(state.type(), Enum::CODEC_TYPE_NCOM);
  EXPECT_EQ(sync.packet_out(state), -1);
  EXPECT_EQ(sync.packet_out(state), -1);  // the last packet never came in
  EXPECT_EQ(sync.size(), 0U);
}

TEST(NavSyncRemove, takes_from_the_front_and_counts_as_skipped) {
  SyncState sync;
  PacketState state;
  write(sync, join({junk(5), kPacket}));
  sync.remove(5);
  EXPECT_EQ(sync.size(), 72U);
  EXPECT_EQ(sync.bytes_skipped(), 5U);
  EXPECT_EQ(sync.skip_events(), 0U);
  EXPECT_EQ(sync.location(), 5U);
  EXPECT_EQ(sync.packet_out(state), 1);
}

TEST(NavSyncRemove, of_more_than_there_is_takes_what_there_is) {
  SyncState sync;
  write(sync, junk(5));
  sync.remove(6);
  EXPECT_EQ(sync.size(), 0U);
  EXPECT_EQ(sync.bytes_skipped(), 5U);
  EXPECT_EQ(sync.location(), 5U);
  sync.remove(1);
  EXPECT_EQ(sync.location(), 5U);
}

TEST(NavSyncRemove, with_a_packet_handed_out_counts_nothing_as_skipped) {
  SyncState sync;
  PacketState state;
  write(sync, join({kPacket, junk(3)}));
  sync.packet_out(state);
  sync.remove(72);
  EXPECT_EQ(sync.bytes_skipped(), 0U);
  EXPECT_EQ(sync.location(), 72U);
  EXPECT_FALSE(sync.packet_pending());
  sync.remove(3);
  EXPECT_EQ(sync.bytes_skipped(), 3U);
}

// What the reference takes for a packet.
int reference_status(const unsigned char* data, std::size_t available, std::size_t& size) {
  size = data[0] == 0xE7 ? 72 : data[0] == 0xE8 ? 84 : 0;
  if (size == 0) return 2;
  if (available < size) return 1;
  return Support::has_good_sum(data, size) ? 0 : 2;
}

// Packets, damaged packets, start bytes and noise, in random order.
Bytes random_stream(std::mt19937& random, std::size_t size) {
  Bytes stream;
  while (stream.size() < size) {
    Bytes part;
    switch (random() % 7) {
      case 0:
      case 1:
        part = NComPacket().time_ms(static_cast<std::uint16_t>(random())).bytes();
        break;
      case 2:
        part = MComPacket().time_ms(static_cast<std::uint16_t>(random())).bytes();
        break;
      case 3:
        part = NComPacket().bad_sum().bytes();
        break;
      case 4:
        part = MComPacket().bytes();
        part.resize(random() % part.size());
        break;
      case 5:
        part = Support::noise(random() % 300, static_cast<unsigned int>(random()));
        break;
      default:
        part = Bytes(random() % 100, random() % 2 == 0 ? 0xE7 : 0xE8);
    }
    stream = join({stream, part});
  }
  return stream;
}

TEST(NavSyncProperty, any_calls_leave_the_counters_and_bytes_of_the_plain_way) {
  for (unsigned int seed = 1; seed <= 40; ++seed) {
    std::mt19937 random(seed);
    SyncState sync;
    PacketState state;
    Support::ReferenceSync reference(reference_status);
    for (int call = 0; call < 400; ++call) {
      switch (random() % 16) {
        case 0: {
          const auto count = static_cast<unsigned int>(random() % 100);
          sync.remove(count);
          reference.remove(count);
          break;
        }
        case 1: {
          const Bytes bytes = random_stream(random, random() % 3000);
          write(sync, bytes);
          reference.write(bytes);
          break;
        }
        case 2:
          if (random() % 20 == 0) {
            sync.reset();
            reference.reset();
          }
          break;
        case 3:
        case 4: {
          const Bytes bytes = random_stream(random, random() % 200);
          write(sync, bytes);
          reference.write(bytes);
          break;
        }
        default: {
          ASSERT_EQ(sync.packet_out(state), reference.packet_out()) << "seed " << seed;
          const Bytes& held = reference.held();
          if (!state.valid()) break;
          ASSERT_TRUE(
              std::equal(held.begin(), held.begin() + state.payload_size(), state.payload_data()))
              << "seed " << seed << ", call " << call;
        }
      }
      ASSERT_EQ(counters_of(sync), reference.counters()) << "seed " << seed << ", call " << call;
    }
  }
}

TEST(NavSyncProperty, a_stream_gives_the_packets_that_a_walk_over_it_finds) {
  for (unsigned int seed = 1; seed <= 40; ++seed) {
    std::mt19937 random(seed);
    const Bytes stream = random_stream(random, 20000);
    std::vector<std::uint64_t> expected;
    std::size_t at = 0;
    while (at < stream.size()) {
      std::size_t size = 0;
      const int status = reference_status(stream.data() + at, stream.size() - at, size);
      if (status == 1) break;
      if (status == 0) expected.push_back(at);
      at += status == 0 ? size : 1;
    }
    SyncState sync;
    PacketState state;
    std::vector<std::uint64_t> found;
    std::uint64_t handed_out = 0;
    for (const auto& packet : drain_packets(sync, state, stream, 1 + random() % 2048)) {
      found.push_back(packet.location);
      handed_out += packet.bytes.size();
    }
    ASSERT_EQ(found, expected) << "seed " << seed;
    ASSERT_EQ(sync.location(), at) << "seed " << seed;
    const std::uint64_t ahead = expected.empty() ? 0 : expected.front();
    if (!expected.empty()) {
      ASSERT_EQ(sync.location(), ahead + handed_out + sync.bytes_skipped()) << "seed " << seed;
    }
  }
}

}  // namespace
}  // namespace Trel::Nav::Test
