#include "damage/Damage_Outside.h"

#include <algorithm>
#include <limits>
#include <random>

#include "support/Support_Damage.h"

namespace Trel::Damage {

namespace {

using Support::Bytes;
using Support::PageExtent;

constexpr std::size_t kSegmentCount = 26;

// Nanoseconds, both included.
struct Span {
  long long first;
  long long last;

  [[nodiscard]] bool has(long long t) const { return t >= first && t <= last; }
};
constexpr Span kNothingLost{std::numeric_limits<long long>::max(),
                            std::numeric_limits<long long>::min()};

bool is_payload(const PageExtent& page) {
  return (page.flags & (Support::kInitial | Support::kAuxiliary)) == 0;
}

bool same(const Sto::Result& a, const Sto::Result& b) {
  return a.type() == b.type() && a.get_nano() == b.get_nano() &&
         a.get_flags().byte() == b.get_flags().byte() &&
         a.raw<unsigned long long>() == b.raw<unsigned long long>();
}

// The first difference at the instants from number `from` on, but for what lies in `lost`.
std::string difference(const DecodedStream& a, const DecodedStream& b, std::size_t from,
                       const Span& lost) {
  if (a.names != b.names) return "other elements";
  for (std::size_t m = from; m < a.moments.size(); ++m) {
    if (lost.has(a.moments[m].clock)) continue;
    const auto& before = a.moments[m].values;
    const auto& after = b.moments[m].values;
    for (std::size_t v = 0; v < before.size(); ++v) {
      if (lost.has(before[v].get_nano()) || same(before[v], after[v])) continue;
      return a.names[v] + " at instant " + std::to_string(m);
    }
  }
  return {};
}

// The times of a page's packets, each a message number with the time behind it.
Span ucom_times(const Bytes& bytes, const PageExtent& page) {
  constexpr std::size_t kMessageNumber = 2;
  const std::size_t segments = bytes[page.offset + kSegmentCount];
  const unsigned char* lacing = &bytes[page.offset] + kSegmentCount + 1;
  Span times = kNothingLost;
  std::size_t packet = page.offset + kSegmentCount + 1 + segments;
  for (std::size_t at = packet, n = 0; n < segments; ++n) {
    at += lacing[n];
    if (lacing[n] == 255) continue;
    unsigned long long nano = 0;
    for (std::size_t i = 8; i > 0; --i) nano = nano << 8 | bytes[packet + kMessageNumber + i - 1];
    times.first = std::min(times.first, static_cast<long long>(nano));
    times.last = std::max(times.last, static_cast<long long>(nano));
    packet = at;
  }
  return times;
}

// Where the page that stands at `offset` claims to end: `offset` when it claims to be none, and
// behind the file when its header does.
std::size_t claimed_end(const Bytes& bytes, std::size_t offset) {
  const unsigned char* page = bytes.data() + offset;
  const std::size_t available = bytes.size() - offset;
  if (!std::equal(page, page + 4, "OggS")) return offset;
  std::size_t size = kSegmentCount + 1 + page[kSegmentCount];
  if (size > available) return bytes.size() + 1;
  for (std::size_t n = kSegmentCount + 1, end = size; n < end; ++n) size += page[n];
  return offset + size;
}

// Up to a hundred bits of the page turned, such that it is damaged and holds nothing back.
Bytes flip_page(const Bytes& bytes, const PageExtent& page, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  Bytes damaged;
  do {
    damaged = bytes;
    for (std::size_t count = 1 + random() % 100; count > 0; --count) {
      damaged[page.offset + random() % page.size] ^= static_cast<unsigned char>(1U << random() % 8);
    }
  } while (damaged == bytes || claimed_end(damaged, page.offset) > bytes.size());
  return damaged;
}

// Without the page, and the numbers of its stream without a gap.
Bytes leave_out(Bytes bytes, const PageExtent& page) {
  constexpr std::size_t kNumber = 18;
  for (const PageExtent& other : Support::find_pages(bytes)) {
    if (other.serial != page.serial || other.number <= page.number) continue;
    for (std::size_t i = 0; i < 4; ++i) {
      bytes[other.offset + kNumber + i] = static_cast<unsigned char>((other.number - 1) >> 8 * i);
    }
    Support::set_checksum(bytes, other);
  }
  return Support::remove_bytes(std::move(bytes), page.offset, page.size);
}

}  // namespace

Outside::Outside(const Subject& subject)
    : bytes_(subject.bytes), pages_(Support::find_pages(subject.bytes)) {}

std::vector<std::size_t> Outside::payload_pages() const {
  std::vector<std::size_t> places;
  for (std::size_t n = 0; n < pages_.size(); ++n) {
    if (is_payload(pages_[n])) places.push_back(n);
  }
  return places;
}

Decoded Outside::decode_bytes(const Bytes& bytes, const std::filesystem::path& folder) const {
  const std::filesystem::path path = folder / "in.xcom";
  Support::write_file(path, bytes);
  return decode(path, instants_);
}

bool Outside::begins_without_packet(const Bytes& damaged, std::size_t page) const {
  constexpr std::size_t kRead = 4096;
  const auto of_stream = [serial = pages_[page].serial](const PageExtent& other) {
    return other.serial == serial && is_payload(other);
  };
  if (std::find_if(pages_.begin(), pages_.end(), of_stream)->offset != pages_[page].offset) {
    return false;
  }
  const auto place = pages_.begin() + static_cast<std::ptrdiff_t>(page);
  const auto next = std::find_if(place + 1, pages_.end(), of_stream);
  if (next == pages_.end()) return false;
  const std::size_t needed = std::max(next->end(), claimed_end(damaged, pages_[page].offset));
  return (needed - 1) / kRead == (damaged.size() - 1) / kRead;
}

std::string Outside::differs(std::size_t page, const std::filesystem::path& folder,
                             std::uint64_t seed) {
  if (!before_) {
    const std::filesystem::path path = folder / "in.xcom";
    Support::write_file(path, bytes_);
    instants_ = instants_of(path);
    before_ = decode(path, instants_);
  }
  const PageExtent& extent = pages_.at(page);
  const Bytes damaged = flip_page(bytes_, extent, seed);
  const Decoded lacking = decode_bytes(leave_out(bytes_, extent), folder);
  const Decoded after = decode_bytes(damaged, folder);
  for (const auto& [serial, stream] : *before_) {
    const auto found = after.find(serial);
    if (found == after.end()) return "stream " + std::to_string(serial) + " is gone";
    if (serial == extent.serial) continue;
    const std::string text = difference(stream, found->second, 0, kNothingLost);
    if (!text.empty()) return "stream " + std::to_string(serial) + ": " + text;
  }
  const DecodedStream& stream = after.at(extent.serial);
  std::size_t from = 0;
  if (begins_without_packet(damaged, page)) {
    const auto begin = std::upper_bound(instants_.begin(), instants_.end(), stream.start);
    from = static_cast<std::size_t>(begin - instants_.begin());
  }
  const std::string text = difference(lacking.at(extent.serial), stream, from, kNothingLost);
  if (!text.empty()) return "as never written: " + text;
  if (stream.codec != Enum::CODEC_TYPE_UCOM || stream.names.empty()) return {};
  const std::string outside =
      difference(before_->at(extent.serial), stream, from, ucom_times(bytes_, extent));
  return outside.empty() ? "" : "outside the times of the page: " + outside;
}

}  // namespace Trel::Damage
