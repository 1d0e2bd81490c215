// In what the two families of navigation packets differ, as far as it can be said in data.
//
// Up to the status channel both have the same fields at the same places (Nav_Packet.h).
#pragma once

#include "library/Lib_PacketSync.h"

namespace Trel::Nav {

class StatusTable;

struct PacketForm {
  unsigned int size;        // bytes of a packet, its sum included
  unsigned int channel_at;  // where the status channel's number stands, its eight bytes behind it
  Lib::PacketStatus (*status)(unsigned int available, const unsigned char* data);
  const StatusTable* channels;
  double outpos2m;  // the factor of lever arms to outputs
  bool jerk;        // the jerk is computed from the acceleration
  bool licensed;    // some outputs need a licensed feature
};

}  // namespace Trel::Nav
