#include <cmath>

#include "library/Lib_Angle.h"
#include "rng/Rng_Derived.h"
#include "rng/Rng_Vehicle.h"

namespace Trel::Rng {

namespace {

void set_direction(bool wanted, const Real& heading, const Real& reference,
                   const Lib::StampExt& now, Real& angle) {
  if (!wanted) return angle.reject();
  if (!heading.good() || !reference.good()) return angle.invalidate();
  angle.set(full_turn(heading.get() - reference.get()), now);
}

// The unit vector in a direction of the local frame.
Place along(double degrees) {
  const double radians = degrees * Lib::kRadiansPerDegree;
  return {std::cos(radians), std::sin(radians)};
}

// The ends of the hunter's two ranges.
void set_ends(const Real& direction, DataTarget& target) {
  const bool known =
      direction.good() && target.Is_HunterPosX_Valid() && target.Is_HunterPosY_Valid();
  const Place forward = known ? along(direction.get()) : Place{};
  const double x = target.Get_HunterPosX();
  const double y = target.Get_HunterPosY();
  if (known && target.Is_RangeLon_Valid()) {
    target.Set_HunterLonPosX(x + forward.x * target.Get_RangeLon());
    target.Set_HunterLonPosY(y + forward.y * target.Get_RangeLon());
  } else {
    target.Inv_HunterLonPosX();
    target.Inv_HunterLonPosY();
  }
  if (known && target.Is_RangeLat_Valid()) {
    target.Set_HunterLatPosX(x - forward.y * target.Get_RangeLat());
    target.Set_HunterLatPosY(y + forward.x * target.Get_RangeLat());
  } else {
    target.Inv_HunterLatPosX();
    target.Inv_HunterLatPosY();
  }
}

// How far the hunter is to the right of the line along which the target points.
void set_lateral_distance(DataTarget& target) {
  if (!target.Is_LocalAngle_Valid() || !target.Is_HunterPosX_Valid() ||
      !target.Is_HunterPosY_Valid() || !target.Is_PosX_Valid() || !target.Is_PosY_Valid()) {
    return target.Inv_HunterRelLatDist();
  }
  const Place forward = along(target.Get_LocalAngle());
  const double x = target.Get_HunterPosX() - target.Get_PosX();
  const double y = target.Get_HunterPosY() - target.Get_PosY();
  target.Set_HunterRelLatDist(forward.x * y - forward.y * x);
}

void reject_relative(DataTarget& target) {
  target.Rej_HunterRelLatDist();
  target.Rej_HunterLonPosX();
  target.Rej_HunterLonPosY();
  target.Rej_HunterLatPosX();
  target.Rej_HunterLatPosY();
}

}  // namespace

void compute_directions(unsigned int target, const ComKey& key, ComData& data) {
  const ComKey::KeyTarget& wanted = key.KTarget(target);
  DataMain& main = data.DMain();
  DataTarget& record = data.DTarget(target);
  const Lib::StampExt now = main.Var_Nano();
  const Real& reference = main.Var_Hunter_RefHeading();
  set_direction(key.KMain().Get_Hunter_Local_Angle(), main.Var_Hunter_Heading(), reference, now,
                main.Hit_Hunter_LocalAngle());
  set_direction(wanted.Get_Local_Angle(), record.Var_Heading(), reference, now,
                record.Hit_LocalAngle());
  if (!wanted.Get_Range_Centre()) {
    record.Rej_RelHeadingDiff();
  } else if (record.Is_Heading_Valid() && main.Is_Hunter_Heading_Valid()) {
    record.Set_RelHeadingDiff(half_turn(record.Get_Heading() - main.Get_Hunter_Heading()));
  } else {
    record.Inv_RelHeadingDiff();
  }
  if (!wanted.Get_Hunter_Rel()) return reject_relative(record);
  set_ends(main.Var_Hunter_LocalAngle(), record);
  set_lateral_distance(record);
}

}  // namespace Trel::Rng
