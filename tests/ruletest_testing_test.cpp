// Matching rules against cases, the first-match test, the vote test and the
// coverage table.
#include <cstdint>
#include <string>
#include <vector>

#include "evaluation/evaluation.h"
#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RuletestWorld;

using Testing = RuletestWorld;

TEST_F(Testing, MatchTestTellsUncoveredWrongAndRight) {
  SetCases({{4, 9, 2}}, {1}, 2);
  const short* row = data.DataSpace[0];
  EXPECT_EQ(MatchTest(row, AddRule(rules, {9, 4}, 1), 3), 1);  // order does not matter
  EXPECT_EQ(MatchTest(row, AddRule(rules, {4}, 0), 3), 0);     // covers, names another class
  EXPECT_EQ(MatchTest(row, AddRule(rules, {4, 5}, 1), 3), -1);
  EXPECT_EQ(MatchTest(row, AddRule(rules, {1}, 1), 3), -1);    // the class column is no item
}

TEST_F(Testing, FirstMatchCountsRulesThenTheDefault) {
  // Eight cases covered by the rule (seven rightly), two left to the default.
  SetCases({{1}, {1}, {1}, {1}, {1}, {1}, {1}, {1}, {3}, {3}}, {0, 0, 0, 0, 0, 0, 0, 1, 1, 0}, 2);
  AddRule(rules, {1}, 0);
  rules.DefaultClass = 1;
  TestSingle(rules, data, out.file());
  EXPECT_EQ(out.Take(),
            "\n testing on toy with 10 instances \n"
            "\n accuracy = 80.00 %\n rule coverage = 80.00 %\n default accuracy = 10.00 %\n");
  EXPECT_EQ(rules.Hits, 8);
  EXPECT_EQ(rules.Misses, 2);
  // Without a default class the uncovered cases are neither hits nor misses.
  rules.DefaultClass = -1;
  TestSingle(rules, data, out.file());
  EXPECT_EQ(rules.Hits, 7);
  EXPECT_EQ(rules.Misses, 1);
  EXPECT_NE(out.Take().find("default accuracy = 0.00 %"), std::string::npos);
}

TEST_F(Testing, VoteGoesToTheHighestClassWithAnyVoteFromFiveRulesAtMost) {
  SetCases({{1, 2}, {1, 3}, {7, 8}}, {1, 0, 0}, 2);
  AddRule(rules, {1}, 0);
  AddRule(rules, {2}, 0);
  AddRule(rules, {1, 2}, 0);
  AddRule(rules, {2}, 1);
  Testmulti(rules, data, out.file());
  EXPECT_EQ(out.Take(),
            "\n testing on toy with 3 instances \n"
            "1: weigh[0] = 3.00 weight[1] = 1.00 Correct \n"
            "2: weigh[0] = 1.00 weight[1] = 0.00 Correct \n"
            "3: weigh[0] = 0.00 weight[1] = 0.00 Wrong \n"
            "\n accuracy = 66.67 %\n rule coverage = 66.67 %\n");

  RuleSet five;
  SetCases({{1}}, {0}, 2);
  for (int k = 0; k < 5; ++k) AddRule(five, {1}, 0);
  AddRule(five, {1}, 1);  // the sixth covering rule has no vote
  Testmulti(five, data, out.file());
  EXPECT_EQ(out.Take(), "\n testing on toy with 1 instances \n1: weigh[0] = 5.00 weight[1] = 0.00 Correct \n"
                        "\n accuracy = 100.00 %\n rule coverage = 100.00 %\n");
}

// One row per rule: 1 right, -1 wrong, 0 not covered; then the target and
// the taken flag.
TEST_F(Testing, CoverageTableMarksEachCaseOfEachRule) {
  SetCases({{1, 2}, {1, 3}, {4, 2}}, {0, 1, 0}, 2);
  AddRule(rules, {1}, 0);
  AddRule(rules, {2}, 1);
  std::vector<std::vector<int>> cells(2, std::vector<int>(5, 7));
  std::vector<int*> table = {cells[0].data(), cells[1].data()};
  FillInTable(rules, data, table.data());
  EXPECT_EQ(cells[0], (std::vector<int>{1, -1, 0, 0, 0}));
  EXPECT_EQ(cells[1], (std::vector<int>{-1, 0, -1, 1, 0}));
  PrintTable(rules, data, table.data(), out.file());
  EXPECT_EQ(out.Take(), " \n rule 0 : 1, -1, 0,  \n rule 1 : -1, 0, -1, ");
}

// The table is filled from per-item sets of cases; it must say what
// MatchTest says for every rule and case, also for rules with items the
// data set does not have (above MaxItem, 0, negative) and for more cases
// than one 64-bit word holds.
TEST_F(Testing, CoverageTableAgreesWithMatchTest) {
  std::uint64_t state = 12345;
  auto below = [&state](int n) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return static_cast<int>(state % static_cast<std::uint64_t>(n));
  };
  std::vector<std::vector<short>> items;
  std::vector<short> classes;
  for (int i = 0; i < 150; ++i) {
    // Four columns of items 1-12, an unknown value (0) now and then.
    items.push_back({static_cast<short>(below(4) ? 1 + below(3) : 0), static_cast<short>(4 + below(3)),
                     static_cast<short>(7 + below(3)), static_cast<short>(10 + below(3))});
    classes.push_back(static_cast<short>(below(3) - (i % 40 == 0 ? 1 : 0)));
  }
  SetCases(items, classes, 3);
  data.MaxItem = 12;
  for (int k = 0; k < 60; ++k) {
    std::vector<int> antecedent;
    for (int a = below(4); a > 0; --a) antecedent.push_back(k % 15 == 0 && a == 1 ? 13 + below(3) - 15 * below(2) : 1 + below(12));
    AddRule(rules, antecedent, below(3));
  }
  const int cases = data.MaxData;
  std::vector<std::vector<int>> cells(60, std::vector<int>(static_cast<size_t>(cases) + 2, 7));
  std::vector<int*> table;
  for (auto& row : cells) table.push_back(row.data());
  FillInTable(rules, data, table.data());
  int k = 0;
  for (const RuleRecord* r = rules.First; r; r = r->Next, ++k) {
    for (int i = 0; i < cases; ++i) {
      const int match = MatchTest(data.DataSpace[i], r, data.RealAtt);
      EXPECT_EQ(cells[k][i], match < 0 ? 0 : (match == 1 ? 1 : -1)) << "rule " << k << ", case " << i;
    }
    EXPECT_EQ(cells[k][cases], r->Target);
    EXPECT_EQ(cells[k][cases + 1], 0);
  }
}

}  // namespace
