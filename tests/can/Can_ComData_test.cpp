#include "can/Can_ComData.h"

#include <gtest/gtest.h>

#include <utility>

#include "can/Can_Builders.h"

namespace Trel::Can {
namespace {

constexpr const char* kTwoFrames =
    "BO_ 1 M: 8 N\n"
    "SG_ A : 0|8@1- (1,0)\n"
    "SG_ B : 0|8@1+ (1,0)\n"
    "BO_ 2 O: 8 N\n"
    "SG_ A : 0|8@1+ (0.5,0)\n";

ComData configured() {
  ComData data;
  data.configure(database(kTwoFrames));
  return data;
}

TEST(DataMain, a_value_set_after_nano_takes_its_time) {
  DataMain main;
  main.Set_Nano(5000);
  main.Set_TimeWeekSecond(2.5);
  EXPECT_EQ(main.Var_Nano().get(), 5000);
  EXPECT_EQ(main.Var_Nano().get_nano(), 5000);
  EXPECT_TRUE(main.Var_Nano().good());
  EXPECT_EQ(main.Var_TimeWeekSecond().get(), 2.5);
  EXPECT_EQ(main.Var_TimeWeekSecond().get_nano(), 5000);
  EXPECT_EQ(main.Var_TimeWeekSecond().get_flags().byte(), 0);
}

TEST(DataMain, a_value_set_without_nano_is_timeless) {
  DataMain main;
  main.Set_TimeWeekCount(7);
  EXPECT_EQ(main.Var_TimeWeekCount().get(), 7U);
  EXPECT_EQ(main.Var_TimeWeekCount().get_flags().byte(), Lib::Flags::Timeless);
  main.Set_Nano(1);
  main.Hit_Nano().setInvalid();
  main.Set_NanoFromStart(8);
  EXPECT_EQ(main.Var_NanoFromStart().get_flags().byte(), Lib::Flags::Timeless);
}

TEST(DataMain, a_setter_wipes_what_was_wrong_with_the_value) {
  DataMain main;
  main.Set_Nano(1);
  main.Set_NanoFromFirst(2);
  main.Hit_NanoFromFirst().setInvalid();
  main.Hit_NanoFromFirst().setTimeless();
  main.Set_NanoFromFirst(3);
  EXPECT_EQ(main.Var_NanoFromFirst().get_flags().byte(), 0);
}

TEST(DataMain, a_negative_nano_is_a_time_too) {
  DataMain main;
  main.Set_Nano(-1);
  EXPECT_EQ(main.Var_Nano().get_nano(), -1);
  EXPECT_TRUE(main.Var_Nano().good());
}

TEST(DataCan, there_is_one_invalid_value_for_each_signal_with_its_type) {
  const ComData data = configured();
  const DataCan& can = data.DCan();
  ASSERT_EQ(can.size(), 3U);
  EXPECT_EQ(can.data()[0].type(), Lib::kBasicType<long long>);
  EXPECT_EQ(can.data()[1].type(), Lib::kBasicType<unsigned long long>);
  EXPECT_EQ(can.data()[2].type(), Lib::kBasicType<double>);
  for (std::size_t at = 0; at < can.size(); ++at) {
    EXPECT_EQ(can.data()[at].get_flags().byte(), Lib::Flags::Invalid | Lib::Flags::Timeless);
    EXPECT_EQ(can.get_sids()[at], at);
  }
}

TEST(DataCan, a_value_is_found_by_sid_and_by_tag) {
  ComData data = configured();
  DataCan& can = data.DCan();
  EXPECT_EQ(can.Hit_by_sid(2), can.data() + 2);
  EXPECT_EQ(std::as_const(can).Hit_by_sid(2), can.data() + 2);
  EXPECT_EQ(can.Hit_by_sid(3), nullptr);
  EXPECT_EQ(std::as_const(can).Hit_by_sid(3), nullptr);
  EXPECT_EQ(can.Hit_by_tag("A.1"), can.data() + 2);
  EXPECT_EQ(can.Hit_by_tag("C"), nullptr);
  EXPECT_EQ(can.Idx_by_tag("B"), 1U);
  EXPECT_EQ(can.Idx_by_tag("C"), can.size());
}

TEST(DataCan, a_value_by_index_is_a_copy) {
  ComData data = configured();
  DataCan& can = data.DCan();
  can.data()[1] = 7ULL;
  Dynamic copy = can.Dyn_by_idx(1);
  EXPECT_EQ(static_cast<unsigned long long>(copy), 7U);
  copy = 8ULL;
  EXPECT_EQ(static_cast<unsigned long long>(can.data()[1]), 7U);
  EXPECT_EQ(can.Dyn_by_idx(3).type(), Enum::BASIC_TYPE_void);
  EXPECT_TRUE(can.Dyn_by_idx(3).null());
}

TEST(DataCan, the_first_of_two_equal_tags_is_found) {
  // "A.1" as a name, and as the tag of the second "A".
  ComData data;
  data.configure(
      database("BO_ 1 M: 8 N\nSG_ A.1 : 0|8@1+ (1,0)\nSG_ A : 0|8@1+ (1,0)\n"
               "SG_ A : 0|8@1+ (1,0)\n"));
  EXPECT_EQ(data.DCan().size(), 3U);
  EXPECT_EQ(data.DCan().Idx_by_tag("A.1"), 0U);
}

TEST(ComData, a_copy_has_values_of_its_own_and_finds_them) {
  ComData original = configured();
  original.DMain().Set_Nano(1);
  *original.DCan().Hit_by_tag("A") = 1LL;
  ComData copy = original;
  original.DMain().Set_Nano(2);
  *original.DCan().Hit_by_tag("A") = 2LL;

  EXPECT_EQ(copy.DMain().Var_Nano().get(), 1);
  EXPECT_NE(copy.DCan().Hit_by_tag("A"), original.DCan().Hit_by_tag("A"));
  EXPECT_EQ(static_cast<long long>(*copy.DCan().Hit_by_tag("A")), 1);

  original = ComData();
  EXPECT_EQ(original.DCan().size(), 0U);
  EXPECT_EQ(original.DCan().Hit_by_sid(0), nullptr);
  EXPECT_EQ(copy.DCan().Hit_by_sid(0), copy.DCan().data());
}

TEST(ComData, invalidating_clears_values_and_keeps_types) {
  ComData data = configured();
  data.DMain().Set_Nano(1);
  data.DCan().data()[2] = 2.5;
  data.invalidate();
  EXPECT_EQ(data.DMain().Var_Nano().get(), 0);
  EXPECT_EQ(data.DMain().Var_Nano().get_flags().byte(), Lib::Flags::Invalid | Lib::Flags::Timeless);
  EXPECT_EQ(static_cast<double>(data.DCan().data()[2]), 0.0);
  EXPECT_EQ(data.DCan().data()[2].type(), Lib::kBasicType<double>);
}

}  // namespace
}  // namespace Trel::Can
