// Entropy cut points: worked examples on both sides of the stopping rule,
// independence of the input order, a plain recomputation of every boundary's
// entropy on random inputs, and the intervals the cuts make.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <tuple>

#include "discretiser/entropy_cuts.h"
#include "discretiser/discretise.h"

namespace {

using Pairs = std::vector<std::pair<float, int>>;

// Cases with the values from..to (step 1) of one class.
void AddBand(Pairs* p, float from, float to, int cls) {
  for (float x = from; x <= to; x += 1) p->push_back({x, cls});
}

// Class entropy in bits, from the proportions.
double Entropy(const std::vector<int>& counts) {
  double n = 0, e = 0;
  for (int c : counts) n += c;
  for (int c : counts) e -= c ? c / n * std::log2(c / n) : 0;
  return e;
}

int Present(const std::vector<int>& counts) {
  return static_cast<int>(std::count_if(counts.begin(), counts.end(), [](int c) { return c > 0; }));
}

// The whole method recomputed plainly: every midpoint between distinct
// values is tried, each entropy counted from scratch; the lowest of the
// (nearly) equal best ones is split when the stopping rule accepts it.
void ReferenceCuts(const Pairs& s, int numClasses, std::vector<double>* cuts) {
  std::vector<float> values;
  for (const auto& p : s) values.push_back(p.first);
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
  std::vector<int> all(numClasses, 0);
  for (const auto& p : s) ++all[p.second];
  const int k = Present(all);
  if (values.size() < 2 || k < 2) return;
  const double n = static_cast<double>(s.size());
  double bestW = 1e300, bestCut = 0, e1 = 0, e2 = 0;
  int k1 = 0, k2 = 0;
  for (size_t i = 0; i + 1 < values.size(); ++i) {
    float cut = static_cast<float>((double(values[i]) + values[i + 1]) / 2);
    if (cut <= values[i]) cut = values[i + 1];
    std::vector<int> low(numClasses, 0), high(numClasses, 0);
    for (const auto& p : s) ++(p.first < cut ? low : high)[p.second];
    double n1 = 0;
    for (int c : low) n1 += c;
    const double w = (n1 * Entropy(low) + (n - n1) * Entropy(high)) / n;
    if (w < bestW - 1e-9) {
      bestW = w, bestCut = cut, e1 = Entropy(low), e2 = Entropy(high), k1 = Present(low), k2 = Present(high);
    }
  }
  const double e = Entropy(all);
  const double delta = std::log2(std::pow(3.0, k) - 2) - (k * e - k1 * e1 - k2 * e2);
  if (!(e - bestW > (std::log2(n - 1) + delta) / n)) return;
  cuts->push_back(bestCut);
  Pairs low, high;
  for (const auto& p : s) (p.first < bestCut ? low : high).push_back(p);
  ReferenceCuts(low, numClasses, cuts);
  ReferenceCuts(high, numClasses, cuts);
}

// Values of few distinct levels (many ties, 0 and -0 among them), classes
// following hidden bands with some noise, or pure noise.
Pairs RandomPairs(std::mt19937& rng, int numClasses) {
  const int n = 2 + static_cast<int>(rng() % 150), levels = 2 + static_cast<int>(rng() % 60);
  const double noise = (rng() % 5) * 0.25;
  Pairs p;
  for (int i = 0; i < n; ++i) {
    const int level = static_cast<int>(rng() % levels);
    const int band = level * numClasses / levels;
    const int cls = std::uniform_real_distribution<>(0, 1)(rng) < noise ? static_cast<int>(rng() % numClasses) : band;
    p.push_back({level == 1 && i % 2 ? -0.0f : level * 0.37f - 0.37f, cls});
  }
  return p;
}

// Gains and what the stopping rule asks, in bits: two bands of 10, 1 against
// 0.253; three bands of 10, 0.918 against 0.225, then 1 against 0.253 above
// the first cut; two cases, 1 against 0.40; 0 1 0, 0.252 against 1.324; a
// Thue-Morse word of 16 cases, 0.066 against 0.419.
TEST(EntropyCuts, WorkedExamplesOnBothSidesOfTheStoppingRule) {
  Pairs two, three, noise;
  AddBand(&two, 1, 10, 0);
  AddBand(&two, 21, 30, 1);
  EXPECT_EQ(EntropyCutPoints(two, 2), (std::vector<double>{15.5}));
  AddBand(&three, 0, 9, 0);
  AddBand(&three, 20, 29, 1);
  AddBand(&three, 40, 49, 2);
  EXPECT_EQ(EntropyCutPoints(three, 3), (std::vector<double>{14.5, 34.5}));
  EXPECT_EQ(EntropyCutPoints({{1, 0}, {2, 1}}, 2), (std::vector<double>{1.5}));
  EXPECT_TRUE(EntropyCutPoints({{1, 0}, {2, 1}, {3, 0}}, 2).empty());
  for (int i = 0; i < 16; ++i) noise.push_back({float(i), __builtin_popcount(i) % 2});
  EXPECT_TRUE(EntropyCutPoints(noise, 2).empty());

  // Cases that are no known values are passed over.
  const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
  two.insert(two.end(), {{nan, 0}, {inf, 1}, {-inf, 0}, {3, -1}, {3, 2}, {16, 7}});
  EXPECT_EQ(EntropyCutPoints(two, 2), (std::vector<double>{15.5}));
  EXPECT_TRUE(EntropyCutPoints(two, 1).empty());  // one class left
}

TEST(EntropyCuts, NoCutForOneValueOneClassOrNoCase) {
  Pairs same, oneClass;
  for (int i = 0; i < 10; ++i) same.push_back({5.0f, i % 2}), oneClass.push_back({float(i), 1});
  EXPECT_TRUE(EntropyCutPoints(same, 2).empty());
  EXPECT_TRUE(EntropyCutPoints(oneClass, 2).empty());
  EXPECT_TRUE(EntropyCutPoints({}, 2).empty());
}

// Neighbouring floats: the midpoint rounds onto one of them, and the cut
// must still leave the lower value below it.
TEST(EntropyCuts, CutBetweenNeighbouringFloatsSeparatesThem) {
  const float u = 16777216.0f, v = std::nextafter(u, 1e30f);
  EXPECT_EQ(EntropyCutPoints({{u, 0}, {v, 1}}, 2), (std::vector<double>{v}));
  const std::vector<ContValue> in = IntervalsFromCuts({u, v}, {v});
  ASSERT_EQ(in.size(), 2u);
  EXPECT_EQ(in[1].Count, 1);
}

// Also in shuffled and reversed order: the cuts depend on the cases only.
TEST(EntropyCuts, MatchesEveryBoundaryRecomputedFromScratchInAnyOrder) {
  std::mt19937 rng(2024);
  int withCuts = 0;
  for (int trial = 0; trial < 1500; ++trial) {
    const int numClasses = 2 + trial % 4;
    Pairs p = RandomPairs(rng, numClasses);
    std::vector<double> expected;
    ReferenceCuts(p, numClasses, &expected);
    std::sort(expected.begin(), expected.end());
    ASSERT_EQ(EntropyCutPoints(p, numClasses), expected) << "trial " << trial;
    std::shuffle(p.begin(), p.end(), rng);
    ASSERT_EQ(EntropyCutPoints(p, numClasses), expected) << "trial " << trial;
    std::reverse(p.begin(), p.end());
    ASSERT_EQ(EntropyCutPoints(p, numClasses), expected) << "trial " << trial;
    withCuts += !expected.empty();
  }
  EXPECT_GT(withCuts, 500);  // the cases are not all rejected
}

std::vector<std::string> Names(const std::vector<ContValue>& intervals) {
  std::vector<std::string> names;
  for (const ContValue& v : intervals) names.push_back(IntervalItemName(v.Low, v.High));
  return names;
}

TEST(EntropyCutIntervals, BoundsCountsAndSpellings) {
  const std::vector<float> v{1, 2, 2, 3, 10};
  std::vector<ContValue> in = IntervalsFromCuts(v, {5});
  EXPECT_EQ(Names(in), (std::vector<std::string>{"[1.00, 5.00]", "[5.00, 11.50]"}));
  EXPECT_EQ(IntervalSpellings(in), (std::vector<std::string>{"1.00..5.00", "5.00..11.50"}));
  EXPECT_EQ(in[0].Count, 4);
  EXPECT_EQ(in[0].Mean, 2.0f);
  EXPECT_EQ(in[1].Mean, 10.0f);

  // Cuts outside the values or out of order are passed over; an interval
  // without values has the midpoint of its bounds as its mean.
  in = IntervalsFromCuts(v, {0.5, 1, 2.5, 2, 4, 6, 10, 11});
  EXPECT_EQ(Names(in), (std::vector<std::string>{"[1.00, 2.50]", "[2.50, 4.00]", "[4.00, 6.00]",
                                                 "[6.00, 10.00]", "[10.00, 11.50]"}));
  EXPECT_EQ(in[2].Count, 0);
  EXPECT_EQ(in[2].Mean, 5.0f);

  EXPECT_TRUE(IntervalsFromCuts({}, {1}).empty());
  in = IntervalsFromCuts({7.5f, 7.5f}, {7.5});
  EXPECT_EQ(Names(in), (std::vector<std::string>{"[7.50, 7.50]"}));
  EXPECT_EQ(in[0].Count, 2);
}

// A cut at every midpoint gives the intervals the unsupervised cutter makes
// when nothing merges.
TEST(EntropyCutIntervals, AgreeWithTheUnmergedCutter) {
  std::mt19937 rng(99);
  for (int trial = 0; trial < 300; ++trial) {
    std::vector<float> v;
    const int n = 1 + static_cast<int>(rng() % 80);
    for (int i = 0; i < n; ++i) v.push_back(static_cast<float>(rng() % 50) * 0.3f - 4);
    std::sort(v.begin(), v.end());
    std::vector<double> cuts;
    for (size_t i = 1; i < v.size(); ++i)
      if (v[i] != v[i - 1]) cuts.push_back(static_cast<float>((double(v[i - 1]) + v[i]) / 2));
    const std::vector<ContValue> a = IntervalsFromCuts(v, cuts), b = CutIntervals(v, 0);
    ASSERT_EQ(a.size(), b.size());
    for (size_t j = 0; j < a.size(); ++j) {
      EXPECT_EQ(std::make_tuple(a[j].Low, a[j].High, a[j].Mean, a[j].Count, a[j].MergeCost),
                std::make_tuple(b[j].Low, b[j].High, b[j].Mean, b[j].Count, b[j].MergeCost));
    }
  }
}

// Class A below x = 10; above it y parts B (y < 7) from C. y alone parts
// nothing as well as x does, so the tree cuts x first and y only inside the
// upper region, where its cut lies between the B and C values.
TEST(TreeCuts, CutInsideTheRegionAnotherAttributeMarksOut) {
  std::vector<std::vector<float>> columns(2);
  std::vector<int> classes;
  for (int i = 0; i < 20; ++i) {
    const float y = static_cast<float>(i % 10);
    // Above 10, x runs through the upper values in an order unrelated to y.
    columns[0].push_back(static_cast<float>(i < 10 ? i : 10 + (3 * i) % 10));
    columns[1].push_back(y);
    classes.push_back(i < 10 ? 0 : (y < 7 ? 1 : 2));
  }
  EXPECT_EQ(TreeCutPoints(columns, classes, 3), (std::vector<std::vector<double>>{{9.5}, {6.5}}));

  // The same cases in another order give the same cuts.
  std::vector<size_t> order(classes.size());
  for (size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::shuffle(order.begin(), order.end(), std::mt19937(5));
  std::vector<std::vector<float>> shuffled(2);
  std::vector<int> shuffledClasses;
  for (size_t i : order) {
    shuffled[0].push_back(columns[0][i]);
    shuffled[1].push_back(columns[1][i]);
    shuffledClasses.push_back(classes[i]);
  }
  EXPECT_EQ(TreeCutPoints(shuffled, shuffledClasses, 3), (std::vector<std::vector<double>>{{9.5}, {6.5}}));

  // An unknown y follows the larger part and a case of no class takes no
  // part: neither moves a cut.
  columns[0].push_back(15);
  columns[1].push_back(std::numeric_limits<float>::quiet_NaN());
  classes.push_back(2);
  columns[0].push_back(3);
  columns[1].push_back(8);
  classes.push_back(-1);
  EXPECT_EQ(TreeCutPoints(columns, classes, 3), (std::vector<std::vector<double>>{{9.5}, {6.5}}));
}

TEST(TreeCuts, NoCutForTooFewCasesOnASideOrASplitThatDoesNotPay) {
  // Two cases of B above ten of A: a cut would leave two on one side.
  std::vector<std::vector<float>> columns(1);
  std::vector<int> classes;
  for (int i = 0; i < 12; ++i) {
    columns[0].push_back(static_cast<float>(i));
    classes.push_back(i < 10 ? 0 : 1);
  }
  EXPECT_EQ(TreeCutPoints(columns, classes, 2), (std::vector<std::vector<double>>{{}}));
  // Three are enough.
  columns[0].push_back(12);
  classes.push_back(1);
  EXPECT_EQ(TreeCutPoints(columns, classes, 2), (std::vector<std::vector<double>>{{9.5}}));

  // Three cases of B scattered among seventeen of A: every part keeps an
  // exception, so no subtree is pessimistically better than one leaf.
  std::vector<std::vector<float>> noisy(1);
  std::vector<int> noisyClasses;
  for (int i = 0; i < 20; ++i) {
    noisy[0].push_back(static_cast<float>(i));
    noisyClasses.push_back(i == 3 || i == 11 || i == 17 ? 1 : 0);
  }
  EXPECT_EQ(TreeCutPoints(noisy, noisyClasses, 2), (std::vector<std::vector<double>>{{}}));
  // One class, or no attribute, gives nothing.
  EXPECT_EQ(TreeCutPoints(noisy, noisyClasses, 1), (std::vector<std::vector<double>>{{}}));
  EXPECT_TRUE(TreeCutPoints({}, noisyClasses, 2).empty());
}

}  // namespace
