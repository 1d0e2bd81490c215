#include <cmath>

#include "nav/Nav_Derived.h"
#include "nav/Nav_DerivedGradient.h"

namespace Trel::Nav {

namespace {

constexpr Axes kMounting = TREL_NAV_AXES(Imu2VehHeading, Imu2VehPitch, Imu2VehRoll);
constexpr Axes kRate = TREL_NAV_AXES(Wx, Wy, Wz);
constexpr Axes kVelocity = TREL_NAV_AXES(Vn, Ve, Vd);

Triple cross(const Triple& a, const Triple& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Triple sum(const Triple& a, const Triple& b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}

}  // namespace

bool DerivedOutputs::wants_points() const {
  bool wanted = false;
  for (unsigned int index = 0; index < ComData::kMeasurePoints; ++index) {
    wanted |= key_.KMeasurePt(index).Get_Point();
  }
  return wanted;
}

void DerivedOutputs::DisplacedOutputsCompute() {
  if (!points_) return;
  Triple mounting;
  Triple rate;
  Triple velocity;
  bool ready = false;
  for (unsigned int index = 0; index < ComData::kMeasurePoints; ++index) {
    if (!key_.KMeasurePt(index).Get_Point()) continue;
    const ComDataMeasurePt& point = data_.DMeasurePt(index);
    if (!point.IsPointXvValid() || !point.IsPointYvValid() || !point.IsPointZvValid()) continue;
    if (!ready) {
      if (!is_attitude_valid() || !kMounting.read(data_, mounting) || !kRate.read(data_, rate) ||
          !kVelocity.read(data_, velocity)) {
        return;
      }
      attitude_.set(data_.GetHeading(), data_.GetPitch(), data_.GetRoll());
      rate = {rate.x * kRadiansPerDegree, rate.y * kRadiansPerDegree, rate.z * kRadiansPerDegree};
      ready = true;
    }
    displace(index, rate, velocity);
  }
}

void DerivedOutputs::displace(unsigned int index, const Triple& rate, const Triple& velocity) {
  constexpr double kLeastSquaredSpeed = 0.0196;
  ComDataMeasurePt& point = data_.DMeasurePt(index);
  const auto& key = key_.KMeasurePt(index);
  const Triple arm{point.GetPointXv(), point.GetPointYv(), point.GetPointZv()};
  const Triple motion = sum(velocity, turned(attitude_.body_to_outer(), cross(rate, arm)));

  const double squared = motion.x * motion.x + motion.y * motion.y;
  if (!(squared > kLeastSquaredSpeed)) return;
  const double track = std::atan2(motion.y, motion.x) * kDegreesPerRadian;
  if (key.Get_Track()) point.SetTrack(track);
  if (key.Get_Slip()) point.SetSlip(wrapped(track - data_.GetHeading()));
  if (key.Get_Curvature() && data_.IsWdValid()) {
    point.SetCurvature(data_.GetWd() * kRadiansPerDegree / std::sqrt(squared));
  }
  if (key.Get_AngleGradient() && is_licensed()) compute_point_gradient(point, motion);
}

void DerivedOutputs::compute_point_gradient(ComDataMeasurePt& point, const Triple& velocity) {
  const auto accuracy = velocity_accuracy(data_);
  if (!accuracy) return;
  const auto angle = gradient(velocity.x, velocity.y, velocity.z, *accuracy);
  if (angle) {
    point.SetAngleGradient(*angle);
  } else {
    point.InvAngleGradient();
  }
}

}  // namespace Trel::Nav
