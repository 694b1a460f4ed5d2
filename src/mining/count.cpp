// Item and pair counts, the first two layers of the tree, and support
// counting of the newer layers by one sweep of each row through the tree.
#include <cstdio>
#include <cstdlib>
#include <cstdint>
#include <vector>

#include "base/memory.h"
#include "mining/mining.h"

ItemCounts::~ItemCounts() {
  FreeCount(*this);
  std::free(Counter1);
}

void InitialCount(ItemCounts& counts, const DataSet& data) {
  FreeCount(counts);
  std::free(counts.Counter1);
  counts.Counter1 = nullptr;
  const size_t n = static_cast<size_t>(data.MaxItem) + 2;
  counts.Size = static_cast<int>(n);
  counts.Counter1 = XAllocArray<int>(n);
  counts.Counter2 = XAllocArray<int*>(n);
  // One zero-filled block for the square table; pages never touched are
  // never made resident.
  int* block = static_cast<int*>(XCalloc(n * n, sizeof(int)));
  for (size_t a = 0; a < n; ++a) counts.Counter2[a] = block + a * n;
}

void Counting(ItemCounts& counts, const DataSet& data) {
  const int columns = data.RealAtt;
  for (int r = 0; r < data.MaxData; ++r) {
    const short* row = data.DataSpace[r];
    for (int i = 0; i < columns; ++i) {
      const int a = row[i];
      counts.Counter1[a] += 1;
      int* pairs = counts.Counter2[a];
      for (int j = i + 1; j < columns; ++j) pairs[row[j]] += 1;
    }
  }
}

void InitWholeTree(CandidateTree& tree, TreeNode* root, const ItemCounts& counts, const DataSet& data, int gMinSup,
                   std::FILE* out) {
  tree.TreeSize = 0;
  root->NumOfSon = 0;
  root->Parent = nullptr;
  root->Item = -1;
  root->Length = 0;
  root->Support = data.MaxData;
  std::free(root->Son);
  root->Son = XAllocArray<TreeNode*>(static_cast<size_t>(data.MaxItem) + 1);
  root->SonCapacity = data.MaxItem + 1;

  for (int c = 1; c <= data.MaxItem; ++c) {
    if (counts.Counter1[c] >= gMinSup) root->Son[root->NumOfSon++] = NewNode(tree, root, c, counts, data.MaxData);
  }
  std::fprintf(out, "The first layer tree size is %d \n", root->NumOfSon);

  for (int i = 0; i < root->NumOfSon - 1; ++i) {
    TreeNode* n = root->Son[i];
    n->NumOfSon = 0;
    for (int j = i + 1; j < root->NumOfSon; ++j) {
      TreeNode* m = root->Son[j];
      const int count = counts.Counter2[n->Item][m->Item];
      if (count >= gMinSup) {
        TreeNode* son = AddSon(tree, n, m, nullptr, nullptr, nullptr);
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

void FreeCount(ItemCounts& counts) {
  if (!counts.Counter2) return;
  std::free(counts.Counter2[0]);
  std::free(counts.Counter2);
  counts.Counter2 = nullptr;
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

int Sweep(TreeNode* root, const short* row, int layer, int realAtt, ReachedList& reached) {
  if (!root) return 0;
  reached.Reset();
  root->Cursor = 0;
  for (int c = 0; c < realAtt; ++c) {
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

// Population count of the rows in both sets (first may be null: every row).
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
__attribute__((target_clones("popcnt", "default")))
#endif
size_t CountBoth(const uint64_t* first, const uint64_t* second, size_t words) {
  size_t count = 0;
  if (!first) {
    for (size_t w = 0; w < words; ++w) count += static_cast<size_t>(__builtin_popcountll(second[w]));
  } else {
    for (size_t w = 0; w < words; ++w) count += static_cast<size_t>(__builtin_popcountll(first[w] & second[w]));
  }
  return count;
}

// out = first & second (first null: every row); true when any row is left.
bool Intersect(const uint64_t* first, const uint64_t* second, uint64_t* out, size_t words) {
  uint64_t any = 0;
  if (!first) {
    for (size_t w = 0; w < words; ++w) any |= (out[w] = second[w]);
  } else {
    for (size_t w = 0; w < words; ++w) any |= (out[w] = first[w] & second[w]);
  }
  return any != 0;
}

// The rows of each layer-1 item as a bit set.
// Walking the tree depth first with the intersection of the rows of the
// items on the path counts every node of a layer from the rows that contain
// its whole itemset: the same supports as sweeping each row through the
// tree, with the work shared along common prefixes.
class VerticalIndex {
 public:
  // Builds the row sets of the items of the root's sons; false when they
  // would take more than the memory budget.
  bool Build(const TreeNode* root, const DataSet& data) {
    maxItem_ = data.MaxItem;
    words_ = (static_cast<size_t>(data.MaxData) + 63) / 64;
    slot_.assign(static_cast<size_t>(maxItem_) + 2, -1);
    size_t items = 0;
    for (int s = 0; s < root->NumOfSon; ++s) {
      const TreeNode* son = root->Son[s];
      if (son && son->Item > 0 && son->Item <= maxItem_ && slot_[son->Item] < 0)
        slot_[son->Item] = static_cast<int>(items++);
    }
    if (items * words_ * sizeof(uint64_t) > kBudget) return false;
    bits_.assign(items * words_, 0);
    for (int r = 0; r < data.MaxData; ++r) {
      const short* row = data.DataSpace[r];
      const uint64_t bit = uint64_t{1} << (r % 64);
      const size_t word = static_cast<size_t>(r) / 64;
      for (int c = 0; c < data.RealAtt; ++c) {
        const int x = row[c];
        if (x > 0 && x <= maxItem_ && slot_[x] >= 0) bits_[static_cast<size_t>(slot_[x]) * words_ + word] |= bit;
      }
    }
    return true;
  }

  void Count(TreeNode* root, int layer) {
    layer_ = layer;
    stack_.assign(static_cast<size_t>(layer > 0 ? layer : 1) * words_, 0);
    Walk(root, nullptr, 0);
  }

 private:
  static constexpr size_t kBudget = size_t{512} << 20;

  const uint64_t* Rows(int item) const {
    if (item <= 0 || item > maxItem_ || slot_[item] < 0) return nullptr;
    return bits_.data() + static_cast<size_t>(slot_[item]) * words_;
  }

  // Walks the sons of node, whose rows are `rows` (null: every row).
  void Walk(TreeNode* node, const uint64_t* rows, int depth) {
    for (int s = 0; s < node->NumOfSon; ++s) {
      TreeNode* son = node->Son[s];
      if (!son) continue;
      const uint64_t* own = Rows(son->Item);
      if (son->Length == layer_) {
        son->Support += own ? CountBoth(rows, own, words_) : 0;
        continue;
      }
      if (son->Length > layer_ || son->NumOfSon == 0 || !own) continue;
      uint64_t* next = stack_.data() + static_cast<size_t>(depth) * words_;
      if (Intersect(rows, own, next, words_)) Walk(son, next, depth + 1);
    }
  }

  size_t words_ = 0;
  int maxItem_ = 0;
  std::vector<int> slot_;
  std::vector<uint64_t> bits_;
  std::vector<uint64_t> stack_;
  int layer_ = 0;
};

}  // namespace

int CountbyTree(TreeNode* root, const short* row, int layer, int realAtt) {
  ReachedList reached;
  return Sweep(root, row, layer, realAtt, reached);
}

int Verification(TreeNode* root, int layer, const DataSet& data) {
  if (!root) return 1;
  {
    VerticalIndex vertical;
    if (vertical.Build(root, data)) {
      vertical.Count(root, layer);
      return 1;
    }
  }
  // Too many rows and items for the bit sets: sweep each row through the tree.
  ReachedList reached;
  for (int r = 0; r < data.MaxData; ++r) Sweep(root, data.DataSpace[r], layer, data.RealAtt, reached);
  return 1;
}
