#include "nav/Nav_Filter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Trel::Nav {

namespace {

// Moves a history one place on, with `newest` in front.
template <std::size_t N>
void shift(double (&history)[N], double newest) {
  std::copy_backward(history, history + N - 1, history + N);
  history[0] = newest;
}

}  // namespace

void FilterLPF2ndOrder::Reset() {
  sample_rate_ = cutoff_ = damping_ = -1.0;
  std::fill(std::begin(time_), std::end(time_), -1.0);
  std::fill(std::begin(b_), std::end(b_), 0.0);
  std::fill(std::begin(a_), std::end(a_), 0.0);
  std::fill(std::begin(input_), std::end(input_), 0.0);
  std::fill(std::begin(output_), std::end(output_), 0.0);
  valid_ = false;
}

void FilterLPF2ndOrder::SetCharacteristics(double frequency, double damping) {
  if (!(frequency > 0.0) || !(damping > 0.0)) return;
  if (frequency == cutoff_ && damping == damping_) return;
  cutoff_ = frequency;
  damping_ = damping;
  Initialise();
}

void FilterLPF2ndOrder::NewInput(double time, double value) {
  shift(time_, time);
  shift(input_, value);
  shift(output_, output_[0]);
  if (valid_) {
    output_[0] = b_[0] * input_[0] + b_[1] * input_[1] + b_[2] * input_[2] - a_[1] * output_[1] -
                 a_[2] * output_[2];
  } else {
    Initialise();
  }
}

void FilterLPF2ndOrder::Initialise() {
  const bool timed = time_[0] >= 0.0 && time_[1] >= 0.0 && time_[2] >= 0.0;
  if (!timed || !(cutoff_ > 0.0) || !(damping_ > 0.0)) return;

  valid_ = false;
  const double step1 = time_[0] - time_[1];
  const double step2 = time_[1] - time_[2];
  if (!(step1 > 0.0) || !(step2 > 0.0)) return;
  if (!(std::abs(step1 / step2 - 1.0) < 0.01)) return;
  sample_rate_ = 2.0 / (step1 + step2);
  if (!(cutoff_ / sample_rate_ < 0.5)) return;

  const double k = std::tan(std::numbers::pi * cutoff_ / sample_rate_);
  const double q = 0.5 / damping_;
  const double d = k * k + k / q + 1.0;
  b_[0] = b_[2] = k * k / d;
  b_[1] = 2.0 * k * k / d;
  a_[0] = 1.0;
  a_[1] = 2.0 * (k * k - 1.0) / d;
  a_[2] = (k * k - k / q + 1.0) / d;

  // Before the oldest sample the signal is taken to have stood still at it.
  const double rest = input_[2];
  output_[2] = rest;
  output_[1] = b_[0] * input_[1] + b_[1] * rest + b_[2] * rest - a_[1] * rest - a_[2] * rest;
  output_[0] = b_[0] * input_[0] + b_[1] * input_[1] + b_[2] * input_[2] - a_[1] * output_[1] -
               a_[2] * output_[2];
  valid_ = true;
}

void Differentiator::Reset() {
  std::fill(std::begin(time_), std::end(time_), -1.0);
  std::fill(std::begin(input_), std::end(input_), 0.0);
  std::fill(std::begin(output_), std::end(output_), 0.0);
  valid_ = false;
}

void Differentiator::NewInput(double time, double value) {
  shift(time_, time);
  shift(input_, value);
  shift(output_, output_[0]);
  const double step = time_[0] - time_[1];
  valid_ = time_[0] > 0.0 && time_[1] > 0.0 && step >= 0.0005;
  if (valid_) output_[0] = (input_[0] - input_[1]) / step;
}

void FilterLPFNthOrder::Reset() {
  type_ = Enum::FILTER_TYPE_NONE;
  order_ = 0;
  cutoff_ = -1.0;
  output_ = -1.0;
  stages_.clear();
  zetas_.clear();
  valid_ = false;
}

void FilterLPFNthOrder::SetCharacteristics(Enum::FILTER_TYPE type, unsigned char order,
                                           double frequency) {
  if (!(frequency > 0.0) || order == 0 || order % 2 != 0) return;
  if (type == Enum::FILTER_TYPE_NONE || type == Enum::FILTER_TYPE_UNKNOWN) return;
  if (type == type_ && order == order_ && frequency == cutoff_) return;
  Reset();
  type_ = type;
  order_ = order;
  cutoff_ = frequency;
  ComputeZetas();
  if (zetas_.empty()) return;
  stages_.resize(zetas_.size());
  for (std::size_t stage = 0; stage < stages_.size(); ++stage) {
    stages_[stage].SetCharacteristics(frequency, zetas_[stage]);
  }
}

// The count of the dampings starts at 0, so the first one is negative, and its stage refuses it.
void FilterLPFNthOrder::ComputeZetas() {
  if (type_ != Enum::FILTER_TYPE_BUTTERWORTH || !zetas_.empty()) return;
  for (int k = 0; k < order_ / 2; ++k) {
    zetas_.push_back(-std::cos((order_ + 2 * k - 1) * std::numbers::pi / (2 * order_)));
  }
}

void FilterLPFNthOrder::NewInput(double time, double value) {
  valid_ = false;
  if (stages_.empty()) return;
  for (FilterLPF2ndOrder& stage : stages_) {
    stage.NewInput(time, value);
    if (stage.OutputValid()) value = stage.OutputValue();
  }
  if (!stages_.back().OutputValid()) return;
  output_ = value;
  valid_ = true;
}

void MovingAverager::Reset() {
  interval_ = -1.0;
  step_ = -1.0;
  inputs_.clear();
  count_ = 0;
  sum_ = Sum();
  window_start_ = -1.0;
  newest_time_ = -1.0;
  output_ = 0.0;
  valid_ = false;
}

void MovingAverager::NewInput(double time, double value) {
  if (step_ == -1.0 && !inputs_.empty()) step_ = time - inputs_.front().time;
  if (inputs_.empty() || !(time <= inputs_.back().time)) inputs_.push_back({time, 0, Sum()});
  inputs_.back().sum.add(value);
  ++inputs_.back().count;
  sum_.add(value);
  ++count_;
  newest_time_ = time;
  window_start_ = time - interval_;
  valid_ = false;
  if (interval_ == -1.0 || step_ == -1.0) return;
  if (!(interval_ > 0.0)) {
    output_ = value;
    valid_ = true;
    return;
  }
  const double half_step = 0.5 * step_;
  while (!inputs_.empty() && window_start_ - inputs_.front().time > half_step) remove_oldest();
  if (inputs_.empty() || !(window_start_ - inputs_.front().time <= half_step)) return;
  output_ = sum_.get() / static_cast<double>(count_);
  valid_ = true;
}

void MovingAverager::remove_oldest() {
  sum_.add(-inputs_.front().sum.get());
  count_ -= inputs_.front().count;
  inputs_.pop_front();
  if (!inputs_.empty() && std::isfinite(sum_.get())) return;
  sum_ = Sum();
  for (const AveragerInput& input : inputs_) sum_.add(input.sum.get());
}

void MovingAverager::Sum::add(double value) {
  const double total = total_ + value;
  lost_ +=
      std::abs(total_) >= std::abs(value) ? (total_ - total) + value : (value - total) + total_;
  total_ = total;
}

}  // namespace Trel::Nav
