#include "sto/Sto_StreamNCom.h"

namespace Trel::Sto {

namespace {

constexpr unsigned int kPacketSize = 72;
constexpr unsigned int kLeastRangeSize = 77;

}  // namespace

StreamNCom::StreamNCom(Enum::TRANSPORT_TYPE transport, unsigned int serial)
    : StreamNav(transport, Enum::CODEC_TYPE_NCOM, serial) {}

StreamNCom::~StreamNCom() = default;

bool StreamNCom::raw_packet(const unsigned char* data, unsigned int size) {
  if (size == kPacketSize) return codec.DecodeBasic(data, false) == kPrescanComplete;
  if (size >= kLeastRangeSize) return codec.DecodeRange(data, size, true) == kPrescanComplete;
  return false;
}

void StreamNCom::let_scan() {
  StreamNav::let_scan();
  if (getTrans() == Enum::TRANSPORT_TYPE_RNG) let_source(codec.Key());
}

void StreamNCom::note_scan(Com::Meta& header) {
  StreamNav::note_scan(header);
  if (getTrans() != Enum::TRANSPORT_TYPE_RNG) return;
  Com::Meta* range = meta.find_aux_header("{Trel-Range}");
  if (range != nullptr) note_source(*range, data_end);
}

}  // namespace Trel::Sto
