// The candidate tree: node creation, linking, deletion, compaction, release.
#include <cstdlib>
#include <cstring>

#include "base/memory.h"
#include "mining/mining.h"
#include "mining/tree.h"

// ---- The arena ----

NodeArena::~NodeArena() {
  for (void* chunk : chunks_) std::free(chunk);
}

void* NodeArena::Take(size_t granules) {
  if (granules >= free_.size()) free_.resize(granules + 1, nullptr);
  if (free_[granules]) {
    FreeBlock* block = free_[granules];
    free_[granules] = block->Next;
    std::memset(static_cast<void*>(block), 0, granules * kGranule);
    return block;
  }
  const size_t bytes = granules * kGranule;
  if (bytes > left_) {
    // Chunks double from 16 KB to 1 MB, so a small run reserves little; the
    // tail of the last chunk is left unused.
    size_t size = chunks_.empty() ? size_t{16} << 10 : reserved_;
    if (size > (size_t{1} << 20)) size = size_t{1} << 20;
    if (size < bytes) size = bytes;
    chunks_.reserve(chunks_.size() + 1);
    void* chunk = XCalloc(1, size);
    chunks_.push_back(chunk);
    reserved_ += size;
    next_ = static_cast<char*>(chunk);
    left_ = size;
  }
  void* block = next_;
  next_ += bytes;
  left_ -= bytes;
  return block;
}

void NodeArena::Give(void* block, size_t granules) {
  // Giving never allocates (it runs while a tree is released): a block of a
  // size this arena has never handed out stays unused until the chunks go.
  if (!block || granules >= free_.size()) return;
  FreeBlock* freed = static_cast<FreeBlock*>(block);
  freed->Next = free_[granules];
  free_[granules] = freed;
}

namespace {

// A node and its per-position arrays in one zero-filled block of the arena,
// the arrays sized for `room` positions. An empty node has an item list only.
TreeNode* NewRecord(NodeArena& arena, size_t room, bool withTargets) {
  const size_t pointers = sizeof(TreeNode*) * room;
  const size_t words = sizeof(int) * room;
  const size_t halves = sizeof(short) * room;
  static_assert(sizeof(TreeNode) % alignof(TreeNode*) == 0, "the arrays follow the record aligned");
  const size_t size = sizeof(TreeNode) + halves + (withTargets ? pointers + 2 * words + halves : 0);
  const size_t granules = (size + NodeArena::kGranule - 1) / NodeArena::kGranule;
  char* block = static_cast<char*>(arena.Take(granules));
  TreeNode* node = reinterpret_cast<TreeNode*>(block);
  node->Granules = static_cast<unsigned short>(granules);
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
  if (!parent->Son) {
    parent->SonCapacity = 10;
    parent->Son = XAllocArray<TreeNode*>(10);
  }
  parent->Son[parent->NumOfSon] = son;
  parent->NumOfSon += 1;
  if (parent->NumOfSon >= parent->SonCapacity - 1) {
    const int grown = parent->SonCapacity + (parent->SonCapacity < 20 ? 10 : parent->SonCapacity / 2);
    parent->Son = static_cast<TreeNode**>(XRealloc(parent->Son, sizeof(TreeNode*) * static_cast<size_t>(grown)));
    parent->SonCapacity = grown;
  }
}

TreeNode* NewNode(CandidateTree& tree, TreeNode* parent, int item, const ItemCounts& counts, int maxData) {
  TreeNode* node = NewRecord(tree.Arena(), 2, true);

  node->Item = static_cast<short>(item);
  node->ItemSet[0] = static_cast<short>(item);
  node->Length = 1;
  node->Token = 0;
  node->NumOfTarget = 1;
  node->Parent = parent;

  node->Support = counts.Counter1[item];
  node->SubSupport[0] = maxData;
  node->Confidence[0] = static_cast<float>(static_cast<double>(counts.Counter1[item]) / maxData);
  node->TargetFlag[0] = static_cast<short>(65535);
  tree.TreeSize += 1;
  return node;
}

TreeNode* MakeSon(NodeArena& arena, TreeNode* parent, TreeNode* sibling, const int* flags, const int* subSupports,
                  TreeNode* const* subNodes) {
  const int k = parent->Length + 1;
  TreeNode* node = NewRecord(arena, static_cast<size_t>(parent->Length) + 2, true);

  node->Length = static_cast<short>(k);
  if (parent->Length > 0) std::memcpy(node->ItemSet, parent->ItemSet, sizeof(short) * parent->Length);
  node->ItemSet[k - 1] = sibling->Item;
  node->Item = sibling->Item;
  node->Token = 0;
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
  return node;
}

TreeNode* AddSon(CandidateTree& tree, TreeNode* parent, TreeNode* sibling, const int* flags, const int* subSupports,
                 TreeNode* const* subNodes) {
  TreeNode* node = MakeSon(tree.Arena(), parent, sibling, flags, subSupports, subNodes);
  tree.TreeSize += 1;
  return node;
}

TreeNode* NewEmptyNode(CandidateTree& tree, TreeNode* parent, int item, int maxItem) {
  const int slots = maxItem > 0 ? maxItem : 1;
  TreeNode** sons = XAllocArray<TreeNode*>(static_cast<size_t>(slots));
  TreeNode* node = nullptr;
  try {
    node = NewRecord(tree.Arena(), static_cast<size_t>(parent->Length) + 2, false);
  } catch (...) {
    std::free(sons);
    throw;
  }
  node->Son = sons;
  node->SonCapacity = maxItem;
  if (parent->Length > 0) std::memcpy(node->ItemSet, parent->ItemSet, sizeof(short) * parent->Length);
  node->ItemSet[parent->Length] = static_cast<short>(item);
  node->Item = static_cast<short>(item);
  node->Length = static_cast<short>(parent->Length + 1);
  node->Token = -2;
  node->Parent = parent;
  tree.TreeSize += 1;
  return node;
}

TreeNode* DeleteNode(CandidateTree& tree, TreeNode* node) {
  if (!node) return nullptr;
  if (node->Parent) node->Parent->NumOfSon -= 1;
  std::free(node->Son);
  // A record not from an arena (Granules 0, like the root) is freed alone.
  if (node->Granules == 0) std::free(node);
  else tree.Arena().Give(node, node->Granules);
  tree.TreeSize -= 1;
  return nullptr;
}

// Packs the non-null sons to the front, in order, until NumOfSon are placed,
// then shrinks Son to NumOfSon + 1 slots. Returns 1 if more than one son was
// packed. A node that never had a son keeps no array.
int ReOrderSon(TreeNode* node) {
  if (!node->Son) return 0;
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

CandidateTree::CandidateTree() { arenas_.push_back(std::make_unique<NodeArena>()); }

namespace {

// Frees the son arrays under node (the records go with the arenas).
void FreeSonArrays(TreeNode* node) {
  const int sons = node->NumOfSon;
  for (int s = 0, found = 0; found < sons && s < node->SonCapacity; ++s) {
    if (!node->Son[s]) continue;
    FreeSonArrays(node->Son[s]);
    ++found;
  }
  std::free(node->Son);
}

}  // namespace

CandidateTree::~CandidateTree() {
  // The arenas release every node record at once; only the son arrays and
  // the root are the tree's to free one by one.
  if (!AllSet) return;
  FreeSonArrays(AllSet);
  std::free(AllSet);
}

void CandidateTree::ReserveArenas(size_t count) {
  while (arenas_.size() < count) arenas_.push_back(std::make_unique<NodeArena>());
}

size_t CandidateTree::ArenaBytes() const {
  size_t bytes = 0;
  for (const auto& arena : arenas_) bytes += arena->Reserved();
  return bytes;
}

TreeNode* CandidateTree::NewRoot() {
  if (AllSet) {
    FreeSonArrays(AllSet);
    std::free(AllSet);
    AllSet = nullptr;
  }
  TreeSize = 0;
  // Every node is gone: the chunks go with them. (The cleared vector keeps
  // its capacity, so the push cannot fail.)
  auto fresh = std::make_unique<NodeArena>();
  arenas_.clear();
  arenas_.push_back(std::move(fresh));
  AllSet = static_cast<TreeNode*>(XCalloc(1, sizeof(TreeNode)));
  AllSet->Item = -1;
  return AllSet;
}
