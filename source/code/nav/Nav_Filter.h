// The small filters through which the navigation codecs pass one axis of a signal, sample by
// sample, in order of time.
//
// Times are in seconds. A filter is fed with NewInput() and asked OutputValid() before its
// OutputValue() means anything; until then, and whenever a sample does not suit it, it is not
// valid. Reset() forgets samples and settings. Nothing fails, and only the moving average allocates
// for a sample.
#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include "enum/Enum.h"

namespace Trel::Nav {

// Low-pass filter of second order. It becomes valid with three samples at an even rate, and from
// then on takes every sample as one step of that rate.
class FilterLPF2ndOrder {
 public:
  FilterLPF2ndOrder() { Reset(); }

  // Also forgets the characteristics, which must be given again.
  void Reset();
  // Cut-off in hertz and damping, both above 0; anything else changes nothing. New characteristics
  // start the filter anew from the samples that it holds.
  void SetCharacteristics(double frequency, double damping);
  void NewInput(double time, double value);
  [[nodiscard]] bool OutputValid() const { return valid_; }
  [[nodiscard]] double OutputValue() const { return output_[0]; }

 private:
  void Initialise();

  double sample_rate_;
  double cutoff_;
  double damping_;
  double b_[3];  // numerator
  double a_[3];  // denominator
  // Newest first.
  double time_[3];
  double input_[3];
  double output_[3];
  bool valid_;
};

// The rate of change between one sample and the next, valid when they are at least half a
// millisecond apart and both later than time 0.
class Differentiator {
 public:
  Differentiator() { Reset(); }

  void Reset();
  void NewInput(double time, double value);
  [[nodiscard]] bool OutputValid() const { return valid_; }
  [[nodiscard]] double OutputValue() const { return output_[0]; }

 private:
  // Newest first.
  double time_[2];
  double input_[2];
  double output_[2];
  bool valid_;
};

// Low-pass filter of a higher, even order: a row of filters of second order. The first one gets a
// negative damping, which it refuses, so it is passed over, and a filter of order 2 is never valid.
class FilterLPFNthOrder {
 public:
  FilterLPFNthOrder() { Reset(); }

  void Reset();
  // The frequency, in hertz, must be above 0, the order even and not 0, the type a filter's;
  // anything else, and what is set already, changes nothing. Otherwise the filter starts anew.
  void SetCharacteristics(Enum::FILTER_TYPE type, unsigned char order, double frequency);
  void NewInput(double time, double value);
  [[nodiscard]] bool OutputValid() const { return valid_; }
  [[nodiscard]] double OutputValue() const { return output_; }

 private:
  void ComputeZetas();

  Enum::FILTER_TYPE type_;
  unsigned char order_;
  double cutoff_;
  std::vector<FilterLPF2ndOrder> stages_;
  std::vector<double> zetas_;
  double output_;
  bool valid_;
};

// The mean of the samples in a window that ends with the newest one. While the window has no length
// it keeps every sample that it is given.
class MovingAverager {
 public:
  MovingAverager() { Reset(); }

  void Reset();
  // The length of the window in seconds; 0 or less passes samples through, -1 gives no output.
  void SetTimeInterval(double seconds) { interval_ = seconds; }
  void NewInput(double time, double value);
  [[nodiscard]] bool OutputValid() const { return valid_; }
  [[nodiscard]] double OutputValue() const { return output_; }

 private:
  friend struct MovingAveragerPeer;  // lets the tests see what is kept

  // A sum that values come to and go from, with what rounding has cost it.
  class Sum {
   public:
    void add(double value);
    // Without the correction when that was lost to an infinity.
    [[nodiscard]] double get() const { return lost_ == lost_ ? total_ + lost_ : total_; }

   private:
    double total_ = 0.0;
    double lost_ = 0.0;
  };

  // A sample, and those behind it whose times do not pass its own: all leave the window with it, so
  // that a clock that stands still fills no memory.
  struct AveragerInput {
    double time;
    std::size_t count;
    Sum sum;
  };

  void remove_oldest();

  double interval_;
  double step_;
  std::deque<AveragerInput> inputs_;
  std::size_t count_;
  Sum sum_;
  double window_start_;
  double newest_time_;
  double output_;
  bool valid_;
};

}  // namespace Trel::Nav
