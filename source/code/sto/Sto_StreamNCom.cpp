#include "sto/Sto_StreamNCom.h"

namespace Trel::Sto {

namespace {

constexpr unsigned int kPacketSize = 72;
constexpr unsigned int kLeastRangeSize = 77;

}  // namespace

StreamNCom::StreamNCom(Enum::TRANSPORT_TYPE transport, unsigned int serial)
    : StreamNav(transport, Enum::CODEC_TYPE_NCOM, serial) {}

bool StreamNCom::raw_packet(const unsigned char* data, unsigned int size) {
  if (size == kPacketSize) return codec.DecodeBasic(data, false) == kPrescanComplete;
  if (size >= kLeastRangeSize) return codec.DecodeRange(data, size, true) == kPrescanComplete;
  return false;
}

}  // namespace Trel::Sto
