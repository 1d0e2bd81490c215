// An XCom recording: pages of many interleaved streams in one file.
//
// The constructor finds the streams and learns all about them, in three passes over the file. It
// hands out pages to the streams' decoders by serial number. Afterwards the resource's own reader
// is idle, and each stream reads the file for itself. A stream of a kind that is not known is
// ignored. A malformed JSON header throws the JSON library's exception out of the constructor.
#pragma once

#include "sto/Sto_Resource.h"

namespace Trel::Sto {

class ResourceOgg : public Resource {
 public:
  ResourceOgg(const Options& options, const std::string& path, Messages* messages);

  // The range mapping.
  void do_store() override;
  // Not supported: false.
  bool do_export(const std::string& path, nano_t from, nano_t to) override;

 private:
  using Active = std::map<unsigned int, Stream*>;
  using ScanPacket = bool (Stream::*)(const unsigned char*, unsigned int);

  void do_init();
  void do_prescan();
  void do_postscan();

  // How far a stream's prescan has come while init waits for the headers of another.
  struct Early {
    std::uint64_t restarts = 0;       // of its decoder, when this count began
    unsigned long long from = 0;      // place in the file where that was
    unsigned long long patience = 0;  // bytes of the file that may pass before packets are taken
    bool begun = false;
    bool finished = false;
    bool reached = false;  // by the prescan proper
  };

  // Captures and configures the streams that have their headers; whether all streams have.
  bool capture_ready_streams();
  void configure(Stream& stream);
  // Takes what the captured streams have queued through their prescan, so that the queues do not
  // grow with a file in which some stream never gets its headers. What a stream queued ahead of a
  // further initial page is no part of its prescan, and the prescan proper may not reach the stream
  // at all: a stream that has then taken something is made anew.
  void prescan_early();
  void make_anew(std::unique_ptr<Stream>& stream);
  // Reads the file until no stream wants more of this pass, giving each its packets.
  void scan(Enum::DATA_STORE_MSG msg, ScanPacket scan_packet);
  // Gives the stream the packets that its decoder holds; true once it wants no more.
  static bool draw(Stream& stream, ScanPacket scan_packet);
  // Gives each active stream the packets that its decoder holds, and drops the streams that want no
  // more.
  void drain(Active& active, ScanPacket scan_packet);

  // Reads up to `count` bytes into the page synchronisation and returns how many came.
  unsigned long long read(unsigned long long count);
  void rewind_soft();
  // One read, and every page that it completes; false at the end of the file. The first form
  // creates streams as it goes, the second serves the active streams.
  bool do_gobble_init(unsigned long long count);
  bool do_gobble(Active& active, unsigned long long count);
  // The stream of the page's serial number, created when the page begins one of a known kind; null
  // when there is none.
  Stream* stream_of(const ogg_page& page);

  OggSync sync;
  std::map<unsigned int, Early> early_;
};

}  // namespace Trel::Sto
