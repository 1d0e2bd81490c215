#include "rng/Rng_Derived.h"
#include "rng/Rng_Run.h"

namespace Trel::Rng {

namespace {

using Real = Lib::VariableExt<double>;

void set_same(bool wanted, const Real& value, Real& iso) {
  if (!wanted) return iso.reject();
  iso = value;
}

Real turned(Real value) {
  value.negate();
  return value;
}

void set_turned(bool wanted, const Real& value, Real& iso) {
  if (!wanted) return iso.reject();
  iso = turned(value);
}

// An angle from -180 to below 180, of one that lies less than two turns below.
double from_half_turn(double degrees) {
  while (degrees < -180.0) degrees += 360.0;
  return degrees;
}

// The angle anticlockwise from east of a heading, or from axis X of a direction, where `start` is
// that of 0.
void set_yaw(bool wanted, double start, const Real& heading, Real& iso) {
  if (!wanted) return iso.reject();
  Real yaw = turned(heading);
  if (yaw.ok()) yaw.put(from_half_turn(start + yaw.get()));
  iso = yaw;
}

Lib::StampExt stamp_of(const Run& run, std::size_t index) {
  Lib::StampExt stamp;
  stamp.set_nano(run.get_nano(index));
  stamp.set_flags(run.get_flags(index));
  return stamp;
}

void set_places(bool wanted, const Run& from_x, const Run& from_y,
                const Lib::VariableExt<unsigned int>& used, const PlaceRuns& places) {
  if (!wanted) return places.reject();
  const std::size_t count = used.good() ? used.get() : 0;
  for (std::size_t index = 0; index < count; ++index) {
    const Lib::StampExt stamp = stamp_of(from_x, index);
    const Place place = {from_x.get_data(index), -from_y.get_data(index)};
    if ((stamp.get_flags() | from_y.get_flags(index)).ok()) {
      places.set(index, place, stamp);
    } else {
      places.invalidate(index);
    }
  }
  places.end(count);
}

constexpr double kYawOfNorth = 90.0;

}  // namespace

void compute_iso(unsigned int target, const ComKey& key, ComData& data) {
  const ComKey::KeyMain& keyMain = key.KMain();
  const ComKey::KeyTarget& keyTarget = key.KTarget(target);
  DataMain& dataMain = data.DMain();
  DataTarget& dataTarget = data.DTarget(target);
#define SAME(owner, node, iso, value) \
  set_same(key##owner.Get_##node(), data##owner.Var_##value(), data##owner.Hit_##iso());
#define TURNED(owner, node, iso, value) \
  set_turned(key##owner.Get_##node(), data##owner.Var_##value(), data##owner.Hit_##iso());
#define YAW(owner, node, iso, heading)                                       \
  set_yaw(key##owner.Get_##node(), kYawOfNorth, data##owner.Var_##heading(), \
          data##owner.Hit_##iso());
#define LOCAL_YAW(owner, node, iso, angle) \
  set_yaw(key##owner.Get_##node(), 0.0, data##owner.Var_##angle(), data##owner.Hit_##iso());
#define PLACES(owner, node, x, y, from_x, from_y, used)                                       \
  set_places(key##owner.Get_##node(), data##owner.Var_##from_x(), data##owner.Var_##from_y(), \
             data##owner.Var_##used(), {data##owner.Hit_##x(), data##owner.Hit_##y()});
#include "rng/Rng_Iso.def"
}

void compute_iso_lanes(const ComKey& key, ComData& data) {
  const ComKey::KeyMain& keyMain = key.KMain();
  DataMain& dataMain = data.DMain();
#define LANE(node, iso, value) \
  set_turned(keyMain.Get_##node(), dataMain.Var_##value(), dataMain.Hit_##iso());
#include "rng/Rng_Iso.def"
}

}  // namespace Trel::Rng
