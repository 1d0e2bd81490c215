// What extra packets say of a unit: its licensed features and its product.
//
// The layout of neither packet is known yet, so the readers here find nothing, no record is ever
// set, and the test of a feature passes. A layout is added in a reader's body alone.
#pragma once

#include "nav/Nav_ComData.h"

namespace Trel::Nav {

struct FeaturePacket {
  // What the packet says of one feature; false, with both untouched, if nothing.
  [[nodiscard]] static bool read(const unsigned char* packet, unsigned int& code,
                                 FeatureRecord& record);
};

struct ProductPacket {
  // The type of the product; false, with it untouched, if the packet does not tell.
  [[nodiscard]] static bool read(const unsigned char* packet, Enum::PRODUCT_TYPE& type);
};

// Whether the unit may give what the feature `code` covers: it has said nothing of it, or given it
// a status that is known. A code of ComData::kFeatures or more names no feature, and passes.
[[nodiscard]] bool IsFeatureCodeEnabled(const ComData& data, unsigned int code);

}  // namespace Trel::Nav
