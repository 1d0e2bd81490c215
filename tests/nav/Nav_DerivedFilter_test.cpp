#include "Nav_DerivedScene.h"

using namespace Trel;

namespace {

using nav_test::expect_near;
using nav_test::Scene;

constexpr double kStep = 0.01;

// Feeds ten packets of a signal that is no straight line; `set` gives the three axes their value.
template <class Set>
void feed(Scene& scene, Set set) {
  for (int i = 0; i < 10; ++i) {
    scene.at(1000 + i * kStep);
    set(1.0 * i * i);
    scene.derived.FilteredOutputsCompute();
  }
}

// What one filter makes of the same signal, times a factor.
template <class Filter>
double filtered(Filter filter, double factor) {
  for (int i = 0; i < 10; ++i) filter.NewInput(1000 + i * kStep, factor * i * i);
  EXPECT_TRUE(filter.OutputValid());
  return filter.OutputValue();
}

Nav::FilterLPF2ndOrder low_pass() {
  Nav::FilterLPF2ndOrder filter;
  filter.SetCharacteristics(10, 0.7);
  return filter;
}

TEST(FilteredOutputs, each_axis_of_the_acceleration_has_its_own_filter) {
  Scene scene;
  for (auto& filter : scene.filters.lin_acc_low_pass) filter.SetCharacteristics(10, 0.7);
  feed(scene, [&scene](double v) { scene.acceleration(v, 2 * v, -3 * v); });
  expect_near(AXES_OF(scene.data, FiltAx, FiltAy, FiltAz),
              {filtered(low_pass(), 1), filtered(low_pass(), 2), filtered(low_pass(), -3)});
  EXPECT_FALSE(scene.data.IsFiltYxValid());
}

TEST(FilteredOutputs, each_axis_of_the_angular_acceleration_has_its_own_filter) {
  Scene scene;
  for (auto& filter : scene.filters.ang_acc_low_pass) filter.SetCharacteristics(10, 0.7);
  feed(scene, [&scene](double v) { scene.angular_acceleration(v, 2 * v, -3 * v); });
  expect_near(AXES_OF(scene.data, FiltYx, FiltYy, FiltYz),
              {filtered(low_pass(), 1), filtered(low_pass(), 2), filtered(low_pass(), -3)});
  EXPECT_FALSE(scene.data.IsFiltAxValid());
}

TEST(FilteredOutputs, without_characteristics_there_is_no_output) {
  Scene scene;
  feed(scene, [&scene](double v) { scene.acceleration(v, v, v); });
  EXPECT_FALSE(scene.data.IsFiltAxValid());
}

TEST(FilteredOutputs, while_switched_off_the_value_passes_and_no_filter_is_fed) {
  Scene scene;
  for (auto& filter : scene.filters.lin_acc_low_pass) filter.SetCharacteristics(10, 0.7);
  scene.data.SetLinAccFiltFreq(0);
  scene.data.SetLinAccFiltZeta(0);
  ASSERT_TRUE(scene.data.IsLinAccFiltOff());
  feed(scene, [&scene](double v) { scene.acceleration(v, 2 * v, 3 * v); });
  expect_near(AXES_OF(scene.data, FiltAx, FiltAy, FiltAz), {81, 162, 243});
  // Two samples more do not make three.
  for (auto& filter : scene.filters.lin_acc_low_pass) {
    filter.NewInput(2000, 0);
    filter.NewInput(2000 + kStep, 0);
    EXPECT_FALSE(filter.OutputValid());
  }
}

TEST(FilteredOutputs, without_time_key_or_axis_the_filter_is_not_fed) {
  Scene scene;
  scene.data.SetLinAccFiltFreq(0);
  scene.data.SetLinAccFiltZeta(0);
  scene.acceleration(1, 2, 3).data.InvTime();
  scene.derived.FilteredOutputsCompute();
  EXPECT_FALSE(scene.data.IsFiltAxValid());
  scene.at(1000).data.InvAz();
  scene.derived.FilteredOutputsCompute();
  EXPECT_FALSE(scene.data.IsFiltAxValid());
  scene.acceleration(1, 2, 3).key.KMain().Bar_FiltAcc();
  scene.derived.FilteredOutputsCompute();
  EXPECT_FALSE(scene.data.IsFiltAxValid());
  scene.key.KMain().Let_FiltAcc();
  scene.derived.FilteredOutputsCompute();
  EXPECT_TRUE(scene.data.IsFiltAxValid());
}

void jerk(Scene& scene, double value) {
  scene.data.SetJx(value);
  scene.data.SetJy(2 * value);
  scene.data.SetJz(3 * value);
}

void set_average(Scene& scene, double seconds) {
  scene.data.SetLinJerkMovAvgLen(seconds);
  for (auto& average : scene.filters.jerk_average) average.SetTimeInterval(seconds);
}

void set_low_pass(Scene& scene, unsigned char order) {
  constexpr auto kType = Enum::FILTER_TYPE_BUTTERWORTH;
  scene.data.SetLinJerkFiltType(kType);
  scene.data.SetLinJerkFiltOrder(order);
  scene.data.SetLinJerkFiltFreq(10);
  for (auto& filter : scene.filters.jerk_low_pass) filter.SetCharacteristics(kType, order, 10);
}

Nav::FilterLPFNthOrder jerk_low_pass(unsigned char order) {
  Nav::FilterLPFNthOrder filter;
  filter.SetCharacteristics(Enum::FILTER_TYPE_BUTTERWORTH, order, 10);
  return filter;
}

TEST(FilteredOutputs, before_its_settings_arrive_jerk_is_neither_filtered_nor_kept) {
  Scene scene;
  feed(scene, [&scene](double v) { jerk(scene, v); });
  EXPECT_FALSE(scene.data.IsFiltJxValid());
  // Had the average been fed, it would give an output at once.
  set_average(scene, 10);
  jerk(scene.at(1001), 1);
  scene.derived.FilteredOutputsCompute();
  EXPECT_FALSE(scene.data.IsFiltJxValid());
}

TEST(FilteredOutputs, a_moving_average_alone_filters_jerk) {
  Scene scene;
  set_average(scene, 2 * kStep);
  feed(scene, [&scene](double v) { jerk(scene, v); });
  const double mean = (81.0 + 64 + 49) / 3;
  expect_near(AXES_OF(scene.data, FiltJx, FiltJy, FiltJz), {mean, 2 * mean, 3 * mean}, 1e-9);
}

TEST(FilteredOutputs, a_low_pass_alone_filters_jerk) {
  Scene scene;
  set_low_pass(scene, 4);
  feed(scene, [&scene](double v) { jerk(scene, v); });
  expect_near(
      AXES_OF(scene.data, FiltJx, FiltJy, FiltJz),
      {filtered(jerk_low_pass(4), 1), filtered(jerk_low_pass(4), 2), filtered(jerk_low_pass(4), 3)},
      1e-9);
}

TEST(FilteredOutputs, the_low_pass_takes_what_the_moving_average_gives) {
  Scene scene;
  set_average(scene, 2 * kStep);
  set_low_pass(scene, 4);
  Nav::MovingAverager average;
  average.SetTimeInterval(2 * kStep);
  Nav::FilterLPFNthOrder filter = jerk_low_pass(4);
  feed(scene, [&](double v) {
    jerk(scene, v);
    average.NewInput(scene.data.GetTime(), v);
    if (average.OutputValid()) filter.NewInput(scene.data.GetTime(), average.OutputValue());
  });
  ASSERT_TRUE(filter.OutputValid());
  EXPECT_NEAR(scene.data.GetFiltJx(), filter.OutputValue(), 1e-9);
}

TEST(FilteredOutputs, a_moving_average_of_length_0_passes_jerk_through) {
  Scene scene;
  set_average(scene, 0);
  jerk(scene, 5);
  scene.derived.FilteredOutputsCompute();
  expect_near(AXES_OF(scene.data, FiltJx, FiltJy, FiltJz), {5, 10, 15});
  // Nothing was kept: with a length the average starts from its first sample.
  set_average(scene, 10 * kStep);
  jerk(scene.at(1000 + kStep), 7);
  scene.data.InvFiltJx();
  scene.derived.FilteredOutputsCompute();
  EXPECT_FALSE(scene.data.IsFiltJxValid());

  Scene filtering;
  set_average(filtering, 0);
  set_low_pass(filtering, 4);
  feed(filtering, [&filtering](double v) { jerk(filtering, v); });
  EXPECT_NEAR(filtering.data.GetFiltJx(), filtered(jerk_low_pass(4), 1), 1e-9);
}

TEST(FilteredOutputs, a_filter_type_of_none_leaves_the_moving_average_alone) {
  Scene scene;
  set_average(scene, 0);
  set_low_pass(scene, 4);
  scene.data.SetLinJerkFiltType(Enum::FILTER_TYPE_NONE);
  jerk(scene, 5);
  scene.derived.FilteredOutputsCompute();
  EXPECT_EQ(scene.data.GetFiltJx(), 5);
}

TEST(FilteredOutputs, a_low_pass_of_order_2_never_gives_jerk) {
  Scene scene;
  set_average(scene, 0);
  set_low_pass(scene, 2);
  feed(scene, [&scene](double v) { jerk(scene, v); });
  EXPECT_FALSE(scene.data.IsFiltJxValid());
}

TEST(FilteredOutputs, while_switched_off_jerk_passes) {
  Scene scene;
  scene.data.SetLinJerkFiltOrder(0);
  scene.data.SetLinJerkFiltFreq(0);
  ASSERT_TRUE(scene.data.IsLinJerkFiltOff());
  jerk(scene, 5);
  scene.derived.FilteredOutputsCompute();
  expect_near(AXES_OF(scene.data, FiltJx, FiltJy, FiltJz), {5, 10, 15});
}

}  // namespace
