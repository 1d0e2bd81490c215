// How long the innovations of the aiding sources stay valid.
#pragma once

#include "nav/Nav_ComData.h"

namespace Trel::Nav {

// The age, in nanoseconds, above which an innovation no longer counts.
inline constexpr long long kInnovationAge = 10'000'000'000;

// Marks each innovation that is older than kInnovationAge at the time of Nano as Invalid and Stale;
// it keeps its number until a fresh one comes. Without a valid Nano nothing changes, and an
// innovation without a time does not age.
void UpdateInnAge(ComData& data);

}  // namespace Trel::Nav
