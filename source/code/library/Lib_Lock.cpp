#include "library/Lib_Lock.h"

namespace Trel::Lib {

void SharedMutexStandard::lock() {
  std::unique_lock guard(mutex);
  gate1.wait(guard, [this] { return !is_writer_entered(); });
  state |= kWriter;
  gate2.wait(guard, [this] { return reader_count() == 0; });
}

void SharedMutexStandard::unlock() {
  {
    const std::lock_guard guard(mutex);
    state = 0;
  }
  gate1.notify_all();
}

void SharedMutexStandard::lock_shared() {
  std::unique_lock guard(mutex);
  gate1.wait(guard, [this] { return is_open_to_readers(); });
  ++state;
}

bool SharedMutexStandard::try_lock_shared() {
  const std::unique_lock guard(mutex, std::try_to_lock);
  if (!guard.owns_lock() || !is_open_to_readers()) return false;
  ++state;
  return true;
}

void SharedMutexStandard::unlock_shared() {
  const std::lock_guard guard(mutex);
  --state;
  if (is_writer_entered()) {
    if (reader_count() == 0) gate2.notify_one();
  } else if (reader_count() == kReaders - 1) {
    gate1.notify_one();
  }
}

}  // namespace Trel::Lib
