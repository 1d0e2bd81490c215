// Logical readers of raw files, whose packets are found by synchronisation.
//
// This room holds what all of them share; what a packet looks like, and which packets a stream
// takes, are the concrete readers' own. A packet is handed out in place and lasts until the next
// read or rewind. Bytes that belong to no packet are passed over.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "sto/Sto_File.h"

namespace Trel::Sto {

// Sync and Packet are the SyncState and the PacketState of a family of packets.
template <class Sync, class Packet>
class LogicalSync : public Logical {
 public:
  // Bytes that are read at a time, where the synchronisation has room for them.
  static constexpr unsigned int kReadSize = 2048;

  // Back to the start of the stretch.
  virtual void rewind() = 0;
  // Goes on to the next packet; false at the end of the data. The packet read need not be one that
  // this reader is for.
  virtual bool read_next_packet() = 0;
  // Whether a packet is held that can be decoded, and whether it is one that the reader looks for.
  [[nodiscard]] virtual bool valid_packet() const = 0;
  [[nodiscard]] virtual bool match_packet() const = 0;
  // The packet held, which must be valid.
  [[nodiscard]] virtual const std::uint8_t* payload_data() const = 0;
  [[nodiscard]] virtual std::size_t payload_size() const = 0;

  // Offset of the packet in the file.
  [[nodiscard]] unsigned long long absolute_packet_location() const {
    return packet.location() + start();
  }

 protected:
  // The next packet of any kind, reading as needed; false at the end of the data.
  bool sync_next_packet();
  // Logical's rewind, and nothing held.
  void rewind_sync();

  Sync sync;
  Packet packet;
};

template <class Sync, class Packet>
bool LogicalSync<Sync, Packet>::sync_next_packet() {
  std::array<unsigned char, kReadSize> buffer;
  for (;;) {
    int result = sync.packet_out(packet);
    while (result < 0) result = sync.packet_out(packet);
    if (result > 0) return true;
    const unsigned int room = std::min(sync.space(), kReadSize);
    if (room == 0) {
      // What is held claims to be longer than all the space there is.
      sync.remove(1);
      continue;
    }
    const auto count = static_cast<unsigned int>(read(buffer.data(), room));
    if (count == 0) {
      packet.reset();
      return false;
    }
    sync.write(buffer.data(), count);
  }
}

template <class Sync, class Packet>
void LogicalSync<Sync, Packet>::rewind_sync() {
  Logical::rewind();
  sync.reset();
  packet.reset();
}

}  // namespace Trel::Sto
