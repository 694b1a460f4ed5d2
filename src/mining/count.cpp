// Item and pair counts, the first two layers of the tree, and support
// counting of the newer layers over bit sets of the rows.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstdint>
#include <vector>

#include "base/memory.h"
#include "base/parallel.h"
#include "mining/bit_counting.h"
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
  counts.Rank.assign(n, -1);
  counts.Ranked = 0;
}

void RankItems(ItemCounts& counts, int maxItem, int gMinSup) {
  FreeCount(counts);
  counts.Rank.assign(static_cast<size_t>(counts.Size), -1);
  int ranked = 0;
  for (int c = 1; c <= maxItem && c < counts.Size; ++c) {
    if (counts.Counter1[c] >= gMinSup) counts.Rank[static_cast<size_t>(c)] = ranked++;
  }
  counts.Ranked = ranked;
  const size_t cells = static_cast<size_t>(ranked) * static_cast<size_t>(ranked > 0 ? ranked - 1 : 0) / 2;
  // Zero-filled by calloc: pages of pairs never counted are never touched.
  counts.Pairs = static_cast<int*>(XCalloc(cells ? cells : 1, sizeof(int)));
}

namespace {

// Counts the pairs whose smaller rank lies in [low, high), over every case.
void CountPairs(ItemCounts& counts, const DataSet& data, int low, int high) {
  const int columns = data.RealAtt;
  std::vector<int> ranks(static_cast<size_t>(columns > 0 ? columns : 1));
  const int* rankOf = counts.Rank.data();
  int* pairs = counts.Pairs;
  for (int r = 0; r < data.MaxData; ++r) {
    const short* row = data.DataSpace[r];
    int n = 0;
    for (int i = 0; i < columns; ++i) {
      const int rank = rankOf[row[i]];
      if (rank >= 0) ranks[static_cast<size_t>(n++)] = rank;
    }
    for (int i = 0; i + 1 < n; ++i) {
      const int a = ranks[static_cast<size_t>(i)];
      if (a < low || a >= high) continue;
      // Row a of the triangle, indexed by the larger rank b.
      int* cells = pairs + counts.PairRow(a) - a - 1;
      for (int j = i + 1; j < n; ++j) {
        const int b = ranks[static_cast<size_t>(j)];
        if (b > a) cells[b] += 1;
      }
    }
  }
}

}  // namespace

void Counting(ItemCounts& counts, const DataSet& data, int gMinSup, int threads, double threadWork) {
  const int columns = data.RealAtt;
  for (int r = 0; r < data.MaxData; ++r) {
    const short* row = data.DataSpace[r];
    for (int i = 0; i < columns; ++i) counts.Counter1[row[i]] += 1;
  }
  RankItems(counts, data.MaxItem, gMinSup);
  if (counts.Ranked < 2) return;

  // The pairs of a case are counted under the smaller rank: split the ranks
  // into ranges of about equal work, each range counted by one thread over
  // every case. Work of a rank: its cases times the columns after its own.
  const size_t ranked = static_cast<size_t>(counts.Ranked);
  std::vector<double> work(ranked, 0.0);
  double total = 0;
  for (int c = 1; c <= data.MaxItem; ++c) {
    const int rank = counts.Rank[static_cast<size_t>(c)];
    if (rank < 0) continue;
    const int column = static_cast<size_t>(c) < data.Attribute.size() ? data.Attribute[static_cast<size_t>(c)] : 0;
    const int later = std::max(1, columns - 1 - column);
    work[static_cast<size_t>(rank)] = static_cast<double>(counts.Counter1[c]) * later;
    total += work[static_cast<size_t>(rank)];
  }
  const int parts = ThreadsFor(threads, total, threadWork);
  std::vector<int> bounds{0};
  double sum = 0;
  for (size_t r = 0; r < ranked && static_cast<int>(bounds.size()) < parts; ++r) {
    sum += work[r];
    if (sum >= total * static_cast<double>(bounds.size()) / parts) bounds.push_back(static_cast<int>(r) + 1);
  }
  if (bounds.back() != counts.Ranked) bounds.push_back(counts.Ranked);
  RunUnits(parts, bounds.size() - 1,
           [&](int, size_t part) { CountPairs(counts, data, bounds[part], bounds[part + 1]); });
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
  root->Son = nullptr;
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
      const int count = counts.Pair(n->Item, m->Item);
      if (count >= gMinSup) {
        TreeNode* son = AddSon(tree, n, m, nullptr, nullptr, nullptr);
        LinkSon(n, son);
        son->Support = count;
      }
    }
  }
}

void FreeCount(ItemCounts& counts) {
  std::free(counts.Pairs);
  counts.Pairs = nullptr;
}

// ---- Row sets ----

std::vector<int> RowSets::SecondLayerItems(const TreeNode* root) {
  std::vector<int> items;
  if (!root) return items;
  std::vector<char> seen;
  auto note = [&](int item) {
    if (item <= 0) return;
    if (static_cast<size_t>(item) >= seen.size()) seen.resize(static_cast<size_t>(item) + 1, 0);
    if (!seen[static_cast<size_t>(item)]) {
      seen[static_cast<size_t>(item)] = 1;
      items.push_back(item);
    }
  };
  for (int s = 0; s < root->NumOfSon; ++s) {
    const TreeNode* first = root->Son[s];
    if (!first || first->NumOfSon == 0) continue;
    note(first->Item);
    for (int t = 0; t < first->NumOfSon; ++t)
      if (first->Son[t]) note(first->Son[t]->Item);
  }
  std::sort(items.begin(), items.end());
  return items;
}

size_t RowSets::Bytes(size_t items, size_t rows) { return items * ((rows + 63) / 64) * sizeof(uint64_t); }

void RowSets::Build(const std::vector<int>& items, const DataSet& data, int first, int count, int threads,
                    double threadWork) {
  words_ = (static_cast<size_t>(count) + 63) / 64;
  int largest = 0;
  for (int item : items) largest = std::max(largest, item);
  slot_.assign(static_cast<size_t>(largest) + 1, -1);
  for (size_t i = 0; i < items.size(); ++i) slot_[static_cast<size_t>(items[i])] = static_cast<int>(i);
  bits_.assign(items.size() * words_, 0);
  if (items.empty() || words_ == 0) return;
  // Each thread sets the bits of its own words: runs of 64 rows.
  const size_t parts =
      static_cast<size_t>(ThreadsFor(threads, static_cast<double>(count) * std::max(1, data.RealAtt), threadWork));
  const size_t wordsPerPart = (words_ + parts - 1) / parts;
  const int* slots = slot_.data();
  const int slotCount = static_cast<int>(slot_.size());
  RunUnits(static_cast<int>(parts), parts, [&](int, size_t part) {
    const size_t fromWord = part * wordsPerPart;
    const size_t toWord = std::min(words_, fromWord + wordsPerPart);
    for (size_t w = fromWord; w < toWord; ++w) {
      const int last = std::min(count, static_cast<int>((w + 1) * 64));
      for (int r = static_cast<int>(w * 64); r < last; ++r) {
        const short* row = data.DataSpace[first + r];
        const uint64_t bit = uint64_t{1} << (r % 64);
        for (int c = 0; c < data.RealAtt; ++c) {
          const int x = row[c];
          if (x > 0 && x < slotCount && slots[x] >= 0) bits_[static_cast<size_t>(slots[x]) * words_ + w] |= bit;
        }
      }
    }
  });
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

}  // namespace

// ---- Bit-set counting ----

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

bool Intersect(const uint64_t* first, const uint64_t* second, uint64_t* out, size_t words) {
  uint64_t any = 0;
  if (!first) {
    for (size_t w = 0; w < words; ++w) any |= (out[w] = second[w]);
  } else {
    for (size_t w = 0; w < words; ++w) any |= (out[w] = first[w] & second[w]);
  }
  return any != 0;
}

std::vector<TreeNode*> CountingUnits(TreeNode* root, int layer) {
  // Layer 3 is shared out by first item; deeper layers by first two items,
  // which spreads the work of a deep tree more evenly.
  std::vector<TreeNode*> units;
  for (int s = 0; s < root->NumOfSon; ++s) {
    TreeNode* first = root->Son[s];
    if (!first || first->NumOfSon == 0) continue;
    if (layer <= 3) {
      units.push_back(first);
      continue;
    }
    for (int t = 0; t < first->NumOfSon; ++t)
      if (first->Son[t] && first->Son[t]->NumOfSon > 0) units.push_back(first->Son[t]);
  }
  return units;
}

const uint64_t* RowsOfUnit(const TreeNode* unit, const RowSets& sets, uint64_t* scratch) {
  if (unit->Length == 1) return sets.Of(unit->Item);
  const uint64_t* a = sets.Of(unit->ItemSet[0]);
  const uint64_t* b = sets.Of(unit->Item);
  if (!a || !b) return nullptr;
  Intersect(a, b, scratch, sets.Words());
  return scratch;
}

namespace {

// Walks the sons of node, whose rows are `rows`, adding to each node of the
// layer the rows holding it; stack holds a row set per depth below.
void Walk(TreeNode* node, const uint64_t* rows, int layer, const RowSets& sets, uint64_t* stack) {
  const size_t words = sets.Words();
  for (int s = 0; s < node->NumOfSon; ++s) {
    TreeNode* son = node->Son[s];
    if (!son) continue;
    const uint64_t* own = sets.Of(son->Item);
    if (son->Length == layer) {
      son->Support += own ? static_cast<int>(CountBoth(rows, own, words)) : 0;
      continue;
    }
    if (son->Length > layer || son->NumOfSon == 0 || !own) continue;
    if (Intersect(rows, own, stack, words)) Walk(son, stack, layer, sets, stack + words);
  }
}

}  // namespace

int CountbyTree(TreeNode* root, const short* row, int layer, int realAtt) {
  ReachedList reached;
  return Sweep(root, row, layer, realAtt, reached);
}

int Verification(TreeNode* root, int layer, const DataSet& data, const CountingSettings& settings) {
  if (!root || data.MaxData == 0 || layer < 3) return 1;
  const std::vector<int> items = RowSets::SecondLayerItems(root);
  if (items.empty()) return 1;
  const std::vector<TreeNode*> units = CountingUnits(root, layer);
  if (units.empty()) return 1;

  size_t blockRows;
  if (settings.BlockRows > 0) {
    blockRows = (static_cast<size_t>(settings.BlockRows) + 63) / 64 * 64;
  } else {
    const size_t perRow64 = RowSets::Bytes(items.size(), 64);
    blockRows = std::max<size_t>(1, settings.BlockBudget / perRow64) * 64;
    if (RowSets::Bytes(items.size(), static_cast<size_t>(data.MaxData)) <= settings.WholeBudget)
      blockRows = static_cast<size_t>(data.MaxData);
  }
  const int threads = ThreadsFor(settings.Threads, static_cast<double>(units.size()) * static_cast<double>(layer) *
                                                      static_cast<double>(blockRows / 64 + 1),
                                    settings.ThreadWork);
  RowSets sets;
  std::vector<std::vector<uint64_t>> stacks(static_cast<size_t>(threads));
  for (size_t first = 0; first < static_cast<size_t>(data.MaxData); first += blockRows) {
    const size_t count = std::min(blockRows, static_cast<size_t>(data.MaxData) - first);
    sets.Build(items, data, static_cast<int>(first), static_cast<int>(count), threads, settings.ThreadWork);
    const size_t words = sets.Words();
    for (auto& stack : stacks) stack.assign(static_cast<size_t>(layer + 1) * words, 0);
    // Each unit owns its subtree: the threads never add to the same node.
    RunUnits(threads, units.size(), [&](int thread, size_t u) {
      uint64_t* stack = stacks[static_cast<size_t>(thread)].data();
      const uint64_t* rows = RowsOfUnit(units[u], sets, stack);
      if (rows) Walk(units[u], rows, layer, sets, stack + words);
    });
  }
  return 1;
}
