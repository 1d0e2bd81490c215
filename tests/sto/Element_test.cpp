#include "sto/Sto_Element.h"

#include <gtest/gtest.h>

#include "Fakes.h"

namespace Trel::Sto::Test {
namespace {

using FakeSystem = System<FakeAccess>;

template <class K>
const FakeRow<K>& row(const std::string& name) {
  static std::map<std::string, FakeRow<K>> rows;
  return rows.try_emplace(name, info(name, K::kIsArray ? kArraySize : 1)).first->second;
}

FakeSystem system_of(unsigned int stores, unsigned int mode = 0) {
  FakeSystem system(mode);
  system.expand(stores);
  return system;
}

TEST(System, knows_an_element_once_it_has_been_added) {
  FakeSystem system = system_of(2);
  EXPECT_FALSE(system.hit_element_Var_t_float("A"));
  system.add_element_Var_t_float(row<Var_t<float>>("A"), 1, 0);
  EXPECT_TRUE(system.hit_element_Var_t_float("A"));
  EXPECT_FALSE(system.hit_element_Var_t_float("B"));
}

TEST(System, keeps_the_22_kinds_apart) {
  for_each_kind([]<class Added>(std::type_identity<Added>) {
    FakeSystem system = system_of(1);
    system.add_element<Added>(row<Added>("A"), 0, 0);
#define TREL_CHECK(kind, K) \
  EXPECT_EQ(system.hit_element_##kind("A"), (std::is_same_v<Added, K>)) << #kind;
    TREL_ELEMENT_KINDS(TREL_CHECK)
#undef TREL_CHECK
  });
}

TEST(System, describes_an_element_on_all_levels) {
  FakeSystem system = system_of(3, 1);
  InfoProps props("A", 5, nullptr, "m", "Text.", 0.5, 1.0, 2.0, 3.0, 4.0);
  FakeAccess table(false);
  const ValueText<int> text = [](int) -> std::string { return "x"; };
  table.add(FakeRow<Var_t<int>>(info("first")), 0);
  table.add(FakeRow<Arr_t<int>>(props, text), 0);
  system.add_element_Arr_t_int32_t(*table.find_Arr_t_int32_t("A"), 2, 40);

  StoreLeaf leaf;
  ValueText<int> fn = nullptr;
  ASSERT_TRUE(system.use_element_Arr_t_int32_t(leaf, fn, "A", 9));

  EXPECT_EQ(leaf.name, "A");
  EXPECT_EQ(leaf.size, 5U);
  EXPECT_EQ(leaf.unit, "m");
  EXPECT_EQ(leaf.resolution, 0.5);
  EXPECT_EQ(leaf.pointer_id, 1U);
  EXPECT_EQ(leaf.basic_type, Enum::BASIC_TYPE_int32_t);
  EXPECT_TRUE(leaf.is_array);
  EXPECT_EQ(leaf.stream_id, 9U);
  EXPECT_EQ(leaf.mode_id, 1U);
  EXPECT_EQ(leaf.store_id, 2U);
  EXPECT_EQ(leaf.offset, 40U);
  EXPECT_EQ(fn, text);
}

TEST(System, an_unknown_name_leaves_leaf_and_converter_alone) {
  FakeSystem system = system_of(1);
  system.add_element_Var_t_int32_t(row<Var_t<int>>("A"), 0, 0);
  StoreLeaf leaf;
  const ValueText<int> text = [](int) -> std::string { return "x"; };
  ValueText<int> fn = text;
  EXPECT_FALSE(system.use_element_Var_t_int32_t(leaf, fn, "B", 9));
  EXPECT_EQ(leaf.name, "?");
  EXPECT_EQ(fn, text);
}

TEST(System, the_first_match_in_order_of_the_stores_is_used) {
  FakeSystem system = system_of(2);
  system.add_element_Var_t_float(row<Var_t<float>>("A"), 1, 10);
  system.add_element_Var_t_float(row<Var_t<float>>("A"), 0, 20);
  system.add_element_Var_t_float(row<Var_t<float>>("A"), 0, 30);
  StoreLeaf leaf;
  ValueText<float> fn = nullptr;
  ASSERT_TRUE(system.use_element_Var_t_float(leaf, fn, "A", 0));
  EXPECT_EQ(leaf.store_id, 0U);
  EXPECT_EQ(leaf.offset, 20U);
}

TEST(System, the_sum_is_the_element_added_last_of_its_kind_in_any_store) {
  FakeSystem system = system_of(2, 1);
  system.add_element_Var_t_float(row<Var_t<float>>("A"), 1, 10);
  system.add_element_Var_t_float(row<Var_t<float>>("B"), 0, 20);
  system.add_element_Var_t_double(row<Var_t<double>>("C"), 1, 30);
  const StoreLeaf leaf = system.sum_element_Var_t_float(4);
  EXPECT_EQ(leaf.name, "B");
  EXPECT_EQ(leaf.stream_id, 4U);
  EXPECT_EQ(leaf.mode_id, 1U);
  EXPECT_EQ(leaf.store_id, 0U);
  EXPECT_EQ(leaf.offset, 20U);
}

TEST(System, expanding_to_fewer_stores_shrinks_the_list) {
  FakeSystem system = system_of(3);
  system.add_element_Var_t_float(row<Var_t<float>>("A"), 0, 0);
  system.add_element_Var_t_float(row<Var_t<float>>("C"), 2, 0);
  system.expand(1);
  EXPECT_TRUE(system.hit_element_Var_t_float("A"));
  EXPECT_FALSE(system.hit_element_Var_t_float("C"));
  system.expand(3);  // what was dropped does not come back
  EXPECT_FALSE(system.hit_element_Var_t_float("C"));
}

TEST(System, expanding_keeps_the_elements_of_the_stores_that_stay) {
  FakeSystem system = system_of(1);
  system.add_element_Arr_t_bool(row<Arr_t<bool>>("A"), 0, 0);
  system.expand(7);
  EXPECT_TRUE(system.hit_element_Arr_t_bool("A"));
  system.add_element_Arr_t_bool(row<Arr_t<bool>>("B"), 6, 0);
  EXPECT_TRUE(system.hit_element_Arr_t_bool("B"));
}

TEST(System, clearing_forgets_the_elements_and_keeps_the_stores) {
  FakeSystem system = system_of(2);
  for_each_kind([&]<class K>(std::type_identity<K>) { system.add_element<K>(row<K>("A"), 1, 0); });
  system.clear();
  for_each_kind([&]<class K>(std::type_identity<K>) {
    EXPECT_FALSE(system.hit_element<K>("A"));
    EXPECT_EQ(system.sum_element<K>(0).name, "?");
  });
  system.add_element_Var_t_float(row<Var_t<float>>("A"), 1, 0);
  EXPECT_TRUE(system.hit_element_Var_t_float("A"));
}

TEST(System, copies_each_value_of_a_store_with_flags_and_time_to_its_place) {
  FakeSystem system = system_of(2);
  Datum datum;
  FakeData data;
  system.add_element_Var_t_double(row<Var_t<double>>("A"), 1, 2);
  datum.array<double>().resize(4);
  data.set(1.5, 77);
  data.value<Var_t<double>>().setOver();

  system.var1(1, datum, data);

  EXPECT_EQ(datum.array<double>().value(2), 1.5);
  EXPECT_EQ(datum.array<double>().nano(2), 77);
  EXPECT_EQ(datum.array<double>().flags(2).byte(), Lib::Flags::Over);
  for (const std::size_t other : {0, 1, 3}) {
    EXPECT_EQ(datum.array<double>().value(other), 0.0);
    EXPECT_EQ(datum.array<double>().nano(other), 0);
  }
}

TEST(System, copies_nothing_of_another_store) {
  FakeSystem system = system_of(2);
  Datum datum;
  FakeData data;
  system.add_element_Var_t_double(row<Var_t<double>>("A"), 1, 0);
  datum.array<double>().resize(1);
  data.set(1.5, 77);
  system.var1(0, datum, data);
  EXPECT_EQ(datum.array<double>().value(0), 0.0);
}

TEST(System, copies_every_kind) {
  FakeSystem system = system_of(1);
  Datum datum;
  FakeData data;
  for_each_kind([&]<class K>(std::type_identity<K>) {
    using T = typename K::value_type;
    system.add_element<K>(row<K>("A"), 0, K::kIsArray ? 1 : 0);
    datum.array<T>().resize(1 + kArraySize);
    if constexpr (K::kIsArray) {
      data.set_array(static_cast<T>(10), 9);
    } else {
      data.set(static_cast<T>(5), 8);
    }
  });

  system.var1(0, datum, data);

  for_each_kind([&]<class K>(std::type_identity<K>) {
    using T = typename K::value_type;
    const Array<T>& array = datum.array<T>();
    EXPECT_EQ(array.value(0), static_cast<T>(5));
    EXPECT_EQ(array.nano(0), 8);
    for (std::size_t i = 0; i < kArraySize; ++i) {
      EXPECT_EQ(array.value(1 + i), static_cast<T>(static_cast<T>(10) + static_cast<T>(i)));
      EXPECT_EQ(array.nano(1 + i), 9);
      EXPECT_TRUE(array.flags(1 + i).good());
    }
  });
}

TEST(SystemDeathTest, an_element_for_a_store_that_does_not_exist_stops_the_program) {
  FakeSystem system = system_of(2);
  EXPECT_DEATH(system.add_element_Var_t_float(row<Var_t<float>>("A"), 2, 0),
               "Test : store_id < stores.size\\(\\)");
  FakeSystem none(0);
  EXPECT_DEATH(none.add_element_Var_t_float(row<Var_t<float>>("A"), 0, 0),
               "Test : store_id < stores.size\\(\\)");
}

TEST(SystemDeathTest, copying_a_store_that_does_not_exist_stops_the_program) {
  const FakeSystem system = system_of(2);
  Datum datum;
  EXPECT_DEATH(system.var1(2, datum, FakeData()), "Test : store_id < stores.size\\(\\)");
}

}  // namespace
}  // namespace Trel::Sto::Test
