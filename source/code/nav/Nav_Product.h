// What a unit is called, for people who read it. Nothing is decoded by it.
#pragma once

#include "nav/Nav_ComData.h"
#include "nav/Nav_ComKey.h"

namespace Trel::Nav {

// Sets ProductName from the product's type; invalid while that is not known, or not in the table.
// With the key System_ProductModel off the name is left alone.
void ProductNameCompute(ComData& data, const ComKey& key);

}  // namespace Trel::Nav
