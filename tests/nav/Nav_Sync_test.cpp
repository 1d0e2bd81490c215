#include "nav/Nav_Sync.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Support_NavPacket.h"
#include "support/Support_ReferenceSync.h"

namespace Trel::Nav::Test {
namespace {

using Support::Bytes;
using Support::counters_of;
using Support::drain_packets;
using Support::FoundPacket;
using Support::join;
using Support::MComPacket;
using Support::NComPacket;
using testing::ElementsAre;
using testing::IsEmpty;

const Bytes kNCom = NComPacket().time_ms(100).status(4).bytes();
const Bytes kMCom = MComPacket().time_ms(200).status(4).bytes();

// Bytes that begin no packet.
Bytes junk(std::size_t size) {
  return Bytes(size, 0x11);
}

unsigned int size_of(const Bytes& bytes) {
  return static_cast<unsigned int>(bytes.size());
}

Bytes first(const Bytes& bytes, std::size_t count) {
  return Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
}

void write(SyncState& sync, const Bytes& bytes) {
  sync.write(bytes.data(), size_of(bytes));
}

// A synchronisation that has been given `bytes`, and what it said last.
struct Fed {
  explicit Fed(std::initializer_list<Bytes> parts) { write(sync, join(parts)); }
  int out() { return sync.packet_out(state); }

  SyncState sync;
  PacketState state;
};

std::vector<FoundPacket> drain(const Bytes& stream, std::size_t chunk = 2048) {
  SyncState sync;
  PacketState state;
  return drain_packets(sync, state, stream, chunk);
}

struct Verdict {
  explicit Verdict(const Bytes& bytes) { status = of(size_of(bytes), bytes.data()); }
  Lib::PacketStatus of(unsigned int available, const unsigned char* data) {
    return SyncState::status(available, data, size, type);
  }
  unsigned int size = 99;
  Enum::CODEC_TYPE type = Enum::CODEC_TYPE_CAN;
  Lib::PacketStatus status;
};

TEST(NavStatus, nothing_at_all_is_incomplete_and_has_no_size) {
  const Verdict verdict{Bytes()};
  EXPECT_EQ(verdict.status, 1U);
  EXPECT_EQ(verdict.size, 0U);
  EXPECT_EQ(verdict.type, Enum::CODEC_TYPE_CAN);
}

TEST(NavStatus, a_good_packet_of_either_kind_is_told_by_its_first_byte) {
  const Verdict ncom(kNCom);
  EXPECT_EQ(ncom.status, 0U);
  EXPECT_EQ(ncom.size, 72U);
  EXPECT_EQ(ncom.type, 4);
  const Verdict mcom(kMCom);
  EXPECT_EQ(mcom.status, 0U);
  EXPECT_EQ(mcom.size, 84U);
  EXPECT_EQ(mcom.type, 3);
}

TEST(NavStatus, any_other_first_byte_is_bad_even_alone_and_leaves_the_kind) {
  for (int byte = 0; byte < 256; ++byte) {
    const Verdict verdict(Bytes{static_cast<unsigned char>(byte)});
    const bool starts = byte == 0xE7 || byte == 0xE8;
    EXPECT_EQ(verdict.status, starts ? 1U : 2U) << byte;
    if (starts) continue;
    EXPECT_EQ(verdict.size, 0U) << byte;
    EXPECT_EQ(verdict.type, Enum::CODEC_TYPE_CAN) << byte;
  }
}

TEST(NavStatus, one_byte_short_is_incomplete_with_size_and_kind_known) {
  const Verdict ncom(first(kNCom, 71));
  EXPECT_EQ(ncom.status, 1U);
  EXPECT_EQ(ncom.size, 72U);
  EXPECT_EQ(ncom.type, Enum::CODEC_TYPE_NCOM);
  EXPECT_EQ(Verdict(first(kMCom, 83)).status, 1U);
}

TEST(NavStatus, bytes_behind_the_packet_do_not_matter) {
  EXPECT_EQ(Verdict(join({kNCom, junk(1)})).status, 0U);
  EXPECT_EQ(Verdict(join({kMCom, kNCom})).status, 0U);
}

TEST(NavStatus, one_wrong_byte_anywhere_is_bad) {
  for (const Bytes& good : {kNCom, kMCom}) {
    for (std::size_t at = 0; at < good.size(); ++at) {
      Bytes wrong = good;
      wrong[at] ^= 0x40;
      EXPECT_EQ(Verdict(wrong).status, 2U) << at;
    }
  }
}

TEST(NavStatus, the_sum_runs_over_all_bytes_but_the_first_and_itself_modulo_256) {
  Bytes packet(72, 0xFF);
  packet.front() = 0xE7;
  packet.back() = 0xBA;  // 70 * 255 = 17850 = 69 * 256 + 186
  EXPECT_EQ(Verdict(packet).status, 0U);
  packet = Bytes(84, 0x03);
  packet.front() = 0xE8;
  packet.back() = 0xF6;  // 82 * 3 = 246
  EXPECT_EQ(Verdict(packet).status, 0U);
}

TEST(NavStatus, of_one_kind_alone_refuses_the_other) {
  EXPECT_EQ(SyncState::status_ncom(72, kNCom.data()), 0U);
  EXPECT_EQ(SyncState::status_ncom(84, kMCom.data()), 2U);
  EXPECT_EQ(SyncState::status_mcom(84, kMCom.data()), 0U);
  EXPECT_EQ(SyncState::status_mcom(72, kNCom.data()), 2U);
}

TEST(NavStatus, of_one_kind_alone_takes_the_same_steps) {
  EXPECT_EQ(SyncState::status_ncom(0, nullptr), 1U);
  EXPECT_EQ(SyncState::status_mcom(0, nullptr), 1U);
  EXPECT_EQ(SyncState::status_ncom(71, kNCom.data()), 1U);
  EXPECT_EQ(SyncState::status_mcom(83, kMCom.data()), 1U);
  EXPECT_EQ(SyncState::status_ncom(1, junk(1).data()), 2U);
  EXPECT_EQ(SyncState::status_mcom(1, junk(1).data()), 2U);
  EXPECT_EQ(SyncState::status_ncom(72, NComPacket().bad_sum().bytes().data()), 2U);
  EXPECT_EQ(SyncState::status_mcom(84, MComPacket().bad_sum().bytes().data()), 2U);
}

TEST(NavPacketState, a_fresh_one_is_incomplete_and_all_else_is_zero) {
  const PacketState state;
  EXPECT_EQ(state.status(), 1U);
  EXPECT_EQ(state.type(), 0);
  EXPECT_EQ(state.payload_size(), 0U);
  EXPECT_EQ(state.payload_data(), nullptr);
  EXPECT_EQ(state.location(), 0U);
  EXPECT_FALSE(state.valid() || state.ncom_valid() || state.mcom_valid());
  EXPECT_EQ(state.serial(), -1);
}

TEST(NavPacketState, each_kind_has_its_serial_number) {
  EXPECT_EQ(PacketState::ncom_serial_fast(), 0);
  EXPECT_EQ(PacketState::mcom_serial_fast(), 1);
  EXPECT_EQ(PacketState::duff_serial_fast(), -1);
  Fed fed({kNCom, kMCom, junk(1)});
  EXPECT_EQ(fed.out(), 1);
  EXPECT_TRUE(fed.state.valid() && fed.state.ncom_valid() && !fed.state.mcom_valid());
  EXPECT_EQ(fed.state.serial(), 0);
  EXPECT_EQ(fed.out(), 1);
  EXPECT_TRUE(fed.state.valid() && !fed.state.ncom_valid() && fed.state.mcom_valid());
  EXPECT_EQ(fed.state.serial(), 1);
  EXPECT_EQ(fed.out(), -1);
  EXPECT_FALSE(fed.state.valid() || fed.state.ncom_valid() || fed.state.mcom_valid());
  EXPECT_EQ(fed.state.serial(), -1);
}

TEST(NavPacketState, reset_forgets_the_packet_but_neither_its_kind_nor_its_place) {
  Fed fed({kNCom, kMCom});
  fed.out();
  fed.out();
  fed.state.reset();
  EXPECT_EQ(fed.state.status(), 1U);
  EXPECT_EQ(fed.state.payload_size(), 0U);
  EXPECT_EQ(fed.state.payload_data(), nullptr);
  EXPECT_EQ(fed.state.type(), Enum::CODEC_TYPE_MCOM);
  EXPECT_EQ(fed.state.location(), 72U);
  EXPECT_EQ(fed.state.serial(), -1);
}

TEST(NavSync, an_empty_one_needs_more_bytes) {
  SyncState sync;
  PacketState state;
  EXPECT_EQ(sync.packet_out(state), 0);
  EXPECT_EQ(state.status(), 1U);
  EXPECT_EQ(sync.space(), 2560U);
  EXPECT_TRUE(sync.in_sync());
}

TEST(NavSync, hands_a_packet_out_in_place_and_whole) {
  Fed fed({kNCom});
  EXPECT_EQ(fed.out(), 1);
  const unsigned char* data = fed.state.payload_data();
  EXPECT_EQ(Bytes(data, data + fed.state.payload_size()), kNCom);
  EXPECT_TRUE(fed.sync.packet_pending());
  EXPECT_EQ(fed.sync.packet_size(), 72U);
  EXPECT_EQ(fed.sync.packets(), 1U);
  EXPECT_EQ(fed.sync.size(), 72U);  // it leaves with the next call
}

TEST(NavSync, a_packet_handed_out_leaves_with_the_next_call_and_is_never_skipped) {
  Fed fed({kNCom});
  fed.out();
  EXPECT_EQ(fed.sync.location(), 0U);
  EXPECT_EQ(fed.out(), 0);
  EXPECT_EQ(fed.sync.location(), 72U);
  EXPECT_EQ(fed.sync.size(), 0U);
  EXPECT_EQ(fed.sync.packet_size(), 0U);
  EXPECT_FALSE(fed.sync.packet_pending());
  EXPECT_EQ(fed.sync.bytes_skipped(), 0U);
  EXPECT_EQ(fed.state.location(), 72U);
}

TEST(NavSync, neighbours_of_both_kinds_come_out_in_order_with_their_serials) {
  EXPECT_THAT(drain(join({kNCom, kMCom, kMCom, kNCom})),
              ElementsAre(FoundPacket{0, 0, kNCom}, FoundPacket{72, 1, kMCom},
                          FoundPacket{156, 1, kMCom}, FoundPacket{240, 0, kNCom}));
}

TEST(NavSync, junk_ahead_of_the_first_packet_is_met_once_and_never_reported) {
  Fed fed({junk(17), kNCom});
  EXPECT_EQ(fed.out(), -1);
  EXPECT_EQ(fed.sync.size(), 17U + 72U);  // the first bad byte removes nothing
  EXPECT_FALSE(fed.sync.in_sync());
  EXPECT_EQ(fed.out(), 1);
  EXPECT_EQ(fed.state.location(), 17U);
  EXPECT_EQ(fed.sync.bytes_skipped(), 0U);  // the counters start with the first good packet
  EXPECT_EQ(fed.sync.skip_events(), 0U);
  EXPECT_TRUE(fed.sync.in_sync());
}

TEST(NavSync, junk_between_packets_is_counted_as_one_event) {
  Fed fed({kNCom, junk(17), kNCom});
  EXPECT_EQ(fed.out(), 1);
  EXPECT_EQ(fed.out(), -1);
  EXPECT_EQ(fed.out(), 1);
  EXPECT_EQ(fed.state.location(), 72U + 17U);
  EXPECT_EQ(fed.sync.bytes_skipped(), 17U);
  EXPECT_EQ(fed.sync.skip_events(), 1U);
}

TEST(NavSync, junk_to_the_end_is_dropped_as_a_whole_and_bad_again) {
  Fed fed({kNCom, junk(500)});
  EXPECT_EQ(fed.out(), 1);
  EXPECT_EQ(fed.out(), -1);
  EXPECT_EQ(fed.sync.size(), 500U);
  EXPECT_EQ(fed.out(), -1);
  EXPECT_EQ(fed.state.status(), 2U);
  EXPECT_EQ(fed.state.payload_size(), 0U);
  EXPECT_EQ(fed.state.location(), 572U);
  EXPECT_EQ(fed.sync.size(), 0U);
  EXPECT_EQ(fed.sync.bytes_skipped(), 500U);
  EXPECT_EQ(fed.sync.skip_events(), 1U);
  EXPECT_EQ(fed.out(), 0);
  EXPECT_FALSE(fed.sync.in_sync());
}

TEST(NavSync, a_bad_candidate_with_nothing_behind_it_leaves_no_size) {
  Fed fed({NComPacket().bad_sum().bytes(), junk(40)});
  EXPECT_EQ(fed.out(), -1);
  EXPECT_EQ(fed.state.payload_size(), 72U);
  EXPECT_EQ(fed.out(), -1);
  EXPECT_EQ(fed.state.payload_size(), 0U);
}

TEST(NavSync, the_data_are_those_at_the_front_good_or_not) {
  Fed fed({junk(30), Bytes{0xE7, 0x55}});
  EXPECT_EQ(fed.out(), -1);
  ASSERT_NE(fed.state.payload_data(), nullptr);
  EXPECT_EQ(fed.state.payload_data()[0], 0x11);
  EXPECT_EQ(fed.out(), 0);
  EXPECT_EQ(fed.state.payload_data()[0], 0xE7);
  EXPECT_EQ(fed.state.payload_data()[1], 0x55);
}

TEST(NavSync, each_stretch_dropped_is_an_event_though_the_loss_is_one) {
  Fed fed({kNCom, junk(10)});
  while (fed.out() != 0) {
  }
  write(fed.sync, junk(20));
  EXPECT_EQ(fed.out(), -1);  // still out of step: dropped at once
  EXPECT_EQ(fed.sync.bytes_skipped(), 30U);
  EXPECT_EQ(fed.sync.skip_events(), 2U);
}

TEST(NavSync, a_false_start_near_the_end_waits_with_the_junk_ahead_of_it_gone) {
  Fed fed({kNCom, junk(30), Bytes{0xE7}, junk(40)});
  EXPECT_EQ(fed.out(), 1);
  EXPECT_EQ(fed.out(), -1);
  EXPECT_EQ(fed.out(), 0);
  EXPECT_EQ(fed.state.status(), 1U);
  EXPECT_EQ(fed.state.payload_size(), 72U);
  EXPECT_EQ(fed.sync.size(), 41U);
  EXPECT_EQ(fed.sync.bytes_skipped(), 30U);
  EXPECT_EQ(fed.sync.location(), 102U);
  EXPECT_TRUE(fed.sync.in_sync());
  EXPECT_EQ(fed.out(), 0);
  write(fed.sync, join({junk(31), kMCom}));  // 41 + 31 = 72 bytes: refuted
  EXPECT_EQ(fed.out(), -1);
  EXPECT_EQ(fed.out(), 1);
  EXPECT_EQ(fed.state.location(), 102U + 72U);
  EXPECT_EQ(fed.sync.bytes_skipped(), 102U);
}

TEST(NavSync, a_start_byte_as_the_very_last_byte_waits) {
  Fed fed({junk(100), Bytes{0xE8}});
  EXPECT_EQ(fed.out(), -1);
  EXPECT_EQ(fed.out(), 0);
  EXPECT_EQ(fed.sync.size(), 1U);
  EXPECT_EQ(fed.state.type(), Enum::CODEC_TYPE_MCOM);
}

TEST(NavSync, behind_a_bad_sum_the_search_goes_on_one_byte_further) {
  // A packet whose first byte is repeated: the outer candidate fails, the inner is good.
  EXPECT_THAT(drain(join({Bytes{0xE7}, kNCom, kMCom})),
              ElementsAre(FoundPacket{1, 0, kNCom}, FoundPacket{73, 1, kMCom}));
}

TEST(NavSync, a_bad_packet_costs_itself_alone) {
  const Bytes bad = NComPacket().time_ms(1).bad_sum().bytes();
  SyncState sync;
  PacketState state;
  EXPECT_THAT(drain_packets(sync, state, join({kNCom, bad, kNCom})),
              ElementsAre(FoundPacket{0, 0, kNCom}, FoundPacket{144, 0, kNCom}));
  EXPECT_EQ(sync.bytes_skipped(), 72U);
  EXPECT_EQ(sync.skip_events(), 1U);
}

TEST(NavSync, a_packet_cut_short_costs_itself_alone) {
  for (std::size_t kept = 1; kept < 72; ++kept) {
    SyncState sync;
    PacketState state;
    const auto found =
        drain_packets(sync, state, join({kNCom, first(kNCom, kept), kMCom, kNCom, kNCom}));
    EXPECT_EQ(found.size(), 4U) << kept;
    EXPECT_EQ(sync.bytes_skipped(), kept);
  }
}

TEST(NavSync, a_packet_cut_by_the_end_stays_for_good) {
  for (std::size_t kept = 1; kept < 84; ++kept) {
    SyncState sync;
    PacketState state;
    EXPECT_EQ(drain_packets(sync, state, join({kNCom, first(kMCom, kept)})).size(), 1U) << kept;
    EXPECT_EQ(sync.size(), kept);
    EXPECT_EQ(sync.location(), 72U);
    EXPECT_EQ(sync.packet_out(state), 0);
  }
}

TEST(NavSync, a_packet_may_arrive_in_any_pieces) {
  const Bytes stream = join({junk(3), kNCom, junk(100), kMCom, kNCom, junk(2000), kMCom});
  const auto whole = drain(stream);
  ASSERT_EQ(whole.size(), 4U);
  for (const std::size_t chunk : {1, 2, 7, 71, 72, 73, 84, 1000}) {
    EXPECT_EQ(drain(stream, chunk), whole) << chunk;
  }
}

TEST(NavSync, what_was_handed_out_and_what_was_dropped_add_up_to_the_location) {
  const Bytes bad = MComPacket().bad_sum().bytes();
  const Bytes stream = join({kNCom, junk(17), kMCom, bad, kNCom, junk(3000), Bytes(90, 0xE7), kNCom,
                             kMCom, first(kNCom, 40), kMCom, junk(5)});
  SyncState sync;
  PacketState state;
  std::uint64_t handed_out = 0;
  for (const auto& packet : drain_packets(sync, state, stream)) handed_out += packet.bytes.size();
  EXPECT_EQ(handed_out, 3U * 72 + 3U * 84);
  EXPECT_EQ(sync.bytes_skipped(), 17U + 84 + 3000 + 90 + 40 + 5);
  EXPECT_EQ(sync.location(), handed_out + sync.bytes_skipped());
  EXPECT_EQ(sync.location() + sync.size(), stream.size());
  EXPECT_EQ(sync.bytes_written(), stream.size());
}

TEST(NavSync, a_reset_forgets_everything) {
  Fed fed({kNCom, junk(10), kNCom});
  for (int call = 0; call < 3; ++call) fed.out();
  write(fed.sync, junk(5));
  fed.out();
  fed.sync.reset();
  EXPECT_EQ(counters_of(fed.sync), Support::ReferenceSync::Counters());
  EXPECT_EQ(fed.out(), 0);
  write(fed.sync, kMCom);
  EXPECT_EQ(fed.out(), 1);
  EXPECT_EQ(fed.state.location(), 0U);
}

}  // namespace
}  // namespace Trel::Nav::Test
