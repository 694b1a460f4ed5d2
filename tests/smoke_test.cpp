#include <gtest/gtest.h>
#include "rule.h"
TEST(Smoke, MinSup) { EXPECT_EQ(ComputeMinSup(10, 0.35f), 4); }
