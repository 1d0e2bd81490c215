// Signal database documents: any JSON as a database, printed and decoded from.
#include <nlohmann/json.hpp>
#include <sstream>

#include "Fuzz_Input.h"
#include "ucom/UCom_Codec.h"

using namespace Trel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const nlohmann::json document = nlohmann::json::parse(data, data + size);
    UCom::Codec codec(true);
    codec.configure(document, true);
    std::ostringstream text;
    for (std::size_t six = 0; six < codec.get_signals_size(); ++six) {
      codec.get_signal_by_six(six)->write_txt(text);
    }
    const unsigned char packet[] = {1, 0, 255, 254, 253, 252, 251, 250, 249, 248, 247};
    codec.decode(packet, sizeof packet);
    codec.rewind(true);
    codec.decode(packet, sizeof packet);
  } catch (const nlohmann::json::exception&) {
  }
  return 0;
}
