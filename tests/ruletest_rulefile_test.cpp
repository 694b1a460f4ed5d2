// The rule file: the exact text written, the header echo, reading back, and
// files that are cut short or hold something other than numbers (negative
// and huge lengths are runs of fixtures/hostile).
#include <algorithm>
#include <string>

#include "miner_fixture.h"
#include "test_support.h"

using testing_support::ReadFile;
using testing_support::WriteFile;

namespace {

using testing_support::AddRule;
using testing_support::RuletestWorld;

using RuleFile = RuletestWorld;

TEST_F(RuleFile, TwoRuleExampleIsWrittenReadBackAndWrittenAlike) {
  const std::string line = "0.500000, 0.010000, 6, 0.000000, 2 -1 1 0.800000 12 1 3 9 2 0.750000 9 1 1 4 9 ";
  MaxLayer = 6;
  MinImp = 0;
  RuleSet->DefaultClass = -1;
  AddRule({3}, 9, 12, 0.8f);
  AddRule({1, 4}, 9, 9, 0.75f);
  ASSERT_EQ(WriteRule(dir_ / "out", 0.5f, 0.01f), 0);
  EXPECT_EQ(ReadFile(dir_ / "out"), line);

  SetUp();
  WriteFile(dir_ / "in", line);
  EXPECT_EQ(Printed([&] { EXPECT_EQ(ReadRule(dir_ / "in"), 0); }),
            "\n MinLocalSupport = 0.0100, MinConfidence = 0.50, MaxLayer = 6, MinImprovement = 0.000000"
            "\n the numOfrules = 2, default class is -1");
  ASSERT_EQ(Rules().size(), 2u);
  MaxLayer = 6;  // the layer read is only echoed; the rules are written from what was read
  ASSERT_EQ(WriteRule(dir_ / "again", 0.5f, 0.01f), 0);
  EXPECT_EQ(ReadFile(dir_ / "again"), line);
}

TEST_F(RuleFile, MalformedFilesStopAtTheFaultAndKeepTheCompleteRules) {
  const struct {
    const char* Content;
    const char* Expected;
    int Kept;
  } cases[] = {
      {"0.5, x, 4, 0, ", "the local support threshold followed by a comma expected", 0},
      {"0.5, 0.01, 4, 0, 2", "the default class expected", 0},
      {"0.5, 0.01, 4, 0, 2 0 1 1.0 3 1 4 1 2 0.5", "the support of rule 2 expected", 1},
      {"0.5, 0.01, 4, 0, 2 0 1 1.0 3 1 4 1 2 0.5 3 1 7 8 ", "the target of rule 2 expected", 1},
      {"0.5, 0.01, 4, 0, 2 0 1 1.0 3 1 4 1 garbage", "the antecedent length of rule 2 expected", 1},
      {"0.5, 0.01, 4, 0, 1 0 1 1.0 3 1 x 1 ", "an antecedent item of rule 1 expected", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Content);
    SetUp();
    WriteFile(dir_ / "rules", c.Content);
    const std::string out = Printed([&] { EXPECT_EQ(ReadRule(dir_ / "rules"), kRuleFileMalformed); });
    const std::string line = "\nERROR:  rule file " + (dir_ / "rules") + ": " + c.Expected + "\n";
    EXPECT_EQ(out.substr(out.size() - std::min(out.size(), line.size())), line);  // the last thing printed
    EXPECT_EQ(static_cast<int>(Rules().size()), c.Kept);
  }
}

}  // namespace
