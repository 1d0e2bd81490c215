#include "ucom/UCom_Recursive.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "ucom/UCom_Message.h"

namespace Trel::UCom {
namespace {

using Json = nlohmann::json;

// `count` entries 0, 1, 2, ... of which each inherits from the next, and the last has "X".
Json chain(unsigned int count) {
  Json array = Json::array();
  for (unsigned int id = 0; id < count; ++id) array.push_back({{"ID", id}, {"IP", id + 1}});
  array.back()["X"] = 7u;
  return array;
}

TEST(UComRecursive, an_entry_needs_an_unsigned_ID) {
  const Json array = Json::parse(R"([
    {"ID":0}, {"ID":18446744073709551615}, {"ID":-1}, {"ID":2.0}, {"ID":"3"}, {"ID":null},
    {"IP":4}, 5, [6], null])");
  Recursive lookup;
  lookup.import(array);
  ASSERT_EQ(lookup.get_entries().size(), 2u);
  EXPECT_TRUE(lookup.get_entries().contains(0));
  EXPECT_TRUE(lookup.get_entries().contains(~std::uint64_t{0}));
}

TEST(UComRecursive, of_two_entries_with_one_ID_the_first_stays) {
  const Json array = Json::parse(R"([{"ID":1,"X":10},{"ID":1,"X":20,"Y":30}])");
  Recursive lookup;
  lookup.import(array);
  EXPECT_EQ(*lookup.find(1, "X"), 10);
  EXPECT_EQ(lookup.find(1, "Y"), nullptr);
}

TEST(UComRecursive, an_absent_entry_has_no_value) {
  const Json array = Json::parse(R"([{"ID":1,"X":10}])");
  Recursive lookup;
  EXPECT_EQ(lookup.find(1, "X"), nullptr);
  lookup.import(array);
  EXPECT_EQ(lookup.find(2, "X"), nullptr);
}

TEST(UComRecursive, an_own_value_wins_over_the_parents) {
  const Json array = Json::parse(R"([{"ID":1,"X":10,"Y":11},{"ID":2,"IP":1,"X":20}])");
  Recursive lookup;
  lookup.import(array);
  EXPECT_EQ(*lookup.find(2, "X"), 20);
  EXPECT_EQ(*lookup.find(2, "Y"), 11);
}

TEST(UComRecursive, a_parent_may_stand_behind_its_heir_in_the_document) {
  const Json array = Json::parse(R"([{"ID":1,"IP":2},{"ID":2,"X":20}])");
  Recursive lookup;
  lookup.import(array);
  EXPECT_EQ(*lookup.find(1, "X"), 20);
}

TEST(UComRecursive, a_missing_parent_ends_the_search) {
  const Json array = Json::parse(R"([{"ID":1,"IP":99}])");
  Recursive lookup;
  lookup.import(array);
  EXPECT_EQ(lookup.find(1, "X"), nullptr);
}

TEST(UComRecursive, a_null_is_a_value_that_hides_the_parents) {
  const Json array = Json::parse(R"([{"ID":1,"X":10},{"ID":2,"IP":1,"X":null}])");
  Recursive lookup;
  lookup.import(array);
  ASSERT_NE(lookup.find(2, "X"), nullptr);
  EXPECT_TRUE(lookup.find(2, "X")->is_null());
}

TEST(UComRecursive, a_value_of_the_wrong_type_is_absent_and_still_hides_the_parents) {
  const Json array = Json::parse(R"([{"ID":1,"X":"text"},{"ID":2,"IP":1,"X":5}])");
  Recursive lookup;
  lookup.import(array);
  EXPECT_NE(lookup.find_if(1, "X", Json::value_t::string), nullptr);
  EXPECT_EQ(lookup.find_if(2, "X", Json::value_t::string), nullptr);
  EXPECT_NE(lookup.find_if(2, "X", Json::value_t::number_unsigned), nullptr);
}

TEST(UComRecursive, inheritance_is_followed_for_256_steps_and_no_further) {
  const Json reachable = chain(257);  // from entry 0 to entry 256
  Recursive lookup;
  lookup.import(reachable);
  ASSERT_NE(lookup.find(0, "X"), nullptr);
  EXPECT_EQ(*lookup.find(0, "X"), 7);

  const Json too_long = chain(258);
  Recursive long_lookup;
  long_lookup.import(too_long);
  EXPECT_EQ(long_lookup.find(0, "X"), nullptr);
  EXPECT_NE(long_lookup.find(1, "X"), nullptr);
}

TEST(UComRecursive, a_given_depth_counts_the_steps) {
  const Json array = chain(3);
  Recursive lookup;
  lookup.import(array);
  EXPECT_EQ(lookup.find(0, "X", 0), nullptr);
  EXPECT_EQ(lookup.find(0, "X", 1), nullptr);
  EXPECT_NE(lookup.find(0, "X", 2), nullptr);
  EXPECT_NE(lookup.find(2, "X", 0), nullptr);
}

TEST(UComRecursive, a_circle_ends_in_not_found) {
  const Json array = Json::parse(R"([{"ID":1,"IP":2},{"ID":2,"IP":1},{"ID":3,"IP":3}])");
  Recursive lookup;
  lookup.import(array);
  EXPECT_EQ(lookup.find(1, "X"), nullptr);
  EXPECT_EQ(lookup.find(3, "X"), nullptr);
}

TEST(UComRecursive, an_IP_that_is_no_number_throws_only_when_it_is_followed) {
  for (const char* parent : {R"("1")", "true", "null", "[1]", R"({"ID":1})"}) {
    const Json array =
        Json::parse(std::string(R"([{"ID":1,"X":1,"Y":2},{"ID":2,"X":3,"IP":)") + parent + "}]");
    Recursive lookup;
    lookup.import(array);
    EXPECT_EQ(*lookup.find(2, "X"), 3) << parent;
    EXPECT_EQ(lookup.find(2, "Y", 0), nullptr) << parent;
    EXPECT_THROW(static_cast<void>(lookup.find(2, "Y")), Json::type_error) << parent;
  }
}

TEST(UComRecursive, an_IP_is_read_as_the_JSON_library_reads_an_unsigned_number) {
  // A fraction is dropped, and -1 wraps to the highest number.
  const Json array = Json::parse(R"([{"ID":1,"X":10},{"ID":18446744073709551615,"X":20},
    {"ID":2,"IP":1.9},{"ID":3,"IP":-1}])");
  Recursive lookup;
  lookup.import(array);
  EXPECT_EQ(*lookup.find(2, "X"), 10);
  EXPECT_EQ(*lookup.find(3, "X"), 20);
}

TEST(UComRecursive, a_real_IP_outside_the_identifiers_names_nothing) {
  Json array = Json::parse(R"([{"ID":0,"X":1},{"ID":9223372036854775808,"X":1},
    {"ID":18446744073709551615,"X":1},
    {"ID":1,"IP":1e30},{"ID":2,"IP":-1e30},{"ID":3,"IP":18446744073709551616.0},{"ID":4,"IP":-1.0},
    {"ID":5,"IP":0}])");
  array.back()["IP"] = std::nan("");
  Recursive lookup;
  lookup.import(array);
  for (std::uint64_t id = 1; id <= 5; ++id) EXPECT_EQ(lookup.find(id, "X"), nullptr) << id;
}

TEST(UComRecursive, real_types_take_any_number) {
  const Json array = Json::parse(R"([{"ID":1,"R":0.5,"S":-3,"U":4,"T":"5","B":true}])");
  Recursive lookup;
  lookup.import(array);
  double real = 0;
  float narrow = 0;
  EXPECT_TRUE(lookup.parse(real, 1, "R"));
  EXPECT_EQ(real, 0.5);
  EXPECT_TRUE(lookup.parse(narrow, 1, "S"));
  EXPECT_EQ(narrow, -3.0F);
  EXPECT_TRUE(lookup.parse(real, 1, "U"));
  EXPECT_EQ(real, 4.0);
  EXPECT_FALSE(lookup.parse(real, 1, "T"));
  EXPECT_FALSE(lookup.parse(real, 1, "B"));
  EXPECT_FALSE(lookup.parse(real, 1, "absent"));
  EXPECT_EQ(real, 4.0);
}

TEST(UComRecursive, a_number_beyond_float_is_infinite) {
  const Json array = Json::parse(R"([{"ID":1,"R":1e300}])");
  Recursive lookup;
  lookup.import(array);
  float value = 0;
  EXPECT_TRUE(lookup.parse(value, 1, "R"));
  EXPECT_TRUE(std::isinf(value));
}

TEST(UComRecursive, signed_types_take_any_integer_cut_to_their_width) {
  const Json array =
      Json::parse(R"([{"ID":1,"S":-3,"U":300,"R":1.0,"H":18446744073709551615,"B":true}])");
  Recursive lookup;
  lookup.import(array);
  signed char narrow = 0;
  EXPECT_TRUE(lookup.parse(narrow, 1, "S"));
  EXPECT_EQ(narrow, -3);
  EXPECT_TRUE(lookup.parse(narrow, 1, "U"));
  EXPECT_EQ(narrow, 300 - 256);
  long long wide = 0;
  EXPECT_TRUE(lookup.parse(wide, 1, "H"));
  EXPECT_EQ(wide, -1);
  EXPECT_FALSE(lookup.parse(wide, 1, "R"));
  EXPECT_FALSE(lookup.parse(wide, 1, "B"));
}

TEST(UComRecursive, unsigned_types_take_an_unsigned_integer_only) {
  const Json array = Json::parse(R"([{"ID":1,"S":-3,"U":65537,"R":1.0}])");
  Recursive lookup;
  lookup.import(array);
  unsigned short value = 0;
  EXPECT_FALSE(lookup.parse(value, 1, "S"));
  EXPECT_FALSE(lookup.parse(value, 1, "R"));
  EXPECT_TRUE(lookup.parse(value, 1, "U"));
  EXPECT_EQ(value, 1);
}

TEST(UComRecursive, bool_takes_a_boolean_only) {
  const Json array = Json::parse(R"([{"ID":1,"B":true,"U":1}])");
  Recursive lookup;
  lookup.import(array);
  bool value = false;
  EXPECT_FALSE(lookup.parse(value, 1, "U"));
  EXPECT_TRUE(lookup.parse(value, 1, "B"));
  EXPECT_TRUE(value);
}

TEST(UComRecursive, entries_that_inherit_a_text_share_one_copy) {
  const Json array = Json::parse(R"([{"ID":1,"DC":"long"},{"ID":2,"IP":1},{"ID":3}])");
  Recursive lookup;
  lookup.import(array);
  EXPECT_EQ(*lookup.text(2, "DC"), "long");
  EXPECT_EQ(lookup.text(2, "DC"), lookup.text(1, "DC"));
  EXPECT_EQ(*lookup.text(3, "DC"), "");
}

TEST(UComRecursive, messages_that_inherit_a_list_share_it) {
  const Json array = Json::parse(R"([{"ID":1,"BS":[5,6]},{"ID":2,"IP":1},{"ID":3,"BS":[5,6]}])");
  RecursiveMessages lookup;
  lookup.import(array);
  EXPECT_EQ(lookup.list(2), lookup.list(1));
  EXPECT_NE(lookup.list(3), lookup.list(1));
  EXPECT_EQ(lookup.list(2)->get_signals().size(), 2u);
}

TEST(UComRecursive, every_entry_is_usable) {
  EXPECT_TRUE(RecursiveSignals().is_usable(0));
  EXPECT_TRUE(RecursiveMessages().is_usable(mid_t_inv));
}

}  // namespace
}  // namespace Trel::UCom
