// The floor of a raw navigation file: whole packets are found and their sums checked, and nothing
// is decoded.
//
//   sum_walk FILE PASSES
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "nav/Nav_Sync.h"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "Usage: sum_walk FILE PASSES\n");
    return 2;
  }
  constexpr unsigned int kReadSize = 2048;
  unsigned long long packets = 0;
  const int passes = std::atoi(argv[2]);
  for (int pass = 0; pass < passes; ++pass) {
    std::ifstream file(argv[1], std::ios::binary);
    Trel::Nav::SyncState sync;
    Trel::Nav::PacketState packet;
    std::array<unsigned char, kReadSize> buffer;
    for (;;) {
      const int result = sync.packet_out(packet);
      if (result > 0) ++packets;
      if (result != 0) continue;
      file.read(reinterpret_cast<char*>(buffer.data()), std::min(sync.space(), kReadSize));
      if (file.gcount() == 0) break;
      sync.write(buffer.data(), static_cast<unsigned int>(file.gcount()));
    }
  }
  std::printf("%d passes, %llu packets\n", passes, packets);
  return 0;
}
