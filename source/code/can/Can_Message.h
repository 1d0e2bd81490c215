// One message of a CAN database: its identifier, its names, and the signals in its frames.
//
// A message is a value until it joins an Instance, which owns it, and its signals, from then on.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "can/Can_Signal.h"

namespace Trel::Can {

class Message {
 public:
  // Reads a line of the form "BO_ mid name : size sender". False when `mid` or `name` is not read;
  // size and sender may be missing. Of the name and the sender 255 characters are kept.
  [[nodiscard]] bool parse(std::string_view line);

  // The tag is `name`, or for the second and later of a name `name`.`count`.
  void set_derived_identifiers(std::size_t mix, unsigned int count);
  void set_comment(std::string_view comment) { comment_ = comment; }
  // `signal` stays with its owner and must outlive the message. Its `six` follows that of the
  // signal before it.
  void add(Signal* signal);

  // In the order of their `six`, without a gap.
  [[nodiscard]] const std::vector<Signal*>& get_signals() const { return signals_; }
  // The fields of the signals, in the same order.
  [[nodiscard]] const std::vector<Field>& get_fields() const { return fields_; }

  // The message's place in the database, from 0.
  [[nodiscard]] std::size_t get_mix() const { return mix_; }
  // The identifier as the DBC writes it, with bit 31 set for an extended one.
  [[nodiscard]] unsigned int get_mid() const { return mid_; }
  [[nodiscard]] const std::string& get_tag() const { return tag_; }
  [[nodiscard]] const std::string& get_name() const { return name_; }
  // The byte count that the DBC gives. Decoding does not look at it.
  [[nodiscard]] unsigned int get_size() const { return size_; }
  [[nodiscard]] const std::string& get_sender() const { return sender_; }
  [[nodiscard]] const std::string& get_comment() const { return comment_; }

 private:
  std::vector<Signal*> signals_;
  std::vector<Field> fields_;
  std::size_t mix_ = 0;
  unsigned int mid_ = 0;
  std::string tag_;
  std::string name_;
  unsigned int size_ = 0;
  std::string sender_;
  std::string comment_;
};

}  // namespace Trel::Can
