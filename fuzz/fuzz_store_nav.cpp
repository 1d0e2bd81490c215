// A raw navigation file through the store, as either family. Sums are made good at every sync byte
// that leaves room for its packet, so that changes reach the codecs.
#include "Fuzz_Input.h"
#include "nav/Nav_Sync.h"

using namespace Trel;

namespace {

// Of the packet that a byte begins; 0 for one that begins none.
std::size_t size_of_packet(unsigned char sync) {
  if (sync == Nav::kNComSync) return Nav::kNComSize;
  return sync == Nav::kMComSync ? Nav::kMComSize : 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Support::Bytes bytes(data, data + size);
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t packet = size_of_packet(bytes[at]);
    if (packet == 0 || at + packet > bytes.size()) {
      ++at;
      continue;
    }
    unsigned char sum = 0;
    for (std::size_t n = 1; n + 1 < packet; ++n) {
      sum = static_cast<unsigned char>(sum + bytes[at + n]);
    }
    bytes[at + packet - 1] = sum;
    at += packet;
  }
  Fuzz::open_and_walk(bytes, ".ncom");
  Fuzz::open_and_walk(bytes, ".mcom");
  return 0;
}
