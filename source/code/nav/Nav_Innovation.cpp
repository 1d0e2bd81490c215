#include "nav/Nav_Innovation.h"

#include "nav/Nav_Clock.h"

namespace Trel::Nav {

namespace {

void age(Lib::VariableExt<double>& innovation, long long now) {
  if (!innovation.good() || innovation.isTimeless()) return;
  if (wrap_subtract(now, innovation.get_nano()) <= kInnovationAge) return;
  innovation.setInvalid();
  innovation.setStale();
}

}  // namespace

void UpdateInnAge(ComData& data) {
  if (!data.IsNanoValid()) return;
  const long long now = data.GetNano();
  const auto each = [now](auto&... innovations) { (age(innovations, now), ...); };
  each(data.HitInnPosX(), data.HitInnPosY(), data.HitInnPosZ());
  each(data.HitInnVelX(), data.HitInnVelY(), data.HitInnVelZ());
  each(data.HitInnHeading(), data.HitInnPitch());
  each(data.HitInnZeroVelX(), data.HitInnZeroVelY(), data.HitInnZeroVelZ());
  each(data.HitInnNoSlipH(), data.HitInnNoVSlipP(), data.HitInnWSpeed(), data.HitInnHeadingH());
  each(data.HitInnClockOffset(), data.HitInnClockDrift());
}

}  // namespace Trel::Nav
