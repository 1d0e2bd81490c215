// A recording asked for all that can be asked, whatever bytes it holds: for fuzz targets and for
// the damage tool. Unlike the builders beside it, this room knows the system.
#pragma once

#include <vector>

#include "sto/Sto_Store.h"

namespace Trel::Support {

// The options that the program uses.
[[nodiscard]] Sto::Options usual_options();

// Selects the elements that a stream describes, and asks for their spans: of every `parts` those
// that `choice` picks, and all of them where `parts` is 1 or the list has at most a hundred.
void select_elements(Sto::DataStore& store, Sto::Aspect& aspect, unsigned int id, std::size_t parts,
                     std::size_t choice);

// The seconds between two lines that make at most about a thousand of the store's span. At least 1.
[[nodiscard]] long long seconds_of_step(const Sto::DataStore& store);

// Goes through the span in steps of so many seconds, and once back to its start, which rewinds
// every stream.
void walk(Sto::DataStore& store, const Sto::Aspect& aspect, long long seconds);

}  // namespace Trel::Support
