// The ellipsoid, as far as a scene of some kilometres needs it.
#pragma once

#include "trakgen/Trakgen_Wave.h"

namespace Trel::Trakgen {

// Metres of one degree of latitude and longitude.
struct DegreeLengths {
  double latitude;
  double longitude;
};

// Those at `latitude` degrees and `altitude` metres above the ellipsoid.
[[nodiscard]] inline DegreeLengths degree_lengths(double latitude, double altitude) {
  constexpr double kAxis = 6378137;
  constexpr double kEccentricity = 0.00669437999014;  // squared
  const double level = sine(latitude / 360);
  const double w = 1 - kEccentricity * level * level;
  const double meridian = kAxis * (1 - kEccentricity) / (w * std::sqrt(w));
  const double normal = kAxis / std::sqrt(w);
  return {(meridian + altitude) * kPi / 180,
          (normal + altitude) * cosine(latitude / 360) * kPi / 180};
}

}  // namespace Trel::Trakgen
