#include <cmath>

#include "rng/Rng_Derived.h"
#include "rng/Rng_Vehicle.h"

namespace Trel::Rng {

namespace {

void set_corners(bool wanted, const Vehicle& vehicle, const Body& body, Lib::StampExt now,
                 const PlaceRuns& places) {
  if (!wanted) return places.reject();
  const std::size_t used = vehicle.corners_used();
  for (std::size_t index = 0; index < used; ++index) {
    const bool known = body.is_placed() && vehicle.knows_corner(index);
    const Place place = body.place(vehicle.corner(index));
    if (known) {
      places.set(index, place, now);
    } else {
      places.invalidate(index);
    }
  }
  places.end(used);
}

// A point of an outline: the corners on either side, and the share of the way from left to right.
struct OutlinePoint {
  const Lib::VariableExt<unsigned int>& left;
  const Lib::VariableExt<unsigned int>& right;
  const Real& scale;
  Real& x;
  Real& y;
};

#define TREL_RNG_OUTLINE_POINT(target, name)                                           \
  ::Trel::Rng::OutlinePoint {                                                          \
    target.Var_##name##Left(), target.Var_##name##Right(), target.Var_##name##Scale(), \
        target.Hit_##name##PosX(), target.Hit_##name##PosY()                           \
  }

void set_point(bool wanted, const Vehicle& vehicle, const Body& body, const Lib::StampExt& now,
               const OutlinePoint& point) {
  if (!wanted) {
    point.x.reject();
    point.y.reject();
    return;
  }
  const std::size_t left = point.left.get();
  const std::size_t right = point.right.get();
  const std::size_t used = vehicle.corners_used();
  const bool known = body.is_placed() && point.left.good() && point.right.good() &&
                     point.scale.good() && left < used && right < used &&
                     vehicle.knows_corner(left) && vehicle.knows_corner(right);
  if (!known) {
    point.x.invalidate();
    point.y.invalidate();
    return;
  }
  const auto between = [&](const Run& run) {
    const double from = run.get_data(left);
    return from + point.scale.get() * (run.get_data(right) - from);
  };
  const Place place = body.place(Place{between(vehicle.lon), between(vehicle.lat)});
  point.x.set(place.x, now);
  point.y.set(place.y, now);
}

// Where the centre of an outline is; false if that is not known.
bool find_centre(const Vehicle& vehicle, const Body& body, Place& centre) {
  if (!body.is_placed() || !vehicle.centre_lon.good() || !vehicle.centre_lat.good()) return false;
  centre = body.place(Place{vehicle.centre_lon.get(), vehicle.centre_lat.get()});
  return true;
}

void set_centre_distance(const Scene& scene) {
  if (!scene.wanted_of_target.Get_Range_Centre()) {
    return scene.target.Rej_RelDistanceHunterCentreToTargetCentre();
  }
  Place from;
  Place to;
  if (!find_centre(scene.hunter_vehicle, scene.hunter, from) ||
      !find_centre(scene.target_vehicle, scene.other, to)) {
    return scene.target.Inv_RelDistanceHunterCentreToTargetCentre();
  }
  const double x = to.x - from.x;
  const double y = to.y - from.y;
  scene.target.Set_RelDistanceHunterCentreToTargetCentre(std::sqrt(x * x + y * y));
}

}  // namespace

void compute_outlines(const Scene& scene) {
  DataMain& main = scene.main;
  DataTarget& target = scene.target;
  set_corners(scene.wanted.Get_Hunter_Local_Polygon(), scene.hunter_vehicle, scene.hunter,
              scene.now,
              {main.Hit_Hunter_PolygonPointsPosX(), main.Hit_Hunter_PolygonPointsPosY()});
  set_corners(scene.wanted_of_target.Get_Local_Polygon(), scene.target_vehicle, scene.other,
              scene.now, {target.Hit_PolygonPointsPosX(), target.Hit_PolygonPointsPosY()});
  const bool wanted = scene.wanted_of_target.Get_Range_Nearest_Pos();
  for (const OutlinePoint& point : {TREL_RNG_OUTLINE_POINT(target, NearestHunPolyPtToTarPt),
                                    TREL_RNG_OUTLINE_POINT(target, NearestHunPolyPtToTarPoly)}) {
    set_point(wanted, scene.hunter_vehicle, scene.hunter, scene.now, point);
  }
  for (const OutlinePoint& point : {TREL_RNG_OUTLINE_POINT(target, NearestTarPolyPtToHunPt),
                                    TREL_RNG_OUTLINE_POINT(target, NearestTarPolyPtToHunPoly)}) {
    set_point(wanted, scene.target_vehicle, scene.other, scene.now, point);
  }
  set_centre_distance(scene);
}

#undef TREL_RNG_OUTLINE_POINT

}  // namespace Trel::Rng
