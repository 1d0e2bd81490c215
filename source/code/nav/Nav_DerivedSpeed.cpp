#include <cmath>

#include "nav/Nav_Derived.h"
#include "nav/Nav_DerivedGradient.h"
#include "nav/Nav_Feature.h"

namespace Trel::Nav {

bool DerivedOutputs::is_licensed() const {
  return !form_.licensed || IsFeatureCodeEnabled(data_, kMotionFeature);
}

// Speeds and what goes by them.
bool DerivedOutputs::wants_motion() const {
  const auto& key = key_.KMain();
  return key.Get_Speed() || key.Get_Track() || key.Get_Slip() || key.Get_Curvature() ||
         key.Get_Dist() || key.Get_AngleGradient();
}

void DerivedOutputs::SpeedSlipCompute() {
  const double limit = compute_speeds();
  if (!data_.IsSpeed2dValid() || !(data_.GetSpeed2d() > limit) || !is_licensed()) return;
  compute_track();
  compute_slip();
  if (key_.KMain().Get_Curvature() && data_.IsWdValid()) {
    data_.SetCurvature(data_.GetWd() * kRadiansPerDegree / data_.GetSpeed2d());
  }
}

double DerivedOutputs::compute_speeds() {
  constexpr double kNoSpeed = 1e308;
  if (!key_.KMain().Get_Speed() || !data_.IsVnValid() || !data_.IsVeValid()) return kNoSpeed;
  const double vn = data_.GetVn();
  const double ve = data_.GetVe();
  const double horizontal = vn * vn + ve * ve;
  const double speed2d = std::sqrt(horizontal);
  data_.SetSpeed2d(speed2d);

  double accuracy = MIN_HORZ_SPEED;
  if (data_.IsVnAccValid() && data_.IsVeAccValid()) {
    const double vn_acc = data_.GetVnAcc();
    const double ve_acc = data_.GetVeAcc();
    accuracy = std::sqrt(vn_acc * vn_acc + ve_acc * ve_acc);
    data_.SetSpeed2dAcc(accuracy);
  }
  const double limit = SPEED_HOLD_FACTOR * accuracy;
  data_.SetSpeed2dHold(speed2d > limit ? speed2d : 0.0);

  if (!data_.IsVdValid()) return limit;
  const double vd = data_.GetVd();
  const double speed3d = std::sqrt(horizontal + vd * vd);
  data_.SetSpeed3d(speed3d);
  const bool told = data_.IsVdAccValid();
  const double vd_acc = told ? data_.GetVdAcc() : MIN_VERT_SPEED;
  const double accuracy3d = std::sqrt(accuracy * accuracy + vd_acc * vd_acc);
  if (told) data_.SetSpeed3dAcc(accuracy3d);
  data_.SetSpeed3dHold(speed3d > SPEED_HOLD_FACTOR * accuracy3d ? speed3d : 0.0);
  return limit;
}

void DerivedOutputs::compute_track() {
  if (!key_.KMain().Get_Track() || !data_.IsVnValid() || !data_.IsVeValid()) return;
  const double vn = data_.GetVn();
  const double ve = data_.GetVe();
  data_.SetTrack(std::atan2(ve, vn) * kDegreesPerRadian);
  const double horizontal = vn * vn + ve * ve;
  if (!data_.IsVnAccValid() || !data_.IsVeAccValid() || horizontal == 0.0) return;
  const double across = data_.GetVnAcc() * ve;
  const double along = data_.GetVeAcc() * vn;
  const double accuracy = std::sqrt(across * across + along * along) / horizontal;
  data_.SetTrackAcc(accuracy * kDegreesPerRadian);
}

void DerivedOutputs::compute_slip() {
  if (!key_.KMain().Get_Slip() || !data_.IsTrackValid() || !data_.IsHeadingValid()) return;
  data_.SetSlip(wrapped(data_.GetTrack() - data_.GetHeading()));
  if (!data_.IsTrackAccValid() || !data_.IsHeadingAccValid()) return;
  const double track = data_.GetTrackAcc();
  const double heading = data_.GetHeadingAcc();
  data_.SetSlipAcc(std::sqrt(track * track + heading * heading));
}

std::optional<double> gradient(double vn, double ve, double vd, double accuracy) {
  constexpr double kLeastSpeed = 2.0;
  constexpr double kMostError = kRadiansPerDegree;
  const double horizontal = std::sqrt(vn * vn + ve * ve);
  if (horizontal < kLeastSpeed || std::atan(accuracy / horizontal) > kMostError) return {};
  return -std::atan(vd / horizontal) * kDegreesPerRadian;
}

std::optional<double> velocity_accuracy(const ComData& data) {
  if (!data.IsVnAccValid() || !data.IsVeAccValid() || !data.IsVdAccValid()) return {};
  const double vn = data.GetVnAcc();
  const double ve = data.GetVeAcc();
  const double vd = data.GetVdAcc();
  return std::sqrt(vn * vn + ve * ve + vd * vd);
}

void DerivedOutputs::AngleGradientCompute() {
  if (!key_.KMain().Get_AngleGradient() || !is_licensed()) return;
  if (!data_.IsVnValid() || !data_.IsVeValid() || !data_.IsVdValid()) return;
  const auto accuracy = velocity_accuracy(data_);
  if (!accuracy) return;
  const auto angle = gradient(data_.GetVn(), data_.GetVe(), data_.GetVd(), *accuracy);
  if (angle) {
    data_.SetAngleGradient(*angle);
  } else {
    data_.InvAngleGradient();
  }
}

}  // namespace Trel::Nav
