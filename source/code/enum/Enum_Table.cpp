#include "enum/Enum_Table.h"

#include <algorithm>
#include <cstring>

namespace Trel::Enum {

const Row* find(const Table& table, unsigned int number) noexcept {
  if (table.shape == Shape::Dense) return number < table.count ? table.rows + number : nullptr;

  const Row* end = table.rows + table.count;
  const Row* row =
      std::lower_bound(table.rows, end, number,
                       [](const Row& left, unsigned int right) { return left.number < right; });
  return row != end && row->number == number ? row : nullptr;
}

const Row* find(const Table& table, const char* string) noexcept {
  if (!string) return nullptr;

  const Row* end = table.rows + table.count;
  const Row* row = std::find_if(table.rows, end, [string](const Row& candidate) {
    return std::strcmp(candidate.string, string) == 0;
  });
  return row != end ? row : nullptr;
}

}  // namespace Trel::Enum
