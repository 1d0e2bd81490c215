#include <cmath>

#include "library/Lib_Cast.h"
#include "nav/Nav_DerivedAttitude.h"
#include "nav/Nav_DerivedRefFrame.h"
#include "nav/Nav_EarthRadii.h"
#include "nav/Nav_Status.h"
#include "nav/Nav_StatusSet.h"

namespace Trel::Nav {

namespace {

constexpr int kNoneSigned32 = -0x7FFFFFFF - 1;

// Whether a channel of the coarse frame says anything.
bool is_coarse_frame(const unsigned char* p) {
  if (p[6] == 0 && p[7] == 128) return false;
  constexpr unsigned char kNothing[] = {128, 0, 0, 0, 128, 0, 0, 0};
  for (int k = 0; k < 8; ++k) {
    if (p[k] != kNothing[k]) return true;
  }
  return false;
}

// The place that lies `south` and `west` metres from another, all in radians; false if there is
// none.
bool displaced(double& latitude, double& longitude, double altitude, double south, double west) {
  constexpr double kEnough = 0.000001;
  constexpr int kMostSteps = 100;
  const double start = latitude;
  EarthRadii radii;
  double moved = kEnough;
  for (int step = 0; moved >= kEnough && step < kMostSteps; ++step) {
    if (!std::isfinite(latitude)) return false;
    radii = earth_radii(latitude);
    const double next = start - south / (radii.meridian + altitude);
    moved = std::fabs(next - latitude);
    latitude = next;
  }
  longitude -= west / ((radii.transverse + altitude) * std::cos(latitude));
  return std::isfinite(latitude) && std::isfinite(longitude) && moved < kEnough;
}

// The value of a number of a fine frame, if it has one.
std::optional<double> fine(const unsigned char* p, double scale) {
  const int raw = cast_4_byte_LE_to_int32(p);
  if (raw == kNoneSigned32) return std::nullopt;
  return raw * scale;
}

constexpr double kFineDegrees = ComScales::FINEANG2RAD * kDegreesPerRadian;

// What a filter's setting may be: NaN and negative numbers say that there is none.
bool is_setting(double value) {
  return value >= 0.0;
}

}  // namespace

void StatusChannels::DecodeExtra25(const StatusRow&) {
  constexpr int kMost = 8388607;
  if (!key_.KMain().Get_RefFrame_Definition() || !is_coarse_frame(p_)) return;
  if (fine_frame_.complete()) return;
  if (!data_.IsLatValid() || !data_.IsLonValid() || !data_.IsAltValid()) return;

  const int raw_north = cast_3_byte_LE_to_int32(p_);
  const int raw_east = cast_3_byte_LE_to_int32(p_ + 3);
  const auto fits = [](int raw) { return raw >= -kMost && raw < kMost; };
  if (!fits(raw_north) || !fits(raw_east)) return;

  const double heading =
      wrapped(cast_2_byte_LE_to_int16(p_ + 6) * ComScales::REFANG2RAD * kDegreesPerRadian);
  const double cosine = std::cos(heading * kRadiansPerDegree);
  const double sine = std::sin(heading * kRadiansPerDegree);
  const double north = raw_north * ComScales::REFPOS2M;
  const double east = raw_east * ComScales::REFPOS2M;
  double latitude = data_.GetLat() * kRadiansPerDegree;
  double longitude = data_.GetLon() * kRadiansPerDegree;
  const double altitude = data_.GetAlt();
  if (!displaced(latitude, longitude, altitude, north * cosine + east * sine,
                 north * sine - east * cosine)) {
    return;
  }
  ComputeRefFrame(data_, latitude * kDegreesPerRadian, longitude * kDegreesPerRadian, altitude,
                  heading);
}

void StatusChannels::DecodeExtra66(const StatusRow&) {
  if (!key_.KMain().Get_RefFrame_Definition()) return;
  fine_frame_.lat = fine(p_, kFineDegrees);
  fine_frame_.lon = fine(p_ + 4, kFineDegrees);
  update_fine_frame();
}

void StatusChannels::DecodeExtra67(const StatusRow&) {
  if (!key_.KMain().Get_RefFrame_Definition()) return;
  fine_frame_.alt = fine(p_, ComScales::ALT2M);
  fine_frame_.heading = fine(p_ + 4, kFineDegrees);
  update_fine_frame();
}

void StatusChannels::update_fine_frame() {
  if (!fine_frame_.complete()) return;
  ComputeRefFrame(data_, *fine_frame_.lat, *fine_frame_.lon, *fine_frame_.alt,
                  *fine_frame_.heading);
}

void StatusChannels::DecodeExtra45(const StatusRow&) {
  constexpr double kUnchangedStep = 0.1;
  const bool wanted = key_.KMain().Get_WSpeed_Measure();
  TREL_NAV_SET_IF(wanted, data_, WSpeedCount, cast_4_byte_LE_to_int32(p_));
  TREL_NAV_SET_IF(wanted && p_[6] != kNone8, data_, WSpeedTimeUnchanged, p_[6] * kUnchangedStep);
  if (wanted) return update_wheel();
  data_.InvWSpeedNano();
  data_.InvWSpeedTime();
  data_.InvWSpeedFreq();
  data_.InvWSpeedVel();
  data_.InvWSpeedSpeed();
  wheel_ = {};
}

void StatusChannels::update_wheel() {
  update_wheel_time();
  const long long middle = update_wheel_frequency();

  const double scale = data_.GetWSpeedScale();
  const bool known = data_.IsWSpeedFreqValid() && data_.IsWSpeedScaleValid() && scale != 0.0;
  TREL_NAV_SET_IF(known, data_, WSpeedVel, data_.GetWSpeedFreq() / scale);
  TREL_NAV_SET_IF(known, data_, WSpeedSpeed, std::fabs(data_.GetWSpeedVel()));
  if (middle <= 0) return;
  if (data_.IsWSpeedFreqValid()) data_.HitWSpeedFreq().set_nano(middle);
  if (data_.IsWSpeedVelValid()) data_.HitWSpeedVel().set_nano(middle);
  if (data_.IsWSpeedSpeedValid()) data_.HitWSpeedSpeed().set_nano(middle);
}

// The count's time is sent within a minute, which is the one nearest to the packet.
void StatusChannels::update_wheel_time() {
  const unsigned int milliseconds = cast_2_byte_LE_to_uint16(p_ + 4);
  if (milliseconds == kNone16 || !data_.IsNanoValid()) {
    data_.InvWSpeedNano();
    data_.InvWSpeedTime();
    return;
  }
  const long long within = milliseconds * kNanosPerMilli;
  const long long minutes =
      wrap_add(wrap_subtract(data_.GetNano(), within), kNanosPerMinute / 2) / kNanosPerMinute;
  const long long nano = wrap_add(minutes * kNanosPerMinute, within);
  data_.SetWSpeedNano(nano);
  data_.SetWSpeedTime(to_seconds(nano));
}

// Pulses a second since the sample held, and the middle of that time; 0 if there is none.
long long StatusChannels::update_wheel_frequency() {
  data_.InvWSpeedFreq();
  if (!data_.IsWSpeedNanoValid() || !data_.IsWSpeedCountValid()) return 0;
  const WheelSample now = {true, data_.GetWSpeedNano(), data_.GetWSpeedCount()};
  const WheelSample last = wheel_;
  wheel_ = now;
  if (!last.held || last.nano >= now.nano) return 0;

  const auto pulses = static_cast<int>(static_cast<unsigned int>(now.count) -
                                       static_cast<unsigned int>(last.count));
  const long long elapsed = wrap_subtract(now.nano, last.nano);
  data_.SetWSpeedFreq(pulses / to_seconds(elapsed));
  return wrap_add(last.nano, elapsed / 2);
}

void StatusChannels::DecodeExtra63(const StatusRow&) {
  const bool wanted = key_.KMain().Get_FiltAngAccConfig();
  const double frequency = cast_4_byte_LE_to_real32(p_);
  const double damping = cast_4_byte_LE_to_real32(p_ + 4);
  TREL_NAV_SET_IF(wanted && is_setting(frequency), data_, AngAccFiltFreq, frequency);
  TREL_NAV_SET_IF(wanted && is_setting(damping), data_, AngAccFiltZeta, damping);
  if (!data_.IsAngAccFiltFreqValid() || !data_.IsAngAccFiltZetaValid()) return;
  if (!data_.IsAngAccFiltChanged()) return;
  for (FilterLPF2ndOrder& filter : filters_.ang_acc_low_pass) {
    filter.SetCharacteristics(data_.GetAngAccFiltFreq(), data_.GetAngAccFiltZeta());
  }
  data_.ClearAngAccFiltChanged();
}

void StatusChannels::DecodeExtra74(const StatusRow&) {
  const bool wanted = key_.KMain().Get_FiltLinAccConfig();
  const double frequency = cast_4_byte_LE_to_real32(p_);
  const double damping = cast_4_byte_LE_to_real32(p_ + 4);
  TREL_NAV_SET_IF(wanted && is_setting(frequency), data_, LinAccFiltFreq, frequency);
  TREL_NAV_SET_IF(wanted && is_setting(damping), data_, LinAccFiltZeta, damping);
  if (!data_.IsLinAccFiltFreqValid() || !data_.IsLinAccFiltZetaValid()) return;
  if (!data_.IsLinAccFiltChanged()) return;
  for (FilterLPF2ndOrder& filter : filters_.lin_acc_low_pass) {
    filter.SetCharacteristics(data_.GetLinAccFiltFreq(), data_.GetLinAccFiltZeta());
  }
  data_.ClearLinAccFiltChanged();
}

void StatusChannels::DecodeExtra87(const StatusRow&) {
  const bool wanted = key_.KMain().Get_FiltLinJerkConfig();
  const bool filtered = wanted && p_[0] != 0;
  TREL_NAV_SET_IF(filtered, data_, LinJerkFiltType, Enum::Cast_FILTER_TYPE(p_[0] & 15));
  TREL_NAV_SET_IF(filtered, data_, LinJerkFiltOrder, static_cast<unsigned int>(p_[0] >> 4));
  const double frequency = cast_4_byte_LE_to_real32(p_ + 1);
  TREL_NAV_SET_IF(wanted && is_setting(frequency), data_, LinJerkFiltFreq, frequency);

  const unsigned int length = cast_3_byte_LE_to_uint32(p_ + 5);
  TREL_NAV_SET_IF(wanted && length != kNone24, data_, LinJerkMovAvgLen,
                  length * NComScales::JERKMOVAVGFACTOR);
  if (data_.IsLinJerkMovAvgLenValid()) {
    const auto set = [&](MovingAverager& average) {
      average.SetTimeInterval(data_.GetLinJerkMovAvgLen());
    };
    for (MovingAverager& average : filters_.jerk_average) set(average);
    for (MovingAverager& average : filters_.iso_jerk_average) set(average);
  }
  if (data_.IsLinJerkFiltTypeValid() && data_.IsLinJerkFiltOrderValid() &&
      data_.IsLinJerkFiltFreqValid() && data_.IsLinJerkFiltChanged()) {
    const auto set = [&](FilterLPFNthOrder& filter) {
      filter.SetCharacteristics(data_.GetLinJerkFiltType(),
                                static_cast<unsigned char>(data_.GetLinJerkFiltOrder()),
                                data_.GetLinJerkFiltFreq());
    };
    for (FilterLPFNthOrder& filter : filters_.jerk_low_pass) set(filter);
    for (FilterLPFNthOrder& filter : filters_.iso_jerk_low_pass) set(filter);
    data_.ClearLinJerkFiltChanged();
  }
}

}  // namespace Trel::Nav
