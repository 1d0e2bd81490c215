#include "library/Lib_Timer.h"

#include <chrono>

namespace Trel::Lib {

void Timer::start() {
  started = true;
  stopped = false;
  start_ticks = system_ticks();
}

void Timer::stop() {
  stored_ticks = ticks();
  stopped = true;
}

std::int64_t Timer::ticks() const {
  if (!started) return 0;
  return stopped ? stored_ticks : system_ticks() - start_ticks;
}

std::int64_t Timer::system_ticks() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

}  // namespace Trel::Lib
