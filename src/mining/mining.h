// Mining: the first-layer counts, support counting, candidate generation,
// rule selection and pruning, and the layer loop that runs them.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <vector>

#include "base/parallel.h"
#include "input/dataset.h"
#include "mining/options.h"
#include "mining/rules.h"
#include "mining/tree.h"

// ---- First layer ----
// The count of each item code, and of each pair of ranked items: the items
// 1 .. MaxItem of at least the minimum support, numbered by ascending code.
// Only they can form a frequent pair, so the pair table is triangular over
// the ranked items alone, however many items the names file declares.
struct ItemCounts {
  ItemCounts() = default;
  ~ItemCounts();
  ItemCounts(const ItemCounts&) = delete;
  ItemCounts& operator=(const ItemCounts&) = delete;

  // Cases holding both items a < b; 0 when either is not ranked, or the
  // pair table is released.
  int Pair(int a, int b) const {
    const int* cell = Cell(a, b);
    return cell ? *cell : 0;
  }
  // The table entry of the pair a < b, or null.
  int* PairCell(int a, int b) { return const_cast<int*>(Cell(a, b)); }

  int* Counter1 = nullptr;  // per item code, Size entries
  int Size = 0;             // MaxItem + 2
  std::vector<int> Rank;    // item code -> rank, -1 when not ranked
  int Ranked = 0;           // number of ranked items
  int* Pairs = nullptr;     // Ranked * (Ranked - 1) / 2 counts, row after row

 private:
  const int* Cell(int a, int b) const {
    if (!Pairs || a < 0 || b < 0 || a >= Size || b >= Size) return nullptr;
    const int ra = Rank[static_cast<size_t>(a)];
    const int rb = Rank[static_cast<size_t>(b)];
    if (ra < 0 || rb <= ra) return nullptr;
    return Pairs + PairRow(ra) + (rb - ra - 1);
  }

 public:
  // Where the row of rank r starts in Pairs.
  size_t PairRow(int r) const {
    const size_t n = static_cast<size_t>(Ranked);
    const size_t a = static_cast<size_t>(r);
    return a * n - a * (a + 1) / 2;
  }
};

// The item table, zero-filled; no pair table yet.
void InitialCount(ItemCounts& counts, const DataSet& data);
// Ranks the items 1 .. maxItem counted in at least gMinSup cases and makes
// their zero-filled pair table.
void RankItems(ItemCounts& counts, int maxItem, int gMinSup);
// Counts every item of the cases, ranks the items (RankItems) and counts
// every pair of ranked items that two columns of a case hold, the smaller
// code first; the pairs are counted on up to `threads` threads.
void Counting(ItemCounts& counts, const DataSet& data, int gMinSup, int threads = 1, double threadWork = kThreadWork);
// Builds layers 1 and 2 under the root: the items and pairs of at least
// gMinSup cases. Prints the size of the first layer.
void InitWholeTree(CandidateTree& tree, TreeNode* root, const ItemCounts& counts, const DataSet& data, int gMinSup,
                   std::FILE* out);
// Releases the pair table (the item counts stay).
void FreeCount(ItemCounts& counts);

// ---- Support counting ----
// The cases holding each of a list of items, as bit sets over a range of
// rows of a data set.
class RowSets {
 public:
  // The items every candidate of layer 3 or more is made of: those of the
  // second layer of the tree.
  static std::vector<int> SecondLayerItems(const TreeNode* root);
  // Bytes the sets of `items` items over `rows` rows take.
  static size_t Bytes(size_t items, size_t rows);

  // The sets of the items over rows first .. first+count-1 (first a
  // multiple of 64), filled on up to `threads` threads.
  void Build(const std::vector<int>& items, const DataSet& data, int first, int count, int threads,
             double threadWork = kThreadWork);
  // The set of an item, null for an item without one.
  const uint64_t* Of(int item) const {
    if (item <= 0 || static_cast<size_t>(item) >= slot_.size() || slot_[static_cast<size_t>(item)] < 0)
      return nullptr;
    return bits_.data() + static_cast<size_t>(slot_[static_cast<size_t>(item)]) * words_;
  }
  size_t Words() const { return words_; }

 private:
  size_t words_ = 0;
  std::vector<int> slot_;  // item code -> set index, -1 without a set
  std::vector<uint64_t> bits_;
};

// How the candidates of layer 3 and more are counted. When the row sets of
// the second-layer items over all the cases fit WholeBudget bytes, candidate
// generation counts each candidate as it makes it and keeps only those of at
// least the minimum support; otherwise the candidates are made first and
// Verification counts them over blocks of rows whose sets fit BlockBudget
// bytes (or of BlockRows rows, when set), adding up the blocks. The results
// are the same either way and for any number of threads.
struct CountingSettings {
  int Threads = 1;
  size_t WholeBudget = size_t{256} << 20;
  size_t BlockBudget = size_t{64} << 20;
  int BlockRows = 0;  // > 0: blocks of this many rows (rounded up to 64), whatever the budget
  double ThreadWork = kThreadWork;  // work below which one thread counts
};

// Counts the candidates of the newest layer (`layer`) over the cases, in
// blocks of rows: every one gets the number of cases holding its itemset.
int Verification(TreeNode* root, int layer, const DataSet& data, const CountingSettings& settings = {});
// The same by one sweep of a row through the tree.
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
//
// With `counting` (row sets of the second-layer items over every case), each
// candidate is counted as it is made and only those of at least MinSupport
// cases go into the tree; the others still count as made for the result.
// The subtrees are shared among counting->Threads threads (one when the
// debug dump is on), the nodes of thread t made in the tree's arena t.
struct CandidateCounting {
  const RowSets* Rows = nullptr;
  int MinSupport = 0;
  int Threads = 1;
  double ThreadWork = kThreadWork;  // work below which one thread generates
};
int CandidateGen(CandidateTree& tree, TreeNode* node, int layer, const DebugDump& dump, int classTargetsFrom = 0,
                 const CandidateCounting* counting = nullptr);
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
