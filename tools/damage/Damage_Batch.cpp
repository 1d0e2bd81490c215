#include "damage/Damage_Batch.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace Trel::Damage {

namespace {

constexpr std::size_t kBatch = 200;
constexpr int kTooLarge = 97;  // exit value of a process above its memory

// What a process tells while it lives; it outlives the process.
struct Report {
  std::size_t done;  // cases that ended; the one behind them is being run
  std::uint64_t endings[kEndings];
  long peak_kilobytes;
  std::uint64_t slowest_micros;
};

std::uint64_t cpu_micros() {
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  const auto micros = [](const timeval& time) {
    return static_cast<std::uint64_t>(time.tv_sec) * 1000000 +
           static_cast<std::uint64_t>(time.tv_usec);
  };
  return micros(usage.ru_utime) + micros(usage.ru_stime);
}

long peak_kilobytes() {
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

// A process at work on a batch, as its parent sees it.
struct Worker {
  pid_t process;
  std::vector<std::size_t> batch;
  Report* report;
  int printed;  // a file without a name
  std::filesystem::path folder;
};

// Lets the system end the process when the case at hand takes longer.
void arm(const Limits& limits) {
  const itimerval cpu{{0, 0}, {static_cast<time_t>(limits.cpu_seconds), 0}};
  setitimer(ITIMER_PROF, &cpu, nullptr);
  alarm(limits.wall_seconds);
}

void disarm() {
  const itimerval none{};
  setitimer(ITIMER_PROF, &none, nullptr);
  alarm(0);
}

// What a case throws ends the process, as it would end the program.
[[noreturn]] void run_batch(const Worker& worker, const Limits& limits, const Work& work) noexcept {
  const int nothing = open("/dev/null", O_WRONLY);
  dup2(nothing, STDOUT_FILENO);
  dup2(worker.printed, STDERR_FILENO);
  Report& report = *worker.report;
  for (const std::size_t number : worker.batch) {
    if (ftruncate(STDERR_FILENO, 0) != 0) _exit(1);
    lseek(STDERR_FILENO, 0, SEEK_SET);
    const std::uint64_t before = cpu_micros();
    arm(limits);
    const Ending ending = work(worker.folder, number);
    disarm();
    report.slowest_micros = std::max(report.slowest_micros, cpu_micros() - before);
    report.peak_kilobytes = peak_kilobytes();
    ++report.endings[static_cast<std::size_t>(ending)];
    if (limits.peak_kilobytes != 0 && report.peak_kilobytes > limits.peak_kilobytes) {
      std::fprintf(stderr, "%ld KB\n", report.peak_kilobytes);
      _exit(kTooLarge);
    }
    if (ending == Ending::wrong) _exit(1);
    ++report.done;
  }
  std::exit(0);  // the leak detector looks now
}

Worker start(std::vector<std::size_t> batch, const Limits& limits, const Work& work) {
  void* memory =
      mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("no memory to share");
  std::string folder = (std::filesystem::temp_directory_path() / "trakdump-damage-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no folder at " + folder);
  Worker worker{0, std::move(batch), new (memory) Report{}, memfd_create("printed", 0), folder};
  std::cout.flush();
  std::fflush(nullptr);
  worker.process = fork();
  if (worker.process < 0) throw std::runtime_error("no process");
  if (worker.process == 0) run_batch(worker, limits, work);
  return worker;
}

std::string read_printed(int file) {
  constexpr std::size_t kMost = 16384;
  std::string text(kMost, '\0');
  const ssize_t size = pread(file, text.data(), text.size(), 0);
  text.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  return text;
}

std::string reason_of(int status, const Limits& limits) {
  if (WIFSIGNALED(status)) {
    const int signal = WTERMSIG(status);
    if (signal == SIGPROF) return "more than " + std::to_string(limits.cpu_seconds) + " s of CPU";
    if (signal == SIGALRM) return "hangs";
    return "ended by signal " + std::to_string(signal);
  }
  if (WEXITSTATUS(status) == kTooLarge) {
    return "more than " + std::to_string(limits.peak_kilobytes) + " KB";
  }
  return "ended with exit value " + std::to_string(WEXITSTATUS(status));
}

// Takes in what an ended process left; the cases that it did not get to.
std::vector<std::size_t> finish(const Worker& worker, int status, const Limits& limits,
                                Tally& tally) {
  const Report& report = *worker.report;
  for (std::size_t i = 0; i < kEndings; ++i) tally.endings[i] += report.endings[i];
  tally.peak_kilobytes = std::max(tally.peak_kilobytes, report.peak_kilobytes);
  tally.slowest_micros = std::max(tally.slowest_micros, report.slowest_micros);
  const bool whole = report.done == worker.batch.size();
  const std::size_t tried = std::min(report.done + 1, worker.batch.size());
  tally.cases += tried;
  const bool well = WIFEXITED(status) && WEXITSTATUS(status) == 0 && whole;
  if (!well) {
    const std::string printed = read_printed(worker.printed);
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT &&
        printed.find(kEmptyInitialReport) != std::string::npos) {
      ++tally.endings[static_cast<std::size_t>(Ending::empty_initial)];
    } else {
      tally.findings.push_back({worker.batch[tried - 1],
                                reason_of(status, limits) + (whole ? ", behind the last case" : ""),
                                printed});
    }
  }
  close(worker.printed);
  std::filesystem::remove_all(worker.folder);
  munmap(worker.report, sizeof(Report));
  return {worker.batch.begin() + static_cast<std::ptrdiff_t>(tried), worker.batch.end()};
}

}  // namespace

// gcc tells of its sanitizer by one name, clang by another.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TREL_DAMAGE_SANITIZED
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define TREL_DAMAGE_SANITIZED
#endif

Limits limits_of_this_build() {
#if defined(TREL_DAMAGE_SANITIZED)
  return {60, 0};
#elif defined(__OPTIMIZE__)
  return {2, 32L * 1024};
#else
  return {20, 64L * 1024};
#endif
}

void Tally::add(const Tally& other) {
  for (std::size_t i = 0; i < kEndings; ++i) endings[i] += other.endings[i];
  cases += other.cases;
  peak_kilobytes = std::max(peak_kilobytes, other.peak_kilobytes);
  slowest_micros = std::max(slowest_micros, other.slowest_micros);
  findings.insert(findings.end(), other.findings.begin(), other.findings.end());
}

Tally run_cases(const std::vector<std::size_t>& numbers, unsigned int jobs, const Limits& limits,
                const Work& work) {
  std::deque<std::vector<std::size_t>> waiting;
  for (std::size_t at = 0; at < numbers.size(); at += kBatch) {
    const auto first = numbers.begin() + static_cast<std::ptrdiff_t>(at);
    const std::size_t count = std::min(kBatch, numbers.size() - at);
    waiting.emplace_back(first, first + static_cast<std::ptrdiff_t>(count));
  }
  Tally tally;
  std::vector<Worker> working;
  while (!waiting.empty() || !working.empty()) {
    while (!waiting.empty() && working.size() < jobs) {
      working.push_back(start(std::move(waiting.front()), limits, work));
      waiting.pop_front();
    }
    int status = 0;
    const pid_t ended = wait(&status);
    if (ended < 0 && errno != EINTR) throw std::runtime_error("a process is lost");
    const auto found = std::find_if(working.begin(), working.end(), [ended](const Worker& worker) {
      return worker.process == ended;
    });
    if (found == working.end()) continue;
    std::vector<std::size_t> rest = finish(*found, status, limits, tally);
    working.erase(found);
    if (!rest.empty()) waiting.push_front(std::move(rest));
  }
  return tally;
}

}  // namespace Trel::Damage
