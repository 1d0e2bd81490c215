// The vectors that computed outputs work on: three axes of the record.
#pragma once

#include <cmath>

#include "library/matrix.h"
#include "nav/Nav_ComData.h"

namespace Trel::Nav {

using Lib::Matrix;
using Lib::Triple;
using Lib::turned;
using Lib::turned_back;
using Lib::Vector;

// Three values of the record that make one vector.
struct Axes {
  using Value = Lib::VariableExt<double>& (ComData::*)();

  Value x;
  Value y;
  Value z;

  // Whether all are valid, and finite, so that `vector` holds them.
  bool read(ComData& data, Triple& vector) const {
    const auto& vx = (data.*x)();
    const auto& vy = (data.*y)();
    const auto& vz = (data.*z)();
    if (!vx.good() || !vy.good() || !vz.good()) return false;
    vector = {vx.get(), vy.get(), vz.get()};
    return std::isfinite(vector.x) && std::isfinite(vector.y) && std::isfinite(vector.z);
  }
  void write(ComData& data, const Triple& vector) const {
    (data.*x)().set(vector.x, data.VarNano());
    (data.*y)().set(vector.y, data.VarNano());
    (data.*z)().set(vector.z, data.VarNano());
  }
  void invalidate(ComData& data) const {
    (data.*x)().invalidate();
    (data.*y)().invalidate();
    (data.*z)().invalidate();
  }
};

#define TREL_NAV_HIT(value) &::Trel::Nav::ComData::Hit##value
#define TREL_NAV_AXES(x, y, z)                        \
  ::Trel::Nav::Axes {                                 \
    TREL_NAV_HIT(x), TREL_NAV_HIT(y), TREL_NAV_HIT(z) \
  }
// The axes X, Y, Z of an ISO vector.
#define TREL_NAV_ISO_AXES(name) TREL_NAV_AXES(name##X, name##Y, name##Z)

}  // namespace Trel::Nav
