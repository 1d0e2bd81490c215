#include "nav/Nav_ComData.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <set>
#include <string>
#include <type_traits>

namespace Trel::Nav::Test {
namespace {

constexpr long long kNow = 1'380'672'010'000'000'000;

// What every value's family does, told the accessors of one. 1 is a value of every type, a member
// of every enumeration, and no filter's off.
template <class Owner, class Number, class Value>
void expect_family(const char* name, Owner& data, bool (Owner::*is)() const,
                   Value (Owner::*get)() const, void (Owner::*set)(std::type_identity_t<Value>),
                   void (Owner::*inv)(), Lib::VariableExt<Number>& (Owner::*hit)(),
                   const Lib::VariableExt<Number>& (Owner::*var)() const) {
  SCOPED_TRACE(name);
  const Value one = static_cast<Value>(1);
  EXPECT_FALSE((data.*is)()) << "before it has arrived";
  EXPECT_EQ((data.*var)().get_flags().byte(), 0x50);

  (data.*set)(one);
  EXPECT_TRUE((data.*is)());
  EXPECT_EQ((data.*get)(), one);
  EXPECT_EQ((data.*var)().get(), Number{1});
  EXPECT_EQ((data.*var)().get_flags().byte(), 0);
  EXPECT_EQ((data.*var)().get_nano(), kNow);

  (data.*hit)().setApprox();
  EXPECT_FALSE((data.*is)()) << "approximate is not good";
  EXPECT_EQ((data.*var)().get(), Number{1});
  (data.*set)(one);
  EXPECT_TRUE((data.*is)()) << "setting makes it good again";
  (data.*hit)().setPass();
  EXPECT_FALSE((data.*is)());

  (data.*inv)();
  EXPECT_FALSE((data.*is)());
  EXPECT_EQ((data.*var)().get(), Number{});
  EXPECT_EQ((data.*var)().get_flags().byte(), 0x50);
}

#define FAMILY(Owner, data, name)                                                           \
  expect_family(#name, data, &Owner::Is##name##Valid, &Owner::Get##name, &Owner::Set##name, \
                &Owner::Inv##name, &Owner::Hit##name, &Owner::Var##name);

TEST(ComData, each_value_has_its_family) {
  ComData data;
  data.SetNano(kNow);
#define VALUE(name, ...) FAMILY(ComData, data, name)
#define OWN(name, ...) \
  if (std::string(#name) != "Nano") FAMILY(ComData, data, name)
#include "nav/Nav_ComData.def"
}

TEST(ComDataGps, each_value_has_its_family) {
  ComData data;
  data.SetNano(kNow);
  data.ShareNano();
#define VALUE(name, ...) FAMILY(ComDataGps, data.DGps(2), name)
#include "nav/Nav_ComDataGps.def"
}

TEST(ComDataMeasurePt, each_value_has_its_family) {
  ComData data;
  data.SetNano(kNow);
  data.ShareNano();
#define VALUE(name, ...) FAMILY(ComDataMeasurePt, data.DMeasurePt(7), name)
#include "nav/Nav_ComDataMeasurePt.def"
}

// Which values of a part of the record are good, by name.
template <class Owner>
struct Valid {
  const char* name;
  bool (Owner::*is)() const;
};

template <class Owner>
void expect_nothing_valid(const Owner& data, std::initializer_list<Valid<Owner>> values) {
  for (const auto& [name, is] : values) EXPECT_FALSE((data.*is)()) << name;
}

TEST(ComData, no_two_values_share_a_variable) {
  ComData data;
  std::set<const void*> places;
  int count = 0;
#define VALUE(name, ...) places.insert(&data.Var##name()), ++count;
#define TEXT(name, ...) places.insert(&data.Var##name()), ++count;
#include "nav/Nav_ComData.def"
  for (unsigned int gps = 0; gps < 3; ++gps) {
#define VALUE(name, ...) places.insert(&data.DGps(gps).Var##name()), ++count;
#include "nav/Nav_ComDataGps.def"
  }
  for (unsigned int point = 0; point < 8; ++point) {
#define VALUE(name, ...) places.insert(&data.DMeasurePt(point).Var##name()), ++count;
#include "nav/Nav_ComDataMeasurePt.def"
  }
  EXPECT_EQ(places.size(), static_cast<std::size_t>(count));
}

TEST(ComData, a_value_set_before_any_time_is_good_and_timeless) {
  ComData data;
  data.SetLat(52.0);
  EXPECT_TRUE(data.IsLatValid());
  EXPECT_TRUE(data.VarLat().isTimeless());
  EXPECT_EQ(data.VarLat().get_nano(), 0);

  data.SetNano(kNow);
  data.InvNano();
  data.SetLat(52.0);
  EXPECT_TRUE(data.VarLat().isTimeless()) << "nor after the time was lost";
}

TEST(ComData, nano_is_stamped_with_itself) {
  ComData data;
  EXPECT_FALSE(data.IsNanoValid());
  data.SetNano(kNow);
  EXPECT_TRUE(data.IsNanoValid());
  EXPECT_EQ(data.GetNano(), kNow);
  EXPECT_EQ(data.VarNano().get_nano(), kNow);
  EXPECT_EQ(data.VarNano().get_flags().byte(), 0);

  data.HitNano().setApprox();
  data.SetNano(kNow + 5);
  EXPECT_EQ(data.VarNano().get_nano(), kNow + 5);
  EXPECT_EQ(data.VarNano().get_flags().byte(), 0);
}

TEST(ComData, flags_of_nano_other_than_timeless_are_not_handed_on) {
  ComData data;
  data.SetNano(kNow);
  data.HitNano().setApprox();
  data.SetLat(52.0);
  EXPECT_EQ(data.VarLat().get_flags().byte(), 0);
  EXPECT_EQ(data.VarLat().get_nano(), kNow);
}

TEST(ComData, a_value_keeps_the_time_at_which_it_was_set) {
  ComData data;
  data.SetNano(kNow);
  data.SetLat(52.0);
  data.SetNano(kNow + 1);
  EXPECT_EQ(data.VarLat().get_nano(), kNow);
}

TEST(ComData, parts_are_stamped_with_the_nano_that_was_shared_last) {
  ComData data;
  data.DGps(0).SetNumSats(9);
  EXPECT_TRUE(data.DGps(0).VarNumSats().isTimeless());

  data.SetNano(kNow);
  data.ShareNano();
  data.SetNano(kNow + 1);
  for (unsigned int gps = 0; gps < 3; ++gps) {
    data.DGps(gps).SetNumSats(9);
    EXPECT_EQ(data.DGps(gps).VarNumSats().get_nano(), kNow) << gps;
  }
  for (unsigned int point = 0; point < 8; ++point) {
    data.DMeasurePt(point).SetTrack(1.0);
    EXPECT_EQ(data.DMeasurePt(point).VarTrack().get_nano(), kNow) << point;
  }
}

TEST(ComData, an_odd_index_is_the_external_receiver_and_2_the_secondary) {
  ComData data;
  EXPECT_EQ(&data.DGps(1), &data.DGps(3));
  EXPECT_EQ(&data.DGps(2), &data.DGps(4));
  EXPECT_NE(&data.DGps(0), &data.DGps(1));
  EXPECT_NE(&data.DGps(0), &data.DGps(2));
  EXPECT_NE(&data.DGps(1), &data.DGps(2));
  // Stored order: primary, secondary, external.
  EXPECT_LT(&data.DGps(0), &data.DGps(2));
  EXPECT_LT(&data.DGps(2), &data.DGps(1));
}

TEST(ComData, an_enumerated_value_takes_any_number) {
  ComData data;
  data.SetImuType(19);  // the last member before IMU_TYPE_UNKNOWN, 20
  EXPECT_EQ(data.GetImuType(), 19);
  data.SetImuType(21);
  EXPECT_EQ(data.GetImuType(), Enum::IMU_TYPE_UNKNOWN);
  data.SetImuType(-1LL);
  EXPECT_EQ(data.GetImuType(), Enum::IMU_TYPE_UNKNOWN);
  data.SetImuType(0x100000003ULL);
  EXPECT_EQ(data.GetImuType(), Enum::IMU_TYPE_UNKNOWN);
  data.SetImuType(Enum::IMU_TYPE_VALUE_03);
  EXPECT_EQ(data.VarImuType().get(), 3);
  data.SetProductModel(600);  // wider than a byte
  EXPECT_EQ(data.VarProductModel().get(), 600);
}

TEST(ComData, a_text_is_cut_at_its_length_its_field_and_a_zero) {
  ComData data;
  data.SetNano(kNow);
  EXPECT_FALSE(data.IsDevIdValid());
  EXPECT_STREQ(data.GetDevId(), "");

  const char field[] = {'2', '1', '0', '4', '1', '5', 'x', '9', 'Z'};
  data.SetDevId(field, 8);
  EXPECT_TRUE(data.IsDevIdValid());
  EXPECT_EQ(data.VarDevId().get(), "210415x9");
  EXPECT_EQ(data.VarDevId().get_nano(), kNow);
  data.SetDevId(field, 9);
  EXPECT_STREQ(data.GetDevId(), "210415x9") << "eight characters at most";
  data.SetDevId(field, 3);
  EXPECT_STREQ(data.GetDevId(), "210");
  const char ended[] = {'a', 'b', '\0', 'c'};
  data.SetDevId(ended, 4);
  EXPECT_EQ(data.VarDevId().get(), "ab");
  data.SetDevId(field, 0);
  EXPECT_EQ(data.VarDevId().get(), "");

  data.SetDevId(field, 8);
  data.InvDevId();
  EXPECT_FALSE(data.IsDevIdValid());
  EXPECT_STREQ(data.GetDevId(), "");
}

TEST(ComData, invalidate_leaves_nothing_valid) {
  ComData data;
  data.SetNano(kNow);
  data.ShareNano();
#define VALUE(name, type, ...) data.Hit##name().set(static_cast<type>(1), data.VarNano());
#define TEXT(name, ...) data.Set##name("x", 1);
#include "nav/Nav_ComData.def"
  for (unsigned int gps = 0; gps < 3; ++gps) {
#define VALUE(name, ...) data.DGps(gps).Set##name(1);
#include "nav/Nav_ComDataGps.def"
  }
  for (unsigned int point = 0; point < 8; ++point) {
#define VALUE(name, ...) data.DMeasurePt(point).Set##name(1);
#include "nav/Nav_ComDataMeasurePt.def"
  }
  data.SetFeatureCode(5, {true, 20200101, 20300101, Enum::FEATURE_STATUS_VALUE_01});

  data.Invalidate();

  expect_nothing_valid<ComData>(data, {
#define VALUE(name, ...) {#name, &ComData::Is##name##Valid},
#define TEXT(name, ...) {#name, &ComData::Is##name##Valid},
#include "nav/Nav_ComData.def"
                                      });
  for (unsigned int gps = 0; gps < 3; ++gps) {
    expect_nothing_valid<ComDataGps>(data.DGps(gps), {
#define VALUE(name, ...) {#name, &ComDataGps::Is##name##Valid},
#include "nav/Nav_ComDataGps.def"
                                                     });
  }
  for (unsigned int point = 0; point < 8; ++point) {
    expect_nothing_valid<ComDataMeasurePt>(data.DMeasurePt(point), {
#define VALUE(name, ...) {#name, &ComDataMeasurePt::Is##name##Valid},
#include "nav/Nav_ComDataMeasurePt.def"
                                                                   });
  }
  EXPECT_FALSE(data.GetFeatureCode(5).known);
  data.DGps(0).SetNumSats(1);
  EXPECT_TRUE(data.DGps(0).VarNumSats().isTimeless()) << "the shared time is gone too";
}

TEST(ComData, the_parts_invalidate_only_themselves) {
  ComData data;
  data.DGps(0).SetNumSats(1);
  data.DGps(1).SetNumSats(1);
  data.DMeasurePt(3).SetSlip(1.0);
  data.DMeasurePt(4).SetSlip(1.0);
  data.DGps(0).Invalidate();
  data.DMeasurePt(3).Invalidate();
  EXPECT_FALSE(data.DGps(0).IsNumSatsValid());
  EXPECT_TRUE(data.DGps(1).IsNumSatsValid());
  EXPECT_FALSE(data.DMeasurePt(3).IsSlipValid());
  EXPECT_TRUE(data.DMeasurePt(4).IsSlipValid());
}

TEST(ComData, a_copy_stands_alone) {
  ComData data;
  data.SetNano(kNow);
  data.SetLat(52.0);
  data.SetDevId("123456", 6);
  const ComData copy = data;
  data.SetLat(53.0);
  data.InvDevId();
  EXPECT_EQ(copy.GetLat(), 52.0);
  EXPECT_EQ(copy.VarLat().get_nano(), kNow);
  EXPECT_STREQ(copy.GetDevId(), "123456");
}

TEST(ComData, a_feature_record_is_kept_and_shown) {
  ComData data;
  EXPECT_FALSE(data.GetFeatureCode(62).known);
  data.SetFeatureCode(62, {true, 20200131, 20301231, Enum::FEATURE_STATUS_VALUE_02});
  EXPECT_TRUE(data.GetFeatureCode(62).known);
  EXPECT_FALSE(data.GetFeatureCode(61).known);
  EXPECT_EQ(data.GetFeatureCodeIssue(), 20200131U);
  EXPECT_EQ(data.GetFeatureCodeExpiry(), 20301231U);
  EXPECT_EQ(data.GetFeatureCodeStatus(), Enum::FEATURE_STATUS_VALUE_02);
}

// The three filters, seen alike: A and B are the settings that switch them off.
#define LOW_PASS(filter, a, b)                                                        \
  struct filter {                                                                     \
    ComData data;                                                                     \
    void set_a(double v) { data.Set##a(v); }                                          \
    void set_b(double v) { data.Set##b(static_cast<decltype(data.Get##b())>(v)); }    \
    void inv_a() { data.Inv##a(); }                                                   \
    void basic_a(double v) { data.BasicSet##a(v); }                                   \
    [[nodiscard]] bool a_valid() const { return data.Is##a##Valid(); }                \
    [[nodiscard]] bool b_valid() const { return data.Is##b##Valid(); }                \
    [[nodiscard]] double get_a() const { return data.Get##a(); }                      \
    [[nodiscard]] double get_b() const { return static_cast<double>(data.Get##b()); } \
    [[nodiscard]] bool fixed() const { return data.Is##filter##Fixed(); }             \
    [[nodiscard]] bool changed() const { return data.Is##filter##Changed(); }         \
    [[nodiscard]] bool off() const { return data.Is##filter##Off(); }                 \
    void clear_changed() { data.Clear##filter##Changed(); }                           \
    void clear() { data.Clear##filter(); }                                            \
    void fix(double v, double w);                                                     \
  };
LOW_PASS(LinAccFilt, LinAccFiltFreq, LinAccFiltZeta)
LOW_PASS(AngAccFilt, AngAccFiltFreq, AngAccFiltZeta)
LOW_PASS(LinJerkFilt, LinJerkFiltFreq, LinJerkFiltOrder)

void LinAccFilt::fix(double v, double w) {
  data.FixLinAccFilt(v, w);
}
void AngAccFilt::fix(double v, double w) {
  data.FixAngAccFilt(v, w);
}
void LinJerkFilt::fix(double v, double w) {
  data.FixLinJerkFilt(Enum::FILTER_TYPE_BUTTERWORTH, static_cast<unsigned int>(w), v);
}

template <class F>
class FilterSettings : public testing::Test {};
using Filters = testing::Types<LinAccFilt, AngAccFilt, LinJerkFilt>;
TYPED_TEST_SUITE(FilterSettings, Filters);

TYPED_TEST(FilterSettings, begin_unset_and_unmarked) {
  TypeParam filter;
  EXPECT_FALSE(filter.a_valid() || filter.b_valid());
  EXPECT_FALSE(filter.fixed() || filter.changed() || filter.off());
}

TYPED_TEST(FilterSettings, a_first_value_is_a_change_even_if_the_store_held_it) {
  TypeParam filter;
  filter.set_a(0.0);  // an invalid variable holds 0
  EXPECT_TRUE(filter.changed());
  EXPECT_TRUE(filter.a_valid());
}

TYPED_TEST(FilterSettings, only_another_value_is_a_change) {
  TypeParam filter;
  filter.set_a(10.0);
  filter.clear_changed();
  filter.set_a(10.0);
  EXPECT_FALSE(filter.changed());
  filter.set_a(12.0);
  EXPECT_TRUE(filter.changed());
  EXPECT_EQ(filter.get_a(), 12.0);
}

TYPED_TEST(FilterSettings, a_fixed_setting_is_not_changed) {
  TypeParam filter;
  filter.fix(10.0, 2.0);
  EXPECT_TRUE(filter.fixed());
  EXPECT_TRUE(filter.changed());
  filter.clear_changed();
  filter.set_a(20.0);
  filter.set_b(4.0);
  filter.inv_a();
  EXPECT_TRUE(filter.a_valid());
  EXPECT_EQ(filter.get_a(), 10.0);
  EXPECT_EQ(filter.get_b(), 2.0);
  EXPECT_FALSE(filter.changed());
}

TYPED_TEST(FilterSettings, fixing_again_stores_the_new_values) {
  TypeParam filter;
  filter.fix(10.0, 2.0);
  filter.fix(20.0, 4.0);
  EXPECT_EQ(filter.get_a(), 20.0);
  EXPECT_EQ(filter.get_b(), 4.0);
  EXPECT_TRUE(filter.fixed());
}

TYPED_TEST(FilterSettings, two_zeros_switch_the_filter_off) {
  TypeParam filter;
  filter.set_a(0.0);
  EXPECT_FALSE(filter.off()) << "the other has not arrived";
  filter.set_b(1.0);
  EXPECT_FALSE(filter.off());
  filter.set_b(0.0);
  EXPECT_TRUE(filter.off());
}

TYPED_TEST(FilterSettings, the_order_of_the_two_zeros_does_not_matter) {
  TypeParam filter;
  filter.set_b(0.0);
  EXPECT_FALSE(filter.off());
  filter.set_a(0.0);
  EXPECT_TRUE(filter.off());
}

TYPED_TEST(FilterSettings, off_lasts_until_the_filter_is_cleared) {
  TypeParam filter;
  filter.set_a(0.0);
  filter.set_b(0.0);
  filter.set_a(5.0);
  EXPECT_TRUE(filter.off());
  filter.clear();
  EXPECT_FALSE(filter.off());
}

TYPED_TEST(FilterSettings, clearing_forgets_values_and_marks_of_a_fixed_filter_too) {
  TypeParam filter;
  filter.fix(10.0, 2.0);
  filter.clear();
  EXPECT_FALSE(filter.a_valid() || filter.b_valid());
  EXPECT_FALSE(filter.fixed() || filter.changed() || filter.off());
}

TYPED_TEST(FilterSettings, the_basic_form_stores_and_marks_nothing) {
  TypeParam filter;
  filter.basic_a(3.0);
  EXPECT_TRUE(filter.a_valid());
  EXPECT_FALSE(filter.changed());
  filter.fix(10.0, 2.0);
  filter.basic_a(3.0);
  EXPECT_EQ(filter.get_a(), 3.0) << "not even a fixed filter stops it";
}

TYPED_TEST(FilterSettings, invalidating_the_record_forgets_them) {
  TypeParam filter;
  filter.fix(0.0, 0.0);
  filter.data.Invalidate();
  EXPECT_FALSE(filter.a_valid());
  EXPECT_FALSE(filter.fixed() || filter.changed() || filter.off());
}

TEST(ComData, the_filters_are_set_apart_from_each_other) {
  ComData data;
  data.SetLinAccFiltFreq(0.0);
  data.SetAngAccFiltZeta(0.0);
  data.FixAngAccFilt(1.0, 1.0);
  EXPECT_TRUE(data.IsLinAccFiltChanged());
  EXPECT_FALSE(data.IsLinAccFiltFixed());
  EXPECT_FALSE(data.IsLinAccFiltOff());
  EXPECT_FALSE(data.IsLinJerkFiltChanged());
  EXPECT_FALSE(data.IsLinJerkFiltFixed());
}

TEST(ComData, the_type_of_the_jerk_filter_is_a_setting_like_the_others) {
  ComData data;
  data.SetLinJerkFiltType(Enum::FILTER_TYPE_BUTTERWORTH);
  EXPECT_TRUE(data.IsLinJerkFiltChanged());
  data.FixLinJerkFilt(Enum::FILTER_TYPE_BUTTERWORTH, 4, 10.0);
  data.SetLinJerkFiltType(Enum::FILTER_TYPE_NONE);
  data.InvLinJerkFiltType();
  data.InvLinJerkFiltOrder();
  EXPECT_TRUE(data.IsLinJerkFiltTypeValid());
  EXPECT_TRUE(data.IsLinJerkFiltOrderValid());
  EXPECT_EQ(data.GetLinJerkFiltType(), Enum::FILTER_TYPE_BUTTERWORTH);
}

}  // namespace
}  // namespace Trel::Nav::Test
