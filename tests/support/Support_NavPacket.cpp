#include "support/Support_NavPacket.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <stdexcept>

namespace Trel::Support {

namespace {

constexpr std::size_t kFirstSumAt = 22;
constexpr std::size_t kSecondSumAt = 61;
constexpr unsigned char kExtraStatus = 11;
constexpr double kHeaveStep = 0.002;

std::int64_t steps(double value, double step) {
  return std::llround(value / step);
}

}  // namespace

template <class P>
NavPacket<P>::NavPacket(unsigned char sync, std::size_t size, std::size_t channel_at)
    : bytes_(size), channel_at_(channel_at) {
  bytes_[0] = sync;
}

template <class P>
P& NavPacket<P>::number(std::size_t offset, std::size_t size, std::uint64_t value) {
  for (std::size_t byte = 0; byte < size; ++byte) {
    bytes_.at(offset + byte) = static_cast<unsigned char>(value >> 8 * byte);
  }
  return self();
}

template <class P>
P& NavPacket<P>::raw24(std::size_t offset, std::int32_t x, std::int32_t y, std::int32_t z) {
  for (const std::int32_t value : {x, y, z}) {
    if (value < kInvalid24 || value > kOver24) throw std::out_of_range("more than 24 bits");
    number(offset, 3, static_cast<std::uint64_t>(value));
    offset += 3;
  }
  return self();
}

template <class P>
P& NavPacket<P>::vector(std::size_t offset, double x, double y, double z, double step) {
  return raw24(offset, static_cast<std::int32_t>(steps(x, step)),
               static_cast<std::int32_t>(steps(y, step)),
               static_cast<std::int32_t>(steps(z, step)));
}

template <class P>
P& NavPacket<P>::position(double latitude, double longitude, float altitude) {
  number(23, 8, std::bit_cast<std::uint64_t>(latitude));
  number(31, 8, std::bit_cast<std::uint64_t>(longitude));
  return number(39, 4, std::bit_cast<std::uint32_t>(altitude));
}

template <class P>
P& NavPacket<P>::channel(unsigned char channel, const ChannelData& data) {
  bytes_.at(channel_at_) = channel;
  return raw(channel_at_ + 1, Bytes(data.begin(), data.end()));
}

template <class P>
P& NavPacket<P>::raw(std::size_t offset, const Bytes& bytes) {
  for (const unsigned char byte : bytes) bytes_.at(offset++) = byte;
  return self();
}

template <class P>
P& NavPacket<P>::extra(unsigned char kind) {
  extra_ = kind;
  return status(kExtraStatus);
}

template <class P>
P& NavPacket<P>::bad_sum() {
  bad_sum_ = true;
  return self();
}

template <class P>
Bytes NavPacket<P>::bytes() const {
  Bytes packet = bytes_;
  packet[kFirstSumAt] = extra_ ? *extra_ : packet_sum(packet, kFirstSumAt);
  packet[kSecondSumAt] = packet_sum(packet, kSecondSumAt);
  packet.back() = packet_sum(packet, packet.size() - 1);
  if (bad_sum_) ++packet.back();
  return packet;
}

template class NavPacket<NComPacket>;
template class NavPacket<MComPacket>;

MComPacket& MComPacket::heave(double value) {
  return number(62, 2, static_cast<std::uint64_t>(steps(value, kHeaveStep)));
}

MComPacket& MComPacket::long_period_heave(double value) {
  return number(64, 2, static_cast<std::uint64_t>(steps(value, kHeaveStep)));
}

MComPacket& MComPacket::raw_heave(std::int16_t heave, std::int16_t long_period_heave) {
  number(62, 2, static_cast<std::uint64_t>(heave));
  return number(64, 2, static_cast<std::uint64_t>(long_period_heave));
}

}  // namespace Trel::Support
