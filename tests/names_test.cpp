// The names file reader: keywords, odd values and the lookups (the errors
// are runs in fixtures/runs.txt and fixtures/hostile).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::MinerTest;
using Ints = std::vector<int>;

using NamesTest = MinerTest;

// Ignored attributes are golden runs (the weather set).
TEST_F(NamesTest, KeywordsOddValuesAndLookups) {
  ASSERT_EQ(Read("yes, no.\nmode: auto, ignore, continuous, discrete.\n").status, -1);
  EXPECT_EQ(GetAttCode(data, "discrete", 0), 4);  // keywords count only as the first value
  const char* odd = "Yes, yes\n| between\nsize: 1.5, 2.5.  | remark\nshade: light  blue,,dark\tred, light blue.";
  ASSERT_EQ(Read(odd).status, -1);
  EXPECT_EQ(GetAttCode(data, "2.5", 0), 2);
  EXPECT_EQ(GetAttCode(data, "light blue", 1), 3);  // a repeated value keeps its first code but uses one
  EXPECT_EQ(GetAttCode(data, "", 1), 4);            // two commas in a row: an empty value
  EXPECT_EQ(GetAttCode(data, "dark\tred", 1), 5);
  EXPECT_EQ(data.MaxItem, 8);
  // Lookups are exact and per attribute.
  EXPECT_EQ(GetAttCode(data, "Light blue", 1), 0);
  EXPECT_EQ(GetAttCode(data, "1.5", 1), 0);
  EXPECT_EQ(GetAttCode(data, "yes", 2), 8);
  EXPECT_EQ(GetAttCode(data, "1.5", 7), 0);
  EXPECT_EQ(GetNameCode(data, "yes"), 1);
  EXPECT_EQ(GetNameCode(data, "YES"), -1);
}

}  // namespace
