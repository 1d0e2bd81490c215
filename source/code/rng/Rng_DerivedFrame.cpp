#include "library/Lib_Angle.h"
#include "rng/Rng_Derived.h"
#include "rng/Rng_Vehicle.h"

namespace Trel::Rng {

namespace {

// Heading, pitch and roll of a rotation in the record.
struct Rotation {
  Real& heading;
  Real& pitch;
  Real& roll;

  void reject() const {
    heading.reject();
    pitch.reject();
    roll.reject();
  }
  void invalidate() const {
    heading.invalidate();
    pitch.invalidate();
    roll.invalidate();
  }
  void set(double h, double p, double r, const Lib::StampExt& now) const {
    heading.set(h, now);
    pitch.set(p, now);
    roll.set(r, now);
  }
};

void set_ned2range(bool wanted, DataMain& main) {
  const Rotation rotation = {main.Hit_Range_Ned2RangeHeading(), main.Hit_Range_Ned2RangePitch(),
                             main.Hit_Range_Ned2RangeRoll()};
  if (!wanted) return rotation.reject();
  if (!main.Is_Hunter_RefHeading_Valid()) return rotation.invalidate();
  rotation.set(main.Get_Hunter_RefHeading(), 0.0, 0.0, main.Var_Nano());
}

// From the range frame to a vehicle: the frame is level, so that heading alone differs.
void set_range2vehicle(bool wanted, const Vehicle& vehicle, const Body& body, const DataMain& main,
                       const Rotation& rotation) {
  if (!wanted) return rotation.reject();
  if (!body.has_attitude() || !main.Is_Hunter_RefHeading_Valid()) return rotation.invalidate();
  rotation.set(half_turn(vehicle.heading.get() - main.Get_Hunter_RefHeading()), vehicle.pitch.get(),
               vehicle.roll.get(), main.Var_Nano());
}

void set_hunter2target(bool wanted, const Body& hunter, const Body& target,
                       const Lib::StampExt& now, const Rotation& rotation) {
  if (!wanted) return rotation.reject();
  if (!hunter.has_attitude() || !target.has_attitude()) return rotation.invalidate();
  // Column by column the target's axes in the hunter's.
  const Lib::Matrix& axes = target.axes();
  Lib::Matrix relative;
  for (int col = 0; col < 3; ++col) {
    const Lib::Triple axis =
        Lib::turned_back(hunter.axes(), {axes(0, col), axes(1, col), axes(2, col)});
    relative(0, col) = axis.x;
    relative(1, col) = axis.y;
    relative(2, col) = axis.z;
  }
  const Lib::Triple angles = Lib::angles_of(relative);
  rotation.set(angles.x * Lib::kDegreesPerRadian, angles.y * Lib::kDegreesPerRadian,
               angles.z * Lib::kDegreesPerRadian, now);
}

bool wants_hunter(const ComKey::KeyMain& key, const ComKey::KeyTarget& target) {
  return key.Get_Hunter_Range2Hunter() || key.Get_Hunter_Local_Polygon() ||
         key.Get_Hunter_Iso_Polygon() || key.Get_Hunter_Local_Sensor() ||
         key.Get_Hunter_Local_SensorRegion() || key.Get_Hunter_Iso_Sensor() ||
         key.Get_Hunter_Iso_SensorRegion() || target.Get_Hunter2Target() ||
         target.Get_Range_Nearest_Pos() || target.Get_Range_Centre();
}

bool wants_target(const ComKey::KeyTarget& key) {
  return key.Get_Range2Target() || key.Get_Hunter2Target() || key.Get_Local_Polygon() ||
         key.Get_Iso_Polygon() || key.Get_Range_Nearest_Pos() || key.Get_Range_Centre();
}

}  // namespace

void compute_frames(unsigned int target, const ComKey& key, ComData& data) {
  const ComKey::KeyMain& wanted = key.KMain();
  const ComKey::KeyTarget& wanted_of_target = key.KTarget(target);
  DataMain& main = data.DMain();
  DataTarget& record = data.DTarget(target);
  const Lib::StampExt now = main.Var_Nano();
  const Vehicle hunter_vehicle = hunter_of(data);
  const Vehicle target_vehicle = target_of(data, target);
  const Body hunter(hunter_vehicle, main.Var_Hunter_RefHeading(),
                    wants_hunter(wanted, wanted_of_target));
  const Body other(target_vehicle, main.Var_Hunter_RefHeading(), wants_target(wanted_of_target));

  set_ned2range(wanted.Get_Range_Ned2Range(), main);
  set_range2vehicle(wanted.Get_Hunter_Range2Hunter(), hunter_vehicle, hunter, main,
                    {main.Hit_Hunter_Range2HunterHeading(), main.Hit_Hunter_Range2HunterPitch(),
                     main.Hit_Hunter_Range2HunterRoll()});
  set_range2vehicle(wanted_of_target.Get_Range2Target(), target_vehicle, other, main,
                    {record.Hit_Range2TargetHeading(), record.Hit_Range2TargetPitch(),
                     record.Hit_Range2TargetRoll()});
  set_hunter2target(wanted_of_target.Get_Hunter2Target(), hunter, other, now,
                    {record.Hit_Hunter2TargetRelHeading(), record.Hit_Hunter2TargetRelPitch(),
                     record.Hit_Hunter2TargetRelRoll()});
  const Scene scene = {wanted,         wanted_of_target, main,  record, hunter_vehicle,
                       target_vehicle, hunter,           other, now};
  compute_outlines(scene);
  compute_sensors(scene);
}

}  // namespace Trel::Rng
