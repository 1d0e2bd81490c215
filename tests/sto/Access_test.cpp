#include "sto/Sto_Access.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Fakes.h"
#include "sto/Sto_AccessUCom.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;

using Table = AccessTable<FakeRow>;

template <class K>
void add(Table& table, const std::string& name, const std::string& description = "") {
  InfoProps props = info(name);
  props.description = description;
  table.add(FakeRow<K>(props), 0);
}

TEST(AccessTable, a_new_table_is_empty) {
  const Table table;
  EXPECT_EQ(table.size(), 0U);
  EXPECT_EQ(table.find_Var_t_float("A"), nullptr);
}

TEST(AccessTable, rows_take_ids_in_order_of_adding_whatever_their_kind) {
  Table table;
  add<Var_t<double>>(table, "Z");
  add<Arr_t<float>>(table, "Y");
  add<Var_t<float>>(table, "A");
  EXPECT_EQ(table.size(), 3U);
  EXPECT_EQ(table.find_Var_t_double("Z")->pointer_id, 0U);
  EXPECT_EQ(table.find_Arr_t_float("Y")->pointer_id, 1U);
  EXPECT_EQ(table.find_Var_t_float("A")->pointer_id, 2U);
}

TEST(AccessTable, each_kind_finds_only_its_own_rows) {
  Table table;
  for_each_kind([&]<class K>(std::type_identity<K>) { add<K>(table, "Same"); });
  EXPECT_EQ(table.size(), 22U);
  unsigned int id = 0;
#define TREL_FOUND(kind, K)                                        \
  {                                                                \
    const FakeRow<K>* row = table.find_##kind("Same");             \
    ASSERT_NE(row, nullptr) << #kind;                              \
    EXPECT_EQ(row->pointer_id, id++) << #kind;                     \
    EXPECT_EQ(table.find_##kind("same"), nullptr) << "exact name"; \
  }
  TREL_ELEMENT_KINDS(TREL_FOUND)
#undef TREL_FOUND

  Table other;
  add<Var_t<float>>(other, "A");
  EXPECT_EQ(other.find_Var_t_double("A"), nullptr);
  EXPECT_EQ(other.find_Arr_t_float("A"), nullptr);
}

TEST(AccessTable, the_first_row_of_a_name_stands_and_a_second_costs_no_id) {
  Table table;
  add<Var_t<float>>(table, "A", "first");
  add<Var_t<float>>(table, "A", "second");
  EXPECT_EQ(table.size(), 1U);
  add<Var_t<float>>(table, "B");
  EXPECT_EQ(table.find_Var_t_float("A")->description, "first");
  EXPECT_EQ(table.find_Var_t_float("A")->pointer_id, 0U);
  EXPECT_EQ(table.find_Var_t_float("B")->pointer_id, 1U);
}

TEST(AccessTable, the_1000th_row_is_kept_and_the_1001st_dropped) {
  Table table;
  for (int row = 0; row < 1001; ++row) {
    if (row % 2 == 0) {
      add<Var_t<float>>(table, std::to_string(row));
    } else {
      add<Arr_t<int>>(table, std::to_string(row));  // the limit is the table's, not a kind's
    }
  }
  EXPECT_EQ(table.size(), 1000U);
  ASSERT_NE(table.find_Arr_t_int32_t("999"), nullptr);
  EXPECT_EQ(table.find_Arr_t_int32_t("999")->pointer_id, 999U);
  EXPECT_EQ(table.find_Var_t_float("1000"), nullptr);
}

TEST(AccessTable, a_row_stays_where_it_is_when_others_come) {
  Table table;
  add<Var_t<float>>(table, "M");
  const FakeRow<Var_t<float>>* row = table.find_Var_t_float("M");
  for (int other = 0; other < 999; ++other) add<Var_t<float>>(table, std::to_string(other));
  EXPECT_EQ(table.find_Var_t_float("M"), row);
}

TEST(AccessTable, ids_go_on_behind_the_table_in_front) {
  Table table;
  table.add(FakeRow<Var_t<float>>(info("A")), 6);
  table.add(FakeRow<Var_t<float>>(info("B")), 6);
  EXPECT_EQ(table.find_Var_t_float("A")->pointer_id, 6U);
  EXPECT_EQ(table.find_Var_t_float("B")->pointer_id, 7U);
  EXPECT_EQ(table.size(), 2U);
}

TEST(AccessTable, a_walk_goes_kind_by_kind) {
  Table table;
  add<Arr_t<float>>(table, "A");
  add<Var_t<int>>(table, "C");
  add<Var_t<int>>(table, "B");
  add<Var_t<float>>(table, "D");
  std::vector<std::string> names;
  table.for_each_row([&](const auto& row) { names.push_back(row.name); });
  EXPECT_THAT(names, ElementsAre("D", "B", "C", "A"));
}

TEST(AccessRow, tells_its_type_and_its_converter) {
  const ValueText<int> text = [](int) -> std::string { return "x"; };
  const FakeRow<Arr_t<int>> row(info("A", 5), text);
  EXPECT_EQ(row.converter(), text);
  EXPECT_EQ(row.describe().basic_type, Enum::BASIC_TYPE_int32_t);
  EXPECT_TRUE(row.describe().is_array);
  EXPECT_EQ(row.describe().size, 5U);
  EXPECT_EQ(FakeRow<Var_t<int>>(info("B")).converter(), nullptr);
  EXPECT_FALSE(FakeRow<Var_t<int>>(info("B")).describe().is_array);
}

TEST(AccessUCom, has_nothing_built_in) {
  EXPECT_EQ(AccessUCom::shared().size(), 0U);
  EXPECT_EQ(AccessUCom(true).size(), 0U);
  EXPECT_EQ(&AccessUCom::shared(), &AccessUCom::shared());
}

// What a stream finds: the table that all of its kind share stands before its own.

TEST(StreamTables, a_signal_named_like_a_built_in_row_gets_the_built_in_row) {
  FakeStore store;
  FakeStream& stream = store.stream();
  InfoProps own = info("Builtin");
  own.description = "The stream's own.";
  stream.element<Var_t<unsigned char>>(own);
  ASSERT_EQ(store.direct_add_element(0, "Builtin"), Enum::RETURN_TYPE_NORMAL);
  EXPECT_EQ(stream.sum_element_Var_t_uint8_t(0).description, "The built-in one.");
}

TEST(StreamTables, the_stream_s_own_table_is_asked_next) {
  FakeStore store;
  store.stream().element<Var_t<unsigned char>>(info("Own"));
  EXPECT_EQ(store.direct_add_element(0, "Own"), Enum::RETURN_TYPE_NORMAL);
}

TEST(StreamTables, an_earlier_kind_wins_even_against_a_built_in_row) {
  FakeStore store;
  FakeStream& stream = store.stream();
  stream.element<Var_t<float>>(info("Builtin"));  // built in as uint8
  ASSERT_EQ(store.direct_add_element(0, "Builtin"), Enum::RETURN_TYPE_NORMAL);
  EXPECT_TRUE(stream.hit_element_Var_t_float(0, "Builtin"));
  EXPECT_FALSE(stream.hit_element_Var_t_uint8_t(0, "Builtin"));
}

}  // namespace
}  // namespace Trel::Sto::Test
