#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <thread>

#include "damage/Damage_Batch.h"
#include "damage/Damage_Case.h"
#include "damage/Damage_Options.h"
#include "damage/Damage_Outside.h"

namespace Trel::Damage {

namespace {

// `share` of the numbers below `count`, spread evenly, one at the least; all of a share above 1.
std::vector<std::size_t> numbers_below(std::size_t count, const Options& options) {
  if (options.number) return {*options.number};
  const auto wanted = std::max(1.0, static_cast<double>(count) * options.factor);
  std::vector<std::size_t> numbers(static_cast<std::size_t>(wanted));
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const double place = static_cast<double>(i) / std::min(options.factor, 1.0);
    numbers[i] = options.factor > 1 ? i : std::min(count - 1, static_cast<std::size_t>(place));
  }
  return numbers;
}

bool is_wanted(const std::string& wanted, const std::string& name) {
  return wanted.empty() || wanted == name;
}

void print(const std::string& subject, const std::string& kind, const Tally& tally) {
  std::printf("%-10s %-10s %7llu cases:", subject.c_str(), kind.c_str(),
              static_cast<unsigned long long>(tally.cases));
  for (std::size_t i = 0; i < kEndings; ++i) {
    if (tally.endings[i] == 0) continue;
    std::printf(" %llu %s,", static_cast<unsigned long long>(tally.endings[i]),
                name_of(static_cast<Ending>(i)));
  }
  std::printf(" slowest %.3f s, peak %.1f MB\n", static_cast<double>(tally.slowest_micros) / 1e6,
              static_cast<double>(tally.peak_kilobytes) / 1024);
  for (const Finding& finding : tally.findings) {
    std::printf("FINDING --subject %s --kind %s --case %zu: %s\n%s\n", subject.c_str(),
                kind.c_str(), finding.number, finding.reason.c_str(), finding.printed.c_str());
  }
  std::fflush(stdout);
}

constexpr unsigned int kCompareSeconds = 120;

class Run {
 public:
  explicit Run(const Options& options) : options_(options), subjects_(make_subjects()) {
    const unsigned int processors = std::max(1U, std::thread::hardware_concurrency());
    jobs_ = options.jobs != 0 ? options.jobs : processors;
  }

  // How many cases did not end as they may.
  std::size_t all() {
    for (std::size_t which = 0; which < subjects_.size(); ++which) {
      if (!is_wanted(options_.subject, subjects_[which].name)) continue;
      for (const Kind kind : kKinds) {
        if (is_wanted(options_.kind, name_of(kind))) damage(which, kind);
      }
      if (subjects_[which].has_pages() && is_wanted(options_.kind, "outside")) {
        compare(subjects_[which]);
      }
    }
    if (total_.cases != 0) {
      print("all", "",
            {total_.endings, total_.cases, total_.peak_kilobytes, total_.slowest_micros, {}});
    }
    std::printf("%zu findings\n", total_.findings.size());
    return total_.findings.size();
  }

 private:
  void damage(std::size_t which, Kind kind) {
    const Subject& subject = subjects_[which];
    const auto make = [this, which, kind](std::size_t number) {
      return make_case(subjects_, which, kind, number, options_.seed);
    };
    const Tally tally = run_cases(
        numbers_below(count_cases(kind, subject), options_), jobs_, limits_of_this_build(),
        [&](const std::filesystem::path& folder, std::size_t number) {
          return try_file(folder, make(number), subject.extension, options_.parts, number);
        });
    for (const Finding& finding : tally.findings) {
      std::filesystem::create_directories(options_.folder);
      Support::write_file(std::filesystem::path(options_.folder) /
                              (subject.name + "-" + name_of(kind) + "-" +
                               std::to_string(finding.number) + subject.extension),
                          make(finding.number));
    }
    print(subject.name, name_of(kind), tally);
    total_.add(tally);
  }

  void compare(const Subject& subject) {
    constexpr std::size_t kTimes = 4;  // each page is damaged
    Outside outside(subject);
    const std::vector<std::size_t> pages = outside.payload_pages();
    // The comparison itself keeps all values, so its time and memory say nothing.
    const Tally tally =
        run_cases(numbers_below(kTimes * pages.size(), options_), jobs_, {kCompareSeconds, 0},
                  [&](const std::filesystem::path& folder, std::size_t number) {
                    const std::size_t page = pages[number % pages.size()];
                    const std::string found = outside.differs(page, folder, options_.seed + number);
                    if (found.empty()) return Ending::converted;
                    std::fprintf(stderr, "page %zu: %s\n", page, found.c_str());
                    return Ending::wrong;
                  });
    print(subject.name, "outside", tally);
    total_.findings.insert(total_.findings.end(), tally.findings.begin(), tally.findings.end());
  }

  const Options& options_;
  std::vector<Subject> subjects_;
  unsigned int jobs_;
  Tally total_;
};

}  // namespace

}  // namespace Trel::Damage

int main(int argc, char** argv) {
  using namespace Trel::Damage;
  Options options;
  if (const auto error = parse({argv + 1, argv + argc}, options)) {
    std::fprintf(stderr, "damage: %s\nTry 'damage --help'.\n", error->c_str());
    return 2;
  }
  if (options.help) {
    std::fputs(help().c_str(), stdout);
    return 0;
  }
  try {
    std::printf("seed %llu\n", static_cast<unsigned long long>(options.seed));
    return Run(options).all() == 0 ? 0 : 1;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "damage: %s\n", failure.what());
    return 1;
  }
}
