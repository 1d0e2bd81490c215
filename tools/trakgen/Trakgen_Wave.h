// Trigonometry and noise that give the same bits on every machine.
//
// Only operations that IEEE 754 rounds exactly are used, so a recording does not depend on the
// mathematics library that it was made with. Angles are turns: 1 is once around.
#pragma once

#include <cmath>
#include <cstdint>

namespace Trel::Trakgen {

inline constexpr double kPi = 3.14159265358979323846;

// The sine, to about 1e-13.
[[nodiscard]] inline double sine(double turns) {
  double x = turns - std::floor(turns + 0.5);
  if (x > 0.25) x = 0.5 - x;
  if (x < -0.25) x = -0.5 - x;
  const double y = 2 * kPi * x;
  const double square = y * y;
  double sum = 1;
  for (int n = 18; n >= 2; n -= 2) sum = 1 - sum * square / (n * (n + 1));
  return y * sum;
}

[[nodiscard]] inline double cosine(double turns) {
  return sine(turns + 0.25);
}

// The direction of (x, y) against the x axis, in turns from -0.5 to 0.5. (0, 0) is not allowed.
[[nodiscard]] inline double direction(double x, double y) {
  const double length = std::sqrt(x * x + y * y);
  const double steep = std::abs(y) > std::abs(x) ? 1 : 0;
  const double ratio = steep != 0 ? std::abs(x / y) : std::abs(y / x);
  double turns = ratio * (0.125 + 0.0435 * (1 - ratio));  // within 0.004 radians
  if (steep != 0) turns = 0.25 - turns;
  if (x < 0) turns = 0.5 - turns;
  if (y < 0) turns = -turns;
  const double error = (y * cosine(turns) - x * sine(turns)) / length;
  return turns + error * (1 + error * error / 6) / (2 * kPi);
}

// Numbers without pattern: the same for the same three.
[[nodiscard]] inline std::uint64_t scramble(std::uint64_t seed, std::uint64_t index,
                                            std::uint64_t channel) {
  std::uint64_t x = seed * 0x9E3779B97F4A7C15 + index * 0xD1B54A32D192ED03 + channel;
  x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9;
  x = (x ^ (x >> 27)) * 0x94D049BB133111EB;
  return x ^ (x >> 31);
}

// Noise of mean 0 and deviation 1, nearly normal: four uniform numbers added.
[[nodiscard]] inline double noise(std::uint64_t seed, std::uint64_t index, std::uint64_t channel) {
  const std::uint64_t bits = scramble(seed, index, channel);
  const std::uint64_t sum =
      (bits & 0xFFFF) + (bits >> 16 & 0xFFFF) + (bits >> 32 & 0xFFFF) + (bits >> 48);
  return (static_cast<double>(sum) / 65536.0 - 2.0) * 1.7320508075688772;
}

}  // namespace Trel::Trakgen
