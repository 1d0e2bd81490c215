// Framing of range packets, some of which wrap NCom packets.
//
// A packet of the kind RNG_OUTPUT_PACKET_TYPE_NCOM is a wrapper: four bytes of header, an address
// and a provenance, whole NCom packets, and the sum. See Lib_PacketSync.h for how bytes become
// packets, how long a packet lives and what is counted. A size that a packet claims beyond the
// capacity of the synchronisation keeps it incomplete for ever; the reader drops a byte with
// remove() when all space is taken.
#pragma once

#include "enum/Enum.h"
#include "library/Lib_PacketSync.h"

namespace Trel::Rng {

inline constexpr unsigned char kRComSync = 0x57;
// First byte, kind, and two bytes of length, which tells the bytes behind these four.
inline constexpr unsigned int kHeaderSize = 4;

// What a range packet looks like.
struct PacketForms {
  using Type = Enum::RNG_OUTPUT_PACKET_TYPE;
  static constexpr unsigned int kHead = kHeaderSize;

  [[nodiscard]] static constexpr bool starts(unsigned char byte) { return byte == kRComSync; }

  // The verdict on what begins at `data`, of which `available` bytes are there, with the size that
  // it claims (0 when nothing begins there) and, only for a good packet, its kind.
  static Lib::PacketStatus status(unsigned int available, const unsigned char* data,
                                  unsigned int& size, Enum::RNG_OUTPUT_PACKET_TYPE& type);
};

class PacketState : public Lib::PacketState<Enum::RNG_OUTPUT_PACKET_TYPE> {
 public:
  [[nodiscard]] bool rcom_valid() const { return valid() && !is_wrapper(); }
  [[nodiscard]] bool ncom_valid() const { return valid() && is_wrapper(); }

  // The number of the logical stream within a file: of range data, of the NCom stream that a
  // wrapper names, and of neither. A wrapper names its stream by its address or, where that is 0,
  // by its provenance; a packet that is not valid, or too short for both, names none.
  [[nodiscard]] static constexpr long long rcom_serial_fast() { return 0; }
  [[nodiscard]] long long ncom_serial_fast() const;
  [[nodiscard]] static constexpr long long duff_serial_fast() { return -1; }
  // The same for a valid packet, whatever its kind.
  [[nodiscard]] long long rcom_serial() const {
    return valid() ? rcom_serial_fast() : duff_serial_fast();
  }
  [[nodiscard]] long long ncom_serial() const { return ncom_serial_fast(); }
  // The one of this packet by its kind.
  [[nodiscard]] long long serial() const { return ncom_valid() ? ncom_serial() : rcom_serial(); }

  // Range data: the whole packet.
  [[nodiscard]] const unsigned char* rcom_payload_data() const { return payload_data(); }
  [[nodiscard]] unsigned int rcom_payload_size() const { return payload_size(); }
  // What is wrapped: address, provenance and NCom packets.
  [[nodiscard]] const unsigned char* ncom_range_payload_data() const;
  [[nodiscard]] unsigned int ncom_range_payload_size() const;

 private:
  [[nodiscard]] bool is_wrapper() const { return type() == Enum::RNG_OUTPUT_PACKET_TYPE_NCOM; }
};

// The verdict of PacketForms is a question of the synchronisation too.
class SyncState : public Lib::PacketSync<PacketForms>, public PacketForms {};

}  // namespace Trel::Rng

extern template class Trel::Lib::PacketSync<Trel::Rng::PacketForms>;
