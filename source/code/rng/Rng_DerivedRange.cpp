#include <cmath>

#include "library/Lib_Angle.h"
#include "rng/Rng_Derived.h"
#include "rng/Rng_Scale.h"

namespace Trel::Rng {

namespace {

using Real = Lib::VariableExt<double>;

// What a resultant reads when one of its components is beyond what its field can carry.
constexpr double kLargestRange = RComScales::RANGE2M * 2147483647;

double length(double lon, double lat) {
  return std::sqrt(lon * lon + lat * lat);
}

void set_range(DataTarget& target) {
  const Real& lon = target.Var_RangeLon();
  const Real& lat = target.Var_RangeLat();
  if (lon.null() || lat.null()) {
    target.Inv_RangeRes();
    target.Inv_RangeAngle();
    return;
  }
  if (lon.poor() || lat.poor()) {
    target.Set_RangeRes(kLargestRange);
    target.Hit_RangeRes().setOver();
    target.Set_RangeAngle(0.0);
    target.Hit_RangeAngle().setOver();
    target.Hit_RangeAngle().setUnder();
    return;
  }
  target.Set_RangeRes(length(lon.get(), lat.get()));
  target.Set_RangeAngle(std::atan2(lat.get(), lon.get()) * Lib::kDegreesPerRadian);
}

// The values are good: the range and its rate in the plane.
bool knows_rate(const DataTarget& target) {
  return target.Is_RangeRes_Valid() && target.Is_RangeRateLon_Valid() &&
         target.Is_RangeRateLat_Valid();
}

void set_rate(DataTarget& target) {
  if (!knows_rate(target)) return target.Inv_RangeRateRes();
  const double rate_lon = target.Get_RangeRateLon();
  const double rate_lat = target.Get_RangeRateLat();
  const double range = target.Get_RangeRes();
  if (!(range > 0.0)) return target.Set_RangeRateRes(length(rate_lon, rate_lat));
  target.Set_RangeRateRes((target.Get_RangeLon() * rate_lon + target.Get_RangeLat() * rate_lat) /
                          range);
}

void set_acceleration(DataTarget& target) {
  if (!knows_rate(target) || !target.Is_RangeAccLon_Valid() || !target.Is_RangeAccLat_Valid()) {
    return target.Inv_RangeAccRes();
  }
  const double rate_lon = target.Get_RangeRateLon();
  const double rate_lat = target.Get_RangeRateLat();
  const double acc_lon = target.Get_RangeAccLon();
  const double acc_lat = target.Get_RangeAccLat();
  const double range = target.Get_RangeRes();
  if (!(range > 0.0)) return target.Set_RangeAccRes(length(acc_lon, acc_lat));
  const double lon = target.Get_RangeLon();
  const double lat = target.Get_RangeLat();
  const double rate = (lon * rate_lon + lat * rate_lat) / range;
  target.Set_RangeAccRes(
      (rate_lon * rate_lon + rate_lat * rate_lat + lon * acc_lon + lat * acc_lat - rate * rate) /
      range);
}

void set_time_to_impact(const Real& range, const Real& rate, const Lib::StampExt& now,
                        Real& result) {
  if (!range.good() || !rate.good() ||
      std::fabs(rate.get()) < RComScales::TIME_TO_IMPACT_MIN_SPEED) {
    return result.invalidate();
  }
  result.set(-range.get() / rate.get(), now);
}

// The smallest positive t with range + rate t + acc t^2 / 2 = 0; 0 if there is none. The root of
// the larger size comes first, and the other from the product of both, so that nothing cancels.
double least_positive_root(double range, double rate, double acc) {
  const double discriminant = rate * rate - 2.0 * acc * range;
  if (discriminant < 0.0) return 0.0;
  const double sum = -(rate + std::copysign(std::sqrt(discriminant), rate));
  if (sum == 0.0) return 0.0;
  const double one = sum / acc;
  const double other = 2.0 * range / sum;
  const double least = std::fmin(one, other);
  const double most = std::fmax(one, other);
  return least > 0.0 ? least : std::fmax(most, 0.0);
}

void set_time_to_impact(const Real& range, const Real& rate, const Real& acc,
                        const Lib::StampExt& now, Real& result) {
  if (!acc.good()) return result.invalidate();
  if (std::fabs(acc.get()) < RComScales::TIME_TO_IMPACT_MIN_ACCEL) {
    return set_time_to_impact(range, rate, now, result);
  }
  if (!range.good() || !rate.good()) return result.invalidate();
  const double time = least_positive_root(range.get(), rate.get(), acc.get());
  if (!(time > 0.0)) return result.invalidate();
  result.set(time, now);
}

void set_time_gap(DataTarget& target) {
  if (!target.Is_RangeLon_Valid() || !target.Is_HunterVelF_Valid() ||
      target.Get_HunterVelF() < RComScales::TIME_GAP_MIN_SPEED) {
    return target.Inv_TimeGapForward();
  }
  target.Set_TimeGapForward(target.Get_RangeLon() / target.Get_HunterVelF());
}

}  // namespace

void compute_range(unsigned int target, const ComKey& key, ComData& data) {
  const ComKey::KeyTarget& wanted = key.KTarget(target);
  DataTarget& record = data.DTarget(target);
  const Lib::StampExt now = data.DMain().Var_Nano();
  if (wanted.Get_General_Range()) {
    set_range(record);
  } else {
    record.Rej_RangeRes();
    record.Rej_RangeAngle();
  }
  if (wanted.Get_Range_Rate()) {
    set_rate(record);
  } else {
    record.Rej_RangeRateRes();
  }
  if (wanted.Get_Range_Timing()) {
    set_time_to_impact(record.Var_RangeLon(), record.Var_RangeRateLon(), now,
                       record.Hit_TimeToImpactLon());
    set_time_to_impact(record.Var_RangeLat(), record.Var_RangeRateLat(), now,
                       record.Hit_TimeToImpactLat());
  } else {
    record.Rej_TimeToImpactLon();
    record.Rej_TimeToImpactLat();
  }
}

void compute_acceleration(unsigned int target, const ComKey& key, ComData& data) {
  const ComKey::KeyTarget& wanted = key.KTarget(target);
  DataTarget& record = data.DTarget(target);
  const Lib::StampExt now = data.DMain().Var_Nano();
  if (wanted.Get_Range_Acc()) {
    set_acceleration(record);
  } else {
    record.Rej_RangeAccRes();
  }
  if (wanted.Get_Range_Timing_Acc()) {
    set_time_to_impact(record.Var_RangeLon(), record.Var_RangeRateLon(), record.Var_RangeAccLon(),
                       now, record.Hit_TimeToImpactwALon());
    set_time_to_impact(record.Var_RangeLat(), record.Var_RangeRateLat(), record.Var_RangeAccLat(),
                       now, record.Hit_TimeToImpactwALat());
  } else {
    record.Rej_TimeToImpactwALon();
    record.Rej_TimeToImpactwALat();
  }
  if (wanted.Get_Range_Timing_Misc()) {
    set_time_gap(record);
  } else {
    record.Rej_TimeGapForward();
  }
}

}  // namespace Trel::Rng
