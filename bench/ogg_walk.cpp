// The floor for a conversion: what libogg alone costs on the same file.
//
//   ogg_walk FILE
//
// It reads the file in the same chunks and as often as a conversion does: once for all streams
// together, then once more for each stream alone. Every pass takes pages out of the bytes and
// packets out of the pages, and looks at no packet. It prints what it saw, so that two runs can be
// compared.
#include <ogg/ogg.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <map>

namespace {

constexpr long kReadSize = 4096;

struct Totals {
  unsigned long long passes = 0;
  unsigned long long pages = 0;
  unsigned long long packets = 0;
  unsigned long long bytes = 0;
};

using Streams = std::map<int, ogg_stream_state>;

void take_packets(ogg_stream_state& stream, ogg_page& page, Totals& totals) {
  ogg_stream_pagein(&stream, &page);
  ogg_packet packet;
  while (ogg_stream_packetout(&stream, &packet) != 0) {
    ++totals.packets;
    totals.bytes += static_cast<unsigned long long>(packet.bytes);
  }
}

// One pass over the file; `stream_of` gives the stream that takes a page, or null.
void walk(const char* path, const std::function<ogg_stream_state*(int serial)>& stream_of,
          Totals& totals) {
  std::ifstream file(path, std::ios::binary);
  ogg_sync_state sync;
  ogg_sync_init(&sync);
  for (;;) {
    char* buffer = ogg_sync_buffer(&sync, kReadSize);
    file.read(buffer, kReadSize);
    if (file.gcount() == 0) break;
    ogg_sync_wrote(&sync, file.gcount());
    ogg_page page;
    int result = 0;
    while ((result = ogg_sync_pageout(&sync, &page)) != 0) {
      if (result < 0) continue;
      ++totals.pages;
      ogg_stream_state* stream = stream_of(ogg_page_serialno(&page));
      if (stream != nullptr) take_packets(*stream, page, totals);
    }
  }
  ogg_sync_clear(&sync);
  ++totals.passes;
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: ogg_walk FILE\n");
    return 2;
  }
  Totals totals;
  Streams streams;
  walk(
      argv[1],
      [&](int serial) {
        const auto [at, added] = streams.try_emplace(serial);
        if (added) ogg_stream_init(&at->second, serial);
        return &at->second;
      },
      totals);
  for (auto& [wanted, stream] : streams) {
    ogg_stream_reset(&stream);
    walk(
        argv[1],
        [&, only = wanted](int serial) { return serial == only ? &streams.at(only) : nullptr; },
        totals);
  }
  for (auto& [serial, stream] : streams) ogg_stream_clear(&stream);
  std::printf("%llu passes, %llu pages, %llu packets, %llu bytes\n", totals.passes, totals.pages,
              totals.packets, totals.bytes);
}
