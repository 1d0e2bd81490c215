#include <cmath>

#include "library/ecef.h"
#include "nav/Nav_Derived.h"

namespace Trel::Nav {

namespace {

using Key = ComKey::KeyMain;

constexpr Axes kVelocity = TREL_NAV_AXES(Vn, Ve, Vd);
constexpr Axes kAcc = TREL_NAV_AXES(Ax, Ay, Az);
constexpr Axes kFiltAcc = TREL_NAV_AXES(FiltAx, FiltAy, FiltAz);
constexpr Axes kRate = TREL_NAV_AXES(Wx, Wy, Wz);
constexpr Axes kIsoVn = TREL_NAV_ISO_AXES(IsoVn);
constexpr Axes kIsoAn = TREL_NAV_ISO_AXES(IsoAn);
constexpr Axes kFiltIsoAn = TREL_NAV_ISO_AXES(FiltIsoAn);
constexpr Axes kIsoJn = TREL_NAV_ISO_AXES(IsoJn);
constexpr Axes kFiltIsoJn = TREL_NAV_ISO_AXES(FiltIsoJn);
constexpr Axes kIsoWo = TREL_NAV_ISO_AXES(IsoWo);

// Linear quantities start in the earth-fixed system and go on to the intermediate one and the
// vehicle's; angular ones start in the vehicle's and go the other way.
constexpr std::array<TurnedGroup, 5> kEarthToInter = {{
    {&Key::Get_IsoVelInter, kIsoVn, TREL_NAV_ISO_AXES(IsoVh)},
    {&Key::Get_IsoAccInter, kIsoAn, TREL_NAV_ISO_AXES(IsoAh)},
    {&Key::Get_FiltIsoAccInter, kFiltIsoAn, TREL_NAV_ISO_AXES(FiltIsoAh)},
    {&Key::Get_IsoJerkInter, kIsoJn, TREL_NAV_ISO_AXES(IsoJh)},
    {&Key::Get_FiltIsoJerkInter, kFiltIsoJn, TREL_NAV_ISO_AXES(FiltIsoJh)},
}};
constexpr std::array<TurnedGroup, 5> kInterToVehicle = {{
    {&Key::Get_IsoVelVeh, TREL_NAV_ISO_AXES(IsoVh), TREL_NAV_ISO_AXES(IsoVo)},
    {&Key::Get_IsoAccVeh, TREL_NAV_ISO_AXES(IsoAh), TREL_NAV_ISO_AXES(IsoAo)},
    {&Key::Get_FiltIsoAccVeh, TREL_NAV_ISO_AXES(FiltIsoAh), TREL_NAV_ISO_AXES(FiltIsoAo)},
    {&Key::Get_IsoJerkVeh, TREL_NAV_ISO_AXES(IsoJh), TREL_NAV_ISO_AXES(IsoJo)},
    {&Key::Get_FiltIsoJerkVeh, TREL_NAV_ISO_AXES(FiltIsoJh), TREL_NAV_ISO_AXES(FiltIsoJo)},
}};
constexpr std::array<TurnedGroup, 3> kVehicleToInter = {{
    {&Key::Get_IsoAngVelInter, kIsoWo, TREL_NAV_ISO_AXES(IsoWh)},
    {&Key::Get_IsoAngAccInter, TREL_NAV_ISO_AXES(IsoYo), TREL_NAV_ISO_AXES(IsoYh)},
    {&Key::Get_FiltIsoAngAccInter, TREL_NAV_ISO_AXES(FiltIsoYo), TREL_NAV_ISO_AXES(FiltIsoYh)},
}};
constexpr std::array<TurnedGroup, 3> kInterToEarth = {{
    {&Key::Get_IsoAngVelEarth, TREL_NAV_ISO_AXES(IsoWh), TREL_NAV_ISO_AXES(IsoWn)},
    {&Key::Get_IsoAngAccEarth, TREL_NAV_ISO_AXES(IsoYh), TREL_NAV_ISO_AXES(IsoYn)},
    {&Key::Get_FiltIsoAngAccEarth, TREL_NAV_ISO_AXES(FiltIsoYh), TREL_NAV_ISO_AXES(FiltIsoYn)},
}};

// Body axes to the vehicle system: y and z change sign.
constexpr std::array<TurnedGroup, 2> kBodyToVehicle = {{
    {&Key::Get_IsoAngAccVeh, TREL_NAV_AXES(Yx, Yy, Yz), TREL_NAV_ISO_AXES(IsoYo)},
    {&Key::Get_FiltIsoAngAccVeh, TREL_NAV_AXES(FiltYx, FiltYy, FiltYz),
     TREL_NAV_ISO_AXES(FiltIsoYo)},
}};

// From north-east-down to earth-fixed axes, and from body to vehicle axes.
Triple earth_fixed(const Triple& v) {
  return {v.y, v.x, -v.z};
}
Triple vehicle(const Triple& v) {
  return {v.x, -v.y, -v.z};
}

}  // namespace

bool DerivedOutputs::wants_iso() const {
  const auto& key = key_.KMain();
  return key.Get_IsoAngPos() || key.Get_IsoVelEarth() || key.Get_IsoAccEarth() ||
         key.Get_FiltIsoAccEarth() || key.Get_IsoJerkEarth() || key.Get_FiltIsoJerkEarth() ||
         key.Get_IsoAngVelVeh() || any_wanted<kBodyToVehicle>(key) ||
         any_wanted<kEarthToInter>(key) || any_wanted<kInterToVehicle>(key) ||
         any_wanted<kVehicleToInter>(key) || any_wanted<kInterToEarth>(key);
}

void DerivedOutputs::Iso8855OutputsCompute(bool predicting) {
  if (!iso_) return;
  if (key_.KMain().Get_IsoAngPos()) compute_iso_angles();
  if (!is_attitude_valid()) return;
  attitude_.set(data_.GetHeading(), data_.GetPitch(), data_.GetRoll());
  iso_attitude_.set(90.0 - data_.GetHeading(), -data_.GetPitch(), data_.GetRoll());
  compute_iso_sources(predicting);

  const auto& key = key_.KMain();
  turn<kEarthToInter>(data_, key, [this](const Triple& vector) {
    return turned_back(iso_attitude_.level_to_outer(), vector);
  });
  turn<kInterToVehicle>(data_, key, [this](const Triple& vector) {
    return turned_back(iso_attitude_.body_to_level(), vector);
  });
  turn<kVehicleToInter>(data_, key, [this](const Triple& vector) {
    return turned(iso_attitude_.body_to_level(), vector);
  });
  turn<kInterToEarth>(data_, key, [this](const Triple& vector) {
    return turned(iso_attitude_.level_to_outer(), vector);
  });
}

void DerivedOutputs::Iso8855OutputsInvalidate() {
  if (!iso_) return;
  const auto& key = key_.KMain();
  if (key.Get_IsoAngPos()) {
    data_.InvIsoYaw();
    data_.InvIsoPitch();
    data_.InvIsoRoll();
  }
  if (key.Get_IsoVelEarth()) kIsoVn.invalidate(data_);
  if (key.Get_IsoAccEarth()) kIsoAn.invalidate(data_);
  if (key.Get_FiltIsoAccEarth()) kFiltIsoAn.invalidate(data_);
  if (key.Get_IsoJerkEarth()) kIsoJn.invalidate(data_);
  if (key.Get_FiltIsoJerkEarth()) kFiltIsoJn.invalidate(data_);
  if (key.Get_IsoAngVelVeh()) kIsoWo.invalidate(data_);
  invalidate_wanted<kBodyToVehicle>(data_, key);
  invalidate_wanted<kEarthToInter>(data_, key);
  invalidate_wanted<kInterToVehicle>(data_, key);
  invalidate_wanted<kVehicleToInter>(data_, key);
  invalidate_wanted<kInterToEarth>(data_, key);
}

void DerivedOutputs::compute_iso_angles() {
  if (data_.IsHeadingValid()) {
    auto& yaw = data_.HitIsoYaw();
    yaw = data_.VarHeading();
    yaw.negate();
    yaw.put((data_.GetHeading() > 270.0 ? 450.0 : 90.0) - data_.GetHeading());
  }
  if (data_.IsPitchValid()) {
    auto& pitch = data_.HitIsoPitch();
    pitch = data_.VarPitch();
    pitch.negate();
  }
  if (data_.IsRollValid()) data_.HitIsoRoll() = data_.VarRoll();
}

void DerivedOutputs::compute_iso_sources(bool predicting) {
  const auto& key = key_.KMain();
  Triple velocity;
  if (key.Get_IsoVelEarth() && kVelocity.read(data_, velocity)) {
    kIsoVn.write(data_, earth_fixed(velocity));
  }
  const bool corrected =
      key.Get_IsoAccEarth() || key.Get_FiltIsoAccEarth() || key.Get_IsoAngVelVeh();
  if (corrected && compute_corrections()) {
    if (key.Get_IsoAccEarth()) compute_iso_acceleration(kAcc, kIsoAn);
    if (key.Get_FiltIsoAccEarth()) compute_iso_acceleration(kFiltAcc, kFiltIsoAn);
    if (key.Get_IsoAngVelVeh()) compute_iso_rate();
  }
  turn<kBodyToVehicle>(data_, key, vehicle);
  if (predicting || !form_.jerk) return;
  if (key.Get_IsoJerkEarth()) compute_iso_jerk();
  if (key.Get_FiltIsoJerkEarth()) {
    filter_jerk(filters_.iso_jerk_low_pass, filters_.iso_jerk_average, kIsoJn, kFiltIsoJn);
  }
}

// Whether the earth's gravity and rotation are known here; a pole, where east has no direction, and
// what is no place on earth have none.
bool DerivedOutputs::compute_corrections() {
  constexpr double kLowestAltitude = -1.0e6;
  constexpr double kNearestPole = 1e-6;  // degrees
  Triple velocity;
  if (!data_.IsLatValid() || !data_.IsLonValid() || !data_.IsAltValid()) return false;
  if (!kVelocity.read(data_, velocity)) return false;
  const double lat = data_.GetLat();
  const double lon = data_.GetLon();
  const double alt = data_.GetAlt();
  if (!(std::fabs(lat) <= 90.0 - kNearestPole) || !std::isfinite(lon)) return false;
  if (!std::isfinite(alt) || !(alt > kLowestAltitude)) return false;
  const Lib::GeodeticPosition position = {lat * kRadiansPerDegree, lon * kRadiansPerDegree, alt};
  const Vector travel(velocity);
  Vector acceleration;
  Vector rate;
  if (Lib::Lib__compute_imu_b2n_corrections(&acceleration, &rate, &position, &travel) !=
      Lib::kSuccess) {
    return false;
  }
  acceleration_correction_ = acceleration.triple();
  rate_correction_ = {rate[0] * kDegreesPerRadian, rate[1] * kDegreesPerRadian,
                      rate[2] * kDegreesPerRadian};
  return true;
}

void DerivedOutputs::compute_iso_acceleration(const Axes& from, const Axes& to) {
  Triple sensed;
  if (!from.read(data_, sensed)) return;
  const Triple v = turned(attitude_.body_to_outer(), sensed);
  const Triple& c = acceleration_correction_;
  to.write(data_, earth_fixed({v.x + c.x, v.y + c.y, v.z + c.z}));
}

void DerivedOutputs::compute_iso_rate() {
  Triple sensed;
  if (!kRate.read(data_, sensed)) return;
  const Triple c = turned_back(attitude_.body_to_outer(), rate_correction_);
  kIsoWo.write(data_, vehicle({sensed.x + c.x, sensed.y + c.y, sensed.z + c.z}));
}

void DerivedOutputs::compute_iso_jerk() {
  Triple acceleration;
  if (!data_.IsTimeValid() || !kIsoAn.read(data_, acceleration)) return;
  auto& rates = filters_.iso_jerk;
  const double time = data_.GetTime();
  rates[0].NewInput(time, acceleration.x);
  rates[1].NewInput(time, acceleration.y);
  rates[2].NewInput(time, acceleration.z);
  if (rates[0].OutputValid()) data_.SetIsoJnX(rates[0].OutputValue());
  if (rates[1].OutputValid()) data_.SetIsoJnY(rates[1].OutputValue());
  if (rates[2].OutputValid()) data_.SetIsoJnZ(rates[2].OutputValue());
}

}  // namespace Trel::Nav
