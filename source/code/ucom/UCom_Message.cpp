#include "ucom/UCom_Message.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "ucom/UCom_Recursive.h"
#include "ucom/UCom_Signal.h"

namespace Trel::UCom {
namespace {

// Sorts the signals by kind, and appends those of each kind to `runs`.
void append_runs(std::vector<SignalRun>& runs, std::span<const Signal*> signals) {
  std::ranges::stable_sort(signals, {}, &Signal::get_kind);
  for (auto begin = signals.begin(); begin != signals.end();) {
    const auto end = std::find_if(begin, signals.end(), [begin](const Signal* signal) {
      return signal->get_kind() != (*begin)->get_kind();
    });
    runs.emplace_back(begin, end);
    begin = end;
  }
}

}  // namespace

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

void SignalList::arrange(sid_t time) {
  if (!runs_to_time_.empty() || !runs_behind_time_.empty()) return;
  const std::span all = sequence_;
  const auto found = std::ranges::find(all, time, &Signal::get_sid);
  const auto behind = found == all.end() ? all.begin() : std::next(found);
  append_runs(runs_to_time_, {all.begin(), behind});
  append_runs(runs_behind_time_, {behind, all.end()});
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
