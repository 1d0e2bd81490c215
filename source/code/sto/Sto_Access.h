// Access tables: from an element's name to its description and the place of its value.
//
// A table holds one map per element kind, from name to row. A row is the element's description, its
// text converter and a fetch of the current value from the codec's data record; the row type is the
// codec's own. Rows stay where they are once added, so pointers to them live as long as the table.
// A table takes kMaximumRows rows; what comes later, and a name that its kind has already, is
// dropped without a word.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sto/Sto_Kind.h"
#include "sto/Sto_Taxonomy.h"

namespace Trel::Sto {

// The text of a value; null where a value has no text form.
template <Lib::ElementType T>
using ValueText = std::string (*)(T);

// What rows of all kinds have: the description with the type.
class AnyAccessRow : public DynamicNode {
 public:
  virtual ~AnyAccessRow();
  AnyAccessRow(AnyAccessRow&& other) noexcept;
  AnyAccessRow& operator=(const AnyAccessRow&) = delete;

  // The level below a stream's own.
  [[nodiscard]] const DynamicNode& describe() const { return *this; }

 protected:
  AnyAccessRow(InfoNode info, Enum::BASIC_TYPE type, bool array);
};

// With the converter. K is the kind.
template <class K>
class AccessRow : public AnyAccessRow {
 public:
  using value_type = typename K::value_type;

  AccessRow(InfoNode info, ValueText<value_type> text)
      : AnyAccessRow(std::move(info), Lib::kBasicType<value_type>, K::kIsArray), converter_(text) {}

  [[nodiscard]] ValueText<value_type> converter() const { return converter_; }

 private:
  ValueText<value_type> converter_;
};

// The maps of a table, which need not know the codec's rows.
class AccessMaps {
 public:
  // Each row under its own name.
  using Map = std::map<std::string_view, std::unique_ptr<const AnyAccessRow>>;

  static constexpr unsigned int kMaximumRows = 1000;

  // The count of rows, and so the next pointer id.
  [[nodiscard]] unsigned int size() const { return next_pointer_id_; }

  // The row of that name among those of a kind, which is given by its kKindIndex; or null.
  [[nodiscard]] const AnyAccessRow* find(std::size_t kind, const std::string& name) const;
  // Appends the description of every row, kind by kind and by name within a kind.
  void describe_rows(std::vector<DynamicNode>& descriptions) const;

 protected:
  void add(std::size_t kind, std::unique_ptr<AnyAccessRow> row, unsigned int measurement);
  [[nodiscard]] const Map& rows(std::size_t kind) const { return maps_[kind]; }

 private:
  unsigned int next_pointer_id_ = 0;
  std::array<Map, kKinds> maps_;
};

// Row<K> is the codec's row for kind K, derived from AccessRow<K>, with
// `const K::variable_type& fetch(const Data&) const` for the kinds that the codec has.
template <template <class> class RowOf>
class AccessTable : public AccessMaps {
 public:
  template <class K>
  using Row = RowOf<K>;
  // A row by the type of its variable: a Lib::VariableExt or a Lib::VarArrayExt.
  template <class V>
  using Pointer = RowOf<typename KindOf<V>::type>;

  // Adds a row under its name. Its pointer id becomes `measurement` plus the table's next id:
  // `measurement` is the size of the table that stands in front of this one, or 0. Dropped when the
  // table is full or its kind has the name.
  template <class K>
  void add(RowOf<K> row, unsigned int measurement) {
    AccessMaps::add(kKindIndex<K>, std::make_unique<RowOf<K>>(std::move(row)), measurement);
  }

  // The row of that name, or null.
  using AccessMaps::find;
  template <class K>
  [[nodiscard]] const RowOf<K>* find(const std::string& name) const {
    return static_cast<const RowOf<K>*>(find(kKindIndex<K>, name));
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
      for (const auto& [name, row] : rows(kKindIndex<K>)) {
        visit(static_cast<const RowOf<K>&>(*row));
      }
    });
  }
};

}  // namespace Trel::Sto
