#include "nav/Nav_ComBase.h"

#include <algorithm>
#include <bit>

#include "nav/Nav_Packet.h"

namespace Trel::Nav {

namespace {

constexpr unsigned int kIndexStep = 16;
// What stands ahead of a packet in a recording.
constexpr unsigned int kSuperPrefix = 8;
constexpr int kRxVersion = 22;
// What no key tells, as each has been set once.
constexpr unsigned int kNoChanges = 0;

}  // namespace

void ComBase::Index::advance() {
  value_ = std::bit_cast<double>(std::bit_cast<unsigned long long>(value_) + kIndexStep);
}

ComBase::ComBase(const PacketForm& form, bool prescan)
    : form_(form),
      status_(data_, key_, clock_, filters_, form),
      derived_(data_, key_, filters_, form) {
  Invalidate(prescan);
}

int ComBase::DecodeBasic(const unsigned char* data, bool check) {
  if (data == nullptr) return 0;
  count_bytes(form_.size);
  return passes(data, form_.size, check) ? DecodeInner(data, form_.size) : 0;
}

int ComBase::DecodeSuper(const unsigned char* data, unsigned int size, bool check) {
  if (data == nullptr || size == 0) return 0;
  count_bytes(size);
  if (size < form_.size) return 0;
  const unsigned char* packet = data + kSuperPrefix;
  const unsigned int available = size - kSuperPrefix;
  return passes(packet, available, check) ? DecodeInner(packet, available) : 0;
}

int ComBase::DecodeInner(const unsigned char* data, unsigned int available) {
  packet_ = available < form_.size ? padded(data, available) : data;
  if (prescan_.active) {
    PrescanNav();
  } else {
    UpdateNav();
  }
  if (packets_ == 0) skipped_ = 0;
  ++packets_;
  packet_ = nullptr;
  number_packet();
  if (!prescan_.active || prescan_.state != Prescan::kPredicting) return 1;
  prescan_.active = false;
  return 2;
}

const unsigned char* ComBase::padded(const unsigned char* data, unsigned int available) {
  padded_.fill(0);
  std::copy_n(data, available, padded_.begin());
  return padded_.data();
}

void ComBase::number_packet() {
  if (data_.IsTimeValid()) {
    data_.SetIndex(data_.GetTime());
    if (data_.GetTime() > index_.get()) index_.set(data_.GetTime());
    return;
  }
  index_.advance();
  if (!prescan_.active) data_.SetIndex(index_.get());
}

void ComBase::PrescanRewind(bool apply) {
  if (prescan_.active && prescan_.state == Prescan::kPrescanning) {
    prescan_.state = Prescan::kPredicting;
    prescan_.active = false;
  }
  InvalidatePrivate(false, false);
  if (prescan_.offsets.inv_first2gps()) {
    prescan_.state = Prescan::kUndecided;
    prescan_.ivalCounter();
    prescan_.ivalInitCounter();
    nano_off_.Invalidate();
  } else {
    prescan_.state = Prescan::kPredicting;
    prescan_.initCounter();
    prescan_.initInitCounter();
    nano_off_ = prescan_.offsets;
  }
  if (apply) apply_prescan();
}

void ComBase::apply_prescan() {
  if (prescan_.start_known) {
    set_nano(prescan_.start_nano);
    TimingsCompute();
  }
  if (prescan_.utc_known) data_.SetTimeUtcOffset(prescan_.utc_offset);

  const auto approximate = [](auto&... values) { (values.setApprox(), ...); };
  if (prescan_.position.known) {
    held_ |= kPos;
    const auto& [lat, lon, alt] = prescan_.position.value;
    data_.SetLat(lat);
    data_.SetLon(lon);
    data_.SetAlt(alt);
    approximate(data_.HitLat(), data_.HitLon(), data_.HitAlt());
  }
  if (prescan_.velocity.known) {
    held_ |= kVel;
    const auto& [north, east, down] = prescan_.velocity.value;
    data_.SetVn(north);
    data_.SetVe(east);
    data_.SetVd(down);
    data_.SetVu(-down);
    approximate(data_.HitVn(), data_.HitVe(), data_.HitVd(), data_.HitVu());
  }
  if (prescan_.attitude.known) {
    held_ |= kAngPos;
    const auto& [heading, pitch, roll] = prescan_.attitude.value;
    data_.SetHeading(heading);
    data_.SetPitch(pitch);
    data_.SetRoll(roll);
    approximate(data_.HitHeading(), data_.HitPitch(), data_.HitRoll());
  }
  if (prescan_.mounting.known) {
    const auto& [heading, pitch, roll] = prescan_.mounting.value;
    data_.SetImu2VehHeading(heading);
    data_.SetImu2VehPitch(pitch);
    data_.SetImu2VehRoll(roll);
    approximate(data_.HitImu2VehHeading(), data_.HitImu2VehPitch(), data_.HitImu2VehRoll());
  }
  if (prescan_.features_known) {
    for (unsigned int code = 0; code < ComData::kFeatures; ++code) {
      data_.SetFeatureCode(code, prescan_.features[code]);
    }
  }
}

void ComBase::InvalidatePrivate(bool all, bool prescan) {
  clock_.Invalidate();
  nano_off_.Invalidate();
  if (all) prescan_.Invalidate(prescan);
  status_.Reset();
  key_changes_ = kNoChanges;
  held_ = 0;
  regular_rate_.Invalidate();
  derived_.Reset();
  filters_.Reset();
  Invalidate();
  data_.SetRxVersionId(kRxVersion);
}

void ComBase::Invalidate() {
  bytes_ = 0;
  skipped_ = 0;
  packets_ = 0;
  data_.Invalidate();
  index_.reset();
}

}  // namespace Trel::Nav
