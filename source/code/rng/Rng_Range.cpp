#include "rng/Rng_Range.h"

#include "rng/Rng_Derived.h"
#include "rng/Rng_Run.h"
#include "rng/Rng_Scale.h"
#include "rng/Rng_SlowChannel.h"

namespace Trel::Rng {

namespace {

// The old form: the longitudinal range that says that there is none, besides the lowest number.
constexpr unsigned int kOldRangeLon = 8;
constexpr long long kOldNoRange = 0x8000000;
// The old form: the byte whose top bits are the mode.
constexpr unsigned int kOldMode = 36;
constexpr int kOldModeShift = 6;
// Each sensor's three fields: distance, visibility and share of the field of view.
constexpr unsigned int kSensors = 114;
constexpr unsigned int kSensorBytes = 6;

// A packet on its way into the record.
struct Visit : RComScales {
  const Packet& packet;
  const ComKey& key;
  ComData& data;
  const unsigned int target;
  const Lib::StampExt now = data.DMain().Var_Nano();

  const ComKey::KeyMain& keyMain = key.KMain();
  const ComKey::KeyTarget& keyTarget = key.KTarget(target);
  DataMain& dataMain = data.DMain();
  DataTarget& dataTarget = data.DTarget(target);

  Visit(const Packet& from, const ComKey& wanted, ComData& record, unsigned int number)
      : packet(from), key(wanted), data(record), target(number) {}

  template <Raw R, class T>
  void field(bool wanted, unsigned int at, double scale, Lib::VariableExt<T>& value) const {
    if (!wanted) return value.reject();
    store(read_field<R>(packet, at), scale, value, now);
  }
  template <Raw R, class E>
  void member(bool wanted, unsigned int at,
              Lib::VariableExt<typename Enum::Traits<E>::Number>& value) const {
    if (!wanted) return value.reject();
    const Reading reading = read_field<R>(packet, at);
    if (!reading.known()) return value.invalidate();
    value.set(Enum::Cast<E>(reading.number), now);
  }
  template <Raw R>
  void feature(bool wanted, unsigned int at, long long unknown,
               Lib::VariableExt<unsigned int>& value) const {
    if (!wanted) return value.reject();
    const Reading reading = read_field<R>(packet, at);
    if (reading.number == unknown) return value.invalidate();
    store(reading, 1.0, value, now);
  }

  void old_fields() const;
  void fields() const;
  void sensors() const;
  void channel(unsigned int at) const {
    const unsigned char* p = find_channel(packet, at);
    if (p != nullptr) ExtractRangeChannel(target, p[0], p + 1, key, data);
  }
};

// The wanted node and the value of a line.
#define TREL_RNG_WANTED(owner, node) key##owner.Get_##node()
#define TREL_RNG_INTO(owner, value) data##owner.Hit_##value()
#define TREL_RNG_FIELD(owner, node, raw, at, scale, value) \
  field<Raw::raw>(TREL_RNG_WANTED(owner, node), at, scale, TREL_RNG_INTO(owner, value));

void Visit::old_fields() const {
#define FIELD TREL_RNG_FIELD
#include "rng/Rng_OldRangeField.def"
  const Reading lon = read_field<Raw::I32>(packet, kOldRangeLon);
  if (lon.number == kOldNoRange && keyTarget.Get_General_Range()) dataTarget.Inv_RangeLon();
  if (!keyTarget.Get_General_Mode()) return dataTarget.Rej_ModeStatus();
  if (!packet.holds(kOldMode, 1)) return dataTarget.Inv_ModeStatus();
  dataTarget.Set_ModeStatus(packet.data[kOldMode] >> kOldModeShift);
}

void Visit::fields() const {
#define FIELD TREL_RNG_FIELD
#define MEMBER(owner, node, raw, at, enumeration, value)                \
  member<Raw::raw, Enum::enumeration>(TREL_RNG_WANTED(owner, node), at, \
                                      TREL_RNG_INTO(owner, value));
#define FEATURE(owner, node, raw, at, unknown, value) \
  feature<Raw::raw>(TREL_RNG_WANTED(owner, node), at, unknown, TREL_RNG_INTO(owner, value));
#include "rng/Rng_RangeField.def"
}

void Visit::sensors() const {
  auto& distances = dataTarget.Hit_Range_SensorPointsDist2d();
  auto& visible = dataTarget.Hit_Range_SensorPointsTargetVisible();
  auto& shares = dataTarget.Hit_Range_SensorPointsTargetOccupyFov();
  if (!keyTarget.Get_Range_Sensor()) {
    reject_run(distances);
    reject_run(visible);
    reject_run(shares);
    return dataTarget.Rej_Range_SensorPointsUsed();
  }
  std::size_t count = 0;
  for (unsigned int at = kSensors; count < kSensorPoints && packet.holds(at, kSensorBytes);
       at += kSensorBytes) {
    const unsigned char* p = packet.data + at;
    store(read_field<Raw::I32>(p), DIST2M, distances, count, now);
    store(read_field<Raw::U8>(p + 4), 1.0, visible, count, now);
    store(read_field<Raw::U8>(p + 5), 1.0, shares, count, now);
    ++count;
  }
  const std::size_t before = dataTarget.Is_Range_SensorPointsUsed_Valid()
                                 ? dataTarget.Get_Range_SensorPointsUsed()
                                 : kSensorPoints;
  for (std::size_t index = count; index < before; ++index) {
    Detail::invalidate(distances, index);
    Detail::invalidate(visible, index);
    Detail::invalidate(shares, index);
  }
  dataTarget.Set_Range_SensorPointsUsed(static_cast<unsigned int>(count));
}

}  // namespace

void ExtractObsoleteRangeData(const Packet& packet, const ComKey& key, ComData& data) {
  const Visit visit(packet, key, data, 0);
  visit.old_fields();
  visit.channel(kOldRangeChannel);
  compute_range(0, key, data);
  compute_directions(0, key, data);
  compute_iso(0, key, data);
}

void ExtractExtendedRangeData(const Packet& packet, const ComKey& key, ComData& data) {
  if (!packet.holds(kTargetByte, 1)) return;
  const unsigned int target = packet.data[kTargetByte] - 1U;
  if (target >= ComData::kTargets) return;
  const Visit visit(packet, key, data, target);
  visit.fields();
  visit.sensors();
  visit.channel(kRangeChannel);
  compute_range(target, key, data);
  compute_acceleration(target, key, data);
  compute_directions(target, key, data);
  compute_frames(target, key, data);
  compute_iso(target, key, data);
}

#undef TREL_RNG_WANTED
#undef TREL_RNG_INTO
#undef TREL_RNG_FIELD

}  // namespace Trel::Rng
