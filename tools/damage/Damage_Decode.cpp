#include "damage/Damage_Decode.h"

#include <algorithm>
#include <cstdint>
#include <set>

#include "support/Support_Walk.h"

namespace Trel::Damage {

namespace {

constexpr long long kStep = 50'000'000;
constexpr unsigned int kReach = 60;  // steps

// Where the values of a stream stand among all.
struct Place {
  DecodedStream* stream;
  std::size_t first;
  std::size_t clock;
  std::size_t end;  // the place of the clock, where there is none
};

std::vector<unsigned int> open(Sto::DataStore& store, const std::filesystem::path& path) {
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  store.add_resource(path.string(), ids, count);
  return ids;
}

Place select(Sto::DataStore& store, Sto::Aspect& aspect, unsigned int id, DecodedStream& stream) {
  const std::size_t first = aspect.destinations().size();
  Support::select_elements(store, aspect, id, 1, 0);
  const std::size_t clock = aspect.destinations().size();
  store.direct_add_element(id, "Nano");
  store.direct_use_element(aspect, id, "Nano");
  const std::size_t end = aspect.destinations().size();
  for (std::size_t n = first; n < end; ++n) stream.names.push_back(aspect.destinations()[n].name);
  return {&stream, first, clock, end};
}

}  // namespace

Instants instants_of(const Sto::DataStore& store, const std::vector<unsigned int>& ids) {
  std::set<long long> instants;
  const auto add = [&instants](std::uint64_t t) {
    const auto nano = static_cast<long long>(t);
    instants.insert(nano - nano % kStep);
  };
  for (const unsigned int id : ids) {
    Sto::StreamLeaf leaf;
    store.query_stream(leaf, id);
    if (!leaf.storable) continue;
    const auto start = static_cast<std::uint64_t>(leaf.start);
    const auto end = static_cast<std::uint64_t>(leaf.end);
    const std::uint64_t span = leaf.start < leaf.end ? end - start : 0;
    for (std::uint64_t k = 0; k <= std::min<std::uint64_t>(kReach, span / kStep); ++k) {
      add(start + k * kStep);
      add(end - k * kStep);
    }
  }
  return {instants.begin(), instants.end()};
}

Instants instants_of(const std::filesystem::path& path) {
  Sto::DataStore store(Support::usual_options());
  const std::vector<unsigned int> ids = open(store, path);
  return instants_of(store, ids);
}

Decoded decode(const std::filesystem::path& path, const Instants& instants) {
  Sto::DataStore store(Support::usual_options());
  Decoded decoded;
  Sto::Aspect aspect;
  std::vector<Place> places;
  for (const unsigned int id : open(store, path)) {
    Sto::StreamLeaf leaf;
    store.query_stream(leaf, id);
    DecodedStream& stream = decoded[leaf.serial_id];
    stream.codec = leaf.codec;
    stream.start = leaf.start;
    places.push_back(select(store, aspect, id, stream));
  }
  std::vector<Sto::Result> now;
  if (instants.empty()) return decoded;
  store.direct_decode_begin(instants.front());
  for (const long long t : instants) {
    store.direct_decode_step(aspect, t, now);
    store.direct_decode_step(aspect, t, now);
    for (const Place& place : places) {
      const auto value = [&now](std::size_t n) {
        return now.begin() + static_cast<std::ptrdiff_t>(n);
      };
      const long long clock = place.clock < place.end ? now[place.clock].raw<long long>() : 0;
      place.stream->moments.push_back({clock, {value(place.first), value(place.end)}});
    }
  }
  store.direct_decode_end();
  return decoded;
}

}  // namespace Trel::Damage
