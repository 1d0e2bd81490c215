// Metadata blobs: any bytes as one header, and as a header in two pieces.
#include <nlohmann/json.hpp>

#include "Fuzz_Input.h"
#include "com/Com_Meta.h"

using namespace Trel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const std::string_view first = input.part();
  const std::string_view second = input.rest();
  const auto* first_bytes = reinterpret_cast<const unsigned char*>(first.data());
  const auto* second_bytes = reinterpret_cast<const unsigned char*>(second.data());
  try {
    Com::Meta meta;
    meta.assign(first_bytes, static_cast<unsigned int>(first.size()), second_bytes,
                static_cast<unsigned int>(second.size()), true);
    unsigned int number = 0;
    for (const auto& [key, value] : meta.get_values()) meta.get(key, number);
    Com::StreamMeta stream;
    stream.append_aux_header(meta);
    static_cast<void>(stream.find_aux_header(meta.get_tag()));
  } catch (const nlohmann::json::exception&) {
  }
  return 0;
}
