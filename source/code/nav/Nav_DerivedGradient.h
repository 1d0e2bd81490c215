// The gradient of a path, for the vehicle and for its measure points.
#pragma once

#include <optional>

#include "nav/Nav_ComData.h"

namespace Trel::Nav {

// Degrees, positive uphill, from a velocity and its accuracy in metres per second. None below 2 m/s
// or where the accuracy leaves more than a degree open.
[[nodiscard]] std::optional<double> gradient(double vn, double ve, double vd, double accuracy);

// The accuracy of the velocity as a whole, if it is known on all three axes.
[[nodiscard]] std::optional<double> velocity_accuracy(const ComData& data);

}  // namespace Trel::Nav
