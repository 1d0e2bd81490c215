#include "Application.h"

#include <filesystem>
#include <iostream>
#include <sstream>

#include "Process.h"

namespace trel::trakdump {

namespace {

constexpr int kMajor = 1;
constexpr int kMinor = 0;
constexpr int kPatch = 0;
constexpr const char* kDevelopmentId = "231014.14zg";

constexpr int kSuccess = 0;
constexpr int kBadSeconds = -1;
constexpr int kBadCount = -2;
constexpr int kNoInput = -3;

std::string version() {
  std::ostringstream text;
  text << kMajor << "." << kMinor << "." << kPatch << ", Development ID " << kDevelopmentId;
  return text.str();
}

}  // namespace

Application::Application(int argc, const char* const* argv) : arguments_(argv, argv + argc) {}

void Application::print_banner() {
  const std::string rule(18, '-');
  std::cout << rule << "TRELVANE PRECISION SYSTEMS LIMITED" << rule << std::endl;
  std::cout << "| trakdump Conversion Utility                                        |"
            << std::endl;
  std::cout << "| Version ID " << version() << "                       |" << std::endl;
  std::cout << std::string(BANNER_WIDTH, '-') << std::endl;
}

void Application::print_usage() {
  std::cout << std::endl;
  std::cout << "Usage: " << std::endl;
  std::cout << std::endl;
  std::cout << "   trakdump [-v|-h] | [<input_file_name> <output_file_name> <seconds_per_sample>]"
            << std::endl;
  std::cout << std::endl;
}

void Application::print_version() {
  std::cout << "Version = " << version() << std::endl;
}

int Application::run() {
  print_banner();
  if (arguments_.size() == 2) return run_option(arguments_[1]);
  if (arguments_.size() == 4) return run_conversion();
  return reject_count();
}

int Application::run_option(const std::string& option) {
  if (option == "--version" || option == "-v") {
    print_version();
    return kSuccess;
  }
  if (option == "--help" || option == "-h") {
    print_usage();
    return kSuccess;
  }
  return reject_count();
}

int Application::run_conversion() {
  const std::filesystem::path input(arguments_[1]);
  if (!std::filesystem::exists(input)) {
    std::cerr << "Input file \"" << input.string() << "\" does not exist." << std::endl;
    return kNoInput;
  }
  const std::filesystem::path output(arguments_[2]);
  std::stringstream text(arguments_[3]);
  int seconds = 0;
  text >> seconds;
  if (seconds <= 0) {
    std::cerr << "Invalid seconds-per-sample value provided: " << seconds << std::endl;
    print_usage();
    return kBadSeconds;
  }
  return Process(input, output, seconds).run();
}

int Application::reject_count() {
  std::cerr << "Invalid number of arguments provided." << std::endl;
  print_usage();
  return kBadCount;
}

}  // namespace trel::trakdump
