#include "can/Can_Message.h"

#include "can/Can_Text.h"

namespace Trel::Can {

namespace {

constexpr std::size_t kWordLimit = 255;

// A number, then a word; each is left alone when it is not there.
bool read_number_and_word(std::string_view text, unsigned int& number, std::string& word) {
  Scanner scanner(trim(text));
  std::string_view read;
  if (!scanner.read_unsigned(number) || !scanner.read_word(read, kWordLimit)) return false;
  word = read;
  return true;
}

}  // namespace

bool Message::parse(std::string_view line) {
  const std::size_t keyword_end = line.find('_');
  const std::size_t colon = line.find(':');
  if (line.find("BO_") == std::string_view::npos || colon == std::string_view::npos ||
      colon < keyword_end) {
    return false;
  }
  const std::string_view identity = line.substr(keyword_end + 1, colon - keyword_end - 1);
  if (!read_number_and_word(identity, mid_, name_)) return false;
  read_number_and_word(line.substr(colon + 1), size_, sender_);
  return true;
}

void Message::set_derived_identifiers(std::size_t mix, unsigned int count) {
  mix_ = mix;
  tag_ = count == 0 ? name_ : name_ + "." + std::to_string(count);
}

void Message::add(Signal* signal) {
  signals_.push_back(signal);
  fields_.push_back(signal->get_field());
}

}  // namespace Trel::Can
