// Matching rules against cases, the first-match test and the vote test.
#include <string>

#include "miner_fixture.h"

namespace {

using testing_support::AddRule;
using testing_support::RuletestWorld;

using Testing = RuletestWorld;

TEST_F(Testing, MatchTestTellsUncoveredWrongAndRight) {
  SetCases({{4, 9, 2}}, {1}, 2);
  const short* row = DataSpace[0];
  EXPECT_EQ(MatchTest(row, AddRule({9, 4}, 1)), 1);  // order does not matter
  EXPECT_EQ(MatchTest(row, AddRule({4}, 0)), 0);     // covers, names another class
  EXPECT_EQ(MatchTest(row, AddRule({4, 5}, 1)), -1);
  EXPECT_EQ(MatchTest(row, AddRule({1}, 1)), -1);    // the class column is no item
}

TEST_F(Testing, FirstMatchCountsRulesThenTheDefault) {
  // Eight cases covered by the rule (seven rightly), two left to the default.
  SetCases({{1}, {1}, {1}, {1}, {1}, {1}, {1}, {1}, {3}, {3}}, {0, 0, 0, 0, 0, 0, 0, 1, 1, 0}, 2);
  AddRule({1}, 0);
  RuleSet->DefaultClass = 1;
  EXPECT_EQ(Printed(TestSingle),
            "\n testing on toy with 10 instances \n"
            "\n accuracy = 80.00 %\n rule coverage = 80.00 %\n default accuracy = 10.00 %\n");
  EXPECT_EQ(RuleSet->Hits, 8);
  EXPECT_EQ(RuleSet->Misses, 2);
}

TEST_F(Testing, VoteGoesToTheHighestClassWithAnyVoteFromFiveRulesAtMost) {
  SetCases({{1, 2}, {1, 3}, {7, 8}}, {1, 0, 0}, 2);
  AddRule({1}, 0);
  AddRule({2}, 0);
  AddRule({1, 2}, 0);
  AddRule({2}, 1);
  EXPECT_EQ(Printed(Testmulti),
            "\n testing on toy with 3 instances \n"
            "1: weigh[0] = 3.00 weight[1] = 1.00 Correct \n"
            "2: weigh[0] = 1.00 weight[1] = 0.00 Correct \n"
            "3: weigh[0] = 0.00 weight[1] = 0.00 Wrong \n"
            "\n accuracy = 66.67 %\n rule coverage = 66.67 %\n");

  SetUp();
  SetCases({{1}}, {0}, 2);
  for (int k = 0; k < 5; ++k) AddRule({1}, 0);
  AddRule({1}, 1);  // the sixth covering rule has no vote
  EXPECT_EQ(Printed(Testmulti), "\n testing on toy with 1 instances \n1: weigh[0] = 5.00 weight[1] = 0.00 Correct \n"
                                "\n accuracy = 100.00 %\n rule coverage = 100.00 %\n");
}

}  // namespace
