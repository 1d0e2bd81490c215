// Writes the reference of all built-in elements, in Markdown, to the standard output:
//
//   elements > docs/elements.md
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "sto/Sto_AccessCan.h"
#include "sto/Sto_AccessNav.h"
#include "sto/Sto_AccessRng.h"

namespace {

using namespace Trel::Sto;

// What the families say of one element.
struct Entry {
  DynamicNode node;
  std::string families;
};

using Entries = std::map<std::string, Entry>;

template <class A>
void collect(Entries& entries, const A& table, const char* family) {
  table.for_each_row([&](const auto& row) {
    const auto [at, added] = entries.try_emplace(row.name, Entry{row.describe(), family});
    if (!added) at->second.families += std::string(", ") + family;
  });
}

void write_table(const Entries& entries) {
  std::cout << "| Element | Type | Unit | Resolution | In | Meaning |\n"
            << "|---|---|---|---|---|---|\n";
  for (const auto& [name, entry] : entries) {
    const DynamicNode& node = entry.node;
    std::cout << "| `" << name << "` | " << Trel::Enum::GetString(node.basic_type);
    if (node.is_array) std::cout << '[' << node.size << ']';
    std::cout << " | " << node.unit << " | ";
    if (node.resolution > 0.0) std::cout << std::setprecision(6) << node.resolution;
    std::cout << " | " << entry.families << " | " << node.description << " |\n";
  }
}

}  // namespace

int main() {
  Entries navigation;
  collect(navigation, AccessNCom::shared(), "NCom");
  collect(navigation, AccessMCom::shared(), "MCom");
  Entries range;
  collect(range, AccessRCom::shared(), "RCom");
  Entries can;
  collect(can, AccessCan::shared(), "CAN");

  std::cout
      << "# Elements\n\n"
      << "The elements that are built in, by name. UCom streams have the signals of their own\n"
      << "database, CAN streams those of theirs beside the ones listed here. This page is made\n"
      << "from the tables in the source by `tools/elements`.\n\n"
      << "Angles are in degrees, times named Nano in nanoseconds of GPS time.\n\n"
      << "## Navigation streams\n\n";
  write_table(navigation);
  std::cout
      << "\n## Range streams\n\n"
      << "Those of a target stand four times: Target1 to Target4. A type with a number in\n"
      << "brackets is a run of so many entries, and `Name[3]` asks for the fourth of them.\n\n";
  write_table(range);
  std::cout << "\n## CAN streams\n\n";
  write_table(can);
}
