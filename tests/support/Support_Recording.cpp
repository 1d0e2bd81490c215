#include "support/Support_Recording.h"

#include <algorithm>

namespace Trel::Support {

namespace {

std::string render(const RecordingStream::Items& items) {
  std::string text;
  for (const auto& [key, value] : items) text.append("\n").append(key).append("=").append(value);
  return text.append("\n");
}

}  // namespace

RecordingStream::RecordingStream(std::uint32_t serial, const PageSink& sink)
    : serial_(serial), sink_(sink) {
  ogg_stream_init(&stream_, static_cast<int>(serial));
  stream_.b_o_s = 1;  // libogg would keep the first page to a single packet
}

RecordingStream::~RecordingStream() {
  ogg_stream_clear(&stream_);
}

RecordingStream& RecordingStream::codec(const std::string& name) {
  codec_ = name;
  return *this;
}

RecordingStream& RecordingStream::initial(const Bytes& blob) {
  initial_ = blob;
  return *this;
}

RecordingStream& RecordingStream::item(const std::string& key, const std::string& value) {
  items_.emplace_back(key, value);
  return *this;
}

RecordingStream& RecordingStream::declare_headers(const std::string& count) {
  declared_ = count;
  return *this;
}

RecordingStream& RecordingStream::auxiliary(const Bytes& blob) {
  auxiliary_.push_back(blob);
  return *this;
}

RecordingStream& RecordingStream::auxiliary(std::string_view tag, const Items& items) {
  return auxiliary(bytes_of(std::string(tag) + render(items)));
}

RecordingStream& RecordingStream::grouping(const std::string& group) {
  return auxiliary("{Trel-Grouping}", {{"Grouping", group}});
}

RecordingStream& RecordingStream::range(const Items& items) {
  return auxiliary("{Trel-Range}", items);
}

RecordingStream& RecordingStream::dbu(const std::string& document) {
  return auxiliary(bytes_of("/Trel-UCom-Dbu/" + document));
}

RecordingStream& RecordingStream::dbc(std::string_view database) {
  return auxiliary(bytes_of("(Trel-Can-Dbc)" + std::string(database)));
}

RecordingStream& RecordingStream::ucom(const Dbu& database) {
  return codec("UCom").dbu(database.text());
}

RecordingStream& RecordingStream::headers_together() {
  together_ = true;
  return *this;
}

Bytes RecordingStream::initial_blob() const {
  if (initial_) return *initial_;
  Items items;
  const std::string count = declared_.value_or(std::to_string(auxiliary_.size()));
  if (!count.empty()) items.emplace_back("headers", count);
  items.insert(items.end(), items_.begin(), items_.end());
  return bytes_of("[Trel-" + codec_ + "]" + render(items));
}

RecordingStream& RecordingStream::headers() {
  if (headers_written_) return *this;
  headers_written_ = true;
  if (!codec_.empty() || initial_) {
    queue(initial_blob());
    flush(kInitial);
  }
  for (const Bytes& blob : auxiliary_) {
    queue(blob);
    if (!together_) flush(kAuxiliary);
  }
  flush(kAuxiliary);
  return *this;
}

RecordingStream& RecordingStream::packet(std::span<const unsigned char> bytes) {
  headers();
  queue(bytes);
  const bool full = (packets_per_page_ != 0 && queued_packets_ >= packets_per_page_) ||
                    (bytes_per_page_ != 0 && queued_bytes_ >= bytes_per_page_);
  if (full) flush(0);
  return *this;
}

RecordingStream& RecordingStream::page() {
  headers();
  flush(0);
  return *this;
}

RecordingStream& RecordingStream::raw_page(const std::vector<unsigned char>& segments,
                                           const Bytes& body, unsigned char flags) {
  page();
  PageImage image;
  image.serial = serial_;
  image.segments = segments;
  image.body = body;
  image.flags = flags & kContinued;
  write(std::move(image), flags);
  return *this;
}

RecordingStream& RecordingStream::footer(const Bytes& blob) {
  page();
  queue(blob);
  flush(kFooter);
  return *this;
}

RecordingStream& RecordingStream::packets_per_page(std::size_t count) {
  packets_per_page_ = count;
  return *this;
}

RecordingStream& RecordingStream::bytes_per_page(std::size_t count) {
  bytes_per_page_ = count;
  return *this;
}

RecordingStream& RecordingStream::segments_per_page(std::size_t count) {
  segments_per_page_ = count;
  return *this;
}

RecordingStream& RecordingStream::page_number(std::uint32_t number) {
  flush(0);
  number_ = number;
  return *this;
}

RecordingStream& RecordingStream::hole(std::uint32_t pages) {
  flush(0);
  number_ += pages;
  return *this;
}

RecordingStream& RecordingStream::flags(unsigned char byte) {
  flush(0);
  flags_ = byte;
  return *this;
}

RecordingStream& RecordingStream::version(unsigned char byte) {
  flush(0);
  version_ = byte;
  return *this;
}

RecordingStream& RecordingStream::granule(std::int64_t position) {
  flush(0);
  granule_ = position;
  return *this;
}

void RecordingStream::queue(std::span<const unsigned char> bytes) {
  ogg_packet packet{};
  packet.packet = const_cast<unsigned char*>(bytes.data());
  packet.bytes = static_cast<long>(bytes.size());
  ogg_stream_packetin(&stream_, &packet);
  ++queued_packets_;
  queued_bytes_ += bytes.size();
}

void RecordingStream::flush(unsigned char flags) {
  ogg_page page;
  while (ogg_stream_flush(&stream_, &page) != 0) write(image_of(page), flags);
  queued_packets_ = 0;
  queued_bytes_ = 0;
}

void RecordingStream::write(PageImage image, unsigned char flags) {
  image.flags = static_cast<unsigned char>((image.flags & kContinued) | flags);
  image.number = number_;
  for (PageImage& page : split_page(image, segments_per_page_)) {
    page.flags = std::exchange(flags_, std::nullopt).value_or(page.flags);
    page.version = std::exchange(version_, std::nullopt).value_or(page.version);
    page.granule = std::exchange(granule_, std::nullopt).value_or(page.granule);
    sink_(page.bytes());
    ++number_;
  }
}

Recording::Recording()
    : sink_([this](std::span<const unsigned char> page) {
        bytes_.insert(bytes_.end(), page.begin(), page.end());
      }) {}

Recording::Recording(PageSink sink) : sink_(std::move(sink)) {}

RecordingStream& Recording::stream(std::uint32_t serial) {
  const auto found = std::find_if(streams_.begin(), streams_.end(),
                                  [serial](const auto& one) { return one->serial() == serial; });
  return found == streams_.end() ? another_stream(serial) : **found;
}

RecordingStream& Recording::another_stream(std::uint32_t serial) {
  streams_.push_back(std::make_unique<RecordingStream>(serial, sink_));
  return *streams_.back();
}

Recording& Recording::garbage(const Bytes& bytes) {
  sink_(bytes);
  return *this;
}

Recording& Recording::finish() {
  for (const auto& stream : streams_) stream->page();
  return *this;
}

const Bytes& Recording::bytes() {
  finish();
  return bytes_;
}

}  // namespace Trel::Support
