// Console reports: the layer report, the rule listings by number and by
// name, and the two tree dumps.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::Capture;
using testing_support::MinerTest;
using testing_support::NodeOf;

class ReportTest : public MinerTest {
 protected:
  // Appends a rule to the rule set.
  static RuleRecord* AddRule(std::vector<int> antecedent, int target, int supp, float conf, int antSupp = 0,
                             int targetSupp = 0) {
    if (!RuleSet) InitRuleSet();
    RuleRecord* rule = NewRule(static_cast<int>(antecedent.size()));
    for (size_t i = 0; i < antecedent.size(); ++i) rule->Antecedent[i] = antecedent[i];
    rule->Target = target;
    rule->Supp = supp;
    rule->Conf = conf;
    rule->Score = conf;
    rule->AntSupp = antSupp;
    rule->TargetSupp = targetSupp;
    rule->Priority = 1;
    AddRuleTail(RuleSet->Last, rule);
    return rule;
  }
  static std::string AbstractLine(int i) {
    return "\n" + std::to_string(i) + "  -> 7\t Sup = " + std::to_string(i) +
           "\t Conf = 0.500000\t Chi = 0.500000";
  }
};

TEST_F(ReportTest, LayerReport) {
  InitRuleSet();
  TreeSize = 42;
  EXPECT_EQ(Capture(Report).output, "The number of tree nodes 42 \nThe number of rules 0 \n");
  AddRule({1}, 2, 3, 1.0f);
  EXPECT_EQ(Capture(Report).output, "The number of tree nodes 42 \nThe number of rules 1 \n");
}

TEST_F(ReportTest, AbstractListingOfThirtyRules) {
  std::string expected = "\nThe number of rules is 30";
  for (int i = 1; i <= 30; ++i) {
    AddRule({i}, 7, i, 0.5f);
    expected += AbstractLine(i);
  }
  expected += "\n";
  int result = 0;
  EXPECT_EQ(Capture([&result] { result = DisplayAbstractRule(); }).output, expected);
  EXPECT_EQ(result, 1);
}

TEST_F(ReportTest, AbstractListingStopsAfterThirtyRules) {
  std::string expected = "\nThe number of rules is 31\n Print the first 30 rules \n";
  for (int i = 1; i <= 31; ++i) {
    AddRule({i}, 7, i, 0.5f);
    if (i <= 30) expected += AbstractLine(i);
  }
  expected += "\n";
  EXPECT_EQ(Capture([] { DisplayAbstractRule(); }).output, expected);
}

TEST_F(ReportTest, AbstractListingOfSpecialRules) {
  AddRule({}, 5, 12, 0.25f);
  AddRule({1, 3, 4}, 9, 2, 1.0f)->Score = 42.5f;
  EXPECT_EQ(Capture([] { DisplayAbstractRule(); }).output,
            "\nThe number of rules is 2"
            "\n -> 5\t Sup = 12\t Conf = 0.250000\t Chi = 0.250000"
            "\n1 3 4  -> 9\t Sup = 2\t Conf = 1.000000\t Chi = 42.500000"
            "\n");
  ResetRun();
  InitRuleSet();
  EXPECT_EQ(Capture([] { DisplayAbstractRule(); }).output, "\nThe number of rules is 0\n");
}

TEST_F(ReportTest, NamedListingGroupsByTarget) {
  LoadNames("yes, no.\ncolour: red, green.\nsize: small, large.\n");  // 1 2 | 3 4 | yes 5, no 6
  AddRule({1, 3}, 6, 4, 0.8f, 5, 9);
  AddRule({2}, 5, 7, 1.0f, 7, 11);
  AddRule({}, 6, 9, 0.45f, 20, 9);
  AddRule({5}, 3, 3, 0.3f, 10, 6);
  EXPECT_EQ(Capture(DisplayRule).output,
            "\n- - - - - - - - - - - - - - - - - - - - - - - - - - - - \n"
            "Number of rules 4 \n"
            "1:Class is yes; (10)  -> size is small (6), \t \t supp = 3, conf = 0.3000 \n"
            "2:colour is green; (7)  -> Class is yes (11), \t \t supp = 7, conf = 1.0000 \n"
            "3:colour is red; size is small; (5)  -> Class is no (9), \t \t supp = 4, conf = 0.8000 \n"
            "4:(20)  -> Class is no (9), \t \t supp = 9, conf = 0.4500 \n");
}

TEST_F(ReportTest, NamedListingShowsThirtyRules) {
  LoadNames("yes, no.\ncolour: red, green.\n");
  for (int i = 0; i < 31; ++i) AddRule({1}, 3, i, 1.0f, i, 40);
  const std::string output = Capture(DisplayRule).output;
  EXPECT_NE(output.find("Number of rules 31 \n\n Print the first 30 rules \n1:"), std::string::npos);
  EXPECT_NE(output.find("\n30:colour is red; (29) "), std::string::npos);
  EXPECT_EQ(output.find("31:"), std::string::npos);
}

class TreeDump : public MinerTest {
 protected:
  void SetUp() override {
    MinerTest::SetUp();
    // Items 1, 3, 5 with pairs {1,3}, {1,5}, {3,5} and the triple {1,3,5}.
    SetRows(6, 3, {{1, 3, 5}, {1, 3, 5}, {1, 4, 5}, {2, 3, 5}, {1, 3, 6}});
    BuildFirstLayers(2);
    Capture([] { CandidateGen(AllSet, 3); });
  }
};

TEST_F(TreeDump, NodesOfEachKind) {
  TreeNode* triple = NodeOf({1, 3, 5});
  ASSERT_NE(triple, nullptr);
  // Not counted yet: items, sons and targets only.
  std::string dump = Capture([triple] { DisplayTree(triple); }).output;
  EXPECT_EQ(dump, "1 3 5 \t #sons = 0 \t #targets = 3, Token = 0 \n");

  triple->Support = 2;
  triple->TargetFlag[1] = 0;
  triple->NumOfTarget = 2;
  triple->Token = 2;
  dump = Capture([triple] { DisplayTree(triple); }).output;
  EXPECT_EQ(dump,
            "1 3 5 \t #sons = 0 \tsupp=2, \n"
            "\t subset 0: 3 5 supp = 3(3)target = 1 \n"
            "\t subset 1: 1 5 supp = 3(3)\n"
            "\t subset 2: 1 3 supp = 3(3)target = 5 \n"
            "\t #targets = 2, Token = 2 \n");

  // A pair with support: no subset lines.
  TreeNode* pair = NodeOf({1, 3});
  dump = Capture([pair] { DisplayTree(pair); }).output;
  EXPECT_EQ(dump,
            "1 3 \t #sons = 1 \tsupp=3, \n\t #targets = 2, Token = 0 \n"
            "1 3 5 \t #sons = 0 \tsupp=2, \n"
            "\t subset 0: 3 5 supp = 3(3)target = 1 \n"
            "\t subset 1: 1 5 supp = 3(3)\n"
            "\t subset 2: 1 3 supp = 3(3)target = 5 \n"
            "\t #targets = 2, Token = 2 \n");
}

TEST_F(TreeDump, WholeTreeDepthFirst) {
  const std::string dump = Capture([] { DisplayTree(AllSet); }).output;
  EXPECT_EQ(dump,
            "1 \t #sons = 2 \tsupp=4, \n\t #targets = 1, Token = 0 \n"
            "1 3 \t #sons = 1 \tsupp=3, \n\t #targets = 2, Token = 0 \n"
            "1 3 5 \t #sons = 0 \t #targets = 3, Token = 0 \n"
            "1 5 \t #sons = 0 \tsupp=3, \n\t #targets = 2, Token = 0 \n"
            "3 \t #sons = 1 \tsupp=4, \n\t #targets = 1, Token = 0 \n"
            "3 5 \t #sons = 0 \tsupp=3, \n\t #targets = 2, Token = 0 \n"
            "5 \t #sons = 0 \tsupp=4, \n\t #targets = 1, Token = 0 \n");
  EXPECT_EQ(Capture([] { DisplayTree(nullptr); }).output, "");
}

TEST_F(TreeDump, ByLayer) {
  NodeOf({3})->Token = 2;
  NodeOf({1, 5})->Token = 2;
  NodeOf({1, 5})->TargetFlag[0] = 0;
  NodeOf({1, 5})->Acc = 0.5f;
  EXPECT_EQ(Capture([] { DisplayTreeByLayer(AllSet, 1); }).output,
            "1 \t : 2\tsum[4], \n"
            "3 \t : 1\tsum[4], \t\t acc= 0.000\t conf=0.000\n"
            "5 \t : 0\tsum[4], \n");
  EXPECT_EQ(Capture([] { DisplayTreeByLayer(AllSet, 2); }).output,
            "1 3 \t : 1\tsum[3], \n"
            "1 5 \t : 0\tsum[3], \t0 \t acc= 0.500\t conf=0.000\n"
            "3 5 \t : 0\tsum[3], \n");
  EXPECT_EQ(Capture([] { DisplayTreeByLayer(AllSet, 3); }).output, "1 3 5 \t : 0\n");
}

}  // namespace
