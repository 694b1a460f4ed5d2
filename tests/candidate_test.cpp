// Candidate generation: joining siblings, the subset check, the live-target
// flags and the perfect-rule mark passed on to the next layer.
#include <gtest/gtest.h>

#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::FlagsOf;
using Ints = std::vector<int>;

// Layer 1 {1}, {3}, {5}, {8}; layer 2 {1,3}, {1,5}, {1,8} and, when asked,
// {3,5}; no {3,8} or {5,8}. Built from pair counts with GMinSup 1.
class CandidateTest : public testing_support::MinerTest {
 protected:
  void Build(bool with35 = true) {
    data.MaxItem = 8;
    data.RealAtt = 4;
    data.MaxData = 10;
    run.GMinSup = 1;
    InitialCount(run.Counts, data);
    for (int item : {1, 3, 5, 8}) run.Counts.Counter1[item] = 6;
    RankItems(run.Counts, data.MaxItem, run.GMinSup);
    *run.Counts.PairCell(1, 3) = 4;
    *run.Counts.PairCell(1, 5) = 5;
    *run.Counts.PairCell(1, 8) = 3;
    *run.Counts.PairCell(3, 5) = with35 ? 2 : 0;
    InitWholeTree(run.Tree, run.Tree.NewRoot(), run.Counts, data, run.GMinSup, out.file());
    out.Take();
  }
  TreeNode* NodeOf(const Ints& items) { return testing_support::NodeOf(run.Tree, items); }
  void SetFlags(const Ints& items, const Ints& flags) {
    TreeNode* node = NodeOf(items);
    node->NumOfTarget = 0;
    for (size_t i = 0; i < flags.size(); ++i) node->NumOfTarget += (node->TargetFlag[i] = flags[i]) != 0;
  }
  int Generate(int layer) {
    const int result = CandidateGen(run.Tree, run.Tree.AllSet, layer, DebugDump{0, out.file()});
    EXPECT_EQ(out.Take(), "");
    return result;
  }
};

TEST_F(CandidateTest, WorkedExample) {
  Build();
  SetFlags({3, 5}, {1, 0});
  const int before = run.Tree.TreeSize;
  EXPECT_EQ(Generate(3), 1);
  EXPECT_EQ(run.Tree.TreeSize, before + 1);
  TreeNode* triple = NodeOf({1, 3, 5});
  ASSERT_NE(triple, nullptr);
  EXPECT_EQ(FlagsOf(triple), (Ints{1, 1, 0}));  // the subset's dead target
  EXPECT_EQ(triple->Token, 0);
  EXPECT_EQ((Ints{triple->SubSupport[0], triple->SubSupport[1], triple->SubSupport[2]}), (Ints{2, 5, 4}));
  EXPECT_EQ(triple->SubNode[0], NodeOf({3, 5}));  // the other subsets are checked by the brute-force test
  EXPECT_EQ(NodeOf({1, 5})->NumOfSon + NodeOf({1, 8})->NumOfSon, 0);  // {1,5,8} needs {5,8}
  // Layer 4 needs two sons of one layer-2 node: {1,3} has one.
  EXPECT_EQ(Generate(4), 0);
}

TEST_F(CandidateTest, MissingOrEmptySubsetMakesNoCandidate) {
  Build(false);
  EXPECT_EQ(Generate(3), 0);
  LinkSon(NodeOf({3}), NewEmptyNode(run.Tree, NodeOf({3}), 5, data.MaxItem));
  ASSERT_NE(NodeOf({3, 5}), nullptr);
  EXPECT_EQ(Generate(3), 0);
  EXPECT_EQ(NodeOf({1, 3})->NumOfSon, 0);
}

TEST_F(CandidateTest, LiveTargetsAndPerfectMarks) {
  const struct {
    Ints marked;            // the node marked perfect, if any
    std::vector<Ints> set;  // {items..., flags...} of pairs whose flags are set
    Ints flags;             // of {1,3,5}; empty when it is not made
    int token;
  } cases[] = {
      {{1, 3}, {}, {1, 1, 0}, 2},  // the parent's mark kills the sibling's target
      {{1, 5}, {}, {1, 0, 1}, 2},  // the sibling's mark kills the parent's
      {{3, 5}, {}, {1, 1, 1}, 2},  // a subset's mark is passed on
      {{}, {{1, 3, 0, 1}}, {0, 1, 1}, 0},  // a target lives where both parents have it
      {{1, 3}, {{1, 3, 0, 0}, {1, 5, 0, 1}}, {}, 0},
      // A dead candidate is kept while a sibling has a live last target.
      {{}, {{1, 3, 0, 0}, {1, 5, 0, 0}, {1, 8, 0, 1}}, {0, 0, 0}, 0},
      {{}, {{1, 3, 0, 0}, {1, 5, 0, 0}, {1, 8, 1, 0}}, {}, 0},
  };
  for (const auto& c : cases) {
    Build();
    if (!c.marked.empty()) NodeOf(c.marked)->Token = 2;
    for (const Ints& s : c.set) SetFlags({s[0], s[1]}, {s[2], s[3]});
    EXPECT_EQ(Generate(3), c.flags.empty() ? 0 : 1);
    TreeNode* triple = NodeOf({1, 3, 5});
    ASSERT_EQ(triple != nullptr, !c.flags.empty());
    if (!triple) continue;
    EXPECT_EQ(FlagsOf(triple), c.flags);
    EXPECT_EQ(triple->Token, c.token);
  }
  // The last case, permanently empty, is told in the debug mode.
  CandidateGen(run.Tree, run.Tree.AllSet, 3, DebugDump{1, out.file()});
  EXPECT_EQ(out.Take(),
            "Permenately empty: Tmp1 node = 3, length = 2, numofsonbak = 3"
            " Node=3: Last-1 = 0 Last=0, Node=5: Last-1 = 0 Last=0, Node=8: Last-1 = 1 Last=0,");
}

}  // namespace
