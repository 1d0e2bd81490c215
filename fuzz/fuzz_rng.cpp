// Range packets: packets of any type and body with right sums, through both passes of the codec and
// through one without a prescan, with any set of keys.
#include <random>
#include <vector>

#include "Fuzz_Input.h"
#include "rng/Rng_RComRx.h"
#include "support/Support_RangePacket.h"

using namespace Trel;

namespace {

std::vector<Support::Bytes> packets(Fuzz::Input& input) {
  std::vector<Support::Bytes> result;
  while (!input.empty()) {
    const unsigned char type = input.byte();
    const std::string_view body = input.part();
    result.push_back(Support::range_file_packet(
        type,
        Support::Bytes(body.begin(), body.begin() + std::min<std::size_t>(body.size(), 2551))));
  }
  return result;
}

// Every node by a throw of its own; 0 leaves all of them on.
void choose_keys(Rng::ComKey& key, unsigned int seed) {
  if (seed == 0) return;
  std::mt19937 engine(seed);
  key.DecodeLevel(static_cast<int>(engine() % 12));
  const auto thrown = [&engine] { return engine() % 2 == 0; };
#define MAIN(node) \
  if (thrown()) key.KMain().Let_##node();
#include "rng/Rng_ComKey.def"
  for (unsigned int target = 0; target < Rng::ComKey::kTargets; ++target) {
#define TARGET(node) \
  if (thrown()) key.KTarget(target).Let_##node();
#include "rng/Rng_ComKey.def"
  }
  for (unsigned int wrap = 0; wrap < Rng::ComKey::kWraps; ++wrap) {
#define WRAP(node) \
  if (thrown()) key.KWrap(wrap).Let_##node();
#include "rng/Rng_ComKey.def"
  }
  if (thrown()) key.PropagateKeyOr();
}

void decode(Rng::RComCodec& codec, const std::vector<Support::Bytes>& drive) {
  for (const auto& packet : drive) {
    codec.DecodeLite(packet.data(), static_cast<unsigned int>(packet.size()));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const unsigned int seed = input.number();
  const auto drive = packets(input);

  Rng::RComCodec codec(true);
  choose_keys(codec.Key(), seed);
  for (const auto& packet : drive) {
    if (codec.DecodeLite(packet.data(), static_cast<unsigned int>(packet.size())) == 2) break;
  }
  codec.PrescanRewind(seed % 2 == 0);
  decode(codec, drive);
  codec.PrescanRewind(true);
  decode(codec, drive);

  codec.Invalidate(false);
  for (const auto& packet : drive) {
    const Support::Bytes recorded = Support::join({Support::Bytes(8), packet});
    codec.DecodeSuper(recorded.data(), static_cast<unsigned int>(recorded.size()));
  }
  return 0;
}
