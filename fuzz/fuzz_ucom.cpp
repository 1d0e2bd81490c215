// UCom packets against a database that the fuzzer composes: layouts, types and scales at will.
#include <nlohmann/json.hpp>
#include <vector>

#include "Fuzz_Input.h"
#include "support/Support_Dbu.h"
#include "ucom/UCom_Codec.h"

using namespace Trel;

namespace {

constexpr const char* kBitTypes[] = {"B", "R", "S", "U", "x"};
constexpr const char* kMeasurementTypes[] = {"B",   "R32", "R64", "S8",  "S16", "S32",
                                             "S64", "U8",  "U16", "U32", "U64", "x"};

Support::Dbu compose(Fuzz::Input& input) {
  const unsigned int signals = input.byte() % 16;
  Support::Dbu dbu;
  Support::Dbu::Ids ids;
  for (unsigned int n = 0; n < signals; ++n) ids.push_back(n);
  dbu.message(input.byte() % 4, ids).message(input.byte() % 4, {0, 2, 4});
  for (unsigned int n = 0; n < signals; ++n) {
    dbu.signal(n).at(input.number());
    const unsigned char choice = input.byte();
    if ((choice & 1) != 0) dbu.type(kBitTypes[input.byte() % 5]);
    if ((choice & 2) != 0) dbu.key("BS", input.number());
    if ((choice & 4) != 0) dbu.measured(kMeasurementTypes[input.byte() % 12]);
    if ((choice & 8) != 0) dbu.scale(static_cast<int>(input.number()) - 32768);
    if ((choice & 16) != 0) dbu.offset((static_cast<double>(input.number()) - 32768) * 1e300);
    if ((choice & 32) != 0) dbu.inherits(input.byte() % 16);
    if ((choice & 64) != 0) dbu.name("Nano");
  }
  return dbu;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const Support::Dbu dbu = compose(input);
  UCom::Codec codec(true);
  codec.configure(dbu.json(), true);
  while (!input.empty()) {
    const std::string_view part = input.part();
    // A buffer of just the packet's size, so that no read beyond it goes unseen.
    const std::vector<unsigned char> packet(part.begin(), part.end());
    codec.decode(packet.data(), packet.size());
    if (packet.size() % 7 == 3) codec.rewind(packet.size() % 2 == 1);
  }
  return 0;
}
