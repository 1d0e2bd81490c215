#include "can/Can_Signal.h"

#include "can/Can_Text.h"

namespace Trel::Can {

namespace {

constexpr auto kNone = std::string_view::npos;

// Two texts between three delimiters that follow one another in `text`, which then goes on behind
// the last; nothing happens without all three.
void parse_pair(std::string_view& text, const char (&delimiters)[4], Number& first,
                Number& second) {
  const std::size_t begin = text.find(delimiters[0]);
  if (begin == kNone) return;
  const std::size_t middle = text.find(delimiters[1], begin + 1);
  if (middle == kNone) return;
  const std::size_t end = text.find(delimiters[2], middle + 1);
  if (end == kNone) return;
  first.parse(text.substr(begin + 1, middle - begin - 1));
  second.parse(text.substr(middle + 1, end - middle - 1));
  text.remove_prefix(end + 1);
}

}  // namespace

bool Signal::parse(std::string_view line) {
  const std::size_t keyword_end = line.find('_');
  const std::size_t colon = line.find(':');
  if (line.find("SG_") == kNone || colon == kNone || colon < keyword_end) return false;

  Scanner words(line.substr(keyword_end + 1, colon - keyword_end - 1));
  std::string_view name;
  std::string_view mux;
  if (!words.read_word(name)) return false;
  if (words.read_word(mux) && !set_mux(mux)) return false;
  name_ = name;

  const std::string_view rest = line.substr(colon + 1);
  if (!parse_range(trim(rest.substr(0, rest.find('('))))) return false;
  parse_numbers(rest);
  parse_unit(line);
  set_type();
  return true;
}

bool Signal::parse_range(std::string_view text) {
  Scanner scanner(text);
  int start = 0;
  int length = 0;
  int order = 0;
  char sign = 0;
  const bool read = scanner.read_signed(start) && scanner.accept('|') &&
                    scanner.read_signed(length) && scanner.accept('@') &&
                    scanner.read_signed(order) && scanner.read_character(sign);
  return read && set_range(start, length, order != 0, sign == '-');
}

void Signal::parse_numbers(std::string_view text) {
  parse_pair(text, "(,)", factor_, offset_);
  parse_pair(text, "[|]", min_, max_);
}

void Signal::parse_unit(std::string_view line) {
  const std::size_t first = line.find('"');
  const std::size_t last = line.rfind('"');
  if (first == kNone) return;
  if (first < last) unit_ = line.substr(first + 1, last - first - 1);
  receiver_ = trim(line.substr(last + 1));
}

void Signal::set_type() {
  if (factor_.is_real() || offset_.is_real() || min_.is_real() || max_.is_real()) {
    field_.scale(factor_.get_real(), offset_.get_real());
  } else if (is_signed_) {
    field_.scale(Lib::kBasicType<long long>, static_cast<unsigned long long>(factor_.get_signed()),
                 static_cast<unsigned long long>(offset_.get_signed()));
  } else {
    field_.scale(Lib::kBasicType<unsigned long long>, factor_.get_unsigned(),
                 offset_.get_unsigned());
  }
}

bool Signal::set_mux(std::string_view word) {
  MuxKind kind = kPlain;
  int value = 0;
  if (word == "M") {
    kind = kMultiplexor;
  } else if (!word.empty()) {
    Scanner number(word.substr(1));
    if (word.front() != 'm' || !number.read_signed(value) || value < 0) return false;
    kind = kMultiplexed;
  }
  mux_kind_ = kind;
  mux_value_ = value;
  return true;
}

bool Signal::set_range(int start, int length, bool little_endian, bool is_signed) {
  if (start < 0 || start >= kStartLimit || length < 0 || length >= kLengthLimit) return false;
  start_bit_ = start;
  bit_length_ = length;
  little_endian_ = little_endian;
  is_signed_ = is_signed;
  if (little_endian) {
    bit_low_ = start;
    bit_high_ = start + length - 1;
  } else {
    constexpr int kLastByte = 8 * (Frame::kBytes - 1);
    bit_high_ = kLastByte - (start & ~7) + (start & 7);
    bit_low_ = bit_high_ - length + 1;
  }
  field_.place(bit_low_, length, little_endian, is_signed);
  return true;
}

void Signal::set_derived_identifiers(unsigned int sid, std::size_t six, unsigned int count) {
  sid_ = sid;
  six_ = six;
  tag_ = count == 0 ? name_ : name_ + "." + std::to_string(count);
}

const std::string& Signal::get_comment() const {
  static const std::string kEmpty;
  return comment_ ? *comment_ : kEmpty;
}

}  // namespace Trel::Can
