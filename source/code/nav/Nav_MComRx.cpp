#include "nav/Nav_MComRx.h"

#include "library/Lib_Cast.h"
#include "nav/Nav_StatusRow.h"
#include "nav/Nav_StatusSet.h"
#include "nav/Nav_Sync.h"

namespace Trel::Nav {

namespace {

// The tail of the packet.
constexpr unsigned int kHeaveAt = 62;         // signed 16
constexpr unsigned int kDelayedHeaveAt = 64;  // signed 16
constexpr unsigned int kCounterAt = 66;       // unsigned 16
constexpr unsigned int kStatusBitsAt = 68;
constexpr unsigned int kChannelAt = 74;

// The status bits.
constexpr unsigned int kNoModes = 1;
constexpr unsigned int kAttitudeModeHolds = 2;
constexpr unsigned int kHeadingSearchHolds = 4;
constexpr unsigned int kNotFromSearch = 8;  // tells only when the attitude mode does not hold
constexpr auto kNoMode = Enum::COM_GPS_XMODE_TYPE_VALUE_00;
constexpr auto kAttitudeModeLost = Enum::COM_GPS_XMODE_TYPE_VALUE_06;
constexpr auto kNoSearch = Enum::COM_HEADING_SEARCH_STATUS_VALUE_00;

struct MComRows : MComScales {
  static constexpr StatusRow kRows[] = {
#include "nav/Nav_StatusRows.def"
  };
};

constexpr StatusTable kChannels(MComRows::kRows);
static_assert(kChannels.in_order());

constexpr PacketForm kForm = {
    .size = kMComSize,
    .channel_at = kChannelAt,
    .status = &PacketForms::status_mcom,
    .channels = &kChannels,
    .outpos2m = MComScales::OUTPOS2M,
    .jerk = false,
    .licensed = false,
};

}  // namespace

MComCodec::MComCodec(bool prescan) : ComBase(kForm, prescan) {}

void MComCodec::UpdateTail(Enum::NAVIGATION_STATUS status) {
  update_counter();
  apply_status_bits();
  if (status > Enum::NAVIGATION_STATUS_INIT) update_heave();
}

void MComCodec::update_counter() {
  if (!key_.KMain().Get_System_TxRx()) return;
  data_.SetTxPacketCounter(
      incr_2_byte_LE_to_uint32(packet() + kCounterAt, data_.GetTxPacketCounter()));
}

void MComCodec::apply_status_bits() {
  const unsigned int bits = packet()[kStatusBitsAt];
  if ((bits & kNoModes) != 0) {
    if (data_.IsGpsPosModeValid()) data_.SetGpsPosMode(kNoMode);
    if (data_.IsGpsVelModeValid()) data_.SetGpsVelMode(kNoMode);
    if (data_.IsGpsAttModeValid()) data_.SetGpsAttMode(kNoMode);
  }
  const bool attitude = (bits & kAttitudeModeHolds) != 0;
  if (!attitude && data_.IsGpsAttModeValid()) data_.SetGpsAttMode(kAttitudeModeLost);
  if ((bits & kHeadingSearchHolds) == 0 && data_.IsHeadSearchStatusValid()) {
    data_.SetHeadSearchStatus(kNoSearch);
  }
  if (!attitude && data_.IsHeadLockFromSearchValid()) {
    data_.SetHeadLockFromSearch((bits & kNotFromSearch) == 0);
  }
}

void MComCodec::update_heave() {
  const ComKey::KeyMain& key = key_.KMain();
  if (key.Get_Heave_Real()) {
    const int heave = cast_2_byte_LE_to_int16(packet() + kHeaveAt);
    TREL_NAV_SET_IF(heave != kNoneSigned16, data_, Heave, heave * HEAVE2M);
  }
  if (key.Get_Heave_Delayed()) {
    const int heave = cast_2_byte_LE_to_int16(packet() + kDelayedHeaveAt);
    const bool set_up = data_.IsLPHeaveModeValid() && data_.IsLPHeavePeriodValid();
    TREL_NAV_SET_IF(set_up && heave != kNoneSigned16, data_, LPHeave, heave * HEAVE2M);
  }
}

}  // namespace Trel::Nav
