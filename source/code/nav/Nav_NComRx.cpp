#include "nav/Nav_NComRx.h"

#include "library/Lib_Cast.h"
#include "nav/Nav_StatusRow.h"
#include "nav/Nav_Sync.h"

namespace Trel::Nav {

namespace {

constexpr unsigned int kChannelAt = 62;
constexpr unsigned int kRangeHeader = 5;
// Provenances: a network, serial ports up to a number, a file, and none.
constexpr unsigned int kNetwork = 0;
constexpr unsigned int kLastSerial = 15;
constexpr unsigned int kFile = 16;
constexpr unsigned int kNoProvenance = 255;

struct NComRows : NComScales {
  static constexpr StatusRow kRows[] = {
#define NCOM_FIELD TREL_NAV_FIELD
#define NCOM_CALL TREL_NAV_CALL
#include "nav/Nav_StatusRows.def"
  };
};

constexpr StatusTable kChannels(NComRows::kRows);
static_assert(kChannels.in_order());

constexpr PacketForm kForm = {
    .size = kNComSize,
    .channel_at = kChannelAt,
    .status = &PacketForms::status_ncom,
    .channels = &kChannels,
    .outpos2m = NComScales::OUTPOS2M,
    .jerk = true,
    .licensed = true,
};

}  // namespace

NComCodec::NComCodec(bool prescan) : ComBase(kForm, prescan) {}

int NComCodec::DecodeRange(const unsigned char* data, unsigned int size, bool check) {
  if (data == nullptr) return 0;
  count_bytes(size);
  if (size >= kRangeHeader) {
    set_provenance(data);
    data += kRangeHeader;
    size -= kRangeHeader;
    count_bytes(kRangeHeader);
  }
  int result = 0;
  while (size >= kNComSize && result < 2) {
    if (passes(data, kNComSize, check)) result = DecodeInner(data, kNComSize);
    data += kNComSize;
    size -= kNComSize;
  }
  return result;
}

void NComCodec::set_provenance(const unsigned char* header) {
  const unsigned int address = cast_4_byte_LE_to_uint32(header);
  const unsigned int provenance = header[4];
  if (!key_.KMain().Get_System_Process() || provenance >= kNoProvenance) {
    data_.InvProvenance();
    data_.InvAddress();
    data_.InvAddressIPv4();
    data_.InvAddressFile();
    data_.InvAddressSerial();
    return;
  }
  data_.SetProvenance(provenance);
  data_.SetAddress(address);
  if (provenance == kNetwork) {
    data_.SetAddressIPv4(address);
  } else if (provenance <= kLastSerial) {
    data_.SetAddressSerial(provenance);
  } else if (provenance == kFile) {
    data_.SetAddressFile(address);
  }
}

}  // namespace Trel::Nav
