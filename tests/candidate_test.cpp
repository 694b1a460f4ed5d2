// Candidate generation: joining siblings, the subset check, the live-target
// flags and the perfect-rule mark passed on to the next layer.
#include <gtest/gtest.h>

#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::Capture;
using testing_support::FlagsOf;
using testing_support::ItemsOf;
using testing_support::MinerTest;
using testing_support::NodeOf;
using testing_support::Outcome;

// Layer 1 {1}, {3}, {5}, {8}; layer 2 {1,3}, {1,5}, {1,8} and, when asked,
// {3,5}; no {3,8} or {5,8}. Built from pair counts with GMinSup 1.
class CandidateTest : public MinerTest {
 protected:
  void Build(bool with35 = true) {
    MaxItem = 8;
    RealAtt = 4;
    MaxData = 10;
    GMinSup = 1;
    Capture([with35] {
      InitialCount();
      for (int item : {1, 3, 5, 8}) Counter1[item] = 6;
      Counter2[1][3] = 4;
      Counter2[1][5] = 5;
      Counter2[1][8] = 3;
      if (with35) Counter2[3][5] = 2;
      AllSet = static_cast<TreeNode*>(XCalloc(1, sizeof(TreeNode)));
      InitWholeTree(AllSet);
    });
  }
  static void SetFlags(TreeNode* node, std::vector<int> flags) {
    int sum = 0;
    for (size_t i = 0; i < flags.size(); ++i) {
      node->TargetFlag[i] = static_cast<short>(flags[i]);
      sum += flags[i] != 0;
    }
    node->NumOfTarget = static_cast<short>(sum);
  }
  static int Generate(int layer) {
    int result = 0;
    Outcome out = Capture([&] { result = CandidateGen(AllSet, layer); });
    EXPECT_EQ(out.output, "");
    return result;
  }
};

TEST_F(CandidateTest, WorkedExample) {
  Build();
  SetFlags(NodeOf({3, 5}), {1, 0});
  const int before = TreeSize;
  EXPECT_EQ(Generate(3), 1);
  EXPECT_EQ(TreeSize, before + 1);
  TreeNode* triple = NodeOf({1, 3, 5});
  ASSERT_NE(triple, nullptr);
  EXPECT_EQ(ItemsOf(triple), (std::vector<int>{1, 3, 5}));
  EXPECT_EQ(FlagsOf(triple), (std::vector<int>{1, 1, 0}));
  EXPECT_EQ(triple->NumOfTarget, 2);
  EXPECT_EQ(triple->Token, 0);
  EXPECT_EQ(triple->Support, 0);
  EXPECT_EQ(triple->SubSupport[0], 2);  // {3,5}
  EXPECT_EQ(triple->SubSupport[1], 5);  // {1,5}, the sibling
  EXPECT_EQ(triple->SubSupport[2], 4);  // {1,3}, the parent
  EXPECT_EQ(triple->SubNode[0], NodeOf({3, 5}));
  EXPECT_EQ(triple->SubNode[1], NodeOf({1, 5}));
  EXPECT_EQ(triple->SubNode[2], NodeOf({1, 3}));
  EXPECT_EQ(NodeOf({1, 3})->NumOfSon, 1);
  EXPECT_EQ(NodeOf({1, 5})->NumOfSon, 0);  // {1,5,8} needs {5,8}
  EXPECT_EQ(NodeOf({1, 8})->NumOfSon, 0);
}

TEST_F(CandidateTest, MissingSubsetMakesNoCandidate) {
  Build(false);
  EXPECT_EQ(Generate(3), 0);
  EXPECT_EQ(NodeOf({1, 3})->NumOfSon, 0);
}

TEST_F(CandidateTest, EmptyPlaceholderCountsAsMissing) {
  Build(false);
  TreeNode* three = NodeOf({3});
  LinkSon(three, NewEmptyNode(three, 5));
  ASSERT_NE(NodeOf({3, 5}), nullptr);
  EXPECT_EQ(Generate(3), 0);
  EXPECT_EQ(NodeOf({1, 3})->NumOfSon, 0);
}

TEST_F(CandidateTest, ParentMarkedPerfectPassesItsMarkOn) {
  Build();
  NodeOf({1, 3})->Token = 2;
  EXPECT_EQ(Generate(3), 1);
  TreeNode* triple = NodeOf({1, 3, 5});
  ASSERT_NE(triple, nullptr);
  EXPECT_EQ(FlagsOf(triple), (std::vector<int>{1, 1, 0}));  // the parent's mark kills the last target
  EXPECT_EQ(triple->Token, 2);
}

TEST_F(CandidateTest, SiblingMarkedPerfectKillsTheOtherJoinedTarget) {
  Build();
  NodeOf({1, 5})->Token = 2;
  EXPECT_EQ(Generate(3), 1);
  TreeNode* triple = NodeOf({1, 3, 5});
  ASSERT_NE(triple, nullptr);
  EXPECT_EQ(FlagsOf(triple), (std::vector<int>{1, 0, 1}));
  EXPECT_EQ(triple->Token, 2);
}

TEST_F(CandidateTest, SubsetMarkedPerfectMarksTheCandidate) {
  Build();
  NodeOf({3, 5})->Token = 2;
  EXPECT_EQ(Generate(3), 1);
  TreeNode* triple = NodeOf({1, 3, 5});
  ASSERT_NE(triple, nullptr);
  EXPECT_EQ(FlagsOf(triple), (std::vector<int>{1, 1, 1}));
  EXPECT_EQ(triple->Token, 2);
}

TEST_F(CandidateTest, FlagsNeedBothParents) {
  Build();
  SetFlags(NodeOf({1, 3}), {0, 1});
  EXPECT_EQ(Generate(3), 1);
  EXPECT_EQ(FlagsOf(NodeOf({1, 3, 5})), (std::vector<int>{0, 1, 1}));
}

TEST_F(CandidateTest, MarkedPairWithoutLiveFlagsIsSkipped) {
  Build();
  NodeOf({1, 3})->Token = 2;
  SetFlags(NodeOf({1, 3}), {0, 0});
  SetFlags(NodeOf({1, 5}), {0, 1});  // flag 2 comes from here, killed by the mark
  EXPECT_EQ(Generate(3), 0);
  EXPECT_EQ(NodeOf({1, 3})->NumOfSon, 0);
}

TEST_F(CandidateTest, DeadCandidateIsKeptWhileASiblingHasALiveLastTarget) {
  Build();
  SetFlags(NodeOf({1, 3}), {0, 0});
  SetFlags(NodeOf({1, 5}), {0, 0});
  SetFlags(NodeOf({1, 8}), {0, 1});
  EXPECT_EQ(Generate(3), 1);
  TreeNode* triple = NodeOf({1, 3, 5});
  ASSERT_NE(triple, nullptr);
  EXPECT_EQ(FlagsOf(triple), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(triple->NumOfTarget, 0);
}

TEST_F(CandidateTest, PermanentlyEmptyCandidate) {
  Build();
  SetFlags(NodeOf({1, 3}), {0, 0});
  SetFlags(NodeOf({1, 5}), {0, 0});
  SetFlags(NodeOf({1, 8}), {1, 0});
  EXPECT_EQ(Generate(3), 0);
  EXPECT_EQ(NodeOf({1, 3, 5}), nullptr);

  Debug = 1;
  int result = -1;
  Outcome out = Capture([&] { result = CandidateGen(AllSet, 3); });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(out.output,
            "Permenately empty: Tmp1 node = 3, length = 2, numofsonbak = 3"
            " Node=3: Last-1 = 0 Last=0, Node=5: Last-1 = 0 Last=0, Node=8: Last-1 = 1 Last=0,");
}

TEST_F(CandidateTest, NothingToJoin) {
  Build();
  EXPECT_EQ(Generate(3), 1);
  // Layer 4 needs two sons of one layer-2 node: {1,3} has one.
  EXPECT_EQ(Generate(4), 0);
  EXPECT_EQ(Generate(9), 0);
  EXPECT_EQ(CandidateGen(nullptr, 3), 0);
}

TEST_F(CandidateTest, SubsetSearch) {
  Build();
  const int items[] = {1, 3, 5, 8};
  EXPECT_EQ(SearchSubSet(items, 0), AllSet);
  EXPECT_EQ(SearchSubSet(items, 2), NodeOf({1, 3}));
  const int pair35[] = {3, 5};
  EXPECT_EQ(SearchSubSet(pair35, 2), NodeOf({3, 5}));
  const int pair38[] = {3, 8};
  EXPECT_EQ(SearchSubSet(pair38, 2), nullptr);
  const int pair13[] = {1, 3};
  EXPECT_EQ(SearchSubSet(pair13, 1), NodeOf({1}));

  int supports[4] = {};
  TreeNode* nodes[4] = {};
  EXPECT_EQ(FrequentSubSet(pair38, 2, supports, nodes), 1);  // nothing to check below three items
  const int triple[] = {1, 3, 5};
  EXPECT_EQ(FrequentSubSet(triple, 3, supports, nodes), 1);
  EXPECT_EQ(supports[0], 2);
  EXPECT_EQ(nodes[0], NodeOf({3, 5}));
  const int other[] = {1, 5, 8};
  EXPECT_EQ(FrequentSubSet(other, 3, supports, nodes), 0);
}

}  // namespace
