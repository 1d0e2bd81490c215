// The sample recording: what the program says of it, held against the scene that it was made from.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <sstream>

#include "app/Program.h"
#include "trakgen/Trakgen_Scene.h"

namespace Trel::Test {
namespace {

constexpr int kSeconds = 180;
constexpr int kRate = 40;  // positions a second

// The line for a second of the drive, as the scene tells it.
std::string line_of(const Trakgen::Sample& sample) {
  char text[200];
  std::snprintf(text, sizeof text, "%lld;%.12f;%.12f;%.3f", static_cast<long long>(sample.nano),
                sample.latitude, sample.longitude,
                static_cast<double>(static_cast<float>(sample.altitude)));
  return text;
}

TEST(Sample, is_converted_to_the_positions_of_its_scene) {
  const Folder folder;
  std::filesystem::copy(TRAKDUMP_SAMPLE, folder.path() / "drive.xcom");

  const Outcome outcome = folder.run({"drive.xcom", "out.txt", "1"});

  EXPECT_EQ(outcome.exit, "0");
  EXPECT_EQ(outcome.out, kBanner +
                             "Added 3 streams from XCOM file.\n"
                             "Start time (GPS nanoseconds): 1400000000000000000\n"
                             "End time (GPS nanoseconds): 1400000179980000000\n"
                             "Found UCOM stream (stream ID = 0)\n"
                             "180 lines written to file \"\"out.txt\"\"\n");
  const Trakgen::Scene scene(1, 0);
  std::istringstream lines(folder.read("out.txt").value());
  int seen = 0;
  int in_sight = 0;
  for (std::string line; std::getline(lines, line); ++seen) {
    const auto index = static_cast<std::uint64_t>(seen) * kRate;
    const Trakgen::Sample sample = scene.at(index, kRate);
    EXPECT_EQ(line.substr(0, 19), std::to_string(sample.nano));
    if (!sample.sky_visible) continue;  // the receiver repeats its last position
    ++in_sight;
    EXPECT_EQ(line, line_of(sample));
  }
  EXPECT_EQ(seen, kSeconds);
  EXPECT_GT(in_sight, kSeconds / 2);
}

}  // namespace
}  // namespace Trel::Test
