// Malformed and hostile input files: the readers and the whole program must
// end cleanly with the expected message and status (run under the
// sanitizers in the sanitizer build).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::Capture;
using testing_support::MaskRun;
using testing_support::MinerTest;
using testing_support::Outcome;
using testing_support::ProgramRun;
using testing_support::RunProgram;
using testing_support::TempDir;
using testing_support::WriteFile;

// Runs the built miner on a names/data pair in a folder of its own.
ProgramRun Mine(const std::string& names, const std::string& data, const std::string& options = "") {
  TempDir dir;
  WriteFile(dir / "x.names", names);
  WriteFile(dir / "x.data", data);
  return RunProgram("rule", "-f x " + options, dir.path());
}

const char kNames[] = "yes, no.\nA: a, d.\nB: b, e.\n";

TEST(BadInputProgram, MissingColonIsSurvived) {
  ProgramRun run = Mine("yes, no.\nA a, d.\nB: b, e.\n", "a,b,yes\nd,e,no\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("\nERROR:  colon expected after attribute name A a\n"), std::string::npos);
  EXPECT_NE(run.output.find("MaxData = 2, Attribute = 3, Used attributes 3 \n"), std::string::npos);
}

TEST(BadInputProgram, EndOfFileInsideADefinition) {
  ProgramRun run = Mine("yes, no.\nA: a, d.\nB:", "a,b,yes\nd,e,no\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("\nERROR:  unexpected eof while reading attribute B\n"), std::string::npos);
  // B has no values: its fields are unknown.
  EXPECT_NE(run.output.find("MaxData = 2, Attribute = 3, Used attributes 3 \n"), std::string::npos);
}

TEST(BadInputProgram, UndeclaredValuesAndShortLastCase) {
  ProgramRun run = Mine(kNames, "a,b,yes\nz,z,maybe\nd,e,no\nd,e\n", "-x 1");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("1: 1,3,5,\n2: 0,0,0,\n3: 2,4,6,\nMaxData = 3, "), std::string::npos)
      << run.output;
}

TEST(BadInputProgram, EmptyFiles) {
  ProgramRun noNames = Mine("", "a,b,yes\n");
  EXPECT_EQ(noNames.status, 1);
  EXPECT_NE(noNames.output.find("\nERROR:  x.names declares no class\n"), std::string::npos) << noNames.output;

  // No cases: GMinSup is 0, so every item and pair is a node, every
  // confidence is 0/0 and no rule is made; at layer 3 every target is pruned
  // (no case without the target either way) and layer 4 stays empty.
  ProgramRun noData = Mine(kNames, "");
  EXPECT_EQ(noData.status, 0);
  EXPECT_NE(MaskRun(noData.output)
                .find("MaxData = 0, Attribute = 3, Used attributes 3 \n"
                      "The first layer tree size is 6 \n"
                      "\n Report of 2 layers \nThe number of tree nodes 21 \nThe number of rules 0 \n"
                      "\n Report of 3 layers \nThe number of tree nodes 41 \nThe number of rules 0 \n"
                      "\n the running time is T \n"),
            std::string::npos)
      << noData.output;
}

TEST(BadInputProgram, CarriageReturnLineEnds) {
  // The carriage return stays in the last name of each line, and a period
  // before it is kept too: the classes are "yes" and "no.\r", the values of
  // A "a" and "d.\r", of B "b" and "e\r". The data's "yes\r", "d" and
  // "no\r" match nothing; "e\r" matches.
  ProgramRun run = Mine("yes, no.\r\nA: a, d.\r\nB: b, e\r\n", "a,b,yes\r\nd,e\r,no\r\n", "-x 1");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("1: 1,3,0,\n2: 0,4,0,\n"), std::string::npos) << run.output;
}

TEST(BadInputProgram, NulAndHighBytes) {
  static const char namesText[] = "yes, n\0o.\nA: \xff\xfe, a\0b.\nB: b, \x01.\n";
  static const char dataText[] = "\xff\xfe,b,yes\na\0b,\x01,n\0o\n\xff,\0,\0\n";
  const std::string names(namesText, sizeof namesText - 1);
  const std::string data(dataText, sizeof dataText - 1);
  ProgramRun run = Mine(names, data, "-x 1");
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_NE(run.output.find("1: 1,3,5,\n2: 2,4,6,\n3: 0,0,0,\n"), std::string::npos) << run.output;
}

TEST(BadInputProgram, VeryLongNames) {
  const std::string longValue(100000, 'v');
  ProgramRun run = Mine("yes, no.\n" + std::string(100000, 'A') + ": " + longValue + ", d.\n",
                        longValue + ",yes\nd,no\n" + std::string(100000, 'w') + ",no\n", "-x 1");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("1: 1,3,\n2: 2,4,\n3: 0,4,\n"), std::string::npos);
}

TEST(BadInputProgram, TooManyItemsAreRefused) {
  std::string names = "yes, no.\n";
  for (int v = 1; v <= 40000; ++v) {
    if (v % 1000 == 1) names += "att" + std::to_string(v / 1000) + ": ";
    names += "v" + std::to_string(v) + (v % 1000 ? ", " : ".\n");
  }
  ProgramRun run = Mine(names, "v1,yes\n");
  EXPECT_EQ(run.status, 1);
  const std::string last = "\nERROR:  x.names declares 40002 items; at most 32767 can be coded\n";
  ASSERT_GE(run.output.size(), last.size());
  EXPECT_EQ(run.output.substr(run.output.size() - last.size()), last);
}

TEST(BadInputProgram, ContinuousAttribute) {
  ProgramRun run = Mine("yes, no.\nw: continuous.\n", "1.5,yes\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(MaskRun(run.output),
            "\t\t\t\t\t DATE\n \tFile Name: x\n\n I do not process continuous attribute, discretize it first \n");
}

using BadInputReader = MinerTest;

TEST_F(BadInputReader, TenMegabytesOnOneLine) {
  std::string data;
  const std::string fourCases = "a,b,yes,d,e,no,a,e,no,d,b,yes,";
  data.reserve(10u << 20);
  while (data.size() < (10u << 20)) data += fourCases;
  const int cases = static_cast<int>(data.size() / fourCases.size()) * 4;
  Load(kNames, data);
  ASSERT_EQ(MaxData, cases);
  EXPECT_EQ(Row(0), (std::vector<int>{1, 3, 5, 0}));
  EXPECT_EQ(Row(cases - 1), (std::vector<int>{2, 3, 5, 0}));
  EXPECT_EQ(Row(cases - 2), (std::vector<int>{1, 4, 6, 0}));
}

TEST_F(BadInputReader, DataWithoutLineEndsOrFieldsAtAll) {
  for (const std::string& data : {std::string(","), std::string(",,,,,,"), std::string(1000, '\n'),
                                 std::string("|") + std::string(5000, 'x'), std::string("\\")}) {
    WriteNames(kNames);
    WriteData(data);
    Outcome read = Capture([] {
      GetNames();
      GetData(".data");
    });
    EXPECT_EQ(read.status, -1);
    EXPECT_EQ(MaxData, static_cast<int>(data == ",,,,,," ? 2 : 0)) << data.substr(0, 10);
    for (int i = 0; i < MaxData; ++i) EXPECT_EQ(Row(i), (std::vector<int>{0, 0, 0, 0}));
    ResetRun();
    EndRunThrows = true;
    FileName = Stem();
  }
}

TEST_F(BadInputReader, NamesMadeOfDelimitersOnly) {
  for (const char* names : {",", ":", ",,,\n:::\n", ".", "\\", "yes, no.\n:\n", "yes, no.\n: a, b.\n"}) {
    WriteNames(names);
    Outcome read = Capture([] { GetNames(); });
    EXPECT_NE(read.status, 0) << names;  // refused (1) or read (-1), never a crash
    ResetRun();
    EndRunThrows = true;
    FileName = Stem();
  }
}

}  // namespace
