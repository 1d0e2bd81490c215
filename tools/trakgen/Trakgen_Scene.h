// A vehicle on a loop of road, as a function of time.
//
// The road has bends and hills; the vehicle stands, speeds up, cruises and brakes in turn, round
// after round, and its satellite receiver loses sight of the sky now and then. Everything follows
// from the time alone, so any moment can be asked for in any order.
#pragma once

#include <cstdint>

namespace Trel::Trakgen {

// All that the vehicle's instruments read at one moment. Lengths in metres, angles in degrees.
struct Sample {
  std::int64_t nano = 0;            // GPS time, nanoseconds
  std::int64_t since_power_on = 0;  // nanoseconds
  bool sky_visible = true;          // satellite positions are measured

  double latitude = 0, longitude = 0, altitude = 0, north_accuracy = 0, east_accuracy = 0;
  double velocity_north = 0, velocity_east = 0, velocity_down = 0, speed = 0, distance = 0;
  double heading = 0, pitch = 0, roll = 0;
  double rate_x = 0, rate_y = 0, rate_z = 0;                          // degrees per second
  double acceleration_x = 0, acceleration_y = 0, acceleration_z = 0;  // forward, right, down

  double wheel_front_left = 0, wheel_front_right = 0, wheel_rear_left = 0, wheel_rear_right = 0;
  double steering = 0, throttle = 0, brake_pressed = 0, brake_pressure = 0;
  double gear = 0, engine_speed = 0, coolant_temperature = 0, fuel_level = 0;
  double indicator_left = 0, indicator_right = 0;

  double satellites = 0, mode = 0, valid = 0, dilution = 0;
  double supply_voltage = 0, uptime = 0, odometer = 0, cabin_temperature = 0, ignition = 0;
};

class Scene {
 public:
  // `vehicle` sets off further along the road than the one before it; `seed` selects the noise.
  Scene(std::uint64_t seed, std::uint64_t vehicle);

  // The time of step `index` of `rate` per second.
  [[nodiscard]] static std::int64_t nano_at(std::uint64_t index, std::uint64_t rate);
  // The readings at that time; the same for any rate that has a step then.
  [[nodiscard]] Sample at(std::uint64_t index, std::uint64_t rate) const;

 private:
  std::uint64_t seed_;
  double start_;  // where on the road, in rounds
};

}  // namespace Trel::Trakgen
