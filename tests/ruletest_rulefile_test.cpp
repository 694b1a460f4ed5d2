// The rule file: exact text written, the header echo, round trips, and
// files that are cut short or hold something other than numbers.
#include <string>

#include "ruletest_fixture.h"
#include "test_support.h"

using testing_support::ReadFile;
using testing_support::TempDir;
using testing_support::WriteFile;

namespace {

class RuleFile : public RuletestWorld {
 protected:
  // Reads the file into the empty rule set, returning the status and output.
  int Read(const std::string& content, std::string* output = nullptr) {
    WriteFile(dir_ / "rules", content);
    ::testing::internal::CaptureStdout();
    int status = ReadRule(dir_ / "rules");
    std::string printed = ::testing::internal::GetCapturedStdout();
    if (output) *output = printed;
    return status;
  }
  TempDir dir_;
};

TEST_F(RuleFile, WritesTheTwoRuleExampleAsOneLine) {
  MaxLayer = 6;
  MinImp = 0;
  RuleSet->DefaultClass = -1;
  AddRule({3}, 9, 0.8f, 12);
  AddRule({1, 4}, 9, 0.75f, 9);
  ASSERT_EQ(WriteRule(dir_ / "out", 0.5f, 0.01f), 0);
  EXPECT_EQ(ReadFile(dir_ / "out"),
            "0.500000, 0.010000, 6, 0.000000, 2 -1 1 0.800000 12 1 3 9 2 0.750000 9 1 1 4 9 ");
}

TEST_F(RuleFile, EchoesTheHeaderAndCount) {
  std::string out;
  ASSERT_EQ(Read("0.500000, 0.010000, 6, 0.000000, 0 -1 ", &out), 0);
  EXPECT_EQ(out,
            "\n MinLocalSupport = 0.0100, MinConfidence = 0.50, MaxLayer = 6, MinImprovement = 0.000000"
            "\n the numOfrules = 0, default class is -1");
  EXPECT_EQ(RuleSet->First, nullptr);
  EXPECT_EQ(RuleSet->NumOfRules, 0);
  EXPECT_EQ(RuleSet->DefaultClass, -1);
}

TEST_F(RuleFile, RoundTripKeepsRulesAndRoundsScores) {
  RuleSet->DefaultClass = 2;
  AddRule({5, 7, 11}, 1, 0.123456789f, 40)->Priority = 3;
  AddRule({}, 0, 0.25f, 7);
  AddRule({2}, 2, 1.0f, 3);
  ASSERT_EQ(WriteRule(dir_ / "out", 0.7f, 0.02f), 0);
  const std::string written = ReadFile(dir_ / "out");

  ResetRun();
  InitRuleSet();
  ASSERT_EQ(Read(written), 0);
  std::vector<RuleRecord*> rules = Rules();
  ASSERT_EQ(rules.size(), 3u);
  EXPECT_EQ(RuleSet->DefaultClass, 2);
  EXPECT_EQ(rules[0]->Len, 3);
  EXPECT_EQ(rules[0]->Antecedent[0], 5);
  EXPECT_EQ(rules[0]->Antecedent[2], 11);
  EXPECT_EQ(rules[0]->Antecedent[3], 0);  // the spare entry
  EXPECT_EQ(rules[0]->Priority, 3);
  EXPECT_EQ(rules[0]->Supp, 40);
  EXPECT_FLOAT_EQ(rules[0]->Score, 0.123457f);
  EXPECT_EQ(rules[0]->Conf, 0.0f);
  EXPECT_EQ(rules[1]->Len, 0);
  EXPECT_EQ(rules[1]->Antecedent[0], 0);
  EXPECT_EQ(rules[1]->Target, 0);
  EXPECT_EQ(rules[2]->Target, 2);
  EXPECT_EQ(Targets(), (std::vector<int>{1, 0, 2}));

  // Written again, the file is the same text.
  ASSERT_EQ(WriteRule(dir_ / "again", 0.7f, 0.02f), 0);
  EXPECT_EQ(ReadFile(dir_ / "again"), written);
}

TEST_F(RuleFile, KeepsTheCountAsWritten) {
  ASSERT_EQ(Read("0.5, 0.01, 4, 0, 5 0 1 1.0 3 1 4 1 "), 0);
  EXPECT_EQ(RuleSet->NumOfRules, 5);
  ASSERT_NE(RuleSet->First, nullptr);
  EXPECT_EQ(RuleSet->First, RuleSet->Last);
}

TEST_F(RuleFile, UnopenableFilesLeaveTheRuleSetAlone) {
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(ReadRule(dir_ / "missing"), kRuleFileUnopenable);
  EXPECT_EQ(WriteRule(dir_ / "no-such-folder/out", 0.5f, 0.1f), kRuleFileUnopenable);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Can not Open File\nCan not Open File\n");
  EXPECT_EQ(RuleSet->First, nullptr);
}

// Each malformed file: the expected message tail and the rules kept.
struct Malformed {
  const char* Content;
  const char* Expected;
  int Kept;
};

TEST_F(RuleFile, MalformedFilesStopAtTheFaultAndKeepTheCompleteRules) {
  const Malformed cases[] = {
      {"", "the confidence threshold followed by a comma expected", 0},
      {"0.5 0.01, 4, 0, 1 0 ", "the confidence threshold followed by a comma expected", 0},
      {"0.5, x, 4, 0, ", "the local support threshold followed by a comma expected", 0},
      {"0.5, 0.01, 4.5, 0, ", "the maximum layer followed by a comma expected", 0},
      {"0.5, 0.01, 4, 0, ", "the number of rules expected", 0},
      {"0.5, 0.01, 4, 0, 2", "the default class expected", 0},
      // Cut inside the second rule, at each of its fields.
      {"0.5, 0.01, 4, 0, 2 0 1 1.0 3 1 4 1 2", "the score of rule 2 expected", 1},
      {"0.5, 0.01, 4, 0, 2 0 1 1.0 3 1 4 1 2 0.5", "the support of rule 2 expected", 1},
      {"0.5, 0.01, 4, 0, 2 0 1 1.0 3 1 4 1 2 0.5 3", "the priority of rule 2 expected", 1},
      {"0.5, 0.01, 4, 0, 2 0 1 1.0 3 1 4 1 2 0.5 3 1 7 ", "an antecedent length the file can hold of rule 2 expected",
       1},
      {"0.5, 0.01, 4, 0, 2 0 1 1.0 3 1 4 1 2 0.5 3 1 7 8 ", "the target of rule 2 expected", 1},
      // Text where a number belongs, after a complete rule.
      {"0.5, 0.01, 4, 0, 2 0 1 1.0 3 1 4 1 garbage", "the antecedent length of rule 2 expected", 1},
      {"0.5, 0.01, 4, 0, 1 0 1 1.0 3 1 x 1 ", "an antecedent item of rule 1 expected", 0},
      // Lengths that cannot be right.
      {"0.5, 0.01, 4, 0, 1 0 -1 1.0 3 1 1 ", "a non-negative antecedent length of rule 1 expected", 0},
      {"0.5, 0.01, 4, 0, 1 0 2000000000 1.0 3 1 1 ", "an antecedent length the file can hold of rule 1 expected", 0},
      {"0.5, 0.01, 4, 0, 1 0 99999999999 1.0 3 1 1 ", "the antecedent length of rule 1 expected", 0},
      {"0.5, 0.01, 4, 0, 1 0 4 1.0 3 1 1 ", "an antecedent length the file can hold of rule 1 expected", 0},
  };
  for (const Malformed& c : cases) {
    SCOPED_TRACE(c.Content);
    ResetRun();
    InitRuleSet();
    std::string out;
    EXPECT_EQ(Read(c.Content, &out), kRuleFileMalformed);
    const std::string line = "\nERROR:  rule file " + (dir_ / "rules") + ": " + c.Expected + "\n";
    ASSERT_GE(out.size(), line.size());
    EXPECT_EQ(out.substr(out.size() - line.size()), line);
    EXPECT_EQ(static_cast<int>(Targets().size()), c.Kept);
  }
}

}  // namespace
