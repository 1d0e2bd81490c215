// The earth's radii of curvature at any latitude that a packet can carry.
#pragma once

#include <cmath>

#include "library/ecef.h"

namespace Trel::Nav {

// Metres, along the meridian and across it.
struct EarthRadii {
  double meridian = 0.0;
  double transverse = 0.0;
};

// `latitude` is in radians and finite. Beyond the poles it is the place that it reaches there.
[[nodiscard]] inline EarthRadii earth_radii(double latitude) {
  EarthRadii radii;
  Lib::Lib__compute_earth_curvature(&radii.meridian, &radii.transverse,
                                    std::asin(std::sin(latitude)));
  return radii;
}

}  // namespace Trel::Nav
