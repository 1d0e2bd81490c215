#include "sto/Sto_Mode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Fakes.h"

namespace Trel::Sto::Test {
namespace {

template <class K>
StoreLeaf leaf_of(const std::string& name, unsigned int size = 1) {
  return StoreLeaf(ElementNode(FakeRow<K>(info(name, size)).describe(), 0U), 0U, 0U, 0U);
}

std::vector<std::string> names_of(const std::vector<StoreLeaf>& leaves) {
  std::vector<std::string> names;
  for (const StoreLeaf& leaf : leaves) names.push_back(leaf.name);
  return names;
}

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ModeDirect, has_one_cache_for_every_place) {
  ModeDirect mode(0);
  EXPECT_EQ(mode.id(), 0U);
  EXPECT_EQ(mode.cache().id(), 0U);
  EXPECT_TRUE(mode.add_element_float(0, leaf_of<Var_t<float>>("A")));
  EXPECT_TRUE(mode.add_element_float(9, leaf_of<Var_t<float>>("B")));
  EXPECT_EQ(mode.next_element_float(0), 2U);
  EXPECT_EQ(mode.next_element_float(5), 2U);
  EXPECT_EQ(mode.cache().next_element_float(), 2U);
}

TEST(ModeDirect, an_element_takes_as_many_places_as_it_has_values) {
  ModeDirect mode(0);
  mode.add_element_bool(0, leaf_of<Arr_t<bool>>("A", 5));
  EXPECT_EQ(mode.next_element_bool(0), 5U);
  mode.add_element_bool(0, leaf_of<Var_t<bool>>("B"));
  EXPECT_EQ(mode.next_element_bool(0), 6U);
}

TEST(ModeDirect, remembers_the_elements_in_order_and_by_type) {
  ModeDirect mode(0);
  mode.add_element_double(0, leaf_of<Var_t<double>>("A"));
  mode.add_element_float(0, leaf_of<Arr_t<float>>("B", 2));
  mode.add_element_double(0, leaf_of<Arr_t<double>>("C", 2));
  EXPECT_THAT(names_of(mode.elements()), ElementsAre("A", "B", "C"));
  EXPECT_THAT(names_of(mode.elements_of<double>()), ElementsAre("A", "C"));
  EXPECT_THAT(names_of(mode.elements_of<float>()), ElementsAre("B"));
  EXPECT_THAT(mode.elements_of<bool>(), IsEmpty());
}

TEST(Mode, the_families_of_both_modes_reach_the_array_of_their_type){
#define TREL_CHECK(suffix, T)                                            \
  {                                                                      \
    ModeDirect direct(0);                                                \
    ModeRetain retain(1, 16, kSecond);                                   \
    retain.add(0, kSecond);                                              \
    for (Mode * mode : std::initializer_list<Mode*>{&direct, &retain}) { \
      mode->add_element_##suffix(0, leaf_of<Var_t<T>>("A"));             \
      EXPECT_EQ(mode->next_element_##suffix(0), 1U);                     \
      EXPECT_EQ(mode->next_element<T>(0), 1U);                           \
      EXPECT_TRUE(mode->add_element<T>(0, leaf_of<Var_t<T>>("B")));      \
      EXPECT_EQ(mode->next_element_##suffix(0), 2U);                     \
      EXPECT_EQ(mode->elements().size(), 2U);                            \
      EXPECT_EQ(mode->elements_of<T>().size(), 2U);                      \
    }                                                                    \
    EXPECT_EQ(direct.cache().next_element_##suffix(), 2U);               \
    EXPECT_EQ(retain.stores().at(0)->next_element_##suffix(), 2U);       \
  }
    TREL_ELEMENT_TYPES(TREL_CHECK)
#undef TREL_CHECK
}

TEST(ModeRetain, has_a_store_for_each_place) {
  ModeRetain mode(1, 16, kSecond);
  mode.add(0, kSecond);
  mode.add(0, kSecond);
  EXPECT_EQ(mode.id(), 1U);
  mode.add_element_float(1, leaf_of<Arr_t<float>>("A", 3));
  EXPECT_EQ(mode.next_element_float(0), 0U);
  EXPECT_EQ(mode.next_element_float(1), 3U);
}

TEST(ModeRetain, an_element_of_a_place_without_a_store_succeeds_and_is_remembered) {
  ModeRetain mode(1, 16, kSecond);
  mode.add();
  EXPECT_TRUE(mode.add_element_float(0, leaf_of<Var_t<float>>("A")));
  EXPECT_EQ(mode.next_element_float(0), 0U);
  EXPECT_THAT(names_of(mode.elements()), ElementsAre("A"));
  EXPECT_THAT(names_of(mode.elements_of<float>()), ElementsAre("A"));
}

TEST(ModeRetain, takes_bits_and_resolution_from_its_construction) {
  ModeRetain mode(1, 2, 3 * kSecond);
  mode.add(0, 3 * kSecond);
  ASSERT_NE(mode.stores().at(0), nullptr);
  EXPECT_EQ(mode.stores().at(0)->indexing().resolution, 3 * kSecond);
}

}  // namespace
}  // namespace Trel::Sto::Test
