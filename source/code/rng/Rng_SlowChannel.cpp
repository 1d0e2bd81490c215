#include "rng/Rng_SlowChannel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <span>

#include "library/Lib_Cast.h"
#include "library/Lib_DigitDate.h"
#include "rng/Rng_Field.h"
#include "rng/Rng_Scale.h"
#include "rng/Rng_Source.h"

namespace Trel::Rng {

namespace {

// One channel on its way into the record.
struct Visit {
  unsigned int target;
  const unsigned char* data;
  const ComKey& key;
  ComData& record;

  [[nodiscard]] const ComKey::KeyMain& KMain() const { return key.KMain(); }
  [[nodiscard]] const ComKey::KeyTarget& KTarget() const { return key.KTarget(target); }
  [[nodiscard]] DataMain& DMain() const { return record.DMain(); }
  [[nodiscard]] DataTarget& DTarget() const { return record.DTarget(target); }
  [[nodiscard]] const Lib::StampExt& nano() const { return record.DMain().Var_Nano(); }

  template <Raw R>
  [[nodiscard]] Reading read(unsigned int at) const {
    return read_field<R>(data + at);
  }

  template <class T>
  void number(bool wanted, const Reading& reading, double scale, Lib::VariableExt<T>& value) const {
    if (!wanted) return value.reject();
    store(reading, scale, value, nano());
  }

  void real(bool wanted, unsigned int at, Lib::VariableExt<double>& value) const {
    if (!wanted) return value.reject();
    const double number = cast_4_byte_LE_to_real32(data + at);
    if (!std::isfinite(number)) return value.invalidate();
    value.set(number, nano());
  }

  template <class E>
  void member(bool wanted, unsigned int at,
              Lib::VariableExt<typename Enum::Traits<E>::Number>& value) const {
    if (!wanted) return value.reject();
    value.set(Enum::Cast<E>(data[at]), nano());
  }

  void counter(bool wanted, unsigned int at, Lib::VariableExt<unsigned int>& value) const {
    if (!wanted) return value.reject();
    value.set(incr_2_byte_LE_to_uint32(data + at, value.get()), nano());
  }

  // The firmware's identification, which begins with its date.
  void decode_firmware() const;
  // Where the hunter's and the target's navigation packets come from.
  void decode_sources() const;
};

void Visit::decode_firmware() const {
  DataMain& main = DMain();
  if (!KMain().Get_System_Id()) {
    main.Rej_DevID();
    main.Rej_NanoFirmware();
    main.Rej_DateFirmware();
    return;
  }
  main.Set_DevID(cast_8_byte_LE_to_uint64(data));
  std::array<char, 8> text{};
  std::copy_n(data, text.size(), text.begin());
  if (const auto date = Lib::date_of_digits(text.data())) {
    main.Set_NanoFirmware(date->to_gps_nanos(false));
    main.Set_DateFirmware(date->to_deci_date());
  } else {
    main.Inv_NanoFirmware();
    main.Inv_DateFirmware();
  }
}

void Visit::decode_sources() const {
  if (KMain().Get_Hunter_General_Source()) {
    set_hunter_source(cast_4_byte_LE_to_uint32(data), record);
  } else {
    reject_hunter_source(record);
  }
  if (KTarget().Get_General_Source()) {
    set_target_source(cast_4_byte_LE_to_uint32(data + 4), target, record);
  } else {
    reject_target_source(target, record);
  }
}

// One line of a table.
struct ChannelRow {
  unsigned char channel;
  void (*decode)(const Visit&);
};

// The lines of all channels, found by number.
class ChannelTable {
 public:
  static constexpr unsigned int kChannels = 23;

  constexpr explicit ChannelTable(std::span<const ChannelRow> rows) : rows_(rows) {
    std::size_t row = 0;
    for (unsigned int channel = 0; channel <= kChannels; ++channel) {
      while (row < rows.size() && rows[row].channel < channel) ++row;
      first_[channel] = row;
    }
  }

  // Whether the lines were in order, each of a channel of the table.
  [[nodiscard]] constexpr bool in_order() const {
    return first_[kChannels] == rows_.size() &&
           std::is_sorted(rows_.begin(), rows_.end(), [](const ChannelRow& a, const ChannelRow& b) {
             return a.channel < b.channel;
           });
  }

  void decode(unsigned char channel, const Visit& visit) const {
    if (channel >= kChannels) return;
    const std::size_t first = first_[channel];
    for (const ChannelRow& row : rows_.subspan(first, first_[channel + 1U] - first)) {
      row.decode(visit);
    }
  }

 private:
  std::span<const ChannelRow> rows_;
  std::array<std::size_t, kChannels + 1> first_{};
};

struct Rows : RComScales {
  static constexpr ChannelRow kRange[] = {
#include "rng/Rng_RangeChannel.def"
  };
  static constexpr ChannelRow kLane[] = {
#include "rng/Rng_LaneChannel.def"
  };
};

constexpr ChannelTable kRangeChannels(Rows::kRange);
constexpr ChannelTable kLaneChannels(Rows::kLane);
static_assert(kRangeChannels.in_order() && kLaneChannels.in_order());

}  // namespace

int read_minutes(const unsigned char* data) {
  const int minutes = cast_4_byte_LE_to_int32(data);
  return minutes == std::numeric_limits<int>::min() ? -1 : minutes;
}

bool read_utc_offset(const unsigned char* data, int& seconds) {
  const Reading reading = read_field<Raw::I16>(data);
  if (reading.known()) seconds = static_cast<int>(reading.number);
  return reading.known();
}

void ExtractRangeChannel(unsigned int target, unsigned char channel, const unsigned char* data,
                         const ComKey& key, ComData& record) {
  kRangeChannels.decode(channel, {target, data, key, record});
}

void ExtractLaneChannel(unsigned char channel, const unsigned char* data, const ComKey& key,
                        ComData& record) {
  kLaneChannels.decode(channel, {0, data, key, record});
}

}  // namespace Trel::Rng
