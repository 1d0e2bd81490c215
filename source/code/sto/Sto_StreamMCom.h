// A stream of MCom packets: as of NCom, from a vessel.
#pragma once

#include "nav/Nav_MComRx.h"
#include "sto/Sto_StreamNav.h"

namespace Trel::Sto {

class StreamMCom final : public StreamNav<Nav::MComCodec, AccessMCom> {
 public:
  StreamMCom(Enum::TRANSPORT_TYPE transport, unsigned int serial);
  ~StreamMCom() override;

 private:
  // A bare packet; what is of another size is none.
  bool raw_packet(const unsigned char* data, unsigned int size) override;
};

}  // namespace Trel::Sto
