// Sums of times that come from files: nanoseconds as whole numbers, which wrap where they go beyond
// their range.
#pragma once

namespace Trel::Lib {

// a + b, a - b, a * b, wrapping.
[[nodiscard]] constexpr long long wrap_add(long long a, long long b) {
  return static_cast<long long>(static_cast<unsigned long long>(a) +
                                static_cast<unsigned long long>(b));
}
[[nodiscard]] constexpr long long wrap_subtract(long long a, long long b) {
  return static_cast<long long>(static_cast<unsigned long long>(a) -
                                static_cast<unsigned long long>(b));
}
[[nodiscard]] constexpr long long wrap_multiply(long long a, long long b) {
  return static_cast<long long>(static_cast<unsigned long long>(a) *
                                static_cast<unsigned long long>(b));
}

[[nodiscard]] constexpr double to_seconds(long long nano) {
  return static_cast<double>(nano) / 1e9;
}

}  // namespace Trel::Lib
