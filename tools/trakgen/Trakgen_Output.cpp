#include "trakgen/Trakgen_Output.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace Trel::Trakgen {

namespace {

bool contains(const std::vector<std::uint64_t>& numbers, std::uint64_t number) {
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

}  // namespace

Output::Output(const std::string& path, Damage damage)
    : path_(path), file_(path, std::ios::binary | std::ios::trunc), damage_(std::move(damage)) {
  if (!file_) throw std::runtime_error("cannot write " + path_);
  std::sort(damage_.garbage.rbegin(), damage_.garbage.rend());
}

void Output::write_page(std::span<const unsigned char> page) {
  const std::uint64_t number = page_++;
  if (contains(damage_.drop_pages, number)) return;
  Support::Bytes bytes(page.begin(), page.end());
  const bool repeat = contains(damage_.repeat_pages, number);
  if (contains(damage_.swap_pages, number) && held_.empty()) {
    held_ = std::move(bytes);
    repeat_held_ = repeat;
    return;
  }
  place(bytes, repeat);
  if (!held_.empty()) place(std::exchange(held_, {}), repeat_held_);
}

void Output::finish() {
  if (!held_.empty()) place(std::exchange(held_, {}), repeat_held_);
  file_.close();
  if (!file_) throw std::runtime_error("cannot write " + path_);
  if (damage_.cut_bytes == 0) return;
  const std::uint64_t size = std::filesystem::file_size(path_);
  std::filesystem::resize_file(path_, size - std::min(size, damage_.cut_bytes));
}

void Output::place(const Support::Bytes& page, bool repeat) {
  write(page);
  if (repeat) write(page);
}

void Output::write(const Support::Bytes& page) {
  const std::uint64_t end = position_ + page.size();
  const auto is_here = [this, end](std::uint64_t offset) {
    return offset >= position_ && offset < end;
  };
  Support::Bytes bytes = page;
  for (const std::uint64_t offset : damage_.flip_bits) {
    if (is_here(offset)) bytes[offset - position_] ^= 1;
  }
  // From the back, so that the offsets in front stay what they are.
  for (const auto& [offset, size] : damage_.garbage) {
    if (!is_here(offset)) continue;
    const Support::Bytes noise = Support::noise(size, static_cast<unsigned int>(offset));
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(offset - position_), noise.begin(),
                 noise.end());
  }
  file_.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
  position_ = end;
}

}  // namespace Trel::Trakgen
