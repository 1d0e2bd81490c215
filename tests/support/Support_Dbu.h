// Signal database documents in the words of a test.
//
//   Dbu().message(1, {10, 11})
//       .signal(10).name("Nano").type("S", 64).at(0)
//       .signal(11).name("Speed").type("U", 16).at(64).measured("R32").scale(0.01).unit("m/s")
//
// message() and signal() open an entry; what follows belongs to it. Keys may be left out, repeated
// or wrong: the document holds what was said and nothing else.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace Trel::Support {

class Dbu {
 public:
  using Ids = std::vector<std::uint64_t>;

  // Version 1, no messages, no signals.
  Dbu();

  Dbu& message(std::uint64_t id, const Ids& signals = {});
  Dbu& signal(std::uint64_t id);

  Dbu& name(const std::string& text) { return key("DN", text); }
  Dbu& unit(const std::string& text) { return key("DU", text); }
  Dbu& comment(const std::string& text) { return key("DC", text); }
  Dbu& inherits(std::uint64_t id) { return key("IP", id); }
  Dbu& type(const std::string& letter) { return key("BT", letter); }
  Dbu& type(const std::string& letter, std::uint64_t bits) {
    return key("BT", letter).key("BS", bits);
  }
  Dbu& at(std::uint64_t bit_offset) { return key("BO", bit_offset); }
  Dbu& measured(const std::string& type) { return key("MT", type); }
  Dbu& scale(const nlohmann::json& factor) { return key("MS", factor); }
  Dbu& offset(const nlohmann::json& term) { return key("MO", term); }
  Dbu& limits(const nlohmann::json& low, const nlohmann::json& high) {
    return key("ML", low).key("MH", high);
  }

  // Any key of the open entry, with any value.
  Dbu& key(const std::string& name, const nlohmann::json& value);
  // Any key of the document itself, such as "V".
  Dbu& top(const std::string& name, const nlohmann::json& value);

  [[nodiscard]] const nlohmann::json& json() const { return document_; }
  [[nodiscard]] std::string text() const { return document_.dump(); }

 private:
  nlohmann::json document_;
  const char* open_ = "S";
};

}  // namespace Trel::Support
