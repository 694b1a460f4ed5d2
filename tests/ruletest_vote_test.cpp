// The confidence-weighted vote of the first covering rules: equal sums, and
// the report's count of unknown classes and uncovered cases.
#include <string>

#include "evaluation/evaluation.h"
#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RuletestWorld;

using Vote = RuletestWorld;

TEST_F(Vote, EqualSumsGoToTheEarlierPlacedRulesClass) {
  // Class 1 votes first with 0.5; class 0 reaches the same 0.5 in two votes.
  SetCases({{1, 2}}, {0}, 2);
  const RuleRecord* first = AddRule(rules, {2}, 1, 1, 0.5f);
  AddRule(rules, {1}, 0, 1, 0.25f);
  AddRule(rules, {1, 2}, 0, 1, 0.25f);
  Prediction p = PredictVote(rules, data, data.DataSpace[0], VoteSettings());
  EXPECT_EQ(p.Class, 1);
  EXPECT_EQ(p.Rule, first);
  EXPECT_EQ(p.Position, 1);

  // The same votes placed the other way round: class 0 now votes first,
  // and its deciding rule is its earliest voter.
  RuleSet reversed;
  const RuleRecord* earliest = AddRule(reversed, {1}, 0, 1, 0.25f);
  AddRule(reversed, {1, 2}, 0, 1, 0.25f);
  AddRule(reversed, {2}, 1, 1, 0.5f);
  p = PredictVote(reversed, data, data.DataSpace[0], VoteSettings());
  EXPECT_EQ(p.Class, 0);
  EXPECT_EQ(p.Rule, earliest);
  EXPECT_EQ(p.Position, 1);
}

TEST_F(Vote, ReportCountsUnknownClassesAsMissesAndUnpredictedCasesAsNeither) {
  // Case 1 right by the vote, 2 wrong by the vote, 3 of unknown class,
  // 4 right by the default, 5 wrong by the default.
  SetCases({{1}, {1}, {1}, {3}, {3}}, {1, 0, -1, 0, 1}, 2);
  AddRule(rules, {1}, 0, 1, 0.3f);
  AddRule(rules, {1}, 1, 1, 0.6f);
  rules.DefaultClass = 0;
  TestVote(rules, data, VoteSettings(), out.file());
  EXPECT_EQ(out.Take(),
            "\n testing on toy with 5 instances \n"
            "\n vote of the first 5 covering rules of each case, each weighted by its confidence"
            "\n accuracy = 40.00 %\n rule coverage = 60.00 %\n default accuracy = 20.00 %\n");
  EXPECT_EQ(rules.Hits, 2);
  EXPECT_EQ(rules.Misses, 3);
  // No default class: the uncovered cases are neither hits nor misses.
  rules.DefaultClass = -1;
  TestVote(rules, data, VoteSettings(), out.file());
  out.Take();
  EXPECT_EQ(rules.Hits, 1);
  EXPECT_EQ(rules.Misses, 2);
}

}  // namespace
