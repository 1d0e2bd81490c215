// A raw navigation file: packets of one family, one after the other, and nothing else.
//
// The file has no headers, so the resource makes up what a recording would have told about the
// stream. The constructor finds the stream's span in passes over the file, with a reader of its own
// for each. The extension decides on the kind of stream; one that is not known makes none, and in a
// file without packets the stream never becomes storable.
#pragma once

#include <span>

#include "sto/Sto_Resource.h"

namespace Trel::Sto {

class ResourceNav : public Resource {
 public:
  // A kind of stream: the extension of its files, lower-cased with the dot, and how it is made.
  struct StreamKind {
    const char* extension;
    std::unique_ptr<Stream> (*make)(Enum::TRANSPORT_TYPE transport, unsigned int serial);
  };

  ResourceNav(const Options& options, const std::string& path, Messages* messages);
  // With the given kinds in place of those of the system.
  ResourceNav(const Options& options, const std::string& path, Messages* messages,
              std::span<const StreamKind> kinds);

  // Nothing is left to do.
  void do_store() override {}
  // Writes a new file of the packets from the first that reaches `from` to the last ahead of the
  // first beyond `to`, the span being limited to the resource's own; bytes between packets are left
  // out. Moves the stream, as a seek does. False without a file when the span holds nothing, and
  // false when `path` cannot be written or is the resource's own.
  bool do_export(const std::string& path, nano_t from, nano_t to) override;

 private:
  void do_init(std::span<const StreamKind> kinds);
  void do_prescan();
  void do_postscan();

  // Reads the file until `visit`, which is handed the reader with each packet, wants no more.
  template <class Visit>
  void walk(Enum::DATA_STORE_MSG msg, Visit visit);
  // The one stream; null when there is none.
  [[nodiscard]] Stream* find_stream() const;
};

}  // namespace Trel::Sto
