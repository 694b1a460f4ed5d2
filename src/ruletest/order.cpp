// Ordering a rule set into a first-match classifier: rules are placed one at
// a time by the fewest errors on the cases still unexplained, and the class
// that keeps the most of the remaining cases becomes the default class.
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "readfile.h"
#include "rule.h"
#include "ruletest.h"

namespace {

// Right and wrong cells of every row, kept in step with the table while the
// ordering takes cases out, so that a choice need not recount whole rows.
struct Tally {
  std::vector<int> Right;
  std::vector<int> Wrong;
};

void CountRow(const int* row, int& right, int& wrong) {
  right = 0;
  wrong = 0;
  for (int i = 0; i < MaxData; ++i) {
    if (row[i] == 1) ++right;
    else if (row[i] == -1) ++wrong;
  }
}

// The choice of ReadRuleLabel, reading the counts from the tally when given.
int ChooseRow(CoverageTable table, RuleChoice* choice, int start, const Tally* tally) {
  if (start >= RuleSet->NumOfRules) return 0;
  int best = -1;
  int bestRight = 0;
  int bestWrong = MaxData;  // a row wrong on every case is never chosen
  for (int k = start; k < RuleSet->NumOfRules; ++k) {
    int* row = table[k];
    if (row[MaxData + 1] == 1) continue;
    int right, wrong;
    if (tally) {
      right = tally->Right[k];
      wrong = tally->Wrong[k];
    } else {
      CountRow(row, right, wrong);
    }
    if (wrong == 0) {
      *choice = RuleChoice{k, right, 0};
      row[MaxData + 1] = 1;
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
  table[best][MaxData + 1] = 1;
  return 1;
}

// UpdateTable, keeping the tally in step when given.
void TakeOutCases(CoverageTable table, int* classCounts, int p, Tally* tally) {
  int* placed = table[p];
  const int target = placed[MaxData];
  for (int i = 0; i < MaxData; ++i) {
    if (placed[i] == 0) continue;
    // The counts hold one entry per class of the names file.
    if (placed[i] == 1 && target >= 0 && target < MaxClass) classCounts[target] -= 1;
    for (int q = p; q < RuleSet->NumOfRules; ++q) {
      int& cell = table[q][i];
      if (tally && cell != 0) {
        if (cell == 1) tally->Right[q] -= 1;
        else tally->Wrong[q] -= 1;
      }
      cell = 0;
    }
  }
}

RuleRecord* RuleAt(int position) {
  RuleRecord* r = RuleSet->First;
  for (int k = 0; k < position && r; ++k) r = r->Next;
  return r;
}

}  // namespace

int OrderRuleAndSetDefault() {
  const int rules = RuleSet->NumOfRules;
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
  for (int k = 0; k < rules; ++k) table[k] = XAllocArray<int>(static_cast<size_t>(MaxData) + 3);
  RuleChoice* choice = owner.choice = static_cast<RuleChoice*>(XCalloc(1, sizeof(RuleChoice)));

  std::vector<int> classCounts(static_cast<size_t>(MaxClass > 0 ? MaxClass : 1), 0);
  for (int c = 0; c < MaxClass; ++c) {
    const float share = static_cast<size_t>(c) < Dist.size() ? Dist[c] : 0.0f;
    const long double expected = static_cast<long double>(share) * MaxData + 0.5f;
    classCounts[c] = TruncateToInt(static_cast<double>(expected));
  }

  FillInTable(table);
  Tally tally;
  tally.Right.resize(static_cast<size_t>(rules));
  tally.Wrong.resize(static_cast<size_t>(rules));
  for (int k = 0; k < rules; ++k) CountRow(table[k], tally.Right[k], tally.Wrong[k]);

  std::vector<int> setAside;  // chosen since the last placement but too inaccurate
  int p = 0;
  while (p < RuleSet->NumOfRules) {
    if (!ChooseRow(table, choice, p, &tally)) break;
    const long double accuracy =
        choice->Wrong == 0 ? 1.0L
                           : static_cast<long double>(choice->Right) / (choice->Right + choice->Wrong);
    if (accuracy < MinConf) {
      setAside.push_back(choice->Position);
      continue;
    }
    FreeLowAccRule(table, setAside.data(), static_cast<int>(setAside.size()));
    setAside.clear();
    const int s = choice->Position;
    if (s != p) {
      SwapRule(p, s);
      SwapRow(table, p, s);
      std::swap(tally.Right[p], tally.Right[s]);
      std::swap(tally.Wrong[p], tally.Wrong[s]);
    }
    TakeOutCases(table, classCounts.data(), p, &tally);
    ++p;
  }

  if (Discard && p != RuleSet->NumOfRules) DiscardRestRule(p);
  RuleSet->DefaultClass = CurrentDefault(classCounts.data());
  return 1;
}

int ReadRuleLabel(CoverageTable table, RuleChoice* choice, int start) {
  return ChooseRow(table, choice, start, nullptr);
}

int FreeLowAccRule(CoverageTable table, const int* positions, int n) {
  for (int k = 0; k < n; ++k) table[positions[k]][MaxData + 1] = 0;
  return 1;
}

int SwapRule(int a, int b) {
  if (a == b) return 1;
  if (a > b) std::swap(a, b);
  RuleRecord* x = RuleAt(a);  // the earlier of the two
  RuleRecord* y = RuleAt(b);
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
  else RuleSet->First = y;
  if (after) after->Prev = x;
  else RuleSet->Last = x;
  return 1;
}

int SwapRow(CoverageTable table, int a, int b) {
  if (a != b) std::swap(table[a], table[b]);
  return 1;
}

int UpdateTable(CoverageTable table, int* classCounts, int p) {
  TakeOutCases(table, classCounts, p, nullptr);
  return 1;
}

int CurrentDefault(const int* classCounts) {
  int answer = -1;  // no class with a positive count: no default
  int most = 0;
  for (int c = 0; c < MaxClass; ++c) {
    if (classCounts[c] > most) {
      most = classCounts[c];
      answer = c;
    }
  }
  return answer;
}

double CurrentDefaultRate(const int* classCounts) {
  int most = 0;
  long long sum = 0;
  for (int c = 0; c < MaxClass; ++c) {
    if (classCounts[c] > most) most = classCounts[c];
    sum += classCounts[c];
  }
  if (MaxClass == 0 || sum == 0) return 1.0;
  return static_cast<double>(most) / static_cast<double>(sum);
}

int DiscardRestRule(int n) {
  if (n < 0) return 0;
  if (RuleSet->NumOfRules == n) return 1;
  RuleSet->NumOfRules = n;
  if (!RuleSet->First) return 0;
  RuleRecord* keptLast = nullptr;
  RuleRecord* r = RuleSet->First;
  for (int k = 0; k < n; ++k) {
    if (!r) return 0;
    keptLast = r;
    r = r->Next;
  }
  if (!r) return 0;
  // Cut the list after the first n rules, then keep the short rules of the rest.
  if (keptLast) keptLast->Next = nullptr;
  else RuleSet->First = nullptr;
  RuleSet->Last = keptLast;
  while (r) {
    RuleRecord* next = r->Next;
    if (r->Len < MaxLayer) {
      r->Prev = RuleSet->Last;
      r->Next = nullptr;
      if (RuleSet->Last) RuleSet->Last->Next = r;
      else RuleSet->First = r;
      RuleSet->Last = r;
      RuleSet->NumOfRules += 1;
    } else {
      FreeRule(r);
    }
    r = next;
  }
  return 1;
}

RuleRecord* DeleteRule(RuleRecord* rule) { return RemoveRule(rule); }

void SetSimpleDefault() {
  int answer = -1;  // no class with a positive share: no default
  float most = 0.0f;
  for (int c = 0; c < MaxClass && static_cast<size_t>(c) < Dist.size(); ++c) {
    if (Dist[c] > most) {
      most = Dist[c];
      answer = c;
    }
  }
  RuleSet->DefaultClass = answer;
}

void TestAndSetDefult() {
  RuleSet->Hits = 0;
  RuleSet->Misses = 0;
  RuleSet->DefaultClass = -1;
  std::vector<int> uncovered(static_cast<size_t>(MaxClass > 0 ? MaxClass : 1), 0);
  for (int i = 0; i < MaxData; ++i) {
    const short* row = DataSpace[i];
    bool covered = false;
    for (const RuleRecord* r = RuleSet->First; r && !covered; r = r->Next) {
      const int match = MatchTest(row, r);
      if (match < 0) continue;
      covered = true;
      if (match == 1) RuleSet->Hits += 1;
      else RuleSet->Misses += 1;
    }
    // A case of unknown class is left out of the class counts.
    const int cls = row[RealAtt];
    if (!covered && cls >= 0 && cls < MaxClass) uncovered[cls] += 1;
  }
  int most = -1;
  for (int c = 0; c < MaxClass; ++c) {
    if (uncovered[c] > most) {
      most = uncovered[c];
      RuleSet->DefaultClass = c;
    }
  }
  if (most > 0) RuleSet->Hits += most;
  RuleSet->Misses = MaxData - RuleSet->Hits;
  const double hits = MaxData > 0 ? static_cast<double>(RuleSet->Hits) / MaxData * 100 : 0.0;
  const double misses = MaxData > 0 ? static_cast<double>(RuleSet->Misses) / MaxData * 100 : 0.0;
  std::printf("\n accuracy = %.2f %%", hits);
  std::printf("\n unaccurcy = %.2f %%", misses);
}
