// Hostile input files too large to keep as fixtures, and files made of
// delimiters only: the readers and the whole program must end cleanly with
// the expected message and status (run under the sanitizers in the
// sanitizer build). The smaller malformed files are runs of the golden set.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::ProgramRun;
using testing_support::WriteFile;

const char kNames[] = "yes, no.\nA: a, d.\nB: b, e.\n";

// Runs the built miner on a names/data pair in a folder of its own.
ProgramRun Mine(const std::string& names, const std::string& data) {
  testing_support::TempDir dir;
  WriteFile(dir / "x.names", names);
  WriteFile(dir / "x.data", data);
  return testing_support::RunProgram("rule", "-f x -x 1", dir.path());
}

TEST(BadInputProgram, HundredThousandCharacterNames) {
  const std::string longValue(100000, 'v');
  ProgramRun run = Mine("yes, no.\n" + std::string(100000, 'A') + ": " + longValue + ", d.\n",
                        longValue + ",yes\nd,no\n" + std::string(100000, 'w') + ",no\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("\n1: 1,3,\n2: 2,4,\n3: 0,4,\nMaxData = 3"), std::string::npos);
}

// Two classes and the given number of values, at most 1000 per attribute.
std::string NamesWithValues(int values) {
  std::string text = "yes, no.\n";
  for (int v = 1; v <= values; ++v) {
    if (v % 1000 == 1) text += "att" + std::to_string(v / 1000) + ": ";
    text += "v" + std::to_string(v) + (v < values && v % 1000 != 0 ? ", " : ".\n");
  }
  return text;
}

TEST(BadInputProgram, FortyThousandValuesAreRefused) {
  ProgramRun run = Mine(NamesWithValues(40000), "v1,yes\n");
  EXPECT_EQ(run.status, 1);
  const std::string last = "\nERROR:  x.names declares 40002 items; at most 32767 can be coded\n";
  ASSERT_GE(run.output.size(), last.size());
  EXPECT_EQ(run.output.substr(run.output.size() - last.size()), last);
}

using BadInputReader = testing_support::MinerTest;

TEST_F(BadInputReader, ItemCodesEndAt32767) {
  EXPECT_EQ(Read(NamesWithValues(MaxCodableItem - 2)).status, -1);
  EXPECT_EQ(MaxItem, 32767);
  Fresh();
  EXPECT_EQ(Read(NamesWithValues(MaxCodableItem - 1)).output,
            "\nERROR:  " + Stem() + ".names declares 32768 items; at most 32767 can be coded\n");
}

TEST_F(BadInputReader, TenMegabytesOnOneLine) {
  const std::string fourCases = "a,b,yes,d,e,no,a,e,no,d,b,yes,";
  std::string data;
  data.reserve(10u << 20);
  while (data.size() < (10u << 20)) data += fourCases;
  const int cases = static_cast<int>(data.size() / fourCases.size()) * 4;
  Load(kNames, data);
  ASSERT_EQ(MaxData, cases);
  EXPECT_EQ(Row(0), (std::vector<int>{1, 3, 5, 0}));
  EXPECT_EQ(Row(cases - 2), (std::vector<int>{1, 4, 6, 0}));
  EXPECT_EQ(Row(cases - 1), (std::vector<int>{2, 3, 5, 0}));
}

TEST_F(BadInputReader, FilesOfDelimitersOnly) {
  for (const std::string& data : {std::string(","), std::string(",,,,,,"), std::string(1000, '\n'),
                                  "|" + std::string(5000, 'x'), std::string("\\")}) {
    Fresh();
    Load(kNames, data);
    EXPECT_EQ(Rows(), std::vector<std::vector<int>>(data == ",,,,,," ? 2 : 0, {0, 0, 0, 0})) << data.substr(0, 9);
  }
  for (const char* names : {",", ":", ",,,\n:::\n", ".", "\\", "yes, no.\n:\n", "yes, no.\n: a, b.\n"}) {
    Fresh();
    EXPECT_NE(Read(names).status, 0) << names;  // refused (1) or read (-1), never a crash
  }
}

}  // namespace
