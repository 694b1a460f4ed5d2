// Rule selection and pruning: the support test, perfect rules, the
// improvement test against the sub-rules, the complete-rule-set mode and the
// debug lines of every pruning decision.
#include <gtest/gtest.h>

#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::AntecedentOf;
using testing_support::Capture;
using testing_support::FlagsOf;
using testing_support::MinerTest;
using testing_support::NodeOf;
using testing_support::Outcome;
using testing_support::Rules;

// Items 1, 4 and 9 with their counts and pair counts, over MaxData cases.
struct Counts {
  int c1, c4, c9, c14, c19, c49;
};

class SelectionTest : public MinerTest {
 protected:
  void Build(const Counts& n, int minSup = 1) {
    MaxItem = 9;
    RealAtt = 3;
    MaxData = 40;
    GMinSup = minSup;
    Capture([&n] {
      InitialCount();
      Counter1[1] = n.c1;
      Counter1[4] = n.c4;
      Counter1[9] = n.c9;
      Counter2[1][4] = n.c14;
      Counter2[1][9] = n.c19;
      Counter2[4][9] = n.c49;
      AllSet = static_cast<TreeNode*>(XCalloc(1, sizeof(TreeNode)));
      InitRuleSet();
      InitWholeTree(AllSet);
    });
  }
  // Selects layer 2, then makes {1,4,9} with the given support and live
  // targets and selects layer 3. Returns what layer 3 printed.
  std::string Layer3(int support, std::vector<int> flags) {
    Outcome two = Capture([] { RuleSelectANdPruning(AllSet, 2); });
    EXPECT_EQ(two.output, "");
    Outcome gen = Capture([] { CandidateGen(AllSet, 3); });
    triple_ = NodeOf({1, 4, 9});
    EXPECT_NE(triple_, nullptr);
    if (!triple_) return "";
    EXPECT_EQ(FlagsOf(triple_), (std::vector<int>{1, 1, 1}));
    triple_->Support = support;
    int live = 0;
    for (int i = 0; i < 3; ++i) {
      triple_->TargetFlag[i] = static_cast<short>(flags[i]);
      live += flags[i];
    }
    triple_->NumOfTarget = static_cast<short>(live);
    return Capture([] { RuleSelectANdPruning(AllSet, 3); }).output;
  }
  TreeNode* triple_ = nullptr;
};

// {1,4,9}: support 12, antecedent supports 14 ({4,9}), 18 ({1,9}), 15 ({1,4}).
const Counts kWorked = {30, 20, 25, 15, 18, 14};

TEST_F(SelectionTest, WorkedExampleWritesTheImprovingRule) {
  MinConf = 0.5f;
  Build(kWorked);
  Debug = 1;
  EXPECT_EQ(Layer3(12, {0, 0, 1}), "");
  ASSERT_EQ(RuleSet->NumOfRules, 1);
  const RuleRecord* rule = RuleSet->First;
  EXPECT_EQ(rule->Len, 2);
  EXPECT_EQ(AntecedentOf(rule), (std::vector<int>{1, 4}));
  EXPECT_EQ(rule->Antecedent[2], 0);
  EXPECT_EQ(rule->Target, 9);
  EXPECT_FLOAT_EQ(rule->Conf, 0.8f);
  EXPECT_FLOAT_EQ(rule->Score, 0.8f);
  EXPECT_EQ(rule->Supp, 12);
  EXPECT_EQ(rule->AntSupp, 15);
  EXPECT_EQ(rule->TargetSupp, 25);
  EXPECT_EQ(rule->Priority, 1);
  EXPECT_EQ(rule->Selected, 0);
  // The target stays live for the next layer; the sub-rule confidences were
  // stored at layer 2.
  EXPECT_EQ(FlagsOf(triple_), (std::vector<int>{0, 0, 1}));
  EXPECT_FLOAT_EQ(triple_->Confidence[2], 0.8f);
  EXPECT_FLOAT_EQ(NodeOf({4, 9})->Confidence[1], 0.7f);
  EXPECT_FLOAT_EQ(NodeOf({1, 9})->Confidence[1], 0.6f);
}

TEST_F(SelectionTest, SubRuleWithTheSameMissesPrunesTheTarget) {
  MinConf = 0.5f;
  Counts counts = kWorked;
  counts.c4 = 17;  // {4} -> 9 now misses 17 - 14 = 3 cases, as {1,4} -> 9 does
  Build(counts);
  Debug = 1;
  EXPECT_EQ(Layer3(12, {0, 0, 1}), "sup(AX-c) = sup(A-c): 1 4 9 target = 9, Target Flag = 1, #Target = 1 \n");
  EXPECT_EQ(RuleSet->NumOfRules, 0);
  EXPECT_EQ(FlagsOf(triple_), (std::vector<int>{0, 0, 0}));
  EXPECT_EQ(triple_->NumOfTarget, 0);
  // Without the perfect-rule mark a node without targets stays.
  EXPECT_EQ(NodeOf({1, 4, 9}), triple_);
}

TEST_F(SelectionTest, LaterSubRuleUsesTheOtherSpelling) {
  MinConf = 0.5f;
  Counts counts = kWorked;
  counts.c4 = 17;  // {4} -> 1 misses 17 - 15 = 2 cases, as {4,9} -> 1 does
  Build(counts);
  Debug = 1;
  EXPECT_EQ(Layer3(12, {1, 0, 0}), "sup(AX-c) = sup(A-c): 1 4 9 target = 1, TargetFlag = 1, #Target = 1 \n");
  EXPECT_EQ(RuleSet->NumOfRules, 0);
}

TEST_F(SelectionTest, ImprovementComparesTheQuotientWithTheStoredSingle) {
  // conf 7/10 = 0.7 against the best sub-rule {4} -> 9 of 14/20 stored as
  // 0.7f, which is a little below 0.7: the rule counts as an improvement.
  MinConf = 0.5f;
  Build({30, 20, 25, 10, 18, 14});
  EXPECT_EQ(Layer3(7, {0, 0, 1}), "");
  ASSERT_EQ(RuleSet->NumOfRules, 1);
  EXPECT_EQ(RuleSet->First->Supp, 7);
  EXPECT_EQ(RuleSet->First->AntSupp, 10);
}

TEST_F(SelectionTest, EqualConfidenceIsNoImprovement) {
  // conf 5/10 = 0.5 against sub-rules of exactly 0.5 (14/28 and 15/30).
  MinConf = 0.5f;
  Build({30, 28, 25, 10, 15, 14});
  EXPECT_EQ(Layer3(5, {0, 0, 1}), "");
  EXPECT_EQ(RuleSet->NumOfRules, 0);
  EXPECT_EQ(FlagsOf(triple_), (std::vector<int>{0, 0, 1}));
}

TEST_F(SelectionTest, RuleBelowTheConfidenceThreshold) {
  MinConf = 0.9f;
  Build(kWorked);
  EXPECT_EQ(Layer3(12, {0, 0, 1}), "");
  EXPECT_EQ(RuleSet->NumOfRules, 0);
  EXPECT_EQ(FlagsOf(triple_), (std::vector<int>{0, 0, 1}));
}

TEST_F(SelectionTest, SupportTestIsInclusive) {
  MinConf = 0.5f;
  Build(kWorked, 12);
  const int size = TreeSize;
  EXPECT_EQ(Layer3(11, {0, 0, 1}), "");
  EXPECT_EQ(NodeOf({1, 4, 9}), nullptr);
  EXPECT_EQ(NodeOf({1, 4})->NumOfSon, 0);
  EXPECT_EQ(TreeSize, size);  // made and deleted
  EXPECT_EQ(RuleSet->NumOfRules, 0);
}

TEST_F(SelectionTest, SupportEqualToTheMinimumIsExamined) {
  MinConf = 0.5f;
  Build(kWorked, 12);
  Layer3(12, {0, 0, 1});
  EXPECT_NE(NodeOf({1, 4, 9}), nullptr);
  EXPECT_EQ(RuleSet->NumOfRules, 1);
}

TEST_F(SelectionTest, OneItemAntecedentsGiveOnlyPerfectRules) {
  MinConf = 0.5f;
  Build({10, 30, 20, 1, 8, 1});  // 1 -> 9 holds in 8 of 10 cases
  int kept = -1;
  Capture([&kept] { kept = RuleSelectANdPruning(AllSet, 2); });
  EXPECT_EQ(RuleSet->NumOfRules, 0);
  EXPECT_FLOAT_EQ(NodeOf({1, 9})->Confidence[1], 0.8f);
  EXPECT_FLOAT_EQ(NodeOf({1, 9})->Confidence[0], 0.4f);
  EXPECT_EQ(FlagsOf(NodeOf({1, 9})), (std::vector<int>{1, 1}));
  EXPECT_EQ(kept, 1);  // {1} keeps two sons
}

TEST_F(SelectionTest, CompleteRuleSetModeKeepsEveryConfidentRule) {
  MinConf = 0.5f;
  Ass = 1;
  Build({10, 30, 8, 1, 8, 1});  // 1 -> 9 in 8 of 10 cases, 9 -> 1 always
  Capture([] { RuleSelectANdPruning(AllSet, 2); });
  const auto rules = Rules();
  ASSERT_EQ(rules.size(), 2u);
  EXPECT_EQ(AntecedentOf(rules[0]), (std::vector<int>{9}));
  EXPECT_EQ(rules[0]->Target, 1);
  EXPECT_EQ(AntecedentOf(rules[1]), (std::vector<int>{1}));
  EXPECT_EQ(rules[1]->Target, 9);
  EXPECT_FLOAT_EQ(rules[1]->Conf, 0.8f);
  // Nothing is pruned or marked in this mode.
  EXPECT_EQ(FlagsOf(NodeOf({1, 9})), (std::vector<int>{1, 1}));
  EXPECT_EQ(NodeOf({1, 9})->Token, 0);
}

TEST_F(SelectionTest, ConfidenceThresholdIsASingle) {
  Ass = 1;
  MinConf = 0.8f;  // 8/10 = 0.8 is below 0.8f
  Build({10, 30, 20, 1, 8, 1});
  Capture([] { RuleSelectANdPruning(AllSet, 2); });
  EXPECT_EQ(RuleSet->NumOfRules, 0);

  ResetRun();
  EndRunThrows = true;
  Ass = 1;
  MinConf = 0.9f;  // 9/10 = 0.9 is above 0.9f
  Build({10, 30, 20, 1, 9, 1});
  Capture([] { RuleSelectANdPruning(AllSet, 2); });
  ASSERT_EQ(RuleSet->NumOfRules, 1);
  EXPECT_EQ(RuleSet->First->Target, 9);
}

TEST_F(SelectionTest, PerfectRuleMarksTheNode) {
  Build({8, 30, 20, 1, 8, 1});  // 1 -> 9 always
  Debug = 1;
  Outcome out = Capture([] { RuleSelectANdPruning(AllSet, 2); });
  EXPECT_EQ(out.output, "sup(AX) = sup(A): 1 9 target = 9, Target flag = 1, #Target = 2 \n");
  TreeNode* pair = NodeOf({1, 9});
  ASSERT_NE(pair, nullptr);
  EXPECT_EQ(pair->Token, 2);
  EXPECT_EQ(FlagsOf(pair), (std::vector<int>{1, 0}));
  EXPECT_EQ(pair->NumOfTarget, 1);
  ASSERT_EQ(RuleSet->NumOfRules, 1);
  EXPECT_EQ(RuleSet->First->Conf, 1.0f);
  EXPECT_EQ(RuleSet->First->Target, 9);
}

TEST_F(SelectionTest, NodeWithoutTargetsAfterPerfectRulesIsDeleted) {
  Build({8, 30, 8, 1, 8, 1});  // 1 and 9 always together
  Debug = 1;
  const int size = TreeSize;
  Outcome out = Capture([] { RuleSelectANdPruning(AllSet, 2); });
  EXPECT_EQ(out.output,
            "sup(AX) = sup(A): 1 9 target = 1, Target flag = 1, #Target = 2 \n"
            "sup(AX) = sup(A): 1 9 target = 9, Target flag = 1, #Target = 1 \n"
            "Pruning: 1 9 target = 9, Target Flag = 0, #Target = 0 \n");
  EXPECT_EQ(NodeOf({1, 9}), nullptr);
  EXPECT_EQ(TreeSize, size - 1);
  EXPECT_EQ(RuleSet->NumOfRules, 2);
  TreeNode* one = NodeOf({1});
  ASSERT_EQ(one->NumOfSon, 1);
  EXPECT_EQ(one->Son[0]->Item, 4);
  EXPECT_EQ(one->SonCapacity, 2);
}

TEST_F(SelectionTest, PerfectRulePassesNoOtherTest) {
  // A perfect rule is written whatever the confidence threshold.
  MinConf = 2.0f;
  Build({8, 30, 20, 1, 8, 1});
  Capture([] { RuleSelectANdPruning(AllSet, 2); });
  EXPECT_EQ(RuleSet->NumOfRules, 1);
}

}  // namespace
