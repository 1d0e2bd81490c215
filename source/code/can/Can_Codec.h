// Decoding the packets of a CAN stream: a time, and the frames that were received at it.
//
// A stream may begin on device time, counted from power-on, and turn to GPS time later. A first
// pass, the prescan, finds the step between the two; decode() ends it at the packet that tells
// enough. After rewind() the second pass decodes values and gives GPS times from the first packet
// on. Frames of unknown identifiers are skipped. Bytes are read inside the packet only: a frame cut
// off by its end reads zeros, a record without its whole header and a packet of fewer than 8 bytes
// are ignored. No time can overflow, sums wrap. decode() allocates nothing.
#pragma once

#include <cstddef>
#include <limits>
#include <span>

#include "can/Can_ComData.h"
#include "can/Can_Dbc.h"

namespace Trel::Can {

// The data bytes that a DLC code of CAN FD stands for; `dlc` is 0 to 15.
[[nodiscard]] unsigned int dlc_to_byte_count(unsigned int dlc);

// The header of one frame record, and its data where they stand in the packet.
class RawCanMessage {
 public:
  static constexpr std::size_t kHeaderSize = 8;

  // `size` is what the packet holds from `bytes` on, at least kHeaderSize.
  RawCanMessage(const unsigned char* bytes, std::size_t size);

  [[nodiscard]] unsigned int get_flags() const { return flags_; }
  [[nodiscard]] unsigned int get_dlc() const { return dlc_; }
  [[nodiscard]] unsigned int get_value() const { return value_; }
  [[nodiscard]] unsigned int get_mid() const { return mid_; }
  // From this record to the next, 16 to 72 bytes; the packet may end within.
  [[nodiscard]] std::size_t get_record_size() const;
  // The packet's next 64 bytes from the data on, zeros past its end.
  void load(Frame& frame) const { frame.load(data_, available_); }

 private:
  unsigned int flags_;
  unsigned int dlc_;
  unsigned int value_;  // 24 bits
  unsigned int mid_;
  const unsigned char* data_;
  std::size_t available_;
};

class Codec {
 public:
  // Marks a time that is not known, and in a packet that there is none.
  static constexpr long long kUnset = std::numeric_limits<long long>::min();
  // The last time that counts from power-on: one tropical year less 1 ns.
  static constexpr long long kThreshold = 31'556'925'999'999'999;

  // GPS times from which the relative time variables count.
  struct NanoOff {
    long long origin = kUnset;
    long long start = kUnset;
    long long first = kUnset;

    void invalidate() { *this = NanoOff(); }
  };

  enum State { kIdle = 0, kPrescanning = 2, kEnded = 3, kConcluded = 4 };

  struct Prescan {
    bool active = false;
    State state = kIdle;
    long long prev = 0;       // the last packet time but one
    long long last = 0;       // the last packet time
    long long first = 0;      // the first packet time
    long long last_rel = 0;   // the last device time ahead of the first GPS time
    long long first_abs = 0;  // the first GPS time
    long long gap = 0;        // between two packets on GPS time
    long long offset = 0;     // from device time to GPS time
    NanoOff nano_off;

    // Begins a prescan with no time known, or lies idle with all times 0.
    void invalidate(bool flag);
  };

  // Reads the database, takes its signals, and begins a prescan if `flag` is set.
  void configure(std::span<const unsigned char> bytes, bool flag);

  // Takes one packet. False once: at the packet that ends the prescan.
  bool decode(const unsigned char* bytes, std::size_t size);

  // Ends the prescan with what it has found, and invalidates all values. If `flag` is set, the time
  // variables then stand at the stream's first time.
  void rewind(bool flag);

  // Forgets all values, and what the prescan has found; begins one anew if `flag` is set.
  void invalidate(bool flag) { invalidate_private(true, flag); }

  [[nodiscard]] std::size_t get_signals_size() const { return dbc_.get_signals().size(); }
  // Null if absent.
  [[nodiscard]] const Signal* get_signal_by_six(std::size_t six) const {
    return dbc_.get_signal_by_six(six);
  }
  [[nodiscard]] const Dbc& get_dbc() const { return dbc_; }
  [[nodiscard]] const Prescan& get_prescan() const { return prescan_; }
  [[nodiscard]] const NanoOff& get_nano_off() const { return nano_off_; }
  [[nodiscard]] const ComData& CData() const { return com_data_; }
  [[nodiscard]] const DataMain& DMain() const { return com_data_.DMain(); }

 private:
  [[nodiscard]] long long time_prediction(long long time) const;
  void decode_prescan(const unsigned char* bytes, std::size_t size);
  void conclude_prescan();
  void decode_regular(const unsigned char* bytes, std::size_t size);
  void timings_compute();
  void invalidate_private(bool with_prescan, bool flag);

  NanoOff nano_off_;
  Prescan prescan_;
  Dbc dbc_;
  ComData com_data_;
};

}  // namespace Trel::Can
