#include "nav/Nav_DerivedRefFrame.h"

#include <cmath>

#include "nav/Nav_Derived.h"
#include "nav/Nav_EarthRadii.h"

namespace Trel::Nav {

void ComputeRefFrame(ComData& data, double lat, double lon, double alt, double heading) {
  if (!std::isfinite(lat) || !std::isfinite(lon) || !std::isfinite(alt)) return;
  data.SetRefLat(lat);
  data.SetRefLon(lon);
  data.SetRefAlt(alt);
  data.SetRefHeading(wrapped(heading));
  if (data.IsRefHeadingValid()) {
    data.SetRefHeadingCos(std::cos(data.GetRefHeading() * kRadiansPerDegree));
    data.SetRefHeadingSin(std::sin(data.GetRefHeading() * kRadiansPerDegree));
  }
  if (!data.IsRefLatValid() || !data.IsRefAltValid()) return;
  const double radians = lat * kRadiansPerDegree;
  const EarthRadii radii = earth_radii(radians);
  data.SetRefLatRadius((alt + radii.meridian) * kRadiansPerDegree);
  data.SetRefLonRadius((alt + radii.transverse) * std::cos(radians) * kRadiansPerDegree);
}

bool DerivedOutputs::wants_ref_frame() const {
  const auto& key = key_.KMain();
  return key.Get_RefFrame_Pos() || key.Get_RefFrame_Vel() || key.Get_RefFrame_Yaw() ||
         key.Get_RefFrame_Track();
}

void DerivedOutputs::RefFrameOutputsCompute() {
  const auto& key = key_.KMain();
  if (key.Get_RefFrame_Pos() && data_.IsLatValid() && data_.IsLonValid()) {
    CalculateRefFramePosition(data_.GetLat(), data_.GetLon());
  }
  if (key.Get_RefFrame_Vel() && data_.IsVnValid() && data_.IsVeValid()) {
    CalculateRefFrameVelocity(data_.GetVn(), data_.GetVe());
  }
  if (key.Get_RefFrame_Yaw() && data_.IsHeadingValid()) CalculateRefFrameYaw(data_.GetHeading());
  if (key.Get_RefFrame_Track() && data_.IsVnValid() && data_.IsVeValid()) {
    CalculateRefFrameTrack(data_.GetVn(), data_.GetVe());
  }
}

void DerivedOutputs::CalculateRefFramePosition(double lat, double lon) {
  if (!data_.IsRefLatValid() || !data_.IsRefLonValid()) return;
  if (!data_.IsRefLatRadiusValid() || !data_.IsRefLonRadiusValid()) return;
  const double north = data_.GetRefLatRadius() * (lat - data_.GetRefLat());
  const double east = data_.GetRefLonRadius() * (lon - data_.GetRefLon());
  if (!std::isfinite(north) || !std::isfinite(east)) return;
  data_.SetRefFrameNorthing(north);
  data_.SetRefFrameEasting(east);
  if (!data_.IsRefHeadingSinValid() || !data_.IsRefHeadingCosValid()) return;
  const double sine = data_.GetRefHeadingSin();
  const double cosine = data_.GetRefHeadingCos();
  data_.SetRefFrameX(sine * east + cosine * north);
  data_.SetRefFrameY(sine * north - cosine * east);
}

void DerivedOutputs::CalculateRefFrameVelocity(double vn, double ve) {
  if (!data_.IsRefHeadingSinValid() || !data_.IsRefHeadingCosValid()) return;
  const double sine = data_.GetRefHeadingSin();
  const double cosine = data_.GetRefHeadingCos();
  data_.SetRefFrameVelX(sine * ve + cosine * vn);
  data_.SetRefFrameVelY(sine * vn - cosine * ve);
}

void DerivedOutputs::CalculateRefFrameYaw(double heading) {
  if (!data_.IsRefHeadingValid()) return;
  data_.SetRefFrameYaw(wrapped(heading - data_.GetRefHeading()));
}

// Positive anticlockwise, where RefFrameYaw is positive clockwise.
void DerivedOutputs::CalculateRefFrameTrack(double vn, double ve) {
  constexpr double kLeastSpeed = 2.0;
  if (!data_.IsRefHeadingValid() || !(std::sqrt(vn * vn + ve * ve) > kLeastSpeed)) return;
  const double track = wrapped(std::atan2(ve, vn) * kDegreesPerRadian);
  data_.SetRefFrameTrack(wrapped(-(track - data_.GetRefHeading())));
}

}  // namespace Trel::Nav
