// Puts a recording together: scene, shapes and output.
#pragma once

#include "trakgen/Trakgen_Options.h"

namespace Trel::Trakgen {

// Writes the recording that `options` describe, or the packets of its first vehicle's inertial unit
// alone where options.out is the name of a raw file. The streams share the file in the order of
// their packets' times; by serial number those of UCom come first, then CAN, then NCom. A file that
// cannot be written throws std::runtime_error.
void generate(const Options& options);

}  // namespace Trel::Trakgen
