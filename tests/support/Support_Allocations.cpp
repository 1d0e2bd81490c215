#include "support/Support_Allocations.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {
std::atomic<unsigned long long> requests{0};
}

void* operator new(std::size_t size) {
  ++requests;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace Trel::Support {

unsigned long long allocations() {
  return requests.load();
}

namespace {

TEST(Allocations, are_counted) {
  const auto before = allocations();
  // Called by their names, they are not optimised away.
  operator delete(operator new(100));
  operator delete[](operator new[](100));
  EXPECT_EQ(allocations(), before + 2);
}

}  // namespace
}  // namespace Trel::Support
