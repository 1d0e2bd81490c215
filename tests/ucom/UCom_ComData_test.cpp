#include "ucom/UCom_ComData.h"

#include <gtest/gtest.h>

#include <set>
#include <type_traits>

namespace Trel::UCom {
namespace {

using namespace Enum;

Lib::StampExt stamp_at(long long nano) {
  Lib::StampExt stamp;
  stamp.wipe();
  stamp.set_nano(nano);
  return stamp;
}

TEST(UComComData, a_fresh_record_has_nano_alone_in_slot_0) {
  ComData data;
  EXPECT_EQ(data.get_nano_slot(), 0u);
  EXPECT_FALSE(data.Nano().ok());
  EXPECT_EQ(&data.Nano(), &data.var<long long>(0));
  std::uint32_t slot = 99;
  EXPECT_TRUE(data.configure_slot(BASIC_TYPE_int64_t, slot));
  EXPECT_EQ(slot, 1u);
}

TEST(UComComData, each_type_counts_its_own_slots) {
  ComData data;
  std::uint32_t slot = 99;
  EXPECT_TRUE(data.configure_slot(BASIC_TYPE_float, slot));
  EXPECT_EQ(slot, 0u);
  EXPECT_TRUE(data.configure_slot(BASIC_TYPE_float, slot));
  EXPECT_EQ(slot, 1u);
  EXPECT_TRUE(data.configure_slot(BASIC_TYPE_double, slot));
  EXPECT_EQ(slot, 0u);
}

TEST(UComComData, only_the_eleven_number_types_have_slots) {
  const std::set<int> types{BASIC_TYPE_bool,     BASIC_TYPE_float,    BASIC_TYPE_double,
                            BASIC_TYPE_uint8_t,  BASIC_TYPE_uint16_t, BASIC_TYPE_uint32_t,
                            BASIC_TYPE_uint64_t, BASIC_TYPE_int8_t,   BASIC_TYPE_int16_t,
                            BASIC_TYPE_int32_t,  BASIC_TYPE_int64_t};
  ComData data;
  for (int tag = 0; tag < 256; ++tag) {
    std::uint32_t slot = 99;
    EXPECT_EQ(data.configure_slot(static_cast<BASIC_TYPE>(tag), slot), types.contains(tag)) << tag;
    if (!types.contains(tag)) {
      EXPECT_EQ(slot, 99u) << tag;
    }
  }
}

TEST(UComComData, reset_forgets_all_variables_but_nano) {
  ComData data;
  std::uint32_t slot = 99;
  data.configure_slot(BASIC_TYPE_int64_t, slot);
  data.configure_slot(BASIC_TYPE_bool, slot);
  data.set_Nano(5, stamp_at(5));
  data.reset();
  EXPECT_EQ(data.Nano().get(), 0);
  EXPECT_FALSE(data.Nano().ok());
  data.configure_slot(BASIC_TYPE_int64_t, slot);
  EXPECT_EQ(slot, 1u);
  data.configure_slot(BASIC_TYPE_bool, slot);
  EXPECT_EQ(slot, 0u);
}

TEST(UComComData, stamp_dates_nano_with_its_own_value) {
  ComData data;
  Lib::StampExt timeless = stamp_at(3);
  timeless.setTimeless();
  data.set_Nano(-7, timeless);
  ASSERT_TRUE(data.Nano().isTimeless());
  data.Stamp();
  EXPECT_EQ(data.Nano().get_nano(), -7);
  EXPECT_FALSE(data.Nano().isTimeless());
}

TEST(UComComData, stamp_makes_a_nano_without_a_value_timeless) {
  ComData data;
  data.reset();  // a fresh variable is Rejected and not Timeless
  ASSERT_FALSE(data.Nano().isTimeless());
  data.Stamp();
  EXPECT_TRUE(data.Nano().isTimeless());
  EXPECT_FALSE(data.Nano().ok());
}

TEST(UComComData, invalidate_keeps_the_slots) {
  ComData data;
  std::uint32_t slot = 99;
  data.configure_slot(BASIC_TYPE_double, slot);
  data.set_Nano(5, stamp_at(5));
  data.invalidate();
  EXPECT_EQ(data.Nano().get(), 0);
  EXPECT_EQ(data.Nano().get_nano(), 0);
  EXPECT_FALSE(data.Nano().ok());
  EXPECT_TRUE(data.Nano().isTimeless());
  // Invalid, where a fresh variable is Rejected.
  EXPECT_EQ(data.var<double>(slot).get_flags(),
            Lib::Flags(Lib::Flags::Invalid | Lib::Flags::Timeless));
}

TEST(UComComData, a_copy_is_independent) {
  static_assert(std::is_copy_constructible_v<ComData> && std::is_copy_assignable_v<ComData>);
  ComData data;
  data.set_Nano(5, stamp_at(5));
  const ComData copy = data;
  data.invalidate();
  EXPECT_EQ(copy.Nano().get(), 5);
  EXPECT_EQ(copy.Nano().get_nano(), 5);
}

TEST(UComComData, a_variable_is_found_by_type_or_by_tag) {
  const ComData data;
  EXPECT_EQ(&data.var(std::type_identity<long long>{}, 0), &data.var<long long>(0));
}

}  // namespace
}  // namespace Trel::UCom
