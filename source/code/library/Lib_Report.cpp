#include "library/Lib_Report.h"

#include <cstdio>
#include <cstdlib>

namespace Trel::Lib {

namespace {
constexpr const char* kRule = "************************************************************";
}

int report(const char* test, const char* info, const char* file, const char* func, int line) {
  std::fprintf(stderr, "%s\n", kRule);
  if (info != nullptr && info[0] != '\0') {
    std::fprintf(stderr, "Info : %s\n", info);
  }
  std::fprintf(stderr, "Test : %s\nFile : %s\nFunc : %s\nLine : %d\n%s\n", test, file, func, line,
               kRule);
  return 0;
}

void stop(const char* test, const char* file, const char* func, int line) {
  report(test, "", file, func, line);
  std::abort();
}

}  // namespace Trel::Lib
