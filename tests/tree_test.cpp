// Candidate tree nodes: creation of the first layer and of joined nodes,
// empty placeholders, deletion with holes, compaction, release.
#include <gtest/gtest.h>

#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::FlagsOf;
using testing_support::ItemsOf;
using testing_support::MinerTest;

class TreeTest : public MinerTest {
 protected:
  // Item counts for items 1..9 over 120 cases, and a bare root.
  void SetUp() override {
    MinerTest::SetUp();
    MaxItem = 9;
    MaxData = 120;
    InitialCount();
    for (int item = 1; item <= 9; ++item) Counter1[item] = 10 * item;
    AllSet = static_cast<TreeNode*>(XCalloc(1, sizeof(TreeNode)));
    AllSet->Item = -1;
    AllSet->Support = MaxData;
    AllSet->SonCapacity = 10;
    AllSet->Son = XAllocArray<TreeNode*>(10);
  }
  TreeNode* Layer1(int item) {
    TreeNode* node = NewNode(AllSet, item);
    LinkSon(AllSet, node);
    return node;
  }
};

TEST_F(TreeTest, NewNodeIsALayerOneNode) {
  TreeNode* node = Layer1(3);
  EXPECT_EQ(node->Item, 3);
  EXPECT_EQ(node->Length, 1);
  EXPECT_EQ(ItemsOf(node), (std::vector<int>{3}));
  EXPECT_EQ(node->Support, 30);
  EXPECT_EQ(node->SubSupport[0], 120);
  EXPECT_FLOAT_EQ(node->Confidence[0], 0.25f);
  EXPECT_EQ(node->TargetFlag[0], -1);  // 65535 in 16 bits
  EXPECT_EQ(static_cast<unsigned short>(node->TargetFlag[0]), 65535);
  EXPECT_EQ(node->NumOfTarget, 1);
  EXPECT_EQ(node->NumOfSon, 0);
  EXPECT_EQ(node->SonCapacity, 10);
  EXPECT_EQ(node->Token, 0);
  EXPECT_EQ(node->Parent, AllSet);
  EXPECT_EQ(TreeSize, 1);
}

TEST_F(TreeTest, AddSonUnderALayerOneNodeIgnoresTheFlagsGiven) {
  TreeNode* a = Layer1(2);
  TreeNode* b = Layer1(5);
  const int flags[] = {0, 0};
  TreeNode* pair = AddSon(a, b, flags, nullptr, nullptr);
  EXPECT_EQ(ItemsOf(pair), (std::vector<int>{2, 5}));
  EXPECT_EQ(pair->Item, 5);
  EXPECT_EQ(pair->Length, 2);
  EXPECT_EQ(FlagsOf(pair), (std::vector<int>{1, 1}));
  EXPECT_EQ(pair->NumOfTarget, 2);
  EXPECT_EQ(pair->SubSupport[0], 50);  // the sibling's support: the pair without item 2
  EXPECT_EQ(pair->SubSupport[1], 20);  // the parent's
  EXPECT_EQ(pair->SubNode[0], b);
  EXPECT_EQ(pair->SubNode[1], a);
  EXPECT_EQ(pair->Support, 0);
  EXPECT_EQ(pair->Parent, a);
  EXPECT_EQ(a->NumOfSon, 0) << "linking is the caller's job";
  EXPECT_EQ(TreeSize, 3);
  LinkSon(a, pair);
}

TEST_F(TreeTest, AddSonDeeperTakesFlagsAndSubsets) {
  TreeNode* one = Layer1(1);
  TreeNode* two = Layer1(2);
  TreeNode* three = Layer1(3);
  TreeNode* p12 = AddSon(one, two, nullptr, nullptr, nullptr);
  TreeNode* p13 = AddSon(one, three, nullptr, nullptr, nullptr);
  TreeNode* p23 = AddSon(two, three, nullptr, nullptr, nullptr);
  LinkSon(one, p12);
  LinkSon(one, p13);
  LinkSon(two, p23);
  p12->Support = 8;
  p13->Support = 7;
  p23->Support = 6;
  const int flags[] = {1, 0, 1};
  const int subSupports[] = {6};
  TreeNode* const subNodes[] = {p23};
  TreeNode* triple = AddSon(p12, p13, flags, subSupports, subNodes);
  LinkSon(p12, triple);
  EXPECT_EQ(ItemsOf(triple), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(FlagsOf(triple), (std::vector<int>{1, 0, 1}));
  EXPECT_EQ(triple->NumOfTarget, 2);
  EXPECT_EQ(triple->SubSupport[0], 6);
  EXPECT_EQ(triple->SubSupport[1], 7);
  EXPECT_EQ(triple->SubSupport[2], 8);
  EXPECT_EQ(triple->SubNode[0], p23);
  EXPECT_EQ(triple->SubNode[1], p13);
  EXPECT_EQ(triple->SubNode[2], p12);
  EXPECT_EQ(TreeSize, 7);
}

TEST_F(TreeTest, NewEmptyNodeIsAPlaceholder) {
  TreeNode* one = Layer1(1);
  TreeNode* empty = NewEmptyNode(one, 4);
  LinkSon(one, empty);
  EXPECT_EQ(ItemsOf(empty), (std::vector<int>{1, 4}));
  EXPECT_EQ(empty->Token, -2);
  EXPECT_EQ(empty->Support, 0);
  EXPECT_EQ(empty->NumOfTarget, 0);
  EXPECT_EQ(empty->TargetFlag, nullptr);
  EXPECT_EQ(empty->SonCapacity, MaxItem);
  EXPECT_EQ(TreeSize, 2);
}

TEST_F(TreeTest, DeleteLeavesAHoleThatReOrderSonPacks) {
  TreeNode* sons[3] = {Layer1(1), Layer1(4), Layer1(7)};
  ASSERT_EQ(AllSet->NumOfSon, 3);
  AllSet->Son[1] = DeleteNode(sons[1]);
  EXPECT_EQ(AllSet->NumOfSon, 2);
  EXPECT_EQ(AllSet->Son[1], nullptr);
  EXPECT_EQ(TreeSize, 2);
  EXPECT_EQ(ReOrderSon(AllSet), 1);
  EXPECT_EQ(AllSet->Son[0], sons[0]);
  EXPECT_EQ(AllSet->Son[1], sons[2]);
  EXPECT_EQ(AllSet->SonCapacity, 3);
}

TEST_F(TreeTest, ReOrderSonWithOneOrNoSon) {
  TreeNode* one = Layer1(1);
  TreeNode* two = Layer1(2);
  LinkSon(one, AddSon(one, two, nullptr, nullptr, nullptr));
  EXPECT_EQ(ReOrderSon(one), 0);
  EXPECT_EQ(one->SonCapacity, 2);
  EXPECT_EQ(ReOrderSon(two), 0);
  EXPECT_EQ(two->SonCapacity, 1);
}

TEST_F(TreeTest, DeleteNodeAcceptsNull) {
  EXPECT_EQ(DeleteNode(nullptr), nullptr);
  EXPECT_EQ(FreeTree(nullptr), nullptr);
  EXPECT_EQ(TreeSize, 0);
}

TEST_F(TreeTest, SonArrayGrowsKeepingAFreeSlot) {
  for (int item = 1; item <= 9; ++item) Layer1(item);
  EXPECT_EQ(AllSet->NumOfSon, 9);
  EXPECT_EQ(AllSet->SonCapacity, 20);  // 9 >= 10 - 1: grown by 10
  for (int s = 0; s < 9; ++s) EXPECT_EQ(AllSet->Son[s]->Item, s + 1);
}

TEST_F(TreeTest, FreeTreeReleasesEveryNode) {
  for (int item : {1, 2, 3, 4}) Layer1(item);
  ASSERT_EQ(TreeSize, 4);
  AllSet = FreeTree(AllSet);
  EXPECT_EQ(AllSet, nullptr);
  EXPECT_EQ(TreeSize, 0);
}

TEST_F(TreeTest, FreeTreeReleasesDeeperLayers) {
  TreeNode* one = Layer1(1);
  TreeNode* two = Layer1(2);
  TreeNode* three = Layer1(3);
  LinkSon(one, AddSon(one, two, nullptr, nullptr, nullptr));
  LinkSon(one, AddSon(one, three, nullptr, nullptr, nullptr));
  LinkSon(two, NewEmptyNode(two, 3));
  ASSERT_EQ(TreeSize, 6);
  AllSet = FreeTree(AllSet);
  EXPECT_EQ(TreeSize, 0);
}

TEST_F(TreeTest, CleanReleasesThePerPositionDataOfABand) {
  TreeNode* one = Layer1(1);
  TreeNode* two = Layer1(2);
  TreeNode* pair = AddSon(one, two, nullptr, nullptr, nullptr);
  LinkSon(one, pair);
  pair->Support = 9;
  Clean(AllSet, 2, 3);
  EXPECT_EQ(pair->ItemSet, nullptr);
  EXPECT_EQ(pair->TargetFlag, nullptr);
  EXPECT_EQ(pair->SubNode, nullptr);
  EXPECT_EQ(pair->Item, 2);
  EXPECT_EQ(pair->Support, 9);
  EXPECT_NE(one->ItemSet, nullptr);
  EXPECT_EQ(one->NumOfSon, 1);
  EXPECT_EQ(TreeSize, 3);
}

}  // namespace
