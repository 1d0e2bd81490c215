// What the slow channels bring: each field's place, form and scale, and what its ends mean.
#include "rng/Rng_SlowChannel.h"

#include <gtest/gtest.h>

#include <bit>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "Rng_Feed.h"

namespace Trel::Rng {
namespace {

constexpr unsigned char kRejected = Lib::Flags::Rejected;
constexpr unsigned char kInvalid = Lib::Flags::Invalid;
constexpr unsigned char kOver = Lib::Flags::Over;
constexpr unsigned char kUnder = Lib::Flags::Under;
constexpr unsigned int kTarget = 2;

enum class Kind { Range, Lane };

struct Scene {
  ComKey key;
  ComData data;

  void take(Kind kind, unsigned char channel, Bytes bytes) {
    bytes.resize(8);
    if (kind == Kind::Range) {
      ExtractRangeChannel(kTarget, channel, bytes.data(), key, data);
    } else {
      ExtractLaneChannel(channel, bytes.data(), key, data);
    }
  }
};

// What became of a value: its number and its flags without Timeless.
struct Outcome {
  double number;
  unsigned char flags;
};
using Read = std::function<Outcome(const ComData&)>;

template <class T>
Outcome outcome(const Lib::VariableExt<T>& value) {
  return {static_cast<double>(value.get()),
          static_cast<unsigned char>(value.get_flags().byte() & ~Lib::Flags::Timeless)};
}

#define MAIN(name) #name, [](const ComData& data) { return outcome(data.DMain().Var_##name()); }
#define TARGET(name) \
#name, [](const ComData& data) { return outcome(data.DTarget(kTarget).Var_##name()); }

// A whole number: `size` bytes at `at`, which are a value but for its ends.
struct Field {
  Kind kind;
  unsigned char channel;
  std::size_t at;
  std::size_t size;
  enum Ends { Signed, Unsigned, Floored, Plain } ends;
  double scale;
  const char* name;
  Read read;
};

constexpr double kMilli3 = 0.001;
constexpr double kHundredth = 0.01;  // 0.000174532925199433 rad in degrees
constexpr double kFine = 1e-7;

const std::vector<Field>& fields() {
  using enum Kind;
  using enum Field::Ends;
  static const std::vector<Field> all = {
      {Range, 0, 6, 2, Unsigned, kMilli3, TARGET(Latency)},
      {Range, 5, 0, 2, Unsigned, kMilli3, MAIN(Hunter_Latency)},
      {Range, 5, 2, 2, Signed, kMilli3, TARGET(RangeOffsetLon)},
      {Range, 5, 4, 2, Signed, kMilli3, TARGET(RangeOffsetLat)},
      {Range, 6, 0, 1, Plain, 1, MAIN(OsVersion1)},
      {Range, 6, 1, 1, Plain, 1, MAIN(OsVersion2)},
      {Range, 6, 2, 1, Plain, 1, MAIN(OsVersion3)},
      {Range, 6, 3, 3, Unsigned, 1, MAIN(OsScriptID)},
      {Range, 7, 0, 2, Signed, 1, MAIN(TimeUtcOffset)},
      {Range, 7, 3, 1, Plain, 1, MAIN(FeatSetRefNum)},
      {Range, 7, 4, 2, Unsigned, 1, MAIN(FeatSetNumFeats)},
      {Range, 7, 6, 1, Plain, 1, MAIN(FeatSetCellMax)},
      {Range, 7, 7, 1, Plain, 0.4, MAIN(CpuLoad)},
      {Range, 8, 0, 4, Signed, kFine, TARGET(FixedPointLat)},
      {Range, 8, 4, 4, Signed, kFine, TARGET(FixedPointLon)},
      {Range, 10, 0, 4, Signed, kMilli3, TARGET(FixedPointAlt)},
      {Range, 10, 4, 2, Unsigned, kHundredth, TARGET(FixedPointHeading)},
      {Range, 11, 0, 4, Signed, kFine, MAIN(Hunter_RefLat)},
      {Range, 11, 4, 4, Signed, kFine, MAIN(Hunter_RefLon)},
      {Range, 12, 0, 4, Signed, kMilli3, MAIN(Hunter_RefAlt)},
      {Range, 12, 4, 4, Unsigned, kFine, MAIN(Hunter_RefHeading)},
      {Range, 13, 0, 3, Signed, kMilli3, MAIN(Hunter_DisplacementArmX)},
      {Range, 13, 3, 3, Signed, kMilli3, MAIN(Hunter_DisplacementArmY)},
      {Range, 13, 6, 2, Signed, kMilli3, MAIN(Hunter_DisplacementArmZ)},
      {Range, 14, 0, 3, Signed, kMilli3, TARGET(DisplacementArmX)},
      {Range, 14, 3, 3, Signed, kMilli3, TARGET(DisplacementArmY)},
      {Range, 14, 6, 2, Signed, kMilli3, TARGET(DisplacementArmZ)},
      {Range, 16, 0, 2, Floored, kMilli3, TARGET(RangeLonStd)},
      {Range, 16, 2, 2, Floored, kMilli3, TARGET(RangeLatStd)},
      {Range, 16, 4, 2, Floored, kMilli3, TARGET(RangeVerStd)},
      {Range, 16, 6, 2, Floored, kMilli3, TARGET(RangeResStd)},
      {Range, 17, 0, 2, Floored, kMilli3, TARGET(VehicleLength)},
      {Range, 17, 2, 2, Floored, kMilli3, TARGET(VehicleWidth)},
      {Range, 17, 4, 2, Floored, kMilli3, TARGET(VehicleHeight)},
      {Range, 17, 6, 2, Floored, 1, TARGET(PolygonNumber)},
      {Range, 20, 0, 4, Signed, kFine, TARGET(FeatPointLat)},
      {Range, 20, 4, 4, Signed, kFine, TARGET(FeatPointLon)},
      {Range, 21, 0, 4, Signed, kMilli3, TARGET(FeatPointAlt)},
      {Range, 21, 4, 2, Unsigned, kHundredth, TARGET(FeatPointHeading)},
      {Range, 22, 0, 2, Floored, kMilli3, MAIN(Hunter_VehicleLength)},
      {Range, 22, 2, 2, Floored, kMilli3, MAIN(Hunter_VehicleWidth)},
      {Range, 22, 4, 2, Floored, kMilli3, MAIN(Hunter_VehicleHeight)},
      {Range, 22, 6, 2, Floored, 1, MAIN(Hunter_PolygonNumber)},
      {Lane, 2, 0, 2, Unsigned, 1, MAIN(Lane_MapNumber)},
      {Lane, 6, 0, 1, Plain, 1, MAIN(OsVersion1)},
      {Lane, 6, 1, 1, Plain, 1, MAIN(OsVersion2)},
      {Lane, 6, 2, 1, Plain, 1, MAIN(OsVersion3)},
      {Lane, 6, 3, 3, Unsigned, 1, MAIN(OsScriptID)},
      {Lane, 7, 0, 2, Signed, 1, MAIN(TimeUtcOffset)},
      {Lane, 7, 3, 1, Plain, 1, MAIN(FeatSetRefNum)},
      {Lane, 7, 4, 2, Unsigned, 1, MAIN(FeatSetNumFeats)},
      {Lane, 7, 6, 1, Plain, 1, MAIN(FeatSetCellMax)},
      {Lane, 7, 7, 1, Plain, 0.4, MAIN(CpuLoad)},
      {Lane, 8, 0, 3, Signed, kMilli3, MAIN(Lane_PointAArmX)},
      {Lane, 8, 3, 3, Signed, kMilli3, MAIN(Lane_PointAArmY)},
      {Lane, 8, 6, 2, Signed, kMilli3, MAIN(Lane_PointAArmZ)},
      {Lane, 9, 0, 3, Signed, kMilli3, MAIN(Lane_PointBArmX)},
      {Lane, 9, 3, 3, Signed, kMilli3, MAIN(Lane_PointBArmY)},
      {Lane, 9, 6, 2, Signed, kMilli3, MAIN(Lane_PointBArmZ)},
      {Lane, 10, 0, 3, Signed, kMilli3, MAIN(Lane_PointCArmX)},
      {Lane, 10, 3, 3, Signed, kMilli3, MAIN(Lane_PointCArmY)},
      {Lane, 10, 6, 2, Signed, kMilli3, MAIN(Lane_PointCArmZ)},
  };
  return all;
}

// The field with a number in it, amid ones.
Bytes holding(const Field& field, long long number) {
  Bytes bytes(8, 1);
  const Bytes raw = little(number, field.size);
  std::copy(raw.begin(), raw.end(), bytes.begin() + static_cast<std::ptrdiff_t>(field.at));
  return bytes;
}

Outcome decoded(const Field& field, long long number) {
  Scene scene;
  scene.take(field.kind, field.channel, holding(field, number));
  return field.read(scene.data);
}

void expect_value(const Field& field, long long number, unsigned char flags) {
  const Outcome found = decoded(field, number);
  const double expected = static_cast<double>(number) * field.scale;
  EXPECT_NEAR(found.number, expected, std::abs(expected) * 1e-12) << field.name << ' ' << number;
  EXPECT_EQ(found.flags, flags) << field.name << ' ' << number;
}

void expect_missing(const Field& field, long long number) {
  const Outcome found = decoded(field, number);
  EXPECT_EQ(found.number, 0) << field.name << ' ' << number;
  EXPECT_EQ(found.flags, kInvalid) << field.name << ' ' << number;
}

TEST(RngSlowChannel, a_number_is_scaled) {
  for (const Field& field : fields()) {
    expect_value(field, 100, 0);
    expect_value(field, field.size == 1 ? 200 : 12'345, 0);
    if (field.ends == Field::Signed) expect_value(field, -12'345, 0);
  }
}

TEST(RngSlowChannel, a_signed_number_keeps_its_lowest_two_and_its_highest_for_itself) {
  for (const Field& field : fields()) {
    if (field.ends != Field::Signed) continue;
    const long long highest = (1LL << (8 * field.size - 1)) - 1;
    expect_missing(field, -highest - 1);
    expect_value(field, -highest, kUnder);
    expect_value(field, -highest + 1, 0);
    expect_value(field, highest - 1, 0);
    expect_value(field, highest, kOver);
    expect_value(field, 0, 0);
  }
}

TEST(RngSlowChannel, an_unsigned_number_keeps_its_highest_two_for_itself) {
  for (const Field& field : fields()) {
    if (field.ends != Field::Unsigned && field.ends != Field::Floored) continue;
    const long long highest = (1LL << 8 * field.size) - 1;
    expect_missing(field, highest);
    expect_value(field, highest - 1, kOver);
    expect_value(field, highest - 2, 0);
  }
}

TEST(RngSlowChannel, nothing_is_too_little_for_accuracies_and_vehicles_alone) {
  for (const Field& field : fields()) {
    expect_value(field, 0, field.ends == Field::Floored ? kUnder : 0);
  }
}

TEST(RngSlowChannel, one_byte_keeps_no_number_for_itself) {
  for (const Field& field : fields()) {
    if (field.ends != Field::Plain) continue;
    expect_value(field, 255, 0);
    expect_value(field, 254, 0);
  }
}

TEST(RngSlowChannel, what_nobody_wants_is_rejected) {
  for (const Field& field : fields()) {
    Scene scene;
    scene.take(field.kind, field.channel, holding(field, 100));
    scene.key.Reset(false);
    scene.take(field.kind, field.channel, holding(field, 100));
    EXPECT_EQ(field.read(scene.data).flags, kRejected) << field.name;
    EXPECT_EQ(field.read(scene.data).number, 0) << field.name;
  }
}

// Each field with the node that turns it off.
TEST(RngSlowChannel, each_group_has_its_node) {
  struct Group {
    void (*bar)(ComKey&);
    std::vector<std::string> names;
  };
#define BAR(node) [](ComKey& key) { key.KMain().Bar_##node(); }
#define BAR_TARGET(node) [](ComKey& key) { key.KTarget(kTarget).Bar_##node(); }
  const std::vector<Group> groups = {
      {BAR_TARGET(General_Latency), {"Latency"}},
      {BAR(Hunter_General_Latency), {"Hunter_Latency"}},
      {BAR_TARGET(Config_RangeOffset), {"RangeOffsetLon", "RangeOffsetLat"}},
      {BAR(System_Os), {"OsVersion1", "OsVersion2", "OsVersion3", "OsScriptID"}},
      {BAR(Time_Utc), {"TimeUtcOffset"}},
      {BAR(Feat_Set), {"FeatSetRefNum", "FeatSetNumFeats", "FeatSetCellMax"}},
      {BAR(System_Cpu), {"CpuLoad"}},
      {BAR_TARGET(Config_FixedPoint), {"FixedPointLat", "FixedPointLon"}},
      {BAR_TARGET(Config_FixedPointAltHeading), {"FixedPointAlt", "FixedPointHeading"}},
      {BAR(Hunter_Config_Ref), {"Hunter_RefLat", "Hunter_RefLon"}},
      {BAR(Hunter_Config_RefAltHeading), {"Hunter_RefAlt", "Hunter_RefHeading"}},
      {BAR(Hunter_Config_DisplacementArm),
       {"Hunter_DisplacementArmX", "Hunter_DisplacementArmY", "Hunter_DisplacementArmZ"}},
      {BAR_TARGET(Config_DisplacementArm),
       {"DisplacementArmX", "DisplacementArmY", "DisplacementArmZ"}},
      {BAR_TARGET(Range_Accuracy), {"RangeLonStd", "RangeLatStd", "RangeVerStd", "RangeResStd"}},
      {BAR_TARGET(Config_Vehicle),
       {"VehicleLength", "VehicleWidth", "VehicleHeight", "PolygonNumber"}},
      {BAR_TARGET(Feat_LatLon), {"FeatPointLat", "FeatPointLon"}},
      {BAR_TARGET(Feat_AltHeading), {"FeatPointAlt", "FeatPointHeading"}},
      {BAR(Hunter_Config_Vehicle),
       {"Hunter_VehicleLength", "Hunter_VehicleWidth", "Hunter_VehicleHeight",
        "Hunter_PolygonNumber"}},
      {BAR(Lane_General), {"Lane_MapNumber"}},
      {BAR(Lane_PointA), {"Lane_PointAArmX", "Lane_PointAArmY", "Lane_PointAArmZ"}},
      {BAR(Lane_PointB), {"Lane_PointBArmX", "Lane_PointBArmY", "Lane_PointBArmZ"}},
      {BAR(Lane_PointC), {"Lane_PointCArmX", "Lane_PointCArmY", "Lane_PointCArmZ"}},
  };
  for (const Group& group : groups) {
    for (const Field& field : fields()) {
      Scene scene;
      group.bar(scene.key);
      scene.take(field.kind, field.channel, holding(field, 100));
      const bool barred =
          std::find(group.names.begin(), group.names.end(), field.name) != group.names.end();
      EXPECT_EQ(field.read(scene.data).flags, barred ? kRejected : 0) << field.name;
    }
  }
}

TEST(RngSlowChannel, values_belong_to_the_packets_target_alone) {
  Scene scene;
  scene.take(Kind::Range, 8, little(10'000'000, 4));
  EXPECT_EQ(scene.data.DTarget(kTarget).Get_FixedPointLat(), 1.0);
  for (const unsigned int other : {0U, 1U, 3U}) {
    EXPECT_FALSE(scene.data.DTarget(other).Var_FixedPointLat().ok());
  }
}

TEST(RngSlowChannel, modes_and_the_plane_are_members) {
  Scene scene;
  scene.take(Kind::Range, 0, {0, 0, 0, 0, 3, 2});
  EXPECT_EQ(scene.data.DMain().Var_Hunter_PosMode().get(), 3);
  EXPECT_EQ(scene.data.DTarget(kTarget).Var_PosMode().get(), 2);
  scene.take(Kind::Range, 7, {18, 0, 1});
  EXPECT_EQ(scene.data.DTarget(kTarget).Get_MeasPlane(), Enum::RNG_MEASUREMENT_PLANE_VALUE_01);
  scene.take(Kind::Range, 7, {18, 0, 200});
  EXPECT_EQ(scene.data.DTarget(kTarget).Get_MeasPlane(), Enum::RNG_MEASUREMENT_PLANE_UNKNOWN);
  EXPECT_TRUE(scene.data.DTarget(kTarget).Var_MeasPlane().ok());
}

TEST(RngSlowChannel, modes_and_the_plane_that_nobody_wants_are_rejected) {
  Scene scene;
  scene.take(Kind::Range, 0, {0, 0, 0, 0, 3, 2});
  scene.key.KMain().Bar_Hunter_General_PosMode();
  scene.take(Kind::Range, 0, {0, 0, 0, 0, 3, 2});
  EXPECT_EQ(outcome(scene.data.DMain().Var_Hunter_PosMode()).flags, kRejected);
  EXPECT_TRUE(scene.data.DTarget(kTarget).Var_PosMode().ok());
  scene.key.KTarget(kTarget).Bar_General_PosMode();
  scene.key.KTarget(kTarget).Bar_General_MeasPlane();
  scene.take(Kind::Range, 0, {0, 0, 0, 0, 3, 2});
  scene.take(Kind::Range, 7, {18, 0, 1});
  EXPECT_EQ(outcome(scene.data.DTarget(kTarget).Var_PosMode()).flags, kRejected);
  EXPECT_EQ(outcome(scene.data.DTarget(kTarget).Var_MeasPlane()).flags, kRejected);
}

TEST(RngSlowChannel, lane_data_have_no_target) {
  Scene scene;
  scene.take(Kind::Lane, 7, {18, 0, 1, 1, 1, 1, 1, 1});
  for (unsigned int target = 0; target < ComData::kTargets; ++target) {
    EXPECT_FALSE(scene.data.DTarget(target).Var_MeasPlane().ok());
  }
  EXPECT_EQ(scene.data.DMain().Get_TimeUtcOffset(), 18);
}

struct Count {
  Kind kind;
  unsigned char channel;
  std::size_t at;
  const char* name;
  Read read;
};
const std::vector<Count>& counts() {
  using enum Kind;
  static const std::vector<Count> all = {
      {Range, 3, 0, TARGET(WirelessChars)},
      {Range, 3, 2, TARGET(WirelessPkts)},
      {Range, 3, 4, TARGET(WirelessCharsSkipped)},
      {Range, 4, 0, MAIN(Hunter_Chars)},
      {Range, 4, 2, MAIN(Hunter_Pkts)},
      {Range, 4, 4, MAIN(Hunter_CharsSkipped)},
      {Range, 15, 0, MAIN(Range_CmdChars)},
      {Range, 15, 2, MAIN(Range_CmdPkts)},
      {Range, 15, 4, MAIN(Range_CmdCharsSkipped)},
      {Range, 15, 6, MAIN(Range_CmdErrors)},
      {Lane, 15, 0, MAIN(Range_CmdChars)},
      {Lane, 15, 2, MAIN(Range_CmdPkts)},
      {Lane, 15, 4, MAIN(Range_CmdCharsSkipped)},
      {Lane, 15, 6, MAIN(Range_CmdErrors)},
  };
  return all;
}

Bytes counting(const Count& count, unsigned int low) {
  Bytes bytes(8, 0);
  bytes[count.at] = static_cast<unsigned char>(low);
  bytes[count.at + 1] = static_cast<unsigned char>(low >> 8);
  return bytes;
}

TEST(RngSlowChannel, two_bytes_of_a_count_are_taken_on_to_its_total) {
  for (const Count& count : counts()) {
    Scene scene;
    const auto total = [&](unsigned int low) {
      scene.take(count.kind, count.channel, counting(count, low));
      EXPECT_EQ(count.read(scene.data).flags, 0) << count.name;
      return count.read(scene.data).number;
    };
    EXPECT_EQ(total(65'000), 65'000) << count.name;
    EXPECT_EQ(total(65'000), 65'000) << count.name;  // none in between
    EXPECT_EQ(total(65'535), 65'535) << count.name;  // no number is kept
    EXPECT_EQ(total(4), 65'540) << count.name;
    EXPECT_EQ(total(3), 131'075) << count.name;
  }
}

TEST(RngSlowChannel, counts_that_nobody_wants_are_rejected) {
  for (const Count& count : counts()) {
    Scene scene;
    scene.key.KMain().Bar_General_Command();
    scene.key.KMain().Bar_Hunter_General_Received();
    scene.key.KTarget(kTarget).Bar_General_Wireless();
    scene.take(count.kind, count.channel, counting(count, 7));
    EXPECT_EQ(count.read(scene.data).flags, kRejected) << count.name;
  }
}

TEST(RngSlowChannel, filters_are_real_numbers) {
  const auto pair = [](float freq, float zeta) {
    return join({little(std::bit_cast<int>(freq), 4), little(std::bit_cast<int>(zeta), 4)});
  };
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  Scene scene;
  scene.take(Kind::Range, 18, pair(2.5F, 0.75F));
  scene.take(Kind::Range, 19, pair(-1.0F, 0.0F));
  const DataTarget& target = scene.data.DTarget(kTarget);
  EXPECT_EQ(target.Get_AccelFilterFreq(), 2.5);
  EXPECT_EQ(target.Get_AccelFilterZeta(), 0.75);
  EXPECT_EQ(target.Get_ExtrapolFilterFreq(), -1.0);
  EXPECT_EQ(target.Get_ExtrapolFilterZeta(), 0.0);
  EXPECT_TRUE(target.Var_ExtrapolFilterZeta().ok());
  scene.take(Kind::Range, 18, pair(std::numeric_limits<float>::quiet_NaN(), kInfinity));
  scene.take(Kind::Range, 19, pair(-kInfinity, 3.0F));
  EXPECT_EQ(outcome(target.Var_AccelFilterFreq()).flags, kInvalid);
  EXPECT_EQ(outcome(target.Var_AccelFilterZeta()).flags, kInvalid);
  EXPECT_EQ(outcome(target.Var_ExtrapolFilterFreq()).flags, kInvalid);
  EXPECT_EQ(target.Get_ExtrapolFilterZeta(), 3.0);
  scene.key.KTarget(kTarget).Bar_Config_AccelFilter();
  scene.take(Kind::Range, 18, pair(2.5F, 0.75F));
  EXPECT_EQ(outcome(target.Var_AccelFilterZeta()).flags, kRejected);
  EXPECT_TRUE(target.Var_ExtrapolFilterZeta().ok());
  scene.key.KTarget(kTarget).Bar_Config_ExtrapolFilter();
  scene.take(Kind::Range, 19, pair(2.5F, 0.75F));
  EXPECT_EQ(outcome(target.Var_ExtrapolFilterZeta()).flags, kRejected);
}

TEST(RngSlowChannel, the_firmware_begins_with_its_date) {
  for (const Kind kind : {Kind::Range, Kind::Lane}) {
    Scene scene;
    scene.take(kind, 1, Support::bytes_of("230514.2"));
    const DataMain& main = scene.data.DMain();
    EXPECT_EQ(main.Get_DevID(), 0x322E343135303332ULL);  // "2.415032" from the highest byte down
    EXPECT_EQ(main.Get_DateFirmware(), 20'230'514U);
    // 43 years from 1980-01-06 to 2023-01-06 with 11 leap days, and 31 - 6 + 28 + 31 + 30 + 14 days
    EXPECT_EQ(main.Get_NanoFirmware(), (43 * 365LL + 11 + 128) * 86'400 * 1'000'000'000);
    EXPECT_TRUE(main.Var_DevID().ok() && main.Var_DateFirmware().ok() &&
                main.Var_NanoFirmware().ok());
  }
}

TEST(RngSlowChannel, firmware_that_begins_otherwise_has_no_date) {
  Scene scene;
  scene.take(Kind::Range, 1, Support::bytes_of("230514.2"));
  for (const char* text : {"23051x.2", "x30514.2", "23 514.2"}) {
    scene.take(Kind::Range, 1, Support::bytes_of(text));
    EXPECT_TRUE(scene.data.DMain().Var_DevID().ok());
    EXPECT_EQ(outcome(scene.data.DMain().Var_NanoFirmware()).flags, kInvalid) << text;
    EXPECT_EQ(outcome(scene.data.DMain().Var_DateFirmware()).flags, kInvalid) << text;
  }
}

TEST(RngSlowChannel, firmware_that_nobody_wants_is_rejected) {
  Scene scene;
  scene.take(Kind::Lane, 1, Support::bytes_of("230514.2"));
  scene.key.KMain().Bar_System_Id();
  scene.take(Kind::Lane, 1, Support::bytes_of("230514.2"));
  EXPECT_EQ(outcome(scene.data.DMain().Var_DevID()).flags, kRejected);
  EXPECT_EQ(outcome(scene.data.DMain().Var_NanoFirmware()).flags, kRejected);
  EXPECT_EQ(outcome(scene.data.DMain().Var_DateFirmware()).flags, kRejected);
}

// Every value of the record, in one run of flags.
std::vector<unsigned char> all_flags(const ComData& data) {
  std::vector<unsigned char> flags;
  const auto add = [&flags](const Lib::Stamp& stamp) { flags.push_back(stamp.get_flags().byte()); };
#define VALUE(name, ...) add(data.DMain().Var_##name());
#include "rng/Rng_ComDataMain.def"
  for (unsigned int target = 0; target < ComData::kTargets; ++target) {
#define VALUE(name, ...) add(data.DTarget(target).Var_##name());
#include "rng/Rng_ComDataTarget.def"
  }
  return flags;
}

TEST(RngSlowChannel, a_channel_that_there_is_not_changes_nothing) {
  const Scene fresh;
  for (int channel = 0; channel < 256; ++channel) {
    Scene range;
    range.take(Kind::Range, static_cast<unsigned char>(channel), Bytes(8, 1));
    const bool is_range = channel <= 22 && channel != 2;
    EXPECT_EQ(all_flags(range.data) != all_flags(fresh.data), is_range) << channel;
    Scene lane;
    lane.take(Kind::Lane, static_cast<unsigned char>(channel), Bytes(8, 1));
    const bool is_lane = channel == 1 || channel == 2 || (channel >= 6 && channel <= 10) ||
                         channel == 15;  // the minutes of channel 0 are no value
    EXPECT_EQ(all_flags(lane.data) != all_flags(fresh.data), is_lane) << channel;
  }
}

TEST(RngSlowChannel, values_take_the_time_of_the_packet) {
  Scene scene;
  scene.data.DMain().Set_Nano(5);
  scene.take(Kind::Range, 8, little(1, 4));
  scene.take(Kind::Range, 15, {1});
  scene.take(Kind::Range, 0, {0, 0, 0, 0, 3, 2});
  EXPECT_EQ(scene.data.DTarget(kTarget).Var_FixedPointLat().get_nano(), 5);
  EXPECT_EQ(scene.data.DMain().Var_Range_CmdChars().get_nano(), 5);
  EXPECT_EQ(scene.data.DTarget(kTarget).Var_PosMode().get_nano(), 5);
  EXPECT_EQ(scene.data.DTarget(kTarget).Var_PosMode().get_flags().byte(), 0);
}

TEST(RngSlowChannel, the_minutes_are_signed_and_the_lowest_is_none) {
  EXPECT_EQ(read_minutes(little(22'900'000, 4).data()), 22'900'000);
  EXPECT_EQ(read_minutes(little(-5, 4).data()), -5);
  EXPECT_EQ(read_minutes(little(std::numeric_limits<int>::min(), 4).data()), -1);
  EXPECT_EQ(read_minutes(little(std::numeric_limits<int>::max(), 4).data()),
            std::numeric_limits<int>::max());
}

}  // namespace
}  // namespace Trel::Rng
