// The filters that a navigation codec owns, by purpose, one for each axis.
//
// Status channels give them their settings, each packet feeds those whose signal is wanted. Reset()
// forgets samples and settings.
#pragma once

#include <array>

#include "nav/Nav_Filter.h"

namespace Trel::Nav {

struct FilterBank {
  template <class Filter>
  using Axes = std::array<Filter, 3>;

  // Rates of change: of the acceleration, of the angular rate, of the acceleration in earth axes.
  Axes<Differentiator> jerk;
  Axes<Differentiator> ang_acc;
  Axes<Differentiator> iso_jerk;
  // The filtered linear and angular acceleration.
  Axes<FilterLPF2ndOrder> lin_acc_low_pass;
  Axes<FilterLPF2ndOrder> ang_acc_low_pass;
  // The filtered jerk, in body axes and in earth axes; either form, as the unit is set.
  Axes<FilterLPFNthOrder> jerk_low_pass;
  Axes<FilterLPFNthOrder> iso_jerk_low_pass;
  Axes<MovingAverager> jerk_average;
  Axes<MovingAverager> iso_jerk_average;

  void Reset() {
    const auto reset = [](auto&... groups) {
      const auto each = [](auto& group) {
        for (auto& filter : group) filter.Reset();
      };
      (each(groups), ...);
    };
    reset(jerk, ang_acc, iso_jerk, lin_acc_low_pass, ang_acc_low_pass, jerk_low_pass,
          iso_jerk_low_pass, jerk_average, iso_jerk_average);
  }
};

}  // namespace Trel::Nav
