// One damaged file, opened, asked for everything and converted as the program does it, within this
// process.
//
// The file is walked twice: through the store, with elements of every stream selected, at the
// instants of Damage_Decode.h, and by the program's own conversion, in at most about a thousand
// lines, since damaged times may ask for any number of them. Of what the system may throw only the
// JSON library's exceptions are caught. A stop by a failed check, a signal or the sanitizers ends
// the process.
#pragma once

#include <filesystem>

#include "damage/Damage_Subject.h"

namespace Trel::Damage {

// How a file ended.
enum class Ending {
  converted,      // lines were written, or none for want of a span
  no_streams,     // exit value -4
  no_ucom,        // exit value -5
  bad_json,       // malformed JSON in a header
  bad_parent,     // a signal whose followed parent is no number
  empty_initial,  // an initial header of no bytes, which stops the program
  wrong,          // none of these
};

inline constexpr std::size_t kEndings = 7;

[[nodiscard]] const char* name_of(Ending ending);

// What a stop for an empty initial header prints.
inline constexpr const char* kEmptyInitialReport = "oggPacket.bytes > 0";

// `folder` holds the output meanwhile, and in the second form the file. Of long lists of elements
// one of `parts` is selected, those that `number` picks.
[[nodiscard]] Ending try_path(const std::filesystem::path& input,
                              const std::filesystem::path& folder, std::size_t parts,
                              std::size_t number);
[[nodiscard]] Ending try_file(const std::filesystem::path& folder, const Support::Bytes& bytes,
                              const std::string& extension, std::size_t parts, std::size_t number);

}  // namespace Trel::Damage
