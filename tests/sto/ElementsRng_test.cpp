// Every element of the range stream, by its name: the packets that bring it, and the value that it
// has then. The rows stand in ElementsRng_….def, one for each name of elements/rcom.txt; those of
// targets are told once for all four.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <iterator>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "Elements.h"
#include "ElementsRng_drives.h"
#include "rng/Rng_RComRx.h"
#include "sto/Sto_AccessRng.h"

namespace Trel::Sto::Test {
namespace {

using testing::ContainerEq;

enum class Source {
  Never,    // no packet brings it
  Field,    // `raw` in `size` bytes at `at` of a packet, or of its channel's eight
  Real,     // `real` in four bytes at `at` of a channel
  Counter,  // kFirstCount and then kNextCount in two bytes at `at` of a channel
  Drive,    // the drive's packets
};

constexpr int kNoChannel = -1;
constexpr int kFirstCount = 60'000;
constexpr int kNextCount = 1'234;

using Expected = Number (*)(int t, int i);

struct Row {
  const char* name;  // without the target, if it is of one
  Source source = Source::Never;
  bool of_target = false;  // target t has t times the number
  unsigned char type = 0;  // of the packet
  int channel = kNoChannel;
  std::size_t at = 0;
  std::size_t size = 0;
  long long raw = 0;
  Number factor = 1;
  double real = 0;
  Packets (*drive)() = nullptr;
  Expected expected = nullptr;
  int (*entries)(int t) = nullptr;  // of a run: those in use
};

constexpr Row never(const char* name) {
  return {.name = name};
}
constexpr Row field(const char* name, unsigned char type, int channel, std::size_t at,
                    std::size_t size, long long raw, Number factor) {
  return {.name = name,
          .source = Source::Field,
          .type = type,
          .channel = channel,
          .at = at,
          .size = size,
          .raw = raw,
          .factor = factor};
}
constexpr Row counter(const char* name, unsigned char type, int channel, std::size_t at) {
  return {.name = name, .source = Source::Counter, .type = type, .channel = channel, .at = at};
}
constexpr Row real(const char* name, int channel, std::size_t at, double number) {
  return {.name = name,
          .source = Source::Real,
          .type = 2,
          .channel = channel,
          .at = at,
          .size = 4,
          .real = number};
}
constexpr Row drive(const char* name, Packets (*packets)(), Expected expected,
                    int (*entries)(int t) = nullptr) {
  return {.name = name,
          .source = Source::Drive,
          .drive = packets,
          .expected = expected,
          .entries = entries};
}
constexpr Row of_target(Row row) {
  row.of_target = true;
  return row;
}

#define TOLD(expected) \
  [](int t, int i) -> Number { return static_cast<void>(t), static_cast<void>(i), expected; }
#define ENTRIES(count) [](int t) -> int { return static_cast<void>(t), count; }

// NEVER(name)
// RANGE(name, at, size, raw, factor), LANE, OLD: a field of range data, lane data, old range data
// RANGE_CHANNEL(name, channel, at, size, raw, factor), LANE_CHANNEL, OLD_CHANNEL: of a channel
// COUNTER(name, channel, at), LANE_COUNTER: a counter in a channel
// MAIN(name, drive, expected): what a drive brings
// RUN(name, drive, entries, expected): the same of a run, by entry i
#define NEVER(name) never(#name),
#define RANGE(name, ...) field(#name, 2, kNoChannel, __VA_ARGS__),
#define LANE(name, ...) field(#name, 1, kNoChannel, __VA_ARGS__),
#define OLD(name, ...) field(#name, 0, kNoChannel, __VA_ARGS__),
#define RANGE_CHANNEL(name, ...) field(#name, 2, __VA_ARGS__),
#define LANE_CHANNEL(name, ...) field(#name, 1, __VA_ARGS__),
#define OLD_CHANNEL(name, ...) field(#name, 0, __VA_ARGS__),
#define COUNTER(name, ...) counter(#name, 2, __VA_ARGS__),
#define LANE_COUNTER(name, ...) counter(#name, 1, __VA_ARGS__),
#define MAIN(name, packets, expected) drive(#name, packets, TOLD(expected)),
#define RUN(name, packets, entries, expected) \
  drive(#name, packets, TOLD(expected), ENTRIES(entries)),
// Those of each target t, under its name.
#define TARGET_NEVER(name) of_target(never(#name)),
#define TARGET_FIELD(name, ...) of_target(field(#name, 2, kNoChannel, __VA_ARGS__)),
#define TARGET_CHANNEL(name, ...) of_target(field(#name, 2, __VA_ARGS__)),
#define TARGET_COUNTER(name, ...) of_target(counter(#name, 2, __VA_ARGS__)),
#define TARGET_REAL(name, ...) of_target(real(#name, __VA_ARGS__)),
#define TARGET(name, packets, expected) of_target(drive(#name, packets, TOLD(expected))),
#define TARGET_RUN(name, packets, entries, expected) \
  of_target(drive(#name, packets, TOLD(expected), ENTRIES(entries))),
// Of line n of eight.
#define LINE(name, point, n, at, raw, factor) \
  field(#name #n #point, 1, kNoChannel, at + 2 * (n - 1), 2, n * (raw), factor)
#define EIGHT(name, point, ...)                                             \
  LINE(name, point, 1, __VA_ARGS__), LINE(name, point, 2, __VA_ARGS__),     \
      LINE(name, point, 3, __VA_ARGS__), LINE(name, point, 4, __VA_ARGS__), \
      LINE(name, point, 5, __VA_ARGS__), LINE(name, point, 6, __VA_ARGS__), \
      LINE(name, point, 7, __VA_ARGS__), LINE(name, point, 8, __VA_ARGS__),

// One line for each name.
constexpr Row kRows[] = {
#include "ElementsRng_lane.def"
#include "ElementsRng_main.def"
#include "ElementsRng_target.def"
};
// Some names once more.
constexpr Row kOtherRows[] = {
#include "ElementsRng_also.def"
};

// A row, of a target (1 to 4) or of none (0).
struct Case {
  const Row& row;
  int target;

  [[nodiscard]] std::string name() const {
    return (target == 0 ? "" : "Target" + std::to_string(target) + "_") + row.name;
  }
  [[nodiscard]] int factor() const { return target == 0 ? 1 : target; }
  [[nodiscard]] bool is_run() const { return row.entries != nullptr; }

  // What the element must hold, or its entry i.
  [[nodiscard]] Number expected(int i) const {
    const long long raw = row.raw * factor();
    switch (row.source) {
      case Source::Field:
        if (row.factor.whole) return raw * row.factor.integer;
        return static_cast<double>(raw) * row.factor.real;
      case Source::Real:
        return row.real * factor();
      case Source::Counter:
        return (1 << 16) + kNextCount * factor();
      default:
        return row.expected(target, i);
    }
  }
};

std::vector<Case> cases_of(const Row& row) {
  if (!row.of_target) return {{row, 0}};
  std::vector<Case> cases;
  for (int target = 1; target <= kTargets; ++target) cases.push_back({row, target});
  return cases;
}
std::vector<Case> cases_of(std::span<const Row> rows) {
  std::vector<Case> cases;
  for (const Row& row : rows) {
    for (const Case& it : cases_of(row)) cases.push_back(it);
  }
  return cases;
}

// A packet for target t with a number in its place.
RangePacket with(const Row& row, int t, long long raw, std::size_t size) {
  RangePacket packet = filled(row.type, t);
  if (row.channel == kNoChannel) return packet.raw(row.at, little(raw, size));
  Bytes data(8, kFilling);
  // The minute goes on.
  if (row.channel == 0) data = Support::join({little(kRangeMinute, 4), Bytes(4, kFilling)});
  const Bytes number = little(raw, size);
  std::copy(number.begin(), number.end(), data.begin() + static_cast<std::ptrdiff_t>(row.at));
  return packet.channel(static_cast<unsigned char>(row.channel), data);
}

// The packets that bring a row's value, for all targets.
Packets packets_of(const Row& row) {
  if (row.source == Source::Never) return {};
  if (row.source == Source::Drive) return row.drive();
  Packets packets = {minutes()};
  for (int t = 1; t <= (row.of_target ? kTargets : 1); ++t) {
    if (row.source == Source::Field) {
      packets.push_back(with(row, t, row.raw * t, row.size));
    } else if (row.source == Source::Real) {
      const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(row.real * t));
      packets.push_back(with(row, t, bits, row.size));
    } else {
      packets.push_back(with(row, t, kFirstCount, 2));
      packets.push_back(with(row, t, kNextCount * t, 2));
    }
  }
  return packets;
}

class Reader {
 public:
  explicit Reader(bool all) { codec_.Key().Reset(all); }

  // Wants what that element needs, and no more.
  void want(const std::string& name) {
    visit(name, [&](const auto& row) { row.let(codec_.Key()); });
    codec_.Key().PropagateKeyOr();
  }
  void take(const Packets& packets) {
    for (const RangePacket& packet : packets) {
      const Bytes bytes = packet.bytes();
      codec_.DecodeLite(bytes.data(), static_cast<unsigned int>(bytes.size()));
    }
  }
  // The element, or its entry i.
  [[nodiscard]] Seen see(const std::string& name, int i) const {
    Seen seen;
    visit(name, [&]<class K>(const AccessRngRow<K>& row) {
      const auto& variable = row.fetch(codec_.CData());
      const auto index = static_cast<std::size_t>(i);
      if constexpr (K::kIsArray) {
        seen = Seen::of(variable.good(index), variable.get_data(index));
      } else {
        seen = Seen::of(variable.good(), variable.get());
      }
    });
    return seen;
  }

 private:
  template <class Visitor>
  static void visit(const std::string& name, Visitor&& visitor) {
    for_each_kind([&]<class K>(std::type_identity<K>) {
      const auto* row = AccessRCom::shared().find<K>(name);
      if (row != nullptr) visitor(*row);
    });
  }

  Rng::RComCodec codec_{false};
};

// Numbers of one field are met to rounding, what is computed almost so; but the rates of change by
// which resultants are worked out here are good to six digits.
double tolerance_of(const Row& row) {
  if (row.source != Source::Drive) return 1e-12;
  const std::string name = row.name;
  const bool by_differences =
      name == "RangeRateRes" || name == "RangeAccRes" || name == "IsoVr2d" || name == "IsoAr2d";
  return by_differences ? 1e-6 : 1e-10;
}

void expect_value(const Reader& reader, const Case& it) {
  if (!it.is_run()) {
    return expect_number(reader.see(it.name(), 0), it.expected(0), tolerance_of(it.row));
  }
  const int entries = it.row.entries(it.target);
  for (int i = 0; i < entries; ++i) {
    SCOPED_TRACE(i);
    expect_number(reader.see(it.name(), i), it.expected(i), tolerance_of(it.row));
  }
  EXPECT_FALSE(reader.see(it.name(), entries).good);
}

TEST(ElementsRng, each_name_has_a_row_and_no_other) {
  std::multiset<std::string> tested;
  for (const Case& it : cases_of(kRows)) tested.insert(it.name());
  EXPECT_THAT(tested, ContainerEq(names_in(TREL_STO_ELEMENTS "/rcom.txt")));
}

TEST(ElementsRng, each_name_takes_the_value_that_its_packets_bring) {
  for (const Case& it : cases_of(kRows)) {
    if (it.row.source == Source::Never) continue;
    SCOPED_TRACE(it.name());
    const auto reader = std::make_unique<Reader>(false);
    reader->want(it.name());
    reader->take(packets_of(it.row));
    expect_value(*reader, it);
  }
}

TEST(ElementsRng, each_name_takes_that_value_among_all_others) {
  for (const Row& row : kRows) {
    if (row.source == Source::Never) continue;
    const auto reader = std::make_unique<Reader>(true);
    reader->take(packets_of(row));
    for (const Case& it : cases_of(row)) {
      SCOPED_TRACE(it.name());
      expect_value(*reader, it);
    }
  }
}

TEST(ElementsRng, some_names_take_values_of_other_packets_too) {
  const auto listed = names_in(TREL_STO_ELEMENTS "/rcom.txt");
  for (const Case& it : cases_of(kOtherRows)) {
    SCOPED_TRACE(it.name());
    EXPECT_TRUE(listed.contains(it.name()));
    const auto reader = std::make_unique<Reader>(false);
    reader->want(it.name());
    reader->take(packets_of(it.row));
    expect_value(*reader, it);
  }
}

TEST(ElementsRng, a_name_without_a_source_never_comes) {
  const auto reader = std::make_unique<Reader>(true);
  std::vector<std::string> without;
  for (const Case& it : cases_of(kRows)) {
    if (it.row.source == Source::Never) without.push_back(it.name());
  }
  for (const Row& brought : kRows) {
    reader->take(packets_of(brought));
    for (const std::string& name : without) {
      ASSERT_FALSE(reader->see(name, 0).good) << name << " after " << brought.name;
    }
  }
}

}  // namespace
}  // namespace Trel::Sto::Test
