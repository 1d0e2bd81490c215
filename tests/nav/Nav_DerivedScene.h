// A record, its keys and filters, and the computed outputs over them, for the tests of the outputs:
// every key is on, and the packet is one at 1000 s.
#pragma once

#include <gtest/gtest.h>

#include <cmath>

#include "nav/Nav_Derived.h"

namespace nav_test {

using namespace Trel;

inline constexpr double kDegree = 3.14159265358979323846 / 180;

inline double sine(double degrees) {
  return std::sin(degrees * kDegree);
}
inline double cosine(double degrees) {
  return std::cos(degrees * kDegree);
}

struct Three {
  double x;
  double y;
  double z;
};

inline double dot(const Three& a, const Three& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline double norm(const Three& a) {
  return std::sqrt(dot(a, a));
}

// Three values of the record, which must be valid, as one vector.
inline Three axes_of(const Lib::VariableExt<double>& x, const Lib::VariableExt<double>& y,
                     const Lib::VariableExt<double>& z) {
  EXPECT_TRUE(x.good() && y.good() && z.good());
  return {x.get(), y.get(), z.get()};
}
#define AXES_OF(data, X, Y, Z) \
  ::nav_test::axes_of((data).Var##X(), (data).Var##Y(), (data).Var##Z())
#define ISO_AXES_OF(data, name) AXES_OF(data, name##X, name##Y, name##Z)

inline void expect_near(const Three& actual, const Three& expected, double tolerance = 1e-12) {
  EXPECT_NEAR(actual.x, expected.x, tolerance);
  EXPECT_NEAR(actual.y, expected.y, tolerance);
  EXPECT_NEAR(actual.z, expected.z, tolerance);
}

struct Scene {
  Nav::ComData data;
  Nav::ComKey key;
  Nav::FilterBank filters;
  Nav::PacketForm form{72, 62, nullptr, nullptr, 0.001, true, true};
  Nav::DerivedOutputs derived{data, key, filters, form};

  Scene() { at(1000.0); }

  Scene& at(double seconds) {
    data.SetNano(std::llround(seconds * 1e9));
    data.SetTime(seconds);
    data.ShareNano();
    return *this;
  }
  Scene& attitude(double heading, double pitch, double roll) {
    data.SetHeading(heading);
    data.SetPitch(pitch);
    data.SetRoll(roll);
    return *this;
  }
  Scene& velocity(double north, double east, double down) {
    data.SetVn(north);
    data.SetVe(east);
    data.SetVd(down);
    return *this;
  }
  Scene& velocity_accuracy(double north, double east, double down) {
    data.SetVnAcc(north);
    data.SetVeAcc(east);
    data.SetVdAcc(down);
    return *this;
  }
  Scene& position(double lat, double lon, double alt) {
    data.SetLat(lat);
    data.SetLon(lon);
    data.SetAlt(alt);
    return *this;
  }
  Scene& acceleration(double x, double y, double z) {
    data.SetAx(x);
    data.SetAy(y);
    data.SetAz(z);
    return *this;
  }
  Scene& rate(double x, double y, double z) {
    data.SetWx(x);
    data.SetWy(y);
    data.SetWz(z);
    return *this;
  }
  Scene& angular_acceleration(double x, double y, double z) {
    data.SetYx(x);
    data.SetYy(y);
    data.SetYz(z);
    return *this;
  }
  // The unit has said that it lacks the feature which the outputs need.
  Scene& without_feature() {
    data.SetFeatureCode(Nav::DerivedOutputs::kMotionFeature,
                        {true, 0, 0, Enum::FEATURE_STATUS_UNKNOWN});
    return *this;
  }
};

}  // namespace nav_test
