// A bundle of typed arrays: the values that a store holds for one instant.
//
// Each element of a store has its place, one entry or a run of them, in the array of its type. An
// entry is a value, its flags and its time. Access beyond an array's end does nothing.
#pragma once

#include <cstddef>
#include <tuple>
#include <valarray>
#include <vector>

#include "library/Lib_Dynamic.h"
#include "sto/Sto_Kind.h"

namespace Trel::Sto {

class AspectStore;

// One result of a step: a value of any element type with its stamp.
using Result = Lib::DynamicS<Lib::Stamp>;

// Three parallel arrays of one length.
template <class T>
class Array {
 public:
  [[nodiscard]] std::size_t size() const { return values_.size(); }

  // `count` entries of 0 with default flags at time 0; what stood there is gone.
  void resize(std::size_t count) {
    values_.resize(count, T{});
    flags_.resize(count, Lib::Flags());
    nanos_.resize(count, 0);
  }

  // Appends `count` such entries and keeps those that stand.
  void grow(std::size_t count) {
    Array grown;
    grown.resize(size() + count);
    for (std::size_t index = 0; index < size(); ++index) {
      grown.set(index, values_[index], flags_[index], nanos_[index]);
    }
    *this = std::move(grown);
  }

  // `index` must be below size().
  void set(std::size_t index, T value, Lib::Flags flags, long long nano) {
    values_[index] = value;
    flags_[index] = flags;
    nanos_[index] = nano;
  }
  [[nodiscard]] T value(std::size_t index) const { return values_[index]; }
  [[nodiscard]] Lib::Flags flags(std::size_t index) const { return flags_[index]; }
  [[nodiscard]] long long nano(std::size_t index) const { return nanos_[index]; }

 private:
  std::valarray<T> values_;
  std::valarray<Lib::Flags> flags_;
  std::valarray<long long> nanos_;
};

class Datum {
 public:
  template <Lib::ElementType T>
  [[nodiscard]] Array<T>& array() {
    return std::get<Array<T>>(arrays_);
  }
  template <Lib::ElementType T>
  [[nodiscard]] const Array<T>& array() const {
    return std::get<Array<T>>(arrays_);
  }

  template <Lib::ElementType T>
  void set(std::size_t index, const Lib::VariableExt<T>& source) {
    Array<T>& target = array<T>();
    if (index < target.size()) {
      target.set(index, source.get(), source.get_flags(), source.get_nano());
    }
  }

  // Each entry of the source, from `index` upward.
  template <Lib::ElementType T>
  void set(std::size_t index, const Lib::VarArrayExt<T>& source) {
    Array<T>& target = array<T>();
    for (std::size_t k = 0; k < source.size() && index + k < target.size(); ++k) {
      target.set(index + k, source.get_data(k), source.get_flags(k), source.get_nano(k));
    }
  }

  // Copies what `aspect` selects to its places in `out`: value and type, flags, time and converter.
  void get(const AspectStore& aspect, std::vector<Result>& out) const;

 private:
  [[maybe_unused]] unsigned long long words_[2] = {0, 0};
  typename PerType<Array>::type arrays_;
};

}  // namespace Trel::Sto
