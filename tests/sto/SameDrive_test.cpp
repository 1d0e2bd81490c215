// One drive told by several streams: the sample recording through the store. At times that two
// streams share, their values are the same.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sto/Sto_Store.h"
#include "trakgen/Trakgen_Scene.h"

namespace Trel::Sto::Test {
namespace {

constexpr long long kStart = 1400000000000000000;
constexpr long long kSecond = 1000000000;
constexpr unsigned int kUCom = 0;
constexpr unsigned int kNCom = 2;

TEST(SameDrive, ucom_and_ncom_give_the_same_positions_at_the_same_times) {
  DataStore store(Options(16, kSecond, 0, 0.1, 1048576, 10));
  std::vector<unsigned int> ids;
  unsigned int count = 0;
  store.add_resource(TREL_STO_SAMPLE, ids, count);
  ASSERT_EQ(count, 3U);
  Aspect aspect;
  const auto use = [&](unsigned int stream, const char* name) {
    store.direct_add_element(stream, name);
    store.direct_use_element(aspect, stream, name);
  };
  use(kUCom, "Nano");
  use(kUCom, "GnssInt1_Latitude");
  use(kUCom, "GnssInt1_Longitude");
  use(kNCom, "Nano");
  use(kNCom, "Lat");
  use(kNCom, "Lon");
  const Trakgen::Scene scene(1, 0);
  std::vector<Result> values;
  int compared = 0;
  store.direct_decode_begin(kStart);
  // From the third second on the unit's solution is more than an approximation.
  for (int second = 3; second < 179; ++second) {
    const long long t = kStart + second * kSecond;
    store.direct_decode_step(aspect, t, values);
    EXPECT_EQ(static_cast<long long>(values[0]), t);
    EXPECT_EQ(static_cast<long long>(values[3]), t);
    if (!scene.at(static_cast<std::uint64_t>(second) * 40, 40).sky_visible) continue;
    EXPECT_NEAR(static_cast<double>(values[1]), static_cast<double>(values[4]), 1e-9) << second;
    EXPECT_NEAR(static_cast<double>(values[2]), static_cast<double>(values[5]), 1e-9) << second;
    ++compared;
  }
  EXPECT_GT(compared, 120);
}

}  // namespace
}  // namespace Trel::Sto::Test
