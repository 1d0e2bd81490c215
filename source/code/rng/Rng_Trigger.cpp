#include "rng/Rng_Trigger.h"

#include <limits>

#include "rng/Rng_Scale.h"

namespace Trel::Rng {

namespace {

constexpr unsigned int kMillisecondsAt = 4;
constexpr unsigned int kFineAt = 6;
constexpr unsigned int kMinuteAt = 7;
constexpr unsigned int kEnd = 11;

constexpr unsigned int kNoMilliseconds = 65535;
constexpr int kNoFine = -128;
constexpr int kNoMinute = std::numeric_limits<int>::min();

constexpr double kFine2Sec = RComScales::NANOSECONDS_IN_FINETIME / 1e9;

}  // namespace

void ExtractTrigger(const Packet& packet, const ComKey& key, ComData& data) {
  DataMain& main = data.DMain();
  if (!key.KMain().Get_Trig_General()) return main.Rej_Trig_Time();
  if (!packet.holds(kMillisecondsAt, kEnd - kMillisecondsAt)) return main.Inv_Trig_Time();
  const unsigned int milliseconds = cast_2_byte_LE_to_uint16(packet.data + kMillisecondsAt);
  const int fine = cast_1_byte_LE_to_int8(packet.data + kFineAt);
  const int minute = cast_4_byte_LE_to_int32(packet.data + kMinuteAt);
  if (milliseconds == kNoMilliseconds || fine == kNoFine || minute == kNoMinute) {
    return main.Inv_Trig_Time();
  }
  main.Set_Trig_Time(minute * 60.0 + milliseconds * RComScales::TIME2SEC + fine * kFine2Sec);
}

}  // namespace Trel::Rng
