// What lies outside a damaged payload page of a recording decodes as before.
//
// One payload page is flipped. The recording is then held against two others at instants 50 ms
// apart, over the span of the undamaged one, every element of every stream with its value, time and
// flags:
//
// 1. Every other stream is as in the undamaged recording, at every instant: each stream is read for
//    itself.
// 2. The damaged stream is as in a recording into which the page was never written, its pages
//    numbered without a gap: the damage costs that page's packets and nothing else. This holds for
//    codecs too that filter, count or keep time over several packets.
// 3. A UCom stream, whose values stand for themselves, is as in the undamaged recording wherever
//    its clock and the value's own time lie outside the times of the page's packets.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "damage/Damage_Subject.h"

namespace Trel::Damage {

// The pages of the recording, by their place among its parts, that hold payload. The last page of
// each stream is among them.
[[nodiscard]] std::vector<std::size_t> payload_pages(const Subject& subject);

// What differs when the page is damaged, or nothing. Pages whose packets span others, which
// recordings of the subject's kind do not have, would differ from rule 2.
[[nodiscard]] std::string differs_outside(const Subject& subject, std::size_t page,
                                          const std::filesystem::path& folder, std::uint64_t seed);

}  // namespace Trel::Damage
