// The variables of a stream's signals: a row of them for each element type, in which a signal knows
// its slot.
#pragma once

#include <tuple>
#include <vector>

#include "library/Lib_Variable.h"

namespace Trel::UCom {

class Values {
 public:
  template <Lib::ElementType T>
  using Row = std::vector<Lib::VariableExt<T>>;

  template <Lib::ElementType T>
  [[nodiscard]] Row<T>& all() {
    return std::get<Row<T>>(rows_);
  }
  template <Lib::ElementType T>
  [[nodiscard]] const Row<T>& all() const {
    return std::get<Row<T>>(rows_);
  }
  // Calls `visit` with each row.
  template <class Visitor>
  void for_each(Visitor&& visit) {
    std::apply([&](auto&... rows) { (visit(rows), ...); }, rows_);
  }

 private:
  std::tuple<Row<bool>, Row<float>, Row<double>, Row<signed char>, Row<short>, Row<int>,
             Row<long long>, Row<unsigned char>, Row<unsigned short>, Row<unsigned int>,
             Row<unsigned long long>>
      rows_;
};

}  // namespace Trel::UCom
