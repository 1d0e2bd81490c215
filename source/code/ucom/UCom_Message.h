// The group of signals that are sent together in one packet.
//
// Messages refer to signals and are referred to by them; both belong to the database and live as
// long as it does.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ucom/UCom_Basic.h"

namespace Trel::UCom {

class Message;
class RecursiveMessages;
class Signal;

// The signals that one or several messages list: those that inherit their list share it.
class SignalList {
 public:
  // Adds a signal that is not known yet.
  void insert(sid_t sid) { signals_.emplace(sid, nullptr); }

  // Enters `message` as one that has this list. The first call also looks the signals up in
  // `signals`, tells them, and removes those that are not there.
  void connect(Message& message, const std::map<sid_t, std::unique_ptr<Signal>>& signals);

  // Sorts the connected signals into runs for decoding, in which `time` is the sid of the time
  // signal; it need not be listed. Each signal sets a variable of its own, so all that matters of
  // their order is on which side of the time they stand. Further calls change nothing.
  void arrange(sid_t time);

  // Null pointers until the list is connected.
  [[nodiscard]] const std::map<sid_t, Signal*>& get_signals() const { return signals_; }
  // The runs of the signals up to the time signal, and of those behind it: none and all where it is
  // not listed. None of either before arrange().
  [[nodiscard]] const std::vector<SignalRun>& get_runs_to_time() const { return runs_to_time_; }
  [[nodiscard]] const std::vector<SignalRun>& get_runs_behind_time() const {
    return runs_behind_time_;
  }
  // Bytes of message data that converting the signals can touch.
  [[nodiscard]] std::uint32_t get_reach() const { return reach_; }
  [[nodiscard]] const std::map<mid_t, Message*>& get_messages() const { return messages_; }

 private:
  void resolve(const std::map<sid_t, std::unique_ptr<Signal>>& signals);

  std::map<sid_t, Signal*> signals_;
  std::vector<const Signal*> sequence_;  // of which the runs are parts
  std::vector<SignalRun> runs_to_time_;
  std::vector<SignalRun> runs_behind_time_;
  std::uint32_t reach_ = 0;
  std::map<mid_t, Message*> messages_;
};

class Message {
 public:
  explicit Message(const MessageBasic& basic) : mid(basic.mid) {}
  Message(const Message&) = delete;
  Message& operator=(const Message&) = delete;

  // Reads name, comment and the list of signals. Always true.
  bool parse(RecursiveMessages& lookup);
  // Binds the list, which parse() has read, to the signals of the database.
  void connect(const std::map<sid_t, std::unique_ptr<Signal>>& signals);
  // As SignalList::arrange().
  void arrange(sid_t time) { list_->arrange(time); }

  void set_mix(mix_t value) { mix = value; }

  [[nodiscard]] mid_t get_mid() const { return mid; }
  // The index among the messages that have signals; mix_t_inv for one without.
  [[nodiscard]] mix_t get_mix() const { return mix; }
  [[nodiscard]] const std::string& get_name() const { return *name; }
  [[nodiscard]] const std::string& get_comment() const { return *comment; }
  [[nodiscard]] const std::map<sid_t, Signal*>& get_signals() const { return list_->get_signals(); }
  [[nodiscard]] const SignalList& get_list() const { return *list_; }
  [[nodiscard]] std::uint32_t get_reach() const { return list_->get_reach(); }

 private:
  using Text = std::shared_ptr<const std::string>;

  mid_t mid;
  mix_t mix = mix_t_inv;
  std::shared_ptr<SignalList> list_ = std::make_shared<SignalList>();
  Text name = std::make_shared<const std::string>();
  Text comment = name;
};

}  // namespace Trel::UCom
