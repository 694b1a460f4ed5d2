// The candidate tree's node operations, the subset search, and the listings
// that the run does not print: linking, deletion holes, compaction, release.
#include <gtest/gtest.h>

#include "miner_fixture.h"
#include "output/reports.h"

namespace {

using testing_support::ItemsOf;
using testing_support::MinerTest;

class TreeTest : public MinerTest {
 protected:
  // Rows over items 1-2 | 3-4 | classes 5-6; layer-1 nodes for 1, 3, 5 and
  // layer-2 nodes {1,3}, {1,5}, {3,5} at support 2.
  void Build() {
    SetRows(6, 3, {{1, 3, 5}, {1, 3, 5}, {2, 4, 6}});
    BuildFirstLayers(2);
  }
};

TEST_F(TreeTest, NodesAreMadeWithTheirPerPositionData) {
  SetRows(4, 2, {});
  data.MaxData = 120;
  InitialCount(run.Counts, data);
  run.Counts.Counter1[3] = 30;
  TreeNode root{};
  root.Item = -1;
  TreeNode* node = NewNode(run.Tree, &root, 3, run.Counts, data.MaxData);
  EXPECT_EQ(node->Support, 30);
  EXPECT_EQ(node->SubSupport[0], 120);
  EXPECT_FLOAT_EQ(node->Confidence[0], 0.25f);
  EXPECT_EQ(node->TargetFlag[0], -1) << "65535 in 16 bits";
  EXPECT_EQ(run.Tree.TreeSize, 1);

  // The sons' subsets, flags and supports are checked on generated trees by
  // the brute-force test.
  DeleteNode(run.Tree, node);
  EXPECT_EQ(run.Tree.TreeSize, 0);
}

TEST_F(TreeTest, DeletionLeavesAHoleThatCompactionPacks) {
  Build();
  TreeNode* one = testing_support::NodeOf(run.Tree, {1});
  ASSERT_EQ(one->NumOfSon, 2);
  one->Son[0] = DeleteNode(run.Tree, one->Son[0]);
  EXPECT_EQ(one->NumOfSon, 1);
  EXPECT_EQ(one->Son[0], nullptr);
  EXPECT_EQ(ReOrderSon(one), 0) << "one son packed";
  EXPECT_EQ(ItemsOf(one->Son[0]), (std::vector<int>{1, 5}));
  EXPECT_EQ(one->SonCapacity, 2);

  TreeNode* five = testing_support::NodeOf(run.Tree, {5});
  EXPECT_EQ(ReOrderSon(five), 0);
  EXPECT_EQ(five->Son, nullptr) << "a node that never had a son keeps no array";

  // Linking keeps a free slot after the last son.
  for (int i = 0; i < 9; ++i) LinkSon(five, NewEmptyNode(run.Tree, five, 6, data.MaxItem));
  EXPECT_GT(five->SonCapacity, five->NumOfSon);
  EXPECT_EQ(five->Son[8]->Token, -2);
}

TEST_F(TreeTest, SubsetSearchSkipsEmptyNodesAndReleaseCountsDown) {
  Build();
  const int pair[] = {3, 5};
  EXPECT_EQ(SearchSubSet(run.Tree, pair, 2), testing_support::NodeOf(run.Tree, {3, 5}));
  EXPECT_EQ(SearchSubSet(run.Tree, pair, 0), run.Tree.AllSet);
  const int missing[] = {2, 5};
  EXPECT_EQ(SearchSubSet(run.Tree, missing, 2), nullptr);

  TreeNode* five = testing_support::NodeOf(run.Tree, {5});
  LinkSon(five, NewEmptyNode(run.Tree, five, 6, data.MaxItem));
  const int empty[] = {5, 6};
  EXPECT_EQ(SearchSubSet(run.Tree, empty, 2), nullptr) << "an empty node counts as absent";

  const int triple[] = {1, 3, 5};
  int supports[1] = {0};
  TreeNode* nodes[1] = {nullptr};
  EXPECT_EQ(FrequentSubSet(run.Tree, triple, 3, supports, nodes), 1);
  EXPECT_EQ(nodes[0], testing_support::NodeOf(run.Tree, {3, 5}));
  EXPECT_EQ(supports[0], 2);
  const int broken[] = {1, 4, 5};
  EXPECT_EQ(FrequentSubSet(run.Tree, broken, 3, supports, nodes), 0);

  Clean(run.Tree.AllSet, 2, 3);
  EXPECT_EQ(testing_support::NodeOf(run.Tree, {1, 3})->ItemSet, nullptr);
  EXPECT_NE(testing_support::NodeOf(run.Tree, {1})->ItemSet, nullptr);
  run.Tree.AllSet = FreeTree(run.Tree, run.Tree.AllSet);
  EXPECT_EQ(run.Tree.TreeSize, 0);
}

TEST_F(TreeTest, ListingsByNameAndByLayer) {
  Build();
  WriteNames("yes, no.\na: p, q.\nb: r, s.\n");
  ASSERT_TRUE(GetNames(data, Stem(), errors).ok());
  testing_support::AddRule(run.Rules, {1}, 5, 2, 1.0f, 2, 2);
  testing_support::AddRule(run.Rules, {}, 3, 2, 0.5f, 4, 2);
  DisplayRule(run.Rules, data, out.file());
  EXPECT_EQ(out.Take(),
            "\n- - - - - - - - - - - - - - - - - - - - - - - - - - - - \nNumber of rules 2 \n"
            "1:(4)  -> b is r (2), \t \t supp = 2, conf = 0.5000 \n"
            "2:a is p; (2)  -> Class is yes (2), \t \t supp = 2, conf = 1.0000 \n");
  testing_support::NodeOf(run.Tree, {1, 5})->Token = 2;
  DisplayTreeByLayer(run.Tree.AllSet, 2, out.file());
  EXPECT_EQ(out.Take(),
            "1 3 \t : 0\tsum[2], \n1 5 \t : 0\tsum[2], \t1 \t acc= 0.000\t conf=0.000\n3 5 \t : 0\tsum[2], \n");
}

}  // namespace
