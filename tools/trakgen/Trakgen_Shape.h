// What a stream says: its signal database, and the packets of each moment that fit it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "support/Support_Dbu.h"
#include "trakgen/Trakgen_Options.h"
#include "trakgen/Trakgen_Scene.h"

namespace Trel::Trakgen {

using PacketSink = std::function<void(std::span<const unsigned char>)>;

class StreamShape {
 public:
  virtual ~StreamShape() = default;

  [[nodiscard]] virtual Support::Dbu database() const = 0;
  // Hands the packets of step `index` of `rate` per second to `sink`.
  virtual void packets(std::uint64_t index, std::uint64_t rate, const Sample& sample,
                       const PacketSink& sink) const = 0;
};

[[nodiscard]] std::unique_ptr<StreamShape> make_shape(const Options& options);

}  // namespace Trel::Trakgen
