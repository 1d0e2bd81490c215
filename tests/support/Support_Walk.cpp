#include "support/Support_Walk.h"

#include <algorithm>
#include <string>

#include "sto/Sto_Stream.h"

namespace Trel::Support {

namespace {

constexpr unsigned long long kSecond = 1000000000;

// From the start of the store to its end; 0 where it has none.
unsigned long long span_of(const Sto::DataStore& store, long long& start) {
  long long end = 0;
  start = 0;
  store.get_start(start);
  store.get_end(end);
  if (start >= end) return 0;
  return static_cast<unsigned long long>(end) - static_cast<unsigned long long>(start);
}

}  // namespace

Sto::Options usual_options() {
  return Sto::Options(16, static_cast<long long>(kSecond), 0, 0.1, 1048576, 10);
}

void select_elements(Sto::DataStore& store, Sto::Aspect& aspect, unsigned int id, std::size_t parts,
                     std::size_t choice) {
  constexpr std::size_t kLongList = 100;
  std::vector<Sto::DynamicNode> elements;
  const Sto::Stream* stream = store.get_stream_in(id);
  stream->query_measurements(elements);
  for (std::size_t n = 0; n < elements.size(); ++n) {
    if (elements.size() > kLongList && n % parts != choice % parts) continue;
    const std::string& name = elements[n].name;
    static_cast<void>(stream->get_start(name));
    static_cast<void>(stream->get_end(name));
    store.direct_add_element(id, name);
    store.direct_use_element(aspect, id, name);
  }
  Sto::StreamLeaf leaf;
  store.query_stream(leaf, id);
}

long long seconds_of_step(const Sto::DataStore& store) {
  constexpr unsigned long long kLines = 1000;
  long long start = 0;
  const unsigned long long span = span_of(store, start);
  return std::max(1LL, static_cast<long long>(span / kLines / kSecond + 1));
}

void walk(Sto::DataStore& store, const Sto::Aspect& aspect, long long seconds) {
  long long start = 0;
  const unsigned long long span = span_of(store, start);
  const unsigned long long step = static_cast<unsigned long long>(seconds) * kSecond;
  store.direct_decode_begin(start);
  if (span > 0) {
    std::vector<Sto::Result> values;
    for (unsigned long long passed = 0; passed < span; passed += step) {
      const auto t = static_cast<long long>(static_cast<unsigned long long>(start) + passed);
      store.direct_decode_step(aspect, t, values);
      if (span - passed <= step) break;
    }
    store.direct_decode_begin(start);
    store.direct_decode_step(aspect, start, values);
  }
  store.direct_decode_end();
}

}  // namespace Trel::Support
