// A client's selection of elements, with the place of each in the client's results.
//
// An aspect is a plain value. It stays usable as long as the elements that it names are registered;
// it refers to no object of the store.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "sto/Sto_Datum.h"
#include "sto/Sto_Taxonomy.h"

namespace Trel::Sto {

// A run of `count` values that goes from a store's array to the results.
template <class T>
struct AspectConverter {
  unsigned int store_id;
  unsigned int source;       // index of the first value in the store's Array<T>
  unsigned int destination;  // index of the first value in the results
  unsigned int count;
  std::string (*converter)(T);  // text of a value; may be null
};

// What an aspect takes from one store.
class AspectStore {
 public:
  explicit AspectStore(unsigned int store_id = 0) : store_id_(store_id) {}

  [[nodiscard]] unsigned int store_id() const { return store_id_; }
  // The number of converters of all types.
  [[nodiscard]] unsigned int size() const { return size_; }

  template <class T>
  [[nodiscard]] const std::vector<AspectConverter<T>>& converters() const {
    return std::get<std::vector<AspectConverter<T>>>(lists_);
  }
  template <class T>
  void push_back(const AspectConverter<T>& converter) {
    std::get<std::vector<AspectConverter<T>>>(lists_).push_back(converter);
    ++size_;
  }

 private:
  template <class T>
  using List = std::vector<AspectConverter<T>>;

  unsigned int store_id_;
  unsigned int size_ = 0;
  typename PerType<List>::type lists_;
};

class Aspect {
 public:
  [[nodiscard]] const std::map<unsigned int, AspectStore>& stores() const { return stores_; }
  // The selection from one store; an empty one when nothing of that store is selected.
  [[nodiscard]] const AspectStore& store(unsigned int id) const;
  // The selected elements, in order of selection.
  [[nodiscard]] const std::vector<AspectNode>& measurements() const { return measurements_; }
  // One entry for each output value, in the order of the results.
  [[nodiscard]] const std::vector<DestinationNode>& destinations() const { return destinations_; }

  // Selects the element that `leaf` describes. A negative `index` takes a scalar, or every entry of
  // an array; otherwise the one entry of an array. Names of array entries get a suffix in brackets:
  // the element's label for the index, or the index itself. False, with nothing selected, for an
  // index that the array does not have.
  template <Lib::ElementType T>
  bool add_element(const StoreLeaf& leaf, std::string (*fn)(T), unsigned int id, int index) {
    AspectConverter<T> run{leaf.store_id, leaf.offset, 0, leaf.size, fn};
    if (leaf.is_array && index >= 0) {
      if (static_cast<unsigned int>(index) >= leaf.size) return false;
      run.source += static_cast<unsigned int>(index);
      run.count = 1;
    }
    run.destination = add_destinations(leaf, id, index);
    stores_.try_emplace(leaf.store_id, leaf.store_id).first->second.push_back(run);
    return true;
  }

 private:
  // Appends the element and its output values; returns the index of the first value.
  unsigned int add_destinations(const StoreLeaf& leaf, unsigned int id, int index);

  std::map<unsigned int, AspectStore> stores_;
  std::vector<AspectNode> measurements_;
  std::vector<DestinationNode> destinations_;
};

}  // namespace Trel::Sto
