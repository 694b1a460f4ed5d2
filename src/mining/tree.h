// The candidate tree: one node per candidate itemset, the sons of a node
// extending its itemset by one larger item.
#pragma once

#include <cstdio>

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

// The tree owns its nodes: the root AllSet and everything under it go with
// the tree. TreeSize counts the live nodes, the root not counted.
class CandidateTree {
 public:
  CandidateTree() = default;
  ~CandidateTree();
  CandidateTree(const CandidateTree&) = delete;
  CandidateTree& operator=(const CandidateTree&) = delete;

  // Releases every node and makes a new zero-filled root.
  TreeNode* NewRoot();

  TreeNode* AllSet = nullptr;
  int TreeSize = 0;
};

struct ItemCounts;

TreeNode* NewNode(CandidateTree& tree, TreeNode* parent, int item, const ItemCounts& counts, int maxData);
TreeNode* AddSon(CandidateTree& tree, TreeNode* parent, TreeNode* sibling, const int* flags,
                 const int* subSupports, TreeNode* const* subNodes);
TreeNode* NewEmptyNode(CandidateTree& tree, TreeNode* parent, int item, int maxItem);
TreeNode* DeleteNode(CandidateTree& tree, TreeNode* node);
int ReOrderSon(TreeNode* node);
TreeNode* FreeTree(CandidateTree& tree, TreeNode* node);
void Clean(TreeNode* node, int low, int bound);
// Links a new son after the parent's last one, growing Son by 10 slots when
// no free slot would remain.
void LinkSon(TreeNode* parent, TreeNode* son);
