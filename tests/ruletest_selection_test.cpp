// Choosing a classifier's rules by chi-square, by database coverage and by
// the cut-off at the fewest estimated errors; the chi-square vote; and the
// fall-back on the majority class.
#include <random>
#include <string>
#include <vector>

#include "base/numbers.h"
#include "evaluation/evaluation.h"
#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::AntecedentOf;
using testing_support::RulesOf;
using testing_support::RuletestWorld;

using RuleChoosing = RuletestWorld;

TEST(RuleStatistics, PruningKeepsSignificantPositiveRulesInOrder) {
  RuleSet rules;
  AddRule(rules, {1}, 0, 30, 0.75f, 40, 50);  // chi-square about 16.7
  AddRule(rules, {2}, 0, 10, 0.25f, 40, 50);  // negatively correlated, as significant
  AddRule(rules, {3}, 0, 6, 0.6f, 10, 50);    // positive, chi-square 0.4
  AddRule(rules, {4}, 1, 9, 0.9f, 10, 50);    // positive, chi-square 6.4
  EXPECT_EQ(PruneInsignificant(rules, 100, 3.84), 2);
  const std::vector<RuleRecord*> kept = RulesOf(rules);
  ASSERT_EQ(kept.size(), 2u);
  EXPECT_EQ(AntecedentOf(kept[0]), std::vector<int>{1});
  EXPECT_EQ(AntecedentOf(kept[1]), std::vector<int>{4});
}

TEST_F(RuleChoosing, CoverageKeepsARuleOnlyWhileItsCasesStillCount) {
  // Cases 0-2 hold item 1 (class 0), case 3 items 2 (class 1).
  SetCases({{1, 5}, {1, 5}, {1, 6}, {2, 6}}, {0, 0, 0, 1}, 2);
  AddRule(rules, {1}, 0);     // covers 0-2 right
  AddRule(rules, {5}, 0);     // covers 0, 1 again
  AddRule(rules, {6}, 1);     // covers 2 wrong, 3 right
  AddRule(rules, {1, 5}, 0);  // covers 0, 1 a third time
  AddRule(rules, {9}, 1);     // covers nothing
  CoverCases(rules, data, 1);
  // Cases 0-2 go with the first rule, so the second has nothing left.
  std::vector<RuleRecord*> kept = RulesOf(rules);
  ASSERT_EQ(kept.size(), 2u);
  EXPECT_EQ(AntecedentOf(kept[0]), std::vector<int>{1});
  EXPECT_EQ(AntecedentOf(kept[1]), std::vector<int>{6});
  EXPECT_EQ(rules.DefaultClass, 0);  // every case covered: the most frequent class

  RuleSet again;
  AddRule(again, {1}, 0);
  AddRule(again, {5}, 0);
  AddRule(again, {6}, 1);
  AddRule(again, {1, 5}, 0);
  AddRule(again, {9}, 1);
  // Counting until two rules cover a case keeps the second rule too, but
  // not the fourth: cases 0 and 1 are covered twice by then.
  CoverCases(again, data, 2);
  kept = RulesOf(again);
  ASSERT_EQ(kept.size(), 3u);
  EXPECT_EQ(AntecedentOf(kept[1]), std::vector<int>{5});
  EXPECT_EQ(AntecedentOf(kept[2]), std::vector<int>{6});
}

TEST_F(RuleChoosing, CutOffKeepsTheShortestPrefixWithTheFewestEstimatedErrors) {
  // Twenty cases of class 0 with item 1, then rules that each decide one
  // case of class 1 right and one of class 0 wrong.
  std::vector<std::vector<short>> items;
  std::vector<short> classes;
  for (int i = 0; i < 20; ++i) items.push_back({1, 0}), classes.push_back(0);
  for (short k = 2; k < 6; ++k) {
    items.push_back({k, 0}), classes.push_back(1);
    items.push_back({k, 0}), classes.push_back(0);
  }
  SetCases(items, classes, 2);
  AddRule(rules, {1}, 0);
  for (int k = 2; k < 6; ++k) AddRule(rules, {k}, 1);
  rules.DefaultClass = 0;
  CutAtFewestErrors(rules, data);
  // The coin-flip rules gain nothing: only the first rule stays, with the
  // class of the cases it leaves over as the default.
  const std::vector<RuleRecord*> kept = RulesOf(rules);
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_EQ(AntecedentOf(kept[0]), std::vector<int>{1});
  EXPECT_GE(rules.DefaultClass, 0);

  // Rules that are right on their cases stay.
  RuleSet good;
  SetCases({{1}, {1}, {1}, {2}, {2}, {2}, {3}}, {0, 0, 0, 1, 1, 1, 0}, 2);
  AddRule(good, {1}, 0);
  AddRule(good, {2}, 1);
  CutAtFewestErrors(good, data);
  EXPECT_EQ(RulesOf(good).size(), 2u);
}

TEST_F(RuleChoosing, ChiSquareVoteWeighsEveryMatchingRule) {
  SetCases({{1, 2, 3}}, {0}, 2);
  // One strong rule for class 1 against two weaker ones for class 0 that
  // together weigh more; first match would say class 1.
  const RuleRecord* strong = AddRule(rules, {1}, 1, 30, 0.75f, 40, 50);
  const RuleRecord* weak = AddRule(rules, {2}, 0, 29, 0.725f, 40, 50);
  AddRule(rules, {3}, 0, 29, 0.725f, 40, 50);
  AddRule(rules, {7}, 1, 40, 1.0f, 40, 50);  // does not match
  const double one = RuleChiSquare(*strong, 100) * RuleChiSquare(*strong, 100) / RuleMaxChiSquare(*strong, 100);
  const double other = RuleChiSquare(*weak, 100) * RuleChiSquare(*weak, 100) / RuleMaxChiSquare(*weak, 100);
  ASSERT_GT(one, other);
  ASSERT_LT(one, 2 * other);
  const Prediction p = PredictChiSquare(rules, data, data.DataSpace[0], 100);
  EXPECT_EQ(p.Class, 0);
  EXPECT_EQ(p.Rule, weak);
  EXPECT_EQ(p.Position, 2);
  EXPECT_EQ(PredictFirst(rules, data, data.DataSpace[0]).Class, 1);
  EXPECT_EQ(Decide(rules, data, data.DataSpace[0], Decision::kChiSquare, 100).Class, 0);
  EXPECT_EQ(CountRight(rules, data, Decision::kChiSquare, 100), 1);
  EXPECT_EQ(CountRight(rules, data, Decision::kFirstMatch, 100), 0);

  // No matching rule: the default class.
  rules.DefaultClass = 1;
  SetCases({{8, 8, 8}}, {1}, 2);
  const Prediction none = PredictChiSquare(rules, data, data.DataSpace[0], 100);
  EXPECT_EQ(none.Class, 1);
  EXPECT_EQ(none.Rule, nullptr);
}

// Mines and builds a classifier with the guard on, quietly.
RuleSet Guarded(const DataSet& data, bool guard) {
  ClassifierSettings settings;
  settings.MajorityGuard = guard;
  std::FILE* sink = std::tmpfile();
  RuleSet rules = BuildClassifier(data, settings, sink, [](int, const MinedRules&) {});
  std::fclose(sink);
  return rules;
}

// Names and data of 120 cases of five attributes of three values; the
// class is the first attribute's value when `learnable`, otherwise drawn at
// random, two thirds "a".
void WriteSet(bool learnable, std::string& names, std::string& text) {
  names = "a, b.\n";
  for (int k = 0; k < 5; ++k) names += "x" + std::to_string(k) + ": u, v, w.\n";
  std::mt19937 random(7);
  text.clear();
  for (int i = 0; i < 120; ++i) {
    std::string first;
    for (int k = 0; k < 5; ++k) {
      const std::string value(1, "uvw"[random() % 3]);
      if (k == 0) first = value;
      text += value + ",";
    }
    const bool a = learnable ? first != "w" : random() % 3 != 0;
    text += a ? "a\n" : "b\n";
  }
}

TEST_F(RuleChoosing, GuardFallsBackOnTheMajorityWhenTheRulesLearnNothing) {
  std::string names, text;
  WriteSet(false, names, text);
  Load(names, text);
  LabelCases(data);
  RuleSet unguarded = Guarded(data, false);
  EXPECT_GT(unguarded.NumOfRules, 0);
  RuleSet guarded = Guarded(data, true);
  EXPECT_EQ(guarded.NumOfRules, 0);
  EXPECT_EQ(guarded.DefaultClass, 0);
  // Above the guard's size the rules stay whatever they promise.
  ClassifierSettings small;
  small.GuardCases = 100;
  EXPECT_FALSE(FallBackOnMajority(unguarded, data, small));
  EXPECT_GT(unguarded.NumOfRules, 0);
}

}  // namespace
