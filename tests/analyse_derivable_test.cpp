// Derivable rules found by chaining perfect rules, their count, the removal
// of implied rules, and the ordering that puts the perfect rules first.
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "readfile.h"
#include "rule.h"
#include "rulegen.h"

namespace {

class DerivableTest : public ::testing::Test {
 protected:
  void SetUp() override { Start(10); }
  void TearDown() override { ResetRun(); }

  static void Start(int maxItem) {
    ResetRun();
    MaxItem = maxItem;
    InitialCount();
    InitRuleSet();
  }
  static RuleRecord* Add(std::vector<int> antecedent, int target, float conf, int supp = 10) {
    RuleRecord* rule = NewRule(static_cast<int>(antecedent.size()));
    for (size_t i = 0; i < antecedent.size(); ++i) rule->Antecedent[i] = antecedent[i];
    rule->Target = target;
    rule->Priority = 1;
    rule->Conf = rule->Score = conf;
    rule->Supp = rule->AntSupp = supp;
    AddRuleTail(RuleSet->Last, rule);
    return rule;
  }
  static std::string Run() {
    testing::internal::CaptureStdout();
    EXPECT_EQ(CountDerivableRule(), 1);
    return testing::internal::GetCapturedStdout();
  }
  // The rules in list order, after checking the backward links and the count.
  static std::vector<RuleRecord*> Rules() {
    std::vector<RuleRecord*> rules;
    for (RuleRecord* r = RuleSet->First; r; r = r->Next) rules.push_back(r);
    EXPECT_EQ(static_cast<int>(rules.size()), RuleSet->NumOfRules);
    RuleRecord* r = RuleSet->Last;
    for (size_t i = rules.size(); i-- > 0; r = r->Prev) EXPECT_EQ(r, rules[i]);
    return rules;
  }
};

// a = 1, b = 2, c = 3: a -> b, a -> c and b -> c make a -> c derivable.
TEST_F(DerivableTest, ChainCountsOnceOrTwiceByThePairConfidence) {
  struct Case { int pair; bool released; int b; const char* text; int count; };
  for (const Case& c : {Case{3, false, 5, "\n 1 2 3 0.500000", 1}, Case{6, false, 5, "\n 1 2 3 1.000000", 2},
                        Case{6, true, 5, "\n 1 2 3 0.000000", 1},  // pair table gone: no common case
                        Case{6, false, 7, "", 0}}) {                // b more frequent than c
    Start(10);
    Counter1[1] = 6, Counter1[2] = c.b, Counter1[3] = 6;
    Counter2[1][3] = c.pair;
    if (c.released) FreeCount();
    Add({1}, 2, 1.0f), Add({1}, 3, 1.0f), Add({2}, 3, 1.0f);
    EXPECT_EQ(Run(), std::string(c.text) + "\n Number of derivable rules is " + std::to_string(c.count) + " \n");
    EXPECT_EQ(DerivableRule, c.count);
    EXPECT_EQ(Counter2, nullptr);
    EXPECT_EQ(RuleSet->NumOfRules, 3);
  }
}

TEST_F(DerivableTest, OnlyTheLeadingRunOfPerfectRulesIsRead) {
  Counter1[2] = 5, Counter1[3] = 6;
  Add({2}, 3, 0.9f);  // the run is this rule alone
  Add({1}, 2, 1.0f), Add({1}, 3, 1.0f);
  EXPECT_EQ(Run(), "\n Number of derivable rules is 0 \n");
  // 0.9999 as a float lies below the threshold and ends the run.
  Start(10);
  Counter1[2] = 5, Counter1[3] = 6;
  Add({1}, 2, 1.0f), Add({1}, 3, 0.99995f), Add({2}, 3, 0.9999f);
  EXPECT_EQ(Run(), "\n Number of derivable rules is 0 \n");
}

// t = 2, u = 3: A -> u is implied by A -> t and t -> u at equal support.
TEST_F(DerivableTest, ImpliedRulesAreRemovedAfterTheMessage) {
  RuleRecord* tu = Add({2}, 3, 1.0f);
  RuleRecord* bt = Add({1, 6}, 2, 1.0f);
  RuleRecord* at = Add({1, 5}, 2, 1.0f);
  Add({1, 5}, 3, 1.0f);            // end of the run, removed through {1, 5} -> 2
  Add({1, 6}, 3, 0.999f);          // after the run, removed through {1, 6} -> 2
  RuleRecord* other = Add({1, 6}, 4, 0.5f, 9);
  EXPECT_EQ(Run(), "\n Number of derivable rules is 0 \n");
  EXPECT_EQ(DerivableRule, 2);
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{tu, bt, at, other}));

  // Nothing follows the run, so nothing is searched; unequal support: no match.
  for (int supp : {10, 9}) {
    Start(10);
    Add({2}, 3, 1.0f), Add({1, 4}, 2, 1.0f), Add({1, 4}, 3, 1.0f, supp);
    if (supp == 9) Add({5}, 6, 0.5f);
    Run();
    EXPECT_EQ(DerivableRule, 0);
    EXPECT_EQ(RuleSet->NumOfRules, supp == 10 ? 3 : 4);
  }
}

TEST_F(DerivableTest, LargeCodesManyTargetsAndLongAntecedentsWork) {
  Start(1600);
  for (int t = 1501; t <= 1525; ++t) Counter1[t] = 100, Add({1550}, t, 1.0f);
  Add({1501}, 1525, 1.0f);
  Counter2[1525][1550] = 40;  // the pair is kept under the smaller code
  Counter2[1550][1525] = 99;
  std::vector<int> a;
  for (int i = 1; i <= 25; ++i) a.push_back(i * 20);
  Add(a, 1501, 1.0f, 7), Add(a, 1525, 1.0f, 7), Add({3}, 4, 0.5f);
  EXPECT_EQ(Run(), "\n 1550 1501 1525 0.400000\n Number of derivable rules is 1 \n");
  EXPECT_EQ(DerivableRule, 2);
  EXPECT_EQ(Rules().size(), 28u);  // 29 less A -> 1525
}

TEST_F(DerivableTest, SortPutsHigherScoresFirstAndKeepsTies) {
  RuleRecord* low = Add({1}, 2, 0.5f, 50);
  RuleRecord* tie1 = Add({3}, 4, 1.0f, 5);
  RuleRecord* bigger = Add({5}, 6, 1.0f, 9);
  RuleRecord* tie2 = Add({7}, 8, 1.0f, 5);
  RuleRecord* longer = Add({1, 7}, 9, 1.0f, 9);
  SortRuleSet();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{bigger, longer, tie1, tie2, low}));
  EXPECT_EQ(RuleSet->First->Prev, nullptr);
  EXPECT_EQ(RuleSet->Last->Next, nullptr);
}

}  // namespace
