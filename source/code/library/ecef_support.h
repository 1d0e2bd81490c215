// What the sources of the geodesy share; no client includes this header.
#pragma once

#include "library/ecef.h"
#include "library/matrix_support.h"

namespace Trel::Lib {

// The code with which a position, or a latitude, is refused.
int position_code(const EcefPosition* xyz);
int position_code(const GeodeticPosition* llh);
int latitude_code(double lat);

// From earth-fixed to local axes.
Matrix3 ned_rotation(double lat, double lon);

}  // namespace Trel::Lib
