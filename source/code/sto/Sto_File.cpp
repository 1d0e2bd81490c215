#include "sto/Sto_File.h"

#include <algorithm>

#include "library/Lib_Report.h"

namespace Trel::Sto {

bool Logical::open_and_measure() {
  file_.clear();
  file_.open(file_name_, std::ios::in | std::ios::binary);
  if (!file_.is_open()) return false;
  file_.seekg(0, std::ios::end);
  const std::streamoff end = file_.good() ? static_cast<std::streamoff>(file_.tellg()) : 0;
  size_ = end > 0 ? static_cast<unsigned long long>(end) : 0;
  return true;
}

void Logical::go_to(unsigned long long place) {
  file_.clear();
  file_.seekg(static_cast<std::streamoff>(place), std::ios::beg);
}

bool Logical::set_file(const std::string& path) {
  const bool was_open = file_.is_open();
  file_name_ = path;
  disable();
  size_ = start_ = finish_ = span_ = position_ = 0;
  if (!open_and_measure()) return false;
  finish_ = size_;
  update_span();
  go_to(0);
  if (!was_open) disable();
  return true;
}

void Logical::open(const std::string& path, unsigned long long from, unsigned long long to) {
  file_name_ = path;
  disable();
  if (!open_and_measure()) TREL_ASSERT(false, "sto/Sto_File");
  set_start(from);
  set_finish(to);
  position_ = start_;
  go_to(start_);
}

void Logical::set_start(unsigned long long value) {
  start_ = std::min(value, size_);
  update_span();
}

void Logical::set_finish(unsigned long long value) {
  finish_ = value == 0 || value > size_ ? size_ : value;
  update_span();
}

void Logical::rewind() {
  position_ = start_;
  if (file_.is_open()) go_to(position_);
}

void Logical::enable() {
  if (!file_.is_open()) {
    file_.clear();
    file_.open(file_name_, std::ios::in | std::ios::binary);
  }
  go_to(position_);
}

void Logical::disable() {
  if (file_.is_open()) file_.close();
}

unsigned long long Logical::read(unsigned char* buffer, unsigned long long count) {
  if (!good()) return 0;
  file_.read(reinterpret_cast<char*>(buffer), static_cast<std::streamsize>(count));
  const auto got = static_cast<unsigned long long>(file_.gcount());
  position_ += got;
  position_ = absolute();
  return got;
}

OggSync::OggSync() {
  ogg_sync_init(&sync);
  ogg_sync_reset(&sync);
}

OggSync::~OggSync() {
  ogg_sync_clear(&sync);
}

void OggSync::reset() {
  ogg_sync_reset(&sync);
}

unsigned char* OggSync::buffer(unsigned long long size) {
  return reinterpret_cast<unsigned char*>(ogg_sync_buffer(&sync, static_cast<long>(size)));
}

void OggSync::wrote(unsigned long long count) {
  ogg_sync_wrote(&sync, static_cast<long>(count));
}

bool OggSync::next_page(ogg_page& page) {
  for (;;) {
    const int result = ogg_sync_pageout(&sync, &page);
    if (result >= 0) return result > 0;
  }
}

void LogicalOgg::rewind() {
  Logical::rewind();
  sync_.reset();
}

unsigned long long LogicalOgg::read(unsigned long long size) {
  unsigned char* buffer = sync_.buffer(size);
  if (buffer == nullptr) return 0;
  const unsigned long long count = Logical::read(buffer, size);
  sync_.wrote(count);
  return count;
}

void LogicalXCom::rewind() {
  LogicalOgg::rewind();
  decoder_.rewind();
}

unsigned long long LogicalXCom::do_gobble(unsigned long long size) {
  const unsigned long long count = read(size);
  if (count == 0) return 0;
  ogg_page page;
  while (sync_.next_page(page)) {
    if (static_cast<unsigned int>(ogg_page_serialno(&page)) == serial_) decoder_.decode_page(page);
  }
  return count;
}

}  // namespace Trel::Sto
