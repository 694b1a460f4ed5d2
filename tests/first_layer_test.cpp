// Item and pair counts and the first two layers of the candidate tree.
#include <gtest/gtest.h>

#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::NodeOf;
using Ints = std::vector<int>;

using FirstLayer = testing_support::MinerTest;

Ints Layer1Items(const CandidateTree& tree) {
  Ints items;
  for (int s = 0; s < tree.AllSet->NumOfSon; ++s) items.push_back(tree.AllSet->Son[s]->Item);
  return items;
}

// Items 1, 2 (first attribute), 3, 4 (second) and classes 5, 6.
TEST_F(FirstLayer, WorkedExample) {
  SetRows(6, 3, {{1, 3, 5}, {1, 4, 5}, {2, 3, 5}});
  EXPECT_EQ(BuildFirstLayers(2), "The first layer tree size is 3 \n");
  EXPECT_EQ(Ints(run.Counts.Counter1, run.Counts.Counter1 + 8), (Ints{0, 2, 1, 2, 1, 3, 0, 0}));
  const ItemCounts& c = run.Counts;
  EXPECT_EQ((Ints{c.Pair(1, 3), c.Pair(1, 5), c.Pair(3, 5)}), (Ints{1, 2, 2}));
  EXPECT_EQ(c.Ranked, 3) << "the pair table holds the items of the first layer only";
  EXPECT_EQ(c.Pair(2, 5), 0) << "item 2 is below the support: no pair count";
  EXPECT_EQ(c.Pair(5, 1), 0) << "a pair is kept under its smaller code";
  EXPECT_EQ(Layer1Items(run.Tree), (Ints{1, 3, 5}));
  EXPECT_EQ(run.Tree.AllSet->Support, 3);
  EXPECT_EQ(run.Tree.AllSet->SonCapacity, 7);
  TreeNode* p15 = NodeOf(run.Tree, {1, 5});
  ASSERT_NE(p15, nullptr);
  ASSERT_NE(NodeOf(run.Tree, {3, 5}), nullptr);
  EXPECT_EQ(NodeOf(run.Tree, {1, 3}), nullptr);  // seen together once only
  EXPECT_EQ(p15->Support, 2);
  EXPECT_EQ(testing_support::FlagsOf(p15), (Ints{1, 1}));
  EXPECT_EQ((Ints{p15->SubSupport[0], p15->SubSupport[1]}), (Ints{3, 2}));
  EXPECT_EQ(run.Tree.TreeSize, 5);
}

TEST_F(FirstLayer, ThresholdIsInclusiveAndUnknownIsNoItem) {
  SetRows(6, 3, {{1, 3, 5}, {1, 4, 5}, {2, 3, 5}});
  BuildFirstLayers(3);
  EXPECT_EQ(Layer1Items(run.Tree), (Ints{5}));  // count 3 kept, count 2 not
  EXPECT_EQ(run.Tree.TreeSize, 1);
  SetRows(4, 2, {{0, 3}, {0, 3}, {0, 4}, {1, 3}});
  BuildFirstLayers(1);
  EXPECT_EQ(run.Counts.Counter1[0], 3);
  EXPECT_EQ(Layer1Items(run.Tree), (Ints{1, 3, 4}));
  EXPECT_EQ(run.Tree.TreeSize, 4);
}

}  // namespace
