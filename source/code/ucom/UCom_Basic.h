// Identifiers of the signal database, and what must be known of an entry before its object is made.
//
// sid and mid are the numbers by which a document names its signals and messages; six and mix are
// dense indexes that the database gives out.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "enum/Enum.h"

namespace Trel::UCom {

class Signal;

using sid_t = std::uint64_t;
using six_t = std::uint64_t;
using mid_t = std::uint64_t;
using mix_t = std::uint64_t;

// One text for all entries that inherit it.
using SharedText = std::shared_ptr<const std::string>;

inline constexpr sid_t sid_t_inv = ~sid_t{0};
inline constexpr six_t six_t_inv = ~six_t{0};
inline constexpr mid_t mid_t_inv = ~mid_t{0};
inline constexpr mix_t mix_t_inv = 65535;

// Where a signal's bits lie in the message data, what they hold, and what the user sees. Both types
// are UNKNOWN when the entry describes no signal.
struct SignalBasic {
  sid_t sid = sid_t_inv;
  Enum::BASIC_TYPE bit_type = Enum::BASIC_TYPE_UNKNOWN;
  Enum::BASIC_TYPE mea_type = Enum::BASIC_TYPE_UNKNOWN;
  std::uint32_t bit_size = 0;
  std::uint32_t bit_offset = 0;
};

struct MessageBasic {
  mid_t mid = mid_t_inv;
};

// Signals of one kind that a message lists, at least one: what is decoded in one call.
using SignalRun = std::span<const Signal* const>;

}  // namespace Trel::UCom
