#include "sto/Sto_FileRng.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RangeStream_fake.h"
#include "RawFile_opened.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Locations = std::vector<unsigned long long>;

constexpr unsigned int kAddress = 0x0A000001;

const Bytes kRange = timed_range(100);             // 8 bytes
const Bytes kWrapper = wrapped(kAddress, 0, 100);  // 82 bytes
const Bytes kByProvenance = wrapped(0, 3, 100);
const Bytes kTooShort = Support::range_file_packet(3, {1, 2, 3});  // 8 bytes

template <class Reader>
struct Opened : ReadFile<Reader> {
  template <class... Arguments>
  explicit Opened(const Bytes& bytes, Arguments... arguments)
      : ReadFile<Reader>(bytes, ".rcom", arguments...) {}
  // The places of the packets that match.
  Locations matches() {
    Locations locations;
    while (this->reader.read_next_packet()) {
      if (this->reader.match_packet()) {
        locations.push_back(this->reader.absolute_packet_location());
      }
    }
    return locations;
  }
};

using Any = Opened<LogicalRngAny>;
using RCom = Opened<LogicalRngRCom>;
using NCom = Opened<LogicalRngNCom>;

TEST(LogicalRngAny, a_fresh_reader_holds_nothing_and_reads_nothing) {
  LogicalRngAny reader;
  EXPECT_FALSE(reader.valid_packet() || reader.match_packet());
  EXPECT_FALSE(reader.is_rcom() || reader.is_ncom());
  EXPECT_EQ(reader.serial(), -1);
  EXPECT_EQ(reader.serial_rcom(), -1);
  EXPECT_EQ(reader.serial_ncom(), -1);
  EXPECT_FALSE(reader.read_next_packet());
}

TEST(LogicalRngAny, reads_packets_of_both_kinds_whole_with_their_serials) {
  Any opened(join({kRange, kWrapper, kByProvenance}));
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_TRUE(opened.reader.valid_packet() && opened.reader.is_rcom());
  EXPECT_FALSE(opened.reader.is_ncom());
  EXPECT_EQ(opened.payload(), kRange);
  EXPECT_EQ(opened.reader.serial(), 0);
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_TRUE(opened.reader.is_ncom());
  EXPECT_FALSE(opened.reader.is_rcom());
  EXPECT_EQ(opened.payload(), kWrapper);
  EXPECT_EQ(opened.reader.serial(), kAddress);
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_EQ(opened.reader.serial(), 3);
  EXPECT_EQ(opened.reader.absolute_packet_location(), 90U);
}

TEST(LogicalRngAny, the_serials_of_one_kind_are_asked_for_whatever_the_packet_is) {
  Any opened(kWrapper);
  opened.reader.read_next_packet();
  EXPECT_EQ(opened.reader.serial_rcom(), 0);
  EXPECT_EQ(opened.reader.serial_ncom(), kAddress);
}

TEST(LogicalRngAny, never_matches) {
  Any opened(kRange);
  opened.reader.read_next_packet();
  EXPECT_FALSE(opened.reader.match_packet());
}

TEST(LogicalRngAny, at_the_end_and_after_a_rewind_holds_no_packet) {
  Any opened(kRange);
  EXPECT_TRUE(opened.reader.read_next_packet());
  EXPECT_FALSE(opened.reader.read_next_packet());
  EXPECT_FALSE(opened.reader.valid_packet());
  opened.reader.rewind();
  EXPECT_TRUE(opened.reader.read_next_packet());
  opened.reader.rewind();
  EXPECT_FALSE(opened.reader.valid_packet());
  EXPECT_THAT(opened.rest(), ElementsAre(0));
}

TEST(LogicalRngAny, a_file_shorter_than_any_packet_has_none) {
  for (const std::size_t size : {0, 1, 3, 7}) {
    Any opened(Bytes(kRange.begin(), kRange.begin() + static_cast<std::ptrdiff_t>(size)));
    EXPECT_FALSE(opened.reader.read_next_packet()) << size;
  }
}

TEST(LogicalRngAny, a_wrapper_too_short_for_its_source_is_of_neither_kind) {
  Any opened(kTooShort);
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_TRUE(opened.reader.valid_packet());
  EXPECT_FALSE(opened.reader.is_rcom() || opened.reader.is_ncom());
  EXPECT_EQ(opened.reader.serial(), -1);
}

TEST(LogicalRngAnyDeathTest, the_payload_of_no_packet_stops_the_program) {
  LogicalRngAny reader;
  EXPECT_DEATH(static_cast<void>(reader.payload_data()), "Test : valid\n.*sto/Sto_FileRng");
  EXPECT_DEATH(static_cast<void>(reader.payload_size()), "Test : valid\n.*sto/Sto_FileRng");
}

TEST(LogicalRngRCom, matches_range_data_of_every_kind_but_wrappers) {
  const Bytes lane = Support::range_file_packet(1, Bytes(70));
  const Bytes unknown = Support::range_file_packet(7, {});
  RCom opened(join({kRange, kWrapper, lane, kByProvenance, unknown}), 0U);
  EXPECT_THAT(opened.matches(), ElementsAre(0, 90, 247));
}

TEST(LogicalRngRCom, a_read_succeeds_on_a_wrapper_which_is_not_valid) {
  RCom opened(join({kRange, kWrapper}), 0U);
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_TRUE(opened.reader.valid_packet() && opened.reader.match_packet());
  EXPECT_EQ(opened.payload(), kRange);
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_FALSE(opened.reader.valid_packet() || opened.reader.match_packet());
  EXPECT_FALSE(opened.reader.read_next_packet());
}

TEST(LogicalRngRCom, of_another_serial_than_0_matches_nothing) {
  RCom opened(kRange, 1U);
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_TRUE(opened.reader.valid_packet());
  EXPECT_FALSE(opened.reader.match_packet());
  EXPECT_EQ(opened.reader.found(), 0U);
}

TEST(LogicalRngNCom, matches_the_wrappers_of_its_source_alone) {
  const Bytes mix = join({kRange, kWrapper, kByProvenance, wrapped(kAddress + 1, 0, 9), kWrapper});
  EXPECT_THAT(NCom(mix, kAddress).matches(), ElementsAre(8, 254));
  EXPECT_THAT(NCom(mix, 3U).matches(), ElementsAre(90));
  EXPECT_THAT(NCom(mix, 0U).matches(), IsEmpty());
}

TEST(LogicalRngNCom, a_wrapper_of_another_source_is_valid_and_does_not_match) {
  NCom opened(join({kRange, kByProvenance}), kAddress);
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_FALSE(opened.reader.valid_packet());
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_TRUE(opened.reader.valid_packet());
  EXPECT_FALSE(opened.reader.match_packet());
  EXPECT_EQ(opened.reader.found(), 3U);
}

TEST(LogicalRngNCom, the_payload_is_what_is_wrapped) {
  NCom opened(kWrapper, kAddress);
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_EQ(opened.payload(), Bytes(kWrapper.begin() + 4, kWrapper.end() - 1));
  EXPECT_EQ(opened.reader.payload_size(), 77U);
}

TEST(LogicalRngNCom, the_highest_address_is_a_source_and_a_short_wrapper_is_not_its) {
  NCom opened(join({kTooShort, wrapped(0xFFFFFFFF, 0, 1)}), 0xFFFFFFFFU);
  EXPECT_THAT(opened.matches(), ElementsAre(8));
}

TEST(LogicalRngNCom, a_wrapper_of_nothing_but_its_source_has_five_bytes) {
  NCom opened(Support::range_packet(kAddress, 0, {}), kAddress);
  ASSERT_TRUE(opened.reader.read_next_packet());
  EXPECT_TRUE(opened.reader.match_packet());
  EXPECT_EQ(opened.payload(), Bytes({1, 0, 0, 0x0A, 0}));
}

TEST(LogicalRngNCom, a_rewind_goes_to_the_start_of_the_stretch_and_holds_nothing) {
  NCom opened(join({kWrapper, kRange, kWrapper, kWrapper}), kAddress);
  opened.reader.set_start(90);
  opened.reader.read_next_packet();
  opened.reader.rewind();
  EXPECT_FALSE(opened.reader.valid_packet() || opened.reader.match_packet());
  EXPECT_THAT(opened.matches(), ElementsAre(90, 172));  // as they stand in the file
}

TEST(LogicalRngOneDeathTest, the_payload_of_a_packet_that_is_not_valid_stops_the_program) {
  RCom range(kWrapper, 0U);
  range.reader.read_next_packet();
  EXPECT_DEATH(static_cast<void>(range.reader.payload_data()), "Test : valid\n.*sto/Sto_FileRng");
  NCom source(kRange, kAddress);
  source.reader.read_next_packet();
  EXPECT_DEATH(static_cast<void>(source.reader.payload_size()), "Test : valid\n.*sto/Sto_FileRng");
}

TEST(LogicalRng, junk_bad_sums_and_cut_packets_are_passed_over) {
  Bytes bad = kWrapper;
  ++bad.back();
  const Bytes cut(kWrapper.begin(), kWrapper.begin() + 40);
  Any opened(join({junk(5000), kRange, bad, kWrapper, cut, kRange, kWrapper, kRange, cut}));
  EXPECT_THAT(opened.rest(), ElementsAre(5000, 5090, 5212, 5220, 5302));
}

TEST(LogicalRng, closed_and_opened_again_goes_on_with_the_next_packet) {
  Bytes many;
  for (std::uint16_t n = 0; n < 1000; ++n) many = join({many, timed_range(n)});
  Any opened(many);
  for (int n = 0; n < 400; ++n) opened.reader.read_next_packet();
  opened.reader.disable();
  EXPECT_EQ(opened.file.open_handles(), 0);
  opened.reader.enable();
  const Locations rest = opened.rest();
  ASSERT_EQ(rest.size(), 600U);
  EXPECT_EQ(rest.front(), 8U * 400);
}

}  // namespace
}  // namespace Trel::Sto::Test
