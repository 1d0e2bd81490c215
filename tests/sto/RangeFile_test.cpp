// Raw range files through the store: length, junk, damage and lies, and what still comes out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "RangeDrive.h"
#include "Stream_recordings.h"
#include "sto/Sto_Store.h"
#include "support/Support_Damage.h"

namespace Trel::Sto::Test {
namespace {

using Support::range_file_packet;
using Support::range_packet;

constexpr std::uint32_t kAddress = 0x0100000A;
constexpr long long kLast = range_ms(10 * (kDrivePackets - 1));

// A head that claims more than the space for packets can ever hold: 57 02 FF FF.
const Bytes kClaim = {0x57, 2, 0xFF, 0xFF};

struct OpenedFile {
  explicit OpenedFile(const Bytes& bytes) : file(bytes, ".rcom"), store(options()) {
    unsigned int count = 0;
    store.add_resource(file.path(), ids, count);
  }
  [[nodiscard]] StreamLeaf leaf(unsigned int stream = 0) const {
    StreamLeaf described;
    store.query_stream(described, stream);
    return described;
  }
  // Opens, selects everything, walks from end to end and back to the start.
  void walk_all() {
    Aspect aspect;
    for (const unsigned int id : ids) {
      std::vector<DynamicNode> elements;
      store.get_stream_in(id)->query_measurements(elements);
      for (const DynamicNode& element : elements) {
        store.direct_add_element(id, element.name);
        store.direct_use_element(aspect, id, element.name);
      }
    }
    long long start = 0;
    long long end = 0;
    store.get_start(start);
    store.get_end(end);
    std::vector<Result> values;
    for (const long long t : {start, end, start}) {
      store.direct_decode_begin(t);
      store.direct_decode_step(aspect, t, values);
      store.direct_decode_end();
    }
  }

  ScratchFile file;
  DataStore store;
  std::vector<unsigned int> ids;
};

void expect_whole_drive(const OpenedFile& opened) {
  ASSERT_EQ(opened.ids.size(), 2U);
  for (const unsigned int id : opened.ids) {
    EXPECT_TRUE(opened.leaf(id).storable) << id;
    EXPECT_EQ(opened.leaf(id).start, range_ms(0)) << id;
    EXPECT_EQ(opened.leaf(id).end, kLast) << id;
  }
}

const Bytes kDrive = range_file({{kAddress, 0}});
constexpr std::size_t kPairSize = 115 + 82;  // of range data and a wrapper

TEST(RangeFileDamage, a_whole_drive_has_two_streams) {
  expect_whole_drive(OpenedFile(kDrive));
}

TEST(RangeFileDamage, junk_ahead_between_and_behind_costs_no_packet) {
  const Bytes file = Support::insert_bytes(kDrive, 8 * kPairSize, Support::noise(300, 2));
  expect_whole_drive(OpenedFile(join({Support::noise(500, 3), file, Support::noise(700, 4)})));
}

TEST(RangeFileDamage, bytes_of_the_other_families_cost_no_packet) {
  const Bytes bare = join({unit_data(0).bytes(), Support::MComPacket().bytes()});
  expect_whole_drive(OpenedFile(Support::insert_bytes(kDrive, 4 * kPairSize, bare)));
}

TEST(RangeFileDamage, a_wrapper_with_a_bad_sum_is_lost_alone) {
  const OpenedFile opened(Support::flip_bit(kDrive, kDrive.size() - 30));  // in the last one
  EXPECT_EQ(opened.leaf(0).end, kLast);
  EXPECT_EQ(opened.leaf(1).end, kLast - 10'000'000);
}

TEST(RangeFileDamage, range_data_with_a_bad_sum_are_lost_alone) {
  const OpenedFile opened(Support::flip_bit(kDrive, kDrive.size() - kPairSize + 10));
  EXPECT_EQ(opened.leaf(0).end, kLast - 10'000'000);
  EXPECT_EQ(opened.leaf(1).end, kLast);
}

TEST(RangeFileDamage, a_file_cut_anywhere_opens_and_walks) {
  for (std::size_t size = 0; size <= kDrive.size(); size += 1 + size % 397) {
    OpenedFile opened(Bytes(kDrive.begin(), kDrive.begin() + static_cast<std::ptrdiff_t>(size)));
    ASSERT_GE(opened.ids.size(), 1U) << size;
    opened.walk_all();
    if (opened.leaf(0).storable) {
      EXPECT_LE(opened.leaf(0).end, kLast);
    }
  }
}

TEST(RangeFileLies, a_claim_beyond_all_space_costs_nothing_behind_it_once_the_space_is_full) {
  const Bytes ahead(kDrive.begin(), kDrive.begin() + 4 * kPairSize);
  const Bytes behind(kDrive.begin() + 4 * kPairSize, kDrive.end());  // 3152 bytes
  expect_whole_drive(OpenedFile(join({ahead, kClaim, behind})));
  expect_whole_drive(OpenedFile(join({ahead, kClaim, kClaim, kClaim, behind})));
}

TEST(RangeFileLies, a_claim_that_the_file_does_not_fill_takes_what_is_behind_it) {
  const Bytes ahead(kDrive.begin(), kDrive.end() - 2 * kPairSize);
  const Bytes behind(kDrive.end() - 2 * kPairSize, kDrive.end());
  const OpenedFile opened(join({ahead, kClaim, behind}));
  EXPECT_EQ(opened.leaf(0).end, kLast - 20'000'000);
  EXPECT_EQ(opened.leaf(1).end, kLast - 20'000'000);
}

TEST(RangeFileLies, a_claim_with_room_but_a_bad_sum_costs_nothing) {
  const Bytes lie = {0x57, 2, 0x00, 0x04};  // 1028 bytes
  expect_whole_drive(OpenedFile(Support::insert_bytes(kDrive, 4 * kPairSize, lie)));
}

TEST(RangeFileLies, packets_of_every_size_and_kind_with_good_sums_are_taken_for_what_they_are) {
  std::mt19937 random(20);
  for (unsigned char kind = 0; kind < 9; ++kind) {
    Bytes file = kDrive;
    for (std::size_t size = 0; size < 260; ++size) {
      Bytes body = Support::noise(size, random());
      if (kind == 2 && size > 3) body[2] = static_cast<unsigned char>(1 + size % 4);
      if (kind == 2 && size > 3) body[3] = 4;
      file = join({file, range_file_packet(kind, body)});
    }
    OpenedFile opened(join({file, kDrive}));
    ASSERT_GE(opened.ids.size(), 2U) << int{kind};
    opened.walk_all();
  }
}

TEST(RangeFileLies, wrappers_of_every_size_are_taken_for_what_they_are) {
  Bytes file = kDrive;
  for (std::size_t size = 0; size < 200; ++size) {
    file = join({file, range_file_packet(3, Bytes(size, 0xE7)),
                 range_file_packet(3, join({Bytes({10, 0, 0, 1, 0}), Bytes(size, 0xE7)}))});
  }
  OpenedFile opened(join({file, kDrive}));
  // 77 bytes of body make a wrapper of 82 bytes, the one kind that tells a source: E7E7E7E7, 231
  EXPECT_EQ(opened.ids.size(), 3U);
  EXPECT_EQ(opened.leaf(2).serial_id, 0xE7E7E7E7U);
  EXPECT_FALSE(opened.leaf(2).storable);
  EXPECT_EQ(opened.leaf(0).end, kLast);
  opened.walk_all();
}

TEST(RangeFileLies, the_longest_packet_that_there_is_room_for_is_taken) {
  // 2560 bytes: 4 of header, 5 of source, 35 packets of 72 and 30 bytes of rest, the sum
  std::vector<Bytes> packets;
  Bytes body = {10, 0, 0, 1, 0};
  for (unsigned int n = 0; n < 35; ++n) body = join({body, unit_data(n).bytes()});
  body.resize(2560 - 5);
  const Bytes long_one = range_file_packet(3, body);
  ASSERT_EQ(long_one.size(), 2560U);
  const OpenedFile opened(join({kDrive, long_one}));
  EXPECT_EQ(opened.leaf(1).end, range_ms(340));
}

TEST(RangeFileLies, many_sources_make_eight_streams_and_no_more) {
  Bytes file = kDrive;
  for (std::uint32_t address = 1; address < 3000; ++address) {
    file = join({file, range_packet(address, 0, {})});  // too short to tell a source
  }
  for (std::uint32_t address = 1; address < 300; ++address) {
    file = join({file, range_packet(address, 0, {unit_data(5).bytes()})});
  }
  OpenedFile opened(file);
  EXPECT_EQ(opened.ids.size(), 9U);
  opened.walk_all();
}

TEST(RangeFileLies, noise_opens_and_walks) {
  for (unsigned int seed = 1; seed < 6; ++seed) {
    OpenedFile opened(Support::noise(20000, seed));
    ASSERT_EQ(opened.ids.size(), 1U);
    EXPECT_FALSE(opened.leaf(0).storable);
    opened.walk_all();
  }
}

TEST(RangeFileLength, a_long_drive_counts_the_minutes_on) {
  // 100 s: the milliseconds turn once, and only the third packet told the minute.
  Bytes file;
  for (unsigned int n = 0; n < 10000; ++n) {
    const Bytes packet = range_data(n).time_ms(static_cast<std::uint16_t>(10 * n % 60000)).bytes();
    file.insert(file.end(), packet.begin(), packet.end());
  }
  const OpenedFile opened(file);
  EXPECT_EQ(opened.leaf(0).start, range_ms(0));
  EXPECT_EQ(opened.leaf(0).end, range_ms(99990));
}

}  // namespace
}  // namespace Trel::Sto::Test
