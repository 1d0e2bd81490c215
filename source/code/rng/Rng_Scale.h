// The factors by which raw numbers in range packets become quantities, and the other numbers that
// the packets fix.
//
// A name ends in the unit that its factor leads to: RANGE2M turns counts into metres. What turns
// angles gives radians, and values are held in degrees.
#pragma once

#include "library/Lib_Angle.h"

namespace Trel::Rng {

struct RComScales {
  static constexpr double TIME2SEC = 0.001;
  static constexpr double RANGE2M = 0.001;
  static constexpr double DIST2M = 0.001;
  static constexpr double CURV2PM = 0.0001;
  static constexpr double ANG2RAD = 0.000174532925199433;
  static constexpr double RANGEVEL2MPS = 0.01;
  static constexpr double RANGEACC2MPS2 = 0.01;
  static constexpr double POLYPRO = 0.004;
  static constexpr double CPULOAD2PERCENT = 0.4;

  // Corners of outlines and sensors, in numbers of two bytes and of three.
  static constexpr double POLYGON_POS_LOW = 0.001;
  static constexpr double POLYGON_POS_HIGH = 0.0001;
  static constexpr double MULTSEN_POS_LOW = 0.001;
  static constexpr double MULTSEN_POS_HIGH = 0.0001;
  static constexpr double MULTSEN_ANG_LOW = 0.01;
  static constexpr double MULTSEN_ANG_HIGH = 0.0001;

  // Below these a time to impact, or a gap, is not computed.
  static constexpr double TIME_TO_IMPACT_MIN_SPEED = 0.1;
  static constexpr double TIME_GAP_MIN_SPEED = 0.1;
  static constexpr double TIME_TO_IMPACT_MIN_ACCEL = 0.05;

  // The sizes from which on a lane packet holds its first and its second extension.
  static constexpr unsigned int RNG_PKT_LANE_EXTENSION_1 = 74;
  static constexpr unsigned int RNG_PKT_LANE_EXTENSION_2 = 132;

  // What a feature point's type and number read when they are not known, and what they and the
  // figures of the set read when no set is in use.
  static constexpr unsigned int FEAT_TYPE_UNKNOWN = 254;
  static constexpr unsigned int FEAT_ID_UNKNOWN = 65534;
  static constexpr unsigned int FEAT_TYPE_DISABLED = 0;
  static constexpr unsigned int FEAT_ID_DISABLED = 0;
  static constexpr unsigned int FEAT_REF_NUM_DISABLED = 0;
  static constexpr unsigned int FEAT_NUM_FEATS_DISABLED = 0;
  static constexpr unsigned int FEAT_CELL_MAX_DISABLED = 0;

  static constexpr long long NANOSECONDS_IN_MICROSECOND = 1'000;
  static constexpr long long NANOSECONDS_IN_FINETIME = 4'000;
  static constexpr long long NANOSECONDS_IN_MILLISECOND = 1'000'000;
  static constexpr long long NANOSECONDS_IN_SECOND = 1'000'000'000;
  static constexpr long long NANOSECONDS_IN_MINUTE = 60'000'000'000;
  static constexpr long long NANOSECONDS_IN_WEEK = 604'800'000'000'000;

  // From the raw angles to degrees, and from the raw directions of slow channels.
  static constexpr double ANG2DEG = ANG2RAD * Lib::kDegreesPerRadian;
  static constexpr double FINEANG2DEG = 1e-7;
};

}  // namespace Trel::Rng
