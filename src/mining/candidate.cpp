// Candidate generation: joins sibling nodes into the next layer, keeping a
// candidate only when all its shorter subsets are in the tree, and passes on
// the live-target flags and the perfect-rule mark.
#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

#include "base/memory.h"
#include "base/parallel.h"
#include "mining/bit_counting.h"
#include "mining/mining.h"

namespace {

// The son of node with exactly this item, or null; the sons ascend, so the
// first son whose item is not below x decides.
TreeNode* FindExactSon(const TreeNode* node, int x) {
  int lo = 0;
  int hi = node->NumOfSon;
  while (lo < hi) {
    const int mid = lo + (hi - lo) / 2;
    if (node->Son[mid]->Item < x) lo = mid + 1;
    else hi = mid;
  }
  if (lo == node->NumOfSon || node->Son[lo]->Item != x) return nullptr;
  return node->Son[lo];
}

// The node of the itemset `items` without its position `skip` (skip < 0: the
// whole list), or null.
TreeNode* SearchWithout(const CandidateTree& tree, const int* items, int n, int skip) {
  TreeNode* node = tree.AllSet;
  if (!node) return nullptr;
  int length = 0;
  for (int i = 0; i < n; ++i) {
    if (i == skip) continue;
    node = FindExactSon(node, items[i]);
    if (!node) return nullptr;
    ++length;
  }
  if (node->Length != length || node->Token == -2) return nullptr;
  return node;
}

// The candidate tmp1 + sibling's item without its position p (p below
// tmp1's last position), or null. That itemset is tmp1's without position p,
// whose node tmp1 keeps in SubNode[p], plus the sibling's item, which is
// larger than all of them: one son look-up instead of a search from the root.
TreeNode* SubsetWithout(const CandidateTree& tree, const TreeNode* tmp1, const TreeNode* sibling, const int* items,
                        int p) {
  const TreeNode* base = tmp1->SubNode ? tmp1->SubNode[p] : nullptr;
  if (!base) return SearchWithout(tree, items, tmp1->Length + 1, p);
  TreeNode* node = FindExactSon(base, sibling->Item);
  if (!node || node->Length != tmp1->Length || node->Token == -2) return nullptr;
  return node;
}

// Working arrays of one layer's join, sized to the itemset length.
struct JoinWork {
  std::vector<int> items, flags, supports;
  std::vector<TreeNode*> nodes;
  explicit JoinWork(int k) : items(k), flags(k), supports(k), nodes(k) {}
};

// What one thread generates with: its arena and working arrays and, when
// candidates are counted as they are made, its row sets along the path.
struct JoinContext {
  JoinContext(CandidateTree& t, NodeArena& a, const DebugDump& d, int classes, const CandidateCounting* c, int k)
      : tree(t), arena(a), dump(d), classTargetsFrom(classes), counting(c), work(k) {
    if (counting) {
      const size_t words = counting->Rows->Words();
      stack.assign(static_cast<size_t>(k + 1) * words, 0);
      ownRows.assign(words, 0);
    }
  }
  CandidateTree& tree;
  NodeArena& arena;
  const DebugDump& dump;
  int classTargetsFrom;
  const CandidateCounting* counting;
  JoinWork work;
  std::vector<uint64_t> stack;    // one row set per depth of the walk
  std::vector<uint64_t> ownRows;  // the rows of the son being extended
  int made = 0;                   // nodes put into the tree
  int result = 0;
};

void PrintPermanentlyEmpty(std::FILE* out, const TreeNode* g, const TreeNode* tmp1, int n) {
  std::fprintf(out, "Permenately empty: ");
  std::fprintf(out, "Tmp1 node = %d, length = %d, numofsonbak = %d", tmp1->Item, tmp1->Length, n);
  for (int s = 0; s < n; ++s) {
    const TreeNode* x = g->Son[s];
    if (!x) continue;
    std::fprintf(out, " Node=%d: Last-1 = %d Last=%d,", x->Item, x->TargetFlag[x->Length - 2],
                x->TargetFlag[x->Length - 1]);
  }
}

// Joins the sons of g; `rows` are the rows holding g's itemset when the
// candidates are counted.
int Join(JoinContext& ctx, TreeNode* g, const uint64_t* rows) {
  const int n = g->NumOfSon;
  if (n < 2) return 0;
  JoinWork& w = ctx.work;
  const CandidateCounting* counting = ctx.counting;
  int result = 0;
  for (int i = 0; i <= n - 2; ++i) {
    TreeNode* tmp1 = g->Son[i];
    if (!tmp1) continue;
    tmp1->NumOfSon = 0;
    const int L = tmp1->Length;
    const uint64_t* tmp1Rows = nullptr;  // computed at its first candidate
    for (int j = i + 1; j <= n - 1; ++j) {
      TreeNode* sibling = g->Son[j];
      if (!sibling) continue;

      for (int p = 0; p < L; ++p) w.items[p] = tmp1->ItemSet[p];
      w.items[L] = sibling->Item;

      for (int p = 0; p <= L - 2; ++p)
        w.flags[p] = (tmp1->TargetFlag[p] != 0 && sibling->TargetFlag[p] != 0) ? 1 : 0;
      w.flags[L - 1] = tmp1->TargetFlag[L - 1];
      w.flags[L] = sibling->TargetFlag[L - 1];

      bool perfect = false;
      if (tmp1->Token == 2) w.flags[L] = 0;
      if (sibling->Token == 2) w.flags[L - 1] = 0;
      if (tmp1->Token == 2 || sibling->Token == 2) {
        perfect = true;
        bool allZero = true;
        for (int p = 0; p <= L; ++p) allZero = allZero && w.flags[p] == 0;
        if (allZero) continue;
      }

      bool complete = true;
      for (int p = 0; p <= L - 2; ++p) {
        TreeNode* subset = SubsetWithout(ctx.tree, tmp1, sibling, w.items.data(), p);
        if (!subset) {
          complete = false;
          break;
        }
        w.nodes[p] = subset;
        w.supports[p] = subset->Support;
      }
      if (!complete) continue;

      for (int p = 0; p <= L - 2; ++p) {
        const TreeNode* s = w.nodes[p];
        for (int m = 0; m < s->Length; ++m) {
          if (s->TargetFlag[m] == 0) w.flags[m < p ? m : m + 1] = 0;
        }
        if (s->Token == 2) perfect = true;
      }

      if (ctx.classTargetsFrom > 0) {
        // Only class rules are wanted: an itemset with a class item (the
        // largest item, so the last) serves only the rule with the class as
        // target, and one without serves as an antecedent unless it holds a
        // perfect rule, which makes its class rules redundant.
        if (w.items[L] >= ctx.classTargetsFrom ? w.flags[L] == 0 : perfect) continue;
      } else {
        int sum = 0;
        for (int p = 0; p <= L; ++p) sum += w.flags[p];
        if (sum == 0) {
          if (perfect) continue;
          bool liveSon = false;
          for (int s = 0; s < n && !liveSon; ++s) {
            const TreeNode* x = g->Son[s];
            liveSon = x && x->TargetFlag[x->Length - 1] != 0;
          }
          if (!liveSon) {
            if (ctx.dump.Debug) PrintPermanentlyEmpty(ctx.dump.Out, g, tmp1, n);
            continue;
          }
        }
      }

      // The candidate is made. Counted at once, it goes into the tree only
      // when frequent; rule selection would delete it otherwise.
      result = 1;
      int support = 0;
      if (counting) {
        const RowSets& sets = *counting->Rows;
        if (!tmp1Rows) {
          Intersect(rows, sets.Of(tmp1->Item), ctx.ownRows.data(), sets.Words());
          tmp1Rows = ctx.ownRows.data();
        }
        support = static_cast<int>(CountBoth(tmp1Rows, sets.Of(sibling->Item), sets.Words()));
        if (support < counting->MinSupport) continue;
      }
      TreeNode* node = MakeSon(ctx.arena, tmp1, sibling, w.flags.data(), w.supports.data(), w.nodes.data());
      ctx.made += 1;
      node->Support = support;
      if (perfect) node->Token = 2;
      LinkSon(tmp1, node);
    }
  }
  return result;
}

// Generates under node; `rows` are the rows holding node's itemset and
// `depth` the next free row set of the stack, when counting.
int Generate(JoinContext& ctx, TreeNode* node, int k, const uint64_t* rows, int depth) {
  if (!node) return 0;
  if (node->Length == k - 2) return Join(ctx, node, rows);
  if (node->Length == k - 1 || node->Length == k || node->NumOfSon == 0) return 0;
  int sum = 0;
  for (int s = 0; s < node->NumOfSon; ++s) {
    TreeNode* son = node->Son[s];
    const uint64_t* sonRows = nullptr;
    if (ctx.counting && son && son->NumOfSon > 0) {
      const RowSets& sets = *ctx.counting->Rows;
      uint64_t* next = ctx.stack.data() + static_cast<size_t>(depth) * sets.Words();
      Intersect(rows, sets.Of(son->Item), next, sets.Words());
      sonRows = next;
    }
    sum += Generate(ctx, son, k, sonRows, depth + 1);
  }
  return sum;
}

}  // namespace

int CandidateGen(CandidateTree& tree, TreeNode* node, int layer, const DebugDump& dump, int classTargetsFrom,
                 const CandidateCounting* counting) {
  const int k = layer > 0 ? layer + 1 : 2;
  if (!counting || !node || node->Length != 0 || layer < 3) {
    if (counting && node && node->Length != 0) counting = nullptr;  // only from the root
    JoinContext ctx(tree, tree.Arena(), dump, classTargetsFrom, counting, k);
    const int result = Generate(ctx, node, layer, nullptr, 0);
    tree.TreeSize += ctx.made;
    return result;
  }
  // Counted generation from the root, shared out by subtree.
  const std::vector<TreeNode*> units = CountingUnits(node, layer);
  // Work: about a row set per node below the units.
  const double work = static_cast<double>(tree.TreeSize) * static_cast<double>(counting->Rows->Words());
  const int threads = dump.Debug ? 1 : ThreadsFor(counting->Threads, work, counting->ThreadWork);
  tree.ReserveArenas(static_cast<size_t>(threads));
  std::vector<std::unique_ptr<JoinContext>> contexts;
  for (int t = 0; t < threads; ++t)
    contexts.push_back(std::make_unique<JoinContext>(tree, tree.Arena(static_cast<size_t>(t)), dump,
                                                      classTargetsFrom, counting, k));
  try {
    RunUnits(threads, units.size(), [&](int thread, size_t u) {
      JoinContext& ctx = *contexts[static_cast<size_t>(thread)];
      const uint64_t* rows = RowsOfUnit(units[u], *counting->Rows, ctx.stack.data());
      ctx.result += Generate(ctx, units[u], layer, rows, 1);
    });
  } catch (...) {
    for (const auto& ctx : contexts) tree.TreeSize += ctx->made;
    throw;
  }
  int result = 0;
  for (const auto& ctx : contexts) {
    tree.TreeSize += ctx->made;
    result += ctx->result;
  }
  return result;
}

TreeNode* SearchSubSet(const CandidateTree& tree, const int* items, int n) {
  if (n <= 0) return tree.AllSet;
  return SearchWithout(tree, items, n, -1);
}

int FrequentSubSet(const CandidateTree& tree, const int* items, int n, int* supports, TreeNode** nodes) {
  if (n < 3) return 1;
  for (int p = 0; p <= n - 3; ++p) {
    TreeNode* subset = SearchWithout(tree, items, n, p);
    if (!subset) return 0;
    supports[p] = subset->Support;
    nodes[p] = subset;
  }
  return 1;
}
