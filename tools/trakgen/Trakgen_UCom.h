// UCom streams: the vehicle's signals in messages of different rates, or uniform ones to measure
// with.
#pragma once

#include <memory>

#include "trakgen/Trakgen_Options.h"
#include "trakgen/Trakgen_Shape.h"

namespace Trel::Trakgen {

[[nodiscard]] std::unique_ptr<StreamShape> make_ucom_shape(const Options& options);

}  // namespace Trel::Trakgen
