// What NCom packets alone have.
#include <gtest/gtest.h>

#include <bit>
#include <memory>

#include "nav/Nav_StatusValues.h"

namespace Trel::Nav {
namespace {

using Support::Bytes;
using Support::join;

// ---- Packets in the body of a range packet

TEST(NComCodec, a_null_range_body_decodes_nothing_and_counts_nothing) {
  TestCodec codec(false);
  EXPECT_EQ(codec.DecodeRange(nullptr, 77, false), 0);
  EXPECT_EQ(codec.get_bytes(), 0U);
}

TEST(NComCodec, a_range_body_of_up_to_four_bytes_has_no_packets_and_no_header) {
  const Bytes bytes(4, 1);
  for (unsigned int size = 0; size <= 4; ++size) {
    TestCodec codec(false);
    EXPECT_EQ(codec.DecodeRange(bytes.data(), size, true), 0);
    EXPECT_EQ(codec.get_bytes(), size);
    EXPECT_FALSE(codec.CData().IsProvenanceValid());
  }
}

Bytes header(unsigned char provenance) {
  return {0x04, 0x03, 0x02, 0x01, provenance};
}

TEST(NComCodec, a_range_body_counts_its_header_twice) {
  TestCodec codec(false);
  const Bytes bytes = join({header(1), locked(10).bytes()});
  EXPECT_EQ(codec.DecodeRange(bytes.data(), 77, true), 1);
  EXPECT_EQ(codec.get_bytes(), 77U + 5U);
}

TEST(NComCodec, a_bad_packet_in_a_range_body_is_passed_over) {
  TestCodec codec(false);
  const Bytes bytes = join({header(1), locked(10).raw_velocity(1, 1, 1).bad_sum().bytes(),
                            locked(20).raw_velocity(2, 2, 2).bytes()});
  EXPECT_EQ(codec.DecodeRange(bytes.data(), 149, true), 1);
  EXPECT_EQ(codec.get_packets(), 1U);
  EXPECT_DOUBLE_EQ(codec.CData().GetVn(), 2e-4);
}

TEST(NComCodec, a_range_body_of_bad_packets_gives_nothing_unless_nobody_checks) {
  TestCodec codec(false);
  const Bytes bytes = join({header(1), locked(10).bad_sum().bytes(), locked(20).bad_sum().bytes()});
  EXPECT_EQ(codec.DecodeRange(bytes.data(), 149, true), 0);
  EXPECT_EQ(codec.DecodeRange(bytes.data(), 149, false), 1);
  EXPECT_EQ(codec.get_packets(), 2U);
}

TEST(NComCodec, what_is_left_of_a_range_body_behind_whole_packets_is_ignored) {
  TestCodec codec(false);
  const Bytes bytes = join({header(1), locked(10).bytes(), locked(20).bytes()});
  EXPECT_EQ(codec.DecodeRange(bytes.data(), 148, true), 1);
  EXPECT_EQ(codec.get_packets(), 1U);
}

TEST(NComCodec, the_provenance_of_a_range_body_says_what_its_address_means) {
  const auto decode = [](unsigned char provenance) {
    auto codec = std::make_unique<TestCodec>(false);
    const Bytes bytes = header(provenance);
    EXPECT_EQ(codec->DecodeRange(bytes.data(), 5, true), 0);
    return codec;
  };
  constexpr unsigned int kAddress = 0x01020304;

  const auto network = decode(0);
  EXPECT_EQ(network->CData().GetAddress(), kAddress);
  EXPECT_EQ(network->CData().GetAddressIPv4(), kAddress);
  EXPECT_FALSE(network->CData().IsAddressSerialValid() || network->CData().IsAddressFileValid());

  for (const unsigned char port : {1, 15}) {
    const auto serial = decode(port);
    EXPECT_EQ(serial->CData().GetProvenance(), port);
    EXPECT_EQ(serial->CData().GetAddressSerial(), port);
    EXPECT_FALSE(serial->CData().IsAddressIPv4Valid() || serial->CData().IsAddressFileValid());
  }

  const auto file = decode(16);
  EXPECT_EQ(file->CData().GetAddressFile(), kAddress);
  EXPECT_FALSE(file->CData().IsAddressIPv4Valid() || file->CData().IsAddressSerialValid());

  const auto other = decode(254);
  EXPECT_TRUE(other->CData().IsProvenanceValid() && other->CData().IsAddressValid());
  EXPECT_FALSE(other->CData().IsAddressIPv4Valid() || other->CData().IsAddressFileValid() ||
               other->CData().IsAddressSerialValid());
}

TEST(NComCodec, no_provenance_or_no_key_makes_the_address_invalid) {
  TestCodec codec(false);
  (void)codec.DecodeRange(header(0).data(), 5, true);
  ASSERT_TRUE(codec.CData().IsAddressIPv4Valid());
  (void)codec.DecodeRange(header(255).data(), 5, true);
  EXPECT_FALSE(codec.CData().IsProvenanceValid() || codec.CData().IsAddressValid() ||
               codec.CData().IsAddressIPv4Valid());

  (void)codec.DecodeRange(header(16).data(), 5, true);
  (void)codec.DecodeRange(header(1).data(), 5, true);
  codec.Key().KMain().Bar_System_Process();
  (void)codec.DecodeRange(header(0).data(), 5, true);
  EXPECT_FALSE(codec.CData().IsProvenanceValid() || codec.CData().IsAddressValid() ||
               codec.CData().IsAddressFileValid() || codec.CData().IsAddressSerialValid());
}

TEST(NComCodec, a_range_body_ends_with_the_packet_that_completes_the_prescan) {
  TestCodec codec(true);
  codec.take(with_minutes(locked(10)));
  codec.take(locked(20));
  codec.prescan_.utc_known = codec.prescan_.features_known = codec.prescan_.mounting.known = true;
  const Bytes bytes = join({header(1), locked(30).bytes(), locked(40).bytes()});
  EXPECT_EQ(codec.DecodeRange(bytes.data(), 149, true), 2);
  EXPECT_EQ(codec.get_packets(), 3U);
}

// ---- Scales and features

TEST(NComCodec, has_the_scales_of_its_packets) {
  EXPECT_EQ(NComCodec::TIME2SEC, 0.001);
  EXPECT_EQ(NComCodec::OUTPOS2M, 0.001);
  EXPECT_EQ(NComCodec::JERKMOVAVGFACTOR, 0.001);
  EXPECT_EQ(NComCodec::ULOWRATESUPPLYV2V, 0.3);
  EXPECT_EQ(NComCodec::WEEK2CYCLES, 10080);
}

TEST(NComCodec, a_feature_passes_unless_its_record_has_no_known_status) {
  TestCodec codec(false);
  EXPECT_TRUE(codec.IsFeatureCodeEnabled(1));
  EXPECT_TRUE(codec.IsFeatureCodeEnabled(63));
  codec.data_.SetFeatureCode(1, {.known = true, .status = Enum::FEATURE_STATUS_VALUE_01});
  EXPECT_TRUE(codec.IsFeatureCodeEnabled(1));
  codec.data_.SetFeatureCode(1, {.known = true, .status = Enum::FEATURE_STATUS_UNKNOWN});
  EXPECT_FALSE(codec.IsFeatureCodeEnabled(1));
  EXPECT_TRUE(codec.IsFeatureCodeEnabled(2));
}

// ---- Channels

TEST(SupplyVoltage, is_the_last_byte_or_else_the_third) {
  StatusFeed feed;
  feed.take(75, {0, 0, 60, 0, 0, 0, 0, 40});
  EXPECT_DOUBLE_EQ(feed.number("SupplyVolt"), 12.0);
  feed.take(75, {0, 0, 60, 0, 0, 0, 0, 255});
  EXPECT_DOUBLE_EQ(feed.number("SupplyVolt"), 12.0);
  feed.take(75, {0, 0, 65, 0, 0, 0, 0, 255});
  EXPECT_DOUBLE_EQ(feed.number("SupplyVolt"), 13.0);
  feed.take(75, {0, 0, 255, 0, 0, 0, 0, 50});
  EXPECT_DOUBLE_EQ(feed.number("SupplyVolt"), 15.0);
  feed.take(75, {0, 0, 255, 0, 0, 0, 0, 255});
  EXPECT_FALSE(feed.good("SupplyVolt"));
}

TEST(ProductVersion, is_1_where_it_is_not_sent) {
  StatusFeed feed;
  feed.take(5, {0, 0, 0, 0, 0, 0, 255, 2});
  EXPECT_EQ(feed.number("ProductVersion"), 2.0);
  feed.take(5, {0, 0, 0, 0, 0, 0, 0, 255});
  EXPECT_EQ(feed.number("ProductVersion"), 1.0);
  feed.key().KMain().Bar_System_ProductInfo();
  feed.take(5, {0, 0, 0, 0, 0, 0, 0, 255});
  EXPECT_FALSE(feed.good("ProductVersion"));
}

Eight jerk_settings(unsigned char kind, float frequency, long long length) {
  const auto bits = std::bit_cast<unsigned int>(frequency);
  return Data().b(kind).w(bits).t(length);
}

TEST(JerkFilter, has_type_order_frequency_and_a_moving_average) {
  StatusFeed feed;
  feed.take(87, jerk_settings(0x41, 2.5F, 1500));
  EXPECT_EQ(feed.number("LinJerkFiltType"), 1.0);
  EXPECT_EQ(feed.number("LinJerkFiltOrder"), 4.0);
  EXPECT_EQ(feed.number("LinJerkFiltFreq"), 2.5);
  EXPECT_DOUBLE_EQ(feed.number("LinJerkMovAvgLen"), 1.5);
  EXPECT_FALSE(feed.data().IsLinJerkFiltChanged());
}

TEST(JerkFilter, type_goes_up_to_13) {
  StatusFeed feed;
  feed.take(87, jerk_settings(0x4F, 2.5F, 1500));
  EXPECT_EQ(feed.number("LinJerkFiltType"), 13.0);
  EXPECT_EQ(feed.data().GetLinJerkFiltType(), Enum::FILTER_TYPE_UNKNOWN);
}

TEST(JerkFilter, has_no_type_and_no_order_at_0) {
  StatusFeed feed;
  feed.take(87, jerk_settings(0x41, 2.5F, 1500));
  feed.take(87, jerk_settings(0, 2.5F, 1500));
  EXPECT_FALSE(feed.good("LinJerkFiltType"));
  EXPECT_FALSE(feed.good("LinJerkFiltOrder"));
  EXPECT_TRUE(feed.good("LinJerkFiltFreq"));
}

TEST(JerkFilter, has_no_frequency_below_0_and_no_length_of_all_bits) {
  StatusFeed feed;
  feed.take(87, jerk_settings(0x41, -2.5F, 0xFFFFFF));
  EXPECT_FALSE(feed.good("LinJerkFiltFreq"));
  EXPECT_FALSE(feed.good("LinJerkMovAvgLen"));
  EXPECT_TRUE(feed.data().IsLinJerkFiltChanged());
  feed.take(87, jerk_settings(0x41, 0.0F, 0xFFFFFE));
  EXPECT_EQ(feed.number("LinJerkFiltFreq"), 0.0);
  EXPECT_DOUBLE_EQ(feed.number("LinJerkMovAvgLen"), 16777.214);
}

TEST(JerkFilter, that_nobody_wants_is_invalid) {
  StatusFeed feed;
  feed.take(87, jerk_settings(0x41, 2.5F, 1500));
  feed.want_nothing();
  feed.take(87, jerk_settings(0x41, 2.5F, 1500));
  for (const char* name :
       {"LinJerkFiltType", "LinJerkFiltOrder", "LinJerkFiltFreq", "LinJerkMovAvgLen"}) {
    EXPECT_FALSE(feed.good(name)) << name;
  }
}

}  // namespace
}  // namespace Trel::Nav
