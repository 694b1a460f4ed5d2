// The discretiser in-process: sorting, interval records, interval building
// and merging, item codes and recoding, checked against a plain walk of
// every pair in every pass.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <tuple>

#include "readfile/discretise.h"
#include "rule.h"
#include "test_support.h"

using namespace testing_support;

namespace {

// The merge passes as a walk over a ContValue list, every pair every pass.
std::vector<ContValue> ReferenceCut(std::vector<float> v, int minSup) {
  if (v.empty()) return {};
  QuickSort(v.data(), static_cast<int>(v.size()));
  ContValue* head = AddContValue(nullptr);
  head->Low = head->Mean = v[0];
  head->Count = 1;
  ContValue* cur = head;
  for (size_t i = 1; i < v.size(); ++i) {
    if (v[i] == v[i - 1]) { ++cur->Count; continue; }
    cur->Next = AddContValue(cur);
    cur->High = cur->Next->Low = static_cast<float>((double(v[i - 1]) + v[i]) * 0.5);
    cur = cur->Next;
    cur->Mean = v[i];
    cur->Count = 1;
  }
  int k = 0;  // intervals opened after the first
  for (ContValue* c = head; c->Next; c = c->Next) ++k;
  const double width = k ? (double(v.back()) - v[0]) / k : 0;
  cur->High = k ? static_cast<float>(v.back() + 0.5 * width) : v.back();
  for (;;) {
    double smallest = 9999999.0;
    ContValue* chosen = nullptr;
    for (ContValue* a = head; a->Next; a = a->Next) {
      ContValue* b = a->Next;
      const double d = double(b->Mean) - a->Mean;
      if ((a->Count > minSup && b->Count > minSup) || d > 3.0 * width) continue;
      float cost = a->MergeCost;
      if (!(a->MergeCost > 1e-5 && b->MergeCost > 1e-5))
        a->MergeCost = cost = static_cast<float>(std::fabs(d) * a->Count * b->Count / (a->Count + b->Count));
      if (cost < smallest) { smallest = cost; chosen = a; }
    }
    if (!chosen) break;
    ContValue* b = chosen->Next;
    chosen->High = b->High;
    chosen->Mean = static_cast<float>((double(chosen->Count) * chosen->Mean + double(b->Count) * b->Mean) /
                                      (chosen->Count + b->Count));
    chosen->Count += b->Count;
    DeleteContValue(b);
  }
  std::vector<ContValue> out;
  for (ContValue* c = head; c; c = DeleteContValue(c)) {
    out.push_back(*c);
    out.back().Prev = out.back().Next = nullptr;
  }
  return out;
}

// Every field of the intervals, Prev and Next aside.
std::vector<std::tuple<float, float, float, int, float>> Fields(const std::vector<ContValue>& cut) {
  std::vector<std::tuple<float, float, float, int, float>> fields;
  for (const ContValue& v : cut) fields.emplace_back(v.Low, v.High, v.Mean, v.Count, v.MergeCost);
  return fields;
}

std::vector<float> Sorted(std::vector<float> v) {
  std::sort(v.begin(), v.end());
  return v;
}

// Reads a names/data pair written into a fresh folder, keeping the raw rows.
class Discretise : public ::testing::Test {
 protected:
  void SetUp() override { EndRunThrows = true; }
  void TearDown() override { ResetRun(); EndRunThrows = false; }
  void Load(const std::string& names, const std::string& data) {
    ResetRun();
    WriteFile(dir_ / "t.names", names);
    WriteFile(dir_ / "t.data", data);
    FileName = dir_ / "t";
    GetNames(true);
    ReadData(".data");
  }
  std::vector<int> Column(int c) {
    std::vector<int> codes;
    for (int i = 0; i < MaxData; ++i) codes.push_back(DataSpace[i][c]);
    return codes;
  }
  std::string Value(int code) { return ItemRecord[code]->ValueName; }
  TempDir dir_;
};

}  // namespace

TEST(QuickSortTest, SelectionSortsAscending) {
  float a[] = {3, 1, 2}, b[] = {2, 2, 1};
  QuickSort(a, 3);
  QuickSort(b, 3);
  EXPECT_EQ(std::vector<float>(a, a + 3), (std::vector<float>{1, 2, 3}));
  EXPECT_EQ(std::vector<float>(b, b + 3), (std::vector<float>{1, 2, 2}));
}

std::vector<std::string> ItemNames(const std::vector<ContValue>& cut) {
  std::vector<std::string> names;
  for (const ContValue& v : cut) names.push_back(IntervalItemName(v.Low, v.High));
  return names;
}

// A value beyond three average widths stays apart; with no minimum support
// nothing merges and each distinct value keeps its interval.
TEST(CutIntervalsTest, ExamplesOfOutlierAndZeroSupport) {
  std::vector<ContValue> cut = CutIntervals({0, 1, 2, 3, 100}, 1);
  EXPECT_EQ(ItemNames(cut), (std::vector<std::string>{"[0.00, 51.50]", "[51.50, 112.50]"}));
  EXPECT_EQ(cut[0].Count, 4);
  cut = CutIntervals({1, 2, 2, 3, 10}, 0);
  EXPECT_EQ(ItemNames(cut),
            (std::vector<std::string>{"[1.00, 1.50]", "[1.50, 2.50]", "[2.50, 6.50]", "[6.50, 11.50]"}));
  EXPECT_EQ(cut[1].Count, 2);
}

TEST(CutIntervalsTest, ExtremeValuesGiveLongNamesAndNoNaN) {
  for (const auto& values : {std::vector<float>{-3e38f, 3e38f}, {3e38f, 3e38f}, {1e-30f, 2e-30f, 9e-30f}}) {
    for (const ContValue& v : CutIntervals(values, 1)) {
      EXPECT_FALSE(std::isnan(v.Low) || std::isnan(v.High) || std::isnan(v.Mean));
      EXPECT_EQ(IntervalItemName(v.Low, v.High).find("nan"), std::string::npos);
    }
  }
  EXPECT_GT(IntervalItemName(-3e38f, 3e38f).size(), 80u);
  EXPECT_EQ(IntervalSpellings(CutIntervals({1e-30f, 2e-30f, 9e-30f}, 0)).front(), "1e-30..1.5e-30");
  EXPECT_EQ(IntervalSpellings(CutIntervals({0.001f, 0.004f, 0.006f}, 0))[1], "0.003..0.005");
}

// Random value sets of several shapes: many ties, outliers beyond the merge
// reach, and means so close that costs fall under the stored-cost threshold.
TEST(CutIntervalsTest, MatchesThePlainWalkOfEveryPass) {
  std::mt19937 rng(12345);
  for (int trial = 0; trial < 3000; ++trial) {
    const int n = 1 + static_cast<int>(rng() % 120);
    const int shape = trial % 4;
    std::vector<float> v;
    for (int i = 0; i < n; ++i) {
      const float r = static_cast<float>(rng() % (shape == 0 ? 12 : 400));
      if (shape == 1) v.push_back(rng() % 10 == 0 ? r * 40 : r);
      else if (shape == 2) v.push_back(r * 1e-6f);
      else v.push_back(shape == 3 ? r * 0.37f - 50 : r);
    }
    const int minSup = static_cast<int>(rng() % (n / 2 + 2));
    ASSERT_EQ(Fields(CutIntervals(Sorted(v), minSup)), Fields(ReferenceCut(v, minSup))) << "trial " << trial;
  }
}

TEST_F(Discretise, NewItemsFollowTheClassItemsAndRecodeTheColumn) {
  Load("yes, no.\nx: continuous.\n", "0,yes\n1,no\n2,yes\n3,no\n100,yes\n?,no\n");
  GMinSup = 1;
  Discretion();
  EXPECT_EQ(MaxItem, 4);
  EXPECT_EQ(Value(1), "yes");
  EXPECT_EQ(ItemRecord[2]->AttributeName, "Class");
  EXPECT_EQ(Value(3), "[0.00, 51.50]");
  EXPECT_EQ(ItemRecord[4]->AttributeName, "x");
  EXPECT_EQ(Attribute[4], 0);
  EXPECT_EQ(Column(0), (std::vector<int>{3, 3, 3, 3, 4, 0}));
  EXPECT_EQ(Column(1), (std::vector<int>{1, 2, 1, 2, 1, 2}));
}

TEST_F(Discretise, ColumnsSkipIgnoredAttributesAndDegenerateOnesAreSound) {
  Load("a, b.\nid: ignore.\nc: r, g.\none: continuous.\nnone: continuous.\nw: continuous.\n",
       "1,r,7.5,?,-1,a\n2,g,7.5,?,inf,b\n3,r,?,?,2,a\n4,g,7.5,?,2,b\n");
  GMinSup = 0;
  Discretion();
  EXPECT_EQ(MaxItem, 6);  // c: 1-2, classes 3-4, "one": 5, "w": 6, "none": nothing
  EXPECT_EQ(Value(5), "[7.50, 7.50]");
  EXPECT_EQ(Attribute[5], 1);
  EXPECT_EQ(Value(6), "[2.00, 2.00]");
  EXPECT_EQ(Attribute[6], 3);
  EXPECT_EQ(Column(1), (std::vector<int>{5, 5, 0, 5}));
  EXPECT_EQ(Column(2), (std::vector<int>{0, 0, 0, 0}));
  EXPECT_EQ(Column(3), (std::vector<int>{0, 0, 6, 6}));  // -1 and inf are unknown
}

TEST_F(Discretise, MoreIntervalsThanCodableItemsAreRefused) {
  std::string data;
  for (int i = 0; i < 33000; ++i) data += std::to_string(i) + ",y\n";
  Load("y.\nx: continuous.\n", data);
  GMinSup = 0;
  EXPECT_THROW(Discretion(), RunEnded);
}

// Whole runs on random tables: the items and the codes of every case agree
// with the reference cut and a linear search over its bounds.
TEST_F(Discretise, RandomTablesGetTheReferenceItemsAndCodes) {
  std::mt19937 rng(777);
  for (int trial = 0; trial < 40; ++trial) {
    std::string data;
    for (int i = 0, n = 20 + static_cast<int>(rng() % 200); i < n; ++i) {
      const int u = static_cast<int>(rng() % 500), v = static_cast<int>(rng() % 30);
      data += (u ? std::to_string(u * 0.01) : "?") + "," + (v ? std::to_string(v * 0.5) : "?") + ",p\n";
    }
    Load("p.\nu: continuous.\nv: continuous.\n", data);
    GMinSup = static_cast<int>(rng() % 30);
    std::vector<std::vector<float>> raw(2);
    for (int i = 0; i < MaxData; ++i)
      for (int a = 0; a < 2; ++a) raw[a].push_back(RawDataSpace[i][a]);
    Discretion();
    int code = 2;
    for (int a = 0; a < 2; ++a) {
      std::vector<float> known;
      for (float x : raw[a]) if (x != -1.0f) known.push_back(x);
      const std::vector<ContValue> want = ReferenceCut(known, GMinSup);
      for (int i = 0; i < MaxData; ++i) {
        int expected = 0;  // the first interval j with bound j <= x < bound j+1, else the last
        for (size_t j = 0; raw[a][i] != -1.0f && !expected; ++j)
          if (raw[a][i] < want[j].High || j + 1 == want.size()) expected = code + static_cast<int>(j);
        ASSERT_EQ(DataSpace[i][a], expected) << "trial " << trial << " case " << i;
      }
      for (const std::string& name : ItemNames(want)) EXPECT_EQ(Value(code++), name);
    }
    EXPECT_EQ(MaxItem, code - 1);
  }
}
