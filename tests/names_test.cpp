// The names file reader: class list, attribute definitions, item codes,
// keywords, the lookups, and the errors that end or do not end a run.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::MinerTest;
using Ints = std::vector<int>;

using NamesTest = MinerTest;

TEST_F(NamesTest, ItemCodesFollowTheDeclaredOrderWithClassesLast) {
  ASSERT_EQ(Read("| a data set\nlow, mid, high.\nshape: round, square.\nsize: s, m, l, xl.\n").status, -1);
  EXPECT_EQ(data.MaxItem, 9);
  EXPECT_EQ(data.ClassName, (std::vector<std::string>{"low", "mid", "high"}));
  EXPECT_EQ(data.AttValue[1], (Ints{3, 4, 5, 6}));
  EXPECT_EQ(data.AttValue[2], (Ints{7, 8, 9}));
  EXPECT_EQ(data.MaxAttVal, (Ints{2, 4, 3}));
  EXPECT_EQ(std::vector<int>(data.Attribute.begin(), data.Attribute.begin() + 10), (Ints{0, 0, 0, 1, 1, 1, 1, 2, 2, 2}));
  EXPECT_EQ(data.ItemRecord[0]->ValueName, "unknown attribute");
  Ints codes;
  for (const AttCodeEntry* e = data.AttCode[1]; e; e = e->Next) codes.push_back(e->Code);
  EXPECT_EQ(codes, (Ints{3, 4, 5, 6}));
}

// Ignored attributes are golden runs (the weather set).
TEST_F(NamesTest, KeywordsOddValuesAndLookups) {
  ASSERT_EQ(Read("yes, no.\nmode: auto, ignore, continuous, discrete.\n").status, -1);
  EXPECT_EQ(GetAttCode(data, "discrete", 0), 4);  // keywords count only as the first value
  const char* odd = "Yes, yes\n| between\nsize: 1.5, 2.5.  | remark\nshade: light  blue,,dark\tred, light blue.";
  ASSERT_EQ(Read(odd).status, -1);
  EXPECT_EQ(GetAttCode(data, "2.5", 0), 2);
  EXPECT_EQ(GetAttCode(data, "light blue", 1), 3);  // a repeated value keeps its first code but uses one
  EXPECT_EQ(GetAttCode(data, "", 1), 4);            // two commas in a row: an empty value
  EXPECT_EQ(GetAttCode(data, "dark\tred", 1), 5);
  EXPECT_EQ(data.MaxItem, 8);
  // Lookups are exact and per attribute.
  EXPECT_EQ(GetAttCode(data, "Light blue", 1), 0);
  EXPECT_EQ(GetAttCode(data, "1.5", 1), 0);
  EXPECT_EQ(GetAttCode(data, "yes", 2), 8);
  EXPECT_EQ(GetAttCode(data, "1.5", 7), 0);
  EXPECT_EQ(GetNameCode(data, "yes"), 1);
  EXPECT_EQ(GetNameCode(data, "YES"), -1);
}

TEST_F(NamesTest, ItemTablesGrowWhenCode49IsHandedOut) {
  for (int values : {47, 48}) {
    std::string text = "yes.\nmany: ";
    for (int v = 1; v <= values; ++v) text += "v" + std::to_string(v) + (v < values ? ", " : ".\n");
    ASSERT_EQ(Read(text).status, -1);
    EXPECT_EQ(data.MaxItem, values + 1);
    EXPECT_EQ(data.Item_Id_Ceiling, values == 47 ? 50 : 100);
  }
  EXPECT_EQ(data.ItemRecord[49]->ValueName, "yes");
}

// Errors that are reported and read past: what is left of the definition.
TEST_F(NamesTest, RecoverableErrors) {
  EXPECT_EQ(Read("yes, no.\ncolour\nred, green.\nsize: s.\n").output,
            "\nERROR:  colon expected after attribute name colour\n");
  EXPECT_EQ(GetAttCode(data, "green", 0), 2);
  EXPECT_EQ(GetAttCode(data, "s", 1), 3);
  EXPECT_EQ(Read("yes, no.\ncolour: red.\nsize:").output, "\nERROR:  unexpected eof while reading attribute size\n");
  EXPECT_EQ(data.MaxAttVal[1], 0);
  EXPECT_EQ(data.MaxItem, 3);
}

}  // namespace
