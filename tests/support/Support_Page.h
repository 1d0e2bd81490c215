// Single pages: composing one field by field, finding those of a byte stream, reading them back.
#pragma once

#include <ogg/ogg.h>

#include <cstdint>
#include <vector>

#include "support/Support_Bytes.h"

namespace Trel::Support {

inline constexpr unsigned char kContinued = 0x01;
inline constexpr unsigned char kInitial = 0x02;
inline constexpr unsigned char kFooter = 0x04;
inline constexpr unsigned char kAuxiliary = 0x08;

// The fields of one page, any of which may be nonsense.
struct PageImage {
  unsigned char version = 0;
  unsigned char flags = 0;
  std::int64_t granule = 0;
  std::uint32_t serial = 0;
  std::uint32_t number = 0;
  std::vector<unsigned char> segments;  // at most 255 lacing values
  Bytes body;                           // as many bytes as the lacing values add up to

  // The page as it stands in a file, with a good checksum.
  [[nodiscard]] Bytes bytes() const;
};

// A copy of all that `page` holds.
[[nodiscard]] PageImage image_of(const ogg_page& page);

// The same packets on pages of at most `max_segments` lacing values, numbered from image.number.
// The initial flag stays with the first page and the footer flag goes to the last.
[[nodiscard]] std::vector<PageImage> split_page(const PageImage& image, std::size_t max_segments);

// Where a page lies in a byte stream.
struct PageExtent {
  std::size_t offset;
  std::size_t size;
  std::uint32_t serial;
  std::uint32_t number;
  unsigned char flags;

  [[nodiscard]] std::size_t end() const { return offset + size; }
};

// All that looks like a whole page, in order; checksums are not looked at.
[[nodiscard]] std::vector<PageExtent> find_pages(const Bytes& bytes);

// Gives the page at `extent` the checksum of what it holds.
void set_checksum(Bytes& bytes, const PageExtent& extent);

// libogg's own view of a byte stream. A page is valid until the next call.
class PageReader {
 public:
  explicit PageReader(const Bytes& bytes);
  PageReader(const PageReader&) = delete;
  PageReader& operator=(const PageReader&) = delete;
  ~PageReader();

  // 1: a page. 0: no more. Negative: bytes that are no page are being skipped.
  int next(ogg_page& page);

 private:
  ogg_sync_state sync_;
};

}  // namespace Trel::Support
