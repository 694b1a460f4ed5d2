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
  EXPECT_EQ(MaxItem, 9);
  EXPECT_EQ(ClassName, (std::vector<std::string>{"low", "mid", "high"}));
  EXPECT_EQ(AttValue[1], (Ints{3, 4, 5, 6}));
  EXPECT_EQ(AttValue[2], (Ints{7, 8, 9}));
  EXPECT_EQ(MaxAttVal, (Ints{2, 4, 3}));
  EXPECT_EQ(std::vector<int>(Attribute.begin(), Attribute.begin() + 10), (Ints{0, 0, 0, 1, 1, 1, 1, 2, 2, 2}));
  EXPECT_EQ(ItemRecord[0]->ValueName, "unknown attribute");
  Ints codes;
  for (const AttCodeEntry* e = AttCode[1]; e; e = e->Next) codes.push_back(e->Code);
  EXPECT_EQ(codes, (Ints{3, 4, 5, 6}));
}

// Ignored attributes are golden runs (the weather set).
TEST_F(NamesTest, KeywordsOddValuesAndLookups) {
  ASSERT_EQ(Read("yes, no.\nmode: auto, ignore, continuous, discrete.\n").status, -1);
  EXPECT_EQ(GetAttCode("discrete", 0), 4);  // keywords count only as the first value

  Fresh();
  const char* odd = "Yes, yes\n| between\nsize: 1.5, 2.5.  | remark\nshade: light  blue,,dark\tred, light blue.";
  ASSERT_EQ(Read(odd).status, -1);
  EXPECT_EQ(GetAttCode("2.5", 0), 2);
  EXPECT_EQ(GetAttCode("light blue", 1), 3);  // a repeated value keeps its first code but uses one
  EXPECT_EQ(GetAttCode("", 1), 4);            // two commas in a row: an empty value
  EXPECT_EQ(GetAttCode("dark\tred", 1), 5);
  EXPECT_EQ(MaxItem, 8);
  // Lookups are exact and per attribute.
  EXPECT_EQ(GetAttCode("Light blue", 1), 0);
  EXPECT_EQ(GetAttCode("1.5", 1), 0);
  EXPECT_EQ(GetAttCode("yes", 2), 8);
  EXPECT_EQ(GetAttCode("1.5", 7), 0);
  EXPECT_EQ(GetNameCode("yes"), 1);
  EXPECT_EQ(GetNameCode("YES"), -1);
}

TEST_F(NamesTest, ItemTablesGrowWhenCode49IsHandedOut) {
  for (int values : {47, 48}) {
    Fresh();
    std::string text = "yes.\nmany: ";
    for (int v = 1; v <= values; ++v) text += "v" + std::to_string(v) + (v < values ? ", " : ".\n");
    ASSERT_EQ(Read(text).status, -1);
    EXPECT_EQ(MaxItem, values + 1);
    EXPECT_EQ(Item_Id_Ceiling, values == 47 ? 50 : 100);
  }
  EXPECT_EQ(ItemRecord[49]->ValueName, "yes");
}

// Errors that are reported and read past: what is left of the definition.
TEST_F(NamesTest, RecoverableErrors) {
  EXPECT_EQ(Read("yes, no.\ncolour\nred, green.\nsize: s.\n").output,
            "\nERROR:  colon expected after attribute name colour\n");
  EXPECT_EQ(GetAttCode("green", 0), 2);
  EXPECT_EQ(GetAttCode("s", 1), 3);

  Fresh();  // no value is invented for an attribute cut off by the end
  EXPECT_EQ(Read("yes, no.\ncolour: red.\nsize:").output, "\nERROR:  unexpected eof while reading attribute size\n");
  EXPECT_EQ(MaxAttVal[1], 0);
  EXPECT_EQ(MaxItem, 3);
}

}  // namespace
