#include "nav/Nav_Feature.h"

namespace Trel::Nav {

bool FeaturePacket::read(const unsigned char*, unsigned int&, FeatureRecord&) {
  return false;
}

bool ProductPacket::read(const unsigned char*, Enum::PRODUCT_TYPE&) {
  return false;
}

bool IsFeatureCodeEnabled(const ComData& data, unsigned int code) {
  if (code >= ComData::kFeatures) return true;
  const FeatureRecord& record = data.GetFeatureCode(code);
  return !record.known || record.status != Enum::FEATURE_STATUS_UNKNOWN;
}

}  // namespace Trel::Nav
