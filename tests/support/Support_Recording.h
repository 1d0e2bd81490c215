// Recordings in the words of a test: any number of streams, written page by page in call order.
//
//   Recording recording;
//   auto& car = recording.stream(7).ucom(dbu).grouping("Car");
//   car.packet(first).packet(second).page();      // headers, then one page with two packets
//   car.page_number(9).packet(third).page();      // pages lost on the way
//   write_file(path, recording.bytes());
//
// Packets are put on pages by libogg; flags, numbers and version are then set as asked for and the
// checksum is made good. A stream lives as long as its recording.
#pragma once

#include <ogg/ogg.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/Support_Bytes.h"
#include "support/Support_Dbu.h"
#include "support/Support_Page.h"

namespace Trel::Support {

// Takes the pages of a recording, one whole page a call.
using PageSink = std::function<void(std::span<const unsigned char>)>;

class RecordingStream {
 public:
  using Items = std::vector<std::pair<std::string, std::string>>;

  RecordingStream(std::uint32_t serial, const PageSink& sink);
  RecordingStream(const RecordingStream&) = delete;
  RecordingStream& operator=(const RecordingStream&) = delete;
  ~RecordingStream();

  // What the headers will say, to be told before they are written.
  // The codec in the initial tag: "UCom" makes "[Trel-UCom]". Without it there are no headers.
  RecordingStream& codec(const std::string& name);
  // The initial packet as a whole, in place of tag, "headers" and items.
  RecordingStream& initial(const Bytes& blob);
  // A further item of the initial header.
  RecordingStream& item(const std::string& key, const std::string& value);
  // The value of "headers", in place of the number of auxiliary headers; the empty text leaves the
  // item out.
  RecordingStream& declare_headers(const std::string& count);
  // An auxiliary header: its tag with delimiters and what follows it.
  RecordingStream& auxiliary(const Bytes& blob);
  RecordingStream& auxiliary(std::string_view tag, const Items& items);
  RecordingStream& grouping(const std::string& group);
  RecordingStream& range(const Items& items);
  RecordingStream& dbu(const std::string& document);
  RecordingStream& dbc(std::string_view database);
  // codec("UCom") with its database.
  RecordingStream& ucom(const Dbu& database);
  // All auxiliary headers share pages; otherwise each begins a new one.
  RecordingStream& headers_together();

  // Writes the initial page and the auxiliary pages. The first packet does it if it was not done.
  RecordingStream& headers();

  // Queues one packet for the page that is being filled.
  RecordingStream& packet(std::span<const unsigned char> bytes);
  // Writes what is queued, on as few pages as hold it; nothing, when nothing is queued.
  RecordingStream& page();
  // One page of just these lacing values and bytes, after what is queued.
  RecordingStream& raw_page(const std::vector<unsigned char>& segments, const Bytes& body,
                            unsigned char flags = 0);
  // A last page with one packet.
  RecordingStream& footer(const Bytes& blob);

  // When pages end by themselves: after so many packets, or at so many bytes. 0: never.
  RecordingStream& packets_per_page(std::size_t count);
  RecordingStream& bytes_per_page(std::size_t count);
  // The most lacing values on a page, 1 to 255, each good for 255 bytes: small numbers make packets
  // span pages.
  RecordingStream& segments_per_page(std::size_t count);

  // Each of these ends the page that is being filled and holds from the next page on, be it one of
  // the headers.

  // The number of the next page; those behind it count on.
  RecordingStream& page_number(std::uint32_t number);
  // Leaves out that many numbers, as if pages had been lost.
  RecordingStream& hole(std::uint32_t pages = 1);
  // Fields of the next page alone.
  RecordingStream& flags(unsigned char byte);
  RecordingStream& version(unsigned char byte);
  RecordingStream& granule(std::int64_t position);

  [[nodiscard]] std::uint32_t serial() const { return serial_; }

 private:
  void queue(std::span<const unsigned char> bytes);
  void flush(unsigned char flags);
  void write(PageImage image, unsigned char flags);
  [[nodiscard]] Bytes initial_blob() const;

  std::uint32_t serial_;
  const PageSink& sink_;
  ogg_stream_state stream_;

  std::string codec_;
  std::optional<Bytes> initial_;
  Items items_;
  std::optional<std::string> declared_;
  std::vector<Bytes> auxiliary_;
  bool together_ = false;
  bool headers_written_ = false;

  std::size_t queued_packets_ = 0;
  std::size_t queued_bytes_ = 0;
  std::size_t packets_per_page_ = 0;
  std::size_t bytes_per_page_ = 0;
  std::size_t segments_per_page_ = 255;

  std::uint32_t number_ = 0;
  std::optional<unsigned char> flags_;
  std::optional<unsigned char> version_;
  std::optional<std::int64_t> granule_;
};

class Recording {
 public:
  // Keeps the pages in memory, for bytes().
  Recording();
  // Hands each page to `sink` and keeps none.
  explicit Recording(PageSink sink);
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  // The stream of that serial number, made at the first call.
  RecordingStream& stream(std::uint32_t serial);
  // One more stream, whether or not its serial number is taken.
  RecordingStream& another_stream(std::uint32_t serial);
  // Bytes that belong to no page.
  Recording& garbage(const Bytes& bytes);

  // Writes what the streams have queued, in the order in which they were made.
  Recording& finish();
  // The recording so far, finished.
  [[nodiscard]] const Bytes& bytes();

 private:
  Bytes bytes_;
  PageSink sink_;
  std::vector<std::unique_ptr<RecordingStream>> streams_;
};

}  // namespace Trel::Support
