// Logical readers of raw navigation files, in which NCom and MCom packets may alternate.
#pragma once

#include "nav/Nav_Sync.h"
#include "sto/Sto_FileSync.h"

namespace Trel::Sto {

class LogicalNav : public LogicalSync<Nav::SyncState, Nav::PacketState> {
 public:
  static constexpr const char* kSource = "sto/Sto_FileNav";

  // The number of the packet's logical stream within the file; -1 without a packet.
  [[nodiscard]] int serial() const { return packet.serial(); }
};

using LogicalNavAny = LogicalAny<LogicalNav>;

extern template class LogicalAny<LogicalNav>;

}  // namespace Trel::Sto
