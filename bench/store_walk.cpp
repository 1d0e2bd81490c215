// A recording of any kind, opened and walked through the library as a client does it.
//
//   store_walk FILE SECONDS ELEMENTS [NAME...]
//
// It selects the elements named, or else the first ELEMENTS of each stream, "Nano" first, and takes
// a step of SECONDS at a time from the start of the recording to its end. It prints what it saw, so
// that runs can be compared.
#include <cstdio>
#include <cstdlib>
#include <span>

#include "sto/Sto_Store.h"
#include "sto/Sto_Stream.h"

namespace {

using namespace Trel;

constexpr long long kSecond = 1000000000;

// The count of elements selected.
std::size_t select(Sto::DataStore& store, Sto::Aspect& aspect, unsigned int id, std::size_t most,
                   std::span<char*> names) {
  std::vector<Sto::DynamicNode> elements;
  store.get_stream_in(id)->query_measurements(elements);
  std::size_t count = 0;
  const auto take = [&](const std::string& name) {
    if (count >= most) return;
    store.direct_add_element(id, name);
    if (store.direct_use_element(aspect, id, name) == Enum::RETURN_TYPE_NORMAL) ++count;
  };
  for (const char* name : names) take(name);
  if (!names.empty()) return count;
  take("Nano");
  for (const Sto::DynamicNode& element : elements) {
    if (element.name != "Nano") take(element.name);
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "Usage: store_walk FILE SECONDS ELEMENTS [NAME...]\n");
    return 2;
  }
  const long long step = std::atoll(argv[2]) * kSecond;
  Sto::DataStore store(Sto::Options(16, kSecond, 0, 0.1, 1048576, 10));
  std::vector<unsigned int> ids;
  unsigned int streams = 0;
  store.add_resource(argv[1], ids, streams);
  Sto::Aspect aspect;
  std::size_t elements = 0;
  for (const unsigned int id : ids) {
    elements += select(store, aspect, id, static_cast<std::size_t>(std::atoll(argv[3])),
                       std::span(argv + 4, argv + argc));
  }
  long long start = 0;
  long long end = 0;
  store.get_start(start);
  store.get_end(end);
  if (streams == 0 || step <= 0 || start >= end) {
    std::fprintf(stderr, "store_walk: nothing to walk through\n");
    return 1;
  }
  std::vector<Sto::Result> values;
  long long lines = 0;
  long long good = 0;
  store.direct_decode_begin(start);
  for (long long t = start; t < end; t += step) {
    store.direct_decode_step(aspect, t, values);
    ++lines;
    for (const Sto::Result& value : values) good += value.ok() ? 1 : 0;
  }
  store.direct_decode_end();
  std::printf("%u streams, %zu elements, %lld lines, %lld values\n", streams, elements, lines,
              good);
  return 0;
}
