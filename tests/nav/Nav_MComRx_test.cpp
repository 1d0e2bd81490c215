// What MCom packets alone have, and what they lack.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "nav/Nav_StatusValues.h"

namespace Trel::Nav {
namespace {

using Support::MComPacket;

constexpr std::int16_t kNoHeave = -32768;

MComPacket heaving(unsigned short time, std::int16_t heave, std::int16_t delayed) {
  return locked(time).raw_heave(heave, delayed);
}

// Makes the two settings of the delayed heave known.
void set_up_delayed_heave(TestCodec& codec) {
  codec.data_.SetLPHeaveMode(1);
  codec.data_.SetLPHeavePeriod(12.0);
}

// ---- Heave

TEST(Heave, is_in_steps_of_two_millimetres) {
  const std::pair<std::int16_t, double> cases[] = {{0, 0.0},   {1, 0.002},      {-1, -0.002},
                                                   {500, 1.0}, {32767, 65.534}, {-32767, -65.534}};
  for (const auto& [raw, metres] : cases) {
    TestCodec codec(false);
    set_up_delayed_heave(codec);
    codec.take(heaving(10, raw, 7));
    EXPECT_DOUBLE_EQ(codec.CData().GetHeave(), metres);
    EXPECT_DOUBLE_EQ(codec.CData().GetLPHeave(), 0.014);
    codec.take(heaving(20, 7, raw));
    EXPECT_DOUBLE_EQ(codec.CData().GetHeave(), 0.014);
    EXPECT_DOUBLE_EQ(codec.CData().GetLPHeave(), metres);
  }
}

TEST(Heave, of_the_lowest_number_is_not_there) {
  TestCodec codec(false);
  set_up_delayed_heave(codec);
  codec.take(heaving(10, 5, 5));
  codec.take(heaving(20, kNoHeave, 5));
  EXPECT_FALSE(codec.CData().IsHeaveValid());
  EXPECT_TRUE(codec.CData().IsLPHeaveValid());
  codec.take(heaving(30, 5, kNoHeave));
  EXPECT_TRUE(codec.CData().IsHeaveValid());
  EXPECT_FALSE(codec.CData().IsLPHeaveValid());
}

TEST(Heave, has_the_time_of_its_packet) {
  TestCodec codec(false);
  codec.take({with_minutes(locked(10)), heaving(20, 5, 5)});
  EXPECT_EQ(codec.CData().VarHeave().get_nano(), at_ms(20));
}

TEST(Heave, is_set_in_status_3_and_4_and_stays_in_all_others) {
  for (unsigned int status = 0; status < 25; ++status) {
    TestCodec codec(false);
    codec.take(heaving(10, 1, 0));
    codec.take(packet_of(static_cast<unsigned char>(status), 20).raw_heave(2, 0));
    const bool set = status == 3 || status == 4;
    EXPECT_DOUBLE_EQ(codec.CData().GetHeave(), set ? 0.004 : 0.002) << status;
  }
}

TEST(Heave, is_set_by_trigger_packets_of_a_status_above_2) {
  for (const unsigned char status : {20, 21, 22}) {
    TestCodec codec(false);
    codec.take(packet_of(status, 10).channel(24, {0, 0, 0, 1, 0, 0, 0, 1}).raw_heave(2, 0));
    EXPECT_EQ(codec.CData().IsHeaveValid(), status > 20) << +status;
  }
}

TEST(Heave, that_nobody_wants_is_left_alone) {
  TestCodec codec(false);
  set_up_delayed_heave(codec);
  codec.take(heaving(10, 1, 2));
  codec.Key().KMain().Bar_Heave_Real();
  codec.take(heaving(20, 3, 4));
  EXPECT_DOUBLE_EQ(codec.CData().GetHeave(), 0.002);
  EXPECT_DOUBLE_EQ(codec.CData().GetLPHeave(), 0.008);
  codec.Key().KMain().Bar_Heave_Delayed();
  codec.Key().KMain().Let_Heave_Real();
  codec.take(heaving(30, 5, 6));
  EXPECT_DOUBLE_EQ(codec.CData().GetHeave(), 0.010);
  EXPECT_DOUBLE_EQ(codec.CData().GetLPHeave(), 0.008);
}

TEST(DelayedHeave, needs_both_of_its_settings) {
  TestCodec codec(false);
  codec.take(heaving(10, 1, 1));
  EXPECT_FALSE(codec.CData().IsLPHeaveValid());
  codec.data_.SetLPHeaveMode(1);
  codec.take(heaving(20, 1, 1));
  EXPECT_FALSE(codec.CData().IsLPHeaveValid());
  codec.data_.SetLPHeavePeriod(12.0);
  codec.take(heaving(30, 1, 1));
  EXPECT_TRUE(codec.CData().IsLPHeaveValid());
  codec.data_.InvLPHeaveMode();
  codec.take(heaving(40, 1, 1));
  EXPECT_FALSE(codec.CData().IsLPHeaveValid()) << "a value that was there goes with its setting";
  EXPECT_TRUE(codec.CData().IsHeaveValid()) << "the other one needs neither";
}

// ---- Counter

MComPacket counted(unsigned char status, std::uint16_t count) {
  return packet_of(status, 10).counter(count);
}

TEST(PacketCounter, keeps_rising_when_its_short_field_wraps) {
  TestCodec codec(false);
  const std::pair<std::uint16_t, unsigned int> steps[] = {
      {65'534, 65'534}, {65'535, 65'535}, {0, 65'536},      {0, 65'536},
      {300, 65'836},    {299, 131'371},   {65'535, 196'607}};
  for (const auto& [raw, count] : steps) {
    codec.take(counted(4, raw));
    EXPECT_EQ(codec.CData().GetTxPacketCounter(), count);
  }
}

TEST(PacketCounter, is_taken_from_every_packet_that_goes_on) {
  for (unsigned int status = 0; status < 25; ++status) {
    TestCodec codec(false);
    codec.take(
        counted(static_cast<unsigned char>(status), 7).channel(24, {0, 0, 0, 1, 0, 0, 0, 1}));
    const bool goes_on = (status >= 1 && status <= 4) || (status >= 20 && status <= 22);
    EXPECT_EQ(codec.CData().IsTxPacketCounterValid(), goes_on) << status;
  }
}

TEST(PacketCounter, begins_anew_with_a_rewind) {
  TestCodec codec(false);
  codec.take({counted(4, 65'535), counted(4, 5)});
  ASSERT_EQ(codec.CData().GetTxPacketCounter(), 65'541U);
  codec.PrescanRewind(true);
  codec.take(counted(4, 65'535));
  EXPECT_EQ(codec.CData().GetTxPacketCounter(), 65'535U);
}

TEST(PacketCounter, that_nobody_wants_is_left_alone) {
  TestCodec codec(false);
  codec.take(counted(4, 7));
  codec.Key().KMain().Bar_System_TxRx();
  codec.take(counted(4, 9));
  EXPECT_EQ(codec.CData().GetTxPacketCounter(), 7U);
}

// ---- Status bits

// Modes of 5, a search of 3, and where the lock came from.
std::unique_ptr<TestCodec> with_modes(bool from_search) {
  auto codec = std::make_unique<TestCodec>(false);
  codec->take(with_minutes(locked(10)));
  codec->take(locked(20).status_bits(14).channel(0, Data().w(kMinute).b(9).b(5).b(5).b(5)));
  codec->take(locked(30).status_bits(14).channel(27, Data().b(1).b(2).b(3).b(1).b(0).b(0)));
  codec->data_.SetHeadLockFromSearch(from_search);
  return codec;
}

enum class Lock { Kept, No, Yes };

struct BitsCase {
  unsigned char bits;
  int mode;  // of position and velocity
  int attitude_mode;
  int search;
  Lock lock;
};

constexpr BitsCase kBits[] = {
    {0b0000, 5, 6, 0, Lock::Yes},  {0b0001, 0, 6, 0, Lock::Yes},  {0b0010, 5, 5, 0, Lock::Kept},
    {0b0011, 0, 0, 0, Lock::Kept}, {0b0100, 5, 6, 3, Lock::Yes},  {0b0101, 0, 6, 3, Lock::Yes},
    {0b0110, 5, 5, 3, Lock::Kept}, {0b0111, 0, 0, 3, Lock::Kept}, {0b1000, 5, 6, 0, Lock::No},
    {0b1001, 0, 6, 0, Lock::No},   {0b1010, 5, 5, 0, Lock::Kept}, {0b1011, 0, 0, 0, Lock::Kept},
    {0b1100, 5, 6, 3, Lock::No},   {0b1101, 0, 6, 3, Lock::No},   {0b1110, 5, 5, 3, Lock::Kept},
    {0b1111, 0, 0, 3, Lock::Kept},
};
static_assert(std::size(kBits) == 16);

TEST(StatusBits, take_back_modes_search_and_lock) {
  for (const BitsCase& each : kBits) {
    for (const unsigned char others : {0x00, 0xF0}) {
      for (const bool from_search : {false, true}) {
        const auto codec = with_modes(from_search);
        codec->take(locked(40).status_bits(each.bits | others));
        const ComData& data = codec->CData();
        SCOPED_TRACE(each.bits | others);
        EXPECT_EQ(data.GetGpsPosMode(), each.mode);
        EXPECT_EQ(data.GetGpsVelMode(), each.mode);
        EXPECT_EQ(data.GetGpsAttMode(), each.attitude_mode);
        EXPECT_EQ(data.GetHeadSearchStatus(), each.search);
        EXPECT_EQ(data.GetHeadLockFromSearch(),
                  each.lock == Lock::Kept ? from_search : each.lock == Lock::Yes);
      }
    }
  }
}

TEST(StatusBits, bring_nothing_that_was_not_there) {
  for (unsigned int bits = 0; bits < 16; ++bits) {
    TestCodec codec(false);
    codec.take(locked(10).status_bits(static_cast<unsigned char>(bits)));
    const ComData& data = codec.CData();
    EXPECT_FALSE(data.IsGpsPosModeValid() || data.IsGpsVelModeValid() || data.IsGpsAttModeValid() ||
                 data.IsHeadSearchStatusValid() || data.IsHeadLockFromSearchValid())
        << bits;
  }
}

TEST(StatusBits, touch_each_mode_that_is_there_alone) {
  TestCodec codec(false);
  codec.data_.SetGpsVelMode(5);
  codec.take(locked(10).status_bits(1));
  EXPECT_EQ(codec.CData().GetGpsVelMode(), 0);
  EXPECT_FALSE(codec.CData().IsGpsPosModeValid() || codec.CData().IsGpsAttModeValid());
}

TEST(StatusBits, stamp_what_they_change_with_the_time_of_their_packet) {
  const auto codec = with_modes(true);
  codec->take(locked(40).status_bits(1));
  EXPECT_EQ(codec->CData().VarGpsPosMode().get_nano(), at_ms(40));
  EXPECT_EQ(codec->CData().VarHeadSearchStatus().get_nano(), at_ms(40));
  const auto kept = with_modes(true);
  kept->take(locked(40).status_bits(14));
  EXPECT_EQ(kept->CData().VarGpsPosMode().get_nano(), at_ms(20));
}

TEST(StatusBits, count_for_every_packet_that_goes_on) {
  for (unsigned int status = 0; status < 25; ++status) {
    const auto codec = with_modes(true);
    codec->take(packet_of(static_cast<unsigned char>(status), 40)
                    .status_bits(0)
                    .channel(24, {0, 0, 0, 1, 0, 0, 0, 1}));
    const bool goes_on = (status >= 1 && status <= 4) || (status >= 20 && status <= 22);
    EXPECT_EQ(codec->CData().GetGpsAttMode(), goes_on ? 6 : 5) << status;
  }
}

TEST(StatusBits, leave_the_last_word_to_the_channel_of_their_packet) {
  const auto codec = with_modes(true);
  codec->take(locked(40).status_bits(1).channel(0, Data().w(kMinute).b(9).b(4).b(4).b(4)));
  EXPECT_EQ(codec->CData().GetGpsPosMode(), 4);
  EXPECT_EQ(codec->CData().GetGpsAttMode(), 4);
}

// ---- What is different elsewhere

TEST(MComCodec, has_the_scales_of_its_packets) {
  EXPECT_EQ(MComCodec::TIME2SEC, 0.001);
  EXPECT_EQ(MComCodec::OUTPOS2M, 0.01);
  EXPECT_EQ(MComCodec::COM_DEFAULT_DATARATE, 100.0);
  EXPECT_EQ(MComCodec::HEAVE2M, 0.002);
}

template <class C>
constexpr bool kHasNComMembers = requires(C codec, const unsigned char* data) {
  C::JERKMOVAVGFACTOR;
  C::ULOWRATESUPPLYV2V;
  codec.DecodeRange(data, 0, true);
  codec.IsFeatureCodeEnabled(1);
};
template <class C>
constexpr bool kHasAnyNComMember = requires {
  C::JERKMOVAVGFACTOR;
}
|| requires {
  C::ULOWRATESUPPLYV2V;
}
|| requires(C codec, const unsigned char* data) {
  codec.DecodeRange(data, 0, true);
}
|| requires(C codec) {
  codec.IsFeatureCodeEnabled(1);
};

TEST(MComCodec, lacks_what_only_ncom_packets_need) {
  EXPECT_TRUE(kHasNComMembers<NComCodec>);
  EXPECT_FALSE(kHasAnyNComMember<MComCodec>);
}

TEST(MComCodec, a_packet_of_the_other_family_fails_its_check) {
  Support::Bytes other = Support::NComPacket().status(4).bytes();
  other.resize(kPacketSize);
  TestCodec codec(false);
  EXPECT_EQ(codec.DecodeBasic(other.data(), true), 0);
}

TEST(MComCodec, computes_track_distance_and_gradient_whatever_features_are_known) {
  TestCodec codec(false);
  for (unsigned int code = 0; code < ComData::kFeatures; ++code) {
    codec.data_.SetFeatureCode(code, {.known = true, .status = Enum::FEATURE_STATUS_UNKNOWN});
  }
  const auto moving = [](MComPacket packet) {
    return packet.raw_velocity(100'000, 100'000, 0).raw_angular_rate(0, 0, 1000);
  };
  codec.take(moving(with_minutes(locked(10))).channel(3, {}));
  codec.take(moving(with_minutes(locked(20))));
  codec.take(moving(locked(30)).channel(4, Data().s(10).s(10).s(10).b(0)));
  codec.take(moving(locked(40)));
  const ComData& data = codec.CData();
  EXPECT_NEAR(data.GetSpeed2d(), 14.142135623730951, 1e-9);
  EXPECT_NEAR(data.GetTrack(), 45.0, 1e-9);
  EXPECT_TRUE(data.IsTrackValid() && data.IsSlipValid() && data.IsCurvatureValid());
  EXPECT_TRUE(data.IsDist2dValid() && data.IsAngleGradientValid() && data.IsAfValid());
}

TEST(MComCodec, computes_no_jerk) {
  TestCodec codec(false);
  codec.data_.FixLinJerkFilt(Enum::FILTER_TYPE_NONE, 0, 0.0);
  codec.take(with_minutes(locked(0)));
  for (unsigned short time = 10; time < 100; time = static_cast<unsigned short>(time + 10)) {
    codec.take(locked(time).raw_acceleration(time * time, time, -time).position(0.9, 0.1, 50.0F));
  }
  const ComData& data = codec.CData();
  ASSERT_TRUE(data.IsAfValid() && data.IsIsoAnXValid());
  for (const auto* value :
       {&data.VarJx(), &data.VarJy(), &data.VarJz(), &data.VarJf(), &data.VarJl(), &data.VarJd(),
        &data.VarFiltJx(), &data.VarFiltJf(), &data.VarIsoJnX(), &data.VarIsoJhX(),
        &data.VarIsoJoX(), &data.VarFiltIsoJnX(), &data.VarFiltIsoJhX(), &data.VarFiltIsoJoX()}) {
    EXPECT_FALSE(value->ok());
  }
}

TEST(MComChannels, supply_voltage_has_one_field) {
  StatusFeed feed;
  feed.take(75, {0, 0, 60, 0, 0, 0, 0, 50});
  EXPECT_DOUBLE_EQ(feed.number("SupplyVolt"), 12.0);
  feed.take(75, {0, 0, 255, 0, 0, 0, 0, 50});
  EXPECT_FALSE(feed.good("SupplyVolt"));
}

// Any bytes on every channel, in packets that move.
TEST(MComChannels, bring_no_value_that_is_an_element_of_ncom_alone) {
  constexpr unsigned int kSeed = 5504;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937 random(kSeed);
  StatusFeed feed;
  for (int round = 0; round < 40; ++round) {
    for (int channel = 1; channel < 95; ++channel) {
      Eight bytes;
      for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random() & 0x7F);
      bytes[6] = 0;
      feed.take(channel, bytes);
    }
  }
  ASSERT_TRUE(feed.good("NorthAcc"));
  std::vector<std::string> arrived;
#define VALUE(name, type, key, unit, resolution, text, families, description) \
  if (families == Family::NCom && feed.data().Var##name().ok()) arrived.emplace_back(#name);
#include "nav/Nav_ComData.def"
  EXPECT_EQ(arrived, std::vector<std::string>());
}

template <class T>
void expect_same(const char* name, const Lib::VariableExt<T>& one, const Lib::VariableExt<T>& two) {
  EXPECT_EQ(one.get(), two.get()) << name;
  EXPECT_EQ(one.get_flags(), two.get_flags()) << name;
}

TEST(MComCodec, bytes_69_to_73_say_nothing) {
  TestCodec plain(false);
  TestCodec filled(false);
  for (unsigned short time = 10; time < 500; time = static_cast<unsigned short>(time + 10)) {
    const MComPacket packet = with_minutes(locked(time).raw_velocity(time, 2, 3).raw_heave(4, 5));
    plain.take(packet);
    filled.take(MComPacket(packet).raw(69, {0xFF, 0x5A, 0x01, 0x80, 0xE8}));
  }
#define VALUE(name, ...) expect_same(#name, plain.CData().Var##name(), filled.CData().Var##name());
#include "nav/Nav_ComData.def"
}

}  // namespace
}  // namespace Trel::Nav
