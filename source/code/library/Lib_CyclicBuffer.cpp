#include "library/Lib_CyclicBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "library/Lib_Report.h"

namespace Trel::Lib {

namespace {
constexpr std::size_t kMaxBits = 30;

void copy(void* target, const void* source, std::size_t length) {
  if (length != 0) std::memcpy(target, source, length);
}
}  // namespace

// calloc leaves the zero pages of a large ring unmapped until they are used.
CyclicBuffer::CyclicBuffer(std::size_t bits)
    : buffer(nullptr), capacity(std::size_t{1} << std::min(bits, kMaxBits)), mask(capacity - 1) {
  buffer = static_cast<unsigned char*>(std::calloc(capacity, 1));
  TREL_ASSERT(buffer != NULL, "library/Lib_CyclicBuffer");
}

CyclicBuffer::~CyclicBuffer() {
  TREL_ASSERT(buffer != NULL, "library/Lib_CyclicBuffer");
  std::free(buffer);
}

std::size_t CyclicBuffer::push(const void* src, std::size_t len) {
  if (write - read == capacity) return 0;
  const auto* bytes = static_cast<const unsigned char*>(src);
  std::size_t total = 0;
  std::size_t write_index = write & mask;
  const std::size_t read_index = read & mask;

  if (read_index <= write_index) {
    total = std::min(len, capacity - write_index);
    copy(buffer + write_index, bytes, total);
    write += total;
    write_index = write & mask;
  }
  if (write_index < read_index) {
    const std::size_t count = std::min(len - total, read_index - write_index);
    copy(buffer + write_index, bytes + total, count);
    write += count;
    total += count;
  }
  return total;
}

std::size_t CyclicBuffer::pull(void* target, std::size_t len) {
  auto* bytes = static_cast<unsigned char*>(target);
  const std::size_t total = std::min(len, size());
  const std::size_t read_index = read & mask;
  const std::size_t before_end = std::min(total, capacity - read_index);
  copy(bytes, buffer + read_index, before_end);
  copy(bytes + before_end, buffer, total - before_end);
  read += total;
  return total;
}

}  // namespace Trel::Lib
