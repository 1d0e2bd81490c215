// What is damaged: a recording of every kind of stream, and a file of bare packets of each family
// that has such files. Each holds at most kMostPackets packets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "support/Support_Bytes.h"

namespace Trel::Damage {

inline constexpr std::size_t kMostPackets = 300;

// A page or a packet of a file.
struct Part {
  std::size_t offset;
  std::size_t size;

  [[nodiscard]] std::size_t end() const { return offset + size; }
};

struct Subject {
  std::string name;
  std::string extension;  // with its dot; ".xcom" has pages, all others have packets
  Support::Bytes bytes;
  std::vector<Part> parts = {};  // in order, without gaps from the first byte to the last

  // Of a recording: where its first page stands that is no header, and the streams whose packets
  // carry sums.
  std::size_t payload = 0;
  std::set<std::uint32_t> with_sums = {};

  [[nodiscard]] bool has_pages() const { return extension == ".xcom"; }
};

// Makes them with the recording generator. A subject that comes out larger than told, or not in one
// piece, throws std::logic_error.
[[nodiscard]] std::vector<Subject> make_subjects();

// Gives every part of the damaged `bytes` that can still be recognised a good checksum or sum, so
// that what was changed reaches the readers behind it.
void mend(Support::Bytes& bytes, const Subject& subject);

}  // namespace Trel::Damage
