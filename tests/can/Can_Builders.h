// Frames and packets in the words of the tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "can/Can_Codec.h"

namespace Trel::Can {

inline std::span<const unsigned char> bytes_of(std::string_view text) {
  return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

inline Dbc database(std::string_view text) {
  Dbc dbc;
  dbc.configure(bytes_of(text));
  return dbc;
}

inline Signal signal(std::string_view line) {
  Signal result;
  EXPECT_TRUE(result.parse(line)) << line;
  return result;
}

// One packet: its time, then frame records.
class PacketBuilder {
 public:
  explicit PacketBuilder(long long time) { append(static_cast<unsigned long long>(time), 8); }

  // A record with that DLC code whose data area, of `area` bytes, begins with `data`.
  PacketBuilder& frame(unsigned int mid, unsigned int dlc, std::vector<unsigned char> data,
                       std::size_t area) {
    bytes_.push_back(static_cast<unsigned char>(dlc << 4));
    append(0, 3);
    append(mid, 4);
    data.resize(area);
    bytes_.insert(bytes_.end(), data.begin(), data.end());
    return *this;
  }
  // A record of up to eight bytes.
  PacketBuilder& frame(unsigned int mid, std::vector<unsigned char> data) {
    const auto dlc = static_cast<unsigned int>(data.size());
    return frame(mid, dlc, std::move(data), 8);
  }
  PacketBuilder& cut(std::size_t size) {
    bytes_.resize(size);
    return *this;
  }

  [[nodiscard]] const std::vector<unsigned char>& bytes() const { return bytes_; }

 private:
  void append(unsigned long long number, int size) {
    for (int at = 0; at < size; ++at) {
      bytes_.push_back(static_cast<unsigned char>(number >> (8 * at)));
    }
  }

  std::vector<unsigned char> bytes_;
};

// Decodes from a heap block of exactly the packet's size, so that a read past its end is caught.
inline bool decode(Codec& codec, const std::vector<unsigned char>& bytes) {
  const std::unique_ptr<unsigned char[]> exact(new unsigned char[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), exact.get());
  return codec.decode(exact.get(), bytes.size());
}
inline bool decode(Codec& codec, const PacketBuilder& packet) {
  return decode(codec, packet.bytes());
}

inline void configure(Codec& codec, std::string_view text, bool prescan) {
  codec.configure(bytes_of(text), prescan);
}

// The value of the signal with that tag, which must exist.
inline const Dynamic& value(const Codec& codec, const std::string& tag) {
  const Dynamic* const variable = codec.CData().DCan().Hit_by_tag(tag);
  if (variable == nullptr) throw std::out_of_range(tag);
  return *variable;
}

}  // namespace Trel::Can
