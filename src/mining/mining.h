// Mining: the first-layer counts, support counting, candidate generation,
// rule selection and pruning, and the layer loop that runs them.
#pragma once

#include <cstdio>
#include <functional>

#include "input/dataset.h"
#include "mining/options.h"
#include "mining/rules.h"
#include "mining/tree.h"

// ---- First layer ----
// Count per item code and per ordered pair of item codes, MaxItem+2 entries
// per dimension.
struct ItemCounts {
  ItemCounts() = default;
  ~ItemCounts();
  ItemCounts(const ItemCounts&) = delete;
  ItemCounts& operator=(const ItemCounts&) = delete;

  int* Counter1 = nullptr;
  int** Counter2 = nullptr;
  int Size = 0;  // entries per dimension
};

void InitialCount(ItemCounts& counts, const DataSet& data);
void Counting(ItemCounts& counts, const DataSet& data);
// Builds layers 1 and 2 under the root: the items and pairs of at least
// gMinSup cases. Prints the size of the first layer.
void InitWholeTree(CandidateTree& tree, TreeNode* root, const ItemCounts& counts, const DataSet& data, int gMinSup,
                   std::FILE* out);
// Releases the pair table (the item counts stay).
void FreeCount(ItemCounts& counts);

// ---- Support counting ----
int Verification(TreeNode* root, int layer, const DataSet& data);
int CountbyTree(TreeNode* root, const short* row, int layer, int realAtt);

// ---- Candidate generation ----
// What the debug dumps of candidate generation and rule selection need.
struct DebugDump {
  int Debug = 0;
  std::FILE* Out = stdout;
};
// classTargetsFrom > 0: the items from that code on are the class items and
// the only targets; no candidate is made whose class target is dead or that
// holds a perfect rule, and an itemset without a class item is made even
// when none of its own targets lives, since it may still be the antecedent
// of a class rule.
int CandidateGen(CandidateTree& tree, TreeNode* node, int layer, const DebugDump& dump, int classTargetsFrom = 0);
TreeNode* SearchSubSet(const CandidateTree& tree, const int* items, int n);
int FrequentSubSet(const CandidateTree& tree, const int* items, int n, int* supports, TreeNode** nodes);

// ---- Rule selection and pruning ----
struct SelectionSettings {
  int GMinSup = 0;
  float MinConf = 0.999999f;
  float IMP = 0.0f;
  int Ass = 0;
  int ClassTargetsFrom = 0;  // > 0: only rules whose target is at least this item code are written
  DebugDump Dump;
};
int RuleSelectANdPruning(CandidateTree& tree, TreeNode* node, int layer, const SelectionSettings& settings,
                         const ItemCounts& counts, RuleSet& rules);
// Deletes the nodes of the newest layer that can lead to no class rule (the
// items from classTargetsFrom on being the class items): a node with a class
// item whose class target is dead, and a node without one that holds a
// perfect rule or for which no class c has every itemset (node without one
// item) + c in the tree with c live. Returns the number deleted.
int PruneForClassTargets(CandidateTree& tree, int layer, int classTargetsFrom);

// ---- The layer loop ----
// Everything a mining run builds: the counts, the tree and the rules.
struct MinedRules {
  int GMinSup = 0;
  ItemCounts Counts;
  CandidateTree Tree;
  RuleSet Rules;
};

// Called after each layer's selection (layer 2 first) with the run so far.
using LayerReport = std::function<void(int layer, const MinedRules& run)>;

// The mining steps of the miner on a data set as read, with run.GMinSup set:
// the root, the item and pair counts, the first two layers, then one layer at
// a time until no candidate is made, the tree passes 10,000,000 nodes or the
// next layer would pass options.MaxLayer (layer 3 is always attempted).
void MineLayers(MinedRules& run, const DataSet& data, const MiningOptions& options, std::FILE* out,
                const LayerReport& report);
