#include "sto/Sto_AccessNav.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "Elements.h"
#include "sto/Sto_Element.h"

namespace Trel::Sto::Test {
namespace {

using Nav::Family;
using Key = Nav::ComKey;

using testing::ContainerEq;

template <class A>
std::multiset<std::string> names_of(const A& table) {
  std::multiset<std::string> names;
  table.for_each_row([&](const auto& row) { names.insert(row.name); });
  return names;
}

TEST(AccessNCom, has_exactly_its_667_names) {
  const auto names = names_of(AccessNCom::shared());
  EXPECT_EQ(names.size(), 667U);
  EXPECT_EQ(AccessNCom::shared().size(), 667U) << "each name in one kind only";
  EXPECT_THAT(names, ContainerEq(names_in(TREL_STO_ELEMENTS "/ncom.txt")));
}

TEST(AccessMCom, has_exactly_its_626_names) {
  const auto names = names_of(AccessMCom::shared());
  EXPECT_EQ(names.size(), 626U);
  EXPECT_EQ(AccessMCom::shared().size(), 626U);
  EXPECT_THAT(names, ContainerEq(names_in(TREL_STO_ELEMENTS "/mcom.txt")));
}

TEST(AccessNav, a_table_of_a_streams_own_is_empty) {
  EXPECT_EQ(AccessNCom(false).size(), 0U);
  EXPECT_EQ(AccessMCom(false).size(), 0U);
}

TEST(AccessNav, every_row_is_described_in_a_sentence) {
  AccessNCom::shared().for_each_row([](const auto& row) {
    const std::string& text = row.description;
    EXPECT_GT(text.size(), 10U) << row.name;
    EXPECT_EQ(text.back(), '.') << row.name;
    EXPECT_EQ(text[0], std::toupper(text[0])) << row.name;
    EXPECT_GT(row.resolution, 0.0) << row.name;
    EXPECT_EQ(row.size, 1U) << row.name;
  });
}

TEST(AccessNav, no_two_values_of_one_table_read_alike) {
  std::map<std::string, std::string> described;
  AccessNCom::shared().for_each_row([&](const auto& row) {
    // Receivers and points repeat each other, and the unit's supply is told from a receiver's.
    if (row.name.find('_') != std::string::npos) return;
    const auto [other, fresh] = described.emplace(row.description.str(), row.name);
    EXPECT_TRUE(fresh) << row.name << " reads like " << other->second;
  });
}

// Counts the nodes of a key that are on.
int nodes_on(const Nav::ComKey& key) {
  int count = 0;
#define MAIN(node) count += key.KMain().Get_##node();
#include "nav/Nav_ComKey.def"
  for (unsigned int gps = 0; gps < 3; ++gps) {
#define GPS(node) count += key.KGps(gps).Get_##node();
#include "nav/Nav_ComKey.def"
  }
  for (unsigned int point = 0; point < 8; ++point) {
#define POINT(node) count += key.KMeasurePt(point).Get_##node();
#include "nav/Nav_ComKey.def"
  }
  return count;
}

void all_off(Nav::ComKey& key) {
  key.Reset(false);
  key.KMain().Bar_Status();
  key.KMain().Bar_System_Id();
  key.KMain().Bar_Time();
}

struct Tables {
  Nav::ComData data;
  Nav::ComKey key;
};

// The row of that name reads `variable` and turns the node that `asked` asks of `part`, a part of
// the key, and no other.
template <class T, class A, class Part>
void expect_row(const A& table, Tables& tables, const std::string& name,
                const Lib::VariableExt<T>& variable, const Part& part,
                bool (Part::*asked)() const) {
  SCOPED_TRACE(name);
  const auto* row = table.template find<Var_t<T>>(name);
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(&row->fetch(tables.data), &variable);

  all_off(tables.key);
  row->let(tables.key);
  EXPECT_TRUE((part.*asked)());
  EXPECT_EQ(nodes_on(tables.key), 1);
  tables.key.Reset(true);
  row->bar(tables.key);
  EXPECT_FALSE((part.*asked)());
  EXPECT_EQ(nodes_on(tables.key), 171 + 3 * 8 + 8 * 6 - 1);
}

template <class A>
void expect_rows(const A& table, Family family) {
  const auto tables = std::make_unique<Tables>();
  const Nav::ComData& data = tables->data;
  const Key::KeyMain& main_key = tables->key.KMain();
#define VALUE(name, type, node, unit, resolution, text, families, description) \
  if (Nav::carries(families, family)) {                                        \
    expect_row<type>(table, *tables, #name, data.Var##name(), main_key,        \
                     &Key::KeyMain::Get_##node);                               \
  }
#include "nav/Nav_ComData.def"
  const std::map<std::string, unsigned int> receivers = {
      {"GpsInt1_", 0}, {"GpsExt1_", 1}, {"GpsInt2_", 2}};
  for (const auto& [prefix, place] : receivers) {
    const Nav::ComDataGps& receiver = data.DGps(place);
    const Key::KeyGps& key = tables->key.KGps(place);
#define VALUE(name, type, node, unit, resolution, text, families, description)  \
  if (Nav::carries(families, family)) {                                         \
    expect_row<type>(table, *tables, prefix + #name, receiver.Var##name(), key, \
                     &Key::KeyGps::Get_##node);                                 \
  }
#include "nav/Nav_ComDataGps.def"
  }
  for (unsigned int place = 0; place < 8; ++place) {
    const std::string prefix = "MeasPt" + std::to_string(place + 1) + '_';
    const Nav::ComDataMeasurePt& point = data.DMeasurePt(place);
    const Key::KeyMeasurePt& key = tables->key.KMeasurePt(place);
#define VALUE(name, type, node, unit, resolution, text, families, description) \
  if (Nav::carries(families, family)) {                                        \
    expect_row<type>(table, *tables, prefix + #name, point.Var##name(), key,   \
                     &Key::KeyMeasurePt::Get_##node);                          \
  }
#include "nav/Nav_ComDataMeasurePt.def"
  }
}

TEST(AccessNCom, every_row_reads_its_own_variable_and_turns_its_own_group) {
  expect_rows(AccessNCom::shared(), Family::NCom);
}

TEST(AccessMCom, every_row_reads_its_own_variable_and_turns_its_own_group) {
  expect_rows(AccessMCom::shared(), Family::MCom);
}

TEST(AccessNCom, a_row_tells_unit_resolution_and_text) {
  const auto* row = AccessNCom::shared().find_Var_t_double("Lat");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->unit, "deg");
  EXPECT_EQ(row->decimals, 9);
  EXPECT_EQ(row->converter(), nullptr);
  EXPECT_EQ(row->describe().basic_type, Enum::BASIC_TYPE_double);
  EXPECT_FALSE(row->describe().is_array);
}

TEST(AccessNCom, each_sort_of_value_has_its_type) {
  const AccessNCom& table = AccessNCom::shared();
  EXPECT_NE(table.find_Var_t_int64_t("Nano"), nullptr);
  EXPECT_NE(table.find_Var_t_int64_t("Trig1FallNano"), nullptr);
  EXPECT_NE(table.find_Var_t_double("Heading"), nullptr);
  EXPECT_NE(table.find_Var_t_uint32_t("GpsInt2_Chars"), nullptr);
  EXPECT_NE(table.find_Var_t_uint8_t("InsNavMode"), nullptr);
  EXPECT_NE(table.find_Var_t_uint16_t("ProductModel"), nullptr);
  EXPECT_NE(table.find_Var_t_bool("SBASEnabled"), nullptr);
  EXPECT_NE(table.find_Var_t_uint64_t("DevID"), nullptr);
  EXPECT_NE(table.find_Var_t_int32_t("WSpeedCount"), nullptr);
  EXPECT_NE(table.find_Var_t_uint32_t("DateFirmware"), nullptr);
}

TEST(AccessNCom, an_enumerated_value_reads_as_its_members_string) {
  const auto text = AccessNCom::shared().find_Var_t_uint8_t("InsNavMode")->converter();
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text(4), "Real-Time");
  EXPECT_EQ(text(23), "Unknown");
  EXPECT_EQ(text(255), "Unknown");
  const auto type = AccessNCom::shared().find_Var_t_uint8_t("LinJerkFiltType")->converter();
  EXPECT_EQ(type(1), "Butterworth");
  EXPECT_EQ(type(5), "") << "in range, and no member";
}

TEST(AccessNCom, packed_characters_read_as_text) {
  const auto text = AccessNCom::shared().find_Var_t_uint64_t("DevID")->converter();
  ASSERT_NE(text, nullptr);
  // '2' is 0x32, '1' is 0x31; the first character stands lowest.
  EXPECT_EQ(text(0x3132), "21");
  EXPECT_EQ(text(0x3938373635343332), "23456789");
  EXPECT_EQ(text(0x7FB20A31), "1???") << "what does not print";
  EXPECT_EQ(text(0), "");
  const auto station = AccessNCom::shared().find_Var_t_uint32_t("BaseStationID")->converter();
  EXPECT_EQ(station(0x44434241), "ABCD");
}

TEST(AccessNCom, a_network_address_reads_with_dots) {
  const auto text = AccessNCom::shared().find_Var_t_uint32_t("WiFiIPAddress")->converter();
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text(0x0A01A8C0), "192.168.1.10");  // C0 is 192, A8 is 168
  EXPECT_EQ(text(0xFFFFFFFF), "255.255.255.255");
}

TEST(AccessNav, the_time_of_a_record_is_its_nano) {
  const auto data = std::make_unique<Nav::ComData>();
  EXPECT_EQ(&AccessNCom::time_of(*data), &data->VarNano());
}

TEST(SystemOfNCom, lets_the_group_of_each_element_in_every_store) {
  System<AccessNCom> system(0);
  system.expand(2);
  const AccessNCom& table = AccessNCom::shared();
  system.add_element_Var_t_double(*table.find_Var_t_double("Lat"), 0, 0);
  system.add_element_Var_t_double(*table.find_Var_t_double("MeasPt8_Slip"), 1, 0);
  system.add_element_Var_t_uint32_t(*table.find_Var_t_uint32_t("GpsExt1_Chars"), 1, 0);
  Nav::ComKey key;
  all_off(key);

  system.let(key);

  EXPECT_TRUE(key.KMain().Get_Pos());
  EXPECT_TRUE(key.KMeasurePt(7).Get_Slip());
  EXPECT_TRUE(key.KGps(1).Get_Stats_Received());
  EXPECT_EQ(nodes_on(key), 3);
}

TEST(SystemOfNCom, lets_nothing_for_a_store_that_is_gone) {
  System<AccessNCom> system(0);
  system.expand(2);
  system.add_element_Var_t_double(*AccessNCom::shared().find_Var_t_double("Lat"), 1, 0);
  system.expand(1);
  Nav::ComKey key;
  all_off(key);
  system.let(key);
  EXPECT_EQ(nodes_on(key), 0);
}

TEST(SystemOfNCom, copies_values_with_their_stamps) {
  const auto data = std::make_unique<Nav::ComData>();
  data->SetNano(1'000);
  data->ShareNano();
  data->DGps(1).SetCoreTemp(41.0);
  data->SetLat(52.0);
  data->HitLat().setApprox();
  const AccessNCom& table = AccessNCom::shared();
  EXPECT_EQ(table.find_Var_t_double("GpsExt1_CoreTemp")->fetch(*data).get(), 41.0);
  EXPECT_EQ(table.find_Var_t_double("GpsExt1_CoreTemp")->fetch(*data).get_nano(), 1'000);
  EXPECT_EQ(table.find_Var_t_double("Lat")->fetch(*data).get_flags().byte(), 0x02);
  EXPECT_FALSE(table.find_Var_t_double("GpsInt1_CoreTemp")->fetch(*data).ok());
}

}  // namespace
}  // namespace Trel::Sto::Test
