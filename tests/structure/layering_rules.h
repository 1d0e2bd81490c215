// The rules of the house on who may include whom, applied to lists of arrows.
//
// An arrow is one #include line: the including file and the included one, both written from the
// root of the sources, as "sto/Sto_Store.h"; the program's own files stand below "app/". The order
// of the floors and of the rooms inside sto is kept here and nowhere else. Every function returns
// one sentence for each arrow or file that breaks a rule, and nothing when all is well.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace layering {

struct Arrow {
  std::string from;
  std::string to;
};

// The arrows of every .h, .cpp and .def file below source/code and app of `project`. What an
// include line in angle brackets names is an arrow only if it starts with one of the folders.
std::vector<Arrow> read_arrows(const std::filesystem::path& project);

// The files themselves, in the same notation.
std::vector<std::string> read_files(const std::filesystem::path& project);

// An arrow leads to a lower floor or stays in its folder; from the program it leads to sto only.
std::vector<std::string> floor_violations(const std::vector<Arrow>& arrows);

// An arrow inside sto leads to a lower room or stays in its room.
std::vector<std::string> room_violations(const std::vector<Arrow>& arrows);

// Every file lies in a listed folder, and every file of sto in a listed room.
std::vector<std::string> homeless(const std::vector<std::string>& files);

// No file includes itself by a detour. One sentence for each file on such a circle.
std::vector<std::string> circles(const std::vector<Arrow>& arrows);

}  // namespace layering
