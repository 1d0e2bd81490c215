// A raw range file: range data, and among it wrapped NCom packets of the hunter and its targets.
//
// Three passes find the span of the range data, which also tells the sources of the wrapped
// packets. Each source becomes an NCom stream, and three more passes find the spans of these; the
// number of a stream is its source's address or, where that is 0, its provenance. Packets of
// sources beyond the eight that the range data can tell are passed over. A file of another
// extension makes no stream, and one without packets a stream that never becomes storable.
#pragma once

#include "sto/Sto_ResourceRaw.h"
#include "sto/Sto_StreamSources.h"

namespace Trel::Sto {

class ResourceRng : public ResourceRaw {
 public:
  // How the streams are made, and what the stream of the range data tells of the others.
  struct Kinds {
    std::span<const StreamKind> range;
    MakeStream wrapped;
    RangeSources (*sources)(const Stream& range);
  };

  ResourceRng(const Options& options, const std::string& path, Messages* messages);
  // With the given kinds in place of those of the system.
  ResourceRng(const Options& options, const std::string& path, Messages* messages,
              const Kinds& kinds);

  // The range mapping.
  void do_store() override;
  // See export_packets(). The packets of all streams keep the order that they have in the file.
  bool do_export(const std::string& path, nano_t from, nano_t to) override;

 private:
  // NCom streams by serial number: those that want more of a pass.
  using Active = std::map<unsigned int, Stream*>;
  using Tidy = void (Stream::*)();

  void do_init_rcom(std::span<const StreamKind> kinds);
  void do_prescan_rcom();
  void do_postscan_rcom();
  void do_init_ncoms(const Kinds& kinds);
  void do_prescan_ncoms();
  void do_postscan_ncoms();

  // Makes the stream of one source, unless it is there, and notes in its header and in that of the
  // range data, which may be null, how they belong together.
  void connect(const RangeSources& sources, unsigned int slot, MakeStream make, Com::Meta* range);
  // The header of that NCom stream, made if need be, that tells what it belongs to; null for the
  // number of the range data's own stream.
  Com::Meta* wrapped_header(unsigned int serial, MakeStream make);
  // Reads the file until no NCom stream wants more: visit(stream, reader, place) takes a packet and
  // tells whether it was enough for the stream.
  template <class Visit>
  void scan_ncoms(Enum::DATA_STORE_MSG msg, Visit visit, Tidy tidy);
  [[nodiscard]] Active ncoms() const;
};

}  // namespace Trel::Sto
