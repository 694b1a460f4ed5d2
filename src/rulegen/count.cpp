// Item and pair counts, the first two layers of the tree, and support
// counting of the newer layers by one sweep of each row through the tree.
#include <cstdio>
#include <cstdlib>

#include "readfile.h"
#include "rule.h"
#include "rulegen.h"

int* Counter1 = nullptr;
int** Counter2 = nullptr;

namespace {
int CounterSize = 0;  // entries per table dimension when allocated
}

void InitialCount() {
  FreeCount();
  std::free(Counter1);
  const size_t n = static_cast<size_t>(MaxItem) + 2;
  CounterSize = static_cast<int>(n);
  Counter1 = XAllocArray<int>(n);
  Counter2 = XAllocArray<int*>(n);
  // One zero-filled block for the square table; pages never touched are
  // never made resident.
  int* block = static_cast<int*>(XCalloc(n * n, sizeof(int)));
  for (size_t a = 0; a < n; ++a) Counter2[a] = block + a * n;
}

void Counting() {
  const int columns = RealAtt;
  for (int r = 0; r < MaxData; ++r) {
    const short* row = DataSpace[r];
    for (int i = 0; i < columns; ++i) {
      const int a = row[i];
      Counter1[a] += 1;
      int* pairs = Counter2[a];
      for (int j = i + 1; j < columns; ++j) pairs[row[j]] += 1;
    }
  }
}

void InitWholeTree(TreeNode* root) {
  TreeSize = 0;
  root->NumOfSon = 0;
  root->Parent = nullptr;
  root->Item = -1;
  root->Length = 0;
  root->Support = MaxData;
  std::free(root->Son);
  root->Son = XAllocArray<TreeNode*>(static_cast<size_t>(MaxItem) + 1);
  root->SonCapacity = MaxItem + 1;

  for (int c = 1; c <= MaxItem; ++c) {
    if (Counter1[c] >= GMinSup) root->Son[root->NumOfSon++] = NewNode(root, c);
  }
  std::printf("The first layer tree size is %d \n", root->NumOfSon);

  for (int i = 0; i < root->NumOfSon - 1; ++i) {
    TreeNode* n = root->Son[i];
    n->NumOfSon = 0;
    for (int j = i + 1; j < root->NumOfSon; ++j) {
      TreeNode* m = root->Son[j];
      const int count = Counter2[n->Item][m->Item];
      if (count >= GMinSup) {
        TreeNode* son = AddSon(n, m, nullptr, nullptr, nullptr);
        n->Son[n->NumOfSon++] = son;
        son->Support = count;
      }
      if (n->NumOfSon >= n->SonCapacity - 1) {
        n->SonCapacity += 10;
        n->Son = static_cast<TreeNode**>(
            XRealloc(n->Son, sizeof(TreeNode*) * static_cast<size_t>(n->SonCapacity)));
      }
    }
  }
}

void FreeCount() {
  if (!Counter2) return;
  std::free(Counter2[0]);
  std::free(Counter2);
  Counter2 = nullptr;
}

namespace {

// Nodes reached by the current row; kept between rows to save allocations.
struct ReachedList {
  TreeNode** nodes = nullptr;
  int count = 0;
  int room = 0;
  void Reset() {
    if (!nodes) {
      room = 10;
      nodes = XAllocArray<TreeNode*>(static_cast<size_t>(room));
    }
    count = 0;
  }
  void Append(TreeNode* node) {
    nodes[count++] = node;
    if (count >= room) {
      room += room < 1000 ? 10 : room / 2;
      nodes = static_cast<TreeNode**>(XRealloc(nodes, sizeof(TreeNode*) * static_cast<size_t>(room)));
    }
  }
  ~ReachedList() { std::free(nodes); }
};

// Looks for a son with the given item from the node's Cursor on; the sons
// ascend, so the search stops at the first larger item.
inline int FindSon(const TreeNode* node, int item) {
  for (int s = node->Cursor; s < node->NumOfSon; ++s) {
    const int sonItem = node->Son[s]->Item;
    if (item < sonItem) return -1;
    if (item == sonItem) return s;
  }
  return -1;
}

int Sweep(TreeNode* root, const short* row, int layer, ReachedList& reached) {
  if (!root) return 0;
  reached.Reset();
  root->Cursor = 0;
  for (int c = 0; c < RealAtt; ++c) {
    const int x = row[c];
    const int before = reached.count;
    const int s = FindSon(root, x);
    if (s < 0) continue;  // no layer-1 node: no node of the tree has a son with x
    TreeNode* z = root->Son[s];
    root->Cursor = s + 1;
    z->Cursor = 0;
    // A node without sons can extend nothing: it need not be searched later.
    if (z->NumOfSon > 0) reached.Append(z);
    for (int e = 0; e < before; ++e) {
      TreeNode* p = reached.nodes[e];
      const int t = FindSon(p, x);
      if (t < 0) continue;
      TreeNode* son = p->Son[t];
      if (p->Length == layer - 1) son->Support += 1;
      p->Cursor = t + 1;
      son->Cursor = 0;
      if (son->NumOfSon > 0 && son->Length < layer) reached.Append(son);
    }
  }
  return 1;
}

}  // namespace

int CountbyTree(TreeNode* root, const short* row, int layer) {
  ReachedList reached;
  return Sweep(root, row, layer, reached);
}

int Verification(TreeNode* root, int layer) {
  ReachedList reached;
  for (int r = 0; r < MaxData; ++r) Sweep(root, DataSpace[r], layer, reached);
  return 1;
}
