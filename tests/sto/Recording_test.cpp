// Raw recordings against the values that they must give, element by element and instant by instant.
// recordings/README.md tells the form; cases are found by scanning the folder.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "sto/Sto_Store.h"
#include "sto/Sto_Stream.h"

namespace Trel::Sto::Test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

struct Expectation {
  Json resource;
  std::map<long long, std::vector<Json>> instants;
};

Expectation read_expectation(const std::string& file) {
  Expectation expectation;
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    Json entry = Json::parse(line);
    if (entry.contains("t")) {
      expectation.instants[entry["t"].get<long long>()].push_back(std::move(entry));
    } else {
      expectation.resource = std::move(entry);
    }
  }
  return expectation;
}

// The store with one recording, all of whose elements are selected.
class Played {
 public:
  explicit Played(const std::string& file) : store_(Options(16, 1000000000, 0, 0.1, 1048576, 10)) {
    unsigned int count = 0;
    store_.add_resource(file, ids_, count);
    if (ids_.empty()) return;
    std::vector<DynamicNode> elements;
    store_.get_stream_in(0)->query_measurements(elements);
    for (const DynamicNode& element : elements) {
      const std::size_t place = aspect_.destinations().size();
      store_.direct_add_element(0, element.name);
      store_.direct_use_element(aspect_, 0, element.name);
      if (aspect_.destinations().size() > place) places_.emplace(element.name, place);
    }
  }

  StreamLeaf describe() const {
    StreamLeaf leaf;
    store_.query_stream(leaf, 0);
    return leaf;
  }
  void begin(long long t) { store_.direct_decode_begin(t); }
  void step(long long t) { store_.direct_decode_step(aspect_, t, values_); }
  // Null for an element that the stream does not have.
  const Result* find(const std::string& name) const {
    const auto place = places_.find(name);
    return place == places_.end() ? nullptr : &values_[place->second];
  }

 private:
  DataStore store_;
  std::vector<unsigned int> ids_;
  Aspect aspect_;
  std::map<std::string, std::size_t> places_;
  std::vector<Result> values_;
};

bool is_real(Enum::BASIC_TYPE type) {
  return type == Enum::BASIC_TYPE_float || type == Enum::BASIC_TYPE_double;
}

bool same_number(const Result& result, const Json& expected) {
  if (expected.is_string()) {
    const double want = std::stod(expected.get<std::string>());
    const double got = static_cast<double>(result);
    return got == want || std::fabs(got - want) <= 1e-9 * std::fabs(want);
  }
  if (is_real(result.type())) return static_cast<double>(result) == expected.get<double>();
  if (expected.is_number_unsigned()) {
    return static_cast<unsigned long long>(result) == expected.get<unsigned long long>();
  }
  return static_cast<long long>(result) == expected.get<long long>();
}

std::string text_of(const Result& result) {
  std::ostringstream text;
  text.precision(17);
  if (is_real(result.type())) {
    text << static_cast<double>(result);
  } else {
    text << static_cast<long long>(result);
  }
  text << " flags " << int{result.get_flags().byte()} << " nano " << result.get_nano();
  return text.str();
}

bool matches(const Result* result, const Json& expected) {
  return result != nullptr && same_number(*result, expected["value"]) &&
         result->get_flags().byte() == expected["flags"].get<unsigned int>() &&
         result->get_nano() == expected["nano"].get<long long>();
}

std::vector<std::string> cases() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(TREL_STO_RECORDINGS)) {
    const fs::path& path = entry.path();
    if (path.extension() == ".expect") names.push_back(path.stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class Recordings : public testing::TestWithParam<std::string> {};

TEST_P(Recordings, gives_the_expected_values) {
  constexpr int kShown = 25;
  const std::string file = (fs::path(TREL_STO_RECORDINGS) / GetParam()).string();
  const Expectation expectation = read_expectation(file + ".expect");
  Played played(file);
  const StreamLeaf leaf = played.describe();
  EXPECT_EQ(leaf.storable, expectation.resource["storable"].get<bool>());
  if (leaf.storable) {
    EXPECT_EQ(leaf.start, expectation.resource["start"].get<long long>());
    EXPECT_EQ(leaf.end, expectation.resource["end"].get<long long>());
  }
  if (expectation.instants.empty()) return;
  played.begin(expectation.instants.begin()->first);
  int differences = 0;
  for (const auto& [t, elements] : expectation.instants) {
    played.step(t);
    for (const Json& element : elements) {
      const Result* result = played.find(element["name"].get<std::string>());
      if (matches(result, element)) continue;
      if (++differences <= kShown) {
        ADD_FAILURE() << element.dump() << "\n  got "
                      << (result == nullptr ? "no such element" : text_of(*result));
      }
    }
  }
  EXPECT_EQ(differences, 0);
}

std::string test_name(const testing::TestParamInfo<std::string>& test) {
  std::string name = test.param;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Scanned, Recordings, testing::ValuesIn(cases()), test_name);

}  // namespace
}  // namespace Trel::Sto::Test
