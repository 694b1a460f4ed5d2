// Derivable rules: rules of the rule set that follow from chaining perfect
// rules. If x -> y and y -> z both hold with confidence 1, x -> z adds nothing;
// if A -> t and t -> u hold, A -> u with the same support is implied.
//
// The working tables are sized to the data (item codes, targets per item and
// antecedent lengths are all unbounded).
#include <algorithm>
#include <cstdio>
#include <limits>
#include <vector>

#include "readfile.h"
#include "rule.h"
#include "rulegen.h"

namespace {

// A rule whose confidence reaches this belongs to the leading perfect run.
constexpr double kPerfectRun = 0.9999;

int ItemCount(int item) {
  if (!Counter1 || item < 0 || item > MaxItem + 1) return 0;
  return Counter1[item];
}

// Cases holding both items: the pair table keeps it under the smaller code.
int PairCount(int a, int b) {
  if (!Counter2) return 0;  // already released: no pair count is known
  const int low = std::min(a, b);
  const int high = std::max(a, b);
  if (low < 0 || high > MaxItem + 1) return 0;
  return Counter2[low][high];
}

// The last rule of the leading run of perfect rules; the first rule when it
// is not perfect itself; null for an empty list.
RuleRecord* EndOfPerfectRun() {
  RuleRecord* s = RuleSet ? RuleSet->First : nullptr;
  if (s && s->Conf >= kPerfectRun) {
    while (s->Next && s->Next->Conf >= kPerfectRun) s = s->Next;
  }
  return s;
}

using TargetTable = std::vector<std::vector<int>>;

const std::vector<int>& TargetsOf(const TargetTable& table, int item) {
  static const std::vector<int> kNone;
  if (item < 0 || static_cast<size_t>(item) >= table.size()) return kNone;
  return table[item];
}

// Per antecedent item, the targets of the perfect rules with at most one
// antecedent item, collected walking back from the end of the run.
TargetTable SingleAntecedentTargets(RuleRecord* end) {
  TargetTable table(static_cast<size_t>(std::max(MaxItem, 0)) + 1);
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
// confidence of x and z reaches MinConf.
void CountDerivations(const TargetTable& table) {
  std::vector<char> used;
  for (int x = 0; x < MaxItem && static_cast<size_t>(x) < table.size(); ++x) {
    const std::vector<int>& targets = table[x];
    if (targets.size() < 2) continue;
    used.assign(targets.size(), 0);
    for (size_t p = 0; p < targets.size(); ++p) {
      const int y = targets[p];
      for (size_t q = 0; q < targets.size(); ++q) {
        if (q == p || used[q]) continue;
        const int z = targets[q];
        if (ItemCount(y) > ItemCount(z)) continue;
        for (int w : TargetsOf(table, y)) {
          if (w != z) continue;
          std::printf("\n %d %d %d", x, y, z);
          DerivableRule += 1;
          const int zCount = ItemCount(z);
          const double conf = zCount > 0 ? static_cast<double>(PairCount(x, z)) / zCount : 0.0;
          if (conf >= MinConf) DerivableRule += 1;
          used[q] = 1;
          std::printf(" %f", conf);
        }
      }
    }
  }
}

// Removes, for every rule A -> t of the perfect run and every perfect rule
// t -> u, the rule A -> u with A's support and score. The search runs
// backwards from the first rule after the run.
void RemoveImpliedRules(RuleRecord* end, const TargetTable& table) {
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
  else RuleSet->Last = &marker;
  end->Next = &marker;

  for (RuleRecord* cur = end; cur; cur = cur->Prev) {
    if (cur->Len == 1) continue;
    const int t = cur->Target;
    const std::vector<int>& targets = TargetsOf(table, t);
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
      DerivableRule += FindSameRule(marker.Next, candidate);
    }
  }

  if (marker.Prev) marker.Prev->Next = marker.Next;
  else RuleSet->First = marker.Next;
  if (marker.Next) marker.Next->Prev = marker.Prev;
  else RuleSet->Last = marker.Prev;
}

}  // namespace

int CountDerivableRule() {
  DerivableRule = 0;
  RuleRecord* end = EndOfPerfectRun();
  TargetTable table;
  if (end) {
    table = SingleAntecedentTargets(end);
    CountDerivations(table);
  }
  FreeCount();
  std::printf("\n Number of derivable rules is %d \n", DerivableRule);
  if (end) RemoveImpliedRules(end, table);
  return 1;
}

void SortRuleSet() {
  if (!RuleSet || !RuleSet->First) return;
  std::vector<RuleRecord*> rules;
  for (RuleRecord* r = RuleSet->First; r; r = r->Next) rules.push_back(r);

  // Bottom-up merge sort: a rule of the right run goes first only when it
  // strictly precedes, so equal rules keep their order. It stays well defined
  // whatever Precede answers for rules with a score that is not a number.
  std::vector<RuleRecord*> merged(rules.size());
  for (size_t width = 1; width < rules.size(); width *= 2) {
    for (size_t lo = 0; lo < rules.size(); lo += 2 * width) {
      const size_t mid = std::min(lo + width, rules.size());
      const size_t hi = std::min(lo + 2 * width, rules.size());
      size_t i = lo, j = mid, k = lo;
      while (i < mid && j < hi) merged[k++] = Precede(rules[j], rules[i]) ? rules[j++] : rules[i++];
      while (i < mid) merged[k++] = rules[i++];
      while (j < hi) merged[k++] = rules[j++];
    }
    rules.swap(merged);
  }

  for (size_t i = 0; i < rules.size(); ++i) {
    rules[i]->Prev = i > 0 ? rules[i - 1] : nullptr;
    rules[i]->Next = i + 1 < rules.size() ? rules[i + 1] : nullptr;
  }
  RuleSet->First = rules.front();
  RuleSet->Last = rules.back();
}
