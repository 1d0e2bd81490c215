#include "ucom/UCom_ComData.h"

#include <type_traits>

namespace Trel::UCom {

void ComData::reset() {
  values_.for_each([](auto& variables) { variables.clear(); });
  configure_slot(Lib::kBasicType<long long>, nano_slot);
}

bool ComData::configure_slot(Enum::BASIC_TYPE type, std::uint32_t& slot) {
  return Lib::visit_element_type(type, [&]<class T>(std::type_identity<T>) {
    slot = static_cast<std::uint32_t>(all<T>().size());
    all<T>().emplace_back();
  });
}

void ComData::invalidate() {
  values_.for_each([](auto& variables) {
    for (auto& variable : variables) variable.invalidate();
  });
}

}  // namespace Trel::UCom
