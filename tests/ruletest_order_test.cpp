// Ordering rules into a first-match classifier, by fewest errors and by
// pessimistic error rate, trimming, and the library's table operations the
// programs do not call (choosing, taking out, swapping, the defaults).
#include <vector>

#include "evaluation/evaluation.h"
#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RulesOf;
using testing_support::RuletestWorld;

using Ordering = RuletestWorld;

OrderSettings Order(float minConf, int maxLayer = 4, bool discard = false) {
  OrderSettings settings;
  settings.MinConf = minConf;
  settings.MaxLayer = maxLayer;
  settings.Discard = discard;
  return settings;
}

// Seven cases; item 10 marks the cases of rule X, 20 those of Y, 30 those of Z.
// Y and Z are error-free and Y comes first; X then loses its wrong case.
TEST_F(Ordering, SevenCasesGiveYThenXThenZWithDefaultOne) {
  SetCases({{10, 0, 30}, {10, 0, 0}, {10, 20, 0}, {0, 20, 0}, {0, 0, 30}, {0, 20, 0}, {0, 0, 0}},
           {0, 0, 1, 1, 0, 1, 1}, 2);
  RuleRecord* x = AddRule(rules, {10}, 0);
  RuleRecord* y = AddRule(rules, {20}, 1);
  RuleRecord* z = AddRule(rules, {30}, 0);
  EXPECT_EQ(OrderRuleAndSetDefault(rules, data, {3.0f / 7, 4.0f / 7}, Order(0.5f)), 1);
  EXPECT_EQ(RulesOf(rules), (std::vector<RuleRecord*>{y, x, z}));
  EXPECT_EQ(rules.DefaultClass, 1);
}

TEST_F(Ordering, HighMinConfSetsErringRulesAsideAndDiscardDropsLongOnes) {
  SetCases({{1, 2, 5}, {1, 3, 5}, {4, 3, 6}}, {0, 1, 0}, 2);
  for (bool discard : {false, true}) {
    RuleSet set;
    RuleRecord* longErring = AddRule(set, {1, 5}, 0);  // right on 0, wrong on 1; as long as MaxLayer
    RuleRecord* shortErring = AddRule(set, {3}, 0);    // wrong on 1, right on 2
    RuleRecord* clean = AddRule(set, {2}, 0);
    OrderRuleAndSetDefault(set, data, {2.0f / 3, 1.0f / 3}, Order(0.9f, 2, discard));
    std::vector<RuleRecord*> expected = {clean, shortErring, longErring};
    if (discard) expected.pop_back();
    EXPECT_EQ(RulesOf(set), expected);
    EXPECT_EQ(set.DefaultClass, 0);  // counts (1, 1): the lower class
  }
}

// The steps of the ordering on a hand-made table of three rules and four
// cases.
TEST_F(Ordering, ChoosingTakingOutAndSwappingRows) {
  SetCases({{1}, {1}, {1}, {1}}, {0, 0, 0, 0}, 2);
  std::vector<std::vector<int>> cells = {
      {1, -1, 1, 0, 0, 0},  // rule 0: one wrong, target 0
      {0, 1, 1, 0, 1, 0},   // rule 1: none wrong, target 1
      {1, 0, 0, -1, 0, 0},  // rule 2: one wrong, target 0
  };
  std::vector<int*> table = {cells[0].data(), cells[1].data(), cells[2].data()};
  for (int k = 0; k < 3; ++k) AddRule(rules, {1}, 0);
  RuleChoice choice{};
  // The first error-free row wins at once and is marked taken.
  ASSERT_EQ(ReadRuleLabel(rules, data, table.data(), &choice, 0), 1);
  EXPECT_EQ(choice.Position, 1);
  EXPECT_EQ(choice.Right, 2);
  EXPECT_EQ(cells[1][5], 1);
  // Among erring rows the first with the fewest errors.
  ASSERT_EQ(ReadRuleLabel(rules, data, table.data(), &choice, 0), 1);
  EXPECT_EQ(choice.Position, 0);
  EXPECT_EQ(choice.Wrong, 1);
  const int taken[] = {0, 1};
  FreeLowAccRule(data, table.data(), taken, 2);
  EXPECT_EQ(cells[0][5], 0);
  EXPECT_EQ(cells[1][5], 0);
  EXPECT_EQ(ReadRuleLabel(rules, data, table.data(), &choice, 3), 0);  // nothing from the end on

  SwapRow(table.data(), 0, 1);
  EXPECT_EQ(table[0], cells[1].data());
  // Placing row 0 (rule 1, target 1) takes its cases out of every later row
  // and out of the class counts.
  int counts[] = {3, 2};
  UpdateTable(rules, data, table.data(), counts, 0);
  EXPECT_EQ(counts[0], 3);
  EXPECT_EQ(counts[1], 0);
  EXPECT_EQ(cells[0], (std::vector<int>{1, 0, 0, 0, 0, 0}));
  EXPECT_EQ(cells[2], (std::vector<int>{1, 0, 0, -1, 0, 0}));
}

TEST_F(Ordering, SwapRuleRelinksNeighboursAndDistantRules) {
  std::vector<RuleRecord*> r;
  for (int k = 0; k < 4; ++k) r.push_back(AddRule(rules, {k + 1}, 0));
  SwapRule(rules, 1, 0);  // neighbours, the first among them
  EXPECT_EQ(RulesOf(rules), (std::vector<RuleRecord*>{r[1], r[0], r[2], r[3]}));
  SwapRule(rules, 0, 3);  // the ends
  EXPECT_EQ(RulesOf(rules), (std::vector<RuleRecord*>{r[3], r[0], r[2], r[1]}));
  SwapRule(rules, 2, 2);
  EXPECT_EQ(RulesOf(rules), (std::vector<RuleRecord*>{r[3], r[0], r[2], r[1]}));
}

TEST_F(Ordering, DiscardRestKeepsThePlacedRulesAndTheShortRest) {
  std::vector<RuleRecord*> r = {AddRule(rules, {1, 2, 3}, 0), AddRule(rules, {1}, 0), AddRule(rules, {1, 2}, 0),
                                AddRule(rules, {2}, 0)};
  EXPECT_EQ(DiscardRestRule(rules, 1, 2), 1);
  EXPECT_EQ(RulesOf(rules), (std::vector<RuleRecord*>{r[0], r[1], r[3]}));
  EXPECT_EQ(DiscardRestRule(rules, 3, 2), 1);  // all placed: nothing to do
  EXPECT_EQ(DiscardRestRule(rules, -1, 2), 0);
  EXPECT_EQ(DeleteRule(rules, r[1]), r[3]);
  EXPECT_EQ(RulesOf(rules), (std::vector<RuleRecord*>{r[0], r[3]}));
}

TEST_F(Ordering, DefaultFromCountsAndShares) {
  const int tie[] = {0, 5, 5}, none[] = {0, -2, 0}, zero[] = {0, 0, 0};
  EXPECT_EQ(CurrentDefault(tie, 3), 1);
  EXPECT_DOUBLE_EQ(CurrentDefaultRate(tie, 3), 0.5);
  EXPECT_EQ(CurrentDefault(none, 3), -1);
  EXPECT_DOUBLE_EQ(CurrentDefaultRate(none, 3), 0.0);
  EXPECT_DOUBLE_EQ(CurrentDefaultRate(zero, 3), 1.0);
  EXPECT_EQ(CurrentDefault(tie, 1), -1);  // only the classes counted

  data.MaxClass = 3;
  SetSimpleDefault(rules, data, {0.25f, 0.5f, 0.25f});
  EXPECT_EQ(rules.DefaultClass, 1);
  SetSimpleDefault(rules, data, {0.0f, 0.0f});
  EXPECT_EQ(rules.DefaultClass, -1);
}

// The default class is the most frequent class of the uncovered cases; the
// hits are the rules' and the default's.
TEST_F(Ordering, TestAndSetDefaultTakesTheClassTheRulesLeaveMost) {
  SetCases({{1}, {1}, {2}, {2}, {2}, {3}}, {0, 1, 1, 1, 0, -1}, 2);
  AddRule(rules, {1}, 0);
  TestAndSetDefult(rules, data, out.file());
  EXPECT_EQ(rules.DefaultClass, 1);
  EXPECT_EQ(rules.Hits, 3);
  EXPECT_EQ(rules.Misses, 3);
  EXPECT_EQ(out.Take(), "\n accuracy = 50.00 %\n unaccurcy = 50.00 %");
}

}  // namespace

// By pessimistic error rate: of two error-free rules the one covering more
// of the cases left goes first, and a rule with one exception among many
// cases goes before an error-free one covering few.
TEST_F(Ordering, ByErrorRateBroadRulesGoBeforeNarrowOnes) {
  // Cases 0-1: item 1, class 0. Cases 2-21: item 2, class 1, but the last
  // one class 0. Cases 22-25: item 3, class 0.
  std::vector<std::vector<short>> items;
  std::vector<short> classes;
  for (int i = 0; i < 2; ++i) items.push_back({1}), classes.push_back(0);
  for (int i = 0; i < 20; ++i) items.push_back({2}), classes.push_back(i == 19 ? 0 : 1);
  for (int i = 0; i < 4; ++i) items.push_back({3}), classes.push_back(0);
  SetCases(items, classes, 2);
  const std::vector<float> dist = {7.0f / 26, 19.0f / 26};
  OrderSettings settings = Order(0.1f);
  settings.ByErrorRate = true;
  RuleRecord* narrow = AddRule(rules, {1}, 0);
  RuleRecord* broad = AddRule(rules, {2}, 1);
  RuleRecord* middle = AddRule(rules, {3}, 0);
  OrderRuleAndSetDefault(rules, data, dist, settings);
  EXPECT_EQ(RulesOf(rules), (std::vector<RuleRecord*>{broad, middle, narrow}));

  // By the fewest errors the error-free rules come first, in their order.
  RuleSet again;
  narrow = AddRule(again, {1}, 0);
  broad = AddRule(again, {2}, 1);
  middle = AddRule(again, {3}, 0);
  OrderRuleAndSetDefault(again, data, dist, Order(0.1f));
  EXPECT_EQ(RulesOf(again), (std::vector<RuleRecord*>{narrow, middle, broad}));
}
