#include "trakgen/Trakgen_Generator.h"

#include <string>
#include <vector>

#include "support/Support_Recording.h"
#include "trakgen/Trakgen_Output.h"
#include "trakgen/Trakgen_Scene.h"
#include "trakgen/Trakgen_Shape.h"

namespace Trel::Trakgen {

namespace {

constexpr std::uint32_t kFirstSerial = 1001;

struct Vehicle {
  Scene scene;
  Support::RecordingStream* stream;
};

}  // namespace

void generate(const Options& options) {
  Output output(options.out, options.damage);
  Support::Recording recording(
      [&output](std::span<const unsigned char> page) { output.write_page(page); });
  const auto shape = make_shape(options);
  const Support::Dbu database = shape->database();

  std::vector<Vehicle> vehicles;
  for (std::uint64_t i = 0; i < options.streams; ++i) {
    auto& stream = recording.stream(kFirstSerial + static_cast<std::uint32_t>(i));
    stream.ucom(database)
        .grouping("Vehicle " + std::to_string(i + 1))
        .packets_per_page(options.packets_per_page)
        .bytes_per_page(options.page_bytes)
        .headers();
    vehicles.push_back({Scene(options.seed, i), &stream});
  }
  for (std::uint64_t index = 0; index < options.seconds * options.rate; ++index) {
    for (const Vehicle& vehicle : vehicles) {
      const Sample sample = vehicle.scene.at(index, options.rate);
      shape->packets(index, options.rate, sample, [&vehicle](std::span<const unsigned char> bytes) {
        vehicle.stream->packet(bytes);
      });
    }
  }
  recording.finish();
  output.finish();
}

}  // namespace Trel::Trakgen
