// Support counting of a new layer, both per row and over the whole data.
#include <gtest/gtest.h>

#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::NodeOf;
using Ints = std::vector<int>;

using Counting = testing_support::MinerTest;

// At minimum support 4 the first layers hold {1} (5 cases), {4}, {6} (6),
// {1,4}, {1,6} (4) and {4,6} (5); the new layer {1,4,6} is in 3 cases.
TEST_F(Counting, OnlyTheNewLayerIsCountedEachRowOnce) {
  for (bool sweep : {false, true}) {
    Fresh();
    SetRows(8, 3, {{1, 4, 6}, {1, 4, 6}, {1, 5, 6}, {2, 4, 6}, {1, 4, 7}, {1, 4, 6}, {0, 4, 6}});
    BuildFirstLayers(4);
    testing_support::Capture([] { CandidateGen(AllSet, 3); });
    ASSERT_EQ(TreeSize, 7);
    if (sweep) {
      for (int r = 0; r < MaxData; ++r) CountbyTree(AllSet, DataSpace[r], 3);
    } else {
      EXPECT_EQ(Verification(AllSet, 3), 1);
    }
    Ints supports;
    for (const Ints& items : std::vector<Ints>{{1}, {4}, {6}, {1, 4}, {1, 6}, {4, 6}, {1, 4, 6}})
      supports.push_back(NodeOf(items)->Support);
    EXPECT_EQ(supports, (Ints{5, 6, 6, 4, 4, 5, 3})) << sweep;
  }
}

}  // namespace
