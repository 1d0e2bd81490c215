// How the values of built-in elements read in words.
//
// A table of named values tells for each value one of the forms below or an enumeration of the
// vocabulary; text_of() gives the function that an access row carries for it.
#pragma once

#include <string>
#include <type_traits>

#include "enum/Enum.h"
#include "sto/Sto_Access.h"

namespace Trel::Sto {

struct Plain;          // no text form
struct Characters;     // packed into the number, the first lowest
struct DottedAddress;  // of a network, its first part lowest

// The string of a member's number; empty for a number in range that is no member.
template <Enum::Enumeration E>
std::string member_text(typename Enum::Traits<E>::Number number) {
  const char* text = Enum::GetString(Enum::Cast<E>(number));
  return text == nullptr ? std::string() : text;
}

// The characters up to the last that is not 0; '?' for each that does not print.
template <class T>
std::string characters_text(T packed) {
  std::string text;
  for (; packed != 0; packed = static_cast<T>(packed >> 8)) {
    const char character = static_cast<char>(packed & 0x7F);
    const bool prints = (packed & 0xFF) == (packed & 0x7F) && character >= ' ' && character != 0x7F;
    text += prints ? character : '?';
  }
  return text;
}

inline std::string address_text(unsigned int address) {
  std::string text = std::to_string(address & 0xFF);
  for (int shift = 8; shift < 32; shift += 8) {
    text += '.' + std::to_string(address >> shift & 0xFF);
  }
  return text;
}

template <class Form, class T>
constexpr ValueText<T> text_of() {
  if constexpr (Enum::Enumeration<Form>) return &member_text<Form>;
  if constexpr (std::is_same_v<Form, Characters>) return &characters_text<T>;
  if constexpr (std::is_same_v<Form, DottedAddress>) return &address_text;
  return nullptr;
}

}  // namespace Trel::Sto
