#include "sto/Sto_AccessRng.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "Elements.h"
#include "sto/Sto_Aspect.h"
#include "sto/Sto_Element.h"

namespace Trel::Sto::Test {
namespace {

using testing::ContainerEq;

TEST(AccessRCom, has_exactly_its_818_names) {
  std::multiset<std::string> names;
  AccessRCom::shared().for_each_row([&](const auto& row) { names.insert(row.name); });
  EXPECT_EQ(names.size(), 818U);
  EXPECT_EQ(AccessRCom::shared().size(), 818U) << "each name in one kind only";
  EXPECT_THAT(names, ContainerEq(names_in(TREL_STO_ELEMENTS "/rcom.txt")));
}

TEST(AccessRCom, a_table_of_a_streams_own_is_empty) {
  EXPECT_EQ(AccessRCom(false).size(), 0U);
}

TEST(AccessRCom, every_row_is_described_in_a_sentence) {
  AccessRCom::shared().for_each_row([](const auto& row) {
    const std::string text = row.description;
    EXPECT_GT(text.size(), 10U) << row.name;
    EXPECT_EQ(text.back(), '.') << row.name;
    EXPECT_EQ(text[0], std::toupper(text[0])) << row.name;
    EXPECT_GT(row.resolution, 0.0) << row.name;
  });
}

TEST(AccessRCom, no_two_values_read_alike) {
  std::map<std::string, std::string> described;
  AccessRCom::shared().for_each_row([&](const auto& row) {
    // The targets repeat each other.
    if (row.name.starts_with("Target") && !row.name.starts_with("Target1_")) return;
    const auto [other, fresh] = described.emplace(row.description.str(), row.name);
    EXPECT_TRUE(fresh) << row.name << " reads like " << other->second;
  });
}

TEST(AccessRCom, the_targets_differ_in_nothing_but_the_name) {
  std::map<std::string, std::multiset<std::string>> told;
  AccessRCom::shared().for_each_row([&]<class K>(const AccessRngRow<K>& row) {
    if (!row.name.starts_with("Target")) return;
    const std::string unit = row.unit;
    const std::string description = row.description;
    told[row.name.substr(0, 7)].insert(row.name.substr(7) + '|' + unit + '|' + description + '|' +
                                       std::to_string(row.size) + '|' +
                                       std::to_string(row.decimals) + '|' +
                                       std::to_string(static_cast<int>(row.describe().basic_type)));
  });
  ASSERT_EQ(told.size(), 4U);
  for (const auto& [target, rows] : told) {
    EXPECT_EQ(rows.size(), 148U) << target;  // 818 less 226 without a target, over 4
    EXPECT_THAT(rows, ContainerEq(told["Target1"])) << target;
  }
}

// The count of nodes of a key that are on.
int nodes_on(const Rng::ComKey& key) {
  int count = 0;
#define MAIN(node) count += key.KMain().Get_##node();
#include "rng/Rng_ComKey.def"
  for (unsigned int target = 0; target < 4; ++target) {
#define TARGET(node) count += key.KTarget(target).Get_##node();
#include "rng/Rng_ComKey.def"
  }
  for (unsigned int wrap = 0; wrap < 8; ++wrap) count += key.KWrap(wrap).Get_General();
  return count;
}

struct Tables {
  Rng::ComData data;
  Rng::ComKey key;
};

// The row of that name reads `variable` and turns the node that `asked` asks of `part`, a part of
// the key, and no other.
template <class V, class Part>
void expect_row(Tables& tables, const std::string& prefix, const char* ending, const V& variable,
                const Part& part, bool (Part::*asked)() const) {
  const std::string name = prefix + ending;
  SCOPED_TRACE(name);
  const auto* row = AccessRCom::shared().find<typename KindOf<V>::type>(name);
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(&row->fetch(tables.data), &variable);

  tables.key.Reset(false);
  row->let(tables.key);
  EXPECT_TRUE((part.*asked)());
  EXPECT_EQ(nodes_on(tables.key), 1);
  tables.key.Reset(true);
  const int all = nodes_on(tables.key);
  row->bar(tables.key);
  EXPECT_FALSE((part.*asked)());
  EXPECT_EQ(nodes_on(tables.key), all - 1);
}

TEST(AccessRCom, every_row_reads_its_own_variable_and_turns_its_own_group) {
  const auto tables = std::make_unique<Tables>();
  const std::string none;
  const Rng::DataMain& main = tables->data.DMain();
  const Rng::ComKey::KeyMain& main_key = tables->key.KMain();
#define VALUE(name, type, node, ...) \
  expect_row(*tables, none, #name, main.Var_##name(), main_key, &Rng::ComKey::KeyMain::Get_##node);
#define ARRAY(name, type, count, node, ...) \
  expect_row(*tables, none, #name, main.Var_##name(), main_key, &Rng::ComKey::KeyMain::Get_##node);
#include "rng/Rng_ComDataMain.def"
  for (unsigned int i = 0; i < 4; ++i) {
    const Rng::DataTarget& target = tables->data.DTarget(i);
    const Rng::ComKey::KeyTarget& key = tables->key.KTarget(i);
    const std::string prefix = "Target" + std::to_string(i + 1) + '_';
#define VALUE(name, type, node, ...) \
  expect_row(*tables, prefix, #name, target.Var_##name(), key, &Rng::ComKey::KeyTarget::Get_##node);
#define ARRAY(name, type, count, node, ...) \
  expect_row(*tables, prefix, #name, target.Var_##name(), key, &Rng::ComKey::KeyTarget::Get_##node);
#include "rng/Rng_ComDataTarget.def"
  }
}

TEST(AccessRCom, no_two_rows_share_a_variable) {
  const auto data = std::make_unique<Rng::ComData>();
  std::set<const void*> places;
  AccessRCom::shared().for_each_row([&](const auto& row) { places.insert(&row.fetch(*data)); });
  EXPECT_EQ(places.size(), 818U);
}

TEST(AccessRCom, a_run_tells_its_size_and_its_entries_are_found) {
  const auto data = std::make_unique<Rng::ComData>();
  int runs = 0;
  AccessRCom::shared().for_each_row([&]<class K>(const AccessRngRow<K>& row) {
    EXPECT_EQ(row.describe().is_array, K::kIsArray) << row.name;
    if constexpr (K::kIsArray) {
      ++runs;
      EXPECT_EQ(row.fetch(*data).size(), row.size) << row.name;
    } else {
      EXPECT_EQ(row.size, 1U) << row.name;
    }
  });
  // Of each target 6 of corners and 3 of sensors; of the hunter 6 of corners, and of sensors
  // 12 places and 11 settings.
  EXPECT_EQ(runs, 4 * 9 + 6 + 12 + 11);
}

// The value of every row, as a number that tells it from all others.
template <class Data>
void number_all(Data& part, int first) {
  if constexpr (std::is_same_v<Data, Rng::DataMain>) {
#define VALUE(name, type, ...) part.Hit_##name().put(static_cast<type>(first++));
#define ARRAY(name, type, count, ...) \
  part.Hit_##name().set_data(count - 1, static_cast<type>(first++));
#include "rng/Rng_ComDataMain.def"
  } else {
#define VALUE(name, type, ...) part.Hit_##name().put(static_cast<type>(first++));
#define ARRAY(name, type, count, ...) \
  part.Hit_##name().set_data(count - 1, static_cast<type>(first++));
#include "rng/Rng_ComDataTarget.def"
  }
}

TEST(AccessRCom, every_row_fetches_its_own_number) {
  const auto data = std::make_unique<Rng::ComData>();
  number_all(data->DMain(), 1);
  for (unsigned int target = 0; target < 4; ++target) {
    number_all(data->DTarget(target), 1000 * static_cast<int>(target + 1));
  }
  // What is no wider than a byte can't carry them all, and is held apart by its type.
  std::map<int, std::set<long long>> numbers;
  std::map<int, std::size_t> rows;
  AccessRCom::shared().for_each_row([&]<class K>(const AccessRngRow<K>& row) {
    if constexpr (sizeof(typename K::value_type) > 1) {
      const int kind = static_cast<int>(row.describe().basic_type) * 2 + K::kIsArray;
      ++rows[kind];
      if constexpr (K::kIsArray) {
        numbers[kind].insert(static_cast<long long>(row.fetch(*data).get_data(row.size - 1)));
      } else {
        numbers[kind].insert(static_cast<long long>(row.fetch(*data).get()));
      }
    }
  });
  for (const auto& [kind, count] : rows) EXPECT_EQ(numbers[kind].size(), count) << kind;
}

TEST(AccessRCom, each_sort_of_value_has_its_type) {
  const AccessRCom& table = AccessRCom::shared();
  EXPECT_NE(table.find_Var_t_int64_t("Nano"), nullptr);
  EXPECT_NE(table.find_Var_t_int64_t("NanoFirmware"), nullptr);
  EXPECT_NE(table.find_Var_t_uint32_t("DateFirmware"), nullptr);
  EXPECT_NE(table.find_Var_t_int32_t("TimeUtcOffset"), nullptr);
  EXPECT_NE(table.find_Var_t_uint32_t("TimeWeekCount"), nullptr);
  EXPECT_NE(table.find_Var_t_uint64_t("DevID"), nullptr);
  EXPECT_NE(table.find_Var_t_uint16_t("ProductModel"), nullptr);
  EXPECT_NE(table.find_Var_t_double("Target4_RangeLon"), nullptr);
  EXPECT_NE(table.find_Var_t_uint32_t("Target2_WirelessPkts"), nullptr);
  EXPECT_NE(table.find_Var_t_uint8_t("Target3_Provenance"), nullptr);
  EXPECT_NE(table.find_Arr_t_double("Target1_PolygonPointsPosX"), nullptr);
  EXPECT_NE(table.find_Arr_t_uint64_t("Hunter_SensorPointsID"), nullptr);
  EXPECT_NE(table.find_Arr_t_double("Target1_Range_SensorPointsDist2d"), nullptr);
  EXPECT_EQ(table.find_Var_t_double("Time"), nullptr) << "held, but not offered";
  EXPECT_EQ(table.find_Var_t_double("TimeFromStart"), nullptr);
}

// The unit of a quantity by what its name says it is; empty for a name that says nothing of it.
std::string unit_by_name(const std::string& name) {
  static const std::pair<const char*, const char*> kUnits[] = {{"Heading", "deg"},
                                                               {"Pitch", "deg"},
                                                               {"Roll", "deg"},
                                                               {"Yaw", "deg"},
                                                               {"Angle", "deg"},
                                                               {"PosX", "m"},
                                                               {"PosY", "m"},
                                                               {"PcX", "m"},
                                                               {"PcY", "m"},
                                                               {"ArmX", "m"},
                                                               {"ArmZ", "m"},
                                                               {"Std", "m"},
                                                               {"RefLat", "deg"},
                                                               {"RefLon", "deg"},
                                                               {"PointLat", "deg"},
                                                               {"PointLon", "deg"},
                                                               {"Alt", "m"},
                                                               {"Latency", "s"},
                                                               {"FilterFreq", "Hz"},
                                                               {"Length", "m"},
                                                               {"Nano", "ns"},
                                                               {"TimeWeekSecond", "s"},
                                                               {"VelF", "m/s"},
                                                               {"CpuLoad", "%"},
                                                               {"PointsLon", "m"},
                                                               {"PointsFovVert", "deg"},
                                                               {"RangeMax", "m"},
                                                               {"Dist2d", "m"},
                                                               {"Line1", "m"},
                                                               {"CurvA", "1/m"},
                                                               {"RangeRes", "m"},
                                                               {"RangeRateRes", "m/s"},
                                                               {"RangeAccRes", "m/s^2"},
                                                               {"PrX", "m"},
                                                               {"VrX", "m/s"},
                                                               {"ArX", "m/s^2"}};
  for (const auto& [end, unit] : kUnits) {
    if (name.ends_with(end)) return unit;
  }
  return "";
}

TEST(AccessRCom, a_quantity_has_the_unit_that_its_name_promises) {
  int told = 0;
  AccessRCom::shared().for_each_row([&](const auto& row) {
    const std::string unit = unit_by_name(row.name);
    if (unit.empty()) return;
    ++told;
    EXPECT_EQ(row.unit, unit) << row.name;
  });
  EXPECT_GT(told, 300);
}

TEST(AccessRCom, a_row_tells_unit_resolution_and_text) {
  const auto* row = AccessRCom::shared().find_Var_t_double("Hunter_RefLat");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->unit, "deg");
  EXPECT_EQ(row->decimals, 7);
  EXPECT_EQ(row->converter(), nullptr);
  EXPECT_EQ(row->describe().basic_type, Enum::BASIC_TYPE_double);
}

TEST(AccessRCom, addresses_and_firmware_read_as_text) {
  const AccessRCom& table = AccessRCom::shared();
  for (const char* name : {"Target1_IPv4Adr", "Target4_AddressIPv4", "Range_IPv4Adr",
                           "Hunter_IPv4Adr", "Hunter_AddressIPv4"}) {
    const auto* row = table.find_Var_t_uint32_t(name);
    ASSERT_NE(row, nullptr) << name;
    ASSERT_NE(row->converter(), nullptr) << name;
    EXPECT_EQ(row->converter()(0x0A01A8C0), "192.168.1.10") << name;  // C0 is 192, A8 is 168
  }
  // '2' is 0x32, '1' is 0x31; the first character stands lowest.
  EXPECT_EQ(table.find_Var_t_uint64_t("DevID")->converter()(0x3132), "21");
}

TEST(AccessRCom, an_enumerated_value_reads_as_its_members_string) {
  const auto* mode = AccessRCom::shared().find_Var_t_uint8_t("Target1_ModeStatus");
  ASSERT_NE(mode, nullptr);
  ASSERT_NE(mode->converter(), nullptr);
  EXPECT_EQ(mode->converter()(4), "Unknown");
  EXPECT_EQ(mode->converter()(255), "Unknown");
  for (const char* name : {"Target1_PosMode", "Hunter_PosMode", "Target2_Provenance",
                           "Hunter_Provenance", "Target1_MeasPlane", "Target1_StaticTargetType"}) {
    const auto* row = AccessRCom::shared().find_Var_t_uint8_t(name);
    ASSERT_NE(row, nullptr) << name;
    EXPECT_NE(row->converter(), nullptr) << name;
  }
  EXPECT_EQ(AccessRCom::shared().find_Var_t_double("Target1_RangeLon")->converter(), nullptr);
}

TEST(AccessRCom, the_time_of_a_record_is_its_nano) {
  const auto data = std::make_unique<Rng::ComData>();
  EXPECT_EQ(&AccessRCom::time_of(*data), &data->DMain().Var_Nano());
}

TEST(SystemOfRCom, lets_the_group_of_each_element_in_every_store) {
  System<AccessRCom> system(0);
  system.expand(2);
  const AccessRCom& table = AccessRCom::shared();
  system.add_element_Var_t_double(*table.find_Var_t_double("Target3_RangeLon"), 0, 0);
  system.add_element_Arr_t_double(*table.find_Arr_t_double("Hunter_SensorPointsLon"), 1, 0);
  Rng::ComKey key;
  key.Reset(false);

  system.let(key);

  EXPECT_TRUE(key.KTarget(2).Get_General_Range());
  EXPECT_TRUE(key.KMain().Get_Hunter_Config_Sensor());
  EXPECT_EQ(nodes_on(key), 2);
}

TEST(SystemOfRCom, copies_values_and_runs_with_their_stamps) {
  const auto data = std::make_unique<Rng::ComData>();
  data->DMain().Set_Nano(1'000);
  data->ShareNano();
  data->DTarget(1).Set_RangeLon(12.5);
  data->DTarget(1).Hit_RangeLon().setOver();
  data->DTarget(1).Set_PolygonPointsLon(0, 1.5);
  data->DTarget(1).Set_PolygonPointsLon(255, -1.5);
  const AccessRCom& table = AccessRCom::shared();
  System<AccessRCom> system(0);
  system.expand(1);
  system.add_element_Var_t_double(*table.find_Var_t_double("Target2_RangeLon"), 0, 0);
  system.add_element_Arr_t_double(*table.find_Arr_t_double("Target2_PolygonPointsLon"), 0, 1);
  Datum datum;
  datum.array<double>().resize(1 + 256);

  system.var1(0, datum, *data);

  const Array<double>& copied = datum.array<double>();
  EXPECT_EQ(copied.value(0), 12.5);
  EXPECT_EQ(copied.flags(0).byte(), 0x08);
  EXPECT_EQ(copied.nano(0), 1'000);
  EXPECT_EQ(copied.value(1), 1.5);
  EXPECT_TRUE(copied.flags(1).good());
  EXPECT_FALSE(copied.flags(2).ok());
  EXPECT_EQ(copied.value(256), -1.5);
  EXPECT_EQ(copied.nano(256), 1'000);
}

// What a client gets who asks for `index` of that run, or for all of it with -1.
std::vector<DestinationNode> chosen(const std::string& name, int index, std::vector<Result>& out) {
  const auto data = std::make_unique<Rng::ComData>();
  data->DTarget(1).Set_PolygonPointsLon(5, 1.5);
  System<AccessRCom> system(0);
  system.expand(1);
  system.add_element_Arr_t_double(*AccessRCom::shared().find_Arr_t_double(name), 0, 0);
  Datum datum;
  datum.array<double>().resize(256);
  system.var1(0, datum, *data);
  StoreLeaf leaf;
  ValueText<double> text = nullptr;
  EXPECT_TRUE(system.use_element_Arr_t_double(leaf, text, name, 0));
  Aspect aspect;
  EXPECT_TRUE(aspect.add_element<double>(leaf, text, 0, index));
  out.assign(aspect.destinations().size(), Result());
  datum.get(aspect.store(0), out);
  return aspect.destinations();
}

TEST(SystemOfRCom, one_entry_of_a_run_is_selected_by_its_index) {
  std::vector<Result> out;
  const auto entries = chosen("Target2_PolygonPointsLon", 5, out);
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].name, "Target2_PolygonPointsLon[5]");
  EXPECT_EQ(static_cast<double>(out[0]), 1.5);
  EXPECT_TRUE(out[0].ok());
  chosen("Target2_PolygonPointsLon", 6, out);
  EXPECT_FALSE(out[0].ok());
}

TEST(SystemOfRCom, a_run_is_selected_with_all_its_entries) {
  std::vector<Result> out;
  const auto entries = chosen("Target2_PolygonPointsLon", -1, out);
  ASSERT_EQ(entries.size(), 256U);
  EXPECT_EQ(entries[255].name, "Target2_PolygonPointsLon[255]");
  for (std::size_t i = 0; i < out.size(); ++i) EXPECT_EQ(out[i].ok(), i == 5) << i;
}

}  // namespace
}  // namespace Trel::Sto::Test
