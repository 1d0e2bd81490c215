#include "ucom/UCom_ComData.h"

#include <type_traits>

namespace Trel::UCom {

void ComData::reset() {
  std::apply([](auto&... variables) { (variables.clear(), ...); }, variables_);
  configure_slot(Lib::kBasicType<long long>, nano_slot);
}

bool ComData::configure_slot(Enum::BASIC_TYPE type, std::uint32_t& slot) {
  return Lib::visit_element_type(type, [&]<class T>(std::type_identity<T>) {
    slot = static_cast<std::uint32_t>(all<T>().size());
    all<T>().emplace_back();
  });
}

void ComData::invalidate() {
  const auto invalidate_all = [](auto& variables) {
    for (auto& variable : variables) variable.invalidate();
  };
  std::apply([&](auto&... variables) { (invalidate_all(variables), ...); }, variables_);
}

void ComData::Stamp() {
  Lib::VariableExt<long long>& nano = all<long long>()[nano_slot];
  if (nano.ok()) nano.set_nano(nano.get());
  nano.setTimeless(!nano.ok());
}

}  // namespace Trel::UCom
