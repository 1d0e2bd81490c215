// Synchronisation the slow and plain way, to hold the system's own against.
//
// Every byte is looked at one by one and every removal moves what is left, so that nothing can go
// wrong but the rules themselves. What a packet looks like is told by a function.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <ostream>

#include "support/Support_Bytes.h"

namespace Trel::Support {

class ReferenceSync {
 public:
  static constexpr std::size_t kCapacity = 2560;

  // 0: a good packet begins at the first byte. 1: more bytes are needed. 2: none begins there. Sets
  // the size that the packet has or claims.
  using Status =
      std::function<int(const unsigned char* data, std::size_t available, std::size_t& size)>;

  // All that can be seen from outside.
  struct Counters {
    std::uint64_t size = 0;
    std::uint64_t packet_size = 0;
    bool packet_pending = false;
    std::uint64_t bytes_written = 0;
    std::uint64_t bytes_skipped = 0;
    std::uint64_t skip_events = 0;
    std::uint64_t packets = 0;
    std::uint64_t location = 0;
    bool in_sync = true;

    friend bool operator==(const Counters&, const Counters&) = default;
    friend void PrintTo(const Counters& c, std::ostream* out) {
      *out << "size " << c.size << ", packet " << c.packet_size
           << (c.packet_pending ? " pending" : "") << ", written " << c.bytes_written
           << ", skipped " << c.bytes_skipped << " in " << c.skip_events << ", packets "
           << c.packets << ", location " << c.location << (c.in_sync ? ", in sync" : "");
    }
  };

  explicit ReferenceSync(Status status) : status_(std::move(status)) {}

  void write(const Bytes& bytes) {
    if (state_.packet_pending) remove(state_.packet_size);
    std::size_t length = bytes.size();
    if (held_.size() + length > kCapacity) {
      const std::size_t excess = held_.size() + length - kCapacity;
      if (length < kCapacity) {
        held_.erase(held_.begin(), held_.begin() + static_cast<std::ptrdiff_t>(excess));
      } else {
        held_.clear();
        length = kCapacity;
      }
      state_.bytes_skipped += excess;
      state_.location += excess;
    }
    held_.insert(held_.end(), bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
    state_.bytes_written += length;
  }

  void remove(std::size_t count) {
    count = std::min(count, held_.size());
    held_.erase(held_.begin(), held_.begin() + static_cast<std::ptrdiff_t>(count));
    if (!state_.packet_pending) state_.bytes_skipped += count;
    state_.packet_pending = false;
    state_.location += count;
  }

  int packet_out() {
    if (state_.packet_pending) remove(state_.packet_size);
    int verdict = 1;
    std::size_t size = 0;
    std::size_t place = 0;
    for (; place < held_.size(); ++place) {
      verdict = status_(held_.data() + place, held_.size() - place, size);
      if (verdict != 2) {
        state_.in_sync = true;
        break;
      }
      if (state_.in_sync) {
        state_.in_sync = false;
        break;
      }
    }
    if (place != 0) {
      remove(place);
      ++state_.skip_events;
    }
    state_.packet_size = 0;
    if (verdict == 0) {
      state_.packet_size = size;
      if (state_.packets == 0) state_.bytes_skipped = state_.skip_events = 0;
      ++state_.packets;
      state_.packet_pending = true;
    }
    return verdict == 0 ? 1 : verdict == 1 ? 0 : -1;
  }

  void reset() {
    held_.clear();
    state_ = Counters();
  }

  [[nodiscard]] Counters counters() const {
    Counters answer = state_;
    answer.size = held_.size();
    return answer;
  }
  // The bytes held, the packet handed out included.
  [[nodiscard]] const Bytes& held() const { return held_; }

 private:
  Status status_;
  Bytes held_;
  Counters state_;
};

// The same numbers of a synchronisation of the system.
template <class Sync>
ReferenceSync::Counters counters_of(const Sync& sync) {
  return {sync.size(),          sync.packet_size(),   sync.packet_pending(),
          sync.bytes_written(), sync.bytes_skipped(), sync.skip_events(),
          sync.packets(),       sync.location(),      sync.in_sync()};
}

// Whether the last of `size` bytes is the sum of those between the first and itself.
inline bool has_good_sum(const unsigned char* data, std::size_t size) {
  unsigned int sum = 0;
  for (std::size_t at = 1; at + 1 < size; ++at) sum += data[at];
  return sum % 256 == data[size - 1];
}

// One packet as a drain finds it.
struct FoundPacket {
  std::uint64_t location;
  long long serial;
  Bytes bytes;

  friend bool operator==(const FoundPacket&, const FoundPacket&) = default;
  friend void PrintTo(const FoundPacket& packet, std::ostream* out) {
    *out << packet.bytes.size() << " bytes at " << packet.location << " of " << packet.serial;
  }
};

// Feeds `stream` in pieces of at most `chunk` bytes, as readers do, and collects what comes out.
template <class Sync, class State>
std::vector<FoundPacket> drain_packets(Sync& sync, State& state, const Bytes& stream,
                                       std::size_t chunk = 2048) {
  std::vector<FoundPacket> found;
  std::size_t at = 0;
  for (;;) {
    const int result = sync.packet_out(state);
    if (result > 0) {
      const unsigned char* data = state.payload_data();
      found.push_back({state.location(), state.serial(), Bytes(data, data + state.payload_size())});
    } else if (result == 0) {
      const std::size_t room = sync.space();
      if (room == 0) {
        sync.remove(1);
        continue;
      }
      const std::size_t count = std::min({chunk, room, stream.size() - at});
      if (count == 0) return found;
      sync.write(stream.data() + at, static_cast<unsigned int>(count));
      at += count;
    }
  }
}

}  // namespace Trel::Support
