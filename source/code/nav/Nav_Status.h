// The slow channels: nine bytes in each packet, a channel's number and its eight bytes of data,
// which bring what is not needed at full rate.
//
// Nav_Status.def says what each channel holds, one line a field, and a channel is read by going
// through its lines. What a line cannot say is a DecodeExtra function that a CALL line names. A
// channel without a line, or beyond the table, is passed over. A field whose key is off, or whose
// figures are too old, becomes invalid; so does one that is not available. Data, key, clock and
// filters are the codec's and outlive this object. Nothing fails and nothing allocates.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "nav/Nav_Clock.h"
#include "nav/Nav_ComData.h"
#include "nav/Nav_ComKey.h"
#include "nav/Nav_FilterBank.h"
#include "nav/Nav_Form.h"
#include "nav/Nav_Scale.h"
#include "nav/Nav_Trigger.h"

namespace Trel::Nav {

class StatusChannels;

// How a field's number stands in the eight bytes: width, sign, nibble. Fresh is an innovation: bit
// 0 says that bits 1 to 7 are new, and a value that is not new stays.
enum class Raw : unsigned char { U8, I8, U16, I16, U24, U32, I32, Low, High, Fresh };

// What the seventh byte, the age of a channel's figures, must be.
enum class Age : unsigned char {
  Any,
  Fresh,  // below COM_COUNT_TOO_OLD
  Zero,
  Known,  // below COM_STDCNT_MAX
};

// Which number says that there is none, and what becomes of the value then. It is the one with all
// bits set, of a signed field the lowest.
enum class Absent : unsigned char {
  Never,     // no number does
  Clear,     // invalid
  Keep,      // as it was
  Off,       // -1 with the Pass flag, for a setting that is known to be off
  Zero,      // 0
  One,       // 1
  Negative,  // every negative number does: invalid
};

// One line of the table.
struct StatusRow {
  using Wanted = bool (*)(const ComKey&);
  using Call = void (*)(StatusChannels&, const StatusRow&);

  unsigned char channel;
  const char* value;  // the name of the value; of the function for a CALL
  Call call;
  Wanted wanted = nullptr;
  Raw raw = Raw::U8;
  unsigned char at = 0;  // of the eight bytes
  Age age = Age::Any;
  Absent absent = Absent::Never;
  double scale = 1.0;
  unsigned char mask = 0;      // of a bit
  unsigned short below = 256;  // what a byte of bits must be
  void (*set)(ComData&, double) = nullptr;
  void (*invalidate)(ComData&) = nullptr;
  Lib::StampExt& (*stamp)(ComData&) = nullptr;
  Lib::VariableExt<unsigned int>& (*counter)(ComData&) = nullptr;
};

// The lines of all channels, found by number.
class StatusTable {
 public:
  static constexpr unsigned int kChannels = 95;
  static constexpr std::size_t kMostRows = 64;  // of a channel

  // `rows` must be in order of channels, and outlive the table.
  constexpr explicit StatusTable(std::span<const StatusRow> rows) : rows_(rows) {
    std::size_t row = 0;
    for (unsigned int channel = 0; channel <= kChannels; ++channel) {
      while (row < rows.size() && rows[row].channel < channel) ++row;
      first_[channel] = static_cast<unsigned short>(row);
    }
  }

  // Whether the lines were in order, each of a channel of the table, and no channel has more than
  // kMostRows.
  [[nodiscard]] constexpr bool in_order() const {
    for (unsigned int number = 0; number < kChannels; ++number) {
      if (channel(number).size() > kMostRows) return false;
    }
    return first_[kChannels] == rows_.size() &&
           std::is_sorted(rows_.begin(), rows_.end(), [](const StatusRow& a, const StatusRow& b) {
             return a.channel < b.channel;
           });
  }

  // The lines of a channel below kChannels, in their order.
  [[nodiscard]] constexpr std::span<const StatusRow> channel(unsigned int number) const {
    return rows_.subspan(first_[number],
                         static_cast<std::size_t>(first_[number + 1] - first_[number]));
  }

 private:
  std::span<const StatusRow> rows_;
  std::array<unsigned short, kChannels + 1> first_{};
};

// The channels that a first pass reads too, from their eight bytes.
inline constexpr unsigned int kTimeChannel = 0;
inline constexpr unsigned int kMountingChannel = 16;
// From the raw mounting angles to degrees.
inline constexpr double kMountingFactor = ComScales::ALIGN2RAD * kDegreesPerRadian;
// The minutes since GPS time zero, or the offset to UTC; false, with the number as it was, if the
// channel does not tell them.
bool read_minutes(const unsigned char* p, int& minutes);
bool read_utc_offset(const unsigned char* p, int& seconds);

class StatusChannels {
 public:
  StatusChannels(ComData& data, const ComKey& key, PacketClock& clock, FilterBank& filters,
                 const PacketForm& form)
      : data_(data), key_(key), clock_(clock), filters_(filters), form_(form) {
    wake();
  }

  // Takes the channel of one packet: its number, and its eight bytes behind it.
  void DecodeStatusMsg(const unsigned char* message);

  // Forgets which updates have been seen, and everything kept from one visit to the next.
  void Reset();

  // To be called once the key has changed. What nobody wants is made invalid when its channel comes
  // next, and is passed over from then on.
  void NoteKey();

  // Whether an innovation may hold a value: the key of one has been on since Reset().
  [[nodiscard]] bool may_hold_innovations() const { return innovations_; }

  // Whether the newest packet brought a new edge.
  [[nodiscard]] bool is_updated(TriggerGroup group) const {
    return updated_[static_cast<std::size_t>(group)];
  }

  // A line that holds one field, one that holds the low bytes of a counter, one that holds a bit of
  // a byte, and one that holds a bit of an inverted byte.
  void decode_field(const StatusRow& row);
  void decode_counter(const StatusRow& row);
  void decode_flag(const StatusRow& row);
  void decode_feature(const StatusRow& row);

  // The lines that need a function of their own: time and edges,
  void DecodeExtra0(const StatusRow& row);
  void DecodeExtra16(const StatusRow& row);
  void DecodeExtraTrigger(const StatusRow& row);
  // antennas and satellites,
  void DecodeExtra13(const StatusRow& row);
  void DecodeExtra20(const StatusRow& row);
  void DecodeExtra28(const StatusRow& row);
  void DecodeExtra48(const StatusRow& row);
  void DecodeExtra49(const StatusRow& row);
  void DecodeExtra57(const StatusRow& row);
  void DecodeExtra77(const StatusRow& row);
  void DecodeExtraGpsReceived(const ComKey::KeyGps& key, ComDataGps& data);
  void DecodeExtraGpsStatus(const ComKey::KeyGps& key, ComDataGps& data);
  void DecodeExtraMeasutePt(const ComKey::KeyMeasurePt& key, ComDataMeasurePt& data);
  // the unit itself,
  void DecodeExtra19(const StatusRow& row);
  void DecodeExtra23(const StatusRow& row);
  void DecodeExtra30(const StatusRow& row);
  void DecodeExtra31(const StatusRow& row);
  void DecodeExtra58(const StatusRow& row);
  void DecodeExtra59(const StatusRow& row);
  void DecodeExtra75(const StatusRow& row);
  void DecodeExtra85(const StatusRow& row);
  // wheel, frame and filters.
  void DecodeExtra25(const StatusRow& row);
  void DecodeExtra45(const StatusRow& row);
  void DecodeExtra63(const StatusRow& row);
  void DecodeExtra66(const StatusRow& row);
  void DecodeExtra67(const StatusRow& row);
  void DecodeExtra74(const StatusRow& row);
  void DecodeExtra87(const StatusRow& row);

  [[nodiscard]] ComData& data() { return data_; }
  [[nodiscard]] const ComKey& key() const { return key_; }

 private:
  // The last count of the wheel's pulses, if there is one.
  struct WheelSample {
    bool held = false;
    long long nano = 0;
    int count = 0;
  };
  // What has come of the fine form of the local frame, in degrees and metres.
  struct FineFrame {
    std::optional<double> lat;
    std::optional<double> lon;
    std::optional<double> alt;
    std::optional<double> heading;

    [[nodiscard]] bool complete() const { return lat && lon && alt && heading; }
  };

  // Passes over no line.
  void wake();
  [[nodiscard]] bool wants_innovations() const;
  [[nodiscard]] bool is_of_age(Age age) const;

  void UpdateTrig1Tran();
  void UpdateTrig2Tran();

  // Whether the identification of the firmware is known, and sorts behind `text`.
  [[nodiscard]] bool IsDevIDAfter(const char* text) const;
  void set_firmware_date();
  void update_wheel();
  void update_wheel_time();
  long long update_wheel_frequency();
  void update_fine_frame();

  ComData& data_;
  const ComKey& key_;
  PacketClock& clock_;
  FilterBank& filters_;
  const PacketForm& form_;

  const unsigned char* p_ = nullptr;  // the eight bytes, P0 to P7
  std::array<unsigned char, kTriggers.size()> update_counters_{};
  std::array<bool, kTriggerGroups> updated_{};
  // A bit for each line of a channel, the lowest for the first: whether it is not passed over.
  std::array<std::uint64_t, StatusTable::kChannels> awake_{};
  bool innovations_ = false;
  WheelSample wheel_;
  FineFrame fine_frame_;
};

}  // namespace Trel::Nav
