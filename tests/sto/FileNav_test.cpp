#include "sto/Sto_FileNav.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "RawFile_opened.h"
#include "rng/Rng_Sync.h"
#include "support/Support_NavPacket.h"
#include "support/Support_RangePacket.h"

namespace Trel::Sto::Test {
namespace {

using Support::MComPacket;
using Support::NComPacket;
using testing::ElementsAre;
using testing::IsEmpty;
using Locations = std::vector<unsigned long long>;

const Bytes kNCom = NComPacket().time_ms(100).bytes();
const Bytes kMCom = MComPacket().time_ms(100).bytes();

Bytes many(std::size_t count) {
  Bytes bytes;
  for (std::size_t n = 0; n < count; ++n) {
    bytes = join({bytes, NComPacket().time_ms(static_cast<std::uint16_t>(n)).bytes()});
  }
  return bytes;
}

struct Opened : ReadFile<LogicalNavAny> {
  explicit Opened(const Bytes& bytes) : ReadFile(bytes, ".ncom") {}
};

TEST(LogicalNavAny, a_fresh_reader_holds_nothing_and_reads_nothing) {
  LogicalNavAny reader;
  EXPECT_FALSE(reader.valid_packet());
  EXPECT_FALSE(reader.match_packet());
  EXPECT_EQ(reader.serial(), -1);
  EXPECT_EQ(reader.absolute_packet_location(), 0U);
  EXPECT_FALSE(reader.read_next_packet());
}

TEST(LogicalNavAny, reads_packets_of_both_kinds_with_their_serials_and_places) {
  Opened opened(join({kNCom, kMCom, kNCom}));
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_TRUE(opened.reader.valid_packet());
  EXPECT_EQ(opened.payload(), kNCom);
  EXPECT_EQ(opened.reader.serial(), 0);
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_EQ(opened.payload(), kMCom);
  EXPECT_EQ(opened.reader.serial(), 1);
  EXPECT_THAT(opened.rest(), ElementsAre(72 + 84));
}

TEST(LogicalNavAny, never_matches) {
  Opened opened(kNCom);
  opened.reader.read_next_packet();
  EXPECT_FALSE(opened.reader.match_packet());
}

TEST(LogicalNavAny, at_the_end_holds_no_packet) {
  Opened opened(kNCom);
  EXPECT_TRUE(opened.reader.read_next_packet());
  EXPECT_FALSE(opened.reader.read_next_packet());
  EXPECT_FALSE(opened.reader.valid_packet());
  EXPECT_EQ(opened.reader.serial(), -1);
  EXPECT_FALSE(opened.reader.read_next_packet());
}

TEST(LogicalNavAnyDeathTest, the_payload_of_no_packet_stops_the_program) {
  LogicalNavAny reader;
  EXPECT_DEATH(static_cast<void>(reader.payload_data()), "Test : valid\n.*sto/Sto_FileNav");
  EXPECT_DEATH(static_cast<void>(reader.payload_size()), "Test : valid\n.*sto/Sto_FileNav");
}

TEST(LogicalNavAny, a_file_shorter_than_any_packet_has_none) {
  for (const std::size_t size : {0, 1, 71}) {
    Opened opened(Bytes(kNCom.begin(), kNCom.begin() + static_cast<std::ptrdiff_t>(size)));
    EXPECT_FALSE(opened.reader.read_next_packet()) << size;
  }
}

TEST(LogicalNavAny, junk_ahead_between_and_behind_is_passed_over) {
  Opened opened(join({junk(5000), kNCom, junk(3), kMCom, junk(9000), kNCom, junk(4000)}));
  EXPECT_THAT(opened.rest(), ElementsAre(5000, 5075, 14159));
}

TEST(LogicalNavAny, bad_sums_and_cut_packets_are_passed_over) {
  const Bytes cut(kMCom.begin(), kMCom.begin() + 50);
  Opened opened(join({NComPacket().bad_sum().bytes(), kNCom, cut, kNCom, kNCom, cut}));
  EXPECT_THAT(opened.rest(), ElementsAre(72, 194, 266));
}

TEST(LogicalNavAny, reads_2048_bytes_at_a_time) {
  Opened opened(many(100));  // 7200 bytes
  // 28 packets, 2016 bytes, come out of the first read; 56 out of 4096; 85 out of 6144
  std::vector<unsigned long long> positions;
  while (opened.reader.read_next_packet()) {
    if (positions.empty() || positions.back() != opened.reader.absolute()) {
      positions.push_back(opened.reader.absolute());
    }
  }
  EXPECT_THAT(positions, ElementsAre(2048, 4096, 6144, 7200));
}

TEST(LogicalNavAny, reads_the_whole_of_a_long_file_without_a_loss) {
  Opened opened(many(1000));
  const Locations locations = opened.rest();
  ASSERT_EQ(locations.size(), 1000U);
  for (std::size_t n = 0; n < locations.size(); ++n) EXPECT_EQ(locations[n], 72 * n);
}

TEST(LogicalNavAny, a_rewind_goes_to_the_start_of_the_stretch_and_holds_nothing) {
  Opened opened(join({kMCom, kNCom, kNCom}));
  opened.reader.set_start(84);
  opened.rest();
  opened.reader.rewind();
  EXPECT_FALSE(opened.reader.valid_packet());
  EXPECT_EQ(opened.reader.serial(), -1);
  EXPECT_EQ(opened.reader.position(), 84U);
  EXPECT_THAT(opened.rest(), ElementsAre(84, 156));  // as they stand in the file
}

TEST(LogicalNavAny, a_rewind_in_mid_file_forgets_the_bytes_read_ahead) {
  Opened opened(many(50));
  for (int n = 0; n < 10; ++n) opened.reader.read_next_packet();
  opened.reader.rewind();
  EXPECT_EQ(opened.rest().size(), 50U);
}

TEST(LogicalNavAny, closed_and_opened_again_goes_on_with_the_next_packet) {
  Opened opened(many(100));
  for (int n = 0; n < 40; ++n) opened.reader.read_next_packet();
  opened.reader.disable();
  EXPECT_EQ(opened.file.open_handles(), 0);
  opened.reader.enable();
  const Locations rest = opened.rest();
  ASSERT_EQ(rest.size(), 60U);
  EXPECT_EQ(rest.front(), 72U * 40);
}

TEST(LogicalNavAny, a_closed_reader_still_hands_out_what_it_has_read) {
  Opened opened(many(3));
  opened.reader.read_next_packet();
  opened.reader.disable();
  EXPECT_THAT(opened.rest(), ElementsAre(72, 144));
}

// The same over range packets, whose length may be any.
class LogicalRange : public LogicalSync<Rng::SyncState, Rng::PacketState> {
 public:
  void rewind() override { rewind_sync(); }
  bool read_next_packet() override { return sync_next_packet(); }
  [[nodiscard]] bool valid_packet() const override { return packet.valid(); }
  [[nodiscard]] bool match_packet() const override { return false; }
  [[nodiscard]] const std::uint8_t* payload_data() const override { return packet.payload_data(); }
  [[nodiscard]] std::size_t payload_size() const override { return packet.payload_size(); }
  [[nodiscard]] unsigned long long skipped() const { return sync.bytes_skipped(); }
};

TEST(LogicalSync, a_claim_beyond_all_space_costs_one_byte_at_a_time_and_never_the_file) {
  const Bytes claim = {0x57, 2, 0xFF, 0xFF};
  const Bytes good = Support::range_file_packet(2, Bytes(95, 1));  // 100 bytes
  const ScratchFile file(join({good, claim, claim, good, junk(3000), claim, good, junk(2556)}));
  LogicalRange reader;
  reader.set_file(file.path());
  reader.enable();
  Locations found;
  while (reader.read_next_packet()) found.push_back(reader.absolute_packet_location());
  // the last claim is given up since 2560 bytes stand behind its first one
  EXPECT_THAT(found, ElementsAre(0, 108, 3212));
  EXPECT_EQ(reader.skipped(), 8U + 3004U + 2553U);  // the last three bytes still wait
}

TEST(LogicalSync, a_claim_that_the_end_of_the_file_leaves_open_stays) {
  const Bytes claim = {0x57, 2, 0xFF, 0xFF};
  const Bytes good = Support::range_file_packet(2, Bytes(95, 1));
  const ScratchFile file(join({good, claim, good}));
  LogicalRange reader;
  reader.set_file(file.path());
  reader.enable();
  EXPECT_TRUE(reader.read_next_packet());
  EXPECT_FALSE(reader.read_next_packet());
}

}  // namespace
}  // namespace Trel::Sto::Test
