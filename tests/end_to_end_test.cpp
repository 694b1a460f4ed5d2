// Whole runs of the miner on small hand-made data sets, with the complete
// console output and rule file worked out by hand, and the runs on the
// public data sets against their reference outputs.
#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

namespace {

using testing_support::FileExists;
using testing_support::MaskRun;
using testing_support::ReadFile;
using testing_support::RunProgram;
using testing_support::SharedDir;
using testing_support::TempDir;
using testing_support::WriteFile;

// The weather set: day (ignored); outlook sunny=1 overcast=2 rain=3; windy
// yes=4 no=5; class play=6 stay=7. Twelve cases, one with an unknown outlook.
class WeatherRun : public ::testing::Test {
 protected:
  void SetUp() override {
    const std::string fixtures = std::string(SOURCE_DIR) + "/tests/fixtures/";
    WriteFile(dir_ / "weather.names", ReadFile(fixtures + "weather.names"));
    WriteFile(dir_ / "weather.data", ReadFile(fixtures + "weather.data"));
  }
  testing_support::ProgramRun Run(const std::string& options) {
    return RunProgram("rule", "-f weather " + options, dir_.path());
  }
  std::string Csv() const { return ReadFile(dir_ / "weatherrule.csv"); }
  TempDir dir_;
};

const std::string kCodedRows =
    "1: 1,4,7,\n2: 1,4,7,\n3: 1,5,7,\n4: 1,5,6,\n5: 2,4,6,\n6: 2,5,6,\n7: 2,5,6,\n"
    "8: 3,4,7,\n9: 3,4,7,\n10: 3,5,6,\n11: 3,5,6,\n12: 0,5,6,\n";

// -s 0.2 gives GMinSup 2 (2.4 + 0.5 truncated). Layer 1 holds all seven
// items; layer 2 the eleven pairs seen at least twice. {overcast} -> play
// holds in all 3 overcast cases: the only layer-2 rule, and {2,6} is marked.
// Layer 3 joins {1,4,7}, {2,5,6} (marked, target 5 dead from the mark),
// {3,4,7} and {3,5,6}, each seen twice. In {1,4,7} targets 1 and 4 are
// pruned because {1,7} -> 1 and {4,7} -> 4 leave out as many cases as the
// longer rules; {1,4} -> 7 is perfect and the node, without targets, goes.
// {2,5,6} loses target 2 the same way through {2,6} -> 2 and goes. {3,4,7}
// and {3,5,6} give two perfect rules each and keep target 3 (confidence 0.5
// and 1/3, below 0.7). Layer 4 has nothing to join.
const std::string kLayerReports =
    "\n Report of 2 layers \n"
    "The number of tree nodes 18 \n"
    "The number of rules 1 \n";
const std::string kLayer3Report =
    "\n Report of 3 layers \n"
    "The number of tree nodes 20 \n"
    "The number of rules 6 \n";

const std::string kWeatherCsv =
    "confidence, 0.700000, support, 0.200000, RuleNumber, 6, \n"
    "index, sup(Pc), sup(P[nC]), sup([nP]C), sup([nP][nC]), sup(P), sup[C], confdice, chi, lift, leverage, "
    "target, value, att1, value1, att2, value2, att3, value3, att4, value4, att5, value5, att6, value 6\n"
    // overcast -> play: a 3, b 0, c 4, d 5; expected 1.75 1.25 5.25 3.75
    "1, 3, 0, 4, 5, 3, 7, 1.000000, 2.857143, 1.714286, 0.104167, Class, play, outlook, overcast, \n"
    // two-case perfect rules with a five-case target: a 2, b 0, c 3, d 7
    "2, 2, 0, 3, 7, 2, 5, 1.000000, 3.360000, 2.400000, 0.097222, Class, stay, outlook, sunny, windy, yes, \n"
    "3, 2, 0, 3, 7, 2, 5, 1.000000, 3.360000, 2.400000, 0.097222, windy, yes, outlook, rain, Class, stay, \n"
    "4, 2, 0, 3, 7, 2, 5, 1.000000, 3.360000, 2.400000, 0.097222, Class, stay, outlook, rain, windy, yes, \n"
    // and with a seven-case target: a 2, b 0, c 5, d 5
    "5, 2, 0, 5, 5, 2, 7, 1.000000, 1.714286, 1.714286, 0.069444, windy, no, outlook, rain, Class, play, \n"
    "6, 2, 0, 5, 5, 2, 7, 1.000000, 1.714286, 1.714286, 0.069444, Class, play, outlook, rain, windy, no, \n";

TEST_F(WeatherRun, DebugRunPrintsEveryStep) {
  auto run = Run("-s 0.2 -c 0.7 -x 1");
  EXPECT_EQ(run.status, 0);
  const std::string expected =
      "\t\t\t\t\t DATE\n"
      " \tFile Name: weather\n"
      "\tGlobal Support = 0.2000 \n"
      "\tGlobal Confidence = 0.7000 \n"
      "\t printf Debug information \n" +
      kCodedRows +
      "MaxData = 12, Attribute = 4, Used attributes 3 \n"
      "The first layer tree size is 7 \n"
      "sup(AX) = sup(A): 2 6 target = 6, Target flag = 1, #Target = 2 \n" +
      kLayerReports +
      "sup(AX-c) = sup(A-c): 1 4 7 target = 1, TargetFlag = 1, #Target = 3 \n"
      "sup(AX-c) = sup(A-c): 1 4 7 target = 4, Target Flag = 1, #Target = 2 \n"
      "sup(AX) = sup(A): 1 4 7 target = 7, Target flag = 1, #Target = 1 \n"
      "Pruning: 1 4 7 target = 7, Target Flag = 0, #Target = 0 \n"
      "sup(AX-c) = sup(A-c): 2 5 6 target = 2, TargetFlag = 1, #Target = 1 \n"
      "Pruning: 2 5 6 target = 2, Target Flag = 0, #Target = 0 \n"
      "sup(AX) = sup(A): 3 4 7 target = 4, Target flag = 1, #Target = 3 \n"
      "sup(AX) = sup(A): 3 4 7 target = 7, Target flag = 1, #Target = 2 \n"
      "sup(AX) = sup(A): 3 5 6 target = 5, Target flag = 1, #Target = 3 \n"
      "sup(AX) = sup(A): 3 5 6 target = 6, Target flag = 1, #Target = 2 \n" +
      kLayer3Report +
      // The tree after the run, depth first.
      "1 \t #sons = 3 \tsupp=4, \n\t #targets = 1, Token = 0 \n"
      "1 4 \t #sons = 0 \tsupp=2, \n\t #targets = 2, Token = 0 \n"
      "1 5 \t #sons = 0 \tsupp=2, \n\t #targets = 2, Token = 0 \n"
      "1 7 \t #sons = 0 \tsupp=3, \n\t #targets = 2, Token = 0 \n"
      "2 \t #sons = 2 \tsupp=3, \n\t #targets = 1, Token = 0 \n"
      "2 5 \t #sons = 0 \tsupp=2, \n\t #targets = 2, Token = 0 \n"
      "2 6 \t #sons = 0 \tsupp=3, \n\t #targets = 1, Token = 2 \n"
      "3 \t #sons = 4 \tsupp=4, \n\t #targets = 1, Token = 0 \n"
      "3 4 \t #sons = 1 \tsupp=2, \n\t #targets = 2, Token = 0 \n"
      "3 4 7 \t #sons = 0 \tsupp=2, \n"
      "\t subset 0: 4 7 supp = 4(4)target = 3 \n"
      "\t subset 1: 3 7 supp = 2(2)\n"
      "\t subset 2: 3 4 supp = 2(2)\n"
      "\t #targets = 1, Token = 2 \n"
      "3 5 \t #sons = 1 \tsupp=2, \n\t #targets = 2, Token = 0 \n"
      "3 5 6 \t #sons = 0 \tsupp=2, \n"
      "\t subset 0: 5 6 supp = 6(6)target = 3 \n"
      "\t subset 1: 3 6 supp = 2(2)\n"
      "\t subset 2: 3 5 supp = 2(2)\n"
      "\t #targets = 1, Token = 2 \n"
      "3 6 \t #sons = 0 \tsupp=2, \n\t #targets = 2, Token = 0 \n"
      "3 7 \t #sons = 0 \tsupp=2, \n\t #targets = 2, Token = 0 \n"
      "4 \t #sons = 1 \tsupp=5, \n\t #targets = 1, Token = 0 \n"
      "4 7 \t #sons = 0 \tsupp=4, \n\t #targets = 2, Token = 0 \n"
      "5 \t #sons = 1 \tsupp=7, \n\t #targets = 1, Token = 0 \n"
      "5 6 \t #sons = 0 \tsupp=6, \n\t #targets = 2, Token = 0 \n"
      "6 \t #sons = 0 \tsupp=7, \n\t #targets = 1, Token = 0 \n"
      "7 \t #sons = 0 \tsupp=5, \n\t #targets = 1, Token = 0 \n"
      // The rules as numbers.
      "\nThe number of rules is 6"
      "\n2  -> 6\t Sup = 3\t Conf = 1.000000\t Chi = 1.000000"
      "\n1 4  -> 7\t Sup = 2\t Conf = 1.000000\t Chi = 1.000000"
      "\n3 7  -> 4\t Sup = 2\t Conf = 1.000000\t Chi = 1.000000"
      "\n3 4  -> 7\t Sup = 2\t Conf = 1.000000\t Chi = 1.000000"
      "\n3 6  -> 5\t Sup = 2\t Conf = 1.000000\t Chi = 1.000000"
      "\n3 5  -> 6\t Sup = 2\t Conf = 1.000000\t Chi = 1.000000"
      "\n"
      "\n the running time is T \n";
  EXPECT_EQ(MaskRun(run.output), expected);
  EXPECT_EQ(Csv(), kWeatherCsv);
}

TEST_F(WeatherRun, QuietRunPrintsTheReportsOnly) {
  auto run = Run("-c 0.7 -s 0.2");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(MaskRun(run.output),
            "\t\t\t\t\t DATE\n"
            " \tFile Name: weather\n"
            "\tGlobal Confidence = 0.7000 \n"
            "\tGlobal Support = 0.2000 \n"
            "MaxData = 12, Attribute = 4, Used attributes 3 \n"
            "The first layer tree size is 7 \n" +
                kLayerReports + kLayer3Report + "\n the running time is T \n");
  EXPECT_EQ(Csv(), kWeatherCsv);
}

// In the complete-rule-set mode nothing is pruned and every rule reaching
// 0.7 is kept, one-item antecedents included: sunny -> stay (3/4), overcast
// -> play, stay -> yes and yes -> stay (4/5), play -> no and no -> play
// (6/7) at layer 2; at layer 3 the same four candidates (now {2,5,6} is not
// marked) give the six rules whose antecedent occurs only with the target.
TEST_F(WeatherRun, CompleteRuleSetWritesNoFile) {
  auto run = Run("-s 0.2 -a 1 -c 0.7 -x 1");
  EXPECT_EQ(run.status, 0);
  const std::string output = MaskRun(run.output);
  const std::string tail =
      "The first layer tree size is 7 \n"
      "\n Report of 2 layers \n"
      "The number of tree nodes 18 \n"
      "The number of rules 6 \n"
      "\n Report of 3 layers \n"
      "The number of tree nodes 22 \n"
      "The number of rules 12 \n";
  EXPECT_NE(output.find(" \tFile Name: weather\n\tGlobal Support = 0.2000 \n\t Mining Complete Rule Set \n"),
            std::string::npos)
      << output;
  EXPECT_NE(output.find(tail), std::string::npos) << output;
  const std::string rules =
      "\nThe number of rules is 12"
      "\n1  -> 7\t Sup = 3\t Conf = 0.750000\t Chi = 0.750000"
      "\n2  -> 6\t Sup = 3\t Conf = 1.000000\t Chi = 1.000000"
      "\n7  -> 4\t Sup = 4\t Conf = 0.800000\t Chi = 0.800000"
      "\n4  -> 7\t Sup = 4\t Conf = 0.800000\t Chi = 0.800000"
      "\n6  -> 5\t Sup = 6\t Conf = 0.857143\t Chi = 0.857143"
      "\n5  -> 6\t Sup = 6\t Conf = 0.857143\t Chi = 0.857143"
      "\n1 4  -> 7\t Sup = 2\t Conf = 1.000000\t Chi = 1.000000"
      "\n2 5  -> 6\t Sup = 2\t Conf = 1.000000\t Chi = 1.000000"
      "\n3 7  -> 4\t Sup = 2\t Conf = 1.000000\t Chi = 1.000000"
      "\n3 4  -> 7\t Sup = 2\t Conf = 1.000000\t Chi = 1.000000"
      "\n3 6  -> 5\t Sup = 2\t Conf = 1.000000\t Chi = 1.000000"
      "\n3 5  -> 6\t Sup = 2\t Conf = 1.000000\t Chi = 1.000000"
      "\n\n the running time is T \n";
  ASSERT_GE(output.size(), rules.size());
  EXPECT_EQ(output.substr(output.size() - rules.size()), rules);
  // No pruning lines in this mode.
  EXPECT_EQ(output.find("sup(AX"), std::string::npos);
  EXPECT_EQ(output.find("Pruning: "), std::string::npos);
  EXPECT_FALSE(FileExists(dir_ / "weatherrule.csv"));
}

// Layer 3 is always attempted, whatever the maximum layer.
TEST_F(WeatherRun, MaxLayerTwoStillBuildsLayerThree) {
  auto two = Run("-s 0.2 -c 0.7 -l 2");
  EXPECT_EQ(two.status, 0);
  EXPECT_NE(two.output.find("\t Max Layer =  2 \n"), std::string::npos);
  EXPECT_NE(two.output.find(kLayer3Report), std::string::npos);
  EXPECT_EQ(Csv(), kWeatherCsv);
}

TEST(SharedDataSets, ReferenceOutputsAreReproduced) {
  const std::string script = SharedDir() + "/expected/compare.sh";
  if (!FileExists(script) || !FileExists(SharedDir() + "/data/vote.names"))
    GTEST_SKIP() << "the shared data sets are not beside the project";
  TempDir dir;
  const std::string command =
      "bash '" + script + "' '" + std::string(BIN_DIR) + "/rule' > '" + (dir / "log") + "' 2>&1";
  const int status = std::system(command.c_str());
  const std::string log = ReadFile(dir / "log");
  EXPECT_EQ(status, 0) << log;
  ASSERT_FALSE(log.empty());
  std::string last = log.substr(0, log.size() - 1);
  last = last.substr(last.rfind('\n') == std::string::npos ? 0 : last.rfind('\n') + 1);
  EXPECT_EQ(last, "9/9 identical") << log;
}

}  // namespace
