// A vehicle as the computed outputs see it: the hunter or a target, and how its axes lie in the
// local frame.
//
// Only the sources of computed outputs include this header. What a Vehicle names is the record's
// and outlives it.
#pragma once

#include "library/matrix.h"
#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "rng/Rng_Run.h"

namespace Trel::Rng {

using Real = Lib::VariableExt<double>;

// The values of one vehicle, under the names that differ between the hunter and targets.
struct Vehicle {
  const Real& heading;
  const Real& pitch;
  const Real& roll;
  const Real& origin_x;
  const Real& origin_y;
  const Real& centre_lon;
  const Real& centre_lat;
  const Lib::VariableExt<unsigned int>& corners;
  const Run& lon;
  const Run& lat;

  [[nodiscard]] std::size_t corners_used() const { return corners.good() ? corners.get() : 0; }
  // Whether a corner is known, and where it is; `index` must be below the size of the runs.
  [[nodiscard]] bool knows_corner(std::size_t index) const {
    return (lon.get_flags(index) | lat.get_flags(index)).good();
  }
  [[nodiscard]] Place corner(std::size_t index) const {
    return {lon.get_data(index), lat.get_data(index)};
  }
};

[[nodiscard]] Vehicle hunter_of(const ComData& data);
[[nodiscard]] Vehicle target_of(const ComData& data, unsigned int target);

// Degrees from 0 to below 360, and from above -180 to 180, of an angle a few turns away at most.
[[nodiscard]] constexpr double full_turn(double degrees) {
  while (degrees < 0.0) degrees += 360.0;
  while (degrees >= 360.0) degrees -= 360.0;
  return degrees;
}
[[nodiscard]] constexpr double half_turn(double degrees) {
  const double turn = full_turn(degrees);
  return turn > 180.0 ? turn - 360.0 : turn;
}

// A vehicle's axes (forward, right, down) in the local frame.
class Body {
 public:
  // `reference` is the heading of the local frame's axis X. Without it only what does not depend on
  // the local frame is known; of a vehicle that nobody wants nothing is.
  Body(const Vehicle& vehicle, const Real& reference, bool wanted);

  // Whether heading, pitch and roll are known; whether places in the local frame are.
  [[nodiscard]] bool has_attitude() const { return has_attitude_; }
  [[nodiscard]] bool is_placed() const { return is_placed_; }

  // From the vehicle's axes to the local frame; from those of north, if the reference is not known.
  [[nodiscard]] const Lib::Matrix& axes() const { return axes_; }

  // Where a point of the vehicle is, told from the origin of its outline; in the plane of that, or
  // anywhere.
  [[nodiscard]] Place place(const Place& point) const {
    return {origin_.x + (axes_(0, 0) * point.x + axes_(0, 1) * point.y),
            origin_.y + (axes_(1, 0) * point.x + axes_(1, 1) * point.y)};
  }
  [[nodiscard]] Place place(const Lib::Triple& point) const {
    const Lib::Triple v = Lib::turned(axes_, point);
    return {origin_.x + v.x, origin_.y + v.y};
  }

 private:
  Lib::Matrix axes_;
  Place origin_;
  bool has_attitude_;
  bool is_placed_;
};

// The hunter and one target, both placed, for the computed outputs that need them.
struct Scene {
  const ComKey::KeyMain& wanted;
  const ComKey::KeyTarget& wanted_of_target;
  DataMain& main;
  DataTarget& target;
  const Vehicle& hunter_vehicle;
  const Vehicle& target_vehicle;
  const Body& hunter;
  const Body& other;
  const Lib::StampExt& now;
};

// Parts of compute_frames: corners of outlines with the nearest points and the centres, and
// sensors.
void compute_outlines(const Scene& scene);
void compute_sensors(const Scene& scene);

}  // namespace Trel::Rng
