#include "sto/Sto_StreamMCom.h"

#include "nav/Nav_Sync.h"

namespace Trel::Sto {

StreamMCom::StreamMCom(Enum::TRANSPORT_TYPE transport, unsigned int serial)
    : StreamNav(transport, Enum::CODEC_TYPE_MCOM, serial) {}

StreamMCom::~StreamMCom() = default;

bool StreamMCom::raw_packet(const unsigned char* data, unsigned int size) {
  return size == Nav::kMComSize && codec.DecodeBasic(data, false) == kPrescanComplete;
}

}  // namespace Trel::Sto
