// What tests of the packet builders take packets apart with; it leaves the builders' own helpers
// alone, since these are under test.
#pragma once

#include "support/Support_Bytes.h"

namespace Trel::Support::Test {

// Of the bytes from `from` up to `end`, by the low eight bits.
inline unsigned char sum(const Bytes& bytes, std::size_t from, std::size_t end) {
  unsigned int total = 0;
  for (std::size_t at = from; at < end; ++at) total += bytes[at];
  return static_cast<unsigned char>(total);
}

inline Bytes part(const Bytes& bytes, std::size_t from, std::size_t count) {
  const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(from);
  return Bytes(begin, begin + static_cast<std::ptrdiff_t>(count));
}

}  // namespace Trel::Support::Test
