#include "nav/Nav_Sync.h"

namespace Trel::Nav {

namespace {

Lib::PacketStatus status_of(unsigned int available, const unsigned char* data, unsigned char sync,
                            unsigned int size) {
  if (available == 0) return Lib::kPacketIncomplete;
  if (data[0] != sync) return Lib::kPacketBad;
  return Lib::check_packet(available, data, size);
}

}  // namespace

Lib::PacketStatus PacketForms::status(unsigned int available, const unsigned char* data,
                                      unsigned int& size, Enum::CODEC_TYPE& type) {
  size = 0;
  if (available == 0) return Lib::kPacketIncomplete;
  if (!starts(data[0])) return Lib::kPacketBad;
  const bool ncom = data[0] == kNComSync;
  type = ncom ? Enum::CODEC_TYPE_NCOM : Enum::CODEC_TYPE_MCOM;
  size = ncom ? kNComSize : kMComSize;
  return Lib::check_packet(available, data, size);
}

Lib::PacketStatus PacketForms::status_ncom(unsigned int available, const unsigned char* data) {
  return status_of(available, data, kNComSync, kNComSize);
}

Lib::PacketStatus PacketForms::status_mcom(unsigned int available, const unsigned char* data) {
  return status_of(available, data, kMComSync, kMComSize);
}

}  // namespace Trel::Nav

template class Trel::Lib::PacketSync<Trel::Nav::PacketForms>;
