// A decoder on the bench: pages are fed to it from bytes, packets come out as text.
#pragma once

#include <string>
#include <vector>

#include "com/Com_XComStream.h"
#include "support/Support_Page.h"

namespace Trel::Com::Test {

using Support::Bytes;
using Texts = std::vector<std::string>;

inline constexpr std::uint32_t kSerial = 1;
inline const std::string kHole = "(hole)";

// One page of the stream under test. Packets are shorter than 255 bytes.
inline Bytes page(std::uint32_t number, unsigned char flags, const Texts& packets,
                  unsigned char version = 0) {
  Support::PageImage image;
  image.version = version;
  image.flags = flags;
  image.serial = kSerial;
  image.number = number;
  for (const std::string& packet : packets) {
    image.segments.push_back(static_cast<unsigned char>(packet.size()));
    image.body.insert(image.body.end(), packet.begin(), packet.end());
  }
  return image.bytes();
}

inline Bytes initial_page(std::uint32_t number, const std::string& headers) {
  return page(number, Support::kInitial, {"[Trel-UCom]\nheaders=" + headers});
}

class Fed : public XComStreamDec {
 public:
  explicit Fed(bool footers = false) : XComStreamDec(kSerial, footers) { capture(); }

  // Decodes each page of `bytes` and returns what decode_page() answered.
  std::vector<bool> feed(const Bytes& bytes) {
    std::vector<bool> accepted;
    Support::PageReader reader(bytes);
    ogg_page next;
    int result = 0;
    while ((result = reader.next(next)) != 0) {
      if (result > 0) {
        accepted.push_back(decode_page(next));
      } else {
        ++sync_losses;
      }
    }
    return accepted;
  }

  // Everything that packet_out() has to give.
  Texts drain() {
    Texts drawn;
    ogg_packet packet;
    int result = 0;
    while ((result = packet_out(packet)) != 0) {
      drawn.push_back(result < 0 ? kHole
                                 : std::string(reinterpret_cast<const char*>(packet.packet),
                                               static_cast<std::size_t>(packet.bytes)));
    }
    return drawn;
  }

  int sync_losses = 0;  // how often bytes that are no page were met
};

}  // namespace Trel::Com::Test
