// Vectors of three and rotations of decoders, as numbers and as matrices of the family.
//
// Most vectors are only turned, many for a packet, and what the functions of the family check of
// their arguments would cost more than the nine products; so that is done here, on finite numbers,
// and so is what leads from angles to rotations and back.
// A work matrix owns its storage and is never copied.
#pragma once

#include <array>
#include <cstddef>

#include "library/matrix_record.h"

namespace Trel::Lib {

struct Triple {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

// A matrix record over storage of its own, empty until it is filled.
template <int Rows, int Cols>
class WorkMatrix : public RealMatrix {
 public:
  WorkMatrix() { clear(); }
  WorkMatrix(const WorkMatrix&) = delete;
  WorkMatrix& operator=(const WorkMatrix&) = delete;

  void clear() { static_cast<RealMatrix&>(*this) = {storage_.data(), 0, 0, Rows, Cols}; }
  double& operator()(int row, int col) { return storage_[place(row, col)]; }
  double operator()(int row, int col) const { return storage_[place(row, col)]; }

 private:
  [[nodiscard]] static constexpr std::size_t place(int row, int col) {
    return static_cast<std::size_t>(row * Cols + col);
  }

  std::array<double, static_cast<std::size_t>(Rows* Cols)> storage_{};
};

using Matrix = WorkMatrix<3, 3>;

// A column of three.
class Vector : public WorkMatrix<3, 1> {
 public:
  Vector() = default;
  Vector(double x, double y, double z) { set(x, y, z); }
  explicit Vector(const Triple& t) { set(t.x, t.y, t.z); }

  void set(double x, double y, double z) {
    (*this)[0] = x;
    (*this)[1] = y;
    (*this)[2] = z;
    rows = 3;
    cols = 1;
  }
  double& operator[](int axis) { return (*this)(axis, 0); }
  double operator[](int axis) const { return (*this)(axis, 0); }
  [[nodiscard]] Triple triple() const { return {(*this)[0], (*this)[1], (*this)[2]}; }
};

// M v and M' v, of a rotation and a vector.
[[nodiscard]] inline Triple turned(const Matrix& m, const Triple& v) {
  return {m(0, 0) * v.x + m(0, 1) * v.y + m(0, 2) * v.z,
          m(1, 0) * v.x + m(1, 1) * v.y + m(1, 2) * v.z,
          m(2, 0) * v.x + m(2, 1) * v.y + m(2, 2) * v.z};
}
[[nodiscard]] inline Triple turned_back(const Matrix& m, const Triple& v) {
  return {m(0, 0) * v.x + m(1, 0) * v.y + m(2, 0) * v.z,
          m(0, 1) * v.x + m(1, 1) * v.y + m(2, 1) * v.z,
          m(0, 2) * v.x + m(1, 2) * v.y + m(2, 2) * v.z};
}

// What Euler2DirCos makes of heading, pitch and roll, in radians, and DirCos2Euler of a rotation.
void set_rotation(Matrix& m, const Triple& angles);
[[nodiscard]] Triple angles_of(const Matrix& m);

}  // namespace Trel::Lib
