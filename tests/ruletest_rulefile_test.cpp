// The rule file: the exact text written, the header echo, reading back,
// files that cannot be opened or written, and files that are cut short or
// hold something other than numbers (negative and huge lengths are runs of
// fixtures/hostile).
#include <algorithm>
#include <filesystem>
#include <string>

#include "evaluation/evaluation.h"
#include "miner_fixture.h"
#include "test_support.h"

using testing_support::FileExists;
using testing_support::ReadFile;
using testing_support::WriteFile;

namespace {

using testing_support::AddRule;
using testing_support::RulesOf;
using testing_support::RuletestWorld;

using RuleFile = RuletestWorld;

TEST_F(RuleFile, TwoRuleExampleIsWrittenReadBackAndWrittenAlike) {
  const std::string line = "0.500000, 0.010000, 6, 0.000000, 2 -1 1 0.800000 12 1 3 9 2 0.750000 9 1 1 4 9 ";
  rules.DefaultClass = -1;
  AddRule(rules, {3}, 9, 12, 0.8f);
  AddRule(rules, {1, 4}, 9, 9, 0.75f);
  ASSERT_TRUE(WriteRule(rules, dir_ / "out", 0.5f, 0.01f, 6, 0.0f).ok());
  EXPECT_EQ(ReadFile(dir_ / "out"), line);

  RuleSet read;
  WriteFile(dir_ / "in", line);
  EXPECT_TRUE(ReadRule(read, dir_ / "in", out.file()).ok());
  EXPECT_EQ(out.Take(),
            "\n MinLocalSupport = 0.0100, MinConfidence = 0.50, MaxLayer = 6, MinImprovement = 0.000000"
            "\n the numOfrules = 2, default class is -1");
  ASSERT_EQ(RulesOf(read).size(), 2u);
  // The layer read is only echoed; the rules are written from what was read.
  ASSERT_TRUE(WriteRule(read, dir_ / "again", 0.5f, 0.01f, 6, 0.0f).ok());
  EXPECT_EQ(ReadFile(dir_ / "again"), line);
  // Reading into a rule set that holds rules replaces them.
  EXPECT_TRUE(ReadRule(read, dir_ / "in", out.file()).ok());
  EXPECT_EQ(RulesOf(read).size(), 2u);
}

TEST_F(RuleFile, UnopenableAndUnwritableFilesAreRefused) {
  const Status absent = ReadRule(rules, dir_ / "absent", out.file());
  EXPECT_EQ(absent.kind(), StatusKind::CannotOpen);
  EXPECT_EQ(absent.message(), "Can not Open File\n");
  EXPECT_EQ(absent.exit_status(), 1);
  EXPECT_EQ(ReadRule(rules, dir_.path(), out.file()).kind(), StatusKind::CannotOpen);  // a folder
  EXPECT_EQ(out.Take(), "");

  const Status noFolder = WriteRule(rules, dir_ / "no/out", 0.5f, 0.01f, 4, 0.0f);
  EXPECT_EQ(noFolder.kind(), StatusKind::CannotOpen);
  EXPECT_EQ(noFolder.message(), "Can not Open File\n");
  if (!FileExists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  std::filesystem::create_symlink("/dev/full", dir_ / "full.rules");
  AddRule(rules, {1}, 0);
  const Status full = WriteRule(rules, dir_ / "full.rules", 0.5f, 0.01f, 4, 0.0f);
  EXPECT_EQ(full.kind(), StatusKind::WriteFailed);
  EXPECT_EQ(full.exit_status(), 1);
  EXPECT_EQ(full.message(), "\nERROR:  cannot write file " + (dir_ / "full.rules") + ": No space left on device\n");
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
    RuleSet read;
    WriteFile(dir_ / "rules", c.Content);
    const Status status = ReadRule(read, dir_ / "rules", out.file());
    out.Take();
    EXPECT_EQ(status.kind(), StatusKind::InputError);
    EXPECT_EQ(status.exit_status(), 1);
    EXPECT_EQ(status.message(), "\nERROR:  rule file " + (dir_ / "rules") + ": " + c.Expected + "\n");
    EXPECT_EQ(static_cast<int>(RulesOf(read).size()), c.Kept);
  }
}

}  // namespace
