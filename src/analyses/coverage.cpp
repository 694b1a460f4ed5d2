// Coverage counting: how many cases contain the itemset of at least one
// marked node (a node that produced a perfect rule). Each case is swept
// through the tree as in support counting; the sweep of a case stops as soon
// as both counters have been served.
#include "analyses/analyses.h"

#include <cstdio>
#include <vector>

namespace {

// The all-ones flag of a first-layer target, as the 16-bit field holds it.
constexpr short kAllOnes = static_cast<short>(0xFFFF);

// Looks for a son with the given item from the node's Cursor on; the sons
// ascend, so the search stops at the first larger item.
int FindSon(const TreeNode* node, int item) {
  for (int s = node->Cursor; s < node->NumOfSon; ++s) {
    const int sonItem = node->Son[s]->Item;
    if (item < sonItem) return -1;
    if (item == sonItem) return s;
  }
  return -1;
}

short SecondFlag(const TreeNode* node) { return node->TargetFlag ? node->TargetFlag[1] : 0; }

struct CaseMarks {
  bool loose = false;
  bool tough = false;
};

// Counts a marked node into the counters the case has not served yet.
// Returns true when both are served and the case is done.
// The itemset is printed by name when names is given, by item code otherwise.
bool Examine(const TreeNode* z, CaseMarks& marks, Coverage& coverage, std::FILE* out, const DataSet* names) {
  if (z->Token <= 0) return false;
  const short second = SecondFlag(z);
  if (!marks.loose && second != kAllOnes) {
    coverage.Loose += 1;
    std::fprintf(out, "\n **");
    if (z->ItemSet) {
      for (int i = 0; i < z->Length; ++i) std::fprintf(out, names ? "%s, " : "%s,", ItemText(names, z->ItemSet[i]).c_str());
    }
    std::fprintf(out, "Target[0] = %d, Target[1] = %d", z->TargetFlag ? z->TargetFlag[0] : 0, second);
    marks.loose = true;
  }
  if (!marks.tough && second == kAllOnes) {
    coverage.Tough += 1;
    marks.tough = true;
  }
  return marks.loose && marks.tough;
}

// One case through the tree; the reached list is the caller's, reused
// between cases. Nodes without sons extend nothing, so they are examined but
// never searched again.
int Walk(TreeNode* root, const int* row, int realAtt, std::vector<TreeNode*>& reached, Coverage& coverage,
         std::FILE* out, const DataSet* names = nullptr) {
  if (!root) return 0;
  reached.clear();
  root->Cursor = 0;
  CaseMarks marks;
  for (int c = 0; c < realAtt; ++c) {
    const int x = row[c];
    const size_t before = reached.size();
    const int s = FindSon(root, x);
    if (s >= 0) {
      TreeNode* z = root->Son[s];
      root->Cursor = s + 1;
      z->Cursor = 0;
      if (z->Token > 0 && Examine(z, marks, coverage, out, names)) return 1;
      if (z->NumOfSon > 0) reached.push_back(z);
    }
    for (size_t e = 0; e < before; ++e) {
      TreeNode* p = reached[e];
      const int t = FindSon(p, x);
      if (t < 0) continue;
      TreeNode* son = p->Son[t];
      p->Cursor = t + 1;
      son->Cursor = 0;
      if (son->Token > 0 && Examine(son, marks, coverage, out, names)) return 1;
      if (son->NumOfSon > 0) reached.push_back(son);
    }
  }
  return 0;
}

}  // namespace

std::string ItemText(const DataSet* names, int item) {
  if (!names || item <= 0 || static_cast<size_t>(item) >= names->ItemRecord.size() || !names->ItemRecord[item])
    return std::to_string(item);
  return names->ItemRecord[item]->AttributeName + "=" + names->ItemRecord[item]->ValueName;
}

int CountEntry(TreeNode* root, const int* row, int realAtt, Coverage& coverage, std::FILE* out) {
  std::vector<TreeNode*> reached;
  reached.reserve(10);
  return Walk(root, row, realAtt, reached, coverage, out);
}

Coverage CoverageCount(TreeNode* root, int* const* rows, int n, int realAtt, std::FILE* out) {
  Coverage coverage;
  std::vector<TreeNode*> reached;
  reached.reserve(10);
  for (int r = 0; r < n; ++r) Walk(root, rows[r], realAtt, reached, coverage, out);
  return coverage;
}

Coverage CoverageOfData(TreeNode* root, const DataSet& data, std::FILE* out) {
  const size_t width = static_cast<size_t>(data.RealAtt > 0 ? data.RealAtt : 0);
  std::vector<int> cells(static_cast<size_t>(data.MaxData) * width);
  std::vector<int*> rows(static_cast<size_t>(data.MaxData));
  for (int r = 0; r < data.MaxData; ++r) {
    int* row = cells.data() + static_cast<size_t>(r) * width;
    for (size_t c = 0; c < width; ++c) row[c] = data.DataSpace[r][c];
    rows[r] = row;
  }
  Coverage coverage;
  std::vector<TreeNode*> reached;
  for (int r = 0; r < data.MaxData; ++r) Walk(root, rows[r], data.RealAtt, reached, coverage, out, &data);
  return coverage;
}
