#include "support/Support_Damage.h"

#include <algorithm>

namespace Trel::Support {

namespace {

Bytes slice(const Bytes& bytes, std::size_t first, std::size_t last) {
  return Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(first),
               bytes.begin() + static_cast<std::ptrdiff_t>(last));
}

Bytes slice(const Bytes& bytes, const PageExtent& page) {
  return slice(bytes, page.offset, page.end());
}

}  // namespace

Bytes drop_page(Bytes bytes, std::size_t page) {
  const PageExtent extent = find_pages(bytes).at(page);
  return remove_bytes(std::move(bytes), extent.offset, extent.size);
}

Bytes repeat_page(Bytes bytes, std::size_t page) {
  const PageExtent extent = find_pages(bytes).at(page);
  const Bytes copy = slice(bytes, extent);
  return insert_bytes(std::move(bytes), extent.end(), copy);
}

Bytes swap_pages(Bytes bytes, std::size_t first, std::size_t second) {
  const std::vector<PageExtent> pages = find_pages(bytes);
  const PageExtent early = pages.at(std::min(first, second));
  const PageExtent late = pages.at(std::max(first, second));
  if (early.offset == late.offset) return bytes;
  return join({slice(bytes, 0, early.offset), slice(bytes, late),
               slice(bytes, early.end(), late.offset), slice(bytes, early),
               slice(bytes, late.end(), bytes.size())});
}

Bytes reorder_pages(const Bytes& bytes, const std::vector<std::size_t>& order) {
  const std::vector<PageExtent> pages = find_pages(bytes);
  Bytes result;
  for (const std::size_t page : order) result = join({result, slice(bytes, pages.at(page))});
  return result;
}

Bytes flip_bit(Bytes bytes, std::size_t offset, unsigned int bit) {
  bytes.at(offset) ^= static_cast<unsigned char>(1U << bit);
  return bytes;
}

Bytes insert_bytes(Bytes bytes, std::size_t offset, const Bytes& inserted) {
  bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(offset), inserted.begin(),
               inserted.end());
  return bytes;
}

Bytes remove_bytes(Bytes bytes, std::size_t offset, std::size_t count) {
  const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(offset);
  bytes.erase(first, first + static_cast<std::ptrdiff_t>(count));
  return bytes;
}

Bytes cut_end(Bytes bytes, std::size_t count) {
  bytes.resize(bytes.size() - std::min(bytes.size(), count));
  return bytes;
}

void mend_pages(Bytes& bytes) {
  for (const PageExtent& page : find_pages(bytes)) set_checksum(bytes, page);
}

}  // namespace Trel::Support
