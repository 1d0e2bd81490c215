#include "support/Support_RangePacket.h"

#include <algorithm>
#include <stdexcept>

namespace Trel::Support {

namespace {

constexpr unsigned char kWrapper = 3;
constexpr std::size_t kHeader = 4;

std::size_t usual_size(unsigned char type) {
  switch (type) {
    case 0:
      return kObsoleteRangeBytes;
    case 1:
      return kLaneBytes;
    case 2:
      return kRangeBytes;
    case 4:
      return kTriggerBytes;
    default:
      return kHeader;
  }
}

std::size_t channel_at(unsigned char type) {
  constexpr std::size_t kAt[] = {37, 49, 41};
  if (type >= std::size(kAt)) throw std::out_of_range("a packet without a channel");
  return kAt[type];
}

}  // namespace

RangePacket::RangePacket(unsigned char type) : bytes_(usual_size(type)) {
  bytes_[0] = 0x57;
  bytes_[1] = type;
}

RangePacket& RangePacket::channel(unsigned char number, const Bytes& data) {
  Bytes field = data;
  field.resize(std::max<std::size_t>(8, data.size()));
  if (field.size() > 8) throw std::out_of_range("more than a channel holds");
  const std::size_t at = channel_at(bytes_[1]);
  return u8(at, number).raw(at + 1, field);
}

RangePacket& RangePacket::raw(std::size_t offset, const Bytes& bytes) {
  for (const unsigned char byte : bytes) bytes_.at(offset++) = byte;
  return *this;
}

RangePacket& RangePacket::resize(std::size_t size) {
  bytes_.resize(std::max(size, kHeader));
  return *this;
}

RangePacket& RangePacket::append(const Bytes& bytes) {
  bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  return *this;
}

RangePacket& RangePacket::bad_sum() {
  bad_sum_ = true;
  return *this;
}

Bytes RangePacket::bytes() const {
  Bytes packet = bytes_;
  const std::size_t length = packet.size() + 1 - kHeader;  // with the sum
  if (length > 0xFFFF) throw std::length_error("longer than a range packet can be");
  packet[2] = static_cast<unsigned char>(length);
  packet[3] = static_cast<unsigned char>(length >> 8);
  packet.push_back(packet_sum(packet, packet.size()));
  if (bad_sum_) ++packet.back();
  return packet;
}

RangePacket& RangePacket::number(std::size_t offset, std::size_t size, std::uint64_t value) {
  return raw(offset, little(static_cast<std::int64_t>(value), size));
}

Bytes little(std::int64_t value, std::size_t size) {
  Bytes bytes(size);
  for (std::size_t byte = 0; byte < size; ++byte) {
    bytes[byte] = static_cast<unsigned char>(static_cast<std::uint64_t>(value) >> 8 * byte);
  }
  return bytes;
}

Bytes range_file_packet(unsigned char kind, const Bytes& body) {
  return RangePacket(kind).resize(kHeader).append(body).bytes();
}

Bytes range_packet(std::uint32_t address, unsigned char provenance,
                   std::initializer_list<Bytes> packets) {
  return range_file_packet(kWrapper, join({little(address, 4), {provenance}, join(packets)}));
}

}  // namespace Trel::Support
