// The candidate tree: node creation, linking, deletion, compaction, release.
#include <cstdlib>
#include <cstring>

#include "readfile.h"
#include "rule.h"
#include "rulegen.h"

TreeNode* AllSet = nullptr;
int TreeSize = 0;

namespace {

TreeNode* NewRecord() { return static_cast<TreeNode*>(XCalloc(1, sizeof(TreeNode))); }

void FreeArrays(TreeNode* node) {
  std::free(node->ItemSet);
  std::free(node->SubSupport);
  std::free(node->SubNode);
  std::free(node->TargetFlag);
  std::free(node->Confidence);
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

TreeNode* NewNode(TreeNode* parent, int item) {
  TreeNode* node = NewRecord();
  node->ItemSet = XAllocArray<short>(2);
  node->SubSupport = XAllocArray<int>(2);
  node->SubNode = XAllocArray<TreeNode*>(2);
  node->TargetFlag = XAllocArray<short>(2);
  node->Confidence = XAllocArray<float>(2);
  node->Son = XAllocArray<TreeNode*>(10);

  node->Item = static_cast<short>(item);
  node->ItemSet[0] = static_cast<short>(item);
  node->Length = 1;
  node->Token = 0;
  node->NumOfTarget = 1;
  node->NumOfSon = 0;
  node->SonCapacity = 10;
  node->Cursor = 0;
  node->Parent = parent;

  node->Support = Counter1[item];
  node->SubSupport[0] = MaxData;
  node->Confidence[0] = static_cast<float>(static_cast<double>(Counter1[item]) / MaxData);
  node->TargetFlag[0] = static_cast<short>(65535);
  TreeSize += 1;
  return node;
}

TreeNode* AddSon(TreeNode* parent, TreeNode* sibling, const int* flags, const int* subSupports,
                 TreeNode* const* subNodes) {
  TreeNode* node = NewRecord();
  const int k = parent->Length + 1;
  const size_t room = static_cast<size_t>(parent->Length) + 2;
  node->ItemSet = XAllocArray<short>(room);
  node->TargetFlag = XAllocArray<short>(room);
  node->Confidence = XAllocArray<float>(room);
  node->SubSupport = XAllocArray<int>(room);
  node->SubNode = XAllocArray<TreeNode*>(room);
  node->Son = XAllocArray<TreeNode*>(10);

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
  TreeSize += 1;
  return node;
}

TreeNode* NewEmptyNode(TreeNode* parent, int item) {
  TreeNode* node = NewRecord();
  node->ItemSet = XAllocArray<short>(static_cast<size_t>(parent->Length) + 2);
  node->Son = XAllocArray<TreeNode*>(static_cast<size_t>(MaxItem > 0 ? MaxItem : 1));
  node->SonCapacity = MaxItem;
  if (parent->Length > 0) std::memcpy(node->ItemSet, parent->ItemSet, sizeof(short) * parent->Length);
  node->ItemSet[parent->Length] = static_cast<short>(item);
  node->Item = static_cast<short>(item);
  node->Length = static_cast<short>(parent->Length + 1);
  node->Support = 0;
  node->NumOfSon = 0;
  node->Cursor = 0;
  node->Token = -2;
  node->Parent = parent;
  TreeSize += 1;
  return node;
}

TreeNode* DeleteNode(TreeNode* node) {
  if (!node) return nullptr;
  if (node->Parent) node->Parent->NumOfSon -= 1;
  FreeArrays(node);
  std::free(node->Son);
  std::free(node);
  TreeSize -= 1;
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

TreeNode* FreeTree(TreeNode* node) {
  if (!node) return nullptr;
  const int sons = node->NumOfSon;
  for (int s = 0; s < sons; ++s) node->Son[s] = FreeTree(node->Son[s]);
  if (node->Item == -1) {
    // The root is a plain record: its own arrays go with it.
    FreeArrays(node);
    std::free(node->Son);
    std::free(node);
  } else {
    DeleteNode(node);
  }
  return nullptr;
}

void Clean(TreeNode* node, int low, int bound) {
  if (!node) return;
  if (low <= node->Length && node->Length < bound) FreeArrays(node);
  for (int s = 0; s < node->NumOfSon; ++s) Clean(node->Son[s], low, bound);
}
