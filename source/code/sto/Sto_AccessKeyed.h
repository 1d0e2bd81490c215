// The rows of tables whose values stand in the records of a codec's data, each value behind a group
// that a stream can ask for.
//
// A class of records tells the codec's:
//   Data, Keys               the whole of its data, and of its groups
//   Sources<K>               a std::variant of KeyedSource<K, Record, Key>, one for each record
//   record<Record>(data, i)  the record, or the one at index i of several
//   key<Key>(keys, i)        the groups of that record
//   kHasArrays               whether some of its values are arrays
#pragma once

#include <utility>
#include <variant>

#include "sto/Sto_Access.h"

namespace Trel::Sto {

// How a row reads a record, and how it asks for its group or takes that back.
template <class K, class Record, class Key>
struct KeyedSource {
  const typename K::variable_type& (Record::*value)() const;
  void (Key::*on)();
  void (Key::*off)();
};

// K is the kind.
template <class K, class Records>
class AccessKeyedRow : public AccessRow<K> {
 public:
  using Variable = typename K::variable_type;
  using Text = ValueText<typename K::value_type>;

  // `instance` is the index of the record among those of its type; 0 for one that stands alone.
  template <class Record, class Key>
  AccessKeyedRow(Text text, int instance, const Variable& (Record::*value)() const,
                 void (Key::*on)(), void (Key::*off)(), InfoNode info)
      : AccessRow<K>(std::move(info), text),
        source_(KeyedSource<K, Record, Key>{value, on, off}),
        instance_(static_cast<unsigned int>(instance)) {}

  [[nodiscard]] const Variable& fetch(const typename Records::Data& data) const
      requires(Records::kHasArrays || !K::kIsArray) {
    return std::visit(
        [&]<class Record, class Key>(const KeyedSource<K, Record, Key>& source) -> const Variable& {
          return (Records::template record<Record>(data, instance_).*source.value)();
        },
        source_);
  }

  // Turns the row's group on, or off.
  void let(typename Records::Keys& keys) const requires(Records::kHasArrays || !K::kIsArray) {
    turn(keys, [](const auto& source) { return source.on; });
  }
  void bar(typename Records::Keys& keys) const requires(Records::kHasArrays || !K::kIsArray) {
    turn(keys, [](const auto& source) { return source.off; });
  }

 private:
  template <class Choose>
  void turn(typename Records::Keys& keys, Choose choose) const {
    std::visit(
        [&]<class Record, class Key>(const KeyedSource<K, Record, Key>& source) {
          (Records::template key<Key>(keys, instance_).*choose(source))();
        },
        source_);
  }

  typename Records::template Sources<K> source_;
  unsigned int instance_;
};

}  // namespace Trel::Sto
