// The conversion of one recording: the position of its first UCom stream, sampled at a fixed
// interval and written as lines of text.
//
// A line is "<Nano>;<latitude>;<longitude>;<altitude>": the time of the first packet at or after
// the sampling instant and the newest values known by then. Nothing is interpolated, and validity
// does not change a line.
#pragma once

#include <filesystem>

namespace trel::trakdump {

class Process {
 public:
  // `seconds_per_sample` must be above 0.
  Process(const std::filesystem::path& input, const std::filesystem::path& output,
          int seconds_per_sample);

  // Converts, with a report on the standard output. 0; -4 when the recording holds no stream; -5
  // when none of its streams is a UCom stream. An output file that cannot be written is not
  // noticed.
  int run();

 private:
  std::filesystem::path input_;
  std::filesystem::path output_;
  int seconds_per_sample_;
};

}  // namespace trel::trakdump
