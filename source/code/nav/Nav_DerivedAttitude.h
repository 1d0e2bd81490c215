// Direction cosines of one attitude, and what else angles in degrees need.
//
// An attitude is three turns: by heading about the third axis, by pitch about the second, by roll
// about the first. Told so, heading, pitch and roll of north-east-down axes and yaw, pitch and roll
// of ISO 8855 axes are the same mathematics. A matrix is computed when it is asked for, and kept
// until the angles change.
#pragma once

#include "nav/Nav_DerivedVector.h"
#include "nav/Nav_Scale.h"

namespace Trel::Nav {

using Lib::wrapped;

class Attitude {
 public:
  // Takes the angles, in degrees; they must be finite.
  void set(double heading, double pitch, double roll);

  // In radians.
  [[nodiscard]] const Vector& angles() const { return angles_; }
  // From body axes to the outer frame; from body axes to the level frame; from the level frame to
  // the outer one.
  [[nodiscard]] const Matrix& body_to_outer() {
    if (body_to_outer_.rows == 0) Lib::Euler2DirCos(&body_to_outer_, &angles_);
    return body_to_outer_;
  }
  [[nodiscard]] const Matrix& body_to_level() {
    if (body_to_level_.rows == 0) Lib::Euler2DirCos2(&body_to_level_, &angles_);
    return body_to_level_;
  }
  [[nodiscard]] const Matrix& level_to_outer() {
    if (level_to_outer_.rows == 0) Lib::Euler2DirCosH(&level_to_outer_, &angles_);
    return level_to_outer_;
  }

  // Forgets angles and matrices.
  void Reset();

 private:
  std::array<double, 3> degrees_{};
  Vector angles_;
  Matrix body_to_outer_;
  Matrix body_to_level_;
  Matrix level_to_outer_;
};

}  // namespace Trel::Nav
