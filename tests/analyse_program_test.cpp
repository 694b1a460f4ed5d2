// The rule-analyse program end to end: a small fixture whose whole output is
// known, the usage errors, and a real data set when one is at hand.
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

// Items: a=x 1, a=y 2, b=x 3, b=y 4, c=p 5, c=q 6, yes 7, no 8. Every rule
// mined is perfect, so the whole list is the perfect run.
void WriteTiny(const TempDir& dir) {
  WriteFile(dir / "tiny.names", "yes, no.\na: x, y.\nb: x, y.\nc: p, q.\n");
  WriteFile(dir / "tiny.data",
            "x,x,p,yes\nx,x,p,yes\nx,x,p,yes\n"
            "y,x,p,no\ny,y,p,no\ny,x,p,no\ny,y,p,no\n"
            "y,y,q,no\ny,y,q,no\ny,y,q,no\n");
}

TEST(AnalyseProgram, WholeOutputOnASmallDataSet) {
  TempDir dir;
  WriteTiny(dir);
  testing_support::ProgramRun run = RunProgram("rule-analyse", "-f tiny -s 0.2", dir.path());
  EXPECT_EQ(run.status, 0);
  // 1 -> 7, 1 -> 5 and 7 -> 5 make "1 7 5"; the pair {1, 5} holds in 3 of
  // the 7 cases with item 5. Item 5 is then used for x = 1, so "1 3 5" is not
  // listed. Every case holds a marked node.
  EXPECT_EQ(MaskRun(run.output),
            "\t\t\t\t\t DATE\n"
            " \tFile Name: tiny\n"
            "\tGlobal Support = 0.2000 \n"
            "\tGlobal Confidence = 1.0000 \n"
            "\t Max Layer =  4 \n"
            "MaxData = 10, Attribute = 4, Used attributes 4 \n"
            "The first layer tree size is 8 \n"
            "\n Report of 2 layers \n"
            "The number of tree nodes 23 \n"
            "The number of rules 14 \n"
            "\n Report of 3 layers \n"
            "The number of tree nodes 23 \n"
            "The number of rules 14 \n"
            "\n 1 7 5 0.428571"
            "\n 1 7 3 0.600000"
            "\n 4 8 2 0.714286"
            "\n 4 2 8 0.714286"
            "\n 6 8 2 0.428571"
            "\n 6 4 8 0.428571"
            "\n 7 3 5 0.428571"
            "\n 7 1 3 0.600000"
            "\n Number of derivable rules is 8 \n"
            "\n **1,3,Target[0] = 1, Target[1] = 0"
            "\n **1,3,Target[0] = 1, Target[1] = 0"
            "\n **1,3,Target[0] = 1, Target[1] = 0"
            "\n **3,5,Target[0] = 1, Target[1] = 0"
            "\n **2,4,Target[0] = 0, Target[1] = 1"
            "\n **3,5,Target[0] = 1, Target[1] = 0"
            "\n **2,4,Target[0] = 0, Target[1] = 1"
            "\n **2,4,Target[0] = 0, Target[1] = 1"
            "\n **2,4,Target[0] = 0, Target[1] = 1"
            "\n **2,4,Target[0] = 0, Target[1] = 1"
            "\n\nderivable rules = 8, rules left = 14\n"
            "loose coverage = 10 of 10 cases, tough coverage = 0\n"
            "\n the running time is T \n");
  EXPECT_FALSE(FileExists(dir / "tinyrule.csv"));
}

TEST(AnalyseProgram, UsageAndBadArguments) {
  TempDir dir;
  WriteTiny(dir);
  testing_support::ProgramRun help = RunProgram("rule-analyse", "--help", dir.path());
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.output.rfind("Usage: rule-analyse -f STEM", 0), 0u);

  for (const char* args : {"", "-s 0.2", "-f tiny -z", "-f tiny --bogus", "-f tiny -s", "-f tiny -s abc",
                           "-f tiny -l 2.5", "-f tiny extra"}) {
    testing_support::ProgramRun run = RunProgram("rule-analyse", args, dir.path());
    EXPECT_EQ(run.status, 1) << args;
    EXPECT_EQ(run.output, "") << args;  // the complaint goes to standard error
  }

  testing_support::ProgramRun missing = RunProgram("rule-analyse", "-f nosuch", dir.path());
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.output.find("nosuch.names"), std::string::npos);
}

// Mining is the miner's own: the layer reports agree with its reference run.
TEST(AnalyseProgram, RealDataSetMinesAsTheMinerDoes) {
  const std::string data = SharedDir() + "/data/vote";
  const std::string expected = SharedDir() + "/expected/vote-default/stdout";
  if (!FileExists(data + ".names") || !FileExists(data + ".data") || !FileExists(expected))
    GTEST_SKIP() << "vote data set not available";
  TempDir dir;
  WriteFile(dir / "vote.names", ReadFile(data + ".names"));
  WriteFile(dir / "vote.data", ReadFile(data + ".data"));
  testing_support::ProgramRun run = RunProgram("rule-analyse", "-f vote", dir.path());
  ASSERT_EQ(run.status, 0);

  const std::string reference = ReadFile(expected);
  const size_t from = reference.find("MaxData = ");
  const size_t to = reference.find("\n the running time");
  ASSERT_NE(from, std::string::npos);
  ASSERT_NE(to, std::string::npos);
  EXPECT_NE(run.output.find(reference.substr(from, to - from)), std::string::npos);
  EXPECT_NE(run.output.find("\n Number of derivable rules is 0 \n"), std::string::npos);
  EXPECT_NE(run.output.find("\nloose coverage = 431 of 435 cases, tough coverage = 0\n"), std::string::npos);
}

}  // namespace
