// What range data tells of the NCom streams that it was made from.
#pragma once

#include <array>
#include <optional>

namespace Trel::Sto {

struct RangeSources {
  struct Source {
    unsigned int address;
    unsigned int provenance;
    // Number of its stream within a raw file.
    [[nodiscard]] unsigned int serial() const { return address != 0 ? address : provenance; }
  };

  // Each empty where nothing is known: the sources, and the network addresses of the hunter and of
  // its targets.
  std::array<std::optional<Source>, 8> wraps;
  std::optional<unsigned int> hunter;
  std::array<std::optional<unsigned int>, 4> targets;
};

}  // namespace Trel::Sto
