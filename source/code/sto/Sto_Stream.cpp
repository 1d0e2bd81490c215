#include "sto/Sto_Stream.h"

#include <limits>

#include "library/Lib_Report.h"

namespace Trel::Sto {

namespace {

// Where a walk draws its packets from: the pages of an XCom file.
class PageSource {
 public:
  PageSource(Stream& stream, LogicalXCom& reader) : stream_(stream), reader_(reader) {}

  // Draws the next packet and reads on as long as there is none; a hole reads on like a lack. False
  // at the end of the data.
  bool next() {
    while (reader_.decoder().packet_out(packet_) <= 0) {
      if (reader_.do_gobble(Stream::kReadSize) == 0) return false;
    }
    return true;
  }
  void seek() {
    stream_.xcom_seek_packet(packet_.packet, size(), static_cast<long long>(packet_.packetno));
  }
  void decode() {
    stream_.xcom_decode_packet(packet_.packet, size(), static_cast<long long>(packet_.packetno));
  }
  void rewind() { reader_.rewind(); }
  void enable() { reader_.enable(); }
  void disable() { reader_.disable(); }

 private:
  [[nodiscard]] unsigned int size() const { return static_cast<unsigned int>(packet_.bytes); }

  Stream& stream_;
  LogicalXCom& reader_;
  ogg_packet packet_{};
};

// Goes on to the next packet of the stream: any of a navigation file, the matching of a range file.
// False at the end of the data.
bool next_of_stream(LogicalNav& reader) {
  return reader.read_next_packet();
}

bool next_of_stream(LogicalRng& reader) {
  while (reader.read_next_packet()) {
    if (reader.match_packet()) return true;
  }
  return false;
}

// Where a walk draws its packets from: a raw file, whose packets have no location.
template <class Reader>
class RawSource {
 public:
  RawSource(Stream& stream, Reader& reader) : stream_(stream), reader_(reader) {}

  bool next() { return next_of_stream(reader_); }
  void seek() { stream_.seek_packet(reader_.payload_data(), size(), 0); }
  void decode() { stream_.decode_packet(reader_.payload_data(), size(), 0); }
  void rewind() { reader_.rewind(); }
  void enable() { reader_.enable(); }
  void disable() { reader_.disable(); }

 private:
  [[nodiscard]] unsigned int size() const {
    return static_cast<unsigned int>(reader_.payload_size());
  }

  Stream& stream_;
  Reader& reader_;
};

}  // namespace

Stream::Stream(Enum::TRANSPORT_TYPE transport, Enum::CODEC_TYPE type, unsigned int serial)
    : trans(transport),
      codec(type),
      serial_id(serial),
      target(std::numeric_limits<nano_t>::max()) {}

Stream::~Stream() = default;

std::string Stream::codec_identifier() const {
  return std::string("[Trel-") + Enum::GetString(codec) + "]";
}

std::string Stream::obtain_group_tag_from_meta() const {
  const Com::Meta* grouping = meta.find_aux_header("{Trel-Grouping}");
  return grouping == nullptr ? std::string() : grouping->get("Grouping");
}

void Stream::set_group_tag() {
  const std::string group = obtain_group_tag_from_meta();
  group_tag = (group.empty() ? "" : group + " ") + std::to_string(resource_id);
}

void Stream::query_stream(StreamLeaf& leaf) const {
  leaf.stream_id = stream_id;
  leaf.serial_id = serial_id;
  leaf.group_id = group_id;
  leaf.group_tag = group_tag;
  leaf.codec = codec;
  leaf.captured = captured;
  leaf.configured = configured;
  leaf.storable = storable;
  leaf.start = storable ? static_cast<nano_t>(get_start()) : 0;
  leaf.end = storable ? static_cast<nano_t>(get_end()) : 0;
}

bool Stream::test_indexer(nano_t t) const {
  TREL_ASSERT(is_storable(), "sto/Sto_Stream");
  return indexer >= t;
}

void Stream::cache_indexer(const Lib::VariableExt<long long>& now, long long location) {
  indexer_flags = now.get_flags();
  if (!indexer_flags.good()) return;
  if (now.get() != indexer) location_previous = location_current;
  location_current = location;
  indexer = now.get();
}

template <class Source>
bool Stream::init_walk(Source source, nano_t t) {
  const bool back = t < target;
  if (back) {
    set_good(false);
    rewind();
    source.rewind();
  }
  source.enable();
  if (back && source.next()) {
    source.seek();
    set_good(true);
  }
  return back;
}

template <class Source>
bool Stream::seek_walk(Source source, nano_t t) {
  bool found = false;
  while (good && !found) {
    if (test_indexer(t)) {
      found = true;
    } else if (source.next()) {
      source.seek();
    } else {
      set_good(false);
      source.disable();
    }
  }
  target = t;
  return found;
}

template <class Source>
bool Stream::decode_walk(Source source, nano_t t) {
  bool found = test_indexer(t);
  while (!found && source.next()) {
    source.decode();
    found = test_indexer(t);
  }
  target = t;
  return found;
}

bool Stream::do_init_nav(nano_t t) {
  if (!storable || !logical_nav) return false;
  if (init_walk(RawSource(*this, *logical_nav), t)) target = indexer;
  return true;
}

bool Stream::do_seek_nav(nano_t t) {
  return seek_walk(RawSource(*this, *logical_nav), t);
}

bool Stream::do_decode_nav(nano_t t) {
  return decode_walk(RawSource(*this, *logical_nav), t);
}

bool Stream::do_init_ogg(nano_t t) {
  TREL_ASSERT(logical_xcom, "sto/Sto_Stream");
  if (!storable) return false;
  if (init_walk(PageSource(*this, *logical_xcom), t)) target = indexer;
  return true;
}

bool Stream::do_seek_ogg(nano_t t) {
  return seek_walk(PageSource(*this, *logical_xcom), t);
}

bool Stream::do_decode_ogg(nano_t t) {
  return decode_walk(PageSource(*this, *logical_xcom), t);
}

// The target stays where the last seek or decode put it.
bool Stream::do_init_rng(nano_t t) {
  if (!storable) return false;
  TREL_ASSERT(logical_rng, "sto/Sto_Stream");
  init_walk(RawSource(*this, *logical_rng), t);
  return true;
}

bool Stream::do_seek_rng(nano_t t) {
  return seek_walk(RawSource(*this, *logical_rng), t);
}

bool Stream::do_decode_rng(nano_t t) {
  return decode_walk(RawSource(*this, *logical_rng), t);
}

bool Stream::do_init(nano_t t) {
  switch (trans) {
    case Enum::TRANSPORT_TYPE_NAV:
      return do_init_nav(t);
    case Enum::TRANSPORT_TYPE_OGG:
      return do_init_ogg(t);
    case Enum::TRANSPORT_TYPE_RNG:
      return do_init_rng(t);
    default:
      return false;
  }
}

bool Stream::do_seek(nano_t t) {
  switch (trans) {
    case Enum::TRANSPORT_TYPE_NAV:
      return do_seek_nav(t);
    case Enum::TRANSPORT_TYPE_OGG:
      return do_seek_ogg(t);
    case Enum::TRANSPORT_TYPE_RNG:
      return do_seek_rng(t);
    default:
      return false;
  }
}

bool Stream::do_decode(nano_t t) {
  // A stream that is not storable may have no reader.
  if (!storable) return false;
  switch (trans) {
    case Enum::TRANSPORT_TYPE_NAV:
      return do_decode_nav(t);
    case Enum::TRANSPORT_TYPE_OGG:
      return do_decode_ogg(t);
    case Enum::TRANSPORT_TYPE_RNG:
      return do_decode_rng(t);
    default:
      return false;
  }
}

void Stream::do_tidy() {
  if (trans == Enum::TRANSPORT_TYPE_NAV && logical_nav) logical_nav->disable();
  if (trans == Enum::TRANSPORT_TYPE_OGG && logical_xcom) logical_xcom->disable();
  if (trans == Enum::TRANSPORT_TYPE_RNG && logical_rng) logical_rng->disable();
}

}  // namespace Trel::Sto
