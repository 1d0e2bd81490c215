#include "nav/Nav_ComBase.h"
#include "nav/Nav_Feature.h"
#include "nav/Nav_Innovation.h"
#include "nav/Nav_Packet.h"
#include "nav/Nav_Product.h"

namespace Trel::Nav {

namespace {

using enum Enum::NAVIGATION_STATUS;
using enum Enum::NAV_OUTPUT_PACKET_TYPE;

// Kinds of extra packets.
constexpr unsigned char kExtraFeatures = 2;
constexpr unsigned char kExtraProduct = 3;

constexpr long long kNanosPerWeek = 604'800'000'000'000;

// Whether a packet of this status brings a solution at its own time.
bool is_regular(Enum::NAVIGATION_STATUS status) {
  return status >= NAVIGATION_STATUS_RAWIMU && status <= NAVIGATION_STATUS_LOCKED;
}

// The status without its mark of a trigger packet.
Enum::NAVIGATION_STATUS plain_status(Enum::NAVIGATION_STATUS status) {
  switch (status) {
    case NAVIGATION_STATUS_TRIGINIT:
      return NAVIGATION_STATUS_INIT;
    case NAVIGATION_STATUS_TRIGLOCKING:
      return NAVIGATION_STATUS_LOCKING;
    default:
      return NAVIGATION_STATUS_LOCKED;
  }
}

}  // namespace

void ComBase::note_key() {
  if (key_.changes() == key_changes_) return;
  key_changes_ = key_.changes();
  derived_.NoteKey();
  status_.NoteKey();
}

void ComBase::UpdateNav() {
  note_key();
  data_.SetInsNavMode(packet_[kStatusAt]);
  const bool triggered = !is_regular(data_.GetInsNavMode());
  if (!triggered) {
    UpdateNavInvalidate();
  } else if (!begin_special()) {
    return;
  }
  const Enum::NAVIGATION_STATUS status = data_.GetInsNavMode();
  const ComKey::KeyMain& key = key_.KMain();

  if (!triggered) update_time(status);
  data_.ShareNano();
  update_motion(status);
  if (!triggered) {
    if (form_.jerk && key.Get_Jerk()) update_jerk();
    if (key.Get_AngAcc()) update_ang_acc();
  }
  TimingsCompute();
  if (!triggered) {
    update_regular_rate(status);
    if (derived_.wanted()) derived_.FilteredOutputsCompute();
  }
  UpdateTail(status);
  if (derived_.wanted()) update_derived(status, triggered);
  ProductNameCompute(data_, key_);
  if (!triggered) {
    if (status_.may_hold_innovations()) UpdateInnAge(data_);
    DecodeStatusMsg();
  }
}

void ComBase::update_derived(Enum::NAVIGATION_STATUS status, bool triggered) {
  if (status > NAVIGATION_STATUS_INIT) {
    derived_.RotateOutputsCompute();
    derived_.SpeedSlipCompute();
    derived_.DistanceCompute(triggered);
    derived_.RefFrameOutputsCompute();
    derived_.DisplacedOutputsCompute();
    derived_.AngleGradientCompute();
  }
  if (status > NAVIGATION_STATUS_RAWIMU) derived_.Iso8855OutputsCompute(triggered);
}

bool ComBase::begin_special() {
  switch (data_.GetInsNavMode()) {
    case NAVIGATION_STATUS_INVALID:
      UpdateNavInvalidate();
      data_.SetOutputPacketType(NAV_OUTPUT_PACKET_TYPE_EMPTY);
      return false;
    case NAVIGATION_STATUS_EXPIRED:
    case NAVIGATION_STATUS_BLOCKED:
    case NAVIGATION_STATUS_STATUSONLY:
      UpdateNavInvalidate();
      DecodeStatusMsg();
      ProductNameCompute(data_, key_);
      data_.SetOutputPacketType(NAV_OUTPUT_PACKET_TYPE_STATUS);
      return false;
    case NAVIGATION_STATUS_EXTRA:
      decode_extra_packet();
      data_.SetOutputPacketType(NAV_OUTPUT_PACKET_TYPE_STATUS);
      return false;
    case NAVIGATION_STATUS_TRIGINIT:
    case NAVIGATION_STATUS_TRIGLOCKING:
    case NAVIGATION_STATUS_TRIGLOCKED:
      return begin_triggered();
    default:
      data_.SetOutputPacketType(NAV_OUTPUT_PACKET_TYPE_EMPTY);
      return false;
  }
}

bool ComBase::begin_triggered() {
  UpdateNavInvalidate();
  DecodeStatusMsg();
  const std::size_t place = find_trigger(status_msg()[0]);
  if (place == kTriggers.size()) {
    data_.SetOutputPacketType(NAV_OUTPUT_PACKET_TYPE_EMPTY);
    return false;
  }
  const Trigger& trigger = kTriggers[place];
  const Lib::VariableExt<long long>& nano = (data_.*trigger.nano)();
  if (nano.good()) set_nano(nano.get());
  data_.SetOutputPacketType(trigger.packet_type);
  data_.SetInsNavMode(plain_status(data_.GetInsNavMode()));
  return true;
}

void ComBase::decode_extra_packet() {
  if (packet_[kExtraAt] == kExtraFeatures) DecodeFeatureCodes();
  if (packet_[kExtraAt] != kExtraProduct) return;
  DecodeProductName();
  ProductNameCompute(data_, key_);
}

void ComBase::DecodeFeatureCodes() {
  unsigned int code = 0;
  FeatureRecord record;
  if (FeaturePacket::read(packet_, code, record)) data_.SetFeatureCode(code, record);
}

void ComBase::DecodeProductName() {
  Enum::PRODUCT_TYPE type{};
  if (ProductPacket::read(packet_, type)) data_.SetProductType(type);
}

void ComBase::set_nano(long long nano) {
  data_.SetNano(nano);
  data_.SetTime(to_seconds(nano));
}

bool ComBase::advance_clock() {
  const int time = packet_time(packet_);
  if (time == kNoTime) return false;
  clock_.advance(time, prescan_.period);
  return clock_.known();
}

void ComBase::update_time(Enum::NAVIGATION_STATUS status) {
  if (prescan_.state == Prescan::kPredicting) {
    predict_time();
  } else {
    measure_time(status);
  }
  data_.SetOutputPacketType(NAV_OUTPUT_PACKET_TYPE_REGULAR);
  data_.SetInsNavMode(status);
}

void ComBase::predict_time() {
  if (prescan_.period != kNoPeriod) {
    set_nano(wrap_subtract(nano_off_.get_first2gps(), prescan_.timePrediction()));
  }
  if (!prescan_.decrCounter()) return;
  prescan_.state = Prescan::kPredicted;
  clock_.set(prescan_.minutes, prescan_.milliseconds);
}

void ComBase::measure_time(Enum::NAVIGATION_STATUS status) {
  const bool learning = prescan_.state == Prescan::kUndecided;
  if (learning) {
    if (nano_off_.inv_first2gps()) prescan_.incrCounter();
    if (nano_off_.inv_init2gps()) prescan_.incrInitCounter();
  }
  if (status <= NAVIGATION_STATUS_RAWIMU || !advance_clock()) return;
  set_nano(clock_.nano());
  if (!learning) return;
  prescan_.learn_offsets(nano_off_, clock_.nano(), status);
  if (!nano_off_.inv_start2gps() && !nano_off_.inv_init2gps()) prescan_.state = Prescan::kTimed;
}

void ComBase::update_motion(Enum::NAVIGATION_STATUS status) {
  const ComKey::KeyMain& key = key_.KMain();
  if (key.Get_Acc()) {
    held_ |= kAcc;
    const unsigned char* acc = packet_ + kAccAt;
    double value = 0.0;
    if (read_axis(acc, 0, ComScales::ACC2MPS2, value)) data_.SetAx(value);
    if (read_axis(acc, 1, ComScales::ACC2MPS2, value)) data_.SetAy(value);
    if (read_axis(acc, 2, ComScales::ACC2MPS2, value)) data_.SetAz(value);
  }
  if (key.Get_AngVel()) {
    held_ |= kAngVel;
    const unsigned char* rate = packet_ + kAngVelAt;
    double value = 0.0;
    if (read_axis(rate, 0, kRateFactor, value)) data_.SetWx(value);
    if (read_axis(rate, 1, kRateFactor, value)) data_.SetWy(value);
    if (read_axis(rate, 2, kRateFactor, value)) data_.SetWz(value);
  }
  if (status <= NAVIGATION_STATUS_RAWIMU) return;
  const bool approximate = status == NAVIGATION_STATUS_INIT;
  if (key.Get_Pos()) update_position(approximate);
  if (key.Get_Vel()) update_velocity(approximate);
  if (key.Get_AngPos()) update_attitude(approximate);
}

void ComBase::update_position(bool approximate) {
  held_ |= kPos;
  double value = 0.0;
  if (read_position(packet_, 0, value)) data_.SetLat(value);
  if (read_position(packet_, 1, value)) data_.SetLon(value);
  if (read_position(packet_, 2, value)) data_.SetAlt(value);
  if (!approximate) return;
  if (data_.IsLatValid()) data_.HitLat().setApprox();
  if (data_.IsLonValid()) data_.HitLon().setApprox();
  if (data_.IsAltValid()) data_.HitAlt().setApprox();
}

void ComBase::update_velocity(bool approximate) {
  held_ |= kVel;
  const unsigned char* velocity = packet_ + kVelAt;
  double value = 0.0;
  int raw = 0;
  if (read_axis(velocity, 0, ComScales::VEL2MPS, value)) data_.SetVn(value);
  if (read_axis(velocity, 1, ComScales::VEL2MPS, value)) data_.SetVe(value);
  if (read_axis(velocity, 2, raw)) {
    data_.SetVd(raw * ComScales::VEL2MPS);
    data_.SetVu(-raw * ComScales::VEL2MPS);
  }
  if (!approximate) return;
  data_.HitVn().setApprox();
  data_.HitVe().setApprox();
  data_.HitVd().setApprox();
  data_.HitVu().setApprox();
}

void ComBase::update_attitude(bool approximate) {
  held_ |= kAngPos;
  const unsigned char* attitude = packet_ + kAngPosAt;
  double value = 0.0;
  if (read_axis(attitude, 0, kAngleFactor, value)) data_.SetHeading(wrap_heading(value));
  if (read_axis(attitude, 1, kAngleFactor, value)) data_.SetPitch(value);
  if (read_axis(attitude, 2, kAngleFactor, value)) data_.SetRoll(value);
  if (!approximate) return;
  data_.HitHeading().setApprox();
  data_.HitPitch().setApprox();
  data_.HitRoll().setApprox();
}

void ComBase::update_jerk() {
  if (!data_.IsAxValid() || !data_.IsAyValid() || !data_.IsAzValid() || !data_.IsTimeValid()) {
    return;
  }
  auto& [x, y, z] = filters_.jerk;
  x.NewInput(data_.GetTime(), data_.GetAx());
  y.NewInput(data_.GetTime(), data_.GetAy());
  z.NewInput(data_.GetTime(), data_.GetAz());
  if (x.OutputValid()) data_.SetJx(x.OutputValue());
  if (y.OutputValid()) data_.SetJy(y.OutputValue());
  if (z.OutputValid()) data_.SetJz(z.OutputValue());
}

void ComBase::update_ang_acc() {
  if (!data_.IsWxValid() || !data_.IsWyValid() || !data_.IsWzValid() || !data_.IsTimeValid()) {
    return;
  }
  held_ |= kAngAcc;
  auto& [x, y, z] = filters_.ang_acc;
  x.NewInput(data_.GetTime(), data_.GetWx());
  y.NewInput(data_.GetTime(), data_.GetWy());
  z.NewInput(data_.GetTime(), data_.GetWz());
  if (x.OutputValid()) data_.SetYx(x.OutputValue());
  if (y.OutputValid()) data_.SetYy(y.OutputValue());
  if (z.OutputValid()) data_.SetYz(z.OutputValue());
}

void ComBase::update_regular_rate(Enum::NAVIGATION_STATUS status) {
  if (!key_.KMain().Get_Time_Rate()) {
    regular_rate_.Invalidate();
    data_.InvOutputRegularRate();
    return;
  }
  if (status != NAVIGATION_STATUS_LOCKED) return;
  double rate = 0.0;
  switch (regular_rate_.count(data_.IsNanoValid(), data_.GetNano(), rate)) {
    case RegularRate::Outcome::Rate:
      return data_.SetOutputRegularRate(rate);
    case RegularRate::Outcome::Lost:
      return data_.InvOutputRegularRate();
    case RegularRate::Outcome::None:
      return;
  }
}

void ComBase::TimingsCompute() {
  const bool timed = data_.IsNanoValid();
  const long long nano = data_.GetNano();
  const ComKey::KeyMain& key = key_.KMain();

  const bool relative = timed && key.Get_Time_Rel();
  if (relative || relative_) compute_relative_times(relative);
  relative_ = relative;

  if (timed && nano >= 0 && key.Get_Time_Extra()) {
    held_ |= kWeek;
    data_.SetTimeWeekCount(static_cast<unsigned int>(nano / kNanosPerWeek));
    data_.SetTimeWeekSecond(to_seconds(nano % kNanosPerWeek));
  }
}

void ComBase::compute_relative_times(bool relative) {
  const long long nano = data_.GetNano();
  const auto since = [&](bool known, long long offset, auto set, auto invalidate) {
    if (relative && known) {
      set(wrap_subtract(nano, offset));
    } else {
      invalidate();
    }
  };
#define TREL_NAV_SINCE(offset, name)                       \
  since(                                                   \
      !nano_off_.inv_##offset(), nano_off_.get_##offset(), \
      [this](long long span) {                             \
        data_.SetNanoFrom##name(span);                     \
        data_.SetTimeFrom##name(to_seconds(span));         \
      },                                                   \
      [this] {                                             \
        data_.InvNanoFrom##name();                         \
        data_.InvTimeFrom##name();                         \
      });
  TREL_NAV_SINCE(origin2gps, Origin)
  TREL_NAV_SINCE(start2gps, Start)
  TREL_NAV_SINCE(first2gps, First)
  TREL_NAV_SINCE(init2gps, Init)
#undef TREL_NAV_SINCE
}

void ComBase::UpdateNavInvalidate() {
  data_.InvNano();
  data_.InvTime();
  if (held_ != 0) invalidate_held();
  if (!derived_.wanted()) return;
  derived_.RotateOutputsInvalidate();
  derived_.Iso8855OutputsInvalidate();
}

void ComBase::invalidate_held() {
  if ((held_ & kAcc) != 0) {
    data_.InvAx();
    data_.InvAy();
    data_.InvAz();
  }
  if ((held_ & kAngVel) != 0) {
    data_.InvWx();
    data_.InvWy();
    data_.InvWz();
  }
  if ((held_ & kAngAcc) != 0) {
    data_.InvYx();
    data_.InvYy();
    data_.InvYz();
  }
  if ((held_ & kPos) != 0) {
    data_.InvLat();
    data_.InvLon();
    data_.InvAlt();
  }
  if ((held_ & kVel) != 0) {
    data_.InvVn();
    data_.InvVe();
    data_.InvVd();
    data_.InvVu();
  }
  if ((held_ & kAngPos) != 0) {
    data_.InvHeading();
    data_.InvPitch();
    data_.InvRoll();
  }
  if ((held_ & kWeek) != 0) {
    data_.InvTimeWeekCount();
    data_.InvTimeWeekSecond();
  }
  held_ = 0;
}

}  // namespace Trel::Nav
