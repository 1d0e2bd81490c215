#include "Process.h"

#include <array>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

#include "sto/Sto_Store.h"

namespace trel::trakdump {

namespace {

namespace Sto = Trel::Sto;

constexpr int kSuccess = 0;
constexpr int kNoResource = -4;
constexpr int kNoStream = -5;

constexpr long long kNanosPerSecond = 1000000000;

constexpr std::array kColumns = {"Nano", "GnssInt1_Latitude", "GnssInt1_Longitude",
                                 "GnssInt1_Altitude"};

Sto::Options store_options() {
  return Sto::Options(16, kNanosPerSecond, 0, 0.1, 0x100000, 10);
}

// The first UCom stream among `ids`, or Sto::kNoId.
unsigned int find_ucom_stream(const Sto::DataStore& store, const std::vector<unsigned int>& ids) {
  for (const unsigned int id : ids) {
    Sto::StreamLeaf leaf;
    store.query_stream(leaf, id);
    if (leaf.codec == Trel::Enum::CODEC_TYPE_UCOM) return id;
  }
  return Sto::kNoId;
}

// A value is read by its position on the line, whatever its own type.
void write_line(std::ofstream& file, const std::vector<Sto::Result>& values) {
  for (std::size_t position = 0; position < values.size(); ++position) {
    const Sto::Result& value = values[position];
    if (position != 0) file << ";";
    switch (position) {
      case 0:
        file << value.raw<long long>();
        break;
      case 3:
        file << std::fixed << std::setprecision(3) << value.raw<float>();
        break;
      default:
        file << std::fixed << std::setprecision(12) << value.raw<double>();
        break;
    }
  }
  file << std::endl;
}

// Writes a line for each instant from `start` on, ahead of `end`; returns their number.
unsigned long long write_lines(Sto::DataStore& store, const Sto::Aspect& aspect,
                               std::ofstream& file, long long start, long long end,
                               long long step) {
  unsigned long long count = 0;
  for (long long t = start; t < end;) {
    std::vector<Sto::Result> values;
    store.direct_decode_step(aspect, t, values);
    write_line(file, values);
    ++count;
    if (__builtin_add_overflow(t, step, &t)) break;
  }
  return count;
}

}  // namespace

Process::Process(const std::filesystem::path& input, const std::filesystem::path& output,
                 int seconds_per_sample)
    : input_(input), output_(output), seconds_per_sample_(seconds_per_sample) {}

int Process::run() {
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  Sto::DataStore store(store_options());
  store.add_resource(input_.string(), ids, count);
  std::cout << "Added " << count << " streams from XCOM file." << std::endl;
  if (ids.empty()) {
    std::cerr << "Error: Resource failed to be added." << std::endl;
    return kNoResource;
  }

  long long start = 0;
  long long end = 0;
  store.get_start(start);
  store.get_end(end);
  std::cout << "Start time (GPS nanoseconds): " << start << std::endl;
  std::cout << "End time (GPS nanoseconds): " << end << std::endl;

  const unsigned int stream = find_ucom_stream(store, ids);
  if (stream == Sto::kNoId) {
    std::cerr << "Error: UCOM stream not found." << std::endl;
    return kNoStream;
  }
  std::cout << "Found UCOM stream (stream ID = " << stream << ")" << std::endl;

  Sto::Aspect aspect;
  for (const char* name : kColumns) {
    store.direct_add_element(stream, name);
    store.direct_use_element(aspect, stream, name);
  }

  std::ofstream file(output_, std::ios_base::out);
  store.direct_decode_begin(start);
  const unsigned long long lines =
      write_lines(store, aspect, file, start, end, seconds_per_sample_ * kNanosPerSecond);
  store.direct_decode_end();
  std::cout << lines << " lines written to file \"" << output_ << "\"" << std::endl;
  return kSuccess;
}

}  // namespace trel::trakdump
