#include "trakgen/Trakgen_RangeScene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "trakgen/Trakgen_Earth.h"
#include "trakgen/Trakgen_Wave.h"

namespace Trel::Trakgen {

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr int kUptimeAtStart = 42;  // seconds
constexpr double kGravity = 9.80665;

// The road runs at this angle to axis X, and everyone on it or across it.
constexpr double kRoad = 15;

// A straight track: how far along it a vehicle has come is speed * t + swing * sin(t / period).
struct Track {
  Point start;   // along the road, and to the right of its middle
  double angle;  // against the road
  double speed;
  double swing;
  double period;
};

constexpr std::array<Track, 1 + RangeScene::kTargets> kTracks = {{
    {{0, 0}, 0, 22, 6, 20},         // the hunter
    {{40, 0}, 0, 22, 4, 13},        // ahead in its lane
    {{-15, 3.5}, 0, 23.5, 1, 9},    // overtaking on its right
    {{900, -3.5}, 180, 20, 2, 17},  // oncoming
    {{400, 7}, 90, 0, 0, 1},        // standing at the side
}};

// Corners in turn, clockwise from the front on the left.
constexpr Point kSaloon[] = {{3.2, -0.7}, {3.2, 0.7}, {2.9, 0.9},   {-0.8, 0.9},
                             {-1, 0.7},   {-1, -0.7}, {-0.8, -0.9}, {2.9, -0.9}};
constexpr Point kBox[] = {{3.4, -0.9}, {3.4, 0.9}, {-0.9, 0.9}, {-0.9, -0.9}};
constexpr Point kTruck[] = {{7, -1.2}, {7, 1.2}, {-2, 1.25}, {-2, -1.25}, {3, -1.25}};
constexpr Point kCycle[] = {{1.7, 0}, {0.9, 0.35}, {-0.1, 0}, {0.9, -0.35}};

const std::array<Vehicle, 1 + RangeScene::kTargets> kVehicles = {{
    {{2.6, 0.1}, {-0.6, 0}, kSaloon, 4.2, 1.8, 1.5, 1},
    {{-1.7, 0}, {-0.8, 0}, kBox, 4.3, 1.8, 1.6, 2},
    {{-3, -0.2}, {-1, 0.1}, kTruck, 9, 2.5, 3.4, 3},
    {{2.3, 0}, {-0.9, 0}, kBox, 4.3, 1.8, 1.6, 4},
    {{0, 0}, {-0.8, 0}, kCycle, 1.8, 0.7, 1.7, 5},
}};

// The part of `a` along `b`, b's length squared being 1 for a unit vector.
double dot(Point a, Point b) {
  return a.x * b.x + a.y * b.y;
}

double length(Point a) {
  return std::sqrt(dot(a, a));
}

Point scaled(double factor, Point a) {
  return {factor * a.x, factor * a.y};
}

double round_angle(double degrees) {
  return degrees - 360 * std::floor(degrees / 360);
}

}  // namespace

Point turned(Point body, double heading) {
  const double c = cosine(heading / 360);
  const double s = sine(heading / 360);
  return {body.x * c - body.y * s, body.x * s + body.y * c};
}

const Vehicle& RangeScene::vehicle(unsigned int number) {
  return kVehicles.at(number);
}

Motion RangeScene::motion(unsigned int number, double seconds) {
  const Track& track = kTracks.at(number);
  const double omega = 2 * kPi / track.period;
  const double turns = seconds / track.period;
  const double along = track.speed * seconds + track.swing * sine(turns);
  Motion motion;
  motion.angle = round_angle(kRoad + track.angle);
  motion.speed = track.speed + track.swing * omega * cosine(turns);
  motion.position = turned(track.start, kRoad) + turned({along, 0}, motion.angle);
  motion.velocity = turned({motion.speed, 0}, motion.angle);
  motion.acceleration = turned({-track.swing * omega * omega * sine(turns), 0}, motion.angle);
  return motion;
}

Point RangeScene::place(const Motion& motion, Point in_vehicle) {
  return motion.position + turned(in_vehicle, motion.angle);
}

Point RangeScene::corner(unsigned int number, const Motion& motion, std::size_t k) {
  const Vehicle& built = vehicle(number);
  return place(motion, built.outline_origin + built.outline[k]);
}

Nearest RangeScene::nearest(unsigned int number, const Motion& motion, Point point) {
  const std::size_t count = vehicle(number).outline.size();
  Nearest best;
  for (std::size_t k = 0; k < count; ++k) {
    const std::size_t next = (k + 1) % count;
    const Point from = corner(number, motion, k);
    const Point edge = corner(number, motion, next) - from;
    const double share = std::clamp(dot(point - from, edge) / dot(edge, edge), 0.0, 1.0);
    const double distance = length(point - from - scaled(share, edge));
    if (k != 0 && distance >= best.distance) continue;
    best = {static_cast<int>(k), static_cast<int>(next), share, distance};
  }
  return best;
}

Nearest RangeScene::nearest(unsigned int number, const Motion& motion, unsigned int other,
                            const Motion& other_motion) {
  // Two outlines that do not cross are nearest at a corner of either.
  Nearest best;
  bool found = false;
  const auto offer = [&](const Nearest& one) {
    if (found && one.distance >= best.distance) return;
    best = one;
    found = true;
  };
  for (std::size_t k = 0; k < vehicle(other).outline.size(); ++k) {
    offer(nearest(number, motion, corner(other, other_motion, k)));
  }
  const int count = static_cast<int>(vehicle(number).outline.size());
  for (int k = 0; k < count; ++k) {
    const Point own = corner(number, motion, static_cast<std::size_t>(k));
    offer({k, (k + 1) % count, 0, nearest(other, other_motion, own).distance});
  }
  return best;
}

Sample RangeScene::sample(unsigned int number, std::uint64_t index, std::uint64_t rate) {
  static const DegreeLengths kDegree = degree_lengths(kLatitude, kAltitude);
  const double seconds = static_cast<double>(index) / static_cast<double>(rate);
  const Motion now = motion(number, seconds);
  const Point north_east = turned(now.position, kHeading);
  const Point velocity = turned(now.velocity, kHeading);

  Sample s;
  s.nano = Scene::nano_at(index, rate);
  s.since_power_on = kUptimeAtStart * kSecond + s.nano - Scene::nano_at(0, rate);
  s.latitude = kLatitude + north_east.x / kDegree.latitude;
  s.longitude = kLongitude + north_east.y / kDegree.longitude;
  s.altitude = kAltitude;
  s.north_accuracy = s.east_accuracy = 0.02;
  s.velocity_north = velocity.x;
  s.velocity_east = velocity.y;
  s.speed = now.speed;
  s.distance = length(now.position - motion(number, 0).position);
  s.heading = round_angle(kHeading + now.angle);
  s.acceleration_x = dot(now.acceleration, turned({1, 0}, now.angle));
  s.acceleration_z = -kGravity;
  s.satellites = 12;
  s.mode = 6;
  s.valid = 1;
  s.dilution = 0.8;
  return s;
}

}  // namespace Trel::Trakgen
