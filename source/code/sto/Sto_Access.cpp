#include "sto/Sto_Access.h"

namespace Trel::Sto {

AnyAccessRow::AnyAccessRow(InfoNode info, Enum::BASIC_TYPE type, bool array)
    : DynamicNode(PointerNode(std::move(info)), type, array) {}

AnyAccessRow::AnyAccessRow(AnyAccessRow&& other) noexcept = default;
AnyAccessRow::~AnyAccessRow() = default;

const AnyAccessRow* AccessMaps::find(std::size_t kind, const std::string& name) const {
  const Map& map = maps_[kind];
  const auto found = map.find(name);
  return found == map.end() ? nullptr : found->second.get();
}

void AccessMaps::describe_rows(std::vector<DynamicNode>& descriptions) const {
  for (const Map& map : maps_) {
    for (const auto& [name, row] : map) descriptions.push_back(row->describe());
  }
}

void AccessMaps::add(std::size_t kind, std::unique_ptr<AnyAccessRow> row,
                     unsigned int measurement) {
  if (next_pointer_id_ >= kMaximumRows) return;
  row->pointer_id = measurement + next_pointer_id_;
  const std::string_view name = row->name;
  if (maps_[kind].try_emplace(name, std::move(row)).second) ++next_pointer_id_;
}

}  // namespace Trel::Sto
