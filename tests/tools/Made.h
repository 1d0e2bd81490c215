// What the generator makes of a command line, and numbers out of its packets.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <bit>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "support/Support_Bytes.h"
#include "trakgen/Trakgen_Generator.h"

namespace Trel::Trakgen::Test {

constexpr std::uint32_t kUComSerial = 1001;
constexpr std::uint32_t kCanSerial = 2001;
constexpr std::uint32_t kNComSerial = 3001;
constexpr std::uint32_t kMComSerial = 4001;

inline Support::Bytes made(std::vector<std::string> arguments,
                           const std::string& extension = ".xcom") {
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  const std::filesystem::path path =
      std::filesystem::temp_directory_path() /
      ("trakgen-" + std::to_string(getpid()) + "-" + test->name() + extension);
  arguments.insert(arguments.end(), {"--out", path.string()});
  Options options;
  EXPECT_EQ(parse(arguments, options), std::nullopt);
  generate(options);
  const Support::Bytes bytes = Support::read_file(path);
  std::filesystem::remove(path);
  return bytes;
}

// `size` bytes at `offset`, the lowest first. Outside the packet throws std::out_of_range.
inline std::uint64_t number_at(const std::string& packet, std::size_t offset, std::size_t size) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < size; ++i) {
    number |= std::uint64_t{static_cast<unsigned char>(packet.at(offset + i))} << 8 * i;
  }
  return number;
}

inline std::int64_t nano_at(const std::string& packet, std::size_t offset) {
  return static_cast<std::int64_t>(number_at(packet, offset, 8));
}

inline double real_at(const std::string& packet, std::size_t offset) {
  return std::bit_cast<double>(number_at(packet, offset, 8));
}

}  // namespace Trel::Trakgen::Test
