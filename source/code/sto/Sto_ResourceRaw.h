// A raw file: packets one after the other, and nothing else. What navigation and range files share.
//
// The file has no headers, so the resource makes up what a recording would have told about its
// streams. The concrete constructors find the streams' spans in passes over the file, with a reader
// of their own for each.
#pragma once

#include <algorithm>
#include <fstream>
#include <limits>
#include <map>
#include <span>

#include "sto/Sto_Resource.h"

namespace Trel::Sto {

class ResourceRaw : public Resource {
 public:
  using MakeStream = std::unique_ptr<Stream> (*)(Enum::TRANSPORT_TYPE transport,
                                                 unsigned int serial);
  // A kind of stream: the extension of its files, lower-cased with the dot, and how it is made.
  struct StreamKind {
    const char* extension;
    MakeStream make;
  };

 protected:
  // The serial number of the stream that the file is named for.
  static constexpr unsigned int kSerial = 0;

  using Resource::Resource;

  // Makes the stream that the extension stands for; one that is not known makes none.
  void init_main(std::span<const StreamKind> kinds);
  // The stream that init_main() made; null when there is none.
  [[nodiscard]] Stream* find_main() const;
  // Makes a stream with the headers that a recording would have; it joins the map.
  Stream& add_stream(MakeStream make, unsigned int serial);

  // Reads the file until `visit`, which is handed the reader with each packet, wants no more. The
  // second form hands it the place up to which the file has been read, too, and sends that as
  // progress.
  template <class Reader, class Visit>
  static void walk(Reader& reader, Visit visit) {
    while (reader.read_next_packet() && visit(reader)) {
    }
  }
  template <class Reader, class Visit>
  void scan(Enum::DATA_STORE_MSG msg, Reader& reader, Visit visit);

  // The reader `Own`, made of `arguments`, for the packets from the one that `reader` holds on.
  template <class Own, class Reader, class... Arguments>
  [[nodiscard]] std::unique_ptr<Own> reader_from(const Reader& reader,
                                                 Arguments... arguments) const {
    auto own = std::make_unique<Own>(arguments...);
    own->set_file(getName());
    own->set_start(reader.absolute_packet_location());
    return own;
  }

  // Writes a new file of each stream's packets from the first that reaches `from` to the last ahead
  // of the first beyond `to`, the span being limited to the resource's own; bytes between packets
  // are left out. Reader reads packets of all kinds, serial_of(reader) tells the stream of the one
  // held, -1 for none, and reader_of(stream) is a stream's own reader. Moves the streams, as a seek
  // does. False without a file when the span holds nothing, and false when `path` cannot be written
  // or is the resource's own.
  template <class Reader, class SerialOf, class ReaderOf>
  bool export_packets(const std::string& path, nano_t from, nano_t to, SerialOf serial_of,
                      ReaderOf reader_of);

 private:
  // A stretch of the file, from the first byte of a packet on; the end is not part of it.
  struct Stretch {
    unsigned long long begin;
    unsigned long long end;
  };
  using Stretches = std::map<long long, Stretch>;  // by serial number

  [[nodiscard]] bool is_own_file(const std::string& path) const;
  template <class ReaderOf>
  Stretches find_stretches(nano_t first, nano_t last, ReaderOf reader_of);
  template <class Reader, class SerialOf>
  void copy_packets(const Stretches& stretches, std::ostream& out, SerialOf serial_of) const;
};

template <class Reader, class Visit>
void ResourceRaw::scan(Enum::DATA_STORE_MSG msg, Reader& reader, Visit visit) {
  reader.set_file(getName());
  reader.enable();
  unsigned long long reported = 0;
  walk(reader, [&](const Reader& at) {
    const unsigned long long place = at.absolute();
    if (!visit(at, place)) return false;
    if (place - reported >= options.progress_bytes) {
      reported = place;
      push_msg(msg, place, 0, 1);
    }
    return true;
  });
}

template <class Reader, class SerialOf, class ReaderOf>
bool ResourceRaw::export_packets(const std::string& path, nano_t from, nano_t to,
                                 SerialOf serial_of, ReaderOf reader_of) {
  const nano_t first = std::max(from, get_start());
  const nano_t last = std::min(to, get_end());
  if (first > last || is_own_file(path)) return false;
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  copy_packets<Reader>(find_stretches(first, last, reader_of), out, serial_of);
  out.close();
  return out.good();
}

template <class ReaderOf>
ResourceRaw::Stretches ResourceRaw::find_stretches(nano_t first, nano_t last, ReaderOf reader_of) {
  Stretches stretches;
  for (const auto& [serial, stream] : streams) {
    if (!stream->is_storable()) continue;
    const auto& reader = reader_of(stream.get());
    if (!stream->do_init(first) || !stream->do_seek(first)) continue;
    Stretch stretch{reader.absolute_packet_location(), reader.size()};
    const bool beyond = last < std::numeric_limits<nano_t>::max() && stream->do_seek(last + 1);
    if (beyond) stretch.end = reader.absolute_packet_location();
    stream->do_tidy();
    stretches.emplace(serial, stretch);
  }
  return stretches;
}

template <class Reader, class SerialOf>
void ResourceRaw::copy_packets(const Stretches& stretches, std::ostream& out,
                               SerialOf serial_of) const {
  Stretch all{std::numeric_limits<unsigned long long>::max(), 0};
  for (const auto& [serial, stretch] : stretches) {
    all.begin = std::min(all.begin, stretch.begin);
    all.end = std::max(all.end, stretch.end);
  }
  Reader reader;
  reader.set_file(getName());
  reader.set_start(all.begin);
  reader.rewind();
  reader.enable();
  walk(reader, [&](const Reader& at) {
    const unsigned long long place = at.absolute_packet_location();
    if (place >= all.end) return false;
    const auto own = stretches.find(serial_of(at));
    if (own != stretches.end() && place >= own->second.begin && place < own->second.end) {
      out.write(reinterpret_cast<const char*>(at.payload_data()),
                static_cast<std::streamsize>(at.payload_size()));
    }
    return true;
  });
}

}  // namespace Trel::Sto
