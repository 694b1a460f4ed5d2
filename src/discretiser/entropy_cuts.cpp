// Entropy cut points with the minimum-description-length stopping rule, and
// the intervals they make.
//
// The pairs are sorted once by (value, class) and grouped by distinct value.
// A part of the attribute is a run of whole groups; it is scanned once from
// its lowest group upwards, the class counts of the lower half growing by
// one group at each boundary. Parts that are kept are split again, worked
// off a stack, so no recursion depth limits the number of cuts.
//
// The entropy of a split, in bits times cases, is
//   E = f(N1) − Σ f(N1,c) + f(N2) − Σ f(N2,c),   f(x) = x·log2(x).
// The scan keeps the two class sums in fixed point, integers in units of
// 2^-20, which a changed count updates exactly whatever the order; that
// estimate is within a known margin of E. Only a boundary whose estimate
// could beat the best so far is evaluated in double precision from its class
// counts, always summing in the same class order. The choice thus rests on
// values that depend only on the counts at the boundary, compared strictly:
// the lowest of equal boundaries wins.
#include "discretiser/entropy_cuts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "base/numbers.h"

namespace {

constexpr double kFixedPointUnit = 0x1p-20;  // the value of 1 in the fixed-point sums

// The boundary between two neighbouring distinct values, rounded once to
// single precision; one that rounds onto the lower value becomes the upper.
float CutBetween(float u, float v) {
  const float m = static_cast<float>((static_cast<double>(u) + static_cast<double>(v)) * 0.5);
  return m > u ? m : v;
}

// log2(3^k − 2), also where 3^k exceeds double precision.
double Log2ThreePowerMinusTwo(int k) {
  if (k <= 30) return std::log2(std::pow(3.0, k) - 2.0);
  return k * std::log2(3.0) + std::log1p(-2.0 * std::pow(3.0, -k)) / std::log(2.0);
}

// A run of groups [First, End) still to be split.
struct Part {
  size_t First;
  size_t End;
};

// The best boundary of a part: the last group below it, its entropy E, the
// entropies of the halves and the classes present in each.
struct Split {
  size_t Below = 0;
  double Entropy = 0;
  double EntLow = 0;
  double EntHigh = 0;
  int ClassesLow = 0;
  int ClassesHigh = 0;
  double Gain = 0;     // Ent(S) minus the weighted entropy of the halves, per case
  bool Kept = false;   // whether the stopping rule keeps the split
};

class EntropyCutter {
 public:
  EntropyCutter(std::vector<std::pair<float, int>> items, int numClasses)
      : items_(std::move(items)), total_(numClasses, 0), low_(numClasses, 0) {
    std::sort(items_.begin(), items_.end());
    const size_t n = items_.size();
    for (size_t i = 0; i < n; ++i) {
      if (i == 0 || items_[i].first != items_[i - 1].first) {
        groupStart_.push_back(i);
        groupValue_.push_back(items_[i].first);
      }
    }
    groupStart_.push_back(n);
    // Sorted by class within a value: a group is of one class when its first
    // and last cases agree.
    for (size_t g = 0; g + 1 < groupStart_.size(); ++g) {
      const int first = items_[groupStart_[g]].second;
      const int last = items_[groupStart_[g + 1] - 1].second;
      groupClass_.push_back(first == last ? first : -1);
    }
    xlog_.resize(n + 1);
    fixed_.resize(n + 1);
    for (size_t c = 0; c <= n; ++c) {
      const double x = static_cast<double>(c);
      xlog_[c] = c > 1 ? x * std::log2(x) : 0.0;
      fixed_[c] = std::llround(xlog_[c] / kFixedPointUnit);
    }
  }

  std::vector<double> Cuts() {
    std::vector<double> cuts;
    std::vector<Part> stack;
    if (groupValue_.size() > 1) stack.push_back({0, groupValue_.size()});
    while (!stack.empty()) {
      const Part part = stack.back();
      stack.pop_back();
      Split split;
      if (!BestSplit(part, 1, &split) || !split.Kept) continue;
      cuts.push_back(CutBetween(groupValue_[split.Below], groupValue_[split.Below + 1]));
      stack.push_back({part.First, split.Below + 1});
      stack.push_back({split.Below + 1, part.End});
    }
    std::sort(cuts.begin(), cuts.end());
    return cuts;
  }

  // The best boundary of all the values that leaves at least minSide cases
  // on either side, whether or not the stopping rule would keep it: its cut
  // point and gain. False when there is no such boundary.
  bool BestBoundary(size_t minSide, float* cut, double* gain) {
    Split split;
    if (groupValue_.size() < 2 || !BestSplit({0, groupValue_.size()}, minSide, &split)) return false;
    *cut = CutBetween(groupValue_[split.Below], groupValue_[split.Below + 1]);
    *gain = split.Gain;
    return true;
  }

 private:
  // Finds the boundary of the part with the lowest entropy among those that
  // leave at least minSide cases on either side, and tells whether the
  // stopping rule keeps it (best->Kept). False when there is none.
  bool BestSplit(const Part& part, size_t minSide, Split* best) {
    const size_t lo = groupStart_[part.First];
    const size_t hi = groupStart_[part.End];
    present_.clear();
    for (size_t i = lo; i < hi; ++i) {
      if (total_[items_[i].second]++ == 0) present_.push_back(items_[i].second);
    }
    std::sort(present_.begin(), present_.end());
    const bool found = present_.size() > 1 && part.End - part.First > 1 && Scan(part, minSide, best);
    for (int c : present_) total_[c] = low_[c] = 0;
    return found;
  }

  bool Scan(const Part& part, size_t minSide, Split* best) {
    const size_t lo = groupStart_[part.First];
    const size_t n = groupStart_[part.End] - lo;
    const int k = static_cast<int>(present_.size());
    double sumTotal = 0;
    int64_t fixedLow = 0;
    int64_t fixedHigh = 0;
    for (int c : present_) {
      sumTotal += xlog_[total_[c]];
      fixedHigh += fixed_[total_[c]];
    }
    const double entropy = (xlog_[n] - sumTotal) / static_cast<double>(n);

    // How far the fixed-point estimate and a double evaluation can lie from
    // the exact entropy: half a unit for each of the 2k + 2 rounded terms,
    // the conversion of the estimate, and the roundings of the double sums.
    const double margin = (k + 1) * kFixedPointUnit + (k + 3) * 1e-15 * (xlog_[n] + 1.0);

    bool found = false;
    size_t i = lo;
    for (size_t g = part.First; g + 1 < part.End; ++g) {
      for (const size_t end = groupStart_[g + 1]; i < end; ++i) {
        const int c = items_[i].second;
        const int64_t below = low_[c]++;
        const int64_t above = total_[c] - below;
        fixedLow += fixed_[below + 1] - fixed_[below];
        fixedHigh += fixed_[above - 1] - fixed_[above];
      }
      if (groupClass_[g] >= 0 && groupClass_[g] == groupClass_[g + 1]) continue;
      const size_t n1 = i - lo;
      const size_t n2 = n - n1;
      if (n1 < minSide || n2 < minSide) continue;
      const int64_t estimate = fixed_[n1] + fixed_[n2] - fixedLow - fixedHigh;
      if (found && static_cast<double>(estimate) * kFixedPointUnit > best->Entropy + margin) continue;

      double sumLow = 0;
      double sumHigh = 0;
      int k1 = 0;
      int k2 = 0;
      for (int c : present_) {
        const int64_t below = low_[c];
        const int64_t above = total_[c] - below;
        if (below > 0) sumLow += xlog_[below], ++k1;
        if (above > 0) sumHigh += xlog_[above], ++k2;
      }
      const double eLow = xlog_[n1] - sumLow;
      const double eHigh = xlog_[n2] - sumHigh;
      const double e = eLow + eHigh;
      if (!found || e < best->Entropy) {
        found = true;
        *best = {g, e, eLow / static_cast<double>(n1), eHigh / static_cast<double>(n2), k1, k2};
      }
    }
    if (!found) return false;

    const double count = static_cast<double>(n);
    const double gain = entropy - best->Entropy / count;
    best->Gain = gain;
    const double delta = Log2ThreePowerMinusTwo(k) -
                         (k * entropy - best->ClassesLow * best->EntLow - best->ClassesHigh * best->EntHigh);
    best->Kept = gain > (std::log2(count - 1.0) + delta) / count;
    return true;
  }

  std::vector<std::pair<float, int>> items_;  // sorted by (value, class)
  std::vector<size_t> groupStart_;            // first case of each distinct value, then the end
  std::vector<float> groupValue_;             // each distinct value
  std::vector<int> groupClass_;               // its class when all its cases share one, else -1
  std::vector<double> xlog_;                  // x·log2(x) for counts x = 0..n
  std::vector<int64_t> fixed_;                // the same in fixed point
  std::vector<int64_t> total_;                // class counts of the part being scanned
  std::vector<int64_t> low_;                  // class counts below the current boundary
  std::vector<int> present_;                  // the classes of that part, ascending
};

}  // namespace

std::vector<double> EntropyCutPoints(const std::vector<std::pair<float, int>>& valueClass,
                                     int numClasses) {
  if (numClasses <= 1) return {};
  std::vector<std::pair<float, int>> items;
  items.reserve(valueClass.size());
  for (const auto& [value, cls] : valueClass) {
    if (!std::isfinite(value) || cls < 0 || cls >= numClasses) continue;
    items.emplace_back(value == 0.0f ? 0.0f : value, cls);
  }
  if (items.size() < 2) return {};
  return EntropyCutter(std::move(items), numClasses).Cuts();
}

std::vector<std::vector<double>> TreeCutPoints(const std::vector<std::vector<float>>& columns,
                                              const std::vector<int>& classes, int numClasses) {
  std::vector<std::vector<double>> cuts(columns.size());
  if (numClasses <= 1) return cuts;
  // A cut that leaves fewer than three training cases on one side marks out
  // too few cases to hold on new ones: it is not tried.
  constexpr size_t kMinSide = 3;
  // How much lower the pessimistic errors of a subtree must be than those of
  // its node as a leaf for the subtree to stay.
  constexpr double kPruneMargin = 0.1;
  auto known = [&](size_t a, int i) { return std::isfinite(columns[a][static_cast<size_t>(i)]); };
  struct Node {
    std::vector<int> Cases;
    size_t Attribute = 0;
    float Cut = 0;
    int Below = -1;  // the children, -1 for a leaf
    int Above = -1;
    double LeafErrors = 0;  // pessimistic errors of the node as a leaf
  };
  std::vector<Node> nodes(1);
  for (size_t i = 0; i < classes.size(); ++i)
    if (classes[i] >= 0 && classes[i] < numClasses) nodes[0].Cases.push_back(static_cast<int>(i));
  std::vector<std::pair<float, int>> items;
  std::vector<int> counts(static_cast<size_t>(numClasses));
  // Grows the tree: children always come after their parent.
  for (size_t n = 0; n < nodes.size(); ++n) {
    std::fill(counts.begin(), counts.end(), 0);
    for (int i : nodes[n].Cases) ++counts[static_cast<size_t>(classes[static_cast<size_t>(i)])];
    const double size = static_cast<double>(nodes[n].Cases.size());
    const int most = *std::max_element(counts.begin(), counts.end());
    nodes[n].LeafErrors = PessimisticErrors(size, size - most);
    if (most == static_cast<int>(nodes[n].Cases.size()) || nodes[n].Cases.size() < 2 * kMinSide) continue;
    // The attribute whose best boundary gains most, weighted by the share
    // of the node's cases whose value is known; the first of equals.
    size_t bestAttribute = columns.size();
    float bestCut = 0;
    double bestGain = 0;
    for (size_t a = 0; a < columns.size(); ++a) {
      items.clear();
      for (int i : nodes[n].Cases)
        if (known(a, i)) items.emplace_back(columns[a][static_cast<size_t>(i)], classes[static_cast<size_t>(i)]);
      if (items.size() < 2 * kMinSide) continue;
      float cut = 0;
      double gain = 0;
      const double share = static_cast<double>(items.size()) / size;
      if (!EntropyCutter(items, numClasses).BestBoundary(kMinSide, &cut, &gain)) continue;
      gain *= share;
      if (gain > 1e-9 && (bestAttribute == columns.size() || gain > bestGain)) {
        bestAttribute = a;
        bestCut = cut;
        bestGain = gain;
      }
    }
    if (bestAttribute == columns.size()) continue;
    // A case whose value is unknown follows the part that holds more of the
    // node's known values.
    Node below;
    Node above;
    size_t knownBelow = 0;
    size_t knownAbove = 0;
    for (int i : nodes[n].Cases)
      if (known(bestAttribute, i)) ++(columns[bestAttribute][static_cast<size_t>(i)] < bestCut ? knownBelow : knownAbove);
    for (int i : nodes[n].Cases) {
      const bool low = known(bestAttribute, i) ? columns[bestAttribute][static_cast<size_t>(i)] < bestCut
                                               : knownBelow > knownAbove;
      (low ? below : above).Cases.push_back(i);
    }
    nodes[n].Attribute = bestAttribute;
    nodes[n].Cut = bestCut;
    nodes[n].Below = static_cast<int>(nodes.size());
    nodes[n].Above = static_cast<int>(nodes.size()) + 1;
    std::vector<int>().swap(nodes[n].Cases);  // the children hold them now
    nodes.push_back(std::move(below));
    nodes.push_back(std::move(above));
  }
  // Prunes from the leaves up: a subtree whose leaves' pessimistic errors
  // are not clearly below those of the node as a leaf becomes that leaf.
  std::vector<double> treeErrors(nodes.size());
  for (size_t n = nodes.size(); n-- > 0;) {
    Node& node = nodes[n];
    treeErrors[n] = node.LeafErrors;
    if (node.Below < 0) continue;
    const double subtree = treeErrors[static_cast<size_t>(node.Below)] + treeErrors[static_cast<size_t>(node.Above)];
    if (node.LeafErrors <= subtree + kPruneMargin) {
      node.Below = node.Above = -1;
    } else {
      treeErrors[n] = subtree;
    }
  }
  std::vector<int> stack{0};
  while (!stack.empty()) {
    const Node& node = nodes[static_cast<size_t>(stack.back())];
    stack.pop_back();
    if (node.Below < 0) continue;
    cuts[node.Attribute].push_back(node.Cut);
    stack.push_back(node.Below);
    stack.push_back(node.Above);
  }
  for (std::vector<double>& c : cuts) {
    std::sort(c.begin(), c.end());
    c.erase(std::unique(c.begin(), c.end()), c.end());
  }
  return cuts;
}

std::vector<ContValue> IntervalsFromCuts(const std::vector<float>& sortedKnownValues,
                                         const std::vector<double>& cuts) {
  std::vector<ContValue> intervals;
  const std::vector<float>& v = sortedKnownValues;
  if (v.empty()) return intervals;
  const float smallest = v.front();
  const float largest = v.back();

  size_t distinct = 1;
  for (size_t i = 1; i < v.size(); ++i) distinct += v[i] != v[i - 1];
  float lastHigh = largest;
  if (distinct > 1) {
    const double width = (static_cast<double>(largest) - static_cast<double>(smallest)) /
                         static_cast<double>(distinct - 1);
    lastHigh = static_cast<float>(static_cast<double>(largest) + 0.5 * width);
  }

  std::vector<float> lows{smallest};
  for (double cut : cuts) {
    const float c = static_cast<float>(cut);
    if (c > lows.back() && c <= largest) lows.push_back(c);
  }

  size_t first = 0;
  for (size_t j = 0; j < lows.size(); ++j) {
    ContValue interval;
    interval.Low = lows[j];
    interval.High = j + 1 < lows.size() ? lows[j + 1] : lastHigh;
    const size_t end = j + 1 < lows.size()
                           ? static_cast<size_t>(std::lower_bound(v.begin(), v.end(), lows[j + 1]) - v.begin())
                           : v.size();
    double sum = 0;
    for (size_t i = first; i < end; ++i) sum += v[i];
    interval.Count = static_cast<int>(end - first);
    interval.Mean = interval.Count > 0
                        ? static_cast<float>(sum / interval.Count)
                        : static_cast<float>((static_cast<double>(interval.Low) + interval.High) * 0.5);
    intervals.push_back(interval);
    first = end;
  }
  return intervals;
}
