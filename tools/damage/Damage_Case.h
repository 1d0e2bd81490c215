// The ways in which a file is damaged, each a numbered list of cases.
//
// A case follows from the seed, the subject, the kind and its number alone, so that any of them can
// be made again. Kinds that are systematic begin their list with the systematic cases.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "damage/Damage_Subject.h"

namespace Trel::Damage {

enum class Kind {
  cut,        // the end missing: from each border and a byte beside it, then from anywhere
  flip,       // 1 to 100 bits turned
  mended,     // the same, with good checksums and sums behind it
  rearrange,  // 1 to 8 parts removed, repeated or swapped
  join,       // the beginning of the file and the end of any
};

inline constexpr Kind kKinds[] = {Kind::cut, Kind::flip, Kind::mended, Kind::rearrange, Kind::join};

[[nodiscard]] const char* name_of(Kind kind);

// How many cases of a kind there are when nothing is left out.
[[nodiscard]] std::size_t count_cases(Kind kind, const Subject& subject);

// The bytes of case `number` of a kind. `subjects` are all there are; `which` of them is damaged.
[[nodiscard]] Support::Bytes make_case(const std::vector<Subject>& subjects, std::size_t which,
                                       Kind kind, std::size_t number, std::uint64_t seed);

}  // namespace Trel::Damage
