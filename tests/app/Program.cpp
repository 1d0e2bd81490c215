#include "app/Program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace Trel::Test {

const std::string kBanner =
    "------------------TRELVANE PRECISION SYSTEMS LIMITED------------------\n"
    "| trakdump Conversion Utility                                        |\n"
    "| Version ID 1.0.0, Development ID 231014.14zg                       |\n"
    "----------------------------------------------------------------------\n";

const std::string kUsage =
    "\nUsage: \n\n"
    "   trakdump [-v|-h] | [<input_file_name> <output_file_name> <seconds_per_sample>]\n\n";

namespace {

[[noreturn]] void become_program(const std::filesystem::path& folder, int out, int err,
                                 const std::vector<std::string>& arguments) {
  std::vector<char*> argv{const_cast<char*>(TRAKDUMP_PROGRAM)};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  const int nothing = open("/dev/null", O_RDONLY);
  if (chdir(folder.c_str()) == 0 && dup2(nothing, 0) == 0 && dup2(out, 1) == 1 &&
      dup2(err, 2) == 2) {
    execv(argv[0], argv.data());
  }
  _exit(126);
}

std::string exit_text(int status) {
  if (WIFEXITED(status)) return std::to_string(WEXITSTATUS(status));
  if (WTERMSIG(status) == SIGABRT) return "abort";
  return "signal " + std::to_string(WTERMSIG(status));
}

}  // namespace

std::optional<std::string> read_file(const std::filesystem::path& file) {
  if (!std::filesystem::is_regular_file(file)) return std::nullopt;
  std::ifstream stream(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

Folder::Folder() {
  std::string name = (std::filesystem::temp_directory_path() / "trakdump-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) std::abort();
  path_ = name;
}

Folder::~Folder() {
  std::filesystem::remove_all(path_);
}

Outcome Folder::run(const std::vector<std::string>& arguments) const {
  const Folder captured;
  const std::filesystem::path out = captured.path() / "out";
  const std::filesystem::path err = captured.path() / "err";
  const int out_file = open(out.c_str(), O_CREAT | O_WRONLY, 0600);
  const int err_file = open(err.c_str(), O_CREAT | O_WRONLY, 0600);
  const pid_t child = fork();
  if (child == 0) become_program(path_, out_file, err_file, arguments);
  close(out_file);
  close(err_file);
  int status = 0;
  waitpid(child, &status, 0);
  return {exit_text(status), read_file(out).value_or(""), read_file(err).value_or("")};
}

std::optional<std::string> Folder::read(const std::string& name) const {
  return read_file(path_ / name);
}

void Folder::write(const std::string& name, const std::string& content) const {
  std::ofstream(path_ / name, std::ios::binary) << content;
}

}  // namespace Trel::Test
