// The access table of range streams: every element of RCom packets.
//
// The rows expand from the tables of named values in rng/, so a value and its element never
// disagree. A row knows its variable, one value or a run of them, and the group behind which that
// is decoded, so that a stream decodes only what was asked for. Elements of a target carry its name
// in front: Target1_ to Target4_.
#pragma once

#include <type_traits>
#include <variant>

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "sto/Sto_AccessKeyed.h"

namespace Trel::Sto {

// The records of range data: the main one, and one for each target.
struct RngRecords {
  using Data = Rng::ComData;
  using Keys = Rng::ComKey;
  template <class K>
  using Sources = std::variant<KeyedSource<K, Rng::DataMain, Rng::ComKey::KeyMain>,
                               KeyedSource<K, Rng::DataTarget, Rng::ComKey::KeyTarget>>;
  static constexpr bool kHasArrays = true;

  template <class Record>
  [[nodiscard]] static const Record& record(const Data& data, unsigned int index) {
    if constexpr (std::is_same_v<Record, Rng::DataTarget>)
      return data.DTarget(index);
    else
      return data.DMain();
  }
  template <class Key>
  [[nodiscard]] static Key& key(Keys& keys, unsigned int index) {
    if constexpr (std::is_same_v<Key, Rng::ComKey::KeyTarget>)
      return keys.KTarget(index);
    else
      return keys.KMain();
  }
};

template <class K>
using AccessRngRow = AccessKeyedRow<K, RngRecords>;

class AccessRCom : public AccessTable<AccessRngRow> {
 public:
  // With the 818 rows that are built in, or empty.
  explicit AccessRCom(bool built_in);

  // The table that all RCom streams share. It is built before main and never changes.
  static const AccessRCom& shared();

  // The time of a data record.
  [[nodiscard]] static const Lib::VariableExt<long long>& time_of(const Rng::ComData& data) {
    return data.DMain().Var_Nano();
  }
};

}  // namespace Trel::Sto
