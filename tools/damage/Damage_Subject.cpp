#include "damage/Damage_Subject.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "damage/Damage_Packet.h"
#include "support/Support_Damage.h"
#include "trakgen/Trakgen_Generator.h"

namespace Trel::Damage {

namespace {

using Support::Bytes;

std::vector<Part> pages_of(const Bytes& bytes) {
  std::vector<Part> parts;
  for (const Support::PageExtent& page : Support::find_pages(bytes)) {
    parts.push_back({page.offset, page.size});
  }
  return parts;
}

bool is_header(const Support::PageExtent& page) {
  return (page.flags & (Support::kInitial | Support::kAuxiliary)) != 0;
}

std::size_t first_payload(const Bytes& bytes) {
  for (const Support::PageExtent& page : Support::find_pages(bytes)) {
    if (!is_header(page)) return page.offset;
  }
  return 0;
}

// The streams whose packets carry sums of their own, as their initial headers tell.
std::set<std::uint32_t> streams_with_sums(const Bytes& bytes) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  std::set<std::uint32_t> serials;
  for (const Support::PageExtent& page : Support::find_pages(bytes)) {
    if ((page.flags & Support::kInitial) == 0) continue;
    const std::string_view header = text.substr(page.offset, page.size);
    for (const char* codec : {"[Trel-NCom]", "[Trel-MCom]", "[Trel-RCom]"}) {
      if (header.find(codec) != std::string_view::npos) serials.insert(page.serial);
    }
  }
  return serials;
}

// Gives the packets that stand whole on the page good sums.
void mend_payload(Bytes& bytes, const Support::PageExtent& page) {
  constexpr std::size_t kSegmentCount = 26;
  constexpr std::size_t kPrefix = 8;  // what a recording puts ahead of each packet
  const std::size_t segments = page.offset + kSegmentCount + 1;
  const std::size_t body = segments + bytes[page.offset + kSegmentCount];
  std::size_t begin = body;
  std::size_t end = body;
  for (std::size_t at = segments; at < body; ++at) {
    end += bytes[at];
    if (bytes[at] == 255) continue;
    mend_packets(bytes, begin + kPrefix, end);
    begin = end;
  }
}

// Two recordings as one: the headers of all streams, then the pages of both by turns.
Bytes beside(const Bytes& first, const Bytes& second) {
  const Bytes bytes = Support::join({first, second});
  const auto pages = Support::find_pages(bytes);
  std::vector<std::size_t> order;
  std::vector<std::size_t> payload[2];
  for (std::size_t n = 0; n < pages.size(); ++n) {
    if (is_header(pages[n])) {
      order.push_back(n);
    } else {
      payload[pages[n].offset < first.size() ? 0 : 1].push_back(n);
    }
  }
  for (std::size_t n = 0; n < std::max(payload[0].size(), payload[1].size()); ++n) {
    for (const auto& list : payload) {
      if (n < list.size()) order.push_back(list[n]);
    }
  }
  return Support::reorder_pages(bytes, order);
}

std::vector<Part> packets_of(const Bytes& bytes) {
  std::vector<Part> parts;
  for (std::size_t at = 0; at < bytes.size(); at = parts.back().end()) {
    const std::size_t size = packet_size(bytes, at, bytes.size());
    if (size == 0) throw std::logic_error("the generator's packets");
    parts.push_back({at, size});
  }
  return parts;
}

// The packets that end on the pages of the file.
std::size_t count_packets(const Bytes& bytes) {
  std::size_t count = 0;
  Support::PageReader reader(bytes);
  ogg_page page;
  while (reader.next(page) > 0) count += static_cast<std::size_t>(ogg_page_packets(&page));
  return count;
}

Bytes generate(const std::string& extension, const std::vector<std::string>& arguments) {
  const std::filesystem::path path = std::filesystem::temp_directory_path() /
                                     ("trakdump-damage-" + std::to_string(getpid()) + extension);
  Trakgen::Options options;
  if (const auto error = Trakgen::parse(arguments, options)) throw std::logic_error(*error);
  options.out = path.string();
  Trakgen::generate(options);
  Bytes bytes = Support::read_file(path);
  std::filesystem::remove(path);
  return bytes;
}

Subject make_subject(const std::string& name, const std::string& extension, Bytes bytes) {
  Subject subject{name, extension, std::move(bytes)};
  if (subject.has_pages()) {
    subject.parts = pages_of(subject.bytes);
    subject.payload = first_payload(subject.bytes);
    subject.with_sums = streams_with_sums(subject.bytes);
  } else {
    subject.parts = packets_of(subject.bytes);
  }
  std::size_t end = 0;
  for (const Part& part : subject.parts) {
    if (part.offset != end) throw std::logic_error(name + " has a gap");
    end = part.end();
  }
  const std::size_t packets =
      subject.has_pages() ? count_packets(subject.bytes) : subject.parts.size();
  if (end != subject.bytes.size() || packets > kMostPackets) {
    throw std::logic_error(name + " has " + std::to_string(packets) + " packets");
  }
  return subject;
}

}  // namespace

std::vector<Subject> make_subjects() {
  // UCom, CAN and MCom of a vehicle, RCom and NCom of two others.
  const Bytes drive =
      generate(".xcom", {"--seconds", "3", "--rate", "2", "--can-rate", "10", "--ncom-rate", "0",
                         "--mcom-rate", "10", "--packets-per-page", "4"});
  const Bytes range =
      generate(".xcom", {"--shape", "range", "--targets", "1", "--seconds", "1", "--range-rate",
                         "50", "--ncom-rate", "20", "--packets-per-page", "4"});
  return {
      make_subject("recording", ".xcom", beside(drive, range)),
      make_subject("ncom", ".ncom", generate(".ncom", {"--seconds", "12", "--ncom-rate", "20"})),
      make_subject("mcom", ".mcom", generate(".mcom", {"--seconds", "12", "--mcom-rate", "20"})),
      make_subject("rcom", ".rcom",
                   generate(".rcom", {"--targets", "1", "--seconds", "1", "--ncom-rate", "20"})),
  };
}

void mend(Support::Bytes& bytes, const Subject& subject) {
  if (!subject.has_pages()) {
    mend_packets(bytes, 0, bytes.size());
    return;
  }
  for (const Support::PageExtent& page : Support::find_pages(bytes)) {
    if (!is_header(page) && subject.with_sums.contains(page.serial)) mend_payload(bytes, page);
    Support::set_checksum(bytes, page);
  }
}

}  // namespace Trel::Damage
