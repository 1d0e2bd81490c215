// The stream decoder: pages of one serial number in any order, with rewinds between them.
#include <nlohmann/json.hpp>

#include "Fuzz_Input.h"
#include "com/Com_XComStream.h"
#include "support/Support_Page.h"

using namespace Trel;

namespace {

void drain(Com::XComStreamDec& decoder) {
  ogg_packet packet;
  while (decoder.packet_out(packet) != 0) {
  }
}

void feed(Support::Bytes& bytes, bool footers, unsigned char rewinds) {
  Com::XComStreamDec decoder(1, footers);
  decoder.capture();
  std::size_t count = 0;
  for (const Support::PageExtent& extent : Support::find_pages(bytes)) {
    unsigned char* header = &bytes[extent.offset];
    const long header_size = 27 + header[26];
    ogg_page page{header, header_size, header + header_size,
                  static_cast<long>(extent.size) - header_size};
    decoder.decode_page(page);
    if (count % 3 != 0) drain(decoder);
    if (rewinds != 0 && ++count % rewinds == 0) decoder.rewind();
  }
  drain(decoder);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const bool footers = (input.byte() & 1) != 0;
  const unsigned char rewinds = input.byte() % 8;
  const std::string_view rest = input.rest();
  Support::Bytes bytes(rest.begin(), rest.end());
  Fuzz::defuse_empty_headers(bytes);
  try {
    feed(bytes, footers, rewinds);
  } catch (const nlohmann::json::exception&) {
  }
  return 0;
}
