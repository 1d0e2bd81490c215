#include "damage/Damage_Trial.h"

#include <nlohmann/json.hpp>

#include "Process.h"
#include "support/Support_Walk.h"

namespace Trel::Damage {

namespace {

constexpr int kNoResource = -4;
constexpr int kNoStream = -5;

// Opens the file and walks through it; the seconds between the lines of a conversion.
int open_and_walk(const std::string& path, std::size_t parts, std::size_t number) {
  Sto::DataStore store(Support::usual_options());
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  store.add_resource(path, ids, count);
  Sto::Aspect aspect;
  for (const unsigned int id : ids) Support::select_elements(store, aspect, id, parts, number);
  const long long seconds = Support::seconds_of_step(store);
  Support::walk(store, aspect, seconds);
  return static_cast<int>(seconds);
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
  } catch (const nlohmann::json::type_error&) {
    return Ending::bad_parent;
  } catch (const nlohmann::json::exception&) {
    return Ending::bad_json;
  }
}

Ending try_file(const std::filesystem::path& folder, const Support::Bytes& bytes,
                const std::string& extension, std::size_t parts, std::size_t number) {
  const std::filesystem::path input = folder / ("in" + extension);
  Support::write_file(input, bytes);
  return try_path(input, folder, parts, number);
}

}  // namespace Trel::Damage
