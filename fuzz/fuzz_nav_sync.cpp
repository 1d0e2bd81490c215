// Packet synchronisation: any bytes in writes of any size, for both families of raw files.
#include <algorithm>

#include "Fuzz_Input.h"
#include "nav/Nav_Sync.h"
#include "rng/Rng_Sync.h"

using namespace Trel;

namespace {

template <class Sync, class Packet>
void feed(Fuzz::Input input) {
  Sync sync;
  Packet packet;
  unsigned char sum = 0;
  while (!input.empty()) {
    const std::string_view part = input.part();
    sync.write(reinterpret_cast<const unsigned char*>(part.data()),
               static_cast<unsigned int>(part.size()));
    int result = 0;
    while ((result = sync.packet_out(packet)) != 0) {
      if (result < 0) continue;
      static_cast<void>(packet.serial());
      const unsigned char* bytes = packet.payload_data();
      for (std::size_t n = 0; n < packet.payload_size(); ++n) sum ^= bytes[n];
    }
  }
  __asm__ volatile("" : : "r"(sum));  // keeps the reads
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  feed<Nav::SyncState, Nav::PacketState>(Fuzz::Input(data, size));
  feed<Rng::SyncState, Rng::PacketState>(Fuzz::Input(data, size));
  return 0;
}
