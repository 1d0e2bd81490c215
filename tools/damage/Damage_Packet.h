// Bare packets, as they stand in raw files and on the pages of recordings: how long they are, and
// their sums.
#pragma once

#include <cstddef>

#include "support/Support_Bytes.h"

namespace Trel::Damage {

// The size of the packet that begins at `offset`, as far as its first bytes tell; 0 where none does
// and where fewer bytes are left than that.
[[nodiscard]] std::size_t packet_size(const Support::Bytes& bytes, std::size_t offset,
                                      std::size_t end);

// Gives every packet from `begin` to `end` a good sum, also those that others wrap. Bytes that
// begin no packet are passed over one by one.
void mend_packets(Support::Bytes& bytes, std::size_t begin, std::size_t end);

}  // namespace Trel::Damage
