#include <cmath>

#include "library/Lib_Angle.h"
#include "rng/Rng_Derived.h"
#include "rng/Rng_Vehicle.h"

namespace Trel::Rng {

namespace {

// What is not told, as in the form without it, is 0.
double or_zero(const Run& run, std::size_t index) {
  return run.good(index) ? run.get_data(index) : 0.0;
}

bool good_or_untold(const Run& run, std::size_t index) {
  return !run.poor(index);
}

Lib::Triple position(const DataMain& main, std::size_t index) {
  return {main.Get_Hunter_SensorPointsLon(index), main.Get_Hunter_SensorPointsLat(index),
          or_zero(main.Var_Hunter_SensorPointsVert(), index)};
}

// The unit vector along which a sensor looks, in the hunter's axes.
Lib::Triple sight(const DataMain& main, std::size_t index) {
  const double heading = main.Get_Hunter_SensorPointsHeading(index) * Lib::kRadiansPerDegree;
  const double pitch = or_zero(main.Var_Hunter_SensorPointsPitch(), index) * Lib::kRadiansPerDegree;
  const double level = std::cos(pitch);
  return {level * std::cos(heading), level * std::sin(heading), -std::sin(pitch)};
}

bool knows_position(const DataMain& main, std::size_t index) {
  return main.Is_Hunter_SensorPointsLon_Valid(index) &&
         main.Is_Hunter_SensorPointsLat_Valid(index) &&
         good_or_untold(main.Var_Hunter_SensorPointsVert(), index);
}

bool knows_sight(const DataMain& main, std::size_t index) {
  return main.Is_Hunter_SensorPointsHeading_Valid(index) &&
         good_or_untold(main.Var_Hunter_SensorPointsPitch(), index);
}

void set_positions(bool wanted, std::size_t used, const Scene& scene, const PlaceRuns& places) {
  if (!wanted) return places.reject();
  for (std::size_t index = 0; index < used; ++index) {
    if (scene.hunter.is_placed() && knows_position(scene.main, index)) {
      places.set(index, scene.hunter.place(position(scene.main, index)), scene.now);
    } else {
      places.invalidate(index);
    }
  }
  places.end(used);
}

void set_limit(const Scene& scene, std::size_t index, const Lib::Triple& from,
               const Lib::Triple& along, const Run& range, const PlaceRuns& places) {
  if (!range.good(index)) return places.invalidate(index);
  const double r = range.get_data(index);
  places.set(index,
             scene.hunter.place({from.x + r * along.x, from.y + r * along.y, from.z + r * along.z}),
             scene.now);
}

void set_regions(bool wanted, std::size_t used, const Scene& scene, const PlaceRuns& near,
                 const PlaceRuns& far) {
  if (!wanted) {
    near.reject();
    far.reject();
    return;
  }
  const DataMain& main = scene.main;
  for (std::size_t index = 0; index < used; ++index) {
    if (!scene.hunter.is_placed() || !knows_position(main, index) || !knows_sight(main, index)) {
      near.invalidate(index);
      far.invalidate(index);
      continue;
    }
    const Lib::Triple from = position(main, index);
    const Lib::Triple along = sight(main, index);
    set_limit(scene, index, from, along, main.Var_Hunter_SensorPointsRangeMin(), near);
    set_limit(scene, index, from, along, main.Var_Hunter_SensorPointsRangeMax(), far);
  }
  near.end(used);
  far.end(used);
}

}  // namespace

void compute_sensors(const Scene& scene) {
  DataMain& main = scene.main;
  const std::size_t used =
      main.Is_Hunter_SensorPointsUsed_Valid() ? main.Get_Hunter_SensorPointsUsed() : 0;
  set_positions(scene.wanted.Get_Hunter_Local_Sensor(), used, scene,
                {main.Hit_Hunter_SensorPointsPosX(), main.Hit_Hunter_SensorPointsPosY()});
  set_regions(
      scene.wanted.Get_Hunter_Local_SensorRegion(), used, scene,
      {main.Hit_Hunter_SensorRegionNearCentrePosX(), main.Hit_Hunter_SensorRegionNearCentrePosY()},
      {main.Hit_Hunter_SensorRegionFarCentrePosX(), main.Hit_Hunter_SensorRegionFarCentrePosY()});
}

}  // namespace Trel::Rng
