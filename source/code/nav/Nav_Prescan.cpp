#include "nav/Nav_Prescan.h"

#include <algorithm>

#include "library/Lib_Report.h"

namespace Trel::Nav {

namespace {

// The whole second in which `start` lies; the period's sign decides about the rounding.
long long whole_second(long long start, long long period) {
  const long long bias = period < 0 ? kNanosPerSecond - 1 : 0;
  return wrap_add(start, bias) / kNanosPerSecond * kNanosPerSecond;
}

}  // namespace

void Prescan::Invalidate(bool prescan) {
  active = prescan;
  state = prescan ? kPrescanning : kUndecided;
  status = Enum::NAVIGATION_STATUS_INVALID;
  packet_type = Enum::NAV_OUTPUT_PACKET_TYPE_INVALID;
  period = kNoPeriod;
  ivalCounter();
  ivalInitCounter();
  offsets.Invalidate();
  start_known = false;
  start_nano = 0;
  milliseconds = -1;
  minutes = -1;
  utc_known = false;
  utc_offset = 0;
  position = velocity = attitude = mounting = Sample();
  features_known = false;
  features.fill(FeatureRecord());
}

void Prescan::incrCounter() {
  TREL_ASSERT(check == 0 || check == 1 || check == 2 || check == 3, "nav/Nav_NComRx");
  check = 3;
  undo_value_ = counter_;
  ++counter_;
}

void Prescan::incrInitCounter() {
  init_undo_value_ = init_counter_;
  ++init_counter_;
}

void Prescan::undoCounter() {
  TREL_ASSERT(check == 3, "nav/Nav_NComRx");
  check = 4;
  counter_ = undo_value_;
  saved_counter_ = counter_;
}

void Prescan::initCounter() {
  check = 2;
  counter_ = saved_counter_;
}

void Prescan::initInitCounter() {
  init_counter_ = init_undo_value_;
}

void Prescan::ivalCounter() {
  check = 1;
  undo_value_ = 0;
  counter_ = 0;
  saved_counter_ = 0;
}

void Prescan::ivalInitCounter() {
  init_undo_value_ = 0;
  init_counter_ = 0;
}

bool Prescan::decrCounter() {
  TREL_ASSERT(check == 2 || check == 4 || check == 5, "nav/Nav_NComRx");
  check = 5;
  return --counter_ == 0;
}

bool Prescan::learn_offsets(NanoOff& off, long long nano, Enum::NAVIGATION_STATUS of) {
  const bool first = off.inv_first2gps();
  if (first) {
    undoCounter();
    off.set_first2gps(nano);
  }
  if (period == kNoPeriod) return first;
  if (off.inv_start2gps()) {
    const long long start = wrap_subtract(off.get_first2gps(), timePrediction());
    off.set_start2gps(start);
    off.set_origin2gps(whole_second(start, period));
  }
  if (off.inv_init2gps() && of >= Enum::NAVIGATION_STATUS_LOCKING) {
    off.set_init2gps(wrap_subtract(nano, timePredictionInit()));
  }
  return first;
}

bool Prescan::complete() const {
  return features_known && utc_known && mounting.known && !offsets.inv_init2gps() && start_known &&
         position.known && velocity.known && attitude.known;
}

void Prescan::setFeatureCode(unsigned int code, const FeatureRecord& record) {
  features[code] = record;
  features_known = std::all_of(feature_list.begin(), feature_list.end(),
                               [this](unsigned short listed) { return features[listed].known; });
}

Enum::NAV_OUTPUT_PACKET_TYPE nav_status_to_output_packet_type(Enum::NAVIGATION_STATUS status) {
  if (status == Enum::NAVIGATION_STATUS_EXTRA) return Enum::NAV_OUTPUT_PACKET_TYPE_EXTRA;
  const bool regular =
      status >= Enum::NAVIGATION_STATUS_RAWIMU && status <= Enum::NAVIGATION_STATUS_LOCKED;
  return regular ? Enum::NAV_OUTPUT_PACKET_TYPE_REGULAR : Enum::NAV_OUTPUT_PACKET_TYPE_EMPTY;
}

}  // namespace Trel::Nav
