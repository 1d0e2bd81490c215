#include "rng/Rng_Vehicle.h"

#include "library/Lib_Angle.h"

namespace Trel::Rng {

Vehicle hunter_of(const ComData& data) {
  const DataMain& main = data.DMain();
  return {main.Var_Hunter_Heading(),
          main.Var_Hunter_Pitch(),
          main.Var_Hunter_Roll(),
          main.Var_Hunter_PolygonOriginPosX(),
          main.Var_Hunter_PolygonOriginPosY(),
          main.Var_Hunter_PolygonCentreLon(),
          main.Var_Hunter_PolygonCentreLat(),
          main.Var_Hunter_PolygonPointsUsed(),
          main.Var_Hunter_PolygonPointsLon(),
          main.Var_Hunter_PolygonPointsLat()};
}

Vehicle target_of(const ComData& data, unsigned int target) {
  const DataTarget& record = data.DTarget(target);
  return {record.Var_Heading(),
          record.Var_Pitch(),
          record.Var_Roll(),
          record.Var_PolygonOriginPosX(),
          record.Var_PolygonOriginPosY(),
          record.Var_PolygonCentreLon(),
          record.Var_PolygonCentreLat(),
          record.Var_PolygonPointsUsed(),
          record.Var_PolygonPointsLon(),
          record.Var_PolygonPointsLat()};
}

Body::Body(const Vehicle& vehicle, const Real& reference, bool wanted)
    : has_attitude_(wanted && vehicle.heading.good() && vehicle.pitch.good() &&
                    vehicle.roll.good()),
      is_placed_(has_attitude_ && reference.good() && vehicle.origin_x.good() &&
                 vehicle.origin_y.good()) {
  if (!has_attitude_) return;
  const double from = reference.good() ? reference.get() : 0.0;
  Lib::set_rotation(axes_, {(vehicle.heading.get() - from) * Lib::kRadiansPerDegree,
                            vehicle.pitch.get() * Lib::kRadiansPerDegree,
                            vehicle.roll.get() * Lib::kRadiansPerDegree});
  if (is_placed_) origin_ = {vehicle.origin_x.get(), vehicle.origin_y.get()};
}

}  // namespace Trel::Rng
