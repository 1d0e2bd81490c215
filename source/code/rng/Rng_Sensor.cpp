#include "rng/Rng_Sensor.h"

#include <algorithm>
#include <array>

#include "rng/Rng_Run.h"
#include "rng/Rng_Scale.h"

namespace Trel::Rng {

namespace {

constexpr unsigned int kLeastSize = 10;
constexpr unsigned int kSensors = 10;
constexpr unsigned int kThreeBytes = 0x80;
constexpr unsigned int kTenValues = 0x40;
constexpr unsigned int kCountMask = 0x0F;
constexpr unsigned int kIdBytes = 8;

// One number of a sensor, in the order of its bytes.
struct Column {
  Lib::VarArrayExt<double>& (DataMain::*run)();
  bool is_angle;
  bool only_in_ten;
};

#define TREL_RNG_SENSOR(value) &DataMain::Hit_Hunter_SensorPoints##value
constexpr std::array<Column, 10> kColumns = {{
    {TREL_RNG_SENSOR(Lon), false, false},
    {TREL_RNG_SENSOR(Lat), false, false},
    {TREL_RNG_SENSOR(Vert), false, true},
    {TREL_RNG_SENSOR(Heading), true, false},
    {TREL_RNG_SENSOR(Pitch), true, true},
    {TREL_RNG_SENSOR(Roll), true, true},
    {TREL_RNG_SENSOR(FovHoriz), true, false},
    {TREL_RNG_SENSOR(FovVert), true, false},
    {TREL_RNG_SENSOR(RangeMin), false, false},
    {TREL_RNG_SENSOR(RangeMax), false, false},
}};
#undef TREL_RNG_SENSOR

// What is computed from the sensors.
#define TREL_RNG_PLACES(value) &DataMain::Hit_Hunter_##value##X, &DataMain::Hit_Hunter_##value##Y
constexpr std::array kPlaces = {
    TREL_RNG_PLACES(SensorPointsPos),
    TREL_RNG_PLACES(SensorRegionNearCentrePos),
    TREL_RNG_PLACES(SensorRegionFarCentrePos),
    TREL_RNG_PLACES(IsoSensorPointsPc),
    TREL_RNG_PLACES(IsoSensorRegionNearCentrePc),
    TREL_RNG_PLACES(IsoSensorRegionFarCentrePc),
};
#undef TREL_RNG_PLACES

void shorten_places(DataMain& data, std::size_t used) {
  for (const auto place : kPlaces) shorten_run((data.*place)(), used);
}

void reject(DataMain& data) {
  data.Rej_Hunter_SensorPointsUsed();
  for (const Column& column : kColumns) Detail::empty((data.*column.run)(), Lib::Flags::Rejected);
  data.Rej_Hunter_SensorPointsID();
  shorten_places(data, 0);
}

// Takes the sensor at `p`.
template <Raw R>
void take(const unsigned char* p, bool ten, std::size_t index, DataMain& data) {
  constexpr bool kWide = R == Raw::I24;
  constexpr double kLength = kWide ? RComScales::MULTSEN_POS_HIGH : RComScales::MULTSEN_POS_LOW;
  constexpr double kAngle = kWide ? RComScales::MULTSEN_ANG_HIGH : RComScales::MULTSEN_ANG_LOW;
  for (const Column& column : kColumns) {
    auto& run = (data.*column.run)();
    if (column.only_in_ten && !ten) {
      Detail::invalidate(run, index);
      continue;
    }
    store(read_field<R>(p), column.is_angle ? kAngle : kLength, run, index, data.Var_Nano());
    p += raw_form(R).bytes;
  }
  data.Set_Hunter_SensorPointsID(index, cast_8_byte_LE_to_uint64(p));
}

}  // namespace

void ExtractSensors(const Packet& packet, const ComKey& key, ComData& data) {
  if (packet.size < kLeastSize || packet.data[6] != 0) return;
  const unsigned int form = packet.data[9];
  const bool wide = (form & kThreeBytes) != 0;
  const bool ten = (form & kTenValues) != 0;
  const unsigned int stride = (ten ? 10U : 7U) * (wide ? 3U : 2U) + kIdBytes;
  const unsigned int count = (form & kCountMask) + 1;
  if (packet.size < stride * count + kSensors + 1) return;

  DataMain& main = data.DMain();
  if (!key.KMain().Get_Hunter_Config_Sensor()) return reject(main);
  const std::size_t first = packet.data[8];
  const std::size_t end = std::min(first + count, kSensorPoints);
  const unsigned char* p = packet.data + kSensors;
  for (std::size_t index = first; index < end; ++index, p += stride) {
    if (wide) {
      take<Raw::I24>(p, ten, index, main);
    } else {
      take<Raw::I16>(p, ten, index, main);
    }
  }
  const unsigned int used = std::min<unsigned int>(packet.data[7], kSensorPoints);
  main.Set_Hunter_SensorPointsUsed(used);
  shorten_places(main, used);
}

}  // namespace Trel::Rng
