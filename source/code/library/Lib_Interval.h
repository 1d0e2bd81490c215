// Stretches of an ordered quantity, such as time, and sets of them.
#pragma once

#include <cstddef>
#include <vector>

namespace Trel::Lib {

// From `start` to `end`.
template <class T>
struct Interval {
  T start{};
  T end{};

  friend constexpr bool operator==(const Interval&, const Interval&) = default;
};

// Intervals in the order in which they were added, with two flags that are kept and copied along
// and change nothing here.
template <class T>
class IntervalSet {
 public:
  explicit IntervalSet(bool first = false) : first_(first) {}

  [[nodiscard]] bool first() const { return first_; }
  [[nodiscard]] bool second() const { return second_; }

  [[nodiscard]] bool empty() const { return intervals_.empty(); }
  [[nodiscard]] std::size_t size() const { return intervals_.size(); }
  // `index` must be below size().
  [[nodiscard]] const Interval<T>& operator[](std::size_t index) const { return intervals_[index]; }

  void add(const Interval<T>& interval) { intervals_.push_back(interval); }
  void clear() { intervals_.clear(); }

 private:
  std::vector<Interval<T>> intervals_;
  bool first_;
  bool second_ = true;
};

}  // namespace Trel::Lib
