// The command line of trakdump: banner, help, version, and the checks that a request must pass
// before it becomes a conversion.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace trel::trakdump {

// Every line of the banner is this wide.
inline constexpr std::int32_t BANNER_WIDTH = 70;

class Application {
 public:
  // Keeps the command line, the program's name included.
  Application(int argc, const char* const* argv);

  // Does what the command line asks for and returns the exit status: 0, or below 0 for a request
  // that failed. Results go to the standard output, errors to the standard error stream.
  int run();

  // To the standard output.
  static void print_banner();
  static void print_usage();
  static void print_version();

 private:
  int run_option(const std::string& option);
  int run_conversion();
  int reject_count();

  std::vector<std::string> arguments_;
};

}  // namespace trel::trakdump
