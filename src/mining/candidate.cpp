// Candidate generation: joins sibling nodes into the next layer, keeping a
// candidate only when all its shorter subsets are in the tree, and passes on
// the live-target flags and the perfect-rule mark.
#include <cstdio>
#include <vector>

#include "base/memory.h"
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

// Working arrays of one layer's join, sized to the itemset length.
struct JoinWork {
  std::vector<int> items, flags, supports;
  std::vector<TreeNode*> nodes;
  explicit JoinWork(int k) : items(k), flags(k), supports(k), nodes(k) {}
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

int Join(CandidateTree& tree, TreeNode* g, JoinWork& w, const DebugDump& dump, int classTargetsFrom) {
  const int n = g->NumOfSon;
  if (n < 2) return 0;
  int result = 0;
  for (int i = 0; i <= n - 2; ++i) {
    TreeNode* tmp1 = g->Son[i];
    if (!tmp1) continue;
    tmp1->NumOfSon = 0;
    const int L = tmp1->Length;
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
        TreeNode* subset = SearchWithout(tree, w.items.data(), L + 1, p);
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

      if (classTargetsFrom > 0) {
        // Only class rules are wanted: an itemset with a class item (the
        // largest item, so the last) serves only the rule with the class as
        // target, and one without serves as an antecedent unless it holds a
        // perfect rule, which makes its class rules redundant.
        if (w.items[L] >= classTargetsFrom ? w.flags[L] == 0 : perfect) continue;
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
            if (dump.Debug) PrintPermanentlyEmpty(dump.Out, g, tmp1, n);
            continue;
          }
        }
      }

      TreeNode* node = AddSon(tree, tmp1, sibling, w.flags.data(), w.supports.data(), w.nodes.data());
      tmp1->Son[tmp1->NumOfSon] = node;
      tmp1->NumOfSon += 1;
      if (perfect) node->Token = 2;
      if (tmp1->NumOfSon >= tmp1->SonCapacity - 1) {
        tmp1->SonCapacity += 10;
        tmp1->Son = static_cast<TreeNode**>(
            XRealloc(tmp1->Son, sizeof(TreeNode*) * static_cast<size_t>(tmp1->SonCapacity)));
      }
      result = 1;
    }
  }
  return result;
}

int Generate(CandidateTree& tree, TreeNode* node, int k, JoinWork& w, const DebugDump& dump, int classTargetsFrom) {
  if (!node) return 0;
  if (node->Length == k - 2) return Join(tree, node, w, dump, classTargetsFrom);
  if (node->Length == k - 1 || node->Length == k || node->NumOfSon == 0) return 0;
  int sum = 0;
  for (int s = 0; s < node->NumOfSon; ++s) sum += Generate(tree, node->Son[s], k, w, dump, classTargetsFrom);
  return sum;
}

}  // namespace

int CandidateGen(CandidateTree& tree, TreeNode* node, int layer, const DebugDump& dump, int classTargetsFrom) {
  JoinWork work(layer > 0 ? layer + 1 : 2);
  return Generate(tree, node, layer, work, dump, classTargetsFrom);
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
