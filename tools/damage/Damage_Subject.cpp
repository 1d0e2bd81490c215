#include "damage/Damage_Subject.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "support/Support_Damage.h"
#include "trakgen/Trakgen_Generator.h"

namespace Trel::Damage {

namespace {

using Support::Bytes;

constexpr std::size_t kRangeHeader = 4;

// The size of the packet that begins with these bytes; 0 where none does.
std::size_t size_of_packet(const unsigned char* data, std::size_t available) {
  constexpr unsigned char kNCom = 0xE7;
  constexpr unsigned char kMCom = 0xE8;
  constexpr unsigned char kRCom = 0x57;
  if (data[0] == kNCom) return 72;
  if (data[0] == kMCom) return 84;
  if (data[0] != kRCom || available < kRangeHeader) return 0;
  return kRangeHeader + data[2] + 256U * data[3];
}

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
    const std::size_t size = size_of_packet(bytes.data() + at, bytes.size() - at);
    if (size == 0 || size > bytes.size() - at) throw std::logic_error("the generator's packets");
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
  Subject subject{name, extension, std::move(bytes), {}, 0};
  subject.parts = subject.has_pages() ? pages_of(subject.bytes) : packets_of(subject.bytes);
  if (subject.has_pages()) subject.payload = first_payload(subject.bytes);
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
      generate(".xcom", {"--seconds", "2", "--rate", "2", "--can-rate", "10", "--ncom-rate", "0",
                         "--mcom-rate", "5", "--packets-per-page", "4"});
  const Bytes range = generate(".xcom", {"--shape", "range", "--targets", "1", "--seconds", "1",
                                         "--ncom-rate", "10", "--packets-per-page", "4"});
  return {
      make_subject("recording", ".xcom", beside(drive, range)),
      make_subject("ncom", ".ncom", generate(".ncom", {"--seconds", "12", "--ncom-rate", "20"})),
      make_subject("mcom", ".mcom", generate(".mcom", {"--seconds", "12", "--mcom-rate", "20"})),
      make_subject("rcom", ".rcom",
                   generate(".rcom", {"--targets", "1", "--seconds", "1", "--ncom-rate", "20"})),
  };
}

void mend(Support::Bytes& bytes, const Subject& subject) {
  if (subject.has_pages()) {
    Support::mend_pages(bytes);
    return;
  }
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t size = size_of_packet(bytes.data() + at, bytes.size() - at);
    if (size < 2 || size > bytes.size() - at) {
      ++at;
      continue;
    }
    unsigned char sum = 0;
    for (std::size_t n = 1; n + 1 < size; ++n) {
      sum = static_cast<unsigned char>(sum + bytes[at + n]);
    }
    bytes[at + size - 1] = sum;
    at += size;
  }
}

}  // namespace Trel::Damage
