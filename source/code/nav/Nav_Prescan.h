// What a first pass over a stream learns ahead of the pass that decodes: the first time and how
// many packets go before it, and one sample of what the stream tells only later.
//
// The counters carry the prediction: of the packets ahead of the first time, and of those up to the
// first initialised solution. They must be called in their order; that is a matter of this code
// alone, no packet can disturb it. Nothing allocates after construction.
#pragma once

#include <array>
#include <vector>

#include "nav/Nav_Clock.h"
#include "nav/Nav_ComData.h"

namespace Trel::Nav {

class Prescan {
 public:
  enum State : unsigned int {
    kUndecided = 0,    // learns as packets come
    kTimed = 1,        // the time base is found
    kPrescanning = 2,  // the first pass is on
    kPredicting = 3,   // packets ahead of the first time get predicted ones
    kPredicted = 4,    // they are over
  };

  // A sample of three numbers, once known.
  struct Sample {
    bool known = false;
    std::array<double, 3> value{};

    // Takes what is known now, unless it knows already.
    void keep(bool found, const std::array<double, 3>& sample) {
      if (known || !found) return;
      known = true;
      value = sample;
    }
  };

  Prescan() : feature_list{1, 27} {}

  // Forgets all, and begins a first pass or not.
  void Invalidate(bool prescan);

  // Counts a packet without a time.
  void incrCounter();
  void incrInitCounter();
  // Takes back the newest packet, which turned out to have a time, and notes the count.
  void undoCounter();
  // Back to the count that was noted.
  void initCounter();
  void initInitCounter();
  // Nothing counted.
  void ivalCounter();
  void ivalInitCounter();
  // One packet less to predict; true when none is left.
  bool decrCounter();

  [[nodiscard]] unsigned long long get_counter() const { return counter_; }

  // How long before the first time the packet at hand was, in nanoseconds; how long before the
  // present one the first was. The period must be known.
  [[nodiscard]] long long timePrediction() const { return times_period(counter_); }
  [[nodiscard]] long long timePredictionInit() const { return times_period(init_counter_); }

  // Takes the time of a packet of this status into `offsets`, as far as they are not known. True at
  // the first time.
  bool learn_offsets(NanoOff& offsets, long long nano, Enum::NAVIGATION_STATUS of);

  // Whether nothing is left to learn.
  [[nodiscard]] bool complete() const;

  // What is known of a licensed feature; `code` must be below ComData::kFeatures. With all of the
  // feature list the features are known.
  void setFeatureCode(unsigned int code, const FeatureRecord& record);

  bool active = false;
  State state = kUndecided;
  Enum::NAVIGATION_STATUS status = Enum::NAVIGATION_STATUS_INVALID;
  Enum::NAV_OUTPUT_PACKET_TYPE packet_type = Enum::NAV_OUTPUT_PACKET_TYPE_INVALID;
  long long period = kNoPeriod;  // between packets

  std::vector<unsigned short> feature_list;
  NanoOff offsets;

  bool start_known = false;
  long long start_nano = 0;
  // The clock at the first time.
  int milliseconds = -1;
  int minutes = -1;

  bool utc_known = false;
  int utc_offset = 0;
  Sample position;  // Lat, Lon, Alt
  Sample velocity;  // Vn, Ve, Vd
  Sample attitude;  // Heading, Pitch, Roll
  Sample mounting;  // Imu2VehHeading, Imu2VehPitch, Imu2VehRoll

  bool features_known = false;
  std::array<FeatureRecord, ComData::kFeatures> features;

 private:
  [[nodiscard]] long long times_period(unsigned long long count) const {
    return wrap_multiply(period, static_cast<long long>(count));
  }

  unsigned long long undo_value_ = 0;
  unsigned long long counter_ = 0;
  unsigned long long saved_counter_ = 0;
  unsigned long long init_undo_value_ = 0;
  unsigned long long init_counter_ = 0;
  unsigned int check = 0;  // which of the counter's calls was the last
};

// What an output packet a status leads to in a first pass: regular, extra or empty.
[[nodiscard]] Enum::NAV_OUTPUT_PACKET_TYPE nav_status_to_output_packet_type(
    Enum::NAVIGATION_STATUS status);

}  // namespace Trel::Nav
