// The discretiser in-process: the fast merge checked against a plain walk
// of every pair in every pass, columns with single and missing values, the
// item limit, and the categorical pair it writes read back.
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

#include "discretiser/discretise.h"
#include "miner_fixture.h"

using namespace testing_support;

namespace {

// The merge passes over sorted values as a walk over the intervals, every
// pair every pass; the cheapest candidate, the first of equal ones, is merged.
std::vector<ContValue> ReferenceCut(const std::vector<float>& v, int minSup) {
  std::vector<ContValue> c;  // one interval per distinct value
  for (size_t i = 0; i < v.size(); ++i) {
    if (i > 0 && v[i] == v[i - 1]) { ++c.back().Count; continue; }
    if (i > 0) c.back().High = static_cast<float>((double(v[i - 1]) + v[i]) * 0.5);
    c.push_back({i ? c.back().High : v[0], 0, v[i], 1, 0});
  }
  const double width = c.size() > 1 ? (double(v.back()) - v[0]) / (c.size() - 1) : 0;
  if (!c.empty()) c.back().High = c.size() > 1 ? static_cast<float>(v.back() + 0.5 * width) : v.back();
  for (;;) {
    double smallest = 9999999.0;
    size_t chosen = c.size();
    for (size_t i = 0; i + 1 < c.size(); ++i) {
      ContValue &a = c[i], &b = c[i + 1];
      const double d = double(b.Mean) - a.Mean;
      if ((a.Count > minSup && b.Count > minSup) || d > 3.0 * width) continue;
      if (!(a.MergeCost > 1e-5 && b.MergeCost > 1e-5))
        a.MergeCost = static_cast<float>(std::fabs(d) * a.Count * b.Count / (a.Count + b.Count));
      if (a.MergeCost < smallest) smallest = a.MergeCost, chosen = i;
    }
    if (chosen == c.size()) return c;
    ContValue &a = c[chosen], &b = c[chosen + 1];
    a.High = b.High;
    a.Mean = static_cast<float>((double(a.Count) * a.Mean + double(b.Count) * b.Mean) / (a.Count + b.Count));
    a.Count += b.Count;
    c.erase(c.begin() + chosen + 1);
  }
}

// Every field of the intervals, Prev and Next aside.
std::vector<std::tuple<float, float, float, int, float>> Fields(const std::vector<ContValue>& cut) {
  std::vector<std::tuple<float, float, float, int, float>> fields;
  for (const ContValue& x : cut) fields.emplace_back(x.Low, x.High, x.Mean, x.Count, x.MergeCost);
  return fields;
}

// Random value sets of several shapes: many ties, outliers beyond the merge
// reach, and means so close that costs fall under the stored-cost threshold.
TEST(Discretiser, FastMergeMatchesThePlainWalkOfEveryPass) {
  std::mt19937 rng(12345);
  for (int trial = 0; trial < 3000; ++trial) {
    const int n = 1 + static_cast<int>(rng() % 120), shape = trial % 4;
    std::vector<float> v;
    for (int i = 0; i < n; ++i) {
      const float r = static_cast<float>(rng() % (shape == 0 ? 12 : 400));
      if (shape == 1) v.push_back(rng() % 10 == 0 ? r * 40 : r);
      else v.push_back(shape == 2 ? r * 1e-6f : shape == 3 ? r * 0.37f - 50 : r);
    }
    const int minSup = static_cast<int>(rng() % (n / 2 + 2));
    std::sort(v.begin(), v.end());
    ASSERT_EQ(Fields(CutIntervals(v, minSup)), Fields(ReferenceCut(v, minSup))) << "trial " << trial;
  }
}

// Reads a names/data pair (continuous attributes accepted) and discretises it.
class DiscretiseRun : public MinerTest {
 protected:
  Outcome Run(const std::string& names, const std::string& text, int minSup) {
    WriteNames(names);
    WriteData(text);
    data = DataSet();
    Status status = GetNames(data, Stem(), errors, true);
    if (status.ok()) status = ReadData(data, ".data", errors);
    if (status.ok()) status = DiscretiseAttributes(data, minSup, &cuts_);
    return Settle(status);
  }
  void Cut(const std::string& names, const std::string& text, int minSup) {
    const Outcome outcome = Run(names, text, minSup);
    ASSERT_EQ(outcome.status, -1) << outcome.output;
  }
  std::vector<int> Column(int c) const {
    std::vector<int> codes;
    for (int i = 0; i < data.MaxData; ++i) codes.push_back(data.DataSpace[i][c]);
    return codes;
  }
  std::vector<CutAttribute> cuts_;
};

TEST_F(DiscretiseRun, OneValueAndNoValueAttributesAndIgnoredColumns) {
  Cut("a, b.\nid: ignore.\nc: r, g.\none: continuous.\nnone: continuous.\nw: continuous.\n",
      "1,r,7.5,?,-1,a\n2,g,7.5,?,inf,b\n3,r,?,?,2,a\n4,g,7.5,?,2,b\n", 0);
  EXPECT_EQ(data.MaxItem, 6);  // c: 1-2, classes 3-4, "one": 5, "w": 6, "none": nothing
  EXPECT_EQ(data.ItemRecord[5]->ValueName, "[7.50, 7.50]");
  EXPECT_EQ(data.Attribute[5], 1);
  EXPECT_EQ(data.ItemRecord[6]->ValueName, "[2.00, 2.00]");
  EXPECT_EQ(data.Attribute[6], 3);
  EXPECT_EQ(Column(1), (std::vector<int>{5, 5, 0, 5}));
  EXPECT_EQ(Column(2), (std::vector<int>{0, 0, 0, 0}));
  EXPECT_EQ(Column(3), (std::vector<int>{0, 0, 6, 6}));  // -1 and inf are unknown
  ASSERT_EQ(cuts_.size(), 3u);
  EXPECT_EQ(cuts_[1].FirstCode, 0);  // "none": no interval
}

// One interval per distinct value passes the item limit of the data space:
// the status names the data file, and nothing is coded.
TEST_F(DiscretiseRun, IntervalItemsPastTheItemLimitAreRefused) {
  std::string text;
  for (int i = 0; i < MaxCodableItem; ++i) text += std::to_string(i) + ",y\n";
  const Outcome outcome = Run("y, n.\nx: continuous.\n", text, 0);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.output, "\nERROR:  " + Stem() + ".data declares 32769 items; at most 32767 can be coded\n");
  EXPECT_TRUE(data.DataSpace.empty());
}

// The categorical pair: cut attributes with their spellings, the others, the
// ignored ones and the class as declared; it reads back as the same cases.
TEST_F(DiscretiseRun, CategoricalPairReadsBackAsTheSameCases) {
  Cut("a, b.\nid: ignore.\nc: r, g.\nx: continuous.\nnone: continuous.\n", "1,r,0,?,a\n2,g,1,?,b\n3,?,10,?,a\n",
      0);
  const std::string copy = dir_ / "copy";
  ASSERT_TRUE(WriteCategoricalPair(data, copy, cuts_).ok());
  EXPECT_EQ(ReadFile(copy + ".names"),
            "| Continuous attributes cut into intervals LOW..HIGH by rule-discretise.\n\n"
            "a, b.\n\nid: ignore.\nc: r, g.\nx: 0.00..0.50, 0.50..5.50, 5.50..12.50.\nnone: ignore.\n");
  EXPECT_EQ(ReadFile(copy + ".data"), "?,r,0.00..0.50,?,a\n?,g,0.50..5.50,?,b\n?,?,5.50..12.50,?,a\n");
  DataSet again;
  ASSERT_TRUE(GetNames(again, copy, errors).ok());
  ASSERT_TRUE(GetData(again, ".data", errors).ok());
  EXPECT_EQ(again.MaxData, 3);
  EXPECT_EQ(again.ItemRecord[again.DataSpace[2][1]]->ValueName, "5.50..12.50");
}

}  // namespace
