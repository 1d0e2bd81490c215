// The elements that a stream has been asked for, by mode and by store.
//
// System<A> is what a stream keeps per mode: the elements chosen so far out of its access tables A,
// sorted by store, each with its place in that store's arrays. The rows belong to the tables and
// must outlive the system. Store ids at or above the count given to expand() are a bug and stop the
// program.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "library/Lib_Report.h"
#include "sto/Sto_Access.h"
#include "sto/Sto_Datum.h"

namespace Trel::Sto {

// One chosen element.
struct Element {
  const AnyAccessRow* row;
  unsigned int store_id;
  unsigned int offset;  // in the store's array of the element's type
};

// One store's chosen elements: a list for each kind, by its kKindIndex.
using ElementStore = std::array<std::vector<Element>, kKinds>;

// What a system does without knowing the codec's rows.
class ElementSystem {
 public:
  explicit ElementSystem(unsigned int mode_id) : mode_id_(mode_id) {}

  // Sets the count of stores; a smaller count drops the stores at the end.
  void expand(unsigned int count);
  // Forgets all elements and keeps the stores.
  void clear();

  // A kind is given by its kKindIndex.
  void add_element(std::size_t kind, const AnyAccessRow& row, unsigned int store_id,
                   std::size_t offset);
  // Whether some store has an element of that name.
  [[nodiscard]] bool hit_element(std::size_t kind, const std::string& name) const {
    return find(kind, name) != nullptr;
  }
  // Describes the first element of that name, by store and in order of addition, and returns its
  // row; null when there is none.
  const AnyAccessRow* use_element(StoreLeaf& leaf, std::size_t kind, const std::string& name,
                                  unsigned int stream_id) const;
  // Describes the element added last; a default leaf when there is none.
  [[nodiscard]] StoreLeaf sum_element(std::size_t kind, unsigned int stream_id) const;

 protected:
  std::vector<ElementStore> stores;

 private:
  // The first element of each name, by store and in order of addition. The names are those of the
  // rows.
  using Names = std::unordered_map<std::string_view, Element>;

  [[nodiscard]] const Element* find(std::size_t kind, const std::string& name) const;
  void note_name(std::size_t kind, const Element& element);
  [[nodiscard]] StoreLeaf describe(const Element& element, unsigned int stream_id) const;

  unsigned int mode_id_;
  ElementStore all_;
  std::array<Names, kKinds> names_;
};

template <class A>
class System : public ElementSystem {
 public:
  template <class K>
  using Row = typename A::template Row<K>;

  using ElementSystem::ElementSystem;

  // The same for a kind known by its type.
  using ElementSystem::add_element;
  template <class K>
  void add_element(const Row<K>& row, unsigned int store_id, std::size_t offset) {
    add_element(kKindIndex<K>, row, store_id, offset);
  }
  using ElementSystem::hit_element;
  template <class K>
  [[nodiscard]] bool hit_element(const std::string& name) const {
    return hit_element(kKindIndex<K>, name);
  }
  // Gives the converter as well; false when there is no such element.
  using ElementSystem::use_element;
  template <class K>
  bool use_element(StoreLeaf& leaf, ValueText<typename K::value_type>& fn, const std::string& name,
                   unsigned int stream_id) const {
    const AnyAccessRow* row = use_element(leaf, kKindIndex<K>, name, stream_id);
    if (row == nullptr) return false;
    fn = static_cast<const AccessRow<K>*>(row)->converter();
    return true;
  }
  using ElementSystem::sum_element;
  template <class K>
  [[nodiscard]] StoreLeaf sum_element(unsigned int stream_id) const {
    return sum_element(kKindIndex<K>, stream_id);
  }

#define TREL_FORWARD(kind, K)                                                             \
  void add_element_##kind(const Row<K>& row, unsigned int store_id, std::size_t offset) { \
    add_element<K>(row, store_id, offset);                                                \
  }                                                                                       \
  [[nodiscard]] bool hit_element_##kind(const std::string& name) const {                  \
    return hit_element<K>(name);                                                          \
  }                                                                                       \
  bool use_element_##kind(StoreLeaf& leaf, ValueText<typename K::value_type>& fn,         \
                          const std::string& name, unsigned int stream_id) const {        \
    return use_element<K>(leaf, fn, name, stream_id);                                     \
  }                                                                                       \
  [[nodiscard]] StoreLeaf sum_element_##kind(unsigned int stream_id) const {              \
    return sum_element<K>(stream_id);                                                     \
  }
  TREL_ELEMENT_KINDS(TREL_FORWARD)
#undef TREL_FORWARD

  // Asks `key` for the group of every element of all stores.
  template <class Key>
  void let(Key& key) const {
    for_each_kind([&]<class K>(std::type_identity<K>) {
      if constexpr (requires(const Row<K>& row) { row.let(key); }) {
        for (const ElementStore& store : stores) {
          for (const Element& element : store[kKindIndex<K>]) row_of<K>(element).let(key);
        }
      }
    });
  }

  // Copies the current value of each of the store's elements from `data` to its place in `datum`.
  template <class Data>
  void var1(unsigned int store_id, Datum& datum, const Data& data) const {
    TREL_ASSERT(store_id < stores.size(), "sto/Sto_Element");
    for_each_kind([&]<class K>(std::type_identity<K>) {
      if constexpr (requires(const Row<K>& row) { row.fetch(data); }) {
        for (const Element& element : stores[store_id][kKindIndex<K>]) {
          datum.set(element.offset, row_of<K>(element).fetch(data));
        }
      }
    });
  }

 private:
  template <class K>
  [[nodiscard]] static const Row<K>& row_of(const Element& element) {
    return static_cast<const Row<K>&>(*element.row);
  }
};

}  // namespace Trel::Sto
