#include "library/Lib_Interval.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace Trel::Lib;

TEST(IntervalSet, a_new_one_is_empty_with_its_second_flag_set) {
  const IntervalSet<long long> set;
  EXPECT_TRUE(set.empty());
  EXPECT_EQ(set.size(), 0u);
  EXPECT_FALSE(set.first());
  EXPECT_TRUE(set.second());
  EXPECT_TRUE(IntervalSet<long long>(true).first());
  EXPECT_TRUE(IntervalSet<long long>(true).second());
}

TEST(IntervalSet, intervals_stay_in_the_order_in_which_they_came) {
  IntervalSet<long long> set(true);
  set.add({5, 9});
  set.add({1, 2});
  ASSERT_EQ(set.size(), 2u);
  EXPECT_EQ(set[0], (Interval<long long>{5, 9}));
  EXPECT_EQ(set[1].start, 1);
  EXPECT_EQ(set[1].end, 2);

  const IntervalSet<long long> copy = set;
  set.clear();
  EXPECT_TRUE(set.empty());
  EXPECT_TRUE(set.first());
  EXPECT_EQ(copy.size(), 2u);
  EXPECT_TRUE(copy.first());
}

TEST(IntervalSet, a_list_of_them_grows_by_empty_ones) {
  std::vector<IntervalSet<long long>> covered(1);
  covered[0].add({0, 1});
  covered.clear();
  covered.resize(64);
  EXPECT_EQ(covered.size(), 64u);
  for (const auto& set : covered) EXPECT_TRUE(set.empty());
}

}  // namespace
