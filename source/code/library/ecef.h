// Geodesy: positions on the earth, reference frames, satellites in the sky, and the local earth
// model of an inertial navigator.
//
// Angles are in radians, lengths in metres, times in seconds unless said otherwise. Latitude is
// geodetic, north positive, within -pi/2..pi/2; longitude is east positive, and results lie within
// -pi..pi (0 on the axis); altitude is above the ellipsoid. Local axes are north, east, down. A
// vector of three is a matrix of one column or one row; a result is a column.
//
// Failure: a function returns an ErrorCode and reports it: kNullPointer; kOutOfRange for a number
// that is not finite or outside the range told, and for shapes that do not fit; kInsufficientSpace
// for the storage of a result. The results are then untouched. Any result may share storage with
// any argument.
#pragma once

#include <array>

#include "library/matrix_record.h"

namespace Trel::Lib {

// Earth-centred, earth-fixed axes: x to latitude 0 and longitude 0, z to the north pole.
struct EcefPosition {
  double x = 0;
  double y = 0;
  double z = 0;
};

struct GeodeticPosition {
  double lat = 0;
  double lon = 0;
  double alt = 0;
};

// Where a satellite stands in the sky: azimuth clockwise from north, from 0 to below 2 pi, and
// elevation above the horizontal.
struct SatelliteDirection {
  double azimuth = 0;
  double elevation = 0;
};

// Rows of semi-major axis a, eccentricity e, a e squared, 1 - e squared.
inline constexpr std::array<std::array<double, 4>, 2> ellipsoids = {{
    {6378137.0, 0.0818191908426, 42697.67270715754, 0.9933056200098622},
    {6378137.0, 0.081819191042832, 42697.67291614128, 0.9933056199770965},
}};

inline constexpr int kFrameCount = 3;

// Rows of a reference epoch (decimal year), seven parameters at that epoch, and their seven rates a
// year. A row leads from the frame of row 0 to its own: translations T1, T2, T3 in millimetres,
// scale difference D in parts per billion, rotations R1, R2, R3 in milliarcseconds, in
//
//   X' = X + T1 + D X - R3 Y + R2 Z
//   Y' = Y + T2 + R3 X + D Y - R1 Z
//   Z' = Z + T3 - R2 X + R1 Y + D Z
//
// which is the sign of rotations of the IERS Conventions (2010), IERS Technical Note 36, chapter 4.
// Row 0 is ITRF2014; rows 1 (ITRF2008) and 2 (ITRF97) are the International Earth Rotation and
// Reference Systems Service's "Transformation parameters from ITRF2014 to past ITRFs", epoch
// 2010.0.
inline constexpr std::array<std::array<double, 15>, kFrameCount> frames = {{
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
    {2010.0, 1.6, 1.9, 2.4, -0.02, 0, 0, 0, 0.0, 0.0, -0.1, 0.03, 0, 0, 0},
    {2010.0, 7.4, -0.5, -62.8, 3.80, 0, 0, 0.26, 0.1, -0.5, -3.3, 0.12, 0, 0, 0.02},
}};

// Positions.

// From 100 km below the ellipsoid to 50,000 km above it the result is good to 1e-9 degrees and
// 1e-4 m. Anywhere else outside the earth's core (50 km) it is a position that leads back. The
// earth's centre is kOutOfRange.
int Ecef2Wgs84(GeodeticPosition* llh, const EcefPosition* xyz);
int Wgs842Ecef(EcefPosition* xyz, const GeodeticPosition* llh);

// The same on row `ellipsoid` of the table. Returns -1, without a report, for the earth's centre.
int Xyz2Llh(GeodeticPosition* llh, const EcefPosition* xyz, int ellipsoid);

// Between WGS84 and PZ90, which differ by a translation of (0.36, -0.08, -0.18) m.
int Wgs842PZ90(EcefPosition* pz90, const EcefPosition* wgs84);
int PZ902Wgs84(EcefPosition* wgs84, const EcefPosition* pz90);

// Takes a position from frame `source` to frame `target`, both rows of `frames`, at `time` (decimal
// year). Equal frames leave it as it is, to the bit. There and back agree to rounding.
int ConvertRefFrame(EcefPosition* xyz, int source, int target, double time);

// Satellites.

// The direction in which a receiver sees a satellite; the two must not be in one place. SatAngles
// takes the receiver in both forms, which the caller keeps in agreement.
int Ecef2SatAngles(SatelliteDirection* direction, const EcefPosition* receiver,
                   const EcefPosition* satellite);
int Wgs842SatAngles(SatelliteDirection* direction, const GeodeticPosition* receiver,
                    const EcefPosition* satellite);
int SatAngles(SatelliteDirection* direction, const GeodeticPosition* receiver_llh,
              const EcefPosition* receiver_xyz, const EcefPosition* satellite);

// C turns earth-fixed axes into the local axes at `llh`, whose altitude does not matter.
int Ecef2NedRotation(RealMatrix* c, const GeodeticPosition* llh);

// Local earth model. Altitudes are above -6,000,000 m.

// Normal gravity by the formula of 1967, in metres per second squared, falling off with the square
// of the distance from the centre of a sphere.
int Lib__compute_local_gravity_magnitude(double* gravity, double lat, double alt);
// The same as a vector in local axes: it points down.
int Lib__compute_local_gravity(RealMatrix* gravity, double lat, double alt);

// Radii of curvature of the ellipsoid along the meridian and across it.
int Lib__compute_earth_curvature(double* meridian, double* transverse, double lat);

// The earth's rate of rotation in local axes, in radians per second.
int Lib__compute_earth_local_projection(RealMatrix* rate, double lat);

// The rate at which the local axes turn because the position moves over the earth with `velocity`
// (local axes), in radians per second. kIllConditioned within 1e-8 of a pole, where east has no
// meaning.
int Lib__compute_transport_rate(RealMatrix* rate, const GeodeticPosition* position,
                                const RealMatrix* velocity);

// Inertial corrections: from what an inertial unit senses in body axes to the motion over the earth
// in local axes.

// What is to be added in local axes: to acceleration, gravity less the Coriolis term
// (2 earth rate + transport rate) x velocity; to angular rate, -(earth rate + transport rate).
// Fails as Lib__compute_transport_rate does.
int Lib__compute_imu_b2n_corrections(RealMatrix* acceleration, RealMatrix* rate,
                                     const GeodeticPosition* position, const RealMatrix* velocity);

// R = C A + correction, with C the matrix from body to local axes and A the sensed acceleration, or
// angular rate, in body axes.
int Lib__apply_imu_b2n_corrections_a(RealMatrix* r, const RealMatrix* c, const RealMatrix* a,
                                     const RealMatrix* correction);
int Lib__apply_imu_b2n_corrections_w(RealMatrix* r, const RealMatrix* c, const RealMatrix* w,
                                     const RealMatrix* correction);

// Both steps at once, for the sensed acceleration A and angular rate W.
int Lib__compute_and_apply_imu_b2n_corrections(RealMatrix* acceleration, RealMatrix* rate,
                                               const RealMatrix* c, const RealMatrix* a,
                                               const RealMatrix* w,
                                               const GeodeticPosition* position,
                                               const RealMatrix* velocity);

}  // namespace Trel::Lib
