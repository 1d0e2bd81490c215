// The codec of MCom packets, which come from vessels: 84 bytes, status channel at byte 74. See
// Nav_ComBase.h for all that it shares with the NCom codec.
//
// What is its own: the tail of the packet, with the heave, a counter of packets, and bits that take
// back what the slow channels have said of the receiver's modes and of the search for the heading.
// It computes no jerk, and none of its outputs needs a licensed feature.
#pragma once

#include "nav/Nav_ComBase.h"
#include "nav/Nav_Scale.h"

namespace Trel::Nav {

struct MComScales : ComScales {
  static constexpr double OUTPOS2M = 0.01;
  static constexpr double COM_DEFAULT_DATARATE = 100.0;  // packets per second
  static constexpr double HEAVE2M = 0.002;
};

class MComCodec : public ComBase, public MComScales {
 public:
  explicit MComCodec(bool prescan);

 private:
  void UpdateTail(Enum::NAVIGATION_STATUS status) override;
  void update_counter();
  void apply_status_bits();
  void update_heave();
};

}  // namespace Trel::Nav
