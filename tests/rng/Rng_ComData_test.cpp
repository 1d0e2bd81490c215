#include "rng/Rng_ComData.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>

namespace Trel::Rng::Test {
namespace {

constexpr long long kNow = 1'380'672'010'000'000'000;

// A record too large for the stack, with the time shared.
std::unique_ptr<ComData> record() {
  auto data = std::make_unique<ComData>();
  data->DMain().Set_Nano(kNow);
  data->ShareNano();
  return data;
}

// The accessors of one value of a part, and those of a run. 1 is a value of every type and a
// member of every enumeration.
template <class Part, Lib::ElementType T>
struct Value {
  const char* name;
  bool (Part::*is)() const;
  T (*get)(const Part&);
  void (*set)(Part&);
  void (Part::*inv)();
  void (Part::*rej)();
  Lib::VariableExt<T>& (Part::*hit)();
  const Lib::VariableExt<T>& (Part::*var)() const;
};
template <class Part, Lib::ElementType T>
struct Sequence {
  const char* name;
  std::size_t size;
  bool (Part::*is)(std::size_t) const;
  T (Part::*get)(std::size_t) const;
  void (Part::*set)(std::size_t, T);
  void (Part::*inv_one)(std::size_t);
  void (Part::*inv)();
  void (Part::*rej)();
  const Lib::VarArrayExt<T>& (Part::*var)() const;
};

#define FAMILY(part, Part, name, type)                                                            \
  expect_family(part, Value<Part, type>{                                                          \
                          #name, &Part::Is_##name##_Valid,                                        \
                          [](const Part& p) { return static_cast<type>(p.Get_##name()); },        \
                          [](Part& p) { p.Set_##name(static_cast<type>(1)); }, &Part::Inv_##name, \
                          &Part::Rej_##name, &Part::Hit_##name, &Part::Var_##name});
#define SEQUENCE(part, Part, name, type, count)                                                    \
  expect_run(part, Sequence<Part, type>{#name, count, &Part::Is_##name##_Valid, &Part::Get_##name, \
                                        &Part::Set_##name, &Part::Inv_##name, &Part::Inv_##name,   \
                                        &Part::Rej_##name, &Part::Var_##name});

// What every value's family does.
template <class Part, Lib::ElementType T>
void expect_family(Part& part, const Value<Part, T>& value) {
  SCOPED_TRACE(value.name);
  const Lib::VariableExt<T>& variable = (part.*value.var)();
  EXPECT_FALSE((part.*value.is)()) << "before it has arrived";
  EXPECT_EQ(variable.get_flags().byte(), 0x50);

  value.set(part);
  EXPECT_TRUE((part.*value.is)());
  EXPECT_EQ(value.get(part), T{1});
  EXPECT_EQ(variable.get(), T{1});
  EXPECT_EQ(variable.get_flags().byte(), 0);
  EXPECT_EQ(variable.get_nano(), kNow);

  (part.*value.hit)().setOver();
  EXPECT_FALSE((part.*value.is)()) << "beyond the field is not good";
  EXPECT_EQ(variable.get(), T{1});
  value.set(part);
  EXPECT_TRUE((part.*value.is)()) << "setting makes it good again";

  (part.*value.inv)();
  EXPECT_EQ(variable.get(), T{});
  EXPECT_EQ(variable.get_nano(), 0);
  EXPECT_EQ(variable.get_flags().byte(), 0x50) << "Invalid and Timeless";

  value.set(part);
  (part.*value.rej)();
  EXPECT_EQ(variable.get(), T{});
  EXPECT_EQ(variable.get_nano(), 0);
  EXPECT_EQ(variable.get_flags().byte(), 0x90) << "Rejected and Timeless";
}

// Every entry is 0 at no time, with those flags.
template <Lib::ElementType T>
void expect_all(const Lib::VarArrayExt<T>& run, int flags) {
  for (std::size_t index = 0; index < run.size(); ++index) {
    EXPECT_EQ(run.get_flags(index).byte(), flags) << index;
    EXPECT_EQ(run.get_data(index), T{}) << index;
    EXPECT_EQ(run.get_nano(index), 0) << index;
  }
}

// The same for a run of values: what is done to one entry leaves its neighbours alone.
template <class Part, Lib::ElementType T>
void expect_run(Part& part, const Sequence<Part, T>& run) {
  SCOPED_TRACE(run.name);
  const Lib::VarArrayExt<T>& values = (part.*run.var)();
  ASSERT_EQ(values.size(), run.size);
  const std::size_t last = run.size - 1;
  expect_all(values, 0x50);

  (part.*run.set)(last, 1);
  (part.*run.set)(0, 1);
  EXPECT_TRUE((part.*run.is)(last));
  EXPECT_EQ((part.*run.get)(last), T{1});
  EXPECT_EQ(values.get_data(last), T{1});
  EXPECT_EQ(values.get_flags(last).byte(), 0);
  EXPECT_EQ(values.get_nano(last), kNow);
  EXPECT_FALSE((part.*run.is)(last - 1));
  EXPECT_FALSE((part.*run.is)(1));

  (part.*run.inv_one)(last);
  EXPECT_EQ(values.get_data(last), T{});
  EXPECT_EQ(values.get_nano(last), 0);
  EXPECT_EQ(values.get_flags(last).byte(), 0x50);
  EXPECT_TRUE((part.*run.is)(0));

  (part.*run.rej)();
  expect_all(values, 0x90);
  (part.*run.set)(last, 1);
  (part.*run.rej)();
  expect_all(values, 0x90);
  (part.*run.inv)();
  expect_all(values, 0x50);
  (part.*run.set)(0, 1);
  (part.*run.inv)();
  expect_all(values, 0x50);
  EXPECT_EQ(values.size(), run.size);
}

TEST(DataMain, each_value_has_its_family) {
  const auto data = record();
  DataMain& part = data->DMain();
#define VALUE(name, type, ...) FAMILY(part, DataMain, name, type)
#define HELD(name, type, ...) FAMILY(part, DataMain, name, type)
#define OWN(name, ...)
#define ARRAY(name, type, count, ...) SEQUENCE(part, DataMain, name, type, count)
#include "rng/Rng_ComDataMain.def"
}

TEST(DataTarget, each_value_has_its_family) {
  const auto data = record();
  DataTarget& part = data->DTarget(3);
#define VALUE(name, type, ...) FAMILY(part, DataTarget, name, type)
#define HELD(name, type, ...) FAMILY(part, DataTarget, name, type)
#define ARRAY(name, type, count, ...) SEQUENCE(part, DataTarget, name, type, count)
#include "rng/Rng_ComDataTarget.def"
}

TEST(DataWrap, each_value_has_its_family) {
  const auto data = record();
  DataWrap& part = data->DWrap(7);
#define VALUE(name, type, ...) FAMILY(part, DataWrap, name, type)
#include "rng/Rng_ComDataWrap.def"
}

TEST(ComData, no_two_values_share_a_variable) {
  const auto data = record();
  std::set<const void*> places;
  int count = 0;
#define PLACE(part, name) places.insert(&data->part.Var_##name()), ++count;
#define VALUE(name, ...) PLACE(DMain(), name)
#define HELD(name, ...) PLACE(DMain(), name)
#define ARRAY(name, ...) PLACE(DMain(), name)
#include "rng/Rng_ComDataMain.def"
  for (unsigned int target = 0; target < ComData::kTargets; ++target) {
#define VALUE(name, ...) PLACE(DTarget(target), name)
#define HELD(name, ...) PLACE(DTarget(target), name)
#define ARRAY(name, ...) PLACE(DTarget(target), name)
#include "rng/Rng_ComDataTarget.def"
  }
  for (unsigned int wrap = 0; wrap < ComData::kWraps; ++wrap) {
#define VALUE(name, ...) PLACE(DWrap(wrap), name)
#include "rng/Rng_ComDataWrap.def"
  }
#undef PLACE
  EXPECT_EQ(places.size(), static_cast<std::size_t>(count));
  // 818 elements; four values of time beside them, the centres of five outlines, and the sensors of
  // four targets; and four values of each source.
  EXPECT_EQ(count, 818 + 4 + 5 * 2 + 4 + 8 * 4);
}

TEST(ComData, corners_and_sensors_are_runs_and_all_else_is_single) {
  // A name that tells of corners or sensors, but not of how many there are.
  const auto is_run = [](const std::string& name, const char* of) {
    return name.find(of) != std::string::npos && !name.ends_with("Used");
  };
  const auto expect = [&](const char* named, std::size_t count) {
    const std::string name = named;
    const bool sensors = is_run(name, "SensorPoints") || is_run(name, "SensorRegion");
    EXPECT_EQ(count, is_run(name, "PolygonPoints") ? 256U : sensors ? 64U : 1U) << name;
  };
#define VALUE(name, ...) expect(#name, 1);
#define ARRAY(name, type, count, ...) expect(#name, count);
#include "rng/Rng_ComDataMain.def"
#define VALUE(name, ...) expect(#name, 1);
#define ARRAY(name, type, count, ...) expect(#name, count);
#include "rng/Rng_ComDataTarget.def"
}

TEST(ComData, nano_is_stamped_with_itself) {
  ComData data;
  EXPECT_FALSE(data.DMain().Is_Nano_Valid());
  data.DMain().Set_Nano(kNow);
  EXPECT_TRUE(data.DMain().Is_Nano_Valid());
  EXPECT_EQ(data.DMain().Get_Nano(), kNow);
  EXPECT_EQ(data.DMain().Var_Nano().get_nano(), kNow);
  EXPECT_EQ(data.DMain().Var_Nano().get_flags().byte(), 0);
  data.DMain().Inv_Nano();
  EXPECT_EQ(data.DMain().Var_Nano().get_flags().byte(), 0x50);
}

TEST(ComData, a_value_set_before_any_time_is_good_and_timeless) {
  ComData data;
  data.DMain().Set_CpuLoad(40.0);
  data.DTarget(0).Set_RangeLon(10.0);
  data.DTarget(0).Set_PolygonPointsLon(5, 1.0);
  data.DWrap(0).Set_Address(3);
  EXPECT_TRUE(data.DMain().Is_CpuLoad_Valid());
  EXPECT_TRUE(data.DMain().Var_CpuLoad().isTimeless());
  EXPECT_TRUE(data.DTarget(0).Is_RangeLon_Valid());
  EXPECT_TRUE(data.DTarget(0).Var_RangeLon().isTimeless());
  EXPECT_EQ(data.DTarget(0).Var_PolygonPointsLon().get_flags(5).byte(), 0x10);
  EXPECT_TRUE(data.DWrap(0).Var_Address().isTimeless());
}

TEST(ComData, parts_keep_the_time_that_was_shared_last) {
  ComData data;
  data.DMain().Set_Nano(1'000);
  data.ShareNano();
  data.DMain().Set_Nano(2'000);
  data.DMain().Set_CpuLoad(40.0);
  data.DTarget(3).Set_RangeLon(10.0);
  data.DWrap(7).Set_Address(3);
  EXPECT_EQ(data.DMain().Var_CpuLoad().get_nano(), 2'000) << "the main part needs no sharing";
  EXPECT_EQ(data.DTarget(3).Var_RangeLon().get_nano(), 1'000);
  EXPECT_EQ(data.DWrap(7).Var_Address().get_nano(), 1'000);

  data.DMain().Inv_Nano();
  data.ShareNano();
  data.DTarget(3).Set_RangeLon(10.0);
  data.DWrap(7).Set_Address(3);
  EXPECT_TRUE(data.DTarget(3).Var_RangeLon().isTimeless()) << "nor has it a time after its loss";
  EXPECT_TRUE(data.DWrap(7).Var_Address().isTimeless());
}

TEST(ComData, each_target_and_each_source_has_values_of_its_own) {
  const auto data = record();
  data->DTarget(2).Set_RangeLon(10.0);
  data->DWrap(5).Set_Address(3);
  for (unsigned int target = 0; target < ComData::kTargets; ++target) {
    EXPECT_EQ(data->DTarget(target).Is_RangeLon_Valid(), target == 2) << target;
  }
  for (unsigned int wrap = 0; wrap < ComData::kWraps; ++wrap) {
    EXPECT_EQ(data->DWrap(wrap).Is_Address_Valid(), wrap == 5) << wrap;
  }
}

TEST(ComData, an_enumerated_value_takes_any_number) {
  const auto data = record();
  DataTarget& target = data->DTarget(0);
  target.Set_ModeStatus(3);
  EXPECT_EQ(target.Get_ModeStatus(), Enum::RNG_RANGE_MODE_VALUE_03);
  target.Set_ModeStatus(255);
  EXPECT_EQ(target.Get_ModeStatus(), Enum::RNG_RANGE_MODE_UNKNOWN);
  data->DMain().Set_ProductModel(354);
  EXPECT_EQ(data->DMain().Var_ProductModel().get(), 354);
  data->DMain().Set_Hunter_Provenance(Enum::PROVENANCE_TYPE_VALUE_18);
  EXPECT_EQ(data->DMain().Var_Hunter_Provenance().get(), 18);
}

TEST(ComData, invalidate_empties_every_part) {
  const auto data = record();
  data->DMain().Set_CpuLoad(40.0);
  data->DMain().Set_TimeFromStart(1.0);
  data->DMain().Set_Hunter_SensorPointsID(63, 9);
  data->DTarget(1).Set_RangeLon(10.0);
  data->DTarget(1).Rej_PolygonPointsLon();
  data->DWrap(2).Set_Address(3);

  data->Invalidate();

  EXPECT_EQ(data->DMain().Var_Nano().get_flags().byte(), 0x50);
  EXPECT_EQ(data->DMain().Var_CpuLoad().get_flags().byte(), 0x50);
  EXPECT_EQ(data->DMain().Var_TimeFromStart().get_flags().byte(), 0x50);
  EXPECT_EQ(data->DMain().Var_Hunter_SensorPointsID().get_flags(63).byte(), 0x50);
  EXPECT_EQ(data->DMain().Var_Hunter_SensorPointsID().get_data(63), 0U);
  EXPECT_EQ(data->DTarget(1).Var_RangeLon().get_flags().byte(), 0x50);
  EXPECT_EQ(data->DTarget(1).Var_PolygonPointsLon().get_flags(0).byte(), 0x50);
  EXPECT_EQ(data->DWrap(2).Var_Address().get_flags().byte(), 0x50);
  data->DTarget(1).Set_RangeLon(10.0);
  data->DWrap(2).Set_Address(3);
  EXPECT_TRUE(data->DTarget(1).Var_RangeLon().isTimeless()) << "the shared time is gone too";
  EXPECT_TRUE(data->DWrap(2).Var_Address().isTimeless());
}

}  // namespace
}  // namespace Trel::Rng::Test
