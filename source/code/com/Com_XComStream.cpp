#include "com/Com_XComStream.h"

#include <algorithm>

#include "com/Com_Page.h"
#include "library/Lib_Report.h"

namespace Trel::Com {

namespace {

constexpr const char* kSource = "com/Com_XComStream";

Meta read_blob(const ogg_packet& packet) {
  return Meta(packet.packet, static_cast<unsigned int>(packet.bytes), true);
}

std::uint32_t header_count(const Meta& initial) {
  unsigned int count = 0;
  initial.get("headers", count);
  return count;
}

}  // namespace

void XComStreamDec::Metric::reset() {
  *this = Metric{};
}

void XComStreamDec::Metric::rewind() {
  initial_skip = 0;
  auxiliary_skip = 0;
  footer_skip = 0;
  payload = 0;
}

void XComStreamDec::PageCount::reset() {
  total = accepted = rejected = lost = bos = mos = eos = ros = 0;
  std::fill(status_counts.begin(), status_counts.end(), 0);
}

void XComStreamDec::PageCount::rewind() {
  reset();
}

XComStreamDec::XComStreamDec(std::uint32_t serial_number, bool footers)
    : XComStream(serial_number), footer_enabled(footers) {
  if (ogg_stream_init(&stream, static_cast<int>(serial)) != 0) TREL_ASSERT(false, kSource);
  if (ogg_stream_reset(&stream) != 0) TREL_ASSERT(false, kSource);
}

XComStreamDec::~XComStreamDec() {
  if (ogg_stream_clear(&stream) != 0) TREL_ASSERT(false, kSource);
}

void XComStreamDec::capture() {
  TREL_ASSERT(status == Enum::STREAM_DECODE_STATUS_EMPTY, kSource);
  set_status(Enum::STREAM_DECODE_STATUS_CAPTURED);
}

void XComStreamDec::rewind() {
  TREL_ASSERT(status != Enum::STREAM_DECODE_STATUS_EMPTY, kSource);
  if (ogg_stream_reset(&stream) != 0) TREL_ASSERT(false, kSource);
  page_number_previous = 0;
  page_number_last = 0;
  page_number_current = 0;
  set_status(Enum::STREAM_DECODE_STATUS_INITIALISED);
  packets.rewind();
  holes.rewind();
  pages.rewind();
}

bool XComStreamDec::decode_page(ogg_page& page) {
  page_number_previous = page_number_last;
  page_number_current = static_cast<std::int32_t>(ogg_page_pageno(&page));
  page_number_status = judge_page_number();
  ++pages.status_counts[page_number_status];
  ++pages.total;

  if (page_number_status != Enum::XCOM_PAGE_NUM_STATUS_FIRST &&
      page_number_status != Enum::XCOM_PAGE_NUM_STATUS_GOOD &&
      page_number_status != Enum::XCOM_PAGE_NUM_STATUS_LOST) {
    ++pages.rejected;
    return false;
  }
  page_number_last = page_number_current;
  if (page_number_status == Enum::XCOM_PAGE_NUM_STATUS_LOST) {
    pages.lost += get_page_number_lost_gap();
  }
  ++pages.accepted;
  if (ogg_page_ros(page) != 0) ++pages.ros;

  if (ogg_page_bos(&page) != 0) {
    ++pages.bos;
    xcom_decode_bos(page);
  } else if (ogg_page_eos(&page) != 0) {
    ++pages.eos;
    xcom_decode_eos(page);
  } else {
    ++pages.mos;
    xcom_decode_mos(page);
  }
  return true;
}

int XComStreamDec::packet_out(ogg_packet& packet) {
  const int result = ogg_stream_packetout(&stream, &packet);
  if (result > 0) ++packets.payload;
  if (result < 0) ++holes.payload;
  return result;
}

void XComStreamDec::set_status(Enum::STREAM_DECODE_STATUS value) {
  status_previous = status;
  status = value;
}

std::uint64_t XComStreamDec::get_page_number_lost_gap() const {
  if (page_number_previous >= page_number_last) return 0;
  return static_cast<std::uint64_t>(page_number_last - page_number_previous - 1);
}

Enum::XCOM_PAGE_NUM_STATUS XComStreamDec::judge_page_number() const {
  if (pages.total == 0) return Enum::XCOM_PAGE_NUM_STATUS_FIRST;
  if (page_number_current == page_number_previous + 1) return Enum::XCOM_PAGE_NUM_STATUS_GOOD;
  if (page_number_current == page_number_previous) return Enum::XCOM_PAGE_NUM_STATUS_STALL;
  if (page_number_current < page_number_previous) return Enum::XCOM_PAGE_NUM_STATUS_BACK;
  return Enum::XCOM_PAGE_NUM_STATUS_LOST;
}

bool XComStreamDec::die() {
  set_status(Enum::STREAM_DECODE_STATUS_DEAD);
  return false;
}

bool XComStreamDec::xcom_decode_bos(ogg_page& page) {
  switch (status) {
    case Enum::STREAM_DECODE_STATUS_CAPTURED:
      return xcom_decode_initial_header_used(page);
    case Enum::STREAM_DECODE_STATUS_INITIALISED:
    case Enum::STREAM_DECODE_STATUS_DECODING:
    case Enum::STREAM_DECODE_STATUS_SKIPPED:
      return xcom_decode_initial_header_skip(page);
    default:
      return die();
  }
}

bool XComStreamDec::xcom_decode_mos(ogg_page& page) {
  switch (status) {
    case Enum::STREAM_DECODE_STATUS_INITIALISING:
      return xcom_decode_auxiliary_header_used(page);
    case Enum::STREAM_DECODE_STATUS_SKIPPING:
      return xcom_decode_auxiliary_header_skip(page);
    case Enum::STREAM_DECODE_STATUS_INITIALISED:
    case Enum::STREAM_DECODE_STATUS_DECODING:
    case Enum::STREAM_DECODE_STATUS_SKIPPED:
      return xcom_push_all_packets(page);
    default:
      return die();
  }
}

bool XComStreamDec::xcom_decode_eos(ogg_page& page) {
  if (!footer_enabled) return true;
  return footer_decoded ? xcom_decode_footer_skip(page) : xcom_decode_footer_used(page);
}

// Leaves the first packet of an initial page in `packet`; false when there is none.
bool XComStreamDec::draw_initial(ogg_page& page, ogg_packet& packet,
                                 std::uint64_t Metric::*counter) {
  ++restarts;
  if (ogg_stream_reset(&stream) != 0 || ogg_page_bos(&page) == 0 ||
      ogg_stream_pagein(&stream, &page) != 0) {
    return die();
  }
  const int result = ogg_stream_packetout(&stream, &packet);
  if (result == 0) return die();
  if (result < 0) {
    ++(holes.*counter);
    return false;
  }
  ++(packets.*counter);
  return true;
}

bool XComStreamDec::xcom_decode_initial_header_used(ogg_page& page) {
  ogg_packet oggPacket;
  if (!draw_initial(page, oggPacket, &Metric::initial_used)) return false;
  TREL_ASSERT(oggPacket.bytes > 0, kSource);

  meta.initial.assign(oggPacket.packet, static_cast<unsigned int>(oggPacket.bytes), true);
  header_used_total = header_count(meta.initial);
  header_used_count = 0;
  set_status(header_used_total != 0 ? Enum::STREAM_DECODE_STATUS_INITIALISING
                                    : Enum::STREAM_DECODE_STATUS_INITIALISED);
  ogg_stream_reset(&stream);
  return true;
}

bool XComStreamDec::xcom_decode_initial_header_skip(ogg_page& page) {
  ogg_packet oggPacket;
  if (!draw_initial(page, oggPacket, &Metric::initial_skip)) return false;
  TREL_ASSERT(oggPacket.bytes > 0, kSource);

  header_skip_total = header_count(read_blob(oggPacket));
  header_skip_count = 0;
  set_status(header_skip_total != 0 ? Enum::STREAM_DECODE_STATUS_SKIPPING
                                    : Enum::STREAM_DECODE_STATUS_SKIPPED);
  return true;
}

// Hands every packet of the page to `take`; false, once a hole is met, before the page is drained.
template <class Take>
bool XComStreamDec::draw_auxiliaries(ogg_page& page, std::uint64_t Metric::*counter, Take take) {
  if (ogg_page_bos(&page) != 0 || ogg_stream_pagein(&stream, &page) != 0) return die();
  ogg_packet packet;
  int result = 0;
  while ((result = ogg_stream_packetout(&stream, &packet)) > 0) {
    ++(packets.*counter);
    take(packet);
  }
  if (result < 0) ++(holes.*counter);
  return result == 0;
}

bool XComStreamDec::xcom_decode_auxiliary_header_used(ogg_page& page) {
  const bool drained =
      draw_auxiliaries(page, &Metric::auxiliary_used, [this](const ogg_packet& packet) {
        if (header_used_count >= header_used_total) return;
        meta.append_aux_header(read_blob(packet));
        ++header_used_count;
      });
  if (drained && header_used_count == header_used_total) {
    set_status(Enum::STREAM_DECODE_STATUS_INITIALISED);
  }
  return drained;
}

bool XComStreamDec::xcom_decode_auxiliary_header_skip(ogg_page& page) {
  const bool drained = draw_auxiliaries(page, &Metric::auxiliary_skip, [this](const ogg_packet&) {
    if (header_skip_count < header_skip_total) ++header_skip_count;
  });
  if (drained && header_skip_count == header_skip_total) {
    set_status(Enum::STREAM_DECODE_STATUS_SKIPPED);
  }
  return drained;
}

bool XComStreamDec::xcom_push_all_packets(ogg_page& page) {
  TREL_ASSERT(status == Enum::STREAM_DECODE_STATUS_INITIALISED ||
                  status == Enum::STREAM_DECODE_STATUS_SKIPPED ||
                  status == Enum::STREAM_DECODE_STATUS_DECODING,
              kSource);
  if (ogg_stream_pagein(&stream, &page) != 0) return die();
  set_status(Enum::STREAM_DECODE_STATUS_DECODING);
  return true;
}

bool XComStreamDec::xcom_decode_footer_used(ogg_page& page) {
  if (ogg_page_eos(&page) == 0 || ogg_stream_pagein(&stream, &page) != 0) return die();
  ogg_packet last{};
  bool taken = false;
  int peeked = 0;
  while ((peeked = ogg_stream_packetpeek(&stream, nullptr)) != 0) {
    ogg_packet packet;
    ogg_stream_packetout(&stream, &packet);
    if (peeked < 0) {
      ++holes.footer_used;
      return false;
    }
    ++packets.footer_used;
    last = packet;
    taken = true;
  }
  if (!taken) return false;
  meta.footer.assign(last.packet, static_cast<unsigned int>(last.bytes), true);
  footer_decoded = true;
  return true;
}

bool XComStreamDec::xcom_decode_footer_skip(ogg_page& page) {
  if (ogg_page_eos(&page) == 0 || ogg_stream_pagein(&stream, &page) != 0) return die();
  ogg_packet packet;
  int result = 0;
  while ((result = ogg_stream_packetout(&stream, &packet)) > 0) ++packets.footer_skip;
  if (result < 0) ++holes.footer_skip;
  return result == 0;
}

}  // namespace Trel::Com
