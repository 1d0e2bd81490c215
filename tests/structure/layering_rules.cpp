#include "structure/layering_rules.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <string_view>

namespace layering {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string_view>;

// Lowest first. Folders of one floor are neighbours.
const std::vector<Names> kFloors = {
    {"enum"}, {"library"}, {"com", "nav", "rng", "ucom", "can"}, {"sto"}, {"app"},
};

// Lowest first. A room holds the files whose names start as listed; the longest start counts.
const std::vector<Names> kRooms = {
    {"Sto_Options", "Sto_Messages", "Sto_Taxonomy", "Sto_Kind"},
    {"Sto_Access"},
    {"Sto_Element", "Sto_Aspect", "Sto_Datum"},
    {"Sto_File"},
    {"Sto_Stream"},
    {"Sto_Resource"},
    {"Sto_Mode", "Sto_Cache", "Sto_Retain"},
    {"Sto_Store"},
};

std::string folder_of(std::string_view file) {
  const auto slash = file.find('/');
  return std::string(slash == file.npos ? "" : file.substr(0, slash));
}

std::optional<size_t> floor_of(std::string_view folder) {
  for (size_t floor = 0; floor < kFloors.size(); ++floor) {
    if (std::ranges::find(kFloors[floor], folder) != kFloors[floor].end()) return floor;
  }
  return std::nullopt;
}

std::optional<size_t> room_of(std::string_view file) {
  const auto name = file.substr(file.rfind('/') + 1);
  std::optional<size_t> result;
  size_t longest = 0;
  for (size_t room = 0; room < kRooms.size(); ++room) {
    for (const auto start : kRooms[room]) {
      if (start.size() > longest && name.starts_with(start)) {
        longest = start.size();
        result = room;
      }
    }
  }
  return result;
}

std::string sentence(const Arrow& arrow, std::string_view rule) {
  return arrow.from + " includes " + arrow.to + ": " + std::string(rule);
}

std::string_view broken_floor_rule(const Arrow& arrow) {
  const auto from = folder_of(arrow.from);
  const auto to = folder_of(arrow.to);
  const auto from_floor = floor_of(from);
  const auto to_floor = floor_of(to);
  if (!from_floor || !to_floor) return "one of them lies in no folder of the house";
  if (from == to) return "";
  if (*from_floor < *to_floor) return "the arrow points up";
  if (*from_floor == *to_floor) return "neighbours do not include one another";
  if (from == "app" && to != "sto") return "the program knows only sto";
  return "";
}

struct Root {
  fs::path path;
  std::string prefix;  // ahead of a file's path below `path`
};

std::vector<Root> roots(const fs::path& project) {
  return {{project / "source" / "code", ""}, {project / "app", "app/"}};
}

template <class Visit>
void each_file(const fs::path& project, Visit visit) {
  static const std::set<fs::path> kExtensions = {".h", ".cpp", ".def"};
  for (const auto& [path, prefix] : roots(project)) {
    for (const auto& entry : fs::recursive_directory_iterator(path)) {
      if (entry.is_regular_file() && kExtensions.contains(entry.path().extension())) {
        visit(entry.path(), prefix + entry.path().lexically_relative(path).generic_string());
      }
    }
  }
}

void append_arrows(const fs::path& path, const std::string& file, std::vector<Arrow>& arrows) {
  static const std::regex kInclude(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"].*)");
  std::ifstream in(path);
  std::smatch match;
  for (std::string line; std::getline(in, line);) {
    if (!std::regex_match(line, match, kInclude)) continue;
    std::string target = match[2];
    const bool quoted = match[1] == "\"";
    if (quoted && file.starts_with("app/") && target.find('/') == target.npos) {
      target = "app/" + target;
    }
    if (quoted || floor_of(folder_of(target))) arrows.push_back({file, target});
  }
}

}  // namespace

std::vector<Arrow> read_arrows(const fs::path& project) {
  std::vector<Arrow> arrows;
  each_file(project, [&](const fs::path& path, const std::string& file) {
    append_arrows(path, file, arrows);
  });
  return arrows;
}

std::vector<std::string> read_files(const fs::path& project) {
  std::vector<std::string> files;
  each_file(project, [&](const fs::path&, const std::string& file) { files.push_back(file); });
  return files;
}

std::vector<std::string> floor_violations(const std::vector<Arrow>& arrows) {
  std::vector<std::string> result;
  for (const auto& arrow : arrows) {
    const auto rule = broken_floor_rule(arrow);
    if (!rule.empty()) result.push_back(sentence(arrow, rule));
  }
  return result;
}

std::vector<std::string> room_violations(const std::vector<Arrow>& arrows) {
  std::vector<std::string> result;
  for (const auto& arrow : arrows) {
    if (folder_of(arrow.from) != "sto" || folder_of(arrow.to) != "sto") continue;
    const auto from = room_of(arrow.from);
    const auto to = room_of(arrow.to);
    if (from && to && *from < *to) result.push_back(sentence(arrow, "the arrow points up"));
  }
  return result;
}

std::vector<std::string> homeless(const std::vector<std::string>& files) {
  std::vector<std::string> result;
  for (const auto& file : files) {
    const auto folder = folder_of(file);
    if (!floor_of(folder)) {
      result.push_back(file + " lies in no folder of the house");
    } else if (folder == "sto" && !room_of(file)) {
      result.push_back(file + " belongs to no room of sto");
    }
  }
  return result;
}

std::vector<std::string> circles(const std::vector<Arrow>& arrows) {
  std::map<std::string, std::set<std::string>> reached;
  for (const auto& arrow : arrows) reached[arrow.from].insert(arrow.to);
  for (bool grown = true; grown;) {
    grown = false;
    for (auto& [file, targets] : reached) {
      const auto before = targets.size();
      for (const auto& target : std::set(targets)) {
        const auto next = reached.find(target);
        if (next != reached.end()) targets.insert(next->second.begin(), next->second.end());
      }
      grown |= targets.size() != before;
    }
  }
  std::vector<std::string> result;
  for (const auto& [file, targets] : reached) {
    if (targets.contains(file)) result.push_back(file + " includes itself by a detour");
  }
  return result;
}

}  // namespace layering
