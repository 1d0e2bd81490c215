#include "damage/Damage_Outside.h"

#include <algorithm>
#include <limits>
#include <map>
#include <random>

#include "support/Support_Damage.h"
#include "support/Support_Walk.h"

namespace Trel::Damage {

namespace {

using Support::Bytes;
using Support::PageExtent;

constexpr long long kStep = 50'000'000;  // nanoseconds

// All values of a stream at one instant, the clock's apart.
struct Moment {
  long long clock;
  std::vector<Sto::Result> values;
};

// By serial number.
struct Stream {
  bool is_ucom;
  std::vector<std::string> names;
  std::vector<Moment> moments;
};
using Streams = std::map<unsigned int, Stream>;

struct Span {
  long long first;
  long long last;

  [[nodiscard]] bool has(long long t) const { return t >= first && t <= last; }
};

Span span_of(const std::filesystem::path& path) {
  Sto::DataStore store(Support::usual_options());
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  store.add_resource(path.string(), ids, count);
  Span span{};
  store.get_start(span.first);
  store.get_end(span.last);
  return span;
}

// Every element of every stream at the instants of `span`.
Streams decode(const Bytes& bytes, const std::filesystem::path& path, const Span& span) {
  Support::write_file(path, bytes);
  Sto::DataStore store(Support::usual_options());
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  store.add_resource(path.string(), ids, count);
  Streams streams;
  std::map<unsigned int, std::pair<Sto::Aspect, Sto::Aspect>> aspects;
  for (const unsigned int id : ids) {
    Sto::StreamLeaf leaf;
    store.query_stream(leaf, id);
    Stream& stream = streams[leaf.serial_id];
    stream.is_ucom = leaf.codec == Enum::CODEC_TYPE_UCOM;
    auto& [clock, all] = aspects[leaf.serial_id];
    Support::select_elements(store, all, id, 1, 0);
    for (const auto& node : all.destinations()) stream.names.push_back(node.name);
    store.direct_use_element(clock, id, "Nano");
  }
  store.direct_decode_begin(span.first);
  for (long long t = span.first; t <= span.last; t += kStep) {
    for (auto& [serial, stream] : streams) {
      Moment& moment = stream.moments.emplace_back();
      std::vector<Sto::Result> now;
      store.direct_decode_step(aspects[serial].first, t, now);
      moment.clock = now.empty() ? 0 : now[0].raw<long long>();
      store.direct_decode_step(aspects[serial].second, t, moment.values);
    }
  }
  store.direct_decode_end();
  return streams;
}

bool same(const Sto::Result& a, const Sto::Result& b) {
  return a.type() == b.type() && a.get_nano() == b.get_nano() &&
         a.get_flags().byte() == b.get_flags().byte() &&
         a.raw<unsigned long long>() == b.raw<unsigned long long>();
}

// The first difference, but for what lies in `lost`.
std::string difference(const Stream& a, const Stream& b, const Span& lost) {
  if (a.names != b.names) return "other elements";
  if (a.moments.size() != b.moments.size()) return "other instants";
  for (std::size_t m = 0; m < a.moments.size(); ++m) {
    if (lost.has(a.moments[m].clock)) continue;
    const auto& before = a.moments[m].values;
    const auto& after = b.moments[m].values;
    if (before.size() != after.size()) return "another count of values";
    for (std::size_t v = 0; v < before.size(); ++v) {
      if (lost.has(before[v].get_nano()) || same(before[v], after[v])) continue;
      return a.names[v] + " at instant " + std::to_string(m);
    }
  }
  return {};
}

constexpr Span kNothingLost{std::numeric_limits<long long>::max(),
                            std::numeric_limits<long long>::min()};

// The times of a page's packets, each a message number with the time behind it.
Span ucom_times(const Bytes& bytes, const PageExtent& page) {
  constexpr std::size_t kSegmentCount = 26;
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

// Up to a hundred bits of the page turned.
Bytes flip_page(Bytes bytes, const PageExtent& page, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  for (std::size_t count = 1 + random() % 100; count > 0; --count) {
    bytes[page.offset + random() % page.size] ^= static_cast<unsigned char>(1U << random() % 8);
  }
  return bytes;
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

std::vector<std::size_t> payload_pages(const Subject& subject) {
  std::vector<std::size_t> places;
  const auto pages = Support::find_pages(subject.bytes);
  for (std::size_t n = 0; n < pages.size(); ++n) {
    if ((pages[n].flags & (Support::kInitial | Support::kAuxiliary)) == 0) places.push_back(n);
  }
  return places;
}

std::string differs_outside(const Subject& subject, std::size_t page,
                            const std::filesystem::path& folder, std::uint64_t seed) {
  const PageExtent extent = Support::find_pages(subject.bytes).at(page);
  const std::filesystem::path path = folder / "in.xcom";
  Support::write_file(path, subject.bytes);
  const Span span = span_of(path);
  const Streams before = decode(subject.bytes, path, span);
  const Streams lacking = decode(leave_out(subject.bytes, extent), path, span);
  const Streams after = decode(flip_page(subject.bytes, extent, seed), path, span);
  for (const auto& [serial, stream] : before) {
    const auto found = after.find(serial);
    if (found == after.end()) return "stream " + std::to_string(serial) + " is gone";
    const bool damaged = serial == extent.serial;
    const std::string found_out =
        difference(damaged ? lacking.at(serial) : stream, found->second, kNothingLost);
    if (!found_out.empty()) {
      return "stream " + std::to_string(serial) + (damaged ? ", as never written: " : ": ") +
             found_out;
    }
    if (!damaged || !stream.is_ucom) continue;
    const std::string outside =
        difference(stream, found->second, ucom_times(subject.bytes, extent));
    if (!outside.empty()) return "outside the times of the page: " + outside;
  }
  return {};
}

}  // namespace Trel::Damage
