#include "library/Lib_PacketSync.h"

#include <algorithm>
#include <cstring>

namespace Trel::Lib {

unsigned char sum_of_bytes(const unsigned char* data, unsigned int count) {
  unsigned char sum = 0;
  for (unsigned int at = 0; at < count; ++at) sum = static_cast<unsigned char>(sum + data[at]);
  return sum;
}

PacketStatus check_packet(unsigned int available, const unsigned char* data, unsigned int size) {
  if (available < size) return kPacketIncomplete;
  return sum_of_bytes(data + 1, size - 2) == data[size - 1] ? kPacketGood : kPacketBad;
}

void PacketBuffer::reset() {
  front_ = size_ = packet_size_ = 0;
  packet_pending_ = false;
  bytes_written_ = bytes_skipped_ = skip_events_ = packets_ = location_ = 0;
  in_sync_ = true;
}

void PacketBuffer::remove(unsigned int count) {
  count = std::min(count, size_);
  front_ += count;
  size_ -= count;
  if (packet_pending_) {
    packet_pending_ = false;
  } else {
    bytes_skipped_ += count;
  }
  location_ += count;
}

unsigned int PacketBuffer::overflow(unsigned int length) {
  const unsigned long long excess = static_cast<unsigned long long>(size_) + length - kCapacity;
  const unsigned int kept = length < kCapacity ? kCapacity - length : 0;
  front_ += size_ - kept;
  size_ = kept;
  bytes_skipped_ += excess;
  location_ += excess;
  return std::min(length, kCapacity);
}

void PacketBuffer::write(const unsigned char* data, unsigned int length) {
  if (packet_pending_) remove(packet_size_);
  if (length > space()) length = overflow(length);
  if (length == 0) return;
  if (front_ + size_ + length > sizeof buffer_) {
    std::memmove(buffer_, front(), size_);
    front_ = 0;
  }
  std::memcpy(buffer_ + front_ + size_, data, length);
  size_ += length;
  bytes_written_ += length;
}

}  // namespace Trel::Lib
