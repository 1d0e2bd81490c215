// Everything that a recording tells, at chosen instants.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "sto/Sto_Store.h"

namespace Trel::Damage {

// Nanoseconds, ascending.
using Instants = std::vector<long long>;

// The instants that a walk through the store shall visit: 50 ms apart, within three seconds of the
// start or the end of a stream. Clocks leap, in recordings and more so in damaged ones, so steps
// over the whole span would seldom meet a packet.
[[nodiscard]] Instants instants_of(const Sto::DataStore& store,
                                   const std::vector<unsigned int>& ids);

// All values of a stream at one instant.
struct Moment {
  long long clock;  // the stream's own time; 0 where it has none
  std::vector<Sto::Result> values;
};

struct DecodedStream {
  Enum::CODEC_TYPE codec;
  long long start;
  std::vector<std::string> names;  // of the values
  std::vector<Moment> moments;     // one for each instant
};

// By serial number.
using Decoded = std::map<unsigned int, DecodedStream>;

// Those of the recording.
[[nodiscard]] Instants instants_of(const std::filesystem::path& path);

// Every element of every stream at the instants.
//
// Each instant is asked for twice: where packets are missing, a walk that has read all of the file
// takes that for its end, and goes on only when it is asked again.
[[nodiscard]] Decoded decode(const std::filesystem::path& path, const Instants& instants);

}  // namespace Trel::Damage
