#include "ucom/UCom_Codec.h"

#include <algorithm>

#include "library/Lib_Cast.h"

namespace Trel::UCom {
namespace {

constexpr std::size_t kNumberSize = 2;

}  // namespace

void Codec::configure(const nlohmann::json& document, bool flag) {
  dbu_.configure(document);
  com_data_.reset();
  nano_sid = sid_t_inv;
  nano_six = six_t_inv;
  for (Signal* signal : dbu_.get_signals()) {
    if (nano_six == six_t_inv && signal->get_mea_type() == Enum::BASIC_TYPE_int64_t &&
        signal->get_name() == "Nano") {
      signal->set_slot(com_data_.get_nano_slot());
      nano_sid = signal->get_sid();
      nano_six = signal->get_six();
      continue;
    }
    std::uint32_t slot = 0;
    if (com_data_.configure_slot(signal->get_mea_type(), slot)) signal->set_slot(slot);
  }
  dbu_.arrange(nano_sid);
  scratch_.assign(dbu_.get_reach(), 0);
  invalidate(flag);
}

void Codec::rewind(bool flag) {
  if (prescan_.state == 0) prescan_.state = 1;
  invalidate_private(false, false);
  if (flag && prescan_.state == 2) {
    Lib::StampExt stamp;
    stamp.wipe();
    stamp.set_nano(prescan_.start);
    com_data_.set_Nano(prescan_.start, stamp);
  }
}

inline Codec::Packet Codec::open(const unsigned char* bytes, std::size_t size) {
  if (bytes == nullptr || size <= kNumberSize) return {nullptr, nullptr};
  const Message* message = dbu_.get_message_by_mid(cast_2_byte_LE_to_uint16(bytes));
  if (message == nullptr) return {nullptr, nullptr};
  const unsigned char* const data = bytes + kNumberSize;
  size -= kNumberSize;
  return {message, size >= message->get_reach() ? data : extend(data, size, message->get_reach())};
}

const unsigned char* Codec::extend(const unsigned char* data, std::size_t size, std::size_t reach) {
  std::copy_n(data, size, scratch_.begin());
  std::fill_n(scratch_.begin() + static_cast<std::ptrdiff_t>(size), reach - size, 0);
  return scratch_.data();
}

void Codec::decode_regular(const unsigned char* bytes, std::size_t size) {
  const Packet packet = open(bytes, size);
  if (packet.message == nullptr) return;
  Values& values = com_data_.values();
  const Lib::StampExt& stamp = com_data_.Nano();
  const auto decode_runs = [&, data = packet.data](const std::vector<SignalRun>& runs) {
    for (const SignalRun run : runs) run.front()->decode(run, values, stamp, data);
  };
  const SignalList& signals = packet.message->get_list();
  decode_runs(signals.get_runs_to_time());
  if (!signals.get_runs_to_time().empty()) com_data_.Stamp();
  decode_runs(signals.get_runs_behind_time());
}

void Codec::decode_prescan(const unsigned char* bytes, std::size_t size) {
  const Packet packet = open(bytes, size);
  if (packet.message == nullptr) return;
  const auto& signals = packet.message->get_signals();
  const auto nano = signals.find(nano_sid);
  if (nano == signals.end()) return;
  nano->second->accept(com_data_, packet.data);
  com_data_.Stamp();
  if (com_data_.Nano().good()) {
    prescan_.state = 2;
    prescan_.start = com_data_.Nano().get();
  }
}

void Codec::invalidate_private(bool prescan, bool flag) {
  com_data_.invalidate();
  if (prescan) prescan_.invalidate(flag);
}

}  // namespace Trel::UCom
