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

#include "library/Lib_Report.h"
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

 private:
  // Room for fewer bytes is left where what is held is given up a byte at a time. As many bytes as
  // ever are read then, and wait until there is room.
  static constexpr unsigned int kLeastRead = 64;

  // Hands the synchronisation bytes for which it has room; false at the end of the data.
  bool refill();

  std::array<unsigned char, kReadSize> ahead;
  unsigned int ahead_begin = 0;
  unsigned int ahead_end = 0;
};

template <class Sync, class Packet>
bool LogicalSync<Sync, Packet>::sync_next_packet() {
  for (;;) {
    int result = sync.packet_out(packet);
    while (result < 0) result = sync.packet_out(packet);
    if (result > 0) return true;
    if (sync.space() == 0) {
      // What is held claims to be longer than all the space there is.
      sync.remove(1);
    } else if (!refill()) {
      packet.reset();
      return false;
    }
  }
}

template <class Sync, class Packet>
bool LogicalSync<Sync, Packet>::refill() {
  const unsigned int room = std::min(sync.space(), kReadSize);
  if (ahead_begin == ahead_end) {
    const unsigned int wanted = room < kLeastRead ? kReadSize : room;
    ahead_begin = 0;
    ahead_end = static_cast<unsigned int>(read(ahead.data(), wanted));
  }
  const unsigned int count = std::min(room, ahead_end - ahead_begin);
  sync.write(ahead.data() + ahead_begin, count);
  ahead_begin += count;
  return count != 0;
}

template <class Sync, class Packet>
void LogicalSync<Sync, Packet>::rewind_sync() {
  Logical::rewind();
  sync.reset();
  packet.reset();
  ahead_begin = ahead_end = 0;
}

// A reader of every packet there is; it looks for none in particular. Base is the family's
// LogicalSync, whose kSource names it when the payload of no packet is asked for.
template <class Base>
class LogicalAny final : public Base {
 public:
  void rewind() override {
    this->rewind_sync();
    valid = false;
  }
  bool read_next_packet() override {
    valid = this->sync_next_packet();
    return valid;
  }
  [[nodiscard]] bool valid_packet() const override { return valid; }
  [[nodiscard]] bool match_packet() const override { return false; }
  [[nodiscard]] const std::uint8_t* payload_data() const override {
    TREL_ASSERT(valid, Base::kSource);
    return this->packet.payload_data();
  }
  [[nodiscard]] std::size_t payload_size() const override {
    TREL_ASSERT(valid, Base::kSource);
    return this->packet.payload_size();
  }

 private:
  bool valid = false;
};

}  // namespace Trel::Sto
