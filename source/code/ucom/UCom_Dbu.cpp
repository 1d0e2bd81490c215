#include "ucom/UCom_Dbu.h"

#include <algorithm>
#include <utility>

#include "ucom/UCom_Recursive.h"
#include "ucom/UCom_SignalX.h"

namespace Trel::UCom {
namespace {

using Json = nlohmann::json;

constexpr int kVersion = 1;

}  // namespace

void Dbu::configure(const Json& document) {
  clear();
  if (!document.is_object()) return;
  const auto version = document.find("V");
  const auto messages = document.find("M");
  const auto signals = document.find("S");
  const auto end = document.end();
  if (version == end || !version->is_number_integer() || *version != kVersion) return;
  if (messages == end || !messages->is_array()) return;
  if (signals == end || !signals->is_array()) return;

  RecursiveMessages message_lookup;
  RecursiveSignals signal_lookup;
  message_lookup.import(*messages);
  signal_lookup.import(*signals);
  parse_messages(message_lookup);
  parse_signals(signal_lookup);
  connect_up();
  index_messages();
}

void Dbu::arrange(sid_t time) {
  for (Message* message : messages_) message->arrange(time);
}

const Signal* Dbu::find_signal(sid_t sid) const {
  const auto found = signals_by_sid_.find(sid);
  return found == signals_by_sid_.end() ? nullptr : found->second.get();
}

const Message* Dbu::find_message(mid_t mid) const {
  const auto found = messages_by_mid_.find(mid);
  return found == messages_by_mid_.end() ? nullptr : found->second.get();
}

std::uint32_t Dbu::get_reach() const {
  std::uint32_t reach = 0;
  for (const Message* message : messages_) reach = std::max(reach, message->get_reach());
  return reach;
}

void Dbu::clear() {
  by_number_.clear();
  messages_.clear();
  signals_.clear();
  messages_by_mid_.clear();
  signals_by_sid_.clear();
}

void Dbu::parse_messages(RecursiveMessages& lookup) {
  for (const auto& [mid, entry] : lookup.get_entries()) {
    if (!lookup.is_usable(mid)) continue;
    auto message = std::make_unique<Message>(lookup.get_basic(mid));
    if (message->parse(lookup)) messages_by_mid_.try_emplace(mid, std::move(message));
  }
}

void Dbu::parse_signals(RecursiveSignals& lookup) {
  for (const auto& [sid, entry] : lookup.get_entries()) {
    if (!lookup.is_usable(sid)) continue;
    auto signal = make_signal(lookup.get_basic(sid));
    if (signal != nullptr && signal->parse(lookup)) {
      signals_by_sid_.try_emplace(sid, std::move(signal));
    }
  }
}

void Dbu::connect_up() {
  for (const auto& [mid, message] : messages_by_mid_) message->connect(signals_by_sid_);
  for (const auto& [mid, message] : messages_by_mid_) {
    if (message->get_signals().empty()) continue;
    message->set_mix(messages_.size());
    messages_.push_back(message.get());
  }
  for (const auto& [sid, signal] : signals_by_sid_) {
    if (!signal->is_listed()) continue;
    signal->set_six(signals_.size());
    signals_.push_back(signal.get());
  }
}

void Dbu::index_messages() {
  for (const auto& [mid, message] : messages_by_mid_) {
    if (mid >= kNumbers) break;
    by_number_.resize(mid + 1);
    by_number_[mid] = message.get();
  }
}

}  // namespace Trel::UCom
