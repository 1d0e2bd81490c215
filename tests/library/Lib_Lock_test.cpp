#include "library/Lib_Lock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace Trel::Lib {

// Reaches a state that no test has the time to walk to.
struct SharedMutexStandardPeer {
  static void set_reader_count(SharedMutexStandard& lock, std::uint32_t count) {
    lock.state = count;
  }
  static std::uint32_t state(SharedMutexStandard& lock) {
    const std::lock_guard guard(lock.mutex);
    return lock.state;
  }
  static constexpr std::uint32_t kWriter = SharedMutexStandard::kWriter;
  static constexpr std::uint32_t kReaders = SharedMutexStandard::kReaders;
};

}  // namespace Trel::Lib

namespace {

using namespace Trel::Lib;
using Peer = SharedMutexStandardPeer;

// Waits until a writer has entered `lock` and stands before its readers.
void await_writer(SharedMutexStandard& lock) {
  while ((Peer::state(lock) & Peer::kWriter) == 0) std::this_thread::yield();
}

// Time for other threads to block. No result depends on it, but a wake-up that is missing shows
// only in a thread that sleeps.
void let_others_block() {
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

TEST(SharedMutex, readers_share_it) {
  SharedMutexStandard lock;
  lock.lock_shared();
  std::thread([&lock] {
    lock.lock_shared();
    EXPECT_TRUE(lock.try_lock_shared());
    lock.unlock_shared();
    lock.unlock_shared();
  }).join();
  EXPECT_EQ(Peer::state(lock), 1u);
  lock.unlock_shared();
  EXPECT_EQ(Peer::state(lock), 0u);
}

TEST(SharedMutex, a_reader_does_not_get_in_while_a_writer_holds_it) {
  SharedMutexStandard lock;
  lock.lock();
  bool entered = true;
  std::thread([&] { entered = lock.try_lock_shared(); }).join();
  EXPECT_FALSE(entered);
  lock.unlock();
  EXPECT_TRUE(lock.try_lock_shared());
  lock.unlock_shared();
}

TEST(SharedMutex, a_blocked_reader_gets_in_once_the_writer_is_out) {
  SharedMutexStandard lock;
  int value = 0;
  int seen = 0;
  lock.lock();
  std::thread reader([&] {
    lock.lock_shared();
    seen = value;
    lock.unlock_shared();
  });
  let_others_block();
  value = 1;
  lock.unlock();
  reader.join();
  EXPECT_EQ(seen, 1);
}

TEST(SharedMutex, a_waiting_writer_shuts_out_new_readers_and_goes_first) {
  SharedMutexStandard lock;
  std::mutex order_mutex;
  std::vector<char> order;
  const auto note = [&](char who) {
    const std::lock_guard guard(order_mutex);
    order.push_back(who);
  };

  lock.lock_shared();
  std::thread writer([&] {
    lock.lock();
    note('w');
    lock.unlock();
  });
  await_writer(lock);
  for (int attempt = 0; attempt < 1000; ++attempt) ASSERT_FALSE(lock.try_lock_shared());
  std::thread reader([&] {
    lock.lock_shared();
    note('r');
    lock.unlock_shared();
  });
  note('m');  // the writer cannot be in: this thread still reads
  lock.unlock_shared();
  writer.join();
  reader.join();

  EXPECT_EQ(order, (std::vector<char>{'m', 'w', 'r'}));
}

TEST(SharedMutex, a_writer_waits_for_the_last_reader) {
  SharedMutexStandard lock;
  std::atomic<bool> written = false;
  lock.lock_shared();
  lock.lock_shared();
  std::thread writer([&] {
    lock.lock();
    written = true;
    lock.unlock();
  });
  await_writer(lock);
  lock.unlock_shared();
  EXPECT_EQ(Peer::state(lock), Peer::kWriter | 1u);
  EXPECT_FALSE(written);
  lock.unlock_shared();
  writer.join();
  EXPECT_TRUE(written);
  EXPECT_EQ(Peer::state(lock), 0u);
}

TEST(SharedMutex, every_waiting_thread_gets_in_when_a_writer_leaves) {
  SharedMutexStandard lock;
  std::atomic<int> entered = 0;
  lock.lock();
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([&] {
      const ReadLock guard(lock);
      ++entered;
    });
    threads.emplace_back([&] {
      const WriteLock guard(lock);
      ++entered;
    });
  }
  let_others_block();
  lock.unlock();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(entered, 6);
}

TEST(SharedMutex, writers_exclude_each_other_and_the_readers) {
  constexpr int kRounds = 5000;
  SharedMutexStandard lock;
  int first = 0;
  int second = 0;
  std::atomic<int> torn = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < kRounds; ++round) {
        const WriteLock guard(lock);
        ++first;
        ++second;
      }
    });
    threads.emplace_back([&] {
      for (int round = 0; round < kRounds; ++round) {
        const ReadLock guard(lock);
        if (first != second) ++torn;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(first, 2 * kRounds);
  EXPECT_EQ(second, 2 * kRounds);
  EXPECT_EQ(torn, 0);
}

TEST(SharedMutex, a_full_house_of_readers_admits_no_more_until_one_leaves) {
  SharedMutexStandard lock;
  Peer::set_reader_count(lock, Peer::kReaders - 1);
  EXPECT_TRUE(lock.try_lock_shared());
  EXPECT_EQ(Peer::state(lock), 0x7FFFFFFFu);
  EXPECT_FALSE(lock.try_lock_shared());

  std::thread reader([&] { lock.lock_shared(); });
  let_others_block();
  lock.unlock_shared();
  reader.join();
  EXPECT_EQ(Peer::state(lock), 0x7FFFFFFFu);
  Peer::set_reader_count(lock, 0);
}

// Counts what a guard asks of its mutex.
struct FakeMutex {
  void lock() { ++exclusive; }
  void unlock() { --exclusive; }
  void lock_shared() { ++shared; }
  bool try_lock_shared() {
    ++tries;
    if (!admits) return false;
    ++shared;
    return true;
  }
  void unlock_shared() { --shared; }

  bool admits = true;
  int exclusive = 0;
  int shared = 0;
  int tries = 0;
};

TEST(LockGuards, a_read_lock_holds_the_mutex_shared_until_its_end) {
  FakeMutex mutex;
  {
    const ReadLock guard(mutex);
    EXPECT_TRUE(static_cast<bool>(guard));
    EXPECT_EQ(mutex.shared, 1);
    const ReadLock second(mutex, BlockLock);
    EXPECT_TRUE(static_cast<bool>(second));
    EXPECT_EQ(mutex.shared, 2);
  }
  EXPECT_EQ(mutex.shared, 0);
  EXPECT_EQ(mutex.tries, 0);
  EXPECT_EQ(mutex.exclusive, 0);
}

TEST(LockGuards, a_tried_read_lock_releases_only_what_it_got) {
  FakeMutex mutex;
  {
    const ReadLock guard(mutex, TryLock);
    EXPECT_TRUE(static_cast<bool>(guard));
    EXPECT_EQ(mutex.shared, 1);
  }
  EXPECT_EQ(mutex.shared, 0);
  mutex.admits = false;
  {
    const ReadLock guard(mutex, TryLock);
    EXPECT_FALSE(static_cast<bool>(guard));
  }
  EXPECT_EQ(mutex.shared, 0);
  EXPECT_EQ(mutex.tries, 2);
}

TEST(LockGuards, a_write_lock_holds_the_mutex_alone_until_its_end) {
  FakeMutex mutex;
  {
    const WriteLock guard(mutex);
    EXPECT_TRUE(static_cast<bool>(guard));
    EXPECT_EQ(mutex.exclusive, 1);
  }
  EXPECT_EQ(mutex.exclusive, 0);
  {
    const WriteLock guard(mutex, BlockLock);
    EXPECT_TRUE(static_cast<bool>(guard));
    EXPECT_EQ(mutex.exclusive, 1);
  }
  EXPECT_EQ(mutex.exclusive, 0);
  EXPECT_EQ(mutex.shared, 0);
}

TEST(LockGuards, a_try_fails_on_a_shared_mutex_that_a_writer_holds) {
  SharedMutexStandard mutex;
  const WriteLock writer(mutex);
  const ReadLock reader(mutex, TryLock);
  EXPECT_FALSE(static_cast<bool>(reader));
}

TEST(LockGuards, the_tags_have_types_of_their_own) {
  static_assert(std::is_same_v<decltype(BlockLock), const BlockLock_t>);
  static_assert(std::is_same_v<decltype(TryLock), const TryLock_t>);
  static_assert(std::is_same_v<decltype(DeferLock), const DeferLock_t>);
}

}  // namespace
