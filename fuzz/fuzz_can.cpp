// CAN packets against a fixed database of fields in both byte orders and all corners of the frame.
#include <string>
#include <vector>

#include "Fuzz_Input.h"
#include "can/Can_Codec.h"

using namespace Trel;

namespace {

std::string database() {
  std::string text;
  for (int message = 0; message < 4; ++message) {
    text += "BO_ " + std::to_string(message) + " M: 8 N\n";
    for (int n = 0; n < 32; ++n) {
      text += " SG_ S" + std::to_string(n) + " : " + std::to_string((n * 37 + message) % 512) +
              "|" + std::to_string(1 + (n * 11) % 70) + "@" + (n % 2 == 0 ? "1" : "0") +
              (n % 3 == 0 ? "-" : "+") + " (" + (n % 5 == 0 ? "0.5" : "9223372036854775807") +
              ",-1) [0|0] \"\" N\n";
    }
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string text = database();
  Can::Codec codec;
  codec.configure({reinterpret_cast<const unsigned char*>(text.data()), text.size()}, true);
  Fuzz::Input input(data, size);
  while (!input.empty()) {
    const std::string_view part = input.part();
    const std::vector<unsigned char> packet(part.begin(), part.end());
    codec.decode(packet.data(), packet.size());
    if (packet.size() % 5 == 4) codec.rewind(packet.size() % 2 == 1);
  }
  return 0;
}
