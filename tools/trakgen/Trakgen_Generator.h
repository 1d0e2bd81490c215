// Puts a recording together: scene, shape and output.
#pragma once

#include "trakgen/Trakgen_Options.h"

namespace Trel::Trakgen {

// Writes the recording that `options` describe. A file that cannot be written throws
// std::runtime_error.
void generate(const Options& options);

}  // namespace Trel::Trakgen
