#include "library/Lib_Variable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "library/Lib_Types.h"

namespace {

using namespace Trel;
using namespace Trel::Lib;

constexpr long long kMoment = 1234567890123456789;

StampExt extended(int flags, long long extra = 0) {
  StampExt result;
  result.set_nano(kMoment);
  result.set_flags(Flags(static_cast<unsigned char>(flags)));
  result.set_extra(extra);
  return result;
}

template <class T>
class Variable : public testing::Test {};
template <class T>
class VariableArray : public testing::Test {};
template <class T>
class Dynamic : public testing::Test {};
using AllTypes = testing::Types<float, double, bool, signed char, short, int, long long,
                                unsigned char, unsigned short, unsigned int, unsigned long long>;
TYPED_TEST_SUITE(Variable, AllTypes);
TYPED_TEST_SUITE(VariableArray, AllTypes);
TYPED_TEST_SUITE(Dynamic, AllTypes);

TYPED_TEST(Variable, a_fresh_one_is_0_and_rejected) {
  const VariableExt<TypeParam> variable;
  EXPECT_EQ(variable.get(), TypeParam{});
  EXPECT_EQ(variable.get_flags().byte(), 0x80);
  EXPECT_EQ(variable.get_nano(), 0);
}

TYPED_TEST(Variable, setting_makes_it_good_and_takes_time_and_timeless) {
  VariableExt<TypeParam> variable;
  variable.set(TypeParam{1}, extended(0x4F));
  EXPECT_EQ(variable.get(), TypeParam{1});
  EXPECT_EQ(variable.get_nano(), kMoment);
  EXPECT_EQ(variable.get_flags().byte(), 0x00);
  variable.set(TypeParam{1}, extended(0xFF, 7));
  EXPECT_EQ(variable.get_flags().byte(), 0x10);
  EXPECT_EQ(variable.get_extra(), 7);
}

TYPED_TEST(Variable, putting_leaves_flags_and_time) {
  VariableExt<TypeParam> variable;
  variable.set(TypeParam{0}, extended(0x10));
  variable.setStale();
  variable.put(TypeParam{1});
  EXPECT_EQ(variable.get(), TypeParam{1});
  EXPECT_EQ(variable.get_nano(), kMoment);
  EXPECT_EQ(variable.get_flags().byte(), 0x11);
}

TYPED_TEST(Variable, reset_reject_and_invalidate_clear_the_value) {
  VariableExt<TypeParam> set;
  set.set(TypeParam{1}, extended(0, 7));

  auto variable = set;
  variable.reset();
  EXPECT_EQ(variable.get(), TypeParam{});
  EXPECT_EQ(variable.get_flags().byte(), 0x90);
  EXPECT_EQ(variable.get_nano(), 0);
  EXPECT_EQ(variable.get_extra(), 0);
  variable = set;
  variable.reject();
  EXPECT_EQ(variable.get(), TypeParam{});
  EXPECT_EQ(variable.get_flags().byte(), 0x90);
  variable = set;
  variable.invalidate();
  EXPECT_EQ(variable.get(), TypeParam{});
  EXPECT_EQ(variable.get_flags().byte(), 0x50);
  EXPECT_EQ(variable.get_nano(), 0);
}

TYPED_TEST(Variable, copies_carry_value_and_stamp) {
  VariableExt<TypeParam> source;
  source.set(TypeParam{1}, extended(0x10, 7));
  source.setApprox();
  VariableExt<TypeParam> target;
  target = source;
  EXPECT_EQ(target.get(), TypeParam{1});
  EXPECT_EQ(target.get_nano(), kMoment);
  EXPECT_EQ(target.get_flags().byte(), 0x12);
  EXPECT_EQ(target.get_extra(), 7);
}

TYPED_TEST(Variable, one_made_of_a_dynamic_value_has_its_stamp_unchanged) {
  DynamicS<StampExt> dynamic;
  dynamic = 1.0;
  dynamic.set_nano(kMoment);
  dynamic.set_flags(Flags(0x4F));
  dynamic.set_extra(7);
  const VariableExt<TypeParam> variable(dynamic);
  EXPECT_EQ(variable.get(), TypeParam{1});
  EXPECT_EQ(variable.get_nano(), kMoment);
  EXPECT_EQ(variable.get_flags().byte(), 0x4F);
  EXPECT_EQ(variable.get_extra(), 7);
}

TEST(VariableNegate, the_value_changes_sign_and_over_becomes_under) {
  VariableExt<short> variable;
  variable.set(5, extended(0));
  variable.setOver();
  variable.negate();
  EXPECT_EQ(variable.get(), -5);
  EXPECT_EQ(variable.get_flags().byte(), 0x04);
  variable.negate();
  EXPECT_EQ(variable.get(), 5);
  EXPECT_EQ(variable.get_flags().byte(), 0x08);
  variable.wipe();
  variable.negate();
  EXPECT_EQ(variable.get_flags().byte(), 0x00);
  EXPECT_EQ(variable.get_nano(), kMoment);
}

TEST(VariableNegate, integers_wrap_zero_gets_its_sign_and_a_bool_stays) {
  EXPECT_EQ(negated<signed char>(-128), -128);
  EXPECT_EQ(negated<short>(-32768), -32768);
  EXPECT_EQ(negated(std::numeric_limits<int>::min()), std::numeric_limits<int>::min());
  EXPECT_EQ(negated(std::numeric_limits<long long>::min()), std::numeric_limits<long long>::min());
  EXPECT_EQ(negated<unsigned char>(1), 255);
  EXPECT_EQ(negated(1u), 0xFFFFFFFFu);
  EXPECT_EQ(negated(1ull), ~0ull);
  EXPECT_EQ(negated(2.5), -2.5);
  EXPECT_TRUE(std::signbit(negated(0.0f)));
  EXPECT_TRUE(negated(true));
  EXPECT_FALSE(negated(false));
}

TYPED_TEST(VariableArray, new_elements_are_0_and_rejected_and_old_ones_stay) {
  VarArrayExt<TypeParam> array(1);
  EXPECT_EQ(array.get_data(0), TypeParam{});
  EXPECT_EQ(array.get_flags(0).byte(), 0x80);
  array.resize(3);
  array.set_data(0, TypeParam{1});
  array.set(0, extended(0));
  array.set_data(2, TypeParam{1});
  array.set(2, extended(0));
  array.resize(1);
  array.resize(3);
  EXPECT_EQ(array.size(), 3u);
  EXPECT_EQ(array.get_data(0), TypeParam{1});
  EXPECT_TRUE(array.good(0));
  EXPECT_EQ(array.get_data(2), TypeParam{});
  EXPECT_EQ(array.get_flags(2).byte(), 0x80);
  EXPECT_EQ(array.get_nano(2), 0);
}

TYPED_TEST(VariableArray, storing_a_value_leaves_its_stamp_and_its_neighbours) {
  VarArrayExt<TypeParam> array(2);
  array.set_data(1, TypeParam{1});
  EXPECT_EQ(array.get_data(0), TypeParam{});
  EXPECT_EQ(array.get_data(1), TypeParam{1});
  EXPECT_EQ(array.get_flags(1).byte(), 0x80);
}

TYPED_TEST(VariableArray, rejecting_clears_values_times_and_flags) {
  VarArrayExt<TypeParam> array(2);
  array.set_data(1, TypeParam{1});
  array.set(1, extended(0, 7));
  array.reject();
  EXPECT_EQ(array.size(), 2u);
  EXPECT_EQ(array.get_data(1), TypeParam{});
  EXPECT_EQ(array.get_flags(1).byte(), 0x80);
  EXPECT_EQ(array.get_nano(1), 0);
  EXPECT_EQ(array.get_extra(1), 0);
}

TYPED_TEST(VariableArray, assignment_takes_size_values_and_stamps) {
  VarArrayExt<TypeParam> source(2);
  source.set_data(1, TypeParam{1});
  source.set(1, extended(0x10));
  VarArrayExt<TypeParam> target(5);
  target = source;
  EXPECT_EQ(target.size(), 2u);
  EXPECT_EQ(target.get_data(1), TypeParam{1});
  EXPECT_EQ(target.get_flags(1).byte(), 0x10);
  EXPECT_EQ(target.get_nano(1), kMoment);
}

TEST(VariableArrayNegate, every_element_changes_sign_and_swaps_its_limits) {
  VarArrayExt<int> array(3);
  for (std::size_t i = 0; i < 3; ++i) {
    array.set_data(i, static_cast<int>(i) + 1);
    array.set(i, extended(0));
  }
  array.setOver(0);
  array.setUnder(1);
  array.negate();
  EXPECT_EQ(array.get_data(0), -1);
  EXPECT_EQ(array.get_flags(0).byte(), 0x04);
  EXPECT_EQ(array.get_data(1), -2);
  EXPECT_EQ(array.get_flags(1).byte(), 0x08);
  EXPECT_EQ(array.get_data(2), -3);
  EXPECT_EQ(array.get_flags(2).byte(), 0x00);
}

TEST(ElementTypes, there_are_eleven_in_one_order_each_with_its_tag) {
  std::vector<int> tags;
#define TREL_TAG(suffix, type) tags.push_back(kBasicType<type>);
  TREL_ELEMENT_TYPES(TREL_TAG)
#undef TREL_TAG
  EXPECT_EQ(tags, (std::vector<int>{3, 4, 1, 9, 10, 11, 12, 5, 6, 7, 8}));
  static_assert(std::tuple_size_v<ElementTypes> == 11);
  static_assert(kBasicType<std::tuple_element_t<6, ElementTypes>> == Enum::BASIC_TYPE_int64_t);
  static_assert(kBasicType<char> == Enum::BASIC_TYPE_UNKNOWN);
  static_assert(!ElementType<long> && !ElementType<char> && ElementType<long long>);
}

TEST(ElementTypes, a_visit_meets_the_type_of_its_tag_and_passes_over_the_others) {
  for (int tag = 0; tag < 256; ++tag) {
    int met = -1;
    const bool visited = visit_element_type(
        static_cast<Enum::BASIC_TYPE>(tag),
        [&met](auto identity) { met = kBasicType<typename decltype(identity)::type>; });
    // void, char and UNKNOWN are tags of no element type.
    const bool expected = tag <= 12 && tag != 0 && tag != 2;
    EXPECT_EQ(visited, expected) << tag;
    EXPECT_EQ(met, expected ? tag : -1);
  }
}

TYPED_TEST(Dynamic, the_tag_follows_the_last_assignment) {
  DynamicS<Stamp> value;
  EXPECT_EQ(value.type(), Enum::BASIC_TYPE_void);
  value = TypeParam{1};
  EXPECT_EQ(value.type(), kBasicType<TypeParam>);
  EXPECT_EQ(static_cast<TypeParam>(value), TypeParam{1});
  value = std::is_same_v<TypeParam, int> ? 2.0 : 2.5;
  EXPECT_EQ(value.type(), Enum::BASIC_TYPE_double);
}

TYPED_TEST(Dynamic, every_type_reads_it_by_numeric_conversion) {
  DynamicS<Stamp> value;
  value = TypeParam{1};
#define TREL_READ(suffix, type) EXPECT_EQ(static_cast<type>(value), static_cast<type>(1)) << #type;
  TREL_ELEMENT_TYPES(TREL_READ)
#undef TREL_READ
}

TYPED_TEST(Dynamic, a_tag_of_no_element_type_reads_0) {
  for (const auto tag : {Enum::BASIC_TYPE_void, Enum::BASIC_TYPE_char, Enum::BASIC_TYPE_UNKNOWN}) {
    const DynamicS<Stamp> value(tag);
    EXPECT_EQ(value.type(), tag);
    EXPECT_EQ(static_cast<TypeParam>(value), TypeParam{});
  }
}

TYPED_TEST(Dynamic, a_narrow_value_lies_in_a_cleared_area) {
  DynamicS<Stamp> value;
  value = ~0ull;
  value = TypeParam{1};
  unsigned long long expected = 0;
  const TypeParam one{1};
  std::memcpy(&expected, &one, sizeof one);
  EXPECT_EQ(value.template raw<unsigned long long>(),
            (std::is_same_v<TypeParam, unsigned long long> ? 1 : expected));
}

TYPED_TEST(Dynamic, the_largest_and_the_smallest_value_come_back) {
  for (const TypeParam extreme :
       {std::numeric_limits<TypeParam>::lowest(), std::numeric_limits<TypeParam>::max()}) {
    DynamicS<Stamp> value;
    value = extreme;
    EXPECT_EQ(static_cast<TypeParam>(value), extreme);
  }
}

TEST(DynamicValue, an_unsigned_byte_reads_as_the_same_byte_with_a_sign) {
  DynamicS<Stamp> value;
  value = static_cast<unsigned char>(200);
  EXPECT_EQ(static_cast<signed char>(value), -56);  // 200 - 256
}

TEST(DynamicValue, a_wide_integer_is_cut_to_the_width_that_reads_it) {
  DynamicS<Stamp> value;
  value = 0x123456789ABCDEF0ll;
  EXPECT_EQ(static_cast<unsigned char>(value), 0xF0);
  EXPECT_EQ(static_cast<unsigned short>(value), 0xDEF0);
  EXPECT_EQ(static_cast<unsigned int>(value), 0x9ABCDEF0u);
  value = -1;
  EXPECT_EQ(static_cast<unsigned long long>(value), ~0ull);
  EXPECT_EQ(static_cast<double>(value), -1.0);
}

TEST(DynamicValue, a_bool_is_true_for_all_but_0_and_for_nan) {
  DynamicS<Stamp> value;
  value = 0.25;
  EXPECT_TRUE(static_cast<bool>(value));
  value = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(static_cast<bool>(value));
  value = std::numeric_limits<float>::quiet_NaN();
  EXPECT_TRUE(static_cast<bool>(value));
  value = -0.0;
  EXPECT_FALSE(static_cast<bool>(value));
  value = 256;
  EXPECT_TRUE(static_cast<bool>(value));
}

TEST(DynamicValue, a_real_number_loses_its_fraction_towards_0) {
  DynamicS<Stamp> value;
  value = 2.9;
  EXPECT_EQ(static_cast<int>(value), 2);
  value = -2.9;
  EXPECT_EQ(static_cast<int>(value), -2);
  value = -0.9;
  EXPECT_EQ(static_cast<unsigned int>(value), 0u);
  value = 2147483647.5;
  EXPECT_EQ(static_cast<int>(value), 2147483647);
  value = -2147483648.5;
  EXPECT_EQ(static_cast<int>(value), std::numeric_limits<int>::min());
}

template <class T, class Real>
void expect_saturation() {
  SCOPED_TRACE(sizeof(T));
  constexpr Real kInfinity = std::numeric_limits<Real>::infinity();
  EXPECT_EQ((number_cast<T>(Real{1e30f})), std::numeric_limits<T>::max());
  EXPECT_EQ((number_cast<T>(Real{-1e30f})), std::numeric_limits<T>::min());
  EXPECT_EQ((number_cast<T>(kInfinity)), std::numeric_limits<T>::max());
  EXPECT_EQ((number_cast<T>(-kInfinity)), std::numeric_limits<T>::min());
  EXPECT_EQ((number_cast<T>(std::numeric_limits<Real>::quiet_NaN())), T{});
  // The power of two above the greatest value, and the greatest real number below it.
  const Real end = std::ldexp(Real{1}, std::numeric_limits<T>::digits);
  EXPECT_EQ((number_cast<T>(end)), std::numeric_limits<T>::max());
  const Real below = std::nextafter(end, Real{0});
  EXPECT_EQ((number_cast<T>(below)), static_cast<T>(below));
}

TEST(DynamicValue, a_real_number_out_of_range_becomes_the_nearest_end_and_nan_0) {
  expect_saturation<signed char, double>();
  expect_saturation<short, double>();
  expect_saturation<int, double>();
  expect_saturation<long long, double>();
  expect_saturation<unsigned char, double>();
  expect_saturation<unsigned short, double>();
  expect_saturation<unsigned int, double>();
  expect_saturation<unsigned long long, double>();
  expect_saturation<signed char, float>();
  expect_saturation<short, float>();
  expect_saturation<int, float>();
  expect_saturation<long long, float>();
  expect_saturation<unsigned char, float>();
  expect_saturation<unsigned short, float>();
  expect_saturation<unsigned int, float>();
  expect_saturation<unsigned long long, float>();
}

TEST(DynamicValue, invalidating_clears_stamp_and_value_and_keeps_the_tag) {
  DynamicS<StampExt> value;
  value = 2.5;
  value.set_nano(kMoment);
  value.set_extra(7);
  value.invalidate();
  EXPECT_EQ(value.type(), Enum::BASIC_TYPE_double);
  EXPECT_EQ(static_cast<double>(value), 0.0);
  EXPECT_EQ(value.get_nano(), 0);
  EXPECT_EQ(value.get_extra(), 0);
  EXPECT_EQ(value.get_flags().byte(), 0x50);
}

TEST(DynamicValue, assigning_a_value_leaves_the_stamp) {
  DynamicS<Stamp> value;
  value.set_nano(kMoment);
  value.set_flags(Flags(0x12));
  value = 1;
  EXPECT_EQ(value.get_nano(), kMoment);
  EXPECT_EQ(value.get_flags().byte(), 0x12);
}

TEST(DynamicValue, copies_carry_value_tag_stamp_and_converter) {
  DynamicS<Stamp> source;
  source = 7;
  source.set_nano(kMoment);
  source.set_converter<int>([](int value) { return "#" + std::to_string(value); });
  const DynamicS<Stamp> copy(source);
  EXPECT_EQ(copy.type(), Enum::BASIC_TYPE_int32_t);
  EXPECT_EQ(static_cast<int>(copy), 7);
  EXPECT_EQ(copy.get_nano(), kMoment);
  EXPECT_EQ(copy.text(), "#7");
}

TEST(DynamicValue, the_text_is_the_converters_and_goes_with_the_type) {
  DynamicS<Stamp> value;
  EXPECT_EQ(value.text(), "");
  value = static_cast<unsigned char>(200);
  EXPECT_EQ(value.text(), "");
  value.set_converter<unsigned char>([](unsigned char byte) { return std::to_string(byte); });
  EXPECT_EQ(value.text(), "200");
  value = static_cast<unsigned char>(201);  // the same type keeps it
  EXPECT_EQ(value.text(), "201");
  value = 5;  // another type does not
  EXPECT_EQ(value.text(), "");
  value.set_converter<int>(nullptr);
  EXPECT_EQ(value.text(), "");
}

}  // namespace
