// What goes wrong with recordings, done on purpose.
//
// Each function takes a recording by value and returns the damaged one. Pages are named by their
// place in the file, from 0, of all streams together; naming one that does not exist throws
// std::out_of_range. Checksums stay as they were unless mend_pages() is called.
#pragma once

#include <vector>

#include "support/Support_Bytes.h"
#include "support/Support_Page.h"

namespace Trel::Support {

[[nodiscard]] Bytes drop_page(Bytes bytes, std::size_t page);
[[nodiscard]] Bytes repeat_page(Bytes bytes, std::size_t page);
[[nodiscard]] Bytes swap_pages(Bytes bytes, std::size_t first, std::size_t second);
// The pages in the given order, which may leave some out or name some twice. What lies between
// pages is lost.
[[nodiscard]] Bytes reorder_pages(const Bytes& bytes, const std::vector<std::size_t>& order);

// Turns one bit, 0 to 7, of the byte at `offset`.
[[nodiscard]] Bytes flip_bit(Bytes bytes, std::size_t offset, unsigned int bit = 0);
[[nodiscard]] Bytes insert_bytes(Bytes bytes, std::size_t offset, const Bytes& inserted);
[[nodiscard]] Bytes remove_bytes(Bytes bytes, std::size_t offset, std::size_t count);
// Without its last `count` bytes, or without any when there are not so many.
[[nodiscard]] Bytes cut_end(Bytes bytes, std::size_t count);

// Gives everything that looks like a whole page a good checksum. Any bytes will do.
void mend_pages(Bytes& bytes);

}  // namespace Trel::Support
