// A stream of NCom packets: the navigation solution of an inertial unit, and what the unit says of
// itself in its slow channels.
#pragma once

#include "nav/Nav_NComRx.h"
#include "sto/Sto_StreamNav.h"

namespace Trel::Sto {

class StreamNCom final : public StreamNav<Nav::NComCodec, AccessNCom> {
 public:
  StreamNCom(Enum::TRANSPORT_TYPE transport, unsigned int serial);
  ~StreamNCom() override;

 private:
  // A bare packet, or, when longer, packets behind a header that tells where they came from.
  bool raw_packet(const unsigned char* data, unsigned int size) override;
  // In a range file the headers also tell where the packets came from.
  void let_scan() override;
  void note_scan(Com::Meta& header) override;
};

}  // namespace Trel::Sto
