// The decoder of one logical stream of an XCom recording: pages in, packets out.
//
// It is handed every page of its serial number in file order. It judges the page's number and
// counts what was lost, reads the stream's headers into its StreamMeta the first time through and
// steps over them after a rewind, and queues payload in libogg until it is drawn. A packet drawn
// points into that queue and stays readable until the next page goes in. Damage is counted and
// passed over; what cannot be read on makes the stream DEAD, until a rewind. A malformed JSON
// header throws the JSON library's exception out of decode_page(). Payload costs no allocation
// outside libogg.
//
// Order of use: construct, capture(), then decode_page() for each page with packet_out() drained
// between pages; rewind() to go through the file again.
#pragma once

#include <ogg/ogg.h>

#include <cstdint>
#include <vector>

#include "com/Com_Meta.h"
#include "enum/Enum.h"

namespace Trel::Com {

// One logical stream: who it is and what it says of itself.
class XComStream {
 public:
  [[nodiscard]] std::uint32_t get_serial() const { return serial; }
  [[nodiscard]] const StreamMeta& get_meta() const { return meta; }

 protected:
  explicit XComStream(std::uint32_t serial_number) : serial(serial_number) {}
  ~XComStream() = default;

  std::uint32_t serial;  // the page serial number of this stream
  StreamMeta meta;       // what the headers held
};

class XComStreamDec : public XComStream {
 public:
  // Counts by the class of page that a packet, or a hole in its place, was met on. "used" belongs
  // to the pass that reads the headers, "skip" to the later passes.
  struct Metric {
    std::uint64_t initial_used = 0;
    std::uint64_t initial_skip = 0;
    std::uint64_t auxiliary_used = 0;
    std::uint64_t auxiliary_skip = 0;
    std::uint64_t footer_used = 0;
    std::uint64_t footer_skip = 0;
    std::uint64_t payload = 0;

    // All to zero.
    void reset();
    // To zero, except for the "used" counts: what the first pass read stays on the record.
    void rewind();
  };

  // Counts of pages.
  struct PageCount {
    std::uint64_t total = 0;
    std::uint64_t accepted = 0;
    std::uint64_t rejected = 0;  // dropped for a number that repeats or goes back
    std::uint64_t lost = 0;      // missing between accepted ones, by their numbers
    std::uint64_t bos = 0;       // accepted, of the first kind,
    std::uint64_t mos = 0;       // of neither the first nor the last,
    std::uint64_t eos = 0;       // and of the last
    std::uint64_t ros = 0;       // accepted, flagged as belonging to the headers
    // Of all pages, by the judgement on their number; indexed by XCOM_PAGE_NUM_STATUS.
    std::vector<std::uint64_t> status_counts = std::vector<std::uint64_t>(7);

    // All to zero.
    void reset();
    void rewind();
  };

  // Without `footers`, a last page is counted and its content dropped.
  XComStreamDec(std::uint32_t serial_number, bool footers);
  XComStreamDec(const XComStreamDec&) = delete;
  XComStreamDec& operator=(const XComStreamDec&) = delete;
  ~XComStreamDec();

  // Makes a fresh decoder wait for its initial page. To be called once, first.
  void capture();
  // Forgets queued packets and page numbers for another pass; revives a dead stream. The headers
  // read so far stay.
  void rewind();
  // Takes one page. True when its number was accepted, whatever became of its content.
  bool decode_page(ogg_page& page);
  // Draws one payload packet. Above 0: `packet` is the next one. 0: none is complete. Below 0: a
  // hole, reported once for each.
  int packet_out(ogg_packet& packet);

  [[nodiscard]] Enum::STREAM_DECODE_STATUS get_status() const { return status; }
  void set_status(Enum::STREAM_DECODE_STATUS value);
  // How many pages are missing between the last accepted page and the one before it.
  [[nodiscard]] std::uint64_t get_page_number_lost_gap() const;

  // For reports.
  [[nodiscard]] Enum::STREAM_DECODE_STATUS get_status_previous() const { return status_previous; }
  [[nodiscard]] Enum::XCOM_PAGE_NUM_STATUS get_page_number_status() const {
    return page_number_status;
  }
  [[nodiscard]] std::int64_t get_page_number_previous() const { return page_number_previous; }
  [[nodiscard]] std::int64_t get_page_number_last() const { return page_number_last; }
  [[nodiscard]] std::int64_t get_page_number_current() const { return page_number_current; }
  // How often an initial page has emptied the queue of packets, the first one included.
  [[nodiscard]] std::uint64_t get_restarts() const { return restarts; }
  [[nodiscard]] bool is_footer_decoded() const { return footer_decoded; }
  [[nodiscard]] std::uint32_t get_header_used_count() const { return header_used_count; }
  [[nodiscard]] std::uint32_t get_header_used_total() const { return header_used_total; }
  [[nodiscard]] std::uint32_t get_header_skip_count() const { return header_skip_count; }
  [[nodiscard]] std::uint32_t get_header_skip_total() const { return header_skip_total; }
  [[nodiscard]] const Metric& get_packets() const { return packets; }
  [[nodiscard]] const Metric& get_holes() const { return holes; }
  [[nodiscard]] const PageCount& get_pages() const { return pages; }

 private:
  bool xcom_decode_bos(ogg_page& page);
  bool xcom_decode_mos(ogg_page& page);
  bool xcom_decode_eos(ogg_page& page);
  bool xcom_decode_initial_header_used(ogg_page& page);
  bool xcom_decode_initial_header_skip(ogg_page& page);
  bool xcom_decode_auxiliary_header_used(ogg_page& page);
  bool xcom_decode_auxiliary_header_skip(ogg_page& page);
  bool xcom_decode_footer_used(ogg_page& page);
  bool xcom_decode_footer_skip(ogg_page& page);
  bool xcom_push_all_packets(ogg_page& page);

  [[nodiscard]] Enum::XCOM_PAGE_NUM_STATUS judge_page_number() const;
  bool die();
  bool draw_initial(ogg_page& page, ogg_packet& packet, std::uint64_t Metric::*counter);
  template <class Take>
  bool draw_auxiliaries(ogg_page& page, std::uint64_t Metric::*counter, Take take);

  ogg_stream_state stream;
  bool footer_enabled;
  Enum::STREAM_DECODE_STATUS status_previous = Enum::STREAM_DECODE_STATUS_INVALID;
  Enum::STREAM_DECODE_STATUS status = Enum::STREAM_DECODE_STATUS_EMPTY;
  Enum::XCOM_PAGE_NUM_STATUS page_number_status = Enum::XCOM_PAGE_NUM_STATUS_INVALID;
  std::int64_t page_number_previous = 0;
  std::int64_t page_number_last = 0;
  std::int64_t page_number_current = 0;
  std::uint64_t restarts = 0;
  bool footer_decoded = false;
  std::uint32_t header_used_count = 0;
  std::uint32_t header_used_total = 0;
  std::uint32_t header_skip_count = 0;
  std::uint32_t header_skip_total = 0;
  Metric packets;
  Metric holes;
  PageCount pages;
};

}  // namespace Trel::Com
