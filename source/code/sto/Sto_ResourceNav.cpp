#include "sto/Sto_ResourceNav.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <limits>

#include "library/Lib_Report.h"
#include "sto/Sto_StreamMCom.h"
#include "sto/Sto_StreamNCom.h"

namespace Trel::Sto {

namespace {

constexpr unsigned int kSerial = 0;

std::span<const ResourceNav::StreamKind> stream_kinds() {
  static const std::array kinds = {ResourceNav::StreamKind{".mcom", make_stream<StreamMCom>},
                                   ResourceNav::StreamKind{".ncom", make_stream<StreamNCom>}};
  return kinds;
}

// A stretch of the file, from the first byte of a packet on; the end is not part of it.
struct Stretch {
  unsigned long long begin;
  unsigned long long end;
};

bool same_file(const std::string& one, const std::string& other) {
  std::error_code missing;
  return std::filesystem::equivalent(one, other, missing);
}

// Appends the packets that begin in the stretch.
void copy_packets(const std::string& path, const Stretch& stretch, std::ostream& out) {
  LogicalNavAny reader;
  reader.set_file(path);
  reader.set_start(stretch.begin);
  reader.rewind();
  reader.enable();
  while (reader.read_next_packet() && reader.absolute_packet_location() < stretch.end) {
    out.write(reinterpret_cast<const char*>(reader.payload_data()),
              static_cast<std::streamsize>(reader.payload_size()));
  }
}

}  // namespace

ResourceNav::ResourceNav(const Options& store_options, const std::string& path, Messages* progress)
    : ResourceNav(store_options, path, progress, stream_kinds()) {}

ResourceNav::ResourceNav(const Options& store_options, const std::string& path, Messages* progress,
                         std::span<const StreamKind> kinds)
    : Resource(store_options, Enum::TRANSPORT_TYPE_NAV, path, progress) {
  do_init(kinds);
  do_prescan();
  do_postscan();
}

Stream* ResourceNav::find_stream() const {
  const auto found = streams.find(kSerial);
  return found == streams.end() ? nullptr : found->second.get();
}

void ResourceNav::do_init(std::span<const StreamKind> kinds) {
  push_msg(Enum::DATA_STORE_MSG_INIT, 0.0);
  const auto kind = std::ranges::find(kinds, getExtension(), &StreamKind::extension);
  if (kind != kinds.end() && find_stream() == nullptr) {
    std::unique_ptr<Stream> stream = kind->make(getTrans(), kSerial);
    stream->set_captured();
    stream->get_meta().initial.assign(stream->codec_identifier(), true);
    stream->get_meta().footer.assign(stream->codec_identifier(), true);
    stream->codec_configure();
    streams.emplace(kSerial, std::move(stream));
  }
  push_msg(Enum::DATA_STORE_MSG_INIT, 100.0);
}

template <class Visit>
void ResourceNav::walk(Enum::DATA_STORE_MSG msg, Visit visit) {
  LogicalNavAny reader;
  reader.set_file(getName());
  reader.enable();
  unsigned long long reported = 0;
  while (reader.read_next_packet() && visit(reader)) {
    const unsigned long long place = reader.absolute();
    if (place - reported < options.progress_bytes) continue;
    reported = place;
    push_msg(msg, place, 0, 1);
  }
}

void ResourceNav::do_prescan() {
  push_msg(Enum::DATA_STORE_MSG_PRESCAN, 0.0);
  if (Stream* stream = find_stream()) {
    walk(Enum::DATA_STORE_MSG_PRESCAN, [&](const LogicalNav& reader) {
      if (stream->get_logical_nav() == nullptr) {
        auto own = std::make_unique<LogicalNavAny>();
        own->set_file(getName());
        own->set_start(reader.absolute_packet_location());
        stream->set_logical_nav(std::move(own));
      }
      return !stream->prescan_packet(reader.payload_data(),
                                     static_cast<unsigned int>(reader.payload_size()));
    });
    stream->prescan_tidy();
  }
  push_msg(Enum::DATA_STORE_MSG_PRESCAN, 100.0);
}

void ResourceNav::do_postscan() {
  push_msg(Enum::DATA_STORE_MSG_POSTSCAN, 0.0);
  if (Stream* stream = find_stream()) {
    walk(Enum::DATA_STORE_MSG_POSTSCAN, [&](const LogicalNav& reader) {
      if (stream->get_logical_nav() == nullptr) return true;
      stream->get_logical_nav()->set_finish(reader.absolute());
      return !stream->postscan_packet(reader.payload_data(),
                                      static_cast<unsigned int>(reader.payload_size()));
    });
    stream->postscan_tidy();
  }
  push_msg(Enum::DATA_STORE_MSG_POSTSCAN, 100.0);
}

bool ResourceNav::do_export(const std::string& path, nano_t from, nano_t to) {
  const nano_t first = std::max(from, get_start());
  const nano_t last = std::min(to, get_end());
  if (first > last || same_file(path, getName())) return false;
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  for (const auto& [serial, stream] : streams) {
    if (!stream->is_storable()) continue;
    TREL_ASSERT(stream->logical_nav, "sto/Sto_ResourceNav");
    const LogicalNav& reader = *stream->logical_nav;
    if (!stream->do_init(first) || !stream->do_seek(first)) continue;
    Stretch stretch{reader.absolute_packet_location(), reader.size()};
    const bool beyond = last < std::numeric_limits<nano_t>::max() && stream->do_seek(last + 1);
    if (beyond) stretch.end = reader.absolute_packet_location();
    stream->do_tidy();
    copy_packets(getName(), stretch, out);
  }
  out.close();
  return out.good();
}

}  // namespace Trel::Sto
