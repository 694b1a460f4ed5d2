// The names file reader: class list, attribute definitions, item codes,
// keywords, the lookups, and the errors that end or do not end a run.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::Capture;
using testing_support::MinerTest;
using testing_support::Outcome;

using NamesTest = MinerTest;

TEST_F(NamesTest, ItemCodesFollowTheDeclaredOrderWithClassesLast) {
  LoadNames("| a data set\nlow, mid, high.\nshape: round, square.\nsize: s, m, l, xl.\n");
  EXPECT_EQ(MaxItem, 9);
  EXPECT_EQ(MaxClass, 3);
  EXPECT_EQ(MaxAtt, 3);
  EXPECT_EQ(RealAtt, 3);
  EXPECT_EQ(ClassName, (std::vector<std::string>{"low", "mid", "high"}));
  EXPECT_EQ(AttName[0], "shape");
  EXPECT_EQ(AttName[2], "Class");
  EXPECT_EQ(AttValue[0], (std::vector<int>{1, 2}));
  EXPECT_EQ(AttValue[1], (std::vector<int>{3, 4, 5, 6}));
  EXPECT_EQ(AttValue[2], (std::vector<int>{7, 8, 9}));
  EXPECT_EQ(MaxAttVal, (std::vector<int>{2, 4, 3}));
  const int expectedAttribute[] = {0, 0, 0, 1, 1, 1, 1, 2, 2, 2};
  for (int item = 0; item <= 9; ++item) EXPECT_EQ(Attribute[item], expectedAttribute[item]) << item;

  EXPECT_EQ(ItemRecord[0]->AttributeName, "?");
  EXPECT_EQ(ItemRecord[0]->ValueName, "unknown attribute");
  EXPECT_EQ(ItemRecord[4]->AttributeName, "size");
  EXPECT_EQ(ItemRecord[4]->ValueName, "m");
  EXPECT_EQ(ItemRecord[8]->AttributeName, "Class");
  EXPECT_EQ(ItemRecord[8]->ValueName, "mid");

  // The chains hold the values in declared order with their codes.
  std::vector<std::string> names;
  std::vector<int> codes;
  for (const AttCodeEntry* e = AttCode[1]; e; e = e->Next) {
    names.push_back(e->Name);
    codes.push_back(e->Code);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"s", "m", "l", "xl"}));
  EXPECT_EQ(codes, (std::vector<int>{3, 4, 5, 6}));
  EXPECT_EQ(AttCode[2]->Name, "low");
}

TEST_F(NamesTest, IgnoredAttributeKeepsItsFieldButGetsNoItems) {
  LoadNames("yes, no.\nshape: round, square.\nid: ignore.\nsize: s, m, l, xl.\n");
  EXPECT_EQ(MaxAtt, 4);
  EXPECT_EQ(RealAtt, 3);
  EXPECT_EQ(MaxItem, 8);
  EXPECT_EQ(SpecialStatus, (std::vector<unsigned char>{0, 1, 0, 0}));
  EXPECT_EQ(AttCode[1], nullptr);
  EXPECT_EQ(AttName[1], "id");
  EXPECT_EQ(AttValue[1], (std::vector<int>{3, 4, 5, 6}));  // real index 1 is "size"
  EXPECT_EQ(GetAttCode("m", 2), 4);                         // declared index 2 is "size"
  EXPECT_EQ(Attribute[7], 2);
  EXPECT_EQ(ItemRecord[7]->ValueName, "yes");
}

TEST_F(NamesTest, KeywordsCountOnlyAsTheFirstValue) {
  LoadNames("yes, no.\nmode: auto, ignore, continuous, discrete.\n");
  EXPECT_EQ(SpecialStatus[0], 0);
  EXPECT_EQ(MaxItem, 6);
  EXPECT_EQ(GetAttCode("ignore", 0), 2);
  EXPECT_EQ(GetAttCode("discrete", 0), 4);
}

TEST_F(NamesTest, ClassListAlone) {
  LoadNames("yes, no.\n");
  EXPECT_EQ(MaxAtt, 1);
  EXPECT_EQ(RealAtt, 1);
  EXPECT_EQ(MaxItem, 2);
  EXPECT_EQ(AttName[0], "Class");
  EXPECT_EQ(Attribute[2], 0);
}

TEST_F(NamesTest, OddlyWrittenValues) {
  LoadNames("yes, no\n| comment between\nsize: 1.5, 2.5.  | with a remark\nshade: light  blue,,dark\tred.");
  EXPECT_EQ(GetAttCode("1.5", 0), 1);
  EXPECT_EQ(GetAttCode("2.5", 0), 2);
  EXPECT_EQ(GetAttCode("light blue", 1), 3);
  EXPECT_EQ(GetAttCode("", 1), 4);  // two commas in a row: an empty value, an item like any other
  EXPECT_EQ(GetAttCode("dark\tred", 1), 5);
  EXPECT_EQ(MaxItem, 7);
}

TEST_F(NamesTest, ItemTablesGrowWhenCode49IsHandedOut) {
  auto namesWith = [](int values) {
    std::string text = "yes.\nmany: ";
    for (int v = 1; v <= values; ++v) text += "v" + std::to_string(v) + (v < values ? ", " : ".\n");
    return text;
  };
  LoadNames(namesWith(47));  // codes 1..47, class 48
  EXPECT_EQ(MaxItem, 48);
  EXPECT_EQ(Item_Id_Ceiling, 50);

  ResetRun();
  EndRunThrows = true;
  FileName = Stem();
  LoadNames(namesWith(48));  // class 49
  EXPECT_EQ(MaxItem, 49);
  EXPECT_EQ(Item_Id_Ceiling, 100);
  ASSERT_GE(ItemRecord.size(), 100u);
  EXPECT_EQ(ItemRecord[49]->ValueName, "yes");
  EXPECT_EQ(Attribute[49], 1);
}

TEST_F(NamesTest, LookupsAreExact) {
  LoadNames("Yes, yes.\ncolour: red, green.\n");
  EXPECT_EQ(GetAttCode("red", 0), 1);
  EXPECT_EQ(GetAttCode("Red", 0), 0);
  EXPECT_EQ(GetAttCode("red ", 0), 0);
  EXPECT_EQ(GetAttCode("green", 1), 0);  // another attribute's value
  EXPECT_EQ(GetAttCode("yes", 1), 4);
  EXPECT_EQ(GetAttCode("red", 7), 0);  // no such attribute
  EXPECT_EQ(GetNameCode("Yes"), 0);
  EXPECT_EQ(GetNameCode("yes"), 1);
  EXPECT_EQ(GetNameCode("YES"), -1);
  MaxClass = 0;
  EXPECT_EQ(GetNameCode("Yes"), -1);
}

TEST_F(NamesTest, RepeatedValueKeepsTheCodeOfItsFirstDeclaration) {
  LoadNames("yes, no.\ncolour: red, green, red.\n");
  EXPECT_EQ(MaxItem, 5);
  EXPECT_EQ(GetAttCode("red", 0), 1);
}

TEST_F(NamesTest, MissingColonIsReportedAndTheDefinitionReadOn) {
  WriteNames("yes, no.\ncolour\nred, green.\nsize: s.\n");
  Outcome read = Capture([] { GetNames(); });
  EXPECT_EQ(read.status, -1);
  EXPECT_EQ(read.output, "\nERROR:  colon expected after attribute name colour\n");
  EXPECT_EQ(AttName[0], "colour");
  EXPECT_EQ(GetAttCode("red", 0), 1);
  EXPECT_EQ(GetAttCode("green", 0), 2);
  EXPECT_EQ(GetAttCode("s", 1), 3);
  EXPECT_EQ(MaxItem, 5);
}

TEST_F(NamesTest, EndOfFileWhereTheFirstValueIsExpected) {
  WriteNames("yes, no.\ncolour: red.\nsize:");
  Outcome read = Capture([] { GetNames(); });
  EXPECT_EQ(read.status, -1);
  EXPECT_EQ(read.output, "\nERROR:  unexpected eof while reading attribute size\n");
  // No value is invented for the attribute.
  EXPECT_EQ(MaxAtt, 3);
  EXPECT_EQ(MaxAttVal[1], 0);
  EXPECT_EQ(MaxItem, 3);
  EXPECT_EQ(GetAttCode("size", 1), 0);
}

TEST_F(NamesTest, EndOfFileAfterACommaRepeatsNoValue) {
  WriteNames("yes, no.\ncolour: red,");
  Outcome read = Capture([] { GetNames(); });
  EXPECT_EQ(read.output, "\nERROR:  unexpected eof while reading attribute colour\n");
  EXPECT_EQ(MaxAttVal[0], 1);
  EXPECT_EQ(MaxItem, 3);
}

std::string MissingColons(int count) {
  std::string text = "yes, no.\n";
  for (int i = 1; i <= count; ++i) text += "a" + std::to_string(i) + ", v.\n";
  return text;
}

std::string ColonErrors(int from, int to) {
  std::string text;
  for (int i = from; i <= to; ++i) text += "\nERROR:  colon expected after attribute name a" + std::to_string(i) + "\n";
  return text;
}

TEST_F(NamesTest, TenErrorsAreSurvived) {
  WriteNames(MissingColons(10));
  Outcome read = Capture([] { GetNames(); });
  EXPECT_EQ(read.status, -1);
  EXPECT_EQ(read.output, ColonErrors(1, 10));
  EXPECT_EQ(MaxItem, 12);
}

TEST_F(NamesTest, TheEleventhErrorEndsTheRun) {
  WriteNames(MissingColons(12));
  Outcome read = Capture([] { GetNames(); });
  EXPECT_EQ(read.status, 1);
  EXPECT_EQ(read.output, ColonErrors(1, 11) + "Error limit exceeded\n");
}

TEST_F(NamesTest, ContinuousAttributeEndsTheRunWithStatusZero) {
  WriteNames("yes, no.\ncolour: red.\nweight: continuous.\nsize: s.\n");
  Outcome read = Capture([] { GetNames(); });
  EXPECT_EQ(read.status, 0);
  EXPECT_EQ(read.output, "\n I do not process continuous attribute, discretize it first \n");
}

TEST_F(NamesTest, DiscreteAttributeEndsTheRunWithStatusZero) {
  for (const char* first : {"discrete 5", "discrete", "discreteness"}) {
    WriteNames(std::string("yes, no.\ncount: ") + first + ".\n");
    Outcome read = Capture([] { GetNames(); });
    EXPECT_EQ(read.status, 0) << first;
    EXPECT_EQ(read.output, "I find the discrete value in " + Stem() + ".naame\n") << first;
    ResetRun();
    EndRunThrows = true;
    FileName = Stem();
  }
}

TEST_F(NamesTest, MissingNamesFile) {
  Outcome read = Capture([] { GetNames(); });
  EXPECT_EQ(read.status, 1);
  EXPECT_EQ(read.output, "\nERROR:  cannot open file " + Stem() + ".names\n");
}

TEST_F(NamesTest, NamesFileWithoutAnyNameIsRefused) {
  for (const char* text : {"", "| nothing but a comment\n\n"}) {
    WriteNames(text);
    Outcome read = Capture([] { GetNames(); });
    EXPECT_EQ(read.status, 1) << text;
    EXPECT_EQ(read.output, "\nERROR:  " + Stem() + ".names declares no class\n");
  }
}

// Two classes and the given number of values, spread over attributes of at
// most 1000 values each.
std::string NamesWithValues(int values) {
  std::string text = "yes, no.\n";
  for (int v = 1; v <= values; ++v) {
    if (v % 1000 == 1) text += "att" + std::to_string(v / 1000) + ": ";
    text += "v" + std::to_string(v);
    text += v < values && v % 1000 != 0 ? ", " : ".\n";
  }
  return text;
}

TEST_F(NamesTest, TheLargestCodableItemIsAccepted) {
  LoadNames(NamesWithValues(MaxCodableItem - 2));
  EXPECT_EQ(MaxItem, 32767);
}

TEST_F(NamesTest, MoreItemsThanTheDataSpaceCanCodeAreRefused) {
  WriteNames(NamesWithValues(MaxCodableItem - 1));
  Outcome read = Capture([] { GetNames(); });
  EXPECT_EQ(read.status, 1);
  EXPECT_EQ(read.output, "\nERROR:  " + Stem() + ".names declares 32768 items; at most 32767 can be coded\n");
}

// The same ends of a run, as the process really ends them.
using NamesDeathTest = MinerTest;

TEST_F(NamesDeathTest, ExitStatuses) {
  EndRunThrows = false;
  EXPECT_EXIT(GetNames(), ::testing::ExitedWithCode(1), "");
  WriteNames("yes, no.\nweight: continuous.\n");
  EXPECT_EXIT(GetNames(), ::testing::ExitedWithCode(0), "");
  WriteNames(MissingColons(11));
  EXPECT_EXIT(GetNames(), ::testing::ExitedWithCode(1), "");
}

}  // namespace
