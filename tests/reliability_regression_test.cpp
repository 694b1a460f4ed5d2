// Faults found by fuzzing and by failing allocations, each kept as the
// smallest input that showed it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "discretiser/discretise.h"
#include "miner_fixture.h"

namespace {

using testing_support::MinerTest;

using ReliabilityRegression = MinerTest;

// The class names, then the values of the first attribute, as read.
std::vector<std::string> DeclaredNames(const DataSet& data) {
  std::vector<std::string> names = data.ClassName;
  for (const AttCodeEntry* e = data.AttCode[0]; e; e = e->Next) names.push_back(e->Name);
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
  ASSERT_TRUE(GetNames(data, Stem(), errors, true).ok());
  ASSERT_TRUE(ReadData(data, ".data", errors).ok());
  std::vector<CutAttribute> cuts;
  ASSERT_TRUE(DiscretiseAttributes(data, 0, &cuts).ok());
  const std::vector<std::string> before = DeclaredNames(data);
  const Status written = WriteCategoricalPair(data, Stem() + "-cut", cuts);
  ASSERT_TRUE(written.ok()) << written.message();
  ASSERT_EQ(before, (std::vector<std::string>{std::string("p\0q", 3), "r", std::string("a\0b", 3), "c"}));

  DataSet reread;
  ASSERT_TRUE(GetNames(reread, Stem() + "-cut", errors).ok());
  ASSERT_TRUE(GetData(reread, ".data", errors).ok());
  EXPECT_EQ(out.Take(), "");
  EXPECT_EQ(DeclaredNames(reread), before);
  ASSERT_EQ(reread.MaxData, 2);
  EXPECT_EQ(reread.ItemRecord[reread.DataSpace[0][0]]->ValueName, std::string("a\0b", 3));
  EXPECT_EQ(reread.ItemRecord[reread.DataSpace[0][2]]->ValueName, std::string("p\0q", 3));
}

}  // namespace
