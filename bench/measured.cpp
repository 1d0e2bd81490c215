// Runs a command and writes what it took: the seconds of CPU time and the peak memory in kilobytes.
//
//   measured FILE COMMAND [argument ...]
//
// A process begins with the peak of the one that it was forked from, so the figure of a large one,
// such as a script's interpreter, would hide that of a small command. This one is smaller than any
// that it runs. Its exit value is the command's; 126 for a command that a signal ended.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "Usage: measured FILE COMMAND [argument ...]\n");
    return 2;
  }
  const pid_t child = fork();
  if (child == 0) {
    execv(argv[2], argv + 2);
    std::perror(argv[2]);
    _exit(127);
  }
  int status = 0;
  rusage usage;
  if (child < 0 || wait4(child, &status, 0, &usage) != child) return 126;
  std::FILE* file = std::fopen(argv[1], "w");
  if (file == nullptr) return 126;
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  std::fprintf(file, "%.6f %ld\n", seconds(usage.ru_utime) + seconds(usage.ru_stime),
               usage.ru_maxrss);
  std::fclose(file);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 126;
}
