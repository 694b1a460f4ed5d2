// rule-discretise as a program: the categorical pair it writes, mining that
// pair with rule, names that must read back unchanged, and its refusals.
#include <gtest/gtest.h>

#include <sstream>

#include "readfile.h"
#include "rule.h"
#include "test_support.h"

using namespace testing_support;

namespace {

const char kNames[] = "good, bad.\ncolour: red, green.\nid: ignore.\nsize: continuous.\n";
const char kData[] =
    "red,1,1.0,good\nred,2,1.2,good\ngreen,3,1.1,good\ngreen,4,5.0,bad\nred,5,5.5,bad\n"
    "green,6,?,bad\nred,7,1.3,good\ngreen,8,5.2,bad\nred,9,5.1,good\ngreen,10,1.05,good\n"
    "red,11,9.5,bad\ngreen,12,9.0,good\n";

struct Fixture {
  TempDir dir;
  Fixture(const std::string& names = kNames, const std::string& data = kData) {
    WriteFile(dir / "in.names", names);
    WriteFile(dir / "in.data", data);
  }
  ProgramRun Discretise(const std::string& args) { return RunProgram("rule-discretise", args, dir.path()); }
};

}  // namespace

TEST(DiscretiseProgram, WritesAPairThatRuleMines) {
  Fixture fx;
  ProgramRun run = fx.Discretise("-f in -s 0.2 -o out");
  ASSERT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(run.output,
            "Read 12 cases of 3 attributes from in; an interval of at most 2 cases is merged\n"
            "size: 3 intervals\n\t1.00..3.15\t5 cases\n\t3.15..7.25\t4 cases\n\t7.25..9.93\t2 cases\n"
            "Wrote out.names and out.data\n");
  EXPECT_EQ(ReadFile(fx.dir / "out.names"),
            "| Continuous attributes cut into intervals LOW..HIGH by rule-discretise.\n\ngood, bad.\n\n"
            "colour: red, green.\nid: ignore.\nsize: 1.00..3.15, 3.15..7.25, 7.25..9.93.\n");
  EXPECT_EQ(ReadFile(fx.dir / "out.data"),
            "red,?,1.00..3.15,good\nred,?,1.00..3.15,good\ngreen,?,1.00..3.15,good\n"
            "green,?,3.15..7.25,bad\nred,?,3.15..7.25,bad\ngreen,?,?,bad\nred,?,1.00..3.15,good\n"
            "green,?,3.15..7.25,bad\nred,?,3.15..7.25,good\ngreen,?,1.00..3.15,good\n"
            "red,?,7.25..9.93,bad\ngreen,?,7.25..9.93,good\n");

  ProgramRun mined = RunProgram("rule", "-f out -s 0.25 -c 0.7", fx.dir.path());
  EXPECT_EQ(mined.status, 0);
  EXPECT_EQ(MaskRun(mined.output),
            "\t\t\t\t\t DATE\n \tFile Name: out\n\tGlobal Support = 0.2500 \n\tGlobal Confidence = 0.7000 \n"
            "MaxData = 12, Attribute = 4, Used attributes 3 \nThe first layer tree size is 6 \n\n"
            " Report of 2 layers \nThe number of tree nodes 12 \nThe number of rules 1 \n\n"
            " Report of 3 layers \nThe number of tree nodes 13 \nThe number of rules 2 \n\n"
            " the running time is T \n");
  EXPECT_EQ(ReadFile(fx.dir / "outrule.csv"),
            "confidence, 0.700000, support, 0.250000, RuleNumber, 2, \n"
            "index, sup(Pc), sup(P[nC]), sup([nP]C), sup([nP][nC]), sup(P), sup[C], confdice, chi, lift, "
            "leverage, target, value, att1, value1, att2, value2, att3, value3, att4, value4, att5, value5, "
            "att6, value 6\n"
            "1, 5, 0, 2, 5, 5, 7, 1.000000, 6.122449, 1.714286, 0.173611, Class, good, size, 1.00..3.15, \n"
            "2, 3, 1, 2, 6, 4, 5, 0.750000, 2.742857, 1.800000, 0.111111, size, 1.00..3.15, colour, red, "
            "Class, good, \n");
}

// Escapes, inner periods, a lone final backslash, "?" declared as a value
// and an empty class name must all read back as the same values.
TEST(DiscretiseProgram, WrittenNamesReadBackUnchanged) {
  Fixture fx("a\\,b, x.y, .\nodd: c\\ , light  blue, ?.\nnum: continuous.\n",
             "c\\ ,1,a\\,b\nlight blue,2,x.y\n?,?,x.y\nzzz,3,.\n");
  ASSERT_EQ(fx.Discretise("-f in -s 0 -o out").status, 0);
  auto decode = [](const std::string& stem) {
    EndRunThrows = true;
    ResetRun();
    FileName = stem;
    GetNames(true);
    GetData(".data");
    std::vector<std::string> cells = ClassName;
    for (const AttCodeEntry* e = AttCode[0]; e; e = e->Next) cells.push_back(e->Name);
    for (int i = 0; i < MaxData; ++i)
      for (int c : {0, 2}) cells.push_back(ItemRecord[DataSpace[i][c]]->ValueName);
    ResetRun();
    EndRunThrows = false;
    return cells;
  };
  const std::vector<std::string> in = decode(fx.dir / "in"), out = decode(fx.dir / "out");
  EXPECT_EQ(in, out);
  EXPECT_EQ(in[3], "c\\");
  EXPECT_EQ(in[2], "");
}

TEST(DiscretiseProgram, RefusesBadUsageAndItsOwnInput) {
  Fixture fx;
  EXPECT_EQ(fx.Discretise("--help").status, 0);
  EXPECT_NE(fx.Discretise("--help").output.find("Usage: rule-discretise -f STEM"), std::string::npos);
  const std::string folder = fx.dir.path().substr(fx.dir.path().rfind('/') + 1);
  const std::vector<std::string> refused = {"", "-f in", "-o out", "-f in -o", "-f in -o out -x",
                                            "-f in -s 1.5 -o out", "-f in -s abc -o out", "-f in -o ./in",
                                            "-f in -o ../" + folder + "/in"};
  for (const std::string& args : refused)
    EXPECT_EQ(fx.Discretise(args).status, 1) << args;
  ASSERT_EQ(symlink(fx.dir.path().c_str(), (fx.dir / "link").c_str()), 0);
  EXPECT_EQ(fx.Discretise("-f in -o link/in").status, 1);
  EXPECT_EQ(ReadFile(fx.dir / "in.names"), kNames);

  ProgramRun missing = fx.Discretise("-f nothere -o out");
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.output.find("cannot open file nothere.names"), std::string::npos);
  EXPECT_FALSE(FileExists(fx.dir / "out.names"));
  EXPECT_EQ(fx.Discretise("-f in -o no/such/folder/out").status, 1);
}

// On iris every case falls in one interval of each of the four attributes,
// and the miner reads the written pair.
TEST(DiscretiseProgram, IrisIntervalsCoverEveryCase) {
  const std::string shared = SharedDir() + "/data/iris";
  if (!FileExists(shared + ".names")) GTEST_SKIP() << "no iris data set";
  Fixture fx(ReadFile(shared + ".names"), ReadFile(shared + ".data"));
  ProgramRun run = fx.Discretise("-f in -s 0.05 -o out");
  ASSERT_EQ(run.status, 0) << run.output;
  int cases = 0;
  std::istringstream lines(run.output);
  for (std::string line; std::getline(lines, line);)  // "\tLOW..HIGH\tN cases"
    if (line[0] == '\t') cases += std::stoi(line.substr(line.rfind('\t') + 1));
  EXPECT_EQ(cases, 4 * 150);
  ProgramRun mined = RunProgram("rule", "-f out -s 0.05 -c 0.8", fx.dir.path());
  EXPECT_EQ(mined.status, 0);
  EXPECT_NE(mined.output.find("MaxData = 150, Attribute = 5, Used attributes 5"), std::string::npos);
}
