// A raw range file through the store. Sums are made good at every sync byte that leaves room for
// the packet that it claims, so that changes reach the codecs, also those of wrapped packets.
#include "Fuzz_Input.h"
#include "nav/Nav_Sync.h"
#include "rng/Rng_Sync.h"

using namespace Trel;

namespace {

constexpr std::size_t kWrapperHead = 9;
constexpr unsigned char kWrapper = 3;

void mend(Support::Bytes& bytes, std::size_t at, std::size_t size) {
  unsigned char sum = 0;
  for (std::size_t n = 1; n + 1 < size; ++n) {
    sum = static_cast<unsigned char>(sum + bytes[at + n]);
  }
  bytes[at + size - 1] = sum;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Support::Bytes bytes(data, data + size);
  for (std::size_t at = 0; at + Rng::kHeaderSize < bytes.size();) {
    const std::size_t packet = Rng::kHeaderSize + bytes[at + 2] + 256U * bytes[at + 3];
    if (bytes[at] != Rng::kRComSync || packet <= Rng::kHeaderSize || at + packet > bytes.size()) {
      ++at;
      continue;
    }
    if (bytes[at + 1] == kWrapper) {
      for (std::size_t inner = kWrapperHead; inner + Nav::kNComSize < packet;
           inner += Nav::kNComSize) {
        mend(bytes, at + inner, Nav::kNComSize);
      }
    }
    mend(bytes, at, packet);
    at += packet;
  }
  Fuzz::open_and_walk(bytes, ".rcom");
  return 0;
}
