// Decoding the packets of a UCom stream by its signal database.
//
// A packet is a message number (16 bits, little-endian) and the message's data. Time comes from the
// signal named "Nano" alone: the signals behind it in a packet, in ascending order of sid, take the
// new time, those ahead of it the last one. Without such a signal everything stays Timeless.
//
// A first pass, the prescan, looks for the first good time; rewind() starts a regular pass. Packets
// of fewer than 3 bytes and of unknown messages are ignored, and bits beyond the end of a packet
// are 0. Only bytes of the packet are read, and decode() allocates nothing.
#pragma once

#include <cstddef>
#include <limits>
#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "ucom/UCom_ComData.h"
#include "ucom/UCom_Dbu.h"

namespace Trel::UCom {

class Codec {
 public:
  struct Prescan {
    int state = 0;        // 0: prescanning, 1: not prescanning, 2: the start time was found
    long long start = 0;  // the first good Nano, in state 2

    // Begins a prescan, or declares that there is none.
    void invalidate(bool flag) {
      state = flag ? 0 : 1;
      start = flag ? std::numeric_limits<long long>::min() : 0;
    }
  };

  // With `flag` the codec begins in a prescan.
  explicit Codec(bool flag) { invalidate(flag); }

  // Builds the database, gives each signal its variable, and invalidates as invalidate(flag) does.
  // `document` need not outlive the call. Exceptions of the JSON library pass through.
  void configure(const nlohmann::json& document, bool flag);

  // Decodes one packet. False exactly for the packet that ended the prescan.
  bool decode(const unsigned char* bytes, std::size_t size) {
    if (prescan_.state != 0) {
      decode_regular(bytes, size);
      return true;
    }
    decode_prescan(bytes, size);
    return prescan_.state != 2;
  }

  // Invalidates the data for a new pass. A prescan that found nothing is over; after one that found
  // the start, `flag` gives Nano that time, so that the first packets are stamped.
  void rewind(bool flag);
  // Invalidates the data and, with `flag`, begins a new prescan.
  void invalidate(bool flag) { invalidate_private(true, flag); }

  [[nodiscard]] std::size_t get_signals_size() const { return dbu_.get_signals().size(); }
  // Null when `six` is out of range.
  [[nodiscard]] const Signal* get_signal_by_six(six_t six) const {
    return dbu_.get_signal_by_six(six);
  }
  [[nodiscard]] Lib::VariableExt<long long> Nano() const { return com_data_.Nano(); }
  [[nodiscard]] const ComData& CData() const { return com_data_; }
  [[nodiscard]] const Prescan& get_prescan() const { return prescan_; }
  // The time signal; all bits set when there is none.
  [[nodiscard]] sid_t get_nano_sid() const { return nano_sid; }
  [[nodiscard]] six_t get_nano_six() const { return nano_six; }

 private:
  struct Packet {
    const Message* message;     // null: there is nothing to decode
    const unsigned char* data;  // as many bytes as the message reaches
  };

  [[nodiscard]] Packet open(const unsigned char* bytes, std::size_t size);
  [[nodiscard]] const unsigned char* extend(const unsigned char* data, std::size_t size,
                                            std::size_t reach);
  void decode_regular(const unsigned char* bytes, std::size_t size);
  void decode_prescan(const unsigned char* bytes, std::size_t size);
  void invalidate_private(bool prescan, bool flag);

  Prescan prescan_;
  Dbu dbu_;
  ComData com_data_;
  sid_t nano_sid = sid_t_inv;
  six_t nano_six = six_t_inv;
  std::vector<unsigned char> scratch_;  // a packet that ends within its message, and zeros
};

}  // namespace Trel::UCom
