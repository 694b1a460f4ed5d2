// The candidate tree: one node per candidate itemset, the sons of a node
// extending its itemset by one larger item.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <vector>

// One candidate itemset. Per-position arrays are indexed by the position of
// the item in ItemSet; position i holds the rule (itemset without item i) ->
// item i.
struct TreeNode {
  short Item;            // own item, last of ItemSet; -1 at the root
  short Token;           // 0 ordinary, 2 perfect rule seen, -2 empty node
  short Length;          // number of items
  unsigned short Granules;  // size of the node's block in the tree's arena, in 16-byte units
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
  TreeNode** Son;        // sons, ascending Item; null until the first son
  TreeNode* Parent;
};

// Node records carved from large chunks. A released record goes on a free
// list of its size and is handed out again; the chunks are released all at
// once with the arena. One thread at a time may use an arena.
class NodeArena {
 public:
  static constexpr size_t kGranule = 16;

  NodeArena() : free_(64, nullptr) {}
  ~NodeArena();
  NodeArena(const NodeArena&) = delete;
  NodeArena& operator=(const NodeArena&) = delete;

  // A zero-filled block of `granules` * kGranule bytes.
  void* Take(size_t granules);
  void Give(void* block, size_t granules);
  // Bytes held in chunks.
  size_t Reserved() const { return reserved_; }

 private:
  struct FreeBlock {
    FreeBlock* Next;
  };
  std::vector<void*> chunks_;
  char* next_ = nullptr;
  size_t left_ = 0;
  size_t reserved_ = 0;
  std::vector<FreeBlock*> free_;  // by granules
};

// The tree owns its nodes: the root AllSet and everything under it go with
// the tree. TreeSize counts the live nodes, the root not counted. The node
// records come from the tree's arenas: arena 0 for the calling thread, one
// more for each further thread that makes nodes at the same time.
class CandidateTree {
 public:
  CandidateTree();
  ~CandidateTree();
  CandidateTree(const CandidateTree&) = delete;
  CandidateTree& operator=(const CandidateTree&) = delete;

  // Releases every node and makes a new zero-filled root.
  TreeNode* NewRoot();
  // Makes sure arenas 0 .. count-1 exist (before threads use them).
  void ReserveArenas(size_t count);
  NodeArena& Arena(size_t index = 0) { return *arenas_[index]; }
  // Bytes held by the arenas.
  size_t ArenaBytes() const;

  TreeNode* AllSet = nullptr;
  int TreeSize = 0;

 private:
  std::vector<std::unique_ptr<NodeArena>> arenas_;
};

struct ItemCounts;

TreeNode* NewNode(CandidateTree& tree, TreeNode* parent, int item, const ItemCounts& counts, int maxData);
// The son of parent that adds sibling's item, with the live-target flags,
// supports and nodes of its subsets (positions 0 .. Length-2 of the new
// itemset; layer 2 needs none). Made in the given arena; TreeSize is left to
// the caller.
TreeNode* MakeSon(NodeArena& arena, TreeNode* parent, TreeNode* sibling, const int* flags, const int* subSupports,
                  TreeNode* const* subNodes);
// MakeSon in arena 0, counted in TreeSize.
TreeNode* AddSon(CandidateTree& tree, TreeNode* parent, TreeNode* sibling, const int* flags,
                 const int* subSupports, TreeNode* const* subNodes);
TreeNode* NewEmptyNode(CandidateTree& tree, TreeNode* parent, int item, int maxItem);
TreeNode* DeleteNode(CandidateTree& tree, TreeNode* node);
int ReOrderSon(TreeNode* node);
TreeNode* FreeTree(CandidateTree& tree, TreeNode* node);
void Clean(TreeNode* node, int low, int bound);
// Links a new son after the parent's last one, keeping at least one free
// slot after it (the array grows by half, ten slots at first).
void LinkSon(TreeNode* parent, TreeNode* son);
