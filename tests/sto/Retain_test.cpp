#include "sto/Sto_Retain.h"

#include <gtest/gtest.h>

#include <limits>

#include "Fakes.h"

namespace Trel::Sto::Test {
namespace {

// The grid that a store lays; a resolution of 0 when it refuses.
Indexing grid(unsigned int bits, long long resolution, long long start, long long end) {
  Store store(0, bits, resolution);
  const long long answer = store.configure(start, end);
  if (answer == 0) return {0, 0};
  EXPECT_EQ(answer, store.indexing().resolution);
  return store.indexing();
}

void expect_grid(const Indexing& actual, long long start, long long resolution) {
  EXPECT_EQ(actual.start, start);
  EXPECT_EQ(actual.resolution, resolution);
}

bool refuses(unsigned int bits, long long resolution, long long start, long long end) {
  Store store(0, bits, resolution);
  const bool refused = store.configure(start, end) == 0;
  if (refused) {
    EXPECT_EQ(store.indexing().start, 0);
    EXPECT_EQ(store.indexing().resolution, 1);
  }
  return refused;
}

TEST(RetainedGrid, a_new_store_has_none) {
  const Store store(4, 16, kSecond);
  EXPECT_EQ(store.id(), 4U);
  EXPECT_EQ(store.indexing().start, 0);
  EXPECT_EQ(store.indexing().resolution, 1);
  EXPECT_EQ(store.start(), 0);
  EXPECT_EQ(store.end(), 0);
}

TEST(RetainedGrid, a_span_that_is_empty_or_runs_backward_is_refused) {
  EXPECT_TRUE(refuses(16, kSecond, 5 * kSecond, 5 * kSecond));
  EXPECT_TRUE(refuses(16, kSecond, 5 * kSecond, 4 * kSecond));
  EXPECT_TRUE(refuses(16, kSecond, 5 * kSecond, 0));  // a stream without data
  EXPECT_TRUE(refuses(16, kSecond, 0, 0));
  EXPECT_FALSE(refuses(16, kSecond, 5 * kSecond, 5 * kSecond + 1));
}

TEST(RetainedGrid, a_time_before_0_is_refused) {
  EXPECT_TRUE(refuses(16, kSecond, -1, 5 * kSecond));
  EXPECT_TRUE(refuses(16, kSecond, -5, -1));
  EXPECT_FALSE(refuses(16, kSecond, 0, 5 * kSecond));
}

TEST(RetainedGrid, a_resolution_that_is_not_above_0_is_refused) {
  EXPECT_TRUE(refuses(16, 0, 1, 5));
  EXPECT_TRUE(refuses(16, -kSecond, 1, 5));
  EXPECT_FALSE(refuses(16, 1, 1, 5));
}

TEST(RetainedGrid, the_span_is_kept_as_given_and_only_when_it_is_accepted) {
  Store store(0, 16, kSecond);
  EXPECT_EQ(store.configure(10, 5), 0);
  EXPECT_EQ(store.start(), 0);
  EXPECT_EQ(store.end(), 0);
  EXPECT_EQ(store.configure(5, 10), kSecond);
  EXPECT_EQ(store.start(), 5);
  EXPECT_EQ(store.end(), 10);
  EXPECT_EQ(store.configure(20, 15), 0);
  EXPECT_EQ(store.start(), 5);
  EXPECT_EQ(store.end(), 10);
}

// 10.2 s to 11.7 s: rounded outward 10 s to 12 s, which takes (12 - 10) / 1 + 1 = 3 points.
constexpr long long kFrom = 10200000000;
constexpr long long kTo = kFrom + 1500000000;

TEST(RetainedGrid, a_span_of_a_second_and_a_half_is_rounded_outward_to_whole_seconds) {
  // 65536 points: the pad (65536 - 2) / 2 = 32767 s would pass below 0, so 10 s stays
  expect_grid(grid(16, kSecond, kFrom, kTo), 10 * kSecond, kSecond);
  // 4 points: used 2 s, full 4 s, pad (4 - 2) / 2 = 1 s
  expect_grid(grid(2, kSecond, kFrom, kTo), 9 * kSecond, kSecond);
}

TEST(RetainedGrid, a_span_of_a_second_and_a_half_takes_three_points) {
  // 2 points: 3 are too many, the factor is (3 + 1) / 2 = 2; 10 s to 12 s in 2 s slots are 2 points
  expect_grid(grid(1, kSecond, kFrom, kTo), 10 * kSecond, 2 * kSecond);
}

TEST(RetainedGrid, times_on_the_grid_stay_where_they_are) {
  // 10 s to 13 s: 4 points fit into 4; used 3, full 4, pad (4 - 3) / 2 = 0
  expect_grid(grid(2, kSecond, 10 * kSecond, 13 * kSecond), 10 * kSecond, kSecond);
  // one nanosecond more takes 5 points: factor (5 + 3) / 4 = 2; 10 s to 14 s are 3 points of 2 s;
  // used 4, full 8, pad (8 - 4) / 4 = 1 slot of 2 s
  expect_grid(grid(2, kSecond, 10 * kSecond, 13 * kSecond + 1), 8 * kSecond, 2 * kSecond);
}

TEST(RetainedGrid, the_span_is_centred_in_the_grid) {
  // 100 s to 106 s: used 6, full 16, pad (16 - 6) / 2 = 5 s
  expect_grid(grid(4, kSecond, 100500000000, 105200000000), 95 * kSecond, kSecond);
  // 100 s to 107 s: (16 - 7) / 2 = 4.5, a whole number of slots: 4 s
  expect_grid(grid(4, kSecond, 100500000000, 106200000000), 96 * kSecond, kSecond);
}

TEST(RetainedGrid, the_pad_is_skipped_where_it_would_reach_time_0) {
  // used 6, full 16, pad 5 s
  expect_grid(grid(4, kSecond, 6 * kSecond, 12 * kSecond), 1 * kSecond, kSecond);
  expect_grid(grid(4, kSecond, 5 * kSecond, 11 * kSecond), 5 * kSecond, kSecond);
  expect_grid(grid(4, kSecond, 4 * kSecond, 10 * kSecond), 4 * kSecond, kSecond);
  expect_grid(grid(4, kSecond, 0, 6 * kSecond), 0, kSecond);
}

TEST(RetainedGrid, a_span_that_fills_the_grid_keeps_the_finest_slots) {
  // 65535 s on whole seconds are 65536 points
  const long long start = 1000000 * kSecond;
  expect_grid(grid(16, kSecond, start, start + 65535 * kSecond), start, kSecond);
}

TEST(RetainedGrid, one_point_less_than_twice_the_grid_doubles_the_slots_once) {
  // 131071 points: factor (131071 + 65535) / 65536 = 2; 131070 s in 2 s slots are 65536 points
  const long long start = 1000000 * kSecond;
  expect_grid(grid(16, kSecond, start, start + 131070 * kSecond), start, 2 * kSecond);
}

TEST(RetainedGrid, twice_the_points_of_the_grid_double_the_slots_twice) {
  // 131072 points: the factor is 2, but 131071 s rounded outward to 2 s slots are 65537 points, so
  // it is 2 once more. In 4 s slots: 131072 s are 32769 points; used 32768 slots of 65536, pad
  // (65536 - 32768) / 2 = 16384 slots = 65536 s
  const long long start = 1000000 * kSecond;
  expect_grid(grid(16, kSecond, start, start + 131071 * kSecond), start - 65536 * kSecond,
              4 * kSecond);
}

TEST(RetainedGrid, a_long_span_takes_slots_of_a_whole_number_of_the_finest) {
  // 0 s to 100 s in 16 points: 101 points, factor (101 + 15) / 16 = 7; 0 s to 105 s are 16 points
  expect_grid(grid(4, kSecond, 0, 100 * kSecond), 0, 7 * kSecond);
}

TEST(RetainedGrid, a_real_recording_of_an_hour_starts_half_the_spare_slots_early) {
  // 3600 s: used 3600, full 65536, pad (65536 - 3600) / 2 = 30968 s
  const long long start = 1400000000 * kSecond;
  expect_grid(grid(16, kSecond, start, start + 3600 * kSecond), start - 30968 * kSecond, kSecond);
}

TEST(RetainedGrid, a_grid_whose_length_overflows_is_refused) {
  EXPECT_TRUE(refuses(40, kSecond, 1, 2));   // 2^40 s
  EXPECT_FALSE(refuses(33, kSecond, 1, 2));  // 2^33 s = 8.6e18 ns
  EXPECT_TRUE(refuses(34, kSecond, 1, 2));
  EXPECT_FALSE(refuses(62, 1, 1, 2));
  EXPECT_TRUE(refuses(62, 2, 1, 2));
}

TEST(RetainedGrid, no_number_of_bits_is_too_large_to_be_refused) {
  EXPECT_TRUE(refuses(63, 1, 1, 2));
  EXPECT_TRUE(refuses(64, 1, 1, 2));
  EXPECT_TRUE(refuses(std::numeric_limits<unsigned int>::max(), 1, 1, 2));
}

TEST(RetainedGrid, an_end_that_cannot_be_rounded_up_is_refused) {
  EXPECT_TRUE(refuses(16, kSecond, 1, kMax));
  // 2^40 points into 2: the factor is 2^39, a slot 2^62 ns; the end rounded up to that is 2^63
  EXPECT_TRUE(refuses(1, 1LL << 23, 0, kMax - (1LL << 23) + 1));
}

TEST(RetainedGrid, a_slot_whose_width_overflows_is_refused) {
  EXPECT_TRUE(refuses(16, kMax, kMax - 1, kMax));  // 65536 times all of time
  // into one slot: 3 * 2^61 + 1 points make slots of that many ns, still two of them; twice that
  // is too wide
  EXPECT_TRUE(refuses(0, 1, 0, 3 * (1LL << 61)));
}

TEST(RetainedGrid, a_pad_beyond_the_last_time_is_refused) {
  // used 1, full 2^62, pad (2^62 - 1) / 2 = 2^61 - 1
  const long long pad = (1LL << 61) - 1;
  EXPECT_TRUE(refuses(62, 1, kMax - pad, kMax - pad + 1));
  expect_grid(grid(62, 1, kMax - pad - 1, kMax - pad), kMax - pad - 1 - pad, 1);
}

TEST(RetainedGridDeathTest, a_grid_of_one_slot_holds_no_span_and_stops_the_program) {
  Store store(0, 0, 1);
  // 2 points in 1; doubling the slots ten times never changes that
  EXPECT_DEATH(store.configure(1, 2), "Test : est_points <= sto_points");
}

TEST(RetainedGrid, configuring_again_lays_a_new_grid) {
  Store store(0, 4, kSecond);
  store.configure(100 * kSecond, 106 * kSecond);
  store.configure(200 * kSecond, 206 * kSecond);
  expect_grid(store.indexing(), 195 * kSecond, kSecond);
  EXPECT_EQ(store.configure(5, 5), 0);
  expect_grid(store.indexing(), 195 * kSecond, kSecond);
}

TEST(RetainedGrid, forgetting_the_samples_leaves_it) {
  Store store(0, 4, kSecond);
  store.add_element_float(3);
  store.configure(100 * kSecond, 106 * kSecond);
  store.soft_clear();
  expect_grid(store.indexing(), 95 * kSecond, kSecond);
  EXPECT_EQ(store.start(), 100 * kSecond);
  EXPECT_EQ(store.end(), 106 * kSecond);
  EXPECT_EQ(store.next_element_float(), 3U);
}

TEST(Stores, ids_are_places_and_a_null_slot_takes_one) {
  Stores stores(16, kSecond);
  stores.add(0, kSecond);
  stores.add();
  stores.add(2 * kSecond, 3 * kSecond);
  ASSERT_NE(stores.at(0), nullptr);
  EXPECT_EQ(stores.at(0)->id(), 0U);
  EXPECT_EQ(stores.at(1), nullptr);
  ASSERT_NE(stores.at(2), nullptr);
  EXPECT_EQ(stores.at(2)->id(), 2U);
  EXPECT_EQ(stores.at(2)->start(), 2 * kSecond);
  EXPECT_EQ(stores.at(2)->end(), 3 * kSecond);
  EXPECT_EQ(stores.at(3), nullptr);
  EXPECT_EQ(stores.at(0xFFFFFFFF), nullptr);
}

TEST(Stores, a_span_that_cannot_be_gridded_leaves_its_slot_null) {
  Stores stores(16, kSecond);
  stores.add(5, 5);
  stores.add(5, 0);
  stores.add(0, kMax);  // overflows
  stores.add(0, 5);
  EXPECT_EQ(stores.at(0), nullptr);
  EXPECT_EQ(stores.at(1), nullptr);
  EXPECT_EQ(stores.at(2), nullptr);
  ASSERT_NE(stores.at(3), nullptr);
  EXPECT_EQ(stores.at(3)->id(), 3U);
}

TEST(Stores, calls_on_a_null_slot_do_nothing_and_succeed) {
  Stores stores(16, kSecond);
  stores.add();
#define TREL_CHECK(suffix, T)                      \
  EXPECT_EQ(stores.next_element_##suffix(0), 0U);  \
  EXPECT_TRUE(stores.add_element_##suffix(0, 4));  \
  EXPECT_EQ(stores.next_element_##suffix(0), 0U);  \
  EXPECT_TRUE(stores.add_element_##suffix(77, 4)); \
  EXPECT_EQ(stores.next_element_##suffix(77), 0U);
  TREL_ELEMENT_TYPES(TREL_CHECK)
#undef TREL_CHECK
}

TEST(Stores, an_element_makes_room_in_its_own_store_and_keeps_the_grid) {
  Stores stores(4, kSecond);
  stores.add(100 * kSecond, 106 * kSecond);
  stores.add(100 * kSecond, 106 * kSecond);
  EXPECT_TRUE(stores.add_element_double(1, 4));
  EXPECT_EQ(stores.next_element_double(0), 0U);
  EXPECT_EQ(stores.next_element_double(1), 4U);
  expect_grid(stores.at(1)->indexing(), 95 * kSecond, kSecond);
}

}  // namespace
}  // namespace Trel::Sto::Test
