// The rule set: a doubly linked list of rules with the testing counters and
// the default class.
#pragma once

struct TreeNode;
struct ItemCounts;

struct RuleRecord {
  int Len;
  int* Antecedent;  // Len+1 entries, the last one 0; in the rule's own block
  int Priority;
  int Target;
  float Conf;
  int Supp;
  int AntSupp;
  int TargetSupp;
  float Score;
  int Selected;
  RuleRecord* Prev;
  RuleRecord* Next;
};

struct RuleList {
  int NumOfRules = 0;
  int Hits = 0;
  float ReciprocalSum = 0;
  int Misses = 0;
  int DefaultClass = 0;
  RuleRecord* First = nullptr;
  RuleRecord* Last = nullptr;
};

// A rule list that owns its rules: they go with it.
class RuleSet : public RuleList {
 public:
  RuleSet() = default;
  ~RuleSet();
  RuleSet(RuleSet&& other) noexcept;
  RuleSet& operator=(RuleSet&& other) noexcept;
  RuleSet(const RuleSet&) = delete;
  RuleSet& operator=(const RuleSet&) = delete;
};

// Empties the rule set.
void InitRuleSet(RuleSet& rules);
// Appends the rule (itemset of node without position targetPos) -> that item.
int WriteToRuleSet(RuleSet& rules, const TreeNode* node, int targetPos, float conf, const ItemCounts& counts);
int AddRuleAhead(RuleSet& rules, RuleRecord* position, RuleRecord* rule);
int AddRuleTail(RuleSet& rules, RuleRecord* last, RuleRecord* rule);
int Precede(const RuleRecord* a, const RuleRecord* b);
int FindSameRule(RuleSet& rules, RuleRecord* from, RuleRecord candidate);
int Contain(const int* items, int n, const int* sub, int m);
int QuickSortInteger(int* array, int n);
// A zero-filled rule with room for len antecedent items plus the spare entry.
RuleRecord* NewRule(int len);
void FreeRule(RuleRecord* rule);
// Unlinks a rule from the rule set and frees it; returns the rule after it.
RuleRecord* RemoveRule(RuleSet& rules, RuleRecord* rule);
// Frees every rule.
void FreeRuleSet(RuleSet& rules);
// Orders the rule set by Precede, equal rules keeping their order, and
// relinks it.
void SortRuleSet(RuleSet& rules);
