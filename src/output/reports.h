// Console reports: the layer report, the rule listings and the tree dumps.
#pragma once

#include <cstdio>

#include "input/dataset.h"
#include "mining/mining.h"

// The tree size and the rule count.
void Report(const CandidateTree& tree, const RuleSet& rules, std::FILE* out);
// "\n Report of N layers " and the report, as the miner prints after each layer.
void PrintLayerReport(int layer, const MinedRules& run, std::FILE* out);
// The first 30 rules by item code.
int DisplayAbstractRule(const RuleSet& rules, std::FILE* out);
// The first 30 rules by name, grouped by target.
void DisplayRule(const RuleSet& rules, const DataSet& data, std::FILE* out);
void DisplayTree(const TreeNode* node, std::FILE* out);
void DisplayTreeByLayer(const TreeNode* node, int layer, std::FILE* out);
