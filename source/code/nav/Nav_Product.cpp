#include "nav/Nav_Product.h"

#include <array>
#include <string_view>

namespace Trel::Nav {

namespace {

// By the number of the product's type.
constexpr std::array<std::string_view, Enum::PRODUCT_TYPE_UNKNOWN> kNames = {
    "Product type 0",
    "Product type 1",
    "Product type 2",
};

}  // namespace

void ProductNameCompute(ComData& data, const ComKey& key) {
  if (!key.KMain().Get_System_ProductModel()) return;
  if (!data.IsProductTypeValid() || data.GetProductType() >= kNames.size()) {
    return data.InvProductName();
  }
  const std::string_view name = kNames[data.GetProductType()];
  data.SetProductName(name.data(), name.size());
}

}  // namespace Trel::Nav
