// What libogg itself reads out of a recording.
#pragma once

#include <ogg/ogg.h>

#include <string>
#include <vector>

#include "support/Support_Page.h"

namespace Trel::Support::Test {

using Texts = std::vector<std::string>;

inline const std::string kHole = "(hole)";

// The packets of one stream in file order, kHole for a gap. Pages that libogg refuses are missing.
inline Texts packets_of(const Bytes& bytes, std::uint32_t serial) {
  Texts packets;
  ogg_stream_state stream;
  ogg_stream_init(&stream, static_cast<int>(serial));
  PageReader reader(bytes);
  ogg_page page;
  int result = 0;
  while ((result = reader.next(page)) != 0) {
    if (result < 0 || ogg_stream_pagein(&stream, &page) != 0) continue;
    ogg_packet packet;
    while ((result = ogg_stream_packetout(&stream, &packet)) != 0) {
      packets.push_back(result < 0 ? kHole
                                   : std::string(reinterpret_cast<const char*>(packet.packet),
                                                 static_cast<std::size_t>(packet.bytes)));
    }
  }
  ogg_stream_clear(&stream);
  return packets;
}

// The pages that libogg accepts, and how often it met bytes that are no page.
struct Pages {
  std::vector<PageImage> images;
  int losses = 0;
};

inline Pages pages_of(const Bytes& bytes) {
  Pages pages;
  PageReader reader(bytes);
  ogg_page page;
  int result = 0;
  while ((result = reader.next(page)) != 0) {
    if (result > 0) {
      pages.images.push_back(image_of(page));
    } else {
      ++pages.losses;
    }
  }
  return pages;
}

// One field of each page.
template <class T>
std::vector<T> each(const Bytes& bytes, T PageImage::*field) {
  std::vector<T> values;
  for (const PageImage& image : pages_of(bytes).images) values.push_back(image.*field);
  return values;
}

}  // namespace Trel::Support::Test
