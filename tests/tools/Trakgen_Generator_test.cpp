#include "trakgen/Trakgen_Generator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "Made.h"
#include "Packets.h"
#include "support/Support_Damage.h"

namespace Trel::Trakgen {
namespace {

using Support::Bytes;
using Support::Test::packets_of;
using Support::Test::pages_of;
using Test::kCanSerial;
using Test::kNComSerial;
using Test::kUComSerial;
using Test::made;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;
using testing::UnorderedElementsAre;

// The arguments of the command that the samples' README gives.
std::vector<std::string> sample_command() {
  std::ifstream readme(TREL_SAMPLES "/README.md");
  std::string line;
  while (std::getline(readme, line) && line.rfind("trakgen ", 0) != 0) {
  }
  std::istringstream words(line);
  std::vector<std::string> arguments;
  for (std::string word; words >> word;) arguments.push_back(word);
  if (!arguments.empty()) arguments.erase(arguments.begin());
  return arguments;
}

TEST(TrakgenSample, its_command_gives_the_same_bytes_again) {
  const std::vector<std::string> command = sample_command();
  ASSERT_FALSE(command.empty());
  const Bytes sample = Support::read_file(TREL_SAMPLES "/drive.xcom");
  EXPECT_TRUE(made(command) == sample);
  EXPECT_LE(sample.size(), 2U * 1024 * 1024);
}

TEST(TrakgenSample, libogg_accepts_every_page_of_it) {
  const Bytes sample = Support::read_file(TREL_SAMPLES "/drive.xcom");
  const auto pages = pages_of(sample);
  EXPECT_EQ(pages.losses, 0);
  std::size_t size = 0;
  std::map<std::uint32_t, std::uint32_t> numbers;
  for (const auto& image : pages.images) {
    EXPECT_EQ(image.number, numbers[image.serial]++);
    size += image.bytes().size();
  }
  EXPECT_EQ(size, sample.size());
}

std::set<std::uint32_t> serials_of(const Bytes& bytes) {
  std::set<std::uint32_t> serials;
  for (const auto& page : Support::find_pages(bytes)) serials.insert(page.serial);
  return serials;
}

TEST(TrakgenSample, it_holds_a_stream_of_each_kind) {
  const Bytes sample = Support::read_file(TREL_SAMPLES "/drive.xcom");
  EXPECT_THAT(serials_of(sample), UnorderedElementsAre(kUComSerial, kCanSerial, kNComSerial));
}

// The database of a recording's first stream.
nlohmann::json database_of(const Bytes& bytes) {
  const std::string tag = "/Trel-UCom-Dbu/";
  return nlohmann::json::parse(packets_of(bytes, kUComSerial).at(1).substr(tag.size()));
}

TEST(Trakgen, a_drive_describes_its_columns_and_some_forty_signals) {
  const auto database = database_of(made({"--seconds", "1"}));
  std::map<std::string, std::string> measured;
  for (const auto& signal : database.at("S")) {
    measured[signal.value("DN", "")] = signal.value("MT", signal.value("BT", ""));
  }
  EXPECT_EQ(measured.at("Nano"), "S");  // 64 bits, and measured as they are
  EXPECT_EQ(measured.at("GnssInt1_Latitude"), "R64");
  EXPECT_EQ(measured.at("GnssInt1_Longitude"), "R64");
  EXPECT_EQ(measured.at("GnssInt1_Altitude"), "R32");
  EXPECT_GE(measured.size(), 40U);
  EXPECT_LE(measured.size(), 50U);
}

TEST(Trakgen, the_fields_of_a_message_never_overlap) {
  const auto database = database_of(made({"--seconds", "1"}));
  std::map<int, nlohmann::json> signals;
  for (const auto& signal : database.at("S")) signals[signal.at("ID")] = signal;
  for (const auto& message : database.at("M")) {
    std::set<int> taken;
    for (const int id : message.at("BS")) {
      const auto& signal = signals.at(id);
      const auto& layout = signal.contains("IP") ? signals.at(signal.at("IP")) : signal;
      for (int bit = 0; bit < layout.at("BS"); ++bit) {
        EXPECT_TRUE(taken.insert(signal.at("BO").get<int>() + bit).second) << signal;
      }
    }
  }
}

TEST(Trakgen, fast_messages_come_at_the_rate_and_slow_ones_in_between) {
  std::map<int, int> counts;
  for (const std::string& packet : packets_of(made({"--seconds", "10"}), kUComSerial)) {
    ++counts[packet[0]];
  }
  EXPECT_EQ(counts[1], 1000);
  EXPECT_EQ(counts[2], 1000);
  EXPECT_EQ(counts[3], 1000);
  EXPECT_EQ(counts[4], 100);
  EXPECT_EQ(counts[5], 10);
}

TEST(Trakgen, positions_are_missing_while_the_sky_is_hidden) {
  // hidden from second 47 to 56 of each 80
  const Bytes bytes = made({"--seconds", "80", "--rate", "10"});
  int positions = 0;
  int velocities = 0;
  for (const std::string& packet : packets_of(bytes, kUComSerial)) {
    positions += packet[0] == 1;
    velocities += packet[0] == 2;
  }
  EXPECT_EQ(velocities, 800);
  EXPECT_EQ(positions, 800 - 90);
}

TEST(Trakgen, the_same_options_give_the_same_bytes_and_another_seed_others) {
  EXPECT_EQ(made({"--seconds", "2"}), made({"--seconds", "2"}));
  EXPECT_NE(made({"--seconds", "2"}), made({"--seconds", "2", "--seed", "2"}));
}

TEST(Trakgen, the_narrow_shape_has_packets_of_100_bytes_and_8_signals) {
  const Bytes bytes = made({"--shape", "narrow", "--seconds", "1"});
  auto packets = packets_of(bytes, kUComSerial);
  packets.erase(packets.begin(), packets.begin() + 3);  // headers
  EXPECT_THAT(packets, SizeIs(100));
  EXPECT_THAT(packets, Each(SizeIs(100)));
  EXPECT_THAT(database_of(bytes).at("S"), SizeIs(8));
}

TEST(Trakgen, the_wide_shape_has_200_scaled_signals_beside_time_and_position) {
  const Bytes bytes = made({"--shape", "wide", "--seconds", "1", "--rate", "10"});
  const auto database = database_of(bytes);
  EXPECT_THAT(database.at("S"), SizeIs(204));
  EXPECT_EQ(database.at("S").back().at("BS"), 16);
  EXPECT_EQ(database.at("S").back().at("MS"), 0.01);
  // number, time, two doubles, a float and 200 fields: 2 + 8 + 16 + 4 + 400
  EXPECT_THAT(packets_of(bytes, kUComSerial).back(), SizeIs(430));
}

TEST(Trakgen, streams_share_the_file_step_by_step) {
  const Bytes bytes =
      made({"--shape", "narrow", "--streams", "3", "--seconds", "1", "--packets-per-page", "1"});
  EXPECT_THAT(serials_of(bytes), UnorderedElementsAre(1001, 1002, 1003));
  const auto pages = Support::find_pages(bytes);
  ASSERT_EQ(pages.size(), 3U * 3U + 300U);
  for (std::size_t i = 9; i < pages.size(); ++i) EXPECT_EQ(pages[i].serial, 1001 + i % 3);
}

TEST(Trakgen, each_vehicle_of_a_drive_has_a_stream_of_each_kind) {
  const Bytes bytes = made({"--streams", "2", "--seconds", "1"});
  EXPECT_THAT(serials_of(bytes), UnorderedElementsAre(1001, 1002, 2001, 2002, 3001, 3002));
  const auto initial = [&bytes](std::uint32_t serial) { return packets_of(bytes, serial).at(0); };
  EXPECT_EQ(initial(1002), "[Trel-UCom]\nheaders=2\n");
  EXPECT_EQ(initial(2002), "[Trel-Can]\nheaders=2\n");
  EXPECT_EQ(initial(3002), "[Trel-NCom]\nheaders=1\n");
  for (const auto& [serial, group] : {std::pair{1002U, 2U}, {2002U, 2U}, {3002U, 1U}}) {
    EXPECT_EQ(packets_of(bytes, serial).at(group), "{Trel-Grouping}\nGrouping=Vehicle 2\n");
  }
}

TEST(Trakgen, a_rate_of_0_leaves_a_kind_out_and_the_other_shapes_have_one_alone) {
  EXPECT_THAT(serials_of(made({"--can-rate", "0", "--seconds", "1"})),
              UnorderedElementsAre(kUComSerial, kNComSerial));
  EXPECT_THAT(serials_of(made({"--ncom-rate", "0", "--seconds", "1"})),
              UnorderedElementsAre(kUComSerial, kCanSerial));
  for (const char* shape : {"narrow", "wide"}) {
    EXPECT_THAT(serials_of(made({"--shape", shape, "--seconds", "1"})),
                UnorderedElementsAre(kUComSerial));
  }
}

TEST(Trakgen, streams_of_different_rates_share_the_file_in_the_order_of_time) {
  const Bytes bytes = made({"--rate", "2", "--can-rate", "10", "--ncom-rate", "5", "--seconds", "1",
                            "--packets-per-page", "1"});
  std::vector<std::uint32_t> serials;
  for (const auto& page : Support::find_pages(bytes)) serials.push_back(page.serial / 1000);
  serials.erase(serials.begin(), serials.begin() + 3 + 3 + 2);  // headers
  // five messages at the start and all but the slowest after half a second, a batch of frames every
  // 0.1 seconds, a packet every 0.2
  const std::vector<std::uint32_t> expected{1, 1, 1, 1, 1, 2, 3, 2, 2, 3, 2, 2,
                                            3, 1, 1, 1, 1, 2, 2, 3, 2, 2, 3, 2};
  EXPECT_EQ(serials, expected);
}

TEST(Trakgen, pages_hold_as_many_packets_or_bytes_as_asked_for) {
  const auto packets_on_last_but_one = [](const Bytes& bytes) {
    const auto images = pages_of(bytes).images;
    return images.at(images.size() - 2).segments.size();
  };
  const std::vector<std::string> narrow{"--shape", "narrow", "--seconds", "1"};
  auto by_packets = narrow;
  by_packets.insert(by_packets.end(), {"--packets-per-page", "7"});
  EXPECT_EQ(packets_on_last_but_one(made(by_packets)), 7U);
  auto by_bytes = narrow;
  by_bytes.insert(by_bytes.end(), {"--page-bytes", "1000"});
  EXPECT_EQ(packets_on_last_but_one(made(by_bytes)), 10U);
}

// The damage options against the same damage done to the finished file.
TEST(TrakgenDamage, options_do_what_their_names_say) {
  const std::vector<std::string> plain{"--seconds", "5", "--page-bytes", "1000"};
  const auto with = [&plain](const std::vector<std::string>& more) {
    auto arguments = plain;
    arguments.insert(arguments.end(), more.begin(), more.end());
    return made(arguments);
  };
  const Bytes whole = made(plain);
  const std::size_t first_pages = Support::find_pages(whole).at(5).offset;

  EXPECT_EQ(with({"--drop-page", "5"}), Support::drop_page(whole, 5));
  EXPECT_EQ(with({"--repeat-page", "5"}), Support::repeat_page(whole, 5));
  EXPECT_EQ(with({"--swap-pages", "5"}), Support::swap_pages(whole, 5, 6));
  EXPECT_EQ(with({"--flip-bit", "9999"}), Support::flip_bit(whole, 9999));
  EXPECT_EQ(with({"--cut", "1234"}), Support::cut_end(whole, 1234));
  const Bytes dirty = with({"--garbage", std::to_string(first_pages) + ":100"});
  EXPECT_EQ(Support::remove_bytes(dirty, first_pages, 100), whole);
  EXPECT_NE(Support::remove_bytes(dirty, first_pages + 1, 100), whole);
}

TEST(TrakgenDamage, a_page_swapped_at_the_end_is_still_written) {
  const std::size_t last = pages_of(made({"--seconds", "1"})).images.size() - 1;
  EXPECT_EQ(made({"--seconds", "1", "--swap-pages", std::to_string(last)}),
            made({"--seconds", "1"}));
}

TEST(Trakgen, a_file_that_cannot_be_written_is_an_error) {
  Options options;
  options.out = "/nonexistent-folder/drive.xcom";
  EXPECT_THROW(generate(options), std::runtime_error);
}

}  // namespace
}  // namespace Trel::Trakgen
