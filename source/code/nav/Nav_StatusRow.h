// How a line of Nav_Status.def becomes a StatusRow: TREL_NAV_FIELD and its like are what FIELD and
// its like are defined as before the table is included. The names of scales are looked up there.
#pragma once

#include <type_traits>

#include "nav/Nav_Status.h"

namespace Trel::Nav {

// A number as the type that a Set takes; one of an enumerated value takes any whole number.
template <class T>
[[nodiscard]] constexpr auto as_stored(double number) {
  if constexpr (std::is_same_v<T, bool>) {
    return number != 0.0;
  } else if constexpr (std::is_floating_point_v<T>) {
    return number;
  } else if constexpr (std::is_enum_v<T>) {
    return static_cast<long long>(number);
  } else {
    return static_cast<T>(static_cast<long long>(number));
  }
}

}  // namespace Trel::Nav

#define TREL_NAV_FIELD_OF(channel, wanted, raw, at, age, absent, scale, owner, value)  \
  {channel,                                                                            \
   #value,                                                                             \
   [](StatusChannels& channels, const StatusRow& row) { channels.decode_field(row); }, \
   [](const ComKey& key) { return key.wanted; },                                       \
   Raw::raw,                                                                           \
   at,                                                                                 \
   Age::age,                                                                           \
   Absent::absent,                                                                     \
   scale,                                                                              \
   0,                                                                                  \
   256,                                                                                \
   [](ComData& data, double number) {                                                  \
     data owner.Set##value(as_stored<decltype(data owner.Get##value())>(number));      \
   },                                                                                  \
   [](ComData& data) { data owner.Inv##value(); },                                     \
   [](ComData& data) -> Lib::StampExt& { return data owner.Hit##value(); }},

#define TREL_NAV_FIELD(channel, key, raw, at, age, absent, scale, value) \
  TREL_NAV_FIELD_OF(channel, KMain().Get_##key(), raw, at, age, absent, scale, , value)
#define TREL_NAV_GPS_FIELD(channel, receiver, key, raw, at, age, absent, scale, value) \
  TREL_NAV_FIELD_OF(channel, KGps(receiver).Get_##key(), raw, at, age, absent, scale,  \
                    .DGps(receiver), value)

#define TREL_NAV_COUNTER(channel_, key_, raw_, at_, value_)                                      \
  {.channel = channel_,                                                                          \
   .value = #value_,                                                                             \
   .call = [](StatusChannels& channels, const StatusRow& row) { channels.decode_counter(row); }, \
   .wanted = [](const ComKey& key) { return key.KMain().Get_##key_(); },                         \
   .raw = Raw::raw_,                                                                             \
   .at = at_,                                                                                    \
   .counter = [](ComData& data) -> Lib::VariableExt<unsigned int>& {                             \
     return data.Hit##value_();                                                                  \
   }},

#define TREL_NAV_CALL(channel_, function_) \
  {.channel = channel_,                    \
   .value = #function_,                    \
   .call = [](StatusChannels& channels, const StatusRow& row) { channels.function_(row); }},

// A line of a bit: `call_` is the member that decodes it.
#define TREL_NAV_BIT(channel_, key_, call_, at_, below_, mask_, value_)                 \
  {.channel = channel_,                                                                 \
   .value = #value_,                                                                    \
   .call = [](StatusChannels& channels, const StatusRow& row) { channels.call_(row); }, \
   .wanted = [](const ComKey& key) { return key.KMain().Get_##key_(); },                \
   .at = at_,                                                                           \
   .mask = mask_,                                                                       \
   .below = below_,                                                                     \
   .set = [](ComData& data, double number) { data.Set##value_(number != 0.0); },        \
   .invalidate = [](ComData& data) { data.Inv##value_(); }},
#define TREL_NAV_FLAG(channel, key, at, below, mask, value) \
  TREL_NAV_BIT(channel, key, decode_flag, at, below, mask, value)
#define TREL_NAV_FEATURE(channel, key, at, mask, value) \
  TREL_NAV_BIT(channel, key, decode_feature, at, 256, mask, value)

#define TREL_NAV_GPS_CALL(channel_, receiver_, function_)                                 \
  {.channel = channel_,                                                                   \
   .value = #function_,                                                                   \
   .call = [](StatusChannels& channels, const StatusRow&) {                               \
     channels.function_(channels.key().KGps(receiver_), channels.data().DGps(receiver_)); \
   }},
#define TREL_NAV_POINT_CALL(channel_, point_, function_)                                        \
  {.channel = channel_,                                                                         \
   .value = #function_,                                                                         \
   .call = [](StatusChannels& channels, const StatusRow&) {                                     \
     channels.function_(channels.key().KMeasurePt(point_), channels.data().DMeasurePt(point_)); \
   }},
