#include "rng/Rng_Sync.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "support/Support_NavPacket.h"
#include "support/Support_RangePacket.h"
#include "support/Support_ReferenceSync.h"

namespace Trel::Rng::Test {
namespace {

using Support::Bytes;
using Support::counters_of;
using Support::drain_packets;
using Support::FoundPacket;
using Support::join;
using Support::NComPacket;
using Support::range_file_packet;
using Support::range_packet;
using testing::ElementsAre;

constexpr unsigned int kCapacity = 2560;

const Bytes kNCom = NComPacket().time_ms(100).bytes();
const Bytes kRange = range_file_packet(2, Bytes(100, 0x05));
const Bytes kWrapper = range_packet(0x01020304, 7, {kNCom});

// Bytes that begin no packet.
Bytes junk(std::size_t size) {
  return Bytes(size, 0x11);
}

unsigned int size_of(const Bytes& bytes) {
  return static_cast<unsigned int>(bytes.size());
}

void write(SyncState& sync, const Bytes& bytes) {
  sync.write(bytes.data(), size_of(bytes));
}

// The head of a packet that claims to be `size` bytes long.
Bytes claim(std::size_t size) {
  const std::size_t length = size - 4;
  return {0x57, 2, static_cast<unsigned char>(length), static_cast<unsigned char>(length >> 8)};
}

struct Fed {
  explicit Fed(std::initializer_list<Bytes> parts) { write(sync, join(parts)); }
  int out() { return sync.packet_out(state); }

  SyncState sync;
  PacketState state;
};

struct Verdict {
  explicit Verdict(const Bytes& bytes)
      : status(SyncState::status(size_of(bytes), bytes.data(), size, type)) {}
  unsigned int size = 99;
  Enum::RNG_OUTPUT_PACKET_TYPE type = Enum::RNG_OUTPUT_PACKET_TYPE_TRIGGER;
  Lib::PacketStatus status;
};

TEST(RngStatus, fewer_than_four_bytes_are_incomplete_whatever_they_are) {
  for (std::size_t count = 0; count < 4; ++count) {
    const Verdict verdict(junk(count));
    EXPECT_EQ(verdict.status, 1U) << count;
    EXPECT_EQ(verdict.size, 0U) << count;
  }
  EXPECT_EQ(Verdict(junk(4)).status, 2U);
  EXPECT_EQ(Verdict(junk(4)).size, 0U);
}

TEST(RngStatus, the_size_is_the_length_field_and_four) {
  EXPECT_EQ(Verdict(claim(4)).size, 4U);
  EXPECT_EQ(Verdict(claim(0x0201 + 4)).size, 0x0205U);
  EXPECT_EQ(Verdict({0x57, 0, 0xFF, 0xFF}).size, 65539U);
  EXPECT_EQ(Verdict({0x57, 0, 0xFF, 0xFF}).status, 1U);
}

TEST(RngStatus, the_kind_is_taken_only_from_a_good_packet) {
  Bytes packet = kRange;
  EXPECT_EQ(Verdict(packet).status, 0U);
  EXPECT_EQ(Verdict(packet).size, 105U);
  EXPECT_EQ(Verdict(packet).type, Enum::RNG_OUTPUT_PACKET_TYPE_EXT_RANGE);
  packet.pop_back();
  EXPECT_EQ(Verdict(packet).status, 1U);
  EXPECT_EQ(Verdict(packet).size, 105U);
  EXPECT_EQ(Verdict(packet).type, Enum::RNG_OUTPUT_PACKET_TYPE_TRIGGER);
  packet.push_back(static_cast<unsigned char>(kRange.back() + 1));
  EXPECT_EQ(Verdict(packet).status, 2U);
  EXPECT_EQ(Verdict(packet).size, 105U);
  EXPECT_EQ(Verdict(packet).type, Enum::RNG_OUTPUT_PACKET_TYPE_TRIGGER);
}

TEST(RngStatus, a_kind_that_is_not_known_is_unknown_and_good) {
  for (const unsigned char kind : {7, 8, 100, 255}) {
    const Verdict verdict(range_file_packet(kind, Bytes(8)));
    EXPECT_EQ(verdict.status, 0U);
    EXPECT_EQ(verdict.type, Enum::RNG_OUTPUT_PACKET_TYPE_UNKNOWN);
  }
}

TEST(RngStatus, one_wrong_byte_behind_the_head_is_bad) {
  for (std::size_t at = 4; at < kRange.size(); ++at) {
    Bytes wrong = kRange;
    wrong[at] ^= 0x40;
    EXPECT_EQ(Verdict(wrong).status, 2U) << at;
  }
}

TEST(RngStatus, the_shortest_packet_has_four_bytes_and_its_length_for_a_sum) {
  // length 0: bytes 1 and 2 add up to the kind, which must be byte 3, the length's high byte
  EXPECT_EQ(Verdict({0x57, 0, 0, 0}).status, 0U);
  EXPECT_EQ(Verdict({0x57, 0, 0, 0}).size, 4U);
}

TEST(RngPacketState, a_fresh_one_is_incomplete_and_all_else_is_zero) {
  const PacketState state;
  EXPECT_EQ(state.status(), 1U);
  EXPECT_EQ(state.type(), 0);
  EXPECT_EQ(state.payload_size(), 0U);
  EXPECT_EQ(state.payload_data(), nullptr);
  EXPECT_EQ(state.location(), 0U);
  EXPECT_FALSE(state.valid() || state.ncom_valid() || state.rcom_valid());
  EXPECT_EQ(state.serial(), -1);
  EXPECT_EQ(state.ncom_serial(), -1);
  EXPECT_EQ(state.rcom_serial(), -1);
  EXPECT_EQ(state.ncom_range_payload_data(), nullptr);
  EXPECT_EQ(state.ncom_range_payload_size(), 0U);
}

TEST(RngPacketState, wrapper_and_range_data_are_exact_opposites_whatever_the_kind) {
  for (int kind = 0; kind < 256; ++kind) {
    Fed fed({range_file_packet(static_cast<unsigned char>(kind), Bytes(8, 1))});
    ASSERT_EQ(fed.out(), 1);
    EXPECT_EQ(fed.state.ncom_valid(), kind == 3) << kind;
    EXPECT_EQ(fed.state.rcom_valid(), kind != 3) << kind;
  }
}

TEST(RngPacketState, a_wrapper_is_numbered_by_its_address) {
  Fed fed({range_packet(0xFFFFFFFF, 7, {kNCom})});
  fed.out();
  EXPECT_EQ(fed.state.ncom_serial_fast(), 0xFFFFFFFFLL);
  EXPECT_EQ(fed.state.serial(), 0xFFFFFFFFLL);
}

TEST(RngPacketState, a_wrapper_without_an_address_is_numbered_by_its_provenance) {
  Fed fed({range_packet(0, 0xFE, {kNCom})});
  fed.out();
  EXPECT_EQ(fed.state.ncom_serial(), 0xFE);
  EXPECT_EQ(fed.state.serial(), 0xFE);
}

TEST(RngPacketState, the_address_has_its_lowest_byte_first) {
  Fed fed({kWrapper});
  fed.out();
  EXPECT_EQ(fed.state.payload_data()[4], 0x04);
  EXPECT_EQ(fed.state.serial(), 0x01020304);
}

TEST(RngPacketState, the_numbers_by_name_do_not_look_at_the_kind) {
  Fed fed({range_file_packet(2, {9, 0, 0, 0, 1}), kWrapper});
  fed.out();
  EXPECT_EQ(fed.state.ncom_serial(), 9);
  EXPECT_EQ(fed.state.rcom_serial(), 0);
  EXPECT_EQ(fed.state.serial(), 0);
  fed.out();
  EXPECT_EQ(fed.state.rcom_serial(), 0);
  EXPECT_EQ(PacketState::rcom_serial_fast(), 0);
  EXPECT_EQ(PacketState::duff_serial_fast(), -1);
}

TEST(RngPacketState, a_wrapper_too_short_for_address_and_provenance_names_no_stream) {
  Fed fed({range_file_packet(3, {9, 0, 0})});  // 8 bytes: there is no byte 8
  ASSERT_EQ(fed.out(), 1);
  EXPECT_TRUE(fed.state.ncom_valid());
  EXPECT_EQ(fed.state.serial(), -1);
}

TEST(RngPacketState, the_wrapped_part_lies_between_header_and_sum) {
  Fed fed({kWrapper});
  fed.out();
  const unsigned char* inner = fed.state.ncom_range_payload_data();
  EXPECT_EQ(inner, fed.state.payload_data() + 4);
  EXPECT_EQ(fed.state.ncom_range_payload_size(), 5U + 72U);  // address, provenance, one packet
  EXPECT_EQ(Bytes(inner + 5, inner + 77), kNCom);
}

TEST(RngPacketState, range_data_is_the_whole_packet) {
  Fed fed({kRange});
  fed.out();
  EXPECT_EQ(fed.state.rcom_payload_data(), fed.state.payload_data());
  EXPECT_EQ(fed.state.rcom_payload_size(), 105U);
  EXPECT_EQ(fed.state.payload_size(), 105U);
}

TEST(RngPacketState, nothing_is_wrapped_in_the_shortest_packet) {
  Fed fed({Bytes{0x57, 0, 0, 0}});
  ASSERT_EQ(fed.out(), 1);
  EXPECT_EQ(fed.state.ncom_range_payload_size(), 0U);
}

std::vector<FoundPacket> drain(SyncState& sync, const Bytes& stream) {
  PacketState state;
  return drain_packets(sync, state, stream);
}

TEST(RngSync, packets_of_all_kinds_come_out_in_order_with_their_numbers) {
  SyncState sync;
  EXPECT_THAT(drain(sync, join({kRange, kWrapper, kRange})),
              ElementsAre(FoundPacket{0, 0, kRange}, FoundPacket{105, 0x01020304, kWrapper},
                          FoundPacket{105 + kWrapper.size(), 0, kRange}));
}

TEST(RngSync, navigation_packets_without_a_wrapper_are_junk) {
  SyncState sync;
  EXPECT_THAT(drain(sync, join({kRange, kNCom, kRange})),
              ElementsAre(FoundPacket{0, 0, kRange}, FoundPacket{177, 0, kRange}));
  EXPECT_EQ(sync.bytes_skipped(), 72U);
  EXPECT_EQ(sync.skip_events(), 1U);
}

TEST(RngSync, junk_ahead_is_never_reported_and_junk_between_is) {
  SyncState sync;
  drain(sync, join({junk(50), kRange, junk(20), kRange, junk(30), kRange}));
  EXPECT_EQ(sync.packets(), 3U);
  EXPECT_EQ(sync.bytes_skipped(), 50U);  // 20 + 30
  EXPECT_EQ(sync.skip_events(), 2U);
}

TEST(RngSync, the_last_three_bytes_wait_whatever_they_are) {
  SyncState sync;
  PacketState state;
  drain_packets(sync, state, join({kRange, junk(200)}));
  EXPECT_EQ(sync.size(), 3U);
  EXPECT_EQ(sync.bytes_skipped(), 197U);
  EXPECT_EQ(sync.packet_out(state), 0);
  EXPECT_TRUE(sync.in_sync());
}

TEST(RngSync, a_lone_start_byte_holds_the_scan_until_its_claim_is_refuted) {
  Fed fed({kRange, claim(200), junk(100), kRange});  // 200 claimed, 104 + 105 there
  EXPECT_EQ(fed.out(), 1);
  EXPECT_EQ(fed.out(), -1);
  EXPECT_EQ(fed.out(), 1);
  EXPECT_EQ(fed.state.location(), 209U);
  Fed waiting({kRange, claim(300), junk(100), kRange});
  EXPECT_EQ(waiting.out(), 1);
  EXPECT_EQ(waiting.out(), 0);
  EXPECT_EQ(waiting.state.location(), 105U);
}

TEST(RngSync, the_longest_packet_is_as_long_as_the_buffer) {
  const Bytes longest = range_file_packet(5, Bytes(kCapacity - 5, 1));
  ASSERT_EQ(longest.size(), kCapacity);
  SyncState sync;
  EXPECT_THAT(drain(sync, join({kRange, longest, kRange})),
              ElementsAre(FoundPacket{0, 0, kRange}, FoundPacket{105, 0, longest},
                          FoundPacket{2665, 0, kRange}));
}

TEST(RngSync, a_claim_beyond_the_buffer_moves_on_by_overflow_alone) {
  Fed fed({claim(kCapacity + 1), junk(kCapacity - 4)});
  EXPECT_EQ(fed.out(), 0);
  EXPECT_EQ(fed.sync.space(), 0U);
  EXPECT_EQ(fed.out(), 0);
  EXPECT_EQ(fed.sync.size(), kCapacity);  // nothing is dropped by asking
  write(fed.sync, kRange);
  EXPECT_EQ(fed.sync.bytes_skipped(), 105U);
  EXPECT_EQ(fed.sync.location(), 105U);
  EXPECT_EQ(fed.out(), -1);
  EXPECT_EQ(fed.out(), 1);
  EXPECT_EQ(fed.state.location(), kCapacity);
}

TEST(RngSync, with_a_byte_dropped_when_it_is_full_a_claim_beyond_it_costs_itself_alone) {
  SyncState sync;
  const Bytes stream = join({kRange, claim(65539), junk(3000), kRange, junk(3)});
  EXPECT_THAT(drain(sync, stream),
              ElementsAre(FoundPacket{0, 0, kRange}, FoundPacket{3109, 0, kRange}));
  EXPECT_EQ(sync.bytes_skipped(), 3004U);
  EXPECT_EQ(sync.location() + sync.size(), stream.size());
}

TEST(RngSync, what_was_handed_out_and_what_was_dropped_add_up_to_the_location) {
  const Bytes stream = join({kRange, junk(9), kWrapper, kNCom, kWrapper, Bytes(70, 0x57),
                             junk(4000), kRange, kRange, junk(2)});
  SyncState sync;
  std::uint64_t handed_out = 0;
  for (const auto& packet : drain(sync, stream)) handed_out += packet.bytes.size();
  EXPECT_EQ(handed_out, 3 * kRange.size() + 2 * kWrapper.size());
  EXPECT_EQ(sync.location(), handed_out + sync.bytes_skipped());
  EXPECT_EQ(sync.location() + sync.size(), stream.size());
}

// What the reference takes for a packet.
int reference_status(const unsigned char* data, std::size_t available, std::size_t& size) {
  if (available < 4) return 1;
  if (data[0] != 0x57) return 2;
  size = data[2] + 256U * data[3] + 4;
  if (available < size) return 1;
  return Support::has_good_sum(data, size) ? 0 : 2;
}

Bytes random_stream(std::mt19937& random, std::size_t size) {
  Bytes stream;
  while (stream.size() < size) {
    Bytes part;
    switch (random() % 8) {
      case 0:
      case 1:
        part = range_file_packet(static_cast<unsigned char>(random() % 8),
                                 Support::noise(random() % 400, static_cast<unsigned>(random())));
        break;
      case 2:
        part = range_packet(static_cast<std::uint32_t>(random()), 1, {kNCom, kNCom});
        break;
      case 3:
        part = kRange;
        part.back() ^= 1;
        break;
      case 4:
        part = claim(4 + random() % 1000);
        break;
      case 5:
        part = random() % 10 == 0 ? claim(4 + random() % 65536) : junk(random() % 50);
        break;
      case 6:
        part = Support::noise(random() % 300, static_cast<unsigned int>(random()));
        break;
      default:
        part = kWrapper;
        part.resize(random() % part.size());
    }
    stream = join({stream, part});
  }
  return stream;
}

TEST(RngSyncProperty, any_calls_leave_the_counters_and_bytes_of_the_plain_way) {
  for (unsigned int seed = 1; seed <= 40; ++seed) {
    std::mt19937 random(seed);
    SyncState sync;
    PacketState state;
    Support::ReferenceSync reference(reference_status);
    for (int call = 0; call < 400; ++call) {
      const unsigned int choice = static_cast<unsigned int>(random() % 12);
      if (choice == 0) {
        const auto count = static_cast<unsigned int>(random() % 100);
        sync.remove(count);
        reference.remove(count);
      } else if (choice < 4) {
        const Bytes bytes = random_stream(random, random() % (choice == 1 ? 3000 : 300));
        write(sync, bytes);
        reference.write(bytes);
      } else {
        ASSERT_EQ(sync.packet_out(state), reference.packet_out()) << "seed " << seed;
        if (state.valid()) {
          ASSERT_TRUE(std::equal(reference.held().begin(),
                                 reference.held().begin() + state.payload_size(),
                                 state.payload_data()))
              << "seed " << seed << ", call " << call;
        }
      }
      ASSERT_EQ(counters_of(sync), reference.counters()) << "seed " << seed << ", call " << call;
    }
  }
}

TEST(RngSyncProperty, a_stream_gives_the_packets_that_a_walk_over_it_finds) {
  for (unsigned int seed = 1; seed <= 40; ++seed) {
    std::mt19937 random(seed);
    const Bytes stream = random_stream(random, 30000);
    std::vector<std::uint64_t> expected;
    std::size_t at = 0;
    while (at < stream.size()) {
      std::size_t size = 0;
      const std::size_t left = stream.size() - at;
      const int status = reference_status(stream.data() + at, left, size);
      // more than the buffer can hold is refuted once the buffer is full
      const bool refuted = status == 2 || (size > kCapacity && left >= kCapacity);
      if (status == 0 && size <= kCapacity) {
        expected.push_back(at);
        at += size;
      } else if (refuted) {
        ++at;
      } else {
        break;
      }
    }
    SyncState sync;
    std::vector<std::uint64_t> found;
    for (const auto& packet : drain(sync, stream)) found.push_back(packet.location);
    ASSERT_EQ(found, expected) << "seed " << seed;
    ASSERT_EQ(sync.location(), at) << "seed " << seed;
  }
}

}  // namespace
}  // namespace Trel::Rng::Test
