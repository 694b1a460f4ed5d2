// Ordering rules into a first-match classifier, trimming, and the ways of
// setting the default class.
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RuletestWorld;

using Ordering = RuletestWorld;

// Seven cases; item 10 marks the cases of rule X, 20 those of Y, 30 those of Z.
// Y and Z are error-free and Y comes first; X then loses its wrong case.
TEST_F(Ordering, SevenCasesGiveYThenXThenZWithDefaultOne) {
  SetCases({{10, 0, 30}, {10, 0, 0}, {10, 20, 0}, {0, 20, 0}, {0, 0, 30}, {0, 20, 0}, {0, 0, 0}},
           {0, 0, 1, 1, 0, 1, 1}, 2);
  Dist = {3.0f / 7, 4.0f / 7};
  MinConf = 0.5f;
  RuleRecord* x = AddRule({10}, 0);
  RuleRecord* y = AddRule({20}, 1);
  RuleRecord* z = AddRule({30}, 0);
  EXPECT_EQ(OrderRuleAndSetDefault(), 1);
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{y, x, z}));
  EXPECT_EQ(RuleSet->DefaultClass, 1);
}

TEST_F(Ordering, HighMinConfSetsErringRulesAsideAndDiscardDropsLongOnes) {
  for (int discard : {0, 1}) {
    SetUp();
    SetCases({{1, 2, 5}, {1, 3, 5}, {4, 3, 6}}, {0, 1, 0}, 2);
    Dist = {2.0f / 3, 1.0f / 3};
    MinConf = 0.9f;
    MaxLayer = 2;
    Discard = discard;
    RuleRecord* longErring = AddRule({1, 5}, 0);  // right on 0, wrong on 1; as long as MaxLayer
    RuleRecord* shortErring = AddRule({3}, 0);    // wrong on 1, right on 2
    RuleRecord* clean = AddRule({2}, 0);
    OrderRuleAndSetDefault();
    std::vector<RuleRecord*> expected = {clean, shortErring, longErring};
    if (discard) expected.pop_back();
    EXPECT_EQ(Rules(), expected);
    EXPECT_EQ(RuleSet->DefaultClass, 0);  // counts (1, 1): the lower class
  }
}

// Erring rules with as many wrong cases each are placed in their given order.
TEST_F(Ordering, TheFirstOfEquallyErringRulesGoesFirst) {
  SetCases({{1}, {1}, {2}, {2}}, {0, 1, 1, 0}, 2);
  Dist = {0.5f, 0.5f};
  MinConf = 0.0f;
  RuleRecord* a = AddRule({1}, 0);
  RuleRecord* b = AddRule({2}, 1);
  OrderRuleAndSetDefault();
  EXPECT_EQ(Rules(), (std::vector<RuleRecord*>{a, b}));
}

TEST_F(Ordering, DefaultFromCounts) {
  MaxClass = 3;
  const int tie[] = {0, 5, 5}, none[] = {0, -2, 0}, zero[] = {0, 0, 0};
  EXPECT_EQ(CurrentDefault(tie), 1);
  EXPECT_DOUBLE_EQ(CurrentDefaultRate(tie), 0.5);
  EXPECT_EQ(CurrentDefault(none), -1);
  EXPECT_DOUBLE_EQ(CurrentDefaultRate(none), 0.0);
  EXPECT_DOUBLE_EQ(CurrentDefaultRate(zero), 1.0);
}

}  // namespace
