#include "nav/Nav_Status.h"

#include <bit>

#include "library/Lib_Cast.h"

namespace Trel::Nav {

namespace {

// Minutes that say that there are none.
constexpr int kNoMinutes = 0xFFFFFF;
// One count of the finest part of a trigger's time.
constexpr long long NANOSECONDS_IN_FINETIME = 4000;
// Stands for a transition's time when there is none.
constexpr double kNoTransition = -2.0;
// What a setting reads that is known to be off.
constexpr double kOff = -1.0;
// The bit of an inverted byte that says that the others are known.
constexpr unsigned int kFeaturesKnown = ComScales::COM_XBNS_FLAGS_VALID;

long long read_raw(Raw raw, const unsigned char* p) {
  switch (raw) {
    case Raw::U8:
      return p[0];
    case Raw::I8:
      return cast_1_byte_LE_to_int8(p);
    case Raw::U16:
      return cast_2_byte_LE_to_uint16(p);
    case Raw::I16:
      return cast_2_byte_LE_to_int16(p);
    case Raw::U24:
      return cast_3_byte_LE_to_uint32(p);
    case Raw::U32:
      return cast_4_byte_LE_to_uint32(p);
    case Raw::I32:
      return cast_4_byte_LE_to_int32(p);
    case Raw::Low:
      return p[0] & 15;
    case Raw::High:
      return p[0] >> 4;
    default:
      return p[0] >> 1;
  }
}

// The number that says that there is none.
long long absent_number(Raw raw) {
  switch (raw) {
    case Raw::U8:
      return 0xFF;
    case Raw::I8:
      return -0x80;
    case Raw::U16:
      return 0xFFFF;
    case Raw::I16:
      return -0x8000;
    case Raw::U24:
      return 0xFFFFFF;
    case Raw::U32:
      return 0xFFFFFFFF;
    case Raw::I32:
      return -0x80000000LL;
    case Raw::Low:
    case Raw::High:
      return 15;
    default:
      return -1;  // no innovation is that
  }
}

// The newest transition of an input, from the newest edges of either direction.
struct Transition {
  const Lib::VariableExt<double>& rise;
  const Lib::VariableExt<double>& fall;
  Lib::VariableExt<int>& level;
  Lib::VariableExt<double>& time;
  Lib::VariableExt<unsigned int>& count;

  void update(const Lib::StampExt& now) {
    const double rise_time = rise.good() ? rise.get() : kNoTransition;
    const double fall_time = fall.good() ? fall.get() : kNoTransition;
    const bool first = !level.good() || !time.good();
    const double since = first ? kNoTransition : time.get();
    const bool rose = rise_time > since;
    const bool fell = fall_time > since;
    if (!rose && !fell) return;

    const int newest = rise_time > fall_time ? 1 : -1;
    const bool completes = first || newest == level.get();
    count.set(count.get() + (rose && fell && completes ? 2U : 1U), now);
    level.set(newest, now);
    time.set(newest > 0 ? rise_time : fall_time, now);
  }
};

}  // namespace

bool read_minutes(const unsigned char* p, int& minutes) {
  const int found = cast_4_byte_LE_to_int32(p);
  if (found == kNoMinutes) return false;
  minutes = found;
  return true;
}

bool read_utc_offset(const unsigned char* p, int& seconds) {
  if ((p[7] & 1) == 0) return false;
  seconds = p[7] >> 1;
  return true;
}

void StatusChannels::DecodeStatusMsg(const unsigned char* message) {
  updated_.fill(false);
  const unsigned int channel = message[0];
  if (channel >= StatusTable::kChannels) return;
  p_ = message + 1;
  const StatusRow* rows = form_.channels->channel(channel).data();
  for (std::uint64_t left = awake_[channel]; left != 0; left &= left - 1) {
    const StatusRow& row = rows[std::countr_zero(left)];
    row.call(*this, row);
    const bool quiet = row.invalidate != nullptr && !row.wanted(key_);
    if (quiet) awake_[channel] &= ~(left & -left);
  }
}

void StatusChannels::wake() {
  for (unsigned int channel = 0; channel < StatusTable::kChannels; ++channel) {
    const std::size_t rows = form_.channels->channel(channel).size();
    awake_[channel] = rows == 0 ? 0 : ~std::uint64_t{0} >> (StatusTable::kMostRows - rows);
  }
}

bool StatusChannels::wants_innovations() const {
  const auto& key = key_.KMain();
  return key.Get_Pos_Innovation() || key.Get_Vel_Innovation() || key.Get_AngPos_Innovation() ||
         key.Get_ZeroVel_Innovation() || key.Get_NoSlip_Innovation() ||
         key.Get_NoVSlip_Innovation() || key.Get_WSpeed_Innovation() ||
         key.Get_HeadLock_Innovation() || key.Get_ClockModel_Innovation();
}

void StatusChannels::NoteKey() {
  wake();
  innovations_ = innovations_ || wants_innovations();
}

void StatusChannels::Reset() {
  update_counters_.fill(0);
  updated_.fill(false);
  wheel_ = {};
  fine_frame_ = {};
  wake();
  innovations_ = false;
}

bool StatusChannels::is_of_age(Age age) const {
  switch (age) {
    case Age::Fresh:
      return p_[6] < ComScales::COM_COUNT_TOO_OLD;
    case Age::Zero:
      return p_[6] == 0;
    case Age::Known:
      return p_[6] < ComScales::COM_STDCNT_MAX;
    default:
      return true;
  }
}

void StatusChannels::decode_field(const StatusRow& row) {
  if (!row.wanted(key_) || !is_of_age(row.age)) return row.invalidate(data_);
  const unsigned char* p = p_ + row.at;
  if (row.raw == Raw::Fresh && (p[0] & 1) == 0) return;

  const long long raw = read_raw(row.raw, p);
  const bool absent = row.absent == Absent::Negative ? raw < 0 : raw == absent_number(row.raw);
  if (!absent || row.absent == Absent::Never) {
    row.set(data_, static_cast<double>(raw) * row.scale);
    return;
  }
  switch (row.absent) {
    case Absent::Keep:
      break;
    case Absent::Off:
      row.set(data_, kOff);
      row.stamp(data_).setPass();
      break;
    case Absent::Zero:
      row.set(data_, 0.0);
      break;
    case Absent::One:
      row.set(data_, 1.0);
      break;
    default:
      row.invalidate(data_);
  }
}

void StatusChannels::decode_flag(const StatusRow& row) {
  const unsigned int byte = p_[row.at];
  if (!row.wanted(key_) || byte >= row.below) return row.invalidate(data_);
  row.set(data_, (byte & row.mask) != 0 ? 1.0 : 0.0);
}

void StatusChannels::decode_feature(const StatusRow& row) {
  if (!row.wanted(key_)) return row.invalidate(data_);
  const unsigned int byte = ~static_cast<unsigned int>(p_[row.at]);
  if ((byte & kFeaturesKnown) != 0) row.set(data_, (byte & row.mask) != 0 ? 1.0 : 0.0);
}

void StatusChannels::decode_counter(const StatusRow& row) {
  Lib::VariableExt<unsigned int>& counter = row.counter(data_);
  const unsigned char* p = p_ + row.at;
  unsigned int count = 0;
  if (row.wanted(key_)) {
    switch (row.raw) {
      case Raw::U8:
        count = incr_1_byte_LE_to_uint32(p, counter.get());
        break;
      case Raw::U16:
        count = incr_2_byte_LE_to_uint32(p, counter.get());
        break;
      default:
        count = cast_4_byte_LE_to_uint32(p);
    }
  }
  counter.set(count, data_.VarNano());
}

void StatusChannels::DecodeExtra0(const StatusRow&) {
  const Enum::NAVIGATION_STATUS status = data_.GetInsNavMode();
  if (status == Enum::NAVIGATION_STATUS_INVALID || status == Enum::NAVIGATION_STATUS_RAWIMU) return;
  int minutes = 0;
  if (read_minutes(p_, minutes)) clock_.set_minutes(minutes);
}

void StatusChannels::DecodeExtra16(const StatusRow&) {
  if (!key_.KMain().Get_Time_Extra()) return data_.InvTimeUtcOffset();
  int seconds = 0;
  if (read_utc_offset(p_, seconds)) data_.SetTimeUtcOffset(seconds);
}

void StatusChannels::DecodeExtraTrigger(const StatusRow& row) {
  const std::size_t place = find_trigger(row.channel);
  if (p_[7] == update_counters_[place]) return;
  update_counters_[place] = p_[7];

  const long long minutes = cast_4_byte_LE_to_int32(p_);
  const long long milliseconds = cast_2_byte_LE_to_uint16(p_ + 4);
  const long long fine = cast_1_byte_LE_to_int8(p_ + 6);
  const long long nano = wrap_add(wrap_multiply(minutes, kNanosPerMinute),
                                  milliseconds * kNanosPerMilli + fine * NANOSECONDS_IN_FINETIME);

  const Trigger& trigger = kTriggers[place];
  Lib::VariableExt<unsigned int>& count = (data_.*trigger.count)();
  (data_.*trigger.nano)().set(nano, data_.VarNano());
  (data_.*trigger.time)().set(to_seconds(nano), data_.VarNano());
  count.set(count.get() + 1, data_.VarNano());
  updated_[static_cast<std::size_t>(trigger.group)] = true;
  if (trigger.group == TriggerGroup::Trig1) UpdateTrig1Tran();
  if (trigger.group == TriggerGroup::Trig2) UpdateTrig2Tran();
}

void StatusChannels::UpdateTrig1Tran() {
  Transition{data_.VarTrig1RiseTime(), data_.VarTrig1FallTime(), data_.HitTrig1TranLevel(),
             data_.HitTrig1TranTime(), data_.HitTrig1TranUpdateCount()}
      .update(data_.VarNano());
}

void StatusChannels::UpdateTrig2Tran() {
  Transition{data_.VarTrig2RiseTime(), data_.VarTrig2FallTime(), data_.HitTrig2TranLevel(),
             data_.HitTrig2TranTime(), data_.HitTrig2TranUpdateCount()}
      .update(data_.VarNano());
}

}  // namespace Trel::Nav
