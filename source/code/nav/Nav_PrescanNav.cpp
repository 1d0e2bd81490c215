#include "nav/Nav_ComBase.h"
#include "nav/Nav_Feature.h"
#include "nav/Nav_Packet.h"

namespace Trel::Nav {

namespace {

// Three axes at a factor; false unless each has a number.
bool read_axes(const unsigned char* axes, double factor, std::array<double, 3>& values) {
  bool found = true;
  for (unsigned int axis = 0; axis < 3; ++axis) {
    found &= read_axis(axes, axis, factor, values[axis]);
  }
  return found;
}

bool read_place(const unsigned char* packet, std::array<double, 3>& values) {
  bool found = true;
  for (unsigned int index = 0; index < 3; ++index) {
    found &= read_position(packet, index, values[index]);
  }
  return found;
}

}  // namespace

void ComBase::PrescanNav() {
  prescan_.status = Enum::Cast_NAVIGATION_STATUS(packet_[kStatusAt]);
  prescan_.packet_type = nav_status_to_output_packet_type(prescan_.status);
  if (prescan_.packet_type == Enum::NAV_OUTPUT_PACKET_TYPE_EMPTY) return;
  if (prescan_.packet_type == Enum::NAV_OUTPUT_PACKET_TYPE_EXTRA) {
    if (form_.licensed) PrescanFeatureCodes();
  } else {
    if (prescan_.offsets.inv_first2gps()) prescan_.incrCounter();
    if (prescan_.offsets.inv_init2gps()) prescan_.incrInitCounter();
    if (prescan_.status > Enum::NAVIGATION_STATUS_RAWIMU) {
      prescan_time();
      prescan_samples();
    }
    PrescanStatusMsg();
  }
  if (prescan_.complete()) prescan_.state = Prescan::kPredicting;
}

void ComBase::prescan_time() {
  if (!advance_clock()) return;
  if (prescan_.learn_offsets(prescan_.offsets, clock_.nano(), prescan_.status)) {
    prescan_.minutes = clock_.get_minutes();
    prescan_.milliseconds = clock_.get_milliseconds();
  }
  if (prescan_.start_known || prescan_.offsets.inv_start2gps()) return;
  prescan_.start_known = true;
  prescan_.start_nano = prescan_.offsets.get_start2gps();
}

void ComBase::prescan_samples() {
  const unsigned char* packet = packet_;
  std::array<double, 3> sample{};
  if (!prescan_.position.known) {
    prescan_.position.keep(read_place(packet, sample), sample);
  }
  if (!prescan_.velocity.known) {
    prescan_.velocity.keep(read_axes(packet + kVelAt, ComScales::VEL2MPS, sample), sample);
  }
  if (!prescan_.attitude.known) {
    const bool found = read_axes(packet + kAngPosAt, kAngleFactor, sample);
    sample[0] = wrap_heading(sample[0]);
    prescan_.attitude.keep(found, sample);
  }
}

void ComBase::PrescanStatusMsg() {
  const unsigned char* p = status_msg() + 1;
  if (status_msg()[0] == kTimeChannel && prescan_.status > Enum::NAVIGATION_STATUS_RAWIMU) {
    int minutes = 0;
    if (read_minutes(p, minutes)) clock_.set_minutes(minutes);
  }
  if (status_msg()[0] != kMountingChannel) return;
  if (!prescan_.utc_known) prescan_.utc_known = read_utc_offset(p, prescan_.utc_offset);
  std::array<double, 3> angles{};
  for (unsigned int axis = 0; axis < 3; ++axis) {
    angles[axis] = cast_2_byte_LE_to_int16(p + 2 * axis) * kMountingFactor;
  }
  prescan_.mounting.keep(p[6] == 0, angles);
}

void ComBase::PrescanFeatureCodes() {
  unsigned int code = 0;
  FeatureRecord record;
  if (FeaturePacket::read(packet_, code, record)) prescan_.setFeatureCode(code, record);
}

}  // namespace Trel::Nav
