// What a walk over packets asks the allocator for: nothing, however many packets there are. libogg
// allocates for itself and is not counted.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "sto/Sto_Store.h"
#include "sto/Stream_recordings.h"

namespace {

unsigned long long allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size != 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace Trel::Sto::Test {
namespace {

constexpr long long kMillisecond = 1000000;

// Allocations of one step over `packets` packets of a recording, after a step that warmed up.
unsigned long long allocations_over(unsigned int packets) {
  Recording recording;
  auto& stream = recording.stream(kSerial).ucom(database()).bytes_per_page(4096);
  for (unsigned int n = 0; n <= packets + 100; ++n) stream.packet(sample(n * kMillisecond, n));
  const ScratchFile file(recording.bytes());
  DataStore store(Options(16, 1000000000, 0, 0.1, 1048576, 10));
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  store.add_resource(file.path(), ids, count);
  Aspect aspect;
  for (const char* name : {"Nano", "Count", "Copy"}) {
    store.direct_add_element(0, name);
    store.direct_use_element(aspect, 0, name);
  }
  std::vector<Result> values;
  store.direct_decode_begin(0);
  store.direct_decode_step(aspect, 100 * kMillisecond, values);

  const unsigned long long before = allocations;
  store.direct_decode_step(aspect, (packets + 100) * kMillisecond, values);
  const unsigned long long after = allocations;

  EXPECT_EQ(static_cast<unsigned int>(values[1]), packets + 100);
  return after - before;
}

TEST(Allocation, the_counter_counts) {
  const unsigned long long before = allocations;
  ::operator delete(::operator new(1));
  EXPECT_EQ(allocations, before + 1);
}

TEST(Allocation, a_step_over_ten_thousand_packets_allocates_nothing) {
  EXPECT_EQ(allocations_over(10000), 0U);
}

}  // namespace
}  // namespace Trel::Sto::Test
