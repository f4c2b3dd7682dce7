#include "geometry/fixed_sine.h"

#include <gtest/gtest.h>

#include <cmath>

namespace vn {
namespace {

TEST(FixedSine, IsTheNearestNumberInAllQuadrants) {
  for (int32_t angle = 0; angle <= 36000; ++angle) {
    const long double turn = angle * 3.14159265358979323846264338L / 18000.0L;
    ASSERT_NEAR(FixedSin(angle), static_cast<double>(16384.0L * std::sin(turn)), 0.500001) << angle;
    ASSERT_NEAR(FixedCos(angle), static_cast<double>(16384.0L * std::cos(turn)), 0.500001) << angle;
  }
}

}  // namespace
}  // namespace vn
