// Puts a recording together: scene, shapes and output.
#pragma once

#include "trakgen/Trakgen_Options.h"

namespace Trel::Trakgen {

// Writes the recording that `options` describe, or where options.out is the name of a raw file the
// packets of its first vehicle's inertial unit alone, or all those of a range measurement. The
// streams share the file in the order of their packets' times; by serial number those of UCom come
// first, then CAN, NCom, MCom and RCom. A file that cannot be written throws std::runtime_error.
void generate(const Options& options);

}  // namespace Trel::Trakgen
