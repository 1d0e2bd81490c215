// A stopwatch over the system's steady clock.
#pragma once

#include <cstdint>

namespace Trel::Lib {

// A new timer stands at 0. start() may be called again at any time and begins anew.
class Timer {
 public:
  void start();
  // Holds the time passed until the next start().
  void stop();

  // Nanoseconds since start(), or up to stop(); 0 if never started.
  [[nodiscard]] std::int64_t ticks() const;
  [[nodiscard]] double seconds() const { return static_cast<double>(ticks()) * 1e-9; }

 private:
  [[nodiscard]] static std::int64_t system_ticks();

  std::int64_t start_ticks = 0;
  std::int64_t stored_ticks = 0;
  bool stopped = false;
  bool started = false;
};

}  // namespace Trel::Lib
