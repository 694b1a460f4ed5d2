// Faults found by fuzzing and by failing allocations, each kept as the
// smallest input that showed it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "miner_fixture.h"
#include "readfile.h"
#include "readfile/discretise.h"
#include "rule.h"

namespace {

using testing_support::Capture;
using testing_support::MinerTest;
using testing_support::Outcome;

using ReliabilityRegression = MinerTest;

// The class names, then the values of the first attribute, as read.
std::vector<std::string> DeclaredNames() {
  std::vector<std::string> names = ClassName;
  for (const AttCodeEntry* e = AttCode[0]; e; e = e->Next) names.push_back(e->Name);
  return names;
}

// A NUL byte inside a name is an ordinary character of it; the categorical
// copy cut off every name at its first NUL, so the copy declared other
// classes and values than the cases it held.
TEST_F(ReliabilityRegression, CategoricalCopyKeepsNulBytesInNames) {
  static const char namesText[] = "p\0q, r.\nk: a\0b, c.\nv: continuous.\n";
  static const char dataText[] = "a\0b,1,p\0q\nc,2,r\n";
  WriteNames(std::string(namesText, sizeof namesText - 1));
  WriteData(std::string(dataText, sizeof dataText - 1));
  std::vector<std::string> before;
  Outcome cut = Capture([&] {
    GetNames(true);
    ReadData(".data");
    std::vector<CutAttribute> cuts;
    DiscretiseAttributes(&cuts);
    before = DeclaredNames();
    std::string error;
    ASSERT_TRUE(WriteCategoricalPair(Stem() + "-cut", cuts, &error)) << error;
  });
  ASSERT_EQ(cut.status, -1) << cut.output;
  ASSERT_EQ(before, (std::vector<std::string>{std::string("p\0q", 3), "r", std::string("a\0b", 3), "c"}));

  ResetRun();
  EndRunThrows = true;
  FileName = Stem() + "-cut";
  Outcome reread = Capture([] {
    GetNames();
    GetData(".data");
  });
  ASSERT_EQ(reread.status, -1) << reread.output;
  EXPECT_EQ(DeclaredNames(), before);
  ASSERT_EQ(MaxData, 2);
  EXPECT_EQ(ItemRecord[DataSpace[0][0]]->ValueName, std::string("a\0b", 3));
  EXPECT_EQ(ItemRecord[DataSpace[0][2]]->ValueName, std::string("p\0q", 3));
}

}  // namespace
