// A CAN database read from DBC text: its bus nodes, messages, signals and their comments.
//
// Any bytes end in a database, possibly an empty one: a statement that cannot be read is left out,
// and so are all kinds of statement but "BU_:", "BO_", "SG_" and "CM_". A statement stands on one
// line. The Instance owns messages and signals; pointers to them stay valid until the next
// configure() or the end of the Dbc, also when it is moved.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "can/Can_Message.h"
#include "can/Can_Signal.h"

namespace Trel::Can {

class Instance {
 public:
  static constexpr std::size_t kMessageLimit = 1024;
  static constexpr std::size_t kSignalLimit = 16384;

  // Adds a copy. False at the limit, or when there is a message of that `mid`.
  bool add_message(const Message& message);
  // Adds `signal` to the last message added. False at the limit, or without a message.
  bool add_signal(Signal signal);
  // Takes the list of nodes from a line "BU_: node node".
  void parse_node(std::string_view line);

  [[nodiscard]] const std::string& get_nodes() const { return nodes_; }
  [[nodiscard]] const std::vector<std::unique_ptr<Message>>& get_messages() const {
    return messages_;
  }
  // In the order of their `six`.
  [[nodiscard]] const std::vector<std::unique_ptr<Signal>>& get_signals() const { return signals_; }

  // Null if absent.
  [[nodiscard]] Message* get_message_by_mid(unsigned int mid) const;
  [[nodiscard]] Signal* get_signal_by_sid(unsigned int sid) const;
  [[nodiscard]] Signal* get_signal_by_six(std::size_t six) const;

 private:
  struct MessageKey {
    unsigned int mid;
    Message* message;
  };

  unsigned int next_sid_ = 0;
  std::string nodes_;
  std::vector<std::unique_ptr<Message>> messages_;
  std::vector<std::unique_ptr<Signal>> signals_;
  std::vector<MessageKey> messages_by_mid_;  // ascending
  std::unordered_map<unsigned int, Signal*> signals_by_sid_;
  std::unordered_map<std::string, unsigned int> message_names_;  // how many have the name
  std::unordered_map<std::string, unsigned int> signal_names_;
};

class Dbc {
 public:
  // Replaces the database by what the text says. The bytes are copied.
  void configure(std::span<const unsigned char> bytes);

  [[nodiscard]] const Instance& get_instance() const { return instance_; }
  // The text with the zero byte that ends it; empty before configure().
  [[nodiscard]] const std::string& get_text() const { return text_; }

  [[nodiscard]] const std::vector<std::unique_ptr<Signal>>& get_signals() const {
    return instance_.get_signals();
  }
  // Null if absent.
  [[nodiscard]] const Signal* get_signal_by_six(std::size_t six) const {
    return instance_.get_signal_by_six(six);
  }
  [[nodiscard]] const Message* get_message_by_mid(unsigned int mid) const {
    return instance_.get_message_by_mid(mid);
  }

 private:
  void parse();
  void parse_definitions(std::string_view text);
  void parse_comments(std::string_view text);

  std::string text_;
  Instance instance_;
};

}  // namespace Trel::Can
