// The candidate tree: node creation, linking, deletion, compaction, release.
#include <cstdlib>
#include <cstring>

#include "base/memory.h"
#include "mining/mining.h"
#include "mining/tree.h"

namespace {

// A node and its per-position arrays in one zero-filled block, the arrays
// sized for `room` positions: one allocation per node, and one release.
// An empty node has an item list only.
TreeNode* NewRecord(size_t room, bool withTargets) {
  const size_t pointers = sizeof(TreeNode*) * room;
  const size_t words = sizeof(int) * room;
  const size_t halves = sizeof(short) * room;
  static_assert(sizeof(TreeNode) % alignof(TreeNode*) == 0, "the arrays follow the record aligned");
  const size_t size = sizeof(TreeNode) + halves + (withTargets ? pointers + 2 * words + halves : 0);
  char* block = static_cast<char*>(XCalloc(1, size));
  TreeNode* node = reinterpret_cast<TreeNode*>(block);
  char* at = block + sizeof(TreeNode);
  if (withTargets) {
    node->SubNode = reinterpret_cast<TreeNode**>(at);
    at += pointers;
    node->SubSupport = reinterpret_cast<int*>(at);
    at += words;
    node->Confidence = reinterpret_cast<float*>(at);
    at += words;
    node->TargetFlag = reinterpret_cast<short*>(at);
    at += halves;
  }
  node->ItemSet = reinterpret_cast<short*>(at);
  return node;
}

// A node record with its son array of `slots` entries; neither leaks when
// the other cannot be had.
TreeNode* NewRecordWithSons(size_t room, bool withTargets, size_t slots) {
  TreeNode** sons = XAllocArray<TreeNode*>(slots);
  TreeNode* node = nullptr;
  try {
    node = NewRecord(room, withTargets);
  } catch (...) {
    std::free(sons);
    throw;
  }
  node->Son = sons;
  return node;
}

// The arrays live in the node's own block: they go with the node, and a
// node whose arrays are released no longer reaches them.
void FreeArrays(TreeNode* node) {
  node->ItemSet = nullptr;
  node->SubSupport = nullptr;
  node->SubNode = nullptr;
  node->TargetFlag = nullptr;
  node->Confidence = nullptr;
}

}  // namespace

void LinkSon(TreeNode* parent, TreeNode* son) {
  parent->Son[parent->NumOfSon] = son;
  parent->NumOfSon += 1;
  if (parent->NumOfSon >= parent->SonCapacity - 1) {
    parent->SonCapacity += 10;
    parent->Son = static_cast<TreeNode**>(
        XRealloc(parent->Son, sizeof(TreeNode*) * static_cast<size_t>(parent->SonCapacity)));
  }
}

TreeNode* NewNode(CandidateTree& tree, TreeNode* parent, int item, const ItemCounts& counts, int maxData) {
  TreeNode* node = NewRecordWithSons(2, true, 10);

  node->Item = static_cast<short>(item);
  node->ItemSet[0] = static_cast<short>(item);
  node->Length = 1;
  node->Token = 0;
  node->NumOfTarget = 1;
  node->NumOfSon = 0;
  node->SonCapacity = 10;
  node->Cursor = 0;
  node->Parent = parent;

  node->Support = counts.Counter1[item];
  node->SubSupport[0] = maxData;
  node->Confidence[0] = static_cast<float>(static_cast<double>(counts.Counter1[item]) / maxData);
  node->TargetFlag[0] = static_cast<short>(65535);
  tree.TreeSize += 1;
  return node;
}

TreeNode* AddSon(CandidateTree& tree, TreeNode* parent, TreeNode* sibling, const int* flags, const int* subSupports,
                 TreeNode* const* subNodes) {
  const int k = parent->Length + 1;
  TreeNode* node = NewRecordWithSons(static_cast<size_t>(parent->Length) + 2, true, 10);

  node->Length = static_cast<short>(k);
  if (parent->Length > 0) std::memcpy(node->ItemSet, parent->ItemSet, sizeof(short) * parent->Length);
  node->ItemSet[k - 1] = sibling->Item;
  node->Item = sibling->Item;
  node->SonCapacity = 10;
  node->NumOfSon = 0;
  node->Token = 0;
  node->Cursor = 0;
  node->Parent = parent;
  node->Support = 0;

  if (k >= 3) {
    for (int p = 0; p <= k - 3; ++p) {
      node->SubSupport[p] = subSupports[p];
      node->SubNode[p] = subNodes[p];
    }
    node->SubSupport[k - 2] = sibling->Support;
    node->SubNode[k - 2] = sibling;
    node->SubSupport[k - 1] = parent->Support;
    node->SubNode[k - 1] = parent;
    int sum = 0;
    for (int p = 0; p < k; ++p) {
      node->TargetFlag[p] = static_cast<short>(flags[p]);
      sum += flags[p];
    }
    node->NumOfTarget = static_cast<short>(sum);
  } else {
    node->TargetFlag[0] = 1;
    node->TargetFlag[1] = 1;
    node->NumOfTarget = 2;
    node->SubSupport[0] = sibling->Support;
    node->SubSupport[1] = parent->Support;
    node->SubNode[0] = sibling;
    node->SubNode[1] = parent;
  }
  tree.TreeSize += 1;
  return node;
}

TreeNode* NewEmptyNode(CandidateTree& tree, TreeNode* parent, int item, int maxItem) {
  TreeNode* node =
      NewRecordWithSons(static_cast<size_t>(parent->Length) + 2, false, static_cast<size_t>(maxItem > 0 ? maxItem : 1));
  node->SonCapacity = maxItem;
  if (parent->Length > 0) std::memcpy(node->ItemSet, parent->ItemSet, sizeof(short) * parent->Length);
  node->ItemSet[parent->Length] = static_cast<short>(item);
  node->Item = static_cast<short>(item);
  node->Length = static_cast<short>(parent->Length + 1);
  node->Support = 0;
  node->NumOfSon = 0;
  node->Cursor = 0;
  node->Token = -2;
  node->Parent = parent;
  tree.TreeSize += 1;
  return node;
}

TreeNode* DeleteNode(CandidateTree& tree, TreeNode* node) {
  if (!node) return nullptr;
  if (node->Parent) node->Parent->NumOfSon -= 1;
  FreeArrays(node);
  std::free(node->Son);
  std::free(node);
  tree.TreeSize -= 1;
  return nullptr;
}

// Packs the non-null sons to the front, in order, until NumOfSon are placed,
// then shrinks Son to NumOfSon + 1 slots. Returns 1 if more than one son was
// packed.
int ReOrderSon(TreeNode* node) {
  int packed = 0;
  for (int slot = 0; slot < node->SonCapacity && packed < node->NumOfSon; ++slot) {
    if (node->Son[slot]) node->Son[packed++] = node->Son[slot];
  }
  node->SonCapacity = node->NumOfSon + 1;
  node->Son = static_cast<TreeNode**>(
      XRealloc(node->Son, sizeof(TreeNode*) * static_cast<size_t>(node->SonCapacity)));
  return packed > 1 ? 1 : 0;
}

TreeNode* FreeTree(CandidateTree& tree, TreeNode* node) {
  if (!node) return nullptr;
  // The live sons are the first NumOfSon entries that are not null: a
  // selection that ended half-way (a failed allocation) leaves the holes of
  // the sons it deleted before the array is packed.
  const int sons = node->NumOfSon;
  for (int s = 0, found = 0; found < sons && s < node->SonCapacity; ++s) {
    if (!node->Son[s]) continue;
    node->Son[s] = FreeTree(tree, node->Son[s]);
    ++found;
  }
  if (node->Item == -1) {
    // The root is a plain record: its own arrays go with it.
    FreeArrays(node);
    std::free(node->Son);
    std::free(node);
  } else {
    DeleteNode(tree, node);
  }
  return nullptr;
}

void Clean(TreeNode* node, int low, int bound) {
  if (!node) return;
  if (low <= node->Length && node->Length < bound) FreeArrays(node);
  for (int s = 0; s < node->NumOfSon; ++s) Clean(node->Son[s], low, bound);
}

CandidateTree::~CandidateTree() { FreeTree(*this, AllSet); }

TreeNode* CandidateTree::NewRoot() {
  AllSet = FreeTree(*this, AllSet);
  TreeSize = 0;
  AllSet = static_cast<TreeNode*>(XCalloc(1, sizeof(TreeNode)));
  return AllSet;
}
