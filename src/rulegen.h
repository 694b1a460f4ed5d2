// Rule mining: the candidate tree, counting, candidate generation, the rule
// set, rule selection and pruning, the analyses, the reports and the CSV file.
#pragma once

#include <string>

// One candidate itemset. Per-position arrays are indexed by the position of
// the item in ItemSet; position i holds the rule (itemset without item i) ->
// item i.
struct TreeNode {
  short Item;            // own item, last of ItemSet; -1 at the root
  short Token;           // 0 ordinary, 2 perfect rule seen, -2 empty node
  short Length;          // number of items
  short* ItemSet;        // items, ascending
  int Support;           // cases holding every item
  int* SubSupport;       // support of the itemset without item i
  TreeNode** SubNode;    // node of the itemset without item i
  short* TargetFlag;     // nonzero while the rule with target i is live
  float* Confidence;     // Support / SubSupport[i]
  short NumOfTarget;     // number of nonzero flags
  int NumOfSon;          // number of sons (the root may have up to 32768 slots)
  int SonCapacity;       // slots allocated in Son
  int Cursor;            // where the next son search starts in a row walk
  float Acc;
  float Conf;
  TreeNode** Son;        // sons, ascending Item
  TreeNode* Parent;
};

extern TreeNode* AllSet;  // root of the candidate tree
extern int TreeSize;      // live nodes, the root not counted

TreeNode* NewNode(TreeNode* parent, int item);
TreeNode* AddSon(TreeNode* parent, TreeNode* sibling, const int* flags, const int* subSupports,
                 TreeNode* const* subNodes);
TreeNode* NewEmptyNode(TreeNode* parent, int item);
TreeNode* DeleteNode(TreeNode* node);
int ReOrderSon(TreeNode* node);
TreeNode* FreeTree(TreeNode* node);
void Clean(TreeNode* node, int low, int bound);
// Links a new son after the parent's last one, growing Son by 10 slots when
// no free slot would remain.
void LinkSon(TreeNode* parent, TreeNode* son);

// ---- First layer ----
extern int* Counter1;   // count per item code, MaxItem+2 entries
extern int** Counter2;  // count per ordered pair of item codes

void InitialCount();
void Counting();
void InitWholeTree(TreeNode* root);
void FreeCount();

// ---- Support counting ----
int Verification(TreeNode* root, int layer);
int CountbyTree(TreeNode* root, const short* row, int layer);

// ---- Candidate generation ----
int CandidateGen(TreeNode* node, int layer);
TreeNode* SearchSubSet(const int* items, int n);
int FrequentSubSet(const int* items, int n, int* supports, TreeNode** nodes);

// ---- Rule set ----
struct RuleRecord {
  int Len;
  int* Antecedent;  // Len+1 entries, the last one 0
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
  int NumOfRules;
  int Hits;
  float ReciprocalSum;
  int Misses;
  int DefaultClass;
  RuleRecord* First;
  RuleRecord* Last;
};

extern RuleList* RuleSet;

void InitRuleSet();
int WriteToRuleSet(TreeNode* node, int targetPos, float conf);
int AddRuleAhead(RuleRecord* position, RuleRecord* rule);
int AddRuleTail(RuleRecord* last, RuleRecord* rule);
int Precede(const RuleRecord* a, const RuleRecord* b);
int FindSameRule(RuleRecord* from, RuleRecord candidate);
int Contain(const int* items, int n, const int* sub, int m);
int QuickSortInteger(int* array, int n);
// A zero-filled rule with room for len antecedent items plus the spare entry.
RuleRecord* NewRule(int len);
void FreeRule(RuleRecord* rule);
// Unlinks a rule from the rule set and frees it; returns the rule after it.
RuleRecord* RemoveRule(RuleRecord* rule);
// Frees every rule and the list head.
void FreeRuleSet();

// ---- Rule selection and pruning ----
int RuleSelectANdPruning(TreeNode* node, int layer);

// ---- Analyses ----
int CountDerivableRule();
extern int LooseCov;
extern int ToughCov;
int CoverageCount(TreeNode* root, int* const* rows, int n);
int CountEntry(TreeNode* root, const int* row);
// CoverageCount over the cases of DataSpace, widened to int rows.
int CoverageOfData(TreeNode* root);
// Orders the rule set by Precede, equal rules keeping their order, and
// relinks it.
void SortRuleSet();

// ---- Reports ----
void Report();
int DisplayAbstractRule();
void DisplayRule();
void DisplayTree(TreeNode* node);
void DisplayTreeByLayer(TreeNode* node, int layer);

// ---- CSV export ----
int Write2CSVfile(const std::string& fileName, float support);
float ChisquareTest(int a, int b, int c, int d);

// Releases the tree, the counts and the rule set and sets the globals of this
// module back to their start values.
void ResetRulegen();
