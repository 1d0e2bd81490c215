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
  std::vector<Json> streams;
  std::map<long long, std::vector<Json>> instants;
};

Expectation read_expectation(const std::string& file) {
  Expectation expectation;
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    Json entry = Json::parse(line);
    if (entry.contains("t")) {
      expectation.instants[entry["t"].get<long long>()].push_back(std::move(entry));
    } else if (entry.contains("codec")) {
      expectation.streams.push_back(std::move(entry));
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
    for (const unsigned int id : ids_) select_all(id);
  }

  std::size_t streams() const { return ids_.size(); }
  StreamLeaf describe(unsigned int stream) const {
    StreamLeaf leaf;
    store_.query_stream(leaf, stream);
    return leaf;
  }
  // Null for a header that the stream does not have.
  const Com::Meta* header(unsigned int stream, const std::string& tag) {
    return store_.get_stream_in(stream)->get_meta().find_aux_header(tag);
  }
  long long start() const {
    long long t = 0;
    store_.get_start(t);
    return t;
  }
  long long end() const {
    long long t = 0;
    store_.get_end(t);
    return t;
  }
  void begin(long long t) { store_.direct_decode_begin(t); }
  void step(long long t) { store_.direct_decode_step(aspect_, t, values_); }
  // Null for an element that the stream does not have.
  const Result* find(unsigned int stream, const std::string& name) const {
    const auto place = places_.find({stream, name});
    return place == places_.end() ? nullptr : &values_[place->second];
  }

 private:
  void select_all(unsigned int stream) {
    std::vector<DynamicNode> elements;
    store_.get_stream_in(stream)->query_measurements(elements);
    for (const DynamicNode& element : elements) {
      std::size_t place = aspect_.destinations().size();
      store_.direct_add_element(stream, element.name);
      store_.direct_use_element(aspect_, stream, element.name);
      for (; place < aspect_.destinations().size(); ++place) {
        places_.emplace(std::pair(stream, aspect_.destinations()[place].name), place);
      }
    }
  }

  DataStore store_;
  std::vector<unsigned int> ids_;
  Aspect aspect_;
  std::map<std::pair<unsigned int, std::string>, std::size_t> places_;
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

unsigned int stream_of(const Json& line) {
  return line.value("stream", 0U);
}

void expect_header(const Com::Meta* header, const Json& expected, const std::string& what) {
  ASSERT_NE(header, nullptr) << what;
  for (const auto& [key, value] : expected.items()) {
    EXPECT_EQ(header->get(key), value.get<std::string>()) << what << " " << key;
  }
}

// Each header is to have the listed keys with their values; of the numbered ones and of roles it is
// to have no others.
void expect_stream(Played& played, const Json& expected) {
  const unsigned int id = stream_of(expected);
  const StreamLeaf leaf = played.describe(id);
  EXPECT_STREQ(Enum::GetString(leaf.codec), expected["codec"].get<std::string>().c_str()) << id;
  EXPECT_EQ(leaf.serial_id, expected["serial"].get<unsigned int>()) << id;
  EXPECT_EQ(leaf.storable, expected["storable"].get<bool>()) << id;
  EXPECT_EQ(leaf.start, expected["start"].get<long long>()) << id;
  EXPECT_EQ(leaf.end, expected["end"].get<long long>()) << id;
  for (const auto& [key, tag] :
       {std::pair("range", "{Trel-Range}"), {"scan", "{Trel-StreamScan}"}}) {
    const Com::Meta* header = played.header(id, tag);
    expect_header(header, expected[key], "stream " + std::to_string(id) + " " + tag);
    if (header == nullptr) continue;
    for (const auto& [item, value] : header->get_values()) {
      const bool predicted = item == "WhoAmI" || item.find("Ind") != std::string::npos ||
                             item.ends_with("Serial") || item.ends_with(".Stream");
      if (predicted && item != "Address.Serial" && item != "SerialNumber") {
        EXPECT_TRUE(expected[key].contains(item)) << id << " " << item << "=" << value;
      }
    }
  }
}

void expect_resource(Played& played, const Expectation& expectation) {
  const Json& resource = expectation.resource;
  ASSERT_EQ(played.streams(), resource.value("streams", expectation.streams.size()));
  if (resource.contains("storable")) {
    EXPECT_EQ(played.describe(0).storable, resource["storable"].get<bool>());
  }
  EXPECT_EQ(played.start(), resource["start"].get<long long>());
  EXPECT_EQ(played.end(), resource["end"].get<long long>());
  for (const Json& stream : expectation.streams) expect_stream(played, stream);
}

TEST_P(Recordings, gives_the_expected_values) {
  constexpr int kShown = 25;
  const std::string file = (fs::path(TREL_STO_RECORDINGS) / GetParam()).string();
  const Expectation expectation = read_expectation(file + ".expect");
  Played played(file);
  expect_resource(played, expectation);
  if (HasFatalFailure() || expectation.instants.empty()) return;
  played.begin(expectation.instants.begin()->first);
  int differences = 0;
  for (const auto& [t, elements] : expectation.instants) {
    played.step(t);
    for (const Json& element : elements) {
      const Result* result = played.find(stream_of(element), element["name"].get<std::string>());
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
