// Ordering a rule set into a first-match classifier: rules are placed one at
// a time by the fewest errors on the cases still unexplained, and the class
// that keeps the most of the remaining cases becomes the default class.
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "base/memory.h"
#include "base/numbers.h"
#include "evaluation/evaluation.h"

namespace {

// Right and wrong cells of every rule, kept in step with the cases the
// ordering takes out, so that a choice need not recount whole rows. The
// rules are numbered by their first row; Id follows the rows as they swap.
// Each case lists the rules that cover it (a negative entry -1-r: rule r
// covers it wrongly), and a case taken out is marked instead of clearing its
// cells, so that taking out a case costs one step per covering rule.
struct Tally {
  std::vector<int> Right;
  std::vector<int> Wrong;
  std::vector<int> Id;
  std::vector<char> Taken;
  std::vector<int> CoverStart;  // case i's rules: Covers[CoverStart[i] .. CoverStart[i+1])
  std::vector<int> Covers;
};

void BuildTally(CoverageTable table, int rules, int cases, Tally& tally) {
  tally.Right.assign(static_cast<size_t>(rules), 0);
  tally.Wrong.assign(static_cast<size_t>(rules), 0);
  tally.Id.resize(static_cast<size_t>(rules));
  tally.Taken.assign(static_cast<size_t>(cases), 0);
  tally.CoverStart.assign(static_cast<size_t>(cases) + 1, 0);
  // One pass over the table gathers the covered cells; they are then
  // grouped by case.
  std::vector<std::pair<int, int>> cells;  // case, entry
  for (int k = 0; k < rules; ++k) {
    tally.Id[k] = k;
    const int* row = table[k];
    for (int i = 0; i < cases; ++i) {
      if (row[i] == 0) continue;
      tally.CoverStart[i + 1] += 1;
      if (row[i] == 1) tally.Right[k] += 1;
      else tally.Wrong[k] += 1;
      cells.emplace_back(i, row[i] == 1 ? k : -1 - k);
    }
  }
  for (int i = 0; i < cases; ++i) tally.CoverStart[i + 1] += tally.CoverStart[i];
  tally.Covers.resize(cells.size());
  std::vector<int> next(tally.CoverStart.begin(), tally.CoverStart.end() - 1);
  for (const auto& [i, entry] : cells) tally.Covers[next[i]++] = entry;
}

void CountRow(const int* row, int cases, int& right, int& wrong) {
  right = 0;
  wrong = 0;
  for (int i = 0; i < cases; ++i) {
    if (row[i] == 1) ++right;
    else if (row[i] == -1) ++wrong;
  }
}

// The choice of ReadRuleLabel, reading the counts from the tally when given.
// A row holds `cases` cells, then the target and the taken flag.
int ChooseRow(const RuleSet& rules, int cases, CoverageTable table, RuleChoice* choice, int start,
              const Tally* tally) {
  if (start >= rules.NumOfRules) return 0;
  int best = -1;
  int bestRight = 0;
  int bestWrong = cases;  // a row wrong on every case is never chosen
  for (int k = start; k < rules.NumOfRules; ++k) {
    int* row = table[k];
    if (row[cases + 1] == 1) continue;
    int right, wrong;
    if (tally) {
      right = tally->Right[tally->Id[k]];
      wrong = tally->Wrong[tally->Id[k]];
    } else {
      CountRow(row, cases, right, wrong);
    }
    if (wrong == 0) {
      *choice = RuleChoice{k, right, 0};
      row[cases + 1] = 1;
      return 1;
    }
    if (wrong < bestWrong) {
      best = k;
      bestRight = right;
      bestWrong = wrong;
    }
  }
  if (best < 0) return 0;
  *choice = RuleChoice{best, bestRight, bestWrong};
  table[best][cases + 1] = 1;
  return 1;
}

// UpdateTable.
void TakeOutCases(const RuleSet& rules, const DataSet& data, CoverageTable table, int* classCounts, int p) {
  const int cases = data.MaxData;
  int* placed = table[p];
  const int target = placed[cases];
  for (int i = 0; i < cases; ++i) {
    if (placed[i] == 0) continue;
    // The counts hold one entry per class of the names file.
    if (placed[i] == 1 && target >= 0 && target < data.MaxClass) classCounts[target] -= 1;
    for (int q = p; q < rules.NumOfRules; ++q) table[q][i] = 0;
  }
}

// The same with the tally: the cases of row p not yet taken out go, and the
// counts of every rule covering them follow; the cells stay as they are.
void TakeOutCases(const DataSet& data, CoverageTable table, int* classCounts, int p, Tally& tally) {
  const int cases = data.MaxData;
  const int* placed = table[p];
  const int target = placed[cases];
  for (int i = 0; i < cases; ++i) {
    if (placed[i] == 0 || tally.Taken[i]) continue;
    if (placed[i] == 1 && target >= 0 && target < data.MaxClass) classCounts[target] -= 1;
    tally.Taken[i] = 1;
    for (int c = tally.CoverStart[i]; c < tally.CoverStart[i + 1]; ++c) {
      const int entry = tally.Covers[c];
      if (entry >= 0) tally.Right[entry] -= 1;
      else tally.Wrong[-1 - entry] -= 1;
    }
  }
}

// Swaps two rules of the list, x the earlier one.
void SwapRecords(RuleSet& rules, RuleRecord* x, RuleRecord* y) {
  RuleRecord* before = x->Prev;
  RuleRecord* after = y->Next;
  if (x->Next == y) {
    // Neighbours: before, y, x, after.
    y->Prev = before;
    y->Next = x;
    x->Prev = y;
    x->Next = after;
  } else {
    RuleRecord* xNext = x->Next;
    RuleRecord* yPrev = y->Prev;
    y->Prev = before;
    y->Next = xNext;
    xNext->Prev = y;
    x->Prev = yPrev;
    x->Next = after;
    yPrev->Next = x;
  }
  if (before) before->Next = y;
  else rules.First = y;
  if (after) after->Prev = x;
  else rules.Last = x;
}

RuleRecord* RuleAt(const RuleSet& rules, int position) {
  RuleRecord* r = rules.First;
  for (int k = 0; k < position && r; ++k) r = r->Next;
  return r;
}

// The choice by pessimistic error rate: the unplaced row with at least one
// right case whose errors, raised to their pessimistic estimate, are the
// smallest share of the cases it covers (the first of equal ones). Of two
// rules without an error the one covering more remaining cases goes first,
// and a rule right on many cases with one exception can beat one right on
// a few without any.
int ChooseRowByErrorRate(const RuleSet& rules, int cases, CoverageTable table, RuleChoice* choice, int start,
                             const Tally& tally) {
  int best = -1;
  double bestScore = 0;
  for (int k = start; k < rules.NumOfRules; ++k) {
    const int* row = table[k];
    if (row[cases + 1] == 1) continue;
    const int right = tally.Right[tally.Id[k]];
    const int wrong = tally.Wrong[tally.Id[k]];
    if (right == 0) continue;
    const double score = -PessimisticErrors(right + wrong, wrong) / (right + wrong);
    if (best < 0 || score > bestScore) {
      best = k;
      bestScore = score;
    }
  }
  if (best < 0) return 0;
  *choice = RuleChoice{best, tally.Right[tally.Id[best]], tally.Wrong[tally.Id[best]]};
  table[best][cases + 1] = 1;
  return 1;
}

}  // namespace

int OrderRuleAndSetDefault(RuleSet& ruleSet, const DataSet& data, const std::vector<float>& dist,
                           const OrderSettings& settings) {
  const int rules = ruleSet.NumOfRules;
  const int cases = data.MaxData;
  // The table and the choice record are released however the ordering ends,
  // also when a working list below cannot grow.
  struct Owner {
    CoverageTable table = nullptr;
    int rows = 0;
    RuleChoice* choice = nullptr;
    ~Owner() {
      std::free(choice);
      for (int k = 0; table && k < rows; ++k) std::free(table[k]);
      std::free(table);
    }
  } owner;
  CoverageTable table = owner.table =
      static_cast<CoverageTable>(XCalloc(static_cast<size_t>(rules) + 1, sizeof(int*)));
  owner.rows = rules;
  for (int k = 0; k < rules; ++k) table[k] = XAllocArray<int>(static_cast<size_t>(cases) + 3);
  RuleChoice* choice = owner.choice = static_cast<RuleChoice*>(XCalloc(1, sizeof(RuleChoice)));

  std::vector<int> classCounts(static_cast<size_t>(data.MaxClass > 0 ? data.MaxClass : 1), 0);
  for (int c = 0; c < data.MaxClass; ++c) {
    const float share = static_cast<size_t>(c) < dist.size() ? dist[c] : 0.0f;
    const long double expected = static_cast<long double>(share) * cases + 0.5f;
    classCounts[c] = TruncateToInt(static_cast<double>(expected));
  }

  FillInTable(ruleSet, data, table);
  Tally tally;
  BuildTally(table, rules, cases, tally);
  std::vector<RuleRecord*> at;  // the rule at each position
  for (RuleRecord* r = ruleSet.First; r; r = r->Next) at.push_back(r);

  std::vector<int> setAside;  // chosen since the last placement but too inaccurate
  int p = 0;
  while (p < ruleSet.NumOfRules) {
    const int chosen = settings.ByErrorRate ? ChooseRowByErrorRate(ruleSet, cases, table, choice, p, tally)
                                                : ChooseRow(ruleSet, cases, table, choice, p, &tally);
    if (!chosen) break;
    const long double accuracy =
        choice->Wrong == 0 ? 1.0L
                           : static_cast<long double>(choice->Right) / (choice->Right + choice->Wrong);
    if (accuracy < settings.MinConf) {
      setAside.push_back(choice->Position);
      continue;
    }
    FreeLowAccRule(data, table, setAside.data(), static_cast<int>(setAside.size()));
    setAside.clear();
    const int s = choice->Position;
    if (s != p) {
      SwapRecords(ruleSet, at[p], at[s]);
      std::swap(at[p], at[s]);
      SwapRow(table, p, s);
      std::swap(tally.Id[p], tally.Id[s]);
    }
    TakeOutCases(data, table, classCounts.data(), p, tally);
    ++p;
  }

  if (settings.Discard && p != ruleSet.NumOfRules) DiscardRestRule(ruleSet, p, settings.MaxLayer);
  ruleSet.DefaultClass = CurrentDefault(classCounts.data(), data.MaxClass);
  return 1;
}

int ReadRuleLabel(const RuleSet& rules, const DataSet& data, CoverageTable table, RuleChoice* choice, int start) {
  return ChooseRow(rules, data.MaxData, table, choice, start, nullptr);
}

int FreeLowAccRule(const DataSet& data, CoverageTable table, const int* positions, int n) {
  for (int k = 0; k < n; ++k) table[positions[k]][data.MaxData + 1] = 0;
  return 1;
}

int SwapRule(RuleSet& rules, int a, int b) {
  if (a == b) return 1;
  if (a > b) std::swap(a, b);
  SwapRecords(rules, RuleAt(rules, a), RuleAt(rules, b));
  return 1;
}

int SwapRow(CoverageTable table, int a, int b) {
  if (a != b) std::swap(table[a], table[b]);
  return 1;
}

int UpdateTable(const RuleSet& rules, const DataSet& data, CoverageTable table, int* classCounts, int p) {
  TakeOutCases(rules, data, table, classCounts, p);
  return 1;
}

int CurrentDefault(const int* classCounts, int maxClass) {
  int answer = -1;  // no class with a positive count: no default
  int most = 0;
  for (int c = 0; c < maxClass; ++c) {
    if (classCounts[c] > most) {
      most = classCounts[c];
      answer = c;
    }
  }
  return answer;
}

double CurrentDefaultRate(const int* classCounts, int maxClass) {
  int most = 0;
  long long sum = 0;
  for (int c = 0; c < maxClass; ++c) {
    if (classCounts[c] > most) most = classCounts[c];
    sum += classCounts[c];
  }
  if (maxClass == 0 || sum == 0) return 1.0;
  return static_cast<double>(most) / static_cast<double>(sum);
}

int DiscardRestRule(RuleSet& rules, int n, int maxLayer) {
  if (n < 0) return 0;
  if (rules.NumOfRules == n) return 1;
  rules.NumOfRules = n;
  if (!rules.First) return 0;
  RuleRecord* keptLast = nullptr;
  RuleRecord* r = rules.First;
  for (int k = 0; k < n; ++k) {
    if (!r) return 0;
    keptLast = r;
    r = r->Next;
  }
  if (!r) return 0;
  // Cut the list after the first n rules, then keep the short rules of the rest.
  if (keptLast) keptLast->Next = nullptr;
  else rules.First = nullptr;
  rules.Last = keptLast;
  while (r) {
    RuleRecord* next = r->Next;
    if (r->Len < maxLayer) {
      r->Prev = rules.Last;
      r->Next = nullptr;
      if (rules.Last) rules.Last->Next = r;
      else rules.First = r;
      rules.Last = r;
      rules.NumOfRules += 1;
    } else {
      FreeRule(r);
    }
    r = next;
  }
  return 1;
}

RuleRecord* DeleteRule(RuleSet& rules, RuleRecord* rule) { return RemoveRule(rules, rule); }

void SetSimpleDefault(RuleSet& rules, const DataSet& data, const std::vector<float>& dist) {
  int answer = -1;  // no class with a positive share: no default
  float most = 0.0f;
  for (int c = 0; c < data.MaxClass && static_cast<size_t>(c) < dist.size(); ++c) {
    if (dist[c] > most) {
      most = dist[c];
      answer = c;
    }
  }
  rules.DefaultClass = answer;
}

void TestAndSetDefult(RuleSet& rules, const DataSet& data, std::FILE* out) {
  const int cases = data.MaxData;
  const int classes = data.MaxClass;
  rules.Hits = 0;
  rules.Misses = 0;
  rules.DefaultClass = -1;
  std::vector<int> uncovered(static_cast<size_t>(classes > 0 ? classes : 1), 0);
  for (int i = 0; i < cases; ++i) {
    const short* row = data.DataSpace[i];
    bool covered = false;
    for (const RuleRecord* r = rules.First; r && !covered; r = r->Next) {
      const int match = MatchTest(row, r, data.RealAtt);
      if (match < 0) continue;
      covered = true;
      if (match == 1) rules.Hits += 1;
      else rules.Misses += 1;
    }
    // A case of unknown class is left out of the class counts.
    const int cls = row[data.RealAtt];
    if (!covered && cls >= 0 && cls < classes) uncovered[cls] += 1;
  }
  int most = -1;
  for (int c = 0; c < classes; ++c) {
    if (uncovered[c] > most) {
      most = uncovered[c];
      rules.DefaultClass = c;
    }
  }
  if (most > 0) rules.Hits += most;
  rules.Misses = cases - rules.Hits;
  const double hits = cases > 0 ? static_cast<double>(rules.Hits) / cases * 100 : 0.0;
  const double misses = cases > 0 ? static_cast<double>(rules.Misses) / cases * 100 : 0.0;
  std::fprintf(out, "\n accuracy = %.2f %%", hits);
  std::fprintf(out, "\n unaccurcy = %.2f %%", misses);
}
