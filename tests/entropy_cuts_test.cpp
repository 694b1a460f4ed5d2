// Entropy cut points against a plain recomputation of every boundary's
// entropy on random inputs in any order, a cut between neighbouring floats,
// the intervals the cuts make, and the tree's cuts.
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

}  // namespace
