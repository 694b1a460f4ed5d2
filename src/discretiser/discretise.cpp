// Discretisation of continuous attributes. The known values of each
// continuous attribute start as one interval per distinct value; neighbouring
// intervals are merged bottom-up, cheapest pair first, while one of the two
// holds too few cases; every final interval becomes an item named by its
// bounds, and the attribute's values are recoded as those items.
//
// Arithmetic: values, bounds, means and merge costs are single precision (as
// ContValue holds them); sums, products and the average width are carried in
// double precision and rounded once when stored, so that no intermediate
// result overflows for values near the float range.
#include "discretiser/discretise.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <queue>
#include <utility>

#include "discretiser/entropy_cuts.h"
#include "input/readers.h"

namespace {

constexpr float kUnknownValue = -1.0f;    // a raw continuous value that stands for "?"
constexpr double kMergeReach = 3.0;       // pairs more average widths apart than this never merge
constexpr double kCostComputed = 1e-5;    // a stored cost at or below this counts as not computed
constexpr double kNoCostYet = 9999999.0;  // the smallest cost at the start of a pass

// The boundary between two neighbouring distinct values.
float Midpoint(float u, float v) {
  return static_cast<float>((static_cast<double>(u) + static_cast<double>(v)) * 0.5);
}

// The cost of merging two neighbouring intervals their means d apart,
// rounded to single precision.
float FreshCost(const ContValue& a, const ContValue& b, double d) {
  return static_cast<float>(std::fabs(d) * a.Count * b.Count / (a.Count + b.Count));
}

bool HasStoredCost(const ContValue& v) { return static_cast<double>(v.MergeCost) > kCostComputed; }

// One candidate pair in the queue: its cost, the position of its first
// interval, and the evaluation it comes from (older ones are stale).
struct QueuedPair {
  float Cost;
  int Position;
  unsigned Stamp;
};

struct CheaperLast {
  bool operator()(const QueuedPair& x, const QueuedPair& y) const {
    if (x.Cost != y.Cost) return x.Cost > y.Cost;
    return x.Position > y.Position;
  }
};

// The merge passes over intervals linked through Prev/Next in ascending
// order, the positions in the array being that order.
//
// A pass looks at every neighbouring pair (A, B): a pair is a candidate when
// one of the two holds at most minSup cases and their means are at most
// kMergeReach average widths apart; its cost is A's stored cost when both
// carry one, otherwise the fresh cost, which is then stored in A. The
// cheapest candidate (the first of equal ones) is merged, and a pass without
// a candidate cheaper than kNoCostYet ends the merging.
//
// Rather than walking every pair in every pass, only the pairs whose outcome
// can differ from the previous pass are evaluated again: the two pairs around
// a merged interval, and the pair before an interval whose stored cost just
// changed. Every other pair would give the same candidacy and cost and store
// the value its first interval already holds. The evaluated pairs of a pass
// are taken in ascending order, so each one reads its right neighbour's
// stored cost before that neighbour's own evaluation stores a new one, as in
// a walk from the first pair. The candidates wait in a queue ordered by
// (cost, position), which gives the cheapest pair and the first of equal ones.
void MergePasses(std::vector<ContValue>& intervals, double width, int minSup) {
  const int count = static_cast<int>(intervals.size());
  ContValue* base = intervals.data();
  auto position = [base](const ContValue* v) { return static_cast<int>(v - base); };
  const double reach = kMergeReach * width;

  std::vector<unsigned> stamp(count, 0);
  std::priority_queue<QueuedPair, std::vector<QueuedPair>, CheaperLast> queue;
  std::vector<int> pending(count);
  for (int i = 0; i < count; ++i) pending[i] = i;
  std::vector<int> next;
  std::vector<char> alive(count, 1);

  for (;;) {
    std::sort(pending.begin(), pending.end());
    pending.erase(std::unique(pending.begin(), pending.end()), pending.end());
    next.clear();
    for (int p : pending) {
      ContValue& a = intervals[p];
      ++stamp[p];  // whatever was queued for this pair is out of date
      if (!alive[p] || !a.Next) continue;
      const ContValue& b = *a.Next;
      if (a.Count > minSup && b.Count > minSup) continue;
      const double d = static_cast<double>(b.Mean) - static_cast<double>(a.Mean);
      if (!(d <= reach)) continue;
      float cost;
      if (HasStoredCost(a) && HasStoredCost(b)) {
        cost = a.MergeCost;
      } else {
        cost = FreshCost(a, b, d);
        if (cost != a.MergeCost) {
          a.MergeCost = cost;
          if (a.Prev) next.push_back(position(a.Prev));
        }
      }
      queue.push({cost, p, stamp[p]});
    }

    while (!queue.empty() && queue.top().Stamp != stamp[queue.top().Position]) queue.pop();
    if (queue.empty() || !(static_cast<double>(queue.top().Cost) < kNoCostYet)) break;

    ContValue& a = intervals[queue.top().Position];
    queue.pop();
    ContValue& b = *a.Next;
    a.High = b.High;
    const double sum = static_cast<double>(a.Count) * a.Mean + static_cast<double>(b.Count) * b.Mean;
    a.Mean = static_cast<float>(sum / (a.Count + b.Count));
    a.Count += b.Count;
    a.Next = b.Next;
    if (b.Next) b.Next->Prev = &a;
    const int gone = position(&b);
    alive[gone] = 0;
    ++stamp[gone];
    next.push_back(position(&a));
    if (a.Prev) next.push_back(position(a.Prev));
    pending.swap(next);
  }
}

// Adds one item per interval after the highest existing code, growing the
// item tables as the names reader does. Returns the first new code.
int AddIntervalItems(DataSet& data, int declared, int column, const std::vector<ContValue>& intervals) {
  const int first = data.MaxItem + 1;
  for (const ContValue& v : intervals) {
    ++data.MaxItem;
    GrowItemTables(data);
    data.ItemRecord[data.MaxItem] = AddItemRecord(data.AttName[declared], IntervalItemName(v.Low, v.High));
    data.Attribute[data.MaxItem] = column;
  }
  return first;
}

// Replaces the raw values of a column by the codes of their intervals: the
// interval j whose bounds hold bound j <= x < bound j+1, the bounds being the
// smallest value followed by each interval's upper bound; unknown values
// become item 0.
void RecodeColumn(DataSet& data, int column, const std::vector<ContValue>& intervals, int firstCode) {
  const int n = static_cast<int>(intervals.size());
  std::vector<float> bounds;
  if (n > 0) {
    bounds.push_back(intervals.front().Low);
    for (const ContValue& v : intervals) bounds.push_back(v.High);
  }
  for (int i = 0; i < data.MaxData; ++i) {
    float& x = data.RawDataSpace[i][column];
    if (x == kUnknownValue || n == 0) {
      x = 0.0f;
      continue;
    }
    int j = static_cast<int>(std::upper_bound(bounds.begin(), bounds.end(), x) - bounds.begin()) - 1;
    // A value at the upper bound (an attribute of one value, or a bound that
    // single precision rounded down onto the largest value) takes the last
    // interval.
    j = std::clamp(j, 0, n - 1);
    x = static_cast<float>(firstCode + j);
  }
}

}  // namespace

int QuickSort(float* values, int n) {
  // A selection sort: the smallest remaining value (the first of equal ones)
  // goes to each position in turn.
  for (int i = 0; i < n; ++i) {
    int smallest = i;
    for (int j = i + 1; j < n; ++j) {
      if (values[j] < values[smallest]) smallest = j;
    }
    if (smallest != i) std::swap(values[i], values[smallest]);
  }
  return 1;
}

ContValue* AddContValue(ContValue* prev) {
  ContValue* v = new ContValue();
  v->Prev = prev;
  return v;
}

ContValue* DeleteContValue(ContValue* interval) {
  if (!interval) return nullptr;
  ContValue* next = interval->Next;
  if (interval->Prev) interval->Prev->Next = next;
  if (next) next->Prev = interval->Prev;
  delete interval;
  return next;
}

std::string FormatText(const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  std::va_list again;
  va_copy(again, args);
  const int size = std::vsnprintf(nullptr, 0, format, args);
  va_end(args);
  std::string text;
  if (size > 0) {
    std::vector<char> buffer(static_cast<size_t>(size) + 1);
    std::vsnprintf(buffer.data(), buffer.size(), format, again);
    text.assign(buffer.data(), static_cast<size_t>(size));
  }
  va_end(again);
  return text;
}

std::string IntervalItemName(float low, float high) {
  return FormatText("[%.2f, %.2f]", static_cast<double>(low), static_cast<double>(high));
}

std::vector<ContValue> CutIntervals(const std::vector<float>& sorted, int minSup) {
  std::vector<ContValue> intervals;
  if (sorted.empty()) return intervals;

  // One interval per distinct value, bounded halfway between neighbours.
  ContValue first;
  first.Low = first.Mean = sorted.front();
  first.Count = 1;
  intervals.push_back(first);
  for (size_t i = 1; i < sorted.size(); ++i) {
    const float u = sorted[i - 1];
    const float v = sorted[i];
    if (v == u) {
      ++intervals.back().Count;
      continue;
    }
    ContValue opened;
    opened.Low = intervals.back().High = Midpoint(u, v);
    opened.Mean = v;
    opened.Count = 1;
    intervals.push_back(opened);
  }

  const float smallest = sorted.front();
  const float largest = sorted.back();
  const int opened = static_cast<int>(intervals.size()) - 1;
  if (opened == 0) {
    // A single distinct value: one interval covering just that value.
    intervals.front().High = largest;
    return intervals;
  }
  // The average width of an interval; it is fixed before any merge.
  const double width = (static_cast<double>(largest) - static_cast<double>(smallest)) / opened;
  intervals.back().High = static_cast<float>(static_cast<double>(largest) + 0.5 * width);

  for (size_t i = 0; i < intervals.size(); ++i) {
    intervals[i].Prev = i > 0 ? &intervals[i - 1] : nullptr;
    intervals[i].Next = i + 1 < intervals.size() ? &intervals[i + 1] : nullptr;
  }
  MergePasses(intervals, width, minSup);

  std::vector<ContValue> merged;
  for (const ContValue* v = &intervals.front(); v; v = v->Next) {
    merged.push_back(*v);
    merged.back().Prev = merged.back().Next = nullptr;
  }
  return merged;
}

Status DiscretiseAttributes(DataSet& data, int gMinSup, std::vector<CutAttribute>* cuts, CutMethod method) {
  std::vector<float> values;
  values.reserve(static_cast<size_t>(data.MaxData) + 1);
  // The class of each case as an index: the raw rows hold the class item in
  // column RealAtt-1, and the class items are the last MaxClass codes until
  // the interval items are added. An unknown class gives no index.
  const int firstClassItem = data.MaxItem - data.MaxClass + 1;
  std::vector<std::pair<float, int>> valueClass;
  // The tree's cut points are found over all the attributes at once, before
  // any of them is recoded.
  std::vector<CutAttribute> treeCuts;
  if (method == CutMethod::kTree) {
    std::vector<int> all(static_cast<size_t>(data.MaxData));
    for (int i = 0; i < data.MaxData; ++i) all[static_cast<size_t>(i)] = i;
    treeCuts = LearnEntropyCuts(data, all, CutPlacement::kInTree);
  }
  size_t continuous = 0;
  int column = 0;
  for (int a = 0; a < data.MaxAtt; ++a) {
    if (data.SpecialStatus[a] == 1) continue;  // ignored: no column
    const int c = column++;
    if (data.SpecialStatus[a] != 3) continue;

    values.clear();
    for (int i = 0; i < data.MaxData; ++i) {
      const float x = data.RawDataSpace[i][c];
      // -0.0 counts as 0.0, so that equal values always sort alike.
      if (x != kUnknownValue) values.push_back(x == 0.0f ? 0.0f : x);
    }
    std::sort(values.begin(), values.end());

    std::vector<ContValue> intervals;
    if (method == CutMethod::kTree) {
      intervals = treeCuts[continuous++].Intervals;
    } else if (method == CutMethod::kEntropy) {
      valueClass.clear();
      for (int i = 0; i < data.MaxData; ++i) {
        const float x = data.RawDataSpace[i][c];
        if (x == kUnknownValue) continue;
        const int cls = static_cast<int>(data.RawDataSpace[i][data.RealAtt - 1]) - firstClassItem;
        valueClass.emplace_back(x == 0.0f ? 0.0f : x, cls);
      }
      intervals = IntervalsFromCuts(values, EntropyCutPoints(valueClass, data.MaxClass));
    } else {
      intervals = CutIntervals(values, gMinSup);
    }
    const int firstCode = AddIntervalItems(data, a, c, intervals);
    RETURN_IF_FAILED(CheckItemLimit(data, data.FileName + ".data"));
    RecodeColumn(data, c, intervals, firstCode);
    if (cuts) {
      CutAttribute cut;
      cut.Declared = a;
      cut.Column = c;
      cut.FirstCode = intervals.empty() ? 0 : firstCode;
      cut.Intervals = std::move(intervals);
      cuts->push_back(std::move(cut));
    }
  }
  ConvertDataSpace(data);
  return Status();
}

Status Discretion(DataSet& data, int gMinSup) { return DiscretiseAttributes(data, gMinSup, nullptr); }
