// Signal databases and packets as literals, for the tests of this folder.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "ucom/UCom_Codec.h"

namespace Trel::UCom {

using Bytes = std::vector<unsigned char>;

// A document of version 1 with the given members of "M" and "S".
inline nlohmann::json document(const std::string& messages, const std::string& signals) {
  return nlohmann::json::parse(R"({"V":1,"M":[)" + messages + R"(],"S":[)" + signals + "]}");
}

// Message 1 with signal 10 alone, whose entry has `keys` behind its "ID".
inline nlohmann::json one_signal(const std::string& keys) {
  return document(R"({"ID":1,"BS":[10]})", R"({"ID":10)" + (keys.empty() ? "" : "," + keys) + "}");
}

// The packet of message `number` with `data`, in memory of exactly its size.
inline Bytes packet(unsigned int number, const Bytes& data) {
  Bytes bytes;
  bytes.reserve(2 + data.size());
  bytes.push_back(static_cast<unsigned char>(number));
  bytes.push_back(static_cast<unsigned char>(number >> 8));
  bytes.insert(bytes.end(), data.begin(), data.end());
  return bytes;
}

inline bool decode(Codec& codec, unsigned int number, const Bytes& data) {
  const Bytes bytes = packet(number, data);
  return codec.decode(bytes.data(), bytes.size());
}

// The eight bytes of `value`, the lowest first.
inline Bytes int64_bytes(long long value) {
  Bytes bytes;
  for (int bit = 0; bit < 64; bit += 8) {
    bytes.push_back(static_cast<unsigned char>(static_cast<unsigned long long>(value) >> bit));
  }
  return bytes;
}

// The signal of that sid among those that messages list; null when there is none.
inline const Signal* listed_signal(const Codec& codec, sid_t sid) {
  for (std::size_t six = 0; six < codec.get_signals_size(); ++six) {
    if (codec.get_signal_by_six(six)->get_sid() == sid) return codec.get_signal_by_six(six);
  }
  return nullptr;
}

// The variable of the signal `sid`, whose measurement type must be M.
template <Lib::ElementType M>
const Lib::VariableExt<M>& variable(const Codec& codec, sid_t sid) {
  return codec.CData().var<M>(listed_signal(codec, sid)->get_slot());
}

// What one_signal(keys) decodes from `data`.
template <Lib::ElementType M>
M decode_one(const std::string& keys, const Bytes& data) {
  Codec codec(false);
  codec.configure(one_signal(keys), false);
  decode(codec, 1, data);
  return variable<M>(codec, 10).get();
}

}  // namespace Trel::UCom
