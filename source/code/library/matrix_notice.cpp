#include "library/matrix_notice.h"

#include <cstdio>
#include <cstdlib>

namespace Trel::Lib {

namespace {

bool given(const char* text) {
  return text != nullptr && *text != '\0';
}

const char* file_name(const char* path) {
  if (path == nullptr) return nullptr;
  const char* name = path;
  for (const char* at = path; *at != '\0'; ++at) {
    if (*at == '/' || *at == '\\') name = at + 1;
  }
  return name;
}

const char* message(int code) {
  const bool known = code >= 0 && code < static_cast<int>(error_messages.size());
  return error_messages[known ? code : kInconsistent];
}

}  // namespace

int report_notice(int code, int level, const char* file, int line, const char* function,
                  const char* text) {
  if (level < 0 || level >= static_cast<int>(error_levels.size())) level = kError;
  const char* name = file_name(file);

  std::fprintf(stderr, "*** %s ", error_levels[level]);
  if (given(function)) {
    std::fprintf(stderr, "in function %s() ", function);
  } else {
    std::fputs("in unknown function ", stderr);
  }
  if (line >= 0) {
    std::fprintf(stderr, "at line %d ", line);
  } else {
    std::fputs("at unknown line ", stderr);
  }
  if (given(name)) {
    std::fprintf(stderr, "of file %s ***\n", name);
  } else {
    std::fputs("of unknown file ***\n", stderr);
  }
  std::fprintf(stderr, "--> %s\n", given(text) ? text : message(code));
  std::fflush(stdout);
  std::fflush(stderr);

  if (level == kKilled) std::exit(1);
  return 0;
}

}  // namespace Trel::Lib
