// The rule set: a doubly linked list of rules.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

#include "base/memory.h"
#include "mining/mining.h"
#include "mining/rules.h"

RuleRecord* NewRule(int len) {
  // The record and its antecedent list in one zero-filled block.
  static_assert(sizeof(RuleRecord) % alignof(int) == 0, "the list follows the record aligned");
  const size_t items = static_cast<size_t>(len > 0 ? len : 0) + 1;
  char* block = static_cast<char*>(XCalloc(1, sizeof(RuleRecord) + items * sizeof(int)));
  RuleRecord* rule = reinterpret_cast<RuleRecord*>(block);
  rule->Len = len;
  rule->Antecedent = reinterpret_cast<int*>(block + sizeof(RuleRecord));
  return rule;
}

void FreeRule(RuleRecord* rule) { std::free(rule); }

RuleRecord* RemoveRule(RuleSet& rules, RuleRecord* rule) {
  RuleRecord* next = rule->Next;
  if (rule->Prev) rule->Prev->Next = next;
  else rules.First = next;
  if (next) next->Prev = rule->Prev;
  else rules.Last = rule->Prev;
  rules.NumOfRules -= 1;
  FreeRule(rule);
  return next;
}

void FreeRuleSet(RuleSet& rules) {
  RuleRecord* rule = rules.First;
  while (rule) {
    RuleRecord* next = rule->Next;
    FreeRule(rule);
    rule = next;
  }
  static_cast<RuleList&>(rules) = RuleList();
}

RuleSet::~RuleSet() { FreeRuleSet(*this); }

RuleSet::RuleSet(RuleSet&& other) noexcept : RuleList(other) {
  static_cast<RuleList&>(other) = RuleList();
}

RuleSet& RuleSet::operator=(RuleSet&& other) noexcept {
  if (this != &other) {
    FreeRuleSet(*this);
    static_cast<RuleList&>(*this) = other;
    static_cast<RuleList&>(other) = RuleList();
  }
  return *this;
}

void InitRuleSet(RuleSet& rules) { FreeRuleSet(rules); }

int WriteToRuleSet(RuleSet& rules, const TreeNode* node, int targetPos, float conf, const ItemCounts& counts) {
  RuleRecord* rule = NewRule(node->Length - 1);
  int next = 0;
  for (int p = 0; p < node->Length; ++p) {
    if (p == targetPos) rule->Target = node->ItemSet[p];
    else rule->Antecedent[next++] = node->ItemSet[p];
  }
  rule->Priority = 1;
  rule->Conf = conf;
  rule->Score = conf;
  rule->Supp = node->Support;
  rule->AntSupp = node->SubSupport[targetPos];
  rule->TargetSupp = counts.Counter1[rule->Target];
  AddRuleTail(rules, rules.Last, rule);
  return 1;
}

int AddRuleAhead(RuleSet& rules, RuleRecord* position, RuleRecord* rule) {
  rules.NumOfRules += 1;
  if (!position->Prev) {
    rules.First = rule;
    rule->Prev = nullptr;
  } else {
    position->Prev->Next = rule;
    rule->Prev = position->Prev;
  }
  rule->Next = position;
  position->Prev = rule;
  return 1;
}

int AddRuleTail(RuleSet& rules, RuleRecord* last, RuleRecord* rule) {
  rules.NumOfRules += 1;
  if (last) {
    last->Next = rule;
    rule->Prev = last;
  } else {
    rules.First = rule;
    rule->Prev = nullptr;
  }
  rule->Next = nullptr;
  rules.Last = rule;
  return 1;
}

int Precede(const RuleRecord* a, const RuleRecord* b) {
  if (a->Priority < b->Priority) return 1;
  if (a->Priority > b->Priority) return 0;
  if (std::isnan(a->Score) || std::isnan(b->Score)) return 0;
  if (a->Score > b->Score) return 1;
  if (a->Score < b->Score) return 0;
  if (a->Supp > b->Supp) return 1;
  if (a->Supp < b->Supp) return 0;
  return a->Len < b->Len ? 1 : 0;
}

int FindSameRule(RuleSet& rules, RuleRecord* from, RuleRecord candidate) {
  const double limit = static_cast<double>(candidate.Score) + 0.001;
  for (RuleRecord* r = from; r; r = r->Prev) {
    if (r->Score > limit) return 0;
    if (r->Supp != candidate.Supp || r->Len != candidate.Len || r->Target != candidate.Target) continue;
    bool same = true;
    for (int i = 0; i < r->Len && same; ++i) same = r->Antecedent[i] == candidate.Antecedent[i];
    if (!same) continue;
    RemoveRule(rules, r);
    return 1;
  }
  return 0;
}

int Contain(const int* items, int n, const int* sub, int m) {
  if (m < 0) return 0;
  int i = 0;
  for (int j = 0; j < m; ++j) {
    while (i < n && items[i] < sub[j]) ++i;
    if (i >= n || items[i] != sub[j]) return 0;
    ++i;
  }
  return 1;
}

int QuickSortInteger(int* array, int n) {
  for (int i = 0; i < n; ++i) {
    int smallest = i;
    for (int j = i + 1; j < n; ++j)
      if (array[j] < array[smallest]) smallest = j;
    if (smallest != i) {
      int t = array[i];
      array[i] = array[smallest];
      array[smallest] = t;
    }
  }
  return 1;
}

void SortRuleSet(RuleSet& ruleSet) {
  if (!ruleSet.First) return;
  std::vector<RuleRecord*> rules;
  for (RuleRecord* r = ruleSet.First; r; r = r->Next) rules.push_back(r);

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
  ruleSet.First = rules.front();
  ruleSet.Last = rules.back();
}
