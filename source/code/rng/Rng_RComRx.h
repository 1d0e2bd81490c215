// The codec of range packets.
//
// A packet carries the milliseconds in a minute, and a slow channel brings the minute now and then,
// so absolute time is known only once that channel has gone by. A first pass, the prescan, learns
// the first time and counts what goes before it; after PrescanRewind() the second pass gives the
// packets ahead of it times counted back from it. A codec made for one pass learns as it goes, and
// packets ahead of the first time stay untimed.
//
// Values are read through CData(). They are the codec's, and change with the next packet. What
// nobody wants is turned off by keys, at a test for each group. Nothing of a packet is kept, and
// nothing allocates after construction. Bad data is no failure: packets of unknown types, or for
// targets that there are not, are passed over, a field without a number is an invalid value, and no
// sum of times can overflow.
#pragma once

#include <optional>

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "rng/Rng_Field.h"
#include "rng/Rng_Prescan.h"
#include "rng/Rng_Scale.h"

namespace Trel::Rng {

class RComCodec : public RComScales {
 public:
  using NanoOff = Rng::NanoOff;
  using Prescan = Rng::Prescan;

  explicit RComCodec(bool prescan) { Invalidate(prescan); }
  RComCodec(const RComCodec&) = delete;
  RComCodec& operator=(const RComCodec&) = delete;

  // Forgets everything; the next packet begins a prescan if `prescan` is set. Keys stay.
  void Invalidate(bool prescan) { InvalidatePrivate(true, prescan); }

  // Each returns 0 if there is no packet, 1 for a packet, whether or not anything could be made of
  // it, and 2 for the packet with which the prescan completed.
  // A framed packet of `size` bytes, header and sum included. A null pointer gives 0.
  int DecodeLite(const unsigned char* data, unsigned int size);
  // `size` bytes: a prefix of 8, then a packet with a good sum, behind which may be more.
  int DecodeSuper(const unsigned char* data, unsigned int size);

  // Goes back to the start of the stream: ends the prescan with what it has learned, and makes all
  // values invalid. With `apply` time and UTC offset then stand as at the first packet, as far as
  // known.
  void PrescanRewind(bool apply);

  [[nodiscard]] const ComData& CData() const { return data_; }
  [[nodiscard]] const DataMain& DMain() const { return data_.DMain(); }
  [[nodiscard]] const DataTarget& DTarget(unsigned int index) const { return data_.DTarget(index); }
  [[nodiscard]] const DataWrap& DWrap(unsigned int index) const { return data_.DWrap(index); }
  [[nodiscard]] ComKey& Key() { return key_; }
  [[nodiscard]] const ComKey& Key() const { return key_; }

  [[nodiscard]] const Prescan& get_prescan() const { return prescan_; }
  [[nodiscard]] const NanoOff& get_nano_off() const { return nano_off_; }
  // The clock: milliseconds of the newest packet that had them, and its minute since GPS time zero;
  // negative while not known.
  [[nodiscard]] int get_last_ms() const { return last_ms_; }
  [[nodiscard]] int get_gps_minute() const { return gps_minute_; }

 private:
  // A packet that is not passed over. The target is 0 for all but range data of its own.
  struct Arrival {
    Packet packet;
    unsigned int type;
    unsigned int target;

    static std::optional<Arrival> of(const Packet& packet);
    // Range and lane data, which carry milliseconds and a slow channel.
    [[nodiscard]] bool timed() const { return type <= 2; }
  };

  void ExtractData(const Arrival& arrival);
  void extract_time(const Arrival& arrival);
  void measure_time(const Arrival& arrival);
  void coast(const Arrival& arrival);
  void set_product();
  void TimingsCompute(bool force);
  void compute_relative_times();
  void reject_relative_times();
  void compute_week();

  void PrescanData(const Arrival& arrival);
  void prescan_time(const Arrival& arrival);
  void prescan_channel(const Arrival& arrival);

  // Takes the milliseconds of a packet, with the turn of the minute that they tell; false if it has
  // none.
  bool advance_clock(const Packet& packet);
  void take_minutes(const Arrival& arrival);
  [[nodiscard]] long long clock_nano() const;
  void set_nano(long long nano);
  void invalidate_nano();

  void InvalidatePrivate(bool all, bool prescan);

  ComData data_;
  ComKey key_;
  NanoOff nano_off_;
  Prescan prescan_;
  int last_ms_ = -1;
  int gps_minute_ = -1;
};

}  // namespace Trel::Rng
