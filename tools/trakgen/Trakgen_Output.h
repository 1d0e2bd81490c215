// The file that pages go into, and the damage done to them on the way.
//
// Pages pass straight through: memory stays bounded by a few pages whatever the recording's size.
// A file that cannot be written throws std::runtime_error.
#pragma once

#include <cstdint>
#include <fstream>
#include <span>
#include <string>

#include "support/Support_Bytes.h"
#include "trakgen/Trakgen_Options.h"

namespace Trel::Trakgen {

class Output {
 public:
  Output(const std::string& path, Damage damage);

  void write_page(std::span<const unsigned char> page);
  // Ends the file. To be called once, last.
  void finish();

 private:
  void place(const Support::Bytes& page, bool repeat);
  void write(const Support::Bytes& page);

  std::string path_;
  std::ofstream file_;
  Damage damage_;
  std::uint64_t page_ = 0;      // the number of the next page
  std::uint64_t position_ = 0;  // bytes written, garbage apart
  Support::Bytes held_;         // a page that waits for the one behind it
  bool repeat_held_ = false;
};

}  // namespace Trel::Trakgen
