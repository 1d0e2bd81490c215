// The elements that a stream has been asked for, by mode and by store.
//
// System<A> is what a stream keeps per mode: the elements chosen so far out of its access tables A,
// sorted by store, each with its place in that store's arrays. The rows belong to the tables and
// must outlive the system. Store ids at or above the count given to expand() are a bug and stop the
// program.
#pragma once

#include <string>
#include <tuple>
#include <vector>

#include "library/Lib_Report.h"
#include "sto/Sto_Access.h"
#include "sto/Sto_Datum.h"

namespace Trel::Sto {

// One chosen element of kind K.
template <class A, class K>
struct Element {
  using Row = typename A::template Row<K>;

  const Row* row;
  unsigned int store_id;
  unsigned int offset;  // in the store's array of the element's type
};

// One store's chosen elements: a list for each kind.
template <class A>
class ElementStore {
 public:
  template <class K>
  [[nodiscard]] std::vector<Element<A, K>>& elements() {
    return std::get<std::vector<Element<A, K>>>(lists_);
  }
  template <class K>
  [[nodiscard]] const std::vector<Element<A, K>>& elements() const {
    return std::get<std::vector<Element<A, K>>>(lists_);
  }

  void clear() {
    for_each_kind([this]<class K>(std::type_identity<K>) { this->template elements<K>().clear(); });
  }

 private:
  template <class K>
  using List = std::vector<Element<A, K>>;

  typename PerKind<List>::type lists_;
};

template <class A>
class System {
 public:
  template <class K>
  using Row = typename A::template Row<K>;

  explicit System(unsigned int mode_id) : mode_id_(mode_id) {}

  // Sets the count of stores; a smaller count drops the stores at the end.
  void expand(unsigned int count) { stores.resize(count); }
  // Forgets all elements and keeps the stores.
  void clear() {
    all_.clear();
    for (ElementStore<A>& store : stores) store.clear();
  }

  template <class K>
  void add_element(const Row<K>& row, unsigned int store_id, std::size_t offset) {
    TREL_ASSERT(store_id < stores.size(), "sto/Sto_Element");
    const Element<A, K> element{&row, store_id, static_cast<unsigned int>(offset)};
    stores[store_id].template elements<K>().push_back(element);
    all_.template elements<K>().push_back(element);
  }

  // Whether some store has an element of that name.
  template <class K>
  [[nodiscard]] bool hit_element(const std::string& name) const {
    return find<K>(name) != nullptr;
  }

  // Describes the first element of that name and gives its converter; false when there is none.
  template <class K>
  bool use_element(StoreLeaf& leaf, ValueText<typename K::value_type>& fn, const std::string& name,
                   unsigned int stream_id) const {
    const Element<A, K>* element = find<K>(name);
    if (element == nullptr) return false;
    leaf = describe(*element, stream_id);
    fn = element->row->converter();
    return true;
  }

  // Describes the element added last; a default leaf when there is none.
  template <class K>
  [[nodiscard]] StoreLeaf sum_element(unsigned int stream_id) const {
    const auto& list = all_.template elements<K>();
    return list.empty() ? StoreLeaf() : describe(list.back(), stream_id);
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
        for (const ElementStore<A>& store : stores) {
          for (const Element<A, K>& element : store.template elements<K>()) element.row->let(key);
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
        for (const Element<A, K>& element : stores[store_id].template elements<K>()) {
          datum.set(element.offset, element.row->fetch(data));
        }
      }
    });
  }

 private:
  template <class K>
  [[nodiscard]] const Element<A, K>* find(const std::string& name) const {
    for (const ElementStore<A>& store : stores) {
      for (const Element<A, K>& element : store.template elements<K>()) {
        if (element.row->name == name) return &element;
      }
    }
    return nullptr;
  }

  template <class K>
  [[nodiscard]] StoreLeaf describe(const Element<A, K>& element, unsigned int stream_id) const {
    return StoreLeaf(ElementNode(element.row->describe(), stream_id), mode_id_, element.store_id,
                     element.offset);
  }

  unsigned int mode_id_;
  ElementStore<A> all_;
  std::vector<ElementStore<A>> stores;
};

}  // namespace Trel::Sto
