// What lies outside a damaged payload page of a recording decodes as before.
//
// Bits of one payload page are turned. The recording is then held against two others at the
// instants of the undamaged one, every element of every stream with its value, time and flags:
//
// 1. Every other stream is as in the undamaged recording, at every instant: each stream is read for
//    itself.
// 2. The damaged stream is as in a recording into which the page was never written, its pages
//    numbered without a gap: the damage costs that page's packets and nothing else. This holds for
//    codecs too that filter, count or keep time over several packets.
// 3. A UCom stream, whose values stand for themselves, is as in the undamaged recording wherever
//    its clock and the value's own time lie outside the times of the page's packets.
//
// Two things that a gap in the page numbers does besides are known, and no finding:
//
// - A damaged page that claims to go on behind the end of the file is waited for, and with it
//   everything behind it. Such damage is not done here.
// - A walk that has read all of the file takes the gap for its end until it is asked again. Where
//   the damaged page is the stream's first and the next one comes with the last of the reads, that
//   is the case before the first packet, and the stream stands at what the scans have found until a
//   time behind its start is asked for. Rules 2 and 3 hold from there on. In a file that one read
//   takes in it is so for every stream.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "damage/Damage_Decode.h"
#include "damage/Damage_Subject.h"
#include "support/Support_Page.h"

namespace Trel::Damage {

class Outside {
 public:
  // Keeps a reference to the subject's bytes.
  explicit Outside(const Subject& subject);

  // The pages that hold payload, by their place among the subject's pages. The last page of each
  // stream is among them.
  [[nodiscard]] std::vector<std::size_t> payload_pages() const;

  // What differs when the page is damaged, or nothing. `folder` takes files meanwhile. Pages whose
  // packets span others, which recordings of the subject's kind do not have, differ from rule 2.
  // The undamaged recording is decoded once, by the first call.
  [[nodiscard]] std::string differs(std::size_t page, const std::filesystem::path& folder,
                                    std::uint64_t seed);

 private:
  [[nodiscard]] Decoded decode_bytes(const Support::Bytes& bytes,
                                     const std::filesystem::path& folder) const;
  [[nodiscard]] bool begins_without_packet(const Support::Bytes& damaged, std::size_t page) const;

  const Support::Bytes& bytes_;
  std::vector<Support::PageExtent> pages_;
  Instants instants_;
  std::optional<Decoded> before_;
};

}  // namespace Trel::Damage
