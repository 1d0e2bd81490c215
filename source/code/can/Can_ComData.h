// What a CAN stream's packets have said so far: the time variables and one value for each signal.
//
// ComData is a plain value and is copied as one. A copy shares the names of the signals with its
// original, which never change after configure(), and has values of its own. Pointers to values are
// good until the next configure() or assignment.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "can/Can_Dbc.h"
#include "library/Lib_Variable.h"

namespace Trel::Can {

// The main variables. For each X of them:
//   Set_X(value)  stores the value, good, at the time that Nano holds; Timeless without one
//   Var_X()       the variable
//   Hit_X()       the same, to be changed
class DataMain {
 public:
#define VALUE(name, type, unit, resolution, description)           \
  void Set_##name(type value) {                                    \
    set(name##_, value);                                           \
  }                                                                \
  [[nodiscard]] const Lib::VariableExt<type>& Var_##name() const { \
    return name##_;                                                \
  }                                                                \
  [[nodiscard]] Lib::VariableExt<type>& Hit_##name() {             \
    return name##_;                                                \
  }
#include "can/Can_ComData.def"
#undef VALUE

  // Invalidates every variable.
  void invalidate() {
#define VALUE(name, type, unit, resolution, description) name##_.invalidate();
#include "can/Can_ComData.def"
#undef VALUE
  }

 private:
  template <class T>
  void set(Lib::VariableExt<T>& variable, T value) {
    variable.wipe();
    variable.put(value);
    if (Nano_.ok()) {
      variable.set_nano(Nano_.get());
    } else {
      variable.setTimeless();
    }
  }

#define VALUE(name, type, unit, resolution, description) Lib::VariableExt<type> name##_;
#include "can/Can_ComData.def"
#undef VALUE
};

// The signals' values, each with the type tag of its signal.
class DataCan {
 public:
  // One value for each signal of `dbc`, invalidated.
  void configure(const Dbc& dbc);
  void invalidate();

  [[nodiscard]] std::size_t size() const { return variables_.size(); }
  // In the order of `six`.
  [[nodiscard]] Dynamic* data() { return variables_.data(); }
  [[nodiscard]] const Dynamic* data() const { return variables_.data(); }
  // The `sid` of each value, in the same order.
  [[nodiscard]] const std::vector<unsigned int>& get_sids() const;

  // Null if absent.
  [[nodiscard]] Dynamic* Hit_by_sid(unsigned int sid);
  [[nodiscard]] const Dynamic* Hit_by_sid(unsigned int sid) const;
  [[nodiscard]] Dynamic* Hit_by_tag(const std::string& tag);
  [[nodiscard]] const Dynamic* Hit_by_tag(const std::string& tag) const;
  // The place of the signal with that tag, the first one should two have it; size() if absent.
  [[nodiscard]] std::size_t Idx_by_tag(const std::string& tag) const;
  // A copy of the value at that place; a rejected one without type past the end.
  [[nodiscard]] Dynamic Dyn_by_idx(std::size_t index) const;

 private:
  struct Layout {
    std::vector<unsigned int> sids;
    std::unordered_map<unsigned int, std::size_t> index_by_sid;
    std::unordered_map<std::string, std::size_t> index_by_tag;
  };
  [[nodiscard]] std::size_t index_by_sid(unsigned int sid) const;

  std::vector<Dynamic> variables_;
  std::shared_ptr<const Layout> layout_ = std::make_shared<const Layout>();
};

class ComData {
 public:
  void configure(const Dbc& dbc) {
    can_.configure(dbc);
    main_.invalidate();
  }
  void invalidate() {
    main_.invalidate();
    can_.invalidate();
  }

  [[nodiscard]] const DataMain& DMain() const { return main_; }
  [[nodiscard]] DataMain& DMain() { return main_; }
  [[nodiscard]] const DataCan& DCan() const { return can_; }
  [[nodiscard]] DataCan& DCan() { return can_; }

 private:
  DataMain main_;
  DataCan can_;
};

}  // namespace Trel::Can
