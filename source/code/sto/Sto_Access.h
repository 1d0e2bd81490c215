// Access tables: from an element's name to its description and the place of its value.
//
// A table holds one map per element kind, from name to row. A row is the element's description, its
// text converter and a fetch of the current value from the codec's data record; the row type is the
// codec's own. Rows stay where they are once added, so pointers to them live as long as the table.
// A table takes kMaximumRows rows; what comes later, and a name that its kind has already, is
// dropped without a word.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <utility>

#include "sto/Sto_Kind.h"
#include "sto/Sto_Taxonomy.h"

namespace Trel::Sto {

// The text of a value; null where a value has no text form.
template <Lib::ElementType T>
using ValueText = std::string (*)(T);

// What every row has: the description and the converter. K is the kind.
template <class K>
class AccessRow : public PointerNode {
 public:
  using value_type = typename K::value_type;

  AccessRow(InfoNode info, ValueText<value_type> text)
      : PointerNode(std::move(info)), converter_(text) {}

  [[nodiscard]] ValueText<value_type> converter() const { return converter_; }

  // The description with the type: the level below a stream's own.
  [[nodiscard]] DynamicNode describe() const {
    return DynamicNode(*this, Lib::kBasicType<value_type>, K::kIsArray);
  }

 private:
  ValueText<value_type> converter_;
};

// Row<K> is the codec's row for kind K, derived from AccessRow<K>, with
// `const K::variable_type& fetch(const Data&) const` for the kinds that the codec has.
template <template <class> class RowOf>
class AccessTable {
 public:
  static constexpr unsigned int kMaximumRows = 1000;

  template <class K>
  using Row = RowOf<K>;
  // A row by the type of its variable: a Lib::VariableExt or a Lib::VarArrayExt.
  template <class V>
  using Pointer = RowOf<typename KindOf<V>::type>;

  // The count of rows, and so the next pointer id.
  [[nodiscard]] unsigned int size() const { return next_pointer_id_; }

  // Adds a row under its name. Its pointer id becomes `measurement` plus the table's next id:
  // `measurement` is the size of the table that stands in front of this one, or 0. Dropped when the
  // table is full or its kind has the name.
  template <class K>
  void add(RowOf<K> row, unsigned int measurement) {
    if (next_pointer_id_ >= kMaximumRows) return;
    row.pointer_id = measurement + next_pointer_id_;
    std::string name = row.name;
    auto& rows = std::get<Map<K>>(maps_);
    if (rows.try_emplace(std::move(name), std::move(row)).second) ++next_pointer_id_;
  }

  // The row of that name, or null.
  template <class K>
  [[nodiscard]] const RowOf<K>* find(const std::string& name) const {
    const auto& map = std::get<Map<K>>(maps_);
    const auto found = map.find(name);
    return found == map.end() ? nullptr : &found->second;
  }
#define TREL_FIND(kind, K)                                                   \
  [[nodiscard]] const RowOf<K>* find_##kind(const std::string& name) const { \
    return find<K>(name);                                                    \
  }
  TREL_ELEMENT_KINDS(TREL_FIND)
#undef TREL_FIND

  // Calls visit(row) for every row, kind by kind and by name within a kind.
  template <class Visitor>
  void for_each_row(Visitor&& visit) const {
    for_each_kind([&]<class K>(std::type_identity<K>) {
      for (const auto& [name, row] : std::get<Map<K>>(maps_)) visit(row);
    });
  }

 private:
  template <class K>
  using Map = std::map<std::string, RowOf<K>>;

  unsigned int next_pointer_id_ = 0;
  typename PerKind<Map>::type maps_;
};

}  // namespace Trel::Sto
