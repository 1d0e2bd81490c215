// What a walk over packets asks the allocator for: nothing, however many packets there are. libogg
// allocates for itself and is not counted.
#include <gtest/gtest.h>

#include "sto/Sto_Store.h"
#include "sto/Stream_recordings.h"
#include "support/Support_Allocations.h"

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

  const auto before = Support::allocations();
  store.direct_decode_step(aspect, (packets + 100) * kMillisecond, values);
  const auto after = Support::allocations();

  EXPECT_EQ(static_cast<unsigned int>(values[1]), packets + 100);
  return after - before;
}

TEST(Allocation, a_step_over_ten_thousand_packets_allocates_nothing) {
  EXPECT_EQ(allocations_over(10000), 0U);
}

}  // namespace
}  // namespace Trel::Sto::Test
