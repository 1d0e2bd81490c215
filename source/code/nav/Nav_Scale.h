// The factors by which raw numbers in navigation packets become quantities, and the other numbers
// that the packets fix.
//
// A name ends in the unit that its factor leads to: OUTPOS2M turns counts into metres. What turns
// angles gives radians, and values are held in degrees. Both codecs carry the whole set; the few
// that differ stand in NComScales here and with the MCom codec.
#pragma once

#include "library/Lib_Angle.h"

namespace Trel::Nav {

using Lib::kDegreesPerRadian;
using Lib::kRadiansPerDegree;

struct ComScales {
  // The solution.
  static constexpr double TIME2SEC = 0.001;
  static constexpr double ACC2MPS2 = 0.0001;
  static constexpr double RATE2RPS = 0.00001;
  static constexpr double VEL2MPS = 0.0001;
  static constexpr double ANG2RAD = 0.000001;

  // Innovations, accuracies and sensor errors.
  static constexpr double INNFACTOR = 0.1;
  static constexpr double POSA2M = 0.001;
  static constexpr double VELA2MPS = 0.001;
  static constexpr double ANGA2RAD = 0.00001;
  static constexpr double ANG902RAD = 0.00625;
  static constexpr double GB2RPS = 0.000005;
  static constexpr double AB2MPS2 = 0.0001;
  static constexpr double GSFACTOR = 0.000001;
  static constexpr double ASFACTOR = 0.000001;
  static constexpr double GBA2RPS = 0.000001;
  static constexpr double ABA2MPS2 = 0.00001;
  static constexpr double GSAFACTOR = 0.000001;
  static constexpr double ASAFACTOR = 0.000001;

  // Receivers, antennas and corrections.
  static constexpr double GPSPOS2M = 0.001;
  static constexpr double GPSATT2RAD = 0.0001;
  static constexpr double GPSPOSA2M = 0.0001;
  static constexpr double GPSATTA2RAD = 0.00001;
  static constexpr double DIFFAGE2SEC = 0.01;
  static constexpr double UNDUL2M = 0.005;
  static constexpr double DOPFACTOR = 0.1;
  static constexpr double OMNISTAR_MIN_FREQ = 1520000000.0;
  static constexpr double OMNIFREQ2HZ = 1000.0;
  static constexpr double SNR2DB = 0.2;
  static constexpr double LTIME2SEC = 1.0;

  // Frames and lever arms.
  static constexpr double REFPOS2M = 0.0012;
  static constexpr double REFANG2RAD = 0.0001;
  static constexpr double FINEANG2RAD = 1.74532925199433e-09;
  static constexpr double ALT2M = 0.001;
  static constexpr double ZVPOS2M = 0.001;
  static constexpr double ZVPOSA2M = 0.0001;
  static constexpr double NSPOS2M = 0.001;
  static constexpr double NSPOSA2M = 0.0001;
  static constexpr double ALIGN2RAD = 0.0001;
  static constexpr double ALIGNA2RAD = 0.00001;
  static constexpr double WSPOS2M = 0.001;
  static constexpr double WSPOSA2M = 0.0001;

  // Settings of the unit.
  static constexpr double SZVDELAY2S = 1.0;
  static constexpr double SZVPERIOD2S = 0.1;
  static constexpr double TOPSPEED2MPS = 0.5;
  static constexpr double INITSPEED2MPS = 0.1;
  static constexpr double NSDELAY2S = 0.1;
  static constexpr double NSPERIOD2S = 0.02;
  static constexpr double NSACCEL2MPS2 = 0.04;
  static constexpr double NSSPEED2MPS = 0.1;
  static constexpr double NSRADIUS2M = 0.5;
  static constexpr double HLDELAY2S = 1.0;
  static constexpr double HLPERIOD2S = 0.1;
  static constexpr double STATDELAY2S = 1.0;
  static constexpr double STATSPEED2MPS = 0.01;
  static constexpr double WSSF2PPM = 0.1;
  static constexpr double WSSFA2PC = 0.002;
  static constexpr double WSDELAY2S = 0.1;
  static constexpr double WSNOISE2CNT = 0.1;

  // The unit itself.
  static constexpr double LATENCY2S = 0.01;
  static constexpr double FILTPERIOD2S = 0.002;
  static constexpr double TEMPK_OFFSET = 203.15;
  static constexpr double TEMP2DEG = 0.01;
  static constexpr double ABSZERO_TEMPC = -273.15;
  static constexpr double SUPPLYV2V = 0.1;
  static constexpr double USUPPLYV2V = 0.2;
  static constexpr double IMU_RATE_SCALE = 0.02;

  // Computed outputs: the least speeds of a track, in m/s, and the factor of held speeds.
  static constexpr double MIN_HORZ_SPEED = 0.07;
  static constexpr double MIN_VERT_SPEED = 0.07;
  static constexpr double SPEED_HOLD_FACTOR = 2.0;

  static constexpr int TIMECYCLE = 60000;        // milliseconds in a minute
  static constexpr int WEEK2CYCLES = 10080;      // minutes in a week
  static constexpr int COM_COUNT_TOO_OLD = 150;  // the age from which figures are not used
  static constexpr int COM_STDCNT_MAX = 255;     // the greatest age
  static constexpr unsigned int COM_STATUS_MSG_MAX = 256;  // bytes of the packet copy

  static constexpr unsigned int COM_GPS_FEATURE_PSRDIFF = 1;
  static constexpr unsigned int COM_GPS_FEATURE_SBAS = 2;
  static constexpr unsigned int COM_GPS_FEATURE_OMNIVBS = 8;
  static constexpr unsigned int COM_GPS_FEATURE_OMNIHP = 16;
  static constexpr unsigned int COM_GPS_FEATURE_L1DIFF = 32;
  static constexpr unsigned int COM_GPS_FEATURE_L1L2DIFF = 64;

  static constexpr unsigned int COM_OMNI_STATUS_VBSEXPIRED = 1;
  static constexpr unsigned int COM_OMNI_STATUS_VBSREGION = 2;
  static constexpr unsigned int COM_OMNI_STATUS_VBSNOBASE = 4;
  static constexpr unsigned int COM_OMNI_STATUS_HPEXPIRED = 8;
  static constexpr unsigned int COM_OMNI_STATUS_HPREGION = 16;
  static constexpr unsigned int COM_OMNI_STATUS_HPNOBASE = 32;
  static constexpr unsigned int COM_OMNI_STATUS_HPNOCONVERGE = 64;
  static constexpr unsigned int COM_OMNI_STATUS_HPKEYINVALID = 128;
  static constexpr unsigned int COM_OMNI_STATUS_UNKNOWN = 255;

  static constexpr unsigned int COM_GPS_ANT_STATUS_BITMASK = 3;
  static constexpr unsigned int COM_GPS_ANT_STATUS_DONTKNOW = 3;
  static constexpr unsigned int COM_GPS_ANT_STATUS_BITSHIFT = 0;
  static constexpr unsigned int COM_GPS_ANT_POWER_BITMASK = 12;
  static constexpr unsigned int COM_GPS_ANT_POWER_DONTKNOW = 12;
  static constexpr unsigned int COM_GPS_ANT_POWER_BITSHIFT = 2;

  static constexpr unsigned int COM_XBNS_FLAG_MEM_ALERT = 1;
  static constexpr unsigned int COM_XBNS_FLAGS_VALID = 128;
};

struct NComScales : ComScales {
  static constexpr double OUTPOS2M = 0.001;
  static constexpr double JERKMOVAVGFACTOR = 0.001;
  static constexpr double ULOWRATESUPPLYV2V = 0.3;
};

}  // namespace Trel::Nav
