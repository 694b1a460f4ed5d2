// Derivable rules: rules of the rule set that follow from chaining perfect
// rules. If x -> y and y -> z both hold with confidence 1, x -> z adds nothing;
// if A -> t and t -> u hold, A -> u with the same support is implied.
//
// The working tables are sized to the data (item codes, targets per item and
// antecedent lengths are all unbounded).
#include "analyses/analyses.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <vector>

namespace {

// A rule whose confidence reaches this belongs to the leading perfect run.
constexpr double kPerfectRun = 0.9999;

// The item and pair counts as the analysis reads them: any code outside the
// tables counts 0.
struct CountView {
  const ItemCounts& counts;
  int maxItem;

  int Item(int item) const {
    if (!counts.Counter1 || item < 0 || item > maxItem + 1) return 0;
    return counts.Counter1[item];
  }
  // Cases holding both items: the pair table keeps it under the smaller
  // code; 0 once the table is released.
  int Pair(int a, int b) const { return counts.Pair(std::min(a, b), std::max(a, b)); }
};

// The last rule of the leading run of perfect rules; the first rule when it
// is not perfect itself; null for an empty list.
RuleRecord* EndOfPerfectRun(const RuleSet& rules) {
  RuleRecord* s = rules.First;
  if (s && s->Conf >= kPerfectRun) {
    while (s->Next && s->Next->Conf >= kPerfectRun) s = s->Next;
  }
  return s;
}

using TargetTable = std::vector<std::vector<int>>;

// The targets of an item as a range; none for an item outside the table.
struct Targets {
  const int* first = nullptr;
  const int* last = nullptr;
  const int* begin() const { return first; }
  const int* end() const { return last; }
  bool empty() const { return first == last; }
};

Targets TargetsOf(const TargetTable& table, int item) {
  if (item < 0 || static_cast<size_t>(item) >= table.size()) return {};
  const std::vector<int>& targets = table[static_cast<size_t>(item)];
  return {targets.data(), targets.data() + targets.size()};
}

// Per antecedent item, the targets of the perfect rules with at most one
// antecedent item, collected walking back from the end of the run.
TargetTable SingleAntecedentTargets(RuleRecord* end, int maxItem) {
  TargetTable table(static_cast<size_t>(std::max(maxItem, 0)) + 1);
  for (RuleRecord* r = end; r; r = r->Prev) {
    if (r->Len > 1) continue;
    const int a = r->Len == 1 ? r->Antecedent[0] : 0;
    if (a < 0) continue;
    if (static_cast<size_t>(a) >= table.size()) table.resize(static_cast<size_t>(a) + 1);
    table[a].push_back(r->Target);
  }
  return table;
}

// For every x with targets y and z where y -> z is itself in the table,
// x -> z is derivable through y. The count goes up by one more when the pair
// confidence of x and z reaches minConf. Returns the count.
int CountDerivations(const TargetTable& table, const CountView& counts, float minConf, std::FILE* out,
                     const DataSet* names) {
  int derivable = 0;
  std::vector<char> used;
  for (int x = 0; x < counts.maxItem && static_cast<size_t>(x) < table.size(); ++x) {
    const std::vector<int>& targets = table[x];
    if (targets.size() < 2) continue;
    used.assign(targets.size(), 0);
    for (size_t p = 0; p < targets.size(); ++p) {
      const int y = targets[p];
      for (size_t q = 0; q < targets.size(); ++q) {
        if (q == p || used[q]) continue;
        const int z = targets[q];
        if (counts.Item(y) > counts.Item(z)) continue;
        for (int w : TargetsOf(table, y)) {
          if (w != z) continue;
          std::fprintf(out, "\n %s %s %s", ItemText(names, x).c_str(), ItemText(names, y).c_str(),
                       ItemText(names, z).c_str());
          derivable += 1;
          const int zCount = counts.Item(z);
          const double conf = zCount > 0 ? static_cast<double>(counts.Pair(x, z)) / zCount : 0.0;
          if (conf >= minConf) derivable += 1;
          used[q] = 1;
          std::fprintf(out, " %f", conf);
        }
      }
    }
  }
  return derivable;
}

// Removes, for every rule A -> t of the perfect run and every perfect rule
// t -> u, the rule A -> u with A's support and score. The search runs
// backwards from the first rule after the run. Returns the number removed.
int RemoveImpliedRules(RuleSet& rules, RuleRecord* end, const TargetTable& table) {
  int removed = 0;
  size_t longest = 0;
  for (RuleRecord* r = end; r; r = r->Prev) longest = std::max(longest, static_cast<size_t>(std::max(r->Len, 0)));
  std::vector<int> antecedent(longest + 1, 0);

  // A marker linked right after the run keeps its boundary while rules on
  // either side of it are removed. It matches no candidate (its Len is -1)
  // and never stops a search (a NaN score is above no limit).
  RuleRecord marker{};
  marker.Len = -1;
  marker.Supp = -1;
  marker.Target = -1;
  marker.Score = std::numeric_limits<float>::quiet_NaN();
  marker.Prev = end;
  marker.Next = end->Next;
  if (end->Next) end->Next->Prev = &marker;
  else rules.Last = &marker;
  end->Next = &marker;

  for (RuleRecord* cur = end; cur; cur = cur->Prev) {
    if (cur->Len == 1) continue;
    const int t = cur->Target;
    const Targets targets = TargetsOf(table, t);
    if (targets.empty()) continue;
    std::copy(cur->Antecedent, cur->Antecedent + std::max(cur->Len, 0), antecedent.begin());
    for (int u : targets) {
      // A rule t -> t would make the candidate cur itself.
      if (u == t) continue;
      if (!marker.Next) continue;
      RuleRecord candidate{};
      candidate.Len = cur->Len;
      candidate.Antecedent = antecedent.data();
      candidate.Target = u;
      candidate.Supp = cur->Supp;
      candidate.Score = cur->Score;
      removed += FindSameRule(rules, marker.Next, candidate);
    }
  }

  if (marker.Prev) marker.Prev->Next = marker.Next;
  else rules.First = marker.Next;
  if (marker.Next) marker.Next->Prev = marker.Prev;
  else rules.Last = marker.Prev;
  return removed;
}

}  // namespace

int CountDerivableRule(RuleSet& rules, ItemCounts& counts, int maxItem, float minConf, std::FILE* out,
                       const DataSet* names) {
  int derivable = 0;
  RuleRecord* end = EndOfPerfectRun(rules);
  TargetTable table;
  if (end) {
    table = SingleAntecedentTargets(end, maxItem);
    derivable = CountDerivations(table, CountView{counts, maxItem}, minConf, out, names);
  }
  FreeCount(counts);
  std::fprintf(out, "\n Number of derivable rules is %d \n", derivable);
  if (end) derivable += RemoveImpliedRules(rules, end, table);
  return derivable;
}
