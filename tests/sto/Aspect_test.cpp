#include "sto/Sto_Aspect.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Fakes.h"

namespace Trel::Sto::Test {
namespace {

using testing::ElementsAre;

template <class K>
StoreLeaf leaf_of(const std::string& name, unsigned int size, unsigned int offset,
                  IndexLabel label = nullptr, unsigned int store = 0) {
  const FakeRow<K> row(info(name, size, label));
  return StoreLeaf(ElementNode(row.describe(), 0U), 0U, store, offset);
}

std::string letter(unsigned long long index) {
  return std::string(1, static_cast<char>('a' + index));
}

constexpr std::string (*kNoText)(int) = nullptr;

TEST(Array, resizing_clears_every_entry) {
  Array<int> array;
  array.resize(2);
  array.set(1, 5, Lib::Flags(0), 9);
  array.resize(3);
  ASSERT_EQ(array.size(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(array.value(i), 0);
    EXPECT_EQ(array.flags(i).byte(), 0x80);
    EXPECT_EQ(array.nano(i), 0);
  }
}

TEST(Array, growing_keeps_what_stands) {
  Array<bool> array;
  array.resize(1);
  array.set(0, true, Lib::Flags(Lib::Flags::Stale), 9);
  array.grow(2);
  ASSERT_EQ(array.size(), 3U);
  EXPECT_TRUE(array.value(0));
  EXPECT_EQ(array.flags(0).byte(), Lib::Flags::Stale);
  EXPECT_EQ(array.nano(0), 9);
  EXPECT_FALSE(array.value(2));
  EXPECT_EQ(array.flags(2).byte(), 0x80);
  array.grow(0);
  EXPECT_EQ(array.size(), 3U);
}

TEST(Datum, a_new_one_is_empty_in_every_type) {
  const Datum datum;
#define TREL_CHECK(suffix, T) EXPECT_EQ(datum.array<T>().size(), 0U);
  TREL_ELEMENT_TYPES(TREL_CHECK)
#undef TREL_CHECK
}

TEST(Datum, a_scalar_goes_to_its_place_in_the_array_of_its_type) {
  Datum datum;
  datum.array<float>().resize(2);
  datum.array<double>().resize(2);
  Lib::VariableExt<float> source;
  source.set(2.5F, FakeData::stamp_at(9));
  source.setInvalid();
  datum.set(1, source);
  EXPECT_EQ(datum.array<float>().value(1), 2.5F);
  EXPECT_EQ(datum.array<float>().flags(1).byte(), Lib::Flags::Invalid);
  EXPECT_EQ(datum.array<float>().nano(1), 9);
  EXPECT_EQ(datum.array<float>().value(0), 0.0F);
  EXPECT_EQ(datum.array<double>().value(1), 0.0);
}

TEST(Datum, an_array_goes_from_its_place_upward_with_the_size_of_the_source) {
  Datum datum;
  datum.array<int>().resize(5);
  Lib::VarArrayExt<int> source(3);
  for (std::size_t i = 0; i < 3; ++i) {
    source.set(i, FakeData::stamp_at(static_cast<long long>(70 + i)));
    source.set_data(i, static_cast<int>(10 + i));
  }
  source.setUnder(2);
  datum.set(1, source);
  const Array<int>& array = datum.array<int>();
  EXPECT_THAT(
      (std::vector{array.value(0), array.value(1), array.value(2), array.value(3), array.value(4)}),
      ElementsAre(0, 10, 11, 12, 0));
  EXPECT_EQ(array.nano(1), 70);
  EXPECT_EQ(array.nano(3), 72);
  EXPECT_EQ(array.flags(2).byte(), 0);
  EXPECT_EQ(array.flags(3).byte(), Lib::Flags::Under);
  EXPECT_EQ(array.flags(4).byte(), 0x80);
}

TEST(Datum, what_lies_beyond_the_array_is_not_written) {
  Datum datum;
  datum.array<int>().resize(2);
  Lib::VarArrayExt<int> source(3);
  source.set_data(0, 4);
  source.set_data(1, 5);
  datum.set(1, source);
  EXPECT_EQ(datum.array<int>().value(1), 4);
  Lib::VariableExt<int> scalar;
  scalar.put(9);
  datum.set(2, scalar);
  EXPECT_EQ(datum.array<int>().size(), 2U);
}

TEST(AspectStore, sorts_converters_by_type_and_counts_them_all) {
  AspectStore store(3);
  EXPECT_EQ(store.size(), 0U);
  store.push_back(AspectConverter<float>{3, 1, 2, 1, nullptr});
  store.push_back(AspectConverter<bool>{3, 4, 5, 6, nullptr});
  store.push_back(AspectConverter<float>{3, 7, 8, 1, nullptr});
  EXPECT_EQ(store.store_id(), 3U);
  EXPECT_EQ(store.size(), 3U);
  ASSERT_EQ(store.converters<float>().size(), 2U);
  EXPECT_EQ(store.converters<float>()[1].source, 7U);
  EXPECT_EQ(store.converters<bool>().size(), 1U);
  EXPECT_EQ(store.converters<double>().size(), 0U);
}

TEST(Aspect, a_new_one_selects_nothing) {
  const Aspect aspect;
  EXPECT_TRUE(aspect.stores().empty());
  EXPECT_TRUE(aspect.measurements().empty());
  EXPECT_TRUE(aspect.destinations().empty());
  EXPECT_EQ(aspect.store(0).size(), 0U);
}

TEST(Aspect, a_scalar_is_one_value_under_its_own_name) {
  Aspect aspect;
  EXPECT_TRUE(aspect.add_element(leaf_of<Var_t<int>>("Speed", 1, 7), kNoText, 4, -1));

  ASSERT_EQ(aspect.store(0).converters<int>().size(), 1U);
  const AspectConverter<int>& run = aspect.store(0).converters<int>()[0];
  EXPECT_EQ(run.store_id, 0U);
  EXPECT_EQ(run.source, 7U);
  EXPECT_EQ(run.destination, 0U);
  EXPECT_EQ(run.count, 1U);

  ASSERT_EQ(aspect.measurements().size(), 1U);
  EXPECT_EQ(aspect.measurements()[0].name, "Speed");
  EXPECT_EQ(aspect.measurements()[0].aspect_id, 4U);
  EXPECT_EQ(aspect.measurements()[0].destination, 0U);
  ASSERT_EQ(aspect.destinations().size(), 1U);
  EXPECT_EQ(aspect.destinations()[0].name, "Speed");
  EXPECT_EQ(aspect.destinations()[0].offset, 7U);
  EXPECT_EQ(aspect.destinations()[0].measurement, 0U);
}

TEST(Aspect, an_index_on_a_scalar_changes_nothing) {
  Aspect aspect;
  EXPECT_TRUE(aspect.add_element(leaf_of<Var_t<int>>("Speed", 1, 7), kNoText, 0, 3));
  EXPECT_EQ(aspect.store(0).converters<int>()[0].source, 7U);
  EXPECT_THAT(names_of(aspect), ElementsAre("Speed"));
}

TEST(Aspect, a_whole_array_is_one_run_and_a_value_for_each_entry) {
  Aspect aspect;
  aspect.add_element(leaf_of<Var_t<int>>("First", 1, 0), kNoText, 0, -1);
  EXPECT_TRUE(aspect.add_element(leaf_of<Arr_t<int>>("Arr", 3, 20), kNoText, 0, -1));

  ASSERT_EQ(aspect.store(0).converters<int>().size(), 2U);
  const AspectConverter<int>& run = aspect.store(0).converters<int>()[1];
  EXPECT_EQ(run.source, 20U);
  EXPECT_EQ(run.destination, 1U);
  EXPECT_EQ(run.count, 3U);

  EXPECT_EQ(aspect.measurements().size(), 2U);
  EXPECT_EQ(aspect.measurements()[1].name, "Arr");
  EXPECT_EQ(aspect.measurements()[1].size, 3U);
  EXPECT_EQ(aspect.measurements()[1].destination, 1U);
  EXPECT_THAT(names_of(aspect), ElementsAre("First", "Arr[0]", "Arr[1]", "Arr[2]"));
  for (unsigned int i = 0; i < 3; ++i) {
    const DestinationNode& node = aspect.destinations()[1 + i];
    EXPECT_EQ(node.size, 1U);
    EXPECT_EQ(node.offset, 20 + i);
    EXPECT_EQ(node.destination, 1 + i);
    EXPECT_EQ(node.measurement, 1U);
    EXPECT_EQ(node.index, i);
  }
}

TEST(Aspect, one_entry_of_an_array_of_five_is_one_value_with_a_suffix) {
  Aspect aspect;
  aspect.add_element(leaf_of<Var_t<int>>("First", 1, 0), kNoText, 0, -1);
  EXPECT_TRUE(aspect.add_element(leaf_of<Arr_t<int>>("Arr", 5, 20), kNoText, 0, 2));

  const AspectConverter<int>& run = aspect.store(0).converters<int>()[1];
  EXPECT_EQ(run.source, 22U);
  EXPECT_EQ(run.destination, 1U);
  EXPECT_EQ(run.count, 1U);
  EXPECT_THAT(names_of(aspect), ElementsAre("First", "Arr[2]"));
  const DestinationNode& node = aspect.destinations()[1];
  EXPECT_EQ(node.size, 1U);
  EXPECT_EQ(node.offset, 22U);
  EXPECT_EQ(node.measurement, 1U);
  EXPECT_EQ(node.index, 2U);
}

// The value itself goes to place 1; the description says 1 + 2.
TEST(Aspect, the_description_of_a_single_entry_has_its_destination_moved_by_the_index) {
  Aspect aspect;
  aspect.add_element(leaf_of<Var_t<int>>("First", 1, 0), kNoText, 0, -1);
  aspect.add_element(leaf_of<Arr_t<int>>("Arr", 5, 20), kNoText, 0, 2);
  EXPECT_EQ(aspect.destinations()[1].destination, 3U);
  EXPECT_EQ(aspect.measurements()[1].destination, 1U);
}

TEST(Aspect, a_label_function_supplies_the_suffix) {
  Aspect aspect;
  aspect.add_element(leaf_of<Arr_t<int>>("Arr", 3, 0, letter), kNoText, 0, -1);
  aspect.add_element(leaf_of<Arr_t<int>>("Arr", 3, 0, letter), kNoText, 0, 1);
  EXPECT_THAT(names_of(aspect), ElementsAre("Arr[a]", "Arr[b]", "Arr[c]", "Arr[b]"));
}

TEST(Aspect, the_last_entry_of_an_array_can_be_selected_and_none_behind_it) {
  Aspect aspect;
  EXPECT_TRUE(aspect.add_element(leaf_of<Arr_t<int>>("Arr", 5, 0), kNoText, 0, 4));
  EXPECT_FALSE(aspect.add_element(leaf_of<Arr_t<int>>("Arr", 5, 0), kNoText, 0, 5));
  EXPECT_EQ(aspect.measurements().size(), 1U);
  EXPECT_EQ(aspect.destinations().size(), 1U);
  EXPECT_EQ(aspect.store(0).size(), 1U);
}

TEST(Aspect, destinations_count_on_across_elements_of_all_types) {
  Aspect aspect;
  aspect.add_element<bool>(leaf_of<Arr_t<bool>>("A", 2, 0), nullptr, 0, -1);
  aspect.add_element<float>(leaf_of<Var_t<float>>("B", 1, 0), nullptr, 0, -1);
  aspect.add_element<bool>(leaf_of<Var_t<bool>>("C", 1, 2), nullptr, 0, -1);
  EXPECT_EQ(aspect.store(0).converters<float>()[0].destination, 2U);
  EXPECT_EQ(aspect.store(0).converters<bool>()[1].destination, 3U);
  EXPECT_EQ(aspect.destinations()[3].measurement, 2U);
}

TEST(Aspect, elements_of_different_stores_stand_apart) {
  Aspect aspect;
  aspect.add_element(leaf_of<Var_t<int>>("A", 1, 3, nullptr, 5), kNoText, 0, -1);
  aspect.add_element(leaf_of<Var_t<int>>("B", 1, 4, nullptr, 2), kNoText, 0, -1);
  aspect.add_element(leaf_of<Var_t<int>>("C", 1, 5, nullptr, 5), kNoText, 0, -1);
  EXPECT_EQ(aspect.stores().size(), 2U);
  EXPECT_EQ(aspect.store(5).size(), 2U);
  EXPECT_EQ(aspect.store(5).store_id(), 5U);
  EXPECT_EQ(aspect.store(5).converters<int>()[1].destination, 2U);
  EXPECT_EQ(aspect.store(2).converters<int>()[0].store_id, 2U);
}

TEST(AspectDeathTest, a_scalar_whose_size_is_not_1_stops_the_program) {
  Aspect aspect;
  EXPECT_DEATH(aspect.add_element(leaf_of<Var_t<int>>("A", 2, 0), kNoText, 0, -1),
               "Test : store_measurement.size == 1");
}

TEST(DatumGet, copies_value_type_flags_and_time_to_the_destination) {
  Datum datum;
  datum.array<short>().resize(3);
  datum.array<short>().set(2, -7, Lib::Flags(Lib::Flags::Approx), 55);
  AspectStore selection;
  selection.push_back(AspectConverter<short>{0, 2, 1, 1, nullptr});
  std::vector<Result> out(2);
  datum.get(selection, out);
  EXPECT_EQ(out[1].type(), Enum::BASIC_TYPE_int16_t);
  EXPECT_EQ(static_cast<int>(out[1]), -7);
  EXPECT_EQ(out[1].get_flags().byte(), Lib::Flags::Approx);
  EXPECT_EQ(out[1].get_nano(), 55);
  EXPECT_EQ(out[0].type(), Enum::BASIC_TYPE_void);
}

TEST(DatumGet, copies_runs_of_every_type) {
  Datum datum;
  AspectStore selection;
  unsigned int place = 0;
#define TREL_SELECT(suffix, T)                                      \
  datum.array<T>().resize(4);                                       \
  datum.array<T>().set(1, static_cast<T>(1), Lib::Flags(0), 10);    \
  datum.array<T>().set(2, static_cast<T>(2), Lib::Flags(0), 20);    \
  selection.push_back(AspectConverter<T>{0, 1, place, 2, nullptr}); \
  place += 2;
  TREL_ELEMENT_TYPES(TREL_SELECT)
#undef TREL_SELECT
  std::vector<Result> out(22);
  datum.get(selection, out);
  place = 0;
#define TREL_CHECK(suffix, T)                                   \
  EXPECT_EQ(out[place].type(), Enum::BASIC_TYPE_##suffix);      \
  EXPECT_EQ(static_cast<T>(out[place]), static_cast<T>(1));     \
  EXPECT_EQ(static_cast<T>(out[place + 1]), static_cast<T>(2)); \
  EXPECT_EQ(out[place + 1].get_nano(), 20);                     \
  place += 2;
  TREL_ELEMENT_TYPES(TREL_CHECK)
#undef TREL_CHECK
}

TEST(DatumGet, gives_each_entry_its_converter) {
  Datum datum;
  datum.array<int>().resize(2);
  datum.array<int>().set(0, 4, Lib::Flags(0), 0);
  datum.array<int>().set(1, 5, Lib::Flags(0), 0);
  AspectStore selection;
  const ValueText<int> text = [](int value) { return "<" + std::to_string(value) + ">"; };
  selection.push_back(AspectConverter<int>{0, 0, 0, 2, text});
  std::vector<Result> out(2);
  datum.get(selection, out);
  EXPECT_EQ(out[0].text(), "<4>");
  EXPECT_EQ(out[1].text(), "<5>");

  AspectStore without;
  without.push_back(AspectConverter<int>{0, 0, 0, 1, nullptr});
  datum.get(without, out);
  EXPECT_EQ(out[0].text(), "");
  EXPECT_EQ(out[1].text(), "<5>");
}

TEST(DatumGet, an_invalid_value_travels_with_its_flags) {
  Datum datum;
  datum.array<double>().resize(1);
  datum.array<double>().set(0, 3.5, Lib::Flags(Lib::Flags::Invalid), 0);
  AspectStore selection;
  selection.push_back(AspectConverter<double>{0, 0, 0, 1, nullptr});
  std::vector<Result> out(1);
  datum.get(selection, out);
  EXPECT_FALSE(out[0].ok());
  EXPECT_EQ(static_cast<double>(out[0]), 3.5);
}

TEST(DatumGet, a_run_beyond_its_source_or_its_results_ends_there) {
  Datum datum;
  datum.array<int>().resize(2);
  datum.array<int>().set(1, 9, Lib::Flags(0), 0);
  AspectStore selection;
  selection.push_back(AspectConverter<int>{0, 1, 0, 3, nullptr});
  std::vector<Result> out(3);
  datum.get(selection, out);
  EXPECT_EQ(static_cast<int>(out[0]), 9);
  EXPECT_EQ(out[1].type(), Enum::BASIC_TYPE_void);
  std::vector<Result> none;
  datum.get(selection, none);
  EXPECT_TRUE(none.empty());
}

}  // namespace
}  // namespace Trel::Sto::Test
