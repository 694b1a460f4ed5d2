// Rule selection and pruning: the support test, perfect rules, the
// improvement test against the sub-rules, the complete-rule-set mode and the
// debug lines of every pruning decision.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::AntecedentOf;
using testing_support::FlagsOf;
using Ints = std::vector<int>;

// Counts of items 1, 4, 9 and of the pairs {1,4}, {1,9}, {4,9}, over 40 cases.
using Counts = std::array<int, 6>;

class SelectionTest : public testing_support::MinerTest {
 protected:
  void Build(const Counts& n, float minConf = 0.5f, int minSup = 1) {
    data.MaxItem = 9;
    data.RealAtt = 3;
    data.MaxData = 40;
    run.GMinSup = minSup;
    minConf_ = minConf;
    debug_ = 0;
    InitialCount(run.Counts, data);
    int* c1 = run.Counts.Counter1;
    c1[1] = n[0], c1[4] = n[1], c1[9] = n[2];
    RankItems(run.Counts, data.MaxItem, run.GMinSup);
    ItemCounts& c = run.Counts;
    for (auto cell : {std::make_pair(c.PairCell(1, 4), n[3]), std::make_pair(c.PairCell(1, 9), n[4]),
                      std::make_pair(c.PairCell(4, 9), n[5])})
      if (cell.first) *cell.first = cell.second;
    InitRuleSet(run.Rules);
    InitWholeTree(run.Tree, run.Tree.NewRoot(), run.Counts, data, run.GMinSup, out.file());
    out.Take();
  }
  TreeNode* NodeOf(const Ints& items) { return testing_support::NodeOf(run.Tree, items); }
  std::string Select(int layer) {
    RuleSelectANdPruning(run.Tree, run.Tree.AllSet, layer, Selection(minConf_, ass_, debug_), run.Counts, run.Rules);
    return out.Take();
  }
  // Selects layer 2, then makes {1,4,9} with the given support and live
  // targets and selects layer 3 in the debug mode. Returns what it printed.
  std::string Layer3(int support, const Ints& flags) {
    EXPECT_EQ(Select(2), "");
    CandidateGen(run.Tree, run.Tree.AllSet, 3, DebugDump{0, out.file()});
    out.Take();
    TreeNode* triple = NodeOf({1, 4, 9});
    if (!triple) return "no {1,4,9}";
    EXPECT_EQ(FlagsOf(triple), (Ints{1, 1, 1}));
    triple->Support = support;
    triple->NumOfTarget = 0;
    for (int i = 0; i < 3; ++i) triple->NumOfTarget += (triple->TargetFlag[i] = flags[i]) != 0;
    debug_ = 1;
    return Select(3);
  }
  float minConf_ = 0.5f;
  int ass_ = 0;
  int debug_ = 0;
};

// {1,4,9}: support 12, antecedent supports 14 ({4,9}), 18 ({1,9}), 15 ({1,4}).
const Counts kWorked = {30, 20, 25, 15, 18, 14};

TEST_F(SelectionTest, WorkedExampleWritesTheImprovingRule) {
  Build(kWorked);
  EXPECT_EQ(Layer3(12, {0, 0, 1}), "");
  ASSERT_EQ(run.Rules.NumOfRules, 1);
  const RuleRecord* rule = run.Rules.First;
  EXPECT_EQ(AntecedentOf(rule), (Ints{1, 4}));
  EXPECT_EQ((Ints{rule->Antecedent[2], rule->Target, rule->Supp, rule->AntSupp, rule->TargetSupp, rule->Priority}),
            (Ints{0, 9, 12, 15, 25, 1}));
  EXPECT_FLOAT_EQ(rule->Conf, 0.8f);
  // The target stays live for the next layer; the sub-rule confidences were
  // stored at layer 2.
  EXPECT_EQ(FlagsOf(NodeOf({1, 4, 9})), (Ints{0, 0, 1}));
  EXPECT_FLOAT_EQ(NodeOf({1, 4, 9})->Confidence[2], 0.8f);
  EXPECT_FLOAT_EQ(NodeOf({4, 9})->Confidence[1], 0.7f);
  EXPECT_FLOAT_EQ(NodeOf({1, 9})->Confidence[1], 0.6f);
}

// A sub-rule missing as many cases prunes the target: golden runs (the
// weather set) show both spellings of the debug line.
TEST_F(SelectionTest, SupportConfidenceAndImprovementTests) {
  const struct {
    Counts counts;
    float minConf;
    int minSup, support, rules;
  } cases[] = {
      // 7/10 against the sub-rule 14/20 stored as 0.7f, a little below 0.7.
      {{30, 20, 25, 10, 18, 14}, 0.5f, 1, 7, 1},
      // 5/10 against sub-rules of exactly 0.5 (14/28, 15/30): no improvement.
      {{30, 28, 25, 10, 15, 14}, 0.5f, 1, 5, 0},
      {kWorked, 0.9f, 1, 12, 0},   // below the threshold
      {kWorked, 0.5f, 12, 12, 1},  // the support test is inclusive
      {kWorked, 0.5f, 12, 11, -1},  // -1: {1,4,9} is made and deleted
  };
  for (const auto& c : cases) {
    Build(c.counts, c.minConf, c.minSup);
    const int size = run.Tree.TreeSize;
    EXPECT_EQ(Layer3(c.support, {0, 0, 1}), "");
    EXPECT_EQ(run.Rules.NumOfRules, std::max(c.rules, 0)) << c.support;
    TreeNode* triple = NodeOf({1, 4, 9});
    EXPECT_EQ(triple ? FlagsOf(triple) : Ints{run.Tree.TreeSize - size}, (c.rules < 0 ? Ints{0} : Ints{0, 0, 1}));
  }
}

TEST_F(SelectionTest, CompleteRuleSetModeKeepsEveryConfidentRule) {
  ass_ = 1;
  Build({10, 30, 8, 1, 8, 1});  // 1 -> 9 in 8 of 10 cases, 9 -> 1 always
  EXPECT_EQ(Select(2), "");
  ASSERT_EQ(run.Rules.NumOfRules, 2);
  EXPECT_EQ(AntecedentOf(run.Rules.First), (Ints{9}));
  EXPECT_EQ(run.Rules.First->Target * 10 + run.Rules.Last->Target, 19);
  EXPECT_FLOAT_EQ(run.Rules.Last->Conf, 0.8f);
  // Nothing is pruned or marked in this mode.
  EXPECT_EQ(FlagsOf(NodeOf({1, 9})), (Ints{1, 1}));
  EXPECT_EQ(NodeOf({1, 9})->Token, 0);
}

TEST_F(SelectionTest, PerfectRulesMarkTheNodeWhateverTheThreshold) {
  Build({8, 30, 20, 1, 8, 1}, 2.0f);  // 1 -> 9 always
  debug_ = 1;
  EXPECT_EQ(Select(2), "sup(AX) = sup(A): 1 9 target = 9, Target flag = 1, #Target = 2 \n");
  EXPECT_EQ(NodeOf({1, 9})->Token, 2);
  EXPECT_EQ(FlagsOf(NodeOf({1, 9})), (Ints{1, 0}));
  EXPECT_EQ(NodeOf({1, 9})->NumOfTarget, 1);
  ASSERT_EQ(run.Rules.NumOfRules, 1);
  EXPECT_EQ(run.Rules.First->Conf, 1.0f);
  // Deleting a node left without targets is a golden run (the weather set).
}

}  // namespace
