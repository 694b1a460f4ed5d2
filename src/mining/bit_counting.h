// Bit-set primitives shared by support counting and counted candidate
// generation, and how both share the tree among threads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "mining/mining.h"

// Population count of first & second (first null: every row).
size_t CountBoth(const uint64_t* first, const uint64_t* second, size_t words);
// out = first & second (first null: every row); true when any row is left.
bool Intersect(const uint64_t* first, const uint64_t* second, uint64_t* out, size_t words);
// The subtrees the work on a layer is shared out by, in tree order: the
// layer-1 nodes with sons for layer 3, the layer-2 nodes with sons for
// deeper layers. No two hold a common node below them.
std::vector<TreeNode*> CountingUnits(TreeNode* root, int layer);
// The rows holding a unit's itemset (in scratch for a two-item unit); null
// when an item has no set.
const uint64_t* RowsOfUnit(const TreeNode* unit, const RowSets& sets, uint64_t* scratch);
