#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

#include "nav/Nav_Feed.h"

namespace Trel::Nav {
namespace {

using Support::kInvalid24;
using Support::kNoTime;

constexpr unsigned char kApproxBit = Lib::Flags::Approx;

// ---- Fields

TEST(NavFields, accelerations_are_in_tenths_of_a_millimetre_per_second_squared) {
  TestCodec codec(false);
  codec.take(locked(10).raw_acceleration(98'100, -1, 8'388'607));
  EXPECT_DOUBLE_EQ(codec.CData().GetAx(), 9.81);
  EXPECT_DOUBLE_EQ(codec.CData().GetAy(), -0.0001);
  EXPECT_DOUBLE_EQ(codec.CData().GetAz(), 838.8607);
}

TEST(NavFields, angular_rates_are_held_in_degrees_per_second) {
  TestCodec codec(false);
  codec.take(locked(10).raw_angular_rate(100'000, -100'000, -8'388'607));
  EXPECT_DOUBLE_EQ(codec.CData().GetWx(), kDegrees);
  EXPECT_DOUBLE_EQ(codec.CData().GetWy(), -kDegrees);
  EXPECT_DOUBLE_EQ(codec.CData().GetWz(), -83.88607 * kDegrees);
}

TEST(NavFields, a_position_is_held_in_degrees_and_metres) {
  TestCodec codec(false);
  codec.take(locked(10).position(std::acos(-1.0) / 4, -std::acos(-1.0) / 2, 123.5F));
  EXPECT_DOUBLE_EQ(codec.CData().GetLat(), 45.0);
  EXPECT_DOUBLE_EQ(codec.CData().GetLon(), -90.0);
  EXPECT_DOUBLE_EQ(codec.CData().GetAlt(), 123.5);
}

TEST(NavFields, a_velocity_has_its_down_and_its_up) {
  TestCodec codec(false);
  codec.take(locked(10).raw_velocity(10'000, -20'000, 8'388'607));
  EXPECT_DOUBLE_EQ(codec.CData().GetVn(), 1.0);
  EXPECT_DOUBLE_EQ(codec.CData().GetVe(), -2.0);
  EXPECT_DOUBLE_EQ(codec.CData().GetVd(), 838.8607);
  EXPECT_DOUBLE_EQ(codec.CData().GetVu(), -838.8607);
}

TEST(NavFields, a_negative_heading_turns_once_round) {
  TestCodec codec(false);
  codec.take(locked(10).attitude(-1.0, -0.5, 0.25));
  EXPECT_NEAR(codec.CData().GetHeading(), 360.0 - kDegrees, 1e-9);
  EXPECT_NEAR(codec.CData().GetPitch(), -0.5 * kDegrees, 1e-9);
  EXPECT_NEAR(codec.CData().GetRoll(), 0.25 * kDegrees, 1e-9);
  codec.take(locked(20).attitude(0.0, 0.0, 0.0));
  EXPECT_EQ(codec.CData().GetHeading(), 0.0);
}

TEST(NavFields, each_field_with_its_invalid_pattern_is_invalid_alone) {
  TestCodec codec(false);
  codec.take(locked(10)
                 .raw_acceleration(1, kInvalid24, 1)
                 .raw_angular_rate(kInvalid24, 1, 1)
                 .raw_velocity(1, kInvalid24, 1)
                 .raw_attitude(1, 1, kInvalid24));
  const ComData& data = codec.CData();
  EXPECT_TRUE(data.IsAxValid() && !data.IsAyValid() && data.IsAzValid());
  EXPECT_TRUE(!data.IsWxValid() && data.IsWyValid() && data.IsWzValid());
  EXPECT_TRUE(data.IsVnValid() && !data.IsVeValid() && data.IsVdValid() && data.IsVuValid());
  EXPECT_TRUE(data.IsHeadingValid() && data.IsPitchValid() && !data.IsRollValid());
  codec.take(locked(20).raw_velocity(1, 1, kInvalid24));
  EXPECT_FALSE(data.IsVdValid() || data.IsVuValid());
}

TEST(NavFields, the_numbers_next_to_the_invalid_pattern_are_values) {
  TestCodec codec(false);
  codec.take(locked(10).raw_velocity(Support::kUnder24, Support::kOver24, 0));
  EXPECT_DOUBLE_EQ(codec.CData().GetVn(), -838.8607);
  EXPECT_DOUBLE_EQ(codec.CData().GetVe(), 838.8607);
}

TEST(NavFields, a_position_that_is_not_finite_is_invalid_value_by_value) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  TestCodec codec(false);
  codec.take(locked(10).position(kNan, 0.5, 1.0F));
  EXPECT_TRUE(!codec.CData().IsLatValid() && codec.CData().IsLonValid() &&
              codec.CData().IsAltValid());
  codec.take(locked(20).position(0.5, -kInfinity, std::numeric_limits<float>::infinity()));
  EXPECT_TRUE(codec.CData().IsLatValid() && !codec.CData().IsLonValid() &&
              !codec.CData().IsAltValid());
  // Finite as it is sent, but not in degrees.
  codec.take(locked(30).position(std::numeric_limits<double>::max(), 0.5, 1.0F));
  EXPECT_FALSE(codec.CData().IsLatValid());
}

TEST(NavFields, status_1_reads_the_sensors_and_no_solution) {
  TestCodec codec(false);
  codec.take(packet_of(1, 10).raw_acceleration(1, 1, 1).raw_angular_rate(1, 1, 1));
  const ComData& data = codec.CData();
  EXPECT_TRUE(data.IsAxValid() && data.IsWzValid());
  EXPECT_FALSE(data.IsLatValid() || data.IsVnValid() || data.IsHeadingValid());
}

TEST(NavFields, in_status_2_the_solution_is_approximate) {
  TestCodec codec(false);
  codec.take(packet_of(2, 10).position(std::nan(""), 0.5, 1.0F).raw_velocity(1, 1, kInvalid24));
  const ComData& data = codec.CData();
  EXPECT_EQ(data.VarLon().get_flags().byte() & kApproxBit, kApproxBit);
  EXPECT_EQ(data.VarAlt().get_flags().byte() & kApproxBit, kApproxBit);
  EXPECT_EQ(data.VarLat().get_flags().byte() & kApproxBit, 0);  // only what is good
  for (const auto* speed : {&data.VarVn(), &data.VarVe(), &data.VarVd(), &data.VarVu()}) {
    EXPECT_EQ(speed->get_flags().byte() & kApproxBit, kApproxBit);  // all four
  }
  for (const auto* angle : {&data.VarHeading(), &data.VarPitch(), &data.VarRoll()}) {
    EXPECT_EQ(angle->get_flags().byte() & kApproxBit, kApproxBit);
  }
  EXPECT_EQ(data.VarAx().get_flags().byte() & kApproxBit, 0);

  codec.take(packet_of(3, 20));
  EXPECT_TRUE(data.IsLatValid() && data.IsVnValid() && data.IsHeadingValid());
}

TEST(NavFields, no_value_of_the_solution_outlives_its_packet) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(10)), locked(20), locked(30)});
  const ComData& data = codec.CData();
  ASSERT_TRUE(data.IsYxValid() && data.IsTimeWeekCountValid());
  codec.take(packet_of(0, 40));
  EXPECT_FALSE(data.IsNanoValid() || data.IsTimeValid());
  EXPECT_FALSE(data.IsAxValid() || data.IsAyValid() || data.IsAzValid());
  EXPECT_FALSE(data.IsWxValid() || data.IsWyValid() || data.IsWzValid());
  EXPECT_FALSE(data.IsYxValid() || data.IsYyValid() || data.IsYzValid());
  EXPECT_FALSE(data.IsLatValid() || data.IsLonValid() || data.IsAltValid());
  EXPECT_FALSE(data.IsVnValid() || data.IsVeValid() || data.IsVdValid() || data.IsVuValid());
  EXPECT_FALSE(data.IsHeadingValid() || data.IsPitchValid() || data.IsRollValid());
  EXPECT_FALSE(data.IsTimeWeekCountValid() || data.IsTimeWeekSecondValid());
  EXPECT_FALSE(data.IsAfValid() || data.IsIsoYawValid());  // of the rotated and the ISO outputs
  EXPECT_TRUE(data.IsSpeed2dValid() && data.IsDist2dValid());
}

TEST(NavFields, a_key_that_is_off_leaves_its_group_undecoded) {
  using Let = void (ComKey::KeyMain::*)();
  const auto with = [](Let let) {
    auto codec = std::make_unique<TestCodec>(false);
    codec->want_only([let](ComKey::KeyMain& key) { (key.*let)(); });
    codec->take({with_minutes(locked(10)), locked(20), locked(30)});
    return codec;
  };
  const auto groups = [](const ComData& data) {
    return std::array{data.IsAxValid(),      data.IsWxValid(), data.IsLatValid(), data.IsVnValid(),
                      data.IsHeadingValid(), data.IsJxValid(), data.IsYxValid()};
  };
  using Groups = std::array<bool, 7>;
  EXPECT_EQ(groups(with(&ComKey::KeyMain::Let_Time)->CData()), (Groups{}));
  EXPECT_EQ(groups(with(&ComKey::KeyMain::Let_Acc)->CData()), (Groups{true}));
  EXPECT_EQ(groups(with(&ComKey::KeyMain::Let_AngVel)->CData()), (Groups{false, true}));
  EXPECT_EQ(groups(with(&ComKey::KeyMain::Let_Pos)->CData()), (Groups{false, false, true}));
  EXPECT_EQ(groups(with(&ComKey::KeyMain::Let_Vel)->CData()), (Groups{false, false, false, true}));
  EXPECT_EQ(groups(with(&ComKey::KeyMain::Let_AngPos)->CData()),
            (Groups{false, false, false, false, true}));
  EXPECT_EQ(groups(with(&ComKey::KeyMain::Let_Jerk)->CData()),
            (Groups{true, false, false, false, false, kComputesJerk}));
  EXPECT_EQ(groups(with(&ComKey::KeyMain::Let_AngAcc)->CData()),
            (Groups{false, true, false, false, false, false, true}));
}

// ---- Kinds of packets

struct StatusCase {
  unsigned char status;
  Enum::NAV_OUTPUT_PACKET_TYPE type;
  Enum::NAVIGATION_STATUS mode;
  bool forgets;  // what the packet before it had
};

TEST(NavStatus, decides_what_a_packet_is) {
  using namespace Enum;
  constexpr auto kEmpty = NAV_OUTPUT_PACKET_TYPE_EMPTY;
  constexpr auto kRegular = NAV_OUTPUT_PACKET_TYPE_REGULAR;
  constexpr auto kStatus = NAV_OUTPUT_PACKET_TYPE_STATUS;
  const auto mode = [](int number) { return static_cast<NAVIGATION_STATUS>(number); };
  const StatusCase cases[] = {
      {0, kEmpty, mode(0), true},    {1, kRegular, mode(1), true},  {2, kRegular, mode(2), true},
      {3, kRegular, mode(3), true},  {4, kRegular, mode(4), true},  {5, kEmpty, mode(5), false},
      {6, kStatus, mode(6), true},   {7, kStatus, mode(7), true},   {8, kEmpty, mode(8), false},
      {9, kEmpty, mode(9), false},   {10, kStatus, mode(10), true}, {11, kStatus, mode(11), false},
      {12, kEmpty, mode(12), false}, {13, kEmpty, mode(13), false}, {19, kEmpty, mode(19), false},
      {20, kEmpty, mode(20), true},  {21, kEmpty, mode(21), true},  {22, kEmpty, mode(22), true},
      {23, kEmpty, mode(23), false}, {24, kEmpty, mode(23), false}, {255, kEmpty, mode(23), false},
  };
  for (const StatusCase& each : cases) {
    TestCodec codec(false);
    codec.take({with_minutes(locked(10)), locked(20).raw_acceleration(7, 7, 7)});
    codec.take(packet_of(each.status, 30).raw_acceleration(kInvalid24, kInvalid24, kInvalid24));
    EXPECT_EQ(codec.CData().GetOutputPacketType(), each.type) << +each.status;
    EXPECT_EQ(codec.CData().GetInsNavMode(), each.mode) << +each.status;
    EXPECT_EQ(codec.CData().IsAxValid(), !each.forgets) << +each.status;
  }
}

TEST(NavStatus, a_packet_of_status_5_changes_its_kind_and_status_alone) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(10)), locked(20)});
  codec.take(packet_of(5, 30).raw_velocity(5, 5, 5));
  const ComData& data = codec.CData();
  EXPECT_EQ(data.GetNano(), at_ms(20));
  EXPECT_EQ(data.GetVn(), 0.0);
  EXPECT_EQ(data.VarOutputPacketType().get_nano(), at_ms(20));
}

TEST(NavStatus, a_status_only_packet_decodes_its_channel) {
  for (const unsigned char status : {6, 7, 10}) {
    TestCodec codec(false);
    codec.take(packet_of(status, 10).channel(16, {1, 0, 2, 0, 3, 0, 0, 18 * 2 + 1}));
    EXPECT_EQ(codec.CData().GetTimeUtcOffset(), 18);
  }
}

TEST(NavStatus, an_extra_packet_decodes_no_channel) {
  for (const unsigned char kind : {2, 3, 4}) {
    TestCodec codec(false);
    codec.take(packet_of(11, 10).extra(kind).channel(16, {1, 0, 2, 0, 3, 0, 0, 18 * 2 + 1}));
    EXPECT_FALSE(codec.CData().IsTimeUtcOffsetValid());
    EXPECT_EQ(codec.CData().GetOutputPacketType(), Enum::NAV_OUTPUT_PACKET_TYPE_STATUS);
  }
}

TEST(NavStatus, what_status_only_and_trigger_packets_tell_has_no_time) {
  const auto stamp_after = [](const Packet& packet) {
    TestCodec codec(false);
    codec.take({with_minutes(locked(100)), locked(110), packet});
    return codec.CData().VarTimeUtcOffset().get_flags();
  };
  for (const unsigned char status : {6, 7, 10, 20, 21, 22}) {
    EXPECT_EQ(stamp_after(packet_of(status, 120).channel(16, {0, 0, 0, 0, 0, 0, 0, 37})),
              Lib::Flags(Lib::Flags::Timeless));
  }
}

// ---- Trigger packets

// 250 ms and 12 us into the minute of kMinute, with an update counter.
Packet trigger(unsigned char status, unsigned char channel, unsigned char update) {
  return packet_of(status, 30000)
      .channel(channel, {byte_of(kMinute, 0), byte_of(kMinute, 1), byte_of(kMinute, 2),
                         byte_of(kMinute, 3), 250, 0, 3, update});
}
constexpr long long kTriggerNano = kStart + 250 * kMilli + 3 * 4000;

TEST(NavTrigger, a_trigger_packet_is_timed_by_its_channel) {
  const std::pair<unsigned char, Enum::NAV_OUTPUT_PACKET_TYPE> kinds[] = {
      {24, Enum::NAV_OUTPUT_PACKET_TYPE_IN1DOWN}, {43, Enum::NAV_OUTPUT_PACKET_TYPE_IN1UP},
      {65, Enum::NAV_OUTPUT_PACKET_TYPE_OUT1},    {79, Enum::NAV_OUTPUT_PACKET_TYPE_IN2DOWN},
      {80, Enum::NAV_OUTPUT_PACKET_TYPE_IN2UP},   {81, Enum::NAV_OUTPUT_PACKET_TYPE_OUT2},
  };
  for (const auto& [channel, type] : kinds) {
    TestCodec codec(false);
    codec.take(trigger(22, channel, 1));
    EXPECT_EQ(codec.CData().GetNano(), kTriggerNano);
    EXPECT_DOUBLE_EQ(codec.CData().GetTime(), static_cast<double>(kTriggerNano) / 1e9);
    EXPECT_EQ(codec.CData().GetOutputPacketType(), type);
    EXPECT_EQ(codec.CData().VarOutputPacketType().get_nano(), kTriggerNano);
  }
}

TEST(NavTrigger, a_trigger_packet_reads_as_its_plain_status) {
  for (const unsigned char status : {20, 21, 22}) {
    TestCodec codec(false);
    codec.take(trigger(status, 24, 1));
    EXPECT_EQ(codec.CData().GetInsNavMode(), status - 18);
    EXPECT_EQ(codec.CData().VarInsNavMode().get_nano(), kTriggerNano);
    EXPECT_EQ(codec.CData().IsVnValid(), status > 20);  // as status 2 it is approximate
  }
}

TEST(NavTrigger, a_trigger_packet_without_news_takes_the_time_held_or_none) {
  TestCodec codec(false);
  codec.take(trigger(22, 24, 0));  // the counter that a new codec holds
  EXPECT_FALSE(codec.CData().IsNanoValid());
  EXPECT_EQ(codec.CData().GetOutputPacketType(), Enum::NAV_OUTPUT_PACKET_TYPE_IN1DOWN);
  codec.take(trigger(22, 24, 1));
  codec.take(locked(10));
  codec.take(trigger(22, 24, 1));
  EXPECT_EQ(codec.CData().GetNano(), kTriggerNano);
}

TEST(NavTrigger, on_an_unlisted_channel_it_is_empty_and_its_channel_has_been_decoded) {
  TestCodec codec(false);
  codec.take(packet_of(22, 10).channel(16, {1, 0, 2, 0, 3, 0, 0, 18 * 2 + 1}));
  EXPECT_EQ(codec.CData().GetOutputPacketType(), Enum::NAV_OUTPUT_PACKET_TYPE_EMPTY);
  EXPECT_EQ(codec.CData().GetInsNavMode(), Enum::NAVIGATION_STATUS_TRIGLOCKED);
  EXPECT_EQ(codec.CData().GetTimeUtcOffset(), 18);
  EXPECT_FALSE(codec.CData().IsAxValid());
}

TEST(NavTrigger, its_channel_is_decoded_once) {
  TestCodec codec(false);
  codec.take(trigger(22, 24, 1));
  EXPECT_EQ(codec.CData().GetTrig1FallUpdateCount(), 1U);
}

TEST(NavTrigger, it_neither_moves_the_clock_nor_feeds_what_goes_on_from_packet_to_packet) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(100)), locked(110).raw_acceleration(0, 0, 0)});
  codec.take(trigger(22, 24, 1).raw_acceleration(500, 0, 0));
  codec.take(locked(120).raw_acceleration(100, 0, 0).raw_angular_rate(100, 0, 0));
  EXPECT_EQ(codec.CData().GetNano(), at_ms(120));
  // 0.01 m/s2 in 10 ms: fed with the trigger packet it would be another rate.
  if (kComputesJerk) {
    EXPECT_NEAR(codec.CData().GetJx(), 1.0, 1e-3);
  }
  EXPECT_NEAR(codec.CData().GetYx(), 0.1 * kDegrees, 1e-3);
}

TEST(NavTrigger, its_distance_is_told_and_not_summed) {
  TestCodec codec(false);
  const auto at_speed = [](Packet packet, int speed) {
    return packet.raw_velocity(speed * 10'000, 0, 0);
  };
  codec.take({with_minutes(locked(100)), at_speed(locked(110), 10)});
  codec.take(at_speed(trigger(22, 24, 1), 30));
  // From 110 ms to 250.012 ms at a mean of 20 m/s.
  EXPECT_NEAR(codec.CData().GetDist2d(), 2.80024, 1e-5);
  codec.take(at_speed(locked(120), 10));
  EXPECT_NEAR(codec.CData().GetDist2d(), 0.1, 1e-5);
}

TEST(NavTrigger, it_feeds_no_filter) {
  TestCodec codec(false);
  codec.data_.FixLinAccFilt(0, 0);  // switched off, the filters hand on what they get
  codec.take({with_minutes(locked(100)), locked(110)});
  codec.take(trigger(22, 24, 1).raw_acceleration(500, 0, 0));
  EXPECT_EQ(codec.CData().VarFiltAx().get_nano(), at_ms(110));
  codec.take(locked(120).raw_acceleration(100, 0, 0));
  EXPECT_EQ(codec.CData().VarFiltAx().get_nano(), at_ms(120));
  if (!kComputesJerk) return;
  // Fed with the later time of the trigger packet, this packet would go back in time.
  EXPECT_EQ(codec.CData().VarIsoJnX().get_nano(), at_ms(120));
  EXPECT_TRUE(codec.CData().IsIsoJnXValid());
}

TEST(NavTrigger, an_edge_is_news_for_one_packet) {
  TestCodec codec(false);
  codec.take(trigger(22, 24, 1));
  EXPECT_TRUE(codec.is_updated(TriggerGroup::Trig1));
  EXPECT_FALSE(codec.is_updated(TriggerGroup::Trig2));
  codec.take(locked(10));
  EXPECT_FALSE(codec.is_updated(TriggerGroup::Trig1));
}

// ---- The order of the steps

Packet turning(Packet packet, std::int32_t rate) {
  return packet.raw_velocity(100'000, 0, 0).raw_angular_rate(0, 0, rate);
}

TEST(NavOrder, rates_of_change_come_ahead_of_the_rotated_outputs) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(100)), locked(110)});
  codec.take(locked(120).raw_acceleration(100, 0, 0).raw_angular_rate(100, 0, 0));
  if (kComputesJerk) {
    EXPECT_NEAR(codec.CData().GetJf(), 1.0, 1e-3);
  }
  EXPECT_NEAR(codec.CData().GetYf(), 0.1 * kDegrees, 1e-3);
}

TEST(NavOrder, filtered_outputs_come_between_the_rates_of_change_and_the_rotated_outputs) {
  TestCodec codec(false);
  codec.data_.FixLinAccFilt(0, 0);  // switched off, the filters hand on what they get
  codec.data_.FixAngAccFilt(0, 0);
  codec.take({with_minutes(locked(100)), locked(110)});
  codec.take(locked(120).raw_acceleration(100, 0, 0).raw_angular_rate(100, 0, 0));
  EXPECT_NEAR(codec.CData().GetFiltAf(), 0.01, 1e-9);
  EXPECT_NEAR(codec.CData().GetFiltYf(), 0.1 * kDegrees, 1e-3);
}

TEST(NavOrder, the_curvature_uses_the_turn_of_its_own_packet) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(100)), turning(locked(110), 1000), turning(locked(120), 2000)});
  // 0.02 rad/s at 10 m/s.
  EXPECT_NEAR(codec.CData().GetCurvature(), 0.002, 1e-9);
  EXPECT_EQ(codec.CData().VarCurvature().get_nano(), at_ms(120));
}

TEST(NavOrder, the_distance_uses_the_speed_of_its_own_packet) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(100)), locked(110).raw_velocity(100'000, 0, 0),
              locked(120).raw_velocity(300'000, 0, 0)});
  // From 10 to 30 m/s in 10 ms.
  EXPECT_NEAR(codec.CData().GetDist2d(), 0.2, 1e-5);
}

TEST(NavOrder, relative_times_are_those_of_their_own_packet) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(100)), locked(110), locked(120)});
  EXPECT_EQ(codec.CData().GetNanoFromStart(), 20 * kMilli);
  EXPECT_EQ(codec.CData().VarNanoFromStart().get_nano(), at_ms(120));
}

TEST(NavOrder, computed_outputs_begin_with_the_status_that_has_their_inputs) {
  const auto outputs = [](unsigned char status) {
    TestCodec codec(false);
    codec.data_.SetRefHeading(0.0);
    codec.data_.SetVnAcc(0.01);
    codec.data_.SetVeAcc(0.01);
    codec.data_.SetVdAcc(0.01);
    codec.data_.SetImu2VehHeading(0.0);
    codec.data_.SetImu2VehPitch(0.0);
    codec.data_.SetImu2VehRoll(0.0);
    codec.data_.DMeasurePt(7).SetPointXv(1.0);
    codec.data_.DMeasurePt(7).SetPointYv(0.0);
    codec.data_.DMeasurePt(7).SetPointZv(0.0);
    codec.take({with_minutes(locked(100)), turning(packet_of(status, 110), 1000)});
    const ComData& data = codec.CData();
    const auto is_new = [](const auto& value) {
      return value.good() && value.get_nano() == at_ms(110);
    };
    return std::array{is_new(data.VarAf()),
                      is_new(data.VarSpeed2d()),
                      is_new(data.VarDist2d()),
                      is_new(data.VarRefFrameYaw()),
                      is_new(data.VarAngleGradient()),
                      is_new(data.DMeasurePt(7).VarTrack()),
                      is_new(data.VarIsoYaw())};
  };
  using Outputs = std::array<bool, 7>;
  EXPECT_EQ(outputs(1), Outputs{});
  EXPECT_EQ(outputs(2), Outputs{});  // its attitude and velocity are approximate
  EXPECT_EQ(outputs(3), (Outputs{true, true, true, true, true, true, true}));
  EXPECT_EQ(outputs(4), (Outputs{true, true, true, true, true, true, true}));
}

TEST(NavOrder, a_channel_takes_effect_on_the_packets_behind_it) {
  TestCodec codec(false);
  codec.take(with_minutes(locked(100)));
  EXPECT_FALSE(codec.CData().IsNanoValid());
  codec.take(with_minutes(locked(110), kMinute + 1));
  EXPECT_EQ(codec.CData().GetNano(), at_ms(110));
  codec.take(locked(120));
  EXPECT_EQ(codec.CData().GetNano(), at_ms(60120));
}

TEST(NavOrder, receivers_and_measure_points_take_the_time_of_the_packet) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(100)), locked(110)});
  for (unsigned int receiver = 0; receiver < 3; ++receiver) {
    codec.data_.DGps(receiver).SetNumSats(7);
    EXPECT_EQ(codec.DGps(receiver).VarNumSats().get_nano(), at_ms(110));
  }
  for (unsigned int point = 0; point < 8; ++point) {
    codec.data_.DMeasurePt(point).SetPointXv(7.0);
    EXPECT_EQ(codec.DMeasurePt(point).VarPointXv().get_nano(), at_ms(110));
  }
}

TEST(NavOrder, innovations_age_with_regular_packets) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(100)), locked(110)});
  codec.data_.SetInnPosX(1.5);
  codec.take(locked(10110));
  EXPECT_TRUE(codec.CData().IsInnPosXValid());  // 10 s are not too old
  codec.take(locked(10111));
  EXPECT_EQ(codec.CData().VarInnPosX().get_flags(),
            Lib::Flags(Lib::Flags::Invalid | Lib::Flags::Stale));
  EXPECT_EQ(codec.CData().GetInnPosX(), 1.5);
}

TEST(NavOrder, innovations_do_not_age_with_trigger_packets) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(100)), locked(110)});
  codec.data_.SetInnPosX(1.5);
  codec.take(
      packet_of(22, 0).channel(24, {byte_of(kMinute + 1, 0), byte_of(kMinute + 1, 1),
                                    byte_of(kMinute + 1, 2), byte_of(kMinute + 1, 3), 0, 0, 0, 1}));
  ASSERT_EQ(codec.CData().GetNano(), at_ms(60000));
  EXPECT_TRUE(codec.CData().IsInnPosXValid());
}

TEST(NavOrder, the_product_is_named_by_regular_trigger_and_status_packets) {
  const Packet kinds[] = {locked(10), trigger(22, 24, 1), packet_of(10, 10),
                          packet_of(11, 10).extra(3)};
  for (const Packet& packet : kinds) {
    TestCodec codec(false);
    codec.data_.SetProductType(1);
    codec.take(packet);
    EXPECT_TRUE(codec.CData().IsProductNameValid());
  }
  TestCodec codec(false);
  codec.data_.SetProductType(1);
  codec.take({packet_of(5, 10), packet_of(11, 10).extra(2)});
  EXPECT_FALSE(codec.CData().IsProductNameValid());
}

TEST(NavOrder, values_of_a_channel_take_the_time_of_their_packet) {
  TestCodec codec(false);
  codec.take(
      {with_minutes(locked(100)), locked(110).channel(16, {1, 0, 2, 0, 3, 0, 0, 18 * 2 + 1})});
  EXPECT_EQ(codec.CData().VarTimeUtcOffset().get_nano(), at_ms(110));
  EXPECT_EQ(codec.CData().VarImu2VehRoll().get_nano(), at_ms(110));
}

// ---- Regular rate

TEST(NavRate, is_told_after_a_hundred_and_one_packets_of_status_4) {
  TestCodec codec(false);
  codec.take(with_minutes(locked(0)));
  codec.take(packet_of(3, 10));  // neither status 3 nor an untimed packet begins a window
  for (int packet = 0; packet < 100; ++packet) {
    codec.take(locked(static_cast<unsigned short>(1000 + 10 * packet)));
    EXPECT_FALSE(codec.CData().IsOutputRegularRateValid());
  }
  codec.take(packet_of(3, 1995));  // does not count
  codec.take(locked(2000));
  EXPECT_DOUBLE_EQ(codec.CData().GetOutputRegularRate(), 100.0);
  codec.take(locked(2010));
  EXPECT_TRUE(codec.CData().IsOutputRegularRateValid());
}

TEST(NavRate, a_trigger_packet_does_not_count) {
  TestCodec codec(false);
  codec.take(with_minutes(locked(0)));
  for (int packet = 0; packet <= 100; ++packet) {
    codec.take(locked(static_cast<unsigned short>(1000 + 10 * packet)));
    codec.take(trigger(22, 24, static_cast<unsigned char>(packet + 1)));
  }
  EXPECT_DOUBLE_EQ(codec.CData().GetOutputRegularRate(), 100.0);
}

TEST(NavRate, without_its_key_it_is_invalid_and_begins_anew) {
  TestCodec codec(false);
  codec.take(with_minutes(locked(0)));
  for (int packet = 1; packet <= 101; ++packet) {
    codec.take(locked(static_cast<unsigned short>(10 * packet)));
  }
  ASSERT_TRUE(codec.CData().IsOutputRegularRateValid());
  codec.Key().KMain().Bar_Time_Rate();
  codec.take(locked(1020));
  EXPECT_FALSE(codec.CData().IsOutputRegularRateValid());
  codec.Key().KMain().Let_Time_Rate();
  for (int packet = 103; packet <= 202; ++packet) {
    codec.take(locked(static_cast<unsigned short>(10 * packet)));
    EXPECT_FALSE(codec.CData().IsOutputRegularRateValid());
  }
  codec.take(locked(2030));
  EXPECT_TRUE(codec.CData().IsOutputRegularRateValid());
}

// Level and headed north: forward is north and lateral east; ISO axes of the earth are east, north.
TEST(NavKeys, families_that_nobody_wanted_are_computed_as_soon_as_someone_does) {
  constexpr double kNear = 1e-6;
  TestCodec codec(false);
  codec.Key().Reset(false);
  const auto take = [&codec](unsigned short time) {
    codec.take(locked(time).velocity(3.0, 4.0, 0.0).attitude(0.0, 0.0, 0.0));
  };
  take(10);
  EXPECT_FALSE(codec.CData().IsVfValid());
  EXPECT_FALSE(codec.CData().IsIsoVnXValid());

  codec.Key().KMain().Let_Vel_Fld();
  codec.Key().KMain().Let_IsoVelEarth();
  codec.Key().PropagateKeyOr();
  take(20);
  ASSERT_TRUE(codec.CData().IsVfValid());
  EXPECT_NEAR(codec.CData().GetVf(), 3.0, kNear);
  EXPECT_NEAR(codec.CData().GetVl(), 4.0, kNear);
  ASSERT_TRUE(codec.CData().IsIsoVnXValid());
  EXPECT_NEAR(codec.CData().GetIsoVnX(), 4.0, kNear);
  EXPECT_NEAR(codec.CData().GetIsoVnY(), 3.0, kNear);
}

}  // namespace
}  // namespace Trel::Nav
