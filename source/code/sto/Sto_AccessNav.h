// The access tables of navigation streams: every element of NCom and of MCom packets.
//
// The rows expand from the tables of named values in nav/, so a value and its element never
// disagree. A row knows its variable and the group behind which that is decoded, so that a stream
// decodes only what was asked for. Elements of a receiver and of a measure point carry its name in
// front: GpsInt1_, GpsExt1_, GpsInt2_, MeasPt1_ to MeasPt8_.
#pragma once

#include <type_traits>
#include <variant>

#include "nav/Nav_ComData.h"
#include "nav/Nav_ComKey.h"
#include "sto/Sto_AccessKeyed.h"

namespace Trel::Sto {

// The records of navigation data: the main one, one for each receiver and one for each measure
// point.
struct NavRecords {
  using Data = Nav::ComData;
  using Keys = Nav::ComKey;
  template <class K>
  using Sources = std::variant<KeyedSource<K, Nav::ComData, Nav::ComKey::KeyMain>,
                               KeyedSource<K, Nav::ComDataGps, Nav::ComKey::KeyGps>,
                               KeyedSource<K, Nav::ComDataMeasurePt, Nav::ComKey::KeyMeasurePt>>;
  static constexpr bool kHasArrays = false;

  template <class Record>
  [[nodiscard]] static const Record& record(const Data& data, unsigned int index) {
    if constexpr (std::is_same_v<Record, Nav::ComDataGps>)
      return data.DGps(index);
    else if constexpr (std::is_same_v<Record, Nav::ComDataMeasurePt>)
      return data.DMeasurePt(index);
    else
      return data;
  }
  template <class Key>
  [[nodiscard]] static Key& key(Keys& keys, unsigned int index) {
    if constexpr (std::is_same_v<Key, Nav::ComKey::KeyGps>)
      return keys.KGps(index);
    else if constexpr (std::is_same_v<Key, Nav::ComKey::KeyMeasurePt>)
      return keys.KMeasurePt(index);
    else
      return keys.KMain();
  }
};

template <class K>
using AccessNavRow = AccessKeyedRow<K, NavRecords>;

// What both tables share: the rows of the values that `family` carries.
class AccessNav : public AccessTable<AccessNavRow> {
 public:
  // The time of a data record.
  [[nodiscard]] static const Lib::VariableExt<long long>& time_of(const Nav::ComData& data) {
    return data.VarNano();
  }

 protected:
  AccessNav(bool built_in, Nav::Family family);
};

class AccessNCom : public AccessNav {
 public:
  // With the 667 rows that are built in, or empty.
  explicit AccessNCom(bool built_in) : AccessNav(built_in, Nav::Family::NCom) {}

  // The table that all NCom streams share. It is built before main and never changes.
  static const AccessNCom& shared();
};

class AccessMCom : public AccessNav {
 public:
  // With the 626 rows that are built in, or empty.
  explicit AccessMCom(bool built_in) : AccessNav(built_in, Nav::Family::MCom) {}

  // The table that all MCom streams share. It is built before main and never changes.
  static const AccessMCom& shared();
};

}  // namespace Trel::Sto
