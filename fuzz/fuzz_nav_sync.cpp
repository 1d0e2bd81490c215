// Packet synchronisation of navigation packets: any bytes in writes of any size.
#include "Fuzz_Sync.h"
#include "nav/Nav_Sync.h"

using namespace Trel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::SyncBook<Nav::SyncState, Nav::PacketState>().run(Fuzz::Input(data, size));
  return 0;
}
