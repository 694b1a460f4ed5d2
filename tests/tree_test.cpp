// The candidate tree's operations the run does not call: the subset search,
// the release of a tree, and the listings by name and by layer.
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
