// The command line of the miner: usage, the echo line of every option,
// option errors, overriding, the debug dump of the coded cases and the name
// of the rule file.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cctype>
#include <string>

#include "synthetic_data.h"
#include "test_support.h"

namespace {

using testing_support::FileExists;
using testing_support::MaskRun;
using testing_support::ProgramRun;
using testing_support::ReadFile;
using testing_support::RunProgram;
using testing_support::TempDir;
using testing_support::WriteFile;

const char kUsage[] =
    "\n Usage:\n"
    "mining -f Filemane -s Local Support (default 0.01)     -l MaxLayer (default 6) -c Confidence (default "
    "0.5)     -i MinImp (default 0.00) -a mining complete rule set (default no)     -o mining optimal rule "
    "set (default no) -r Robust rule mining (defalut 1)     -d discard low confidence rules (default no) -e "
    "Cost sensitive learning (default no -u no default set (default yes))\n \n";

// Items a=1 d=2 | b=3 e=4 | yes=5 no=6; ten cases.
class CommandLine : public ::testing::Test {
 protected:
  void SetUp() override {
    WriteFile(dir_ / "t.names", "yes, no.\nA: a, d.\nB: b, e.\n");
    WriteFile(dir_ / "t.data",
              "a,b,yes\na,b,yes\na,e,yes\nd,e,no\nd,e,no\nd,b,no\na,b,yes\nd,e,no\na,?,yes\nd,e,yes\n");
  }
  ProgramRun Run(const std::string& args) { return RunProgram("rule", args, dir_.path()); }
  // The option echo lines: what follows the banner, up to the data dump.
  static std::string Echo(const std::string& output) {
    const std::string masked = MaskRun(output);
    const std::string banner = "\t\t\t\t\t DATE\n ";
    EXPECT_EQ(masked.compare(0, banner.size(), banner), 0) << masked;
    size_t end = masked.find("MaxData = ");
    size_t dump = masked.find("1: ");
    if (dump != std::string::npos && dump < end) end = dump;
    if (end == std::string::npos) end = masked.size();
    return masked.substr(banner.size(), end - banner.size());
  }
  TempDir dir_;
};

TEST_F(CommandLine, UsageWithFewerThanTwoArguments) {
  for (const char* args : {"", "-f", "t"}) {
    ProgramRun run = Run(args);
    EXPECT_EQ(run.status, 0) << args;
    EXPECT_EQ(run.output, kUsage) << args;
  }
}

TEST_F(CommandLine, EachOptionEchoesItsLine) {
  struct Case {
    const char* args;
    const char* echo;
  };
  const Case cases[] = {
      {"-s 0.25", "\tGlobal Support = 0.2500 \n"},
      {"-s 0.123456", "\tGlobal Support = 0.1235 \n"},
      {"-c 0.9", "\tGlobal Confidence = 0.9000 \n"},
      {"-l 3", "\t Max Layer =  3 \n"},
      {"-l -2", "\t Max Layer = -2 \n"},
      {"-i 0.2", "\t MinImp =  0.200000 \n"},
      {"-i -0.5", "\t MinImp = -0.500000 \n"},
      {"-a 1", "\t Mining Complete Rule Set \n"},
      {"-o 1", "\t Mining Optimal Rule Set \n"},
      {"-r 1", "\t Mining two complete rule set \n"},
      {"-n 1", "\t Mining Zaki's non-redundant rules \n"},
      {"-e 1", "\t Cosrsensitive learning (accuracy = confidence, sorted by local support.) \n"},
      {"-u 1", "\t No default is set, rules are NOT ordered \n"},
      {"-d 1", "\t Discard the remaining rules \n"},
      {"-t", "\t record time, Rules have not been sorted  \n"},
      {"-p 1", ""},
      {"-s 0.3x", "\tGlobal Support = 0.3000 \n"},  // the longest decimal prefix
      {"-c abc", "\tGlobal Confidence = 0.0000 \n"},
      {"-l 7up", "\t Max Layer =  7 \n"},
  };
  for (const Case& c : cases) {
    ProgramRun run = Run(std::string("-f t ") + c.args);
    EXPECT_EQ(run.status, 0) << c.args;
    EXPECT_EQ(Echo(run.output), std::string("\tFile Name: t\n") + c.echo) << c.args;
  }
}

TEST_F(CommandLine, OptionsEchoInCommandLineOrder) {
  ProgramRun run = Run("-t -l 3 -f t -p x -c 0.5 ignored-word -s 0.2 -x 1");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Echo(run.output),
            "\t record time, Rules have not been sorted  \n"
            "\t Max Layer =  3 \n"
            "\tFile Name: t\n"
            "\tGlobal Confidence = 0.5000 \n"
            "\tGlobal Support = 0.2000 \n"
            "\t printf Debug information \n");
}

TEST_F(CommandLine, DebugDumpsTheCodedCases) {
  ProgramRun run = Run("-f t -x 1");
  EXPECT_EQ(run.status, 0);
  const std::string dump =
      "\t printf Debug information \n"
      "1: 1,3,5,\n2: 1,3,5,\n3: 1,4,5,\n4: 2,4,6,\n5: 2,4,6,\n6: 2,3,6,\n7: 1,3,5,\n8: 2,4,6,\n9: 1,0,5,\n"
      "10: 2,4,5,\n"
      "MaxData = 10, Attribute = 3, Used attributes 3 \n"
      "The first layer tree size is 6 \n";
  EXPECT_NE(run.output.find(dump), std::string::npos) << run.output;
}

TEST_F(CommandLine, UnknownOption) {
  ProgramRun run = Run("-f t -z 1");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(MaskRun(run.output), "\t\t\t\t\t DATE\n \tFile Name: t\nunrecognised option\n");
  EXPECT_FALSE(FileExists(dir_ / "trule.csv"));
}

TEST_F(CommandLine, MissingArgumentAtTheEnd) {
  for (const char* args : {"-f t -a", "-f t -s", "-x 1 -f"}) {
    ProgramRun run = Run(args);
    EXPECT_EQ(run.status, 1) << args;
    EXPECT_NE(run.output.find("unrecognised option\n"), std::string::npos) << args;
    EXPECT_EQ(run.output.find("MaxData"), std::string::npos) << args;
  }
}

TEST_F(CommandLine, OptionWithoutArgumentSwallowsTheNextOne) {
  // "-f" becomes the argument of -x; "t" is an ignored word; the stem stays
  // empty and the names file is ".names".
  ProgramRun run = Run("-x -f t");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(MaskRun(run.output),
            "\t\t\t\t\t DATE\n \t printf Debug information \n\nERROR:  cannot open file .names\n");
}

TEST_F(CommandLine, LaterOptionsOverrideEarlierOnes) {
  ProgramRun run = Run("-f nothing -s 0.9 -c 0.1 -f t -s 0.25 -c 0.75");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Echo(run.output),
            "\tFile Name: nothing\n\tGlobal Support = 0.9000 \n\tGlobal Confidence = 0.1000 \n"
            "\tFile Name: t\n\tGlobal Support = 0.2500 \n\tGlobal Confidence = 0.7500 \n");
  const std::string csv = ReadFile(dir_ / "trule.csv");
  // GMinSup 3: a -> yes and no -> d at layer 2, {b, yes} -> a at layer 3.
  EXPECT_EQ(csv.substr(0, csv.find('\n')), "confidence, 0.750000, support, 0.250000, RuleNumber, 3, ");
}

TEST_F(CommandLine, MaxLayerBoundsTheLayerLoop) {
  // At support 0.2 layer 3 holds {1,3,5} and {2,4,6}, which cannot be joined.
  ProgramRun low = Run("-f t -s 0.2 -l 1");
  EXPECT_NE(low.output.find("\n Report of 3 layers \n"), std::string::npos);
  ProgramRun ten = Run("-f t -s 0.2 -l 10");
  EXPECT_NE(ten.output.find("\n Report of 3 layers \n"), std::string::npos);
  EXPECT_EQ(ten.output.find("\n Report of 4 layers \n"), std::string::npos);
}

TEST_F(CommandLine, RuleFileNameIsTheStemFollowedByRuleCsv) {
  ASSERT_EQ(mkdir((dir_ / "sub").c_str(), 0700), 0);
  WriteFile(dir_ / "sub/u.names", ReadFile(dir_ / "t.names"));
  WriteFile(dir_ / "sub/u.data", ReadFile(dir_ / "t.data"));
  ProgramRun run = Run("-f sub/u");
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(FileExists(dir_ / "sub/urule.csv"));
  EXPECT_FALSE(FileExists(dir_ / "urule.csv"));
}

TEST_F(CommandLine, BannerShowsTheStartTime) {
  // Five tabs, a blank, the date as "Www Mmm dd hh:mm:ss yyyy", a line end
  // and one more blank before the first option line.
  ProgramRun run = Run("-f t");
  const std::string shape = "\t\t\t\t\t AAA AAA #9 99:99:99 9999\n \tFile Name: t\n";
  ASSERT_GE(run.output.size(), shape.size());
  for (size_t i = 0; i < shape.size(); ++i) {
    const char c = run.output[i];
    switch (shape[i]) {
      case 'A': EXPECT_TRUE(std::isalpha(static_cast<unsigned char>(c))) << i << run.output; break;
      case '9': EXPECT_TRUE(std::isdigit(static_cast<unsigned char>(c))) << i << run.output; break;
      case '#': EXPECT_TRUE(c == ' ' || std::isdigit(static_cast<unsigned char>(c))) << i << run.output; break;
      default: EXPECT_EQ(c, shape[i]) << i << run.output;
    }
  }
}

TEST_F(CommandLine, UnwritableRuleFile) {
  ASSERT_EQ(mkdir((dir_ / "trule.csv").c_str(), 0700), 0);
  ProgramRun run = Run("-f t");
  EXPECT_EQ(run.status, 1);
  const std::string last = "\n the running time is T \nCan not Open File\n";
  const std::string masked = MaskRun(run.output);
  ASSERT_GE(masked.size(), last.size());
  EXPECT_EQ(masked.substr(masked.size() - last.size()), last);
}

TEST_F(CommandLine, MaxLayerStopsALoopThatCouldGoOn) {
  // A generated set with dependencies reaches layer 4 at a low support.
  const testing_support::SyntheticSet set = testing_support::MakeSyntheticSet(3, 200);
  WriteFile(dir_ / "g.names", set.names);
  WriteFile(dir_ / "g.data", set.data);
  ProgramRun four = RunProgram("rule", "-f g -s 0.01 -c 0.6 -l 4", dir_.path());
  ASSERT_NE(four.output.find("\n Report of 4 layers \n"), std::string::npos) << four.output;
  ProgramRun three = RunProgram("rule", "-f g -s 0.01 -c 0.6 -l 3", dir_.path());
  EXPECT_NE(three.output.find("\n Report of 3 layers \n"), std::string::npos);
  EXPECT_EQ(three.output.find("\n Report of 4 layers \n"), std::string::npos);
  EXPECT_EQ(three.status, 0);
}

TEST_F(CommandLine, CompleteRuleSetWritesNoRuleFile) {
  ProgramRun run = Run("-f t -a 1");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("\n the running time is "), std::string::npos);
  EXPECT_FALSE(FileExists(dir_ / "trule.csv"));
}

TEST_F(CommandLine, ImprovementOptionChangesNoResult) {
  const std::string plain = MaskRun(Run("-f t -s 0.2 -c 0.6").output);
  const std::string plainCsv = ReadFile(dir_ / "trule.csv");
  const std::string with = MaskRun(Run("-f t -s 0.2 -c 0.6 -i 0.2").output);
  EXPECT_EQ(ReadFile(dir_ / "trule.csv"), plainCsv);
  EXPECT_EQ(with.substr(with.find("MaxData")), plain.substr(plain.find("MaxData")));
}

TEST_F(CommandLine, ConfidenceIsComparedAsASinglePrecisionNumber) {
  // In the complete-rule-set mode a rule is kept when its confidence, the
  // quotient of two counts, reaches the threshold stored as a float:
  // 8/10 = 0.8 is below 0.8f, 9/10 = 0.9 is above 0.9f.
  WriteFile(dir_ / "c.names", "yes, no.\nA: a, d.\n");
  std::string data;
  for (int i = 0; i < 10; ++i) data += i < 8 ? "a,yes\n" : "a,no\n";
  data += "d,no\n";
  WriteFile(dir_ / "c.data", data);
  ProgramRun eight = RunProgram("rule", "-f c -s 0.5 -a 1 -c 0.8 -x 1", dir_.path());
  EXPECT_EQ(eight.output.find(" -> 3"), std::string::npos) << eight.output;

  data.clear();
  for (int i = 0; i < 10; ++i) data += i < 9 ? "a,yes\n" : "a,no\n";
  data += "d,no\n";
  WriteFile(dir_ / "c.data", data);
  ProgramRun nine = RunProgram("rule", "-f c -s 0.5 -a 1 -c 0.9 -x 1", dir_.path());
  EXPECT_NE(nine.output.find("\n1  -> 3\t Sup = 9\t Conf = 0.900000"), std::string::npos) << nine.output;
}

}  // namespace
