// Whole runs of rule-classify: train, test and cv on a small data set worked
// out by hand, the refusals, and train then test on the public data sets.
#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

namespace {

using testing_support::FileExists;
using testing_support::ProgramRun;
using testing_support::ReadFile;
using testing_support::RunProgram;
using testing_support::SharedDir;
using testing_support::TempDir;
using testing_support::WriteFile;

// Items: outlook sunny=1 rain=2, windy true=3 false=4; classes yes (0), no (1).
// Windy days are all "no" and sunny calm days all "yes"; the two rainy calm
// days disagree.
const char kNames[] = "yes, no.\noutlook: sunny, rain.\nwindy: true, false.\n";
const char kData[] =
    "sunny,false,yes\nsunny,false,yes\nsunny,false,yes\nsunny,true,no\n"
    "rain,true,no\nrain,true,no\nrain,false,yes\nrain,false,no\n";

class Classify : public ::testing::Test {
 protected:
  void SetUp() override {
    WriteFile(dir_ / "toy.names", kNames);
    WriteFile(dir_ / "toy.data", kData);
  }
  ProgramRun Run(const std::string& args) { return RunProgram("rule-classify", args, dir_.path()); }
  TempDir dir_;
};

// Support 0.002 of 8 cases gives GMinSup 0: every itemset stays.
const std::string kMining =
    "The first layer tree size is 6 \n"
    "\n Report of 2 layers \nThe number of tree nodes 21 \nThe number of rules 2 \n"
    "\n Report of 3 layers \nThe number of tree nodes 34 \nThe number of rules 5 \n"
    "\n Report of 4 layers \nThe number of tree nodes 37 \nThe number of rules 5 \n";

// Both class rules are perfect; the shorter goes first. They leave one "yes"
// and one "no" unexplained, so the lower class, yes, is the default: it gets
// case 7 right and case 8 wrong.
const std::string kTraining =
    "\n testing on toy with 8 instances \n"
    "\n accuracy = 87.50 %\n rule coverage = 75.00 %\n default accuracy = 12.50 %\n";

TEST_F(Classify, TrainPrintsTheClassifierAndWritesClassIndexes) {
  ProgramRun run = Run("train -f toy -o toy.rules");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output, kMining +
                            "\nClassifier of 2 rules, default class yes\n"
                            "   1: windy = true -> no  (support 3, confidence 1.0000)\n"
                            "   2: outlook = sunny, windy = false -> yes  (support 3, confidence 1.0000)\n"
                            "   default: yes\n" +
                            kTraining);
  EXPECT_EQ(ReadFile(dir_ / "toy.rules"),
            "0.100000, 0.002000, 4, 0.000000, 2 0 1 1.000000 3 1 3 1 2 1.000000 3 1 1 4 0 ");
}

TEST_F(Classify, TestReportsTheAccuracyTrainPrinted) {
  ASSERT_EQ(Run("train -f toy -o toy.rules").status, 0);
  ProgramRun run = Run("test -f toy -R toy.rules");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output,
            "\n MinLocalSupport = 0.0020, MinConfidence = 0.10, MaxLayer = 4, MinImprovement = 0.000000"
            "\n the numOfrules = 2, default class is 0" +
                kTraining);
}

TEST_F(Classify, TestByVote) {
  ASSERT_EQ(Run("train -f toy -o toy.rules").status, 0);
  ProgramRun run = Run("test -f toy -R toy.rules --vote");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output,
            "\n MinLocalSupport = 0.0020, MinConfidence = 0.10, MaxLayer = 4, MinImprovement = 0.000000"
            "\n the numOfrules = 2, default class is 0"
            "\n testing on toy with 8 instances \n"
            "1: weigh[0] = 1.00 weight[1] = 0.00 Correct \n2: weigh[0] = 1.00 weight[1] = 0.00 Correct \n"
            "3: weigh[0] = 1.00 weight[1] = 0.00 Correct \n4: weigh[0] = 0.00 weight[1] = 1.00 Correct \n"
            "5: weigh[0] = 0.00 weight[1] = 1.00 Correct \n6: weigh[0] = 0.00 weight[1] = 1.00 Correct \n"
            "7: weigh[0] = 0.00 weight[1] = 0.00 Wrong \n8: weigh[0] = 0.00 weight[1] = 0.00 Wrong \n"
            "\n accuracy = 75.00 %\n rule coverage = 75.00 %\n");
}

TEST_F(Classify, CrossValidationIsDeterministicFromTheSeed) {
  ProgramRun first = Run("cv -f toy -k 2 --seed 7 -r 2 -d");
  EXPECT_EQ(first.status, 0);
  EXPECT_NE(first.output.find("fold 1: 4 training cases, 3 rules, 4 test cases, accuracy = 75.00 %\n"),
            std::string::npos);
  EXPECT_EQ(first.output.substr(first.output.rfind("fold 2")),
            "fold 2: 4 training cases, 2 rules, 4 test cases, accuracy = 75.00 %\n"
            "mean accuracy = 75.00 % (sd 0.00)\n");
  EXPECT_EQ(Run("cv -f toy -k 2 --seed 7 -r 2 -d").output, first.output);
}

TEST_F(Classify, CrossValidationPrintsEachFoldsMiningAndTest) {
  ProgramRun run = Run("cv -f toy -k 2");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output,
            "The first layer tree size is 6 \n"
            "\n Report of 2 layers \nThe number of tree nodes 19 \nThe number of rules 4 \n"
            "\n Report of 3 layers \nThe number of tree nodes 31 \nThe number of rules 4 \n"
            "\n Report of 4 layers \nThe number of tree nodes 35 \nThe number of rules 4 \n"
            "\n testing on toy with 4 instances \n"
            "\n accuracy = 75.00 %\n rule coverage = 100.00 %\n default accuracy = 0.00 %\n"
            "fold 1: 4 training cases, 2 rules, 4 test cases, accuracy = 75.00 %\n"
            "The first layer tree size is 6 \n"
            "\n Report of 2 layers \nThe number of tree nodes 19 \nThe number of rules 8 \n"
            "\n Report of 3 layers \nThe number of tree nodes 25 \nThe number of rules 8 \n"
            "\n testing on toy with 4 instances \n"
            "\n accuracy = 50.00 %\n rule coverage = 100.00 %\n default accuracy = 0.00 %\n"
            "fold 2: 4 training cases, 2 rules, 4 test cases, accuracy = 50.00 %\n"
            "mean accuracy = 62.50 % (sd 17.68)\n");
}

TEST_F(Classify, HelpAndUsage) {
  ProgramRun none = Run("");
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.output.rfind("Usage: rule-classify COMMAND [options]\n", 0), 0u);
  EXPECT_EQ(Run("--help").status, 0);
  for (const char* command : {"train", "test", "cv"}) {
    SCOPED_TRACE(command);
    ProgramRun help = Run(std::string(command) + " --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.output.rfind("Usage: rule-classify " + std::string(command) + " -f STEM", 0), 0u);
  }
}

// Each bad command line: its arguments and the first line printed.
struct BadUsage {
  const char* Args;
  const char* Message;
};

TEST_F(Classify, BadCommandLinesEndWithStatusOne) {
  const BadUsage cases[] = {
      {"classify -f toy", "rule-classify: unknown command 'classify'"},
      {"train -f toy", "rule-classify train: the rule file to write (-o RULEFILE) is missing"},
      {"train -f toy -o out -s 2", "rule-classify train: -s needs a support fraction from 0 to 1, not '2'"},
      {"train -f toy -o out -l 1", "rule-classify train: -l needs a number of layers from 2 to 64, not '1'"},
      {"train -f toy -o out -r 3", "rule-classify train: -r needs 1 or 2, not '3'"},
      {"train -f toy -o out --vote", "rule-classify train: unknown argument '--vote'"},
      {"test -f toy", "rule-classify test: the rule file (-R RULEFILE) is missing"},
      {"cv -f toy -k 1", "rule-classify cv: -k needs a number of folds of at least 2, not '1'"},
      {"cv -f toy --seed -3", "rule-classify cv: --seed needs a non-negative whole number, not '-3'"},
      {"cv -f toy -k 9", "rule-classify cv: toy.data holds 8 cases, fewer than the 9 folds"},
  };
  for (const BadUsage& c : cases) {
    SCOPED_TRACE(c.Args);
    ProgramRun run = Run(c.Args);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output.substr(0, run.output.find('\n')), c.Message);
  }
  EXPECT_FALSE(FileExists(dir_ / "out"));
}

TEST_F(Classify, RefusesMissingAndEmptyData) {
  WriteFile(dir_ / "empty.names", kNames);
  WriteFile(dir_ / "empty.data", "");
  ProgramRun empty = Run("train -f empty -o out");
  EXPECT_EQ(empty.status, 1);
  EXPECT_EQ(empty.output, "rule-classify train: empty.data holds no cases\n");
  EXPECT_EQ(Run("cv -f empty").status, 1);
  ProgramRun missing = Run("test -f absent -R out");
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.output, "\nERROR:  cannot open file absent.names\n");
}

TEST_F(Classify, RefusesRuleFilesThatDoNotFitOrParse) {
  const std::string echo =
      "\n MinLocalSupport = 0.0100, MinConfidence = 0.50, MaxLayer = 4, MinImprovement = 0.000000";
  const struct {
    const char* Content;
    const char* Tail;
  } cases[] = {
      {"0.5, 0.01, 4, 0, 1 0 1 1.0 3 1 5 1 ", "rule 1 has item code 5, but the attribute values run from 1 to 4"},
      {"0.5, 0.01, 4, 0, 1 0 1 1.0 3 1 0 1 ", "rule 1 has item code 0, but the attribute values run from 1 to 4"},
      {"0.5, 0.01, 4, 0, 1 0 1 1.0 3 1 3 6 ", "rule 1 has target 6, but the class indexes run from 0 to 1"},
      {"0.5, 0.01, 4, 0, 0 2 ", "the default class 2 is no class index from -1 to 1"},
      {"0.5, 0.01, 4, 0, 3 0 1 1.0 3 1 3 1 ", "it declares 3 rules but holds 1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Content);
    WriteFile(dir_ / "misfit.rules", c.Content);
    ProgramRun run = Run("test -f toy -R misfit.rules");
    EXPECT_EQ(run.status, 1);
    const std::string line = "\nERROR:  rule file misfit.rules does not fit toy.names: " + std::string(c.Tail) + "\n";
    ASSERT_GE(run.output.size(), line.size());
    EXPECT_EQ(run.output.substr(run.output.size() - line.size()), line);
  }

  WriteFile(dir_ / "cut.rules", "0.5, 0.01, 4, 0, 2 0 1 1.0 3 1 3 1 2 1.0 3");
  ProgramRun cut = Run("test -f toy -R cut.rules");
  EXPECT_EQ(cut.status, 1);
  EXPECT_EQ(cut.output, echo +
                            "\n the numOfrules = 2, default class is 0"
                            "\nERROR:  rule file cut.rules: the priority of rule 2 expected\n");

  ProgramRun absent = Run("test -f toy -R absent.rules");
  EXPECT_EQ(absent.status, 1);
  EXPECT_EQ(absent.output, "Can not Open File\nrule-classify test: cannot open the rule file absent.rules\n");
}

// Train then test on copies of the public data sets, when they are there.
TEST(ClassifySharedData, TestAgreesWithTrainOnTheTrainingCases) {
  for (const char* stem : {"tic-tac-toe", "car"}) {
    SCOPED_TRACE(stem);
    const std::string source = SharedDir() + "/data/" + stem;
    if (!FileExists(source + ".names") || !FileExists(source + ".data")) GTEST_SKIP() << "no shared data sets";
    TempDir dir;
    WriteFile(dir / (std::string(stem) + ".names"), ReadFile(source + ".names"));
    WriteFile(dir / (std::string(stem) + ".data"), ReadFile(source + ".data"));
    ProgramRun train = RunProgram("rule-classify", std::string("train -f ") + stem + " -o c.rules", dir.path());
    ASSERT_EQ(train.status, 0);
    ProgramRun test = RunProgram("rule-classify", std::string("test -f ") + stem + " -R c.rules", dir.path());
    ASSERT_EQ(test.status, 0);
    const std::string report = "\n testing on " + std::string(stem);
    const size_t inTrain = train.output.rfind(report);
    const size_t inTest = test.output.rfind(report);
    ASSERT_NE(inTrain, std::string::npos);
    ASSERT_NE(inTest, std::string::npos);
    EXPECT_EQ(train.output.substr(inTrain), test.output.substr(inTest));
    const size_t at = test.output.find("accuracy = ", inTest);
    ASSERT_NE(at, std::string::npos);
    EXPECT_GT(std::stod(test.output.substr(at + 11)), 90.0);
  }
}

}  // namespace
