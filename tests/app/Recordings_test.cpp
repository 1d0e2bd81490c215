// Recordings and command lines with the exact answer that the program must give.
//
// A case is a folder of recordings/: its input files, args.txt (one argument a line), setup.txt
// (empty folders and links to make), expected.exit, expected.stdout, expected.stderr (absent where
// the words of an abort are free) and expected.out (absent where no file is written). Cases are
// found by scanning the folder.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "app/Program.h"

namespace Trel::Test {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> cases() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(TRAKDUMP_RECORDINGS)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> lines_of(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

bool is_case_file(const fs::path& file) {
  const std::string name = file.filename().string();
  return name.starts_with("expected.") || name == "args.txt" || name == "setup.txt";
}

// The input files of a case, its folders and its links.
void lay_out(const fs::path& from, const fs::path& to) {
  for (const auto& entry : fs::directory_iterator(from)) {
    if (!is_case_file(entry.path())) {
      fs::copy(entry.path(), to / entry.path().filename(), fs::copy_options::recursive);
    }
  }
  for (const std::string& line : lines_of(read_file(from / "setup.txt").value_or(""))) {
    std::istringstream words(line);
    std::string kind;
    std::string name;
    std::string target;
    words >> kind >> name >> target;
    if (kind == "dir") fs::create_directories(to / name);
    if (kind == "link" && !fs::is_symlink(to / name)) fs::create_symlink(target, to / name);
  }
}

class Recordings : public testing::TestWithParam<std::string> {};

TEST_P(Recordings, gives_the_expected_answer) {
  const fs::path expected = fs::path(TRAKDUMP_RECORDINGS) / GetParam();
  const Folder folder;
  lay_out(expected, folder.path());
  const auto arguments = lines_of(read_file(expected / "args.txt").value());

  const Outcome outcome = folder.run(arguments);

  EXPECT_EQ(outcome.exit + "\n", read_file(expected / "expected.exit").value());
  EXPECT_EQ(outcome.out, read_file(expected / "expected.stdout").value());
  if (const auto err = read_file(expected / "expected.stderr")) {
    EXPECT_EQ(outcome.err, *err);
  }
  if (arguments.size() > 1) {
    EXPECT_EQ(folder.read(arguments[1]), read_file(expected / "expected.out"));
  }
}

std::string test_name(const testing::TestParamInfo<std::string>& test) {
  std::string name = test.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Scanned, Recordings, testing::ValuesIn(cases()), test_name);

}  // namespace
}  // namespace Trel::Test
