// The channels of time, mounting and triggers.
#include <gtest/gtest.h>

#include "nav/Nav_Feed.h"

namespace Trel::Nav {
namespace {

using ChannelData = Packet::ChannelData;

Packet channel(unsigned char number, const ChannelData& data, unsigned short time = 10) {
  return locked(time).channel(number, data);
}

TEST(NavChannels, a_channel_that_nothing_has_changes_nothing) {
  for (const int number : {86, 95, 96, 128, 255}) {
    TestCodec codec(false);
    codec.take(channel(static_cast<unsigned char>(number), {1, 2, 3, 4, 5, 6, 0, 8}));
    codec.take(locked(20));
    EXPECT_FALSE(codec.CData().IsNanoValid()) << number;
    EXPECT_FALSE(codec.CData().IsTimeUtcOffsetValid()) << number;
  }
}

// ---- Channel 0

TEST(NavChannel0, brings_the_receivers_state_with_the_minutes) {
  TestCodec codec(false);
  codec.take(channel(0, {0, 0, 0, 0, 9, 1, 2, 3}));
  EXPECT_EQ(codec.CData().GetGpsNumObs(), 9U);
  EXPECT_EQ(codec.CData().GetGpsPosMode(), 1);
  EXPECT_EQ(codec.CData().GetGpsVelMode(), 2);
  EXPECT_EQ(codec.CData().GetGpsAttMode(), 3);
}

TEST(NavChannel0, a_negative_state_is_invalid) {
  TestCodec codec(false);
  codec.take({channel(0, {0, 0, 0, 0, 9, 1, 2, 3}), channel(0, {0, 0, 0, 0, 128, 255, 200, 128})});
  EXPECT_FALSE(codec.CData().IsGpsNumObsValid() || codec.CData().IsGpsPosModeValid() ||
               codec.CData().IsGpsVelModeValid() || codec.CData().IsGpsAttModeValid());
  codec.take(channel(0, {0, 0, 0, 0, 127, 0, 0, 0}));
  EXPECT_EQ(codec.CData().GetGpsNumObs(), 127U);
}

TEST(NavChannel0, a_state_without_its_key_is_invalid) {
  TestCodec codec(false);
  codec.take(channel(0, {0, 0, 0, 0, 9, 1, 2, 3}));
  codec.Key().KMain().Bar_GnssInfo_Mode();
  codec.take(channel(0, {0, 0, 0, 0, 9, 1, 2, 3}));
  EXPECT_TRUE(codec.CData().IsGpsNumObsValid());
  EXPECT_FALSE(codec.CData().IsGpsPosModeValid() || codec.CData().IsGpsVelModeValid() ||
               codec.CData().IsGpsAttModeValid());
  codec.Key().KMain().Bar_GnssInfo_Misc();
  codec.take(channel(0, {0, 0, 0, 0, 9, 1, 2, 3}));
  EXPECT_FALSE(codec.CData().IsGpsNumObsValid());
}

TEST(NavChannel0, minutes_of_FFFFFF_are_none) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(10)), with_minutes(locked(20), 0xFFFFFF), locked(30)});
  EXPECT_EQ(codec.CData().GetNano(), at_ms(30));
}

TEST(NavChannel0, minutes_next_to_FFFFFF_are_minutes) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(10)), with_minutes(locked(20), 0x1000000), locked(30)});
  EXPECT_EQ(codec.CData().GetNano(), 0x1000000 * 60'000'000'000LL + 30 * kMilli);
}

TEST(NavChannel0, minutes_are_not_taken_in_status_0_and_1) {
  for (const unsigned char status : {0, 1}) {
    TestCodec codec(false);
    codec.take({with_minutes(packet_of(status, 10)), locked(20)});
    EXPECT_FALSE(codec.CData().IsNanoValid());
  }
}

TEST(NavChannel0, minutes_are_taken_whatever_keys_are_on) {
  TestCodec codec(false);
  codec.Key().Reset(false);
  codec.take({with_minutes(locked(10)), locked(20)});
  EXPECT_EQ(codec.CData().GetNano(), at_ms(20));
}

// ---- Channel 16

TEST(NavChannel16, mounting_angles_are_tenths_of_a_milliradian) {
  TestCodec codec(false);
  codec.take(channel(16, {0x10, 0x27, 0xF0, 0xD8, 0xFF, 0x7F, 0, 0}));  // 10000, -10000, 32767
  EXPECT_DOUBLE_EQ(codec.CData().GetImu2VehHeading(), 57.29577951308232);
  EXPECT_DOUBLE_EQ(codec.CData().GetImu2VehPitch(), -57.29577951308232);
  EXPECT_DOUBLE_EQ(codec.CData().GetImu2VehRoll(), 3.2767 * 57.29577951308232);
}

TEST(NavChannel16, mounting_angles_must_be_of_age_0_and_wanted) {
  TestCodec codec(false);
  codec.take({channel(16, {1, 0, 1, 0, 1, 0, 0, 0}), channel(16, {1, 0, 1, 0, 1, 0, 1, 0})});
  EXPECT_FALSE(codec.CData().IsImu2VehHeadingValid() || codec.CData().IsImu2VehPitchValid() ||
               codec.CData().IsImu2VehRollValid());
  codec.take(channel(16, {1, 0, 1, 0, 1, 0, 0, 0}));
  codec.Key().KMain().Bar_Imu2Veh();
  codec.take(channel(16, {1, 0, 1, 0, 1, 0, 0, 0}));
  EXPECT_FALSE(codec.CData().IsImu2VehHeadingValid());
}

TEST(NavChannel16, the_offset_to_utc_stays_while_its_bit_is_clear) {
  TestCodec codec(false);
  codec.take(channel(16, {0, 0, 0, 0, 0, 0, 1, 18 * 2 + 1}));
  EXPECT_EQ(codec.CData().GetTimeUtcOffset(), 18);
  codec.take(channel(16, {0, 0, 0, 0, 0, 0, 1, 20 * 2}));
  EXPECT_EQ(codec.CData().GetTimeUtcOffset(), 18);
  codec.take(channel(16, {0, 0, 0, 0, 0, 0, 1, 255}));
  EXPECT_EQ(codec.CData().GetTimeUtcOffset(), 127);
  codec.Key().KMain().Bar_Time_Extra();
  codec.take(channel(16, {0, 0, 0, 0, 0, 0, 1, 255}));
  EXPECT_FALSE(codec.CData().IsTimeUtcOffsetValid());
}

// ---- Triggers

// An edge `milliseconds` after time zero.
Packet edge(unsigned char number, unsigned short milliseconds, unsigned char update,
            unsigned char fine = 0) {
  return channel(number, {0, 0, 0, 0, static_cast<unsigned char>(milliseconds),
                          static_cast<unsigned char>(milliseconds >> 8), fine, update});
}
constexpr unsigned char kFall = 24;
constexpr unsigned char kRise = 43;

TEST(NavTriggers, an_edge_is_timed_in_minutes_milliseconds_and_steps_of_4_us) {
  TestCodec codec(false);
  codec.take(channel(kFall, {2, 0, 0, 0, 0xFF, 0xFF, 0x7F, 1}));
  EXPECT_EQ(codec.CData().GetTrig1FallNano(),
            2 * 60'000'000'000 + 65535 * 1'000'000LL + 127 * 4000);
  codec.take(channel(kFall, {0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0x80, 2}));
  EXPECT_EQ(codec.CData().GetTrig1FallNano(), -60'000'000'000 + 1'000'000 - 128 * 4000);
  EXPECT_DOUBLE_EQ(codec.CData().GetTrig1FallTime(), -59.999512);
}

TEST(NavTriggers, minutes_at_the_limit_of_32_bits_wrap) {
  TestCodec codec(false);
  codec.take(channel(kFall, {0xFF, 0xFF, 0xFF, 0x7F, 0, 0, 0, 1}));
  EXPECT_EQ(codec.CData().GetTrig1FallNano(),
            static_cast<long long>(0x7FFFFFFFULL * 60'000'000'000ULL));
}

TEST(NavTriggers, an_update_counter_seen_before_changes_nothing) {
  TestCodec codec(false);
  codec.take({edge(kFall, 100, 7), edge(kFall, 200, 7)});
  EXPECT_EQ(codec.CData().GetTrig1FallNano(), 100 * kMilli);
  EXPECT_EQ(codec.CData().GetTrig1FallUpdateCount(), 1U);
}

TEST(NavTriggers, a_new_update_counter_is_one_update_whatever_its_step) {
  TestCodec codec(false);
  codec.take({edge(kFall, 100, 7), edge(kFall, 200, 200), edge(kFall, 300, 7)});
  EXPECT_EQ(codec.CData().GetTrig1FallNano(), 300 * kMilli);
  EXPECT_EQ(codec.CData().GetTrig1FallUpdateCount(), 3U);
}

TEST(NavTriggers, each_channel_has_its_own_counter_and_values) {
  TestCodec codec(false);
  codec.take({edge(24, 1, 1), edge(43, 2, 1), edge(65, 3, 1), edge(79, 4, 1), edge(80, 5, 1),
              edge(81, 6, 1)});
  const ComData& data = codec.CData();
  EXPECT_EQ(data.GetTrig1FallNano(), 1 * kMilli);
  EXPECT_EQ(data.GetTrig1RiseNano(), 2 * kMilli);
  EXPECT_EQ(data.GetDigitalOutNano(), 3 * kMilli);
  EXPECT_EQ(data.GetTrig2FallNano(), 4 * kMilli);
  EXPECT_EQ(data.GetTrig2RiseNano(), 5 * kMilli);
  EXPECT_EQ(data.GetDigitalOut2Nano(), 6 * kMilli);
  EXPECT_EQ(data.GetDigitalOut2UpdateCount(), 1U);
}

TEST(NavTriggers, counters_seen_are_forgotten_with_a_rewind) {
  TestCodec codec(false);
  codec.take(edge(kFall, 100, 7));
  codec.PrescanRewind(true);
  codec.take(edge(kFall, 100, 7));
  EXPECT_EQ(codec.CData().GetTrig1FallUpdateCount(), 1U);
}

struct Transition {
  int level;
  double time;
  unsigned int count;

  bool operator==(const Transition&) const = default;
};
void PrintTo(const Transition& transition, std::ostream* out) {
  *out << transition.level << " at " << transition.time << ", " << transition.count;
}
Transition transition_of(const ComData& data) {
  return {data.GetTrig1TranLevel(), data.GetTrig1TranTime(), data.GetTrig1TranUpdateCount()};
}

TEST(NavTriggers, the_first_edge_is_the_first_transition) {
  TestCodec falling(false);
  falling.take(edge(kFall, 100, 1));
  EXPECT_EQ(transition_of(falling.CData()), (Transition{-1, 0.1, 1}));
  TestCodec rising(false);
  rising.take(edge(kRise, 100, 1));
  EXPECT_EQ(transition_of(rising.CData()), (Transition{1, 0.1, 1}));
}

TEST(NavTriggers, edges_that_alternate_are_one_transition_each) {
  TestCodec codec(false);
  codec.take({edge(kRise, 100, 1), edge(kFall, 200, 1)});
  EXPECT_EQ(transition_of(codec.CData()), (Transition{-1, 0.2, 2}));
  codec.take(edge(kRise, 300, 2));
  EXPECT_EQ(transition_of(codec.CData()), (Transition{1, 0.3, 3}));
}

TEST(NavTriggers, an_edge_older_than_the_last_transition_is_none) {
  TestCodec codec(false);
  codec.take({edge(kRise, 300, 1), edge(kFall, 200, 1)});
  EXPECT_EQ(transition_of(codec.CData()), (Transition{1, 0.3, 1}));
}

TEST(NavTriggers, a_pair_of_edges_told_at_once_is_two_transitions_when_it_ends_as_it_began) {
  // The state is risen at 100. With both edges newer, the later one decides.
  const auto after_both = [](unsigned short fall, unsigned short rise) {
    TestCodec codec(false);
    codec.take(edge(kRise, 100, 1));
    codec.data_.HitTrig1FallTime().set(fall / 1000.0, codec.data_.VarNano());
    codec.take(edge(kRise, rise, 2));
    return transition_of(codec.CData());
  };
  EXPECT_EQ(after_both(200, 300), (Transition{1, 0.3, 3}));
  EXPECT_EQ(after_both(300, 200), (Transition{-1, 0.3, 2}));
  EXPECT_EQ(after_both(50, 200), (Transition{1, 0.2, 2}));
}

TEST(NavTriggers, both_edges_ahead_of_any_transition_are_two) {
  TestCodec codec(false);
  codec.data_.HitTrig1FallTime().set(0.2, codec.data_.VarNano());
  codec.take(edge(kRise, 100, 1));
  EXPECT_EQ(transition_of(codec.CData()), (Transition{-1, 0.2, 2}));
}

TEST(NavTriggers, the_second_input_has_transitions_of_its_own) {
  TestCodec codec(false);
  codec.take({edge(80, 100, 1), edge(79, 200, 1)});
  EXPECT_EQ(codec.CData().GetTrig2TranLevel(), -1);
  EXPECT_DOUBLE_EQ(codec.CData().GetTrig2TranTime(), 0.2);
  EXPECT_EQ(codec.CData().GetTrig2TranUpdateCount(), 2U);
  EXPECT_FALSE(codec.CData().IsTrig1TranLevelValid());
}

TEST(NavTriggers, a_digital_output_has_no_transitions) {
  TestCodec codec(false);
  codec.take({edge(65, 100, 1), edge(81, 100, 1)});
  EXPECT_FALSE(codec.CData().IsTrig1TranLevelValid() || codec.CData().IsTrig2TranLevelValid());
}

// ---- The table itself

class StatusChannelsTest : public testing::Test {
 protected:
  bool updated(TriggerGroup group) const { return channels_.is_updated(group); }
  void take(std::initializer_list<unsigned char> message) {
    channels_.DecodeStatusMsg(message.begin());
  }

  static constexpr StatusRow kRows[] = {
      {24, "falling",
       [](StatusChannels& channels, const StatusRow& row) { channels.DecodeExtraTrigger(row); }},
      {81, "output 2",
       [](StatusChannels& channels, const StatusRow& row) { channels.DecodeExtraTrigger(row); }},
  };
  static constexpr StatusTable kTable{kRows};
  static_assert(kTable.in_order());

  ComData data_;
  ComKey key_;
  PacketClock clock_;
  FilterBank filters_;
  PacketForm form_{72, 62, nullptr, &kTable, 0.001, true, true};
  StatusChannels channels_{data_, key_, clock_, filters_, form_};
};

TEST_F(StatusChannelsTest, an_update_counts_for_one_packet_only) {
  take({24, 0, 0, 0, 0, 1, 0, 0, 1});
  EXPECT_TRUE(updated(TriggerGroup::Trig1));
  EXPECT_FALSE(updated(TriggerGroup::Out2));
  take({81, 0, 0, 0, 0, 1, 0, 0, 1});
  EXPECT_FALSE(updated(TriggerGroup::Trig1));
  EXPECT_TRUE(updated(TriggerGroup::Out2));
  take({255, 0, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_FALSE(updated(TriggerGroup::Out2));
}

TEST_F(StatusChannelsTest, a_channel_has_its_rows_and_no_others) {
  EXPECT_EQ(kTable.channel(24).size(), 1U);
  EXPECT_STREQ(kTable.channel(81)[0].value, "output 2");
  EXPECT_TRUE(kTable.channel(0).empty());
  EXPECT_TRUE(kTable.channel(94).empty());
}

TEST_F(StatusChannelsTest, rows_out_of_order_or_of_no_channel_are_told) {
  static constexpr StatusRow kTurned[] = {{81, "", nullptr}, {24, "", nullptr}};
  static constexpr StatusRow kBeyond[] = {{95, "", nullptr}};
  EXPECT_FALSE(StatusTable(kTurned).in_order());
  EXPECT_FALSE(StatusTable(kBeyond).in_order());
}

}  // namespace
}  // namespace Trel::Nav
