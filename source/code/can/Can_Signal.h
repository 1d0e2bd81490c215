// One signal of a CAN database: its names, its place in the frame, its scale.
//
// A signal is a value until it joins an Instance, which owns it from then on and gives it its
// identifiers. parse() accepts a line as long as the signal can be placed: what else is missing
// keeps its default.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "can/Can_Frame.h"
#include "can/Can_Number.h"

namespace Trel::Can {

class Message;

class Signal {
 public:
  enum MuxKind { kPlain = 1, kMultiplexor = 2, kMultiplexed = 3 };

  // One past the last start bit, and past the longest field.
  static constexpr int kStartLimit = 512;
  static constexpr int kLengthLimit = 513;

  // Reads a line of the form
  //   SG_ name [M | m<number>] : start|length@order sign (factor,offset) [min|max] "unit" receiver
  // False without a name, with a bad multiplex word, or when start, length, order and sign are not
  // all read and in range. A number that cannot be read, or stands in brackets that are not
  // complete, is 0.
  [[nodiscard]] bool parse(std::string_view line);

  // "" is plain, "M" the multiplexor, "m" and a number from 0 a multiplexed signal of that value;
  // false for anything else. Kept for information: decoding does not look at it.
  [[nodiscard]] bool set_mux(std::string_view word);

  // False, and nothing changed, unless 0 <= start < 512 and 0 <= length < 513. The start of a
  // big-endian field is its most significant bit, counted as the DBC counts.
  [[nodiscard]] bool set_range(int start, int length, bool little_endian, bool is_signed);

  // The tag is `name`, or for the second and later of a name `name`.`count`, so "Speed.1".
  void set_derived_identifiers(unsigned int sid, std::size_t six, unsigned int count);
  void set_message(const Message* message) { message_ = message; }
  void set_comment(std::shared_ptr<const std::string> comment) { comment_ = std::move(comment); }

  // The field's bits of `frame`, neither extended nor scaled.
  [[nodiscard]] unsigned long long convert_u(const Frame& frame) const {
    return field_.convert_u(frame);
  }
  // Stores the value in `variable`, good and at time 0.
  void convert(Dynamic& variable, const Frame& frame) const { field_.convert(variable, frame); }
  // Place and scale alone, as a decoder of many frames wants them.
  [[nodiscard]] const Field& get_field() const { return field_; }

  // Null until the signal has joined an Instance; then valid as long as that.
  [[nodiscard]] const Message* get_message() const { return message_; }
  [[nodiscard]] unsigned int get_sid() const { return sid_; }
  // The signal's place among all signals of the database, from 0.
  [[nodiscard]] std::size_t get_six() const { return six_; }
  [[nodiscard]] const std::string& get_tag() const { return tag_; }
  // double if any of the four numbers is real, else long long or unsigned long long by the sign.
  [[nodiscard]] Enum::BASIC_TYPE get_type() const { return field_.get_type(); }
  [[nodiscard]] const std::string& get_name() const { return name_; }
  [[nodiscard]] MuxKind get_mux_kind() const { return mux_kind_; }
  [[nodiscard]] int get_mux_value() const { return mux_value_; }
  [[nodiscard]] int get_start_bit() const { return start_bit_; }
  [[nodiscard]] int get_bit_length() const { return bit_length_; }
  [[nodiscard]] bool get_little_endian() const { return little_endian_; }
  [[nodiscard]] bool get_is_signed() const { return is_signed_; }
  [[nodiscard]] const Number& get_factor() const { return factor_; }
  [[nodiscard]] const Number& get_offset() const { return offset_; }
  [[nodiscard]] const Number& get_min() const { return min_; }
  [[nodiscard]] const Number& get_max() const { return max_; }
  [[nodiscard]] const std::string& get_unit() const { return unit_; }
  [[nodiscard]] const std::string& get_receiver() const { return receiver_; }
  [[nodiscard]] const std::string& get_comment() const;
  // The same for those who keep it; null for an empty one.
  [[nodiscard]] const std::shared_ptr<const std::string>& get_shared_comment() const {
    return comment_;
  }
  // The lowest and highest bit, in the byte-reversed frame for a big-endian field; there `bit_low`
  // may be negative.
  [[nodiscard]] int get_bit_low() const { return bit_low_; }
  [[nodiscard]] int get_bit_high() const { return bit_high_; }

 private:
  [[nodiscard]] bool parse_range(std::string_view text);
  void parse_numbers(std::string_view text);
  void parse_unit(std::string_view line);
  void set_type();

  const Message* message_ = nullptr;
  unsigned int sid_ = 0;
  std::size_t six_ = 0;
  std::string tag_;
  std::string name_;
  MuxKind mux_kind_ = kPlain;
  int mux_value_ = 0;
  int start_bit_ = 0;
  int bit_length_ = 0;
  bool little_endian_ = true;
  bool is_signed_ = true;
  Number factor_;
  Number offset_;
  Number min_;
  Number max_;
  std::string unit_;
  std::string receiver_ = "Vector__XXX";
  std::shared_ptr<const std::string> comment_;  // one text for every signal it is given to
  int bit_low_ = 0;
  int bit_high_ = 0;
  Field field_;
};

}  // namespace Trel::Can
