// The signal database of a stream: a JSON document turned into linked signals and messages.
//
// A document that is not of the right form gives an empty or a partial database, without a word;
// only an exception of the JSON library passes through. The database owns its signals and messages,
// and nothing in it refers to the document once configure() has returned. Pointers handed out live
// until the next configure() or the end of the database.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "ucom/UCom_Message.h"
#include "ucom/UCom_Signal.h"

namespace Trel::UCom {

class RecursiveMessages;
class RecursiveSignals;

class Dbu {
 public:
  // Replaces what the database held by the content of `document`.
  void configure(const nlohmann::json& document);

  // Sorts the signals of each message into runs for decoding, as SignalList::arrange() does.
  void arrange(sid_t time);

  // The signals that some message lists, indexed by six, in ascending order of sid.
  [[nodiscard]] const std::vector<Signal*>& get_signals() const { return signals_; }
  // The messages that have signals, indexed by mix, in ascending order of mid.
  [[nodiscard]] const std::vector<Message*>& get_messages() const { return messages_; }

  // Null when `six` is out of range.
  [[nodiscard]] const Signal* get_signal_by_six(six_t six) const {
    return six < signals_.size() ? signals_[six] : nullptr;
  }
  // Null for an unknown message. Constant time for the numbers that packets carry.
  [[nodiscard]] const Message* get_message_by_mid(mid_t mid) const {
    if (mid < by_number_.size()) return by_number_[mid];
    return mid < kNumbers ? nullptr : find_message(mid);
  }

  // Any signal of the document, whether or not a message lists it; null when there is none.
  [[nodiscard]] const Signal* find_signal(sid_t sid) const;
  [[nodiscard]] const Message* find_message(mid_t mid) const;

  // Bytes of message data that decoding any message can touch.
  [[nodiscard]] std::uint32_t get_reach() const;

 private:
  static constexpr mid_t kNumbers = 65536;

  void clear();
  void parse_messages(RecursiveMessages& lookup);
  void parse_signals(RecursiveSignals& lookup);
  void connect_up();
  void index_messages();

  std::map<sid_t, std::unique_ptr<Signal>> signals_by_sid_;
  std::map<mid_t, std::unique_ptr<Message>> messages_by_mid_;
  std::vector<Signal*> signals_;
  std::vector<Message*> messages_;
  std::vector<const Message*> by_number_;  // up to the highest mid that a packet can carry
};

}  // namespace Trel::UCom
