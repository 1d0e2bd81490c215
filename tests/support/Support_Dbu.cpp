#include "support/Support_Dbu.h"

namespace Trel::Support {

Dbu::Dbu()
    : document_({{"V", 1}, {"M", nlohmann::json::array()}, {"S", nlohmann::json::array()}}) {}

Dbu& Dbu::message(std::uint64_t id, const Ids& signals) {
  document_["M"].push_back({{"ID", id}, {"BS", signals}});
  open_ = "M";
  return *this;
}

Dbu& Dbu::signal(std::uint64_t id) {
  document_["S"].push_back({{"ID", id}});
  open_ = "S";
  return *this;
}

Dbu& Dbu::key(const std::string& name, const nlohmann::json& value) {
  document_.at(open_).back()[name] = value;
  return *this;
}

Dbu& Dbu::top(const std::string& name, const nlohmann::json& value) {
  document_[name] = value;
  return *this;
}

}  // namespace Trel::Support
