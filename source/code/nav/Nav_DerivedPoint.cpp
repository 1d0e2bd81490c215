#include <cmath>

#include "nav/Nav_Derived.h"
#include "nav/Nav_DerivedGradient.h"

namespace Trel::Nav {

namespace {

constexpr Axes kMounting = TREL_NAV_AXES(Imu2VehHeading, Imu2VehPitch, Imu2VehRoll);
constexpr Axes kRate = TREL_NAV_AXES(Wx, Wy, Wz);
constexpr Axes kVelocity = TREL_NAV_AXES(Vn, Ve, Vd);

}  // namespace

void DerivedOutputs::DisplacedOutputsCompute() {
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
      ready = true;
    }
    displace(index, rate, velocity);
  }
}

void DerivedOutputs::displace(unsigned int index, const Triple& degrees, const Triple& velocity) {
  constexpr double kLeastSquaredSpeed = 0.0196;
  ComDataMeasurePt& point = data_.DMeasurePt(index);
  const auto& key = key_.KMeasurePt(index);
  const Vector arm(point.GetPointXv(), point.GetPointYv(), point.GetPointZv());
  const Vector rate(degrees.x * kRadiansPerDegree, degrees.y * kRadiansPerDegree,
                    degrees.z * kRadiansPerDegree);
  const Vector unit(velocity);
  Vector motion;
  Lib::MatCrossProduct(&motion, &rate, &arm);
  Lib::MatMultRAB(&motion, &attitude_.body_to_outer(), &motion);
  Lib::MatAddRAB(&motion, &unit, &motion);

  const double squared = motion[0] * motion[0] + motion[1] * motion[1];
  if (!(squared > kLeastSquaredSpeed)) return;
  const double track = std::atan2(motion[1], motion[0]) * kDegreesPerRadian;
  if (key.Get_Track()) point.SetTrack(track);
  if (key.Get_Slip()) point.SetSlip(wrapped(track - data_.GetHeading()));
  if (key.Get_Curvature() && data_.IsWdValid()) {
    point.SetCurvature(data_.GetWd() * kRadiansPerDegree / std::sqrt(squared));
  }
  if (key.Get_AngleGradient() && is_licensed()) compute_point_gradient(point, motion);
}

void DerivedOutputs::compute_point_gradient(ComDataMeasurePt& point, const Vector& velocity) {
  const auto accuracy = velocity_accuracy(data_);
  if (!accuracy) return;
  const auto angle = gradient(velocity[0], velocity[1], velocity[2], *accuracy);
  if (angle) {
    point.SetAngleGradient(*angle);
  } else {
    point.InvAngleGradient();
  }
}

}  // namespace Trel::Nav
