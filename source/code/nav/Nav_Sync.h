// Framing of NCom and MCom packets, which may alternate in one stream.
//
// The first byte alone tells the two apart. See Lib_PacketSync.h for how bytes become packets, how
// long a packet lives and what is counted.
#pragma once

#include "enum/Enum.h"
#include "library/Lib_PacketSync.h"

namespace Trel::Nav {

inline constexpr unsigned char kNComSync = 0xE7;
inline constexpr unsigned int kNComSize = 72;
inline constexpr unsigned char kMComSync = 0xE8;
inline constexpr unsigned int kMComSize = 84;

// What the two look like.
struct PacketForms {
  using Type = Enum::CODEC_TYPE;
  static constexpr unsigned int kHead = 1;

  [[nodiscard]] static constexpr bool starts(unsigned char byte) {
    return byte == kNComSync || byte == kMComSync;
  }

  // The verdict on what begins at `data`, of which `available` bytes are there, with its size (0
  // when nothing begins there) and, when something does, its kind.
  static Lib::PacketStatus status(unsigned int available, const unsigned char* data,
                                  unsigned int& size, Enum::CODEC_TYPE& type);
  // The same for one kind alone.
  [[nodiscard]] static Lib::PacketStatus status_ncom(unsigned int available,
                                                     const unsigned char* data);
  [[nodiscard]] static Lib::PacketStatus status_mcom(unsigned int available,
                                                     const unsigned char* data);
};

class PacketState : public Lib::PacketState<Enum::CODEC_TYPE> {
 public:
  [[nodiscard]] bool mcom_valid() const { return valid() && type() == Enum::CODEC_TYPE_MCOM; }
  [[nodiscard]] bool ncom_valid() const { return valid() && type() == Enum::CODEC_TYPE_NCOM; }

  // The number of the logical stream within a file: of MCom, of NCom, and of neither.
  [[nodiscard]] static constexpr int mcom_serial_fast() { return 1; }
  [[nodiscard]] static constexpr int ncom_serial_fast() { return 0; }
  [[nodiscard]] static constexpr int duff_serial_fast() { return -1; }
  // The one of this packet.
  [[nodiscard]] int serial() const {
    if (mcom_valid()) return mcom_serial_fast();
    return ncom_valid() ? ncom_serial_fast() : duff_serial_fast();
  }
};

// The verdicts of PacketForms are questions of the synchronisation too.
class SyncState : public Lib::PacketSync<PacketForms>, public PacketForms {};

}  // namespace Trel::Nav

extern template class Trel::Lib::PacketSync<Trel::Nav::PacketForms>;
