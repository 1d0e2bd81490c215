#include "support/Support_Allocations.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <new>

namespace {

std::atomic<unsigned long long> requests{0};

// Null when there is no memory. An alignment of 0 is that of any type.
void* request(std::size_t size, std::size_t alignment) noexcept {
  ++requests;
  if (alignment == 0) return std::malloc(size == 0 ? 1 : size);
  // The size must be a multiple of the alignment.
  return std::aligned_alloc(alignment, (size / alignment + 1) * alignment);
}

void* request_or_throw(std::size_t size, std::size_t alignment) {
  if (void* memory = request(size, alignment)) return memory;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) {
  return request_or_throw(size, 0);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return request(size, 0);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return request_or_throw(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return request(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return request(size, 0);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return operator new(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return request(size, static_cast<std::size_t>(alignment));
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
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
  operator delete(operator new(100, std::nothrow), std::nothrow);
  operator delete[](operator new[](100, std::nothrow), std::nothrow);
  EXPECT_EQ(allocations(), before + 4);
}

TEST(Allocations, are_counted_and_aligned_as_asked) {
  constexpr std::align_val_t kAlignment{256};
  const auto before = allocations();
  void* const memory[] = {
      operator new(100, kAlignment),
      operator new[](100, kAlignment),
      operator new(100, kAlignment, std::nothrow),
      operator new[](100, kAlignment, std::nothrow),
  };
  EXPECT_EQ(allocations(), before + std::size(memory));
  for (void* const place : memory) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(place) % 256, 0U);
  }
  operator delete(memory[0], kAlignment);
  operator delete[](memory[1], kAlignment);
  operator delete(memory[2], kAlignment, std::nothrow);
  operator delete[](memory[3], kAlignment, std::nothrow);
}

}  // namespace
}  // namespace Trel::Support
