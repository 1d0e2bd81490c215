// The first pass of a codec, and what a rewind makes of it.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "nav/Nav_Feed.h"

namespace Trel::Nav {
namespace {

using Support::kInvalid24;
using Support::kNoTime;

constexpr Lib::Flags kApprox(Lib::Flags::Approx);

// With a mounting of 0.0001, 0.0002 and -0.0001 rad, and an offset to UTC of 18 s.
Packet with_mounting(Packet packet, unsigned char age = 0, unsigned char utc = 37) {
  return packet.channel(16, {1, 0, 2, 0, 0xFF, 0xFF, age, utc});
}
Packet full(unsigned short time) {
  return locked(time).position(0.5, -0.25, 100.0F).velocity(1, 2, 3).attitude(-1.0, 0.1, 0.2);
}

TEST(NavPrescan, leaves_all_values_invalid) {
  TestCodec codec(true);
  codec.take({with_minutes(full(10)), with_mounting(full(20)), full(30), packet_of(22, 40),
              packet_of(10, 50), packet_of(11, 60), packet_of(0, 70)});
  std::vector<std::string> arrived;
#define VALUE(name, ...) \
  if (codec.CData().Var##name().ok()) arrived.emplace_back(#name);
#include "nav/Nav_ComData.def"
  EXPECT_EQ(arrived, std::vector<std::string>{"RxVersionId"});
}

TEST(NavPrescan, notes_the_status_and_kind_of_each_packet) {
  TestCodec codec(true);
  codec.take(packet_of(3, 10));
  EXPECT_EQ(codec.get_prescan().status, Enum::NAVIGATION_STATUS_LOCKING);
  EXPECT_EQ(codec.get_prescan().packet_type, Enum::NAV_OUTPUT_PACKET_TYPE_REGULAR);
  codec.take(packet_of(200, 10));
  EXPECT_EQ(codec.get_prescan().status, Enum::NAVIGATION_STATUS_UNKNOWN);
  EXPECT_EQ(codec.get_prescan().packet_type, Enum::NAV_OUTPUT_PACKET_TYPE_EMPTY);
  codec.take(packet_of(11, 10));
  EXPECT_EQ(codec.get_prescan().packet_type, Enum::NAV_OUTPUT_PACKET_TYPE_EXTRA);
}

TEST(NavPrescan, keeps_the_first_time_and_the_clock_at_it) {
  TestCodec codec(true);
  codec.take({locked(970), with_minutes(locked(980)), locked(990), locked(1000)});
  const Prescan& prescan = codec.get_prescan();
  EXPECT_EQ(prescan.offsets.get_first2gps(), at_ms(990));
  EXPECT_EQ(prescan.offsets.get_start2gps(), at_ms(970));
  EXPECT_EQ(prescan.offsets.get_origin2gps(), kStart);
  EXPECT_EQ(prescan.offsets.get_init2gps(), at_ms(990 - 30));
  EXPECT_TRUE(prescan.start_known);
  EXPECT_EQ(prescan.start_nano, at_ms(970));
  EXPECT_EQ(prescan.minutes, kMinute);
  EXPECT_EQ(prescan.milliseconds, 990);
  EXPECT_TRUE(codec.get_nano_off().inv_first2gps());
  EXPECT_EQ(prescan.state, Prescan::kPrescanning);
}

TEST(NavPrescan, keeps_the_first_sample_that_is_whole) {
  TestCodec codec(true);
  codec.take({packet_of(1, 10).position(0.9, 0.9, 1.0F).velocity(9, 9, 9).attitude(1, 1, 1),
              full(20)
                  .position(std::nan(""), 0.9, 1.0F)
                  .raw_velocity(kInvalid24, 1, 1)
                  .raw_attitude(1, 1, kInvalid24),
              full(30), locked(40).position(0.1, 0.1, 0.1F).velocity(7, 7, 7)});
  const Prescan& prescan = codec.get_prescan();
  EXPECT_DOUBLE_EQ(prescan.position.value[0], 0.5 * kDegrees);
  EXPECT_DOUBLE_EQ(prescan.position.value[1], -0.25 * kDegrees);
  EXPECT_DOUBLE_EQ(prescan.position.value[2], 100.0);
  EXPECT_DOUBLE_EQ(prescan.velocity.value[0], 1.0);
  EXPECT_DOUBLE_EQ(prescan.velocity.value[2], 3.0);
  EXPECT_NEAR(prescan.attitude.value[0], 360.0 - kDegrees, 1e-9);
  EXPECT_NEAR(prescan.attitude.value[2], 0.2 * kDegrees, 1e-9);
}

TEST(NavPrescan, position_velocity_and_attitude_are_kept_each_on_its_own) {
  TestCodec codec(true);
  codec.take(full(10).raw_velocity(1, kInvalid24, 1));
  const Prescan& prescan = codec.get_prescan();
  EXPECT_TRUE(prescan.position.known && prescan.attitude.known);
  EXPECT_FALSE(prescan.velocity.known);
}

TEST(NavPrescan, takes_minutes_from_status_2_up_only) {
  TestCodec codec(true);
  codec.take({with_minutes(packet_of(1, 10)), locked(20)});
  EXPECT_TRUE(codec.get_prescan().offsets.inv_first2gps());
  codec.take({with_minutes(packet_of(2, 30)), locked(40)});
  EXPECT_EQ(codec.get_prescan().offsets.get_first2gps(), at_ms(40));
}

TEST(NavPrescan, status_only_and_trigger_packets_teach_it_nothing) {
  TestCodec codec(true);
  codec.take({with_minutes(packet_of(10, 10)), with_mounting(packet_of(22, 10)), locked(20)});
  EXPECT_TRUE(codec.get_prescan().offsets.inv_first2gps());
  EXPECT_FALSE(codec.get_prescan().utc_known);
  EXPECT_EQ(codec.get_prescan().get_counter(), 1U);
}

TEST(NavPrescan, takes_mounting_and_utc_offset_once_from_any_regular_packet) {
  TestCodec codec(true);
  codec.take({with_mounting(packet_of(1, 10), 1, 36)});
  EXPECT_FALSE(codec.get_prescan().utc_known || codec.get_prescan().mounting.known);
  codec.take({with_mounting(packet_of(1, 10), 1, 37), with_mounting(packet_of(1, 10), 0, 41)});
  EXPECT_EQ(codec.get_prescan().utc_offset, 18);
  EXPECT_TRUE(codec.get_prescan().mounting.known);
  EXPECT_DOUBLE_EQ(codec.get_prescan().mounting.value[1], 0.0002 * kDegrees);
  EXPECT_DOUBLE_EQ(codec.get_prescan().mounting.value[2], -0.0001 * kDegrees);
}

TEST(NavPrescan, ends_with_the_packet_that_completes_it) {
  TestCodec codec(true);
  codec.prescan_.setFeatureCode(1, {.known = true});
  codec.prescan_.setFeatureCode(27, {.known = true});
  EXPECT_EQ(codec.take(with_minutes(full(10))), 1);
  EXPECT_EQ(codec.take(full(20)), 1);
  EXPECT_EQ(codec.take(with_mounting(full(30))), 2);
  EXPECT_EQ(codec.get_prescan().state, Prescan::kPredicting);
  EXPECT_FALSE(codec.get_prescan().active);
}

TEST(NavPrescan, runs_to_the_end_of_a_stream_that_tells_no_features) {
  TestCodec codec(true);
  codec.take({with_minutes(full(10)), full(20), with_mounting(full(30))});
  for (unsigned short time = 40; time < 5000; time += 10) EXPECT_EQ(codec.take(full(time)), 1);
}

// ---- Rewind

TEST(NavRewind, stands_at_the_first_packet_with_what_was_learned) {
  TestCodec codec(true);
  codec.take({locked(970), with_minutes(full(980)), with_mounting(full(990)), full(1000)});
  codec.PrescanRewind(true);
  const ComData& data = codec.CData();
  EXPECT_EQ(data.GetNano(), at_ms(970));
  EXPECT_DOUBLE_EQ(data.GetTime(), static_cast<double>(at_ms(970)) / 1e9);
  EXPECT_EQ(data.GetNanoFromStart(), 0);
  EXPECT_EQ(data.GetNanoFromFirst(), -20 * kMilli);
  EXPECT_EQ(data.GetTimeUtcOffset(), 18);
  EXPECT_EQ(data.VarTimeUtcOffset().get_flags(), Lib::Flags(0));
  EXPECT_EQ(data.VarTimeUtcOffset().get_nano(), at_ms(970));
}

TEST(NavRewind, flags_the_samples_as_approximate) {
  TestCodec codec(true);
  codec.take({with_minutes(full(10)), with_mounting(full(20)), full(30)});
  codec.prescan_.position.value = {1, 2, 3};
  codec.prescan_.velocity.value = {4, 5, 6};
  codec.prescan_.attitude.value = {7, 8, 9};
  codec.prescan_.mounting.value = {10, 11, 12};
  codec.PrescanRewind(true);
  const ComData& data = codec.CData();
  const std::pair<const Lib::VariableExt<double>&, double> seeds[] = {
      {data.VarLat(), 1},
      {data.VarLon(), 2},
      {data.VarAlt(), 3},
      {data.VarVn(), 4},
      {data.VarVe(), 5},
      {data.VarVd(), 6},
      {data.VarVu(), -6},
      {data.VarHeading(), 7},
      {data.VarPitch(), 8},
      {data.VarRoll(), 9},
      {data.VarImu2VehHeading(), 10},
      {data.VarImu2VehPitch(), 11},
      {data.VarImu2VehRoll(), 12},
  };
  for (const auto& [variable, value] : seeds) {
    EXPECT_EQ(variable.get(), value);
    EXPECT_EQ(variable.get_flags(), kApprox) << value;
    EXPECT_EQ(variable.get_nano(), at_ms(10)) << value;
  }
}

TEST(NavRewind, without_apply_leaves_all_values_invalid_and_predicts_all_the_same) {
  TestCodec codec(true);
  codec.take({with_minutes(full(980)), with_mounting(full(990)), full(1000)});
  codec.PrescanRewind(false);
  EXPECT_FALSE(codec.CData().IsNanoValid() || codec.CData().VarLat().ok() ||
               codec.CData().IsTimeUtcOffsetValid());
  EXPECT_EQ(codec.get_prescan().state, Prescan::kPredicting);
  codec.take(full(980));
  EXPECT_EQ(codec.CData().GetNano(), at_ms(980));
}

TEST(NavRewind, seeds_samples_even_if_no_time_was_found) {
  TestCodec codec(true);
  codec.take({with_mounting(full(10)), full(20)});
  codec.PrescanRewind(true);
  EXPECT_FALSE(codec.CData().IsNanoValid());
  EXPECT_EQ(codec.CData().VarLat().get_flags(),
            Lib::Flags(Lib::Flags::Approx | Lib::Flags::Timeless));
  EXPECT_TRUE(codec.get_nano_off().inv_first2gps());
}

TEST(NavRewind, the_first_packet_ends_its_samples_but_the_mounting) {
  TestCodec codec(true);
  codec.take({with_minutes(full(10)), with_mounting(full(20)), full(30)});
  codec.PrescanRewind(true);
  const ComData& data = codec.CData();
  const std::vector<const Lib::StampExt*> samples = {&data.VarLat(),
                                                     &data.VarLon(),
                                                     &data.VarAlt(),
                                                     &data.VarVn(),
                                                     &data.VarVe(),
                                                     &data.VarVd(),
                                                     &data.VarVu(),
                                                     &data.VarHeading(),
                                                     &data.VarPitch(),
                                                     &data.VarRoll(),
                                                     &data.VarTimeWeekCount(),
                                                     &data.VarTimeWeekSecond()};
  for (const Lib::StampExt* sample : samples) EXPECT_TRUE(sample->ok());
  codec.take(packet_of(0, 10));
  for (const Lib::StampExt* sample : samples) EXPECT_FALSE(sample->ok());
  EXPECT_TRUE(data.VarImu2VehHeading().ok());
}

TEST(NavRewind, brings_back_the_features_that_were_learned) {
  TestCodec codec(true);
  const auto feature = [](unsigned int issue) {
    return FeatureRecord{.known = true, .issue = issue, .status = Enum::FEATURE_STATUS_VALUE_01};
  };
  codec.prescan_.setFeatureCode(1, feature(20200101));
  codec.PrescanRewind(true);
  EXPECT_FALSE(codec.CData().GetFeatureCode(1).known);  // not before all are known
  codec.prescan_.setFeatureCode(27, feature(20210101));
  codec.PrescanRewind(true);
  EXPECT_EQ(codec.CData().GetFeatureCode(1).issue, 20200101U);
  EXPECT_EQ(codec.CData().GetFeatureCode(27).issue, 20210101U);
  EXPECT_FALSE(codec.CData().GetFeatureCode(2).known);
}

TEST(NavRewind, forgets_the_counts_the_clock_and_what_filters_hold) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(100)), locked(110), locked(120)});
  ASSERT_TRUE(codec.CData().IsYxValid());
  codec.PrescanRewind(true);
  EXPECT_EQ(codec.get_bytes(), 0U);
  EXPECT_EQ(codec.get_packets(), 0U);
  EXPECT_EQ(codec.CData().GetRxVersionId(), 22U);
  codec.take(locked(130));
  EXPECT_FALSE(codec.CData().IsNanoValid());
  codec.take({with_minutes(locked(140)), locked(150)});
  EXPECT_FALSE(codec.CData().IsYxValid());
}

TEST(NavRewind, begins_the_distance_and_the_rate_anew) {
  const auto drive = [](TestCodec& codec, int packets, int speed) {
    codec.take(with_minutes(locked(0)));
    for (int packet = 1; packet <= packets; ++packet) {
      codec.take(
          locked(static_cast<unsigned short>(10 * packet)).raw_velocity(speed * 10'000, 0, 0));
    }
  };
  TestCodec codec(false);
  drive(codec, 50, 10);
  EXPECT_NEAR(codec.CData().GetDist2d(), 4.9, 1e-4);
  codec.PrescanRewind(true);
  drive(codec, 100, 20);
  EXPECT_NEAR(codec.CData().GetDist2d(), 19.8, 1e-4);
  EXPECT_FALSE(codec.CData().IsOutputRegularRateValid());  // that takes 101 packets
}

TEST(NavRewind, ends_a_prescan_that_the_end_of_the_file_cut_short) {
  TestCodec codec(true);
  codec.take({with_minutes(full(980)), full(990)});
  codec.PrescanRewind(true);
  EXPECT_FALSE(codec.get_prescan().active);
  codec.take(full(980));
  EXPECT_TRUE(codec.CData().IsLatValid());
}

TEST(NavRewind, an_invalidation_forgets_the_prescan_too) {
  TestCodec codec(true);
  codec.take({with_minutes(full(980)), full(990)});
  codec.Invalidate(false);
  EXPECT_EQ(codec.get_prescan().state, Prescan::kUndecided);
  EXPECT_TRUE(codec.get_prescan().offsets.inv_first2gps());
  codec.take(full(1000));
  EXPECT_FALSE(codec.CData().IsNanoValid());
}

}  // namespace
}  // namespace Trel::Nav
