// The candidate tree's node operations, the subset search, and the listings
// that the run does not print: linking, deletion holes, compaction, release.
#include <gtest/gtest.h>

#include "miner_fixture.h"

namespace {

using testing_support::Capture;
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
  MaxData = 120;
  InitialCount();
  Counter1[3] = 30;
  TreeNode root{};
  root.Item = -1;
  TreeNode* node = NewNode(&root, 3);
  EXPECT_EQ(node->Support, 30);
  EXPECT_EQ(node->SubSupport[0], 120);
  EXPECT_FLOAT_EQ(node->Confidence[0], 0.25f);
  EXPECT_EQ(node->TargetFlag[0], -1) << "65535 in 16 bits";
  EXPECT_EQ(TreeSize, 1);

  // The sons' subsets, flags and supports are checked on generated trees by
  // the brute-force test.
  DeleteNode(node);
  EXPECT_EQ(TreeSize, 0);
}

TEST_F(TreeTest, DeletionLeavesAHoleThatCompactionPacks) {
  Build();
  TreeNode* one = testing_support::NodeOf({1});
  ASSERT_EQ(one->NumOfSon, 2);
  one->Son[0] = DeleteNode(one->Son[0]);
  EXPECT_EQ(one->NumOfSon, 1);
  EXPECT_EQ(one->Son[0], nullptr);
  EXPECT_EQ(ReOrderSon(one), 0) << "one son packed";
  EXPECT_EQ(ItemsOf(one->Son[0]), (std::vector<int>{1, 5}));
  EXPECT_EQ(one->SonCapacity, 2);

  TreeNode* five = testing_support::NodeOf({5});
  EXPECT_EQ(ReOrderSon(five), 0);
  EXPECT_EQ(five->SonCapacity, 1);

  // Linking grows the son array by ten before it fills.
  for (int i = 0; i < 9; ++i) LinkSon(five, NewEmptyNode(five, 6));
  EXPECT_EQ(five->SonCapacity, 11);
  EXPECT_EQ(five->Son[8]->Token, -2);
}

TEST_F(TreeTest, SubsetSearchSkipsEmptyNodesAndReleaseCountsDown) {
  Build();
  const int pair[] = {3, 5};
  EXPECT_EQ(SearchSubSet(pair, 2), testing_support::NodeOf({3, 5}));
  EXPECT_EQ(SearchSubSet(pair, 0), AllSet);
  const int missing[] = {2, 5};
  EXPECT_EQ(SearchSubSet(missing, 2), nullptr);

  TreeNode* five = testing_support::NodeOf({5});
  LinkSon(five, NewEmptyNode(five, 6));
  const int empty[] = {5, 6};
  EXPECT_EQ(SearchSubSet(empty, 2), nullptr) << "an empty node counts as absent";

  const int triple[] = {1, 3, 5};
  int supports[1] = {0};
  TreeNode* nodes[1] = {nullptr};
  EXPECT_EQ(FrequentSubSet(triple, 3, supports, nodes), 1);
  EXPECT_EQ(nodes[0], testing_support::NodeOf({3, 5}));
  EXPECT_EQ(supports[0], 2);
  const int broken[] = {1, 4, 5};
  EXPECT_EQ(FrequentSubSet(broken, 3, supports, nodes), 0);

  Clean(AllSet, 2, 3);
  EXPECT_EQ(testing_support::NodeOf({1, 3})->ItemSet, nullptr);
  EXPECT_NE(testing_support::NodeOf({1})->ItemSet, nullptr);
  AllSet = FreeTree(AllSet);
  EXPECT_EQ(TreeSize, 0);
}

TEST_F(TreeTest, ListingsByNameAndByLayer) {
  Build();
  WriteNames("yes, no.\na: p, q.\nb: r, s.\n");
  ASSERT_EQ(Capture([] { GetNames(); }).status, -1);
  testing_support::AddRule({1}, 5, 2, 1.0f, 2, 2);
  testing_support::AddRule({}, 3, 2, 0.5f, 4, 2);
  EXPECT_EQ(Capture([] { DisplayRule(); }).output,
            "\n- - - - - - - - - - - - - - - - - - - - - - - - - - - - \nNumber of rules 2 \n"
            "1:(4)  -> b is r (2), \t \t supp = 2, conf = 0.5000 \n"
            "2:a is p; (2)  -> Class is yes (2), \t \t supp = 2, conf = 1.0000 \n");
  testing_support::NodeOf({1, 5})->Token = 2;
  EXPECT_EQ(Capture([] { DisplayTreeByLayer(AllSet, 2); }).output,
            "1 3 \t : 0\tsum[2], \n1 5 \t : 0\tsum[2], \t1 \t acc= 0.000\t conf=0.000\n3 5 \t : 0\tsum[2], \n");
}

}  // namespace
