// Navigation packets: whole packets of any bytes with right sums, in the order of a file, through
// both passes of each family's codec with every element wanted.
#include <vector>

#include "Fuzz_Input.h"
#include "nav/Nav_MComRx.h"
#include "nav/Nav_NComRx.h"
#include "nav/Nav_Sync.h"

using namespace Trel;

namespace {

// The packets of the input: what the fuzzer gives, with the first byte and the sum made good.
std::vector<Support::Bytes> packets(std::string_view bytes, unsigned char sync, std::size_t size) {
  std::vector<Support::Bytes> result;
  for (; bytes.size() >= size - 2; bytes.remove_prefix(size - 2)) {
    Support::Bytes packet(size);
    packet[0] = sync;
    std::copy_n(bytes.begin(), size - 2, packet.begin() + 1);
    for (std::size_t n = 1; n + 1 < size; ++n) packet[size - 1] += packet[n];
    result.push_back(packet);
  }
  return result;
}

template <class Codec>
void decode(Codec& codec, const std::vector<Support::Bytes>& drive) {
  for (const auto& packet : drive) {
    if (codec.DecodeBasic(packet.data(), true) == 2) break;
  }
  codec.PrescanRewind(true);
  for (const auto& packet : drive) codec.DecodeBasic(packet.data(), true);
  codec.Invalidate(false);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const auto ncom_drive = packets(input, Nav::kNComSync, Nav::kNComSize);
  Nav::NComCodec ncom(true);
  decode(ncom, ncom_drive);
  for (const auto& packet : ncom_drive) ncom.DecodeRange(packet.data(), Nav::kNComSize, false);

  Nav::MComCodec mcom(true);
  decode(mcom, packets(input, Nav::kMComSync, Nav::kMComSize));
  return 0;
}
