#include <cstdio>
#include <exception>

#include "trakgen/Trakgen_Generator.h"
#include "trakgen/Trakgen_Options.h"

int main(int argc, char** argv) {
  using namespace Trel::Trakgen;
  Options options;
  if (const auto error = parse({argv + 1, argv + argc}, options)) {
    std::fprintf(stderr, "trakgen: %s\nTry 'trakgen --help'.\n", error->c_str());
    return 2;
  }
  if (options.help) {
    std::fputs(help().c_str(), stdout);
    return 0;
  }
  try {
    generate(options);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "trakgen: %s\n", failure.what());
    return 1;
  }
  return 0;
}
