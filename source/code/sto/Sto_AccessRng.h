// The access table of range streams: every element of RCom packets.
//
// The rows expand from the tables of named values in rng/, so a value and its element never
// disagree. A row knows its variable, one value or a run of them, and the group behind which that
// is decoded, so that a stream decodes only what was asked for. Elements of a target carry its name
// in front: Target1_ to Target4_.
#pragma once

#include <utility>
#include <variant>

#include "rng/Rng_ComData.h"
#include "rng/Rng_ComKey.h"
#include "sto/Sto_Access.h"

namespace Trel::Sto {

template <class K>
class AccessRngRow : public AccessRow<K> {
 public:
  using Variable = typename K::variable_type;
  using Text = ValueText<typename K::value_type>;
  // How a row reads a record, and how it asks for its group or takes that back.
  template <class Data>
  using Fetch = const Variable& (Data::*)() const;
  template <class Key>
  using Switch = void (Key::*)();

  AccessRngRow(Text text, Fetch<Rng::DataMain> value, Switch<Rng::ComKey::KeyMain> on,
               Switch<Rng::ComKey::KeyMain> off, InfoNode info)
      : AccessRow<K>(std::move(info), text), source_(Main{value, on, off}) {}
  // `instance` is the index of the target.
  AccessRngRow(Text text, int instance, Fetch<Rng::DataTarget> value,
               Switch<Rng::ComKey::KeyTarget> on, Switch<Rng::ComKey::KeyTarget> off, InfoNode info)
      : AccessRow<K>(std::move(info), text),
        source_(Target{value, on, off}),
        instance_(static_cast<unsigned int>(instance)) {}

  [[nodiscard]] const Variable& fetch(const Rng::ComData& data) const {
    if (const Main* main = std::get_if<Main>(&source_)) return (data.DMain().*main->value)();
    return (data.DTarget(instance_).*std::get<Target>(source_).value)();
  }

  // Turns the row's group on, or off.
  void let(Rng::ComKey& key) const {
    turn(key, [](const auto& source) { return source.on; });
  }
  void bar(Rng::ComKey& key) const {
    turn(key, [](const auto& source) { return source.off; });
  }

 private:
  template <class Data, class Key>
  struct Source {
    Fetch<Data> value;
    Switch<Key> on;
    Switch<Key> off;
  };
  using Main = Source<Rng::DataMain, Rng::ComKey::KeyMain>;
  using Target = Source<Rng::DataTarget, Rng::ComKey::KeyTarget>;

  template <class Choose>
  void turn(Rng::ComKey& key, Choose choose) const {
    if (const Main* main = std::get_if<Main>(&source_)) {
      (key.KMain().*choose(*main))();
    } else {
      (key.KTarget(instance_).*choose(std::get<Target>(source_)))();
    }
  }

  std::variant<Main, Target> source_;
  unsigned int instance_ = 0;
};

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
