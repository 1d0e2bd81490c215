// The access table of CAN streams. The six variables of time are built in; each stream adds the
// signals of its database in a table of its own.
#pragma once

#include <cstddef>

#include "can/Can_ComData.h"
#include "sto/Sto_Access.h"

namespace Trel::Sto {

// A row that knows one of the main variables, or its signal's index. Only scalars have either.
template <class K>
class AccessCanRow : public AccessRow<K> {
 public:
  using Variable = typename K::variable_type;
  using Fetch = const Variable& (Can::DataMain::*)() const;

  // One of the main variables.
  AccessCanRow(Fetch main, InfoNode info)
      : AccessRow<K>(std::move(info), nullptr), main_(main), six_(0) {}
  // A signal whose type is that of the row.
  AccessCanRow(std::size_t six, InfoNode info)
      : AccessRow<K>(std::move(info), nullptr), main_(nullptr), six_(six) {}

  [[nodiscard]] Variable fetch(const Can::ComData& data) const requires(!K::kIsArray) {
    return main_ != nullptr ? (data.DMain().*main_)() : Variable(data.DCan().Dyn_by_idx(six_));
  }

 private:
  Fetch main_;  // null for a signal
  std::size_t six_;
};

class AccessCan : public AccessTable<AccessCanRow> {
 public:
  // With the rows that are built in, or empty.
  explicit AccessCan(bool built_in);

  // The table that all CAN streams share. It is built before main and never changes.
  static const AccessCan& shared();

  // The time of a data record.
  [[nodiscard]] static const Lib::VariableExt<long long>& time_of(const Can::ComData& data) {
    return data.DMain().Var_Nano();
  }
};

}  // namespace Trel::Sto
