// Retained stores: one per storable stream, made to keep sampled values on a fixed grid of time.
//
// The stores are created, sized and laid out when a stream is registered; a client that fills them
// stands outside this library. The grid has at most 2^bits slots of equal width and is centred on
// the stream's time span. A span that cannot be gridded gets no store. Locks are taken in the order
// Stores, then Store.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "library/Lib_Interval.h"
#include "library/Lib_Lock.h"
#include "sto/Sto_Cache.h"

namespace Trel::Sto {

// A grid of time, in nanoseconds.
struct Indexing {
  long long start = 0;
  long long resolution = 1;
};

class Store : public Cache {
 public:
  static constexpr unsigned int kLevels = 64;

  // A grid of at most 2^bits slots, none narrower than `resolution` nanoseconds.
  Store(unsigned int id, unsigned int bits, long long resolution);

  // Lays the grid for a stream that lasts from `start` to `end`, and forgets all that was stored.
  // Returns the slot width in nanoseconds; 0, with the grid unchanged, when the span is empty or
  // begins or ends before time 0, or when a grid for it would overflow.
  long long configure(long long start, long long end);

  // Forgets all that was stored and keeps the grid.
  void soft_clear();

  [[nodiscard]] const Indexing& indexing() const { return indexing_; }
  [[nodiscard]] long long start() const { return start_; }
  [[nodiscard]] long long end() const { return end_; }

 private:
  void forget();

  Indexing indexing_;
  unsigned int bits_;
  long long resolution_;
  std::map<unsigned long long, Datum> data_;
  std::vector<Lib::IntervalSet<long long>> covered_;
  long long start_ = 0;
  long long end_ = 0;
};

// The stores by id; null where a stream has none. Takes no lock.
class StoresImpl {
 public:
  StoresImpl(unsigned int bits, long long resolution) : bits_(bits), resolution_(resolution) {}

  void add() { stores_.emplace_back(); }
  // Appends a configured store, or null when the span cannot be gridded.
  void add(long long start, long long end);
  // Null past the end as well.
  [[nodiscard]] Store* at(unsigned int id) const {
    return id < stores_.size() ? stores_[id].get() : nullptr;
  }

 private:
  std::vector<std::unique_ptr<Store>> stores_;
  unsigned int bits_;
  long long resolution_;
};

// The same under a lock. Stores live as long as this object.
class Stores {
 public:
  Stores(unsigned int bits, long long resolution);

  void add();
  void add(long long start, long long end);
  [[nodiscard]] Store* at(unsigned int id) const;

  // The place of the next element of type T in store `id`; 0 without a store.
  template <Lib::ElementType T>
  [[nodiscard]] unsigned int next_element(unsigned int id) const {
    const Store* store = at(id);
    return store == nullptr ? 0 : store->next_element<T>();
  }
  // Makes room for `count` values in store `id` and forgets what it held; true, without a store
  // too.
  template <Lib::ElementType T>
  bool add_element(unsigned int id, unsigned int count) {
    Store* store = at(id);
    if (store == nullptr) return true;
    const bool added = store->add_element<T>(count);
    store->soft_clear();
    return added;
  }
#define TREL_FORWARD(suffix, T)                                             \
  [[nodiscard]] unsigned int next_element_##suffix(unsigned int id) const { \
    return next_element<T>(id);                                             \
  }                                                                         \
  bool add_element_##suffix(unsigned int id, unsigned int count) {          \
    return add_element<T>(id, count);                                       \
  }
  TREL_ELEMENT_TYPES(TREL_FORWARD)
#undef TREL_FORWARD

 private:
  mutable Lib::SharedMutexStandard mutex_;
  std::unique_ptr<StoresImpl> impl_;
};

}  // namespace Trel::Sto
