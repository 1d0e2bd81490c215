#include "library/Lib_Stamp.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using namespace Trel::Lib;

constexpr long long kTime = 1234567890123456789;

Stamp stamp(long long time, int flags) {
  Stamp result;
  result.set_nano(time);
  result.set_flags(Flags(static_cast<unsigned char>(flags)));
  return result;
}

StampExt stamp_ext(long long time, int flags, long long extra) {
  StampExt result;
  result.set_nano(time);
  result.set_flags(Flags(static_cast<unsigned char>(flags)));
  result.set_extra(extra);
  return result;
}

TEST(Flags, a_fresh_byte_is_rejected_and_a_raw_byte_is_kept) {
  EXPECT_EQ(Flags().byte(), 0x80);
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(Flags(static_cast<unsigned char>(byte)).byte(), byte);
  }
}

TEST(Flags, the_bits_have_their_places) {
  EXPECT_EQ(Flags::Rejected, 0x80);
  EXPECT_EQ(Flags::Invalid, 0x40);
  EXPECT_EQ(Flags::Pass, 0x20);
  EXPECT_EQ(Flags::Timeless, 0x10);
  EXPECT_EQ(Flags::Over, 0x08);
  EXPECT_EQ(Flags::Under, 0x04);
  EXPECT_EQ(Flags::Approx, 0x02);
  EXPECT_EQ(Flags::Stale, 0x01);
}

TEST(Flags, the_states_are_masks_over_every_byte) {
  for (int byte = 0; byte < 256; ++byte) {
    SCOPED_TRACE(byte);
    const Flags flags(static_cast<unsigned char>(byte));
    EXPECT_EQ(flags.ok(), (byte & 0xE0) == 0);
    EXPECT_EQ(flags.null(), (byte & 0xE0) != 0);
    EXPECT_EQ(flags.good(), (byte & 0xEF) == 0);
    EXPECT_EQ(flags.poor(), (byte & 0xE0) == 0 && (byte & 0x0F) != 0);
    EXPECT_EQ(flags.isTimeless(), (byte & 0x10) != 0);
    EXPECT_EQ(flags.isntTimeless(), (byte & 0x10) == 0);
    EXPECT_EQ(flags.isOver(), (byte & 0x08) != 0);
    EXPECT_EQ(flags.isUnder(), (byte & 0x04) != 0);
    EXPECT_EQ(flags.isPass(), (byte & 0x20) != 0);
  }
}

TEST(Flags, three_operations_replace_the_whole_byte) {
  for (int byte = 0; byte < 256; ++byte) {
    Flags flags(static_cast<unsigned char>(byte));
    flags.reject();
    EXPECT_EQ(flags.byte(), 0x80);
    flags = Flags(static_cast<unsigned char>(byte));
    flags.invalidate();
    EXPECT_EQ(flags.byte(), 0x40);
    flags = Flags(static_cast<unsigned char>(byte));
    flags.wipe();
    EXPECT_EQ(flags.byte(), 0x00);
  }
}

TEST(Flags, the_others_change_one_bit_and_leave_the_rest) {
  const std::pair<void (*)(Flags&), int> sets[] = {
      {[](Flags& flags) { flags.setRejected(); }, 0x80},
      {[](Flags& flags) { flags.setInvalid(); }, 0x40},
      {[](Flags& flags) { flags.setPass(); }, 0x20},
      {[](Flags& flags) { flags.setTimeless(); }, 0x10},
      {[](Flags& flags) { flags.setTimeless(true); }, 0x10},
      {[](Flags& flags) { flags.setOver(); }, 0x08},
      {[](Flags& flags) { flags.setOver(true); }, 0x08},
      {[](Flags& flags) { flags.setUnder(); }, 0x04},
      {[](Flags& flags) { flags.setUnder(true); }, 0x04},
      {[](Flags& flags) { flags.setApprox(); }, 0x02},
      {[](Flags& flags) { flags.setStale(); }, 0x01}};
  const std::pair<void (*)(Flags&), int> clears[] = {
      {[](Flags& flags) { flags.clearTimeless(); }, 0x10},
      {[](Flags& flags) { flags.setTimeless(false); }, 0x10},
      {[](Flags& flags) { flags.clearOver(); }, 0x08},
      {[](Flags& flags) { flags.setOver(false); }, 0x08},
      {[](Flags& flags) { flags.clearUnder(); }, 0x04},
      {[](Flags& flags) { flags.setUnder(false); }, 0x04}};
  for (int byte = 0; byte < 256; ++byte) {
    SCOPED_TRACE(byte);
    for (const auto& [operation, bit] : sets) {
      Flags flags(static_cast<unsigned char>(byte));
      operation(flags);
      EXPECT_EQ(flags.byte(), byte | bit) << bit;
    }
    for (const auto& [operation, bit] : clears) {
      Flags flags(static_cast<unsigned char>(byte));
      operation(flags);
      EXPECT_EQ(flags.byte(), byte & ~bit) << bit;
    }
  }
}

TEST(Flags, negating_swaps_over_and_under_and_leaves_the_rest) {
  for (int byte = 0; byte < 256; ++byte) {
    Flags flags(static_cast<unsigned char>(byte));
    flags.negate();
    const int over = (byte & 0x04) != 0 ? 0x08 : 0;
    const int under = (byte & 0x08) != 0 ? 0x04 : 0;
    EXPECT_EQ(flags.byte(), (byte & ~0x0C) | over | under) << byte;
  }
}

TEST(Flags, the_union_has_the_bits_of_both) {
  EXPECT_EQ((Flags(0x81) | Flags(0x18)).byte(), 0x99);
  EXPECT_EQ((Flags(0) | Flags(0)).byte(), 0);
}

TEST(Stamp, a_fresh_one_is_not_ok_but_not_timeless_either) {
  const Stamp fresh;
  EXPECT_FALSE(fresh.ok());
  EXPECT_EQ(fresh.get_nano(), 0);
  EXPECT_EQ(fresh.get_flags().byte(), 0x80);
  EXPECT_FALSE(fresh.isTimeless());
}

TEST(Stamp, reset_and_invalidate_clear_the_time_and_make_it_timeless) {
  Stamp value = stamp(kTime, 0x0F);
  value.reset();
  EXPECT_EQ(value.get_nano(), 0);
  EXPECT_EQ(value.get_flags().byte(), 0x90);
  value = stamp(kTime, 0x0F);
  value.invalidate();
  EXPECT_EQ(value.get_nano(), 0);
  EXPECT_EQ(value.get_flags().byte(), 0x50);
}

TEST(Stamp, set_takes_the_time_and_timeless_alone) {
  for (int byte = 0; byte < 256; ++byte) {
    Stamp value = stamp(1, 0xFF);
    value.set(stamp(kTime, byte));
    EXPECT_EQ(value.get_nano(), kTime);
    EXPECT_EQ(value.get_flags().byte(), byte & 0x10) << byte;
    EXPECT_TRUE(value.good());
  }
}

TEST(Stamp, wipe_leaves_the_time) {
  Stamp value = stamp(kTime, 0xFF);
  value.wipe();
  EXPECT_EQ(value.get_nano(), kTime);
  EXPECT_EQ(value.get_flags().byte(), 0);
}

TEST(Stamp, the_tests_and_bits_are_those_of_its_flags) {
  for (int byte = 0; byte < 256; ++byte) {
    SCOPED_TRACE(byte);
    const Flags flags(static_cast<unsigned char>(byte));
    const Stamp value = stamp(kTime, byte);
    EXPECT_EQ(value.ok(), flags.ok());
    EXPECT_EQ(value.good(), flags.good());
    EXPECT_EQ(value.null(), flags.null());
    EXPECT_EQ(value.poor(), flags.poor());
    EXPECT_EQ(value.isTimeless(), flags.isTimeless());
  }
  const std::pair<void (*)(Stamp&), int> sets[] = {
      {[](Stamp& value) { value.setInvalid(); }, 0x40},
      {[](Stamp& value) { value.setRejected(); }, 0x80},
      {[](Stamp& value) { value.setTimeless(); }, 0x10},
      {[](Stamp& value) { value.setTimeless(true); }, 0x10},
      {[](Stamp& value) { value.setOver(); }, 0x08},
      {[](Stamp& value) { value.setUnder(); }, 0x04},
      {[](Stamp& value) { value.setApprox(); }, 0x02},
      {[](Stamp& value) { value.setPass(); }, 0x20},
      {[](Stamp& value) { value.setStale(); }, 0x01}};
  for (const auto& [operation, bit] : sets) {
    Stamp value = stamp(kTime, 0);
    operation(value);
    EXPECT_EQ(value.get_flags().byte(), bit);
    EXPECT_EQ(value.get_nano(), kTime);
  }
  Stamp value = stamp(kTime, 0xFF);
  value.clearTimeless();
  EXPECT_EQ(value.get_flags().byte(), 0xEF);
  value = stamp(kTime, 0xFF);
  value.setTimeless(false);
  EXPECT_EQ(value.get_flags().byte(), 0xEF);
}

TEST(StampExt, the_extra_field_is_0_until_given_and_carried_along_by_copies) {
  EXPECT_EQ(StampExt().get_extra(), 0);
  EXPECT_EQ(StampExt().get_flags().byte(), 0x80);
  const StampExt source = stamp_ext(kTime, 0x51, 7);
  const StampExt copy(source);
  EXPECT_EQ(copy.get_extra(), 7);
  EXPECT_EQ(copy.get_flags().byte(), 0x51);
  StampExt assigned;
  assigned = source;
  EXPECT_EQ(assigned.get_extra(), 7);
  StampExt set;
  set.set(source);
  EXPECT_EQ(set.get_extra(), 7);
  EXPECT_EQ(set.get_nano(), kTime);
  EXPECT_EQ(set.get_flags().byte(), 0x10);
}

TEST(StampExt, reset_and_invalidate_clear_the_extra_field) {
  StampExt value = stamp_ext(kTime, 0, 7);
  value.reset();
  EXPECT_EQ(value.get_extra(), 0);
  EXPECT_EQ(value.get_nano(), 0);
  EXPECT_EQ(value.get_flags().byte(), 0x90);
  value = stamp_ext(kTime, 0, 7);
  value.invalidate();
  EXPECT_EQ(value.get_extra(), 0);
  EXPECT_EQ(value.get_nano(), 0);
  EXPECT_EQ(value.get_flags().byte(), 0x50);
}

FlagsArray flags_array(std::size_t count, int byte) {
  FlagsArray array(count);
  for (std::size_t i = 0; i < count; ++i) {
    array.set_flags(i, Flags(static_cast<unsigned char>(byte)));
  }
  return array;
}

TEST(FlagsArray, new_elements_are_rejected_and_old_ones_stay) {
  FlagsArray array;
  EXPECT_EQ(array.size(), 0u);
  array.resize(2);
  EXPECT_EQ(array.get_flags(1).byte(), 0x80);
  array.wipe(0);
  array.resize(3);
  EXPECT_EQ(array.get_flags(0).byte(), 0x00);
  EXPECT_EQ(array.get_flags(2).byte(), 0x80);
  array.wipe(2);
  array.resize(1);
  array.resize(3);
  EXPECT_EQ(array.get_flags(0).byte(), 0x00);
  EXPECT_EQ(array.get_flags(2).byte(), 0x80);
}

TEST(FlagsArray, the_operations_of_the_whole_reach_every_element) {
  const std::pair<void (*)(FlagsArray&), int> operations[] = {
      {[](FlagsArray& array) { array.reject(); }, 0x80},
      {[](FlagsArray& array) { array.invalidate(); }, 0x40},
      {[](FlagsArray& array) { array.wipe(); }, 0x00},
      {[](FlagsArray& array) { array.setRejected(); }, 0x9F}};
  for (const auto& [operation, expected] : operations) {
    FlagsArray array = flags_array(3, 0x1F);
    operation(array);
    ASSERT_EQ(array.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(array.get_flags(i).byte(), expected);
  }
}

TEST(FlagsArray, the_operations_of_one_element_leave_its_neighbours) {
  const std::pair<void (*)(FlagsArray&), int> operations[] = {
      {[](FlagsArray& array) { array.wipe(1); }, 0x00},
      {[](FlagsArray& array) { array.setRejected(1); }, 0x82},
      {[](FlagsArray& array) { array.setInvalid(1); }, 0x42},
      {[](FlagsArray& array) { array.setTimeless(1); }, 0x12},
      {[](FlagsArray& array) { array.setOver(1); }, 0x0A},
      {[](FlagsArray& array) { array.setUnder(1); }, 0x06},
      {[](FlagsArray& array) { array.set_flags(1, Flags(0x33)); }, 0x33}};
  for (const auto& [operation, expected] : operations) {
    FlagsArray array = flags_array(3, 0x02);
    operation(array);
    EXPECT_EQ(array.get_flags(0).byte(), 0x02);
    EXPECT_EQ(array.get_flags(1).byte(), expected);
    EXPECT_EQ(array.get_flags(2).byte(), 0x02);
  }
}

TEST(FlagsArray, the_tests_read_one_element) {
  for (int byte = 0; byte < 256; ++byte) {
    const Flags flags(static_cast<unsigned char>(byte));
    FlagsArray array(2);
    array.set_flags(1, flags);
    EXPECT_EQ(array.good(1), flags.good());
    EXPECT_EQ(array.poor(1), flags.poor());
    EXPECT_EQ(array.ok(1), flags.ok());
    EXPECT_FALSE(array.ok(0));
  }
}

TEST(FlagsArray, assignment_takes_the_size_and_the_elements) {
  FlagsArray target = flags_array(5, 0x01);
  target = flags_array(2, 0x04);
  ASSERT_EQ(target.size(), 2u);
  EXPECT_EQ(target.get_flags(1).byte(), 0x04);
}

TEST(StampArray, times_run_beside_the_flags) {
  StampArray array(2);
  EXPECT_EQ(array.get_nano(1), 0);
  array.set(1, stamp(kTime, 0x51));
  EXPECT_EQ(array.get_nano(0), 0);
  EXPECT_EQ(array.get_flags(0).byte(), 0x80);
  EXPECT_EQ(array.get_nano(1), kTime);
  EXPECT_EQ(array.get_flags(1).byte(), 0x10);
  array.set_nano(0, 5);
  EXPECT_EQ(array.get_nano(0), 5);
  EXPECT_EQ(array.get_flags(0).byte(), 0x80);
}

TEST(StampArray, resizing_and_assigning_keep_times_and_flags_together) {
  StampArray array(2);
  array.set(0, stamp(kTime, 0));
  array.set(1, stamp(kTime, 0));
  array.resize(1);
  array.resize(3);
  EXPECT_EQ(array.size(), 3u);
  EXPECT_EQ(array.get_nano(0), kTime);
  EXPECT_TRUE(array.good(0));
  EXPECT_EQ(array.get_nano(1), 0);
  EXPECT_EQ(array.get_flags(1).byte(), 0x80);
  StampArray copy(7);
  copy = array;
  EXPECT_EQ(copy.size(), 3u);
  EXPECT_EQ(copy.get_nano(0), kTime);
}

TEST(StampArray, rejecting_and_invalidating_clear_every_time) {
  StampArray array(2);
  array.set(0, stamp(kTime, 0));
  array.set(1, stamp(kTime, 0));
  array.reject();
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(array.get_nano(i), 0);
    EXPECT_EQ(array.get_flags(i).byte(), 0x80);
    array.set(i, stamp(kTime, 0));
  }
  array.invalidate();
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(array.get_nano(i), 0);
    EXPECT_EQ(array.get_flags(i).byte(), 0x40);
  }
}

TEST(StampExtArray, the_extra_fields_follow_every_operation) {
  StampExtArray array(2);
  array.set(1, stamp_ext(kTime, 0x40, 7));
  EXPECT_EQ(array.get_extra(0), 0);
  EXPECT_EQ(array.get_extra(1), 7);
  EXPECT_EQ(array.get_nano(1), kTime);
  EXPECT_TRUE(array.good(1));

  StampExtArray copy;
  copy = array;
  EXPECT_EQ(copy.get_extra(1), 7);
  copy.resize(1);
  copy.resize(2);
  EXPECT_EQ(copy.get_extra(1), 0);
  EXPECT_EQ(copy.get_flags(1).byte(), 0x80);

  copy = array;
  copy.reject();
  EXPECT_EQ(copy.get_extra(1), 0);
  EXPECT_EQ(copy.get_nano(1), 0);
  EXPECT_EQ(copy.get_flags(1).byte(), 0x80);
  copy = array;
  copy.invalidate();
  EXPECT_EQ(copy.get_extra(1), 0);
  EXPECT_EQ(copy.get_nano(1), 0);
  EXPECT_EQ(copy.get_flags(1).byte(), 0x40);
}

}  // namespace
