// The minimum support count taken from the support fraction, and the
// truncation of doubles to int.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "base/numbers.h"

namespace {

TEST(MinimumSupport, RoundsTheProductToTheNearestCountTruncatingTowardZero) {
  EXPECT_EQ(ComputeMinSup(1000, 0.05f), 50);
  EXPECT_EQ(ComputeMinSup(1234, 0.1f), 123);
  EXPECT_EQ(ComputeMinSup(10, 0.35f), 4);
  EXPECT_EQ(ComputeMinSup(0, 0.5f), 0);
  EXPECT_EQ(ComputeMinSup(1000, 0.0004f), 0);  // 0.4 + 0.5 truncated
  EXPECT_EQ(ComputeMinSup(1000, 0.0005f), 1);  // the float product is a hair above 0.5
  EXPECT_EQ(ComputeMinSup(100, 2.0f), 200);
  EXPECT_EQ(ComputeMinSup(100, -0.1f), -9);  // -10 + 0.5 truncated toward zero
  // Truncation toward zero, INT_MIN out of range.
  EXPECT_EQ(TruncateToInt(2.9), 2);
  EXPECT_EQ(TruncateToInt(-2.9), -2);
  EXPECT_EQ(TruncateToInt(2147483647.0), INT_MAX);
  EXPECT_EQ(TruncateToInt(2147483648.0), INT_MIN);
  EXPECT_EQ(TruncateToInt(-2147483649.0), INT_MIN);
  EXPECT_EQ(TruncateToInt(std::nan("")), INT_MIN);
}

}  // namespace
