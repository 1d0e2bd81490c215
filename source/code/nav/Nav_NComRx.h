// The codec of NCom packets: 72 bytes, status channel at byte 62. See Nav_ComBase.h.
#pragma once

#include "nav/Nav_ComBase.h"
#include "nav/Nav_Feature.h"
#include "nav/Nav_Scale.h"

namespace Trel::Nav {

class NComCodec : public ComBase, public NComScales {
 public:
  explicit NComCodec(bool prescan);

  // The body of a range packet that wraps packets of this family: five bytes that tell where they
  // came from, then the packets. Result as of DecodeBasic; a packet that fails its sum is passed
  // over. Up to 4 bytes hold nothing.
  int DecodeRange(const unsigned char* data, unsigned int size, bool check);

  [[nodiscard]] bool IsFeatureCodeEnabled(unsigned int code) const {
    return Nav::IsFeatureCodeEnabled(data_, code);
  }

 private:
  void set_provenance(const unsigned char* header);
};

}  // namespace Trel::Nav
