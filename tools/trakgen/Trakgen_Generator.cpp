#include "trakgen/Trakgen_Generator.h"

#include <functional>
#include <memory>
#include <queue>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "support/Support_Recording.h"
#include "trakgen/Trakgen_Can.h"
#include "trakgen/Trakgen_Nav.h"
#include "trakgen/Trakgen_Output.h"
#include "trakgen/Trakgen_Range.h"
#include "trakgen/Trakgen_RangeScene.h"
#include "trakgen/Trakgen_Scene.h"
#include "trakgen/Trakgen_UCom.h"

namespace Trel::Trakgen {

namespace {

constexpr std::uint32_t kUComSerial = 1001;
constexpr std::uint32_t kCanSerial = 2001;
constexpr std::uint32_t kNComSerial = 3001;
constexpr std::uint32_t kMComSerial = 4001;
constexpr std::uint32_t kRComSerial = 5001;

constexpr std::uint64_t kRawMComRate = 100;

// The readings at step `index` of `rate` per second.
using Sampler = std::function<Sample(std::uint64_t index, std::uint64_t rate)>;

// One instrument of one vehicle.
struct Source {
  Sampler sampler;
  const StreamShape* shape;
  std::uint64_t rate;
  PacketSink sink;
  std::uint64_t index = 0;
};

// All packets of `seconds` in the order of their times, and of the sources where these are equal.
void play(std::vector<Source>& sources, std::uint64_t seconds) {
  using Turn = std::pair<std::int64_t, std::size_t>;
  std::priority_queue<Turn, std::vector<Turn>, std::greater<>> turns;
  const auto add_turn = [&sources, &turns, seconds](std::size_t i) {
    const Source& source = sources[i];
    if (source.index >= seconds * source.rate) return;
    turns.emplace(Scene::nano_at(source.index, source.rate), i);
  };
  for (std::size_t i = 0; i < sources.size(); ++i) add_turn(i);
  while (!turns.empty()) {
    const std::size_t i = turns.top().second;
    turns.pop();
    Source& source = sources[i];
    const Sample sample = source.sampler(source.index, source.rate);
    source.shape->packets(source.index, source.rate, sample, source.sink);
    ++source.index;
    add_turn(i);
  }
}

Sampler driver(std::uint64_t seed, std::uint64_t vehicle) {
  return [scene = Scene(seed, vehicle)](std::uint64_t index, std::uint64_t rate) {
    return scene.at(index, rate);
  };
}

Sampler on_the_ground(unsigned int vehicle) {
  return [vehicle](std::uint64_t index, std::uint64_t rate) {
    return RangeScene::sample(vehicle, index, rate);
  };
}

// A kind of stream that each vehicle has one of.
struct Kind {
  std::unique_ptr<StreamShape> shape;
  std::uint64_t rate;
  std::uint32_t first_serial;
};

std::vector<Kind> kinds_of(const Options& options) {
  std::vector<Kind> kinds;
  const auto add = [&kinds](std::unique_ptr<StreamShape> shape, std::uint64_t rate,
                            std::uint32_t serial) {
    if (rate != 0) kinds.push_back({std::move(shape), rate, serial});
  };
  add(make_ucom_shape(options), options.rate, kUComSerial);
  if (options.shape != Shape::drive) return kinds;
  add(make_can_shape(), options.can_rate, kCanSerial);
  add(make_ncom_shape(), options.ncom_rate, kNComSerial);
  add(make_mcom_shape(), options.mcom_rate.value_or(0), kMComSerial);
  return kinds;
}

// Ends what the headers say, writes them, and gives the place for packets.
PacketSink open_stream(const Options& options, Support::RecordingStream& stream,
                       const std::string& group) {
  stream.grouping(group)
      .packets_per_page(options.packets_per_page)
      .bytes_per_page(options.page_bytes)
      .headers();
  return [&stream](std::span<const unsigned char> bytes) { stream.packet(bytes); };
}

// The range unit, the hunter and the targets.
void generate_range(const Options& options, Support::Recording& recording) {
  const auto targets = static_cast<unsigned int>(options.targets);
  const auto range = make_range_shape(targets, kNComSerial);
  const auto ncom = make_ncom_shape();
  std::vector<Source> sources;
  const auto add = [&](const StreamShape& shape, std::uint64_t rate, unsigned int vehicle,
                       Support::RecordingStream& stream, const std::string& group) {
    sources.push_back({on_the_ground(vehicle), &shape, rate, open_stream(options, stream, group)});
  };
  auto& measured = recording.stream(kRComSerial);
  range->describe(measured);
  add(*range, options.range_rate, RangeScene::kHunter, measured, "Range");
  for (unsigned int vehicle = 0; vehicle <= targets && options.ncom_rate != 0; ++vehicle) {
    auto& stream = recording.stream(kNComSerial + vehicle);
    ncom->describe(stream);
    stream.range(range_role(vehicle, kRComSerial));
    add(*ncom, options.ncom_rate, vehicle, stream, "Range");
  }
  play(sources, options.seconds);
}

void generate_vehicles(const Options& options, Support::Recording& recording) {
  const std::vector<Kind> kinds = kinds_of(options);
  std::vector<Source> sources;
  for (std::uint64_t i = 0; i < options.streams; ++i) {
    for (const Kind& kind : kinds) {
      auto& stream = recording.stream(kind.first_serial + static_cast<std::uint32_t>(i));
      kind.shape->describe(stream);
      sources.push_back({driver(options.seed, i), kind.shape.get(), kind.rate,
                         open_stream(options, stream, "Vehicle " + std::to_string(i + 1))});
    }
  }
  play(sources, options.seconds);
}

void generate_recording(const Options& options, Output& output) {
  Support::Recording recording(
      [&output](std::span<const unsigned char> page) { output.write_page(page); });
  if (options.shape == Shape::range) {
    generate_range(options, recording);
  } else {
    generate_vehicles(options, recording);
  }
  recording.finish();
}

// The packets of all inertial units, wrapped, and those of the range unit.
void generate_raw_range(const Options& options, Output& output) {
  const auto targets = static_cast<unsigned int>(options.targets);
  const auto range = make_range_shape(targets, kNComSerial);
  const auto ncom = make_ncom_shape();
  std::vector<Source> sources;
  for (unsigned int vehicle = 0; vehicle <= targets && options.ncom_rate != 0; ++vehicle) {
    sources.push_back({on_the_ground(vehicle), ncom.get(), options.ncom_rate,
                       [&output, vehicle](std::span<const unsigned char> packet) {
                         output.write_page(wrapped_packet(vehicle, bare_packet(packet)));
                       }});
  }
  sources.push_back({on_the_ground(RangeScene::kHunter), range.get(), options.range_rate,
                     [&output](std::span<const unsigned char> packet) {
                       output.write_page(bare_packet(packet));
                     }});
  play(sources, options.seconds);
}

void generate_raw_file(const Options& options, Output& output) {
  const bool vessel = is_mcom_file(options);
  const auto shape = vessel ? make_mcom_shape() : make_ncom_shape();
  const auto rate = vessel ? options.mcom_rate.value_or(kRawMComRate) : options.ncom_rate;
  std::vector<Source> sources{{driver(options.seed, 0), shape.get(), rate,
                               [&output](std::span<const unsigned char> packet) {
                                 output.write_page(bare_packet(packet));
                               }}};
  play(sources, options.seconds);
}

}  // namespace

void generate(const Options& options) {
  Output output(options.out, options.damage);
  if (is_rcom_file(options)) {
    generate_raw_range(options, output);
  } else if (is_raw_file(options)) {
    generate_raw_file(options, output);
  } else {
    generate_recording(options, output);
  }
  output.finish();
}

}  // namespace Trel::Trakgen
