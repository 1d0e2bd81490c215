#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

#include "nav/Nav_StatusValues.h"

namespace Trel::Nav {
namespace {

constexpr unsigned char kWheel = 45;

// A count of pulses at a time in the minute, and 0.9 s without a change.
Eight pulses(int count, int milliseconds) {
  return Data().w(count).s(milliseconds).b(9);
}
// Ten pulses a metre.
const Eight kTenAMetre = Data().s(100);

TEST(Wheel, has_a_count_and_a_time) {
  StatusFeed feed;
  feed.take(kWheel, pulses(-500, 1234));
  EXPECT_EQ(feed.number("WSpeedCount"), -500.0);
  EXPECT_EQ(feed.data().GetWSpeedNano(), at_ms(1234));
  EXPECT_DOUBLE_EQ(feed.data().GetWSpeedTime(), static_cast<double>(at_ms(1234)) / 1e9);
  EXPECT_DOUBLE_EQ(feed.number("WSpeedTimeUnchanged"), 0.9);
  EXPECT_FALSE(feed.good("WSpeedFreq"));
}

TEST(Wheel, time_lies_in_the_minute_nearest_to_the_packet) {
  StatusFeed feed;
  feed.take(kWheel, pulses(0, 59990));
  EXPECT_EQ(feed.data().GetWSpeedNano(), at_ms(59990 - 60000));
  feed.pass(30'000 - 10 - 10);
  feed.take(kWheel, pulses(0, 0));  // half a minute later: the next minute is as near
  EXPECT_EQ(feed.now(), at_ms(30'000));
  EXPECT_EQ(feed.data().GetWSpeedNano(), at_ms(60'000));
  feed.take(kWheel, pulses(0, 65534));  // 65.534 s are 5.534 s of the next minute
  EXPECT_EQ(feed.data().GetWSpeedNano(), at_ms(5534));
}

TEST(Wheel, frequency_is_pulses_over_the_time_between_two_counts) {
  StatusFeed feed;
  feed.take(44, kTenAMetre);
  feed.take(kWheel, pulses(100, 1000));
  EXPECT_FALSE(feed.good("WSpeedFreq"));
  EXPECT_FALSE(feed.good("WSpeedVel"));
  feed.take(kWheel, pulses(80, 1400));  // -20 pulses in 0.4 s: -50 Hz, -5 m/s at ten a metre
  EXPECT_DOUBLE_EQ(feed.number("WSpeedFreq"), -50.0);
  EXPECT_DOUBLE_EQ(feed.number("WSpeedVel"), -5.0);
  EXPECT_DOUBLE_EQ(feed.number("WSpeedSpeed"), 5.0);
}

TEST(Wheel, rates_are_stamped_with_the_middle_of_their_interval) {
  StatusFeed feed;
  feed.take(44, kTenAMetre);
  feed.take(kWheel, pulses(100, 1000));
  feed.take(kWheel, pulses(80, 1400));
  for (const char* name : {"WSpeedFreq", "WSpeedVel", "WSpeedSpeed"}) {
    EXPECT_EQ(feed.value(name).stamp.get_nano(), at_ms(1200)) << name;
  }
  EXPECT_EQ(feed.value("WSpeedCount").stamp.get_nano(), feed.now());
}

TEST(Wheel, at_rest_has_frequency_0_and_velocity_0) {
  StatusFeed feed;
  feed.take(44, kTenAMetre);
  feed.take(kWheel, pulses(100, 1000));
  feed.take(kWheel, pulses(100, 1400));
  EXPECT_EQ(feed.number("WSpeedFreq"), 0.0);
  EXPECT_EQ(feed.number("WSpeedVel"), 0.0);
  EXPECT_EQ(feed.number("WSpeedSpeed"), 0.0);
}

TEST(Wheel, counts_on_over_the_end_of_their_range) {
  StatusFeed feed;
  feed.take(kWheel, pulses(std::numeric_limits<int>::max(), 1000));
  feed.take(kWheel, pulses(std::numeric_limits<int>::min(), 1100));
  EXPECT_DOUBLE_EQ(feed.number("WSpeedFreq"), 10.0);
}

TEST(Wheel, has_no_rate_from_counts_that_do_not_go_forward_in_time) {
  StatusFeed feed;
  feed.take(kWheel, pulses(100, 1000));
  feed.take(kWheel, pulses(110, 1000));
  EXPECT_FALSE(feed.good("WSpeedFreq"));
  feed.take(kWheel, pulses(120, 900));
  EXPECT_FALSE(feed.good("WSpeedFreq"));
  feed.take(kWheel, pulses(130, 1000));  // against the newest one: 10 pulses in 0.1 s
  EXPECT_DOUBLE_EQ(feed.number("WSpeedFreq"), 100.0);
}

TEST(Wheel, without_a_time_keeps_the_count_before_it_for_the_next) {
  StatusFeed feed;
  feed.take(kWheel, pulses(100, 1000));
  feed.take(kWheel, pulses(150, 65535));
  EXPECT_FALSE(feed.good("WSpeedNano"));
  EXPECT_FALSE(feed.data().IsWSpeedTimeValid());
  EXPECT_FALSE(feed.good("WSpeedFreq"));
  EXPECT_EQ(feed.number("WSpeedCount"), 150.0);
  feed.take(kWheel, pulses(200, 2000));
  EXPECT_DOUBLE_EQ(feed.number("WSpeedFreq"), 100.0);
}

TEST(Wheel, has_no_velocity_without_a_scale_or_with_scale_0) {
  for (const int scale : {0, 0xFFFF}) {
    StatusFeed feed;
    feed.take(44, Data().s(scale));
    feed.take(kWheel, pulses(100, 1000));
    feed.take(kWheel, pulses(110, 1100));
    EXPECT_TRUE(feed.good("WSpeedFreq"));
    EXPECT_FALSE(feed.good("WSpeedVel")) << scale;
    EXPECT_FALSE(feed.good("WSpeedSpeed")) << scale;
  }
}

TEST(Wheel, unchanged_time_is_not_there_at_255) {
  StatusFeed feed;
  feed.take(kWheel, Data().w(1).s(0).b(254));
  EXPECT_DOUBLE_EQ(feed.number("WSpeedTimeUnchanged"), 25.4);
  feed.take(kWheel, Data().w(1).s(0).b(255));
  EXPECT_FALSE(feed.good("WSpeedTimeUnchanged"));
}

TEST(Wheel, that_nobody_wants_is_invalid_and_starts_anew) {
  StatusFeed feed;
  feed.take(44, kTenAMetre);
  feed.take(kWheel, pulses(100, 1000));
  feed.take(kWheel, pulses(110, 1100));
  feed.key().KMain().Bar_WSpeed_Measure();
  feed.take(kWheel, pulses(120, 1200));
  for (const char* name : {"WSpeedNano", "WSpeedTime", "WSpeedCount", "WSpeedTimeUnchanged",
                           "WSpeedFreq", "WSpeedVel", "WSpeedSpeed"}) {
    EXPECT_FALSE(feed.good(name)) << name;
  }
  feed.key().KMain().Let_WSpeed_Measure();
  feed.take(kWheel, pulses(130, 1300));
  EXPECT_FALSE(feed.good("WSpeedFreq"));
}

TEST(Wheel, starts_anew_with_the_stream) {
  StatusFeed feed;
  feed.take(kWheel, pulses(100, 1000));
  feed.codec().PrescanRewind(false);
  feed.codec().take(with_minutes(locked(0)));
  feed.take(kWheel, pulses(110, 1100));
  EXPECT_FALSE(feed.good("WSpeedFreq"));
}

// Channels 66 and 67 in their steps: nanoturns of angle, so that 1e-7 degrees are a step.
Eight fine_place(double lat, double lon) {
  return Data().w(std::llround(lat * 1e7)).w(std::llround(lon * 1e7));
}
Eight fine_height(double alt, double heading) {
  return Data().w(std::llround(alt * 1e3)).w(std::llround(heading * 1e7));
}

TEST(FineFrame, is_set_once_all_of_it_has_come) {
  StatusFeed feed;
  feed.take(66, fine_place(52.0, -1.25));
  EXPECT_FALSE(feed.good("RefLat"));
  feed.take(67, fine_height(100.0, 30.0));
  EXPECT_NEAR(feed.number("RefLat"), 52.0, 1e-9);
  EXPECT_NEAR(feed.number("RefLon"), -1.25, 1e-9);
  EXPECT_NEAR(feed.number("RefAlt"), 100.0, 1e-9);
  EXPECT_NEAR(feed.number("RefHeading"), 30.0, 1e-9);
  EXPECT_NEAR(feed.number("RefHeadingSin"), 0.5, 1e-9);
  // The radii of the WGS 84 ellipsoid at 52 degrees: with W = sqrt(1 - e2 sin2), M = a (1 - e2) /
  // W3 and N = a / W.
  const double sine = std::sin(52.0 / kDegrees);
  const double w = std::sqrt(1.0 - 0.00669437999014 * sine * sine);
  const double meridian = 6378137.0 * (1.0 - 0.00669437999014) / (w * w * w);
  const double transverse = 6378137.0 / w;
  EXPECT_NEAR(feed.number("RefLatRadius"), (100.0 + meridian) / kDegrees, 1e-3);
  EXPECT_NEAR(feed.number("RefLonRadius"),
              (100.0 + transverse) * std::cos(52.0 / kDegrees) / kDegrees, 1e-3);
}

TEST(FineFrame, moves_with_each_of_its_channels) {
  StatusFeed feed;
  feed.take(67, fine_height(100.0, 30.0));
  feed.take(66, fine_place(52.0, -1.25));
  feed.take(66, fine_place(10.0, 20.0));
  EXPECT_NEAR(feed.number("RefLat"), 10.0, 1e-9);
  feed.take(67, fine_height(-5.0, 200.0));
  EXPECT_NEAR(feed.number("RefAlt"), -5.0, 1e-9);
  EXPECT_NEAR(feed.number("RefHeading"), -160.0, 1e-9);
}

TEST(FineFrame, lacks_what_reads_as_the_lowest_number) {
  const long long kNone = std::numeric_limits<int>::min();
  for (int missing = 0; missing < 4; ++missing) {
    StatusFeed feed;
    feed.take(66, Data().w(missing == 0 ? kNone : 1).w(missing == 1 ? kNone : 1));
    feed.take(67, Data().w(missing == 2 ? kNone : 1).w(missing == 3 ? kNone : 1));
    EXPECT_FALSE(feed.good("RefLat")) << missing;
  }
}

TEST(FineFrame, beyond_the_pole_has_the_radii_of_the_place_it_reaches) {
  StatusFeed feed;
  feed.take(66, fine_place(80.0, 0.0));
  feed.take(67, fine_height(0.0, 0.0));
  const double lat_radius = feed.number("RefLatRadius");
  const double lon_radius = feed.number("RefLonRadius");
  feed.take(66, fine_place(100.0, 0.0));
  EXPECT_NEAR(feed.number("RefLat"), 100.0, 1e-9);
  EXPECT_NEAR(feed.number("RefLatRadius"), lat_radius, 1e-6);
  EXPECT_NEAR(feed.number("RefLonRadius"), -lon_radius, 1e-6);
}

TEST(FineFrame, is_not_taken_while_nobody_wants_it) {
  StatusFeed feed;
  feed.key().KMain().Bar_RefFrame_Definition();
  feed.take(66, fine_place(52.0, -1.25));
  feed.key().KMain().Let_RefFrame_Definition();
  feed.take(67, fine_height(100.0, 30.0));
  EXPECT_FALSE(feed.good("RefLat"));
}

// A feed with a position: 60 degrees north, 10 east, 50 m.
class CoarseFrame : public testing::Test {
 protected:
  CoarseFrame() { send(86, {}); }

  void send(int channel, const Eight& bytes) {
    time_ += 10;
    feed_.codec().take(locked(static_cast<unsigned short>(time_))
                           .position(60.0 / kDegrees, 10.0 / kDegrees, 50.0F)
                           .channel(static_cast<unsigned char>(channel), bytes));
  }
  static Eight offsets(int north, int east, int angle) { return Data().t(north).t(east).s(angle); }
  // A channel that moves the origin, so that one that does not can be told.
  [[nodiscard]] bool moves(const Eight& bytes) {
    const bool before = feed_.good("RefLat");
    const double lat = feed_.value("RefLat").number;
    send(25, bytes);
    return feed_.good("RefLat") != before || feed_.value("RefLat").number != lat;
  }

  StatusFeed feed_;
  int time_ = 100;
};

TEST_F(CoarseFrame, has_its_origin_so_many_metres_behind_and_to_the_right) {
  // Without a turn a is the offset north and b that east less: the origin lies 1200 m south and
  // 600 m west.
  send(25, offsets(1'000'000, 500'000, 0));
  EXPECT_DOUBLE_EQ(feed_.number("RefHeading"), 0.0);
  EXPECT_NEAR(feed_.number("RefAlt"), 50.0, 1e-9);
  const double south = (60.0 - feed_.number("RefLat")) * feed_.number("RefLatRadius");
  const double west = (feed_.number("RefLon") - 10.0) * feed_.number("RefLonRadius");
  EXPECT_NEAR(south, 1200.0, 1e-2);
  EXPECT_NEAR(west, 600.0, 1e-2);
}

TEST_F(CoarseFrame, turns_its_offsets_by_its_angle) {
  // A quarter turn, 1.5708 rad: a is the offset east, b that north.
  send(25, offsets(1'000'000, 500'000, 15708));
  EXPECT_NEAR(feed_.number("RefHeading"), 1.5708 * kDegrees, 1e-9);
  const double south = (60.0 - feed_.number("RefLat")) * feed_.number("RefLatRadius");
  const double east = (10.0 - feed_.number("RefLon")) * feed_.number("RefLonRadius");
  EXPECT_NEAR(south, 600.0, 2e-2);
  EXPECT_NEAR(east, 1200.0, 2e-2);
}

TEST_F(CoarseFrame, wraps_its_angle) {
  send(25, offsets(1, 1, 32767));
  EXPECT_NEAR(feed_.number("RefHeading"), 3.2767 * kDegrees - 360.0, 1e-9);
  send(25, offsets(1, 1, -32767));
  EXPECT_NEAR(feed_.number("RefHeading"), 360.0 - 3.2767 * kDegrees, 1e-9);
}

TEST_F(CoarseFrame, is_not_there_without_an_angle_or_in_the_null_pattern) {
  EXPECT_FALSE(moves(offsets(100, 100, -32768)));
  EXPECT_FALSE(moves({128, 0, 0, 0, 128, 0, 0, 0}));
  EXPECT_TRUE(moves({128, 0, 0, 0, 128, 0, 0, 1}));
}

TEST_F(CoarseFrame, takes_offsets_above_the_lowest_and_below_the_highest_number) {
  EXPECT_FALSE(moves(offsets(-8388608, 0, 0)));
  EXPECT_FALSE(moves(offsets(0, -8388608, 0)));
  EXPECT_FALSE(moves(offsets(8388607, 0, 0)));
  EXPECT_FALSE(moves(offsets(0, 8388607, 0)));
  EXPECT_TRUE(moves(offsets(-8388607, 8388606, 0)));
  EXPECT_TRUE(moves(offsets(8388606, -8388607, 0)));
}

TEST_F(CoarseFrame, gives_way_to_the_fine_one) {
  send(66, fine_place(52.0, -1.25));
  send(67, fine_height(100.0, 30.0));
  EXPECT_FALSE(moves(offsets(100, 100, 0)));
  EXPECT_NEAR(feed_.number("RefLat"), 52.0, 1e-9);
}

TEST_F(CoarseFrame, is_left_alone_while_nobody_wants_it) {
  send(25, offsets(100, 100, 0));
  feed_.key().KMain().Bar_RefFrame_Definition();
  EXPECT_FALSE(moves(offsets(200, 200, 0)));
  EXPECT_TRUE(feed_.good("RefLat"));
}

TEST(CoarseFrameWithoutPosition, is_not_set) {
  StatusFeed feed;
  feed.hit().InvLat();
  feed.codec().take(packet_of(4, 20)
                        .position(std::numeric_limits<double>::quiet_NaN(), 0.1, 50.0F)
                        .channel(25, Data().t(100).t(100).s(0)));
  EXPECT_FALSE(feed.good("RefLat"));
}

TEST(CoarseFrameAtTheEarthsCentre, is_not_set) {
  // The altitude at which the distance to the centre of curvature comes out as nothing, and others
  // about it: no number that is not finite may come of them.
  for (const float altitude : {-6335439.5F, -6378137.0F, -6400000.0F, 3e38F, -3e38F}) {
    StatusFeed feed;
    feed.codec().take(packet_of(4, 20)
                          .position(0.0, 0.0, altitude)
                          .channel(25, Data().t(8388606).t(8388606).s(0)));
    EXPECT_TRUE(std::isfinite(feed.value("RefLat").number)) << altitude;
    EXPECT_TRUE(std::isfinite(feed.value("RefLon").number)) << altitude;
  }
}

Eight settings(float frequency, float damping) {
  return Data().w(std::bit_cast<unsigned int>(frequency)).w(std::bit_cast<unsigned int>(damping));
}

TEST(AccelerationFilters, are_set_by_a_channel_each) {
  StatusFeed feed;
  feed.take(74, settings(10.0F, 0.5F));
  feed.take(63, settings(5.0F, 0.25F));
  EXPECT_EQ(feed.number("LinAccFiltFreq"), 10.0);
  EXPECT_EQ(feed.number("LinAccFiltZeta"), 0.5);
  EXPECT_EQ(feed.number("AngAccFiltFreq"), 5.0);
  EXPECT_EQ(feed.number("AngAccFiltZeta"), 0.25);
  EXPECT_FALSE(feed.data().IsLinAccFiltChanged());
  EXPECT_FALSE(feed.data().IsAngAccFiltChanged());
}

TEST(AccelerationFilters, have_no_setting_below_0_nor_one_that_is_no_number) {
  for (const float none : {-1.0F, -1e-30F, std::numeric_limits<float>::quiet_NaN()}) {
    StatusFeed feed;
    feed.take(74, settings(none, 0.5F));
    feed.take(63, settings(5.0F, none));
    EXPECT_FALSE(feed.good("LinAccFiltFreq"));
    EXPECT_TRUE(feed.good("LinAccFiltZeta"));
    EXPECT_TRUE(feed.good("AngAccFiltFreq"));
    EXPECT_FALSE(feed.good("AngAccFiltZeta"));
    EXPECT_TRUE(feed.data().IsLinAccFiltChanged()) << "one setting is not enough to apply";
  }
}

TEST(AccelerationFilters, are_off_with_two_exact_zeros) {
  StatusFeed feed;
  feed.take(74, settings(0.0F, 0.0F));
  feed.take(63, settings(0.0F, 0.0F));
  EXPECT_TRUE(feed.data().IsLinAccFiltOff());
  EXPECT_TRUE(feed.data().IsAngAccFiltOff());
}

TEST(AccelerationFilters, keep_what_is_fixed) {
  StatusFeed feed;
  feed.hit().FixLinAccFilt(7.0, 0.7);
  feed.take(74, settings(10.0F, 0.5F));
  EXPECT_EQ(feed.number("LinAccFiltFreq"), 7.0);
}

TEST(AccelerationFilters, that_nobody_wants_are_invalid) {
  StatusFeed feed;
  feed.take(74, settings(10.0F, 0.5F));
  feed.take(63, settings(5.0F, 0.25F));
  feed.want_nothing();
  feed.take(74, settings(10.0F, 0.5F));
  feed.take(63, settings(5.0F, 0.25F));
  for (const char* name :
       {"LinAccFiltFreq", "LinAccFiltZeta", "AngAccFiltFreq", "AngAccFiltZeta"}) {
    EXPECT_FALSE(feed.good(name)) << name;
  }
}

TEST(AccelerationFilters, filter_from_then_on) {
  StatusFeed feed;
  const auto send = [&feed](int k, double acceleration) {
    feed.codec().take(locked(static_cast<unsigned short>(100 + 10 * k))
                          .acceleration(acceleration, 0.0, 0.0)
                          .channel(74, settings(10.0F, 0.5F)));
  };
  // The channel comes behind the filters of its own packet, so they hold samples 1, 2 and 3 after
  // packet 3; the step in packet 4 is the first to be filtered.
  for (int k = 0; k < 4; ++k) send(k, 1.0);
  EXPECT_NEAR(feed.number("FiltAx"), 1.0, 1e-9);
  send(4, 2.0);
  EXPECT_GT(feed.number("FiltAx"), 1.0);
  EXPECT_LT(feed.number("FiltAx"), 2.0);
}

}  // namespace
}  // namespace Trel::Nav
