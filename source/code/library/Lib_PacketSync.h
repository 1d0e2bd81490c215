// Framing of packets in a byte stream that has none beyond what each packet carries.
//
// Bytes go in with write(), whole packets come out with packet_out(), in place: a packet stays
// readable until the next write(), remove() or packet_out() on the same object. Bytes that belong
// to no packet are dropped and counted; behind a candidate that fails its sum the search goes on
// one byte further. Every byte is accounted for: the sizes of the packets handed out and the bytes
// dropped add up to the location. Nothing allocates and nothing fails: damage is a number to look
// at. The algorithm is one; what a packet looks like is told by a parameter.
#pragma once

namespace Trel::Lib {

enum PacketStatus : unsigned int {
  kPacketGood = 0,        // complete, with the right sum
  kPacketIncomplete = 1,  // more bytes must come before anything can be said
  kPacketBad = 2,         // no packet begins here
};

// The sum of `count` bytes, modulo 256.
[[nodiscard]] unsigned char sum_of_bytes(const unsigned char* data, unsigned int count);

// The verdict on the packet of `size` bytes, 2 at least, of which `available` bytes are at `data`:
// its last byte holds the sum of those between the first and itself.
[[nodiscard]] PacketStatus check_packet(unsigned int available, const unsigned char* data,
                                        unsigned int size);

// What packet_out() has found; T is the enumeration of the kinds of packet. The bytes belong to the
// synchronisation.
template <class T>
class PacketState {
 public:
  // Nothing found; kind and location stay.
  void reset() {
    status_ = kPacketIncomplete;
    size_ = 0;
    data_ = nullptr;
  }

  [[nodiscard]] bool valid() const { return status_ == kPacketGood; }
  [[nodiscard]] PacketStatus status() const { return status_; }
  // Kind and size are those of the last candidate looked at, good or not.
  [[nodiscard]] T type() const { return type_; }
  // The whole packet, its first byte and its sum included.
  [[nodiscard]] const unsigned char* payload_data() const { return data_; }
  [[nodiscard]] unsigned int payload_size() const { return size_; }
  // Offset of the data in the stream.
  [[nodiscard]] unsigned long long location() const { return location_; }

 private:
  template <class>
  friend class PacketSync;

  PacketStatus status_ = kPacketIncomplete;
  T type_{};
  unsigned int size_ = 0;
  const unsigned char* data_ = nullptr;
  unsigned long long location_ = 0;
};

// The bytes under examination, with the counters: the part that knows no packet form.
class PacketBuffer {
 public:
  static constexpr unsigned int kCapacity = 2560;

  // Forgets the bytes and sets all counters to zero.
  void reset();

  // Bytes that write() can take without dropping any.
  [[nodiscard]] unsigned int space() const { return kCapacity - size_; }

  // Appends `length` bytes; they may be null when there are none. On overflow the oldest bytes go
  // and count as skipped; but of more new bytes than the capacity the first are kept.
  void write(const unsigned char* data, unsigned int length);

  // Drops up to `count` bytes at the front. They count as skipped unless a packet handed out still
  // lies there.
  void remove(unsigned int count);

  // Bytes held.
  [[nodiscard]] unsigned int size() const { return size_; }
  // Length of the packet last handed out, 0 when the last call found none.
  [[nodiscard]] unsigned int packet_size() const { return packet_size_; }
  // The packet handed out still lies at the front.
  [[nodiscard]] bool packet_pending() const { return packet_pending_; }
  // Bytes that write() has stored.
  [[nodiscard]] unsigned long long bytes_written() const { return bytes_written_; }
  // Bytes dropped that were no part of a good packet, and the number of packet_out() calls that
  // dropped any. Both start anew with the first good packet.
  [[nodiscard]] unsigned long long bytes_skipped() const { return bytes_skipped_; }
  [[nodiscard]] unsigned long long skip_events() const { return skip_events_; }
  // Good packets handed out.
  [[nodiscard]] unsigned long long packets() const { return packets_; }
  // Offset in the stream of the first byte held.
  [[nodiscard]] unsigned long long location() const { return location_; }
  [[nodiscard]] bool in_sync() const { return in_sync_; }

 protected:
  // The first byte held.
  [[nodiscard]] const unsigned char* front() const { return buffer_ + front_; }

  unsigned int size_ = 0;
  unsigned int packet_size_ = 0;
  bool packet_pending_ = false;
  unsigned long long bytes_written_ = 0;
  unsigned long long bytes_skipped_ = 0;
  unsigned long long skip_events_ = 0;
  unsigned long long packets_ = 0;
  unsigned long long location_ = 0;
  bool in_sync_ = true;

 private:
  // Drops what does not fit and returns how many of the `length` new bytes are taken.
  unsigned int overflow(unsigned int length);

  // Twice the capacity, so that bytes move once for each capacity of them and not with each packet.
  unsigned char buffer_[2 * kCapacity];
  unsigned int front_ = 0;
};

// The whole synchronisation. Forms tells what packets look like:
//   Type                                       the enumeration of their kinds
//   kHead                                      bytes needed before a candidate can be refused
//   starts(byte)                               whether a packet may begin with that byte
//   status(available, data, size, type)        the verdict on the candidate at `data`
template <class Forms>
class PacketSync : public PacketBuffer {
 public:
  using State = PacketState<typename Forms::Type>;

  // 1: `state` describes a good packet. 0: more bytes are needed. -1: bad bytes were met, reported
  // once for the loss of synchronisation and once more when all that is held is dropped.
  int packet_out(State& state);

 private:
  // The place at which the search stops; the size when it runs off the end.
  unsigned int search(State& state);
  // The first place from `at` on that status() need look at.
  [[nodiscard]] unsigned int next_candidate(unsigned int at) const;
};

template <class Forms>
int PacketSync<Forms>::packet_out(State& state) {
  if (packet_pending_) remove(packet_size_);
  state.status_ = kPacketIncomplete;
  const unsigned int dropped = search(state);
  if (dropped != 0) {
    remove(dropped);
    ++skip_events_;
  }
  state.data_ = front();
  packet_size_ = 0;
  if (state.valid()) {
    packet_size_ = state.size_;
    if (packets_ == 0) bytes_skipped_ = skip_events_ = 0;
    ++packets_;
    packet_pending_ = true;
  }
  state.location_ = location_;
  if (state.valid()) return 1;
  return state.status_ == kPacketIncomplete ? 0 : -1;
}

template <class Forms>
unsigned int PacketSync<Forms>::search(State& state) {
  unsigned int at = in_sync_ ? 0 : next_candidate(0);
  while (at < size_) {
    state.status_ = Forms::status(size_ - at, front() + at, state.size_, state.type_);
    const bool bad = state.status_ == kPacketBad;
    const bool lost = bad && in_sync_;
    in_sync_ = !bad;
    if (lost || !bad) return at;
    at = next_candidate(at + 1);
  }
  if (size_ != 0) {
    state.status_ = kPacketBad;
    state.size_ = 0;
  }
  return size_;
}

template <class Forms>
unsigned int PacketSync<Forms>::next_candidate(unsigned int at) const {
  constexpr unsigned int kBlock = 32;
  const unsigned char* bytes = front();
  const unsigned int end = size_ < Forms::kHead ? 0 : size_ - (Forms::kHead - 1);
  for (; at + kBlock <= end; at += kBlock) {
    bool any = false;
    for (unsigned int place = 0; place < kBlock; ++place) any |= Forms::starts(bytes[at + place]);
    if (any) break;
  }
  while (at < end && !Forms::starts(bytes[at])) ++at;
  return at;
}

}  // namespace Trel::Lib
