#include "rng/Rng_Sync.h"

#include "library/Lib_Cast.h"

namespace Trel::Rng {

namespace {

constexpr unsigned int kTypeAt = 1;
constexpr unsigned int kLengthAt = 2;
constexpr unsigned int kAddressAt = 4;
constexpr unsigned int kProvenanceAt = 8;
constexpr unsigned int kSumSize = 1;

}  // namespace

Lib::PacketStatus PacketForms::status(unsigned int available, const unsigned char* data,
                                      unsigned int& size, Enum::RNG_OUTPUT_PACKET_TYPE& type) {
  size = 0;
  if (available < kHeaderSize) return Lib::kPacketIncomplete;
  if (!starts(data[0])) return Lib::kPacketBad;
  size = cast_2_byte_LE_to_uint16(data + kLengthAt) + kHeaderSize;
  const Lib::PacketStatus result = Lib::check_packet(available, data, size);
  if (result == Lib::kPacketGood) Enum::Set(type, data[kTypeAt]);
  return result;
}

long long PacketState::ncom_serial_fast() const {
  if (!valid() || payload_size() <= kProvenanceAt) return duff_serial_fast();
  const unsigned int address = cast_4_byte_LE_to_uint32(payload_data() + kAddressAt);
  return address != 0 ? address : payload_data()[kProvenanceAt];
}

const unsigned char* PacketState::ncom_range_payload_data() const {
  return payload_data() == nullptr ? nullptr : payload_data() + kHeaderSize;
}

unsigned int PacketState::ncom_range_payload_size() const {
  constexpr unsigned int kAround = kHeaderSize + kSumSize;
  return payload_size() < kAround ? 0 : payload_size() - kAround;
}

}  // namespace Trel::Rng

template class Trel::Lib::PacketSync<Trel::Rng::PacketForms>;
