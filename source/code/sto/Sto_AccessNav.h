// The access tables of navigation streams: every element of NCom and of MCom packets.
//
// The rows expand from the tables of named values in nav/, so a value and its element never
// disagree. A row knows its variable and the group behind which that is decoded, so that a stream
// decodes only what was asked for. Elements of a receiver and of a measure point carry its name in
// front: GpsInt1_, GpsExt1_, GpsInt2_, MeasPt1_ to MeasPt8_.
#pragma once

#include <string>
#include <utility>
#include <variant>

#include "nav/Nav_ComData.h"
#include "nav/Nav_ComKey.h"
#include "sto/Sto_Access.h"

namespace Trel::Sto {

template <class K>
class AccessNavRow : public AccessRow<K> {
 public:
  using Variable = typename K::variable_type;
  using Text = ValueText<typename K::value_type>;
  // How a row reads a record, and how it asks for its group or takes that back.
  template <class Data>
  using Fetch = const Variable& (Data::*)() const;
  template <class Key>
  using Switch = void (Key::*)();

  AccessNavRow(Text text, Fetch<Nav::ComData> value, Switch<Nav::ComKey::KeyMain> on,
               Switch<Nav::ComKey::KeyMain> off, InfoNode info)
      : AccessRow<K>(std::move(info), text), source_(Main{value, on, off}) {}
  // `instance` is the index of the receiver, as ComData::DGps and ComKey::KGps take it.
  AccessNavRow(Text text, int instance, Fetch<Nav::ComDataGps> value,
               Switch<Nav::ComKey::KeyGps> on, Switch<Nav::ComKey::KeyGps> off, InfoNode info)
      : AccessRow<K>(std::move(info), text),
        source_(Gps{value, on, off}),
        instance_(static_cast<unsigned int>(instance)) {}
  // `instance` is the index of the measure point.
  AccessNavRow(Text text, int instance, Fetch<Nav::ComDataMeasurePt> value,
               Switch<Nav::ComKey::KeyMeasurePt> on, Switch<Nav::ComKey::KeyMeasurePt> off,
               InfoNode info)
      : AccessRow<K>(std::move(info), text),
        source_(Point{value, on, off}),
        instance_(static_cast<unsigned int>(instance)) {}

  [[nodiscard]] const Variable& fetch(const Nav::ComData& data) const requires(!K::kIsArray) {
    if (const Main* main = std::get_if<Main>(&source_)) return (data.*main->value)();
    if (const Gps* gps = std::get_if<Gps>(&source_)) return (data.DGps(instance_).*gps->value)();
    return (data.DMeasurePt(instance_).*std::get<Point>(source_).value)();
  }

  // Turns the row's group on, or off.
  void let(Nav::ComKey& key) const requires(!K::kIsArray) {
    turn(key, [](const auto& source) { return source.on; });
  }
  void bar(Nav::ComKey& key) const requires(!K::kIsArray) {
    turn(key, [](const auto& source) { return source.off; });
  }

 private:
  template <class Data, class Key>
  struct Source {
    Fetch<Data> value;
    Switch<Key> on;
    Switch<Key> off;
  };
  using Main = Source<Nav::ComData, Nav::ComKey::KeyMain>;
  using Gps = Source<Nav::ComDataGps, Nav::ComKey::KeyGps>;
  using Point = Source<Nav::ComDataMeasurePt, Nav::ComKey::KeyMeasurePt>;

  template <class Choose>
  void turn(Nav::ComKey& key, Choose choose) const {
    if (const Main* main = std::get_if<Main>(&source_)) {
      (key.KMain().*choose(*main))();
    } else if (const Gps* gps = std::get_if<Gps>(&source_)) {
      (key.KGps(instance_).*choose(*gps))();
    } else {
      (key.KMeasurePt(instance_).*choose(std::get<Point>(source_)))();
    }
  }

  std::variant<Main, Gps, Point> source_;
  unsigned int instance_ = 0;
};

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
