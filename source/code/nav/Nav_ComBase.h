// Decoding navigation packets: what the NCom and the MCom codec share, which is all but the little
// that a PacketForm tells and the steps that a codec adds.
//
// A packet carries the milliseconds in a minute, and slow channels bring the rest, so absolute time
// is known only once the right channel has gone by. A first pass, the prescan, learns what comes
// late; after PrescanRewind() the second pass gives right times from the first packet on. A codec
// made for one pass learns as it goes, and packets ahead of the first time stay untimed.
//
// Values are read through CData(). They are the codec's, and change with the next packet. What
// nobody wants is turned off by keys, at a test for each group. The bytes of a packet need not
// outlive the call. Bad data is no failure: a packet that fails its sum changes nothing
// but a counter, a field without a number is an invalid value, and no sum of times can overflow.
#pragma once

#include <array>

#include "nav/Nav_Clock.h"
#include "nav/Nav_ComData.h"
#include "nav/Nav_ComKey.h"
#include "nav/Nav_Derived.h"
#include "nav/Nav_FilterBank.h"
#include "nav/Nav_Form.h"
#include "nav/Nav_Prescan.h"
#include "nav/Nav_Scale.h"
#include "nav/Nav_Status.h"

namespace Trel::Nav {

class ComBase {
 public:
  using NanoOff = Nav::NanoOff;
  using Prescan = Nav::Prescan;

  // A number for the order of packets. It can step on by so little that it stays below the time of
  // a later packet.
  class Index {
   public:
    void reset() { value_ = 1.0; }
    // Sixteen numbers on, of those that a double can tell apart.
    void advance();
    void set(double value) { value_ = value; }
    [[nodiscard]] double get() const { return value_; }

   private:
    double value_ = 1.0;
  };

  ComBase(const ComBase&) = delete;
  ComBase& operator=(const ComBase&) = delete;

  // Forgets everything; the next packet begins a prescan if `prescan` is set.
  void Invalidate(bool prescan) { InvalidatePrivate(true, prescan); }

  // Each returns 0 if nothing was decoded, 1 for a packet, 2 for the packet with which the prescan
  // completed. `check` asks for the packet's sum. A null pointer gives 0.
  // A bare packet, of the size of its form.
  int DecodeBasic(const unsigned char* data, bool check);
  // A packet of `size` bytes behind a prefix of 8, which `size` includes.
  int DecodeSuper(const unsigned char* data, unsigned int size, bool check);

  // Goes back to the start of the stream: ends the prescan with what it has learned, and makes all
  // values invalid. With `apply` the values then stand as at the first packet, as far as known.
  void PrescanRewind(bool apply);

  [[nodiscard]] const ComData& CData() const { return data_; }
  [[nodiscard]] const ComData& DMain() const { return data_; }
  [[nodiscard]] const ComDataGps& DGps(unsigned int index) const { return data_.DGps(index); }
  [[nodiscard]] const ComDataMeasurePt& DMeasurePt(unsigned int index) const {
    return data_.DMeasurePt(index);
  }
  [[nodiscard]] ComKey& Key() { return key_; }
  [[nodiscard]] const ComKey& Key() const { return key_; }
  [[nodiscard]] const ComKey::KeyMain& KMain() const { return key_.KMain(); }
  [[nodiscard]] const ComKey::KeyGps& KGps(unsigned int index) const { return key_.KGps(index); }
  [[nodiscard]] const ComKey::KeyMeasurePt& KMeasurePt(unsigned int index) const {
    return key_.KMeasurePt(index);
  }

  // Whether the newest packet brought a new edge of a trigger or a digital output.
  [[nodiscard]] bool is_updated(TriggerGroup group) const { return status_.is_updated(group); }

  [[nodiscard]] const Prescan& get_prescan() const { return prescan_; }
  [[nodiscard]] const NanoOff& get_nano_off() const { return nano_off_; }
  // Bytes offered, bytes skipped, packets decoded.
  [[nodiscard]] unsigned long long get_bytes() const { return bytes_; }
  [[nodiscard]] unsigned long long get_skipped() const { return skipped_; }
  [[nodiscard]] unsigned long long get_packets() const { return packets_; }

 protected:
  ComBase(const PacketForm& form, bool prescan);
  virtual ~ComBase() = default;

  void count_bytes(unsigned int size) { bytes_ += size; }
  // Whether the bytes are a good packet of this form, or need not be.
  [[nodiscard]] bool passes(const unsigned char* data, unsigned int size, bool check) const {
    return !check || form_.status(size, data) == Lib::kPacketGood;
  }
  // Takes a packet of which `available` bytes are there; what is missing reads as zeros.
  int DecodeInner(const unsigned char* data, unsigned int available);

  // What a family computes between the filtered and the rotated outputs.
  virtual void UpdateTail(Enum::NAVIGATION_STATUS /*status*/) {}

  // The packet being decoded.
  [[nodiscard]] const unsigned char* packet() const { return packet_; }

  const PacketForm& form_;
  ComData data_;
  ComKey key_;
  Prescan prescan_;

 private:
  // Groups of values that last for one packet.
  enum Held : unsigned int {
    kAcc = 1,
    kAngVel = 2,
    kAngAcc = 4,
    kPos = 8,
    kVel = 16,
    kAngPos = 32,
    kWeek = 64,
  };

  // The `available` bytes of a packet, and zeros in place of the others.
  const unsigned char* padded(const unsigned char* data, unsigned int available);
  void number_packet();
  // Takes the packet's time; true if the clock then tells the time.
  bool advance_clock();
  void set_nano(long long nano);

  void UpdateNav();
  void note_key();
  // Takes a packet that is not regular; true for one of a trigger, which goes on like a regular
  // one.
  bool begin_special();
  bool begin_triggered();
  void decode_extra_packet();
  void update_time(Enum::NAVIGATION_STATUS status);
  void measure_time(Enum::NAVIGATION_STATUS status);
  void predict_time();
  void update_motion(Enum::NAVIGATION_STATUS status);
  void update_position(bool approximate);
  void update_velocity(bool approximate);
  void update_attitude(bool approximate);
  void update_jerk();
  void update_ang_acc();
  void update_regular_rate(Enum::NAVIGATION_STATUS status);
  void update_derived(Enum::NAVIGATION_STATUS status, bool triggered);
  void UpdateNavInvalidate();
  void invalidate_held();
  void TimingsCompute();
  void compute_relative_times(bool relative);
  // The channel's number and data.
  [[nodiscard]] const unsigned char* status_msg() const { return packet_ + form_.channel_at; }
  void DecodeStatusMsg() { status_.DecodeStatusMsg(status_msg()); }
  void DecodeFeatureCodes();
  void DecodeProductName();

  void PrescanNav();
  void prescan_time();
  void prescan_samples();
  void PrescanStatusMsg();
  void PrescanFeatureCodes();
  // Gives the values what the prescan has learned.
  void apply_prescan();

  void InvalidatePrivate(bool all, bool prescan);
  void Invalidate();

  const unsigned char* packet_ = nullptr;                              // while it is decoded
  std::array<unsigned char, ComScales::COM_STATUS_MSG_MAX> padded_{};  // a short one, with zeros
  unsigned long long bytes_ = 0;
  unsigned long long skipped_ = 0;
  unsigned long long packets_ = 0;
  unsigned int key_changes_ = 0;
  unsigned int held_ = 0;  // the Held groups that may have a value
  Index index_;

  NanoOff nano_off_;
  PacketClock clock_;
  RegularRate regular_rate_;
  bool relative_ = false;  // whether the relative times may hold values
  FilterBank filters_;
  StatusChannels status_;
  DerivedOutputs derived_;
};

}  // namespace Trel::Nav
