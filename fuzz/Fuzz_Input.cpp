#include "Fuzz_Input.h"

#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "sto/Sto_Store.h"
#include "sto/Sto_Stream.h"
#include "support/Support_Page.h"

namespace Trel::Fuzz {

unsigned char Input::byte() {
  if (rest_.empty()) return 0;
  const auto value = static_cast<unsigned char>(rest_.front());
  rest_.remove_prefix(1);
  return value;
}

unsigned int Input::number() {
  const unsigned int low = byte();
  return low | static_cast<unsigned int>(byte()) << 8;
}

std::string_view Input::part() {
  const std::size_t size = std::min<std::size_t>(number(), rest_.size());
  const std::string_view result = rest_.substr(0, size);
  rest_.remove_prefix(size);
  return result;
}

std::string_view Input::rest() {
  const std::string_view result = rest_;
  rest_ = {};
  return result;
}

void defuse_empty_headers(Support::Bytes& bytes) {
  constexpr std::size_t kFlags = 5;
  constexpr std::size_t kSegmentCount = 26;
  constexpr std::size_t kSegments = 27;
  for (const Support::PageExtent& page : Support::find_pages(bytes)) {
    if ((page.flags & Support::kInitial) == 0) continue;
    const std::size_t count = bytes[page.offset + kSegmentCount];
    const unsigned char* lacing = &bytes[page.offset] + kSegments;
    std::size_t first = 0;
    if ((page.flags & Support::kContinued) != 0) {
      while (first < count && lacing[first] == 255) ++first;
      ++first;
    }
    if (first >= count || lacing[first] != 0) continue;
    bytes[page.offset + kFlags] &= static_cast<unsigned char>(~Support::kInitial);
    Support::set_checksum(bytes, page);
  }
}

File::File(const Support::Bytes& bytes, const std::string& extension)
    : path_(std::filesystem::temp_directory_path() /
            ("trakdump-fuzz-" + std::to_string(getpid()) + extension)) {
  Support::write_file(path_, bytes);
}

File::~File() {
  std::filesystem::remove(path_);
}

namespace {

// Selects elements that a stream describes, and asks for their spans: all of them, or of a long
// list those that `choice` picks.
void select_elements(Sto::DataStore& store, Sto::Aspect& aspect, unsigned int id,
                     std::size_t choice) {
  constexpr std::size_t kLongList = 100;
  constexpr std::size_t kParts = 20;
  std::vector<Sto::DynamicNode> elements;
  const Sto::Stream* stream = store.get_stream_in(id);
  stream->query_measurements(elements);
  for (std::size_t n = 0; n < elements.size(); ++n) {
    if (elements.size() > kLongList && n % kParts != choice % kParts) continue;
    const Sto::DynamicNode& element = elements[n];
    static_cast<void>(stream->get_start(element.name));
    static_cast<void>(stream->get_end(element.name));
    store.direct_add_element(id, element.name);
    store.direct_use_element(aspect, id, element.name);
  }
  Sto::StreamLeaf leaf;
  store.query_stream(leaf, id);
}

void walk(Sto::DataStore& store, const Sto::Aspect& aspect) {
  constexpr unsigned long long kSecond = 1000000000;
  long long start = 0;
  long long end = 0;
  store.get_start(start);
  store.get_end(end);
  store.direct_decode_begin(start);
  if (start < end) {
    const unsigned long long span =
        static_cast<unsigned long long>(end) - static_cast<unsigned long long>(start);
    const unsigned long long step = std::max(kSecond, span / 1000 + 1);
    std::vector<Sto::Result> values;
    for (unsigned long long passed = 0; passed < span; passed += step) {
      const auto t = static_cast<long long>(static_cast<unsigned long long>(start) + passed);
      store.direct_decode_step(aspect, t, values);
      if (span - passed <= step) break;
    }
    // And back again, which rewinds every stream.
    store.direct_decode_begin(start);
    store.direct_decode_step(aspect, start, values);
  }
  store.direct_decode_end();
}

}  // namespace

void open_and_walk(const Support::Bytes& bytes, const std::string& extension) {
  const File file(bytes, extension);
  Sto::DataStore store(Sto::Options(16, 1000000000, 0, 0.1, 1048576, 10));
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  try {
    store.add_resource(file.path(), ids, count);
  } catch (const nlohmann::json::exception&) {
    return;
  }
  Sto::Aspect aspect;
  for (const unsigned int id : ids) select_elements(store, aspect, id, bytes.size());
  walk(store, aspect);
}

}  // namespace Trel::Fuzz
