// Raw files of fake packets, opened: as a resource that has read them through, or as the file
// behind one stream that walks over it.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Stream_fake.h"
#include "Stream_recordings.h"

namespace Trel::Sto::Test {

// Bytes in which no packet begins.
inline Bytes junk(std::size_t size) {
  return Bytes(size, 0x11);
}

// A resource on a raw file, with all that it needs; its streams are of type S, or derived from it.
template <class Resource, class S>
class OpenedFile {
 public:
  template <class Kinds>
  OpenedFile(const Kinds& kinds, const Bytes& bytes, const std::string& extension,
             unsigned long long progress_bytes = 1048576)
      : file_(bytes, extension),
        options_(options(progress_bytes)),
        messages_(options_.message_bits),
        resource_(options_, file_.path(), &messages_, kinds) {}

  [[nodiscard]] Resource& resource() { return resource_; }
  [[nodiscard]] const ScratchFile& file() const { return file_; }
  // The numbers of its streams, in order.
  [[nodiscard]] std::vector<unsigned int> serials() const {
    std::vector<unsigned int> numbers;
    for (const auto& [serial, stream] : resource_.getStreams()) numbers.push_back(serial);
    return numbers;
  }
  [[nodiscard]] S& stream(unsigned int serial = 0) const {
    return dynamic_cast<S&>(*resource_.getStreams().at(serial));
  }
  // What it has sent since the last call.
  [[nodiscard]] std::vector<Progress> progress() { return drain(messages_); }

 private:
  ScratchFile file_;
  Options options_;
  Messages messages_;
  Resource resource_;
};

// A span of an opened file, exported to a file of its own.
class ExportedFile {
 public:
  template <class Opened>
  ExportedFile(Opened& opened, nano_t from, nano_t to)
      : file_(bytes_of("old"), ".out"),
        done_(opened.resource().do_export(file_.path(), from, to)) {}

  [[nodiscard]] bool done() const { return done_; }
  [[nodiscard]] Bytes bytes() const { return Support::read_file(file_.path()); }

 private:
  ScratchFile file_;
  bool done_;
};

// A reader on a file of its own, open.
template <class Reader>
struct ReadFile {
  using Locations = std::vector<unsigned long long>;

  template <class... Arguments>
  explicit ReadFile(const Bytes& bytes, const std::string& extension, Arguments... arguments)
      : file(bytes, extension), reader(arguments...) {
    reader.set_file(file.path());
    reader.enable();
  }
  // The places of the packets that are left.
  Locations rest() {
    Locations locations;
    while (reader.read_next_packet()) locations.push_back(reader.absolute_packet_location());
    return locations;
  }
  [[nodiscard]] Bytes payload() const {
    return Bytes(reader.payload_data(), reader.payload_data() + reader.payload_size());
  }

  ScratchFile file;
  Reader reader;
};

inline void set_reader(Stream& stream, std::unique_ptr<LogicalNav> reader) {
  stream.set_logical_nav(std::move(reader));
}
inline void set_reader(Stream& stream, std::unique_ptr<LogicalRng> reader) {
  stream.set_logical_rng(std::move(reader));
}

// A storable stream of type S with its reader on a raw file.
template <class S>
struct WalkedFile {
  template <class Reader>
  WalkedFile(const Bytes& bytes, const std::string& extension, std::unique_ptr<Reader> reader,
             Enum::TRANSPORT_TYPE transport, unsigned int serial = 0)
      : file(bytes, extension), stream(transport, serial) {
    reader->set_file(file.path());
    set_reader(stream, std::move(reader));
    stream.set_storable();
  }
  // What the stream has noted down since the last call.
  std::vector<std::string> calls() { return std::exchange(stream.calls, {}); }

  ScratchFile file;
  S stream;
};

}  // namespace Trel::Sto::Test
