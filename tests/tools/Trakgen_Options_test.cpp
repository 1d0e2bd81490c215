#include "trakgen/Trakgen_Options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Trel::Trakgen {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Options accepted(const std::vector<std::string>& arguments) {
  Options options;
  EXPECT_EQ(parse(arguments, options), std::nullopt);
  return options;
}

std::string refusal(const std::vector<std::string>& arguments) {
  Options options;
  return parse(arguments, options).value_or("accepted");
}

TEST(TrakgenOptions, without_arguments_it_is_a_drive_of_three_minutes) {
  const Options options = accepted({});
  EXPECT_EQ(options.out, "drive.xcom");
  EXPECT_EQ(options.seconds, 180U);
  EXPECT_EQ(options.rate, 100U);
  EXPECT_EQ(options.can_rate, 100U);
  EXPECT_EQ(options.ncom_rate, 100U);
  EXPECT_EQ(options.mcom_rate, std::nullopt);
  EXPECT_EQ(options.streams, 1U);
  EXPECT_EQ(options.shape, Shape::drive);
}

TEST(TrakgenOptions, each_option_sets_its_field) {
  const Options options = accepted({"--out",
                                    "a.xcom",
                                    "--seconds",
                                    "5",
                                    "--rate",
                                    "10",
                                    "--can-rate",
                                    "20",
                                    "--ncom-rate",
                                    "25",
                                    "--streams",
                                    "3",
                                    "--shape",
                                    "wide",
                                    "--signals-per-message",
                                    "50",
                                    "--packets-per-page",
                                    "7",
                                    "--page-bytes",
                                    "0",
                                    "--seed",
                                    "9"});
  EXPECT_EQ(options.out, "a.xcom");
  EXPECT_EQ(options.seconds, 5U);
  EXPECT_EQ(options.rate, 10U);
  EXPECT_EQ(options.can_rate, 20U);
  EXPECT_EQ(options.ncom_rate, 25U);
  EXPECT_EQ(options.streams, 3U);
  EXPECT_EQ(options.shape, Shape::wide);
  EXPECT_EQ(options.signals_per_message, 50U);
  EXPECT_EQ(options.packets_per_page, 7U);
  EXPECT_EQ(options.page_bytes, 0U);
  EXPECT_EQ(options.seed, 9U);
}

TEST(TrakgenOptions, damage_adds_up) {
  const Damage damage =
      accepted({"--drop-page", "1", "--drop-page", "2", "--repeat-page", "3", "--swap-pages", "4",
                "--flip-bit", "5", "--garbage", "6:7", "--cut", "8"})
          .damage;
  EXPECT_THAT(damage.drop_pages, ElementsAre(1, 2));
  EXPECT_THAT(damage.repeat_pages, ElementsAre(3));
  EXPECT_THAT(damage.swap_pages, ElementsAre(4));
  EXPECT_THAT(damage.flip_bits, ElementsAre(5));
  EXPECT_THAT(damage.garbage, ElementsAre(std::pair<std::uint64_t, std::uint64_t>(6, 7)));
  EXPECT_EQ(damage.cut_bytes, 8U);
}

TEST(TrakgenOptions, what_is_wrong_is_said) {
  EXPECT_EQ(refusal({"--sconds", "5"}), "unknown option '--sconds'");
  EXPECT_EQ(refusal({"--seconds"}), "--seconds needs N");
  EXPECT_EQ(refusal({"--garbage"}), "--garbage needs OFFSET:LENGTH");
  for (const std::string value : {"", "five", "5s", "-5", "99999999999999999999"}) {
    EXPECT_EQ(refusal({"--seconds", value}), "--seconds: bad value '" + value + "'");
  }
  EXPECT_EQ(refusal({"--rate", "0"}), "--rate: bad value '0'");
  EXPECT_EQ(refusal({"--shape", "round"}), "--shape: bad value 'round'");
  EXPECT_EQ(refusal({"--garbage", "5"}), "--garbage: bad value '5'");
  EXPECT_EQ(refusal({"--signals-per-message", "3"}), "--signals-per-message: bad value '3'");
}

TEST(TrakgenOptions, frames_come_ten_times_a_second_or_never) {
  EXPECT_EQ(accepted({"--can-rate", "0"}).can_rate, 0U);
  EXPECT_EQ(accepted({"--can-rate", "10"}).can_rate, 10U);
  EXPECT_EQ(accepted({"--can-rate", "1000"}).can_rate, 1000U);
  for (const std::string value : {"1", "9", "1001", "x"}) {
    EXPECT_EQ(refusal({"--can-rate", value}), "--can-rate: bad value '" + value + "'");
  }
}

TEST(TrakgenOptions, navigation_packets_come_on_whole_milliseconds_or_never) {
  for (const std::string value : {"0", "1", "8", "25", "1000"}) {
    EXPECT_EQ(accepted({"--ncom-rate", value}).ncom_rate, std::stoull(value));
    EXPECT_EQ(accepted({"--mcom-rate", value}).mcom_rate, std::stoull(value));
  }
  for (const std::string value : {"3", "30", "2000", "x"}) {
    EXPECT_EQ(refusal({"--ncom-rate", value}), "--ncom-rate: bad value '" + value + "'");
    EXPECT_EQ(refusal({"--mcom-rate", value}), "--mcom-rate: bad value '" + value + "'");
  }
}

TEST(TrakgenOptions, a_range_measurement_has_one_to_four_targets) {
  EXPECT_EQ(accepted({"--shape", "range"}).shape, Shape::range);
  EXPECT_EQ(accepted({"--shape", "range"}).targets, 2U);
  EXPECT_EQ(accepted({"--targets", "1"}).targets, 1U);
  EXPECT_EQ(accepted({"--targets", "4"}).targets, 4U);
  for (const std::string value : {"0", "5", "x"}) {
    EXPECT_EQ(refusal({"--targets", value}), "--targets: bad value '" + value + "'");
  }
}

TEST(TrakgenOptions, range_data_comes_in_whole_hundredths_of_a_second) {
  EXPECT_EQ(accepted({}).range_rate, 100U);
  for (const std::string value : {"10", "20", "25", "50", "100"}) {
    EXPECT_EQ(accepted({"--range-rate", value}).range_rate, std::stoull(value));
  }
  for (const std::string value : {"0", "5", "30", "200", "x"}) {
    EXPECT_EQ(refusal({"--range-rate", value}), "--range-rate: bad value '" + value + "'");
  }
}

TEST(TrakgenOptions, the_extension_makes_a_raw_file) {
  EXPECT_TRUE(is_raw_file(accepted({"--out", "a/b.ncom"})));
  EXPECT_FALSE(is_mcom_file(accepted({"--out", "a/b.ncom"})));
  EXPECT_TRUE(is_raw_file(accepted({"--out", "a/b.mcom"})));
  EXPECT_TRUE(is_mcom_file(accepted({"--out", "a/b.mcom"})));
  EXPECT_TRUE(is_raw_file(accepted({"--out", "a/b.rcom"})));
  EXPECT_TRUE(is_rcom_file(accepted({"--out", "a/b.rcom"})));
  EXPECT_FALSE(is_mcom_file(accepted({"--out", "a/b.rcom"})));
  EXPECT_FALSE(is_rcom_file(accepted({"--out", "a/b.ncom"})));
  EXPECT_FALSE(is_raw_file(accepted({"--out", "a/b.xcom"})));
  EXPECT_FALSE(is_raw_file(accepted({"--out", "ncom"})));
}

TEST(TrakgenOptions, help_names_every_option) {
  EXPECT_TRUE(accepted({"--help"}).help);
  for (const char* name : {"--out FILE",
                           "--seconds N",
                           "--rate N",
                           "--can-rate N",
                           "--ncom-rate N",
                           "--mcom-rate N",
                           "--streams N",
                           "--shape NAME",
                           "--targets N",
                           "--range-rate N",
                           "--signals-per-message N",
                           "--packets-per-page N",
                           "--page-bytes N",
                           "--seed N",
                           "--drop-page N",
                           "--repeat-page N",
                           "--swap-pages N",
                           "--flip-bit OFFSET",
                           "--garbage OFFSET:LENGTH",
                           "--cut BYTES"}) {
    EXPECT_THAT(help(), HasSubstr(name));
  }
}

}  // namespace
}  // namespace Trel::Trakgen
