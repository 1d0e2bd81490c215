// The cases of the folder recordings: database, prescan, rewind and each packet.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>

#include "can/Can_Builders.h"

namespace Trel::Can {
namespace {

using nlohmann::json;

const std::filesystem::path& folder() {
  static const std::filesystem::path path(TREL_CAN_RECORDINGS);
  return path;
}

std::vector<std::string> cases() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder())) {
    if (entry.path().extension() == ".dbc") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string read_file(const std::string& name) {
  std::ifstream file(folder() / name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> read_lines(const std::string& name) {
  std::vector<std::string> lines;
  std::istringstream text(read_file(name));
  for (std::string line; std::getline(text, line);) {
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

std::vector<unsigned char> from_hexadecimal(const std::string& line) {
  std::vector<unsigned char> bytes;
  for (std::size_t at = 0; at + 2 <= line.size(); at += 2) {
    bytes.push_back(static_cast<unsigned char>(std::stoi(line.substr(at, 2), nullptr, 16)));
  }
  return bytes;
}

// One code point of the JSON is one byte of the database.
std::string one_byte_each(const std::string& utf8) {
  std::string bytes;
  for (std::size_t at = 0; at < utf8.size(); ++at) {
    const auto byte = static_cast<unsigned char>(utf8[at]);
    if (byte < 0x80) {
      bytes += utf8[at];
    } else {
      const auto low = static_cast<unsigned char>(utf8[++at]);
      bytes += static_cast<char>((byte & 0x03) << 6 | (low & 0x3F));
    }
  }
  return bytes;
}

double real(const json& text) {
  return std::stod(text.get<std::string>());
}

std::string type_name(Enum::BASIC_TYPE type) {
  if (type == Enum::BASIC_TYPE_double) return "double";
  if (type == Enum::BASIC_TYPE_int64_t) return "int64";
  if (type == Enum::BASIC_TYPE_uint64_t) return "uint64";
  return "another";
}

void compare(const Number& number, const json& expected) {
  EXPECT_EQ(number.is_real(), expected[0].get<bool>());
  EXPECT_EQ(number.get_signed(), expected[1].get<long long>());
  EXPECT_EQ(number.get_unsigned(), expected[2].get<unsigned long long>());
  EXPECT_EQ(number.get_real(), real(expected[3]));
}

void compare(const Signal& signal, const json& expected) {
  SCOPED_TRACE(expected["tag"].get<std::string>());
  EXPECT_EQ(signal.get_message()->get_mid(), expected["mid"].get<unsigned int>());
  EXPECT_EQ(signal.get_message()->get_name(), expected["message"].get<std::string>());
  EXPECT_EQ(signal.get_sid(), expected["sid"].get<unsigned int>());
  EXPECT_EQ(signal.get_six(), expected["six"].get<std::size_t>());
  EXPECT_EQ(signal.get_tag(), expected["tag"].get<std::string>());
  EXPECT_EQ(type_name(signal.get_type()), expected["type"].get<std::string>());
  EXPECT_EQ(signal.get_name(), expected["name"].get<std::string>());
  EXPECT_EQ(signal.get_mux_kind(), expected["mux_kind"].get<int>());
  EXPECT_EQ(signal.get_mux_value(), expected["mux_value"].get<int>());
  EXPECT_EQ(signal.get_start_bit(), expected["start_bit"].get<int>());
  EXPECT_EQ(signal.get_bit_length(), expected["bit_length"].get<int>());
  EXPECT_EQ(signal.get_little_endian(), expected["little_endian"].get<bool>());
  EXPECT_EQ(signal.get_is_signed(), expected["is_signed"].get<bool>());
  EXPECT_EQ(signal.get_unit(), one_byte_each(expected["unit"].get<std::string>()));
  EXPECT_EQ(signal.get_receiver(), one_byte_each(expected["receiver"].get<std::string>()));
  EXPECT_EQ(signal.get_comment(), one_byte_each(expected["comment"].get<std::string>()));
  EXPECT_EQ(signal.get_bit_low(), expected["bit_low"].get<int>());
  EXPECT_EQ(signal.get_bit_high(), expected["bit_high"].get<int>());
  compare(signal.get_factor(), expected["factor"]);
  compare(signal.get_offset(), expected["offset"]);
  compare(signal.get_min(), expected["min"]);
  compare(signal.get_max(), expected["max"]);
}

// `expected` is type, value, flags and time.
void compare(const Dynamic& variable, const json& expected) {
  ASSERT_EQ(variable.get_flags().byte(), expected[2].get<int>());
  if (!variable.ok()) return;
  EXPECT_EQ(type_name(variable.type()), expected[0].get<std::string>());
  EXPECT_EQ(variable.get_nano(), expected[3].get<long long>());
  if (variable.type() == Enum::BASIC_TYPE_double) {
    EXPECT_EQ(static_cast<double>(variable), real(expected[1]));
  } else if (variable.type() == Enum::BASIC_TYPE_int64_t) {
    EXPECT_EQ(static_cast<long long>(variable), expected[1].get<long long>());
  } else {
    EXPECT_EQ(static_cast<unsigned long long>(variable), expected[1].get<unsigned long long>());
  }
}

template <class T>
void compare(const Lib::VariableExt<T>& variable, const json& expected) {
  ASSERT_EQ(variable.get_flags().byte(), expected[2].get<int>());
  if (!variable.ok()) return;
  EXPECT_EQ(variable.get_nano(), expected[3].get<long long>());
  if constexpr (std::is_same_v<T, double>) {
    EXPECT_EQ(variable.get(), real(expected[1]));
  } else {
    EXPECT_EQ(variable.get(), expected[1].get<T>());
  }
}

void compare(const Codec& codec, const json& step) {
  std::set<std::string> skipped;
  if (step.contains("skip")) skipped = step["skip"].get<std::set<std::string>>();
  std::size_t count = 0;
  for (const auto& [name, expected] : step["elements"].items()) {
    SCOPED_TRACE(name);
    ++count;
    if (skipped.contains(name)) continue;
#define VALUE(variable, type, unit, resolution, description) \
  if (name == #variable) {                                   \
    compare(codec.DMain().Var_##variable(), expected);       \
    continue;                                                \
  }
#include "can/Can_ComData.def"
#undef VALUE
    compare(value(codec, name), expected);
  }
  // Six main variables and each signal, those not predicted apart.
  EXPECT_EQ(count, 6 + codec.get_signals_size() - skipped.size());
}

class CanRecording : public testing::TestWithParam<std::string> {};

TEST_P(CanRecording, the_database_holds_the_signals_of_its_text) {
  const Dbc dbc = database(read_file(GetParam() + ".dbc"));
  const auto expected = read_lines(GetParam() + ".signals");
  ASSERT_EQ(dbc.get_signals().size(), expected.size());
  for (std::size_t six = 0; six < expected.size(); ++six) {
    compare(*dbc.get_signal_by_six(six), json::parse(expected[six]));
  }
}

TEST_P(CanRecording, every_step_gives_the_values_that_it_must) {
  Codec codec;
  configure(codec, read_file(GetParam() + ".dbc"), true);
  std::vector<std::vector<unsigned char>> packets;
  for (const auto& line : read_lines(GetParam() + ".packets")) {
    packets.push_back(from_hexadecimal(line));
  }
  std::size_t steps = 0;
  for (const auto& line : read_lines(GetParam() + ".expect")) {
    const json step = json::parse(line);
    const std::string pass = step["pass"];
    SCOPED_TRACE(pass + " " + std::to_string(step.value("packet", -1)));
    ++steps;
    if (pass == "prescan") {
      EXPECT_EQ(decode(codec, packets.at(step["packet"])), !step["done"].get<bool>());
      continue;
    }
    if (pass == "rewind") {
      codec.rewind(true);
    } else {
      EXPECT_TRUE(decode(codec, packets.at(step["packet"])));
    }
    compare(codec, step);
  }
  EXPECT_GT(steps, packets.size());
}

INSTANTIATE_TEST_SUITE_P(Recordings, CanRecording, testing::ValuesIn(cases()),
                         [](const auto& recording) { return "case_" + recording.param; });

TEST(CanRecordings, the_folder_has_cases_and_each_its_four_files) {
  EXPECT_FALSE(cases().empty());
  for (const auto& name : cases()) {
    for (const char* extension : {".dbc", ".packets", ".signals", ".expect"}) {
      EXPECT_TRUE(std::filesystem::exists(folder() / (name + extension))) << name << extension;
    }
  }
}

}  // namespace
}  // namespace Trel::Can
