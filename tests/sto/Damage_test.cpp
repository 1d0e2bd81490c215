#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <set>

#include "Stream_recordings.h"
#include "sto/Sto_Store.h"
#include "support/Support_Damage.h"

namespace Trel::Sto::Test {
namespace {

using testing::IsEmpty;
using Counts = std::vector<unsigned int>;

constexpr unsigned int kPayloadPages = 60;
constexpr unsigned int kPerPage = 5;
constexpr unsigned int kPackets = kPayloadPages * kPerPage;
constexpr std::size_t kHeaderPages = 2;  // the initial one and the database

constexpr long long time_of(unsigned int packet) {
  return 1000 + 10LL * packet;
}

// Packet n has the time time_of(n) and the value n; payload page p holds five from 5 p on.
Bytes long_drive(unsigned int serial = kSerial) {
  Recording recording;
  auto& stream = recording.stream(serial).ucom(database()).headers().packets_per_page(kPerPage);
  for (unsigned int n = 0; n < kPackets; ++n) stream.packet(sample(time_of(n), n));
  return recording.bytes();
}

// The place in the file of payload page p.
constexpr std::size_t place(std::size_t p) {
  return kHeaderPages + p;
}

// The values 0 to 299 without those of the payload pages from `first` up to `last`.
Counts all_without(unsigned int first, unsigned int last) {
  Counts counts;
  for (unsigned int n = 0; n < kPackets; ++n) {
    if (n / kPerPage < first || n / kPerPage >= last) counts.push_back(n);
  }
  return counts;
}

Counts all() {
  return all_without(0, 0);
}

// One bit turned in the middle of a page.
Bytes flip_page(const Bytes& bytes, std::size_t page) {
  const auto extent = Support::find_pages(bytes).at(page);
  return Support::flip_bit(bytes, extent.offset + extent.size / 2, 3);
}

// Every packet of a stream, read by the stream's own reader from the start to the end.
std::vector<Bytes> drawn(const Opened& opened, unsigned int serial = kSerial) {
  LogicalXCom& reader = *opened.stream(serial).get_logical_xcom();
  reader.rewind();
  reader.enable();
  std::vector<Bytes> packets;
  ogg_packet packet;
  for (;;) {
    const int result = reader.decoder().packet_out(packet);
    if (result > 0) packets.emplace_back(packet.packet, packet.packet + packet.bytes);
    if (result == 0 && reader.do_gobble(kScanRead) == 0) break;
  }
  reader.disable();
  return packets;
}

// The values of those packets.
Counts returned(const Opened& opened, unsigned int serial = kSerial) {
  Counts counts;
  for (const Bytes& packet : drawn(opened, serial)) {
    counts.push_back(cast_4_byte_LE_to_uint32(packet.data() + 10));
  }
  return counts;
}

// What the decoder has counted: pages lost and rejected, and holes in place of packets.
struct Losses {
  unsigned long long lost;
  unsigned long long rejected;
  unsigned long long holes;

  friend bool operator==(const Losses&, const Losses&) = default;
  friend void PrintTo(const Losses& losses, std::ostream* out) {
    *out << losses.lost << " lost, " << losses.rejected << " rejected, " << losses.holes
         << " holes";
  }
};

Losses losses(const Opened& opened, unsigned int serial = kSerial) {
  const Com::XComStreamDec& decoder = opened.decoder(serial);
  return {decoder.get_pages().lost, decoder.get_pages().rejected, decoder.get_holes().payload};
}

constexpr Losses kNone{0, 0, 0};

TEST(Damage, without_any_everything_comes_back_and_nothing_is_counted) {
  const Opened opened(long_drive());
  EXPECT_EQ(losses(opened), kNone);
  EXPECT_EQ(opened.decoder().get_packets().payload, kPackets);
  EXPECT_EQ(returned(opened), all());
  EXPECT_EQ(losses(opened), kNone);
  EXPECT_EQ(opened.start(), time_of(0));
  EXPECT_EQ(opened.end(), time_of(kPackets - 1));
}

TEST(DamageCut, at_any_byte_costs_the_pages_that_are_not_whole_and_nothing_is_counted) {
  const Bytes whole = long_drive();
  const std::size_t headers = Support::find_pages(whole).at(place(0)).offset;
  for (std::size_t size = headers; size <= whole.size(); size += 61) {
    const Bytes cut = Support::cut_end(whole, whole.size() - size);
    unsigned int pages = 0;
    for (const auto& page : Support::find_pages(whole)) pages += page.end() <= size ? 1 : 0;
    const auto payload = pages - static_cast<unsigned int>(kHeaderPages);
    const Opened opened(cut);
    ASSERT_EQ(opened.storable(), payload > 0) << "cut at " << size;
    ASSERT_EQ(losses(opened), kNone) << "cut at " << size;
    ASSERT_EQ(returned(opened), all_without(payload, kPayloadPages)) << "cut at " << size;
  }
}

TEST(DamageCut, within_the_headers_leaves_a_stream_that_never_got_ready) {
  const Bytes whole = long_drive();
  const auto database_page = Support::find_pages(whole).at(1);
  const Opened opened(Support::cut_end(whole, whole.size() - database_page.end() + 1));
  EXPECT_FALSE(opened.stream().is_captured());
  EXPECT_FALSE(opened.storable());
  EXPECT_THAT(returned(opened), IsEmpty());
}

TEST(DamageCut, within_the_initial_page_leaves_no_stream) {
  const Bytes whole = long_drive();
  const auto initial = Support::find_pages(whole).at(0);
  EXPECT_THAT(Opened(Support::cut_end(whole, whole.size() - initial.end() + 1)).serials(),
              IsEmpty());
}

TEST(DamageFlip, in_any_payload_page_costs_its_packets_and_counts_one_page_and_one_hole) {
  const Bytes whole = long_drive();
  for (unsigned int p = 0; p + 1 < kPayloadPages; ++p) {
    const Opened opened(flip_page(whole, place(p)));
    ASSERT_TRUE(opened.storable()) << "page " << p;
    ASSERT_EQ(losses(opened), (Losses{1, 0, 1})) << "page " << p;
    ASSERT_EQ(returned(opened), all_without(p, p + 1)) << "page " << p;
  }
}

TEST(DamageFlip, in_the_last_page_goes_unnoticed_but_for_the_end) {
  const Opened opened(flip_page(long_drive(), place(kPayloadPages - 1)));
  EXPECT_EQ(losses(opened), kNone);
  EXPECT_EQ(opened.end(), time_of(kPackets - kPerPage - 1));
  EXPECT_EQ(returned(opened), all_without(kPayloadPages - 1, kPayloadPages));
}

TEST(DamageFlip, in_the_first_payload_page_moves_the_start) {
  const Opened opened(flip_page(long_drive(), place(0)));
  EXPECT_EQ(opened.start(), time_of(kPerPage));
  EXPECT_EQ(opened.end(), time_of(kPackets - 1));
}

TEST(DamageFlip, in_the_initial_page_leaves_no_stream) {
  EXPECT_THAT(Opened(flip_page(long_drive(), 0)).serials(), IsEmpty());
}

TEST(DamageFlip, in_the_database_page_takes_payload_in_its_place_and_leaves_the_stream_idle) {
  const Opened opened(flip_page(long_drive(), 1));
  EXPECT_TRUE(opened.stream().is_captured());
  EXPECT_FALSE(opened.stream().is_configured());
  EXPECT_FALSE(opened.storable());
  // The first pass takes payload page 0 for the header. A later one begins that page with a hole,
  // which leaves its packets queued, and so takes them together with those of page 1.
  EXPECT_EQ(opened.decoder().get_packets().auxiliary_used, kPerPage);
  EXPECT_EQ(returned(opened), all_without(0, 2));
  EXPECT_EQ(opened.decoder().get_holes().auxiliary_skip, 1U);
  EXPECT_EQ(opened.decoder().get_packets().auxiliary_skip, 2 * kPerPage);
}

TEST(DamageDrop, of_any_payload_page_costs_its_packets_and_counts_one_page_and_one_hole) {
  const Bytes whole = long_drive();
  for (unsigned int p = 0; p + 1 < kPayloadPages; ++p) {
    const Opened opened(Support::drop_page(whole, place(p)));
    ASSERT_EQ(losses(opened), (Losses{1, 0, 1})) << "page " << p;
    ASSERT_EQ(returned(opened), all_without(p, p + 1)) << "page " << p;
  }
}

TEST(DamageDrop, of_neighbours_counts_each_page_and_one_hole) {
  Bytes bytes = long_drive();
  for (int count = 0; count < 4; ++count) bytes = Support::drop_page(bytes, place(20));
  const Opened opened(bytes);
  EXPECT_EQ(losses(opened), (Losses{4, 0, 1}));
  EXPECT_EQ(returned(opened), all_without(20, 24));
}

TEST(DamageDrop, of_every_payload_page_leaves_a_configured_stream_without_a_span) {
  const Bytes whole = long_drive();
  const Opened opened(Support::reorder_pages(whole, {0, 1}));
  EXPECT_TRUE(opened.stream().is_configured());
  EXPECT_FALSE(opened.storable());
}

TEST(DamageDrop, of_the_initial_page_leaves_no_stream) {
  EXPECT_THAT(Opened(Support::drop_page(long_drive(), 0)).serials(), IsEmpty());
}

TEST(DamageRepeat, of_any_page_costs_nothing_and_is_counted_as_rejected) {
  const Bytes whole = long_drive();
  for (std::size_t page = 0; page < place(kPayloadPages); ++page) {
    const Opened opened(Support::repeat_page(whole, page));
    ASSERT_TRUE(opened.storable()) << "page " << page;
    ASSERT_EQ(losses(opened), (Losses{0, 1, 0})) << "page " << page;
    ASSERT_EQ(returned(opened), all()) << "page " << page;
  }
}

TEST(DamageSwap, of_neighbours_costs_the_page_that_comes_late) {
  const Bytes whole = long_drive();
  for (unsigned int p = 0; p + 1 < kPayloadPages; ++p) {
    const Opened opened(Support::swap_pages(whole, place(p), place(p + 1)));
    ASSERT_EQ(losses(opened), (Losses{1, 1, 1})) << "page " << p;
    ASSERT_EQ(returned(opened), all_without(p, p + 1)) << "page " << p;
  }
}

TEST(DamageSwap, of_distant_pages_costs_all_between_them) {
  // Page 30 comes in the place of page 10; pages 11 to 29 and then page 10 are behind the number.
  const Opened opened(Support::swap_pages(long_drive(), place(10), place(30)));
  EXPECT_EQ(losses(opened), (Losses{20, 20, 1}));
  EXPECT_EQ(returned(opened), all_without(10, 30));
}

TEST(DamageSwap, into_reverse_order_leaves_the_page_that_comes_first) {
  std::vector<std::size_t> order = {0, 1};
  for (std::size_t p = kPayloadPages; p > 0; --p) order.push_back(place(p - 1));
  const Opened opened(Support::reorder_pages(long_drive(), order));
  EXPECT_EQ(losses(opened), (Losses{kPayloadPages - 1, kPayloadPages - 1, 1}));
  EXPECT_EQ(returned(opened), all_without(0, kPayloadPages - 1));
  EXPECT_EQ(opened.start(), time_of(kPackets - kPerPage));
}

TEST(DamageJoin, to_a_copy_of_itself_rejects_the_copy) {
  const Bytes whole = long_drive();
  const Opened opened(join({whole, whole}));
  EXPECT_EQ(losses(opened), (Losses{0, place(kPayloadPages), 0}));
  EXPECT_EQ(returned(opened), all());
  EXPECT_EQ(opened.end(), time_of(kPackets - 1));
}

TEST(DamageJoin, to_a_recording_of_another_stream_makes_two_whole_streams) {
  const Opened opened(join({long_drive(1), long_drive(2)}));
  for (const unsigned int serial : {1U, 2U}) {
    EXPECT_TRUE(opened.storable(serial));
    EXPECT_EQ(losses(opened, serial), kNone);
    EXPECT_EQ(returned(opened, serial), all());
  }
}

TEST(DamageJoin, of_a_cut_recording_to_a_whole_one_costs_the_cut_page) {
  const Bytes whole = long_drive();
  const Bytes cut = Support::cut_end(long_drive(1), 10);
  const Opened opened(join({cut, whole}));
  EXPECT_EQ(returned(opened, 1), all_without(kPayloadPages - 1, kPayloadPages));
  EXPECT_EQ(returned(opened), all());
  EXPECT_EQ(losses(opened), kNone);
}

TEST(DamageGarbage, between_any_pages_costs_nothing) {
  const Bytes whole = long_drive();
  const auto pages = Support::find_pages(whole);
  for (std::size_t page = 0; page < pages.size(); page += 7) {
    const Opened opened(Support::insert_bytes(whole, pages[page].offset, Support::noise(300, 5)));
    ASSERT_TRUE(opened.storable()) << "ahead of page " << page;
    ASSERT_EQ(losses(opened), kNone) << "ahead of page " << page;
    ASSERT_EQ(returned(opened), all()) << "ahead of page " << page;
  }
}

TEST(DamageGarbage, within_a_page_costs_that_page) {
  const Bytes whole = long_drive();
  const auto page = Support::find_pages(whole).at(place(30));
  const Opened opened(
      Support::insert_bytes(whole, page.offset + page.size / 2, Support::noise(5000, 6)));
  EXPECT_EQ(losses(opened), (Losses{1, 0, 1}));
  EXPECT_EQ(returned(opened), all_without(30, 31));
}

// The start of a page of 255 times 255 bytes.
Bytes false_page() {
  Bytes bytes = bytes_of("OggS");
  bytes.resize(26);
  bytes.resize(27 + 255, 255);
  return bytes;
}

TEST(DamageGarbage, that_looks_like_a_page_costs_nothing_when_enough_follows) {
  const Bytes whole = long_drive();
  const auto page = Support::find_pages(whole).at(place(30));
  const Bytes bytes = Support::insert_bytes(whole, page.offset, false_page());
  const Opened opened(join({bytes, Bytes(255 * 255)}));
  EXPECT_EQ(losses(opened), kNone);
  EXPECT_EQ(returned(opened), all());
}

TEST(DamageGarbage, that_looks_like_a_page_hides_what_follows_when_the_file_is_too_short) {
  const Bytes whole = long_drive();
  const auto page = Support::find_pages(whole).at(place(30));
  const Opened opened(Support::insert_bytes(whole, page.offset, false_page()));
  EXPECT_EQ(losses(opened), kNone);
  EXPECT_EQ(returned(opened), all_without(30, kPayloadPages));
  EXPECT_EQ(opened.end(), time_of(30 * kPerPage - 1));
}

// 20 packets of 612 bytes, each over three pages of 255, 255 and 102 bytes.
constexpr unsigned int kFragmented = 20;

Bytes large(unsigned int n) {
  Bytes packet = sample(time_of(n), n);
  packet.resize(612, static_cast<unsigned char>(n));
  return packet;
}

Bytes fragments(unsigned int serial = kSerial) {
  Recording recording;
  auto& stream = recording.stream(serial).ucom(database()).headers().segments_per_page(1);
  for (unsigned int n = 0; n < kFragmented; ++n) stream.packet(large(n)).page();
  return recording.bytes();
}

// The place in the file of the first, second or third page of packet n.
constexpr std::size_t fragment(unsigned int n, unsigned int part) {
  return kHeaderPages + 3 * n + part;
}

// The large packets without those from `first` up to `last`.
std::vector<Bytes> large_without(unsigned int first, unsigned int last) {
  std::vector<Bytes> packets;
  for (unsigned int n = 0; n < kFragmented; ++n) {
    if (n < first || n >= last) packets.push_back(large(n));
  }
  return packets;
}

TEST(DamageFragment, the_recording_has_each_packet_on_three_pages) {
  EXPECT_EQ(Support::find_pages(fragments()).size(), fragment(kFragmented, 0));
  EXPECT_EQ(drawn(Opened(fragments())), large_without(0, 0));
}

TEST(DamageFragment, one_page_damaged_costs_its_packet_and_no_other) {
  const Bytes whole = fragments();
  for (unsigned int n = 1; n + 1 < kFragmented; ++n) {
    for (unsigned int part = 0; part < 3; ++part) {
      const Opened dropped(Support::drop_page(whole, fragment(n, part)));
      ASSERT_EQ(losses(dropped), (Losses{1, 0, 1})) << "packet " << n << " part " << part;
      ASSERT_EQ(drawn(dropped), large_without(n, n + 1)) << "packet " << n << " part " << part;
      const Opened flipped(flip_page(whole, fragment(n, part)));
      ASSERT_EQ(losses(flipped), (Losses{1, 0, 1})) << "packet " << n << " part " << part;
      ASSERT_EQ(drawn(flipped), large_without(n, n + 1)) << "packet " << n << " part " << part;
    }
  }
}

TEST(DamageFragment, the_head_of_one_packet_and_the_tail_of_another_never_make_one) {
  Bytes bytes = fragments();
  for (const auto page : {fragment(6, 1), fragment(6, 0), fragment(5, 2), fragment(5, 1)}) {
    bytes = Support::drop_page(bytes, page);
  }
  const Opened opened(bytes);
  EXPECT_EQ(losses(opened), (Losses{4, 0, 1}));
  EXPECT_EQ(drawn(opened), large_without(5, 7));
}

TEST(DamageFragment, a_head_joined_to_a_tail_of_another_recording_never_makes_one) {
  const Bytes whole = fragments();
  const auto pages = Support::find_pages(whole);
  const Bytes cut = Support::cut_end(whole, whole.size() - pages.at(fragment(5, 1)).offset);
  // The stream goes on with the last page of packet 7, continued from pages that are not there.
  const Bytes rest(whole.begin() + static_cast<long>(pages.at(fragment(7, 2)).offset), whole.end());
  const Opened opened(join({cut, rest}));
  EXPECT_EQ(losses(opened), (Losses{7, 0, 1}));  // of packets 5, 6 and 7: two, three and two pages
  EXPECT_EQ(drawn(opened), large_without(5, 8));
}

TEST(DamageFragment, pages_of_two_streams_never_mix) {
  const Bytes first = fragments(1);
  const Bytes second = fragments(2);
  const Bytes both = join({first, second});
  const std::size_t count = fragment(kFragmented, 0);
  std::vector<std::size_t> order;
  for (std::size_t page = 0; page < count; ++page) {
    if (page != fragment(9, 1)) order.push_back(page);
    order.push_back(count + page);
  }
  const Opened opened(Support::reorder_pages(both, order));
  EXPECT_EQ(drawn(opened, 1), large_without(9, 10));
  EXPECT_EQ(losses(opened, 1), (Losses{1, 0, 1}));
  EXPECT_EQ(drawn(opened, 2), large_without(0, 0));
  EXPECT_EQ(losses(opened, 2), kNone);
}

// The packets that libogg finds in an undamaged recording, headers included.
std::set<Bytes> written(const Bytes& bytes) {
  std::set<Bytes> packets;
  ogg_stream_state state;
  ogg_stream_init(&state, static_cast<int>(kSerial));
  Support::PageReader reader(bytes);
  ogg_page page;
  ogg_packet packet;
  while (reader.next(page) > 0) {
    ogg_stream_pagein(&state, &page);
    while (ogg_stream_packetout(&state, &packet) > 0) {
      packets.emplace(packet.packet, packet.packet + packet.bytes);
    }
  }
  ogg_stream_clear(&state);
  return packets;
}

// One damage of any sort.
Bytes damaged(const Bytes& bytes, std::mt19937& random) {
  const auto pages = Support::find_pages(bytes);
  if (pages.empty()) return bytes;
  const auto below = [&random](std::size_t end) { return random() % end; };
  switch (below(7)) {
    case 0:
      return Support::drop_page(bytes, below(pages.size()));
    case 1:
      return Support::repeat_page(bytes, below(pages.size()));
    case 2:
      return Support::swap_pages(bytes, below(pages.size()), below(pages.size()));
    case 3:
      return Support::flip_bit(bytes, below(bytes.size()), static_cast<unsigned int>(below(8)));
    case 4:
      return Support::insert_bytes(bytes, below(bytes.size()), Support::noise(below(200)));
    case 5:
      return Support::remove_bytes(bytes, pages.back().offset / 2, below(200));
    default:
      return Support::cut_end(bytes, below(bytes.size() / 8));
  }
}

TEST(DamageLadder, every_packet_that_comes_out_is_one_that_was_written_and_the_counts_add_up) {
  constexpr unsigned int kSeed = 20240607;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937 random(kSeed);
  const Bytes whole = fragments();
  const std::set<Bytes> known = written(whole);
  ASSERT_EQ(known.size(), kHeaderPages + kFragmented);
  std::size_t survivors = 0;
  for (int round = 0; round < 400; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    Bytes bytes = whole;
    for (int count = 0; count <= round % 6; ++count) bytes = damaged(bytes, random);
    const Opened opened(bytes);
    if (opened.serials().empty()) continue;
    const std::vector<Bytes> packets = drawn(opened);
    for (const Bytes& packet : packets) ASSERT_EQ(known.count(packet), 1U);
    survivors += packets.size();
    const auto& pages = opened.decoder().get_pages();
    ASSERT_EQ(pages.total, pages.accepted + pages.rejected);
    ASSERT_EQ(pages.accepted, pages.bos + pages.mos + pages.eos);
    ASSERT_EQ(std::accumulate(pages.status_counts.begin(), pages.status_counts.end(), 0ULL),
              pages.total);
    ASSERT_EQ(opened.decoder().get_packets().payload, packets.size());
  }
  EXPECT_GT(survivors, 400U);  // damage does not bring everything down
}

// The value that the store gives at the time of each packet of the undamaged drive.
Counts sampled(const Bytes& bytes) {
  const ScratchFile file(bytes);
  DataStore store(options());
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  Counts values;
  if (store.add_resource(file.path(), ids, count) != Enum::RETURN_TYPE_NORMAL) return values;
  Aspect aspect;
  store.direct_add_element(ids.at(0), "Count");
  store.direct_use_element(aspect, ids.at(0), "Count");
  store.direct_decode_begin(time_of(0));
  std::vector<Result> results;
  for (unsigned int n = 0; n < kPackets; ++n) {
    store.direct_decode_step(aspect, time_of(n), results);
    values.push_back(static_cast<unsigned int>(results.at(0)));
  }
  store.direct_decode_end();
  return values;
}

TEST(DamageSampled, without_damage_each_instant_has_its_value) {
  EXPECT_EQ(sampled(long_drive()), all());
}

TEST(DamageSampled, one_damaged_page_changes_some_values_and_leaves_97_of_100) {
  const Bytes whole = long_drive();
  for (unsigned int p = 0; p < kPayloadPages; ++p) {
    const Counts values = sampled(flip_page(whole, place(p)));
    ASSERT_EQ(values.size(), kPackets);
    unsigned int unchanged = 0;
    for (unsigned int n = 0; n < kPackets; ++n) unchanged += values[n] == n ? 1 : 0;
    ASSERT_LT(unchanged, kPackets) << "page " << p;             // a page is five packets of 300:
    ASSERT_GE(unchanged * 100, kPackets * 97) << "page " << p;  // 98.3 of 100 should stay
  }
}

TEST(DamageSampled, a_lost_instant_has_the_value_of_the_next_packet) {
  const Counts values = sampled(flip_page(long_drive(), place(10)));
  for (unsigned int n = 50; n < 55; ++n) EXPECT_EQ(values[n], 55U);
}

}  // namespace
}  // namespace Trel::Sto::Test
