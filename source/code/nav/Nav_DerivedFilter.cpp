#include "nav/Nav_Derived.h"

namespace Trel::Nav {

namespace {

constexpr Axes kAcc = TREL_NAV_AXES(Ax, Ay, Az);
constexpr Axes kFiltAcc = TREL_NAV_AXES(FiltAx, FiltAy, FiltAz);
constexpr Axes kAngAcc = TREL_NAV_AXES(Yx, Yy, Yz);
constexpr Axes kFiltAngAcc = TREL_NAV_AXES(FiltYx, FiltYy, FiltYz);
constexpr Axes kJerk = TREL_NAV_AXES(Jx, Jy, Jz);
constexpr Axes kFiltJerk = TREL_NAV_AXES(FiltJx, FiltJy, FiltJz);

}  // namespace

bool DerivedOutputs::wants_filtered() const {
  const auto& key = key_.KMain();
  return key.Get_FiltAcc() || key.Get_FiltAngAcc() || key.Get_FiltJerk();
}

void DerivedOutputs::FilteredOutputsCompute() {
  const auto& key = key_.KMain();
  if (key.Get_FiltAcc()) {
    filter_acceleration(filters_.lin_acc_low_pass, data_.IsLinAccFiltOff(), kAcc, kFiltAcc);
  }
  if (key.Get_FiltAngAcc()) {
    filter_acceleration(filters_.ang_acc_low_pass, data_.IsAngAccFiltOff(), kAngAcc, kFiltAngAcc);
  }
  if (key.Get_FiltJerk()) {
    filter_jerk(filters_.jerk_low_pass, filters_.jerk_average, kJerk, kFiltJerk);
  }
}

void DerivedOutputs::filter_acceleration(FilterBank::Axes<FilterLPF2ndOrder>& low_pass, bool off,
                                         const Axes& from, const Axes& to) {
  Triple value;
  if (!data_.IsTimeValid() || !from.read(data_, value)) return;
  if (off) return to.write(data_, value);
  const auto filter = [this](FilterLPF2ndOrder& axis, double input, Axes::Value output) {
    axis.NewInput(data_.GetTime(), input);
    if (axis.OutputValid()) (data_.*output)().set(axis.OutputValue(), data_.VarNano());
  };
  filter(low_pass[0], value.x, to.x);
  filter(low_pass[1], value.y, to.y);
  filter(low_pass[2], value.z, to.z);
}

// The moving average, where one is set, comes first; the low pass takes what it gives. A length of
// 0 passes samples through, without a filter that would keep them all.
void DerivedOutputs::filter_jerk(FilterBank::Axes<FilterLPFNthOrder>& low_pass,
                                 FilterBank::Axes<MovingAverager>& average, const Axes& from,
                                 const Axes& to) {
  Triple value;
  if (!data_.IsTimeValid() || !from.read(data_, value)) return;
  if (data_.IsLinJerkFiltOff()) return to.write(data_, value);
  const bool told = data_.IsLinJerkMovAvgLenValid();
  const bool averages = told && data_.GetLinJerkMovAvgLen() > 0.0;
  const bool passes = data_.IsLinJerkFiltTypeValid() && data_.IsLinJerkFiltOrderValid() &&
                      data_.IsLinJerkFiltFreqValid() &&
                      data_.GetLinJerkFiltType() != Enum::FILTER_TYPE_NONE;
  const double time = data_.GetTime();
  const auto filter = [&](std::size_t axis, double input, Axes::Value output) {
    bool valid = told;
    if (averages) {
      average[axis].NewInput(time, input);
      valid = average[axis].OutputValid();
      input = average[axis].OutputValue();
    }
    if (passes && valid == told) {
      low_pass[axis].NewInput(time, input);
      valid = low_pass[axis].OutputValid();
      input = low_pass[axis].OutputValue();
    }
    if (valid) (data_.*output)().set(input, data_.VarNano());
  };
  filter(0, value.x, to.x);
  filter(1, value.y, to.y);
  filter(2, value.z, to.z);
}

}  // namespace Trel::Nav
