// Recordings on the bench: files that go away by themselves, one small signal database with its
// packets, and a resource opened on a file together with its progress messages.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "library/Lib_Cast.h"
#include "sto/Sto_ResourceXCom.h"
#include "support/Support_Bytes.h"
#include "support/Support_Dbu.h"
#include "support/Support_Packet.h"
#include "support/Support_Recording.h"

namespace Trel::Sto::Test {

using Support::Bytes;
using Support::bytes_of;
using Support::Dbu;
using Support::join;
using Support::Recording;
using Support::UComPacket;

inline constexpr unsigned int kSerial = 7;
inline constexpr std::size_t kInitRead = 65536;
inline constexpr std::size_t kScanRead = 4096;

// A file of its own name that is removed at the end.
class ScratchFile {
 public:
  explicit ScratchFile(const Bytes& bytes, const std::string& extension = ".xcom") {
    path_ = (std::filesystem::temp_directory_path() / ("trakdump-XXXXXX" + extension)).string();
    const int handle = mkstemps(path_.data(), static_cast<int>(extension.size()));
    if (handle < 0) throw std::runtime_error("no scratch file at " + path_);
    close(handle);
    Support::write_file(path_, bytes);
  }
  ~ScratchFile() { std::filesystem::remove(path_); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

  // How often this process has the file open.
  [[nodiscard]] int open_handles() const {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      if (std::filesystem::read_symlink(entry.path(), gone) == path_) ++count;
    }
    return count;
  }

 private:
  std::string path_;
};

// Message 1: "Nano", then "Count" and "Copy". Message 2: "Slow", without a time.
inline Dbu database() {
  Dbu document;
  document.message(1, {10, 11, 12}).message(2, {20});
  document.signal(10).name("Nano").type("S", 64).at(0).unit("ns");
  document.signal(11).name("Count").type("U", 32).at(64);
  document.signal(12).name("Copy").type("U", 32).at(96);
  document.signal(20).name("Slow").type("U", 32).at(0);
  return document;
}

// The same without a time.
inline Dbu timeless_database() {
  Dbu document;
  document.message(1, {11}).signal(11).name("Count").type("U", 32).at(64);
  return document;
}

inline Bytes sample(long long nano, unsigned int count = 0) {
  return UComPacket(1).integer(0, 64, nano).bits(64, 32, count).bits(96, 32, count).bytes();
}

inline Bytes slow(unsigned int value) {
  return UComPacket(2).bits(0, 32, value).bytes();
}

// A recording of one stream: headers, then one sample a page.
inline Bytes drive(unsigned int serial, const std::vector<long long>& times) {
  Recording recording;
  auto& stream = recording.stream(serial).ucom(database()).headers();
  for (const long long time : times) stream.packet(sample(time)).page();
  return recording.bytes();
}

// A UCom stream that lacks its database: it is never configured.
inline Bytes without_database(unsigned int serial) {
  Recording recording;
  recording.stream(serial).codec("UCom").headers();
  return recording.bytes();
}

// `bytes` and as many zeros as make it `size` bytes.
inline Bytes padded(Bytes bytes, std::size_t size) {
  if (bytes.size() > size) throw std::length_error("longer than the padding");
  bytes.resize(size);
  return bytes;
}

// One record of the ring.
struct Progress {
  Enum::DATA_STORE_MSG message;
  float percent;
  unsigned int id = 0;

  friend bool operator==(const Progress&, const Progress&) = default;
  friend void PrintTo(const Progress& progress, std::ostream* out) {
    *out << Enum::GetString(progress.message) << " " << progress.percent << " of " << progress.id;
  }
};

// `part` of `whole`, in per cent and as a record carries it.
inline float share(std::size_t part, std::size_t whole) {
  return static_cast<float>(100.0 * (static_cast<double>(part) / static_cast<double>(whole)));
}

inline std::vector<Progress> drain(Messages& messages) {
  std::vector<Progress> records;
  std::array<unsigned char, Messages::kRecordSize> record;
  while (messages.pull(record.data(), record.size()) == record.size()) {
    const auto index = cast_2_byte_LE_to_uint16(record.data() + 4);
    records.push_back({static_cast<Enum::DATA_STORE_MSG>(index),
                       static_cast<float>(cast_4_byte_LE_to_real32(record.data() + 6)),
                       cast_4_byte_LE_to_uint32(record.data())});
  }
  return records;
}

inline Options options(unsigned long long progress_bytes = 1048576) {
  return Options(16, 1000000000, 0, 0.1, progress_bytes, 16);
}

// A recording written to a file and opened.
class Opened {
 public:
  explicit Opened(const Bytes& bytes, unsigned long long progress_bytes = 1048576)
      : file_(bytes),
        options_(options(progress_bytes)),
        messages_(options_.message_bits),
        resource_(options_, file_.path(), &messages_) {}

  [[nodiscard]] const ScratchFile& file() const { return file_; }
  [[nodiscard]] ResourceOgg& resource() { return resource_; }
  [[nodiscard]] std::vector<Progress> progress() { return drain(messages_); }

  [[nodiscard]] std::vector<unsigned int> serials() const {
    std::vector<unsigned int> numbers;
    for (const auto& [serial, stream] : resource_.getStreams()) numbers.push_back(serial);
    return numbers;
  }
  // The stream of that serial number, which must be there.
  [[nodiscard]] Stream& stream(unsigned int serial = kSerial) const {
    return *resource_.getStreams().at(serial);
  }
  [[nodiscard]] Com::XComStreamDec& decoder(unsigned int serial = kSerial) const {
    return stream(serial).get_logical_xcom()->decoder();
  }
  [[nodiscard]] bool storable(unsigned int serial = kSerial) const {
    return stream(serial).is_storable();
  }
  [[nodiscard]] nano_t start(unsigned int serial = kSerial) const {
    return static_cast<nano_t>(stream(serial).get_start());
  }
  [[nodiscard]] nano_t end(unsigned int serial = kSerial) const {
    return static_cast<nano_t>(stream(serial).get_end());
  }

 private:
  ScratchFile file_;
  Options options_;
  Messages messages_;
  ResourceOgg resource_;
};

}  // namespace Trel::Sto::Test
