// The damage tool itself: that its cases are what they are called, and that it would see a case
// that ends as it may not.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <atomic>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <set>

#include "damage/Damage_Batch.h"
#include "damage/Damage_Case.h"
#include "damage/Damage_Outside.h"
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

TEST(DamageSubjects, are_whole_files_of_a_few_hundred_packets_that_convert_or_open) {
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
    EXPECT_EQ(bytes == subject.bytes, !subject.has_pages()) << subject.name;  // a sum is the last
  }
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

// A stream of 64-bit times and counts, four packets a page or each packet on three pages.
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
    packet.integer(0, 64, 1000000000LL * n).bits(64, 32, n);
    stream.packet(packet.bytes());
    if (spanning) stream.page();
  }
  return recording.bytes();
}

std::string outside(const Bytes& bytes, std::size_t page) {
  std::string printed;
  const Tally tally =
      run_cases({0}, 1, kNoLimits, [&](const std::filesystem::path& folder, std::size_t) {
        const std::string text = differs_outside({"", ".xcom", bytes, {}, 0}, page, folder, kSeed);
        std::fputs(text.c_str(), stderr);
        return text.empty() ? Ending::converted : Ending::wrong;
      });
  return tally.findings.empty() ? "" : tally.findings[0].printed;
}

// Not the first page: in a file this short the walk meets that gap with all of the file read, and
// begins without a packet, where it begins with one if the page was never written.
TEST(DamageOutside, a_page_of_whole_packets_costs_them_and_nothing_else) {
  for (std::size_t page = 3; page < 12; ++page) EXPECT_EQ(outside(clock(false), page), "") << page;
}

// The page that lies between the head and the tail of a packet: where it was never written these
// two make a packet of their own, and where it is damaged they do not.
TEST(DamageOutside, a_difference_is_told) {
  EXPECT_THAT(outside(clock(true), 2 + 3 * 5 + 1), HasSubstr("as never written"));
}

}  // namespace
}  // namespace Trel::Damage::Test
