#include "Fuzz_Input.h"

#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "support/Support_Page.h"
#include "support/Support_Walk.h"

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

void open_and_walk(const Support::Bytes& bytes, const std::string& extension) {
  constexpr std::size_t kParts = 20;  // of a long list of elements one in so many is selected
  const File file(bytes, extension);
  Sto::DataStore store(Support::usual_options());
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  try {
    store.add_resource(file.path(), ids, count);
  } catch (const nlohmann::json::exception&) {
    return;
  }
  Sto::Aspect aspect;
  for (const unsigned int id : ids) {
    Support::select_elements(store, aspect, id, kParts, bytes.size());
  }
  Support::walk(store, aspect, Support::seconds_of_step(store));
}

}  // namespace Trel::Fuzz
