// The store's reader-writer lock and its scoped guards.
//
// Any number of readers share the lock, or one writer has it alone. Writers are preferred: once a
// writer waits, no new reader gets in. The lock is not recursive. A guard refers to its mutex,
// which must outlive it, and releases in its destructor only what it holds.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace Trel::Lib {

class SharedMutexStandard {
 public:
  SharedMutexStandard() = default;
  SharedMutexStandard(const SharedMutexStandard&) = delete;
  SharedMutexStandard& operator=(const SharedMutexStandard&) = delete;

  // For a writer: blocks until every earlier writer and every reader is out.
  void lock();
  void unlock();

  // For a reader: blocks while a writer holds the lock or waits for the readers to leave.
  void lock_shared();
  // Never blocks. False also when another thread is just entering or leaving.
  [[nodiscard]] bool try_lock_shared();
  void unlock_shared();

 private:
  friend struct SharedMutexStandardPeer;  // lets the tests stand at the limit of readers

  static constexpr std::uint32_t kWriter = 0x80000000;
  static constexpr std::uint32_t kReaders = 0x7FFFFFFF;

  [[nodiscard]] bool is_writer_entered() const { return (state & kWriter) != 0; }
  [[nodiscard]] std::uint32_t reader_count() const { return state & kReaders; }
  [[nodiscard]] bool is_open_to_readers() const {
    return !is_writer_entered() && reader_count() < kReaders;
  }

  std::mutex mutex;
  std::condition_variable gate1;  // to enter, for both
  std::condition_variable gate2;  // for the writer that has entered: the readers are out
  std::uint32_t state = 0;        // kWriter and the count of readers
};

// Tags that choose a guard's way of locking.
struct BlockLock_t {};
struct TryLock_t {};
struct DeferLock_t {};
inline constexpr BlockLock_t BlockLock{};
inline constexpr TryLock_t TryLock{};
inline constexpr DeferLock_t DeferLock{};

// Holds a mutex shared, or nothing after a try that failed.
template <class Mutex>
class [[nodiscard]] ReadLock {
 public:
  explicit ReadLock(Mutex& mutex) : mutex_(mutex), holds_(true) { mutex_.lock_shared(); }
  ReadLock(Mutex& mutex, BlockLock_t) : ReadLock(mutex) {}
  ReadLock(Mutex& mutex, TryLock_t) : mutex_(mutex), holds_(mutex.try_lock_shared()) {}
  ~ReadLock() {
    if (holds_) mutex_.unlock_shared();
  }
  ReadLock(const ReadLock&) = delete;
  ReadLock& operator=(const ReadLock&) = delete;

  [[nodiscard]] explicit operator bool() const { return holds_; }

 private:
  Mutex& mutex_;
  bool holds_;
};

// Holds a mutex alone.
template <class Mutex>
class [[nodiscard]] WriteLock {
 public:
  explicit WriteLock(Mutex& mutex) : mutex_(mutex), holds_(true) { mutex_.lock(); }
  WriteLock(Mutex& mutex, BlockLock_t) : WriteLock(mutex) {}
  ~WriteLock() {
    if (holds_) mutex_.unlock();
  }
  WriteLock(const WriteLock&) = delete;
  WriteLock& operator=(const WriteLock&) = delete;

  [[nodiscard]] explicit operator bool() const { return holds_; }

 private:
  Mutex& mutex_;
  bool holds_;
};

}  // namespace Trel::Lib
