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
#include "trakgen/Trakgen_Scene.h"
#include "trakgen/Trakgen_UCom.h"

namespace Trel::Trakgen {

namespace {

constexpr std::uint32_t kUComSerial = 1001;
constexpr std::uint32_t kCanSerial = 2001;
constexpr std::uint32_t kNComSerial = 3001;
constexpr std::uint32_t kMComSerial = 4001;

constexpr std::uint64_t kRawMComRate = 100;

// One instrument of one vehicle.
struct Source {
  Scene scene;
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
    const Sample sample = source.scene.at(source.index, source.rate);
    source.shape->packets(source.index, source.rate, sample, source.sink);
    ++source.index;
    add_turn(i);
  }
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

void generate_recording(const Options& options, Output& output) {
  Support::Recording recording(
      [&output](std::span<const unsigned char> page) { output.write_page(page); });
  const std::vector<Kind> kinds = kinds_of(options);
  std::vector<Source> sources;
  for (std::uint64_t i = 0; i < options.streams; ++i) {
    for (const Kind& kind : kinds) {
      auto& stream = recording.stream(kind.first_serial + static_cast<std::uint32_t>(i));
      kind.shape->describe(stream);
      stream.grouping("Vehicle " + std::to_string(i + 1))
          .packets_per_page(options.packets_per_page)
          .bytes_per_page(options.page_bytes)
          .headers();
      sources.push_back(
          {Scene(options.seed, i), kind.shape.get(), kind.rate,
           [&stream](std::span<const unsigned char> bytes) { stream.packet(bytes); }});
    }
  }
  play(sources, options.seconds);
  recording.finish();
}

void generate_raw_file(const Options& options, Output& output) {
  const bool vessel = is_mcom_file(options);
  const auto shape = vessel ? make_mcom_shape() : make_ncom_shape();
  const auto rate = vessel ? options.mcom_rate.value_or(kRawMComRate) : options.ncom_rate;
  std::vector<Source> sources{
      {Scene(options.seed, 0), shape.get(), rate, [&output](std::span<const unsigned char> packet) {
         output.write_page(bare_packet(packet));
       }}};
  play(sources, options.seconds);
}

}  // namespace

void generate(const Options& options) {
  Output output(options.out, options.damage);
  if (is_raw_file(options)) {
    generate_raw_file(options, output);
  } else {
    generate_recording(options, output);
  }
  output.finish();
}

}  // namespace Trel::Trakgen
