#include "sto/Sto_Kind.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Trel::Sto {
namespace {

using testing::ElementsAre;

TEST(Kinds, stand_scalars_first_in_one_order_of_types) {
  std::vector<std::string> names;
#define TREL_NAME(kind, K) names.push_back(#kind);
  TREL_ELEMENT_KINDS(TREL_NAME)
#undef TREL_NAME
  EXPECT_THAT(names, ElementsAre("Var_t_float", "Var_t_double", "Var_t_bool", "Var_t_int8_t",
                                 "Var_t_int16_t", "Var_t_int32_t", "Var_t_int64_t", "Var_t_uint8_t",
                                 "Var_t_uint16_t", "Var_t_uint32_t", "Var_t_uint64_t",
                                 "Arr_t_float", "Arr_t_double", "Arr_t_bool", "Arr_t_int8_t",
                                 "Arr_t_int16_t", "Arr_t_int32_t", "Arr_t_int64_t", "Arr_t_uint8_t",
                                 "Arr_t_uint16_t", "Arr_t_uint32_t", "Arr_t_uint64_t"));
}

TEST(Kinds, each_knows_the_number_of_its_type_and_whether_it_is_an_array) {
  std::vector<int> types;
  std::vector<bool> arrays;
  for_each_kind([&]<class K>(std::type_identity<K>) {
    types.push_back(Lib::kBasicType<typename K::value_type>);
    arrays.push_back(K::kIsArray);
  });
  EXPECT_THAT(types, ElementsAre(3, 4, 1, 9, 10, 11, 12, 5, 6, 7, 8,  //
                                 3, 4, 1, 9, 10, 11, 12, 5, 6, 7, 8));
  std::vector<bool> expected(22, false);
  std::fill(expected.begin() + 11, expected.end(), true);
  EXPECT_EQ(arrays, expected);
}

TEST(Kinds, the_type_list_and_the_table_name_the_same_kinds) {
  std::size_t place = 0;
  for_each_kind([&]<class K>(std::type_identity<K>) {
    const bool same = [&]<std::size_t... I>(std::index_sequence<I...>) {
      return ((I == place && std::is_same_v<K, std::tuple_element_t<I, ElementKinds>>) || ...);
    }
    (std::make_index_sequence<22>{});
    EXPECT_TRUE(same) << place;
    ++place;
  });
  EXPECT_EQ(place, 22U);
}

TEST(Kinds, a_search_stops_at_the_first_that_answers) {
  int visited = 0;
  EXPECT_TRUE(first_kind([&]<class K>(std::type_identity<K>) {
    ++visited;
    return std::is_same_v<typename K::value_type, short>;
  }));
  EXPECT_EQ(visited, 5);
}

TEST(Kinds, a_search_that_none_answers_has_asked_all) {
  int visited = 0;
  EXPECT_FALSE(first_kind([&]<class K>(std::type_identity<K>) {
    ++visited;
    return false;
  }));
  EXPECT_EQ(visited, 22);
}

TEST(Kinds, a_variable_names_its_kind) {
  static_assert(std::is_same_v<KindOf<Lib::VariableExt<short>>::type, Var_t<short>>);
  static_assert(std::is_same_v<KindOf<Lib::VarArrayExt<short>>::type, Arr_t<short>>);
  static_assert(std::is_same_v<Var_t<bool>::variable_type, Lib::VariableExt<bool>>);
  static_assert(std::is_same_v<Arr_t<bool>::variable_type, Lib::VarArrayExt<bool>>);
}

}  // namespace
}  // namespace Trel::Sto
