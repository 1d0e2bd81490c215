#include "sto/Sto_Cache.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "Fakes.h"

namespace Trel::Sto::Test {
namespace {

// A cache whose lock a test can hold.
class OpenCache : public Cache {
 public:
  using Cache::Cache;
  using Cache::mutex_;
};

AspectStore first_int() {
  AspectStore selection;
  selection.push_back(AspectConverter<int>{0, 0, 0, 1, nullptr});
  return selection;
}

void put(Cache& cache, std::size_t place, int number) {
  cache.update(Lib::BlockLock,
               [&](Datum& datum) { datum.array<int>().set(place, number, Lib::Flags(0), 0); });
}

TEST(Cache, knows_its_store) {
  EXPECT_EQ(Cache(7).id(), 7U);
}

TEST(Cache, each_type_grows_on_its_own){
#define TREL_CHECK(suffix, T)                     \
  {                                               \
    Cache cache(0);                               \
    EXPECT_EQ(cache.next_element_##suffix(), 0U); \
    EXPECT_TRUE(cache.add_element_##suffix(1));   \
    EXPECT_EQ(cache.next_element_##suffix(), 1U); \
    EXPECT_TRUE(cache.add_element_##suffix(5));   \
    unsigned int all = 0;                         \
    all += cache.next_element_float();            \
    all += cache.next_element_double();           \
    all += cache.next_element_bool();             \
    all += cache.next_element_int8_t();           \
    all += cache.next_element_int16_t();          \
    all += cache.next_element_int32_t();          \
    all += cache.next_element_int64_t();          \
    all += cache.next_element_uint8_t();          \
    all += cache.next_element_uint16_t();         \
    all += cache.next_element_uint32_t();         \
    all += cache.next_element_uint64_t();         \
    EXPECT_EQ(cache.next_element_##suffix(), 6U); \
    EXPECT_EQ(all, 6U);                           \
  }
    TREL_ELEMENT_TYPES(TREL_CHECK)
#undef TREL_CHECK
}

TEST(Cache, growing_does_not_disturb_earlier_values) {
  Cache cache(0);
  cache.add_element_int32_t(1);
  put(cache, 0, 42);
  cache.add_element_int32_t(3);
  std::vector<Result> out(1);
  cache.fill(first_int(), out, Lib::BlockLock);
  EXPECT_EQ(static_cast<int>(out[0]), 42);
  EXPECT_TRUE(out[0].good());
}

TEST(Cache, a_place_that_was_never_written_is_rejected_and_0) {
  Cache cache(0);
  cache.add_element_int32_t(1);
  std::vector<Result> out(1);
  cache.fill(first_int(), out, Lib::BlockLock);
  EXPECT_EQ(static_cast<int>(out[0]), 0);
  EXPECT_EQ(out[0].get_flags().byte(), 0x80);
}

TEST(Cache, is_written_alone_and_read_together) {
  OpenCache cache(0);
  cache.add_element_int32_t(1);
  cache.update(Lib::BlockLock, [&](Datum&) { EXPECT_FALSE(cache.mutex_.try_lock_shared()); });
  EXPECT_TRUE(cache.mutex_.try_lock_shared());
  std::vector<Result> out(1);
  cache.fill(first_int(), out, Lib::TryLock);  // beside another reader
  EXPECT_EQ(out[0].type(), Enum::BASIC_TYPE_int32_t);
  cache.mutex_.unlock_shared();
}

TEST(Cache, a_reader_that_does_not_wait_copies_nothing_beside_a_writer) {
  OpenCache cache(0);
  cache.add_element_int32_t(1);
  std::vector<Result> out(1);
  cache.mutex_.lock();
  cache.fill(first_int(), out, Lib::TryLock);
  cache.mutex_.unlock();
  EXPECT_EQ(out[0].type(), Enum::BASIC_TYPE_void);
}

TEST(Cache, growing_waits_for_the_readers) {
  OpenCache cache(0);
  cache.mutex_.lock_shared();
  std::atomic<bool> grown = false;
  std::thread writer([&] {
    cache.add_element_int32_t(1);
    grown = true;
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_FALSE(grown);
  cache.mutex_.unlock_shared();
  writer.join();
  EXPECT_EQ(cache.next_element_int32_t(), 1U);
}

}  // namespace
}  // namespace Trel::Sto::Test
