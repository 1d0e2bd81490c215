// What the fuzz targets share: cutting the fuzzer's bytes into parts, and the few things that a
// target may not do to the system.
//
// Two stops are the system's own answer to bad data and are not findings: an exception of the JSON
// library, which each target catches and nothing else, and an initial header of no bytes, which no
// target passes on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "support/Support_Bytes.h"

namespace Trel::Fuzz {

// Reads numbers and runs of bytes off the front; 0 and empty once all is read.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  [[nodiscard]] bool empty() const { return rest_.empty(); }
  [[nodiscard]] unsigned char byte();
  [[nodiscard]] unsigned int number();  // 16 bits
  // As many bytes as the next number says, or what is left.
  [[nodiscard]] std::string_view part();
  [[nodiscard]] std::string_view rest();

 private:
  std::string_view rest_;
};

// Takes the first-page flag from each page whose initial header would have no bytes, and makes its
// checksum good.
void defuse_empty_headers(Support::Bytes& bytes);

// A file of the given bytes for the length of a run, under a name that no other process uses.
class File {
 public:
  File(const Support::Bytes& bytes, const std::string& extension);
  ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  [[nodiscard]] std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

// Opens a recording, asks for all that can be asked, and walks through it in at most a thousand
// steps.
void open_and_walk(const Support::Bytes& bytes, const std::string& extension);

}  // namespace Trel::Fuzz
