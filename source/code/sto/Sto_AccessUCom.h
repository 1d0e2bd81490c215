// The access table of UCom streams. No element is built in: each stream fills a table of its own
// with the signals of its database.
#pragma once

#include "sto/Sto_Access.h"
#include "ucom/UCom_ComData.h"

namespace Trel::Sto {

// A row that knows its signal's slot among the variables of its type. Only scalars have one.
template <class K>
class AccessUComRow : public AccessRow<K> {
 public:
  AccessUComRow(unsigned int slot, InfoNode info)
      : AccessRow<K>(std::move(info), nullptr), slot_(slot) {}

  [[nodiscard]] const typename K::variable_type& fetch(const UCom::ComData& data) const
      requires(!K::kIsArray) {
    return data.var<typename K::value_type>(slot_);
  }

 private:
  unsigned int slot_;
};

class AccessUCom : public AccessTable<AccessUComRow> {
 public:
  // Empty either way: nothing is built in.
  explicit AccessUCom(bool built_in);

  // The table that all UCom streams share. It is built before main and stays empty.
  static const AccessUCom& shared();

  // The time of a data record.
  [[nodiscard]] static const Lib::VariableExt<long long>& time_of(const UCom::ComData& data) {
    return data.Nano();
  }
};

}  // namespace Trel::Sto
