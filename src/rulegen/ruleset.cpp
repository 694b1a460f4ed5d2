// The rule set: a doubly linked list of rules headed by RuleSet.
#include <cmath>
#include <cstdlib>

#include "rule.h"
#include "rulegen.h"

RuleList* RuleSet = nullptr;

RuleRecord* NewRule(int len) {
  RuleRecord* rule = static_cast<RuleRecord*>(XCalloc(1, sizeof(RuleRecord)));
  rule->Len = len;
  rule->Antecedent = XAllocArray<int>(static_cast<size_t>(len > 0 ? len : 0) + 1);
  return rule;
}

void FreeRule(RuleRecord* rule) {
  if (!rule) return;
  std::free(rule->Antecedent);
  std::free(rule);
}

RuleRecord* RemoveRule(RuleRecord* rule) {
  RuleRecord* next = rule->Next;
  if (rule->Prev) rule->Prev->Next = next;
  else RuleSet->First = next;
  if (next) next->Prev = rule->Prev;
  else RuleSet->Last = rule->Prev;
  RuleSet->NumOfRules -= 1;
  FreeRule(rule);
  return next;
}

void FreeRuleSet() {
  if (!RuleSet) return;
  RuleRecord* rule = RuleSet->First;
  while (rule) {
    RuleRecord* next = rule->Next;
    FreeRule(rule);
    rule = next;
  }
  std::free(RuleSet);
  RuleSet = nullptr;
}

void InitRuleSet() {
  FreeRuleSet();
  RuleSet = static_cast<RuleList*>(XCalloc(1, sizeof(RuleList)));
  RuleSet->NumOfRules = 0;
  RuleSet->First = nullptr;
  RuleSet->Last = nullptr;
}

int WriteToRuleSet(TreeNode* node, int targetPos, float conf) {
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
  rule->TargetSupp = Counter1[rule->Target];
  AddRuleTail(RuleSet->Last, rule);
  return 1;
}

int AddRuleAhead(RuleRecord* position, RuleRecord* rule) {
  RuleSet->NumOfRules += 1;
  if (!position->Prev) {
    RuleSet->First = rule;
    rule->Prev = nullptr;
  } else {
    position->Prev->Next = rule;
    rule->Prev = position->Prev;
  }
  rule->Next = position;
  position->Prev = rule;
  return 1;
}

int AddRuleTail(RuleRecord* last, RuleRecord* rule) {
  RuleSet->NumOfRules += 1;
  if (last) {
    last->Next = rule;
    rule->Prev = last;
  } else {
    RuleSet->First = rule;
    rule->Prev = nullptr;
  }
  rule->Next = nullptr;
  RuleSet->Last = rule;
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

int FindSameRule(RuleRecord* from, RuleRecord candidate) {
  const double limit = static_cast<double>(candidate.Score) + 0.001;
  for (RuleRecord* r = from; r; r = r->Prev) {
    if (r->Score > limit) return 0;
    if (r->Supp != candidate.Supp || r->Len != candidate.Len || r->Target != candidate.Target) continue;
    bool same = true;
    for (int i = 0; i < r->Len && same; ++i) same = r->Antecedent[i] == candidate.Antecedent[i];
    if (!same) continue;
    RemoveRule(r);
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
