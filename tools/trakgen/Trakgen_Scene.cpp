#include "trakgen/Trakgen_Scene.h"

#include <algorithm>
#include <cmath>

#include "trakgen/Trakgen_Earth.h"
#include "trakgen/Trakgen_Wave.h"

namespace Trel::Trakgen {

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kStartNano = 1'400'000'000 * kSecond;
constexpr int kUptimeAtStart = 42;  // seconds
constexpr double kGravity = 9.80665;
constexpr double kWheelTrack = 1.6;
constexpr double kWheelBase = 2.7;

// Where the loop lies: its middle.
constexpr double kLatitude = 47.2;
constexpr double kLongitude = 11.3;
constexpr double kAltitude = 580;

// A quantity along the road, in rounds, with its first two derivatives.
struct Curve {
  double value = 0;
  double slope = 0;
  double bend = 0;
};

struct Harmonic {
  double amplitude;
  double frequency;
  double phase;
};

template <std::size_t count>
Curve sum(const Harmonic (&harmonics)[count], double rounds) {
  Curve curve;
  for (const Harmonic& one : harmonics) {
    const double angle = one.frequency * rounds + one.phase;
    const double omega = 2 * kPi * one.frequency;
    const double level = one.amplitude * sine(angle);
    curve.value += level;
    curve.slope += one.amplitude * omega * cosine(angle);
    curve.bend -= omega * omega * level;
  }
  return curve;
}

constexpr Harmonic kEast[] = {{480, 1, 0.25}, {70, 2, 0.1}, {18, 3, 0.6}};
constexpr Harmonic kNorth[] = {{360, 1, 0}, {50, 2, 0.35}, {20, 3, 0.2}};
constexpr Harmonic kUp[] = {{18, 1, 0.6}, {6, 3, 0.2}, {1.5, 7, 0.4}};

// Driving comes in cycles: standing, speeding up, cruising, braking.
constexpr double kStand = 6;
constexpr double kSpeedUp = 10;
constexpr double kCruise = 36;
constexpr double kBrake = 8;
constexpr double kCycle = kStand + kSpeedUp + kCruise + kBrake;
constexpr double kCruiseRate = 0.0052;               // rounds per second
constexpr double kVigour[] = {1.0, 0.8, 1.15, 0.9};  // of four cycles in turn

// The path along the road since the start of a cycle of rate 1. Speed follows 3x^2 - 2x^3 on the
// ramps, whose integral over x is x^3 - x^4/2.
Curve ramp(double x) {
  return {x * x * x - x * x * x * x / 2, x * x * (3 - 2 * x), 6 * x * (1 - x)};
}

Curve cycle_progress(double seconds) {
  if (seconds < kStand) return {};
  seconds -= kStand;
  if (seconds < kSpeedUp) {
    const Curve up = ramp(seconds / kSpeedUp);
    return {up.value * kSpeedUp, up.slope, up.bend / kSpeedUp};
  }
  seconds -= kSpeedUp;
  if (seconds < kCruise) return {kSpeedUp / 2 + seconds, 1, 0};
  const Curve left = ramp(std::max(0.0, 1 - (seconds - kCruise) / kBrake));
  return {kSpeedUp / 2 + kCruise + kBrake / 2 - left.value * kBrake, left.slope,
          -left.bend / kBrake};
}

// Rounds driven, rounds per second and rounds per second squared.
Curve progress(double seconds) {
  const double cycle = std::floor(seconds / kCycle);
  const double whole = kSpeedUp / 2 + kCruise + kBrake / 2;
  const double fours = std::floor(cycle / 4);
  const int place = static_cast<int>(cycle - 4 * fours);
  double before = fours * (kVigour[0] + kVigour[1] + kVigour[2] + kVigour[3]);
  for (int i = 0; i < place; ++i) before += kVigour[i];

  const Curve now = cycle_progress(seconds - cycle * kCycle);
  const double rate = kCruiseRate * kVigour[place];
  return {kCruiseRate * before * whole + rate * now.value, rate * now.slope, rate * now.bend};
}

// The sky is hidden for some seconds of each of these periods.
constexpr double kSkyPeriod = 80;
constexpr double kSkyHiddenFrom = 47;
constexpr double kSkyHiddenTo = 56;

double degrees(double turns) {
  return 360 * turns;
}

}  // namespace

Scene::Scene(std::uint64_t seed, std::uint64_t vehicle)
    : seed_(seed * 1009 + vehicle), start_(0.07 * static_cast<double>(vehicle)) {}

std::int64_t Scene::nano_at(std::uint64_t index, std::uint64_t rate) {
  return kStartNano + static_cast<std::int64_t>(index / rate) * kSecond +
         static_cast<std::int64_t>(index % rate) * kSecond / static_cast<std::int64_t>(rate);
}

Sample Scene::at(std::uint64_t index, std::uint64_t rate) const {
  const std::int64_t elapsed = nano_at(index, rate) - kStartNano;
  const auto noisy = [this, elapsed](double value, double deviation, std::uint64_t channel) {
    return value + deviation * noise(seed_, static_cast<std::uint64_t>(elapsed), channel);
  };
  static const DegreeLengths kDegree = degree_lengths(kLatitude, kAltitude);
  const double seconds = static_cast<double>(index) / static_cast<double>(rate);
  const Curve along = progress(seconds);
  const double rounds = start_ + along.value;
  const Curve east = sum(kEast, rounds);
  const Curve north = sum(kNorth, rounds);
  const Curve up = sum(kUp, rounds);

  Sample s;
  s.nano = kStartNano + elapsed;
  s.since_power_on = kUptimeAtStart * kSecond + elapsed;
  const double in_period = seconds - kSkyPeriod * std::floor(seconds / kSkyPeriod);
  s.sky_visible = in_period < kSkyHiddenFrom || in_period >= kSkyHiddenTo;

  const double wander = 0.3 * sine(seconds / 97);
  s.latitude = kLatitude + noisy(north.value + wander, 0.008, 1) / kDegree.latitude;
  s.longitude = kLongitude + noisy(east.value - wander, 0.008, 2) / kDegree.longitude;
  s.altitude = noisy(kAltitude + up.value + 2 * wander, 0.02, 3);
  s.north_accuracy = noisy(0.35, 0.01, 4);
  s.east_accuracy = noisy(0.32, 0.01, 5);

  s.velocity_north = noisy(north.slope * along.slope, 0.01, 6);
  s.velocity_east = noisy(east.slope * along.slope, 0.01, 7);
  s.velocity_down = noisy(-up.slope * along.slope, 0.01, 8);
  const double metres = std::sqrt(east.slope * east.slope + north.slope * north.slope);
  s.speed = metres * along.slope;
  s.distance = 2800 * along.value;

  // The road turns by this many radians per metre, to the right when positive.
  const double curvature =
      (north.slope * east.bend - east.slope * north.bend) / (metres * metres * metres);
  const double turning = curvature * s.speed;
  const double forward =
      (east.slope * east.bend + north.slope * north.bend) / metres * along.slope * along.slope +
      metres * along.bend;
  const double sideways = turning * s.speed;
  const double course = degrees(direction(north.slope, east.slope));
  s.heading = course < 0 ? course + 360 : course;
  s.pitch = noisy(degrees(direction(metres, up.slope)), 0.02, 9);
  s.roll = noisy(-2.5 * sideways / kGravity, 0.02, 10);
  s.rate_x = noisy(0, 0.05, 11);
  s.rate_y = noisy(0, 0.05, 12);
  s.rate_z = noisy(turning * 180 / kPi, 0.05, 13);
  s.acceleration_x = noisy(forward, 0.02, 14);
  s.acceleration_y = noisy(sideways, 0.02, 15);
  s.acceleration_z = noisy(-kGravity, 0.02, 16);

  const double outer = turning * kWheelTrack / 2;
  s.wheel_front_left = 3.6 * (s.speed + outer);
  s.wheel_front_right = 3.6 * (s.speed - outer);
  s.wheel_rear_left = 3.6 * (s.speed + 0.97 * outer);
  s.wheel_rear_right = 3.6 * (s.speed - 0.97 * outer);
  s.steering = 16 * kWheelBase * curvature * 180 / kPi;
  s.throttle = std::clamp(30 * forward + s.speed, 0.0, 100.0);
  s.brake_pressed = forward < -0.5 || s.speed < 0.1 ? 1 : 0;
  s.brake_pressure = s.brake_pressed != 0 ? std::clamp(-12 * forward, 6.0, 100.0) : 0;
  s.gear = s.speed < 0.1 ? 0 : std::min(6.0, 1 + std::floor(s.speed / 4));
  s.engine_speed = noisy(s.gear == 0 ? 780 : 1000 + 9000 * s.speed / (8 + 4 * s.gear) / 2, 8, 17);
  s.coolant_temperature = 88 + 2 * sine(seconds / 300);
  s.fuel_level = std::max(5.0, 64 - seconds / 600);
  const double blink = std::floor(seconds * 1.5) - 2 * std::floor(seconds * 0.75);
  s.indicator_left = curvature < -0.003 ? blink : 0;
  s.indicator_right = curvature > 0.003 ? blink : 0;

  s.satellites = s.sky_visible ? 11 + std::floor(3 * sine(seconds / 41)) : 0;
  s.mode = s.sky_visible ? 4 : 0;
  s.valid = s.sky_visible ? 1 : 0;
  s.dilution = s.sky_visible ? 0.9 + 0.3 * sine(seconds / 53) : 25.5;
  s.supply_voltage = noisy(13.8, 0.03, 18);
  s.uptime = std::floor(seconds) + kUptimeAtStart;
  s.odometer = 48'731'000 + std::floor(s.distance);
  s.cabin_temperature = 21 + std::floor(3 * sine(seconds / 700));
  s.ignition = 1;
  return s;
}

}  // namespace Trel::Trakgen
