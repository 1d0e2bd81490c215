#include <algorithm>
#include <cmath>

#include "rng/Rng_Derived.h"
#include "rng/Rng_Vehicle.h"

namespace Trel::Rng {

namespace {

bool knows_corner(const Vehicle& vehicle, std::size_t index) {
  return vehicle.lon.good(index) && vehicle.lat.good(index);
}

void set_corners(bool wanted, const Vehicle& vehicle, const Body& body, const Lib::StampExt& now,
                 Run& x, Run& y) {
  if (!wanted) {
    reject_run(x);
    reject_run(y);
    return;
  }
  const std::size_t used = vehicle.corners_used();
  for (std::size_t index = 0; index < used; ++index) {
    if (body.is_placed() && knows_corner(vehicle, index)) {
      const Place place =
          body.place({vehicle.lon.get_data(index), vehicle.lat.get_data(index), 0.0});
      set_entry(x, index, place.x, now);
      set_entry(y, index, place.y, now);
    } else {
      Detail::invalidate(x, index);
      Detail::invalidate(y, index);
    }
  }
  end_run(x, used);
  end_run(y, used);
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
                     knows_corner(vehicle, left) && knows_corner(vehicle, right);
  if (!known) {
    point.x.invalidate();
    point.y.invalidate();
    return;
  }
  const auto between = [&](const Run& run) {
    const double from = run.get_data(left);
    return from + point.scale.get() * (run.get_data(right) - from);
  };
  const Place place = body.place({between(vehicle.lon), between(vehicle.lat), 0.0});
  point.x.set(place.x, now);
  point.y.set(place.y, now);
}

// What a row of numbers spans.
struct Span {
  double least;
  double most;

  void add(double number) {
    least = std::min(least, number);
    most = std::max(most, number);
  }
  [[nodiscard]] double middle() const { return (least + most) / 2.0; }
};

// The centre of the rectangle around an outline; false if the outline is not known.
bool find_centre(const Vehicle& vehicle, const Body& body, Place& centre) {
  const std::size_t used = vehicle.corners_used();
  if (!body.is_placed() || used == 0) return false;
  Span lon = {vehicle.lon.get_data(0), vehicle.lon.get_data(0)};
  Span lat = {vehicle.lat.get_data(0), vehicle.lat.get_data(0)};
  for (std::size_t index = 0; index < used; ++index) {
    if (!knows_corner(vehicle, index)) return false;
    lon.add(vehicle.lon.get_data(index));
    lat.add(vehicle.lat.get_data(index));
  }
  centre = body.place({lon.middle(), lat.middle(), 0.0});
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
              scene.now, main.Hit_Hunter_PolygonPointsPosX(), main.Hit_Hunter_PolygonPointsPosY());
  set_corners(scene.wanted_of_target.Get_Local_Polygon(), scene.target_vehicle, scene.other,
              scene.now, target.Hit_PolygonPointsPosX(), target.Hit_PolygonPointsPosY());
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
