// A ring of bytes for one writer and one reader.
//
// The ring owns its memory and never grows. What does not fit is not taken, and the caller hears
// how much was. It takes no lock: its owner lets one thread in at a time. Without memory the
// program stops.
#pragma once

#include <cstddef>

namespace Trel::Lib {

class CyclicBuffer {
 public:
  // A ring of 2 to the power `bits` bytes, all 0; a power above 30 (a negative one arrives as such)
  // means 30.
  explicit CyclicBuffer(std::size_t bits);
  ~CyclicBuffer();
  CyclicBuffer(const CyclicBuffer&) = delete;
  CyclicBuffer& operator=(const CyclicBuffer&) = delete;

  // Bytes that push() will take.
  [[nodiscard]] std::size_t space() const { return capacity + read - write; }
  // Bytes that pull() will give.
  [[nodiscard]] std::size_t size() const { return write - read; }

  // Appends bytes of `src` while there is space and returns how many it took.
  std::size_t push(const void* src, std::size_t len);
  // Moves the oldest bytes to `target`, at most `len`, and returns how many.
  std::size_t pull(void* target, std::size_t len);

 protected:
  unsigned char* buffer;
  std::size_t capacity;
  std::size_t mask;
  std::size_t write = 0;  // bytes ever written; its place in `buffer` is write & mask
  std::size_t read = 0;   // bytes ever read, likewise
};

}  // namespace Trel::Lib
