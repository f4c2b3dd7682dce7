#include "geometry/fixed_sine.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vn {
namespace {

TEST(FixedSine, TableFollowsTheSine) {
  for (int32_t i = 0; i <= 9000; ++i) {
    const long double exact = 16384.0L * std::sin(i * 3.14159265358979323846264338L / 18000.0L);
    ASSERT_EQ(kSineTable[static_cast<size_t>(i)], std::lroundl(exact)) << i;
  }
  const int32_t first[] = {0, 3, 6, 9, 11};
  for (size_t i = 0; i < 5; ++i)
    EXPECT_EQ(kSineTable[i], first[i]);
  EXPECT_EQ(kSineTable[9000], 16384);
}

TEST(FixedSine, QuadrantsHaveTheirSigns) {
  for (int32_t angle = 0; angle <= 36000; ++angle) {
    const long double turn = angle * 3.14159265358979323846264338L / 18000.0L;
    ASSERT_NEAR(FixedSin(angle), static_cast<double>(16384.0L * std::sin(turn)), 0.5001) << angle;
    ASSERT_NEAR(FixedCos(angle), static_cast<double>(16384.0L * std::cos(turn)), 0.5001) << angle;
  }
  EXPECT_EQ(FixedSin(27000), -16384);
  EXPECT_EQ(FixedCos(18000), -16384);
  EXPECT_EQ(FixedCos(9000), 0);
  EXPECT_EQ(FixedCos(36000), 16384);
}

TEST(FixedSine, TruncatesTowardZero) {
  EXPECT_EQ(Trunc14(-16385), -1);
  EXPECT_EQ(Remainder14(-16385), -1);
  EXPECT_EQ(Trunc14(-16383), 0);
  EXPECT_EQ(Remainder14(-16383), -16383);
}

}  // namespace
}  // namespace vn
