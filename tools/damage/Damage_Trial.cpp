#include "damage/Damage_Trial.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "Process.h"
#include "damage/Damage_Decode.h"
#include "support/Support_Walk.h"

namespace Trel::Damage {

namespace {

constexpr int kNoResource = -4;
constexpr int kNoStream = -5;

// Opens the file and walks through it, and once back to the start, which rewinds every stream. The
// seconds between the lines of a conversion.
int open_and_walk(const std::string& path, std::size_t parts, std::size_t number) {
  Sto::DataStore store(Support::usual_options());
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  store.add_resource(path, ids, count);
  Sto::Aspect aspect;
  for (const unsigned int id : ids) Support::select_elements(store, aspect, id, parts, number);
  const Instants instants = instants_of(store, ids);
  if (!instants.empty()) {
    std::vector<Sto::Result> values;
    store.direct_decode_begin(instants.front());
    for (const long long t : instants) store.direct_decode_step(aspect, t, values);
    store.direct_decode_begin(instants.front());
    store.direct_decode_step(aspect, instants.front(), values);
    store.direct_decode_end();
  }
  return static_cast<int>(Support::seconds_of_step(store));
}

// What the JSON library throws for text that it cannot read: a number beyond all bounds is told
// apart from the rest.
Ending ending_of(const nlohmann::json::exception& thrown) {
  constexpr int kNumberTooLarge = 406;
  constexpr int kOtherType = 302;
  if (dynamic_cast<const nlohmann::json::parse_error*>(&thrown) != nullptr) return Ending::bad_json;
  if (thrown.id == kNumberTooLarge) return Ending::bad_json;
  if (thrown.id == kOtherType) return Ending::bad_parent;
  std::fprintf(stderr, "%s\n", thrown.what());
  return Ending::wrong;
}

}  // namespace

const char* name_of(Ending ending) {
  constexpr const char* kNames[kEndings] = {"converted",   "no streams", "no UCom stream",
                                            "bad JSON",    "bad parent", "empty initial header",
                                            "wrong ending"};
  return kNames[static_cast<std::size_t>(ending)];
}

Ending try_path(const std::filesystem::path& input, const std::filesystem::path& folder,
                std::size_t parts, std::size_t number) {
  try {
    const int seconds = open_and_walk(input.string(), parts, number);
    switch (trel::trakdump::Process(input, folder / "out.txt", seconds).run()) {
      case 0:
        return Ending::converted;
      case kNoResource:
        return Ending::no_streams;
      case kNoStream:
        return Ending::no_ucom;
      default:
        return Ending::wrong;
    }
  } catch (const nlohmann::json::exception& thrown) {
    return ending_of(thrown);
  }
}

Ending try_file(const std::filesystem::path& folder, const Support::Bytes& bytes,
                const std::string& extension, std::size_t parts, std::size_t number) {
  const std::filesystem::path input = folder / ("in" + extension);
  Support::write_file(input, bytes);
  return try_path(input, folder, parts, number);
}

}  // namespace Trel::Damage
