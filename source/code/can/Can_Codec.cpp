#include "can/Can_Codec.h"

#include <algorithm>
#include <array>

#include "library/Lib_Cast.h"

namespace Trel::Can {

namespace {

constexpr std::size_t kTimeSize = 8;
constexpr long long kNanoPerSecond = 1'000'000'000;
constexpr long long kNanoPerWeek = 604'800 * kNanoPerSecond;

bool is_set(long long time) {
  return time != Codec::kUnset;
}
bool is_absolute(long long time) {
  return time > Codec::kThreshold;
}

long long sum(long long a, long long b) {
  return static_cast<long long>(static_cast<unsigned long long>(a) +
                                static_cast<unsigned long long>(b));
}

long long difference(long long a, long long b) {
  return static_cast<long long>(static_cast<unsigned long long>(a) -
                                static_cast<unsigned long long>(b));
}

}  // namespace

unsigned int dlc_to_byte_count(unsigned int dlc) {
  constexpr std::array<unsigned char, 16> kBytes{0, 1,  2,  3,  4,  5,  6,  7,
                                                 8, 12, 16, 20, 24, 32, 48, 64};
  return kBytes[dlc & 15];
}

RawCanMessage::RawCanMessage(const unsigned char* bytes, std::size_t size)
    : flags_(bytes[0] & 15U),
      dlc_(bytes[0] >> 4),
      value_(cast_3_byte_LE_to_uint32(bytes + 1)),
      mid_(cast_4_byte_LE_to_uint32(bytes + 4)),
      data_(bytes + kHeaderSize),
      available_(size - kHeaderSize) {}

std::size_t RawCanMessage::get_record_size() const {
  return kHeaderSize + std::max(dlc_to_byte_count(dlc_), 8U);
}

void Codec::Prescan::invalidate(bool flag) {
  const long long time = flag ? kUnset : 0;
  active = flag;
  state = flag ? kPrescanning : kIdle;
  prev = last = first = last_rel = first_abs = gap = offset = time;
  nano_off.invalidate();
}

void Codec::configure(std::span<const unsigned char> bytes, bool flag) {
  dbc_.configure(bytes);
  com_data_.configure(dbc_);
  invalidate(flag);
}

bool Codec::decode(const unsigned char* bytes, std::size_t size) {
  if (!prescan_.active) {
    decode_regular(bytes, size);
    return true;
  }
  decode_prescan(bytes, size);
  if (prescan_.state != kEnded) return true;
  prescan_.active = false;
  prescan_.state = kConcluded;
  return false;
}

void Codec::rewind(bool flag) {
  if (prescan_.active && prescan_.state == kPrescanning) {
    prescan_.state = kEnded;
    prescan_.active = false;
  }
  invalidate_private(false, false);
  if (is_set(prescan_.first)) {
    prescan_.state = kEnded;
    nano_off_ = prescan_.nano_off;
  } else {
    prescan_.state = kIdle;
  }
  if (!flag) return;
  if (is_set(prescan_.first)) com_data_.DMain().Set_Nano(time_prediction(prescan_.first));
  timings_compute();
}

long long Codec::time_prediction(long long time) const {
  return !is_absolute(time) && is_set(prescan_.offset) ? sum(time, prescan_.offset) : time;
}

void Codec::decode_prescan(const unsigned char* bytes, std::size_t size) {
  if (bytes == nullptr || (size & 15) != kTimeSize) return;
  const long long time = cast_8_byte_LE_to_int64(bytes);
  if (!is_set(time)) return;

  Prescan& scan = prescan_;
  scan.prev = scan.last;
  scan.last = time;
  if (!is_set(scan.first)) scan.first = time;
  if (!is_set(scan.first_abs)) (is_absolute(time) ? scan.first_abs : scan.last_rel) = time;
  if (is_absolute(scan.prev) && is_absolute(scan.last) && scan.prev < scan.last) {
    scan.gap = difference(scan.last, scan.prev);
  }
  if (is_set(scan.first) && is_set(scan.first_abs) && is_set(scan.gap)) conclude_prescan();
}

// The step from the last device time to the first GPS time is taken to be one gap.
void Codec::conclude_prescan() {
  Prescan& scan = prescan_;
  NanoOff& off = scan.nano_off;
  off.first = scan.first_abs;
  if (is_set(scan.last_rel)) {
    scan.offset = difference(difference(scan.first_abs, scan.last_rel), scan.gap);
    off.start = difference(scan.first_abs, time_prediction(scan.first));
  } else {
    scan.offset = 0;
    off.start = scan.first_abs;
  }
  off.origin = off.start / kNanoPerSecond * kNanoPerSecond;
  scan.state = kEnded;
}

void Codec::decode_regular(const unsigned char* bytes, std::size_t size) {
  if (bytes == nullptr || size < kTimeSize) return;
  const long long time = time_prediction(cast_8_byte_LE_to_int64(bytes));
  com_data_.DMain().Set_Nano(time);
  timings_compute();

  Frame frame;
  for (std::size_t at = kTimeSize; at < size && size - at >= RawCanMessage::kHeaderSize;) {
    const RawCanMessage record(bytes + at, size - at);
    at += record.get_record_size();
    const Message* const message = dbc_.get_message_by_mid(record.get_mid());
    if (message == nullptr || message->get_fields().empty()) continue;
    record.load(frame);
    Dynamic* variable = com_data_.DCan().data() + message->get_signals().front()->get_six();
    for (const Field& field : message->get_fields()) {
      field.convert(*variable, frame);
      variable->set_nano(time);
      ++variable;
    }
  }
}

void Codec::timings_compute() {
  DataMain& main = com_data_.DMain();
  const long long nano = main.Var_Nano().get();
  if (!main.Var_Nano().good()) {
    main.Hit_NanoFromOrigin().setInvalid();
    main.Hit_NanoFromStart().setInvalid();
    main.Hit_NanoFromFirst().setInvalid();
    main.Hit_TimeWeekCount().setInvalid();
    main.Hit_TimeWeekSecond().setInvalid();
    return;
  }
  main.Set_NanoFromOrigin(difference(nano, nano_off_.origin));
  main.Set_NanoFromStart(difference(nano, nano_off_.start));
  main.Set_NanoFromFirst(difference(nano, nano_off_.first));
  if (!is_set(nano_off_.origin)) main.Hit_NanoFromOrigin().setInvalid();
  if (!is_set(nano_off_.start)) main.Hit_NanoFromStart().setInvalid();
  if (!is_set(nano_off_.first)) main.Hit_NanoFromFirst().setInvalid();
  main.Set_TimeWeekCount(static_cast<unsigned int>(nano / kNanoPerWeek));
  main.Set_TimeWeekSecond(static_cast<double>(nano % kNanoPerWeek) / 1e9);
}

void Codec::invalidate_private(bool with_prescan, bool flag) {
  if (with_prescan) prescan_.invalidate(flag);
  nano_off_.invalidate();
  com_data_.invalidate();
}

}  // namespace Trel::Can
