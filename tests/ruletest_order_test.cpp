// Ordering rules into a first-match classifier, its single steps, trimming
// and the ways of setting the default class.
#include <string>
#include <vector>

#include "ruletest_fixture.h"

namespace {

using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStdout;

using Ordering = RuletestWorld;

// Seven cases; item 10 marks the cases of rule X, 20 those of Y, 30 those of Z.
class SevenCaseOrdering : public RuletestWorld {
 protected:
  void SetUp() override {
    RuletestWorld::SetUp();
    SetCases({{10, 0, 30}, {10, 0, 0}, {10, 20, 0}, {0, 20, 0}, {0, 0, 30}, {0, 20, 0}, {0, 0, 0}},
             {0, 0, 1, 1, 0, 1, 1}, 2);
    Dist = {3.0f / 7, 4.0f / 7};
    MinConf = 0.5f;
    x_ = AddRule({10}, 0);
    y_ = AddRule({20}, 1);
    z_ = AddRule({30}, 0);
  }
  RuleRecord* x_ = nullptr;
  RuleRecord* y_ = nullptr;
  RuleRecord* z_ = nullptr;
};

TEST_F(SevenCaseOrdering, PlacesYThenXThenZWithDefaultOne) {
  EXPECT_EQ(OrderRuleAndSetDefault(), 1);
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{y_, x_, z_}));
  Targets();  // links agree both ways
  EXPECT_EQ(RuleSet->DefaultClass, 1);
}

TEST_F(SevenCaseOrdering, StepByStepTheClassCountsEndAtZeroAndOne) {
  std::vector<std::vector<int>> rows(3, std::vector<int>(MaxData + 3, 0));
  int* table[] = {rows[0].data(), rows[1].data(), rows[2].data(), nullptr};
  FillInTable(table);
  int counts[] = {3, 4};
  RuleChoice choice{};
  ASSERT_EQ(ReadRuleLabel(table, &choice, 0), 1);
  EXPECT_EQ(choice.Position, 1);
  EXPECT_EQ(choice.Right, 3);
  EXPECT_EQ(choice.Wrong, 0);
  SwapRule(0, 1);
  SwapRow(table, 0, 1);
  UpdateTable(table, counts, 0);
  EXPECT_EQ(counts[1], 1);
  // X has lost its wrong case 2 and is now error-free.
  ASSERT_EQ(ReadRuleLabel(table, &choice, 1), 1);
  EXPECT_EQ(choice.Position, 1);
  EXPECT_EQ(choice.Wrong, 0);
  UpdateTable(table, counts, 1);
  ASSERT_EQ(ReadRuleLabel(table, &choice, 2), 1);
  UpdateTable(table, counts, 2);
  EXPECT_EQ(counts[0], 0);
  EXPECT_EQ(counts[1], 1);
  EXPECT_EQ(CurrentDefault(counts), 1);
  EXPECT_EQ(ReadRuleLabel(table, &choice, 3), 0);
}

TEST_F(Ordering, EarlierErrorFreeRuleGoesFirstWhateverItCovers) {
  SetCases({{1, 2}, {0, 2}, {0, 2}}, {0, 0, 0}, 1);
  Dist = {1.0f};
  RuleRecord* small = AddRule({1}, 0);
  RuleRecord* large = AddRule({2}, 0);
  OrderRuleAndSetDefault();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{small, large}));
  EXPECT_EQ(RuleSet->DefaultClass, -1);  // every case explained: no class left
}

TEST_F(Ordering, RulesCoveringNothingLeftArePlacedBeforeErringRules) {
  SetCases({{1, 3}, {1, 3}, {2, 3}}, {0, 0, 1}, 2);
  Dist = {2.0f / 3, 1.0f / 3};
  MinConf = 0.0f;
  RuleRecord* erring = AddRule({3}, 0);   // wrong on case 2
  RuleRecord* first = AddRule({1}, 0);    // error-free, takes cases 0 and 1
  RuleRecord* idle = AddRule({1}, 1);     // wrong on 0 and 1, then covers nothing
  OrderRuleAndSetDefault();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{first, idle, erring}));
}

TEST_F(Ordering, HighMinConfSetsErringRulesAsideAndDiscardTrimsLongOnes) {
  SetCases({{1, 2, 5}, {1, 3, 5}, {4, 3, 6}}, {0, 1, 0}, 2);
  Dist = {2.0f / 3, 1.0f / 3};
  MinConf = 0.9f;
  MaxLayer = 2;
  RuleRecord* longErring = AddRule({1, 5}, 0);  // right on 0, wrong on 1
  RuleRecord* shortErring = AddRule({3}, 0);    // wrong on 1, right on 2
  RuleRecord* clean = AddRule({2}, 0);
  OrderRuleAndSetDefault();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{clean, shortErring, longErring}));
  EXPECT_EQ(RuleSet->DefaultClass, 0);  // counts (1, 1): the lower class

  // Again with trimming: the two-item rule is as long as MaxLayer and goes.
  ResetRun();
  InitRuleSet();
  SetCases({{1, 2, 5}, {1, 3, 5}, {4, 3, 6}}, {0, 1, 0}, 2);
  Dist = {2.0f / 3, 1.0f / 3};
  MinConf = 0.9f;
  MaxLayer = 2;
  Discard = 1;
  AddRule({1, 5}, 0);
  shortErring = AddRule({3}, 0);
  clean = AddRule({2}, 0);
  OrderRuleAndSetDefault();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{clean, shortErring}));
  Targets();
}

TEST_F(Ordering, ZeroMinConfPlacesEveryChosenRule) {
  SetCases({{1}, {1}, {1}, {2}}, {0, 1, 1, 0}, 2);
  Dist = {0.5f, 0.5f};
  MinConf = 0.0f;
  RuleRecord* a = AddRule({1}, 0);  // 1 right, 2 wrong
  RuleRecord* b = AddRule({2}, 1);  // 1 wrong
  OrderRuleAndSetDefault();
  // b has fewer errors and is placed first; a follows though below any accuracy.
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{b, a}));
  EXPECT_EQ(RuleSet->DefaultClass, 1);
}

TEST_F(Ordering, WorksBeyondOneHundredClassesAndOneThousandRules) {
  SetCases({{1}, {2}, {3}, {4}}, {150, 150, 7, 150}, 151);
  Dist.assign(151, 0.0f);
  Dist[150] = 0.75f;
  Dist[7] = 0.25f;
  MinConf = 1.0f;
  for (int k = 0; k < 1200; ++k) AddRule({1}, 3);  // wrong on case 0, set aside
  RuleRecord* right = AddRule({2}, 150);
  OrderRuleAndSetDefault();
  EXPECT_EQ(RuleSet->First, right);
  EXPECT_EQ(RuleSet->NumOfRules, 1201);
  EXPECT_EQ(RuleSet->DefaultClass, 150);  // two of its cases are still unexplained
}

TEST_F(Ordering, SwapRuleExchangesAnyTwoPositions) {
  std::vector<RuleRecord*> r;
  for (int k = 0; k < 5; ++k) r.push_back(AddRule({}, k));
  SwapRule(3, 0);
  EXPECT_EQ(Targets(), (std::vector<int>{3, 1, 2, 0, 4}));
  SwapRule(1, 2);  // neighbours
  EXPECT_EQ(Targets(), (std::vector<int>{3, 2, 1, 0, 4}));
  SwapRule(4, 3);  // neighbours at the end
  EXPECT_EQ(Targets(), (std::vector<int>{3, 2, 1, 4, 0}));
  SwapRule(0, 4);
  EXPECT_EQ(Targets(), (std::vector<int>{0, 2, 1, 4, 3}));
  SwapRule(2, 2);
  EXPECT_EQ(Targets(), (std::vector<int>{0, 2, 1, 4, 3}));
}

TEST_F(Ordering, ReadRuleLabelSkipsTakenRowsAndNeverTakesAllWrong) {
  SetCases({{1}, {1}}, {0, 0}, 2);
  AddRule({1}, 1);  // wrong on both cases
  AddRule({1}, 0);
  std::vector<std::vector<int>> rows(2, std::vector<int>(MaxData + 3, 0));
  int* table[] = {rows[0].data(), rows[1].data()};
  FillInTable(table);
  RuleChoice choice{};
  ASSERT_EQ(ReadRuleLabel(table, &choice, 0), 1);
  EXPECT_EQ(choice.Position, 1);
  EXPECT_EQ(rows[1][MaxData + 1], 1);
  EXPECT_EQ(ReadRuleLabel(table, &choice, 0), 0);
  int positions[] = {1};
  FreeLowAccRule(table, positions, 1);
  EXPECT_EQ(rows[1][MaxData + 1], 0);
  EXPECT_EQ(ReadRuleLabel(table, &choice, 5), 0);
}

TEST_F(Ordering, DefaultFromCounts) {
  MaxClass = 3;
  const int tie[] = {0, 5, 5};
  EXPECT_EQ(CurrentDefault(tie), 1);
  EXPECT_DOUBLE_EQ(CurrentDefaultRate(tie), 0.5);
  const int none[] = {0, -2, 0};
  EXPECT_EQ(CurrentDefault(none), -1);
  EXPECT_DOUBLE_EQ(CurrentDefaultRate(none), 0.0);
  const int zero[] = {0, 0, 0};
  EXPECT_DOUBLE_EQ(CurrentDefaultRate(zero), 1.0);
}

TEST_F(Ordering, DiscardRestRuleKeepsTheFrontAndShortRules) {
  MaxLayer = 3;
  AddRule({1, 2, 3}, 0);
  AddRule({1, 2, 3}, 1);
  AddRule({1}, 2);
  AddRule({1, 2, 3, 4}, 3);
  AddRule({}, 4);
  EXPECT_EQ(DiscardRestRule(1), 1);
  EXPECT_EQ(Targets(), (std::vector<int>{0, 2, 4}));
  EXPECT_EQ(DiscardRestRule(3), 1);  // nothing to do
  EXPECT_EQ(DiscardRestRule(0), 1);
  EXPECT_EQ(Targets(), (std::vector<int>{2, 4}));
  EXPECT_EQ(DiscardRestRule(2), 1);
  EXPECT_EQ(DiscardRestRule(5), 0);  // no rule at position 5
}

TEST_F(Ordering, TestAndSetDefaultTakesTheLargestUncoveredClass) {
  SetCases({{1}, {2}, {2}, {2}}, {0, 1, 1, 0}, 2);
  CaptureStdout();
  TestAndSetDefult();
  EXPECT_EQ(GetCapturedStdout(), "\n accuracy = 50.00 %\n unaccurcy = 50.00 %");
  EXPECT_EQ(RuleSet->DefaultClass, 0);  // a tie: the lower class

  AddRule({1}, 0);
  CaptureStdout();
  TestAndSetDefult();
  EXPECT_EQ(GetCapturedStdout(), "\n accuracy = 75.00 %\n unaccurcy = 25.00 %");
  EXPECT_EQ(RuleSet->DefaultClass, 1);
  EXPECT_EQ(RuleSet->Hits, 3);
  EXPECT_EQ(RuleSet->Misses, 1);

  SetCases({}, {}, 2);
  CaptureStdout();
  TestAndSetDefult();
  EXPECT_EQ(GetCapturedStdout(), "\n accuracy = 0.00 %\n unaccurcy = 0.00 %");
}

}  // namespace
