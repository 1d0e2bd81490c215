#include "support/Support_Page.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace Trel::Support {

namespace {

constexpr std::size_t kFixedHeader = 27;
constexpr unsigned char kCapture[4] = {'O', 'g', 'g', 'S'};

void put_little_endian(unsigned char* target, std::uint64_t value, int size) {
  for (int i = 0; i < size; ++i) target[i] = static_cast<unsigned char>(value >> (8 * i));
}

std::uint32_t get_32(const unsigned char* source) {
  return source[0] | source[1] << 8 | source[2] << 16 | static_cast<std::uint32_t>(source[3]) << 24;
}

ogg_page view(unsigned char* page, std::size_t size) {
  const std::size_t header = kFixedHeader + page[26];
  ogg_page result;
  result.header = page;
  result.header_len = static_cast<long>(header);
  result.body = page + header;
  result.body_len = static_cast<long>(size - header);
  return result;
}

// The size of the page that starts at `offset`; 0 when there is no whole page.
std::size_t page_size_at(const Bytes& bytes, std::size_t offset) {
  if (bytes.size() - offset < kFixedHeader) return 0;
  const unsigned char* page = bytes.data() + offset;
  if (std::memcmp(page, kCapture, sizeof kCapture) != 0) return 0;
  const std::size_t header = kFixedHeader + page[26];
  if (bytes.size() - offset < header) return 0;
  const std::size_t size = std::accumulate(page + kFixedHeader, page + header, header);
  return bytes.size() - offset < size ? 0 : size;
}

}  // namespace

Bytes PageImage::bytes() const {
  Bytes result(kFixedHeader);
  std::copy(std::begin(kCapture), std::end(kCapture), result.begin());
  result[4] = version;
  result[5] = flags;
  put_little_endian(&result[6], static_cast<std::uint64_t>(granule), 8);
  put_little_endian(&result[14], serial, 4);
  put_little_endian(&result[18], number, 4);
  result[26] = static_cast<unsigned char>(segments.size());
  result.reserve(kFixedHeader + segments.size() + body.size());
  result.insert(result.end(), segments.begin(), segments.end());
  result.insert(result.end(), body.begin(), body.end());
  ogg_page page = view(result.data(), result.size());
  ogg_page_checksum_set(&page);
  return result;
}

PageImage image_of(const ogg_page& page) {
  PageImage image;
  image.version = page.header[4];
  image.flags = page.header[5];
  image.granule = ogg_page_granulepos(&page);
  image.serial = get_32(page.header + 14);
  image.number = get_32(page.header + 18);
  image.segments.assign(page.header + kFixedHeader, page.header + page.header_len);
  image.body.assign(page.body, page.body + page.body_len);
  return image;
}

std::vector<PageImage> split_page(const PageImage& image, std::size_t max_segments) {
  std::vector<PageImage> pages;
  auto body = image.body.begin();
  std::size_t first = 0;
  do {
    const std::size_t count = std::min(max_segments, image.segments.size() - first);
    const auto segments = image.segments.begin() + static_cast<std::ptrdiff_t>(first);
    PageImage page = image;
    page.number = image.number + static_cast<std::uint32_t>(pages.size());
    page.segments.assign(segments, segments + static_cast<std::ptrdiff_t>(count));
    const auto size = std::accumulate(page.segments.begin(), page.segments.end(), 0);
    page.body.assign(body, body + size);
    body += size;
    if (first > 0) {
      page.flags &= static_cast<unsigned char>(~(kInitial | kContinued));
      if (image.segments[first - 1] == 255) page.flags |= kContinued;
    }
    first += count;
    if (first < image.segments.size()) page.flags &= static_cast<unsigned char>(~kFooter);
    pages.push_back(std::move(page));
  } while (first < image.segments.size());
  return pages;
}

std::vector<PageExtent> find_pages(const Bytes& bytes) {
  std::vector<PageExtent> pages;
  std::size_t offset = 0;
  while (offset < bytes.size()) {
    const std::size_t size = page_size_at(bytes, offset);
    if (size != 0) {
      const unsigned char* page = bytes.data() + offset;
      pages.push_back({offset, size, get_32(page + 14), get_32(page + 18), page[5]});
    }
    offset += std::max<std::size_t>(size, 1);
  }
  return pages;
}

void set_checksum(Bytes& bytes, const PageExtent& extent) {
  ogg_page page = view(bytes.data() + extent.offset, extent.size);
  ogg_page_checksum_set(&page);
}

PageReader::PageReader(const Bytes& bytes) {
  ogg_sync_init(&sync_);
  char* buffer = ogg_sync_buffer(&sync_, static_cast<long>(bytes.size()));
  std::copy(bytes.begin(), bytes.end(), buffer);
  ogg_sync_wrote(&sync_, static_cast<long>(bytes.size()));
}

PageReader::~PageReader() {
  ogg_sync_clear(&sync_);
}

int PageReader::next(ogg_page& page) {
  return ogg_sync_pageout(&sync_, &page);
}

}  // namespace Trel::Support
