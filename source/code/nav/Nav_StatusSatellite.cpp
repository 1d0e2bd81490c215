#include <cmath>
#include <cstdio>

#include "library/Lib_Cast.h"
#include "nav/Nav_Status.h"
#include "nav/Nav_StatusSet.h"

namespace Trel::Nav {

// The distance between the antennas; one of nothing is known to be off.
void StatusChannels::DecodeExtra13(const StatusRow&) {
  constexpr double kOff = -1.0;
  if (!key_.KMain().Get_Antenna_BaseLine() || !is_of_age(Age::Fresh)) {
    return data_.InvBaseLineLength();
  }
  const unsigned int length = cast_2_byte_LE_to_uint16(p_ + 4);
  if (length != 0 && length != kNone16) {
    return data_.SetBaseLineLength(length * ComScales::ALT2M);
  }
  data_.SetBaseLineLength(kOff);
  data_.HitBaseLineLength().setPass();
}

// The age of the corrections, and the name of the station that they come from.
void StatusChannels::DecodeExtra20(const StatusRow&) {
  constexpr double kNoCorrections = -1.0;
  const bool wanted = key_.KMain().Get_GnssInfo_Diff();
  const int age = cast_2_byte_LE_to_int16(p_);
  TREL_NAV_SET_IF(wanted, data_, GpsDiffAge,
                  age < 0 ? kNoCorrections : age * ComScales::DIFFAGE2SEC);
  if (!wanted || p_[2] == 0) {
    data_.InvBaseStationId();
    data_.InvBaseStationID();
    return;
  }
  char name[4];
  for (int k = 0; k < 4; ++k) name[k] = static_cast<char>(p_[2 + k]);
  data_.SetBaseStationId(name, sizeof name);
  data_.SetBaseStationID(cast_4_byte_LE_to_uint32(p_ + 2));
}

// The satellites of the search, whose numbers are sent less one.
void StatusChannels::DecodeExtra28(const StatusRow&) {
  const auto known = [wanted = key_.KMain().Get_HeadSearch_Prn()](unsigned int byte) {
    return wanted && byte != kNone8;
  };
  TREL_NAV_SET_IF(known(p_[0]), data_, HeadSearchMaster, p_[0] + 1U);
  TREL_NAV_SET_IF(known(p_[1]), data_, HeadSearchSlave1, p_[1] + 1U);
  TREL_NAV_SET_IF(known(p_[2]), data_, HeadSearchSlave2, p_[2] + 1U);
  TREL_NAV_SET_IF(known(p_[3]), data_, HeadSearchSlave3, p_[3] + 1U);
}

// The height of the geoid, where a missing one leaves the last; and the vertical dilution, which
// follows from the other two.
void StatusChannels::DecodeExtra48(const StatusRow&) {
  const bool missing = p_[1] == 128 && p_[0] <= 1;
  if (!key_.KMain().Get_GnssInfo_Misc()) {
    data_.InvUndulation();
  } else if (!missing) {
    data_.SetUndulation(cast_2_byte_LE_to_int16(p_) * ComScales::UNDUL2M);
  }
  const double horizontal = data_.GetHDOP();
  const double position = data_.GetPDOP();
  TREL_NAV_SET_IF(data_.IsHDOPValid() && data_.IsPDOPValid() && position > horizontal, data_, VDOP,
                  std::sqrt(position * position - horizontal * horizontal));
}

// The frequency of the satellite, and the serial number as it is written for the receiver's type.
void StatusChannels::DecodeExtra49(const StatusRow&) {
  constexpr unsigned int kLongSerial = 700000;
  const unsigned int frequency = cast_2_byte_LE_to_uint16(p_);
  TREL_NAV_SET_IF(
      key_.KMain().Get_OmniStar() && frequency != kNone16, data_, OmniStarFreq,
      static_cast<unsigned int>(frequency * ComScales::OMNIFREQ2HZ + ComScales::OMNISTAR_MIN_FREQ));

  if (!data_.IsOmniStarSerialRawValid()) return data_.InvOmniStarSerial();
  const unsigned int serial = data_.GetOmniStarSerialRaw();
  const ComDataGps& primary = data_.DGps(0);
  const bool prefixed = primary.IsTypeValid() && serial < kLongSerial &&
                        (primary.GetType() == 3 || primary.GetType() == 14);
  char text[16];
  const int size = std::snprintf(text, sizeof text, prefixed ? "007-0%06u" : "%u", serial);
  data_.SetOmniStarSerial(text, static_cast<std::size_t>(size));
}

// The position of the antenna in steps of the last byte.
void StatusChannels::DecodeExtra57(const StatusRow&) {
  const bool known = key_.KMain().Get_Antenna_Pos() && is_of_age(Age::Fresh) && p_[7] != 0;
  const double step = (p_[7] == kNone8 ? 1.0 : p_[7]) * 0.001;
  TREL_NAV_SET_IF(known, data_, GAPx, cast_2_byte_LE_to_int16(p_) * step);
  TREL_NAV_SET_IF(known, data_, GAPy, cast_2_byte_LE_to_int16(p_ + 2) * step);
  TREL_NAV_SET_IF(known, data_, GAPz, cast_2_byte_LE_to_int16(p_ + 4) * step);
}

// Four slots of ten bits; with all forty set there is no news of any.
void StatusChannels::DecodeExtra77(const StatusRow&) {
  constexpr unsigned long long kNoSlots = 0xFFFFFFFFFF;
  constexpr unsigned int kNoSlot = 1023;
  const bool wanted = key_.KMain().Get_GnssInfo_Diff();
  const unsigned long long slots = cast_5_byte_LE_to_uint64(p_ + 3);
  if (wanted && slots == kNoSlots) return;
  const auto slot = [slots](unsigned int place) {
    return static_cast<unsigned int>(slots >> (10 * place)) & kNoSlot;
  };
  TREL_NAV_SET_IF(wanted && slot(0) != kNoSlot, data_, BaseStationSlot0, slot(0));
  TREL_NAV_SET_IF(wanted && slot(1) != kNoSlot, data_, BaseStationSlot1, slot(1));
  TREL_NAV_SET_IF(wanted && slot(2) != kNoSlot, data_, BaseStationSlot2, slot(2));
  TREL_NAV_SET_IF(wanted && slot(3) != kNoSlot, data_, BaseStationSlot3, slot(3));
}

void StatusChannels::DecodeExtraGpsReceived(const ComKey::KeyGps& key, ComDataGps& data) {
  const auto count = [this, wanted = key.Get_Stats_Received()](int at, unsigned int previous) {
    return wanted ? incr_2_byte_LE_to_uint32(p_ + at, previous) : 0U;
  };
  data.SetChars(count(0, data.GetChars()));
  data.SetPkts(count(2, data.GetPkts()));
  data.SetCharsSkipped(count(4, data.GetCharsSkipped()));
  data.SetOldPkts(count(6, data.GetOldPkts()));
}

void StatusChannels::DecodeExtraGpsStatus(const ComKey::KeyGps& key, ComDataGps& data) {
  const auto known = [this](bool wanted, int at) { return wanted && p_[at] != kNone8; };

  const bool status = key.Get_Status();
  const unsigned int antenna = p_[0] & ComScales::COM_GPS_ANT_STATUS_BITMASK;
  const unsigned int power = p_[0] & ComScales::COM_GPS_ANT_POWER_BITMASK;
  TREL_NAV_SET_IF(status && antenna != ComScales::COM_GPS_ANT_STATUS_DONTKNOW, data, AntStatus,
                  antenna >> ComScales::COM_GPS_ANT_STATUS_BITSHIFT);
  TREL_NAV_SET_IF(status && power != ComScales::COM_GPS_ANT_POWER_DONTKNOW, data, AntPower,
                  power >> ComScales::COM_GPS_ANT_POWER_BITSHIFT);
  TREL_NAV_SET_IF(known(status, 5), data, PosMode, p_[5]);
  TREL_NAV_SET_IF(known(key.Get_System_Serial(), 3), data, SerBaud, p_[3]);
  TREL_NAV_SET_IF(known(key.Get_Status_NumL1L2(), 4), data, NumSats, p_[4]);

  const bool hardware = key.Get_Status_Hardware();
  TREL_NAV_SET_IF(known(hardware, 1), data, CpuUsed, p_[1]);
  TREL_NAV_SET_IF(known(hardware, 2), data, CoreNoise, p_[2]);
  TREL_NAV_SET_IF(known(hardware, 6), data, CoreTemp,
                  p_[6] + ComScales::TEMPK_OFFSET + ComScales::ABSZERO_TEMPC);
  TREL_NAV_SET_IF(known(hardware, 7), data, SupplyVolt, p_[7] * ComScales::SUPPLYV2V);
}

void StatusChannels::DecodeExtraMeasutePt(const ComKey::KeyMeasurePt& key, ComDataMeasurePt& data) {
  const auto raw = [this](int at) { return cast_2_byte_LE_to_int16(p_ + at); };
  const auto known = [&, wanted = key.Get_Vel() && p_[6] == 0](int at) {
    return wanted && raw(at) != kNoneSigned16;
  };
  TREL_NAV_SET_IF(known(0), data, PointXv, raw(0) * form_.outpos2m);
  TREL_NAV_SET_IF(known(2), data, PointYv, raw(2) * form_.outpos2m);
  TREL_NAV_SET_IF(known(4), data, PointZv, raw(4) * form_.outpos2m);
}

}  // namespace Trel::Nav
