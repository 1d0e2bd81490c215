// The two ways in which a store keeps values: direct (the newest value of each element) and
// retained (samples over a stream's whole span).
//
// A mode knows which elements have been added to it and gives each its place. `place` names a store
// within the mode: 0 in direct mode, the stream id in retained mode.
#pragma once

#include <vector>

#include "sto/Sto_Cache.h"
#include "sto/Sto_Retain.h"
#include "sto/Sto_Taxonomy.h"

namespace Trel::Sto {

class Mode {
 public:
  explicit Mode(unsigned int id) : mode_id_(id) {}
  virtual ~Mode() = default;
  Mode(const Mode&) = delete;
  Mode& operator=(const Mode&) = delete;

  [[nodiscard]] unsigned int id() const { return mode_id_; }

  // next_element_<type>: the place that the next element of the type gets in the store's array.
  // add_element_<type>: makes room for the element that `leaf` describes and remembers it.
#define TREL_DECLARE(suffix, T)                                                           \
  [[nodiscard]] virtual unsigned int next_element_##suffix(unsigned int place) const = 0; \
  virtual bool add_element_##suffix(unsigned int place, const StoreLeaf& leaf) = 0;
  TREL_ELEMENT_TYPES(TREL_DECLARE)
#undef TREL_DECLARE

  // The same for a type known to a template.
  template <Lib::ElementType T>
  [[nodiscard]] unsigned int next_element(unsigned int place) const {
#define TREL_DISPATCH(suffix, Type) \
  if constexpr (std::is_same_v<T, Type>) return next_element_##suffix(place);
    TREL_ELEMENT_TYPES(TREL_DISPATCH)
#undef TREL_DISPATCH
  }
  template <Lib::ElementType T>
  bool add_element(unsigned int place, const StoreLeaf& leaf) {
#define TREL_DISPATCH(suffix, Type) \
  if constexpr (std::is_same_v<T, Type>) return add_element_##suffix(place, leaf);
    TREL_ELEMENT_TYPES(TREL_DISPATCH)
#undef TREL_DISPATCH
  }

  // The elements added, in order: all of them, and those of one type.
  [[nodiscard]] const std::vector<StoreLeaf>& elements() const {
    return all_;
  }
  template <Lib::ElementType T>
  [[nodiscard]] const std::vector<StoreLeaf>& elements_of() const {
    return std::get<Leaves<T>>(by_type_).list;
  }

 protected:
  template <Lib::ElementType T>
  void remember(const StoreLeaf& leaf) {
    all_.push_back(leaf);
    std::get<Leaves<T>>(by_type_).list.push_back(leaf);
  }

 private:
  template <class T>
  struct Leaves {
    std::vector<StoreLeaf> list;
  };

  unsigned int mode_id_;
  std::vector<StoreLeaf> all_;
  typename PerType<Leaves>::type by_type_;
};

// One cache for all streams.
class ModeDirect : public Mode {
 public:
  explicit ModeDirect(unsigned int id) : Mode(id), cache_(0) {}

  [[nodiscard]] Cache& cache() { return cache_; }

#define TREL_DEFINE(suffix, T)                                                    \
  [[nodiscard]] unsigned int next_element_##suffix(unsigned int) const override { \
    return cache_.next_element<T>();                                              \
  }                                                                               \
  bool add_element_##suffix(unsigned int, const StoreLeaf& leaf) override {       \
    if (!cache_.add_element<T>(leaf.size)) return false;                          \
    remember<T>(leaf);                                                            \
    return true;                                                                  \
  }
  TREL_ELEMENT_TYPES(TREL_DEFINE)
#undef TREL_DEFINE

 private:
  Cache cache_;
};

// One store for each storable stream.
class ModeRetain : public Mode {
 public:
  ModeRetain(unsigned int id, unsigned int bits, long long resolution)
      : Mode(id), stores_(bits, resolution) {}

  // The next stream is not storable: it gets no store.
  void add() { stores_.add(); }
  // The next stream lasts from `start` to `end`, in nanoseconds.
  void add(long long start, long long end) { stores_.add(start, end); }

  [[nodiscard]] const Stores& stores() const { return stores_; }

#define TREL_DEFINE(suffix, T)                                                          \
  [[nodiscard]] unsigned int next_element_##suffix(unsigned int place) const override { \
    return stores_.next_element<T>(place);                                              \
  }                                                                                     \
  bool add_element_##suffix(unsigned int place, const StoreLeaf& leaf) override {       \
    if (!stores_.add_element<T>(place, leaf.size)) return false;                        \
    remember<T>(leaf);                                                                  \
    return true;                                                                        \
  }
  TREL_ELEMENT_TYPES(TREL_DEFINE)
#undef TREL_DEFINE

 private:
  Stores stores_;
};

}  // namespace Trel::Sto
