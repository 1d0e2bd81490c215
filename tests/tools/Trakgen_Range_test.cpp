#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>
#include <vector>

#include "Made.h"
#include "Packets.h"
#include "support/Support_Damage.h"

namespace Trel::Trakgen {
namespace {

using Support::Bytes;
using Support::Test::packets_of;
using Test::kNComSerial;
using Test::made;
using Test::number_at;
using Test::real_at;
using testing::ElementsAre;
using testing::HasSubstr;
using Texts = Support::Test::Texts;

constexpr std::uint32_t kRComSerial = 5001;
constexpr double kPi = 3.14159265358979323846;
constexpr int kLane = 1;
constexpr int kRange = 2;
constexpr int kWrapper = 3;
constexpr int kPolygon = 5;
constexpr int kSensors = 6;

// ---- The scene, told once more: metres, degrees clockwise, seconds.

struct Place {
  double x = 0;
  double y = 0;
};

// Forward and right of a heading, as x and y.
Place turned(double forward, double right, double heading) {
  const double radians = heading * kPi / 180;
  return {forward * std::cos(radians) - right * std::sin(radians),
          forward * std::sin(radians) + right * std::cos(radians)};
}

// A track at 15 degrees to axis X: where it starts along and beside the road, how it turns off the
// road, and how it is driven.
struct Track {
  double along, beside, turn, speed, swing, period;
  double measure_forward, measure_right, outline_forward, outline_right;
};
constexpr Track kHunter = {0, 0, 0, 22, 6, 20, 2.6, 0.1, -0.6, 0};
constexpr Track kAhead = {40, 0, 0, 22, 4, 13, -1.7, 0, -0.8, 0};
constexpr Track kOvertaking = {-15, 3.5, 0, 23.5, 1, 9, -3, -0.2, -1, 0.1};
constexpr Track kOncoming = {900, -3.5, 180, 20, 2, 17, 2.3, 0, -0.9, 0};
constexpr Track kStanding = {400, 7, 90, 0, 0, 1, 0, 0, -0.8, 0};
const std::vector<Track> kTargets = {kAhead, kOvertaking, kOncoming, kStanding};

struct State {
  Place unit, velocity, acceleration;
  double angle, speed;

  [[nodiscard]] Place at(double forward, double right) const {
    const Place arm = turned(forward, right, angle);
    return {unit.x + arm.x, unit.y + arm.y};
  }
};

State state(const Track& track, double seconds) {
  const double phase = 2 * kPi * seconds / track.period;
  const double omega = 2 * kPi / track.period;
  const double driven = track.speed * seconds + track.swing * std::sin(phase);
  State s;
  s.angle = 15 + track.turn;
  s.speed = track.speed + track.swing * omega * std::cos(phase);
  const Place start = turned(track.along, track.beside, 15);
  const Place way = turned(driven, 0, s.angle);
  s.unit = {start.x + way.x, start.y + way.y};
  s.velocity = turned(s.speed, 0, s.angle);
  s.acceleration = turned(-track.swing * omega * omega * std::sin(phase), 0, s.angle);
  return s;
}

// ---- Reading packets.

std::int64_t signed_at(const std::string& packet, std::size_t offset, std::size_t size) {
  const auto number = static_cast<std::int64_t>(number_at(packet, offset, size));
  const std::int64_t half = 1LL << (8 * size - 1);
  return number < half ? number : number - 2 * half;
}

double value_at(const std::string& packet, std::size_t offset, std::size_t size, double step) {
  return static_cast<double>(signed_at(packet, offset, size)) * step;
}

Place place_at(const std::string& packet, std::size_t offset) {
  return {value_at(packet, offset, 4, 1e-3), value_at(packet, offset + 4, 4, 1e-3)};
}

void expect_place(const std::string& packet, std::size_t offset, Place expected) {
  EXPECT_NEAR(place_at(packet, offset).x, expected.x, 0.51e-3) << offset;
  EXPECT_NEAR(place_at(packet, offset).y, expected.y, 0.51e-3) << offset;
}

int kind_of(const std::string& packet) {
  return static_cast<unsigned char>(packet.at(1));
}

// Without the three headers, and without the eight bytes ahead of each.
Texts measured(std::vector<std::string> arguments) {
  arguments.insert(arguments.end(), {"--shape", "range"});
  Texts packets = packets_of(made(std::move(arguments)), kRComSerial);
  packets.erase(packets.begin(), packets.begin() + 3);
  for (std::string& packet : packets) packet.erase(0, 8);
  return packets;
}

Texts of_kind(const Texts& packets, int kind) {
  Texts some;
  for (const std::string& packet : packets) {
    if (kind_of(packet) == kind) some.push_back(packet);
  }
  return some;
}

Texts of_target(const Texts& packets, int target) {
  Texts some;
  for (const std::string& packet : of_kind(packets, kRange)) {
    if (packet[6] == target) some.push_back(packet);
  }
  return some;
}

// The newest data of each channel.
std::map<int, std::string> channels_of(const Texts& packets, std::size_t at) {
  std::map<int, std::string> channels;
  for (const std::string& packet : packets) channels[packet.at(at)] = packet.substr(at + 1, 8);
  return channels;
}

constexpr std::size_t kRangeChannelAt = 41;
constexpr std::size_t kLaneChannelAt = 49;

// ---- Framing and time.

TEST(TrakgenRange, packets_are_whole_with_good_sums_and_lengths) {
  const Texts packets = measured({"--seconds", "3", "--targets", "4"});
  // each step lane and four ranges; each second the sensors and five outlines
  EXPECT_EQ(packets.size(), 3U * (100 * 5 + 6));
  std::set<int> kinds;
  for (const std::string& packet : packets) {
    EXPECT_EQ(number_at(packet, 0, 1), 0x57U);
    ASSERT_EQ(number_at(packet, 2, 2) + 4, packet.size());
    std::uint64_t sum = 0;
    for (std::size_t at = 1; at + 1 < packet.size(); ++at) sum += number_at(packet, at, 1);
    EXPECT_EQ(number_at(packet, packet.size() - 1, 1), sum & 0xFF);
    kinds.insert(kind_of(packet));
  }
  EXPECT_THAT(kinds, ElementsAre(kLane, kRange, kPolygon, kSensors));
}

TEST(TrakgenRange, each_pair_of_kind_and_target_comes_once_in_ten_milliseconds) {
  const Texts packets = measured({"--seconds", "2", "--targets", "3"});
  std::map<std::uint64_t, std::multiset<int>> steps;
  for (const std::string& packet : packets) {
    if (kind_of(packet) > kRange) continue;
    steps[number_at(packet, 4, 2)].insert(kind_of(packet) == kLane ? 0 : packet[6]);
  }
  EXPECT_EQ(steps.size(), 200U);
  std::uint64_t expected = 20'000;  // 1,400,000,000 seconds are 20 past a minute
  for (const auto& [milliseconds, pairs] : steps) {
    EXPECT_EQ(milliseconds, expected);
    EXPECT_THAT(pairs, ElementsAre(0, 1, 2, 3));
    expected += 10;
  }
}

TEST(TrakgenRange, with_fewer_steps_each_is_as_it_was_but_for_its_channel) {
  const Texts all = measured({"--seconds", "3", "--targets", "4"});
  const Texts some = measured({"--seconds", "3", "--targets", "4", "--range-rate", "10"});
  EXPECT_EQ(some.size(), 3U * (10 * 5 + 6));
  for (const auto& [kind, channel_at] :
       {std::pair{kLane, kLaneChannelAt}, {kRange, kRangeChannelAt}}) {
    std::set<std::string> usual;
    for (const std::string& packet : of_kind(all, kind)) usual.insert(packet.substr(0, channel_at));
    for (const std::string& packet : of_kind(some, kind)) {
      EXPECT_TRUE(usual.contains(packet.substr(0, channel_at))) << number_at(packet, 4, 2);
    }
  }
  EXPECT_EQ(of_kind(some, kPolygon), of_kind(all, kPolygon));
  EXPECT_EQ(of_kind(some, kSensors).size(), 3U);
}

TEST(TrakgenRange, minutes_and_utc_come_after_some_packets_and_follow_the_time) {
  const Texts packets = measured({"--seconds", "45", "--targets", "1"});
  std::uint64_t step = 0;
  std::uint64_t first_minutes = UINT64_MAX;
  std::uint64_t first_utc = UINT64_MAX;
  std::set<std::uint64_t> minutes;
  for (const std::string& packet : of_target(packets, 1)) {
    const std::string data = packet.substr(kRangeChannelAt + 1, 8);
    if (packet[kRangeChannelAt] == 0) {
      EXPECT_EQ(number_at(data, 0, 4), (1'400'000'000 + step / 100) / 60);
      minutes.insert(number_at(data, 0, 4));
      first_minutes = std::min(first_minutes, step);
    }
    if (packet[kRangeChannelAt] == 7) {
      EXPECT_EQ(signed_at(data, 0, 2), 18);
      first_utc = std::min(first_utc, step);
    }
    ++step;
  }
  EXPECT_EQ(step, 4500U);
  EXPECT_EQ(minutes.size(), 2U) << "the minute ends after 40 seconds";
  EXPECT_GT(first_minutes, 5U);
  EXPECT_LT(first_minutes, 30U);
  EXPECT_GT(first_utc, 5U);
  EXPECT_LT(first_utc, 30U);
  for (const std::string& packet : of_kind(packets, kLane)) {
    if (packet[kLaneChannelAt] != 0) continue;
    EXPECT_TRUE(minutes.contains(number_at(packet, 50, 4)));
  }
}

// ---- Ranges.

TEST(TrakgenRange, ranges_rates_and_accelerations_are_those_of_the_scene) {
  const Texts packets = measured({"--seconds", "25", "--targets", "4"});
  for (int target = 1; target <= 4; ++target) {
    const Track& track = kTargets[static_cast<std::size_t>(target - 1)];
    const Texts mine = of_target(packets, target);
    ASSERT_EQ(mine.size(), 2500U);
    for (std::size_t step = 0; step < mine.size(); step += 37) {
      SCOPED_TRACE(std::to_string(target) + " at step " + std::to_string(step));
      const std::string& packet = mine[step];
      const State hunter = state(kHunter, static_cast<double>(step) / 100);
      const State other = state(track, static_cast<double>(step) / 100);
      const Place from = hunter.at(kHunter.measure_forward, kHunter.measure_right);
      const Place to = other.at(track.measure_forward, track.measure_right);
      const Place range = turned(to.x - from.x, to.y - from.y, -hunter.angle);
      EXPECT_NEAR(value_at(packet, 8, 4, 1e-3), range.y, 0.51e-3);
      EXPECT_NEAR(value_at(packet, 12, 4, 1e-3), range.x, 0.51e-3);
      const Place rate = turned(other.velocity.x - hunter.velocity.x,
                                other.velocity.y - hunter.velocity.y, -hunter.angle);
      EXPECT_NEAR(value_at(packet, 16, 2, 1e-2), rate.y, 0.51e-2);
      EXPECT_NEAR(value_at(packet, 18, 2, 1e-2), rate.x, 0.51e-2);
      const Place change = turned(other.acceleration.x - hunter.acceleration.x,
                                  other.acceleration.y - hunter.acceleration.y, -hunter.angle);
      EXPECT_NEAR(value_at(packet, 54, 2, 1e-2), change.y, 0.51e-2);
      EXPECT_NEAR(value_at(packet, 56, 2, 1e-2), change.x, 0.51e-2);
      EXPECT_NEAR(value_at(packet, 50, 2, 1e-2), hunter.speed, 0.51e-2);
      EXPECT_EQ(signed_at(packet, 52, 2), 0);
    }
  }
}

TEST(TrakgenRange, a_range_changes_as_its_rate_tells) {
  // Over one second, the mean of 100 rates against the difference of the ranges.
  const Texts mine = of_target(measured({"--seconds", "20", "--targets", "2"}), 2);
  for (std::size_t step = 0; step + 100 < mine.size(); step += 100) {
    for (const auto& [range_at, rate_at] : {std::pair<std::size_t, std::size_t>{8, 16}, {12, 18}}) {
      double mean = 0;
      for (std::size_t k = 0; k < 100; ++k) {
        mean += (value_at(mine[step + k], rate_at, 2, 1e-2) +
                 value_at(mine[step + k + 1], rate_at, 2, 1e-2)) /
                200;
      }
      const double change =
          value_at(mine[step + 100], range_at, 4, 1e-3) - value_at(mine[step], range_at, 4, 1e-3);
      EXPECT_NEAR(change, mean, 6e-3) << step;  // half a step of a rate, and a step of a range
    }
  }
}

TEST(TrakgenRange, places_and_headings_are_those_of_the_scene) {
  const Texts packets = measured({"--seconds", "21", "--targets", "4"});
  for (int target = 1; target <= 4; ++target) {
    const Track& track = kTargets[static_cast<std::size_t>(target - 1)];
    const Texts mine = of_target(packets, target);
    for (std::size_t step = 0; step < mine.size(); step += 41) {
      const std::string& packet = mine[step];
      const State hunter = state(kHunter, static_cast<double>(step) / 100);
      const State other = state(track, static_cast<double>(step) / 100);
      EXPECT_EQ(packet[6], target);
      EXPECT_EQ(packet[7], 4);
      EXPECT_EQ(packet[40], 1);
      expect_place(packet, 20, hunter.at(kHunter.measure_forward, kHunter.measure_right));
      expect_place(packet, 28, other.at(track.measure_forward, track.measure_right));
      expect_place(packet, 74, hunter.at(kHunter.outline_forward, kHunter.outline_right));
      expect_place(packet, 82, other.at(track.outline_forward, track.outline_right));
      expect_place(packet, 90, hunter.unit);
      expect_place(packet, 98, other.unit);
      // Axis X points to 30 degrees, and the road 15 further.
      EXPECT_EQ(number_at(packet, 36, 2), 4500U);
      EXPECT_EQ(number_at(packet, 38, 2), 4500U + 100 * static_cast<unsigned int>(track.turn));
      for (const std::size_t level : {106, 108, 110, 112})
        EXPECT_EQ(signed_at(packet, level, 2), 0);
    }
  }
}

// ---- Outlines.

struct Outline {
  std::size_t used = 0;
  std::vector<Place> corners;
};

std::map<int, Outline> outlines_of(const Texts& packets) {
  std::map<int, Outline> outlines;
  for (const std::string& packet : of_kind(packets, kPolygon)) {
    const auto form = static_cast<unsigned char>(packet[9]);
    const std::size_t size = (form & 0x80) != 0 ? 3 : 2;
    const double step = size == 3 ? 1e-4 : 1e-3;
    const std::size_t count = (form & 0x3F) + 1U;
    EXPECT_EQ(form & 0x40, 0) << "two values a corner";
    EXPECT_EQ(packet[8], 0) << "from the first corner on";
    EXPECT_EQ(packet.size(), 10 + count * 2 * size + 1);
    Outline outline{number_at(packet, 7, 1), {}};
    for (std::size_t k = 0; k < count; ++k) {
      outline.corners.push_back({value_at(packet, 10 + k * 2 * size, size, step),
                                 value_at(packet, 10 + k * 2 * size + size, size, step)});
    }
    outlines[packet[6]] = outline;
  }
  return outlines;
}

TEST(TrakgenRange, outlines_of_hunter_and_targets_come_every_second) {
  const Texts packets = measured({"--seconds", "2", "--targets", "4"});
  EXPECT_EQ(of_kind(packets, kPolygon).size(), 2U * 5);
  const auto outlines = outlines_of(packets);
  ASSERT_EQ(outlines.size(), 5U);
  EXPECT_EQ(outlines.at(0).used, 8U);
  EXPECT_EQ(outlines.at(1).used, 4U);
  EXPECT_EQ(outlines.at(2).used, 5U);
  EXPECT_NEAR(outlines.at(0).corners[0].x, 3.2, 1e-9);
  EXPECT_NEAR(outlines.at(0).corners[0].y, -0.7, 1e-9);
  for (const auto& [vehicle, outline] : outlines) {
    EXPECT_EQ(outline.corners.size(), outline.used) << vehicle;
  }
}

// The corners where they are in the local frame.
std::vector<Place> standing(const Outline& outline, const Track& track, const State& vehicle) {
  std::vector<Place> places;
  for (const Place& corner : outline.corners) {
    places.push_back(vehicle.at(track.outline_forward + corner.x, track.outline_right + corner.y));
  }
  return places;
}

double distance(Place a, Place b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

// The least distance from a point to an outline, by trying many points of each edge.
double least_distance(const std::vector<Place>& outline, Place point) {
  double least = 1e9;
  for (std::size_t k = 0; k < outline.size(); ++k) {
    const Place a = outline[k];
    const Place b = outline[(k + 1) % outline.size()];
    for (int i = 0; i <= 1000; ++i) {
      const double share = i / 1000.0;
      least =
          std::min(least, distance({a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)}, point));
    }
  }
  return least;
}

double least_distance(const std::vector<Place>& a, const std::vector<Place>& b) {
  double least = 1e9;
  for (const Place& corner : a) least = std::min(least, least_distance(b, corner));
  for (const Place& corner : b) least = std::min(least, least_distance(a, corner));
  return least;
}

// The point that left, right and share tell.
Place told(const std::vector<Place>& outline, const std::string& packet, std::size_t at,
           std::size_t share_at) {
  const std::size_t left = number_at(packet, at, 1);
  const std::size_t right = number_at(packet, at + 1, 1);
  EXPECT_EQ(right, (left + 1) % outline.size());
  const double share = static_cast<double>(number_at(packet, share_at, 1)) * 0.004;
  EXPECT_LE(share, 1.0);
  const Place a = outline.at(left);
  const Place b = outline.at(right);
  return {a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)};
}

TEST(TrakgenRange, nearest_points_are_nearest) {
  const Texts packets = measured({"--seconds", "45", "--targets", "4", "--range-rate", "20"});
  const auto outlines = outlines_of(packets);
  // Half a step of the share, on an edge of 9 metres, and a step of the places.
  constexpr double kClose = 0.02;
  for (int target = 1; target <= 4; ++target) {
    const Track& track = kTargets[static_cast<std::size_t>(target - 1)];
    const Texts mine = of_target(packets, target);
    for (std::size_t step = 0; step < mine.size(); step += 1117) {
      SCOPED_TRACE(std::to_string(target) + " at step " + std::to_string(step));
      const std::string& packet = mine[step];
      const State hunter = state(kHunter, static_cast<double>(step) / 100);
      const State other = state(track, static_cast<double>(step) / 100);
      const auto own = standing(outlines.at(0), kHunter, hunter);
      const auto theirs = standing(outlines.at(target), track, other);
      const Place from = hunter.at(kHunter.measure_forward, kHunter.measure_right);
      const Place to = other.at(track.measure_forward, track.measure_right);
      EXPECT_NEAR(distance(told(theirs, packet, 58, 70), from), least_distance(theirs, from),
                  kClose);
      EXPECT_NEAR(distance(told(own, packet, 64, 71), to), least_distance(own, to), kClose);
      const double between = least_distance(own, theirs);
      EXPECT_NEAR(least_distance(own, told(theirs, packet, 66, 72)), between, kClose);
      EXPECT_NEAR(least_distance(theirs, told(own, packet, 68, 73)), between, kClose);
    }
  }
}

// ---- Sensors.

TEST(TrakgenRange, sensors_are_told_in_full_every_second) {
  const Texts packets = of_kind(measured({"--seconds", "3"}), kSensors);
  ASSERT_EQ(packets.size(), 3U);
  const std::string& packet = packets[0];
  EXPECT_EQ(packet[6], 0);
  EXPECT_EQ(packet[7], 2);
  EXPECT_EQ(packet[8], 0);
  EXPECT_EQ(number_at(packet, 9, 1), 0xC1U) << "three bytes, ten values, two sensors";
  EXPECT_EQ(packet.size(), (10U * 3 + 8) * 2 + 11);
  // Lon, Lat, Vert, Heading, Pitch, Roll, FovHoriz, FovVert, RangeMin, RangeMax of the first
  const double expected[] = {3.1, 0, -0.4, 0, 0, 0, 40, 10, 1, 150};
  for (std::size_t k = 0; k < 10; ++k) {
    EXPECT_NEAR(value_at(packet, 10 + 3 * k, 3, 1e-4), expected[k], 1e-9) << k;
  }
  EXPECT_EQ(number_at(packet, 40, 8), 1001U);
  EXPECT_EQ(number_at(packet, 48 + 30, 8), 1002U);
  EXPECT_NEAR(value_at(packet, 48 + 9, 3, 1e-4), 120, 1e-9) << "heading of the second";
}

TEST(TrakgenRange, the_front_sensor_sees_what_is_ahead_and_within_reach) {
  const Texts packets = measured({"--seconds", "25", "--targets", "3"});
  const auto outlines = outlines_of(packets);
  int seen = 0;
  int hidden = 0;
  for (const int target : {1, 3}) {
    const Track& track = kTargets[static_cast<std::size_t>(target - 1)];
    const Texts mine = of_target(packets, target);
    for (std::size_t step = 0; step < mine.size(); step += 173) {
      const std::string& packet = mine[step];
      ASSERT_EQ(packet.size(), 114U + 2 * 6 + 1);
      const State hunter = state(kHunter, static_cast<double>(step) / 100);
      const State other = state(track, static_cast<double>(step) / 100);
      const Place eye = hunter.at(kHunter.outline_forward + 3.1, 0);
      const double least = least_distance(standing(outlines.at(target), track, other), eye);
      EXPECT_NEAR(value_at(packet, 114, 4, 1e-3), least, 5e-3) << step;
      const Place to = turned(other.unit.x - eye.x, other.unit.y - eye.y, -hunter.angle);
      const double angle = std::atan2(to.y, to.x) * 180 / kPi;
      const bool well_inside = std::abs(angle) < 15 && least > 2 && least < 149;
      const bool well_outside = std::abs(angle) > 90 || least > 151;
      if (well_inside) {
        EXPECT_EQ(packet[118], 100) << step;
        EXPECT_GE(packet[119], 0) << step;
        EXPECT_EQ(packet[60], 100) << step;
        ++seen;
      }
      if (well_outside) {
        EXPECT_EQ(packet[118], 0) << step;
        EXPECT_EQ(packet[119], 0) << step;
        ++hidden;
      }
    }
  }
  EXPECT_GT(seen, 10);
  EXPECT_GT(hidden, 10);
}

TEST(TrakgenRange, the_rear_sensor_sees_what_is_behind_on_the_right) {
  const Texts packets = measured({"--seconds", "20", "--targets", "2"});
  const auto outlines = outlines_of(packets);
  const Texts mine = of_target(packets, 2);
  int seen = 0;
  int hidden = 0;
  for (std::size_t step = 0; step < mine.size(); step += 7) {
    const std::string& packet = mine[step];
    const State hunter = state(kHunter, static_cast<double>(step) / 100);
    const State other = state(kOvertaking, static_cast<double>(step) / 100);
    const Place eye = hunter.at(kHunter.outline_forward - 0.9, 0.8);
    const auto corners = standing(outlines.at(2), kOvertaking, other);
    const double least = least_distance(corners, eye);
    EXPECT_NEAR(value_at(packet, 120, 4, 1e-3), least, 5e-3) << step;
    // It looks 120 degrees to the right, 80 wide, from 0.5 m to 30 m.
    const Place to = turned(other.unit.x - eye.x, other.unit.y - eye.y, -hunter.angle - 120);
    const double angle = std::atan2(to.y, to.x) * 180 / kPi;
    if (std::abs(angle) < 35 && least > 1 && least < 29) {
      EXPECT_EQ(packet[124], 100) << step;
      EXPECT_GE(packet[125], 1) << step;
      ++seen;
    }
    if (std::abs(angle) > 95 || least > 31) {
      EXPECT_EQ(packet[124], 0) << step;
      EXPECT_EQ(packet[125], 0) << step;
      ++hidden;
    }
    EXPECT_EQ(packet[60], packet[118] == 0 && packet[124] == 0 ? 0 : 100) << step;
  }
  EXPECT_GT(seen, 10);
  EXPECT_GT(hidden, 10);
}

TEST(TrakgenRange, a_near_target_takes_the_share_of_view_that_its_width_takes) {
  const Texts packets = measured({"--seconds", "5", "--targets", "1"});
  const Texts mine = of_target(packets, 1);
  const auto corners = outlines_of(packets).at(1);
  for (std::size_t step = 0; step < mine.size(); step += 50) {
    const State hunter = state(kHunter, static_cast<double>(step) / 100);
    const State other = state(kAhead, static_cast<double>(step) / 100);
    const Place eye = hunter.at(kHunter.outline_forward + 3.1, 0);
    double left = 180;
    double right = -180;
    for (const Place& corner : standing(corners, kAhead, other)) {
      const Place to = turned(corner.x - eye.x, corner.y - eye.y, -hunter.angle);
      left = std::min(left, std::atan2(to.y, to.x) * 180 / kPi);
      right = std::max(right, std::atan2(to.y, to.x) * 180 / kPi);
    }
    EXPECT_NEAR(mine[step][119], 100 * (right - left) / 40, 0.51) << step;
  }
}

// ---- Channels.

TEST(TrakgenRange, the_channels_of_range_data_tell_modes_settings_and_sources) {
  const Texts packets = measured({"--seconds", "2", "--targets", "4"});
  auto channels = channels_of(of_target(packets, 1), kRangeChannelAt);
  EXPECT_EQ(channels.size(), 22U) << "0 to 22, but not 2";
  EXPECT_EQ(number_at(channels[0], 4, 1), 6U);
  EXPECT_EQ(number_at(channels[0], 5, 1), 6U);
  EXPECT_EQ(number_at(channels[0], 6, 2), 3U);
  EXPECT_EQ(channels[1], "240311.2");
  EXPECT_EQ(number_at(channels[5], 0, 2), 2U);
  EXPECT_EQ(number_at(channels[5], 2, 4), 0U);
  EXPECT_EQ(number_at(channels[6], 0, 3), 0x000102U);  // 2.1.0
  EXPECT_EQ(number_at(channels[6], 3, 3), 24'031U);
  EXPECT_EQ(number_at(channels[7], 7, 1), 86U);  // 34.4 percent in steps of 0.4
  EXPECT_EQ(channels[9].substr(0, 4), (std::string{'\xC0', '\xA8', 1, 10}));  // 192.168.1.10
  EXPECT_EQ(channels[9].substr(4, 4), (std::string{'\xC0', '\xA8', 1, 11}));
  EXPECT_EQ(signed_at(channels[11], 0, 4), 472'000'000);  // 47.2 degrees
  EXPECT_EQ(signed_at(channels[11], 4, 4), 113'000'000);
  EXPECT_EQ(signed_at(channels[12], 0, 4), 580'000);
  EXPECT_EQ(number_at(channels[12], 4, 4), 300'000'000U);  // 30 degrees
  EXPECT_EQ(signed_at(channels[13], 0, 3), 2600);
  EXPECT_EQ(signed_at(channels[13], 3, 3), 100);
  EXPECT_EQ(signed_at(channels[13], 6, 2), 0);
  EXPECT_EQ(signed_at(channels[14], 0, 3), -1700);
  EXPECT_EQ(number_at(channels[16], 0, 2), 20U);
  EXPECT_EQ(number_at(channels[16], 2, 2), 15U);
  EXPECT_EQ(number_at(channels[16], 4, 2), 30U);
  EXPECT_EQ(number_at(channels[16], 6, 2), 25U);
  EXPECT_EQ(number_at(channels[17], 0, 2), 4300U);
  EXPECT_EQ(number_at(channels[17], 2, 2), 1800U);
  EXPECT_EQ(number_at(channels[17], 4, 2), 1600U);
  EXPECT_EQ(number_at(channels[17], 6, 2), 2U);
  EXPECT_EQ(number_at(channels[18], 0, 4), 0x41200000U);  // 10 as a real number
  EXPECT_EQ(number_at(channels[18], 4, 4), 0x3F333333U);  // 0.7
  EXPECT_EQ(number_at(channels[19], 0, 4), 0x40800000U);  // 4
  EXPECT_EQ(number_at(channels[19], 4, 4), 0x3F666666U);  // 0.9
  EXPECT_EQ(number_at(channels[22], 0, 2), 4200U);
  EXPECT_EQ(number_at(channels[22], 6, 2), 1U);
  auto others = channels_of(of_target(packets, 4), kRangeChannelAt);
  EXPECT_EQ(others[9].substr(4, 4), (std::string{'\xC0', '\xA8', 1, 14}));
}

TEST(TrakgenRange, only_the_standing_target_is_a_surveyed_point) {
  const Texts packets = measured({"--seconds", "2", "--targets", "4"});
  auto moving = channels_of(of_target(packets, 3), kRangeChannelAt);
  for (const int channel : {8, 10, 20, 21}) {
    EXPECT_EQ(number_at(moving[channel], 0, 4), 0x80000000U) << channel;
  }
  auto surveyed = channels_of(of_target(packets, 4), kRangeChannelAt);
  EXPECT_EQ(surveyed[8], surveyed[20]);
  // 400 m along the road and 7 m to its right, the road heading for 45 degrees; a degree of
  // latitude has some 111.2 km, one of longitude some 75.8 km there.
  const Place north_east = turned(400, 7, 45);
  EXPECT_NEAR(value_at(surveyed[8], 0, 4, 1e-7), 47.2 + north_east.x / 111'200, 3e-6);
  EXPECT_NEAR(value_at(surveyed[8], 4, 4, 1e-7), 11.3 + north_east.y / 75'780, 1e-5);
  EXPECT_EQ(signed_at(surveyed[10], 0, 4), 580'000);
  EXPECT_EQ(number_at(surveyed[10], 4, 2), 13'500U);  // 30 + 15 + 90 degrees
}

TEST(TrakgenRange, counters_go_on_over_the_end_of_sixteen_bits) {
  const Texts mine = of_target(measured({"--seconds", "15", "--targets", "1"}), 1);
  // Characters, packets and what was skipped of the target, of the hunter and of commands, in 100
  // seconds.
  const std::map<int, std::array<std::size_t, 3>> rates = {
      {3, {720'000, 10'000, 200}}, {4, {1'440'000, 20'000, 100}}, {15, {2'000, 100, 0}}};
  for (std::size_t step = 0; step < mine.size(); ++step) {
    const auto rate = rates.find(mine[step][kRangeChannelAt]);
    if (rate == rates.end()) continue;
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_EQ(number_at(mine[step], 42 + 2 * k, 2), step * rate->second[k] / 10'000 % 65'536)
          << rate->first << " at step " << step;
    }
  }
  EXPECT_GT(mine.size() * 72, 65'536U);

  const Texts fewer =
      of_target(measured({"--seconds", "9", "--targets", "1", "--range-rate", "20"}), 1);
  for (std::size_t step = 0; step < fewer.size(); ++step) {
    if (fewer[step][kRangeChannelAt] != 3) continue;
    EXPECT_EQ(number_at(fewer[step], 42, 2), step * 360 % 65'536);
    EXPECT_EQ(number_at(fewer[step], 44, 2), step * 5);
  }
}

// ---- Lanes.

TEST(TrakgenRange, lanes_lie_beside_the_hunter_that_follows_them) {
  const Texts lanes = of_kind(measured({"--seconds", "10"}), kLane);
  ASSERT_EQ(lanes.size(), 1000U);
  for (std::size_t step = 0; step < lanes.size(); step += 97) {
    const std::string& packet = lanes[step];
    ASSERT_EQ(packet.size(), 133U);
    // Lines at -5.25, -1.75, 1.75 and 5.25 m from the middle of the road; A is 0.1 m to its right,
    // B and C are the front corners at -0.7 and 0.7 m.
    const int from[] = {5350, 1850, -1650, -5150};
    for (std::size_t line = 0; line < 8; ++line) {
      const bool drawn = line < 4;
      EXPECT_EQ(signed_at(packet, 24 + 2 * line, 2), drawn ? from[line] : -32768);
      EXPECT_EQ(signed_at(packet, 58 + 2 * line, 2), drawn ? 0 : -32768);
      EXPECT_EQ(signed_at(packet, 74 + 2 * line, 2), drawn ? from[line] - 800 : -32768);
      EXPECT_EQ(signed_at(packet, 90 + 2 * line, 2), drawn ? from[line] + 600 : -32768);
      EXPECT_EQ(signed_at(packet, 106 + 2 * line, 2), drawn ? 0 : -32768);
    }
    EXPECT_EQ(signed_at(packet, 12, 2), 1850);
    EXPECT_EQ(signed_at(packet, 18, 2), -1650);
    EXPECT_EQ(signed_at(packet, 40, 2), 1850 - 800);
    EXPECT_EQ(signed_at(packet, 42, 2), -1650 + 600);
    for (const std::size_t left : {6, 44, 46}) EXPECT_EQ(packet[left], 2);
    for (const std::size_t right : {7, 45, 47}) EXPECT_EQ(packet[right], 3);
    const double seconds = static_cast<double>(step) / 100;
    const double driven = 22 * seconds + 6 * std::sin(2 * kPi * seconds / 20);
    EXPECT_NEAR(value_at(packet, 8, 4, 1e-3), driven + 2.6, 0.51e-3);
  }
}

TEST(TrakgenRange, the_channels_of_lane_data_tell_the_three_points) {
  auto channels = channels_of(of_kind(measured({"--seconds", "1"}), kLane), kLaneChannelAt);
  EXPECT_EQ(channels.size(), 9U);
  EXPECT_EQ(number_at(channels[2], 0, 2), 17U);
  const int arms[3][2] = {{2600, 100}, {2600, -700}, {2600, 700}};  // corners 3.2 - 0.6 ahead
  for (int point = 0; point < 3; ++point) {
    EXPECT_EQ(signed_at(channels[8 + point], 0, 3), arms[point][0]) << point;
    EXPECT_EQ(signed_at(channels[8 + point], 3, 3), arms[point][1]) << point;
    EXPECT_EQ(signed_at(channels[8 + point], 6, 2), 0) << point;
  }
}

// ---- Recordings and raw files.

TEST(TrakgenRange, the_headers_name_each_stream_and_its_part) {
  const Bytes bytes = made({"--seconds", "1", "--shape", "range", "--targets", "2"});
  const Texts range = packets_of(bytes, kRComSerial);
  EXPECT_THAT(range[0], HasSubstr("[Trel-RCom]"));
  EXPECT_THAT(range[1], HasSubstr("{Trel-Range}"));
  for (const char* item :
       {"WhoAmI", "Range", "Hunter.XCom.Serial", "3001", "Target.Index.0.XCom.Serial", "3002",
        "Target.Index.1.XCom.Serial", "3003", "Codec.NCom.Index.2.XCom.Serial"}) {
    EXPECT_THAT(range[1], HasSubstr(item));
  }
  for (std::uint32_t vehicle = 0; vehicle < 3; ++vehicle) {
    const Texts ncom = packets_of(bytes, kNComSerial + vehicle);
    ASSERT_EQ(ncom.size(), 3U + 100) << vehicle;
    EXPECT_THAT(ncom[0], HasSubstr("[Trel-NCom]"));
    EXPECT_THAT(ncom[1], HasSubstr("5001"));
    EXPECT_THAT(ncom[1], HasSubstr(vehicle == 0 ? "Hunter" : "Target " + std::to_string(vehicle)));
  }
  EXPECT_THAT(packets_of(bytes, kNComSerial + 3), testing::IsEmpty());
}

TEST(TrakgenRange, the_ncom_streams_tell_where_the_range_data_has_the_vehicles) {
  const Bytes bytes = made({"--seconds", "30", "--shape", "range", "--targets", "1"});
  Texts range = packets_of(bytes, kRComSerial);
  range.erase(range.begin(), range.begin() + 3);
  for (std::string& packet : range) packet.erase(0, 8);
  const Texts mine = of_target(range, 1);
  for (std::uint32_t vehicle = 0; vehicle < 2; ++vehicle) {
    Texts ncom = packets_of(bytes, kNComSerial + vehicle);
    ncom.erase(ncom.begin(), ncom.begin() + 3);
    ASSERT_EQ(ncom.size(), mine.size());
    for (std::size_t step = 0; step < ncom.size(); step += 211) {
      const std::string packet = ncom[step].substr(8);
      EXPECT_EQ(number_at(packet, 1, 2), number_at(mine[step], 4, 2)) << "one time";
      const Place unit = place_at(mine[step], vehicle == 0 ? 90 : 98);
      const Place north_east = turned(unit.x, unit.y, 30);
      const double north = (real_at(packet, 23) * 180 / kPi - 47.2) * 111'200;
      const double east = (real_at(packet, 31) * 180 / kPi - 11.3) * 75'780;
      // The lengths of the degrees are good to a part in 2000.
      EXPECT_NEAR(north, north_east.x, 0.01 + std::abs(north_east.x) / 1000) << step;
      EXPECT_NEAR(east, north_east.y, 0.01 + std::abs(north_east.y) / 1000) << step;
      // 45 degrees in steps of a millionth of a radian
      EXPECT_NEAR(value_at(packet, 52, 3, 1e-6), kPi / 4, 1e-6);
      const State moved = state(vehicle == 0 ? kHunter : kAhead, static_cast<double>(step) / 100);
      const Place velocity = turned(moved.velocity.x, moved.velocity.y, 30);
      EXPECT_NEAR(value_at(packet, 43, 3, 1e-4), velocity.x, 1e-4) << step;
      EXPECT_NEAR(value_at(packet, 46, 3, 1e-4), velocity.y, 1e-4) << step;
      const Place driven = turned(moved.acceleration.x, moved.acceleration.y, -moved.angle);
      EXPECT_NEAR(value_at(packet, 3, 3, 1e-4), driven.x, 1e-4) << step;
    }
  }
}

// The packets of a raw file, by the lengths that they tell.
Texts packets_in(const Bytes& file) {
  Texts packets;
  for (std::size_t at = 0; at + 4 <= file.size();) {
    const std::size_t size = 4U + file[at + 2] + 256U * file[at + 3];
    if (file[at] != 0x57 || at + size > file.size()) {
      ADD_FAILURE() << "no packet at " << at;
      break;
    }
    packets.emplace_back(file.begin() + static_cast<std::ptrdiff_t>(at),
                         file.begin() + static_cast<std::ptrdiff_t>(at + size));
    at += size;
  }
  return packets;
}

TEST(TrakgenRange, a_raw_file_holds_the_range_data_of_the_recording) {
  const Texts file = packets_in(made({"--seconds", "3", "--targets", "2"}, ".rcom"));
  Texts range;
  for (const std::string& packet : file) {
    if (kind_of(packet) != kWrapper) range.push_back(packet);
  }
  EXPECT_EQ(range, measured({"--seconds", "3", "--targets", "2"}));
}

TEST(TrakgenRange, a_raw_file_wraps_the_ncom_packets_of_the_recording) {
  const std::vector<std::string> arguments = {"--seconds", "2",           "--targets",
                                              "3",         "--ncom-rate", "50"};
  std::map<std::string, std::string> wrapped;  // by address
  for (const std::string& packet : of_kind(packets_in(made(arguments, ".rcom")), kWrapper)) {
    ASSERT_EQ(packet.size(), 82U);
    EXPECT_EQ(packet[8], 0);
    wrapped[packet.substr(4, 4)] += packet.substr(9, 72);
  }
  ASSERT_EQ(wrapped.size(), 4U);
  auto with_shape = arguments;
  with_shape.insert(with_shape.end(), {"--shape", "range"});
  const Bytes recording = made(with_shape);
  for (std::uint32_t vehicle = 0; vehicle < 4; ++vehicle) {
    std::string bare;
    Texts packets = packets_of(recording, kNComSerial + vehicle);
    for (std::size_t i = 3; i < packets.size(); ++i) bare += packets[i].substr(8);
    const std::string address{'\xC0', '\xA8', 1, static_cast<char>(10 + vehicle)};
    EXPECT_EQ(wrapped[address], bare) << vehicle;
    EXPECT_EQ(bare.size(), 2U * 50 * 72);
  }
}

TEST(TrakgenRange, without_ncom_packets_there_is_the_range_data_alone) {
  const Texts file = packets_in(made({"--seconds", "1", "--ncom-rate", "0"}, ".rcom"));
  EXPECT_THAT(of_kind(file, kWrapper), testing::IsEmpty());
  EXPECT_EQ(file.size(), 100U * 3 + 4);
  const Bytes recording = made({"--seconds", "1", "--ncom-rate", "0", "--shape", "range"});
  EXPECT_THAT(packets_of(recording, kNComSerial), testing::IsEmpty());
}

TEST(TrakgenRange, damage_to_a_raw_file_takes_packets_for_pages) {
  // Each step: a wrapper for the hunter and the target, lane data, range data with two sensors.
  const Bytes whole = made({"--seconds", "1", "--targets", "1"}, ".rcom");
  EXPECT_EQ(made({"--seconds", "1", "--targets", "1", "--drop-page", "2"}, ".rcom"),
            Support::remove_bytes(whole, 2 * 82, 133));
}

}  // namespace
}  // namespace Trel::Trakgen
