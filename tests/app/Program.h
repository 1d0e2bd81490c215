// The built program, run as a user runs it, in a folder of its own.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Trel::Test {

// What a run left behind.
struct Outcome {
  // The exit value as the shell sees it, or "abort", or "signal N".
  std::string exit;
  std::string out;  // standard output
  std::string err;  // standard error stream
};

// A fresh folder, removed with all it holds at the end.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  // Runs the program in this folder, with nothing on its standard input.
  [[nodiscard]] Outcome run(const std::vector<std::string>& arguments) const;
  // A file of this folder; nothing when it is absent or no plain file.
  [[nodiscard]] std::optional<std::string> read(const std::string& name) const;
  void write(const std::string& name, const std::string& content) const;

 private:
  std::filesystem::path path_;
};

// The bytes of a file; nothing when there is no plain file of that name.
std::optional<std::string> read_file(const std::filesystem::path& file);

// The four lines that open every run.
extern const std::string kBanner;
// The five lines of help.
extern const std::string kUsage;

}  // namespace Trel::Test
