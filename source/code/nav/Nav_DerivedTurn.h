// Turning vectors of the record, a table of groups at a time.
//
// The table is a constant that the compiler sees, so that a group costs the test of its key and no
// call.
#pragma once

#include <utility>

#include "nav/Nav_ComKey.h"
#include "nav/Nav_DerivedVector.h"

namespace Trel::Nav {

// A vector that is another one turned.
struct TurnedGroup {
  bool (ComKey::KeyMain::*wanted)() const;
  Axes from;
  Axes to;
};

// Calls use(place) with each place in the table, as a constant.
template <const auto& kGroups, class Use>
void for_each_group(Use use) {
  [&use]<std::size_t... kPlace>(std::index_sequence<kPlace...>) {
    (use(std::integral_constant<std::size_t, kPlace>()), ...);
  }
  (std::make_index_sequence<kGroups.size()>());
}

// Whether any group is wanted.
template <const auto& kGroups>
[[nodiscard]] bool any_wanted(const ComKey::KeyMain& key) {
  bool wanted = false;
  for_each_group<kGroups>([&](auto place) { wanted |= (key.*kGroups[place].wanted)(); });
  return wanted;
}

// Makes the groups that are wanted invalid.
template <const auto& kGroups>
void invalidate_wanted(ComData& data, const ComKey::KeyMain& key) {
  for_each_group<kGroups>([&](auto place) {
    constexpr TurnedGroup kGroup = kGroups[place];
    if ((key.*kGroup.wanted)()) kGroup.to.invalidate(data);
  });
}

// Turns, with turning(vector), the vectors of those groups that are wanted and valid.
template <const auto& kGroups, class Turning>
void turn(ComData& data, const ComKey::KeyMain& key, Turning turning) {
  for_each_group<kGroups>([&](auto place) {
    constexpr TurnedGroup kGroup = kGroups[place];
    Triple vector;
    if ((key.*kGroup.wanted)() && kGroup.from.read(data, vector)) {
      kGroup.to.write(data, turning(vector));
    }
  });
}

}  // namespace Trel::Nav
