// The six edges that a unit times: two triggers, falling and rising, and two digital outputs.
//
// Each has a status channel of its own and a kind of packet that is taken at the edge. One table
// serves both.
#pragma once

#include <array>
#include <cstddef>

#include "nav/Nav_ComData.h"

namespace Trel::Nav {

enum class TriggerGroup : unsigned char { Trig1, Trig2, Out1, Out2 };
inline constexpr std::size_t kTriggerGroups = 4;

struct Trigger {
  unsigned char channel;
  TriggerGroup group;
  Enum::NAV_OUTPUT_PACKET_TYPE packet_type;
  Lib::VariableExt<long long>& (ComData::*nano)();
  Lib::VariableExt<double>& (ComData::*time)();
  Lib::VariableExt<unsigned int>& (ComData::*count)();
};

inline constexpr std::array<Trigger, 6> kTriggers = {{
#define TREL_NAV_TRIGGER(channel, group, kind, name)                                              \
  {                                                                                               \
    channel, TriggerGroup::group, Enum::NAV_OUTPUT_PACKET_TYPE_##kind, &ComData::Hit##name##Nano, \
        &ComData::Hit##name##Time, &ComData::Hit##name##UpdateCount                               \
  }
    TREL_NAV_TRIGGER(24, Trig1, IN1DOWN, Trig1Fall),
    TREL_NAV_TRIGGER(43, Trig1, IN1UP, Trig1Rise),
    TREL_NAV_TRIGGER(65, Out1, OUT1, DigitalOut),
    TREL_NAV_TRIGGER(79, Trig2, IN2DOWN, Trig2Fall),
    TREL_NAV_TRIGGER(80, Trig2, IN2UP, Trig2Rise),
    TREL_NAV_TRIGGER(81, Out2, OUT2, DigitalOut2),
#undef TREL_NAV_TRIGGER
}};

// The place in kTriggers of a status channel; kTriggers.size() for a channel of another kind.
[[nodiscard]] constexpr std::size_t find_trigger(unsigned int channel) {
  std::size_t place = 0;
  while (place < kTriggers.size() && kTriggers[place].channel != channel) ++place;
  return place;
}

}  // namespace Trel::Nav
