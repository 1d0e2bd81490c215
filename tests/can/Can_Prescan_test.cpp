// Times: the prescan, the rewind, and what they make of the times in packets.
#include <gtest/gtest.h>

#include "can/Can_Builders.h"

namespace Trel::Can {
namespace {

constexpr long long kUnset = Codec::kUnset;
constexpr long long kSecond = 1'000'000'000;
constexpr long long kGps = 1'300'000'000 * kSecond;  // well above the threshold

// A codec that has been given packets of these times until the prescan ended.
Codec prescanned(std::initializer_list<long long> times) {
  Codec codec;
  configure(codec, "", true);
  for (const long long time : times) {
    if (!decode(codec, PacketBuilder(time))) break;
  }
  return codec;
}

// A codec that has not seen a packet, out of its prescan.
Codec regular() {
  Codec codec;
  configure(codec, "", false);
  return codec;
}

TEST(CanPrescan, it_begins_with_no_time_known) {
  Codec codec;
  configure(codec, "", true);
  const Codec::Prescan& scan = codec.get_prescan();
  EXPECT_TRUE(scan.active);
  EXPECT_EQ(scan.state, 2);
  for (const long long time :
       {scan.prev, scan.last, scan.first, scan.last_rel, scan.first_abs, scan.gap, scan.offset,
        scan.nano_off.origin, scan.nano_off.start, scan.nano_off.first}) {
    EXPECT_EQ(time, kUnset);
  }
}

TEST(CanPrescan, without_it_all_times_are_zero_and_the_offsets_unset) {
  const Codec codec = regular();
  const Codec::Prescan& scan = codec.get_prescan();
  EXPECT_FALSE(scan.active);
  EXPECT_EQ(scan.state, 0);
  for (const long long time :
       {scan.prev, scan.last, scan.first, scan.last_rel, scan.first_abs, scan.gap, scan.offset}) {
    EXPECT_EQ(time, 0);
  }
  EXPECT_EQ(scan.nano_off.first, kUnset);
  EXPECT_EQ(codec.get_nano_off().first, kUnset);
}

TEST(CanPrescan, two_gps_times_conclude_it_once) {
  Codec codec;
  configure(codec, "", true);
  EXPECT_TRUE(decode(codec, PacketBuilder(kGps)));
  EXPECT_FALSE(decode(codec, PacketBuilder(kGps + 10)));
  EXPECT_EQ(codec.get_prescan().state, 4);
  EXPECT_FALSE(codec.get_prescan().active);
  EXPECT_TRUE(decode(codec, PacketBuilder(kGps + 20)));
}

TEST(CanPrescan, a_stream_on_gps_time_counts_from_its_first_packet) {
  const long long first = kGps + 700'000'000;
  const Codec codec = prescanned({first, first + 10});
  const Codec::Prescan& scan = codec.get_prescan();
  EXPECT_EQ(scan.offset, 0);
  EXPECT_EQ(scan.last_rel, kUnset);
  EXPECT_EQ(scan.nano_off.first, first);
  EXPECT_EQ(scan.nano_off.start, first);
  EXPECT_EQ(scan.nano_off.origin, kGps);
}

TEST(CanPrescan, the_step_to_gps_time_is_taken_as_one_gap) {
  // Device times 1.3 s and 1.4 s, then GPS times 0.1 s apart: the last device time is 0.1 s ahead
  // of the first GPS time, so device time 0 is at kGps - 0.1 s - 1.4 s.
  const Codec codec = prescanned({1'300'000'000, 1'400'000'000, kGps, kGps + 100'000'000});
  const Codec::Prescan& scan = codec.get_prescan();
  EXPECT_EQ(scan.last_rel, 1'400'000'000);
  EXPECT_EQ(scan.first_abs, kGps);
  EXPECT_EQ(scan.gap, 100'000'000);
  EXPECT_EQ(scan.offset, kGps - 100'000'000 - 1'400'000'000);
  EXPECT_EQ(scan.nano_off.first, kGps);
  // From the first packet, at kGps - 0.2 s, to the first GPS time.
  EXPECT_EQ(scan.nano_off.start, 200'000'000);
  EXPECT_EQ(scan.nano_off.origin, 0);
}

TEST(CanPrescan, the_origin_is_cut_toward_zero) {
  // The last device time is 2.5 s earlier than the first packet's: the start is negative.
  // offset = kGps - 1 s - 0.1 s, the first packet's time 3.5 s becomes kGps + 2.4 s.
  const Codec codec = prescanned({3'500'000'000, 1'000'000'000, kGps, kGps + 100'000'000});
  EXPECT_EQ(codec.get_prescan().nano_off.start, -2'400'000'000);
  EXPECT_EQ(codec.get_prescan().nano_off.origin, -2'000'000'000);
}

TEST(CanPrescan, a_time_at_the_threshold_is_device_time) {
  EXPECT_EQ(Codec::kThreshold, 31556925999999999);
  const Codec at = prescanned({Codec::kThreshold, kGps, kGps + 1});
  EXPECT_EQ(at.get_prescan().last_rel, Codec::kThreshold);
  EXPECT_EQ(at.get_prescan().first_abs, kGps);
  const Codec above = prescanned({Codec::kThreshold + 1, kGps, kGps + 1});
  EXPECT_EQ(above.get_prescan().last_rel, kUnset);
  EXPECT_EQ(above.get_prescan().first_abs, Codec::kThreshold + 1);
}

TEST(CanPrescan, device_time_alone_never_concludes_it) {
  const Codec codec = prescanned({0, 10, 20, 30});
  EXPECT_TRUE(codec.get_prescan().active);
  EXPECT_EQ(codec.get_prescan().gap, kUnset);
}

TEST(CanPrescan, a_gap_needs_two_gps_times_in_a_row_that_rise) {
  EXPECT_TRUE(prescanned({kGps, 10, kGps + 5}).get_prescan().active);
  EXPECT_TRUE(prescanned({kGps, kGps, kGps - 5}).get_prescan().active);
  EXPECT_FALSE(prescanned({kGps, kGps - 5, kGps - 4}).get_prescan().active);
}

TEST(CanPrescan, device_time_behind_the_first_gps_time_does_not_count) {
  const Codec codec = prescanned({5, kGps, 99, kGps + 10, kGps + 20});
  EXPECT_EQ(codec.get_prescan().last_rel, 5);
  EXPECT_EQ(codec.get_prescan().first_abs, kGps);
  EXPECT_EQ(codec.get_prescan().gap, 10);
}

TEST(CanPrescan, packets_of_other_sizes_and_without_time_are_skipped) {
  Codec codec;
  configure(codec, "", true);
  EXPECT_TRUE(decode(codec, PacketBuilder(kGps).frame(1, {1}).cut(23)));
  EXPECT_TRUE(decode(codec, PacketBuilder(kGps).frame(1, 9, {}, 12)));  // 28 bytes
  EXPECT_TRUE(decode(codec, PacketBuilder(kGps).cut(7)));
  EXPECT_TRUE(decode(codec, PacketBuilder(kGps).cut(0)));
  EXPECT_TRUE(decode(codec, PacketBuilder(kUnset)));
  EXPECT_TRUE(codec.decode(nullptr, 8));
  EXPECT_EQ(codec.get_prescan().first, kUnset);
  EXPECT_EQ(codec.get_prescan().last, kUnset);
  EXPECT_TRUE(decode(codec, PacketBuilder(kGps).frame(1, {1})));  // 24 bytes
  EXPECT_EQ(codec.get_prescan().first, kGps);
}

TEST(CanPrescan, a_packet_without_time_does_not_come_between_two_that_have_one) {
  const Codec codec = prescanned({kGps, kUnset, kGps + 10});
  EXPECT_FALSE(codec.get_prescan().active);
  EXPECT_EQ(codec.get_prescan().gap, 10);
}

TEST(CanPrescan, configuring_anew_forgets_what_it_found) {
  Codec codec = prescanned({kGps, kGps + 10});
  codec.rewind(true);
  configure(codec, "", true);
  EXPECT_TRUE(codec.get_prescan().active);
  EXPECT_EQ(codec.get_prescan().first, kUnset);
  EXPECT_EQ(codec.get_prescan().nano_off.first, kUnset);
  EXPECT_EQ(codec.get_nano_off().first, kUnset);
}

TEST(CanPrescan, it_decodes_no_value) {
  Codec codec;
  configure(codec, "BO_ 1 M: 8 N\nSG_ A : 0|8@1+ (1,0)\n", true);
  decode(codec, PacketBuilder(kGps).frame(1, {7}));
  EXPECT_TRUE(value(codec, "A").null());
  EXPECT_TRUE(codec.DMain().Var_Nano().null());
}

TEST(CanPrescan, times_at_the_ends_of_the_range_wrap) {
  const Codec codec = prescanned({kUnset + 1, std::numeric_limits<long long>::max() - 1,
                                  std::numeric_limits<long long>::max()});
  // (2^63 - 2) - (-2^63 + 1) - 1 = 2^64 - 4
  EXPECT_EQ(codec.get_prescan().offset, -4);
}

TEST(CanRewind, after_a_prescan_the_time_stands_at_the_first_packet) {
  Codec codec = prescanned({1'300'000'000, 1'400'000'000, kGps, kGps + 100'000'000});
  codec.rewind(true);
  EXPECT_EQ(codec.get_prescan().state, 3);
  EXPECT_EQ(codec.get_nano_off().start, 200'000'000);
  EXPECT_EQ(codec.DMain().Var_Nano().get(), kGps - 200'000'000);
  EXPECT_TRUE(codec.DMain().Var_Nano().good());
  EXPECT_EQ(codec.DMain().Var_NanoFromFirst().get(), -200'000'000);
  EXPECT_EQ(codec.DMain().Var_NanoFromStart().get(), kGps - 400'000'000);
  EXPECT_EQ(codec.DMain().Var_NanoFromOrigin().get(), kGps - 200'000'000);
}

TEST(CanRewind, without_the_flag_no_time_is_set) {
  Codec codec = prescanned({kGps, kGps + 10});
  codec.rewind(false);
  EXPECT_EQ(codec.get_nano_off().first, kGps);
  EXPECT_TRUE(codec.DMain().Var_Nano().null());
  EXPECT_TRUE(codec.DMain().Var_TimeWeekCount().null());
}

TEST(CanRewind, it_ends_a_prescan_that_found_nothing) {
  Codec codec = prescanned({});
  codec.rewind(true);
  EXPECT_FALSE(codec.get_prescan().active);
  EXPECT_EQ(codec.get_prescan().state, 0);
  EXPECT_EQ(codec.get_nano_off().first, kUnset);
  EXPECT_TRUE(codec.DMain().Var_Nano().null());
  EXPECT_TRUE(codec.DMain().Var_NanoFromOrigin().null());
  EXPECT_TRUE(codec.DMain().Var_TimeWeekSecond().null());
  EXPECT_TRUE(decode(codec, PacketBuilder(5)));
  EXPECT_EQ(codec.DMain().Var_Nano().get(), 5);
}

TEST(CanRewind, device_time_alone_stays_device_time_with_the_offsets_unset) {
  Codec codec = prescanned({5 * kSecond, 6 * kSecond});
  codec.rewind(true);
  EXPECT_EQ(codec.get_prescan().state, 3);
  EXPECT_EQ(codec.DMain().Var_Nano().get(), 5 * kSecond);
  EXPECT_TRUE(codec.DMain().Var_Nano().good());
  EXPECT_EQ(codec.DMain().Var_NanoFromOrigin().get_flags().byte(), Lib::Flags::Invalid);
  EXPECT_EQ(codec.DMain().Var_NanoFromStart().get_flags().byte(), Lib::Flags::Invalid);
  EXPECT_EQ(codec.DMain().Var_NanoFromFirst().get_flags().byte(), Lib::Flags::Invalid);
  EXPECT_EQ(codec.DMain().Var_TimeWeekSecond().get(), 5.0);
}

TEST(CanRewind, a_codec_without_prescan_goes_back_to_time_zero) {
  // An idle prescan's first time is 0, which counts as known.
  Codec codec = regular();
  codec.rewind(true);
  EXPECT_EQ(codec.get_prescan().state, 3);
  EXPECT_EQ(codec.DMain().Var_Nano().get(), 0);
  EXPECT_TRUE(codec.DMain().Var_Nano().good());
}

TEST(CanRewind, it_forgets_the_values) {
  Codec codec;
  configure(codec, "BO_ 1 M: 8 N\nSG_ A : 0|8@1+ (1,0)\n", false);
  decode(codec, PacketBuilder(5).frame(1, {7}));
  ASSERT_TRUE(value(codec, "A").good());
  codec.rewind(false);
  EXPECT_TRUE(value(codec, "A").null());
}

TEST(CanTime, device_time_becomes_gps_time_and_gps_time_stays) {
  Codec codec = prescanned({1'300'000'000, 1'400'000'000, kGps, kGps + 100'000'000});
  codec.rewind(true);
  decode(codec, PacketBuilder(1'350'000'000));
  EXPECT_EQ(codec.DMain().Var_Nano().get(), kGps - 150'000'000);
  EXPECT_EQ(codec.DMain().Var_Nano().get_nano(), kGps - 150'000'000);
  decode(codec, PacketBuilder(kGps + 1));
  EXPECT_EQ(codec.DMain().Var_Nano().get(), kGps + 1);
}

TEST(CanTime, week_and_second_of_the_week_are_those_of_gps_time) {
  Codec codec = regular();
  // 3 weeks of 604800 s, 2 s and a half
  decode(codec, PacketBuilder((3 * 604'800LL + 2) * kSecond + kSecond / 2));
  EXPECT_EQ(codec.DMain().Var_TimeWeekCount().get(), 3U);
  EXPECT_EQ(codec.DMain().Var_TimeWeekSecond().get(), 2.5);
  EXPECT_EQ(codec.DMain().Var_TimeWeekCount().get_nano(), codec.DMain().Var_Nano().get());
}

TEST(CanTime, a_negative_time_divides_toward_zero) {
  Codec codec = regular();
  decode(codec, PacketBuilder(-kSecond));
  EXPECT_EQ(codec.DMain().Var_TimeWeekCount().get(), 0U);
  EXPECT_EQ(codec.DMain().Var_TimeWeekSecond().get(), -1.0);
  decode(codec, PacketBuilder(-604'801 * kSecond));
  EXPECT_EQ(codec.DMain().Var_TimeWeekCount().get(), 4294967295U);
  EXPECT_EQ(codec.DMain().Var_TimeWeekSecond().get(), -1.0);
}

TEST(CanTime, a_packet_without_time_is_moved_like_any_other_device_time) {
  Codec codec = regular();
  decode(codec, PacketBuilder(kUnset));
  EXPECT_EQ(codec.DMain().Var_Nano().get(), kUnset);
  EXPECT_TRUE(codec.DMain().Var_Nano().good());
}

TEST(CanTime, relative_times_wrap) {
  Codec codec = prescanned({kGps, kGps + 10});
  codec.rewind(true);
  decode(codec, PacketBuilder(kUnset));
  // -2^63 - kGps is 2^63 - kGps in 64 bits.
  EXPECT_EQ(codec.DMain().Var_NanoFromFirst().get(),
            std::numeric_limits<long long>::max() - kGps + 1);
}

}  // namespace
}  // namespace Trel::Can
