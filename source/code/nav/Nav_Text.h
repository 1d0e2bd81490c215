// A stamped text of limited length: what a decoder holds for a name or a serial number.
//
// The characters stand in the object itself, so a text is copied like any other value and never
// allocates. A fresh one is empty and Rejected.
#pragma once

#include <cstddef>
#include <string_view>

#include "library/Lib_Stamp.h"

namespace Trel::Nav {

// At most N characters.
template <std::size_t N>
class Text : public Lib::StampExt {
 public:
  // Ends with a zero; lives as long as the object and changes with it.
  [[nodiscard]] const char* c_str() const { return characters_; }
  [[nodiscard]] std::string_view get() const { return {characters_, size_}; }

  // Copies a field of `length` characters, which a zero may end early. What is beyond N characters
  // is left out. The stamp stays.
  void strgrab(const char* field, std::size_t length) {
    if (length > N) length = N;
    for (size_ = 0; size_ < length && field[size_] != '\0'; ++size_) {
      characters_[size_] = field[size_];
    }
    characters_[size_] = '\0';
  }

  // Empty, and the stamp's operation of the same name.
  void invalidate() {
    StampExt::invalidate();
    strgrab("", 0);
  }

 private:
  std::size_t size_ = 0;
  char characters_[N + 1] = {};
};

}  // namespace Trel::Nav
