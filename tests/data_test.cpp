// The data file reader: fields to cases regardless of line breaks, coding
// through the names tables, unknown values, and incomplete cases.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "miner_fixture.h"

namespace {

using Rows_t = std::vector<std::vector<int>>;

// Items: a=1 d=2 | b=3 e=4 | c=5 f=6 | yes=7 no=8.
const char kNames[] = "yes, no.\nA: a, d.\nB: b, e.\nC: c, f.\n";

using DataTest = testing_support::MinerTest;

TEST_F(DataTest, FieldsBecomeCodedCases) {
  const struct {
    const char* names;
    const char* data;
    Rows_t rows;
  } cases[] = {
      // Line breaks carry no meaning.
      {kNames, "a,b,c,yes\nd,e,f,no\n", {{1, 3, 5, 7, 0}, {2, 4, 6, 8, 0}}},
      {kNames, "a,b,\nc,yes,\nd,e,\nf,no", {{1, 3, 5, 7, 0}, {2, 4, 6, 8, 0}}},
      {kNames, "a, b, c, yes.\n\n\nd ,e ,f ,no.\n", {{1, 3, 5, 7, 0}, {2, 4, 6, 8, 0}}},
      // A line one field short shifts the cases after it; the rest is dropped
      // (undeclared values and a short last case are golden runs).
      {kNames, "a,b,yes\nd,e,f,no\na,b,c,yes\n", {{1, 3, 0, 0, 0}, {0, 0, 0, 0, 0}}},
      // Unknown, undeclared and other attributes' values are item 0.
      {kNames, "?,b,c,yes\nA,b,c,Yes\nb,a,c,yes\n", {{0, 3, 5, 7, 0}, {0, 3, 5, 0, 0}, {0, 0, 5, 7, 0}}},
      {"yes, no.\nA: ?, a.\n", "?,yes\na,no\n", {{1, 3, 0}, {2, 4, 0}}},  // a declared "?"
      {"yes, no.\nsize: 1.5, 2.5.\n", "| header\n1.5,yes. | first\n2.5, no.\n", {{1, 3, 0}, {2, 4, 0}}},
      {"yes, no.\n", "no\nyes\nmaybe\n", {{2, 0}, {1, 0}, {0, 0}}},
  };
  for (const auto& c : cases) {
    Load(c.names, c.data);
    EXPECT_EQ(Rows(), c.rows) << c.data;
  }
}

TEST_F(DataTest, ManyCasesKeepTheirOrder) {
  // Crosses the growth of the row array (100 rows), and an attribute with
  // ten thousand values.
  std::string names = "yes, no.\nid: ";
  std::string cases;
  for (int v = 1; v <= 10000; ++v) {
    names += "n" + std::to_string(v) + (v < 10000 ? ", " : ".\n");
    cases += "n" + std::to_string(10001 - v) + (v % 3 ? ",yes\n" : ",no\n");
  }
  Load(names, cases);
  ASSERT_EQ(data.MaxData, 10000);
  EXPECT_EQ(data.MaxItem, 10002);
  for (int i = 0; i < data.MaxData; ++i) ASSERT_EQ(Row(i), (std::vector<int>{10000 - i, (i + 1) % 3 ? 10001 : 10002, 0}));
}

}  // namespace
