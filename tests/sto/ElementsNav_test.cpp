// Every element of the navigation streams, by its name: the packets that bring it, and the value
// that it has then. The rows stand in ElementsNav_….def, one for each name of elements/….txt.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Elements.h"
#include "ElementsNav_drives.h"
#include "nav/Nav_MComRx.h"
#include "nav/Nav_NComRx.h"
#include "sto/Sto_AccessNav.h"

namespace Trel::Sto::Test {
namespace {

using Support::Bytes;
using Support::MComPacket;
using Support::NComPacket;
using testing::ContainerEq;

enum Families { NCom = 1, MCom = 2, Both = NCom | MCom };

struct NComFamily {
  using Packet = NComPacket;
  using Codec = Nav::NComCodec;
  using Access = AccessNCom;
  static constexpr Families kFamily = NCom;
  static constexpr const char* kNames = "ncom.txt";
};
struct MComFamily {
  using Packet = MComPacket;
  using Codec = Nav::MComCodec;
  using Access = AccessMCom;
  static constexpr Families kFamily = MCom;
  static constexpr const char* kNames = "mcom.txt";
};

enum class Source {
  Never,   // no packet brings it
  Field,   // `raw` in `size` bytes at `at` of the channel's eight
  Edge,    // an edge at `at` milliseconds and `size` steps
  Drive,   // the drive's packets
  Point,   // the drive of a point that the channel tells
  Framed,  // one packet behind the address `raw` and the provenance `at`
};

struct Row {
  Families families;
  const char* name;
  Source source = Source::Never;
  int channel = 0;
  std::size_t at = 0;
  int size = 0;
  long long raw = 0;
  std::vector<NComPacket> (*ncom_drive)() = nullptr;
  std::vector<MComPacket> (*mcom_drive)() = nullptr;
  const char* also = nullptr;  // a name that must be wanted beside it
  Number expected = 0;
};

constexpr double kNorthing = 1e-5 * (1.5 + kMeridianRadius);
constexpr double kEasting = 2e-5 * (1.5 + kTransverseRadius);

// One line for each name, and one for each family where the two differ:
// FIELD(families, name, channel, at, size, raw, expected)
// EDGE(families, name, channel, milliseconds, fine, expected)
// DRIVE(families, name, drive, expected), WITH(families, name, also, drive, expected)
// OF_POINT(families, name, channel, expected)
// FROM(families, name, address, provenance, expected)
// NEVER(families, name)
constexpr Row kRows[] = {
#define NEVER(families_, name_) {.families = families_, .name = #name_},
#define FIELD(families_, name_, channel_, at_, size_, raw_, expected_) \
  {.families = families_,                                              \
   .name = #name_,                                                     \
   .source = Source::Field,                                            \
   .channel = channel_,                                                \
   .at = at_,                                                          \
   .size = size_,                                                      \
   .raw = raw_,                                                        \
   .expected = expected_},
#define EDGE(families_, name_, channel_, milliseconds, fine, expected_) \
  {.families = families_,                                               \
   .name = #name_,                                                      \
   .source = Source::Edge,                                              \
   .channel = channel_,                                                 \
   .at = milliseconds,                                                  \
   .size = fine,                                                        \
   .expected = expected_},
#define OF_POINT(families_, name_, channel_, expected_) \
  {.families = families_,                               \
   .name = #name_,                                      \
   .source = Source::Point,                             \
   .channel = channel_,                                 \
   .also = "VnAcc",                                     \
   .expected = expected_},
#define FROM(families_, name_, address, provenance, expected_) \
  {.families = families_,                                      \
   .name = #name_,                                             \
   .source = Source::Framed,                                   \
   .at = provenance,                                           \
   .raw = address,                                             \
   .expected = expected_},
#define OF_DRIVE(families_, name_, also_, drive, expected_) \
  {.families = families_,                                   \
   .name = #name_,                                          \
   .source = Source::Drive,                                 \
   .ncom_drive = Drives<NComPacket>::drive,                 \
   .mcom_drive = Drives<MComPacket>::drive,                 \
   .also = also_,                                           \
   .expected = expected_},
#define DRIVE(families, name, drive, expected) OF_DRIVE(families, name, nullptr, drive, expected)
#define WITH(families, name, also, drive, expected) OF_DRIVE(families, name, #also, drive, expected)
#include "ElementsNav_gnss.def"
#include "ElementsNav_motion.def"
#include "ElementsNav_option.def"
#include "ElementsNav_unit.def"
};

// The rows of a family.
template <class F>
std::vector<Row> rows() {
  std::vector<Row> rows;
  std::ranges::copy_if(kRows, std::back_inserter(rows),
                       [](const Row& row) { return (row.families & F::kFamily) != 0; });
  return rows;
}

template <class Packets>
std::vector<Bytes> bytes_of(const Packets& packets) {
  std::vector<Bytes> bytes;
  for (const auto& packet : packets) bytes.push_back(packet.bytes());
  return bytes;
}

// A packet of a range system's recording: an address and where it came from stand in front.
Bytes framed(long long address, std::size_t provenance) {
  Bytes header;
  for (int shift = 0; shift < 32; shift += 8) {
    header.push_back(static_cast<unsigned char>(address >> shift & 0xFF));
  }
  header.push_back(static_cast<unsigned char>(provenance));
  return Support::join({header, locked<NComPacket>(0).bytes()});
}

// The packets that bring a row's value.
template <class F>
std::vector<Bytes> packets_of(const Row& row) {
  using D = Drives<typename F::Packet>;
  switch (row.source) {
    case Source::Never:
      return {};
    case Source::Field:
      return bytes_of(D::channel(row.channel,
                                 Eight().put(row.at, static_cast<std::size_t>(row.size), row.raw)));
    case Source::Edge:
      return bytes_of(D::channel(row.channel, edge(static_cast<int>(row.at), row.size)));
    case Source::Drive:
      return F::kFamily == NCom ? bytes_of(row.ncom_drive()) : bytes_of(row.mcom_drive());
    case Source::Point:
      return bytes_of(D::point(row.channel));
    case Source::Framed:
      return {framed(row.raw, row.at)};
  }
  return {};
}

// Numbers of one field are met to rounding; what is computed, to the steps of attitude and time.
double tolerance_of(const Row& row) {
  return row.source == Source::Drive || row.source == Source::Point ? 1e-5 : 1e-12;
}

template <class F>
class Reader {
 public:
  // Wants what that element needs, and no more.
  void want(const std::string& name) {
    visit(name, [&](const auto& row) { row.let(codec_.Key()); });
    codec_.Key().PropagateKeyOr();
  }
  void want_nothing() { codec_.Key().Reset(false); }

  void take(const Bytes& packet) {
    if constexpr (F::kFamily == NCom) {
      if (packet.size() > NComPacket().bytes().size()) {
        codec_.DecodeRange(packet.data(), static_cast<unsigned int>(packet.size()), true);
        return;
      }
    }
    codec_.DecodeBasic(packet.data(), true);
  }

  Seen see(const std::string& name) {
    Seen seen;
    visit(name, [&](const auto& row) {
      const auto& variable = row.fetch(codec_.CData());
      seen = Seen::of(variable.good(), variable.get());
    });
    return seen;
  }

 private:
  template <class Visitor>
  static void visit(const std::string& name, Visitor&& visitor) {
    for_each_kind([&]<class K>(std::type_identity<K>) {
      if constexpr (!K::kIsArray) {
        const auto* row = F::Access::shared().template find<K>(name);
        if (row != nullptr) visitor(*row);
      }
    });
  }

  typename F::Codec codec_{false};
};

template <class F>
class ElementsNav : public testing::Test {};
using Tested = testing::Types<NComFamily, MComFamily>;
TYPED_TEST_SUITE(ElementsNav, Tested);

TYPED_TEST(ElementsNav, each_name_of_the_family_has_a_row_and_no_other) {
  std::multiset<std::string> tested;
  for (const Row& row : rows<TypeParam>()) tested.insert(row.name);
  EXPECT_THAT(tested,
              ContainerEq(names_in(std::string(TREL_STO_ELEMENTS "/") + TypeParam::kNames)));
}

TYPED_TEST(ElementsNav, each_name_takes_the_value_that_its_packets_bring) {
  for (const Row& row : rows<TypeParam>()) {
    if (row.source == Source::Never) continue;
    SCOPED_TRACE(row.name);
    const auto reader = std::make_unique<Reader<TypeParam>>();
    reader->want_nothing();
    reader->want(row.name);
    if (row.also != nullptr) reader->want(row.also);
    for (const Bytes& packet : packets_of<TypeParam>(row)) reader->take(packet);

    expect_number(reader->see(row.name), row.expected, tolerance_of(row));
  }
}

TYPED_TEST(ElementsNav, a_name_without_a_source_never_comes) {
  const auto reader = std::make_unique<Reader<TypeParam>>();
  const auto all = rows<TypeParam>();
  reader->want_nothing();
  for (const Row& row : all) reader->want(row.name);
  for (const Row& brought : all) {
    for (const Bytes& packet : packets_of<TypeParam>(brought)) reader->take(packet);
    for (const Row& row : all) {
      if (row.source == Source::Never) {
        ASSERT_FALSE(reader->see(row.name).good) << row.name << " after " << brought.name;
      }
    }
  }
}

}  // namespace
}  // namespace Trel::Sto::Test
