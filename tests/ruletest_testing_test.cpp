// Matching rules against cases, the first-match test, the vote test and the
// coverage table.
#include <string>

#include "ruletest_fixture.h"

namespace {

using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStdout;

class Testing : public RuletestWorld {
 protected:
  void SetUp() override {
    RuletestWorld::SetUp();
    FileName = "toy";
  }
};

TEST_F(Testing, MatchTestTellsUncoveredWrongAndRight) {
  SetCases({{4, 9, 2}}, {1}, 2);
  const short* row = DataSpace[0];
  EXPECT_EQ(MatchTest(row, AddRule({9, 4}, 1)), 1);  // order does not matter
  EXPECT_EQ(MatchTest(row, AddRule({4}, 0)), 0);     // covers, names another class
  EXPECT_EQ(MatchTest(row, AddRule({4, 5}, 1)), -1);
  EXPECT_EQ(MatchTest(row, AddRule({}, 1)), 1);
  // The class column is no item of the case.
  EXPECT_EQ(MatchTest(row, AddRule({1}, 1)), -1);
}

TEST_F(Testing, FirstMatchCountsRulesThenTheDefault) {
  // Eight cases covered by the rule (seven rightly), two left to the default.
  SetCases({{1}, {1}, {1}, {1}, {1}, {1}, {1}, {1}, {3}, {3}}, {0, 0, 0, 0, 0, 0, 0, 1, 1, 0}, 2);
  AddRule({1}, 0);
  RuleSet->DefaultClass = 1;
  CaptureStdout();
  TestSingle();
  EXPECT_EQ(GetCapturedStdout(),
            "\n testing on toy with 10 instances \n"
            "\n accuracy = 80.00 %\n rule coverage = 80.00 %\n default accuracy = 10.00 %\n");
  EXPECT_EQ(RuleSet->Hits, 8);
  EXPECT_EQ(RuleSet->Misses, 2);
}

TEST_F(Testing, UncoveredCasesWithoutDefaultAreNeitherHitNorMiss) {
  SetCases({{1}, {2}, {3}}, {0, 0, 1}, 2);
  AddRule({1}, 0);
  RuleSet->DefaultClass = -1;
  CaptureStdout();
  TestSingle();
  EXPECT_EQ(GetCapturedStdout(),
            "\n testing on toy with 3 instances \n"
            "\n accuracy = 33.33 %\n rule coverage = 33.33 %\n default accuracy = 0.00 %\n");
  EXPECT_EQ(RuleSet->Hits + RuleSet->Misses, 1);
}

TEST_F(Testing, EmptyRuleSetClassifiesByTheDefaultAlone) {
  SetCases({{1}, {2}, {3}, {4}}, {0, 1, 1, 1}, 2);
  RuleSet->DefaultClass = 1;
  CaptureStdout();
  TestSingle();
  EXPECT_EQ(GetCapturedStdout(),
            "\n testing on toy with 4 instances \n"
            "\n accuracy = 75.00 %\n rule coverage = 0.00 %\n default accuracy = 75.00 %\n");
}

TEST_F(Testing, ReciprocalSumAccumulatesOverTests) {
  SetCases({{1}, {2}}, {0, 1}, 2);
  AddRule({1}, 0)->Priority = 4;
  AddRule({2}, 1)->Priority = 1;
  CaptureStdout();
  TestSingle();
  EXPECT_FLOAT_EQ(RuleSet->ReciprocalSum, 1.25f);
  TestSingle();
  GetCapturedStdout();
  EXPECT_FLOAT_EQ(RuleSet->ReciprocalSum, 2.5f);
}

TEST_F(Testing, NoCasesPrintZeroPercentages) {
  SetCases({}, {}, 2);
  CaptureStdout();
  TestSingle();
  Testmulti();
  EXPECT_EQ(GetCapturedStdout(),
            "\n testing on toy with 0 instances \n"
            "\n accuracy = 0.00 %\n rule coverage = 0.00 %\n default accuracy = 0.00 %\n"
            "\n testing on toy with 0 instances \n"
            "\n accuracy = 0.00 %\n rule coverage = 0.00 %\n");
}

TEST_F(Testing, VoteGoesToTheHighestClassWithAnyVote) {
  SetCases({{1, 2}, {1, 3}, {7, 8}}, {1, 0, 0}, 2);
  AddRule({1}, 0);
  AddRule({2}, 0);
  AddRule({1, 2}, 0);
  AddRule({2}, 1);
  CaptureStdout();
  Testmulti();
  EXPECT_EQ(GetCapturedStdout(),
            "\n testing on toy with 3 instances \n"
            "1: weigh[0] = 3.00 weight[1] = 1.00 Correct \n"
            "2: weigh[0] = 1.00 weight[1] = 0.00 Correct \n"
            "3: weigh[0] = 0.00 weight[1] = 0.00 Wrong \n"
            "\n accuracy = 66.67 %\n rule coverage = 66.67 %\n");
  EXPECT_EQ(RuleSet->Hits, 2);
  EXPECT_EQ(RuleSet->Misses, 1);
}

TEST_F(Testing, OnlyFiveCoveringRulesVote) {
  SetCases({{1}}, {0}, 2);
  for (int k = 0; k < 5; ++k) AddRule({1}, 0);
  AddRule({1}, 1);  // the sixth
  CaptureStdout();
  Testmulti();
  EXPECT_EQ(GetCapturedStdout(),
            "\n testing on toy with 1 instances \n1: weigh[0] = 5.00 weight[1] = 0.00 Correct \n"
            "\n accuracy = 100.00 %\n rule coverage = 100.00 %\n");
}

TEST_F(Testing, VotesAreSizedToTheClasses) {
  // Far more classes than a fixed table would hold; the last one wins.
  SetCases({{1}}, {119}, 120);
  AddRule({1}, 3);
  AddRule({1}, 119);
  AddRule({1}, 500);  // no class of the names: votes for nothing
  CaptureStdout();
  Testmulti();
  EXPECT_EQ(GetCapturedStdout(),
            "\n testing on toy with 1 instances \n1: weigh[0] = 0.00 weight[1] = 0.00 Correct \n"
            "\n accuracy = 100.00 %\n rule coverage = 100.00 %\n");
}

TEST_F(Testing, CoverageTableRecordsRightWrongAndTarget) {
  SetCases({{1, 2}, {1, 3}, {4, 5}}, {0, 1, 0}, 2);
  AddRule({1}, 0);
  AddRule({5}, 1);
  std::vector<std::vector<int>> rows(2, std::vector<int>(MaxData + 3, 7));
  int* table[] = {rows[0].data(), rows[1].data()};
  EXPECT_EQ(FillInTable(table), 1);
  EXPECT_EQ(rows[0], (std::vector<int>{1, -1, 0, 0, 0, 7}));
  EXPECT_EQ(rows[1], (std::vector<int>{0, 0, -1, 1, 0, 7}));
  CaptureStdout();
  PrintTable(table);
  EXPECT_EQ(GetCapturedStdout(), " \n rule 0 : 1, -1, 0,  \n rule 1 : 0, 0, -1, ");
}

}  // namespace
