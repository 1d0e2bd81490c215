#include "rng/Rng_RComRx.h"

#include "library/Lib_Cast.h"
#include "rng/Rng_Lane.h"
#include "rng/Rng_Polygon.h"
#include "rng/Rng_Range.h"
#include "rng/Rng_Sensor.h"
#include "rng/Rng_SlowChannel.h"
#include "rng/Rng_Source.h"
#include "rng/Rng_Sync.h"
#include "rng/Rng_Trigger.h"

namespace Trel::Rng {

namespace {

// What stands ahead of a packet in a recording.
constexpr unsigned int kSuperPrefix = 8;

constexpr unsigned int kTypeAt = 1;
constexpr unsigned int kTimeAt = 4;
constexpr unsigned int kTargetAt = 6;
constexpr unsigned int kTotalAt = 7;

constexpr unsigned int kTypes = 7;
constexpr unsigned int kExtendedRange = 2;
constexpr unsigned int kTrigger = 4;
constexpr unsigned int kMaxTargets = 4;

constexpr unsigned int kNoTime = 65535;
// Milliseconds: a packet below this behind one above it is in the next minute.
constexpr int kTurn = 2000;

constexpr unsigned int kProductFamily = 7;
constexpr unsigned int kProductGroup = 31;
constexpr unsigned int kProductModel = 354;
constexpr unsigned int kProductType = 0;

// How packets of a type are read, and where their slow channel stands; 0 without one.
struct TypeForm {
  void (*extract)(const Packet&, const ComKey&, ComData&);
  unsigned int channel_at;
};
constexpr TypeForm kForms[kTypes] = {
    {ExtractObsoleteRangeData, kOldRangeChannel},
    {ExtractLaneData, kLaneChannel},
    {ExtractExtendedRangeData, kRangeChannel},
    {ExtractNCom, 0},
    {ExtractTrigger, 0},
    {ExtractPolygon, 0},
    {ExtractSensors, 0},
};

// The slow channel: its number, and its eight bytes behind it; null if the packet has none.
const unsigned char* channel_of(const Packet& packet, unsigned int type) {
  const unsigned int at = kForms[type].channel_at;
  return at != 0 ? find_channel(packet, at) : nullptr;
}

}  // namespace

int RComCodec::DecodeSuper(const unsigned char* data, unsigned int size) {
  if (data == nullptr || size < kSuperPrefix) return 0;
  const unsigned char* packet = data + kSuperPrefix;
  unsigned int length = 0;
  auto type = Enum::RNG_OUTPUT_PACKET_TYPE_UNKNOWN;
  const auto status = PacketForms::status(size - kSuperPrefix, packet, length, type);
  return status == Lib::kPacketGood ? DecodeLite(packet, length) : 0;
}

int RComCodec::DecodeLite(const unsigned char* data, unsigned int size) {
  if (data == nullptr || size == 0) return 0;
  if (const auto arrival = Arrival::of({data, size})) {
    if (prescan_.active) {
      PrescanData(*arrival);
    } else {
      ExtractData(*arrival);
    }
  }
  if (!prescan_.active || prescan_.state != Prescan::kCoasting) return 1;
  prescan_.active = false;
  return 2;
}

std::optional<RComCodec::Arrival> RComCodec::Arrival::of(const Packet& packet) {
  if (packet.size <= kTypeAt) return std::nullopt;
  const unsigned int type = packet.data[kTypeAt];
  if (type == kTrigger || type >= kTypes) return std::nullopt;
  if (type != kExtendedRange) return Arrival{packet, type, 0};
  if (!packet.holds(kTargetAt, 2)) return std::nullopt;
  const unsigned int target = packet.data[kTargetAt];
  if (target == 0 || target > kMaxTargets || packet.data[kTotalAt] > kMaxTargets) {
    return std::nullopt;
  }
  return Arrival{packet, type, target - 1};
}

void RComCodec::ExtractData(const Arrival& arrival) {
  if (arrival.timed()) extract_time(arrival);
  TimingsCompute(false);
  data_.ShareNano();
  set_product();
  kForms[arrival.type].extract(arrival.packet, key_, data_);
  take_minutes(arrival);
}

void RComCodec::extract_time(const Arrival& arrival) {
  if (prescan_.state == Prescan::kCoasting) {
    coast(arrival);
  } else {
    measure_time(arrival);
  }
}

void RComCodec::measure_time(const Arrival& arrival) {
  if (nano_off_.unset()) prescan_.incrCounter(arrival.type, arrival.target);
  if (!advance_clock(arrival.packet) || gps_minute_ < 0) return invalidate_nano();
  const long long nano = clock_nano();
  set_nano(nano);
  if (prescan_.state != Prescan::kUndecided || !nano_off_.unset()) return;
  prescan_.undoCounter();
  nano_off_.setOffset(nano, prescan_.timePrediction());
  prescan_.state = Prescan::kTimed;
}

void RComCodec::coast(const Arrival& arrival) {
  set_nano(Lib::wrap_subtract(nano_off_.get_first(), prescan_.timePrediction()));
  if (!prescan_.decrCounter(arrival.type, arrival.target)) return;
  prescan_.state = Prescan::kCoasted;
  gps_minute_ = prescan_.minute;
  last_ms_ = prescan_.ms;
}

void RComCodec::set_product() {
  DataMain& main = data_.DMain();
  main.Set_ProductFamily(kProductFamily);
  main.Set_ProductGroup(kProductGroup);
  main.Set_ProductModel(kProductModel);
  main.Set_ProductType(kProductType);
}

void RComCodec::TimingsCompute(bool force) {
  if (force || key_.KMain().Get_Time_Relative()) {
    compute_relative_times();
  } else {
    reject_relative_times();
  }
  if (force || key_.KMain().Get_Time_Week()) {
    compute_week();
  } else {
    data_.DMain().Rej_TimeWeekCount();
    data_.DMain().Rej_TimeWeekSecond();
  }
}

// Each time of the live offsets: `name` of Nano, and the offset.
#define TREL_RNG_RELATIVE(X) X(Origin, get_origin) X(Start, get_start) X(First, get_first)

void RComCodec::reject_relative_times() {
  DataMain& main = data_.DMain();
#define REJECT(name, offset) \
  main.Rej_NanoFrom##name(); \
  main.Rej_TimeFrom##name();
  TREL_RNG_RELATIVE(REJECT)
#undef REJECT
}

void RComCodec::compute_relative_times() {
  DataMain& main = data_.DMain();
  const bool known = main.Is_Nano_Valid() && !nano_off_.unset();
#define COMPUTE(name, offset)                                                       \
  if (known) {                                                                      \
    const long long span = Lib::wrap_subtract(main.Get_Nano(), nano_off_.offset()); \
    main.Set_NanoFrom##name(span);                                                  \
    main.Set_TimeFrom##name(Lib::to_seconds(span));                                 \
  } else {                                                                          \
    main.Inv_NanoFrom##name();                                                      \
    main.Inv_TimeFrom##name();                                                      \
  }
  TREL_RNG_RELATIVE(COMPUTE)
#undef COMPUTE
}
#undef TREL_RNG_RELATIVE

void RComCodec::compute_week() {
  DataMain& main = data_.DMain();
  const long long nano = main.Get_Nano();
  if (!main.Is_Nano_Valid() || nano < 0) {
    main.Inv_TimeWeekCount();
    main.Inv_TimeWeekSecond();
    return;
  }
  main.Set_TimeWeekCount(static_cast<unsigned int>(nano / NANOSECONDS_IN_WEEK));
  main.Set_TimeWeekSecond(Lib::to_seconds(nano % NANOSECONDS_IN_WEEK));
}

void RComCodec::PrescanData(const Arrival& arrival) {
  if (arrival.timed() && prescan_.offsets.unset()) prescan_time(arrival);
  prescan_channel(arrival);
  if (!prescan_.offsets.unset() && prescan_.has_utc) prescan_.state = Prescan::kCoasting;
}

void RComCodec::prescan_time(const Arrival& arrival) {
  prescan_.incrCounter(arrival.type, arrival.target);
  if (!advance_clock(arrival.packet) || gps_minute_ < 0) return;
  prescan_.undoCounter();
  prescan_.offsets.setOffset(clock_nano(), prescan_.timePrediction());
  prescan_.has_time = true;
  prescan_.time = Lib::wrap_subtract(prescan_.offsets.get_first(), prescan_.timePrediction());
  prescan_.ms = last_ms_;
  prescan_.minute = gps_minute_;
}

void RComCodec::prescan_channel(const Arrival& arrival) {
  take_minutes(arrival);
  const unsigned char* channel = channel_of(arrival.packet, arrival.type);
  if (channel == nullptr || channel[0] != kUtcChannel || prescan_.has_utc) return;
  prescan_.has_utc = read_utc_offset(channel + 1, prescan_.utc_offset);
}

bool RComCodec::advance_clock(const Packet& packet) {
  if (!packet.holds(kTimeAt, 2)) return false;
  const unsigned int found = cast_2_byte_LE_to_uint16(packet.data + kTimeAt);
  if (found == kNoTime) return false;
  const int ms = static_cast<int>(found);
  if (ms < kTurn && last_ms_ > kTurn && gps_minute_ >= 0) {
    gps_minute_ = static_cast<int>(static_cast<unsigned int>(gps_minute_) + 1U);
  }
  last_ms_ = ms;
  return true;
}

void RComCodec::take_minutes(const Arrival& arrival) {
  const unsigned char* channel = channel_of(arrival.packet, arrival.type);
  if (channel != nullptr && channel[0] == kTimeChannel) gps_minute_ = read_minutes(channel + 1);
}

long long RComCodec::clock_nano() const {
  return Lib::wrap_add(Lib::wrap_multiply(gps_minute_, NANOSECONDS_IN_MINUTE),
                       last_ms_ * NANOSECONDS_IN_MILLISECOND);
}

void RComCodec::set_nano(long long nano) {
  data_.DMain().Set_Nano(nano);
  data_.DMain().Set_Time(Lib::to_seconds(nano));
}

void RComCodec::invalidate_nano() {
  data_.DMain().Inv_Nano();
  data_.DMain().Inv_Time();
}

void RComCodec::PrescanRewind(bool apply) {
  if (prescan_.active && prescan_.state == Prescan::kPrescanning) {
    prescan_.state = Prescan::kCoasting;
    prescan_.active = false;
  }
  InvalidatePrivate(false, false);
  if (prescan_.offsets.unset()) {
    prescan_.state = Prescan::kUndecided;
    prescan_.ivalCounter();
  } else {
    prescan_.state = Prescan::kCoasting;
    prescan_.initCounter();
    nano_off_ = prescan_.offsets;
  }
  if (!apply) return;
  if (prescan_.has_time) {
    set_nano(prescan_.time);
    TimingsCompute(true);
  }
  if (prescan_.has_utc) data_.DMain().Set_TimeUtcOffset(prescan_.utc_offset);
}

void RComCodec::InvalidatePrivate(bool all, bool prescan) {
  last_ms_ = -1;
  gps_minute_ = -1;
  nano_off_.Invalidate();
  if (all) prescan_.Invalidate(prescan);
  data_.Invalidate();
}

}  // namespace Trel::Rng
