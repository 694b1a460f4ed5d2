// Analyses of a mined rule set: the rules derivable by chaining perfect
// rules, and how many cases hold the itemset of a node that produced a
// perfect rule.
#pragma once

#include <cstdio>
#include <string>

#include "input/dataset.h"
#include "mining/mining.h"

// ---- Derivable rules ----
// Counts the rules of the leading run of perfect rules (confidence of at
// least 0.9999; the rule set sorted by Precede) that follow by chaining:
// x -> y and y -> z make x -> z derivable, once more when the pair
// confidence of x and z reaches minConf; each chain is printed as
// "\n x y z conf". Then releases the pair table of counts, prints the count,
// and removes every rule A -> u implied by a rule A -> t of the run and a
// perfect rule t -> u at equal support, counting each one removed. Returns
// the count. maxItem is the data set's largest item code.
// With names, the items of the chains are printed as ATTRIBUTE=VALUE.
int CountDerivableRule(RuleSet& rules, ItemCounts& counts, int maxItem, float minConf, std::FILE* out,
                       const DataSet* names = nullptr);

// An item as ATTRIBUTE=VALUE when names holds it, otherwise its code.
std::string ItemText(const DataSet* names, int item);

// ---- Coverage ----
// Cases holding the itemset of a marked node (Token > 0): loosely through a
// node whose second target flag is not all ones, toughly through one whose
// flag is.
struct Coverage {
  int Loose = 0;
  int Tough = 0;
};

// Walks one case (realAtt item codes) through the tree and counts it into
// coverage for each kind of marked node it reaches, at most once per kind;
// the first loosely covering node is printed. Returns 1 when both kinds were
// reached.
int CountEntry(TreeNode* root, const int* row, int realAtt, Coverage& coverage, std::FILE* out);
// The coverage of n cases.
Coverage CoverageCount(TreeNode* root, int* const* rows, int n, int realAtt, std::FILE* out);
// The coverage of the cases of a data set, widened to int rows; the
// itemsets are printed by name.
Coverage CoverageOfData(TreeNode* root, const DataSet& data, std::FILE* out);
