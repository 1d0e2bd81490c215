#include <array>
#include <cstdio>
#include <cstring>
#include <optional>

#include "library/Lib_Cast.h"
#include "library/Lib_DigitDate.h"
#include "nav/Nav_Status.h"
#include "nav/Nav_StatusSet.h"

namespace Trel::Nav {

namespace {

// What a type of inertial sensors fixes; 0 where it fixes nothing.
struct ImuFacts {
  double rate_at_start;  // in hertz, as the channel of the hardware knows it
  double rate;           // in hertz
  unsigned int sensors;  // the type of its accelerometers and of its gyroscopes
};

// By type.
constexpr std::array<ImuFacts, 14> kImuFacts = {{
    {0.0, 0.0, 0},
    {0.0, 0.0, 0},
    {100.0, 100.0, 1},
    {100.0, 100.0, 2},
    {250.0, 250.0, 1},
    {250.0, 250.0, 2},
    {0.0, 100.0, 0},
    {0.0, 100.0, 0},
    {0.0, 100.0, 1},
    {0.0, 100.0, 2},
    {0.0, 250.0, 1},
    {0.0, 250.0, 2},
    {0.0, 200.0, 1},
    {0.0, 200.0, 2},
}};

ImuFacts imu_facts(const ComData& data) {
  const std::size_t type = data.GetImuType();
  return data.IsImuTypeValid() && type < kImuFacts.size() ? kImuFacts[type] : ImuFacts{};
}

// Seconds from their compressed form: steps of a second, of a minute, of an hour.
long long uncompressed_time(long long value) {
  if (value <= 10800) return value;
  if (value <= 20700) return value * 60 - 637200;
  return value * 3600 - 73915200;
}

}  // namespace

void StatusChannels::DecodeExtra19(const StatusRow&) {
  if (key_.KMain().Get_System_Id()) {
    char id[8];
    for (int k = 0; k < 8; ++k) id[k] = static_cast<char>(p_[k]);
    data_.SetDevId(id, sizeof id);
    data_.SetDevID(cast_8_byte_LE_to_uint64(p_));
  } else {
    data_.InvDevId();
    data_.InvDevID();
  }
  set_firmware_date();
}

// The firmware's identification begins with its date, in pairs of digits.
void StatusChannels::set_firmware_date() {
  constexpr std::size_t kDateLength = 6;
  const char* id = data_.GetDevId();
  const bool dated =
      key_.KMain().Get_System_Dates() && data_.IsDevIdValid() && std::strlen(id) >= kDateLength;
  const auto date = dated ? Lib::date_of_digits(id) : std::nullopt;
  TREL_NAV_SET_IF(date, data_, NanoFirmware, date->to_gps_nanos(false));
  TREL_NAV_SET_IF(date, data_, DateFirmware, date->to_deci_date());
}

bool StatusChannels::IsDevIDAfter(const char* text) const {
  return data_.IsDevIdValid() && std::strcmp(data_.GetDevId(), text) > 0;
}

// The lag of the navigation process, smoothed too, and the time since the unit was switched on.
void StatusChannels::DecodeExtra23(const StatusRow&) {
  constexpr double kOld = 0.99;
  constexpr double kNew = 0.01;
  const ComKey::KeyMain& key = key_.KMain();
  const unsigned int lag = cast_2_byte_LE_to_uint16(p_);
  if (!key.Get_Internal_Bns() || lag == kNone16) {
    data_.InvBnsLag();
    data_.InvBnsLagFilt();
  } else {
    data_.SetBnsLag(lag);
    data_.SetBnsLagFilt(data_.IsBnsLagFiltValid() ? data_.GetBnsLagFilt() * kOld + lag * kNew
                                                  : lag);
  }
  const unsigned int up_time = cast_2_byte_LE_to_uint16(p_ + 2);
  TREL_NAV_SET_IF(key.Get_System_Stats() && up_time != kNone16, data_, UpTime,
                  static_cast<unsigned int>(uncompressed_time(up_time)));
}

// The start script, as six digits and more, and the low part of the serial number.
void StatusChannels::DecodeExtra30(const StatusRow&) {
  const ComKey::KeyMain& key = key_.KMain();
  if (key.Get_System_Os()) {
    char text[16];
    const int size = std::snprintf(text, sizeof text, "%06d", cast_3_byte_LE_to_int32(p_ + 3));
    data_.SetOsScriptId(text, static_cast<std::size_t>(size));
    unsigned long long packed = 0;
    for (int k = 5; k >= 0; --k) packed = packed << 8 | static_cast<unsigned char>(text[k]);
    data_.SetOsScriptID(packed);
  } else {
    data_.InvOsScriptId();
    data_.InvOsScriptID();
  }
  const unsigned int low = cast_2_byte_LE_to_uint16(p_ + 6);
  TREL_NAV_SET_IF(key.Get_System_Id() && low != kNone16, data_, SerialNumber,
                  (data_.GetSerialNumber() & ~kNone16) | low);
}

// What follows from the hardware: a configuration that an early firmware did not send, and the rate
// of the inertial sensors.
void StatusChannels::DecodeExtra31(const StatusRow&) {
  constexpr std::size_t kMark = 6;
  constexpr unsigned int kMarkedConfiguration = 6;
  const ComKey::KeyMain& key = key_.KMain();
  if (key.Get_System_Type() && p_[6] == kNone8 && data_.IsDevIdValid() &&
      data_.VarDevId().get().size() > kMark && data_.GetDevId()[kMark] == 'x') {
    data_.SetHwConfig(kMarkedConfiguration);
  }
  const double rate = imu_facts(data_).rate_at_start;
  if (!key.Get_System_Stats()) {
    data_.InvImuRate();
  } else if (rate > 0.0) {
    data_.SetImuRate(rate);
  }
}

// Services of the satellite receivers. Firmware up to a date sends no bits for the systems: it uses
// the first and not the second.
void StatusChannels::DecodeExtra58(const StatusRow&) {
  constexpr unsigned int kKnown = 128;
  constexpr std::array<unsigned int, 5> kWithoutService = {0, 1, 3, 4, 10};
  const ComKey::KeyMain& key = key_.KMain();
  const unsigned int byte = ~static_cast<unsigned int>(p_[7]);
  const bool known = (byte & kKnown) != 0;

  if (!key.Get_GnssInfo_Feature()) {
    data_.InvTerraStarDEnabled();
  } else if (known) {
    data_.SetTerraStarDEnabled((byte & 1) != 0);
  } else if (data_.DGps(0).IsTypeValid()) {
    for (const unsigned int type : kWithoutService) {
      if (data_.DGps(0).GetType() == type) data_.SetTerraStarDEnabled(false);
    }
  }

  if (!key.Get_GnssInfo_System()) {
    data_.InvGnssGpsEnabled();
    data_.InvGnssBeiDouEnabled();
  } else if (IsDevIDAfter("180000")) {
    if (!known) return;
    data_.SetGnssGpsEnabled((byte & 2) != 0);
    data_.SetGnssBeiDouEnabled((byte & 4) != 0);
  } else if (data_.IsDevIdValid()) {
    data_.SetGnssGpsEnabled(true);
    data_.SetGnssBeiDouEnabled(false);
  }
}

// The date of the calibration, in days, and the temperature of the inertial sensors.
void StatusChannels::DecodeExtra59(const StatusRow&) {
  const ComKey::KeyMain& key = key_.KMain();
  const unsigned int days = cast_2_byte_LE_to_uint16(p_ + 4);
  const bool dated = key.Get_System_Dates() && days != kNone16;
  Lib::UtcNano date;
  date.from_gps_days(static_cast<int>(days), false, false);
  TREL_NAV_SET_IF(dated, data_, NanoCalibration, date.to_gps_nanos(false));
  TREL_NAV_SET_IF(dated, data_, DateCalibration, date.to_deci_date());

  const unsigned int temperature = cast_2_byte_LE_to_uint16(p_ + 6);
  TREL_NAV_SET_IF(
      key.Get_Status_Imu_Temp() && temperature != kNone16, data_, ImuTemp,
      temperature * ComScales::TEMP2DEG + ComScales::TEMPK_OFFSET + ComScales::ABSZERO_TEMPC);
}

// What the type of the inertial sensors tells where the channel does not.
void StatusChannels::DecodeExtra75(const StatusRow&) {
  const ComKey::KeyMain& key = key_.KMain();
  const ImuFacts facts = imu_facts(data_);
  const bool no_rate = cast_2_byte_LE_to_uint16(p_ + 3) == kNone16;
  if (key.Get_System_Stats() && no_rate && facts.rate > 0.0) data_.SetImuRate(facts.rate);
  if (!key.Get_System_Type() || facts.sensors == 0) return;
  if (p_[5] == kNone8) data_.SetImuAccelType(facts.sensors);
  if (p_[6] == kNone8) data_.SetImuGyroType(facts.sensors);
}

void StatusChannels::DecodeExtra85(const StatusRow&) {
  TREL_NAV_SET_IF(key_.KMain().Get_System_Id(), data_, AdkDevID, cast_8_byte_LE_to_uint64(p_));
}

}  // namespace Trel::Nav
