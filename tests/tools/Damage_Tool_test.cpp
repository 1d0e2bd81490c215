// The damage tool itself: that its cases are what they are called, and that it would see a case
// that ends as it may not.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <set>
#include <stdexcept>

#include "Packets.h"
#include "damage/Damage_Batch.h"
#include "damage/Damage_Case.h"
#include "damage/Damage_Outside.h"
#include "support/Support_Damage.h"
#include "support/Support_Dbu.h"
#include "support/Support_Packet.h"
#include "support/Support_Page.h"
#include "support/Support_Recording.h"
#include "support/Support_Walk.h"

namespace Trel::Damage::Test {
namespace {

using Support::Bytes;
using Support::Dbu;
using Support::Recording;
using Support::UComPacket;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint64_t kSeed = 7;

const std::vector<Subject>& subjects() {
  static const auto made = make_subjects();
  return made;
}

std::uint64_t count(const Tally& tally, Ending ending) {
  return tally.endings[static_cast<std::size_t>(ending)];
}

std::vector<std::size_t> first_numbers(std::size_t count) {
  std::vector<std::size_t> numbers(count);
  std::iota(numbers.begin(), numbers.end(), std::size_t{0});
  return numbers;
}

constexpr Limits kNoLimits{100, 0};

// Ten cases of which the fifth does `what` and the others convert.
template <class What>
Tally run_with(What what, const Limits& limits = kNoLimits) {
  return run_cases(first_numbers(10), 2, limits,
                   [&](const std::filesystem::path&, std::size_t number) {
                     if (number == 4) return what();
                     return Ending::converted;
                   });
}

TEST(DamageSubjects, hold_at_most_three_hundred_packets_with_those_that_others_wrap) {
  for (const Subject& subject : subjects()) {
    std::size_t packets = subject.has_pages() ? 0 : subject.parts.size();
    std::set<std::uint32_t> serials;
    for (const auto& page : Support::find_pages(subject.bytes)) serials.insert(page.serial);
    for (const std::uint32_t serial : serials) {
      packets += Support::Test::packets_of(subject.bytes, serial).size();
    }
    if (subject.extension == ".rcom") {
      for (const Part& part : subject.parts) packets += subject.bytes[part.offset + 1] == 3 ? 1 : 0;
    }
    EXPECT_GT(packets, 150U) << subject.name;
    EXPECT_LE(packets, 300U) << subject.name;
  }
}

TEST(DamageSubjects, are_whole_files_that_convert_or_open) {
  for (const Subject& subject : subjects()) {
    EXPECT_GT(subject.parts.size(), 20U) << subject.name;
    EXPECT_EQ(subject.parts.back().end(), subject.bytes.size()) << subject.name;
    const Tally tally =
        run_cases({0}, 1, kNoLimits, [&](const std::filesystem::path& own, std::size_t number) {
          return try_file(own, subject.bytes, subject.extension, 1, number);
        });
    EXPECT_EQ(count(tally, subject.has_pages() ? Ending::converted : Ending::no_ucom), 1U)
        << subject.name;
  }
}

TEST(DamageSubjects, the_recording_has_a_stream_of_every_kind_that_can_be_walked) {
  const std::string path = testing::TempDir() + "damage-five-kinds.xcom";
  Support::write_file(path, subjects()[0].bytes);
  Sto::DataStore store(Support::usual_options());
  std::vector<unsigned int> ids;
  unsigned int streams = 0;
  store.add_resource(path, ids, streams);
  std::filesystem::remove(path);
  std::set<Enum::CODEC_TYPE> kinds;
  for (const unsigned int id : ids) {
    Sto::StreamLeaf leaf;
    store.query_stream(leaf, id);
    if (leaf.storable) kinds.insert(leaf.codec);
  }
  EXPECT_THAT(kinds, testing::UnorderedElementsAre(Enum::CODEC_TYPE_NCOM, Enum::CODEC_TYPE_MCOM,
                                                   Enum::CODEC_TYPE_RCOM, Enum::CODEC_TYPE_UCOM,
                                                   Enum::CODEC_TYPE_CAN));
}

TEST(DamageSubjects, mending_changes_nothing_that_is_whole) {
  for (const Subject& subject : subjects()) {
    Bytes bytes = subject.bytes;
    mend(bytes, subject);
    EXPECT_EQ(bytes, subject.bytes) << subject.name;
    bytes.back() ^= 1;
    mend(bytes, subject);
    EXPECT_EQ(bytes, subject.bytes) << subject.name << ", which ends in a sum";
  }
}

// The packet of the stream's kind that stands behind the eight bytes ahead of it.
bool has_good_sum(const std::string& packet, std::size_t at, std::size_t size) {
  unsigned char sum = 0;
  for (std::size_t n = at + 1; n + 1 < at + size; ++n) {
    sum = static_cast<unsigned char>(sum + static_cast<unsigned char>(packet[n]));
  }
  return sum == static_cast<unsigned char>(packet[at + size - 1]);
}

TEST(DamageSubjects, mending_makes_the_sums_of_packets_on_pages_good) {
  constexpr std::uint32_t kNComSerial = 3001;
  constexpr std::size_t kHeaders = 3;
  Bytes bytes = subjects()[0].bytes;
  for (const auto& page : Support::find_pages(bytes)) {
    if (page.serial == kNComSerial && page.offset >= subjects()[0].payload) {
      bytes[page.end() - 10] ^= 1;
    }
  }
  mend(bytes, subjects()[0]);
  const auto before = Support::Test::packets_of(subjects()[0].bytes, kNComSerial);
  const auto after = Support::Test::packets_of(bytes, kNComSerial);
  ASSERT_EQ(after.size(), before.size()) << "a page is missing";
  EXPECT_NE(after, before);
  for (std::size_t n = kHeaders; n < after.size(); ++n) {
    EXPECT_TRUE(has_good_sum(after[n], 8, 72)) << n;
  }
}

TEST(DamageSubjects, mending_makes_the_sums_of_wrapped_packets_good) {
  const Subject& subject = subjects()[3];
  const auto wrapper =
      std::find_if(subject.parts.begin(), subject.parts.end(),
                   [&subject](const Part& part) { return subject.bytes[part.offset + 1] == 3; });
  ASSERT_NE(wrapper, subject.parts.end());
  Bytes bytes = subject.bytes;
  bytes[wrapper->offset + 20] ^= 1;
  mend(bytes, subject);
  const std::string packet(bytes.begin() + static_cast<std::ptrdiff_t>(wrapper->offset),
                           bytes.begin() + static_cast<std::ptrdiff_t>(wrapper->end()));
  EXPECT_TRUE(has_good_sum(packet, 0, packet.size()));
  EXPECT_TRUE(has_good_sum(packet, 9, 72));
}

TEST(DamageCases, are_the_same_for_the_same_seed_and_others_for_another) {
  for (const Kind kind : kKinds) {
    const std::size_t number = count_cases(kind, subjects()[0]) - 1;
    const Bytes once = make_case(subjects(), 0, kind, number, kSeed);
    EXPECT_EQ(make_case(subjects(), 0, kind, number, kSeed), once) << name_of(kind);
    EXPECT_NE(make_case(subjects(), 0, kind, number, kSeed + 1), once) << name_of(kind);
  }
}

TEST(DamageCases, cut_at_each_border_and_beside_it_first) {
  const Subject& subject = subjects()[0];
  const std::size_t size = subject.bytes.size();
  std::vector<std::size_t> sizes;
  for (std::size_t number = 0; number < 9; ++number) {
    sizes.push_back(make_case(subjects(), 0, Kind::cut, number, kSeed).size());
  }
  const std::size_t first = subject.parts[0].end();
  const std::size_t second = subject.parts[1].end();
  EXPECT_THAT(sizes, testing::ElementsAre(0, 0, 1, first - 1, first, first + 1, second - 1, second,
                                          second + 1));
  const std::size_t last = 3 * subject.parts.size() + 2;
  EXPECT_EQ(make_case(subjects(), 0, Kind::cut, last, kSeed).size(), size);
  EXPECT_EQ(make_case(subjects(), 0, Kind::cut, last - 2, kSeed).size(), size - 1);
  EXPECT_LT(make_case(subjects(), 0, Kind::cut, last + 1, kSeed).size(), size);
  EXPECT_EQ(count_cases(Kind::cut, subject), last + 1 + 2000);
}

TEST(DamageCases, flip_up_to_a_hundred_bits) {
  const Bytes& whole = subjects()[0].bytes;
  for (std::size_t number = 0; number < 50; ++number) {
    const Bytes bytes = make_case(subjects(), 0, Kind::flip, number, kSeed);
    ASSERT_EQ(bytes.size(), whole.size());
    std::size_t flipped = 0;
    for (std::size_t n = 0; n < bytes.size(); ++n) {
      flipped +=
          static_cast<std::size_t>(std::popcount(static_cast<unsigned char>(bytes[n] ^ whole[n])));
    }
    EXPECT_GE(flipped, 1U);
    EXPECT_LE(flipped, 100U);
  }
}

TEST(DamageCases, rearranged_and_joined_files_consist_of_whole_parts_or_pieces) {
  const Subject& subject = subjects()[1];
  for (std::size_t number = 0; number < 20; ++number) {
    const Bytes bytes = make_case(subjects(), 1, Kind::rearrange, number, kSeed);
    EXPECT_EQ(bytes.size() % subject.parts[0].size, 0U);
  }
  const Bytes joined = make_case(subjects(), 1, Kind::join, 1, kSeed);
  EXPECT_EQ(joined, Support::join({subject.bytes, subject.bytes}));
}

TEST(DamageBatch, counts_how_cases_end) {
  const Tally tally = run_with([] { return Ending::bad_json; });
  EXPECT_EQ(tally.cases, 10U);
  EXPECT_EQ(count(tally, Ending::converted), 9U);
  EXPECT_EQ(count(tally, Ending::bad_json), 1U);
  EXPECT_THAT(tally.findings, IsEmpty());
}

TEST(DamageBatch, a_case_that_crashes_is_found_and_the_others_go_on) {
  const Tally tally = run_with([]() -> Ending {
    std::fputs("last words", stderr);
    std::abort();
  });
  EXPECT_EQ(tally.cases, 10U);
  EXPECT_EQ(count(tally, Ending::converted), 9U);
  ASSERT_THAT(tally.findings, SizeIs(1));
  EXPECT_EQ(tally.findings[0].number, 4U);
  EXPECT_EQ(tally.findings[0].reason, "ended by signal 6");
  EXPECT_EQ(tally.findings[0].printed, "last words");
}

TEST(DamageBatch, a_case_that_throws_is_found) {
  const Tally tally = run_with([]() -> Ending { throw std::runtime_error("what nobody catches"); });
  EXPECT_EQ(tally.cases, 10U);
  ASSERT_THAT(tally.findings, SizeIs(1));
  EXPECT_EQ(tally.findings[0].reason, "ended by signal 6");
  EXPECT_THAT(tally.findings[0].printed, HasSubstr("what nobody catches"));
}

TEST(DamageBatch, a_case_that_ends_otherwise_than_it_may_is_found) {
  const Tally tally = run_with([] { return Ending::wrong; });
  EXPECT_EQ(tally.cases, 10U);
  ASSERT_THAT(tally.findings, SizeIs(1));
  EXPECT_EQ(tally.findings[0].number, 4U);
}

TEST(DamageBatch, a_case_that_takes_too_long_is_found) {
  const Tally tally = run_with(
      []() -> Ending {
        for (std::atomic<unsigned int> n = 0;;) n.fetch_add(1);
      },
      {1, 0});
  EXPECT_EQ(tally.cases, 10U);
  ASSERT_THAT(tally.findings, SizeIs(1));
  EXPECT_EQ(tally.findings[0].reason, "more than 1 s of CPU");
}

TEST(DamageBatch, a_case_that_hangs_without_a_use_of_time_is_found) {
  const Tally tally = run_with(
      []() -> Ending {
        for (;;) pause();
      },
      {100, 0, 1});
  EXPECT_EQ(tally.cases, 10U);
  ASSERT_THAT(tally.findings, SizeIs(1));
  EXPECT_EQ(tally.findings[0].number, 4U);
  EXPECT_EQ(tally.findings[0].reason, "hangs");
}

TEST(DamageBatch, a_case_that_takes_too_much_memory_is_found) {
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  constexpr std::size_t kMegabyte = 1 << 20;
  const Tally tally = run_with(
      [] {
        const std::vector<char> large(100 * kMegabyte, 'x');
        return large[kMegabyte] == 'x' ? Ending::converted : Ending::wrong;
      },
      {100, usage.ru_maxrss + 50 * 1024});
  EXPECT_EQ(tally.cases, 10U);
  ASSERT_THAT(tally.findings, SizeIs(1));
  EXPECT_EQ(tally.findings[0].number, 4U);
  EXPECT_THAT(tally.findings[0].reason, HasSubstr("more than"));
}

TEST(DamageBatch, the_stop_for_an_empty_initial_header_is_no_finding) {
  const Tally tally =
      run_cases({0, 1}, 1, kNoLimits, [](const std::filesystem::path& folder, std::size_t number) {
        Recording recording;
        recording.stream(1).codec("UCom").headers();
        if (number == 1) {
          // What the stream's later initial page holds is looked at again.
          recording.stream(1).raw_page({0}, {}, Support::kInitial);
        }
        return try_file(folder, recording.bytes(), ".xcom", 1, number);
      });
  EXPECT_THAT(tally.findings, IsEmpty());
  EXPECT_EQ(count(tally, Ending::converted), 1U);
  EXPECT_EQ(count(tally, Ending::empty_initial), 1U);
}

// One file tried in a process of its own.
Ending ending_of(const Bytes& bytes, const std::string& extension = ".xcom") {
  const Tally tally =
      run_cases({0}, 1, kNoLimits, [&](const std::filesystem::path& folder, std::size_t number) {
        return try_file(folder, bytes, extension, 1, number);
      });
  for (std::size_t i = 0; i < kEndings; ++i) {
    if (tally.endings[i] == 1) return static_cast<Ending>(i);
  }
  return Ending::wrong;
}

TEST(DamageTrial, tells_the_ways_in_which_a_file_ends) {
  EXPECT_EQ(ending_of({}), Ending::no_streams);
  EXPECT_EQ(ending_of({}, ".ncom"), Ending::no_ucom);

  Recording malformed;
  malformed.stream(1).codec("UCom").dbu("{\"S\":").headers();
  EXPECT_EQ(ending_of(malformed.bytes()), Ending::bad_json);

  Dbu orphan;
  orphan.message(1, {1}).signal(1).name("Nano").key("IP", "two");
  Recording parentless;
  parentless.stream(1).ucom(orphan).headers();
  EXPECT_EQ(ending_of(parentless.bytes()), Ending::bad_parent);
}

TEST(DamageTrial, a_stream_that_never_gets_its_headers_does_not_make_the_others_fill_the_memory) {
  const Limits limits = limits_of_this_build();
  if (limits.peak_kilobytes == 0) GTEST_SKIP() << "sanitizers keep what is freed";
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  const Tally tally = run_cases({0}, 1, {100, usage.ru_maxrss + limits.peak_kilobytes},
                                [](const std::filesystem::path& folder, std::size_t) {
                                  // 80 MB, written page by page.
                                  std::ofstream file(folder / "in.xcom", std::ios::binary);
                                  Recording recording([&file](std::span<const unsigned char> page) {
                                    file.write(reinterpret_cast<const char*>(page.data()),
                                               static_cast<std::streamsize>(page.size()));
                                  });
                                  recording.stream(1).codec("UCom").declare_headers("1").headers();
                                  auto& stream = recording.stream(2).ucom(Dbu()).headers();
                                  for (int n = 0; n < 20000; ++n) stream.packet(Bytes(4000)).page();
                                  recording.finish();
                                  file.close();
                                  return try_path(folder / "in.xcom", folder, 1, 0);
                                });
  EXPECT_THAT(tally.findings, IsEmpty());
  EXPECT_EQ(count(tally, Ending::converted), 1U);
}

TEST(DamageDecode, a_walk_goes_through_the_beginning_and_the_end_of_every_stream) {
  constexpr long long kSecond = 1'000'000'000;
  Dbu database;
  database.message(1, {1}).signal(1).name("Nano").type("S", 64).at(0);
  Recording recording;
  recording.stream(1).ucom(database).headers();
  recording.stream(2).ucom(database).headers();
  const auto write = [&recording](unsigned int serial, long long nano) {
    recording.stream(serial).packet(UComPacket(1, 8).integer(0, 64, nano).bytes()).page();
  };
  write(1, 0);
  write(1, 10 * kSecond);
  write(2, kSecond * kSecond);
  write(2, kSecond * kSecond + kSecond);
  const std::filesystem::path path = testing::TempDir() + "damage-instants.xcom";
  Support::write_file(path, recording.bytes());
  const Instants instants = instants_of(path);
  std::filesystem::remove(path);
  // 20 steps a second: 0 to 3 s and 7 to 10 s of the one, all of the other
  ASSERT_THAT(instants, SizeIs(61 + 61 + 21));
  EXPECT_EQ(instants.front(), 0);
  EXPECT_EQ(instants[60], 3 * kSecond);
  EXPECT_EQ(instants[61], 7 * kSecond);
  EXPECT_EQ(instants[121], 10 * kSecond);
  EXPECT_EQ(instants[122], kSecond * kSecond);
  EXPECT_EQ(instants.back(), kSecond * kSecond + kSecond);
}

TEST(DamageDecode, the_clock_of_every_stream_of_the_recording_goes_on) {
  const std::filesystem::path path = testing::TempDir() + "damage-clocks.xcom";
  Support::write_file(path, subjects()[0].bytes);
  const Instants instants = instants_of(path);
  const Decoded decoded = decode(path, instants);
  std::filesystem::remove(path);
  EXPECT_THAT(decoded, SizeIs(6)) << "five kinds, two streams of NCom";
  for (const auto& [serial, stream] : decoded) {
    EXPECT_GT(stream.names.size(), 20U) << serial;
    ASSERT_THAT(stream.moments, SizeIs(instants.size())) << serial;
    std::set<long long> clocks;
    for (const Moment& moment : stream.moments) clocks.insert(moment.clock);
    EXPECT_GT(clocks.size(), 5U) << serial;
  }
}

// A stream of 64-bit times and counts, ten packets a second, four packets a page or each packet on
// three pages.
Bytes clock(bool spanning) {
  Dbu database;
  database.message(1, {1, 2});
  database.signal(1).name("Nano").type("S", 64).at(0);
  database.signal(2).name("Count").type("U", 32).at(64);
  Recording recording;
  auto& stream = recording.stream(1).ucom(database).headers();
  if (spanning) {
    stream.segments_per_page(1);
  } else {
    stream.packets_per_page(4);
  }
  for (unsigned int n = 0; n < 40; ++n) {
    UComPacket packet(1, spanning ? 600 : 12);
    packet.integer(0, 64, 100'000'000LL * n).bits(64, 32, n);
    stream.packet(packet.bytes());
    if (spanning) stream.page();
  }
  return recording.bytes();
}

std::string outside(const Bytes& bytes, std::size_t page, std::uint64_t seed = kSeed) {
  const Subject subject{"", ".xcom", bytes};
  Outside outside(subject);
  std::string printed;
  const Tally tally =
      run_cases({0}, 1, kNoLimits, [&](const std::filesystem::path& folder, std::size_t) {
        const std::string text = outside.differs(page, folder, seed);
        std::fputs(text.c_str(), stderr);
        return text.empty() ? Ending::converted : Ending::wrong;
      });
  return tally.findings.empty() ? "" : tally.findings[0].printed;
}

// The initial page and that of the database stand first.
constexpr std::size_t kFirstPayload = 2;

TEST(DamageOutside, a_page_of_whole_packets_costs_them_and_nothing_else) {
  for (std::size_t page = kFirstPayload; page < 12; ++page) {
    for (std::uint64_t seed = 1; seed <= 3; ++seed) {
      EXPECT_EQ(outside(clock(false), page, seed), "") << page;
    }
  }
}

// In a file that one read takes in, the gap in front of the first packet is met with all of the
// file read: the stream begins without a packet, at what the scans have found, where it begins with
// one if the page was never written.
TEST(DamageOutside, without_its_first_page_a_short_recording_begins_without_a_packet) {
  const Bytes whole = clock(false);
  ASSERT_LE(whole.size(), 4096U);
  const auto first_count = [](const Bytes& bytes) {
    const std::filesystem::path path = testing::TempDir() + "damage-first-page.xcom";
    Support::write_file(path, bytes);
    const Decoded decoded = decode(path, {400'000'000, 450'000'000});
    std::filesystem::remove(path);
    const DecodedStream& stream = decoded.begin()->second;
    std::vector<unsigned int> counts;
    for (const std::size_t instant : {std::size_t{0}, std::size_t{1}}) {
      const auto name = std::find(stream.names.begin(), stream.names.end(), "Count");
      const auto place = static_cast<std::size_t>(name - stream.names.begin());
      counts.push_back(stream.moments.at(instant).values.at(place).raw<unsigned int>());
    }
    return counts;
  };
  // Four packets are lost, ten a second, so the stream starts at 0.4 s.
  const auto extent = Support::find_pages(whole)[kFirstPayload];
  EXPECT_THAT(first_count(Support::flip_bit(whole, extent.end() - 1)),
              testing::ElementsAre(0U, 5U));
  // Behind another page, which another read brings, it begins with a packet.
  EXPECT_THAT(first_count(Support::join({Support::flip_bit(whole, extent.end() - 1), Bytes(4096)})),
              testing::ElementsAre(4U, 5U));
}

// The page that lies between the head and the tail of a packet: where it was never written these
// two make a packet of their own, and where it is damaged they do not.
TEST(DamageOutside, a_difference_is_told) {
  EXPECT_THAT(outside(clock(true), kFirstPayload + 3 * 5 + 1), HasSubstr("as never written"));
}

// A page within a page: as soon as the outer one is damaged, the inner one is found, and with it
// values of its stream that were not there before.
TEST(DamageOutside, a_difference_in_another_stream_is_told) {
  Dbu database;
  database.message(1, {1, 2});
  database.signal(1).name("Nano").type("S", 64).at(0);
  database.signal(2).name("Count").type("U", 32).at(64);
  const auto packet = [](unsigned int second) {
    UComPacket made(1, 12);
    made.integer(0, 64, 1000000000LL * second).bits(64, 32, second);
    return made.bytes();
  };
  const auto page = [](const Bytes& body, std::uint32_t serial, std::uint32_t number) {
    Support::PageImage image;
    image.serial = serial;
    image.number = number;
    image.segments.assign(body.size() / 255, 255);
    image.segments.push_back(static_cast<unsigned char>(body.size() % 255));
    image.body = body;
    return image.bytes();
  };
  Recording recording;
  recording.stream(1).ucom(database).headers();
  recording.stream(2).ucom(database).headers();
  for (const unsigned int serial : {1U, 2U}) recording.stream(serial).packet(packet(1)).page();
  const Bytes inner = page(packet(2), 1, 3);
  const Bytes head = recording.bytes();
  const Bytes outer = page(Support::join({packet(2), Bytes(30000), inner, Bytes(30000)}), 2, 3);
  const Bytes bytes = Support::join({head, outer, page(packet(3), 1, 4), page(packet(3), 2, 4)});
  const std::size_t place = Support::find_pages(head).size();
  EXPECT_THAT(outside(bytes, place), HasSubstr("stream 1: "));
}

}  // namespace
}  // namespace Trel::Damage::Test
