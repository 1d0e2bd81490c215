#include "nav/Nav_Derived.h"

namespace Trel::Nav {

namespace {

struct Travelled {
  Axes::Value speed;
  Axes::Value distance;
};

constexpr std::array<Travelled, 4> kTravelled = {{
    {&ComData::HitSpeed2d, &ComData::HitDist2d},
    {&ComData::HitSpeed2dHold, &ComData::HitDist2dHold},
    {&ComData::HitSpeed3d, &ComData::HitDist3d},
    {&ComData::HitSpeed3dHold, &ComData::HitDist3dHold},
}};

}  // namespace

void DerivedOutputs::DistanceCompute(bool predicting) {
  if (!key_.KMain().Get_Dist() || !data_.IsTimeValid() || !is_licensed()) return;
  const double time = data_.GetTime();
  for (std::size_t i = 0; i < kTravelled.size(); ++i) {
    const auto& speed = (data_.*kTravelled[i].speed)();
    if (!speed.good()) continue;
    Distance& distance = distances_[i];
    if (!distance.started && predicting) continue;

    double total = 0.0;
    if (distance.started) {
      const double mean = (speed.get() + distance.last_speed) * 0.5;
      total = distance.total + (time - distance.last_time) * mean;
    }
    (data_.*kTravelled[i].distance)().set(total, data_.VarNano());
    if (!predicting) distance = {true, time, speed.get(), total};
  }
}

void DerivedOutputs::Reset() {
  distances_ = {};
  attitude_.Reset();
  iso_attitude_.Reset();
}

void DerivedOutputs::NoteKey() {
  rotated_ = wants_rotated();
  iso_ = wants_iso();
  points_ = wants_points();
  wanted_ = rotated_ || iso_ || points_ || wants_filtered() || wants_motion() || wants_ref_frame();
}

}  // namespace Trel::Nav
