// Logical readers of raw navigation files, in which NCom and MCom packets may alternate.
#pragma once

#include "nav/Nav_Sync.h"
#include "sto/Sto_FileSync.h"

namespace Trel::Sto {

class LogicalNav : public LogicalSync<Nav::SyncState, Nav::PacketState> {
 public:
  // The number of the packet's logical stream within the file; -1 without a packet.
  [[nodiscard]] int serial() const { return packet.serial(); }
};

// A reader of every packet there is; it looks for none in particular.
class LogicalNavAny : public LogicalNav {
 public:
  void rewind() override;
  bool read_next_packet() override;
  [[nodiscard]] bool valid_packet() const override { return valid; }
  [[nodiscard]] bool match_packet() const override { return false; }
  [[nodiscard]] const std::uint8_t* payload_data() const override;
  [[nodiscard]] std::size_t payload_size() const override;

 private:
  bool valid = false;
};

}  // namespace Trel::Sto
