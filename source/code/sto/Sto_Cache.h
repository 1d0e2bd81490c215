// The newest value of each element of one store, under a lock of its own.
//
// The lock lets a reader copy values out while a writer decodes; a reader never sees an array that
// is half grown.
#pragma once

#include <vector>

#include "library/Lib_Lock.h"
#include "sto/Sto_Aspect.h"
#include "sto/Sto_Datum.h"

namespace Trel::Sto {

class Cache {
 public:
  explicit Cache(unsigned int id) : store_id_(id) {}

  [[nodiscard]] unsigned int id() const { return store_id_; }

  // The place that the next element of type T will get.
  template <Lib::ElementType T>
  [[nodiscard]] unsigned int next_element() const {
    Lib::ReadLock lock(mutex_);
    return static_cast<unsigned int>(datum_.array<T>().size());
  }
  // Makes room for `count` more values of type T behind those that stand; true.
  template <Lib::ElementType T>
  bool add_element(unsigned int count) {
    Lib::WriteLock lock(mutex_);
    datum_.array<T>().grow(count);
    return true;
  }
#define TREL_FORWARD(suffix, T)                              \
  [[nodiscard]] unsigned int next_element_##suffix() const { \
    return next_element<T>();                                \
  }                                                          \
  bool add_element_##suffix(unsigned int count) {            \
    return add_element<T>(count);                            \
  }
  TREL_ELEMENT_TYPES(TREL_FORWARD)
#undef TREL_FORWARD

  // Calls write(datum) under the write lock; no call when the lock is not to be had.
  template <class Lock, class Write>
  void update(Lock lock, Write&& write) {
    Lib::WriteLock guard(mutex_, lock);
    if (guard) write(datum_);
  }

  // Copies what `aspect` selects to its places in `out`, under a read lock. Nothing is copied when
  // the lock is not to be had.
  template <class Lock>
  void fill(const AspectStore& aspect, std::vector<Result>& out, Lock lock) const {
    Lib::ReadLock guard(mutex_, lock);
    if (guard) datum_.get(aspect, out);
  }

 protected:
  mutable Lib::SharedMutexStandard mutex_;

 private:
  unsigned int store_id_;
  Datum datum_;
};

}  // namespace Trel::Sto
