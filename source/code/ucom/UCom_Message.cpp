#include "ucom/UCom_Message.h"

#include <algorithm>

#include "ucom/UCom_Recursive.h"
#include "ucom/UCom_Signal.h"

namespace Trel::UCom {

void SignalList::connect(Message& message,
                         const std::map<sid_t, std::unique_ptr<Signal>>& signals) {
  if (messages_.empty()) resolve(signals);
  messages_.emplace(message.get_mid(), &message);
}

void SignalList::resolve(const std::map<sid_t, std::unique_ptr<Signal>>& signals) {
  sequence_.reserve(signals_.size());
  for (auto listed = signals_.begin(); listed != signals_.end();) {
    const auto found = signals.find(listed->first);
    if (found == signals.end()) {
      listed = signals_.erase(listed);
      continue;
    }
    Signal* signal = found->second.get();
    signal->add_list(*this);
    sequence_.push_back(signal);
    reach_ = std::max(reach_, signal->get_reach());
    listed->second = signal;
    ++listed;
  }
}

bool Message::parse(RecursiveMessages& lookup) {
  name = lookup.text(mid, "DN");
  comment = lookup.text(mid, "DC");
  list_ = lookup.list(mid);
  return true;
}

void Message::connect(const std::map<sid_t, std::unique_ptr<Signal>>& signals) {
  list_->connect(*this, signals);
}

}  // namespace Trel::UCom
