// The data file reader: fields to cases regardless of line breaks, coding
// through the names tables, unknown values, and incomplete cases.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using testing_support::Capture;
using testing_support::MinerTest;
using testing_support::Outcome;
using Row_t = std::vector<int>;

// Items: a=1 d=2 | b=3 e=4 | c=5 f=6 | yes=7 no=8.
const char kNames[] = "yes, no.\nA: a, d.\nB: b, e.\nC: c, f.\n";

class DataTest : public MinerTest {
 protected:
  std::vector<Row_t> Rows() const {
    std::vector<Row_t> rows;
    for (int i = 0; i < MaxData; ++i) rows.push_back(Row(i));
    return rows;
  }
};

TEST_F(DataTest, LineBreaksCarryNoMeaning) {
  const std::vector<Row_t> expected = {{1, 3, 5, 7, 0}, {2, 4, 6, 8, 0}};
  for (const char* data : {"a,b,c,yes\nd,e,f,no\n", "a,b,c,yes,d,e,f,no\n", "a,b,\nc,yes,\nd,e,\nf,no",
                           "a, b, c, yes.\n\n\nd ,e ,f ,no.\n"}) {
    Load(kNames, data);
    EXPECT_EQ(MaxData, 2) << data;
    EXPECT_EQ(Rows(), expected) << data;
    ResetRun();
    EndRunThrows = true;
    FileName = Stem();
  }
}

TEST_F(DataTest, ALineOneFieldShortShiftsTheCasesAfterIt) {
  Load(kNames, "a,b,yes\nd,e,f,no\na,b,c,yes\n");
  // Case 1 takes "yes" as its C value and "d" as its class; case 2 is
  // e,f,no,a; the fields b,c,yes are left over and dropped.
  EXPECT_EQ(MaxData, 2);
  EXPECT_EQ(Rows(), (std::vector<Row_t>{{1, 3, 0, 0, 0}, {0, 0, 0, 0, 0}}));
}

TEST_F(DataTest, UnknownAndUndeclaredValuesBecomeItemZero) {
  Load(kNames, "?,b,c,yes\na,blue,c,maybe\nd,e,?,?\nA,b,c,Yes\n");
  EXPECT_EQ(Rows(), (std::vector<Row_t>{{0, 3, 5, 7, 0}, {1, 0, 5, 0, 0}, {2, 4, 0, 0, 0}, {0, 3, 5, 0, 0}}));
}

TEST_F(DataTest, ValuesOfAnotherAttributeAreUnknownInThisOne) {
  Load(kNames, "b,a,c,yes\n");
  EXPECT_EQ(Row(0), (Row_t{0, 0, 5, 7, 0}));
}

TEST_F(DataTest, DeclaredQuestionMarkGetsItsOwnCode) {
  Load("yes, no.\nA: ?, a.\n", "?,yes\na,no\n");
  EXPECT_EQ(Rows(), (std::vector<Row_t>{{1, 3, 0}, {2, 4, 0}}));
}

TEST_F(DataTest, PeriodsAndCommentsFollowTheNamesFileRules) {
  Load("yes, no.\nsize: 1.5, 2.5.\n", "| header line\n1.5,yes. | first case\n2.5, no.\n");
  EXPECT_EQ(Rows(), (std::vector<Row_t>{{1, 3, 0}, {2, 4, 0}}));
}

TEST_F(DataTest, EmptyDataFile) {
  for (const char* data : {"", "\n\n", "| only a comment\n"}) {
    Load(kNames, data);
    EXPECT_EQ(MaxData, 0) << data;
    EXPECT_TRUE(DataSpace.empty());
    ResetRun();
    EndRunThrows = true;
    FileName = Stem();
  }
}

TEST_F(DataTest, PartialLastCaseIsDropped) {
  Load(kNames, "a,b,c,yes\nd,e,f\n");
  EXPECT_EQ(MaxData, 1);
  EXPECT_EQ(Rows(), (std::vector<Row_t>{{1, 3, 5, 7, 0}}));
}

TEST_F(DataTest, ManyCasesKeepTheirOrder) {
  // Crosses the first growth of the row array (100 rows) and more.
  for (int cases : {99, 100, 101, 250}) {
    std::string data;
    for (int i = 0; i < cases; ++i) data += i % 3 == 0 ? "d,e,f,no\n" : "a,b,c,yes\n";
    Load(kNames, data);
    ASSERT_EQ(MaxData, cases);
    ASSERT_EQ(static_cast<int>(DataSpace.size()), cases);
    for (int i = 0; i < cases; ++i)
      ASSERT_EQ(Row(i), i % 3 == 0 ? (Row_t{2, 4, 6, 8, 0}) : (Row_t{1, 3, 5, 7, 0})) << cases << " row " << i;
    ResetRun();
    EndRunThrows = true;
    FileName = Stem();
  }
}

TEST_F(DataTest, IgnoredFieldsAreSkipped) {
  Load("yes, no.\nid: ignore.\nA: a, d.\nnote: ignore.\nB: b, e.\n", "17,a,whatever,b,yes\n18,d,?,e,no\n");
  EXPECT_EQ(MaxAtt, 5);
  EXPECT_EQ(RealAtt, 3);
  EXPECT_EQ(Rows(), (std::vector<Row_t>{{1, 3, 5, 0}, {2, 4, 6, 0}}));
}

TEST_F(DataTest, ClassListAloneGivesOneColumn) {
  Load("yes, no.\n", "no\nyes\nmaybe\n");
  EXPECT_EQ(Rows(), (std::vector<Row_t>{{2, 0}, {1, 0}, {0, 0}}));
}

TEST_F(DataTest, AttributeWithTenThousandValues) {
  std::string names = "yes, no.\nid: ";
  std::string data;
  for (int v = 1; v <= 10000; ++v) {
    names += "n" + std::to_string(v) + (v < 10000 ? ", " : ".\n");
    data += "n" + std::to_string(10001 - v) + (v % 2 ? ",yes\n" : ",no\n");
  }
  Load(names, data);
  ASSERT_EQ(MaxData, 10000);
  EXPECT_EQ(MaxItem, 10002);
  EXPECT_EQ(Row(0), (Row_t{10000, 10001, 0}));
  EXPECT_EQ(Row(9999), (Row_t{1, 10002, 0}));
}

TEST_F(DataTest, MissingDataFileEndsTheRun) {
  WriteNames(kNames);
  Outcome read = Capture([] {
    GetNames();
    GetData(".data");
  });
  EXPECT_EQ(read.status, 1);
  EXPECT_EQ(read.output, "\nERROR:  cannot open file " + Stem() + ".data\n");
}

TEST_F(DataTest, OtherExtension) {
  WriteNames(kNames);
  testing_support::WriteFile(Stem() + ".test", "d,b,f,yes\n");
  Outcome read = Capture([] {
    GetNames();
    GetData(".test");
  });
  ASSERT_EQ(read.status, -1);
  EXPECT_EQ(Row(0), (Row_t{2, 3, 6, 7, 0}));
}

}  // namespace
