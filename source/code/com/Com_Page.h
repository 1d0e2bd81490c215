// What the XCom format adds to an Ogg page: one more header-type flag and four page classes.
//
// A logical stream is one initial page, its auxiliary pages, payload pages and at most one footer
// page. The functions stand beside libogg's own accessors and answer in their style: a flag comes
// back as its masked bit, a predicate as 0 or 1. They read the header type byte and nothing else,
// and ignore the flag of a continued packet. A page with both the first and the last flag is
// initial and footer at once.
#pragma once

#include <ogg/ogg.h>

namespace Trel::Com {

// Header type flags, byte 5 of a page's header.
inline constexpr int kPageContinued = 0x01;
inline constexpr int kPageBos = 0x02;
inline constexpr int kPageEos = 0x04;
inline constexpr int kPageRos = 0x08;  // XCom's own: the page belongs to the stream's headers

// 8 when the page is flagged as belonging to the header region, else 0.
[[nodiscard]] inline int ogg_page_ros(const ogg_page& page) {
  return page.header[5] & kPageRos;
}

// The first page of its stream.
[[nodiscard]] inline int ogg_page_is_inital(const ogg_page& page) {
  return (page.header[5] & kPageBos) != 0 ? 1 : 0;
}

// A page of further headers: flagged so, and neither first nor last.
[[nodiscard]] inline int ogg_page_is_auxiliary(const ogg_page& page) {
  return (page.header[5] & (kPageBos | kPageEos | kPageRos)) == kPageRos ? 1 : 0;
}

// A page of the stream's data: none of the three flags.
[[nodiscard]] inline int ogg_page_is_payload(const ogg_page& page) {
  return (page.header[5] & (kPageBos | kPageEos | kPageRos)) == 0 ? 1 : 0;
}

// The last page of its stream.
[[nodiscard]] inline int ogg_page_is_footer(const ogg_page& page) {
  return (page.header[5] & kPageEos) != 0 ? 1 : 0;
}

}  // namespace Trel::Com
