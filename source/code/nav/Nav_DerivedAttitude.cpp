#include "nav/Nav_DerivedAttitude.h"

namespace Trel::Nav {

void Attitude::Reset() {
  degrees_ = {};
  angles_.clear();
  body_to_outer_.clear();
  body_to_level_.clear();
  level_to_outer_.clear();
}

void Attitude::set(double heading, double pitch, double roll) {
  const std::array<double, 3> degrees = {heading, pitch, roll};
  if (angles_.rows != 0 && degrees == degrees_) return;
  Reset();
  degrees_ = degrees;
  angles_.set(heading * kRadiansPerDegree, pitch * kRadiansPerDegree, roll * kRadiansPerDegree);
}

}  // namespace Trel::Nav
