#include "nav/Nav_Derived.h"

namespace Trel::Nav {

namespace {

using Key = ComKey::KeyMain;

constexpr std::array<TurnedGroup, 7> kLevelGroups = {{
    {&Key::Get_Acc_Fld, TREL_NAV_AXES(Ax, Ay, Az), TREL_NAV_AXES(Af, Al, Ad)},
    {&Key::Get_FiltAcc_Fld, TREL_NAV_AXES(FiltAx, FiltAy, FiltAz),
     TREL_NAV_AXES(FiltAf, FiltAl, FiltAd)},
    {&Key::Get_Jerk_Fld, TREL_NAV_AXES(Jx, Jy, Jz), TREL_NAV_AXES(Jf, Jl, Jd)},
    {&Key::Get_FiltJerk_Fld, TREL_NAV_AXES(FiltJx, FiltJy, FiltJz),
     TREL_NAV_AXES(FiltJf, FiltJl, FiltJd)},
    {&Key::Get_AngVel_Fld, TREL_NAV_AXES(Wx, Wy, Wz), TREL_NAV_AXES(Wf, Wl, Wd)},
    {&Key::Get_AngAcc_Fld, TREL_NAV_AXES(Yx, Yy, Yz), TREL_NAV_AXES(Yf, Yl, Yd)},
    {&Key::Get_FiltAngAcc_Fld, TREL_NAV_AXES(FiltYx, FiltYy, FiltYz),
     TREL_NAV_AXES(FiltYf, FiltYl, FiltYd)},
}};

constexpr Axes kVelocity = TREL_NAV_AXES(Vn, Ve, Vd);
constexpr Axes kVeh2Out = TREL_NAV_AXES(Veh2OutHeading, Veh2OutPitch, Veh2OutRoll);
constexpr Axes kNed2Surf = TREL_NAV_AXES(Ned2SurfHeading, Ned2SurfPitch, Ned2SurfRoll);
constexpr Axes kNed2Veh = TREL_NAV_AXES(Ned2VehHeading, Ned2VehPitch, Ned2VehRoll);
constexpr Axes kSurf2Out = TREL_NAV_AXES(Surf2OutHeading, Surf2OutPitch, Surf2OutRoll);
constexpr Axes kLps = TREL_NAV_AXES(LpsOmega, LpsPhi, LpsKappa);

// The matrix of a rotation told in degrees.
void rotation_of(Matrix& matrix, const Triple& degrees) {
  const Vector radians(degrees.x * kRadiansPerDegree, degrees.y * kRadiansPerDegree,
                       degrees.z * kRadiansPerDegree);
  Lib::Euler2DirCos(&matrix, &radians);
}

Triple in_degrees(const Vector& radians) {
  return {radians[0] * kDegreesPerRadian, radians[1] * kDegreesPerRadian,
          radians[2] * kDegreesPerRadian};
}

}  // namespace

bool DerivedOutputs::wants_rotated() const {
  const auto& key = key_.KMain();
  return key.Get_Leica() || any_wanted<kLevelGroups>(key) || key.Get_Vel_Fld() ||
         key.Get_Ned2Veh() || key.Get_Surf2Out();
}

void DerivedOutputs::RotateOutputsCompute() {
  if (!rotated_ || !is_attitude_valid()) return;
  attitude_.set(data_.GetHeading(), data_.GetPitch(), data_.GetRoll());
  if (key_.KMain().Get_Leica()) compute_lps();
  if (is_licensed()) {
    turn<kLevelGroups>(data_, key_.KMain(), [this](const Triple& vector) {
      return turned(attitude_.body_to_level(), vector);
    });
  }
  if (key_.KMain().Get_Vel_Fld()) rotate_velocity();
  compute_alignments();
}

void DerivedOutputs::RotateOutputsInvalidate() {
  if (!rotated_) return;
  const auto& key = key_.KMain();
  if (key.Get_Leica()) kLps.invalidate(data_);
  invalidate_wanted<kLevelGroups>(data_, key);
  if (key.Get_Vel_Fld()) {
    data_.InvVf();
    data_.InvVl();
  }
  if (key.Get_Ned2Veh()) kNed2Veh.invalidate(data_);
  if (key.Get_Surf2Out()) kSurf2Out.invalidate(data_);
}

void DerivedOutputs::rotate_velocity() {
  Triple velocity;
  if (!kVelocity.read(data_, velocity)) return;
  const Triple level = turned_back(attitude_.level_to_outer(), velocity);
  data_.SetVf(level.x);
  data_.SetVl(level.y);
}

void DerivedOutputs::compute_lps() {
  Vector lps;
  Lib::Euler2LPS(&lps, &attitude_.angles());
  kLps.write(data_, in_degrees(lps));
}

// The attitude is that of the output axes: N2O = N2V V2O = N2S S2O.
void DerivedOutputs::compute_alignments() {
  Triple degrees;
  Matrix known;
  Matrix sought;
  Vector angles;
  if (key_.KMain().Get_Ned2Veh() && kVeh2Out.read(data_, degrees)) {
    rotation_of(known, degrees);
    Lib::MatMultRABt(&sought, &attitude_.body_to_outer(), &known);
    Lib::DirCos2Euler(&angles, &sought);
    degrees = in_degrees(angles);
    if (degrees.x < 0.0) degrees.x += 360.0;
    kNed2Veh.write(data_, degrees);
  }
  if (key_.KMain().Get_Surf2Out() && kNed2Surf.read(data_, degrees)) {
    rotation_of(known, degrees);
    Lib::MatMultRAtB(&sought, &known, &attitude_.body_to_outer());
    Lib::DirCos2Euler(&angles, &sought);
    kSurf2Out.write(data_, in_degrees(angles));
  }
}

}  // namespace Trel::Nav
