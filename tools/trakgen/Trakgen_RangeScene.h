// A proving ground: a hunter and up to four targets on straight tracks, as a function of time.
//
// The ground is level. Places are in a local frame whose origin lies at a reference position and
// whose axis X points in a reference heading; Y is to its right. Vehicle 0 is the hunter, the
// others are the targets. Lengths in metres, angles in degrees, clockwise from above.
#pragma once

#include <cstdint>
#include <span>

#include "trakgen/Trakgen_Scene.h"

namespace Trel::Trakgen {

struct Point {
  double x = 0;
  double y = 0;
};

[[nodiscard]] constexpr Point operator+(Point a, Point b) {
  return {a.x + b.x, a.y + b.y};
}
[[nodiscard]] constexpr Point operator-(Point a, Point b) {
  return {a.x - b.x, a.y - b.y};
}

// What (forward, right) of something with that heading is in the frame that the heading is told in.
[[nodiscard]] Point turned(Point body, double heading);

// A vehicle as it is built: places in it are (forward, right) of its inertial unit.
struct Vehicle {
  Point measure;                   // where ranges begin or end
  Point outline_origin;            // where the corners count from
  std::span<const Point> outline;  // from the origin, in turn around the vehicle
  double length;
  double width;
  double height;
  int outline_number;
};

// Where its inertial unit is, in the local frame.
struct Motion {
  Point position;
  Point velocity;
  Point acceleration;
  double angle = 0;  // its heading against axis X, 0 to 360
  double speed = 0;  // forward
};

// The point of an outline nearest to another point: a share of the way from one corner to the next.
struct Nearest {
  int left = 0;
  int right = 0;
  double share = 0;
  double distance = 0;
};

class RangeScene {
 public:
  static constexpr unsigned int kHunter = 0;
  static constexpr unsigned int kTargets = 4;
  static constexpr double kLatitude = 47.2;
  static constexpr double kLongitude = 11.3;
  static constexpr double kAltitude = 580;
  static constexpr double kHeading = 30;  // of axis X

  [[nodiscard]] static const Vehicle& vehicle(unsigned int number);
  [[nodiscard]] static Motion motion(unsigned int number, double seconds);
  // A place in a vehicle, told as those of Vehicle are, in the local frame.
  [[nodiscard]] static Point place(const Motion& motion, Point in_vehicle);
  // The k-th corner of a vehicle's outline in the local frame.
  [[nodiscard]] static Point corner(unsigned int number, const Motion& motion, std::size_t k);

  [[nodiscard]] static Nearest nearest(unsigned int number, const Motion& motion, Point point);
  // The point of a vehicle's outline that is nearest to that of another vehicle.
  [[nodiscard]] static Nearest nearest(unsigned int number, const Motion& motion,
                                       unsigned int other, const Motion& other_motion);

  // What a vehicle's instruments read at step `index` of `rate` per second.
  [[nodiscard]] static Sample sample(unsigned int number, std::uint64_t index, std::uint64_t rate);
};

}  // namespace Trel::Trakgen
